#include "modules/winman/wm_manager.h"

#include "active_area.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"

WM_MANAGER::WM_MANAGER(unsigned char visible_, signed char window_)
    : WM_SCREEN_OBJECT(visible_, nullptr, nullptr, nullptr, window_) {
}

WM_MANAGER::WM_MANAGER(std::int16_t x_, std::int16_t y_, std::int16_t width_, std::int16_t height_,
                       unsigned char visible_, signed char window_)
    : WM_MANAGER(visible_, window_) {
    x = x_;
    y = y_;
    width = width_;
    height = height_;
}

void WM_MANAGER::init_size() {
    if (width >= 1 && height >= 1) {
        return;
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const WM_WINDOW* of_window = manager != nullptr ? manager->get_window(window) : nullptr;
    if (of_window == nullptr) {
        return;
    }
    const OPEN_GRAPHICS_SIZES size = of_window->get_size_or_minimum();
    width = width < 1 ? static_cast<std::int16_t>(graphics_width(size)) : width;
    height = height < 1 ? static_cast<std::int16_t>(graphics_height(size)) : height;
}

std::int16_t WM_MANAGER::get_width() {
    init_size();
    return width;
}

std::int16_t WM_MANAGER::get_height() {
    init_size();
    return height;
}

void WM_MANAGER::resize(std::int16_t new_width, std::int16_t new_height,
                        unsigned char /*children*/) {
    mark_own_rectangle();
    width = new_width;
    height = new_height;
    request_draw(0, 0);
}

void WM_MANAGER::check_for_redraw() {
    init_size();
    IMAGE* buffer = get_back_buffer(-1);
    const SAVED_ACTIVE_AREA saved(buffer);
    if (buffer != nullptr) {
        buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    }
    WM_SCREEN_OBJECT::check_for_redraw();
}
