// MATRIX_BASE: a 4 by 4 matrix over row vectors: the result of a transform is point * matrix, and
// of a * b the transform a comes first, so that local * parent is world.
//
// The rows of a frame are its right, up and forward axes and its translation. The space is
// left-handed: right is up cross forward. An angle turns y to z about x, z to x about y, x to y
// about z. Operations whose name begins with set change the matrix; all others leave it and give
// a result. Row and column numbers are 0 to 3, unchecked.
#pragma once

#include "kvmath/float4.h"
#include "kvmath/scalar.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"
#include "kvmath/vector4.h"

#include <cstddef>
#include <type_traits>

namespace KVMATH {

template <typename T>
class MATRIX_BASE {
public:
    using ROW = BASEVECTOR4<T>;
    using VECTOR = VECTOR3_BASE<T>;

    static const MATRIX_BASE IDENTITY;

    // The identity.
    constexpr MATRIX_BASE()
        : values_{{T(1), T(0), T(0), T(0)},
                  {T(0), T(1), T(0), T(0)},
                  {T(0), T(0), T(1), T(0)},
                  {T(0), T(0), T(0), T(1)}} {}

    constexpr MATRIX_BASE(const ROW& row0, const ROW& row1, const ROW& row2, const ROW& row3)
        : values_{{row0.x, row0.y, row0.z, row0.w},
                  {row1.x, row1.y, row1.z, row1.w},
                  {row2.x, row2.y, row2.z, row2.w},
                  {row3.x, row3.y, row3.z, row3.w}} {}

    // The frame with these axes and translation.
    constexpr MATRIX_BASE(const VECTOR& right, const VECTOR& up, const VECTOR& forward,
                          const VECTOR& translation)
        : MATRIX_BASE(ROW(right, T(0)), ROW(up, T(0)), ROW(forward, T(0)), ROW(translation, T(1))) {
    }

    // The rotation of a unit quaternion.
    explicit MATRIX_BASE(const QUAT_BASE<T>& rotation) : MATRIX_BASE() { set_rotation(rotation); }

    // A matrix with another scalar, each element converted.
    template <typename U>
    constexpr explicit MATRIX_BASE(const MATRIX_BASE<U>& o)
        : MATRIX_BASE(ROW(o.get_row(0)), ROW(o.get_row(1)), ROW(o.get_row(2)), ROW(o.get_row(3))) {}

    constexpr ROW get_row(int i) const {
        return {values_[i][0], values_[i][1], values_[i][2], values_[i][3]};
    }
    constexpr void set_row(int i, const ROW& row) {
        values_[i][0] = row.x;
        values_[i][1] = row.y;
        values_[i][2] = row.z;
        values_[i][3] = row.w;
    }
    constexpr ROW get_column(int i) const {
        return {values_[0][i], values_[1][i], values_[2][i], values_[3][i]};
    }
    constexpr void set_column(int i, const ROW& column) {
        values_[0][i] = column.x;
        values_[1][i] = column.y;
        values_[2][i] = column.z;
        values_[3][i] = column.w;
    }
    constexpr T get_at(int row, int column) const { return values_[row][column]; }
    constexpr void set_at(int row, int column, T value) { values_[row][column] = value; }

    // The sixteen elements, row by row, as a shader takes them.
    constexpr const T* get_data() const { return values_[0]; }

    // The first three elements of a row. Setting them leaves the fourth.
    constexpr VECTOR get_right() const { return get_row(0).get_vector3(); }
    constexpr VECTOR get_up() const { return get_row(1).get_vector3(); }
    constexpr VECTOR get_forward() const { return get_row(2).get_vector3(); }
    constexpr VECTOR get_translation() const { return get_row(3).get_vector3(); }
    constexpr void set_right(const VECTOR& right) { set_axis(0, right); }
    constexpr void set_up(const VECTOR& up) { set_axis(1, up); }
    constexpr void set_forward(const VECTOR& forward) { set_axis(2, forward); }
    constexpr void set_translation(const VECTOR& translation) { set_axis(3, translation); }

    // These replace the upper left 3 by 3 elements, scale included, and leave the others.
    //
    // First the roll about z, then the pitch about x, then the yaw about y.
    void set_rotation(T pitch, T yaw, T roll);
    // About an axis, which must have the length 1 unless normalise_axis is true. About the zero
    // vector: no rotation.
    void set_rotation(const VECTOR& axis, T angle, bool normalise_axis);
    void set_rotation(const QUAT_BASE<T>& rotation);
    void set_rotation_x(T angle);
    void set_rotation_y(T angle);
    void set_rotation_z(T angle);

    // A scale along the three axes.
    [[nodiscard]] static MATRIX_BASE get_scale_matrix(const VECTOR& factors);

    // The reflection in a plane, whose normal needn't have the length 1. Without a normal it is
    // the identity.
    [[nodiscard]] static MATRIX_BASE get_reflection(const PLANE_BASE<T>& plane);

    // This transform followed by a scale, which scales the translation too; a scale followed by
    // this transform.
    [[nodiscard]] MATRIX_BASE scale(const VECTOR& factors) const;
    [[nodiscard]] MATRIX_BASE pre_scale(const VECTOR& factors) const;

    [[nodiscard]] MATRIX_BASE transpose() const;
    T determinant() const;

    // The matrix of signed minors: its transpose divided by the determinant is the inverse.
    [[nodiscard]] MATRIX_BASE cofactors() const;

    // Of a singular matrix (a determinant of exactly 0, in fixed point no pivot left): the zero
    // matrix, so that what it transforms collapses to a point and stays finite.
    [[nodiscard]] MATRIX_BASE inverse() const {
        if constexpr (std::is_same_v<T, float>) {
            MATRIX_BASE result(UNSET{});
            SIMD::invert_matrix(get_data(), result.values_[0]);
            return result;
        } else {
            return get_inverse_by_elimination();
        }
    }

    // The frame with axes at right angles and of length 1: forward keeps its direction, right is
    // up cross forward, up follows from the two. The translation stays. An axis that is zero, or
    // an up along forward, is replaced by one that fits.
    [[nodiscard]] MATRIX_BASE orthogonalise() const;

    // The frame at a position that looks in a direction: right := up cross forward, up := forward
    // cross right, each normalised. An up along forward is replaced by the y or the x axis; a
    // zero forward by the z axis. The inverse is the view matrix of a camera there.
    [[nodiscard]] static MATRIX_BASE look_at(const VECTOR& position, const VECTOR& forward,
                                             const VECTOR& up);
    // With up the y axis, rolled by an angle about the view from right towards up.
    [[nodiscard]] static MATRIX_BASE look_at(const VECTOR& position, const VECTOR& forward, T roll);

    // The same at the origin.
    [[nodiscard]] static MATRIX_BASE look_dir(const VECTOR& forward, const VECTOR& up) {
        return look_at(VECTOR(), forward, up);
    }
    [[nodiscard]] static MATRIX_BASE look_dir(const VECTOR& forward, T roll) {
        return look_at(VECTOR(), forward, roll);
    }

    // Element by element: this matrix at t = 0, the other one at t = 1.
    [[nodiscard]] MATRIX_BASE interpolate(const MATRIX_BASE& other, T t) const;

    // True if no element differs by more than the tolerance.
    bool equal(const MATRIX_BASE& other, T tolerance = T(0)) const;

    bool operator==(const MATRIX_BASE& other) const { return equal(other); }

    friend MATRIX_BASE operator*(const MATRIX_BASE& a, const MATRIX_BASE& b) {
        MATRIX_BASE result(UNSET{});
        if constexpr (std::is_same_v<T, float>) {
            SIMD::multiply_matrices(a.get_data(), b.get_data(), result.values_[0]);
        } else {
            for (int i = 0; i < 4; ++i) {
                result.set_row(i, b.transform(a.get_row(i)));
            }
        }
        return result;
    }
    MATRIX_BASE& operator*=(const MATRIX_BASE& other) { return *this = *this * other; }

    // The row vector times the matrix.
    ROW transform(const ROW& v) const {
        if constexpr (std::is_same_v<T, float>) {
            const T* m = get_data();
            const SIMD::FLOAT4 result =
                SIMD::transform(SIMD::FLOAT4{v.x, v.y, v.z, v.w}, SIMD::load(m), SIMD::load(m + 4),
                                SIMD::load(m + 8), SIMD::load(m + 12));
            return {result[0], result[1], result[2], result[3]};
        } else {
            return {v.dot(get_column(0)), v.dot(get_column(1)), v.dot(get_column(2)),
                    v.dot(get_column(3))};
        }
    }

    // A point by an affine matrix: one whose fourth column is 0, 0, 0, 1, which isn't looked at.
    constexpr VECTOR transform(const VECTOR& p) const {
        return {p.x * values_[0][0] + p.y * values_[1][0] + p.z * values_[2][0] + values_[3][0],
                p.x * values_[0][1] + p.y * values_[1][1] + p.z * values_[2][1] + values_[3][1],
                p.x * values_[0][2] + p.y * values_[1][2] + p.z * values_[2][2] + values_[3][2]};
    }

    // Many points by an affine matrix. The results may be the points themselves.
    void transform(const VECTOR* points, VECTOR* results, std::size_t count) const;

    // A point by any matrix, projections included: the result is divided by its fourth component.
    // If that is 0, as of a point in the plane of the eye, the result isn't divided.
    VECTOR transform_coord(const VECTOR& p) const {
        const ROW result = transform(ROW(p, T(1)));
        return result.w == T(0) ? result.get_vector3() : result.get_vector3() / result.w;
    }

    // A direction: the translation has no part in it. The result isn't normalised.
    constexpr VECTOR transform_normal(const VECTOR& d) const {
        return {d.x * values_[0][0] + d.y * values_[1][0] + d.z * values_[2][0],
                d.x * values_[0][1] + d.y * values_[1][1] + d.z * values_[2][1],
                d.x * values_[0][2] + d.y * values_[1][2] + d.z * values_[2][2]};
    }

private:
    struct UNSET {};

    explicit MATRIX_BASE(UNSET) {}  // the elements are written by the caller

    constexpr void set_axis(int i, const VECTOR& axis) {
        values_[i][0] = axis.x;
        values_[i][1] = axis.y;
        values_[i][2] = axis.z;
    }

    MATRIX_BASE get_inverse_by_elimination() const;

    T values_[4][4];
};

template <typename T>
inline constexpr MATRIX_BASE<T> MATRIX_BASE<T>::IDENTITY{};

extern template class MATRIX_BASE<float>;
extern template class MATRIX_BASE<FIXED_POINT>;

}  // namespace KVMATH
