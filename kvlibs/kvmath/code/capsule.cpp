#include "kvmath/capsule.h"

#include "kvmath/aabb.h"
#include "kvmath/barycentric.h"
#include "kvmath/line.h"
#include "kvmath/plane.h"
#include "kvmath/quad.h"
#include "kvmath/scalar.h"
#include "kvmath/triangle.h"

namespace KVMATH {

namespace {

template <typename T>
bool are_on_one_side(T distance0, T distance1) {
    return (distance0 > T(0) && distance1 > T(0)) || (distance0 < T(0) && distance1 < T(0));
}

}  // namespace

template <typename T>
AABB_BASE<T> CAPSULE<T>::get_aabb() const {
    const VECTOR margin(radius_, radius_, radius_);
    AABB_BASE<T> box(start_ - margin, start_ + margin);
    return box += AABB_BASE<T>(end_ - margin, end_ + margin);
}

template <typename T>
VECTOR3_BASE<T> CAPSULE<T>::get_contact(T distance0, T distance1) const {
    const T size0 = get_absolute(distance0);
    const T size1 = get_absolute(distance1);
    const T covered = are_on_one_side(distance0, distance1) ? size0 - size1 : size0 + size1;
    const T t = covered == T(0) ? T(0) : (size0 - radius_) / covered;
    return start_ + get_direction() * t;
}

template <typename T>
int CAPSULE<T>::intersect(const PLANE_BASE<T>& plane, VECTOR& point, VECTOR& normal) const {
    const T distance0 = plane * start_;
    const T distance1 = plane * end_;
    if ((get_absolute(distance0) > radius_ && get_absolute(distance1) > radius_) ||
        plane.get_normal() == VECTOR()) {
        return -1;
    }
    point = get_contact(distance0, distance1);
    normal = plane.get_normal();
    return 0;
}

template <typename T>
template <typename SHAPE, typename IS_INSIDE>
int CAPSULE<T>::intersect_shape(const SHAPE& shape, IS_INSIDE is_inside, VECTOR& point,
                                VECTOR& normal) const {
    const PLANE_BASE<T> plane = shape.get_plane();
    const VECTOR plane_normal = plane.get_normal();
    const T distance0 = plane * start_;
    const T distance1 = plane * end_;
    const bool out_of_reach = are_on_one_side(distance0, distance1) &&
                              get_absolute(distance0) >= radius_ &&
                              get_absolute(distance1) >= radius_;
    if (out_of_reach || plane_normal == VECTOR()) {
        return -1;
    }
    const VECTOR contact = plane.project(get_contact(distance0, distance1));
    if (is_inside(contact)) {
        point = contact;
        normal = plane_normal;
        return 0;
    }
    const VECTOR nearest = shape.get_closest_point(contact);
    if ((contact - nearest).magnitude() > radius_) {
        return -1;
    }
    const VECTOR to_axis = LINE_BASE<T>(start_, end_).get_closest_point(nearest) - nearest;
    point = nearest;
    normal = to_axis == VECTOR() ? plane_normal : to_axis.normal();
    return 0;
}

template <typename T>
int CAPSULE<T>::intersect(const BASE_TRIANGLE<T, VECTOR>& triangle, VECTOR& point,
                          VECTOR& normal) const {
    const auto is_inside = [&](const VECTOR& contact) {
        return BARYCENTRIC_BASE<T>(triangle).is_inside(contact);
    };
    return intersect_shape(triangle, is_inside, point, normal);
}

template <typename T>
int CAPSULE<T>::intersect(const QUAD_BASE<T>& quad, VECTOR& point, VECTOR& normal) const {
    const auto is_inside = [&](const VECTOR& contact) {
        return BARYCENTRIC_BASE<T>(quad.get_triangle(0)).is_inside(contact) ||
               BARYCENTRIC_BASE<T>(quad.get_triangle(1)).is_inside(contact);
    };
    return intersect_shape(quad, is_inside, point, normal);
}

template class CAPSULE<float>;
template class CAPSULE<FIXED_POINT>;

}  // namespace KVMATH
