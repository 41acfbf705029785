// POLYGON_BASE: a convex, flat polygon, its points in order; clockwise as seen from the tip of the
// normal. POLYGON is the float instance.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

#include <utility>
#include <vector>

namespace KVMATH {

template <typename T>
class POLYGON_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    POLYGON_BASE() = default;
    explicit POLYGON_BASE(std::vector<VECTOR> points) : points_(std::move(points)) {}
    explicit POLYGON_BASE(const QUAD_BASE<T>& quad);

    void add_point(const VECTOR& point) { points_.push_back(point); }
    const std::vector<VECTOR>& get_points() const { return points_; }

    // Of length 1: the direction of the sum over the triangle fan, so that points that fall
    // together or lie on one line do no harm. Zero for a polygon without an area.
    VECTOR normal() const;

    // The mean of the points; zero for a polygon without points.
    VECTOR midpoint() const;

    // The part on the plane's positive side, the plane included (I. E. Sutherland and G. W.
    // Hodgman, "Reentrant polygon clipping", 1974). Without a part there: no points.
    [[nodiscard]] POLYGON_BASE clip(const PLANE_BASE<T>& plane) const;

    // All points through MATRIX_BASE::transform_coord.
    [[nodiscard]] POLYGON_BASE transform(const MATRIX_BASE<T>& matrix) const;

private:
    std::vector<VECTOR> points_;
};

extern template class POLYGON_BASE<float>;
extern template class POLYGON_BASE<FIXED_POINT>;

}  // namespace KVMATH
