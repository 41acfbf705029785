// What the templates of the library need of their scalar, for float and FIXED_POINT alike:
// constants and functions under one name. Angles are in radians.
#pragma once

#include "kvmath/fixed_point.h"

#include <cmath>
#include <limits>

namespace KVMATH {

template <typename T>
struct SCALAR;

template <>
struct SCALAR<float> {
    static constexpr float PI = 3.14159265f;
    static constexpr float TWO_PI = 6.28318531f;
    static constexpr float HALF_PI = 1.57079633f;
    static constexpr float HALF = 0.5f;
    static constexpr float LARGEST = std::numeric_limits<float>::max();
    // Below this, a sine or a determinant of unit vectors is taken for 0.
    static constexpr float SMALL = 1e-6f;
};

template <>
struct SCALAR<FIXED_POINT> {
    static constexpr FIXED_POINT PI = FIXED_POINT::from_raw(843314856);
    static constexpr FIXED_POINT TWO_PI = FIXED_POINT::from_raw(1686629713);
    static constexpr FIXED_POINT HALF_PI = FIXED_POINT::from_raw(421657428);
    static constexpr FIXED_POINT HALF = FIXED_POINT::from_raw(0x8000000);
    static constexpr FIXED_POINT LARGEST =
        FIXED_POINT::from_raw(std::numeric_limits<std::int64_t>::max());
    static constexpr FIXED_POINT SMALL = FIXED_POINT::from_raw(268);
};

inline float get_square_root(float value) {
    return std::sqrt(value);
}

inline float get_absolute(float value) {
    return std::fabs(value);
}

constexpr FIXED_POINT get_absolute(FIXED_POINT value) {
    return value.get_raw() < 0 ? -value : value;
}

// Either pointer may be null.
inline void sin_cos(float angle, float* sine, float* cosine) {
    if (sine != nullptr) {
        *sine = std::sin(angle);
    }
    if (cosine != nullptr) {
        *cosine = std::cos(angle);
    }
}

inline void sin_cos(FIXED_POINT angle, FIXED_POINT* sine, FIXED_POINT* cosine) {
    FIXED_POINT::sin_cos(angle, sine, cosine);
}

// The angle, 0 to pi, with the given cosine; a value beyond 1 counts as 1, as for -1.
inline float get_arc_cos(float cosine) {
    return std::acos(cosine > 1.0f ? 1.0f : cosine < -1.0f ? -1.0f : cosine);
}
FIXED_POINT get_arc_cos(FIXED_POINT cosine);

// The angle of the point (x, y) from the x axis, -pi to pi; of the origin 0.
inline float get_arc_tan2(float y, float x) {
    return std::atan2(y, x);
}
FIXED_POINT get_arc_tan2(FIXED_POINT y, FIXED_POINT x);

// The length of a vector. In fixed point it is exact to the last bit, whatever the size of the
// components: the squares are summed up in 128 bits.
inline float get_length(float x, float y, float z = 0.0f, float w = 0.0f) {
    return std::sqrt(x * x + y * y + z * z + w * w);
}
FIXED_POINT get_length(FIXED_POINT x, FIXED_POINT y, FIXED_POINT z = 0, FIXED_POINT w = 0);

template <typename T>
constexpr T get_clamped(const T& value, const T& lowest, const T& highest) {
    return value < lowest ? lowest : highest < value ? highest : value;
}

}  // namespace KVMATH
