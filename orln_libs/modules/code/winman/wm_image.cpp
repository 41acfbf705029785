#include "modules/winman/wm_image.h"

#include "../gui/to_short.h"
#include "active_area.h"
#include "click_callback.h"
#include "modules/winman/focus_tools.h"
#include "modules/winman/window_manager.h"
#include "platform/mouse.h"
#include "pointer_shape.h"

WM_IMAGE::WM_IMAGE(std::int16_t x_, std::int16_t y_, std::int16_t width_, std::int16_t height_,
                   unsigned char visible_, WM_CALLBACK callback_, void* data1, void* data2,
                   unsigned char mode, signed char window_)
    : WM_SCREEN_OBJECT(visible_, callback_, data1, data2, window_), click_mode(mode) {
    type_flags |= WMF_IMAGE;
    x = x_;
    y = y_;
    width = width_;
    height = height_;
}

WM_IMAGE::~WM_IMAGE() = default;

void WM_IMAGE::hide(unsigned char modals, unsigned char children) {
    hint.reset();
    mouse_over_now = false;
    WM_SCREEN_OBJECT::hide(modals, children);
}

void WM_IMAGE::take_size() {
    if (!has_size() && image.width > 0 && image.height > 0) {
        width = image.width;
        height = image.height;
    }
}

std::int16_t WM_IMAGE::get_width() {
    take_size();
    return width;
}

std::int16_t WM_IMAGE::get_height() {
    take_size();
    return height;
}

void WM_IMAGE::resize(std::int16_t new_width, std::int16_t new_height, unsigned char draw) {
    if (new_width == width && new_height == height) {
        return;
    }
    WM_SCREEN_OBJECT::resize(new_width, new_height, draw);
    if (auto_resize && has_size() && image.width > 0 && image.height > 0) {
        image.resize(width, height, 1);
    }
}

WM_MESG WM_IMAGE::monitor() {
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE || !visible) {
        return result;
    }
    take_size();
    const bool over = is_in_it(MOUSE::x, MOUSE::y);
    if (over != mouse_over_now) {
        mouse_over_now = over;
        request_draw(0, 0);
    }
    hint.monitor(over, MOUSE::buttons != 0, MOUSE::x, MOUSE::y);
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const bool focal = manager != nullptr && manager->is_object_on_focal_window(this);
    const bool left = focal && MOUSE::is_down(MOUSE_BUTTON_LEFT);
    if (over && callback != nullptr) {
        manager->mouse_icon = left ? POINTER_PRESSED : POINTER_CLICKABLE;
    }
    // The keyboard presses in one tick and releases in the next.
    const bool key_before = click_key_was_down;
    click_key_was_down = has_focus() && take_click_key(*this);
    if (click_key_was_down || key_before) {
        return click(click_key_was_down, to_short(x + width / 2), to_short(y + height / 2));
    }
    if (!over) {
        last_pressed = left;
        return WM_MESG_NONE;
    }
    return click(left, MOUSE::x, MOUSE::y);
}

WM_MESG WM_IMAGE::click(bool left, std::int16_t px, std::int16_t py) {
    const bool changed = left != last_pressed;
    last_pressed = left;
    if (changed && left) {
        take_focus(0);
    }
    const unsigned char event = left ? IMAGE_CLICK_ON_PRESS : IMAGE_CLICK_ON_RELEASE;
    const bool fires = changed || (left && repeat_while_held);
    if (!fires || (click_mode & event) == 0 || callback == nullptr) {
        return WM_MESG_NONE;
    }
    return run_click_callback(*this, px, py);
}

void WM_IMAGE::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    if (!has_size()) {
        take_size();
    } else if (auto_resize && image.width > 0 && image.height > 0) {
        if (image.width != width || image.height != height) {
            image.resize(width, height, 1);
        }
    } else if (auto_resize) {
        image.reset(width, height);
    }
    const SAVED_ACTIVE_AREA saved(buffer);
    buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    image.put(x + (width - image.width) / 2, y + (height - image.height) / 2, buffer);
    const bool focused = has_focus();
    if (overlay_colour.is_set()) {
        if (focused || mouse_over_now) {
            buffer->fill_rect(x, y, x + width - 1, y + height - 1, overlay_colour, 1);
        }
    } else if (focused) {
        draw_focus_frame(*this, outline_colour.is_set() ? outline_colour : COLOUR_WHITE);
    }
}
