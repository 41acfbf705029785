#include "kvmath/frustum.h"

#include "kvmath/matrix.h"
#include "kvmath/quad.h"
#include "kvmath/sphere.h"

namespace KVMATH {

namespace {

// The corners of each side, in order round it.
constexpr unsigned char quad_indices[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 4, 6, 2},
                                              {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}};

}  // namespace

template <typename T>
void FRUSTUM_BASE<T>::resolve(const MATRIX_BASE<T>& matrix, T near_depth, T far_depth) {
    const MATRIX_BASE<T> inverse = matrix.inverse();
    for (int i = 0; i < NUM_CORNERS; ++i) {
        const VECTOR clip_corner((i & 1) != 0 ? T(1) : T(-1), (i & 2) != 0 ? T(1) : T(-1),
                                 (i & 4) != 0 ? far_depth : near_depth);
        corners_[i] = inverse.transform_coord(clip_corner);
    }
    build_planes();
}

template <typename T>
void FRUSTUM_BASE<T>::build_planes() {
    VECTOR middle;
    for (const VECTOR& corner : corners_) {
        middle += corner / T(NUM_CORNERS);
    }
    for (int i = 0; i < NUM_SIDES; ++i) {
        const PLANE_BASE<T> plane = get_plane_quad(i).get_plane();
        planes_[i] = plane * middle < T(0) ? -plane : plane;
    }
}

template <typename T>
QUAD_BASE<T> FRUSTUM_BASE<T>::get_plane_quad(int side) const {
    const unsigned char* indices = quad_indices[side];
    return {corners_[indices[0]], corners_[indices[1]], corners_[indices[2]], corners_[indices[3]]};
}

template <typename T>
FRUSTUM_BASE<T> FRUSTUM_BASE<T>::transform(const MATRIX_BASE<T>& matrix) const {
    FRUSTUM_BASE result;
    for (int i = 0; i < NUM_CORNERS; ++i) {
        result.corners_[i] = matrix.transform_coord(corners_[i]);
    }
    result.build_planes();
    return result;
}

template <typename T>
bool FRUSTUM_BASE<T>::is_inside(const SPHERE_BASE<T>& sphere) const {
    for (const PLANE_BASE<T>& plane : planes_) {
        if (plane * sphere.get_centre() + sphere.get_radius() < T(0)) {
            return false;
        }
    }
    return true;
}

template class FRUSTUM_BASE<float>;
template class FRUSTUM_BASE<FIXED_POINT>;

}  // namespace KVMATH
