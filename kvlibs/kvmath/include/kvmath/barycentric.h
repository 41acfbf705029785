// BARYCENTRIC_BASE: what of a triangle is needed to find barycentric coordinates in it.
#pragma once

#include "kvmath/triangle.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class BARYCENTRIC_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    explicit BARYCENTRIC_BASE(const BASE_TRIANGLE<T, VECTOR>& triangle);

    // The weights of corners 0, 1 and 2, whose sum is 1, that make up the point, or of a point
    // off the triangle's plane its nearest point there. A triangle without area has none: all
    // three are -1, as of no point.
    VECTOR get(const VECTOR& point) const;

    // True if the point, taken to the plane, is in the triangle or on its edge: the weights of
    // corners 1 and 2 are at least 0 and their sum is at most 1. False without an area.
    bool is_inside(const VECTOR& point) const;

private:
    VECTOR corner_;
    VECTOR edge1_;   // from corner 0 to corner 1
    VECTOR edge2_;   // from corner 0 to corner 2
    VECTOR normal_;  // of length 1
    T twice_area_{};
};

extern template class BARYCENTRIC_BASE<float>;
extern template class BARYCENTRIC_BASE<FIXED_POINT>;

}  // namespace KVMATH
