// What the mouse and the keyboard do to a button.
#include "control_face.h"
#include "modules/winman/focus_tools.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "platform/mouse.h"
#include "pointer_shape.h"
#include "wm_button_input.h"

bool WM_BUTTON::is_in_it(std::int16_t px, std::int16_t py) {
    const bool masked = is_graphical() && (button_flags & BUTTON_DONT_MASK_CLICK) == 0;
    return is_in_face(*this, masked ? &up_box : nullptr, px, py);
}

WM_BUTTON::INPUT WM_BUTTON::read_input() {
    INPUT input;
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    input.x = MOUSE::x;
    input.y = MOUSE::y;
    input.focal = manager != nullptr && manager->is_object_on_focal_window(this);
    input.left = input.focal && MOUSE::is_down(MOUSE_BUTTON_LEFT);
    input.right = input.focal && MOUSE::is_down(MOUSE_BUTTON_RIGHT);
    input.over = is_in_it(input.x, input.y);
    input.left_before = last_left;
    input.right_before = last_right;
    input.click_key = visible && enabled && is_focused() && take_click_key(*this);
    return input;
}

WM_MESG WM_BUTTON::monitor() {
    INPUT input = read_input();
    if (button_type == BUTTON_TYPE_HOVER_FIRE) {
        if (input.over && input.left) {
            return WM_MESG_NONE;
        }
        pressed = input.left = input.over;
    }
    WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE || !visible) {
        return result;
    }
    // Before anything is called that may come back here.
    last_left = input.left;
    last_right = input.right;
    result = monitor_drag(input);
    if (result != WM_MESG_NONE || !visible) {
        return result;
    }
    monitor_hints(input);
    query_activated();
    if (enabled) {
        result = monitor_click(input);
    }
    if (!input.left) {
        pressed_inside = false;
    }
    return result;
}

void WM_BUTTON::monitor_hints(const INPUT& input) {
    const bool over_icon = OBJECT_HINT::is_over_icon(input.x, icon_left, icon_right, icon_x_spacing,
                                                     (button_flags & BUTTON_ICON_RIGHT) != 0);
    const bool button_down = MOUSE::buttons != 0 || input.click_key;
    OBJECT_HINT::monitor_both(hint, icon_hint, over_icon, input.over, button_down, input.x,
                              input.y);
}

void WM_BUTTON::query_activated() {
    if (activated_query == nullptr) {
        return;
    }
    const bool now = activated_query(activated_query_data) != 0;
    if (now != activated) {
        set_activated(now);
        if (visible) {
            request_draw(0, 0);
        }
    }
}

WM_MESG WM_BUTTON::monitor_click(const INPUT& input) {
    set_mouse_over(input.over);
    if (button_type == BUTTON_TYPE_HOVER_HIGHLIGHT && pressed != input.over) {
        pressed = input.over;
        request_draw(0, 0);
    }
    const BUTTON_EVENT event = find_event(input);
    WM_MESG result = WM_MESG_NONE;
    if (event != BUTTON_EVENT_NONE && clickable) {
        result = fire(event, input);
    }
    if (!input.left && !input.click_key && pressed && button_type == BUTTON_TYPE_PUSH) {
        pressed = pressed_inside = false;
        if (visible) {
            request_draw(0, 0);
        }
    }
    set_pointer_shape(input);
    return result;
}

void WM_BUTTON::set_mouse_over(bool over) {
    if (over == mouse_over_now) {
        return;
    }
    mouse_over_now = over;
    const bool shows = (over_box.are_images_valid() && mouseovers_enabled) || mouse_over.is_set() ||
                       mouse_over_text.is_set() || mouse_over_underline.is_set();
    if (callback != nullptr && shows) {
        request_draw(0, 0);
    }
}

BUTTON_EVENT WM_BUTTON::find_event(const INPUT& input) {
    if (input.click_key) {
        return (callback_flags & BUTTON_EVENT_RELEASE) != 0 ? BUTTON_EVENT_RELEASE
                                                            : BUTTON_EVENT_PRESS;
    }
    const bool hovers = button_type == BUTTON_TYPE_HOVER_FIRE;
    BUTTON_EVENT event = BUTTON_EVENT_NONE;
    if ((input.over || hovers) && input.left != input.left_before) {
        event = find_change(input);
    }
    if ((callback_flags & BUTTON_EVENT_RELEASE_OUTSIDE) != 0 && !input.over && !input.left &&
        input.left_before && pressed_inside) {
        event = BUTTON_EVENT_RELEASE_OUTSIDE;
    }
    if ((callback_flags & BUTTON_EVENT_REPEAT) != 0 && input.over && (input.left || hovers) &&
        is_held()) {
        const std::uint32_t wait = repeating ? auto_repeat_rate : auto_repeat_threshhold;
        if (now_ms - repeat_time > wait) {
            repeating = true;
            repeat_time = now_ms;
            event = BUTTON_EVENT_REPEAT;
        }
    }
    return event;
}

// The left button changed over the button.
BUTTON_EVENT WM_BUTTON::find_change(const INPUT& input) {
    if (input.left) {
        pressed_inside = true;
        repeating = false;
        repeat_time = now_ms;
        take_focus(0);
        return BUTTON_EVENT_PRESS;
    }
    if (!is_held()) {
        return BUTTON_EVENT_NONE;
    }
    pressed_inside = press_held = repeating = false;
    repeat_time = 0;
    return BUTTON_EVENT_RELEASE;
}

WM_MESG WM_BUTTON::fire(BUTTON_EVENT event, const INPUT& input) {
    WM_MESG result = WM_MESG_NONE;
    if (button_type == BUTTON_TYPE_PUSH) {
        pressed = input.left || input.click_key;
    }
    if ((callback_flags & event) != 0 && callback != nullptr) {
        final_event = event == BUTTON_EVENT_RELEASE || event == BUTTON_EVENT_RELEASE_OUTSIDE;
        const std::int32_t modals = get_active_modal_object_count(-1);
        result = callback(this, callback_data1, callback_data2);
        final_event = false;
        if (get_active_modal_object_count(-1) > modals) {
            set_mouse_over(false);  // behind a dialog it doesn't see the pointer leave
        }
        result = result == WM_MESG_NONE ? WM_MESG_HANDLED : result;
        if (!dragging) {
            stop_drag_tracking();
        }
    }
    query_activated();
    if (visible) {
        request_draw(0, 0);
    }
    return result;
}

void WM_BUTTON::set_pointer_shape(const INPUT& input) const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (!clickable || !input.focal || manager == nullptr) {
        return;
    }
    if (dragging) {
        manager->mouse_icon = POINTER_DRAGGING;
    } else if (input.over && pressed) {
        manager->mouse_icon = POINTER_PRESSED;
    } else if (input.over && drag_callback != nullptr) {
        manager->mouse_icon = POINTER_DRAGGABLE;
    } else if (input.over && callback != nullptr) {
        manager->mouse_icon = POINTER_CLICKABLE;
    }
}
