#include "modules/winman/wm_window.h"

#include <algorithm>

#include "kvcore/text_field.h"
#include "modules/3d/render_manager_base.h"
#include "modules/frameworks/orln_windowed_application.h"
#include "modules/winman/window_manager.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"

namespace {

constexpr std::int16_t SLIDE_STEP = 2;
constexpr std::uint32_t SLIDE_STEP_MS = 10;

}  // namespace

WM_WINDOW::WM_WINDOW(signed char index_, OPEN_GRAPHICS_SIZES size, OPEN_GRAPHICS_SIZES min,
                     OPEN_GRAPHICS_SIZES extended_min, OPEN_GRAPHICS_SIZES max,
                     unsigned char extended_)
    : max_dimensions(max), extended(extended_ != 0), index(index_) {
    set_size(size);
    set_min_dimensions(min, extended_min);
}

void WM_WINDOW::set_size(OPEN_GRAPHICS_SIZES size) {
    width = static_cast<std::int16_t>(graphics_width(size));
    height = static_cast<std::int16_t>(graphics_height(size));
}

OPEN_GRAPHICS_SIZES WM_WINDOW::get_size_or_minimum() const {
    const OPEN_GRAPHICS_SIZES min = get_min_dimensions();
    return make_graphics_sizes(
        width >= 1 ? static_cast<std::uint16_t>(width) : graphics_width(min),
        height >= 1 ? static_cast<std::uint16_t>(height) : graphics_height(min));
}

void WM_WINDOW::set_min_dimensions(OPEN_GRAPHICS_SIZES min, OPEN_GRAPHICS_SIZES extended_min) {
    min_dimensions = min;
    const std::uint16_t w = graphics_width(extended_min), h = graphics_height(extended_min);
    extended_min_dimensions =
        make_graphics_sizes(w == GRAPHICS_SIZE_NOT_GIVEN ? graphics_width(min) : w,
                            h == GRAPHICS_SIZE_NOT_GIVEN ? graphics_height(min) : h);
}

void WM_WINDOW::set_title(const char* text) {
    KVCORE::copy_text_field(title, text != nullptr ? text : "");
    set_window_title(handle, title);
}

bool WM_WINDOW::open(OPEN_GRAPHICS_SETTINGS& settings) {
    std::int16_t new_width = width, new_height = height;
    void* opened = open_graphics(handle, settings, new_width, new_height);
    if (opened == nullptr) {
        return false;
    }
    handle = opened;
    width = new_width;
    height = new_height;
    state = settings.hidden ? HIDDEN : SHOWN;
    return true;
}

bool WM_WINDOW::open(const char* new_title, OPEN_GRAPHICS_SIZES size, unsigned char full_screen) {
    set_title(new_title);
    OPEN_GRAPHICS_SETTINGS settings;
    settings.title = title;
    settings.size = size;
    settings.full_screen = full_screen != 0;
    settings.main = index == WM_WINDOW_MANAGER::MAIN_WINDOW;
    settings.window_index = static_cast<char>(index);
    settings.minimum_size = get_min_dimensions();
    settings.maximum_size = max_dimensions;
    settings.x = x;
    settings.y = y;
    return open(settings);
}

void WM_WINDOW::close() {
    if (handle != nullptr) {
        // The platform asks for the window's buffer by its handle.
        ::close_window(handle);
        handle = nullptr;
    }
    state = CLOSED;
}

void WM_WINDOW::hide() {
    if (handle != nullptr) {
        ::hide_window(handle);
        state = HIDDEN;
    }
}

void WM_WINDOW::show() {
    if (handle == nullptr) {
        return;
    }
    const bool was_minimised = state == MINIMISED;
    ::show_window(handle);
    state = SHOWN;
    if (was_minimised && restore_callback != nullptr) {
        restore_callback(callback_first, callback_second);
    }
}

void WM_WINDOW::minimise() {
    if (handle == nullptr || state == MINIMISED) {
        return;
    }
    state = MINIMISED;
    ::minimise_window(handle);
    if (minimise_callback != nullptr) {
        minimise_callback(callback_first, callback_second);
    }
}

void WM_WINDOW::move(std::int16_t new_x, std::int16_t new_y) {
    set_coordinates(new_x, new_y);
    if (handle != nullptr) {
        ::move_window(handle, x, y, width, height);
    }
}

void WM_WINDOW::set_coordinates(std::int16_t new_x, std::int16_t new_y) {
    x = new_x;
    y = new_y;
}

void WM_WINDOW::set_target_positions(std::int16_t new_x, std::int16_t new_y) {
    target_x = new_x;
    target_y = new_y;
    target_pending = true;
}

void WM_WINDOW::set_extended(unsigned char on) {
    extended = on != 0;
    const OPEN_GRAPHICS_SIZES min = get_min_dimensions();
    width = std::max(width, static_cast<std::int16_t>(graphics_width(min)));
    height = std::max(height, static_cast<std::int16_t>(graphics_height(min)));
}

void WM_WINDOW::blit(unsigned char wait) {
    if (ORLN_3D::RENDER_MANAGER_BASE* renderer = ORLN_3D::RENDER_MANAGER_BASE::get_instance()) {
        renderer->render_window(*this, wait != 0);
    }
    ORLN_WINDOWED_APPLICATION::first_window_drawn = true;
}

void WM_WINDOW::notify(signed char count) {
    if (count != 0 && handle != nullptr) {
        notify_window(handle, static_cast<unsigned char>(count));
    }
}

std::int16_t WM_WINDOW::step_towards(std::int16_t from, std::int16_t to) {
    return static_cast<std::int16_t>(from < to ? std::min<std::int32_t>(from + SLIDE_STEP, to)
                                               : std::max<std::int32_t>(from - SLIDE_STEP, to));
}

void WM_WINDOW::move_window_to_target_positions() {
    const std::int16_t end_x = target_x == -1 ? x : target_x;
    const std::int16_t end_y = target_y == -1 ? y : target_y;
    while (x != end_x || y != end_y) {
        move(step_towards(x, end_x), step_towards(y, end_y));
        orln_sleep(SLIDE_STEP_MS);
    }
    target_x = target_y = -1;
    target_pending = false;
}

IMAGE* WM_WINDOW::get_back_buffer() const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_back_buffer(index) : nullptr;
}
