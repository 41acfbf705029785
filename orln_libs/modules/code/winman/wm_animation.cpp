#include "modules/winman/wm_animation.h"

#include <algorithm>

#include "../gui/to_short.h"
#include "active_area.h"
#include "click_callback.h"
#include "modules/winman/window_manager.h"
#include "platform/mouse.h"
#include "pointer_shape.h"

namespace {

constexpr double OPAQUE = 255.0;

}  // namespace

WM_ANIMATION::WM_ANIMATION(std::int16_t x_, std::int16_t y_, IMAGE* strip, std::int16_t frames,
                           std::int16_t delay, unsigned char visible_, WM_CALLBACK callback_,
                           void* data1, void* data2, ANIMATION_CALLBACK_TYPE type,
                           signed char window_)
    : WM_SCREEN_OBJECT(visible_, callback_, data1, data2, window_),
      sprite(get_back_buffer(-1), nullptr, frames),
      clickable(callback_ != nullptr),
      frame_delay(static_cast<std::uint16_t>(delay)),
      callback_type(type) {
    type_flags |= WMF_ANIMATION;
    if (strip != nullptr) {
        sheet.copy_pixels_from(*strip);
    }
    sprite.set_sprites(&sheet, frames);
    x = x_;
    y = y_;
    width = sprite.frame_width;
    height = sprite.height;
}

WM_ANIMATION::~WM_ANIMATION() = default;

void WM_ANIMATION::hide(unsigned char modals, unsigned char children) {
    hint.reset();
    WM_SCREEN_OBJECT::hide(modals, children);
}

WM_MESG WM_ANIMATION::update(unsigned char modal_pass) {
    const WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (result != WM_MESG_NONE || modal_pass) {
        return result;
    }
    const auto waited = static_cast<std::int32_t>(now_ms - last_step);  // below 0: a clock put back
    if (!visible || (!playing && !fading_in && !fading_out) ||
        (waited >= 0 && waited < frame_delay)) {
        return WM_MESG_NONE;
    }
    last_step = now_ms;
    sprite.frame = to_short(sprite.frame >= sprite.frames ? 1 : sprite.frame + 1);
    step_fade();
    request_draw(0, 0);
    const bool fades = fading_in || fading_out;
    if (!fades &&
        ((stop_at_first && sprite.frame == 1) || (stop_at_last && sprite.frame == sprite.frames))) {
        playing = stop_at_first = stop_at_last = false;
    }
    return WM_MESG_HANDLED;
}

// A fade takes two rounds of the strip.
void WM_ANIMATION::step_fade() {
    const double step = 256.0 / (2.0 * sprite.frames);
    if (fading_in) {
        alpha = std::min(alpha + step, OPAQUE);
        fading_in = alpha < OPAQUE;
    }
    if (fading_out) {
        alpha = std::max(alpha - step, 0.0);
        fading_out = alpha > 0.0;
    }
}

WM_MESG WM_ANIMATION::monitor() {
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE || !visible) {
        return result;
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const bool over = is_in_it(MOUSE::x, MOUSE::y);
    const bool left = manager != nullptr && manager->is_object_on_focal_window(this) &&
                      MOUSE::is_down(MOUSE_BUTTON_LEFT);
    hint.monitor(over, MOUSE::buttons != 0, MOUSE::x, MOUSE::y);
    if (!over) {
        last_pressed = left;
        return WM_MESG_NONE;
    }
    if (clickable && callback != nullptr) {
        manager->mouse_icon = left ? POINTER_PRESSED : POINTER_CLICKABLE;
    }
    return click(left, MOUSE::x, MOUSE::y);
}

WM_MESG WM_ANIMATION::click(bool left, std::int16_t px, std::int16_t py) {
    const bool changed = left != last_pressed;
    last_pressed = left;
    const bool fires = changed || (left && repeat_while_held);
    const bool wanted = callback_type == ANIMATION_CALLBACK_ON_BOTH ||
                        (callback_type == ANIMATION_CALLBACK_ON_PRESS) == left;
    if (!fires || !wanted || !clickable || callback == nullptr) {
        return WM_MESG_NONE;
    }
    return run_click_callback(*this, px, py);
}

void WM_ANIMATION::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    const SAVED_ACTIVE_AREA saved(buffer);
    buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    sprite.target = buffer;
    sprite.move(to_short(x + (width - sprite.frame_width) / 2),
                to_short(y + (height - sprite.height) / 2), sprite.frame);
    sprite.draw(1, static_cast<unsigned char>(alpha));
}
