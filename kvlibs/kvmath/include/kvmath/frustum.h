// FRUSTUM_BASE: the space that a camera sees, as six planes and eight corners. FRUSTUM is the float
// instance.
#pragma once

#include "kvmath/plane.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class FRUSTUM_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    enum SIDE { NEAR_SIDE, FAR_SIDE, LEFT_SIDE, RIGHT_SIDE, BOTTOM_SIDE, TOP_SIDE, NUM_SIDES };

    static constexpr int NUM_CORNERS = 8;

    // A frustum of the origin alone, whose planes exclude nothing.
    FRUSTUM_BASE() = default;

    // The frustum whose image under the matrix (world to clip space) is the clip cube: -1 to 1 in
    // x and y and near_depth to far_depth in z. Of a singular matrix: as constructed.
    void resolve(const MATRIX_BASE<T>& matrix, T near_depth, T far_depth);

    // Corner 0 to 7: 0 to 3 near, 4 to 7 far, each in the order bottom left, bottom right, top
    // left, top right. After setting corners, build_planes makes the planes again.
    const VECTOR& get_corner(int index) const { return corners_[index]; }
    void set_corner(int index, const VECTOR& corner) { corners_[index] = corner; }

    // Makes the planes from the corners, their normals inwards, whatever way round the corners
    // are. A side without an area gives no plane, which excludes nothing.
    void build_planes();

    // A plane, or the four corners of a plane, by SIDE.
    const PLANE_BASE<T>& get_plane(int side) const { return planes_[side]; }
    QUAD_BASE<T> get_plane_quad(int side) const;

    // The frustum after a transform of its corners by MATRIX_BASE::transform_coord.
    [[nodiscard]] FRUSTUM_BASE transform(const MATRIX_BASE<T>& matrix) const;

    // False if the sphere lies wholly beyond one of the planes. Near an edge or a corner a sphere
    // can count as inside without touching the frustum; one that touches always does.
    bool is_inside(const SPHERE_BASE<T>& sphere) const;

private:
    PLANE_BASE<T> planes_[NUM_SIDES];
    VECTOR corners_[NUM_CORNERS];
};

extern template class FRUSTUM_BASE<float>;
extern template class FRUSTUM_BASE<FIXED_POINT>;

}  // namespace KVMATH
