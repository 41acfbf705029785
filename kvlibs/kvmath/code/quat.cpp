#include "kvmath/quat.h"

#include "kvmath/matrix.h"

#include <cmath>
#include <type_traits>

namespace KVMATH {

template <typename T>
void QUAT_BASE<T>::set(const VECTOR3_BASE<T>& axis, T angle) {
    const VECTOR3_BASE<T> unit = axis.normal();
    if (unit == VECTOR3_BASE<T>()) {
        *this = QUAT_BASE();
        return;
    }
    T sine{};
    sin_cos(angle * SCALAR<T>::HALF, &sine, &w);
    x = unit.x * sine;
    y = unit.y * sine;
    z = unit.z * sine;
}

template <typename T>
void QUAT_BASE<T>::set(T yaw, T pitch, T roll) {
    QUAT_BASE about_y;
    QUAT_BASE about_x;
    QUAT_BASE about_z;
    sin_cos(yaw * SCALAR<T>::HALF, &about_y.y, &about_y.w);
    sin_cos(pitch * SCALAR<T>::HALF, &about_x.x, &about_x.w);
    sin_cos(roll * SCALAR<T>::HALF, &about_z.z, &about_z.w);
    *this = about_y * about_x * about_z;
}

template <typename T>
void QUAT_BASE<T>::set(const MATRIX_BASE<T>& matrix) {
    // Four times the square of each component; the largest is at least 1, so that its root is
    // a divisor to rely on.
    const T m00 = matrix.get_at(0, 0);
    const T m11 = matrix.get_at(1, 1);
    const T m22 = matrix.get_at(2, 2);
    const T squares[4] = {T(1) + m00 - m11 - m22, T(1) - m00 + m11 - m22, T(1) - m00 - m11 + m22,
                          T(1) + m00 + m11 + m22};
    int largest = 3;
    for (int i = 0; i < 3; ++i) {
        if (squares[i] > squares[largest]) {
            largest = i;
        }
    }
    const T wx = matrix.get_at(1, 2) - matrix.get_at(2, 1);
    const T wy = matrix.get_at(2, 0) - matrix.get_at(0, 2);
    const T wz = matrix.get_at(0, 1) - matrix.get_at(1, 0);
    const T xy = matrix.get_at(0, 1) + matrix.get_at(1, 0);
    const T xz = matrix.get_at(0, 2) + matrix.get_at(2, 0);
    const T yz = matrix.get_at(1, 2) + matrix.get_at(2, 1);
    // Row i: four times the products of component i with x, y, z and w.
    const T products[4][4] = {{squares[0], xy, xz, wx},
                              {xy, squares[1], yz, wy},
                              {xz, yz, squares[2], wz},
                              {wx, wy, wz, squares[3]}};
    const T divisor = get_square_root(squares[largest]) * T(2);
    const T* row = products[largest];
    *this = QUAT_BASE(row[0] / divisor, row[1] / divisor, row[2] / divisor, row[3] / divisor);
}

template <typename T>
void QUAT_BASE<T>::get_axis_angle(VECTOR3_BASE<T>& axis, T& angle) const {
    const QUAT_BASE near = w < T(0) ? -*this : *this;
    const VECTOR3_BASE<T> imaginary(near.x, near.y, near.z);
    const T sine = imaginary.magnitude();
    if (sine == T(0)) {
        axis = VECTOR3_BASE<T>::XAXIS;
        angle = T(0);
        return;
    }
    axis = imaginary / sine;
    angle = get_arc_tan2(sine, near.w) * T(2);
}

template <typename T>
void QUAT_BASE<T>::get_euler(T& yaw, T& pitch, T& roll) const {
    const MATRIX_BASE<T> m(*this);
    const T level = get_length(m.get_at(0, 1), m.get_at(1, 1));  // cosine of the pitch
    pitch = get_arc_tan2(-m.get_at(2, 1), level);
    if (level < SCALAR<T>::SMALL) {
        yaw = get_arc_tan2(-m.get_at(0, 2), m.get_at(0, 0));
        roll = T(0);
        return;
    }
    yaw = get_arc_tan2(m.get_at(2, 0), m.get_at(2, 2));
    // The roll that goes with this yaw: near straight up or down the yaw is rough, as the elements
    // that tell it are small, and the roll has to make up for it.
    T sine{};
    T cosine{};
    sin_cos(yaw, &sine, &cosine);
    roll = get_arc_tan2(m.get_at(1, 2) * sine - m.get_at(1, 0) * cosine,
                        m.get_at(0, 0) * cosine - m.get_at(0, 2) * sine);
}

namespace {

template <typename T>
QUAT_BASE<T> get_weighted_sum(const QUAT_BASE<T>& a, T weight_a, const QUAT_BASE<T>& b,
                              T weight_b) {
    return {a.x * weight_a + b.x * weight_b, a.y * weight_a + b.y * weight_b,
            a.z * weight_a + b.z * weight_b, a.w * weight_a + b.w * weight_b};
}

// -1 for a negative value, else 1. In float without a branch, as signs come in no order that could
// be predicted; the sum makes 0 of -0.
float get_sign(float value) {
    return std::copysign(1.0f, value + 0.0f);
}

FIXED_POINT get_sign(FIXED_POINT value) {
    return value < 0 ? -1 : 1;
}

// The weights of a slerp: sin((1 - t) angle) / sin angle and sin(t angle) / sin angle. At the ends
// they are exact, where a sine of 0 in fixed point may have a last bit.
template <typename T>
void get_slerp_weights(T cosine, T t, T& weight_a, T& weight_b) {
    if (t == T(0) || t == T(1)) {
        weight_a = T(1) - t;
        weight_b = t;
        return;
    }
    const T angle = get_arc_cos(cosine);
    T sine{};
    T sine_a{};
    T sine_b{};
    sin_cos(angle, &sine, nullptr);
    sin_cos((T(1) - t) * angle, &sine_a, nullptr);
    sin_cos(t * angle, &sine_b, nullptr);
    weight_a = sine_a / sine;
    weight_b = sine_b / sine;
}

// Between the ends all angles are acute, and the three sines can be had at once.
void get_slerp_weights_between(float cosine, float t, float& weight_a, float& weight_b) {
    const SIMD::FLOAT4 parts = {1.0f, 1.0f - t, t, 0.0f};
    const SIMD::FLOAT4 sines =
        SIMD::get_sines(SIMD::splat(SIMD::get_acute_arc_cos(cosine)) * parts);
    const SIMD::FLOAT4 weights = sines / SIMD::splat<0>(sines);
    weight_a = weights[1];
    weight_b = weights[2];
}

}  // namespace

template <typename T>
QUAT_BASE<T> QUAT_BASE<T>::slerp(const QUAT_BASE& a, const QUAT_BASE& b, T t) {
    const T cosine = a.dot(b);
    const T size = get_absolute(cosine);
    T weight_a = T(1) - t;
    T weight_b = t;
    if (size < T(1) - SCALAR<T>::SMALL) {
        if constexpr (std::is_same_v<T, float>) {
            if (t >= 0.0f && t <= 1.0f) {
                get_slerp_weights_between(size, t, weight_a, weight_b);
            } else {
                get_slerp_weights(size, t, weight_a, weight_b);
            }
        } else {
            get_slerp_weights(size, t, weight_a, weight_b);
        }
    }
    return get_weighted_sum(a, weight_a, b, weight_b * get_sign(cosine));
}

template <typename T>
QUAT_BASE<T> QUAT_BASE<T>::interpolate(const QUAT_BASE& a, const QUAT_BASE& b, T t) {
    return get_weighted_sum(a, T(1) - t, b, t * get_sign(a.dot(b))).normal();
}

template struct QUAT_BASE<float>;
template struct QUAT_BASE<FIXED_POINT>;

}  // namespace KVMATH
