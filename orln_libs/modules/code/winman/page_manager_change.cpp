// How an area goes from one page to another.
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"

void WM_PAGE_MANAGER::give_focus_if_none() {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info != nullptr && info->focal_object == nullptr) {
        give_focus_to_next_object();
    }
}

void WM_PAGE_MANAGER::change_all_pages(std::int32_t first) {
    if (get_area(first) == nullptr) {
        return;
    }
    const std::int32_t start = first == -1 ? current_area : first;
    for (std::int32_t i = 0; i < area_count; ++i) {
        change_page((start + i) % area_count);
    }
    set_current_area(start);
}

void WM_PAGE_MANAGER::go_to_page(std::int32_t area) {
    if (get_area(area) != nullptr) {
        change_all_pages(area);
        check_for_draw();
    }
}

void WM_PAGE_MANAGER::rebuild_page(WM_AREA& area, bool clear_modals) {
    area.run_objects_deleting();
    area.clear_objects(clear_modals, 1);
    if (area.get_current().create != nullptr) {
        area.get_current().create(*this);
    }
    give_focus_if_none();
    mark_area(area);
}

void WM_PAGE_MANAGER::rebuild_all_pages(bool clear_modals) {
    const std::int32_t start = current_area;
    for (std::int32_t i = 0; i < area_count; ++i) {
        set_current_area((start + i) % area_count);
        rebuild_page(*current_area_object, clear_modals && i == 0);
    }
    set_current_area(start);
}

// The page on show was chosen again.
void WM_PAGE_MANAGER::refresh_page_now(WM_AREA& area) {
    const bool was_visible = area.visible;
    area.refresh_now = false;
    rebuild_page(area, false);
    area.visible = was_visible;
    check_for_draw();
}

void WM_PAGE_MANAGER::step_to_history_target(WM_AREA& area) {
    const std::int32_t left = area.current_screen;
    if (!area.get_current().keep) {
        area.current_screen = area.history_target;
        remove_history_entry(area, left);
    } else {
        area.current_screen = area.history_target;
    }
    area.history_target = -1;
}

void WM_PAGE_MANAGER::step_to_next_screen(WM_AREA& area) {
    WM_SCREEN_INFO& left = area.get_current();
    if (left == area.next_screen) {
        left.keep = false;
    }
    if (!left.keep) {
        left.make_way_for(area.next_screen.data);  // the page on show may have been chosen again
    } else if (++area.current_screen == WM_AREA::HISTORY_SIZE) {
        --area.current_screen;
        area.history[0].clear();
        for (std::int32_t i = 0; i + 1 < WM_AREA::HISTORY_SIZE; ++i) {
            area.history[i] = area.history[i + 1];
        }
        area.history[WM_AREA::HISTORY_SIZE - 1].reset();
    }
    // Going forward from the middle of the history drops what lay ahead.
    for (std::int32_t i = area.current_screen; i < area.history_count; ++i) {
        area.history[i].clear();
    }
    area.history_count = area.current_screen + 1;
    area.get_current() = area.next_screen;
    area.next_screen.reset();
}

void WM_PAGE_MANAGER::change_page(std::int32_t index) {
    WM_AREA* chosen = get_area(index);
    if (chosen == nullptr) {
        return;
    }
    WM_AREA& area = *chosen;
    set_current_area(area.area);
    if (area.clear_on_change) {
        area.clear();
        mark_area(area);
        return;
    }
    if (area.next_screen.is_empty() && area.history_target == -1) {
        if (area.refresh_now) {
            refresh_page_now(area);
        }
        return;
    }
    const bool was_visible = area.visible, was_requested = area.draw_requested;
    area.hide(0, 1);
    area.run_objects_deleting();
    area.clear_objects(0, 1);
    if (area.history_target != -1) {
        step_to_history_target(area);
    } else {
        step_to_next_screen(area);
    }
    if (area.get_current().create != nullptr) {
        area.get_current().create(*this);
    }
    area.visible = was_visible;
    area.draw_requested = was_requested;
    give_focus_if_none();
    mark_area(area);
    area.refresh_now = area.refresh_next_monitor = false;
}
