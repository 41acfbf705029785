// Life, geometry and input of WM_SCROLLBAR.
#include "modules/winman/wm_scrollbar.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "../gui/to_short.h"
#include "control_failure.h"
#include "modules/gui/parameter.h"
#include "modules/winman/object_hint.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

std::uint32_t WM_SCROLLBAR::button_auto_repeat_rate = 60;
std::uint32_t WM_SCROLLBAR::button_auto_repeat_threshhold = 500;

namespace {

// Image boxes from a folder are kept in the cache.
constexpr unsigned char CACHE_FLAGS = 8;
// The file suffixes of the images from STYLE_BOX_BAR on.
constexpr const char* SUFFIXES[] = {"_bar",           "_bar_disabled",  "_bar_over",
                                    "_slider_up",     "_slider_down",   "_slider_disabled",
                                    "_slider_over",   "_less_up",       "_less_down",
                                    "_less_disabled", "_less_over",     "_more_up",
                                    "_more_down",     "_more_disabled", "_more_over"};

bool is_number(const PARAMETER& variable) {
    return variable.type >= PARAMETER::TYPE_CHAR && variable.type <= PARAMETER::TYPE_DOUBLE;
}

double get_range(const PARAMETER& variable) {
    return variable.get_double(variable.max) - variable.get_double(variable.min);
}

COLOUR first_set(COLOUR choice, COLOUR otherwise) {
    return choice.is_set() ? choice : otherwise;
}

}  // namespace

// --- Life ---

WM_SCROLLBAR::WM_SCROLLBAR(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                           PARAMETER* variable, const WM_STYLE_SET& style, WM_CALLBACK callback_,
                           void* data1, void* data2, signed char window_,
                           MOVEMENT_CALLBACK movement, const char* hint_text)
    : WM_SCREEN_OBJECT(style.visible, callback_, data1, data2, window_),
      bar(style.bg_colour),
      slider(first_set(style.highlight_colour, style.fg_colour)),
      text(style.fg_colour),
      outline(first_set(outline_colour, style.fg_colour)),
      draw_flags(style.has_flag(STYLE_DONT_RESIZE_IMAGE) ? DONT_RESIZE_IMAGE : 0),
      movement_callback(movement) {
    type_flags |= WMF_SCROLLBAR;
    allowed_focus = true;
    for (IMAGE_BOX& box : images) {
        box.cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
    }
    const bool horizontal = style.has_flag(STYLE_SB_HORIZONTAL);
    const bool buttons = style.has_flag(STYLE_SB_WITH_BUTTONS);
    type = horizontal ? (buttons ? SCROLLBAR_HORIZONTAL_WITH_BUTTONS : SCROLLBAR_HORIZONTAL)
                      : (buttons ? SCROLLBAR_VERTICAL_WITH_BUTTONS : SCROLLBAR_VERTICAL);
    if (style.image_filename != nullptr) {
        set_images(style.image_path, style.image_filename, &style);
    }
    setup(x1, y1, x2, y2, type, variable, to_short(style.scrollbar_slider_width),
          to_short(style.scrollbar_button_width));
    set_hint_text(hint_text);
}

WM_SCROLLBAR::~WM_SCROLLBAR() = default;

void WM_SCROLLBAR::setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                         SCROLLBAR_TYPE bar_type, PARAMETER* variable, std::int16_t slider_length,
                         std::int16_t button_length) {
    if (variable != nullptr && !is_number(*variable)) {
        stop_on_control_failure("WM_SCROLLBAR::setup() - slew var invalid type");
    }
    if (variable == nullptr || get_range(*variable) <= 0) {
        stop_on_control_failure("WM_SCROLLBAR::setup() - slew var invalid");
    }
    type = bar_type;
    slew_var = variable;
    x = x1;
    y = y1;
    width = to_short(x2 - x1 + 1);
    height = to_short(y2 - y1 + 1);
    slider_size = std::max(slider_length, MIN_SLIDER_SIZE);
    button_size = std::max<std::int16_t>(button_length, 0);
    last_value = slew_var->get_double(slew_var->value);
    last_left = MOUSE::is_down(MOUSE_BUTTON_LEFT);  // a press that is under way isn't for the bar
    set_travel();
}

std::int16_t WM_SCROLLBAR::get_max_travel() const {
    const std::int32_t length = is_vertical() ? height : width;
    return to_short(std::max(length - (has_buttons() ? 2 * button_size : 0), 0));
}

void WM_SCROLLBAR::set_travel() {
    const std::int32_t button = has_buttons() ? button_size : 0;
    switch (type) {
        case SCROLLBAR_HORIZONTAL:
        case SCROLLBAR_HORIZONTAL_WITH_BUTTONS:
            start = to_short(x + slider_size + button);
            break;
        case SCROLLBAR_VERTICAL:
        case SCROLLBAR_VERTICAL_WITH_BUTTONS:
            start = to_short(y + button);
            break;
        default:
            stop_on_control_failure("WM_SCROLLBAR::set_travel() - slew var invalid");
    }
    travel = std::max(get_max_travel() - slider_size, 0);
    mark_own_rectangle();
}

void WM_SCROLLBAR::set_hint_text(const char* hint_text) {
    if (hint == nullptr) {
        if (hint_text == nullptr) {
            return;
        }
        hint = std::make_unique<OBJECT_HINT>(*this);
    }
    hint->set_text(hint_text);
}

void WM_SCROLLBAR::clear_images() {
    for (IMAGE_BOX& box : images) {
        box.clear_images();
    }
}

bool WM_SCROLLBAR::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    clear_images();
    for (int i = 0; base != nullptr && i < IMAGE_COUNT; ++i) {
        // Without end buttons theirs aren't looked for.
        if (i >= STYLE_BOX_LESS_UP - STYLE_BOX_BAR && !has_buttons()) {
            break;
        }
        if (style != nullptr && style->images_loaded) {
            if (const IMAGE_BOX* box = style->get_box(static_cast<STYLE_BOX>(STYLE_BOX_BAR + i))) {
                images[i] = *box;
            }
        } else {
            images[i].load_images(path, (std::string(base) + SUFFIXES[i]).c_str(), CACHE_FLAGS);
        }
    }
    mark_own_rectangle();
    return is_graphical();
}

bool WM_SCROLLBAR::is_graphical() const {
    return images[0].are_images_valid() &&
           images[STYLE_BOX_SLIDER_UP - STYLE_BOX_BAR].are_images_valid();
}

// --- Where the pieces stand ---

std::int16_t WM_SCROLLBAR::get_slider_position() const {
    const double range = get_range(*slew_var);
    if (range <= 0) {
        return start;  // the owner has taken the range away for now
    }
    const double value = slew_var->get_double(slew_var->value);
    const double done = is_vertical() ? slew_var->get_double(slew_var->max) - value
                                      : value - slew_var->get_double(slew_var->min);
    // The owner may have put the value outside its range.
    return to_short(start +
                    static_cast<std::int32_t>(travel * std::clamp(done, 0.0, range) / range));
}

// A piece along the axis, across the whole breadth.
WM_REGION WM_SCROLLBAR::get_region_along(std::int32_t from, std::int32_t length) const {
    WM_REGION region;
    region.left = is_vertical() ? x : to_short(from);
    region.right = to_short(is_vertical() ? x + width - 1 : from + length - 1);
    region.top = is_vertical() ? to_short(from) : y;
    region.bottom = to_short(is_vertical() ? from + length - 1 : y + height - 1);
    return region;
}

WM_REGION WM_SCROLLBAR::get_slider_region() const {
    const std::int32_t position = get_slider_position();
    return get_region_along(is_vertical() ? position : position - slider_size, slider_size);
}

WM_REGION WM_SCROLLBAR::get_button_region(bool more) const {
    const std::int32_t first = is_vertical() ? y : x;
    const std::int32_t length = is_vertical() ? height : width;
    return get_region_along(more ? first + length - button_size : first, button_size);
}

WM_SCROLLBAR::PLACE WM_SCROLLBAR::find_place(std::int16_t px, std::int16_t py) {
    if (!is_in_me(px, py)) {
        return NOWHERE;
    }
    if (has_buttons() && get_button_region(false).contains(px, py)) {
        return ON_LESS;
    }
    if (has_buttons() && get_button_region(true).contains(px, py)) {
        return ON_MORE;
    }
    const WM_REGION region = get_slider_region();
    if (region.contains(px, py)) {
        return ON_SLIDER;
    }
    return (is_vertical() ? py < region.top : px < region.left) ? ON_BAR_BEFORE : ON_BAR_BEHIND;
}

// --- The value ---

bool WM_SCROLLBAR::set_value(double value) {
    const double old = slew_var->get_double(slew_var->value);
    const auto up_to_limit = [this](double number) {
        return limit != -1 ? std::min<double>(number, limit) : number;
    };
    const auto store = [](PARAMETER& variable, double number) {
        // Whole numbers don't go towards 0, which would favour one direction.
        if (variable.type <= PARAMETER::TYPE_LONG) {
            number = std::clamp<double>(number, INT32_MIN, INT32_MAX);
            variable.set(variable.value, static_cast<std::int32_t>(std::lround(number)));
        } else {
            variable.set(variable.value, number);
        }
    };
    store(*slew_var, up_to_limit(value));
    const double range = get_range(*slew_var);
    if (linked_var != nullptr && is_number(*linked_var) && get_range(*linked_var) > 0 &&
        range > 0) {
        const double minimum = slew_var->get_double(slew_var->min);
        const double linked_minimum = linked_var->get_double(linked_var->min);
        const double linked_range = get_range(*linked_var);
        store(*linked_var, linked_minimum + (slew_var->get_double(slew_var->value) - minimum) *
                                                linked_range / range);
        store(*slew_var,
              up_to_limit(minimum + (linked_var->get_double(linked_var->value) - linked_minimum) *
                                        range / linked_range));
    }
    return slew_var->get_double(slew_var->value) != old;
}

std::int32_t WM_SCROLLBAR::get_step(SCROLLBAR_BUTTON_DOWN_TYPE move_type) {
    if (movement_callback != nullptr) {
        return movement_callback(this, move_type);
    }
    switch (move_type) {
        case SCROLLBAR_LINE_UP:
            return line_step;
        case SCROLLBAR_LINE_DOWN:
            return -line_step;
        case SCROLLBAR_PAGE_UP:
            return page_step;
        case SCROLLBAR_PAGE_DOWN:
            return -page_step;
        default:
            return 0;
    }
}

bool WM_SCROLLBAR::move_slew_var(SCROLLBAR_BUTTON_DOWN_TYPE move_type) {
    const std::int32_t step = get_step(move_type);
    if (step == 0) {
        return false;
    }
    const double first_value = slew_var->get_double(slew_var->value);
    const std::int16_t first_position = get_slider_position();
    const double minimum = slew_var->get_double(slew_var->min);
    const double maximum = slew_var->get_double(slew_var->max);
    const auto is_before_end = [&](double value) {
        return step < 0 ? value > minimum : value < maximum && (limit == -1 || value < limit);
    };
    const auto moves_slider = [&](double steps) {
        // From the first value, as a linked variable with coarse steps may put the value back.
        set_value(first_value + steps * step);
        return get_slider_position() != first_position;
    };
    bool moved = moves_slider(1);
    if (!moved && movement_callback == nullptr && travel > 0) {
        // The least number of steps that shows: a pixel may stand for millions of them.
        double too_few = 1, enough = 1;
        while (!moved && is_before_end(first_value + enough * step)) {
            too_few = enough;
            enough *= 2;
            moved = moves_slider(enough);
        }
        double middle = std::floor((too_few + enough) / 2);
        while (moved && middle > too_few && middle < enough) {
            (moves_slider(middle) ? enough : too_few) = middle;
            middle = std::floor((too_few + enough) / 2);
        }
        moves_slider(enough);
    }
    return slew_var->get_double(slew_var->value) != first_value;
}

// --- Input ---

void WM_SCROLLBAR::press(PLACE place, std::int16_t px, std::int16_t py) {
    held = place;
    repeating = false;
    repeat_time = now_ms;
    take_focus(0);
    const bool vertical = is_vertical();
    switch (place) {
        case ON_SLIDER:
            dragging = true;
            grip = (vertical ? py : px) - get_slider_position();
            break;
        case ON_LESS:
            move_slew_var(vertical ? SCROLLBAR_LINE_UP : SCROLLBAR_LINE_DOWN);
            break;
        case ON_MORE:
            move_slew_var(vertical ? SCROLLBAR_LINE_DOWN : SCROLLBAR_LINE_UP);
            break;
        case ON_BAR_BEFORE:
            move_slew_var(vertical ? SCROLLBAR_PAGE_UP : SCROLLBAR_PAGE_DOWN);
            break;
        case ON_BAR_BEHIND:
            move_slew_var(vertical ? SCROLLBAR_PAGE_DOWN : SCROLLBAR_PAGE_UP);
            break;
        default:
            break;
    }
    mark_own_rectangle();
}

void WM_SCROLLBAR::drag_to(std::int16_t px, std::int16_t py) {
    if (travel <= 0) {
        return;
    }
    const std::int32_t position =
        std::clamp((is_vertical() ? py : px) - grip - start, std::int32_t{0}, travel);
    if (position == get_slider_position() - start) {
        return;  // within the pixel that the value stands for already
    }
    const double range = get_range(*slew_var);
    double part = range * position / travel;
    if (slew_var->type <= PARAMETER::TYPE_LONG) {
        // Up, where there are values enough for each pixel to have one; otherwise to the nearest.
        part = range >= travel ? std::ceil(part) : std::round(part);
    }
    set_value(is_vertical() ? slew_var->get_double(slew_var->max) - part
                            : slew_var->get_double(slew_var->min) + part);
}

void WM_SCROLLBAR::repeat_held_button(PLACE place) {
    if (place != held || (held != ON_LESS && held != ON_MORE)) {
        return;
    }
    const std::uint32_t wait = repeating ? button_auto_repeat_rate : button_auto_repeat_threshhold;
    if (now_ms - repeat_time <= wait) {
        return;
    }
    repeating = true;
    repeat_time = now_ms;
    move_slew_var((held == ON_LESS) == is_vertical() ? SCROLLBAR_LINE_UP : SCROLLBAR_LINE_DOWN);
}

void WM_SCROLLBAR::read_wheel() {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (wheel_step <= 0 || MOUSE::wheel_pos == 0 || manager == nullptr ||
        !manager->has_mouse_wheel_focus(this)) {
        return;
    }
    set_value(slew_var->get_double(slew_var->value) +
              static_cast<double>(wheel_step) * MOUSE::wheel_pos);
    MOUSE::wheel_pos = 0;
}

bool WM_SCROLLBAR::move_by_key() {
    if (!has_focus()) {
        return false;
    }
    KEYBOARD keyboard;
    const KEY_TYPE key = keyboard.peek_code();
    const bool vertical = is_vertical();
    if (key == (vertical ? KEY_UP : KEY_RIGHT)) {
        move_slew_var(SCROLLBAR_LINE_UP);
    } else if (key == (vertical ? KEY_DOWN : KEY_LEFT)) {
        move_slew_var(SCROLLBAR_LINE_DOWN);
    } else if (key == KEY_PAGE_UP) {
        move_slew_var(SCROLLBAR_PAGE_UP);
    } else if (key == KEY_PAGE_DOWN) {
        move_slew_var(SCROLLBAR_PAGE_DOWN);
    } else if (key == KEY_HOME || key == KEY_END) {
        const bool to_max = (key == KEY_HOME) == vertical;
        set_value(slew_var->get_double(to_max ? slew_var->max : slew_var->min));
    } else {
        return false;
    }
    keyboard.get_code();
    return true;
}

void WM_SCROLLBAR::set_over(PLACE place) {
    if (place != over) {
        over = place;
        mark_own_rectangle();
    }
}

WM_MESG WM_SCROLLBAR::monitor() {
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE || !visible) {
        return result;
    }
    const std::int16_t px = MOUSE::x, py = MOUSE::y;
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const bool focal = manager != nullptr && manager->is_object_on_focal_window(this);
    const bool left = focal && MOUSE::is_down(MOUSE_BUTTON_LEFT);
    const bool was_left = last_left;
    last_left = left;
    const PLACE place = enabled ? find_place(px, py) : NOWHERE;
    if (hint != nullptr) {
        hint->monitor(is_in_me(px, py), MOUSE::buttons != 0, px, py);
    }
    if (!enabled || get_range(*slew_var) <= 0) {
        dragging = false;
        held = NOWHERE;
        return WM_MESG_NONE;
    }
    const double old_value = slew_var->get_double(slew_var->value);
    bool taken = false;
    if (!left) {
        if (held != NOWHERE) {
            mark_own_rectangle();
        }
        dragging = false;
        held = NOWHERE;
    } else if (!was_left && place != NOWHERE) {
        press(place, px, py);
        taken = true;
    } else if (dragging) {
        drag_to(px, py);
        taken = true;
    } else if (held != NOWHERE) {
        repeat_held_button(place);
        taken = true;
    }
    set_over(left && held == NOWHERE ? NOWHERE : place);
    read_wheel();
    taken = move_by_key() || taken;
    if (slew_var->get_double(slew_var->value) != old_value) {
        mark_own_rectangle();
        if (callback != nullptr) {
            const WM_MESG answer = callback(this, callback_data1, callback_data2);
            return answer != WM_MESG_NONE ? answer : WM_MESG_HANDLED;
        }
    }
    return taken ? WM_MESG_HANDLED : WM_MESG_NONE;
}

WM_MESG WM_SCROLLBAR::update(unsigned char modal_pass) {
    const WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (modal_pass) {
        return result;
    }
    const double value = slew_var->get_double(slew_var->value);
    changed = value != last_value;
    if (changed) {
        // The slider's old and new places are most of the bar.
        mark_own_rectangle();
        last_value = value;
    }
    return result;
}

// --- Changes ---

void WM_SCROLLBAR::hide(unsigned char modals, unsigned char children) {
    if (hint != nullptr) {
        hint->reset();
    }
    dragging = false;
    held = NOWHERE;
    WM_SCREEN_OBJECT::hide(modals, children);
}

void WM_SCROLLBAR::move(std::int16_t new_x, std::int16_t new_y) {
    if (new_x != x || new_y != y) {
        WM_SCREEN_OBJECT::move(new_x, new_y);
        set_travel();
    }
}

void WM_SCROLLBAR::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    if (new_width != width || new_height != height) {
        WM_SCREEN_OBJECT::resize(new_width, new_height, children);
        set_travel();
    }
}
