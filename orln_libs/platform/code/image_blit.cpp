// Copies between images and the filling of rectangles.
#include <algorithm>
#include <memory>

#include "pixel_rows.h"
#include "platform/image.h"

namespace {

void copy_block(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source, IMAGE_COPY_TYPE type,
                unsigned char alpha) {
    switch (type) {
        case IMAGE_COPY_BLEND:
            if (alpha == 255) {
                PIXEL_ROWS::blend(target, source);
            } else {
                PIXEL_ROWS::blend_scaled(target, source, alpha);
            }
            break;
        case IMAGE_COPY_SOLID:
            PIXEL_ROWS::copy(target, source);
            break;
        case IMAGE_COPY_MASK:
            PIXEL_ROWS::mask(target, source);
            break;
        case IMAGE_COPY_MULTIPLY_ALPHA:
            PIXEL_ROWS::multiply_alpha(target, source);
            break;
    }
}

// Source and target lie in one picture: row by row through a row of its own, from the bottom when
// the picture moves down.
void copy_within(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source, IMAGE_COPY_TYPE type,
                 unsigned char alpha) {
    const std::unique_ptr<COLOUR[]> row(new COLOUR[static_cast<std::size_t>(target.width)]);
    const bool is_upwards = source.pixels < target.pixels;
    for (std::int32_t i = 0; i < target.height; ++i) {
        const std::int32_t y = is_upwards ? target.height - 1 - i : i;
        std::copy_n(source.row(y), target.width, row.get());
        copy_block({target.row(y), target.stride, target.width, 1}, {row.get(), 0}, type, alpha);
    }
}

// One axis of a copy: cuts it to [source_first, source_last] and [target_first, target_last], and
// moves both sides together.
bool clip_copy(std::int64_t& source, std::int64_t& target, std::int64_t& size,
               std::int32_t source_size, std::int32_t target_first, std::int32_t target_last) {
    const std::int64_t skip =
        std::max<std::int64_t>({0, -source, std::int64_t{target_first} - target});
    source += skip;
    target += skip;
    size -= skip;
    size = std::min(
        {size, std::int64_t{source_size} - source, std::int64_t{target_last} - target + 1});
    return size > 0;
}

}  // namespace

void IMAGE::copy(const IMAGE* source, std::int32_t sx, std::int32_t sy, std::int32_t dx,
                 std::int32_t dy, std::int32_t copy_width, std::int32_t copy_height,
                 IMAGE_COPY_TYPE type, unsigned char alpha) {
    AREA active;
    if (!source || !source->pixels || !can_draw("copy") || !get_active(active)) {
        return;
    }
    std::int64_t from_x = sx;
    std::int64_t to_x = dx;
    std::int64_t columns = copy_width;
    std::int64_t from_y = sy;
    std::int64_t to_y = dy;
    std::int64_t rows = copy_height;
    if (!clip_copy(from_x, to_x, columns, source->width, active.left, active.right) ||
        !clip_copy(from_y, to_y, rows, source->height, active.top, active.bottom)) {
        return;
    }
    const PIXEL_BLOCK block = {row(static_cast<std::int32_t>(to_y)) + to_x, stride,
                               static_cast<std::int32_t>(columns), static_cast<std::int32_t>(rows)};
    const SOURCE_PIXELS pixels_from = {source->row(static_cast<std::int32_t>(from_y)) + from_x,
                                       source->stride};
    if (source == this) {
        copy_within(block, pixels_from, type, alpha);
    } else {
        copy_block(block, pixels_from, type, alpha);
    }
    widen_dirty({static_cast<std::int32_t>(to_x), static_cast<std::int32_t>(to_y),
                 static_cast<std::int32_t>(to_x + columns - 1),
                 static_cast<std::int32_t>(to_y + rows - 1)});
}

void IMAGE::put(std::int32_t x, std::int32_t y, IMAGE* target, IMAGE_COPY_TYPE type,
                unsigned char alpha) const {
    put(0, 0, width, height, x, y, target, type, alpha);
}

void IMAGE::put(std::int32_t sx, std::int32_t sy, std::int32_t put_width, std::int32_t put_height,
                std::int32_t dx, std::int32_t dy, IMAGE* target, IMAGE_COPY_TYPE type,
                unsigned char alpha) const {
    if (target) {
        target->copy(this, sx, sy, dx, dy, put_width, put_height, type, alpha);
    }
}

void IMAGE::get(std::int32_t x, std::int32_t y, const IMAGE* source, IMAGE_COPY_TYPE type) {
    copy(source, x, y, 0, 0, width, height, type);
}

void IMAGE::fill_area(const AREA& area, COLOUR colour, bool blend) {
    const PIXEL_BLOCK block = {row(area.top) + area.left, stride, area.columns(), area.rows()};
    if (blend) {
        PIXEL_ROWS::mix_colour(block, colour, colour.alpha());
    } else {
        PIXEL_ROWS::fill(block, colour);
    }
    widen_dirty(area);
}

void IMAGE::fill_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                      COLOUR colour, unsigned char blend) {
    AREA area;
    if (can_draw("fill_rect") && clip(x1, y1, x2, y2, area)) {
        fill_area(area, colour, blend != 0);
    }
}

void IMAGE::clear(COLOUR colour, unsigned char blend) {
    AREA area;
    if (can_draw("clear") && get_active(area)) {
        fill_area(area, colour, blend != 0);
    }
}
