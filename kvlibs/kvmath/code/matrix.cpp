#include "kvmath/matrix.h"

#include "kvmath/plane.h"
#include "kvmath/quat.h"

#include <utility>

namespace KVMATH {

template <typename T>
void MATRIX_BASE<T>::set_rotation(T pitch, T yaw, T roll) {
    T sp{}, cp{}, sy{}, cy{}, sr{}, cr{};
    sin_cos(pitch, &sp, &cp);
    sin_cos(yaw, &sy, &cy);
    sin_cos(roll, &sr, &cr);
    set_right({cy * cr + sp * sr * sy, cp * sr, cy * sp * sr - sy * cr});
    set_up({sp * cr * sy - sr * cy, cr * cp, sy * sr + cy * sp * cr});
    set_forward({cp * sy, -sp, cp * cy});
}

// The images of the three axes (O. Rodrigues, "Des lois géométriques ...", 1840).
template <typename T>
void MATRIX_BASE<T>::set_rotation(const VECTOR& axis, T angle, bool normalise_axis) {
    const VECTOR a = normalise_axis ? axis.normal() : axis;
    T s{}, c{};
    if (a == VECTOR()) {
        c = T(1);
    } else {
        sin_cos(angle, &s, &c);
    }
    const VECTOR along = a * (T(1) - c);
    set_right({c + a.x * along.x, a.z * s + a.y * along.x, a.z * along.x - a.y * s});
    set_up({a.x * along.y - a.z * s, c + a.y * along.y, a.x * s + a.z * along.y});
    set_forward({a.y * s + a.x * along.z, a.y * along.z - a.x * s, c + a.z * along.z});
}

template <typename T>
void MATRIX_BASE<T>::set_rotation(const QUAT_BASE<T>& q) {
    const T x2 = q.x + q.x;
    const T y2 = q.y + q.y;
    const T z2 = q.z + q.z;
    const T xx = q.x * x2, yy = q.y * y2, zz = q.z * z2;
    const T xy = q.x * y2, xz = q.x * z2, yz = q.y * z2;
    const T wx = q.w * x2, wy = q.w * y2, wz = q.w * z2;
    set_right({T(1) - (yy + zz), xy + wz, xz - wy});
    set_up({xy - wz, T(1) - (xx + zz), yz + wx});
    set_forward({xz + wy, yz - wx, T(1) - (xx + yy)});
}

template <typename T>
void MATRIX_BASE<T>::set_rotation_x(T angle) {
    T s{}, c{};
    sin_cos(angle, &s, &c);
    set_right(VECTOR::XAXIS);
    set_up({T(0), c, s});
    set_forward({T(0), -s, c});
}

template <typename T>
void MATRIX_BASE<T>::set_rotation_y(T angle) {
    T s{}, c{};
    sin_cos(angle, &s, &c);
    set_right({c, T(0), -s});
    set_up(VECTOR::YAXIS);
    set_forward({s, T(0), c});
}

template <typename T>
void MATRIX_BASE<T>::set_rotation_z(T angle) {
    T s{}, c{};
    sin_cos(angle, &s, &c);
    set_right({c, s, T(0)});
    set_up({-s, c, T(0)});
    set_forward(VECTOR::ZAXIS);
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::get_scale_matrix(const VECTOR& factors) {
    return MATRIX_BASE().pre_scale(factors);
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::get_reflection(const PLANE_BASE<T>& plane) {
    const VECTOR normal = plane.get_normal();
    const T length_sq = normal.magnitude_sq();
    if (length_sq == T(0)) {
        return MATRIX_BASE();
    }
    const auto reflect = [&](const VECTOR& v, T distance) {
        return v - normal * (distance * T(2) / length_sq);
    };
    return {reflect(VECTOR::XAXIS, normal.x), reflect(VECTOR::YAXIS, normal.y),
            reflect(VECTOR::ZAXIS, normal.z), reflect(VECTOR::ZERO, plane.d)};
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::scale(const VECTOR& factors) const {
    const ROW row_factors(factors, T(1));
    return {get_row(0).scale(row_factors), get_row(1).scale(row_factors),
            get_row(2).scale(row_factors), get_row(3).scale(row_factors)};
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::pre_scale(const VECTOR& factors) const {
    return {get_row(0) * factors.x, get_row(1) * factors.y, get_row(2) * factors.z, get_row(3)};
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::transpose() const {
    return {get_column(0), get_column(1), get_column(2), get_column(3)};
}

template <typename T>
T MATRIX_BASE<T>::determinant() const {
    return get_row(0).dot(cofactors().get_row(0));
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::cofactors() const {
    MATRIX_BASE result(UNSET{});
    for (int i = 0; i < 4; ++i) {
        // The other three rows and columns, taken round, so that only the parity of i + j counts.
        const T* r0 = values_[(i + 1) & 3];
        const T* r1 = values_[(i + 2) & 3];
        const T* r2 = values_[(i + 3) & 3];
        for (int j = 0; j < 4; ++j) {
            const int c0 = (j + 1) & 3;
            const int c1 = (j + 2) & 3;
            const int c2 = (j + 3) & 3;
            const T minor = r0[c0] * (r1[c1] * r2[c2] - r1[c2] * r2[c1]) -
                            r0[c1] * (r1[c0] * r2[c2] - r1[c2] * r2[c0]) +
                            r0[c2] * (r1[c0] * r2[c1] - r1[c1] * r2[c0]);
            result.values_[i][j] = ((i + j) & 1) != 0 ? -minor : minor;
        }
    }
    return result;
}

// Gauss-Jordan elimination with the largest pivot of each column. Unlike cofactors, which are
// products of three elements and more, it keeps small scales apart from the last fractional bits.
// It begins with the fourth column: of an affine matrix that leaves the axes to themselves, free of
// a translation that may be hundreds of times as large.
template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::get_inverse_by_elimination() const {
    ROW left[4] = {get_row(0), get_row(1), get_row(2), get_row(3)};
    const MATRIX_BASE identity;
    ROW right[4] = {identity.get_row(0), identity.get_row(1), identity.get_row(2),
                    identity.get_row(3)};
    for (int column = 3; column >= 0; --column) {
        int pivot = column;
        for (int i = column - 1; i >= 0; --i) {
            if (get_absolute(left[i][column]) > get_absolute(left[pivot][column])) {
                pivot = i;
            }
        }
        std::swap(left[column], left[pivot]);
        std::swap(right[column], right[pivot]);
        const T divisor = left[column][column];
        if (divisor == T(0)) {
            return {ROW::ZERO, ROW::ZERO, ROW::ZERO, ROW::ZERO};
        }
        left[column] /= divisor;
        right[column] /= divisor;
        for (int i = 0; i < 4; ++i) {
            const T factor = left[i][column];
            if (i != column && factor != T(0)) {
                left[i] -= left[column] * factor;
                right[i] -= right[column] * factor;
            }
        }
    }
    return {right[0], right[1], right[2], right[3]};
}

namespace {

// A frame's axes from its forward and an up that needn't be at a right angle to it.
template <typename T>
MATRIX_BASE<T> get_frame(const VECTOR3_BASE<T>& position, const VECTOR3_BASE<T>& forward,
                         const VECTOR3_BASE<T>& up) {
    using VECTOR = VECTOR3_BASE<T>;
    VECTOR ahead = forward.normal();
    if (ahead == VECTOR()) {
        ahead = VECTOR::ZAXIS;
    }
    VECTOR right = up.normal().cross(ahead);
    if (right.magnitude() < SCALAR<T>::SMALL) {
        right = VECTOR::YAXIS.cross(ahead);
    }
    if (right.magnitude() < SCALAR<T>::SMALL) {
        right = VECTOR::XAXIS.cross(ahead);
    }
    right = right.normal();
    // With an up nearly along forward, right was short, and what rounding put into it along forward
    // has grown with it.
    right = (right - ahead * right.dot(ahead)).normal();
    return {right, ahead.cross(right), ahead, position};
}

}  // namespace

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::orthogonalise() const {
    return get_frame(get_translation(), get_forward(), get_up());
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::look_at(const VECTOR& position, const VECTOR& forward,
                                       const VECTOR& up) {
    return get_frame(position, forward, up);
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::look_at(const VECTOR& position, const VECTOR& forward, T roll) {
    MATRIX_BASE result = get_frame(position, forward, VECTOR(VECTOR::YAXIS));
    const VECTOR right = result.get_right();
    const VECTOR up = result.get_up();
    T s{}, c{};
    sin_cos(roll, &s, &c);
    result.set_right(right * c + up * s);
    result.set_up(up * c - right * s);
    return result;
}

template <typename T>
MATRIX_BASE<T> MATRIX_BASE<T>::interpolate(const MATRIX_BASE& other, T t) const {
    return {
        get_row(0).interpolate(other.get_row(0), t), get_row(1).interpolate(other.get_row(1), t),
        get_row(2).interpolate(other.get_row(2), t), get_row(3).interpolate(other.get_row(3), t)};
}

template <typename T>
bool MATRIX_BASE<T>::equal(const MATRIX_BASE& other, T tolerance) const {
    for (int i = 0; i < 4; ++i) {
        if (!get_row(i).almost_equal(other.get_row(i), tolerance)) {
            return false;
        }
    }
    return true;
}

namespace {

template <typename T>
void transform_points(const MATRIX_BASE<T>& matrix, const VECTOR3_BASE<T>* points,
                      VECTOR3_BASE<T>* results, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        results[i] = matrix.transform(points[i]);
    }
}

void transform_points(const MATRIX_BASE<float>& matrix, const VECTOR3_BASE<float>* points,
                      VECTOR3_BASE<float>* results, std::size_t count) {
    const float* m = matrix.get_data();
    const SIMD::FLOAT4 r0 = SIMD::load(m);
    const SIMD::FLOAT4 r1 = SIMD::load(m + 4);
    const SIMD::FLOAT4 r2 = SIMD::load(m + 8);
    const SIMD::FLOAT4 r3 = SIMD::load(m + 12);
    static_assert(sizeof(VECTOR3_BASE<float>) == 3 * sizeof(float));
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        SIMD::transform_four_points(&points[i].x, &results[i].x, r0, r1, r2, r3);
    }
    for (; i < count; ++i) {
        results[i] = matrix.transform(points[i]);
    }
}

}  // namespace

template <typename T>
void MATRIX_BASE<T>::transform(const VECTOR* points, VECTOR* results, std::size_t count) const {
    transform_points(*this, points, results, count);
}

template class MATRIX_BASE<float>;
template class MATRIX_BASE<FIXED_POINT>;

}  // namespace KVMATH
