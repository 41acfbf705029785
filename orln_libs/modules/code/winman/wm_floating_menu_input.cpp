// How a floating menu takes the input of its window.
#include <cctype>
#include <cstring>

#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_menu.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "wm_floating_menu_tools.h"

namespace {

constexpr unsigned char FIRST_PRINTABLE = ' ';

unsigned char lower(unsigned char character) {
    return static_cast<unsigned char>(std::tolower(character));
}

// The left button is reported as up for the length of a block.
class HIDDEN_LEFT_BUTTON {
public:
    explicit HIDDEN_LEFT_BUTTON(bool hide) : buttons(MOUSE::buttons) {
        if (hide) {
            MOUSE::buttons &= static_cast<unsigned char>(~(1u << (MOUSE_BUTTON_LEFT - 1)));
        }
    }
    ~HIDDEN_LEFT_BUTTON() { MOUSE::buttons = buttons; }
    HIDDEN_LEFT_BUTTON(const HIDDEN_LEFT_BUTTON&) = delete;
    HIDDEN_LEFT_BUTTON& operator=(const HIDDEN_LEFT_BUTTON&) = delete;

private:
    const unsigned char buttons;
};

// The press that would choose the focal item: Return, Enter or a blank.
bool is_click_key_down(const KEYBOARD& keyboard) {
    return keyboard.get_key_value(KEY_RETURN) || keyboard.get_key_value(KEY_ENTER) ||
           keyboard.peek_char() == ' ';
}

}  // namespace

WM_MESG WM_FLOATING_MENU::monitor() {
    if (!visible) {
        return WM_MESG_NONE;
    }
    if (!was_visible) {
        become_visible();
    }
    if (remove_when_hidden || target_alpha == 0) {
        return WM_MESG_NONE;  // on its way out it still keeps the input from the others
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const bool focal = manager != nullptr && manager->is_object_on_focal_window(this);
    KEYBOARD keyboard;
    bool chosen = false, left_by_key = false;
    if (focal) {
        read_typing();
        read_wheel();
        if (read_navigation_keys()) {
            return WM_MESG_HANDLED;
        }
        const bool click = is_click_key_down(keyboard);
        const WM_BUTTON* item = get_button(find_focal_row());
        chosen = click && item != nullptr && item->enabled && !(item->type_flags & WMF_MENU);
        left_by_key = click && item == nullptr;
        // A press of Escape ends with its release, as the key isn't marked any more then.
        const bool escape = keyboard.get_key_value(KEY_ESCAPE) != 0;
        left_by_key = left_by_key || (escape_was_down && !escape);
        escape_was_down = escape;
        if (escape) {
            keyboard.get_code();
        }
    }
    const bool buttons_down = MOUSE::buttons != 0;
    const bool released = buttons_were_down && !buttons_down && !first_press;
    buttons_were_down = buttons_down;
    follow_pointer(MOUSE::is_down(MOUSE_BUTTON_LEFT) && !first_press);
    const WM_MESG result = monitor_contents();
    if (!buttons_down) {
        first_press = false;
    }
    if (!visible) {
        return result;  // a callback has closed it
    }
    if (chosen) {
        finish_choice(result);
    } else if (left_by_key) {
        keyboard.clear_buffer();
        leave();
    } else if (released && focal) {
        handle_release(result);
    }
    return result;
}

// The press that has opened the menu chooses nothing, and the wheel from before doesn't count.
void WM_FLOATING_MENU::become_visible() {
    was_visible = true;
    if (remove_when_hidden || target_alpha == 0) {
        WM_DIALOG::clear();  // shown again by its owner as it was left
    }
    first_press = MOUSE::buttons != 0;
    buttons_were_down = first_press;
    escape_was_down = false;
    MOUSE::wheel_pos = 0;
    pointer_x = MOUSE::x;
    pointer_y = MOUSE::y;
}

WM_MESG WM_FLOATING_MENU::monitor_contents() {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager == nullptr) {
        return WM_MESG_NONE;
    }
    WM_SCREEN_OBJECT* before = manager->get_active_menu(window);
    manager->set_active_menu(window, this);
    WM_MESG result = WM_MESG_NONE;
    {
        const HIDDEN_LEFT_BUTTON hidden(first_press);
        result = WM_DIALOG::monitor();
    }
    manager->set_active_menu(window, before);
    return result;
}

// --- Keys ---

void WM_FLOATING_MENU::read_typing() {
    KEYBOARD keyboard;
    while (const unsigned char character = keyboard.peek_char()) {
        const bool goes_on = typed_count > 0 && now_ms - typed_time <= TYPING_PAUSE;
        if (character == ' ' && !goes_on) {
            return;  // a click of the focal item
        }
        keyboard.get_char();
        if (character < FIRST_PRINTABLE || keyboard.get_key_value(KEY_COMMAND)) {
            continue;
        }
        if (!goes_on) {
            typed_count = 0;
        }
        typed_time = now_ms;
        if (typed_count < MAX_TYPED) {
            typed[typed_count++] = static_cast<char>(lower(character));
            search_typed();
        }
    }
}

void WM_FLOATING_MENU::search_typed() {
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        const WM_BUTTON* button = get_button(row);
        const char* text = button != nullptr ? button->get_title_text() : "";
        std::int32_t same = 0;
        while (same < typed_count && text[same] != '\0' &&
               lower(static_cast<unsigned char>(text[same])) ==
                   static_cast<unsigned char>(typed[same])) {
            ++same;
        }
        if (button != nullptr && same == typed_count) {
            focus_row(row, 1);
            return;
        }
    }
}

// True if this menu is left for another one.
bool WM_FLOATING_MENU::read_navigation_keys() {
    KEYBOARD keyboard;
    const std::int32_t focal = find_focal_row(), count = grid->row_count;
    switch (keyboard.peek_code()) {
        case KEY_UP:
            step_focus(focal >= 0 ? focal : count, -1);
            break;
        case KEY_DOWN:
            step_focus(focal, 1);
            break;
        case KEY_HOME:
        case KEY_PAGE_UP:
            step_focus(-1, 1);
            break;
        case KEY_END:
        case KEY_PAGE_DOWN:
            step_focus(count, -1);
            break;
        case KEY_RIGHT:
            keyboard.get_code();
            if (WM_MENU* menu = get_menu(static_cast<std::int16_t>(focal))) {
                if (menu->enabled) {
                    menu->open();
                }
                return menu->enabled;
            }
            return go_to_neighbour(true);
        case KEY_LEFT:
            keyboard.get_code();
            if (get_parent_popup() != nullptr) {
                WM_MENU& owner = *owner_menu;
                owner.start_closing_popup();
                owner.take_focus(1);
                return true;
            }
            return go_to_neighbour(false);
        default:
            return false;
    }
    keyboard.get_code();
    return false;
}

// In a menu bar.
bool WM_FLOATING_MENU::go_to_neighbour(bool forward) {
    WM_MENU* member = owner_menu;
    while (member != nullptr) {
        member = forward ? member->group_next : member->group_prev;
        if (member == owner_menu) {
            return false;
        }
        if (member != nullptr && member->enabled && member->visible) {
            owner_menu->close_at_once();
            member->open();
            return true;
        }
    }
    return false;
}

// The next item from there that can take the focus, going round at the ends.
void WM_FLOATING_MENU::step_focus(std::int32_t from, std::int32_t step) {
    const std::int32_t count = grid->row_count;
    for (std::int32_t i = 0, row = from; i < count; ++i) {
        row = (row + step + count) % count;
        WM_BUTTON* button = get_button(static_cast<std::int16_t>(row));
        if (button != nullptr && button->can_have_focus()) {
            focus_row(static_cast<std::int16_t>(row), 0);
            return;
        }
    }
}

void WM_FLOATING_MENU::focus_row(std::int16_t row, unsigned char centre) {
    if (WM_BUTTON* button = get_button(row)) {
        button->take_focus(1);
        auto_scroll_to_row(row, centre);
    }
}

std::int16_t WM_FLOATING_MENU::find_focal_row() const {
    std::int16_t column = -1, row = -1;
    return grid->get_object_cell(grid->find_focal_child_object(), column, row) ? row
                                                                               : std::int16_t{-1};
}

// --- Mouse ---

void WM_FLOATING_MENU::read_wheel() {
    const std::int32_t steps = MOUSE::wheel_pos;
    if (steps == 0 || !is_in_me(MOUSE::x, MOUSE::y)) {
        return;
    }
    MOUSE::wheel_pos = 0;
    const WM_BUTTON* button = steps > 0 ? scroll_top_button : scroll_bottom_button;
    if (button != nullptr && button->visible) {
        scroll_rows(-steps);
        step_focus(first_row, 1);
    }
}

// A moved pointer takes the focus along, so that only one item stands out; and a press may begin
// on another item than the one it ends on.
void WM_FLOATING_MENU::follow_pointer(bool left_down) {
    const std::int16_t px = MOUSE::x, py = MOUSE::y;
    const bool moved = px != pointer_x || py != pointer_y;
    pointer_x = px;
    pointer_y = py;
    const bool in_rows = grid->is_in_me(px, py);
    for (std::int16_t row = grid->first_visible; row >= 0 && row <= grid->last_visible; ++row) {
        WM_BUTTON* button = get_button(row);
        if (button == nullptr) {
            continue;
        }
        const bool over = in_rows && button->is_in_it(px, py);
        if (!(button->type_flags & WMF_MENU)) {
            // Up again, the button itself reads this once more.
            button->press_held = over && (left_down || button->press_held);
        }
        if (over && moved) {
            button->take_focus(0);
        }
    }
}

void WM_FLOATING_MENU::handle_release(WM_MESG result) {
    const std::int16_t px = MOUSE::x, py = MOUSE::y;
    for (const WM_BUTTON* button : {scroll_top_button, scroll_bottom_button}) {
        if (button != nullptr && button->visible &&
            const_cast<WM_BUTTON*>(button)->is_in_me(px, py)) {
            return;
        }
    }
    if (grid->is_in_me(px, py)) {
        WM_BUTTON* item = get_button(find_row_from(
            *grid, py - grid->y + grid->scroll.max.long_value - grid->scroll.value.long_value));
        if (item != nullptr && item->enabled && !(item->type_flags & WMF_MENU)) {
            finish_choice(result);
            return;
        }
    }
    if (is_in_menu(px, py)) {
        return;
    }
    for (WM_FLOATING_MENU* before = get_parent_popup(); before != nullptr;
         before = before->get_parent_popup()) {
        if (before->is_in_me(px, py)) {
            return;  // its own matter once this one has gone
        }
    }
    leave();
}

// --- Leaving ---

// Nothing was chosen.
void WM_FLOATING_MENU::leave() {
    WM_MENU* const owner = owner_menu;
    close_linked_popup(1);
    start_closing();
    reset_buttons();
    typed_count = 0;
    if (owner != nullptr) {
        owner->pressed = owner->pressed_inside = false;
    }
}

// One that is kept may be shown again at any time, so no request stays behind. One that is to be
// deleted goes at the next update if the item's callback has answered something: the answer of a
// modal object that is removed at once reaches nobody.
void WM_FLOATING_MENU::leave_modal_list(bool with_answer) {
    if (not_owned) {
        if (parent != nullptr) {
            parent->remove_modal_object(this, 0, 0);
        }
        hide(0, 0);
    } else if (with_answer) {
        no_effects = true;
        start_closing();
    } else {
        hide(0, 0);
        close_requested = true;
    }
}

void WM_FLOATING_MENU::finish_choice(WM_MESG result) {
    const bool with_answer = result != WM_MESG_NONE && result != WM_MESG_HANDLED;
    hide_linked_popup(1);
    for (WM_FLOATING_MENU* popup = this; popup != nullptr;) {
        WM_FLOATING_MENU* const before = popup->get_parent_popup();
        if (WM_MENU* owner = popup->owner_menu) {
            owner->pressed = owner->pressed_inside = owner->mouse_over_now = false;
            if (owner->visible) {
                owner->request_draw(0, 0);
            }
        }
        popup->leave_modal_list(with_answer && popup == this);
        popup = before;
    }
}
