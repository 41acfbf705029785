#include "kvmath/polygon.h"

#include "kvmath/line.h"
#include "kvmath/matrix.h"
#include "kvmath/plane.h"
#include "kvmath/quad.h"

#include <cstddef>
#include <cstdint>

namespace KVMATH {

template <typename T>
POLYGON_BASE<T>::POLYGON_BASE(const QUAD_BASE<T>& quad)
    : points_{quad.get_corner(0), quad.get_corner(1), quad.get_corner(2), quad.get_corner(3)} {
}

template <typename T>
VECTOR3_BASE<T> POLYGON_BASE<T>::normal() const {
    VECTOR sum;
    for (std::size_t i = 2; i < points_.size(); ++i) {
        sum += (points_[i - 1] - points_[0]).cross(points_[i] - points_[0]);
    }
    return sum.normal();
}

template <typename T>
VECTOR3_BASE<T> POLYGON_BASE<T>::midpoint() const {
    VECTOR sum;
    for (const VECTOR& point : points_) {
        sum += point;
    }
    return points_.empty() ? sum : sum / T(static_cast<std::int32_t>(points_.size()));
}

template <typename T>
POLYGON_BASE<T> POLYGON_BASE<T>::clip(const PLANE_BASE<T>& plane) const {
    POLYGON_BASE result;
    result.points_.reserve(points_.size() + 1);
    for (std::size_t i = 0; i < points_.size(); ++i) {
        const VECTOR& point = points_[i];
        const VECTOR& next = points_[i + 1 < points_.size() ? i + 1 : 0];
        const T distance = plane * point;
        const T next_distance = plane * next;
        if (distance >= T(0)) {
            result.points_.push_back(point);
        }
        // An end on the plane is kept as a point of its own, and is no crossing.
        if ((distance > T(0) && next_distance < T(0)) ||
            (distance < T(0) && next_distance > T(0))) {
            VECTOR crossing;
            if (LINE_BASE<T>(point, next).intersect(plane, crossing)) {
                result.points_.push_back(crossing);
            }
        }
    }
    return result;
}

template <typename T>
POLYGON_BASE<T> POLYGON_BASE<T>::transform(const MATRIX_BASE<T>& matrix) const {
    POLYGON_BASE result;
    result.points_.reserve(points_.size());
    for (const VECTOR& point : points_) {
        result.points_.push_back(matrix.transform_coord(point));
    }
    return result;
}

template class POLYGON_BASE<float>;
template class POLYGON_BASE<FIXED_POINT>;

}  // namespace KVMATH
