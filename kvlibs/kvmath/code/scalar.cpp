#include "kvmath/scalar.h"

#include <bit>

namespace KVMATH {

namespace {

__extension__ using WIDE = unsigned __int128;

constexpr std::int64_t ONE_RAW = FIXED_POINT(1).get_raw();

WIDE get_square(FIXED_POINT value) {
    const auto size = static_cast<WIDE>(get_absolute(value).get_raw());
    return size * size;
}

int get_bits(WIDE value) {
    const auto high = static_cast<std::uint64_t>(value >> 64);
    const auto low = static_cast<std::uint64_t>(value);
    return high != 0 ? 128 - std::countl_zero(high) : 64 - std::countl_zero(low);
}

template <typename WORD>
std::uint64_t get_integer_root(WORD remainder, int bits) {
    WORD root = 0;
    for (WORD trial = WORD{1} << ((bits - 1) & ~1); trial != 0; trial >>= 2) {
        const WORD candidate = root + trial;
        const WORD fits = 0 - static_cast<WORD>(remainder >= candidate);
        remainder -= candidate & fits;
        root = (root >> 1) + (trial & fits);
    }
    return static_cast<std::uint64_t>(root);
}

// The square root of a square with 56 fractional bits.
FIXED_POINT get_root_of_square(WIDE square) {
    const int bits = get_bits(square);
    if (bits == 0) {
        return 0;
    }
    const std::uint64_t root = bits <= 64
                                   ? get_integer_root(static_cast<std::uint64_t>(square), bits)
                                   : get_integer_root(square, bits);
    constexpr auto LARGEST = static_cast<std::uint64_t>(SCALAR<FIXED_POINT>::LARGEST.get_raw());
    return FIXED_POINT::from_raw(static_cast<std::int64_t>(root < LARGEST ? root : LARGEST));
}

}  // namespace

FIXED_POINT get_arc_cos(FIXED_POINT cosine) {
    const std::int64_t c = get_clamped(cosine, FIXED_POINT(-1), FIXED_POINT(1)).get_raw();
    const WIDE sine_square = static_cast<WIDE>(ONE_RAW - c) * static_cast<WIDE>(ONE_RAW + c);
    FIXED_POINT angle;
    FIXED_POINT::to_polar(FIXED_POINT::from_raw(c), get_root_of_square(sine_square), nullptr,
                          &angle);
    return angle;
}

FIXED_POINT get_arc_tan2(FIXED_POINT y, FIXED_POINT x) {
    // A vector shorter than 1 is lengthened first, as its angle is as coarse as its coordinates.
    const auto size = static_cast<std::uint64_t>(get_absolute(x).get_raw()) |
                      static_cast<std::uint64_t>(get_absolute(y).get_raw());
    const int bits = 64 - std::countl_zero(size);
    if (bits < FIXED_POINT::FRACTION_BITS) {
        const std::int64_t factor = std::int64_t{1} << (FIXED_POINT::FRACTION_BITS - bits);
        x = FIXED_POINT::from_raw(x.get_raw() * factor);
        y = FIXED_POINT::from_raw(y.get_raw() * factor);
    }
    FIXED_POINT angle;
    FIXED_POINT::to_polar(x, y, nullptr, &angle);
    return angle;
}

FIXED_POINT get_length(FIXED_POINT x, FIXED_POINT y, FIXED_POINT z, FIXED_POINT w) {
    return get_root_of_square(get_square(x) + get_square(y) + get_square(z) + get_square(w));
}

}  // namespace KVMATH
