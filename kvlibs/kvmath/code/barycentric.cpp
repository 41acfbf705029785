#include "kvmath/barycentric.h"

namespace KVMATH {

template <typename T>
BARYCENTRIC_BASE<T>::BARYCENTRIC_BASE(const BASE_TRIANGLE<T, VECTOR>& triangle)
    : corner_(triangle.get_corner(0)),
      edge1_(triangle.get_corner(1) - corner_),
      edge2_(triangle.get_corner(2) - corner_) {
    const VECTOR cross = edge1_.cross(edge2_);
    twice_area_ = cross.magnitude();
    normal_ = cross.normal();
}

// Each weight is the ratio of two areas: that of the part opposite to the corner and the whole.
// With a unit normal, areas are products of no more than two lengths.
template <typename T>
VECTOR3_BASE<T> BARYCENTRIC_BASE<T>::get(const VECTOR& point) const {
    if (twice_area_ == T(0)) {
        return {T(-1), T(-1), T(-1)};
    }
    const VECTOR offset = point - corner_;
    const T weight1 = offset.cross(edge2_).dot(normal_) / twice_area_;
    const T weight2 = edge1_.cross(offset).dot(normal_) / twice_area_;
    return {T(1) - weight1 - weight2, weight1, weight2};
}

template <typename T>
bool BARYCENTRIC_BASE<T>::is_inside(const VECTOR& point) const {
    const VECTOR weights = get(point);
    return weights.y >= T(0) && weights.z >= T(0) && weights.y + weights.z <= T(1);
}

template class BARYCENTRIC_BASE<float>;
template class BARYCENTRIC_BASE<FIXED_POINT>;

}  // namespace KVMATH
