// The passes with vector instructions: everything is weighted in 16-bit lanes, B, G, R, A. Weights
// are parts of 65535, so the upper half of a product is the weighted value.
#include "platform/two_pass_scale.h"

#if defined(__SSE2__)

#include <emmintrin.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace {

using two_pass_scale::PICTURE;

__m128i load(const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

void store(void* bytes, __m128i value) {
    _mm_storeu_si128(static_cast<__m128i*>(bytes), value);
}

// Four pixels at most, to the end of a row.
void store_some(COLOUR* to, __m128i pixels, std::int32_t count) {
    COLOUR four[4];
    store(four, pixels);
    std::copy_n(four, std::min(count, 4), to);
}

bool is_opaque_row(const PICTURE<const COLOUR>& picture, std::int32_t y) {
    const COLOUR* row = picture.row(y);
    std::uint32_t all = 0xFF000000u;
    for (std::int32_t x = 0; x < picture.width; ++x) {
        all &= row[x].value;
    }
    return all == 0xFF000000u;
}

// What is added before dividing: the half, and what was lost by rounding each of `products` down,
// on the average.
short rounding_of(std::int32_t products, int half) {
    return static_cast<short>(half + std::min(products / 2, half - 1));
}

// How opaque pixels become lanes: 256 times their channels. The pass between holds pixels again.
struct OPAQUE {
    using BETWEEN = COLOUR;  // one for a pixel
    static constexpr std::size_t BETWEEN_UNITS = 1;
    static constexpr bool ONLY_OPAQUE = true;

    static __m128i prepare_low(__m128i pixels) {
        return _mm_unpacklo_epi8(_mm_setzero_si128(), pixels);
    }
    static __m128i prepare_high(__m128i pixels) {
        return _mm_unpackhi_epi8(_mm_setzero_si128(), pixels);
    }
    static void store_sums(COLOUR* to, __m128i low, __m128i high, short rounding) {
        const __m128i added = _mm_set1_epi16(rounding);
        store(to, _mm_packus_epi16(_mm_srli_epi16(_mm_add_epi16(low, added), 8),
                                   _mm_srli_epi16(_mm_add_epi16(high, added), 8)));
    }
};

// How other pixels do: their channels, and 255 in the place of the alpha, multiplied by the alpha.
// The pass between holds such lanes. Dividing the sums by the alpha's gives the channels again.
struct TRANSLUCENT {
    using BETWEEN = std::uint16_t;
    static constexpr std::size_t BETWEEN_UNITS = 4;
    static constexpr bool ONLY_OPAQUE = false;

    static __m128i prepare_low(__m128i pixels) {
        return multiply_by_alpha(_mm_unpacklo_epi8(pixels, _mm_setzero_si128()));
    }
    static __m128i prepare_high(__m128i pixels) {
        return multiply_by_alpha(_mm_unpackhi_epi8(pixels, _mm_setzero_si128()));
    }
    static void store_sums(std::uint16_t* to, __m128i low, __m128i high, short) {
        store(to, low);
        store(to + 8, high);
    }

    // Four pixels out of their sums.
    static __m128i finish(__m128i low, __m128i high, short rounding) {
        // Most pictures are opaque or invisible almost everywhere.
        constexpr long long ALMOST_OPAQUE = 65025 - 127;
        const __m128i opaque = _mm_set1_epi64x(ALMOST_OPAQUE << 48);
        const __m128i zero = _mm_setzero_si128();
        const __m128i lacking =
            _mm_or_si128(_mm_subs_epu16(opaque, low), _mm_subs_epu16(opaque, high));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(lacking, zero)) == 0xFFFF) {
            return _mm_packus_epi16(divide_by_255(low, rounding), divide_by_255(high, rounding));
        }
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(low, high), zero)) == 0xFFFF) {
            return zero;
        }
        return divide_by_alphas(low, high);
    }

private:
    static __m128i multiply_by_alpha(__m128i two_pixels) {
        constexpr int ALPHA_LANE = _MM_SHUFFLE(3, 3, 3, 3);
        const __m128i alpha =
            _mm_shufflehi_epi16(_mm_shufflelo_epi16(two_pixels, ALPHA_LANE), ALPHA_LANE);
        const __m128i full = _mm_set1_epi64x(0x00FF000000000000);
        return _mm_mullo_epi16(_mm_or_si128(two_pixels, full), alpha);
    }

    static __m128i divide_by_255(__m128i sums, short rounding) {
        const __m128i rounded = _mm_add_epi16(sums, _mm_set1_epi16(rounding));
        return _mm_srli_epi16(_mm_mulhi_epu16(rounded, _mm_set1_epi16(static_cast<short>(0x8081))),
                              7);
    }

    template <int PIXEL>
    static __m128i multiply(__m128i sums, __m128 factors) {
        constexpr int LANE = _MM_SHUFFLE(PIXEL, PIXEL, PIXEL, PIXEL);
        return _mm_cvtps_epi32(
            _mm_mul_ps(_mm_cvtepi32_ps(sums), _mm_shuffle_ps(factors, factors, LANE)));
    }

    static __m128i divide_by_alphas(__m128i low, __m128i high) {
        const __m128i zero = _mm_setzero_si128();
        const __m128 alphas = _mm_cvtepi32_ps(_mm_castps_si128(
            _mm_shuffle_ps(_mm_castsi128_ps(_mm_srli_epi64(low, 48)),
                           _mm_castsi128_ps(_mm_srli_epi64(high, 48)), _MM_SHUFFLE(2, 0, 2, 0))));
        // Where there is no alpha there is no colour either, and any factor will do.
        const __m128 factors =
            _mm_div_ps(_mm_set1_ps(255.0f), _mm_max_ps(alphas, _mm_set1_ps(1.0f)));
        const __m128i first = _mm_packs_epi32(multiply<0>(_mm_unpacklo_epi16(low, zero), factors),
                                              multiply<1>(_mm_unpackhi_epi16(low, zero), factors));
        const __m128i last = _mm_packs_epi32(multiply<2>(_mm_unpacklo_epi16(high, zero), factors),
                                             multiply<3>(_mm_unpackhi_epi16(high, zero), factors));
        const __m128i colours =
            _mm_and_si128(_mm_packus_epi16(first, last), _mm_set1_epi32(0x00FFFFFF));
        const __m128i bytes = _mm_cvtps_epi32(_mm_mul_ps(alphas, _mm_set1_ps(1.0f / 255.0f)));
        return _mm_or_si128(colours, _mm_slli_epi32(bytes, 24));
    }
};

// --- Rows ---

// The weights of two neighbours, each in the lanes of its pixel.
struct PAIR_OF_WEIGHTS {
    __m128i lanes;
};

// A line as the row pass wants it: every sample takes in the same number of pixels, an even one.
struct ROW_PLAN {
    explicit ROW_PLAN(const LINE_CONTRIBUTIONS& line) {
        std::int32_t longest = 0;
        for (const auto& sample : line.samples) {
            longest = std::max(longest, sample.count);
        }
        pairs = (longest + 1) / 2;
        lefts.reserve(line.samples.size());
        weights.reserve(line.samples.size() * static_cast<std::size_t>(pairs));
        for (const auto& sample : line.samples) {
            lefts.push_back(sample.left);
            const std::uint16_t* parts = line.parts.data() + sample.first_weight;
            for (std::int32_t i = 0; i < 2 * pairs; i += 2) {
                const auto first = static_cast<short>(i < sample.count ? parts[i] : 0);
                const auto second = static_cast<short>(i + 1 < sample.count ? parts[i + 1] : 0);
                weights.push_back(
                    {_mm_set_epi16(second, second, second, second, first, first, first, first)});
            }
        }
    }

    std::int32_t pairs = 0;
    std::vector<std::int32_t> lefts;
    std::vector<PAIR_OF_WEIGHTS> weights;
};

// A source row, its pixels in lanes. Behind it there are zeros for samples to reach into.
class WIDE_ROW {
public:
    WIDE_ROW(std::int32_t width, std::int32_t pairs)
        : words(4 * (static_cast<std::size_t>(width) + 2 * static_cast<std::size_t>(pairs))) {}

    template <class FORM>
    void set(const COLOUR* row, std::int32_t width) {
        std::int32_t x = 0;
        std::uint16_t* to = words.data();
        for (; x + 4 <= width; x += 4, to += 16) {
            const __m128i pixels = load(row + x);
            store(to, FORM::prepare_low(pixels));
            store(to + 8, FORM::prepare_high(pixels));
        }
        for (; x < width; ++x, to += 4) {
            const __m128i pixel = _mm_cvtsi32_si128(static_cast<int>(row[x].value));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(to), FORM::prepare_low(pixel));
        }
    }
    // Two pixels from x on.
    __m128i at(std::int32_t x) const {
        return load(words.data() + 4 * static_cast<std::ptrdiff_t>(x));
    }

private:
    std::vector<std::uint16_t> words;
};

// The weighted pixels of a sample: those at even places in the lower half, the others in the upper
// one. PAIRS is the number of pairs, 0 for any.
template <int PAIRS>
__m128i weigh_sample(const WIDE_ROW& row, const PAIR_OF_WEIGHTS* weights, std::int32_t left,
                     std::int32_t pairs) {
    const std::int32_t count = PAIRS != 0 ? PAIRS : pairs;
    __m128i sum = _mm_mulhi_epu16(row.at(left), weights[0].lanes);
    for (std::int32_t i = 1; i < count; ++i) {
        sum = _mm_add_epi16(sum, _mm_mulhi_epu16(row.at(left + 2 * i), weights[i].lanes));
    }
    return sum;
}

// The sums of two samples, one in each half.
__m128i add_halves(__m128i first, __m128i second) {
    return _mm_add_epi16(_mm_unpacklo_epi64(first, second), _mm_unpackhi_epi64(first, second));
}

template <class FORM, int PAIRS>
void scale_row(const WIDE_ROW& row, typename FORM::BETWEEN* to, const ROW_PLAN& plan) {
    constexpr std::size_t UNITS = FORM::BETWEEN_UNITS;
    const std::size_t count = plan.lefts.size();
    const std::int32_t* left = plan.lefts.data();
    const PAIR_OF_WEIGHTS* weights = plan.weights.data();
    const short rounding = rounding_of(2 * plan.pairs, 128);
    const auto weigh_next = [&] {
        const __m128i sum = weigh_sample<PAIRS>(row, weights, *left++, plan.pairs);
        weights += PAIRS != 0 ? PAIRS : plan.pairs;
        return sum;
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4, to += 4 * UNITS) {
        const __m128i first = weigh_next();
        const __m128i second = weigh_next();
        const __m128i third = weigh_next();
        const __m128i fourth = weigh_next();
        FORM::store_sums(to, add_halves(first, second), add_halves(third, fourth), rounding);
    }
    for (; i < count; ++i, to += UNITS) {
        const __m128i sum = weigh_next();
        typename FORM::BETWEEN block[4 * UNITS];
        FORM::store_sums(block, add_halves(sum, sum), _mm_setzero_si128(), rounding);
        std::copy_n(block, UNITS, to);
    }
}

// The row pass over rows `first` to `last` - 1. False if one of them hasn't the form.
template <class FORM>
bool scale_rows(const PICTURE<const COLOUR>& source, std::int32_t first, std::int32_t last,
                typename FORM::BETWEEN* to, const ROW_PLAN& plan, WIDE_ROW& row) {
    for (std::int32_t y = first; y < last; ++y) {
        if (FORM::ONLY_OPAQUE && !is_opaque_row(source, y)) {
            return false;
        }
        row.set<FORM>(source.row(y), source.width);
        switch (plan.pairs) {
            case 1:
                scale_row<FORM, 1>(row, to, plan);
                break;
            case 2:
                scale_row<FORM, 2>(row, to, plan);
                break;
            case 3:
                scale_row<FORM, 3>(row, to, plan);
                break;
            default:
                scale_row<FORM, 0>(row, to, plan);
                break;
        }
        to += plan.lefts.size() * FORM::BETWEEN_UNITS;
    }
    return true;
}

// --- Columns ---

// The rows between that go into a row of the target, and their weights.
template <class UNIT>
struct ROWS {
    const UNIT* first;
    std::ptrdiff_t stride;
    const std::uint16_t* parts;
    std::int32_t count;

    __m128i weight(std::int32_t i) const { return _mm_set1_epi16(static_cast<short>(parts[i])); }
};

// Opaque pixels need no unpacking: blue and red, shifted up, and green and alpha, masked, are 256
// times the channels where they are. COUNT is the number of rows, 0 for any.
template <int COUNT>
void scale_columns_of(const ROWS<COLOUR>& rows, COLOUR* to, std::int32_t width) {
    const std::int32_t count = COUNT != 0 ? COUNT : rows.count;
    const __m128i upper_bytes = _mm_set1_epi16(static_cast<short>(0xFF00));
    const __m128i rounding = _mm_set1_epi16(rounding_of(count, 128));
    __m128i weights[COUNT != 0 ? COUNT : 1];
    for (std::int32_t i = 0; i < COUNT; ++i) {
        weights[i] = rows.weight(i);
    }
    for (std::int32_t x = 0; x < width; x += 4) {
        const COLOUR* from = rows.first + x;
        __m128i blue_red = rounding;
        __m128i green_alpha = rounding;
        for (std::int32_t i = 0; i < count; ++i, from += rows.stride) {
            const __m128i pixels = load(from);
            const __m128i weight = COUNT != 0 ? weights[i] : rows.weight(i);
            blue_red = _mm_add_epi16(blue_red, _mm_mulhi_epu16(_mm_slli_epi16(pixels, 8), weight));
            green_alpha = _mm_add_epi16(
                green_alpha, _mm_mulhi_epu16(_mm_and_si128(pixels, upper_bytes), weight));
        }
        const __m128i four =
            _mm_or_si128(_mm_srli_epi16(blue_red, 8), _mm_and_si128(green_alpha, upper_bytes));
        if (x + 4 <= width) {
            store(to + x, four);
        } else {
            store_some(to + x, four, width - x);
        }
    }
}

template <int COUNT>
void scale_columns_of(const ROWS<std::uint16_t>& rows, COLOUR* to, std::int32_t width,
                      short rounding) {
    const std::int32_t count = COUNT != 0 ? COUNT : rows.count;
    __m128i weights[COUNT != 0 ? COUNT : 1];
    for (std::int32_t i = 0; i < COUNT; ++i) {
        weights[i] = rows.weight(i);
    }
    for (std::int32_t x = 0; x < width; x += 4) {
        const std::uint16_t* from = rows.first + 4 * static_cast<std::ptrdiff_t>(x);
        __m128i low = _mm_setzero_si128();
        __m128i high = _mm_setzero_si128();
        for (std::int32_t i = 0; i < count; ++i, from += rows.stride) {
            const __m128i weight = COUNT != 0 ? weights[i] : rows.weight(i);
            low = _mm_add_epi16(low, _mm_mulhi_epu16(load(from), weight));
            high = _mm_add_epi16(high, _mm_mulhi_epu16(load(from + 8), weight));
        }
        const __m128i four = TRANSLUCENT::finish(low, high, rounding);
        if (x + 4 <= width) {
            store(to + x, four);
        } else {
            store_some(to + x, four, width - x);
        }
    }
}

void scale_to_row(const ROWS<COLOUR>& rows, COLOUR* to, std::int32_t width, std::int32_t) {
    switch (rows.count) {
        case 1:
            std::copy_n(rows.first, width, to);
            break;
        case 2:
            scale_columns_of<2>(rows, to, width);
            break;
        case 3:
            scale_columns_of<3>(rows, to, width);
            break;
        default:
            scale_columns_of<0>(rows, to, width);
            break;
    }
}

void scale_to_row(const ROWS<std::uint16_t>& rows, COLOUR* to, std::int32_t width,
                  std::int32_t products_before) {
    const short rounding = rounding_of(rows.count + products_before, 127);
    if (rows.count == 2) {
        scale_columns_of<2>(rows, to, width, rounding);
    } else {
        scale_columns_of<0>(rows, to, width, rounding);
    }
}

// How many rows between are held at a time: about as many as the second cache level keeps, but all
// that one row of the target needs.
std::int32_t find_band_rows(const LINE_CONTRIBUTIONS& down, std::size_t row_bytes,
                            std::int32_t source_height) {
    constexpr std::size_t BAND_BYTES = std::size_t{192} << 10;
    std::int32_t longest = 1;
    for (const auto& sample : down.samples) {
        longest = std::max(longest, sample.count);
    }
    const auto fitting = static_cast<std::int32_t>(BAND_BYTES / row_bytes);
    return std::min(source_height, std::max(fitting, 2 * longest));
}

enum OUTCOME { DONE, FAILED, NOT_OF_THIS_FORM };

// Both passes, in bands of rows: the rows between are soon used and needn't leave the cache.
template <class FORM>
OUTCOME scale_as(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
                 const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
                 const std::atomic<bool>* aborted) {
    using UNIT = typename FORM::BETWEEN;
    const std::size_t stride = across.samples.size() * FORM::BETWEEN_UNITS;
    const std::int32_t band_rows = find_band_rows(down, stride * sizeof(UNIT), source.height);
    // The columns are read four at a time, to beyond the last one.
    constexpr std::size_t READ_BEYOND = 3 * FORM::BETWEEN_UNITS;
    const std::size_t units = stride * static_cast<std::size_t>(band_rows) + READ_BEYOND;
    const std::unique_ptr<UNIT[]> band(new (std::nothrow) UNIT[units]());
    if (!band) {
        return FAILED;
    }
    const auto row_of = [&](std::int32_t row) {
        return band.get() + static_cast<std::size_t>(row) * stride;
    };
    const ROW_PLAN plan(across);
    WIDE_ROW wide_row(source.width, plan.pairs);
    std::int32_t first = 0;  // the rows that the band holds
    std::int32_t last = 0;
    for (std::int32_t y = 0; y < target.height; ++y) {
        const auto& sample = down.samples[static_cast<std::size_t>(y)];
        if (sample.left + sample.count > last) {
            if (aborted && aborted->load(std::memory_order_relaxed)) {
                return FAILED;
            }
            const std::int32_t kept = std::max(last - sample.left, 0);
            std::copy_n(row_of(sample.left - first), static_cast<std::size_t>(kept) * stride,
                        row_of(0));
            first = sample.left;
            const std::int32_t end = std::min(first + band_rows, source.height);
            if (!scale_rows<FORM>(source, first + kept, end, row_of(kept), plan, wide_row)) {
                return NOT_OF_THIS_FORM;
            }
            last = end;
        }
        const ROWS<UNIT> rows = {row_of(sample.left - first), static_cast<std::ptrdiff_t>(stride),
                                 down.parts.data() + sample.first_weight, sample.count};
        scale_to_row(rows, target.row(y), target.width, 2 * plan.pairs);
    }
    return DONE;
}

}  // namespace

namespace two_pass_scale {

bool scale(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
           const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
           const std::atomic<bool>* aborted) {
    // Whether a picture is opaque shows while it is read; most that aren't show it at their edges.
    OUTCOME outcome = NOT_OF_THIS_FORM;
    if (is_opaque_row(source, 0) && is_opaque_row(source, source.height - 1)) {
        outcome = scale_as<OPAQUE>(source, target, across, down, aborted);
    }
    if (outcome == NOT_OF_THIS_FORM) {
        outcome = scale_as<TRANSLUCENT>(source, target, across, down, aborted);
    }
    return outcome == DONE;
}

}  // namespace two_pass_scale

#endif  // __SSE2__
