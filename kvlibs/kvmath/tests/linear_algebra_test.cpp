// Vectors, matrices and quaternions, for both scalars: properties, and a second library in double
// precision on random input.
#include "kvmath/matrix.h"
#include "kvmath/plane.h"
#include "kvmath/quat.h"
#include "kvmath/vector2.h"
#include "kvmath/vector3.h"
#include "kvmath/vector4.h"

#include "test_scalar.h"

#include <gtest/gtest.h>

#include <Eigen/Dense>

#include <cstdint>
#include <limits>
#include <vector>

namespace {

using namespace KVMATH;
using TEST::near;
using TEST::RANDOM;
using TEST::real;

template <typename T>
class linear_algebra : public testing::Test {
protected:
    // For results of a few operations on numbers of size 1.
    static constexpr double TOLERANCE = std::is_same_v<T, float> ? 2e-6 : 1e-6;
};
TYPED_TEST_SUITE(linear_algebra, TEST::SCALARS);

template <typename T>
Eigen::Vector3d to_eigen(const VECTOR3_BASE<T>& v) {
    return {real(v.x), real(v.y), real(v.z)};
}

template <typename T>
Eigen::Matrix4d to_eigen(const MATRIX_BASE<T>& m) {
    Eigen::Matrix4d result;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            result(i, j) = real(m.get_at(i, j));
        }
    }
    return result;
}

template <typename T>
Eigen::Quaterniond to_eigen(const QUAT_BASE<T>& q) {
    return {real(q.w), real(q.x), real(q.y), real(q.z)};
}

template <typename T>
MATRIX_BASE<T> get_random_matrix(RANDOM& random, double size) {
    MATRIX_BASE<T> result;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            result.set_at(i, j, T(random.get(-size, size)));
        }
    }
    return result;
}

template <typename T>
QUAT_BASE<T> get_random_rotation(RANDOM& random) {
    QUAT_BASE<T> result;
    result.set(random.get_direction<T>(), T(random.get(-3.1, 3.1)));
    return result;
}

// A rotation, a scale and a translation such as objects have.
template <typename T>
MATRIX_BASE<T> get_random_frame(RANDOM& random) {
    MATRIX_BASE<T> result(get_random_rotation<T>(random));
    result =
        result.pre_scale({T(random.get(0.2, 3)), T(random.get(0.2, 3)), T(random.get(0.2, 3))});
    result.set_translation(random.get_vector<T>(100.0));
    return result;
}

template <typename T>
double get_difference(const MATRIX_BASE<T>& a, const Eigen::Matrix4d& b) {
    return (to_eigen(a) - b).cwiseAbs().maxCoeff();
}

TYPED_TEST(linear_algebra, vectors_do_arithmetic) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    RANDOM random(1);
    for (int i = 0; i < 200; ++i) {
        const VECTOR a = random.get_vector<T>(10);
        const VECTOR b = random.get_vector<T>(10);
        const Eigen::Vector3d ea = to_eigen(a);
        const Eigen::Vector3d eb = to_eigen(b);
        EXPECT_NEAR(real(a.dot(b)), ea.dot(eb), 2e-5);
        EXPECT_LT((to_eigen(a.cross(b)) - ea.cross(eb)).norm(), 3e-5);
        EXPECT_NEAR(real(a.magnitude()), ea.norm(), 2e-6);
        EXPECT_NEAR(real(a.distance_sq(b)), (ea - eb).squaredNorm(), 1e-4);
        EXPECT_LT((to_eigen(a.normal()) - ea.normalized()).norm(), 1e-6);
        EXPECT_LT((to_eigen(a.project(b)) - eb * (ea.dot(eb) / eb.squaredNorm())).norm(), 1e-5);
        EXPECT_LT((to_eigen(a.scale(b)) - ea.cwiseProduct(eb)).norm(), 2e-5);
        EXPECT_LT((to_eigen(a.interpolate(b, T(0.25))) - (0.75 * ea + 0.25 * eb)).norm(), 1e-5);
        EXPECT_LT((to_eigen(a.abs()) - ea.cwiseAbs()).norm(), 1e-12);
        const VECTOR n = VECTOR::normal(a, b, VECTOR::ZERO);
        EXPECT_NEAR(real(n.dot(a - b)), 0.0, 3e-5);
        EXPECT_GT(real((b - a).cross(-a).dot(n)), 0.0);
        EXPECT_EQ(a.interpolate(b, T(0)), a);
        EXPECT_EQ(-(a - b), b - a);
        VECTOR c = a;
        c += b;
        c -= b;
        c *= T(4);
        c /= T(4);
        EXPECT_TRUE(near(c, a, 1e-5));
    }
}

TYPED_TEST(linear_algebra, vectors_of_length_zero_stay_as_they_are) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    EXPECT_EQ(VECTOR().normal(), VECTOR::ZERO);
    EXPECT_EQ(BASEVECTOR2<T>().normal(), BASEVECTOR2<T>());
    EXPECT_EQ(BASEVECTOR4<T>().normal(), BASEVECTOR4<T>::ZERO);
    EXPECT_EQ(VECTOR::XAXIS.project(VECTOR::ZERO), VECTOR::ZERO);
    EXPECT_EQ(VECTOR::normal(VECTOR::ZERO, VECTOR::ONE, VECTOR::ONE * T(2)), VECTOR::ZERO);
    const QUAT_BASE<T> none(T(0), T(0), T(0), T(0));
    EXPECT_EQ(none.normal(), none);
}

TYPED_TEST(linear_algebra, components_by_number_and_tolerance) {
    using T = TypeParam;
    BASEVECTOR2<T> v2;
    VECTOR3_BASE<T> v3;
    BASEVECTOR4<T> v4;
    for (int i = -1; i < 5; ++i) {
        v2.set(i, T(i + 1));
        v3.set(i, T(i + 1));
        v4.set(i, T(i + 1));
    }
    EXPECT_EQ(v2, BASEVECTOR2<T>(T(1), T(2)));
    EXPECT_EQ(v3, VECTOR3_BASE<T>(T(1), T(2), T(3)));
    EXPECT_EQ(v4, BASEVECTOR4<T>(T(1), T(2), T(3), T(4)));
    EXPECT_EQ(v4[2], T(3));
    EXPECT_NEAR(real(v4.magnitude()), std::sqrt(30.0), 1e-6);
    EXPECT_NEAR(real(v2.distance_sq({T(-2), T(6)})), 25.0, 1e-6);
    for (int i = 0; i < 3; ++i) {
        VECTOR3_BASE<T> other = v3;
        other[i] += T(0.25);
        EXPECT_TRUE(v3.almost_equal(other, T(0.25)));
        EXPECT_FALSE(v3.almost_equal(other, T(0.125)));
        EXPECT_FALSE(other.almost_equal(v3, T(0.125)));
    }
    // Vectors of whole numbers serve as grid indices.
    const VECTOR3_BASE<std::int32_t> cells(VECTOR3_BASE<T>(T(2.75), T(3), T(4)));
    EXPECT_EQ(cells.y * cells.z, 12);
}

TYPED_TEST(linear_algebra, matrices_against_a_second_library) {
    using T = TypeParam;
    RANDOM random(2);
    for (int i = 0; i < 300; ++i) {
        const MATRIX_BASE<T> a = get_random_matrix<T>(random, 2);
        const MATRIX_BASE<T> b = get_random_matrix<T>(random, 2);
        const Eigen::Matrix4d ea = to_eigen(a);
        EXPECT_LT(get_difference(a * b, ea * to_eigen(b)), 5e-6);
        EXPECT_LT(get_difference(a.transpose(), ea.transpose()), 1e-12);
        EXPECT_NEAR(real(a.determinant()), ea.determinant(), 5e-5);
        if (std::abs(ea.determinant()) > 0.5) {
            EXPECT_LT(get_difference(a.cofactors(), ea.inverse().transpose() * ea.determinant()),
                      2e-5);
            const Eigen::Matrix4d inverse = ea.inverse();
            EXPECT_LT(get_difference(a.inverse(), inverse),
                      2e-6 * (1 + inverse.norm()) * (1 + inverse.norm()));
        }
        const VECTOR3_BASE<T> p = random.get_vector<T>(10);
        const Eigen::RowVector4d ep(real(p.x), real(p.y), real(p.z), 1.0);
        const BASEVECTOR4<T> transformed = a.transform(BASEVECTOR4<T>(p, T(1)));
        const Eigen::RowVector4d expected = ep * ea;
        for (int k = 0; k < 4; ++k) {
            EXPECT_NEAR(real(transformed[k]), expected(k), 2e-5);
        }
        if (std::abs(expected(3)) > 1.0) {
            EXPECT_LT(
                (to_eigen(a.transform_coord(p)) - Eigen::Vector3d(expected.head<3>() / expected(3)))
                    .norm(),
                1e-4);
        }
        EXPECT_LT((to_eigen(a.transform(p)) - Eigen::Vector3d(expected.head<3>())).norm(), 4e-5);
        EXPECT_LT((to_eigen(a.transform_normal(p)) -
                   Eigen::Vector3d((expected - ea.row(3)).template head<3>()))
                      .norm(),
                  4e-5);
        const MATRIX_BASE<T> middle = a.interpolate(b, T(0.5));
        EXPECT_LT(get_difference(middle, 0.5 * (ea + to_eigen(b))), 1e-6);
    }
}

TYPED_TEST(linear_algebra, a_matrix_times_its_inverse_is_one) {
    using T = TypeParam;
    RANDOM random(3);
    for (int i = 0; i < 300; ++i) {
        const MATRIX_BASE<T> frame = get_random_frame<T>(random);
        EXPECT_TRUE((frame * frame.inverse()).equal(MATRIX_BASE<T>::IDENTITY, T(2e-4)));
        EXPECT_TRUE((frame.inverse() * frame).equal(MATRIX_BASE<T>::IDENTITY, T(2e-4)));
    }
    // A small scale, where a determinant in fixed point would have three digits left.
    MATRIX_BASE<T> small = MATRIX_BASE<T>::get_scale_matrix({T(0.01), T(0.01), T(0.01)});
    small.set_translation({T(50), T(-20), T(3)});
    EXPECT_TRUE((small * small.inverse()).equal(MATRIX_BASE<T>::IDENTITY, T(2e-3)));

    const BASEVECTOR4<T> row(T(1), T(2), T(3), T(4));
    const MATRIX_BASE<T> singular(row, row, row, row);
    EXPECT_EQ(singular.inverse().get_row(0), BASEVECTOR4<T>::ZERO);
    EXPECT_EQ(singular.inverse().get_row(3), BASEVECTOR4<T>::ZERO);
    EXPECT_EQ(real(singular.determinant()), 0.0);
}

TYPED_TEST(linear_algebra, rows_columns_and_frames) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    MATRIX_BASE<T> m;
    for (int i = 0; i < 16; ++i) {
        m.set_at(i / 4, i % 4, T(i));
        EXPECT_EQ(m.get_data()[i], T(i));
    }
    EXPECT_EQ(m.get_row(1), BASEVECTOR4<T>(T(4), T(5), T(6), T(7)));
    EXPECT_EQ(m.get_column(2), BASEVECTOR4<T>(T(2), T(6), T(10), T(14)));
    EXPECT_EQ(m.get_up(), VECTOR(T(4), T(5), T(6)));
    m.set_column(3, {T(0), T(0), T(0), T(1)});
    m.set_row(2, {T(9), T(8), T(7), T(6)});
    m.set_right(VECTOR::ONE);
    m.set_up(VECTOR::YAXIS);
    m.set_translation(VECTOR::ZAXIS);
    EXPECT_EQ(m, MATRIX_BASE<T>({T(1), T(1), T(1), T(0)}, {T(0), T(1), T(0), T(0)},
                                {T(9), T(8), T(7), T(6)}, {T(0), T(0), T(1), T(1)}));
    // A scale after the transform and one before it.
    const VECTOR factors(T(2), T(3), T(4));
    const MATRIX_BASE<T> scale = MATRIX_BASE<T>::get_scale_matrix(factors);
    EXPECT_EQ(m.scale(factors), m * scale);
    EXPECT_EQ(m.pre_scale(factors), scale * m);
    EXPECT_TRUE(m.equal(m.interpolate(scale, T(0))));
    MATRIX_BASE<T> other = m;
    other.set_at(3, 3, T(1.5));
    EXPECT_TRUE(m.equal(other, T(0.5)));
    EXPECT_FALSE(m.equal(other, T(0.25)));
}

TYPED_TEST(linear_algebra, rotations_by_angles) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    RANDOM random(4);
    for (int i = 0; i < 200; ++i) {
        const T pitch = T(random.get(-1.5, 1.5));
        const T yaw = T(random.get(-3.1, 3.1));
        const T roll = T(random.get(-3.1, 3.1));
        MATRIX_BASE<T> about_x, about_y, about_z, all;
        about_x.set_rotation_x(pitch);
        about_y.set_rotation_y(yaw);
        about_z.set_rotation_z(roll);
        all.set_rotation(pitch, yaw, roll);
        EXPECT_TRUE(all.equal(about_z * about_x * about_y, T(this->TOLERANCE)));
        EXPECT_TRUE((all * all.transpose()).equal(MATRIX_BASE<T>(), T(this->TOLERANCE)));
        EXPECT_NEAR(real(all.determinant()), 1.0, 3e-6);

        QUAT_BASE<T> q;
        q.set(yaw, pitch, roll);
        EXPECT_TRUE(MATRIX_BASE<T>(q).equal(all, T(this->TOLERANCE)));
        T yaw2{}, pitch2{}, roll2{};
        q.get_euler(yaw2, pitch2, roll2);
        EXPECT_NEAR(real(yaw2), real(yaw), 2e-5);
        EXPECT_NEAR(real(pitch2), real(pitch), 2e-5);
        EXPECT_NEAR(real(roll2), real(roll), 2e-5);

        // About an axis: the rotation of a third library's own formula.
        const VECTOR axis = random.get_direction<T>();
        MATRIX_BASE<T> about_axis;
        about_axis.set_translation(VECTOR::ONE);
        about_axis.set_rotation(axis * T(5), yaw, true);
        const Eigen::Matrix3d expected =
            Eigen::AngleAxisd(real(yaw), to_eigen(axis).normalized()).toRotationMatrix();
        EXPECT_LT((to_eigen(about_axis).template block<3, 3>(0, 0) - expected.transpose()).norm(),
                  5e-6);
        EXPECT_EQ(about_axis.get_translation(), VECTOR::ONE);
        about_axis.set_rotation(axis, yaw, false);
        EXPECT_LT((to_eigen(about_axis).template block<3, 3>(0, 0) - expected.transpose()).norm(),
                  5e-6);
    }
    MATRIX_BASE<T> none;
    none.set_rotation(VECTOR::ZERO, T(1), true);
    EXPECT_EQ(none, MATRIX_BASE<T>::IDENTITY);
}

TYPED_TEST(linear_algebra, looking_up_and_down_leaves_roll_to_yaw) {
    using T = TypeParam;
    RANDOM random(11);
    for (const double off : {0.0, 1.5e-6, 1e-5, 1e-4, 1e-2}) {
        for (int i = 0; i < 50; ++i) {
            const double pitch = i % 2 == 0 ? 1.57079633 - off : off - 1.57079633;
            QUAT_BASE<T> q;
            q.set(T(random.get(-3, 3)), T(pitch), T(random.get(-3, 3)));
            T yaw{}, pitch2{}, roll{};
            q.get_euler(yaw, pitch2, roll);
            QUAT_BASE<T> again;
            again.set(yaw, pitch2, roll);
            // Near there yaw and roll are rough, but together they are the same turn.
            EXPECT_TRUE(MATRIX_BASE<T>(again).equal(MATRIX_BASE<T>(q), T(5e-6))) << off;
        }
    }
}

TYPED_TEST(linear_algebra, quaternions_against_a_second_library) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    RANDOM random(5);
    for (int i = 0; i < 300; ++i) {
        const QUAT_BASE<T> a = get_random_rotation<T>(random);
        const QUAT_BASE<T> b = get_random_rotation<T>(random);
        const QUAT_BASE<T> product = a * b;
        EXPECT_LT((to_eigen(product).coeffs() - (to_eigen(a) * to_eigen(b)).coeffs()).norm(), 1e-6);
        QUAT_BASE<T> in_place = a;
        in_place *= b;
        EXPECT_EQ(in_place, product);
        const VECTOR v = random.get_vector<T>(10);
        EXPECT_TRUE(near(product.rotate(v), a.rotate(b.rotate(v)), 3e-5));
        EXPECT_NEAR(real(a.rotate(v).magnitude()), real(v.magnitude()), 1e-5);
        EXPECT_TRUE(near(a.conjugate().rotate(a.rotate(v)), v, 3e-5));
        EXPECT_TRUE(near(MATRIX_BASE<T>(a).transform_normal(v), a.rotate(v), 3e-5));
        EXPECT_TRUE(MATRIX_BASE<T>(product).equal(MATRIX_BASE<T>(b) * MATRIX_BASE<T>(a), T(3e-6)));
        EXPECT_TRUE(a.is_normalised(QUAT_BASE<T>::QUAT_EPSILON_SQ));
        EXPECT_FALSE(
            QUAT_BASE<T>(a.x * T(1.01), a.y, a.z * T(1.01), a.w * T(1.01)).is_normalised(T(1e-6)) &&
            real(a.y) < 0.9);

        // From a matrix back to the same rotation, and from axis and angle.
        const QUAT_BASE<T> again{MATRIX_BASE<T>(a)};
        EXPECT_NEAR(std::abs(real(again.dot(a))), 1.0, 3e-6);
        EXPECT_TRUE(MATRIX_BASE<T>(again).equal(MATRIX_BASE<T>(a), T(5e-6)));
        VECTOR axis;
        T angle{};
        product.get_axis_angle(axis, angle);
        EXPECT_NEAR(real(axis.magnitude()), 1.0, 1e-6);
        EXPECT_LE(real(angle), 3.1416);
        QUAT_BASE<T> turned;
        turned.set(axis, angle);
        EXPECT_NEAR(std::abs(real(turned.dot(product))), 1.0, 3e-6);
    }
    VECTOR axis;
    T angle(1);
    QUAT_BASE<T>().get_axis_angle(axis, angle);
    EXPECT_EQ(axis, VECTOR::XAXIS);
    EXPECT_EQ(angle, T(0));
    QUAT_BASE<T> none;
    none.set(VECTOR::ZERO, T(2));
    EXPECT_EQ(none, QUAT_BASE<T>::IDENTITY);
    // Half turns, where a matrix has no skew part to tell the axis.
    for (const VECTOR& half :
         {VECTOR(VECTOR::XAXIS), VECTOR(VECTOR::YAXIS), VECTOR(VECTOR::ZAXIS)}) {
        const QUAT_BASE<T> q(half.x, half.y, half.z, T(0));
        EXPECT_TRUE(QUAT_BASE<T>(MATRIX_BASE<T>(q)).almost_equal(q, T(1e-6)));
    }
}

TYPED_TEST(linear_algebra, slerp_ends_at_its_ends_and_keeps_an_even_rate) {
    using T = TypeParam;
    RANDOM random(6);
    for (int i = 0; i < 300; ++i) {
        const QUAT_BASE<T> a = get_random_rotation<T>(random);
        const QUAT_BASE<T> b = get_random_rotation<T>(random);
        const bool opposite = a.dot(b) < T(0);
        EXPECT_EQ(QUAT_BASE<T>::slerp(a, b, T(0)), a);
        EXPECT_EQ(QUAT_BASE<T>::slerp(a, b, T(1)), opposite ? -b : b);
        EXPECT_TRUE(QUAT_BASE<T>::interpolate(a, b, T(0)).almost_equal(a, T(1e-6)));
        const T t = T(random.get(0, 1));
        const QUAT_BASE<T> between = QUAT_BASE<T>::slerp(a, b, t);
        const Eigen::Quaterniond expected = to_eigen(a).slerp(real(t), to_eigen(b));
        EXPECT_LT((to_eigen(between).coeffs() - expected.coeffs()).norm(), 2e-5);
        const QUAT_BASE<T> straight = QUAT_BASE<T>::interpolate(a, b, t);
        EXPECT_TRUE(straight.is_normalised(T(1e-5)));
        EXPECT_GE(real(straight.dot(a)), -1e-6);
    }
    // Beyond the ends the turn goes on at the same rate.
    QUAT_BASE<T> turned;
    turned.set(VECTOR3_BASE<T>::YAXIS, T(0.5));
    QUAT_BASE<T> twice;
    twice.set(VECTOR3_BASE<T>::YAXIS, T(1));
    EXPECT_TRUE(QUAT_BASE<T>::slerp(QUAT_BASE<T>(), turned, T(2)).almost_equal(twice, T(1e-6)));
    EXPECT_TRUE(QUAT_BASE<T>::slerp(QUAT_BASE<T>(), turned, T(-2))
                    .almost_equal(twice.conjugate(), T(1e-6)));
    // Nearly equal rotations go in a straight line, with the same sign rule.
    const QUAT_BASE<T> a;
    QUAT_BASE<T> b;
    b.set(VECTOR3_BASE<T>::YAXIS, T(1e-4));
    const QUAT_BASE<T> half = QUAT_BASE<T>::slerp(a, -b, T(0.5));
    EXPECT_NEAR(real(half.y), 2.5e-5, 1e-7);
    EXPECT_NEAR(real(half.w), 1.0, 1e-6);
}

TYPED_TEST(linear_algebra, looking_makes_a_left_handed_frame) {
    using T = TypeParam;
    using VECTOR = VECTOR3_BASE<T>;
    RANDOM random(7);
    const auto expect_frame = [](const MATRIX_BASE<T>& m, const VECTOR& forward) {
        EXPECT_TRUE(near(m.get_forward(), forward, 1e-6));
        EXPECT_TRUE(near(m.get_up().cross(m.get_forward()), m.get_right(), 2e-6));
        EXPECT_NEAR(real(m.get_right().dot(m.get_forward())), 0.0, 1e-6);
        EXPECT_NEAR(real(m.determinant()), 1.0, 3e-6);
        EXPECT_EQ(m.get_column(3), BASEVECTOR4<T>(T(0), T(0), T(0), T(1)));
    };
    for (int i = 0; i < 200; ++i) {
        const VECTOR position = random.get_vector<T>(50);
        const VECTOR forward = random.get_direction<T>();
        const VECTOR up = random.get_direction<T>();
        const MATRIX_BASE<T> m = MATRIX_BASE<T>::look_at(position, forward * T(7), up);
        expect_frame(m, forward);
        EXPECT_GE(real(m.get_up().dot(up)), 0.0);
        EXPECT_EQ(m.get_translation(), position);
        EXPECT_TRUE(near(m.inverse().transform(position + forward), VECTOR(VECTOR::ZAXIS), 3e-5));
        expect_frame(m.pre_scale({T(2), T(3), T(0.5)}).orthogonalise(), forward);
        // A level view has the x axis or its mirror at a right angle; a roll turns right to up.
        const MATRIX_BASE<T> level = MATRIX_BASE<T>::look_dir(forward, VECTOR(VECTOR::YAXIS));
        EXPECT_NEAR(real(level.get_right().y), 0.0, 1e-6);
        const T roll = T(random.get(-3, 3));
        const MATRIX_BASE<T> rolled = MATRIX_BASE<T>::look_dir(forward, roll);
        expect_frame(rolled, forward);
        MATRIX_BASE<T> about_view;
        about_view.set_rotation(forward, roll, false);
        EXPECT_TRUE(near(about_view.transform_normal(level.get_right()), rolled.get_right(), 5e-6));
    }
    // An up nearly along forward still gives axes at right angles.
    for (const double off : {1.5e-6, 1e-5, 1e-4, 1e-2}) {
        for (int i = 0; i < 50; ++i) {
            const VECTOR forward = random.get_direction<T>();
            expect_frame(MATRIX_BASE<T>::look_dir(forward, forward + random.get_vector<T>(off)),
                         forward);
        }
    }
    // Straight down and nowhere.
    expect_frame(MATRIX_BASE<T>::look_dir(-VECTOR::YAXIS, VECTOR(VECTOR::YAXIS)), -VECTOR::YAXIS);
    expect_frame(MATRIX_BASE<T>::look_dir(VECTOR(VECTOR::XAXIS), VECTOR(VECTOR::XAXIS)),
                 VECTOR::XAXIS);
    expect_frame(MATRIX_BASE<T>::look_dir(VECTOR(VECTOR::ZERO), T(0)), VECTOR::ZAXIS);
    EXPECT_TRUE(MATRIX_BASE<T>::look_dir(VECTOR(VECTOR::ZAXIS), T(0))
                    .equal(MATRIX_BASE<T>::IDENTITY, T(1e-7)));
}

TYPED_TEST(linear_algebra, a_reflection_mirrors_and_undoes_itself) {
    using T = TypeParam;
    RANDOM random(8);
    for (int i = 0; i < 100; ++i) {
        const PLANE_BASE<T> plane(random.get_vector<T>(10), random.get_direction<T>());
        const PLANE_BASE<T> longer(plane.a * T(2), plane.b * T(2), plane.c * T(2), plane.d * T(2));
        const MATRIX_BASE<T> mirror = MATRIX_BASE<T>::get_reflection(plane);
        EXPECT_TRUE(mirror.equal(MATRIX_BASE<T>::get_reflection(longer), T(1e-5)));
        EXPECT_TRUE((mirror * mirror).equal(MATRIX_BASE<T>::IDENTITY, T(3e-5)));
        EXPECT_NEAR(real(mirror.determinant()), -1.0, 1e-5);
        const VECTOR3_BASE<T> point = random.get_vector<T>(10);
        EXPECT_NEAR(real(plane * mirror.transform(point)), -real(plane * point), 5e-5);
        EXPECT_TRUE(near(mirror.transform(plane.project(point)), plane.project(point), 5e-5));
    }
    EXPECT_EQ(MATRIX_BASE<T>::get_reflection(PLANE_BASE<T>()), MATRIX_BASE<T>::IDENTITY);
}

TYPED_TEST(linear_algebra, many_points_as_one_by_one) {
    using T = TypeParam;
    RANDOM random(9);
    const MATRIX_BASE<T> frame = get_random_frame<T>(random);
    for (std::size_t count = 0; count < 12; ++count) {
        std::vector<VECTOR3_BASE<T>> points(count + 1);
        for (VECTOR3_BASE<T>& point : points) {
            point = random.get_vector<T>(10);
        }
        std::vector<VECTOR3_BASE<T>> results(count + 1);
        frame.transform(points.data(), results.data(), count);
        EXPECT_EQ(results[count], VECTOR3_BASE<T>::ZERO);
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_TRUE(near(results[i], frame.transform(points[i]), 3e-5)) << i << " of " << count;
        }
        frame.transform(points.data(), points.data(), count);
        points.pop_back();
        results.pop_back();
        EXPECT_EQ(points, results);
    }
}

TYPED_TEST(linear_algebra, converts_to_the_other_scalar) {
    using T = TypeParam;
    RANDOM random(10);
    const MATRIX_BASE<T> frame = get_random_frame<T>(random);
    const MATRIX_BASE<float> as_float(frame);
    const MATRIX_BASE<FIXED_POINT> as_fixed(frame);
    EXPECT_LT(get_difference(as_float, to_eigen(frame)), 1e-5);
    EXPECT_LT(get_difference(as_fixed, to_eigen(frame)), 1e-5);
    EXPECT_EQ(VECTOR3(VECTOR3_BASE<FIXED_POINT>(VECTOR3(0.5f, -2, 3))), VECTOR3(0.5f, -2, 3));
}

TEST(fixed_point_algebra, huge_values_saturate) {
    const FIXED_POINT huge = SCALAR<FIXED_POINT>::LARGEST;
    const VECTOR3_BASE<FIXED_POINT> v(huge, huge, huge);
    EXPECT_EQ(v.magnitude_sq(), huge);
    EXPECT_EQ(v.magnitude(), huge);
    EXPECT_EQ((v + v), v);
    MATRIX_BASE<FIXED_POINT> m = MATRIX_BASE<FIXED_POINT>::get_scale_matrix(v);
    m.set_translation(v);
    EXPECT_EQ((m * m).get_at(0, 0), huge);
    EXPECT_GE(m.inverse().get_at(3, 3), 1);
}

}  // namespace
