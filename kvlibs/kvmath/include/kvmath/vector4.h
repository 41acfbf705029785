// BASEVECTOR4: four components: a homogeneous point, a matrix row, a colour, a shader constant.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
struct BASEVECTOR4 {
    T x{};
    T y{};
    T z{};
    T w{};

    static const BASEVECTOR4 ZERO;
    static const BASEVECTOR4 ONE;

    constexpr BASEVECTOR4() = default;
    constexpr BASEVECTOR4(T x_, T y_, T z_, T w_) : x(x_), y(y_), z(z_), w(w_) {}
    constexpr BASEVECTOR4(const VECTOR3_BASE<T>& v, T w_) : x(v.x), y(v.y), z(v.z), w(w_) {}

    // A vector with another scalar, each component converted.
    template <typename U>
    constexpr explicit BASEVECTOR4(const BASEVECTOR4<U>& other)
        : x(static_cast<T>(other.x)),
          y(static_cast<T>(other.y)),
          z(static_cast<T>(other.z)),
          w(static_cast<T>(other.w)) {}

    // x, y and z.
    constexpr VECTOR3_BASE<T> get_vector3() const { return {x, y, z}; }

    // Component 0 to 3.
    constexpr const T& operator[](int index) const {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }
    constexpr T& operator[](int index) {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }

    // Sets component 0 to 3; another index changes nothing.
    constexpr void set(int index, T value) {
        if (index >= 0 && index < 4) {
            (*this)[index] = value;
        }
    }

    constexpr bool operator==(const BASEVECTOR4&) const = default;

    constexpr BASEVECTOR4 operator-() const { return {-x, -y, -z, -w}; }
    constexpr BASEVECTOR4& operator+=(const BASEVECTOR4& o) { return *this = *this + o; }
    constexpr BASEVECTOR4& operator-=(const BASEVECTOR4& o) { return *this = *this - o; }
    constexpr BASEVECTOR4& operator*=(T factor) { return *this = *this * factor; }
    constexpr BASEVECTOR4& operator/=(T divisor) { return *this = *this / divisor; }

    friend constexpr BASEVECTOR4 operator+(const BASEVECTOR4& a, const BASEVECTOR4& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
    }
    friend constexpr BASEVECTOR4 operator-(const BASEVECTOR4& a, const BASEVECTOR4& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w};
    }
    friend constexpr BASEVECTOR4 operator*(const BASEVECTOR4& v, T factor) {
        return {v.x * factor, v.y * factor, v.z * factor, v.w * factor};
    }
    friend constexpr BASEVECTOR4 operator*(T factor, const BASEVECTOR4& v) { return v * factor; }
    // By 0 as the scalar's own division answers it.
    friend constexpr BASEVECTOR4 operator/(const BASEVECTOR4& v, T divisor) {
        return {v.x / divisor, v.y / divisor, v.z / divisor, v.w / divisor};
    }

    constexpr T dot(const BASEVECTOR4& o) const { return x * o.x + y * o.y + z * o.z + w * o.w; }

    T magnitude() const { return get_length(x, y, z, w); }
    constexpr T magnitude_sq() const { return dot(*this); }
    constexpr T distance_sq(const BASEVECTOR4& o) const { return (*this - o).magnitude_sq(); }

    // The vector of the same direction and the length 1. A vector of length 0 gives itself.
    BASEVECTOR4 normal() const {
        const T length = magnitude();
        return length == T(0) ? *this : *this / length;
    }

    // Component by component.
    constexpr BASEVECTOR4 scale(const BASEVECTOR4& o) const {
        return {x * o.x, y * o.y, z * o.z, w * o.w};
    }

    // The part of this vector that runs along another. Along the zero vector it is zero.
    BASEVECTOR4 project(const BASEVECTOR4& onto) const {
        const BASEVECTOR4 direction = onto.normal();
        return direction * dot(direction);
    }

    // This vector at t = 0, the other one at t = 1.
    constexpr BASEVECTOR4 interpolate(const BASEVECTOR4& other, T t) const {
        return *this + (other - *this) * t;
    }

    BASEVECTOR4 abs() const {
        return {get_absolute(x), get_absolute(y), get_absolute(z), get_absolute(w)};
    }

    // True if no component differs by more than the tolerance.
    bool almost_equal(const BASEVECTOR4& other, T tolerance) const {
        const BASEVECTOR4 difference = (*this - other).abs();
        return difference.x <= tolerance && difference.y <= tolerance &&
               difference.z <= tolerance && difference.w <= tolerance;
    }
};

template <typename T>
inline constexpr BASEVECTOR4<T> BASEVECTOR4<T>::ZERO{T(0), T(0), T(0), T(0)};
template <typename T>
inline constexpr BASEVECTOR4<T> BASEVECTOR4<T>::ONE{T(1), T(1), T(1), T(1)};

}  // namespace KVMATH
