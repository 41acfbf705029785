// The font of a style set, with FONT_MANAGER's current values for what the style doesn't give.
#ifndef MODULES_CODE_GUI_WORD_FONT_H
#define MODULES_CODE_GUI_WORD_FONT_H

#include <cstdint>

#include "modules/winman/style_set.h"
#include "platform/font_manager.h"

struct WORD_FONT {
    explicit WORD_FONT(const WM_STYLE_SET& style) {
        const FONT_MANAGER& manager = FONT_MANAGER::get_instance();
        font = style.font < 0 ? manager.font : style.font;
        x_size = style.font_x_sz < 0 ? manager.x_size : style.font_x_sz;
        y_size = style.font_y_sz < 0 ? manager.y_size : style.font_y_sz;
    }

    std::int32_t get_width(const char* text, std::int32_t count = -1) const {
        return FONT_MANAGER::get_instance().get_string_width(font, x_size, y_size, text, count);
    }
    std::int32_t get_char_width(char c) const {
        return FONT_MANAGER::get_instance().get_char_width(font, x_size, y_size,
                                                           static_cast<unsigned char>(c));
    }

    std::int8_t font;
    std::int16_t x_size, y_size;
};

#endif  // MODULES_CODE_GUI_WORD_FONT_H
