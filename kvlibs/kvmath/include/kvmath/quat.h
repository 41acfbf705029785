// QUAT_BASE: a rotation as a unit quaternion, x i + y j + z k + w.
//
// A vector v is turned into q v q^-1. Of a product a * b the rotation b comes first; as matrices
// multiply row vectors, MATRIX(a * b) is MATRIX(b) * MATRIX(a). q and -q are the same rotation.
#pragma once

#include "kvmath/float4.h"
#include "kvmath/scalar.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

#include <type_traits>

namespace KVMATH {

template <typename T>
struct QUAT_BASE {
    T x{};
    T y{};
    T z{};
    T w{1};

    static const QUAT_BASE IDENTITY;

    // A tolerance for is_normalised: the square of a hundredth. A matrix that has been through a
    // file's six digits passes, one with a scale of its own doesn't.
    static constexpr T QUAT_EPSILON_SQ = T(1e-4f);

    constexpr QUAT_BASE() = default;
    constexpr QUAT_BASE(T x_, T y_, T z_, T w_) : x(x_), y(y_), z(z_), w(w_) {}
    explicit QUAT_BASE(const MATRIX_BASE<T>& matrix) { set(matrix); }

    // A quaternion with another scalar, each component converted.
    template <typename U>
    constexpr explicit QUAT_BASE(const QUAT_BASE<U>& other)
        : x(static_cast<T>(other.x)),
          y(static_cast<T>(other.y)),
          z(static_cast<T>(other.z)),
          w(static_cast<T>(other.w)) {}

    constexpr void set(T x_, T y_, T z_, T w_) { *this = QUAT_BASE(x_, y_, z_, w_); }

    // The rotation about an axis of any length. About the zero vector: none.
    void set(const VECTOR3_BASE<T>& axis, T angle);

    // The rotation by three angles: first the roll about z, then the pitch about x, then the yaw
    // about y. It is the rotation of MATRIX_BASE::set_rotation(pitch, yaw, roll).
    void set(T yaw, T pitch, T roll);

    // The rotation part of a matrix (S. W. Shepperd, "Quaternion from rotation matrix", 1978).
    // The result is as normalised as the matrix is a pure rotation.
    void set(const MATRIX_BASE<T>& matrix);

    constexpr bool operator==(const QUAT_BASE&) const = default;

    constexpr QUAT_BASE operator-() const { return {-x, -y, -z, -w}; }

    friend QUAT_BASE operator*(const QUAT_BASE& a, const QUAT_BASE& b) {
        if constexpr (std::is_same_v<T, float>) {
            return from_float4(SIMD::multiply_quaternions(a.to_float4(), b.to_float4()));
        } else {
            return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
                    a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
                    a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
                    a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
        }
    }
    QUAT_BASE& operator*=(const QUAT_BASE& other) { return *this = *this * other; }

    constexpr T dot(const QUAT_BASE& o) const { return x * o.x + y * o.y + z * o.z + w * o.w; }
    constexpr QUAT_BASE conjugate() const { return {-x, -y, -z, w}; }
    T magnitude() const { return get_length(x, y, z, w); }
    constexpr T magnitude_sq() const { return dot(*this); }

    // The quaternion of the same direction and the length 1. Of length 0: itself.
    QUAT_BASE normal() const {
        const T length = magnitude();
        return length == T(0) ? *this : QUAT_BASE(x / length, y / length, z / length, w / length);
    }

    // True if the square of the length differs from 1 by no more than the tolerance.
    bool is_normalised(T tolerance) const {
        return get_absolute(magnitude_sq() - T(1)) <= tolerance;
    }

    // True if no component differs by more than the tolerance: q and -q aren't almost equal.
    bool almost_equal(const QUAT_BASE& o, T tolerance) const {
        return get_absolute(x - o.x) <= tolerance && get_absolute(y - o.y) <= tolerance &&
               get_absolute(z - o.z) <= tolerance && get_absolute(w - o.w) <= tolerance;
    }

    // The vector turned by this unit quaternion.
    constexpr VECTOR3_BASE<T> rotate(const VECTOR3_BASE<T>& v) const {
        const VECTOR3_BASE<T> axis(x, y, z);
        const VECTOR3_BASE<T> twice = axis.cross(v) * T(2);
        return v + twice * w + axis.cross(twice);
    }

    // The axis, of length 1, and the angle, 0 to pi. Without a rotation: the x axis and 0.
    void get_axis_angle(VECTOR3_BASE<T>& axis, T& angle) const;

    // The angles for which set(yaw, pitch, roll) is this rotation: the pitch in -pi/2 to pi/2, the
    // others in -pi to pi. Straight up or down, where yaw and roll turn about one axis, the roll
    // is 0.
    void get_euler(T& yaw, T& pitch, T& roll) const;

    // From a at t = 0 to b at t = 1 at an even rate, the short way round (K. Shoemake, "Animating
    // rotation with quaternion curves", 1985). The result isn't normalised.
    static QUAT_BASE slerp(const QUAT_BASE& a, const QUAT_BASE& b, T t);

    // The same way in a straight line, normalised: a cheaper slerp whose rate is uneven.
    static QUAT_BASE interpolate(const QUAT_BASE& a, const QUAT_BASE& b, T t);

private:
    SIMD::FLOAT4 to_float4() const {
        SIMD::FLOAT4 result;
        static_assert(sizeof(QUAT_BASE) == 4 * sizeof(T));
        __builtin_memcpy(&result, this, sizeof(result));
        return result;
    }

    static QUAT_BASE from_float4(SIMD::FLOAT4 v) {
        QUAT_BASE result;
        __builtin_memcpy(static_cast<void*>(&result), &v, sizeof(v));
        return result;
    }
};

template <typename T>
inline constexpr QUAT_BASE<T> QUAT_BASE<T>::IDENTITY{T(0), T(0), T(0), T(1)};

extern template struct QUAT_BASE<float>;
extern template struct QUAT_BASE<FIXED_POINT>;

}  // namespace KVMATH
