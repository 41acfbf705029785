// The inner loops of copies, fills and glyphs, on blocks of pixels that lie in memory.
//
// Versions with the same operations and exactly the same results: PLAIN_ROWS is the reference and
// runs anywhere, SSE2_ROWS uses the vector instructions that every x86-64 machine has, AVX2_ROWS
// those that most have, for the two operations that they are worth it.
//
// Blocks are `width` by `height` pixels with rows `*_stride` pixels apart. Source and target don't
// overlap, except in PLAIN_ROWS where a block may be its own source.
#ifndef PLATFORM_CODE_PIXEL_ROWS_H
#define PLATFORM_CODE_PIXEL_ROWS_H

#include <cstddef>
#include <cstdint>

#include "platform/colour.h"

struct PIXEL_BLOCK {
    COLOUR* pixels;
    std::ptrdiff_t stride;
    std::int32_t width, height;

    COLOUR* row(std::int32_t y) const { return pixels + y * stride; }
};

struct SOURCE_PIXELS {
    const COLOUR* pixels;
    std::ptrdiff_t stride;

    const COLOUR* row(std::int32_t y) const { return pixels + y * stride; }
};

struct SOURCE_COVERAGE {
    const unsigned char* bytes;
    std::ptrdiff_t pitch;

    const unsigned char* row(std::int32_t y) const { return bytes + y * pitch; }
};

// The division that scales one alpha by another.
constexpr unsigned scale_alpha(unsigned alpha, unsigned scale) {
    return alpha * scale / 255u;
}

#define PIXEL_ROW_OPERATIONS                                                               \
    /* Stores the colour. */                                                               \
    static void fill(const PIXEL_BLOCK& target, COLOUR colour);                            \
    /* Stores the source. */                                                               \
    static void copy(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source);              \
    /* COLOUR::mix with the colour. */                                                     \
    static void mix_colour(const PIXEL_BLOCK& target, COLOUR colour, unsigned char alpha); \
    /* COLOUR::mix with each source pixel at its alpha, or at that scaled by `alpha`. */   \
    static void blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source);             \
    static void blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,       \
                             unsigned char alpha);                                         \
    /* Target alpha 255 where the source's isn't 0, else 0. */                             \
    static void mask(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source);              \
    /* Target alpha * source alpha / 255. */                                               \
    static void multiply_alpha(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source);    \
    /* COLOUR::mix with the colour at each coverage scaled by the colour's alpha. */       \
    static void mix_coverage(const PIXEL_BLOCK& target, const SOURCE_COVERAGE& coverage,   \
                             COLOUR colour)

struct PLAIN_ROWS {
    PIXEL_ROW_OPERATIONS;
};

#if defined(__SSE2__)
struct SSE2_ROWS {
    PIXEL_ROW_OPERATIONS;
};

struct AVX2_ROWS : SSE2_ROWS {
    // Only where this is true may the operations below be called.
    static bool is_supported();
    static void blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source);
    static void blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,
                             unsigned char alpha);
};

// What the machine has.
struct PIXEL_ROWS : SSE2_ROWS {
    static void blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
        if (AVX2_ROWS::is_supported()) {
            AVX2_ROWS::blend(target, source);
        } else {
            SSE2_ROWS::blend(target, source);
        }
    }
    static void blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,
                             unsigned char alpha) {
        if (AVX2_ROWS::is_supported()) {
            AVX2_ROWS::blend_scaled(target, source, alpha);
        } else {
            SSE2_ROWS::blend_scaled(target, source, alpha);
        }
    }
};
#else
using PIXEL_ROWS = PLAIN_ROWS;
#endif

#undef PIXEL_ROW_OPERATIONS

#endif  // PLATFORM_CODE_PIXEL_ROWS_H
