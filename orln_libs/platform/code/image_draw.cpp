// Rectangles and lines.
#include <algorithm>
#include <cmath>
#include <vector>

#include "pixel_rows.h"
#include "platform/image.h"

namespace {

// Far enough outside of any image; products of two such distances fit in 64 bits.
constexpr std::int32_t FAR_AWAY = 1 << 29;

std::int32_t limit(std::int32_t coordinate) {
    return std::clamp(coordinate, -FAR_AWAY, FAR_AWAY);
}

// The colour `step` of `steps` steps on the way from one to the other.
COLOUR interpolate(COLOUR first, COLOUR last, std::int64_t step, std::int64_t steps) {
    if (steps == 0) {
        return first;
    }
    const auto channel = [&](unsigned char from, unsigned char to) {
        return static_cast<unsigned char>((from * (steps - step) + to * step + steps / 2) / steps);
    };
    return COLOUR(channel(first.red(), last.red()), channel(first.green(), last.green()),
                  channel(first.blue(), last.blue()), channel(first.alpha(), last.alpha()));
}

// The walk of a line along the axis on which it is longer: one minor coordinate for each major one.
struct LINE_WALK {
    LINE_WALK(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2)
        : along_x(std::abs(std::int64_t{x2} - x1) >= std::abs(std::int64_t{y2} - y1)),
          first(along_x ? x1 : y1),
          last(along_x ? x2 : y2),
          minor_first(along_x ? y1 : x1),
          minor_last(along_x ? y2 : x2) {
        if (first > last) {
            std::swap(first, last);
            std::swap(minor_first, minor_last);
        }
    }

    bool along_x;
    std::int32_t first, last;
    std::int32_t minor_first, minor_last;
};

}  // namespace

void IMAGE::fill_hfaded_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                             COLOUR first, COLOUR last) {
    AREA area;
    if (!can_draw("fill_hfaded_rect") || !clip(x1, y1, x2, y2, area)) {
        return;
    }
    const std::int64_t start = std::min(x1, x2);
    const std::int64_t steps = std::max(x1, x2) - start;
    std::vector<COLOUR> colours(static_cast<std::size_t>(area.columns()));
    for (std::size_t i = 0; i < colours.size(); ++i) {
        colours[i] =
            interpolate(first, last, area.left + static_cast<std::int64_t>(i) - start, steps);
    }
    PIXEL_ROWS::blend({row(area.top) + area.left, stride, area.columns(), area.rows()},
                      {colours.data(), 0});
    widen_dirty(area);
}

void IMAGE::fill_vfaded_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                             COLOUR first, COLOUR last) {
    AREA area;
    if (!can_draw("fill_vfaded_rect") || !clip(x1, y1, x2, y2, area)) {
        return;
    }
    const std::int64_t start = std::min(y1, y2);
    const std::int64_t steps = std::max(y1, y2) - start;
    for (std::int32_t y = area.top; y <= area.bottom; ++y) {
        fill_area({area.left, y, area.right, y}, interpolate(first, last, y - start, steps), true);
    }
}

void IMAGE::darken_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                        std::int32_t percent) {
    AREA area;
    if (!can_draw("darken_rect") || !clip(x1, y1, x2, y2, area)) {
        return;
    }
    const auto keep = static_cast<std::uint32_t>(100 - std::clamp(percent, 0, 100));
    unsigned char darker[256];
    for (std::uint32_t i = 0; i < 256; ++i) {
        darker[i] = static_cast<unsigned char>(i * keep / 100);
    }
    for (std::int32_t y = area.top; y <= area.bottom; ++y) {
        COLOUR* pixel = row(y) + area.left;
        for (std::int32_t i = 0; i < area.columns(); ++i, ++pixel) {
            *pixel = COLOUR(darker[pixel->red()], darker[pixel->green()], darker[pixel->blue()],
                            pixel->alpha());
        }
    }
    widen_dirty(area);
}

void IMAGE::draw_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                      COLOUR colour, std::int32_t thickness, char blend) {
    if (!can_draw("draw_rect") || thickness < 1) {
        return;
    }
    const std::int64_t left = std::min(x1, x2);
    const std::int64_t right = std::max(x1, x2);
    const std::int64_t top = std::min(y1, y2);
    const std::int64_t bottom = std::max(y1, y2);
    const auto fill = [&](std::int64_t l, std::int64_t t, std::int64_t r, std::int64_t b) {
        AREA area;
        if (l <= r && t <= b &&
            clip(static_cast<std::int32_t>(l), static_cast<std::int32_t>(t),
                 static_cast<std::int32_t>(r), static_cast<std::int32_t>(b), area)) {
            fill_area(area, colour, blend != 0);
        }
    };
    if (bottom - top + 1 <= std::int64_t{2} * thickness ||
        right - left + 1 <= std::int64_t{2} * thickness) {
        fill(left, top, right, bottom);
        return;
    }
    // No pixel twice, for the sake of a colour that is mixed.
    fill(left, top, right, top + thickness - 1);
    fill(left, bottom - thickness + 1, right, bottom);
    fill(left, top + thickness, left + thickness - 1, bottom - thickness);
    fill(right - thickness + 1, top + thickness, right, bottom - thickness);
}

void IMAGE::draw_xor_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          COLOUR colour) {
    if (!can_draw("draw_xor_rect")) {
        return;
    }
    const std::int32_t left = std::min(x1, x2);
    const std::int32_t right = std::max(x1, x2);
    const std::int32_t top = std::min(y1, y2);
    const std::int32_t bottom = std::max(y1, y2);
    const std::uint32_t bits = colour.value & 0x00FFFFFFu;
    const auto invert = [&](std::int32_t l, std::int32_t t, std::int32_t r, std::int32_t b) {
        AREA area;
        if (l > r || t > b || !clip(l, t, r, b, area)) {
            return;
        }
        for (std::int32_t y = area.top; y <= area.bottom; ++y) {
            for (std::int32_t x = area.left; x <= area.right; ++x) {
                row(y)[x].value ^= bits;
            }
        }
        widen_dirty(area);
    };
    invert(left, top, right, top);
    if (bottom > top) {
        invert(left, bottom, right, bottom);
    }
    if (bottom - std::int64_t{top} > 1) {
        invert(left, top + 1, left, bottom - 1);
        if (right > left) {
            invert(right, top + 1, right, bottom - 1);
        }
    }
}

void IMAGE::draw_line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                      COLOUR colour, std::int32_t thickness, unsigned char anti_alias) {
    if (anti_alias) {
        plot_anti_aliased_line(x1, y1, x2, y2, colour, thickness);
    } else {
        plot_line(x1, y1, x2, y2, colour, thickness);
    }
}

void IMAGE::draw_horizontal_line(std::int32_t x1, std::int32_t x2, std::int32_t y, COLOUR colour,
                                 std::int32_t thickness) {
    AREA area;
    thickness = std::clamp(thickness, 1, FAR_AWAY);
    const std::int32_t top = limit(y) - thickness / 2;
    if (can_draw("draw_horizontal_line") && clip(x1, top, x2, top + thickness - 1, area)) {
        fill_area(area, colour, true);
    }
}

void IMAGE::draw_vertical_line(std::int32_t x, std::int32_t y1, std::int32_t y2, COLOUR colour,
                               std::int32_t thickness) {
    AREA area;
    thickness = std::clamp(thickness, 1, FAR_AWAY);
    const std::int32_t left = limit(x) - thickness / 2;
    if (can_draw("draw_vertical_line") && clip(left, y1, left + thickness - 1, y2, area)) {
        fill_area(area, colour, true);
    }
}

void IMAGE::mix_span(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                     COLOUR colour) {
    AREA area;
    if (clip(x1, y1, x2, y2, area)) {
        fill_area(area, colour, true);
    }
}

// Bresenham's walk, entered where the line comes into the active area.
void IMAGE::plot_line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                      COLOUR colour, std::int32_t thickness) {
    AREA active;
    if (!can_draw("plot_line") || !get_active(active)) {
        return;
    }
    if (y1 == y2) {
        draw_horizontal_line(x1, x2, y1, colour, thickness);
        return;
    }
    if (x1 == x2) {
        draw_vertical_line(x1, y1, y2, colour, thickness);
        return;
    }
    thickness = std::clamp(thickness, 1, FAR_AWAY);
    const LINE_WALK walk(limit(x1), limit(y1), limit(x2), limit(y2));
    const std::int64_t length = walk.last - walk.first;
    const std::int64_t rise = walk.minor_last - walk.minor_first;
    const std::int32_t start = std::max(walk.first, walk.along_x ? active.left : active.top);
    const std::int32_t end = std::min(walk.last, walk.along_x ? active.right : active.bottom);
    if (start > end) {
        return;  // among others a line whose ends are so far away that they have become one
    }
    // minor = minor_first + floor((step * rise) / length + 1/2)
    const std::int64_t scaled = 2 * (std::int64_t{start} - walk.first) * rise + length;
    std::int64_t minor = scaled / (2 * length);
    std::int64_t error = scaled % (2 * length);
    if (error < 0) {
        error += 2 * length;
        --minor;
    }
    minor += walk.minor_first;
    for (std::int32_t major = start; major <= end; ++major) {
        const auto from = static_cast<std::int32_t>(minor - thickness / 2);
        const std::int32_t to = from + thickness - 1;
        if (walk.along_x) {
            mix_span(major, from, major, to, colour);
        } else {
            mix_span(from, major, to, major, colour);
        }
        error += 2 * rise;
        if (error >= 2 * length) {
            error -= 2 * length;
            ++minor;
        } else if (error < 0) {
            error += 2 * length;
            --minor;
        }
    }
}

void IMAGE::plot_anti_aliased_line(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                   std::int32_t y2, COLOUR colour, std::int32_t thickness) {
    AREA active;
    if (!can_draw("plot_anti_aliased_line") || !get_active(active) || colour.alpha() == 0) {
        return;
    }
    if (x1 == x2 || y1 == y2) {
        plot_line(x1, y1, x2, y2, colour, thickness);
        return;
    }
    const LINE_WALK walk(limit(x1), limit(y1), limit(x2), limit(y2));
    const std::int32_t half = std::clamp(thickness, 1, FAR_AWAY) / 2;
    const double slope = static_cast<double>(walk.minor_last - walk.minor_first) /
                         static_cast<double>(walk.last - walk.first);
    const std::int32_t start = std::max(walk.first, walk.along_x ? active.left : active.top);
    const std::int32_t end = std::min(walk.last, walk.along_x ? active.right : active.bottom);
    const auto mix = [&](std::int32_t major, std::int32_t from, std::int32_t to, double part) {
        const auto alpha = static_cast<unsigned char>(colour.alpha() * part + 0.5);
        if (from > to || alpha == 0) {
            return;
        }
        const COLOUR shade = part == 1.0 ? colour : colour.with_alpha(alpha);
        if (walk.along_x) {
            mix_span(major, from, major, to, shade);
        } else {
            mix_span(from, major, to, major, shade);
        }
    };
    for (std::int32_t major = start; major <= end; ++major) {
        const double minor = walk.minor_first + slope * (major - walk.first);
        const double whole = std::floor(minor);
        const double fraction = minor - whole;
        const auto base = static_cast<std::int32_t>(whole);
        mix(major, base - half, base - half, 1.0 - fraction);
        mix(major, base - half + 1, base + half, 1.0);
        mix(major, base + half + 1, base + half + 1, fraction);
    }
}
