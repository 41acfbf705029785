// BASE_TRIANGLE: three corners. They run clockwise as seen from the tip of the normal.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T, typename V>
class BASE_TRIANGLE {
public:
    constexpr BASE_TRIANGLE() = default;
    constexpr BASE_TRIANGLE(const V& a, const V& b, const V& c) : corners_{a, b, c} {}

    // Corner 0 to 2.
    constexpr const V& get_corner(int index) const { return corners_[index]; }
    constexpr void set_corner(int index, const V& corner) { corners_[index] = corner; }

    // Of length 1; zero if the corners lie on one line.
    V get_normal() const;

    // The triangle's plane. Corners on one line give no plane (PLANE_BASE's default).
    PLANE_BASE<T> get_plane() const;

    T get_area() const;

    // The area of the picture of the triangle along the z axis, as of corners in pixels. It isn't
    // negative.
    T get_area_2d() const;

    // The triangle's point nearest to a point. Corners on one line are as good as three segments.
    V get_closest_point(const V& point) const;

    // The triangle moved by an offset.
    constexpr BASE_TRIANGLE operator+(const V& offset) const {
        return {corners_[0] + offset, corners_[1] + offset, corners_[2] + offset};
    }

private:
    V corners_[3];
};

extern template class BASE_TRIANGLE<float, VECTOR3_BASE<float>>;
extern template class BASE_TRIANGLE<FIXED_POINT, VECTOR3_BASE<FIXED_POINT>>;

}  // namespace KVMATH
