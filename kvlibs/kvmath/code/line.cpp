#include "kvmath/line.h"

#include "kvmath/plane.h"
#include "kvmath/scalar.h"

namespace KVMATH {

template <typename T>
VECTOR3_BASE<T> LINE_BASE<T>::get_closest_point(const VECTOR& point) const {
    const VECTOR along = points_[1] - points_[0];
    const T length = along.magnitude();
    if (length == T(0)) {
        return points_[0];
    }
    const T t = (point - points_[0]).dot(along / length);
    // The ends are given as they are, without rounding.
    if (t <= T(0)) {
        return points_[0];
    }
    return t >= length ? points_[1] : points_[0] + along * (t / length);
}

// C. Ericson, "Real-Time Collision Detection", 2005, 5.1.9, with unit directions, so that no
// products of four lengths arise, which fixed point couldn't hold.
template <typename T>
VECTOR3_BASE<T> LINE_BASE<T>::get_closest_point(const LINE_BASE& line) const {
    const VECTOR along = points_[1] - points_[0];
    const T length = along.magnitude();
    if (length == T(0)) {
        return points_[0];
    }
    const VECTOR other_along = line.points_[1] - line.points_[0];
    const T other_length = other_along.magnitude();
    if (other_length == T(0)) {
        return get_closest_point(line.points_[0]);
    }
    const VECTOR direction = along / length;
    const VECTOR other_direction = other_along / other_length;
    const VECTOR between = points_[0] - line.points_[0];
    const T cosine = direction.dot(other_direction);
    const T other_ahead = other_direction.dot(between);
    // Of the angle between the two. As a cross product it has no cancellation, and neither has the
    // unit vector across the other segment, so that long segments may be nearly parallel.
    const VECTOR cross = direction.cross(other_direction);
    const T sine = cross.magnitude();
    T s{};
    if (sine > SCALAR<T>::SMALL) {
        const VECTOR across = other_direction.cross(cross / sine);
        s = get_clamped(-across.dot(between) / sine, T(0), length);
    }
    const T t = get_clamped(cosine * s + other_ahead, T(0), other_length);
    return get_closest_point(line.points_[0] + other_direction * t);
}

template <typename T>
bool LINE_BASE<T>::intersect(const PLANE_BASE<T>& plane, VECTOR& point) const {
    const T d0 = plane * points_[0];
    const T d1 = plane * points_[1];
    if ((d0 > T(0) && d1 > T(0)) || (d0 < T(0) && d1 < T(0))) {
        return false;
    }
    point = d0 == T(0) ? points_[0] : points_[0].interpolate(points_[1], d0 / (d0 - d1));
    return true;
}

template class LINE_BASE<float>;
template class LINE_BASE<FIXED_POINT>;

}  // namespace KVMATH
