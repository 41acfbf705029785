#include "kvmath/plane.h"

#include "kvmath/matrix.h"

namespace KVMATH {

template <typename T>
VECTOR3_BASE<T> PLANE_BASE<T>::project(const VECTOR& point) const {
    const VECTOR normal = get_normal();
    const T length_sq = normal.magnitude_sq();
    return length_sq == T(0) ? point : point - normal * (*this * point / length_sq);
}

template <typename T>
PLANE_BASE<T> PLANE_BASE<T>::operator*(const MATRIX_BASE<T>& matrix) const {
    // A plane is a column: with p' = p M, the product p (a b c d)' stays if the column takes the
    // inverse from the left.
    const MATRIX_BASE<T> inverse = matrix.inverse();
    const BASEVECTOR4<T> column(a, b, c, d);
    const VECTOR normal(inverse.get_row(0).dot(column), inverse.get_row(1).dot(column),
                        inverse.get_row(2).dot(column));
    const T length = normal.magnitude();
    if (length == T(0)) {
        return PLANE_BASE();
    }
    const VECTOR unit = normal / length;
    return {unit.x, unit.y, unit.z, inverse.get_row(3).dot(column) / length};
}

template struct PLANE_BASE<float>;
template struct PLANE_BASE<FIXED_POINT>;

}  // namespace KVMATH
