// One tick of a text box: what the mouse does, and the focus.
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_grid.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "shift_keys.h"
#include "text_box_position.h"

namespace {

constexpr std::uint32_t INFO_MESSAGE_MS = 1000;
constexpr signed char TEXT_POINTER = 5;

}  // namespace

struct TEXT_BOX::MOUSE_TICK {
    std::int16_t x, y;
    bool left, right;                  // down
    bool left_pressed, right_pressed;  // in this tick
    bool right_released;
    bool moved;
    bool inside;     // the box
    bool over_text;  // without the scroll bar
};

WM_MESG TEXT_BOX::monitor() {
    end_info_message();
    const MOUSE_TICK mouse = track_mouse();
    if (had_focus && !has_focus()) {
        show_focus_loss();
    } else if (has_focus() && (!had_focus || !get_cursor().is_set())) {
        show_focus_return();
    }
    had_focus = has_focus();
    if (!visible) {
        return WM_MESG_NONE;
    }
    const WM_MESG result = enabled ? monitor_input(mouse) : WM_MESG_NONE;
    if (result == WM_MESG_NONE) {
        hint.monitor(mouse.inside, mouse.left || mouse.right, mouse.x, mouse.y);
    }
    return result;
}

WM_MESG TEXT_BOX::monitor_input(const MOUSE_TICK& mouse) {
    WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE) {
        return result;
    }
    take_focus_by_click(mouse);
    if (mouse.left_pressed && mouse.inside && (flags & TBF_CLICK_FIRES)) {
        clicked = true;
        result = run_callback();
        clicked = false;
        return result;
    }
    if (has_focus() && mouse.left && !left_outside) {
        select_by_mouse(mouse);
    }
    if (mouse.right_released && !right_outside && mouse.over_text && (flags & TBF_POPUP_MENU)) {
        open_edit_menu();
        return WM_MESG_HANDLED;
    }
    if (has_focus()) {
        if (mouse.left || mouse.right) {
            KEYBOARD().clear_buffer();
        } else {
            result = monitor_keys();
        }
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager != nullptr && mouse.over_text && can_have_focus() && manager->mouse_icon == 0) {
        manager->mouse_icon = TEXT_POINTER;
    }
    return result;
}

// --- Mouse ---

bool TEXT_BOX::is_over_text(std::int16_t px, std::int16_t py) {
    return grid != nullptr && grid->is_in_me(px, py) && px < grid->x + text_width;
}

TEXT_BOX::MOUSE_TICK TEXT_BOX::track_mouse() {
    MOUSE_TICK mouse;
    mouse.x = MOUSE::x;
    mouse.y = MOUSE::y;
    mouse.left = MOUSE::is_down(MOUSE_BUTTON_LEFT);
    mouse.right = MOUSE::is_down(MOUSE_BUTTON_RIGHT);
    mouse.left_pressed = mouse.left && !last_left;
    mouse.right_pressed = mouse.right && !last_right;
    mouse.right_released = !mouse.right && last_right;
    mouse.moved = mouse.x != last_x || mouse.y != last_y;
    mouse.inside = is_in_it(mouse.x, mouse.y);
    mouse.over_text = is_over_text(mouse.x, mouse.y);
    if (mouse.left_pressed) {
        left_outside = !mouse.over_text;
    } else if (!mouse.left && !last_left) {
        left_outside = false;
    }
    if (mouse.right_pressed) {
        right_outside = !mouse.over_text;
    } else if (!mouse.right && !last_right) {
        right_outside = false;
    }
    // Now, as the tick may end early.
    last_left = mouse.left;
    last_right = mouse.right;
    last_x = mouse.x;
    last_y = mouse.y;
    return mouse;
}

void TEXT_BOX::take_focus_by_click(const MOUSE_TICK& mouse) {
    const bool pressed = mouse.left_pressed || mouse.right_pressed;
    if (!pressed || !mouse.inside || has_focus() || !can_have_focus()) {
        return;
    }
    if (!text.empty() && (flags & TBF_CLICK_SELECTS_ALL)) {
        take_focus(0);
        left_outside = true;  // for as long as the button stays down
        return;
    }
    const bool had_cursor = get_cursor().is_set() && !default_text_shown;
    take_focus(1);
    TEXT_BOX_POSITION at;
    if (mouse.right_pressed && mouse.over_text && !had_cursor && has_focus() &&
        TEXT_BOX_NAVIGATOR(*this).find_nearest_char(mouse.x, mouse.y, at)) {
        clear_selection();
        move_cursor(at.column, at.row, at.x, at.offset);
        show_cursor_or_selection();
    }
}

void TEXT_BOX::select_by_mouse(const MOUSE_TICK& mouse) {
    TEXT_BOX_POSITION at;
    if (!(mouse.left_pressed || mouse.moved) ||
        !TEXT_BOX_NAVIGATOR(*this).find_nearest_char(mouse.x, mouse.y, at)) {
        return;
    }
    const bool can_select = (flags & TBF_SELECTABLE) && get_cursor().is_set();
    if (can_select && is_shift_down(KEYBOARD())) {
        update_selection(at.column, at.row, at.x, at.offset, 1);
    } else if (mouse.left_pressed) {
        clear_selection();
        set_cursor(at);
    } else if (can_select) {
        update_selection(at.column, at.row, at.x, at.offset, 0);
    } else {
        return;
    }
    scroll_into_view(at);
    show_cursor_or_selection();
}

// --- Focus ---

bool TEXT_BOX::can_have_focus() {
    return enabled && get_allowed_focus();
}

void TEXT_BOX::take_focus(unsigned char keep_position) {
    if (has_focus() || !can_have_focus()) {
        return;
    }
    KEYBOARD keyboard;
    if (grid == nullptr) {
        refresh();
    }
    if (grid == nullptr) {
        keyboard.clear_buffer();
        return;
    }
    WM_SCREEN_OBJECT::take_focus(keep_position);
    if (!has_focus()) {
        return;
    }
    had_focus = true;
    if (default_text_shown) {
        refresh();
    }
    // What has been typed so far, and the key that moved the focus, weren't meant for this text.
    keyboard.clear_buffer();
    const bool selects = !keep_position || (!get_cursor().is_set() && !(flags & TBF_EDITABLE));
    if (!keep_position || !get_cursor().is_set()) {
        move_cursor_to_end();
    }
    if (selects && (flags & TBF_SELECTABLE)) {
        select_all();
    } else if (!keep_position) {
        clear_selection();
    }
    show_cursor_or_selection();
}

void TEXT_BOX::show_focus_loss() {
    if (default_text != nullptr && *default_text != '\0') {
        refresh();
    } else {
        hide_cursor();
        hide_selection();
    }
}

// The focus came back with its window, or a new layout has left no cursor. The view stays.
void TEXT_BOX::show_focus_return() {
    if (default_text_shown) {
        refresh();
    }
    TEXT_BOX_POSITION end;
    if (!get_cursor().is_set() && TEXT_BOX_NAVIGATOR(*this).find_text_end({}, end)) {
        set_cursor(end);
    }
    show_cursor_or_selection();
}

// --- The line below the text ---

void TEXT_BOX::end_info_message() {
    if (info_message[0] != '\0' && now_ms - info_message_time > INFO_MESSAGE_MS) {
        info_message[0] = '\0';
        show_info();
    }
}
