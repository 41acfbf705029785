// BASEVECTOR2: a point or a direction in a plane.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/types.h"

namespace KVMATH {

template <typename T>
struct BASEVECTOR2 {
    T x{};
    T y{};

    constexpr BASEVECTOR2() = default;
    constexpr BASEVECTOR2(T x_, T y_) : x(x_), y(y_) {}

    // A vector with another scalar, each component converted.
    template <typename U>
    constexpr explicit BASEVECTOR2(const BASEVECTOR2<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)) {}

    // Component 0 or 1.
    constexpr const T& operator[](int index) const { return index == 0 ? x : y; }
    constexpr T& operator[](int index) { return index == 0 ? x : y; }

    // Sets component 0 or 1; another index changes nothing.
    constexpr void set(int index, T value) {
        if (index >= 0 && index < 2) {
            (*this)[index] = value;
        }
    }

    constexpr bool operator==(const BASEVECTOR2&) const = default;

    constexpr BASEVECTOR2 operator-() const { return {-x, -y}; }
    constexpr BASEVECTOR2& operator+=(const BASEVECTOR2& o) { return *this = *this + o; }
    constexpr BASEVECTOR2& operator-=(const BASEVECTOR2& o) { return *this = *this - o; }
    constexpr BASEVECTOR2& operator*=(T factor) { return *this = *this * factor; }
    constexpr BASEVECTOR2& operator/=(T divisor) { return *this = *this / divisor; }

    friend constexpr BASEVECTOR2 operator+(const BASEVECTOR2& a, const BASEVECTOR2& b) {
        return {a.x + b.x, a.y + b.y};
    }
    friend constexpr BASEVECTOR2 operator-(const BASEVECTOR2& a, const BASEVECTOR2& b) {
        return {a.x - b.x, a.y - b.y};
    }
    friend constexpr BASEVECTOR2 operator*(const BASEVECTOR2& v, T factor) {
        return {v.x * factor, v.y * factor};
    }
    friend constexpr BASEVECTOR2 operator*(T factor, const BASEVECTOR2& v) { return v * factor; }
    // By 0 as the scalar's own division answers it.
    friend constexpr BASEVECTOR2 operator/(const BASEVECTOR2& v, T divisor) {
        return {v.x / divisor, v.y / divisor};
    }

    constexpr T dot(const BASEVECTOR2& o) const { return x * o.x + y * o.y; }

    T magnitude() const { return get_length(x, y); }
    constexpr T magnitude_sq() const { return dot(*this); }
    constexpr T distance_sq(const BASEVECTOR2& o) const { return (*this - o).magnitude_sq(); }

    // The vector of the same direction and the length 1. A vector of length 0 gives itself.
    BASEVECTOR2 normal() const {
        const T length = magnitude();
        return length == T(0) ? *this : *this / length;
    }

    // Component by component.
    constexpr BASEVECTOR2 scale(const BASEVECTOR2& o) const { return {x * o.x, y * o.y}; }

    // The part of this vector that runs along another. Along the zero vector it is zero.
    BASEVECTOR2 project(const BASEVECTOR2& onto) const {
        const BASEVECTOR2 direction = onto.normal();
        return direction * dot(direction);
    }

    // This vector at t = 0, the other one at t = 1.
    constexpr BASEVECTOR2 interpolate(const BASEVECTOR2& other, T t) const {
        return *this + (other - *this) * t;
    }

    BASEVECTOR2 abs() const { return {get_absolute(x), get_absolute(y)}; }

    // True if no component differs by more than the tolerance.
    bool almost_equal(const BASEVECTOR2& other, T tolerance) const {
        const BASEVECTOR2 difference = (*this - other).abs();
        return difference.x <= tolerance && difference.y <= tolerance;
    }
};

}  // namespace KVMATH
