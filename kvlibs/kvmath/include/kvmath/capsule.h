// CAPSULE: all points within a radius of a segment, such as the way of a ball in one step.
//
// The tests treat the capsule as the path of a sphere from its start to its end. They give 0 for a
// hit and -1 for none, and set the point of contact and the normal on a hit only.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class CAPSULE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    constexpr CAPSULE() = default;
    constexpr CAPSULE(const VECTOR& start, const VECTOR& end, T radius)
        : start_(start), end_(end), radius_(radius) {}

    constexpr const VECTOR& get_start_point() const { return start_; }
    constexpr void set_start_point(const VECTOR& start) { start_ = start; }
    constexpr const VECTOR& get_end_point() const { return end_; }
    constexpr void set_end_point(const VECTOR& end) { end_ = end; }
    constexpr T get_radius() const { return radius_; }
    constexpr void set_radius(T radius) { radius_ = radius; }

    // From start to end, of length 1; zero for a sphere, whose ends fall together.
    VECTOR get_direction() const { return (end_ - start_).normal(); }

    // The smallest box that holds the capsule.
    AABB_BASE<T> get_aabb() const;

    // With a plane: no hit if both ends are farther from it than the radius, be it on one side or
    // on both. With d0 and d1 the distances of the ends, the contact is t units along the
    // direction from the start, where t is |d0| - radius as a fraction of the distance covered:
    // |d0| - |d1| on one side, |d0| + |d1| across the plane. A path that covers none, along the
    // plane, has t = 0: it touches at its start. The normal is the plane's. PLANE_BASE's default,
    // which is no plane, is never hit.
    int intersect(const PLANE_BASE<T>& plane, VECTOR& point, VECTOR& normal) const;

    // With a flat shape: no hit if both ends are on one side of its plane and no nearer to it than
    // the radius. Else the contact, as above but taken to the plane, is tested against the shape:
    // inside it, it is a hit there with the plane's normal; outside, but with the shape's nearest
    // point within the radius, it is a hit at that point, with the normal from there to the axis.
    // A shape without an area is never hit.
    int intersect(const BASE_TRIANGLE<T, VECTOR>& triangle, VECTOR& point, VECTOR& normal) const;
    int intersect(const QUAD_BASE<T>& quad, VECTOR& point, VECTOR& normal) const;

private:
    VECTOR get_contact(T distance0, T distance1) const;

    template <typename SHAPE, typename IS_INSIDE>
    int intersect_shape(const SHAPE& shape, IS_INSIDE is_inside, VECTOR& point,
                        VECTOR& normal) const;

    VECTOR start_;
    VECTOR end_;
    T radius_{};
};

extern template class CAPSULE<float>;
extern template class CAPSULE<FIXED_POINT>;

}  // namespace KVMATH
