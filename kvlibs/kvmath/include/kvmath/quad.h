// QUAD_BASE: four corners in order round a convex, flat shape; clockwise as seen from the tip of
// the normal. For tests it falls into the triangles of corners 0 1 2 and 0 2 3.
#pragma once

#include "kvmath/triangle.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class QUAD_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    constexpr QUAD_BASE() = default;
    constexpr QUAD_BASE(const VECTOR& a, const VECTOR& b, const VECTOR& c, const VECTOR& d)
        : corners_{a, b, c, d} {}

    // Corner 0 to 3.
    constexpr const VECTOR& get_corner(int index) const { return corners_[index]; }
    constexpr void set_corner(int index, const VECTOR& corner) { corners_[index] = corner; }

    // The mean of the corners.
    VECTOR get_centre() const;

    // Of length 1, at right angles to both diagonals, so that two corners may fall together. Zero
    // if the diagonals are parallel.
    VECTOR get_normal() const;

    // The plane through the centre with that normal; without a normal no plane.
    PLANE_BASE<T> get_plane() const;

    // The quad's point nearest to a point.
    VECTOR get_closest_point(const VECTOR& point) const;

    // Triangle 0 or 1: of the corners 0 1 2 or 0 2 3.
    constexpr BASE_TRIANGLE<T, VECTOR> get_triangle(int index) const {
        return {corners_[0], corners_[index + 1], corners_[index + 2]};
    }

private:
    VECTOR corners_[4];
};

extern template class QUAD_BASE<float>;
extern template class QUAD_BASE<FIXED_POINT>;

}  // namespace KVMATH
