// Areas, the choice of pages and the geometry. The tick is in page_manager_monitor.cpp, changes of
// pages in page_manager_change.cpp, drawing in page_manager_draw.cpp, the focus in
// page_manager_focus.cpp.
#include "modules/winman/page_manager.h"

#include <new>

#include "control_failure.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"

std::int16_t WM_PAGE_MANAGER::monitor_delay_ms = 0;

WM_PAGE_MANAGER::WM_PAGE_MANAGER(std::int16_t number_of_areas, std::int32_t keyboard_buffer,
                                 signed char window_)
    : window(window_) {
    if (number_of_areas < 1) {
        stop_on_control_failure("WM_PAGE_MANAGER::WM_PAGE_MANAGER() - invalid number of areas");
    }
    try {
        areas.reserve(static_cast<std::size_t>(number_of_areas));
    } catch (const std::bad_alloc&) {
        stop_on_control_failure("WM_PAGE_MANAGER::WM_PAGE_MANAGER() - unable to allocate areas");
    }
    for (std::int16_t i = 0; i < number_of_areas; ++i) {
        std::unique_ptr<WM_AREA> area(new (std::nothrow) WM_AREA(window));
        if (area == nullptr) {
            stop_on_control_failure("WM_PAGE_MANAGER::WM_PAGE_MANAGER() - unable to allocate area");
        }
        area->area = i;
        area->page_manager = this;
        areas.push_back(std::move(area));
    }
    area_count = number_of_areas;
    current_area_object = areas[0].get();
    keyboard.set_buffer_sz(keyboard_buffer);
}

WM_PAGE_MANAGER::~WM_PAGE_MANAGER() {
    shutdown();
    for (const auto& area : areas) {
        area->clear();
    }
}

void WM_PAGE_MANAGER::shutdown() {
    for (std::int16_t i = 0; i < area_count; ++i) {
        WM_AREA& area = *areas[static_cast<std::size_t>(i)];
        set_current_area(i);
        area.hide(0, 1);
        area.run_objects_deleting();
        area.clear_objects(0, 1);
        area.get_current().clear();
    }
    areas[0]->clear_objects(1, 0);
}

WM_WINDOW_INFO* WM_PAGE_MANAGER::get_window_info() const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_window_info(window) : nullptr;
}

bool WM_PAGE_MANAGER::is_focal() const {
    return WM_WINDOW_MANAGER::get_instance() != nullptr &&
           WM_WINDOW_MANAGER::get_instance()->is_object_on_focal_window(areas[0].get());
}

// --- Areas ---

WM_AREA* WM_PAGE_MANAGER::get_area(std::int32_t area) const {
    if (area == -1) {
        return current_area_object;
    }
    return area >= 0 && area < area_count ? areas[static_cast<std::size_t>(area)].get() : nullptr;
}

void WM_PAGE_MANAGER::set_current_area(std::int32_t area) {
    if (area >= 0 && area < area_count) {
        current_area = static_cast<std::int16_t>(area);
        current_area_object = areas[static_cast<std::size_t>(area)].get();
    }
}

// --- Choosing the next page ---

void WM_PAGE_MANAGER::set_next_page(std::int32_t area, WM_SCREEN_INFO::CREATE create,
                                    WM_SCREEN_INFO::DESTROY destroy, void* data,
                                    WM_SCREEN_INFO::MONITOR page_monitor, unsigned char keep,
                                    std::uint32_t unique,
                                    WM_SCREEN_INFO::OBJECTS_DELETING objects_deleting) {
    WM_AREA* chosen = get_area(area);
    if (create == nullptr || chosen == nullptr) {
        return;
    }
    set_current_area(chosen->area);
    WM_SCREEN_INFO& next = chosen->next_screen;
    next.make_way_for(data);
    next.create = create;
    next.destroy = destroy;
    next.monitor = page_monitor;
    next.objects_deleting = objects_deleting;
    next.data = data;
    next.keep = keep != 0;
    if (unique != 0) {
        next.unique = unique;
    }
    chosen->history_target = -1;
}

void WM_PAGE_MANAGER::set_next_page_to_history(std::int32_t index, std::int32_t area) {
    WM_AREA* chosen = get_area(area);
    if (chosen == nullptr || index < 0 || index >= chosen->history_count) {
        return;
    }
    if (index == chosen->current_screen) {
        chosen->refresh_now = true;
        return;
    }
    chosen->next_screen.clear();
    chosen->history_target = index;
}

// The nearest entry in that direction whose `unique` isn't the current one's, or -1.
std::int32_t WM_PAGE_MANAGER::find_unique(const WM_AREA* area, std::int32_t step) const {
    if (area == nullptr) {
        return -1;
    }
    const std::uint32_t current = area->get_current().unique;
    std::int32_t index = area->current_screen + step;
    while (index >= 0 && index < area->history_count && area->history[index].unique == current) {
        index += step;
    }
    return index < area->history_count ? index : -1;
}

void WM_PAGE_MANAGER::set_next_page_next_unique(std::int32_t area) {
    set_next_page_to_history(find_unique(get_area(area), 1), area);
}

void WM_PAGE_MANAGER::set_next_page_back_unique(std::int32_t area) {
    set_next_page_to_history(find_unique(get_area(area), -1), area);
}

bool WM_PAGE_MANAGER::is_back_unique_valid(std::int32_t area) const {
    const std::int32_t index = find_unique(get_area(area), -1);
    return index >= 0 && !get_area(area)->history[index].is_empty();
}

bool WM_PAGE_MANAGER::is_next_unique_valid(std::int32_t area) const {
    const std::int32_t index = find_unique(get_area(area), 1);
    return index >= 0 && !get_area(area)->history[index].is_empty();
}

void* WM_PAGE_MANAGER::get_page_data_from_history(std::int32_t index, std::int32_t area) const {
    const WM_AREA* chosen = get_area(area);
    return chosen != nullptr && index >= 0 && index < chosen->history_count
               ? chosen->history[index].data
               : nullptr;
}

bool WM_PAGE_MANAGER::is_page_data_valid(const void* data) const {
    for (const auto& area : areas) {
        if (!area->next_screen.is_empty() && area->next_screen.data == data) {
            return true;
        }
        for (std::int32_t i = 0; i < area->history_count; ++i) {
            if (!area->history[i].is_empty() && area->history[i].data == data) {
                return true;
            }
        }
    }
    return false;
}

// Destroys an entry other than the current one and closes the gap.
void WM_PAGE_MANAGER::remove_history_entry(WM_AREA& area, std::int32_t index) {
    area.history[index].clear();
    for (std::int32_t i = index; i + 1 < area.history_count; ++i) {
        area.history[i] = area.history[i + 1];
    }
    area.history[--area.history_count].reset();
    area.current_screen -= index < area.current_screen ? 1 : 0;
    area.history_target -= index < area.history_target ? 1 : 0;
}

void WM_PAGE_MANAGER::delete_page_from_history(std::int32_t index, std::int32_t area) {
    WM_AREA* chosen = get_area(area);
    if (chosen == nullptr || index < 0 || index >= chosen->history_count ||
        index == chosen->current_screen) {
        return;
    }
    if (index == chosen->history_target) {
        chosen->history_target = -1;
    }
    remove_history_entry(*chosen, index);
}

void WM_PAGE_MANAGER::clear_history(std::int32_t area) {
    WM_AREA* chosen = get_area(area);
    if (chosen == nullptr) {
        return;
    }
    chosen->history_target = -1;
    for (std::int32_t i = chosen->history_count - 1; i >= 0; --i) {
        if (i != chosen->current_screen) {
            remove_history_entry(*chosen, i);
        }
    }
    chosen->get_current().keep = false;
}

void WM_PAGE_MANAGER::refresh_page_next_monitor(std::int32_t area) {
    WM_AREA* chosen = get_area(area);
    const WM_WINDOW_INFO* info = get_window_info();
    WM_SCREEN_OBJECT* dialog = info != nullptr ? info->active_dialog : nullptr;
    if (chosen != nullptr && (dialog == nullptr || !dialog->defer_page_refresh())) {
        chosen->refresh_next_monitor = true;
    }
}

void WM_PAGE_MANAGER::setup_page(WM_SCREEN_INFO& page) {
    // The function may change what `page` lies in.
    const WM_SCREEN_INFO::CREATE create = page.create;
    if (create != nullptr) {
        create(*this);
        give_focus_if_none();
    }
}

// --- Geometry ---

void WM_PAGE_MANAGER::get_window_size(std::int16_t& width, std::int16_t& height) const {
    width = height = 0;
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || info->window == nullptr) {
        return;
    }
    const OPEN_GRAPHICS_SIZES size = info->window->get_size_or_minimum();
    width = static_cast<std::int16_t>(graphics_width(size));
    height = static_cast<std::int16_t>(graphics_height(size));
}

void WM_PAGE_MANAGER::get_popup_area(std::int16_t& x1, std::int16_t& y1, std::int16_t& x2,
                                     std::int16_t& y2) const {
    std::int16_t width = 0, height = 0;
    get_window_size(width, height);
    x1 = y1 = 0;
    x2 = static_cast<std::int16_t>(width - 1);
    y2 = static_cast<std::int16_t>(height - 1);
}

void WM_PAGE_MANAGER::mark_area(WM_AREA& area) {
    area.mark_redraw_subarea(
        area.x, area.y, static_cast<std::int16_t>(area.x + area.get_width() - 1),
        static_cast<std::int16_t>(area.y + area.get_height() - 1), WM_SCREEN_OBJECT::REDRAW_GAP);
}

void WM_PAGE_MANAGER::mark_whole_window() {
    areas[0]->mark_entire_redraw_area();
}

void WM_PAGE_MANAGER::handle_resize(std::int16_t width, std::int16_t height) {
    for (std::size_t i = areas.size(); i-- > 0;) {
        WM_AREA& area = *areas[i];
        mark_area(area);
        area.width = width;
        area.height = height;
        if (area.visible) {
            area.request_draw(0, 0);
            mark_area(area);
        }
    }
}

WM_SCREEN_OBJECT* WM_PAGE_MANAGER::find_object_at_pos(std::int16_t x, std::int16_t y) {
    WM_SCREEN_OBJECT* first_area = nullptr;
    for (std::size_t i = areas.size(); i-- > 0;) {
        WM_SCREEN_OBJECT* found = areas[i]->find_object_at_pos(x, y);
        if (found != nullptr && found != areas[i].get()) {
            return found;
        }
        first_area = first_area == nullptr ? found : first_area;
    }
    return first_area;
}

void WM_PAGE_MANAGER::close_modal_dialogs() {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return;
    }
    OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* modal = walk.next()) {
        if (modal->type_flags & WMF_DIALOG) {
            modal->start_closing();
        }
    }
}
