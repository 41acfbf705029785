#include "kvmath/quad.h"

#include "kvmath/plane.h"

namespace KVMATH {

template <typename T>
VECTOR3_BASE<T> QUAD_BASE<T>::get_centre() const {
    return (corners_[0] + corners_[1] + corners_[2] + corners_[3]) / T(4);
}

template <typename T>
VECTOR3_BASE<T> QUAD_BASE<T>::get_normal() const {
    return (corners_[2] - corners_[0]).cross(corners_[3] - corners_[1]).normal();
}

template <typename T>
PLANE_BASE<T> QUAD_BASE<T>::get_plane() const {
    return {get_centre(), get_normal()};
}

template <typename T>
VECTOR3_BASE<T> QUAD_BASE<T>::get_closest_point(const VECTOR& point) const {
    const VECTOR first = get_triangle(0).get_closest_point(point);
    const VECTOR second = get_triangle(1).get_closest_point(point);
    return second.distance_sq(point) < first.distance_sq(point) ? second : first;
}

template class QUAD_BASE<float>;
template class QUAD_BASE<FIXED_POINT>;

}  // namespace KVMATH
