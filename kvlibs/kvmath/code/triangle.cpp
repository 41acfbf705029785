#include "kvmath/triangle.h"

#include "kvmath/barycentric.h"
#include "kvmath/line.h"
#include "kvmath/plane.h"
#include "kvmath/scalar.h"

namespace KVMATH {

template <typename T, typename V>
V BASE_TRIANGLE<T, V>::get_normal() const {
    return V::normal(corners_[0], corners_[1], corners_[2]);
}

template <typename T, typename V>
PLANE_BASE<T> BASE_TRIANGLE<T, V>::get_plane() const {
    return {corners_[0], corners_[1], corners_[2]};
}

template <typename T, typename V>
T BASE_TRIANGLE<T, V>::get_area() const {
    const V a = corners_[1] - corners_[0];
    const V b = corners_[2] - corners_[0];
    return a.cross(b).magnitude() * SCALAR<T>::HALF;
}

template <typename T, typename V>
T BASE_TRIANGLE<T, V>::get_area_2d() const {
    const V a = corners_[1] - corners_[0];
    const V b = corners_[2] - corners_[0];
    return get_absolute(a.x * b.y - a.y * b.x) * SCALAR<T>::HALF;
}

template <typename T, typename V>
V BASE_TRIANGLE<T, V>::get_closest_point(const V& point) const {
    if (BARYCENTRIC_BASE<T>(*this).is_inside(point)) {
        return get_plane().project(point);
    }
    V nearest = LINE_BASE<T>(corners_[0], corners_[1]).get_closest_point(point);
    for (int i = 1; i < 3; ++i) {
        const LINE_BASE<T> edge(corners_[i], corners_[(i + 1) % 3]);
        const V candidate = edge.get_closest_point(point);
        if (candidate.distance_sq(point) < nearest.distance_sq(point)) {
            nearest = candidate;
        }
    }
    return nearest;
}

template class BASE_TRIANGLE<float, VECTOR3_BASE<float>>;
template class BASE_TRIANGLE<FIXED_POINT, VECTOR3_BASE<FIXED_POINT>>;

}  // namespace KVMATH
