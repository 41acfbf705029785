// Angles in radians that come round after two pi.
#pragma once

#include "kvmath/scalar.h"

#include <cmath>

namespace KVMATH {

// The same direction as an angle of 0 or more and below two pi.
inline float normalise_angle(float angle) {
    constexpr float TWO_PI = SCALAR<float>::TWO_PI;
    return std::fmod(TWO_PI + std::fmod(angle, TWO_PI), TWO_PI);
}

constexpr FIXED_POINT normalise_angle(FIXED_POINT angle) {
    constexpr FIXED_POINT TWO_PI = SCALAR<FIXED_POINT>::TWO_PI;
    return (TWO_PI + angle % TWO_PI) % TWO_PI;
}

// From angle a at f = 0 to angle b at f = 1 the short way round, normalised.
template <typename T>
T interpolate_angle(T a, T b, T f) {
    a = normalise_angle(a);
    T difference = normalise_angle(b) - a;
    if (difference > SCALAR<T>::PI) {
        difference = difference - SCALAR<T>::TWO_PI;
    } else if (difference < -SCALAR<T>::PI) {
        difference = difference + SCALAR<T>::TWO_PI;
    }
    return normalise_angle(a + difference * f);
}

}  // namespace KVMATH
