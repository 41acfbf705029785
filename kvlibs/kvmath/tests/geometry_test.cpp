// Planes, lines, rays, triangles, quads, polygons and barycentric coordinates, for both scalars,
// against brute-force sampling and by properties.
#include "kvmath/aabb.h"
#include "kvmath/barycentric.h"
#include "kvmath/line.h"
#include "kvmath/matrix.h"
#include "kvmath/plane.h"
#include "kvmath/polygon.h"
#include "kvmath/quad.h"
#include "kvmath/ray.h"
#include "kvmath/rectangle.h"
#include "kvmath/sphere.h"
#include "kvmath/triangle.h"

#include "test_scalar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace KVMATH;
using TEST::near;
using TEST::RANDOM;
using TEST::real;
using TEST::vec;

template <typename T>
class geometry : public testing::Test {};
TYPED_TEST_SUITE(geometry, TEST::SCALARS);

template <typename T>
double distance(const VECTOR3_BASE<T>& a, const VECTOR3_BASE<T>& b) {
    return real((a - b).magnitude());
}

template <typename T>
BASE_TRIANGLE<T> get_random_triangle(RANDOM& random, double size) {
    return {random.get_vector<T>(size), random.get_vector<T>(size), random.get_vector<T>(size)};
}

// A parallelogram in a random plane.
template <typename T>
QUAD_BASE<T> get_random_quad(RANDOM& random, double size) {
    const VECTOR3_BASE<T> corner = random.get_vector<T>(size);
    const VECTOR3_BASE<T> a = random.get_vector<T>(size);
    const VECTOR3_BASE<T> b = random.get_vector<T>(size);
    return {corner, corner + a, corner + a + b, corner + b};
}

// The least distance from a point to a grid of points over a quad, or over half of it.
template <typename T>
double sample_distance(const VECTOR3_BASE<T>& origin, const VECTOR3_BASE<T>& a,
                       const VECTOR3_BASE<T>& b, bool triangle, const VECTOR3_BASE<T>& point) {
    constexpr int STEPS = 60;
    double least = 1e30;
    for (int i = 0; i <= STEPS; ++i) {
        for (int j = 0; j <= (triangle ? STEPS - i : STEPS); ++j) {
            const VECTOR3_BASE<T> sample =
                origin + a * T(i / double{STEPS}) + b * T(j / double{STEPS});
            least = std::min(least, distance(sample, point));
        }
    }
    return least;
}

TYPED_TEST(geometry, planes_measure_and_project) {
    using T = TypeParam;
    RANDOM random(1);
    for (int i = 0; i < 200; ++i) {
        const VECTOR3_BASE<T> p0 = random.get_vector<T>(10);
        const VECTOR3_BASE<T> normal = random.get_direction<T>();
        const PLANE_BASE<T> plane(p0, normal * T(3));
        const VECTOR3_BASE<T> point = random.get_vector<T>(10);
        EXPECT_TRUE(near(plane.get_normal(), normal, 1e-6));
        EXPECT_NEAR(real(plane * p0), 0.0, 1e-5);
        EXPECT_NEAR(real(plane * (p0 + normal * T(2.5))), 2.5, 1e-5);
        EXPECT_NEAR(real(-plane * point), -real(plane * point), 1e-6);
        const VECTOR3_BASE<T> foot = plane.project(point);
        EXPECT_NEAR(real(plane * foot), 0.0, 1e-5);
        EXPECT_NEAR(distance(foot, point), std::abs(real(plane * point)), 1e-5);

        const VECTOR3_BASE<T> p1 = random.get_vector<T>(10);
        const VECTOR3_BASE<T> p2 = random.get_vector<T>(10);
        const PLANE_BASE<T> through(p0, p1, p2);
        EXPECT_NEAR(real(through * p1), 0.0, 1e-4);
        EXPECT_NEAR(real(through * p2), 0.0, 1e-4);

        // Points keep their distance from a plane that is moved along with them.
        MATRIX_BASE<T> move;
        move.set_rotation(T(random.get(-1, 1)), T(random.get(-3, 3)), T(random.get(-3, 3)));
        move.set_translation(random.get_vector<T>(10));
        EXPECT_NEAR(real(plane * move * move.transform(point)), real(plane * point), 3e-5);
        const MATRIX_BASE<T> uneven = move.pre_scale(vec<T>(2, 0.5, 3));
        EXPECT_NEAR(real(plane * uneven * uneven.transform(foot)), 0.0, 1e-4);
    }
    const PLANE_BASE<T> none(VECTOR3_BASE<T>::ONE, VECTOR3_BASE<T>::ONE, VECTOR3_BASE<T>::ZERO);
    EXPECT_EQ(none, PLANE_BASE<T>());
    EXPECT_EQ(none.project(vec<T>(1, 2, 3)), vec<T>(1, 2, 3));
    EXPECT_EQ(PLANE_BASE<T>(T(0), T(1), T(0), T(2)) *
                  MATRIX_BASE<T>::get_scale_matrix(VECTOR3_BASE<T>::ZERO),
              PLANE_BASE<T>());
    // Clockwise as seen from the positive side: the pitch from above.
    const PLANE_BASE<T> pitch(vec<T>(0, 0, 0), vec<T>(0, 0, 1), vec<T>(1, 0, 0));
    EXPECT_EQ(pitch.get_normal(), VECTOR3_BASE<T>(VECTOR3_BASE<T>::YAXIS));
}

TYPED_TEST(geometry, the_closest_points_of_segments) {
    using T = TypeParam;
    using LINE = LINE_BASE<T>;
    RANDOM random(2);
    constexpr int STEPS = 200;
    for (int i = 0; i < 150; ++i) {
        LINE line(random.get_vector<T>(5), random.get_vector<T>(5));
        LINE other(random.get_vector<T>(5), random.get_vector<T>(5));
        if (i % 5 == 0) {  // parallel ones
            other.set_point(1, other.get_point(0) +
                                   (line.get_point(1) - line.get_point(0)) * T(random.get(-2, 2)));
        }
        const VECTOR3_BASE<T> point = random.get_vector<T>(5);
        double least_to_point = 1e30;
        double least_to_line = 1e30;
        for (int k = 0; k <= STEPS; ++k) {
            const VECTOR3_BASE<T> sample =
                line.get_point(0).interpolate(line.get_point(1), T(k / double{STEPS}));
            least_to_point = std::min(least_to_point, distance(sample, point));
            least_to_line =
                std::min(least_to_line, distance(sample, other.get_closest_point(sample)));
        }
        const VECTOR3_BASE<T> nearest = line.get_closest_point(point);
        EXPECT_LE(distance(nearest, point), least_to_point + 1e-5);
        EXPECT_NEAR(distance(nearest, point), least_to_point, 0.05);
        // The given point is on the segment, and no sampled point of it is nearer to the other.
        const VECTOR3_BASE<T> nearest_to_line = line.get_closest_point(other);
        EXPECT_LT(distance(line.get_closest_point(nearest_to_line), nearest_to_line), 2e-5);
        const double found = distance(nearest_to_line, other.get_closest_point(nearest_to_line));
        EXPECT_LE(found, least_to_line + 5e-5);
        // Both segments tell the same distance.
        const VECTOR3_BASE<T> back = other.get_closest_point(line);
        EXPECT_NEAR(distance(back, line.get_closest_point(back)), found, 1e-4);
    }
    // Long segments that cross at a small angle, where one end is far from the crossing.
    for (const double offset : {0.001, 0.02, 0.045, 0.2, 1.0, 5.0}) {
        const LINE one(vec<T>(-60, 1, 3), vec<T>(40, 1, 3));
        const LINE crossing(vec<T>(-50, 1, 3 - offset), vec<T>(50, 1, 3 + offset));
        const VECTOR3_BASE<T> found = one.get_closest_point(crossing);
        EXPECT_LT(distance(found, crossing.get_closest_point(found)), 5e-5) << offset;
    }
    const LINE point_like(vec<T>(1, 1, 1), vec<T>(1, 1, 1));
    const LINE line(vec<T>(0, 0, 0), vec<T>(4, 0, 0));
    EXPECT_EQ(point_like.get_closest_point(vec<T>(5, 5, 5)), vec<T>(1, 1, 1));
    EXPECT_EQ(point_like.get_closest_point(line), vec<T>(1, 1, 1));
    EXPECT_TRUE(near(line.get_closest_point(point_like), vec<T>(1, 0, 0), 1e-6));
    EXPECT_EQ(real(line.get_magnitude()), 4.0);
}

TYPED_TEST(geometry, a_segment_meets_a_plane_or_not) {
    using T = TypeParam;
    using LINE = LINE_BASE<T>;
    const PLANE_BASE<T> ground(T(0), T(1), T(0), T(0));
    VECTOR3_BASE<T> point = vec<T>(9, 9, 9);
    EXPECT_FALSE(LINE(vec<T>(0, 1, 0), vec<T>(5, 2, 0)).intersect(ground, point));
    EXPECT_FALSE(LINE(vec<T>(0, -1, 0), vec<T>(5, -1, 0)).intersect(ground, point));
    EXPECT_EQ(point, vec<T>(9, 9, 9));
    EXPECT_TRUE(LINE(vec<T>(0, 1, 0), vec<T>(4, -3, 8)).intersect(ground, point));
    EXPECT_TRUE(near(point, vec<T>(1, 0, 2), 1e-6));
    EXPECT_TRUE(LINE(vec<T>(0, 1, 0), vec<T>(4, 0, 8)).intersect(ground, point));
    EXPECT_TRUE(near(point, vec<T>(4, 0, 8), 1e-6));
    EXPECT_TRUE(LINE(vec<T>(3, 0, 2), vec<T>(4, 0, 8)).intersect(ground, point));
    EXPECT_EQ(point, vec<T>(3, 0, 2));
    RANDOM random(3);
    for (int i = 0; i < 200; ++i) {
        const PLANE_BASE<T> plane(random.get_vector<T>(3), random.get_direction<T>());
        const LINE line(random.get_vector<T>(10), random.get_vector<T>(10));
        const double d0 = real(plane * line.get_point(0));
        const double d1 = real(plane * line.get_point(1));
        EXPECT_EQ(line.intersect(plane, point), d0 * d1 < 0);
        if (d0 * d1 < 0) {
            EXPECT_NEAR(real(plane * point), 0.0, 2e-5);
            EXPECT_LT(distance(line.get_closest_point(point), point), 2e-5);
        }
    }
}

TYPED_TEST(geometry, rays_meet_planes_and_spheres) {
    using T = TypeParam;
    using RAY = RAY_BASE<T>;
    RANDOM random(4);
    int hits = 0;
    for (int i = 0; i < 400; ++i) {
        // Half of the rays are aimed at the sphere or near it.
        const SPHERE_BASE<T> sphere(random.get_vector<T>(6), T(random.get(1, 5)));
        RAY ray{random.get_vector<T>(10), random.get_direction<T>() * T(random.get(0.5, 4))};
        if (i % 2 == 0) {
            ray.direction = (sphere.get_centre() + random.get_vector<T>(4) - ray.origin) * T(0.25);
        }
        const PLANE_BASE<T> plane(random.get_vector<T>(10), random.get_direction<T>());
        T t(-1);
        const double start = real(plane * ray.origin);
        const double approach = real(plane.get_normal().dot(ray.direction));
        EXPECT_EQ(ray.intersect(plane, &t), start * approach < 0);
        if (start * approach < 0 && std::abs(approach) > 0.05) {
            EXPECT_NEAR(real(plane * ray.get_point(t)), 0.0, 1e-3);
        }

        // A march along the ray says whether and where it enters the sphere.
        double nearest = 1e30;
        double first = -1;
        for (double s = 0; s < 60; s += 0.02) {
            const double d = distance(ray.get_point(T(s)), sphere.get_centre());
            nearest = std::min(nearest, d);
            if (first < 0 && d <= real(sphere.get_radius())) {
                first = s;
            }
        }
        if (std::abs(nearest - real(sphere.get_radius())) > 0.05) {
            const bool hit = ray.intersect(sphere, &t);
            EXPECT_EQ(hit, nearest < real(sphere.get_radius())) << i;
            if (hit) {
                ++hits;
                EXPECT_NEAR(distance(ray.get_point(t), sphere.get_centre()),
                            real(sphere.get_radius()), 1e-4);
                if (!sphere.is_inside(ray.origin)) {
                    EXPECT_NEAR(real(t), first, 0.03);
                } else {
                    EXPECT_FALSE(sphere.is_inside(ray.get_point(t + T(0.01))));
                }
            }
        }
    }
    EXPECT_GT(hits, 80);

    const PLANE_BASE<T> ground(T(0), T(1), T(0), T(0));
    T t(7);
    EXPECT_FALSE((RAY{vec<T>(0, 1, 0), vec<T>(1, 0, 0)}.intersect(ground, &t)));  // along it
    EXPECT_FALSE((RAY{vec<T>(0, 0, 0), vec<T>(1, 0, 0)}.intersect(ground, &t)));  // in it
    EXPECT_FALSE((RAY{vec<T>(0, 1, 0), vec<T>(0, 1, 0)}.intersect(ground, &t)));  // behind
    EXPECT_FALSE((RAY{vec<T>(0, 1, 0), vec<T>(0, 0, 0)}.intersect(ground, &t)));
    EXPECT_FALSE((RAY{vec<T>(0, 1, 0), vec<T>(0, 0, 0)}.intersect(
        SPHERE_BASE<T>(vec<T>(0, 1, 0), T(1)), &t)));
    EXPECT_FALSE((RAY{vec<T>(0, 9, 0), vec<T>(0, 1, 0)}.intersect(
        SPHERE_BASE<T>(vec<T>(0, 1, 0), T(1)), &t)));
    EXPECT_EQ(t, T(7));
    EXPECT_TRUE((RAY{vec<T>(0, 1, 0), vec<T>(0, -1, 0)}.intersect(ground, nullptr)));
}

TYPED_TEST(geometry, barycentric_weights_make_up_the_point) {
    using T = TypeParam;
    RANDOM random(5);
    for (int i = 0; i < 300; ++i) {
        // From seats to the stadium.
        const double size = i % 3 == 0 ? 0.2 : i % 3 == 1 ? 10.0 : 200.0;
        const BASE_TRIANGLE<T> triangle = get_random_triangle<T>(random, size);
        if (real(triangle.get_area()) < 0.1 * size * size) {
            continue;
        }
        const BARYCENTRIC_BASE<T> barycentric(triangle);
        const T u = T(random.get(-0.5, 1.5));
        const T v = T(random.get(-0.5, 1.5));
        const VECTOR3_BASE<T> point = triangle.get_corner(0) +
                                      (triangle.get_corner(1) - triangle.get_corner(0)) * u +
                                      (triangle.get_corner(2) - triangle.get_corner(0)) * v;
        // A point off the plane has the weights of its foot.
        const VECTOR3_BASE<T> off = point + triangle.get_normal() * T(0.5);
        const VECTOR3_BASE<T> expected(T(1) - u - v, u, v);
        const double tolerance = 5e-5 + 1e-6 / (size * size);
        EXPECT_TRUE(near(barycentric.get(point), expected, tolerance));
        EXPECT_TRUE(near(barycentric.get(off), expected, 5 * tolerance));
        const double margin = std::min({real(u), real(v), 1 - real(u) - real(v)});
        if (std::abs(margin) > 1e-3) {
            EXPECT_EQ(barycentric.is_inside(point), margin > 0);
        }
    }
    const BARYCENTRIC_BASE<T> none(
        BASE_TRIANGLE<T>(vec<T>(0, 0, 0), vec<T>(1, 1, 1), vec<T>(2, 2, 2)));
    EXPECT_EQ(none.get(vec<T>(1, 1, 1)), vec<T>(-1, -1, -1));
    EXPECT_FALSE(none.is_inside(vec<T>(1, 1, 1)));
}

TYPED_TEST(geometry, triangles_and_quads_tell_area_normal_and_nearest_point) {
    using T = TypeParam;
    RANDOM random(6);
    for (int i = 0; i < 100; ++i) {
        const BASE_TRIANGLE<T> triangle = get_random_triangle<T>(random, 5);
        const VECTOR3_BASE<T> a = triangle.get_corner(1) - triangle.get_corner(0);
        const VECTOR3_BASE<T> b = triangle.get_corner(2) - triangle.get_corner(0);
        // Heron's formula needs no cross product.
        const double la = real(a.magnitude());
        const double lb = real(b.magnitude());
        const double lc = real((a - b).magnitude());
        const double s = (la + lb + lc) / 2;
        EXPECT_NEAR(real(triangle.get_area()), std::sqrt(s * (s - la) * (s - lb) * (s - lc)), 2e-3);
        EXPECT_NEAR(real(triangle.get_area_2d()),
                    real(triangle.get_area()) * std::abs(real(triangle.get_normal().z)), 1e-4);
        const VECTOR3_BASE<T> point = random.get_vector<T>(8);
        const VECTOR3_BASE<T> nearest = triangle.get_closest_point(point);
        const double sampled = sample_distance(triangle.get_corner(0), a, b, true, point);
        EXPECT_LE(distance(nearest, point), sampled + 2e-4);
        EXPECT_GE(distance(nearest, point), sampled - 0.2);
        EXPECT_LT(distance(triangle.get_closest_point(nearest), nearest), 1e-4);
        const VECTOR3_BASE<T> offset = random.get_vector<T>(5);
        const VECTOR3_BASE<T> moved = (triangle + offset).get_closest_point(point + offset);
        EXPECT_NEAR(distance(moved, point + offset), distance(nearest, point), 1e-4);
        EXPECT_LT(distance(triangle.get_closest_point(moved - offset), moved - offset), 1e-4);

        const QUAD_BASE<T> quad = get_random_quad<T>(random, 5);
        EXPECT_NEAR(real(quad.get_plane() * quad.get_corner(i % 4)), 0.0, 1e-3);
        EXPECT_NEAR(real(quad.get_normal().dot(quad.get_triangle(1).get_normal())), 1.0, 1e-4);
        EXPECT_TRUE(near(quad.get_centre(),
                         quad.get_corner(0).interpolate(quad.get_corner(2), T(0.5)), 1e-5));
        const VECTOR3_BASE<T> on_quad = quad.get_closest_point(point);
        const double quad_sampled =
            sample_distance(quad.get_corner(0), quad.get_corner(1) - quad.get_corner(0),
                            quad.get_corner(3) - quad.get_corner(0), false, point);
        EXPECT_LE(distance(on_quad, point), quad_sampled + 1e-3);
        EXPECT_GE(distance(on_quad, point), quad_sampled - 0.3);
    }
    // Shapes without an area are segments or points.
    const BASE_TRIANGLE<T> flat(vec<T>(0, 0, 0), vec<T>(4, 0, 0), vec<T>(2, 0, 0));
    EXPECT_TRUE(near(flat.get_closest_point(vec<T>(3, 2, 0)), vec<T>(3, 0, 0), 1e-6));
    EXPECT_EQ(flat.get_plane(), PLANE_BASE<T>());
    EXPECT_EQ(real(flat.get_area()), 0.0);
    const VECTOR3_BASE<T> one = VECTOR3_BASE<T>::ONE;
    EXPECT_EQ(QUAD_BASE<T>(one, one, one, one).get_closest_point(vec<T>(5, 5, 5)), one);
    // Two corners in one place leave a triangle's normal.
    const QUAD_BASE<T> three(vec<T>(0, 0, 0), vec<T>(0, 0, 0), vec<T>(0, 0, 1), vec<T>(1, 0, 0));
    EXPECT_EQ(three.get_normal(), VECTOR3_BASE<T>(VECTOR3_BASE<T>::YAXIS));
}

template <typename T>
double get_area(const POLYGON_BASE<T>& polygon) {
    const auto& points = polygon.get_points();
    double area = 0;
    for (std::size_t i = 2; i < points.size(); ++i) {
        area += real(BASE_TRIANGLE<T>(points[0], points[i - 1], points[i]).get_area());
    }
    return area;
}

TYPED_TEST(geometry, clipping_cuts_a_polygon_in_two) {
    using T = TypeParam;
    RANDOM random(7);
    int cut = 0;
    for (int i = 0; i < 200; ++i) {
        const POLYGON_BASE<T> whole(get_random_quad<T>(random, 5));
        const PLANE_BASE<T> plane(random.get_vector<T>(4), random.get_direction<T>());
        const POLYGON_BASE<T> front = whole.clip(plane);
        const POLYGON_BASE<T> back = whole.clip(-plane);
        for (const VECTOR3_BASE<T>& point : front.get_points()) {
            EXPECT_GE(real(plane * point), -3e-5);
        }
        EXPECT_NEAR(get_area(front) + get_area(back), get_area(whole), 2e-3);
        if (!front.get_points().empty() && !back.get_points().empty()) {
            ++cut;
            EXPECT_EQ(front.get_points().size() + back.get_points().size(), 8u);
        }
        if (get_area(front) > 0.1) {
            EXPECT_GT(real(front.normal().dot(whole.normal())), 0.99);
        }
        EXPECT_LT(get_area(front.clip(-plane)), 1e-3);
    }
    EXPECT_GT(cut, 30);

    // Corners on the plane are kept once, on either side.
    const POLYGON_BASE<T> square(std::vector<VECTOR3_BASE<T>>{vec<T>(0, 0, 0), vec<T>(0, 0, 2),
                                                              vec<T>(2, 0, 2), vec<T>(2, 0, 0)});
    const PLANE_BASE<T> diagonal(vec<T>(0, 0, 0), vec<T>(1, 0, -1));
    EXPECT_EQ(square.clip(diagonal).get_points().size(), 3u);
    EXPECT_EQ(square.clip(-diagonal).get_points().size(), 3u);
    EXPECT_EQ(square.normal(), VECTOR3_BASE<T>(VECTOR3_BASE<T>::YAXIS));
    EXPECT_EQ(square.midpoint(), vec<T>(1, 0, 1));
    const POLYGON_BASE<T> moved = square.transform(MATRIX_BASE<T>(
        VECTOR3_BASE<T>::XAXIS, VECTOR3_BASE<T>::YAXIS, VECTOR3_BASE<T>::ZAXIS, vec<T>(1, 2, 3)));
    EXPECT_EQ(moved.midpoint(), vec<T>(2, 2, 4));
    POLYGON_BASE<T> nothing;
    EXPECT_EQ(nothing.midpoint(), VECTOR3_BASE<T>());
    EXPECT_EQ(nothing.normal(), VECTOR3_BASE<T>());
    EXPECT_TRUE(nothing.clip(diagonal).get_points().empty());
    nothing.add_point(vec<T>(3, 0, 0));
    EXPECT_EQ(nothing.clip(diagonal).get_points().size(), 1u);
}

TEST(rectangle, its_size_holds_any_edges) {
    constexpr std::int32_t LOW = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t HIGH = std::numeric_limits<std::int32_t>::max();
    const RECTANGLE_S32 all{LOW, 5, HIGH, 2};
    EXPECT_EQ(all.get_width(), 4294967295);
    EXPECT_EQ(all.get_height(), -3);
    EXPECT_EQ(all, (RECTANGLE_S32{LOW, 5, HIGH, 2}));
}

}  // namespace
