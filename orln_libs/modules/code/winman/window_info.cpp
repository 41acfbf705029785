#include "modules/winman/window_info.h"

#include <algorithm>

#include "modules/3d/render_manager_base.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"

WM_WINDOW_INFO::WM_WINDOW_INFO(signed char index, std::int16_t areas, OPEN_GRAPHICS_SIZES size,
                               OPEN_GRAPHICS_SIZES min, OPEN_GRAPHICS_SIZES extended_min,
                               OPEN_GRAPHICS_SIZES max, unsigned char extended)
    : window(std::make_unique<WM_WINDOW>(index, size, min, extended_min, max, extended)) {
    setup_window_data(index, areas);
}

WM_WINDOW_INFO::~WM_WINDOW_INFO() {
    close_window();
}

void WM_WINDOW_INFO::setup_window_data(signed char index, std::int16_t areas) {
    page_manager.reset();
    clear_object_data();
    back_buffer = std::make_unique<IMAGE>();
    back_buffer_data = nullptr;
    page_manager = std::make_unique<WM_PAGE_MANAGER>(areas, KEYBOARD_BUFFER_SIZE, index);
}

void WM_WINDOW_INFO::close_window() {
    ORLN_3D::RENDER_MANAGER_BASE* renderer = ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    const bool is_rendered = renderer != nullptr && window->handle != nullptr;
    if (is_rendered) {
        if (renderer->get_use_3d_rendering()) {
            renderer->remove_window(*window);
        }
        renderer->pause_render_thread();
    }
    window->close();
    page_manager.reset();
    back_buffer.reset();
    back_buffer_data = nullptr;
    clear_object_data();
    if (is_rendered) {
        renderer->resume_render_thread();
    }
}

void WM_WINDOW_INFO::hide_window() {
    window->hide();
    page_manager.reset();
    clear_object_data();
}

void WM_WINDOW_INFO::clear_object_data() {
    focal_object_monitored = false;
    focal_object = right_mouse_object = mouse_wheel_focus = nullptr;
    modal_screen_objects.clear();
    monitor_modals = true;
    active_dialog = active_menu = nullptr;
    is_in_me_region = update_region = WM_REGION();
    pending_count = 0;
}

void WM_WINDOW_INFO::forget_object(WM_SCREEN_OBJECT* object) {
    for (WM_SCREEN_OBJECT** pointer :
         {&focal_object, &right_mouse_object, &mouse_wheel_focus, &active_dialog, &active_menu}) {
        if (*pointer == object) {
            *pointer = nullptr;
        }
    }
    modal_screen_objects.remove_node(object);
    OBJECT_WALK walk(modal_screen_objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* modal = walk.next()) {
        if (modal->parent == object) {
            modal->parent = get_area_of_modal(*modal);
        }
    }
}

WM_AREA* WM_WINDOW_INFO::get_area_of_modal(const WM_SCREEN_OBJECT& modal) const {
    return page_manager != nullptr && modal.area < -1 ? page_manager->get_area(-2 - modal.area)
                                                      : nullptr;
}

WM_REGION WM_WINDOW_INFO::get_whole_window() const {
    return {.top = 0,
            .left = 0,
            .right = static_cast<std::int16_t>(window->width - 1),
            .bottom = static_cast<std::int16_t>(window->height - 1)};
}

bool WM_WINDOW_INFO::cut_to_window(WM_REGION& region) const {
    const WM_REGION whole = get_whole_window();
    region.left = std::max(region.left, whole.left);
    region.top = std::max(region.top, whole.top);
    region.right = std::min(region.right, whole.right);
    region.bottom = std::min(region.bottom, whole.bottom);
    return region.left <= region.right && region.top <= region.bottom;
}

void WM_WINDOW_INFO::add_pending_update_region(WM_REGION region, std::int16_t gap) {
    if (update_region.is_set()) {
        return;
    }
    // A union may lie within another rectangle, or touch further ones: begin again after each.
    for (;;) {
        std::int32_t touched = -1;
        for (std::int32_t i = 0; i < pending_count; ++i) {
            if (pending_regions[i].contains(region)) {
                return;
            }
            if (touched == -1 && region.touches(pending_regions[i], gap)) {
                touched = i;
            }
        }
        if (touched == -1) {
            break;
        }
        region.unite(pending_regions[touched]);
        pending_regions[touched] = pending_regions[--pending_count];
    }
    if (pending_count < MAX_PENDING_REGIONS) {
        pending_regions[pending_count++] = region;
        return;
    }
    pending_regions[0] = get_whole_window();
    pending_count = 1;
}
