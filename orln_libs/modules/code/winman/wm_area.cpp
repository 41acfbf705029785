#include "modules/winman/wm_area.h"

WM_AREA::WM_AREA(signed char window_) : WM_MANAGER(1, window_) {
    type_flags |= WMF_MANAGER;
}

void WM_AREA::run_objects_deleting() {
    const WM_SCREEN_INFO::OBJECTS_DELETING function = get_current().objects_deleting;
    if (function != nullptr && page_manager != nullptr) {
        function(*page_manager);
    }
}

void WM_AREA::clear() {
    const bool was_visible = visible;
    run_objects_deleting();
    clear_objects(0, 1);
    visible = was_visible;
    for (WM_SCREEN_INFO& entry : history) {
        entry.clear();
    }
    next_screen.clear();
    current_screen = 0;
    history_count = 1;
    history_target = -1;
    clear_on_change = refresh_now = refresh_next_monitor = change_next_monitor = false;
}
