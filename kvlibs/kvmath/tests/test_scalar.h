// What the tests share: the scalars under test, their tolerances, and random input.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/vector3.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>

namespace KVMATH {

inline void PrintTo(FIXED_POINT value, std::ostream* stream) {
    *stream << value.to_double() << " (raw " << value.get_raw() << ")";
}

template <typename T>
void PrintTo(const VECTOR3_BASE<T>& v, std::ostream* stream) {
    *stream << "(" << static_cast<double>(v.x) << ", " << static_cast<double>(v.y) << ", "
            << static_cast<double>(v.z) << ")";
}

namespace TEST {

using SCALARS = testing::Types<float, FIXED_POINT>;

template <typename T>
double real(T value) {
    return static_cast<double>(value);
}

class RANDOM {
public:
    explicit RANDOM(unsigned seed) : engine_(seed) {}

    // A value that a float holds exactly, so that a test's references in double start from the same
    // number.
    double get(double low, double high) {
        return std::uniform_real_distribution<float>(static_cast<float>(low),
                                                     static_cast<float>(high))(engine_);
    }

    template <typename T>
    VECTOR3_BASE<T> get_vector(double size) {
        return {T(get(-size, size)), T(get(-size, size)), T(get(-size, size))};
    }

    // A direction of length 1.
    template <typename T>
    VECTOR3_BASE<T> get_direction() {
        for (;;) {
            const VECTOR3_BASE<T> v = get_vector<T>(1.0);
            const double length = real(v.magnitude());
            if (length > 0.1 && length < 1.0) {
                return v.normal();
            }
        }
    }

private:
    std::mt19937 engine_;
};

template <typename T>
testing::AssertionResult near(const VECTOR3_BASE<T>& a, const VECTOR3_BASE<T>& b,
                              double tolerance) {
    const VECTOR3_BASE<T> difference = (a - b).abs();
    const double worst = std::max({real(difference.x), real(difference.y), real(difference.z)});
    if (worst <= tolerance) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(a) << " and "
                                       << testing::PrintToString(b) << " differ by " << worst;
}

// A vector from plain numbers.
template <typename T>
VECTOR3_BASE<T> vec(double x, double y, double z) {
    return {T(x), T(y), T(z)};
}

}  // namespace TEST

}  // namespace KVMATH
