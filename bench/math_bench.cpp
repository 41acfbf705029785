// The hot float operations of KVMATH beside glm, with its own vector instructions on, and Eigen, on
// the same numbers. For ratios that hold on a busy machine run it with
//   --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
//   --benchmark_report_aggregates_only=true
// and compare medians.
#include "kvmath/matrix.h"
#include "kvmath/quat.h"
#include "kvmath/vector3.h"

#define GLM_FORCE_INTRINSICS
#define GLM_FORCE_ALIGNED_GENTYPES
#include <glm/glm.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_aligned.hpp>

#include <Eigen/Dense>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

using GLM_QUAT = glm::qua<float, glm::aligned_highp>;

// Few enough that operands and results stay in the first cache.
constexpr std::size_t COUNT = 64;
constexpr std::size_t NUM_POINTS = 1'000'000;

std::vector<float> get_numbers(std::size_t count, unsigned seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<float> distribution(-1.0f, 1.0f);
    std::vector<float> numbers(count);
    for (float& number : numbers) {
        number = distribution(engine);
    }
    return numbers;
}

// What each library needs to be fed the same numbers. Matrices get a strong diagonal, so that all
// have an inverse; quaternions are normalised.
struct KVMATH_TRAITS {
    using MATRIX = KVMATH::MATRIX;
    using QUAT = KVMATH::QUAT;
    using POINT = KVMATH::VECTOR3;

    static MATRIX make_matrix(const float* n) {
        MATRIX m;
        for (int i = 0; i < 16; ++i) {
            m.set_at(i / 4, i % 4, n[i] + (i % 5 == 0 ? 3.0f : 0.0f));
        }
        return m;
    }
    static QUAT make_quat(const float* n) { return QUAT(n[0], n[1], n[2], n[3]).normal(); }
    static MATRIX multiply(const MATRIX& a, const MATRIX& b) { return a * b; }
    static MATRIX invert(const MATRIX& m) { return m.inverse(); }
    static QUAT multiply(const QUAT& a, const QUAT& b) { return a * b; }
    static QUAT slerp(const QUAT& a, const QUAT& b, float t) { return QUAT::slerp(a, b, t); }
    static void transform(const MATRIX& m, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        m.transform(points.data(), results.data(), points.size());
    }
};

// The inline transform of a single point, in a loop.
struct KVMATH_SINGLE_TRAITS : KVMATH_TRAITS {
    static void transform(const MATRIX& m, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            results[i] = m.transform(points[i]);
        }
    }
};

struct GLM_TRAITS {
    using MATRIX = glm::aligned_mat4;
    using QUAT = GLM_QUAT;
    using POINT = glm::vec3;

    static MATRIX make_matrix(const float* n) {
        MATRIX m(1.0f);
        for (int i = 0; i < 16; ++i) {
            m[i / 4][i % 4] = n[i] + (i % 5 == 0 ? 3.0f : 0.0f);
        }
        return m;
    }
    static QUAT make_quat(const float* n) { return glm::normalize(QUAT(n[3], n[0], n[1], n[2])); }
    static MATRIX multiply(const MATRIX& a, const MATRIX& b) { return a * b; }
    static MATRIX invert(const MATRIX& m) { return glm::inverse(m); }
    static QUAT multiply(const QUAT& a, const QUAT& b) { return a * b; }
    static QUAT slerp(const QUAT& a, const QUAT& b, float t) { return glm::slerp(a, b, t); }
    static void transform(const MATRIX& m, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            results[i] = glm::vec3(m * glm::aligned_vec4(points[i], 1.0f));
        }
    }
};

struct GLM_PACKED_TRAITS : GLM_TRAITS {
    static void transform(const MATRIX& aligned, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        const glm::mat4 m(aligned);
        for (std::size_t i = 0; i < points.size(); ++i) {
            results[i] = glm::vec3(m * glm::vec4(points[i], 1.0f));
        }
    }
};

struct EIGEN_TRAITS {
    using MATRIX = Eigen::Matrix4f;
    using QUAT = Eigen::Quaternionf;
    using POINT = Eigen::Vector3f;

    static MATRIX make_matrix(const float* n) {
        MATRIX m;
        for (int i = 0; i < 16; ++i) {
            m(i % 4, i / 4) = n[i] + (i % 5 == 0 ? 3.0f : 0.0f);
        }
        return m;
    }
    static QUAT make_quat(const float* n) { return QUAT(n[3], n[0], n[1], n[2]).normalized(); }
    static MATRIX multiply(const MATRIX& a, const MATRIX& b) { return a * b; }
    static MATRIX invert(const MATRIX& m) { return m.inverse(); }
    static QUAT multiply(const QUAT& a, const QUAT& b) { return a * b; }
    static QUAT slerp(const QUAT& a, const QUAT& b, float t) { return a.slerp(t, b); }
    static void transform(const MATRIX& m, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        const Eigen::Matrix3f linear = m.block<3, 3>(0, 0);
        const Eigen::Vector3f translation = m.block<3, 1>(0, 3);
        for (std::size_t i = 0; i < points.size(); ++i) {
            results[i] = linear * points[i] + translation;
        }
    }
};

// All points as one matrix with a column each.
struct EIGEN_BLOCK_TRAITS : EIGEN_TRAITS {
    static void transform(const MATRIX& m, const std::vector<POINT>& points,
                          std::vector<POINT>& results) {
        const auto columns = static_cast<Eigen::Index>(points.size());
        const Eigen::Map<const Eigen::Matrix3Xf> from(points[0].data(), 3, columns);
        Eigen::Map<Eigen::Matrix3Xf> to(results[0].data(), 3, columns);
        const Eigen::Matrix3f linear = m.block<3, 3>(0, 0);
        const Eigen::Vector3f translation = m.block<3, 1>(0, 3);
        to.noalias() = linear.lazyProduct(from).colwise() + translation;
    }
};

template <typename LIBRARY>
std::vector<typename LIBRARY::MATRIX> get_matrices(unsigned seed) {
    const std::vector<float> numbers = get_numbers(COUNT * 16, seed);
    std::vector<typename LIBRARY::MATRIX> matrices;
    for (std::size_t i = 0; i < COUNT; ++i) {
        matrices.push_back(LIBRARY::make_matrix(&numbers[i * 16]));
    }
    return matrices;
}

template <typename LIBRARY>
std::vector<typename LIBRARY::QUAT> get_quats(unsigned seed) {
    const std::vector<float> numbers = get_numbers(COUNT * 4, seed);
    std::vector<typename LIBRARY::QUAT> quats;
    for (std::size_t i = 0; i < COUNT; ++i) {
        quats.push_back(LIBRARY::make_quat(&numbers[i * 4]));
    }
    return quats;
}

// Runs an operation over all entries, again and again.
template <typename RESULT, typename OPERATION>
void run(benchmark::State& state, std::vector<RESULT>& results, OPERATION operation) {
    for (auto _ : state) {
        for (std::size_t i = 0; i < results.size(); ++i) {
            results[i] = operation(i);
        }
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(results.size()));
}

template <typename LIBRARY>
void matrix_product(benchmark::State& state) {
    const auto a = get_matrices<LIBRARY>(1);
    const auto b = get_matrices<LIBRARY>(2);
    auto results = a;
    run(state, results, [&](std::size_t i) { return LIBRARY::multiply(a[i], b[i]); });
}

template <typename LIBRARY>
void matrix_inverse(benchmark::State& state) {
    const auto a = get_matrices<LIBRARY>(1);
    auto results = a;
    run(state, results, [&](std::size_t i) { return LIBRARY::invert(a[i]); });
}

template <typename LIBRARY>
void quat_product(benchmark::State& state) {
    const auto a = get_quats<LIBRARY>(1);
    const auto b = get_quats<LIBRARY>(2);
    auto results = a;
    run(state, results, [&](std::size_t i) { return LIBRARY::multiply(a[i], b[i]); });
}

template <typename LIBRARY>
void quat_slerp(benchmark::State& state) {
    const auto a = get_quats<LIBRARY>(1);
    const auto b = get_quats<LIBRARY>(2);
    const std::vector<float> times = get_numbers(COUNT, 3);
    auto results = a;
    run(state, results,
        [&](std::size_t i) { return LIBRARY::slerp(a[i], b[i], times[i] * 0.5f + 0.5f); });
}

template <typename LIBRARY>
void transform_million_points(benchmark::State& state) {
    const auto matrix = get_matrices<LIBRARY>(1)[0];
    const std::vector<float> numbers = get_numbers(NUM_POINTS * 3, 2);
    std::vector<typename LIBRARY::POINT> points;
    for (std::size_t i = 0; i < NUM_POINTS; ++i) {
        points.emplace_back(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]);
    }
    auto results = points;
    for (auto _ : state) {
        LIBRARY::transform(matrix, points, results);
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(NUM_POINTS));
}

BENCHMARK(matrix_product<KVMATH_TRAITS>)->Name("matrix_product/kvmath");
BENCHMARK(matrix_product<GLM_TRAITS>)->Name("matrix_product/glm");
BENCHMARK(matrix_product<EIGEN_TRAITS>)->Name("matrix_product/eigen");
BENCHMARK(matrix_inverse<KVMATH_TRAITS>)->Name("matrix_inverse/kvmath");
BENCHMARK(matrix_inverse<GLM_TRAITS>)->Name("matrix_inverse/glm");
BENCHMARK(matrix_inverse<EIGEN_TRAITS>)->Name("matrix_inverse/eigen");
BENCHMARK(quat_product<KVMATH_TRAITS>)->Name("quat_product/kvmath");
BENCHMARK(quat_product<GLM_TRAITS>)->Name("quat_product/glm");
BENCHMARK(quat_product<EIGEN_TRAITS>)->Name("quat_product/eigen");
BENCHMARK(quat_slerp<KVMATH_TRAITS>)->Name("quat_slerp/kvmath");
BENCHMARK(quat_slerp<GLM_TRAITS>)->Name("quat_slerp/glm");
BENCHMARK(quat_slerp<EIGEN_TRAITS>)->Name("quat_slerp/eigen");
BENCHMARK(transform_million_points<KVMATH_TRAITS>)->Name("transform_million_points/kvmath");
BENCHMARK(transform_million_points<KVMATH_SINGLE_TRAITS>)
    ->Name("transform_million_points/kvmath_one_by_one");
BENCHMARK(transform_million_points<GLM_TRAITS>)->Name("transform_million_points/glm");
BENCHMARK(transform_million_points<GLM_PACKED_TRAITS>)->Name("transform_million_points/glm_packed");
BENCHMARK(transform_million_points<EIGEN_TRAITS>)->Name("transform_million_points/eigen");
BENCHMARK(transform_million_points<EIGEN_BLOCK_TRAITS>)
    ->Name("transform_million_points/eigen_block");

}  // namespace
