#include "modules/winman/object_hint.h"

#include <algorithm>
#include <string_view>

#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"

namespace {

constexpr std::uint32_t UNREAD_KEY_MS = 500;

// A key that is waiting would take the hint away again. One that nobody has read for so long
// belongs to no one, and is dropped.
bool is_key_waiting() {
    KEYBOARD keyboard;
    if (keyboard.peek_code() == KEY_NONE && keyboard.peek_char() == 0) {
        return false;
    }
    if (get_ms_count() - KEYBOARD::last_event_time < UNREAD_KEY_MS) {
        return true;
    }
    keyboard.clear_buffer();
    return false;
}

}  // namespace

OBJECT_HINT::OBJECT_HINT(WM_SCREEN_OBJECT& hint_owner) : owner(hint_owner) {
}

OBJECT_HINT::~OBJECT_HINT() {
    hide();
}

bool OBJECT_HINT::set_text(const char* text) {
    if (text == nullptr || *text == '\0') {
        hide();
        script.reset();
        return false;
    }
    if (script == nullptr || std::string_view(script->get_text()) != text) {
        hide();
        script = std::make_unique<WM_SCRIPT>(std::int16_t{0}, std::int16_t{0}, std::int16_t{-5},
                                             std::int16_t{-3}, WM_SCREEN_OBJECT::hint_style_set,
                                             text, owner.window);
        script->not_owned = true;
        script->owner = &owner;
    }
    return true;
}

const char* OBJECT_HINT::get_text() const {
    return script != nullptr ? script->get_text() : nullptr;
}

bool OBJECT_HINT::is_showing() const {
    return script != nullptr && script->visible && script->is_modal_object();
}

void OBJECT_HINT::hide() {
    shown = false;
    if (script != nullptr && script->is_modal_object()) {
        script->hide(0, 0);
        owner.remove_modal_object(script.get(), 0, 0);
    }
}

void OBJECT_HINT::reset() {
    hide();
    hint_x = hint_y = NO_POSITION;
    hint_time = 0;
}

void OBJECT_HINT::update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
    hint_time = time;
    hint_x = static_cast<std::uint16_t>(px);
    hint_y = static_cast<std::uint16_t>(py);
}

void OBJECT_HINT::pass_time_on(WM_SCREEN_OBJECT* object, std::uint32_t time, std::int16_t px,
                               std::int16_t py) {
    if (object == nullptr) {
        return;
    }
    if (object->type_flags & WMF_BUTTON) {
        auto* button = static_cast<WM_BUTTON*>(object);
        button->update_hint_time(time, px, py);
        button->update_icon_hint_time(time, px, py);
    } else if (object->type_flags & WMF_SCRIPT) {
        auto* label = static_cast<WM_SCRIPT*>(object);
        label->update_hint_time(time, px, py);
        label->update_icon_hint_time(time, px, py);
    }
}

bool OBJECT_HINT::is_over_icon(std::int32_t px, std::int32_t icon_left, std::int32_t icon_right,
                               std::int32_t spacing, bool at_right_end) {
    return icon_right >= icon_left && px <= icon_right + spacing &&
           (!at_right_end || px >= icon_left - spacing);
}

// Its bottom left corner at the pointer, pushed back inside the window.
void OBJECT_HINT::place(std::int16_t px, std::int16_t py) {
    const IMAGE* buffer = owner.get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    const std::int32_t left = std::min<std::int32_t>(px, buffer->width - script->width);
    const std::int32_t top =
        std::min<std::int32_t>(py - script->height + 1, buffer->height - script->height);
    script->move(static_cast<std::int16_t>(std::max(left, 0)),
                 static_cast<std::int16_t>(std::max(top, 0)));
}

void OBJECT_HINT::show(std::int16_t px, std::int16_t py) {
    place(px, py);
    if (!script->is_modal_object()) {
        owner.add_modal_object(script.get(), 0);
    }
    script->request_draw(0, 0);
    shown = true;
    wheel_at_show = MOUSE::wheel_pos;
}

void OBJECT_HINT::leave(std::int16_t px, std::int16_t py) {
    const bool was_showing = is_showing();
    const std::uint32_t time = hint_time;
    reset();
    WM_PAGE_MANAGER* pages = was_showing ? owner.get_page_manager() : nullptr;
    if (pages != nullptr) {
        pass_time_on(pages->find_object_at_pos(px, py), time, px, py);
    }
}

void OBJECT_HINT::monitor(bool over, bool button_down, std::int16_t px, std::int16_t py) {
    if (!over && !owner.is_in_me(px, py)) {
        if (hint_x != NO_POSITION || shown) {
            leave(px, py);
        }
        return;
    }
    const bool arrived = hint_x == NO_POSITION && over;
    const bool taken_away = shown && !is_showing();  // by a key
    // The wheel is for what lies under the hint, which gets no input as long as that is there.
    const bool wheel_turned = is_showing() && MOUSE::wheel_pos != wheel_at_show;
    if (button_down || arrived || taken_away || wheel_turned) {
        hide();
        update_hint_time(WM_SCREEN_OBJECT::now_ms, px, py);
    }
    if (!over || button_down || script == nullptr) {
        return;
    }
    hint_x = static_cast<std::uint16_t>(px);
    hint_y = static_cast<std::uint16_t>(py);
    if (is_showing()) {
        place(px, py);
        return;
    }
    const std::int16_t delay = WM_SCREEN_OBJECT::hint_delay_time;
    if (delay != WM_SCREEN_OBJECT::HINTS_OFF &&
        static_cast<std::int32_t>(WM_SCREEN_OBJECT::now_ms - hint_time) >= delay &&
        !is_key_waiting()) {
        show(px, py);
    }
}

void OBJECT_HINT::monitor_both(OBJECT_HINT& hint, OBJECT_HINT& icon_hint, bool over_icon, bool over,
                               bool button_down, std::int16_t px, std::int16_t py) {
    const bool icon_is_due = icon_hint.is_set() && (over_icon || !hint.is_set());
    OBJECT_HINT& due = icon_is_due ? icon_hint : hint;
    OBJECT_HINT& other = icon_is_due ? hint : icon_hint;
    if (other.hint_x != NO_POSITION) {
        if (due.hint_x == NO_POSITION) {
            due.hint_time = other.hint_time;
            due.hint_x = other.hint_x;
            due.hint_y = other.hint_y;
        }
        other.reset();
    }
    due.monitor(over, button_down, px, py);
}
