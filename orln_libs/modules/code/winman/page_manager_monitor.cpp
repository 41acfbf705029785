// One tick of a window.
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"

namespace {

// The mouse as this window sees it during a tick: a synthetic one while a click is simulated, and
// no position while the pointer is over another window of ours. An event that comes in meanwhile,
// as a long job lets it, is kept.
class TICK_MOUSE {
public:
    TICK_MOUSE(signed char window, std::int16_t simulated_x, std::int16_t simulated_y,
               bool simulated_button) {
        simulated = simulated_x != -1 && simulated_y != -1;
        changed = simulated || (MOUSE::window != -1 && MOUSE::window != window);
        if (!changed) {
            return;
        }
        saved_x = MOUSE::x;
        saved_y = MOUSE::y;
        saved_window = shown_window = MOUSE::window;
        saved_time = MOUSE::last_event_time;
        left_was_down = MOUSE::is_down(MOUSE_BUTTON_LEFT);
        MOUSE::x = shown_x = simulated ? simulated_x : std::int16_t{-1};
        MOUSE::y = shown_y = simulated ? simulated_y : std::int16_t{-1};
        if (simulated) {
            MOUSE::window = shown_window = static_cast<char>(window);
            MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, simulated_button);
        }
    }
    ~TICK_MOUSE() {
        if (!changed) {
            return;
        }
        if (simulated) {
            MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, left_was_down);
        }
        if (MOUSE::window == shown_window && MOUSE::x == shown_x && MOUSE::y == shown_y) {
            MOUSE::x = saved_x;
            MOUSE::y = saved_y;
            MOUSE::window = saved_window;
            MOUSE::last_event_time = saved_time;
        }
    }
    TICK_MOUSE(const TICK_MOUSE&) = delete;
    TICK_MOUSE& operator=(const TICK_MOUSE&) = delete;

private:
    bool simulated, changed;
    std::int16_t shown_x = -1, shown_y = -1;
    char shown_window = -1;
    std::int16_t saved_x = -1, saved_y = -1;
    char saved_window = -1;
    std::uint32_t saved_time = 0;
    bool left_was_down = false;
};

// A message that has to be acted on, as opposed to one that only says that something happened.
bool is_action(WM_MESG result) {
    return result == WM_MESG_QUIT || result > WM_MESG_HANDLED;
}

}  // namespace

WM_MESG WM_PAGE_MANAGER::monitor(unsigned char blit) {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return WM_MESG_NONE;
    }
    info->focal_object_monitored = false;
    WM_MESG result = WM_MESG_NONE;
    {
        const TICK_MOUSE mouse(window, simulated_x, simulated_y, simulated_button);
        simulated_x = simulated_y = -1;
        free_right_button(*info);
        if (is_focal()) {
            move_focus_by_keys();
        }
        const bool page_monitors_due = are_page_monitors_due();
        bool handled = false;
        result = run_updates(handled);
        if (result == WM_MESG_NONE) {
            result = areas[0]->update(1);
            result = is_action(result) ? result : WM_MESG_NONE;
        }
        if (!handled && result == WM_MESG_NONE) {
            result = run_input(page_monitors_due);
        }
        const bool acted = result >= WM_MESG_CLOSE_MODAL_DIALOGS;
        result = act_on(result);
        if (!handled && !acted && result == WM_MESG_NONE && is_focal() &&
            !info->focal_object_monitored) {
            keep_focus_reachable();
        }
        if (result != WM_MESG_QUIT) {
            check_for_draw();
        }
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (result != WM_MESG_QUIT && blit && manager != nullptr) {
        manager->blit_window(window, 0);
    }
    return result;
}

// An object that was hidden while it held the right button, or came under a modal one, never sees
// the release and would keep all others from right clicks.
void WM_PAGE_MANAGER::free_right_button(WM_WINDOW_INFO& info) {
    const bool is_down = MOUSE::is_down(MOUSE_BUTTON_RIGHT) || keyboard.get_key_value(KEY_RETURN);
    if (!is_down && !right_was_down) {
        info.right_mouse_object = nullptr;
    }
    right_was_down = is_down;
}

void WM_PAGE_MANAGER::move_focus_by_keys() {
    if (keyboard.peek_code() == KEY_TAB) {
        const bool backward = keyboard.get_key_value(KEY_SHIFT) ||
                              keyboard.get_key_value(KEY_SHIFT_LEFT) ||
                              keyboard.get_key_value(KEY_SHIFT_RIGHT);
        const bool by_areas = keyboard.get_key_value(KEY_CONTROL) != 0;
        keyboard.get_code();
        if (by_areas) {
            backward ? give_focus_to_prev_area() : give_focus_to_next_area();
        } else {
            backward ? give_focus_to_prev_object() : give_focus_to_next_object();
        }
        return;
    }
    if (focus_prev_requested) {
        focus_prev_requested = false;
        give_focus_to_prev_object();
    }
    if (focus_next_requested) {
        focus_next_requested = false;
        give_focus_to_next_object();
    }
}

bool WM_PAGE_MANAGER::are_page_monitors_due() {
    if (monitor_delay_ms <= 0) {
        return true;
    }
    const std::uint32_t now = get_ms_count();
    if (now - last_page_monitor < static_cast<std::uint32_t>(monitor_delay_ms)) {
        return false;
    }
    last_page_monitor = now;
    return true;
}

// `handled` is set when a page changed or an update asked for something: no input in this tick. The
// area that gave the result is current afterwards.
WM_MESG WM_PAGE_MANAGER::run_updates(bool& handled) {
    WM_MESG result = WM_MESG_NONE;
    std::int16_t result_area = current_area;
    for (std::int16_t i = area_count; i-- > 0;) {
        set_current_area(i);
        WM_AREA& area = *current_area_object;
        WM_MESG area_result = WM_MESG_NONE;
        if (area.get_current().is_empty() && !area.next_screen.is_empty()) {
            area_result = use_page_fades ? WM_MESG_FADE_IN_PAGE : WM_MESG_CHANGE_PAGE;
            area.request_draw(0, 0);
            handled = true;
        }
        if (area.refresh_next_monitor) {
            area.refresh_next_monitor = false;
            rebuild_page(area, false);
            handled = true;
        }
        if (area.change_next_monitor) {
            area.change_next_monitor = false;
            change_page(i);
            handled = true;
        }
        if (result == WM_MESG_NONE && area_result == WM_MESG_NONE) {
            area_result = area.update(0);
            check_for_draw();
            area_result = is_action(area_result) ? area_result : WM_MESG_NONE;
            handled = handled || area_result != WM_MESG_NONE;
        }
        if (area_result != WM_MESG_NONE) {
            result = area_result;
            result_area = i;
        }
    }
    if (result != WM_MESG_NONE) {
        set_current_area(result_area);
    }
    return result;
}

WM_MESG WM_PAGE_MANAGER::monitor_current_area(bool page_monitors_due) {
    WM_AREA& area = *current_area_object;
    const WM_SCREEN_INFO::MONITOR page_monitor = area.get_current().monitor;
    WM_MESG result = WM_MESG_NONE;
    if (page_monitors_due && page_monitor != nullptr) {
        result = page_monitor(*this);
    }
    return result == WM_MESG_NONE ? area.monitor() : result;
}

WM_MESG WM_PAGE_MANAGER::run_input(bool page_monitors_due) {
    if (areas[0]->get_active_modal_object_count(-1) > 0) {
        const std::int16_t area = areas[0]->get_active_modal_object_area();
        set_current_area(area < -1 ? -2 - area : area);
        return monitor_current_area(page_monitors_due);
    }
    WM_MESG result = WM_MESG_NONE;
    for (std::int16_t i = area_count; i-- > 0 && result == WM_MESG_NONE;) {
        set_current_area(i);
        if (current_area_object->visible) {
            result = monitor_current_area(page_monitors_due);
        }
    }
    return result;
}

// Does what the message asks for, and yields what is left of it for the application.
WM_MESG WM_PAGE_MANAGER::act_on(WM_MESG result) {
    const std::int32_t area = current_area;
    switch (result) {
        case WM_MESG_CLOSE_MODAL_DIALOGS:
            close_modal_dialogs();
            return result;
        case WM_MESG_REBUILD_AREA:
        case WM_MESG_REBUILD_AREA_CLEAR_MODALS:
            rebuild_page(*current_area_object, result == WM_MESG_REBUILD_AREA_CLEAR_MODALS);
            return WM_MESG_NONE;
        case WM_MESG_REBUILD_ALL_AREAS:
        case WM_MESG_REBUILD_ALL_AREAS_CLEAR_MODALS:
            rebuild_all_pages(result == WM_MESG_REBUILD_ALL_AREAS_CLEAR_MODALS);
            return WM_MESG_NONE;
        case WM_MESG_CLEAR_MODALS:
            areas[0]->clear_objects(1, 0);
            return WM_MESG_NONE;
        case WM_MESG_MIX_TO_PAGE:
            mix_to_page(area);
            return result;
        case WM_MESG_FADE_IN_PAGE:
            fade_in_page(area);
            return result;
        case WM_MESG_FADE_OUT_IN_PAGE:
            fade_out_in_page(area);
            return result;
        case WM_MESG_FADE_OUT_PAGE:
            fade_out_page();
            mark_whole_window();  // it is black now
            [[fallthrough]];
        case WM_MESG_CHANGE_PAGE:
            change_all_pages(area);
            check_for_draw();
            return result;
        default:
            return result;
    }
}
