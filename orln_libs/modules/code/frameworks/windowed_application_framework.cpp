#include "modules/frameworks/windowed_application_framework.h"

#include "modules/3d/render_manager_base.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/window_platform.h"

OPEN_GRAPHICS_SIZES WINDOWED_APPLICATION_FRAMEWORK::initial_min_window_dimensions =
    make_graphics_sizes(1024, 758);

const DISPLAY_SETTINGS WINDOWED_APPLICATION_FRAMEWORK::default_display_settings = {0, 32, 1024,
                                                                                   768};

namespace {

using ORLN_3D::RENDER_MANAGER_BASE;

// The slot of a handle, or the slot that is being opened.
signed char find_index(const void* handle) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr && handle != nullptr ? manager->get_window_index(handle)
                                                   : static_cast<signed char>(-1);
}

// The window that has this handle; null for any other.
WM_WINDOW* find_window(const void* handle) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    WM_WINDOW* window = manager != nullptr ? manager->get_window(find_index(handle)) : nullptr;
    return window != nullptr && window->handle == handle ? window : nullptr;
}

}  // namespace

WINDOWED_APPLICATION_FRAMEWORK::WINDOWED_APPLICATION_FRAMEWORK(signed char depth,
                                                               OPEN_GRAPHICS_SIZES minimum)
    : colour_depth(depth), minimum_window_size(minimum) {
    WM_WINDOW_MANAGER::create();
    update_initial_min_window_dimensions();
    global_gui_skin = std::make_unique<GUI_SKIN>();
    set_window_events(this);
}

WINDOWED_APPLICATION_FRAMEWORK::~WINDOWED_APPLICATION_FRAMEWORK() {
    global_gui_skin.reset();
    WM_WINDOW_MANAGER::destroy();
    if (get_window_events() == this) {
        set_window_events(nullptr);
    }
}

WINDOWED_APPLICATION_FRAMEWORK* WINDOWED_APPLICATION_FRAMEWORK::get_windowed_instance() {
    return dynamic_cast<WINDOWED_APPLICATION_FRAMEWORK*>(ORLN_APPLICATION::get_instance());
}

void WINDOWED_APPLICATION_FRAMEWORK::update_initial_min_window_dimensions() {
    minimum_window_size = initial_min_window_dimensions;
}

// --- What happened ---

void WINDOWED_APPLICATION_FRAMEWORK::handle_window_restored(void* window) {
    WM_WINDOW* restored = find_window(window);
    if (restored != nullptr &&
        (restored->state == WM_WINDOW::HIDDEN || restored->state == WM_WINDOW::MINIMISED)) {
        restored->show();
    }
}

void WINDOWED_APPLICATION_FRAMEWORK::handle_window_minimised(void* window) {
    WM_WINDOW* minimised = find_window(window);
    if (minimised == nullptr) {
        return;
    }
    if (WM_WINDOW_MANAGER::get_instance()->minimize_to_tray) {
        minimised->hide();
    } else {
        minimised->minimise();
    }
}

void WINDOWED_APPLICATION_FRAMEWORK::handle_window_resized(void* window, OPEN_GRAPHICS_SIZES size) {
    WM_WINDOW* resized = find_window(window);
    if (!first_window_drawn || resized == nullptr || resized->get_size() == size) {
        return;
    }
    resized->set_size(size);
    if (RENDER_MANAGER_BASE* renderer = RENDER_MANAGER_BASE::get_instance()) {
        renderer->resize_window(*resized);
    }
    window_painted = false;
}

// The size of the desktop is asked for wherever it is needed.
void WINDOWED_APPLICATION_FRAMEWORK::handle_desktop_size_changed(OPEN_GRAPHICS_SIZES /*size*/) {
}

void WINDOWED_APPLICATION_FRAMEWORK::handle_paint_window(void* window, unsigned char blit) {
    WM_WINDOW* painted = find_window(window);
    if (window_painted || painted == nullptr || (!blit && abort_window_redraw())) {
        return;
    }
    const signed char index = painted->index;
    WM_WINDOW_INFO* info = WM_WINDOW_MANAGER::get_instance()->get_window_info(index);
    WM_PAGE_MANAGER* pages = info->page_manager.get();
    if (pages == nullptr) {
        return;
    }
    const std::int16_t width = painted->width, height = painted->height;
    window_painted = true;
    if (pages->background.width == width && pages->background.height == height) {
        return;
    }
    const IMAGE& background = pages->get_background(0);
    if (blit) {
        painted->blit(0);
    } else if (IMAGE* buffer = info->back_buffer.get()) {
        lock_backbuffer(index, ORLN_3D::THREAD_ID_MAIN, 1);
        create_back_buffer(buffer, width, height);
        background.put(0, 0, buffer, IMAGE_COPY_SOLID);
        buffer->mark_dirty_area(0, 0, width - 1, height - 1);
        unlock_backbuffer(index);
    }
    pages->handle_resize(width, height);
    initialize_areas(1, index);
    for (std::int32_t area = 0; area < pages->get_area_count(); ++area) {
        pages->refresh_page_next_monitor(area);
    }
}

void WINDOWED_APPLICATION_FRAMEWORK::handle_window_moved(void* window, std::int16_t x,
                                                         std::int16_t y) {
    WM_WINDOW* moved = find_window(window);
    if (moved != nullptr &&
        (moved->state == WM_WINDOW::CLOSED || moved->state == WM_WINDOW::SHOWN)) {
        moved->set_coordinates(x, y);
    }
}

void WINDOWED_APPLICATION_FRAMEWORK::handle_window_closed(void* window) {
    const WM_WINDOW* closed = find_window(window);
    if (closed == nullptr || closed->index == WM_WINDOW_MANAGER::MAIN_WINDOW) {
        return;
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (closed->index == WM_WINDOW_MANAGER::ALERTS_WINDOW) {
        manager->remove_window(closed->index);
    } else {
        manager->close_window(closed->index);
    }
}

// --- What the windows need to know ---

OPEN_GRAPHICS_SIZES WINDOWED_APPLICATION_FRAMEWORK::get_window_minimum_size(void* window) {
    const signed char index = find_index(window);
    return index != -1 ? WM_WINDOW_MANAGER::get_instance()->get_min_dimensions(index)
                       : NO_GRAPHICS_SIZES;
}

OPEN_GRAPHICS_SIZES WINDOWED_APPLICATION_FRAMEWORK::get_window_maximum_size(void* window) {
    const signed char index = find_index(window);
    return index != -1 ? WM_WINDOW_MANAGER::get_instance()->get_max_dimensions(index)
                       : NO_GRAPHICS_SIZES;
}

bool WINDOWED_APPLICATION_FRAMEWORK::lock_backbuffer(int index, int thread, unsigned char wait) {
    RENDER_MANAGER_BASE* renderer = RENDER_MANAGER_BASE::get_instance();
    return renderer == nullptr ||
           renderer->lock_backbuffer(index, static_cast<ORLN_3D::THREAD_ID>(thread), wait);
}

void WINDOWED_APPLICATION_FRAMEWORK::unlock_backbuffer(int index) {
    if (RENDER_MANAGER_BASE* renderer = RENDER_MANAGER_BASE::get_instance()) {
        renderer->unlock_backbuffer(index);
    }
}

void WINDOWED_APPLICATION_FRAMEWORK::set_focal_window(void* window) {
    if (WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance()) {
        manager->set_window_as_focal_window(window);
    }
}

void* WINDOWED_APPLICATION_FRAMEWORK::get_focal_window() {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_window_handle(manager->get_focal_window()) : nullptr;
}

IMAGE* WINDOWED_APPLICATION_FRAMEWORK::get_window_backbuffer(void* window) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_back_buffer(find_index(window)) : nullptr;
}

IMAGE* WINDOWED_APPLICATION_FRAMEWORK::get_backbuffer_from_index(char index) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_back_buffer(static_cast<signed char>(index)) : nullptr;
}

void* WINDOWED_APPLICATION_FRAMEWORK::get_data_for_back_buffer(IMAGE* back_buffer) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr && back_buffer != nullptr
               ? manager->get_back_buffer_data(manager->get_window_index(back_buffer))
               : nullptr;
}

void WINDOWED_APPLICATION_FRAMEWORK::set_data_for_back_buffer(IMAGE* back_buffer, void* data) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager != nullptr && back_buffer != nullptr) {
        manager->set_back_buffer_data(manager->get_window_index(back_buffer), data);
    }
}

char WINDOWED_APPLICATION_FRAMEWORK::get_window_index(void* window) {
    return static_cast<char>(find_index(window));
}

bool WINDOWED_APPLICATION_FRAMEWORK::get_is_full_screen() {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr && manager->display_mode == WM_WINDOW_MANAGER::FULL_SCREEN;
}

void WINDOWED_APPLICATION_FRAMEWORK::set_is_full_screen(unsigned char on) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager != nullptr && (on != 0) != get_is_full_screen()) {
        manager->display_mode =
            on ? WM_WINDOW_MANAGER::FULL_SCREEN : WM_WINDOW_MANAGER::SEVERAL_WINDOWS;
    }
}

bool WINDOWED_APPLICATION_FRAMEWORK::is_floating_window(char index) {
    return WM_WINDOW_MANAGER::is_borderless_window(static_cast<signed char>(index));
}

bool WINDOWED_APPLICATION_FRAMEWORK::is_handle_to_floating_window(void* window) {
    return WM_WINDOW_MANAGER::is_borderless_window(find_index(window));
}

bool WINDOWED_APPLICATION_FRAMEWORK::is_display_mode_suitable(std::int16_t refresh_rate,
                                                              std::int16_t depth,
                                                              std::int16_t width,
                                                              std::int16_t height) {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager == nullptr || depth != 32 || width < graphics_width(minimum_window_size) ||
        height < graphics_height(minimum_window_size)) {
        return false;
    }
    const DISPLAY_SETTINGS asked = {refresh_rate, depth, width, height};
    for (std::int32_t i = 0; const DISPLAY_SETTINGS* known = manager->get_display_setting(i); ++i) {
        if (*known == asked) {
            return false;
        }
    }
    return true;
}

DISPLAY_SETTINGS WINDOWED_APPLICATION_FRAMEWORK::get_display_settings() {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const DISPLAY_SETTINGS* current =
        manager != nullptr ? manager->get_display_setting(manager->current_display_setting)
                           : nullptr;
    return current != nullptr ? *current : default_display_settings;
}

bool WINDOWED_APPLICATION_FRAMEWORK::abort_window_redraw() {
    return global_gui_skin == nullptr || !global_gui_skin->is_loaded();
}
