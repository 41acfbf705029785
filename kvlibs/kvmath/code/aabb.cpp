#include "kvmath/aabb.h"

#include "kvmath/matrix.h"
#include "kvmath/quad.h"
#include "kvmath/sphere.h"

#include <algorithm>

namespace KVMATH {

template <typename T>
QUAD_BASE<T> AABB_BASE<T>::get_quad(int side) const {
    // Clockwise as seen from outside.
    static constexpr unsigned char CORNERS[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                                    {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};
    const unsigned char* corners = CORNERS[side];
    return {get_vertex(corners[0]), get_vertex(corners[1]), get_vertex(corners[2]),
            get_vertex(corners[3])};
}

template <typename T>
VECTOR3_BASE<T> AABB_BASE<T>::get_closest_point_to(const VECTOR& point) const {
    if (is_empty()) {
        return point;
    }
    return {get_clamped(point.x, min_.x, max_.x), get_clamped(point.y, min_.y, max_.y),
            get_clamped(point.z, min_.z, max_.z)};
}

template <typename T>
bool AABB_BASE<T>::intersect_sphere(const SPHERE_BASE<T>& sphere) const {
    return !is_empty() && sphere.is_inside(get_closest_point_to(sphere.get_centre()));
}

template <typename T>
AABB_BASE<T>& AABB_BASE<T>::operator+=(const AABB_BASE& other) {
    if (!other.is_empty()) {
        *this += other.min_;
        *this += other.max_;
    }
    return *this;
}

template <typename T>
AABB_BASE<T>& AABB_BASE<T>::operator+=(const VECTOR& point) {
    min_ = VECTOR(std::min(min_.x, point.x), std::min(min_.y, point.y), std::min(min_.z, point.z));
    max_ = VECTOR(std::max(max_.x, point.x), std::max(max_.y, point.y), std::max(max_.z, point.z));
    return *this;
}

template <typename T>
AABB_BASE<T> AABB_BASE<T>::operator*(const MATRIX_BASE<T>& matrix) const {
    if (is_empty()) {
        return *this;
    }
    AABB_BASE result(matrix.get_translation(), matrix.get_translation());
    for (int i = 0; i < 3; ++i) {
        const VECTOR axis = matrix.get_row(i).get_vector3();
        const VECTOR low = axis * min_[i];
        const VECTOR high = axis * max_[i];
        result.min_ +=
            VECTOR(std::min(low.x, high.x), std::min(low.y, high.y), std::min(low.z, high.z));
        result.max_ +=
            VECTOR(std::max(low.x, high.x), std::max(low.y, high.y), std::max(low.z, high.z));
    }
    return result;
}

template class AABB_BASE<float>;
template class AABB_BASE<FIXED_POINT>;

}  // namespace KVMATH
