#include "pixel_rows.h"

#include <algorithm>

namespace {

// Calls `operation(target pixel, x, y)` for each pixel.
template <class OPERATION>
void for_each_pixel(const PIXEL_BLOCK& target, OPERATION operation) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* row = target.row(y);
        for (std::int32_t x = 0; x < target.width; ++x) {
            operation(row[x], x, y);
        }
    }
}

}  // namespace

void PLAIN_ROWS::fill(const PIXEL_BLOCK& target, COLOUR colour) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        std::fill_n(target.row(y), target.width, colour);
    }
}

void PLAIN_ROWS::copy(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        std::copy_n(source.row(y), target.width, target.row(y));
    }
}

void PLAIN_ROWS::mix_colour(const PIXEL_BLOCK& target, COLOUR colour, unsigned char alpha) {
    for_each_pixel(target,
                   [&](COLOUR& pixel, std::int32_t, std::int32_t) { pixel.mix(colour, alpha); });
}

void PLAIN_ROWS::blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for_each_pixel(target, [&](COLOUR& pixel, std::int32_t x, std::int32_t y) {
        const COLOUR other = source.row(y)[x];
        pixel.mix(other, other.alpha());
    });
}

void PLAIN_ROWS::blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,
                              unsigned char alpha) {
    for_each_pixel(target, [&](COLOUR& pixel, std::int32_t x, std::int32_t y) {
        const COLOUR other = source.row(y)[x];
        pixel.mix(other, static_cast<unsigned char>(scale_alpha(other.alpha(), alpha)));
    });
}

void PLAIN_ROWS::mask(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for_each_pixel(target, [&](COLOUR& pixel, std::int32_t x, std::int32_t y) {
        pixel = pixel.with_alpha(source.row(y)[x].alpha() != 0 ? 255 : 0);
    });
}

void PLAIN_ROWS::multiply_alpha(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for_each_pixel(target, [&](COLOUR& pixel, std::int32_t x, std::int32_t y) {
        pixel = pixel.with_alpha(
            static_cast<unsigned char>(scale_alpha(pixel.alpha(), source.row(y)[x].alpha())));
    });
}

void PLAIN_ROWS::mix_coverage(const PIXEL_BLOCK& target, const SOURCE_COVERAGE& coverage,
                              COLOUR colour) {
    for_each_pixel(target, [&](COLOUR& pixel, std::int32_t x, std::int32_t y) {
        pixel.mix(colour,
                  static_cast<unsigned char>(scale_alpha(coverage.row(y)[x], colour.alpha())));
    });
}
