// PROJECTION_BASE: how camera space (x right, y up, z forward) becomes clip space, in which the
// seen part is -1 to 1 in x and y. lo and hi are the clip space's depth range: <-1, 1> or <0, 1>.
#pragma once

#include "kvmath/matrix.h"
#include "kvmath/types.h"

namespace KVMATH {

template <int lo, int hi, typename T>
struct PROJECTION_BASE {
    enum KIND { ORTHOGRAPHIC, PERSPECTIVE };

    KIND kind = ORTHOGRAPHIC;

    // The size of the seen rectangle: of a perspective, at the near plane. With a width or a
    // height other than 0, resolve centres the rectangle and sets the four edges to half the
    // size. With both 0 the edges count as they are.
    T width{};
    T height{};
    T left{};
    T right{};
    T top{};
    T bottom{};

    // Distances along z. A perspective's near plane must be above 0.
    T near_plane{};
    T far_plane{1};

    MATRIX_BASE<T> matrix;  // as of the last resolve

    // Works out the matrix. The perspective maps near to lo and far to hi; the orthographic form
    // maps them to 0 and 1 in both instances: its users, shadows and cut volumes, resolve
    // their frustums from 0 to 1. An extent of 0 gives a scale of 0.
    void resolve();

    // Sets a centred perspective from the vertical field of view in radians, above 0 and below pi,
    // and the ratio of width to height. resolve is still to be called.
    void set_perspective(T field_of_view, T aspect, T near_plane_, T far_plane_);
};

extern template struct PROJECTION_BASE<-1, 1, float>;
extern template struct PROJECTION_BASE<0, 1, float>;
extern template struct PROJECTION_BASE<-1, 1, FIXED_POINT>;
extern template struct PROJECTION_BASE<0, 1, FIXED_POINT>;

}  // namespace KVMATH
