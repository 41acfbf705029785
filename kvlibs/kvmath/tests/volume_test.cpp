// Boxes, spheres, capsules, frustums and projections, for both scalars, against brute-force
// sampling and by properties.
#include "kvmath/aabb.h"
#include "kvmath/capsule.h"
#include "kvmath/frustum.h"
#include "kvmath/line.h"
#include "kvmath/matrix.h"
#include "kvmath/projection.h"
#include "kvmath/quad.h"
#include "kvmath/sphere.h"
#include "kvmath/triangle.h"

#include "test_scalar.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace KVMATH;
using TEST::near;
using TEST::RANDOM;
using TEST::real;
using TEST::vec;

template <typename T>
class volumes : public testing::Test {};
TYPED_TEST_SUITE(volumes, TEST::SCALARS);

template <typename T>
AABB_BASE<T> get_random_box(RANDOM& random, double size) {
    AABB_BASE<T> box;
    box.invalidate();
    box += random.get_vector<T>(size);
    return box += random.get_vector<T>(size);
}

TYPED_TEST(volumes, boxes_grow_and_tell_what_they_hold) {
    using T = TypeParam;
    RANDOM random(1);
    for (int i = 0; i < 200; ++i) {
        const AABB_BASE<T> a = get_random_box<T>(random, 5);
        const AABB_BASE<T> b = get_random_box<T>(random, 5);
        const AABB_BASE<T> both = a + b;
        bool shared = false;
        for (int k = 0; k < 100; ++k) {
            const VECTOR3_BASE<T> p = random.get_vector<T>(5);
            const bool in_a = (p.x >= a.get_min().x && p.x <= a.get_max().x) &&
                              (p.y >= a.get_min().y && p.y <= a.get_max().y) &&
                              (p.z >= a.get_min().z && p.z <= a.get_max().z);
            EXPECT_EQ(a.contains_point(p), in_a);
            shared = shared || (in_a && b.contains_point(p));
            EXPECT_TRUE(!(in_a || b.contains_point(p)) || both.contains_point(p));
            // Nearest: in the box, and no nearer than any corner is far.
            const VECTOR3_BASE<T> nearest = a.get_closest_point_to(p);
            EXPECT_TRUE(a.contains_point(nearest));
            EXPECT_EQ(nearest == p, in_a);
            const VECTOR3_BASE<T> inside =
                a.get_min() + a.get_dimensions().scale(
                                  {T(random.get(0, 1)), T(random.get(0, 1)), T(random.get(0, 1))});
            EXPECT_LE(real((nearest - p).magnitude()), real((inside - p).magnitude()) + 1e-5);
            const double gap = real((nearest - p).magnitude());
            EXPECT_TRUE(a.intersect_sphere({p, T(gap + 1e-3)}));
            EXPECT_FALSE(gap > 1e-3 && a.intersect_sphere({p, T(gap - 1e-3)}));
        }
        EXPECT_TRUE(!shared || a.overlapping(b));
        EXPECT_EQ(a.overlapping(b), b.overlapping(a));
        // Apart along some axis if and only if they don't overlap.
        const VECTOR3_BASE<T> gap_ab = b.get_min() - a.get_max();
        const VECTOR3_BASE<T> gap_ba = a.get_min() - b.get_max();
        EXPECT_EQ(a.overlapping(b),
                  std::max({gap_ab.x, gap_ab.y, gap_ab.z, gap_ba.x, gap_ba.y, gap_ba.z}) <= T(0));
    }
}

TYPED_TEST(volumes, the_empty_box_is_nothing_to_everything) {
    using T = TypeParam;
    AABB_BASE<T> empty;
    EXPECT_FALSE(empty.is_empty());
    EXPECT_TRUE(empty.contains_point(VECTOR3_BASE<T>()));
    empty.invalidate();
    const AABB_BASE<T> box(vec<T>(-1, -2, -3), vec<T>(1, 2, 3));
    EXPECT_TRUE(empty.is_empty());
    EXPECT_EQ(empty.get_dimensions(), VECTOR3_BASE<T>());
    EXPECT_EQ(empty.get_mid(), VECTOR3_BASE<T>());
    EXPECT_EQ(empty.get_closest_point_to(vec<T>(1, 2, 3)), vec<T>(1, 2, 3));
    EXPECT_FALSE(empty.contains_point(VECTOR3_BASE<T>()));
    EXPECT_FALSE(empty.overlapping(box));
    EXPECT_FALSE(box.overlapping(empty));
    EXPECT_FALSE(empty.intersect_sphere({VECTOR3_BASE<T>(), T(100)}));
    EXPECT_EQ(box + empty, box);
    EXPECT_EQ(empty + box, box);
    EXPECT_TRUE((empty * MATRIX_BASE<T>::get_scale_matrix(vec<T>(-1, -1, -1))).is_empty());
    EXPECT_EQ((empty + vec<T>(1, 2, 3)).get_mid(), vec<T>(1, 2, 3));
    // Touching is overlapping.
    EXPECT_TRUE(box.overlapping({vec<T>(1, 2, 3), vec<T>(2, 3, 4)}));
}

TYPED_TEST(volumes, corners_sides_and_transforms_of_a_box) {
    using T = TypeParam;
    RANDOM random(2);
    for (int i = 0; i < 50; ++i) {
        const AABB_BASE<T> box = get_random_box<T>(random, 5);
        MATRIX_BASE<T> m;
        m.set_rotation(T(random.get(-3, 3)), T(random.get(-3, 3)), T(random.get(-3, 3)));
        m = m.pre_scale(random.get_vector<T>(2));
        m.set_translation(random.get_vector<T>(5));
        AABB_BASE<T> expected;
        expected.invalidate();
        for (int k = 0; k < 8; ++k) {
            expected += m.transform(box.get_vertex(k));
        }
        EXPECT_TRUE(near((box * m).get_min(), expected.get_min(), 3e-5));
        EXPECT_TRUE(near((box * m).get_max(), expected.get_max(), 3e-5));
    }
    AABB_BASE<T> box;
    box.set_min(vec<T>(-1, -2, -3));
    box.set_max(vec<T>(2, 4, 6));
    EXPECT_EQ(box.get_mid(), vec<T>(0.5, 1, 1.5));
    EXPECT_EQ(box.get_dimensions(), vec<T>(3, 6, 9));
    const double areas[] = {54, 54, 27, 27, 18, 18};
    for (int side = 0; side < 6; ++side) {
        const QUAD_BASE<T> quad = box.get_quad(side);
        const VECTOR3_BASE<T> outwards = quad.get_normal();
        EXPECT_EQ(outwards[side / 2], side % 2 == 0 ? T(-1) : T(1));
        EXPECT_EQ(quad.get_centre()[side / 2],
                  side % 2 == 0 ? box.get_min()[side / 2] : box.get_max()[side / 2]);
        EXPECT_NEAR(real(quad.get_triangle(0).get_area() + quad.get_triangle(1).get_area()),
                    areas[side], 1e-4);
    }
}

TYPED_TEST(volumes, a_capsule_meets_a_plane) {
    using T = TypeParam;
    const PLANE_BASE<T> ground(T(0), T(1), T(0), T(0));
    VECTOR3_BASE<T> point = vec<T>(9, 9, 9);
    VECTOR3_BASE<T> normal = point;
    const auto hit = [&](double y0, double y1) {
        return CAPSULE<T>(vec<T>(0, y0, 0), vec<T>(0, y1, 0), T(0.5))
            .intersect(ground, point, normal);
    };
    EXPECT_EQ(hit(2, 1), -1);    // above
    EXPECT_EQ(hit(-2, -1), -1);  // below
    EXPECT_EQ(hit(2, -1), -1);   // both ends too far, on both sides
    EXPECT_EQ(point, vec<T>(9, 9, 9));
    // A path of length 1: the sphere touches the ground half a unit above it.
    EXPECT_EQ(hit(1.25, 0.25), 0);
    EXPECT_TRUE(near(point, vec<T>(0, 0.5, 0), 1e-6));
    EXPECT_EQ(normal, ground.get_normal());
    EXPECT_EQ(hit(0.75, -0.25), 0);
    EXPECT_TRUE(near(point, vec<T>(0, 0.5, 0), 1e-6));
    EXPECT_EQ(hit(-0.75, 0.25), 0);
    EXPECT_TRUE(near(point, vec<T>(0, -0.5, 0), 1e-6));
    // The fraction of the path counts in units, whatever its length.
    EXPECT_EQ(hit(2.25, 0.25), 0);
    EXPECT_TRUE(near(point, vec<T>(0, 1.375, 0), 1e-6));
    // Along the ground, and no path at all: it touches where it starts.
    EXPECT_EQ(
        CAPSULE<T>(vec<T>(1, 0.25, 0), vec<T>(5, 0.25, 0), T(0.5)).intersect(ground, point, normal),
        0);
    EXPECT_EQ(point, vec<T>(1, 0.25, 0));
    EXPECT_EQ(hit(0, 0), 0);
    EXPECT_EQ(point, vec<T>(0, 0, 0));
    EXPECT_EQ(CAPSULE<T>().intersect(PLANE_BASE<T>(), point, normal), -1);
}

TYPED_TEST(volumes, a_capsule_meets_a_triangle_or_a_quad) {
    using T = TypeParam;
    // A square of the ground and its first half, clockwise from above.
    const QUAD_BASE<T> quad(vec<T>(-1, 0, -1), vec<T>(-1, 0, 1), vec<T>(1, 0, 1), vec<T>(1, 0, -1));
    const BASE_TRIANGLE<T> triangle = quad.get_triangle(0);
    RANDOM random(3);
    int inside = 0;
    int beside = 0;
    for (int i = 0; i < 2000; ++i) {
        // Falls of a unit at a place, partly beyond the edges.
        const double x = random.get(-2, 2);
        const double z = random.get(-2, 2);
        const double y = random.get(-0.5, 2.5);
        const double radius = 0.4;
        const CAPSULE<T> capsule(vec<T>(x, y, z), vec<T>(x, y - 1, z), T(radius));
        const auto check = [&](const auto& shape, bool over_shape) {
            VECTOR3_BASE<T> point;
            VECTOR3_BASE<T> normal;
            const int result = capsule.intersect(shape, point, normal);
            const VECTOR3_BASE<T> foot = vec<T>(x, 0, z);
            const VECTOR3_BASE<T> nearest = shape.get_closest_point(foot);
            const double gap = real((foot - nearest).magnitude());
            const bool reaches = !(y - 1 >= radius || y <= -radius);
            if (std::abs(gap - radius) < 1e-3 || (gap > 0 && gap < 1e-3)) {
                return;
            }
            EXPECT_EQ(result, reaches && gap < radius ? 0 : -1) << x << " " << y << " " << z;
            if (result != 0) {
                return;
            }
            if (over_shape) {
                ++inside;
                EXPECT_TRUE(near(point, foot, 1e-5));
                EXPECT_TRUE(near(normal, VECTOR3_BASE<T>(VECTOR3_BASE<T>::YAXIS), 1e-5));
            } else {
                ++beside;
                EXPECT_TRUE(near(point, nearest, 1e-5));
                EXPECT_NEAR(real(normal.magnitude()), 1.0, 1e-5);
                const LINE_BASE<T> axis(capsule.get_start_point(), capsule.get_end_point());
                EXPECT_TRUE(near(normal, (axis.get_closest_point(point) - point).normal(), 1e-5));
            }
        };
        check(quad, std::abs(x) <= 1 && std::abs(z) <= 1);
        check(triangle, std::abs(x) <= 1 && std::abs(z) <= 1 && z >= x);
    }
    EXPECT_GT(inside, 200);
    EXPECT_GT(beside, 50);

    VECTOR3_BASE<T> point = vec<T>(9, 9, 9);
    VECTOR3_BASE<T> normal;
    // A path right through is a hit, however far its ends.
    EXPECT_EQ(CAPSULE<T>(vec<T>(0, 3, 0), vec<T>(0, -3, 0), T(0.5)).intersect(quad, point, normal),
              0);
    // Shapes without an area are never hit.
    const VECTOR3_BASE<T> zero;
    const CAPSULE<T> ball(zero, zero, T(1));
    EXPECT_EQ(ball.intersect(BASE_TRIANGLE<T>(zero, zero, zero), point, normal), -1);
    EXPECT_EQ(ball.intersect(QUAD_BASE<T>(zero, zero, zero, zero), point, normal), -1);
    // A sphere at rest on the shape, and one whose axis passes the nearest point.
    EXPECT_EQ(ball.intersect(quad, point, normal), 0);
    EXPECT_EQ(normal, VECTOR3_BASE<T>(VECTOR3_BASE<T>::YAXIS));
}

TYPED_TEST(volumes, a_capsule_has_a_box_and_a_direction) {
    using T = TypeParam;
    CAPSULE<T> capsule;
    capsule.set_start_point(vec<T>(1, 5, 0));
    capsule.set_end_point(vec<T>(1, 2, 4));
    capsule.set_radius(T(0.5));
    EXPECT_EQ(capsule.get_aabb(), AABB_BASE<T>(vec<T>(0.5, 1.5, -0.5), vec<T>(1.5, 5.5, 4.5)));
    EXPECT_TRUE(near(capsule.get_direction(), vec<T>(0, -0.6, 0.8), 1e-6));
    EXPECT_EQ(CAPSULE<T>().get_direction(), VECTOR3_BASE<T>());
    EXPECT_EQ(capsule.get_radius(), T(0.5));
}

template <typename T>
MATRIX_BASE<T> get_random_view(RANDOM& random) {
    return MATRIX_BASE<T>::look_at(random.get_vector<T>(30), random.get_direction<T>(),
                                   T(random.get(-1, 1)));
}

TYPED_TEST(volumes, a_projection_maps_its_planes_to_the_clip_range) {
    using T = TypeParam;
    const auto depth = [](const auto& projection, double z) {
        return real(projection.matrix.transform_coord(vec<T>(0, 0, z)).z);
    };
    const auto check_perspective = [&](auto projection, double lo) {
        projection.set_perspective(T(1.0), T(1.5), T(2), T(100));
        projection.resolve();
        EXPECT_NEAR(depth(projection, 2), lo, 1e-5);
        EXPECT_NEAR(depth(projection, 100), 1.0, 1e-5);
        // Half the field of view up is the top of the picture.
        const VECTOR3_BASE<T> top =
            projection.matrix.transform_coord(vec<T>(0, 10 * std::tan(0.5), 10));
        EXPECT_NEAR(real(top.y), 1.0, 1e-5);
        const VECTOR3_BASE<T> side =
            projection.matrix.transform_coord(vec<T>(-15 * std::tan(0.5), 0, 10));
        EXPECT_NEAR(real(side.x), -1.0, 1e-5);
        EXPECT_NEAR(real(projection.top), 2 * std::tan(0.5), 1e-5);
        // Off-centre edges are used as they are.
        projection.width = projection.height = T(0);
        projection.left = T(-1);
        projection.right = T(3);
        projection.bottom = T(0);
        projection.top = T(2);
        projection.resolve();
        EXPECT_TRUE(
            near(projection.matrix.transform_coord(vec<T>(-1, 0, 2)), vec<T>(-1, -1, lo), 1e-5));
        EXPECT_TRUE(
            near(projection.matrix.transform_coord(vec<T>(150, 100, 100)), vec<T>(1, 1, 1), 1e-5));
    };
    check_perspective(PROJECTION_BASE<-1, 1, T>(), -1);
    check_perspective(PROJECTION_BASE<0, 1, T>(), 0);

    const auto check_orthographic = [&](auto projection) {
        projection.width = T(200);
        projection.height = T(100);
        projection.near_plane = T(5);
        projection.far_plane = T(300);
        projection.resolve();
        EXPECT_EQ(projection.left, T(-100));
        EXPECT_EQ(projection.right, T(100));
        EXPECT_EQ(projection.top, T(50));
        EXPECT_EQ(projection.bottom, T(-50));
        EXPECT_TRUE(near(projection.matrix.transform(vec<T>(100, -50, 5)), vec<T>(1, -1, 0), 1e-5));
        EXPECT_TRUE(
            near(projection.matrix.transform(vec<T>(-50, 25, 300)), vec<T>(-0.5, 0.5, 1), 1e-5));
        projection.width = projection.height = T(0);
        projection.left = T(0);
        projection.resolve();
        EXPECT_TRUE(near(projection.matrix.transform(vec<T>(50, 0, 5)), vec<T>(0, 0, 0), 1e-5));
        // Without an extent: finite, and nothing of it.
        projection.far_plane = projection.near_plane;
        projection.left = projection.right;
        projection.resolve();
        EXPECT_EQ(projection.matrix.transform(vec<T>(50, 0, 5)), vec<T>(0, 0, 0));
    };
    check_orthographic(PROJECTION_BASE<-1, 1, T>());
    check_orthographic(PROJECTION_BASE<0, 1, T>());
}

TYPED_TEST(volumes, a_frustum_holds_what_projects_into_the_clip_cube) {
    using T = TypeParam;
    RANDOM random(4);
    for (int i = 0; i < 40; ++i) {
        const MATRIX_BASE<T> camera = get_random_view<T>(random);
        PROJECTION_BASE<-1, 1, T> projection;
        const bool perspective = i % 2 == 0;
        if (perspective) {
            projection.set_perspective(T(0.8), T(1.25), T(5), T(100));
        } else {
            projection.width = T(40);
            projection.height = T(30);
            projection.near_plane = T(5);
            projection.far_plane = T(100);
        }
        projection.resolve();
        const MATRIX_BASE<T> to_clip = camera.inverse() * projection.matrix;
        const double near_depth = perspective ? -1 : 0;
        FRUSTUM_BASE<T> frustum;
        frustum.resolve(to_clip, T(near_depth), T(1));

        // A corner of each kind where the camera puts it.
        const VECTOR3_BASE<T> far_corner =
            projection.matrix.inverse().transform_coord(vec<T>(1, 1, 1));
        EXPECT_TRUE(near(frustum.get_corner(7), camera.transform(far_corner), 0.02));

        int seen = 0;
        for (int k = 0; k < 300; ++k) {
            const VECTOR3_BASE<T> in_camera(T(random.get(-60, 60)), T(random.get(-50, 50)),
                                            T(random.get(-20, 120)));
            const VECTOR3_BASE<T> clip = projection.matrix.transform_coord(in_camera);
            const double margin = std::min({1 - std::abs(real(clip.x)), 1 - std::abs(real(clip.y)),
                                            real(in_camera.z) - 5, 100 - real(in_camera.z)});
            if (std::abs(margin) < 5e-3) {
                continue;
            }
            seen += margin > 0;
            const SPHERE_BASE<T> point(camera.transform(in_camera), T(0));
            EXPECT_EQ(frustum.is_inside(point), margin > 0) << i;
            // A sphere as large as its distance from the frustum's middle always counts.
            const SPHERE_BASE<T> large(
                point.get_centre(),
                (point.get_centre() - camera.transform(vec<T>(0, 0, 50))).magnitude());
            EXPECT_TRUE(frustum.is_inside(large));
        }
        EXPECT_GT(seen, 10);

        // The normals point inwards also after a mirror, and a point moves along.
        MATRIX_BASE<T> mirror = MATRIX_BASE<T>::get_scale_matrix(vec<T>(-1, 1, 1));
        mirror.set_translation(random.get_vector<T>(5));
        const FRUSTUM_BASE<T> mirrored = frustum.transform(mirror);
        const VECTOR3_BASE<T> ahead = camera.transform(vec<T>(0, 0, 50));
        const VECTOR3_BASE<T> behind = camera.transform(vec<T>(0, 0, -1));
        EXPECT_TRUE(mirrored.is_inside({mirror.transform(ahead), T(0)}));
        EXPECT_FALSE(mirrored.is_inside({mirror.transform(behind), T(0)}));
        EXPECT_TRUE(mirrored.is_inside({mirror.transform(behind), T(6.5)}));
        for (int side = 0; side < FRUSTUM_BASE<T>::NUM_SIDES; ++side) {
            const QUAD_BASE<T> quad = mirrored.get_plane_quad(side);
            EXPECT_NEAR(real(mirrored.get_plane(side) * quad.get_corner(2)), 0.0, 0.02);
        }
    }
}

TYPED_TEST(volumes, a_frustum_without_planes_excludes_nothing) {
    using T = TypeParam;
    FRUSTUM_BASE<T> frustum;
    EXPECT_TRUE(frustum.is_inside({vec<T>(100, 0, 0), T(0)}));
    frustum.resolve(MATRIX_BASE<T>::get_scale_matrix(vec<T>(0, 1, 1)), T(0), T(1));
    EXPECT_TRUE(frustum.is_inside({vec<T>(100, 0, 0), T(0)}));
    // A pyramid: the near side is one point.
    for (int i = 4; i < 8; ++i) {
        frustum.set_corner(i, vec<T>(i % 2 == 0 ? -1 : 1, i < 6 ? -1 : 1, 2));
    }
    frustum.build_planes();
    EXPECT_TRUE(frustum.is_inside({vec<T>(0, 0, 1), T(0)}));
    EXPECT_FALSE(frustum.is_inside({vec<T>(1, 0, 1), T(0)}));
    EXPECT_FALSE(frustum.is_inside({vec<T>(0, 0, 2.5), T(0.25)}));
}

TYPED_TEST(volumes, spheres_include_their_surface) {
    using T = TypeParam;
    SPHERE_BASE<T> sphere;
    sphere.set_centre(vec<T>(1, 2, 3));
    sphere.set_radius(T(5));
    EXPECT_TRUE(sphere.is_inside(vec<T>(4, 6, 3)));
    EXPECT_FALSE(sphere.is_inside(vec<T>(4, 6, 3.01)));
    EXPECT_EQ(sphere.get_radius_sq(), T(25));
}

}  // namespace
