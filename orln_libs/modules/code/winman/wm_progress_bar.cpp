#include "modules/winman/wm_progress_bar.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>

#include "active_area.h"
#include "control_failure.h"
#include "flag_map.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/window_platform.h"

namespace {

constexpr const char* COORDINATES_FAILURE = "WM_PROGRESS_BAR::setup() - bar coordinates error";
constexpr const char* ALLOCATION_FAILURE = "WM_PROGRESS_BAR::setup() - allocation failure";
constexpr unsigned char BAR_CACHE_FLAGS = 8;

struct PART_BOX {
    IMAGE_BOX WM_PROGRESS_BAR::*box;
    STYLE_BOX style_box;
    const char* suffix;
};

constexpr PART_BOX PART_BOXES[] = {
    {&WM_PROGRESS_BAR::bg_box, STYLE_BOX_BG, "_bg"},
    {&WM_PROGRESS_BAR::empty_box, STYLE_BOX_EMPTY, "_empty"},
    {&WM_PROGRESS_BAR::full_box, STYLE_BOX_FULL, "_full"},
    {&WM_PROGRESS_BAR::alt_box, STYLE_BOX_ALTERNATE, "_alt"},
};

constexpr FLAG_PAIR BAR_FLAGS[] = {
    {STYLE_DONT_RESIZE_IMAGE, PROGRESS_BAR_DONT_RESIZE_IMAGE},
    {STYLE_PB_ONLY_DRAW_BAR, PROGRESS_BAR_ONLY_BAR},
    {STYLE_PB_VERTICAL, PROGRESS_BAR_VERTICAL},
    {STYLE_PB_POSITION_TEXT_ON_BAR, PROGRESS_BAR_TEXT_ON_BAR},
    {STYLE_PB_DRAW_ALT_PERCENTAGE, PROGRESS_BAR_ALT_PERCENTAGE},
};

struct PERCENT_TEXT {
    char text[24];

    PERCENT_TEXT(std::int64_t part, std::int32_t steps, std::int32_t without_steps) {
        const std::int64_t percent = steps == 0 ? without_steps : part * 100 / steps;
        std::snprintf(text, sizeof text, "%" PRId32 "%%", static_cast<std::int32_t>(percent));
    }
};

// Always where there is no window.
bool lies_in_window(const WM_SCREEN_OBJECT& object) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const WM_WINDOW* of_window = manager != nullptr ? manager->get_window(object.window) : nullptr;
    if (of_window == nullptr) {
        return true;
    }
    const OPEN_GRAPHICS_SIZES size = of_window->get_size_or_minimum();
    return object.x >= 0 && object.y >= 0 && object.x + object.width <= graphics_width(size) &&
           object.y + object.height <= graphics_height(size);
}

}  // namespace

WM_PROGRESS_BAR::WM_PROGRESS_BAR(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                                 std::int16_t height_, const char* label_text, std::int32_t steps,
                                 const WM_STYLE_SET& style, signed char window_,
                                 unsigned char custom_only)
    : WM_SCREEN_OBJECT(style.visible, nullptr, nullptr, nullptr, window_), max_steps(steps) {
    type_flags |= WMF_PROGRESS_BAR;
    x = x_;
    y = y_;
    width = width_;
    height = height_;
    bar_flags = static_cast<std::uint16_t>(
        map_flags(BAR_FLAGS, style.flags) |
        (style.has_flag(STYLE_DRAW_BORDER) ? 0u : unsigned{PROGRESS_BAR_NO_BORDER}) |
        (custom_only ? unsigned{PROGRESS_BAR_ONLY_CUSTOM_TEXT} : 0u));
    text_flags = style.get_text_drawing_flags();
    if (style.image_filename != nullptr) {
        set_images(style.image_path, style.image_filename, &style);
    }
    setup(style, label_text);
}

WM_PROGRESS_BAR::~WM_PROGRESS_BAR() = default;

void WM_PROGRESS_BAR::setup(const WM_STYLE_SET& style, const char* label_text) {
    if (!lies_in_window(*this)) {
        stop_on_control_failure(COORDINATES_FAILURE);
    }
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    font = style.font == -1 ? fonts.font : style.font;
    font_x_sz = style.font_x_sz == -1 ? fonts.x_size : style.font_x_sz;
    font_y_sz = style.font_y_sz == -1 ? fonts.y_size : style.font_y_sz;
    const auto given = [](std::uint16_t gap, std::int32_t otherwise) {
        return WM_STYLE_SET::given_gap(gap, static_cast<std::uint16_t>(std::max(otherwise, 0)));
    };
    left_gap = given(style.border_left_gap, font_x_sz / 2);
    right_gap = given(style.border_right_gap, font_x_sz / 2);
    top_gap = given(style.border_top_gap, (height - font_y_sz) / 2);
    bottom_gap = given(style.border_bottom_gap, (height - font_y_sz) / 2);
    if (label_text != nullptr && !(bar_flags & PROGRESS_BAR_VERTICAL)) {
        set_text_or_stop(label, label_text, ALLOCATION_FAILURE);
    }
    bg = style.bg_colour;
    label_colour = bar_text_colour = alt_bar_text_colour = style.fg_colour;
    bar_colour = style.highlight_colour;
    alt_bar_colour = COLOUR_INVISIBLE;
}

bool WM_PROGRESS_BAR::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    clear_images();
    if (base == nullptr) {
        return false;
    }
    for (const PART_BOX& part : PART_BOXES) {
        IMAGE_BOX& box = this->*part.box;
        if (style == nullptr || !style->images_loaded) {
            box.cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
            box.load_images(path, (std::string(base) + part.suffix).c_str(), BAR_CACHE_FLAGS);
        } else if (const IMAGE_BOX* of_style = style->get_box(part.style_box)) {
            box = *of_style;
        }
    }
    return is_graphical();
}

void WM_PROGRESS_BAR::clear_images() {
    for (const PART_BOX& part : PART_BOXES) {
        (this->*part.box).clear_images();
    }
}

// --- Changes ---

void WM_PROGRESS_BAR::update_os() {
    static std::time_t last_second = 0;
    const std::time_t second = std::time(nullptr);
    if (second != last_second) {
        last_second = second;
        process_os_events();
    }
}

void WM_PROGRESS_BAR::show_change(unsigned char now) {
    if (!now) {
        if (visible) {
            request_draw(0, 0);
        }
        return;
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (visible && manager != nullptr) {
        force_draw_object();
        manager->blit_window(this, 1);
    }
    update_os();
}

void WM_PROGRESS_BAR::change(std::int32_t new_pos, std::int32_t new_max, unsigned char now) {
    const bool redraw = needs_redraw(pos, max_steps, new_pos, new_max);
    pos = new_pos;
    max_steps = new_max;
    if (redraw) {
        show_change(now);
    }
}

void WM_PROGRESS_BAR::set_pos(std::int32_t new_pos, unsigned char now) {
    if (new_pos >= 0 && new_pos <= max_steps) {
        change(new_pos, max_steps, now);
    }
}

void WM_PROGRESS_BAR::inc_pos(unsigned char now) {
    if (pos < max_steps) {
        change(pos + 1, max_steps, now);
    }
}

void WM_PROGRESS_BAR::dec_pos(unsigned char now) {
    if (pos > 0) {
        change(pos - 1, max_steps, now);
    }
}

void WM_PROGRESS_BAR::set_max_steps(std::int32_t steps, unsigned char now) {
    if (steps >= 0) {
        change(std::min(pos, steps), steps, now);
    }
}

void WM_PROGRESS_BAR::set_custom_bar_string(const char* text, unsigned char now) {
    const char* old = custom_string;
    if (old == text || (old != nullptr && text != nullptr && std::string_view(old) == text)) {
        return;
    }
    set_text_or_stop(custom_string, text, ALLOCATION_FAILURE);
    show_change(now);
}

void WM_PROGRESS_BAR::set_colour(COLOUR& where, COLOUR colour, unsigned char now) {
    where = colour;
    show_change(now);
}

void WM_PROGRESS_BAR::set_bar_colour(COLOUR colour, unsigned char now) {
    set_colour(bar_colour, colour, now);
}

void WM_PROGRESS_BAR::set_bar_text_colour(COLOUR colour, unsigned char now) {
    set_colour(bar_text_colour, colour, now);
}

void WM_PROGRESS_BAR::set_alt_bar_colour(COLOUR colour, unsigned char now) {
    set_colour(alt_bar_colour, colour, now);
}

void WM_PROGRESS_BAR::set_alt_bar_text_colour(COLOUR colour, unsigned char now) {
    set_colour(alt_bar_text_colour, colour, now);
}

// --- Geometry ---

std::int32_t WM_PROGRESS_BAR::get_text_width(const char* text) const {
    return FONT_MANAGER::get_instance().get_string_width(font, font_x_sz, font_y_sz, text);
}

std::int32_t WM_PROGRESS_BAR::get_length(const BAR& bar) const {
    return (bar_flags & PROGRESS_BAR_VERTICAL) ? bar.height : bar.width;
}

WM_PROGRESS_BAR::BAR WM_PROGRESS_BAR::get_bar() const {
    BAR bar = {x + left_gap, y + top_gap, width - left_gap - right_gap,
               height - top_gap - bottom_gap};
    if (label != nullptr && !(bar_flags & PROGRESS_BAR_ONLY_BAR)) {
        const std::int32_t taken = get_text_width(label) + left_gap;
        bar.x += taken;
        bar.width -= taken;
    }
    return bar;
}

std::int32_t WM_PROGRESS_BAR::get_fill(std::int32_t length, std::int32_t at, std::int32_t steps) {
    if (steps == 0) {
        return length;
    }
    const std::int64_t fill = std::int64_t{length} * at / steps + 1;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(fill, 1, std::max(length, 1)));
}

bool WM_PROGRESS_BAR::needs_redraw(std::int32_t old_pos, std::int32_t old_max, std::int32_t new_pos,
                                   std::int32_t new_max) const {
    const std::int32_t length = get_length(get_bar());
    return get_fill(length, old_pos, old_max) != get_fill(length, new_pos, new_max);
}

// The pieces of a box can't be drawn in less.
std::int32_t WM_PROGRESS_BAR::get_minimum_length(const IMAGE_BOX& box) const {
    return (bar_flags & PROGRESS_BAR_VERTICAL)
               ? box.natural_height(box.top) + box.natural_height(box.centre) +
                     box.natural_height(box.bottom)
               : box.natural_width(box.left) + box.natural_width(box.centre) +
                     box.natural_width(box.right);
}

// From the left or from the bottom.
WM_PROGRESS_BAR::BAR WM_PROGRESS_BAR::get_filled_part(const BAR& bar, std::int32_t filled) const {
    if (bar_flags & PROGRESS_BAR_VERTICAL) {
        return {bar.x, bar.y + bar.height - filled, bar.width, filled};
    }
    return {bar.x, bar.y, filled, bar.height};
}

// From the right or from the top.
WM_PROGRESS_BAR::BAR WM_PROGRESS_BAR::get_rest(const BAR& bar, std::int32_t length) const {
    if (bar_flags & PROGRESS_BAR_VERTICAL) {
        return {bar.x, bar.y, bar.width, length};
    }
    return {bar.x + bar.width - length, bar.y, length, bar.height};
}

// A part that is too small for the text grows on both sides, as far as there is bar.
WM_PROGRESS_BAR::BAR WM_PROGRESS_BAR::grow_for_text(const BAR& part, const BAR& bar,
                                                    const char* text) const {
    const auto grow = [](std::int32_t& at, std::int32_t& size, std::int32_t from,
                         std::int32_t length, std::int32_t needed) {
        if (size >= needed) {
            return;
        }
        const std::int32_t wanted = std::min(needed, std::max(length, size));
        at = std::clamp(at - (wanted - size) / 2, from, std::max(from, from + length - wanted));
        size = wanted;
    };
    BAR grown = part;
    if (bar_flags & PROGRESS_BAR_VERTICAL) {
        grow(grown.y, grown.height, bar.y, bar.height, font_y_sz);
    } else {
        grow(grown.x, grown.width, bar.x, bar.width, get_text_width(text));
    }
    return grown;
}

// --- Drawing ---

void WM_PROGRESS_BAR::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    const SAVED_ACTIVE_AREA saved(buffer);
    buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    if (!(bar_flags & PROGRESS_BAR_ONLY_BAR)) {
        draw_background(*buffer);
    }
    const BAR bar = get_bar();
    if (bar.width <= 0 || bar.height <= 0) {
        return;
    }
    const std::int32_t filled = get_fill(get_length(bar), pos, max_steps);
    draw_bar(*buffer, bar, filled);
    draw_texts(*buffer, bar, filled);
}

void WM_PROGRESS_BAR::draw_background(IMAGE& target) {
    if (bg_box.are_images_valid()) {
        draw_box(target, bg_box, {x, y, width, height});
    } else if (bg.is_set()) {
        target.fill_rect(x, y, x + width - 1, y + height - 1, bg, 1);
    }
    if (label != nullptr) {
        draw_text(target, {x + left_gap, y, get_text_width(label), height}, label, label_colour,
                  (text_flags & (IMAGE_TEXT_SHADOW | IMAGE_TEXT_INSET)) | IMAGE_TEXT_LEFT);
    }
}

void WM_PROGRESS_BAR::draw_bar(IMAGE& target, const BAR& bar, std::int32_t filled) {
    const std::int32_t length = get_length(bar);
    if (is_graphical()) {
        draw_box(target, empty_box, bar);
        filled = std::clamp(get_minimum_length(full_box), filled, std::max(filled, length));
        draw_box(target, full_box, get_filled_part(bar, filled));
        if (alt_box.are_images_valid() && filled < length) {
            const std::int32_t rest = std::max(length - filled, get_minimum_length(alt_box));
            draw_box(target, alt_box, get_rest(bar, std::min(rest, length)));
        }
        return;
    }
    const auto fill = [&target](const BAR& part, COLOUR colour) {
        if (part.width > 0 && part.height > 0) {
            target.fill_rect(part.x, part.y, part.x + part.width - 1, part.y + part.height - 1,
                             colour, 1);
        }
    };
    fill(get_filled_part(bar, filled), bar_colour);
    if (alt_bar_colour.is_set()) {
        fill(get_rest(bar, length - filled), alt_bar_colour);
    }
}

void WM_PROGRESS_BAR::draw_box(IMAGE& target, IMAGE_BOX& box, const BAR& place) const {
    box.draw(static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
             static_cast<std::int16_t>(place.x + place.width - 1),
             static_cast<std::int16_t>(place.y + place.height - 1), &target,
             (bar_flags & PROGRESS_BAR_DONT_RESIZE_IMAGE) == 0, IMAGE_COPY_BLEND);
}

void WM_PROGRESS_BAR::draw_texts(IMAGE& target, const BAR& bar, std::int32_t filled) const {
    const bool on_bar = (bar_flags & PROGRESS_BAR_TEXT_ON_BAR) != 0;
    if (custom_string == nullptr && (bar_flags & PROGRESS_BAR_ONLY_CUSTOM_TEXT)) {
        return;
    }
    if ((bar_flags & PROGRESS_BAR_ALT_PERCENTAGE) && alt_bar_text_colour.is_set()) {
        const PERCENT_TEXT alt(std::int64_t{100} - pos, max_steps, 0);
        const BAR rest = get_rest(bar, get_length(bar) - filled);
        draw_text(target, on_bar ? grow_for_text(rest, bar, alt.text) : bar, alt.text,
                  alt_bar_text_colour, text_flags);
    }
    if (bar_text_colour.is_set()) {
        const PERCENT_TEXT percent(pos, max_steps, 100);
        const char* text = custom_string != nullptr ? custom_string : percent.text;
        const BAR full = get_filled_part(bar, filled);
        draw_text(target, on_bar ? grow_for_text(full, bar, text) : bar, text, bar_text_colour,
                  text_flags);
    }
}

void WM_PROGRESS_BAR::draw_text(IMAGE& target, const BAR& place, const char* text, COLOUR colour,
                                std::int32_t flags) const {
    target.draw_single_line_string(place.x, place.y, place.x + place.width - 1,
                                   place.y + place.height - 1, colour, COLOUR_INVISIBLE,
                                   COLOUR_INVISIBLE, font, font_x_sz, font_y_sz, text, flags);
}
