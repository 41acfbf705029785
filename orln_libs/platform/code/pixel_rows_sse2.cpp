#include "pixel_rows.h"

#if defined(__SSE2__)

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace {

__m128i load4(const COLOUR* pixels) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
}

void store4(COLOUR* pixels, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels), value);
}

__m128i load2(const COLOUR* pixels) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels));
}

void store2(COLOUR* pixels, __m128i value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixels), value);
}

__m128i load1(const COLOUR* pixel) {
    return _mm_cvtsi32_si128(static_cast<int>(pixel->value));
}

void store1(COLOUR* pixel, __m128i value) {
    pixel->value = static_cast<std::uint32_t>(_mm_cvtsi128_si32(value));
}

__m128i select(__m128i condition, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(condition, yes), _mm_andnot_si128(condition, no));
}

__m128i alpha_bits() {
    return _mm_set1_epi32(static_cast<int>(0xFF000000u));
}

__m128i lower_bytes() {
    return _mm_set1_epi16(0x00FF);
}

// 16-bit lanes below 65536 divided by 255, rounded down.
__m128i divide_by_255(__m128i value) {
    return _mm_srli_epi16(_mm_mulhi_epu16(value, _mm_set1_epi16(static_cast<short>(0x8081))), 7);
}

// Four pixels in 16-bit lanes, without unpacking: blue and red, green and alpha.
struct WIDE {
    explicit WIDE(__m128i pixels)
        : blue_red(_mm_and_si128(pixels, lower_bytes())), green_alpha(_mm_srli_epi16(pixels, 8)) {}

    __m128i blue_red, green_alpha;
};

// A number below 256 in each pixel becomes the same in both of its 16-bit lanes.
__m128i spread(__m128i numbers) {
    return _mm_or_si128(numbers, _mm_slli_epi32(numbers, 16));
}

__m128i spread_alpha(__m128i pixels) {
    return spread(_mm_srli_epi32(pixels, 24));
}

// COLOUR::mix on four pixels, where `alpha` (in both lanes) is below the threshold and `keep` is
// keep_of(alpha): (other * alpha + pixel * keep) >> 8, and the sum of the alphas.
__m128i mix_lanes(__m128i pixels, const WIDE& others, __m128i alpha, __m128i keep) {
    const WIDE wide(pixels);
    const __m128i blue_red = _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(others.blue_red, alpha),
                                                          _mm_mullo_epi16(wide.blue_red, keep)),
                                            8);
    const __m128i green = _mm_and_si128(_mm_add_epi16(_mm_mullo_epi16(others.green_alpha, alpha),
                                                      _mm_mullo_epi16(wide.green_alpha, keep)),
                                        _mm_set1_epi32(0x0000FF00));
    const __m128i sum =
        _mm_and_si128(_mm_adds_epu8(pixels, _mm_slli_epi32(alpha, 24)), alpha_bits());
    return _mm_or_si128(_mm_or_si128(blue_red, green), sum);
}

// 255 less the alpha. By an alpha of 0 a pixel must not change at all: * 256 >> 8.
__m128i keep_of(__m128i alpha) {
    return _mm_sub_epi16(_mm_xor_si128(alpha, lower_bytes()),
                         _mm_cmpeq_epi16(alpha, _mm_setzero_si128()));
}

// The threshold of opacity, at least 1, since an alpha of 0 never counts as opaque.
std::uint32_t solid_threshold() {
    return std::max<std::uint32_t>(1, COLOUR::alpha_solid_threshold);
}

// COLOUR::mix on four pixels with any alphas.
class MIXER {
public:
    MIXER() : below_threshold(_mm_set1_epi16(static_cast<short>(solid_threshold() - 1))) {}

    __m128i mix(__m128i pixels, __m128i others, const WIDE& wide_others, __m128i alpha) const {
        const __m128i mixed = mix_lanes(pixels, wide_others, alpha, keep_of(alpha));
        return select(_mm_cmpgt_epi16(alpha, below_threshold), others, mixed);
    }

private:
    __m128i below_threshold;
};

// Blending by the alphas of the source itself. In most places of most pictures they are all opaque
// or all invisible.
class BLENDER {
public:
    BLENDER() : opaque(_mm_set1_epi32(static_cast<int>(solid_threshold() << 24))) {}

    __m128i mix(__m128i pixels, __m128i others) const {
        return mixer.mix(pixels, others, WIDE(others), spread_alpha(others));
    }

    void blend_four(COLOUR* to, __m128i others) const {
        const __m128i is_opaque = _mm_cmpeq_epi8(_mm_max_epu8(others, opaque), others);
        if (_mm_movemask_epi8(is_opaque) == 0xFFFF) {
            store4(to, others);
            return;
        }
        const __m128i is_invisible =
            _mm_cmpeq_epi32(_mm_srli_epi32(others, 24), _mm_setzero_si128());
        if (_mm_movemask_epi8(is_invisible) != 0xFFFF) {
            store4(to, mix(load4(to), others));
        }
    }

private:
    MIXER mixer;
    __m128i opaque;
};

// Calls operation(target pixels, source pixels) on vectors of four, two and one pixels, and stores
// what it yields. Nothing beyond a row is read.
template <class OPERATION>
void for_each_vector(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source, OPERATION operation) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const COLOUR* from = source.row(y);
        std::int32_t x = 0;
        for (; x + 4 <= target.width; x += 4) {
            store4(to + x, operation(load4(to + x), load4(from + x)));
        }
        if ((target.width & 2) != 0) {
            store2(to + x, operation(load2(to + x), load2(from + x)));
            x += 2;
        }
        if ((target.width & 1) != 0) {
            store1(to + x, operation(load1(to + x), load1(from + x)));
        }
    }
}

}  // namespace

void SSE2_ROWS::fill(const PIXEL_BLOCK& target, COLOUR colour) {
    const __m128i value = _mm_set1_epi32(static_cast<int>(colour.value));
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        std::int32_t left = target.width;
        for (; left >= 16; left -= 16, to += 16) {
            store4(to, value);
            store4(to + 4, value);
            store4(to + 8, value);
            store4(to + 12, value);
        }
        for (; left >= 4; left -= 4, to += 4) {
            store4(to, value);
        }
        for (; left > 0; --left) {
            *to++ = colour;
        }
    }
}

// Not by memcpy: that copies large blocks past the caches, and what is drawn is soon read again.
void SSE2_ROWS::copy(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const COLOUR* from = source.row(y);
        std::int32_t left = target.width;
        for (; left >= 16; left -= 16, to += 16, from += 16) {
            const __m128i first = load4(from);
            const __m128i second = load4(from + 4);
            const __m128i third = load4(from + 8);
            const __m128i fourth = load4(from + 12);
            store4(to, first);
            store4(to + 4, second);
            store4(to + 8, third);
            store4(to + 12, fourth);
        }
        for (; left >= 4; left -= 4, to += 4, from += 4) {
            store4(to, load4(from));
        }
        for (; left > 0; --left) {
            *to++ = *from++;
        }
    }
}

void SSE2_ROWS::mix_colour(const PIXEL_BLOCK& target, COLOUR colour, unsigned char alpha) {
    if (alpha == 0) {
        return;
    }
    if (alpha >= COLOUR::alpha_solid_threshold) {
        fill(target, colour);
        return;
    }
    // What the colour adds, and what is kept of the pixel: of its alpha all, * 256 >> 8, to which
    // `alpha` is added at the end.
    const WIDE wide_colour(_mm_set1_epi32(static_cast<int>(colour.value)));
    const __m128i weight = _mm_set1_epi16(static_cast<short>(alpha));
    const __m128i keep = _mm_set1_epi16(static_cast<short>(255 - alpha));
    const __m128i alpha_lanes = _mm_set1_epi32(static_cast<int>(0xFFFF0000u));
    const __m128i keep_green = select(alpha_lanes, _mm_set1_epi16(256), keep);
    const __m128i blue_red = _mm_mullo_epi16(wide_colour.blue_red, weight);
    const __m128i green =
        _mm_andnot_si128(alpha_lanes, _mm_mullo_epi16(wide_colour.green_alpha, weight));
    const __m128i added_alpha = _mm_set1_epi32(static_cast<int>(std::uint32_t{alpha} << 24));
    const __m128i upper_bytes = _mm_set1_epi16(static_cast<short>(0xFF00));
    const auto mix = [&](__m128i pixels) {
        const WIDE wide(pixels);
        const __m128i low =
            _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(wide.blue_red, keep), blue_red), 8);
        const __m128i high = _mm_and_si128(
            _mm_add_epi16(_mm_mullo_epi16(wide.green_alpha, keep_green), green), upper_bytes);
        return _mm_adds_epu8(_mm_or_si128(low, high), added_alpha);
    };
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        std::int32_t left = target.width;
        for (; left >= 4; left -= 4, to += 4) {
            store4(to, mix(load4(to)));
        }
        for (; left > 0; --left, ++to) {
            store1(to, mix(load1(to)));
        }
    }
}

void SSE2_ROWS::blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    const BLENDER blender;
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const COLOUR* from = source.row(y);
        std::int32_t x = 0;
        for (; x + 4 <= target.width; x += 4) {
            blender.blend_four(to + x, load4(from + x));
        }
        if ((target.width & 2) != 0) {
            store2(to + x, blender.mix(load2(to + x), load2(from + x)));
            x += 2;
        }
        if ((target.width & 1) != 0) {
            store1(to + x, blender.mix(load1(to + x), load1(from + x)));
        }
    }
}

void SSE2_ROWS::blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,
                             unsigned char alpha) {
    if (alpha == 0) {
        return;
    }
    if (alpha == 255) {
        blend(target, source);
        return;
    }
    const __m128i scale = _mm_set1_epi32(alpha);
    const auto scaled_alpha = [&](__m128i others) {
        return spread(divide_by_255(_mm_mullo_epi16(_mm_srli_epi32(others, 24), scale)));
    };
    if (alpha < solid_threshold()) {
        // Nothing is opaque any more.
        for_each_vector(target, source, [&](__m128i pixels, __m128i others) {
            const __m128i spread_scaled = scaled_alpha(others);
            return mix_lanes(pixels, WIDE(others), spread_scaled, keep_of(spread_scaled));
        });
        return;
    }
    const MIXER mixer;
    for_each_vector(target, source, [&](__m128i pixels, __m128i others) {
        return mixer.mix(pixels, others, WIDE(others), scaled_alpha(others));
    });
}

void SSE2_ROWS::mask(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for_each_vector(target, source, [](__m128i pixels, __m128i others) {
        const __m128i is_zero =
            _mm_cmpeq_epi32(_mm_and_si128(others, alpha_bits()), _mm_setzero_si128());
        return _mm_or_si128(_mm_andnot_si128(alpha_bits(), pixels),
                            _mm_andnot_si128(is_zero, alpha_bits()));
    });
}

void SSE2_ROWS::multiply_alpha(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    for_each_vector(target, source, [](__m128i pixels, __m128i others) {
        const __m128i product =
            _mm_mullo_epi16(_mm_srli_epi32(pixels, 24), _mm_srli_epi32(others, 24));
        return _mm_or_si128(_mm_andnot_si128(alpha_bits(), pixels),
                            _mm_slli_epi32(divide_by_255(product), 24));
    });
}

void SSE2_ROWS::mix_coverage(const PIXEL_BLOCK& target, const SOURCE_COVERAGE& coverage,
                             COLOUR colour) {
    const MIXER mixer;
    const __m128i others = _mm_set1_epi32(static_cast<int>(colour.value));
    const WIDE wide_others(others);
    const __m128i scale = _mm_set1_epi16(colour.alpha());
    const bool is_scaled = colour.alpha() != 255;
    const auto mix = [&](__m128i pixels, std::uint32_t four_bytes) {
        __m128i alpha = _mm_cvtsi32_si128(static_cast<int>(four_bytes));
        alpha = _mm_unpacklo_epi8(alpha, alpha);
        alpha = _mm_and_si128(_mm_unpacklo_epi16(alpha, alpha), lower_bytes());
        if (is_scaled) {
            alpha = divide_by_255(_mm_mullo_epi16(alpha, scale));
        }
        return mixer.mix(pixels, others, wide_others, alpha);
    };
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const unsigned char* from = coverage.row(y);
        std::int32_t x = 0;
        for (; x + 4 <= target.width; x += 4) {
            std::uint32_t bytes;
            std::memcpy(&bytes, from + x, sizeof bytes);
            if (bytes == 0xFFFFFFFFu && !is_scaled) {
                store4(to + x, others);
            } else if (bytes != 0) {
                store4(to + x, mix(load4(to + x), bytes));
            }
        }
        if ((target.width & 2) != 0) {
            std::uint16_t bytes;
            std::memcpy(&bytes, from + x, sizeof bytes);
            if (bytes != 0) {
                store2(to + x, mix(load2(to + x), bytes));
            }
            x += 2;
        }
        if ((target.width & 1) != 0 && from[x] != 0) {
            store1(to + x, mix(load1(to + x), from[x]));
        }
    }
}

#endif  // __SSE2__
