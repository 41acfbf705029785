// Every function here is compiled for AVX2 by its attribute, not by the file's flags, so that
// nothing else of the program can come to need it.
#include "pixel_rows.h"

#if defined(__SSE2__)

#include <immintrin.h>

#define FOR_AVX2 __attribute__((target("avx2")))

namespace {

// Eight pixels in 16-bit lanes: blue and red, green and alpha.
struct WIDE {
    __m256i blue_red, green_alpha;
};

FOR_AVX2 inline WIDE widen(__m256i pixels) {
    return {_mm256_and_si256(pixels, _mm256_set1_epi16(0x00FF)), _mm256_srli_epi16(pixels, 8)};
}

// (other * alpha + pixel * keep) >> 8 in the upper byte of each lane, with another byte below.
FOR_AVX2 inline __m256i mix_lanes(__m256i pixels, __m256i others, __m256i alpha, __m256i keep) {
    return _mm256_add_epi16(_mm256_mullo_epi16(others, alpha), _mm256_mullo_epi16(pixels, keep));
}

// COLOUR::mix on eight pixels, each at its alpha (a 32-bit number). An alpha above
// `below_threshold`, which isn't negative, is opaque.
FOR_AVX2 inline __m256i mix(__m256i pixels, __m256i others, __m256i alphas,
                            __m256i below_threshold) {
    const __m256i alpha = _mm256_or_si256(alphas, _mm256_slli_epi32(alphas, 16));
    // By an alpha of 0 a pixel must not change at all: * 256 >> 8.
    const __m256i keep = _mm256_sub_epi16(_mm256_xor_si256(alpha, _mm256_set1_epi16(0x00FF)),
                                          _mm256_cmpeq_epi16(alpha, _mm256_setzero_si256()));
    const WIDE wide = widen(pixels);
    const WIDE wide_others = widen(others);
    const __m256i blue_red =
        _mm256_srli_epi16(mix_lanes(wide.blue_red, wide_others.blue_red, alpha, keep), 8);
    const __m256i green = mix_lanes(wide.green_alpha, wide_others.green_alpha, alpha, keep);
    const __m256i colours =
        _mm256_blendv_epi8(blue_red, green, _mm256_set1_epi32(static_cast<int>(0xFF00FF00u)));
    const __m256i mixed =
        _mm256_blendv_epi8(colours, _mm256_adds_epu8(pixels, _mm256_slli_epi32(alphas, 24)),
                           _mm256_set1_epi32(static_cast<int>(0xFF000000u)));
    return _mm256_blendv_epi8(mixed, others, _mm256_cmpgt_epi16(alpha, below_threshold));
}

FOR_AVX2 inline __m256i load8(const COLOUR* pixels) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pixels));
}

FOR_AVX2 inline void store8(COLOUR* pixels, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pixels), value);
}

FOR_AVX2 inline __m256i alphas_of(__m256i pixels) {
    return _mm256_srli_epi32(pixels, 24);
}

// The same, each multiplied by `scale` and divided by 255, rounded down.
FOR_AVX2 inline __m256i scaled_alphas_of(__m256i pixels, __m256i scale) {
    const __m256i product = _mm256_mullo_epi16(alphas_of(pixels), scale);
    return _mm256_srli_epi16(_mm256_mulhi_epu16(product, _mm256_set1_epi32(0x8081)), 7);
}

// An alpha of 0 is never opaque.
FOR_AVX2 inline int solid_threshold() {
    return COLOUR::alpha_solid_threshold > 1 ? COLOUR::alpha_solid_threshold : 1;
}

// The pixels left over at the end of a row, at their alphas scaled.
FOR_AVX2 inline void blend_some(COLOUR* to, const COLOUR* from, std::int32_t count, __m256i scale,
                                __m256i below_threshold) {
    const __m256i is_there =
        _mm256_cmpgt_epi32(_mm256_set1_epi32(count), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    int* words = reinterpret_cast<int*>(to);
    const __m256i others = _mm256_maskload_epi32(reinterpret_cast<const int*>(from), is_there);
    const __m256i mixed = mix(_mm256_maskload_epi32(words, is_there), others,
                              scaled_alphas_of(others, scale), below_threshold);
    _mm256_maskstore_epi32(words, is_there, mixed);
}

}  // namespace

bool AVX2_ROWS::is_supported() {
    return __builtin_cpu_supports("avx2");
}

FOR_AVX2 void AVX2_ROWS::blend(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source) {
    const int threshold = solid_threshold();
    const __m256i below_threshold = _mm256_set1_epi16(static_cast<short>(threshold - 1));
    // In most places of most pictures all pixels are opaque or all are invisible: less 1, their
    // alphas aren't below the threshold less 1.
    const __m256i one = _mm256_set1_epi32(0x01000000);
    const __m256i limit =
        _mm256_set1_epi32(static_cast<int>(static_cast<std::uint32_t>(threshold - 1) << 24));
    constexpr int ALL = 0xFF;
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const COLOUR* from = source.row(y);
        std::int32_t x = 0;
        for (; x + 8 <= target.width; x += 8) {
            const __m256i others = load8(from + x);
            const __m256i less = _mm256_sub_epi8(others, one);
            const __m256i is_special = _mm256_cmpeq_epi8(_mm256_max_epu8(less, limit), less);
            if (_mm256_movemask_ps(_mm256_castsi256_ps(is_special)) != ALL) {
                store8(to + x, mix(load8(to + x), others, alphas_of(others), below_threshold));
                continue;
            }
            const __m256i is_zero =
                _mm256_cmpeq_epi32(_mm256_srli_epi32(others, 24), _mm256_setzero_si256());
            const int zeros = _mm256_movemask_ps(_mm256_castsi256_ps(is_zero));
            if (zeros == 0) {
                store8(to + x, others);
            } else if (zeros != ALL) {
                store8(to + x, mix(load8(to + x), others, alphas_of(others), below_threshold));
            }
        }
        if (x < target.width) {
            blend_some(to + x, from + x, target.width - x, _mm256_set1_epi32(255), below_threshold);
        }
    }
}

FOR_AVX2 void AVX2_ROWS::blend_scaled(const PIXEL_BLOCK& target, const SOURCE_PIXELS& source,
                                      unsigned char alpha) {
    const __m256i below_threshold = _mm256_set1_epi16(static_cast<short>(solid_threshold() - 1));
    const __m256i scale = _mm256_set1_epi32(alpha);
    for (std::int32_t y = 0; y < target.height; ++y) {
        COLOUR* to = target.row(y);
        const COLOUR* from = source.row(y);
        std::int32_t x = 0;
        for (; x + 8 <= target.width; x += 8) {
            const __m256i others = load8(from + x);
            store8(to + x,
                   mix(load8(to + x), others, scaled_alphas_of(others, scale), below_threshold));
        }
        if (x < target.width) {
            blend_some(to + x, from + x, target.width - x, scale, below_threshold);
        }
    }
}

#endif  // __SSE2__
