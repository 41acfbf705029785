// PLANE_BASE: a plane. The point p is on it if a p.x + b p.y + c p.z + d = 0, on its positive side
// if the sum is above 0. Distances are in units of the normal's length, which the constructors
// from points and from a normal make 1.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
struct PLANE_BASE {
    using VECTOR = VECTOR3_BASE<T>;

    T a{};
    T b{};
    T c{};
    T d{};

    // No plane: all points have the distance 0.
    constexpr PLANE_BASE() = default;
    constexpr PLANE_BASE(T a_, T b_, T c_, T d_) : a(a_), b(b_), c(c_), d(d_) {}

    // Through a point, with a normal of any length. A zero normal gives no plane.
    PLANE_BASE(const VECTOR& point, const VECTOR& normal) { set(point, normal.normal()); }

    // Through three points, which run clockwise as seen from the positive side. Points on one line
    // give no plane.
    PLANE_BASE(const VECTOR& p0, const VECTOR& p1, const VECTOR& p2) {
        set(p0, VECTOR::normal(p0, p1, p2));
    }

    constexpr bool operator==(const PLANE_BASE&) const = default;

    constexpr VECTOR get_normal() const { return {a, b, c}; }

    // The signed distance of a point.
    constexpr T operator*(const VECTOR& p) const { return a * p.x + b * p.y + c * p.z + d; }

    // The point's nearest point on the plane. Without a normal: the point itself.
    VECTOR project(const VECTOR& point) const;

    // The same plane, seen from the other side.
    constexpr PLANE_BASE operator-() const { return {-a, -b, -c, -d}; }

    // The plane after a transform of space, its normal of length 1 again. A singular transform
    // gives no plane.
    PLANE_BASE operator*(const MATRIX_BASE<T>& matrix) const;

private:
    constexpr void set(const VECTOR& point, const VECTOR& normal) {
        *this = PLANE_BASE(normal.x, normal.y, normal.z, -normal.dot(point));
    }
};

extern template struct PLANE_BASE<float>;
extern template struct PLANE_BASE<FIXED_POINT>;

}  // namespace KVMATH
