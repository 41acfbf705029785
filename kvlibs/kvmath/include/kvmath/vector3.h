// VECTOR3_BASE: a point or a direction in space.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/types.h"

namespace KVMATH {

template <typename T>
struct VECTOR3_BASE {
    T x{};
    T y{};
    T z{};

    static const VECTOR3_BASE ZERO;
    static const VECTOR3_BASE ONE;
    static const VECTOR3_BASE XAXIS;
    static const VECTOR3_BASE YAXIS;
    static const VECTOR3_BASE ZAXIS;

    constexpr VECTOR3_BASE() = default;
    constexpr VECTOR3_BASE(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}

    // A vector with another scalar, each component converted.
    template <typename U>
    constexpr explicit VECTOR3_BASE(const VECTOR3_BASE<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}

    // Component 0, 1 or 2.
    constexpr const T& operator[](int index) const { return index == 0 ? x : index == 1 ? y : z; }
    constexpr T& operator[](int index) { return index == 0 ? x : index == 1 ? y : z; }

    // Sets component 0, 1 or 2; another index changes nothing.
    constexpr void set(int index, T value) {
        if (index >= 0 && index < 3) {
            (*this)[index] = value;
        }
    }

    constexpr bool operator==(const VECTOR3_BASE&) const = default;

    constexpr VECTOR3_BASE operator-() const { return {-x, -y, -z}; }
    constexpr VECTOR3_BASE& operator+=(const VECTOR3_BASE& o) { return *this = *this + o; }
    constexpr VECTOR3_BASE& operator-=(const VECTOR3_BASE& o) { return *this = *this - o; }
    constexpr VECTOR3_BASE& operator*=(T factor) { return *this = *this * factor; }
    constexpr VECTOR3_BASE& operator/=(T divisor) { return *this = *this / divisor; }

    friend constexpr VECTOR3_BASE operator+(const VECTOR3_BASE& a, const VECTOR3_BASE& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr VECTOR3_BASE operator-(const VECTOR3_BASE& a, const VECTOR3_BASE& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr VECTOR3_BASE operator*(const VECTOR3_BASE& v, T factor) {
        return {v.x * factor, v.y * factor, v.z * factor};
    }
    friend constexpr VECTOR3_BASE operator*(T factor, const VECTOR3_BASE& v) { return v * factor; }
    // By 0 as the scalar's own division answers it.
    friend constexpr VECTOR3_BASE operator/(const VECTOR3_BASE& v, T divisor) {
        return {v.x / divisor, v.y / divisor, v.z / divisor};
    }

    constexpr T dot(const VECTOR3_BASE& o) const { return x * o.x + y * o.y + z * o.z; }

    // Of x and y axis it is the z axis: the numbers are those of a right-handed system, the space
    // is left-handed.
    constexpr VECTOR3_BASE cross(const VECTOR3_BASE& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }

    T magnitude() const { return get_length(x, y, z); }
    constexpr T magnitude_sq() const { return dot(*this); }
    constexpr T distance_sq(const VECTOR3_BASE& o) const { return (*this - o).magnitude_sq(); }

    // The vector of the same direction and the length 1. A vector of length 0 gives itself.
    VECTOR3_BASE normal() const {
        const T length = magnitude();
        return length == T(0) ? *this : *this / length;
    }

    // The normal of the plane through three points: that of (b - a) cross (c - a), so that the
    // points run clockwise as seen from its tip. Points on one line give the zero vector.
    static VECTOR3_BASE normal(const VECTOR3_BASE& a, const VECTOR3_BASE& b,
                               const VECTOR3_BASE& c) {
        return (b - a).cross(c - a).normal();
    }

    // Component by component.
    constexpr VECTOR3_BASE scale(const VECTOR3_BASE& o) const {
        return {x * o.x, y * o.y, z * o.z};
    }

    // The part of this vector that runs along another. Along the zero vector it is zero.
    VECTOR3_BASE project(const VECTOR3_BASE& onto) const {
        const VECTOR3_BASE direction = onto.normal();
        return direction * dot(direction);
    }

    // This vector at t = 0, the other one at t = 1.
    constexpr VECTOR3_BASE interpolate(const VECTOR3_BASE& other, T t) const {
        return *this + (other - *this) * t;
    }

    VECTOR3_BASE abs() const { return {get_absolute(x), get_absolute(y), get_absolute(z)}; }

    // True if no component differs by more than the tolerance.
    bool almost_equal(const VECTOR3_BASE& other, T tolerance) const {
        const VECTOR3_BASE difference = (*this - other).abs();
        return difference.x <= tolerance && difference.y <= tolerance && difference.z <= tolerance;
    }
};

template <typename T>
inline constexpr VECTOR3_BASE<T> VECTOR3_BASE<T>::ZERO{T(0), T(0), T(0)};
template <typename T>
inline constexpr VECTOR3_BASE<T> VECTOR3_BASE<T>::ONE{T(1), T(1), T(1)};
template <typename T>
inline constexpr VECTOR3_BASE<T> VECTOR3_BASE<T>::XAXIS{T(1), T(0), T(0)};
template <typename T>
inline constexpr VECTOR3_BASE<T> VECTOR3_BASE<T>::YAXIS{T(0), T(1), T(0)};
template <typename T>
inline constexpr VECTOR3_BASE<T> VECTOR3_BASE<T>::ZAXIS{T(0), T(0), T(1)};

}  // namespace KVMATH
