#include "kvmath/projection.h"

#include "kvmath/scalar.h"

namespace KVMATH {

namespace {

template <typename T>
T divide(T value, T extent) {
    return extent == T(0) ? T(0) : value / extent;
}

}  // namespace

template <int lo, int hi, typename T>
void PROJECTION_BASE<lo, hi, T>::resolve() {
    if (width != T(0) || height != T(0)) {
        right = width * SCALAR<T>::HALF;
        left = -right;
        top = height * SCALAR<T>::HALF;
        bottom = -top;
    }
    const T across = right - left;
    const T up = top - bottom;
    const T depth = far_plane - near_plane;
    using ROW = BASEVECTOR4<T>;
    if (kind == PERSPECTIVE) {
        const T twice_near = near_plane * T(2);
        const T z_scale = divide(far_plane * T(hi) - near_plane * T(lo), depth);
        const T z_offset = divide(near_plane * T(lo - hi), depth) * far_plane;
        matrix = MATRIX_BASE<T>(
            ROW(divide(twice_near, across), T(0), T(0), T(0)),
            ROW(T(0), divide(twice_near, up), T(0), T(0)),
            ROW(-divide(left + right, across), -divide(top + bottom, up), z_scale, T(1)),
            ROW(T(0), T(0), z_offset, T(0)));
    } else {
        matrix = MATRIX_BASE<T>(ROW(divide(T(2), across), T(0), T(0), T(0)),
                                ROW(T(0), divide(T(2), up), T(0), T(0)),
                                ROW(T(0), T(0), divide(T(1), depth), T(0)),
                                ROW(-divide(left + right, across), -divide(top + bottom, up),
                                    -divide(near_plane, depth), T(1)));
    }
}

template <int lo, int hi, typename T>
void PROJECTION_BASE<lo, hi, T>::set_perspective(T field_of_view, T aspect, T near_plane_,
                                                 T far_plane_) {
    T sine{};
    T cosine{};
    sin_cos(field_of_view * SCALAR<T>::HALF, &sine, &cosine);
    kind = PERSPECTIVE;
    near_plane = near_plane_;
    far_plane = far_plane_;
    height = near_plane * T(2) * divide(sine, cosine);
    width = height * aspect;
}

template struct PROJECTION_BASE<-1, 1, float>;
template struct PROJECTION_BASE<0, 1, float>;
template struct PROJECTION_BASE<-1, 1, FIXED_POINT>;
template struct PROJECTION_BASE<0, 1, FIXED_POINT>;

}  // namespace KVMATH
