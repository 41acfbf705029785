// FIXED_POINT: a real number as a signed 64-bit integer with 28 fractional bits.
//
// The range is -2^35 to 2^35 (about 3.4e10) in steps of 2^-28 (about 3.7e-9). Arithmetic never
// overflows: a result outside the range becomes the nearest end of it, so that a distance that is
// too large stays large and doesn't turn negative.
//
// Square root, exponential and trigonometry use integers only and have no division in their
// loops, so that every machine gets the same bits.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

namespace KVMATH {

class FIXED_POINT {
public:
    static constexpr int FRACTION_BITS = 28;

    constexpr FIXED_POINT() = default;

    // A whole number; outside the range, the nearest end of it.
    template <std::integral I>
    constexpr FIXED_POINT(I whole) : raw_(raw_from_whole(whole)) {}

    // The nearest value; outside the range, the nearest end of it. Not-a-number gives 0.
    template <std::floating_point F>
    constexpr explicit FIXED_POINT(F real) : raw_(raw_from_real(real)) {}

    // The value raw / 2^28.
    static constexpr FIXED_POINT from_raw(std::int64_t raw) {
        FIXED_POINT result;
        result.raw_ = raw;
        return result;
    }

    constexpr std::int64_t get_raw() const { return raw_; }

    constexpr double to_double() const { return static_cast<double>(raw_) * (1.0 / ONE_RAW); }
    constexpr float to_float() const {
        return static_cast<float>(raw_) * (1.0f / static_cast<float>(ONE_RAW));
    }
    constexpr explicit operator double() const { return to_double(); }
    constexpr explicit operator float() const { return to_float(); }

    // As truncate; outside the integer's range, the nearest end of it.
    template <std::integral I>
    constexpr explicit operator I() const {
        return std::in_range<I>(truncate()) ? static_cast<I>(truncate())
               : raw_ < 0                   ? std::numeric_limits<I>::min()
                                            : std::numeric_limits<I>::max();
    }

    // The whole part: the fraction is dropped, towards zero.
    constexpr std::int64_t truncate() const { return raw_ / ONE_RAW; }

    // The nearest whole number; halves go away from zero.
    constexpr std::int64_t round() const {
        const std::int64_t whole = raw_ / ONE_RAW;
        const std::int64_t fraction = raw_ % ONE_RAW;
        return whole + (fraction >= ONE_RAW / 2) - (fraction <= -ONE_RAW / 2);
    }

    constexpr auto operator<=>(const FIXED_POINT&) const = default;

    constexpr FIXED_POINT operator-() const { return from_raw(raw_ == MIN_RAW ? MAX_RAW : -raw_); }

    friend constexpr FIXED_POINT operator+(FIXED_POINT a, FIXED_POINT b) {
        std::int64_t sum = 0;
        if (__builtin_add_overflow(a.raw_, b.raw_, &sum)) {
            sum = end_of_range(b.raw_ < 0);
        }
        return from_raw(sum);
    }

    friend constexpr FIXED_POINT operator-(FIXED_POINT a, FIXED_POINT b) {
        std::int64_t difference = 0;
        if (__builtin_sub_overflow(a.raw_, b.raw_, &difference)) {
            difference = end_of_range(b.raw_ > 0);
        }
        return from_raw(difference);
    }

    // Rounded to the nearest step, through a 128-bit product.
    friend constexpr FIXED_POINT operator*(FIXED_POINT a, FIXED_POINT b) {
        const WIDE product = (static_cast<WIDE>(a.raw_) * b.raw_ + ONE_RAW / 2) >> FRACTION_BITS;
        return from_raw(saturate(product));
    }

    // Exact to the last fractional bit, not rounded: cut towards zero. A division by zero gives
    // the end of the range with the sign of a, and 0 for 0 / 0.
    friend constexpr FIXED_POINT operator/(FIXED_POINT a, FIXED_POINT b) {
        if (b.raw_ == 0) {
            return a.raw_ == 0 ? a : from_raw(end_of_range(a.raw_ < 0));
        }
        // The common case fits a 64-bit division, several times faster than a 128-bit one.
        constexpr std::int64_t NARROW = std::int64_t{1} << (62 - FRACTION_BITS);
        if (a.raw_ > -NARROW && a.raw_ < NARROW) {
            return from_raw(a.raw_ * ONE_RAW / b.raw_);
        }
        return from_raw(saturate(static_cast<WIDE>(a.raw_) * ONE_RAW / b.raw_));
    }

    // The remainder of the division cut to a whole number, with the sign of a, as fmod. A
    // remainder of a division by zero is 0.
    friend constexpr FIXED_POINT operator%(FIXED_POINT a, FIXED_POINT b) {
        return b.raw_ == 0 || b.raw_ == -1 ? FIXED_POINT() : from_raw(a.raw_ % b.raw_);
    }

    constexpr FIXED_POINT& operator+=(FIXED_POINT other) { return *this = *this + other; }
    constexpr FIXED_POINT& operator-=(FIXED_POINT other) { return *this = *this - other; }
    constexpr FIXED_POINT& operator*=(FIXED_POINT other) { return *this = *this * other; }
    constexpr FIXED_POINT& operator/=(FIXED_POINT other) { return *this = *this / other; }
    constexpr FIXED_POINT& operator%=(FIXED_POINT other) { return *this = *this % other; }

    // The square root, cut to the last fractional bit. Of a negative value: 0.
    FIXED_POINT square_root() const;

    // e to the power of this, to 4e-8 of the result or 12 steps, whichever is more. From about
    // 24.26 up it is the largest value, below about -19.41 0.
    FIXED_POINT exponential() const;

    // Sine and cosine of an angle in radians, of any size, to 6 steps from -2 pi to 2 pi. Either
    // pointer may be null.
    static void sin_cos(FIXED_POINT angle, FIXED_POINT* sine, FIXED_POINT* cosine);

    // The point (x, y) as its distance from the origin and its angle from the x axis, -pi to pi.
    // Either pointer may be null. The origin has the angle 0. The angle of a point much nearer to
    // the origin than 1 is as coarse as its coordinates.
    static void to_polar(FIXED_POINT x, FIXED_POINT y, FIXED_POINT* radius, FIXED_POINT* angle);

    // The CORDIC kernels, on 32-bit numbers with 28 fractional bits (J. E. Volder, "The CORDIC
    // Trigonometric Computing Technique", 1959). Thirty steps, with shifts from -1 to 28.
    //
    // Turns the vector (x, y) by the angle, which lies within -2.85 to 2.85. Its length must stay
    // below 2.17, as it grows by 3.68 on the way.
    static void perform_cordic_rotation(std::int32_t* x, std::int32_t* y, std::int32_t angle);

    // Turns the vector (x, y), with x not negative, onto the x axis: x becomes its length, y the
    // angle that it had. Its length must stay below 2.17.
    static void perform_cordic_polarization(std::int32_t* x, std::int32_t* y);

private:
    __extension__ using WIDE = __int128;

    static constexpr std::int64_t ONE_RAW = std::int64_t{1} << FRACTION_BITS;
    static constexpr std::int64_t MAX_RAW = std::numeric_limits<std::int64_t>::max();
    static constexpr std::int64_t MIN_RAW = std::numeric_limits<std::int64_t>::min();

    static constexpr std::int64_t end_of_range(bool negative) {
        return negative ? MIN_RAW : MAX_RAW;
    }

    static constexpr std::int64_t saturate(WIDE wide) {
        const auto narrow = static_cast<std::int64_t>(wide);
        return narrow == wide ? narrow : end_of_range(wide < 0);
    }

    template <std::integral I>
    static constexpr std::int64_t raw_from_whole(I whole) {
        if constexpr (sizeof(I) < sizeof(std::int64_t)) {
            return std::int64_t{whole} * ONE_RAW;
        } else {
            return saturate(static_cast<WIDE>(whole) * ONE_RAW);
        }
    }

    template <std::floating_point F>
    static constexpr std::int64_t raw_from_real(F real) {
        const F scaled = real * static_cast<F>(ONE_RAW);
        constexpr F LIMIT = static_cast<F>(9223372036854775808.0);  // 2^63
        if (scaled >= LIMIT) {
            return MAX_RAW;
        }
        if (scaled <= -LIMIT) {
            return MIN_RAW;
        }
        if (scaled != scaled) {
            return 0;
        }
        const auto whole = static_cast<std::int64_t>(scaled);
        const F fraction = scaled - static_cast<F>(whole);
        return whole + (fraction >= F(0.5)) - (fraction <= F(-0.5));
    }

    std::int64_t raw_ = 0;
};

// The square root of a value, as FIXED_POINT::square_root.
inline FIXED_POINT get_square_root(FIXED_POINT value) {
    return value.square_root();
}

}  // namespace KVMATH
