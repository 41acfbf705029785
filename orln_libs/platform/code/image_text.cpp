// Drawing text: glyphs, effects, single lines and wrapped ones.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <vector>

#include "pixel_rows.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/text_walker.h"

namespace {

constexpr char ELLIPSIS[] = "...";
constexpr char HYPHEN[] = "-";

bool is_blank(std::uint16_t code) {
    return code == ' ' || code == '\t';
}

// A line feed or a carriage return.
bool has_no_glyph(std::uint16_t code) {
    return code == '\n' || code == '\r';
}

// Far enough outside of any image, and leaves room to calculate.
std::int32_t limit(std::int32_t coordinate) {
    constexpr std::int32_t FAR_AWAY = 1 << 28;
    return std::clamp(coordinate, -FAR_AWAY, FAR_AWAY);
}

// Half of a distance, an odd one rounded up. It may be negative: text can be higher than its box.
std::int32_t half_of(std::int32_t distance) {
    return (distance + 1) >> 1;
}

// A font and a size to measure with.
struct TEXT_FONT {
    std::int8_t font;
    std::int32_t x_size, y_size;

    bool is_valid() const {
        return FONT_MANAGER::get_instance().can_draw_text(font, x_size, y_size);
    }
    std::int32_t width_of(const char* text, bool in_code = false) const {
        return FONT_MANAGER::get_instance().get_string_width(font, x_size, y_size, text, -1,
                                                             in_code);
    }
    std::int32_t width_of_code(std::uint16_t code) const {
        return FONT_MANAGER::get_instance().get_char_width(font, x_size, y_size, code);
    }
};

// The rectangle that text is set into. `tail` is the width of what follows the text itself, an
// ellipsis or a hyphen.
struct TEXT_BOX_AREA {
    TEXT_BOX_AREA(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
        : x1(limit(left)), y1(limit(top)), x2(limit(right)), y2(limit(bottom)) {}

    std::int32_t x1, y1, x2, y2;

    std::int32_t width() const { return x2 - x1 + 1; }
    std::int32_t height() const { return y2 - y1 + 1; }

    std::int32_t find_x(std::int32_t flags, std::int32_t text_width, std::int32_t tail) const {
        if (flags & IMAGE_TEXT_LEFT) {
            return x1;
        }
        if (flags & IMAGE_TEXT_RIGHT) {
            return x2 - text_width - tail;
        }
        return x1 + half_of(width() - text_width) - (tail > 0 ? half_of(tail) : 0);
    }
    std::int32_t find_y(std::int32_t flags, std::int32_t y_size, std::int32_t line,
                        std::int32_t lines) const {
        if (flags & IMAGE_TEXT_TOP) {
            return y1 + line * y_size;
        }
        if (flags & IMAGE_TEXT_BOTTOM) {
            return y2 - (lines - line) * y_size;
        }
        return y1 + line * y_size + half_of(height() - y_size * lines);
    }
};

// A character of a text that is being wrapped.
struct TEXT_CHARACTER {
    const char* at;
    bool in_code;
    std::uint16_t code;
    std::int32_t width;
};

struct TEXT_LINE {
    enum FLAG : std::uint16_t { BEGINS_IN_CODE = 1, ENDS_IN_HYPHEN = 2, ENDS_IN_ELLIPSIS = 4 };

    std::size_t start;  // index of its first character
    std::int32_t count = 0;
    std::int32_t width = 0;
    std::uint16_t flags = 0;
};

// Breaks a text into lines.
class LINE_BREAKER {
public:
    LINE_BREAKER(const TEXT_FONT& text_font, const char* string, std::int32_t box_width,
                 std::size_t line_capacity, bool keeps_leading_blanks)
        : font(text_font),
          room(box_width),
          ellipsis_width(font.width_of(ELLIPSIS)),
          hyphen_width(font.width_of(HYPHEN)),
          capacity(line_capacity),
          keep_blanks(keeps_leading_blanks) {
        for (TEXT_WALKER walker(string); walker.next();) {
            characters.push_back(
                {walker.at, walker.at_in_code, walker.code, font.width_of_code(walker.code)});
        }
        break_lines();
    }

    std::vector<TEXT_CHARACTER> characters;
    std::vector<TEXT_LINE> lines;

    std::int32_t tail_width(const TEXT_LINE& line) const {
        return line.flags & TEXT_LINE::ENDS_IN_HYPHEN     ? hyphen_width
               : line.flags & TEXT_LINE::ENDS_IN_ELLIPSIS ? ellipsis_width
                                                          : 0;
    }

private:
    bool is_last_line() const { return lines.size() == capacity; }

    void open_line(std::size_t start) { lines.push_back({start}); }

    void take(std::size_t i) {
        ++lines.back().count;
        lines.back().width += characters[i].width;
    }

    void break_lines() {
        open_line(0);
        for (std::size_t i = 0; i < characters.size();) {
            TEXT_LINE& line = lines.back();
            const TEXT_CHARACTER& character = characters[i];
            if (character.code == '\n') {
                if (is_last_line()) {
                    break;
                }
                open_line(++i);
            } else if (line.count == 0 && is_blank(character.code) && !keep_blanks) {
                line.start = ++i;
            } else if (is_last_line()) {
                if (line.width + character.width + ellipsis_width > room) {
                    end_last_line(i);
                    break;
                }
                take(i++);
            } else if (line.width + character.width <= room || line.count == 0) {
                take(i++);  // also a character that fits on no line, so that the walk gets on
            } else {
                i = break_before(i);
                open_line(i);
            }
        }
        for (TEXT_LINE& line : lines) {
            if (line.start < characters.size() && characters[line.start].in_code) {
                line.flags |= TEXT_LINE::BEGINS_IN_CODE;
            }
        }
    }

    // The rest fits without an ellipsis, or there is one.
    void end_last_line(std::size_t i) {
        std::int32_t rest = lines.back().width;
        std::size_t end = i;
        for (; end < characters.size() && characters[end].code != '\n'; ++end) {
            rest += characters[end].width;
        }
        if (rest > room) {
            lines.back().flags |= TEXT_LINE::ENDS_IN_ELLIPSIS;
            return;
        }
        while (i < end) {
            take(i++);
        }
    }

    // Ends the line, which character `i` no longer fits, and yields where the next one begins.
    std::size_t break_before(std::size_t i) {
        TEXT_LINE& line = lines.back();
        const std::size_t start = line.start;
        std::int32_t width = line.width;
        std::size_t hyphenated = 0;
        std::int32_t hyphenated_width = 0;
        for (std::size_t j = i; j > start; --j) {
            // `width` is that of the characters before j.
            if (is_blank(characters[j].code)) {
                end_line(j, width, 0);
                return j;
            }
            if (j < i && characters[j].code == '-') {
                end_line(j + 1, width + characters[j].width, 0);
                return j + 1;
            }
            if (hyphenated == 0 && width + hyphen_width <= room) {
                hyphenated = j;
                hyphenated_width = width;
            }
            width -= characters[j - 1].width;
        }
        if (characters[start].code == '-' && start < i) {
            end_line(start + 1, characters[start].width, 0);
            return start + 1;
        }
        if (hyphenated != 0) {
            end_line(hyphenated, hyphenated_width, TEXT_LINE::ENDS_IN_HYPHEN);
            return hyphenated;
        }
        return i;
    }

    void end_line(std::size_t end, std::int32_t width, std::uint16_t flags) {
        TEXT_LINE& line = lines.back();
        line.count = static_cast<std::int32_t>(end - line.start);
        line.width = width;
        line.flags = flags;
    }

    TEXT_FONT font;
    std::int32_t room, ellipsis_width, hyphen_width;
    std::size_t capacity;
    bool keep_blanks;
};

// What of a text fits one line.
struct FITTED_LINE {
    const char* start;
    bool in_code = false;
    std::int32_t count = 0;
    std::int32_t width = 0;
    bool is_cut = false;
};

FITTED_LINE fit_line(const TEXT_FONT& font, const char* string, std::int32_t room,
                     std::int32_t ellipsis_width, bool keep_blanks) {
    FITTED_LINE line = {string};
    TEXT_WALKER walker(string);
    while (walker.next()) {
        if (line.count == 0) {
            if (has_no_glyph(walker.code) || (is_blank(walker.code) && !keep_blanks)) {
                line.start = walker.position;
                line.in_code = walker.in_code;
                continue;
            }
        }
        const std::int32_t width = font.width_of_code(walker.code);
        if (line.width + width + ellipsis_width > room) {
            const std::int32_t rest = font.width_of(walker.at, walker.at_in_code);
            line.is_cut = line.width + rest > room;
            if (!line.is_cut) {
                line.width += rest;
                line.count = -1;
            }
            break;
        }
        line.width += width;
        ++line.count;
    }
    return line;
}

// Makes the pixels under a glyph lighter or darker.
void lighten_pixels(const PIXEL_BLOCK& target, const SOURCE_COVERAGE& coverage, double lighten) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* pixel = target.row(y);
        const unsigned char* covered = coverage.row(y);
        for (std::int32_t x = 0; x < target.width; ++x) {
            if (covered[x] != 0) {
                double hue = 0;
                double saturation = 0;
                double lightness = 0;
                pixel[x].get_hsl(hue, saturation, lightness);
                pixel[x].set_hsl(hue, saturation, lightness + lighten * covered[x] / 255.0);
            }
        }
    }
}

}  // namespace

struct IMAGE::GLYPH_PLACE {
    const FONT_GLYPH& glyph;
    std::int32_t x, y;  // of the bitmap's corner
    COLOUR colour;
    double lighten;
};

void IMAGE::render_glyph_at(const GLYPH_PLACE& place) {
    const FONT_GLYPH& glyph = place.glyph;
    AREA area;
    if (glyph.width < 1 || glyph.height < 1 ||
        !clip(place.x, place.y, place.x + glyph.width - 1, place.y + glyph.height - 1, area)) {
        return;
    }
    const PIXEL_BLOCK target = {row(area.top) + area.left, stride, area.columns(), area.rows()};
    const SOURCE_COVERAGE coverage = {glyph.data.get() +
                                          std::ptrdiff_t{glyph.pitch} * (area.top - place.y) +
                                          (area.left - place.x),
                                      glyph.pitch};
    if (place.lighten != 0) {
        lighten_pixels(target, coverage, place.lighten);
    } else {
        PIXEL_ROWS::mix_coverage(target, coverage, place.colour);
    }
    widen_dirty(area);
}

void IMAGE::render_string(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                          COLOUR underline, double lighten, std::int8_t font, std::int32_t x_size,
                          std::int32_t y_size, const char* string, std::int32_t count,
                          unsigned char in_code) {
    const TEXT_FONT text_font = {font, x_size, y_size};
    if (!string || !can_draw("render_string") || !text_font.is_valid()) {
        return;
    }
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    FONT_GLYPH temporary;
    x = limit(x);
    y = limit(y);
    TEXT_WALKER walker(string, in_code != 0);
    for (std::int32_t i = 0; i != count && x < width && walker.next(); ++i) {
        if (has_no_glyph(walker.code)) {
            continue;
        }
        const FONT_GLYPH& glyph =
            fonts.get_text_glyph(font, x_size, y_size, walker.code, temporary);
        const std::int32_t right = x + glyph.advance - 1;
        std::int32_t baseline = y + y_size;
        if (glyph.face_height != 0) {
            baseline += y_size * glyph.face_ascender / glyph.face_height;
        }
        if (glyph.advance > 0 && background.alpha() != 0) {
            fill_rect(x, y, right, y + y_size - 1, background, 1);
        }
        if (glyph.advance > 0 && underline.alpha() != 0) {
            plot_line(x, baseline, right, baseline, underline);
        }
        render_glyph_at({glyph, x + glyph.left, baseline - glyph.top - 1, text, lighten});
        x += glyph.advance;
    }
}

void IMAGE::process_and_render_string(std::int32_t x, std::int32_t y, COLOUR text,
                                      COLOUR background, COLOUR underline, std::int8_t font,
                                      std::int32_t x_size, std::int32_t y_size, const char* string,
                                      std::int32_t flags, std::int32_t count,
                                      unsigned char in_code) {
    if (!usable || !TEXT_FONT{font, x_size, y_size}.is_valid()) {
        return;
    }
    const auto render = [&](std::int32_t dx, std::int32_t dy, COLOUR colour, COLOUR back,
                            COLOUR line, double lighten = 0) {
        render_string(limit(x) + dx, limit(y) + dy, colour, back, line, lighten, font, x_size,
                      y_size, string, count, in_code);
    };
    // A background belongs under everything, so the first pass draws it.
    if (flags & IMAGE_TEXT_SHADOW) {
        render(shadow_x_offset, shadow_y_offset, COLOUR_BLACK.with_alpha(shadow_alpha), background,
               COLOUR_INVISIBLE);
        render(0, 0, text, COLOUR_INVISIBLE, underline);
    } else if (flags & IMAGE_TEXT_INSET) {
        double hue = 0;
        double saturation = 0;
        double lightness = 0;
        text.get_hsl(hue, saturation, lightness);
        if (lightness <= 0.5) {
            render(inset_x_offset, inset_y_offset, COLOUR_WHITE.with_alpha(inset_alpha), background,
                   COLOUR_INVISIBLE);
        } else {
            render(-inset_x_offset, -inset_y_offset, COLOUR_BLACK.with_alpha(inset_alpha),
                   background, COLOUR_INVISIBLE);
        }
        render(0, 0, text, COLOUR_INVISIBLE, underline);
    } else if (flags & IMAGE_TEXT_CHISELLED) {
        render(chiseled_x_offset, chiseled_y_offset, text, background, COLOUR_INVISIBLE,
               chiseled_light_blend_value);
        render(0, 0, text, COLOUR_INVISIBLE, underline, chiseled_dark_blend_value);
    } else if ((flags & IMAGE_TEXT_OUTLINE) && background.alpha() != 0) {
        static constexpr std::int32_t AROUND[][2] = {{-2, 0}, {-1, -1}, {0, -2}, {1, -1},
                                                     {2, 0},  {1, 1},   {0, 2},  {-1, 1}};
        for (const auto& offset : AROUND) {
            render(offset[0], offset[1], background, COLOUR_INVISIBLE, COLOUR_INVISIBLE);
        }
        render(0, 0, text, COLOUR_INVISIBLE, underline);
    } else {
        render(0, 0, text, background, underline);
    }
}

void IMAGE::draw_single_line_string(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                    std::int32_t y2, COLOUR text, COLOUR background,
                                    COLOUR underline, std::int8_t font, std::int32_t x_size,
                                    std::int32_t y_size, const char* string, std::int32_t flags,
                                    unsigned char* was_cut) {
    const TEXT_FONT text_font = {font, x_size, y_size};
    if (!string || *string == '\0' || !text_font.is_valid()) {
        return;
    }
    mark_dirty_area(x1, y1, x2, y2);
    const TEXT_BOX_AREA box(x1, y1, x2, y2);
    const std::int32_t ellipsis_width = text_font.width_of(ELLIPSIS);
    const FITTED_LINE line =
        fit_line(text_font, string, box.width(), ellipsis_width, underline.alpha() != 0);
    const std::int32_t x = box.find_x(flags, line.width, line.is_cut ? ellipsis_width : 0);
    const std::int32_t y = box.find_y(flags, y_size, 0, 1);
    process_and_render_string(x, y, text, background, underline, font, x_size, y_size, line.start,
                              flags, line.count, line.in_code);
    if (line.is_cut) {
        if (was_cut) {
            *was_cut = 1;
        }
        process_and_render_string(x + line.width, y, text, background, underline, font, x_size,
                                  y_size, ELLIPSIS, flags);
    }
}

void IMAGE::draw_multi_line_string(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                   std::int32_t y2, COLOUR text, COLOUR background,
                                   COLOUR underline, std::int8_t font, std::int32_t x_size,
                                   std::int32_t y_size, const char* string, std::int32_t flags) {
    constexpr std::int32_t MAX_LINES = 256;
    const TEXT_FONT text_font = {font, x_size, y_size};
    if (!string || *string == '\0' || !text_font.is_valid()) {
        return;
    }
    mark_dirty_area(x1, y1, x2, y2);
    const TEXT_BOX_AREA box(x1, y1, x2, y2);
    const auto capacity =
        static_cast<std::size_t>(std::clamp<std::int32_t>(box.height() / y_size, 1, MAX_LINES));
    const LINE_BREAKER broken(text_font, string, box.width(), capacity, underline.alpha() != 0);
    const auto count = static_cast<std::int32_t>(broken.lines.size());
    for (std::int32_t i = 0; i < count; ++i) {
        const TEXT_LINE& line = broken.lines[static_cast<std::size_t>(i)];
        const std::int32_t x = box.find_x(flags, line.width, broken.tail_width(line));
        const std::int32_t y = box.find_y(flags, y_size, i, count);
        const auto draw = [&](std::int32_t at, const char* part, std::int32_t length,
                              bool in_code) {
            process_and_render_string(at, y, text, background, underline, font, x_size, y_size,
                                      part, flags, length, in_code);
        };
        if (line.count > 0) {
            draw(x, broken.characters[line.start].at, line.count,
                 (line.flags & TEXT_LINE::BEGINS_IN_CODE) != 0);
        }
        if (line.flags & TEXT_LINE::ENDS_IN_HYPHEN) {
            draw(x + line.width, HYPHEN, -1, false);
        } else if (line.flags & TEXT_LINE::ENDS_IN_ELLIPSIS) {
            draw(x + line.width, ELLIPSIS, -1, false);
        }
    }
}

void IMAGE::draw_char(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                      COLOUR underline, std::int8_t font, std::int32_t x_size, std::int32_t y_size,
                      std::uint16_t code) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%04X", unsigned{code});
    process_and_render_string(x, y, text, background, underline, font, x_size, y_size, digits, 0, 1,
                              1);
}

void IMAGE::draw_text(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                      COLOUR underline, std::int8_t font, std::int32_t x_size, std::int32_t y_size,
                      const char* format, ...) {
    char buffer[text_buffer_size];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    process_and_render_string(x, y, text, background, underline, font, x_size, y_size, buffer, 0);
}

void IMAGE::draw_text(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                      COLOUR underline, const char* format, ...) {
    char buffer[text_buffer_size];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    process_and_render_string(x, y, text, background, underline, fonts.font, fonts.x_size,
                              fonts.y_size, buffer, 0);
}
