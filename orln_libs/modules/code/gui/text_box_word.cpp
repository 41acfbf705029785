#include "modules/gui/text_box_word.h"

#include <utility>

#include "../winman/active_area.h"
#include "platform/image.h"
#include "to_short.h"
#include "word_font.h"

TEXT_BOX_WORD::TEXT_BOX_WORD(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                             const WM_STYLE_SET& style_, const char* text_, signed char window_)
    : TEXT_BOX_WORD(x1, y1, x2, y2, std::make_shared<const WM_STYLE_SET>(style_),
                    std::string(text_ != nullptr ? text_ : ""), window_) {
}

TEXT_BOX_WORD::TEXT_BOX_WORD(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                             SHARED_STYLE style_, std::string text_, signed char window_)
    : WM_SCREEN_OBJECT(1, nullptr, nullptr, nullptr, window_),
      text(std::move(text_)),
      style(std::move(style_)) {
    x = x1;
    y = y1;
    if (x2 < 0 || y2 < 0) {
        const WORD_FONT font(*style);
        width = to_short(font.get_width(text.c_str()));
        height =
            to_short(style->get_object_top_gap() + font.y_size + style->get_object_bottom_gap());
    }
    width = x2 < 0 ? width : to_short(x2 - x1 + 1);
    height = y2 < 0 ? height : to_short(y2 - y1 + 1);
}

void TEXT_BOX_WORD::set_text(const char* source) {
    text = source != nullptr ? source : "";
}

void TEXT_BOX_WORD::append_text(const char* more) {
    text += more != nullptr ? more : "";
}

void TEXT_BOX_WORD::truncate_text(std::int32_t length) {
    if (length >= 0 && length < get_text_length()) {
        text.resize(static_cast<std::size_t>(length));
    }
}

std::int32_t TEXT_BOX_WORD::get_text_width(std::int32_t characters) const {
    if (characters < 1 || characters > get_text_length()) {
        return 0;
    }
    return WORD_FONT(*style).get_width(text.c_str(), characters);
}

void TEXT_BOX_WORD::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    // Images take the corners of a rectangle in any order, so that one without a width isn't empty.
    if (buffer == nullptr || width < 1 || height < 1) {
        return;
    }
    const SAVED_ACTIVE_AREA saved(buffer);
    const std::int32_t right = x + width - 1, bottom = y + height - 1;
    buffer->add_rect_to_active_area(x, y, right, bottom);
    if (enabled && selection_start_x >= 0 && selection_end_x >= selection_start_x) {
        buffer->fill_rect(x + selection_start_x, y, x + selection_end_x, bottom,
                          style->highlight_colour, 1);
    } else if (style->bg_colour.is_set()) {
        buffer->fill_rect(x, y, right, bottom, style->bg_colour, 1);
    }
    const COLOUR fg = style->fg_colour;
    const COLOUR colour = enabled ? fg : fg.with_alpha(static_cast<unsigned char>(fg.alpha() / 4));
    const WORD_FONT font(*style);
    const std::int32_t top_gap = style->get_object_top_gap();
    const std::int32_t text_y =
        y + top_gap + (height - top_gap - style->get_object_bottom_gap() - font.y_size) / 2;
    const std::int32_t shadow = style->has_flag(STYLE_SHADOW_TEXT) ? IMAGE_TEXT_SHADOW : 0;
    buffer->process_and_render_string(x, text_y, colour, COLOUR_INVISIBLE, style->underline_colour,
                                      font.font, font.x_size, font.y_size, text.c_str(), shadow);
    if (enabled && cursor_x >= 0) {
        buffer->draw_vertical_line(x + cursor_x, text_y, text_y + font.y_size - 1, fg);
    }
}
