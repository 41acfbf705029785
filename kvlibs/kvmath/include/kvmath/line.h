// LINE_BASE: a segment between two points, both included.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class LINE_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    constexpr LINE_BASE() = default;
    constexpr LINE_BASE(const VECTOR& start, const VECTOR& end) : points_{start, end} {}

    // Point 0 or 1.
    constexpr const VECTOR& get_point(int index) const { return points_[index]; }
    constexpr void set_point(int index, const VECTOR& point) { points_[index] = point; }

    T get_magnitude() const { return (points_[1] - points_[0]).magnitude(); }

    // The segment's point nearest to a point. A segment of length 0 has only one to give.
    VECTOR get_closest_point(const VECTOR& point) const;

    // This segment's point nearest to another segment. Where a stretch is equally near, as of
    // parallel segments, one point of it.
    VECTOR get_closest_point(const LINE_BASE& line) const;

    // Gives the point where the segment meets the plane. False, and the point untouched, if both
    // ends lie on one side. An end on the plane counts as met; a segment within the plane meets it
    // at its start.
    bool intersect(const PLANE_BASE<T>& plane, VECTOR& point) const;

private:
    VECTOR points_[2];
};

extern template class LINE_BASE<float>;
extern template class LINE_BASE<FIXED_POINT>;

}  // namespace KVMATH
