// Four floats in one register, over the compiler's vector types: what the hot float operations of
// matrices and quaternions are made of. Internal to the library's headers.
#pragma once

#include <bit>
#include <cstdint>

namespace KVMATH::SIMD {

using FLOAT4 = float __attribute__((vector_size(16)));
using INT4 = std::int32_t __attribute__((vector_size(16)));

// From and to any four floats in a row; no alignment is asked for.
inline FLOAT4 load(const float* from) {
    FLOAT4 result;
    __builtin_memcpy(&result, from, sizeof(result));
    return result;
}

inline void store(float* to, FLOAT4 value) {
    __builtin_memcpy(to, &value, sizeof(value));
}

inline FLOAT4 splat(float value) {
    return FLOAT4{value, value, value, value};
}

template <int a, int b, int c, int d>
inline FLOAT4 shuffle(FLOAT4 v) {
    return __builtin_shufflevector(v, v, a, b, c, d);
}

// Entries 0 to 3 are those of v, 4 to 7 those of w.
template <int a, int b, int c, int d>
inline FLOAT4 shuffle(FLOAT4 v, FLOAT4 w) {
    return __builtin_shufflevector(v, w, a, b, c, d);
}

template <int i>
inline FLOAT4 splat(FLOAT4 v) {
    return shuffle<i, i, i, i>(v);
}

// Negates the entries whose flag is true.
template <bool a, bool b, bool c, bool d>
inline FLOAT4 negate(FLOAT4 v) {
    constexpr auto SIGN = std::int32_t{1} << 31;
    const INT4 mask = {a ? SIGN : 0, b ? SIGN : 0, c ? SIGN : 0, d ? SIGN : 0};
    return std::bit_cast<FLOAT4>(std::bit_cast<INT4>(v) ^ mask);
}

// A row vector times the matrix with the rows r0 to r3.
inline FLOAT4 transform(FLOAT4 v, FLOAT4 r0, FLOAT4 r1, FLOAT4 r2, FLOAT4 r3) {
    return (splat<0>(v) * r0 + splat<1>(v) * r1) + (splat<2>(v) * r2 + splat<3>(v) * r3);
}

// The product of two 4 by 4 matrices, stored row by row. The result may be one of them.
inline void multiply_matrices(const float* a, const float* b, float* result) {
    const FLOAT4 b0 = load(b);
    const FLOAT4 b1 = load(b + 4);
    const FLOAT4 b2 = load(b + 8);
    const FLOAT4 b3 = load(b + 12);
    const FLOAT4 r0 = transform(load(a), b0, b1, b2, b3);
    const FLOAT4 r1 = transform(load(a + 4), b0, b1, b2, b3);
    const FLOAT4 r2 = transform(load(a + 8), b0, b1, b2, b3);
    const FLOAT4 r3 = transform(load(a + 12), b0, b1, b2, b3);
    store(result, r0);
    store(result + 4, r1);
    store(result + 8, r2);
    store(result + 12, r3);
}

// Four points x, y, z in a row, twelve floats, by the affine matrix with the rows r0 to r3. Each
// component of a result is made in its own place, so that only the points need shuffling.
inline void transform_four_points(const float* points, float* results, FLOAT4 r0, FLOAT4 r1,
                                  FLOAT4 r2, FLOAT4 r3) {
    const FLOAT4 p0 = load(points);      // x0 y0 z0 x1
    const FLOAT4 p1 = load(points + 4);  // y1 z1 x2 y2
    const FLOAT4 p2 = load(points + 8);  // z2 x3 y3 z3
    const FLOAT4 y0_y1 = shuffle<1, 1, 4, 4>(p0, p1);
    const FLOAT4 z0_z1 = shuffle<2, 2, 5, 5>(p0, p1);
    const FLOAT4 x1_x2 = shuffle<3, 3, 6, 6>(p0, p1);
    const FLOAT4 z1_z2 = shuffle<1, 1, 4, 4>(p1, p2);
    const FLOAT4 x2_x3 = shuffle<2, 2, 5, 5>(p1, p2);
    const FLOAT4 y2_y3 = shuffle<3, 3, 6, 6>(p1, p2);
    store(results,
          (shuffle<0, 0, 0, 3>(p0) * shuffle<0, 1, 2, 0>(r0) +
           shuffle<0, 0, 0, 2>(y0_y1) * shuffle<0, 1, 2, 0>(r1)) +
              (shuffle<0, 0, 0, 2>(z0_z1) * shuffle<0, 1, 2, 0>(r2) + shuffle<0, 1, 2, 0>(r3)));
    store(results + 4,
          (x1_x2 * shuffle<1, 2, 0, 1>(r0) + shuffle<0, 0, 3, 3>(p1) * shuffle<1, 2, 0, 1>(r1)) +
              (z1_z2 * shuffle<1, 2, 0, 1>(r2) + shuffle<1, 2, 0, 1>(r3)));
    store(results + 8,
          (shuffle<0, 2, 2, 2>(x2_x3) * shuffle<2, 0, 1, 2>(r0) +
           shuffle<0, 2, 2, 2>(y2_y3) * shuffle<2, 0, 1, 2>(r1)) +
              (shuffle<0, 3, 3, 3>(p2) * shuffle<2, 0, 1, 2>(r2) + shuffle<2, 0, 1, 2>(r3)));
}

// Sines of angles in 0 to pi / 2, to 2e-9 and the roundings (M. Abramowitz and I. A. Stegun,
// "Handbook of Mathematical Functions", 1964, 4.3.97).
inline FLOAT4 get_sines(FLOAT4 x) {
    const FLOAT4 s = x * x;
    const FLOAT4 high = splat(2.7526e-6f) + s * splat(-2.39e-8f);
    const FLOAT4 middle = splat(8.3333315e-3f) + s * (splat(-1.98409e-4f) + s * high);
    return x + x * s * (splat(-0.1666666664f) + s * middle);
}

// The angle, 0 to pi / 2, with a cosine in 0 to 1, to 2e-8 and the roundings (the same, 4.4.46).
inline float get_acute_arc_cos(float x) {
    const float s = x * x;
    const float a = (1.5707963050f + x * -0.2145988016f) + s * (0.0889789874f + x * -0.0501743046f);
    const float b = (0.0308918810f + x * -0.0170881256f) + s * (0.0066700901f + x * -0.0012624911f);
    return __builtin_sqrtf(1.0f - x) * (a + s * s * b);
}

// The product of two quaternions x, y, z, w. Its four terms are put together so that one is taken
// off as a whole and two others change sign in w alone.
inline FLOAT4 multiply_quaternions(FLOAT4 a, FLOAT4 b) {
    const FLOAT4 added = splat<3>(a) * b;
    const FLOAT4 taken_off = shuffle<2, 0, 1, 2>(a) * shuffle<1, 2, 0, 2>(b);
    const FLOAT4 mixed = shuffle<0, 1, 2, 0>(a) * shuffle<3, 3, 3, 0>(b) +
                         shuffle<1, 2, 0, 1>(a) * shuffle<2, 0, 1, 1>(b);
    return (added - taken_off) + negate<false, false, false, true>(mixed);
}

// 2 by 2 matrices as four floats, row by row: a b, adj(a) b and a adj(b), where adj(a) is the
// adjugate, |a| times the inverse.
inline FLOAT4 multiply_2x2(FLOAT4 a, FLOAT4 b) {
    return a * shuffle<0, 3, 0, 3>(b) + shuffle<1, 0, 3, 2>(a) * shuffle<2, 1, 2, 1>(b);
}

inline FLOAT4 adjugate_multiply_2x2(FLOAT4 a, FLOAT4 b) {
    return shuffle<3, 3, 0, 0>(a) * b - shuffle<1, 1, 2, 2>(a) * shuffle<2, 3, 0, 1>(b);
}

inline FLOAT4 multiply_adjugate_2x2(FLOAT4 a, FLOAT4 b) {
    return a * shuffle<3, 0, 3, 0>(b) - shuffle<1, 0, 3, 2>(a) * shuffle<2, 1, 2, 1>(b);
}

// The inverse of a 4 by 4 matrix stored row by row, by its 2 by 2 blocks (a b, c d): the blocks of
// the adjugate follow from |d| a - b adj(d) c and its like, and the determinant from
// |a||d| + |b||c| - trace(adj(a) b adj(d) c). A determinant of 0 gives the zero matrix.
inline void invert_matrix(const float* m, float* result) {
    const FLOAT4 r0 = load(m);
    const FLOAT4 r1 = load(m + 4);
    const FLOAT4 r2 = load(m + 8);
    const FLOAT4 r3 = load(m + 12);
    const FLOAT4 a = shuffle<0, 1, 4, 5>(r0, r1);
    const FLOAT4 b = shuffle<2, 3, 6, 7>(r0, r1);
    const FLOAT4 c = shuffle<0, 1, 4, 5>(r2, r3);
    const FLOAT4 d = shuffle<2, 3, 6, 7>(r2, r3);
    // |a|, |b|, |c|, |d|
    const FLOAT4 block_determinants = shuffle<0, 2, 4, 6>(r0, r2) * shuffle<1, 3, 5, 7>(r1, r3) -
                                      shuffle<1, 3, 5, 7>(r0, r2) * shuffle<0, 2, 4, 6>(r1, r3);
    const FLOAT4 det_a = splat<0>(block_determinants);
    const FLOAT4 det_b = splat<1>(block_determinants);
    const FLOAT4 det_c = splat<2>(block_determinants);
    const FLOAT4 det_d = splat<3>(block_determinants);
    const FLOAT4 dc = adjugate_multiply_2x2(d, c);
    const FLOAT4 ab = adjugate_multiply_2x2(a, b);
    const FLOAT4 x = det_d * a - multiply_2x2(b, dc);
    const FLOAT4 w = det_a * d - multiply_2x2(c, ab);
    const FLOAT4 y = det_b * c - multiply_adjugate_2x2(d, ab);
    const FLOAT4 z = det_c * b - multiply_adjugate_2x2(a, dc);
    const FLOAT4 products = ab * shuffle<0, 2, 1, 3>(dc);
    const FLOAT4 pairs = products + shuffle<2, 3, 0, 1>(products);
    const FLOAT4 trace = pairs + shuffle<1, 0, 3, 2>(pairs);
    const FLOAT4 determinant = det_a * det_d + det_b * det_c - trace;
    const FLOAT4 signs = {1.0f, -1.0f, -1.0f, 1.0f};
    const FLOAT4 factor = determinant[0] == 0.0f ? FLOAT4{} : signs / determinant;
    store(result, shuffle<3, 1, 7, 5>(x * factor, y * factor));
    store(result + 4, shuffle<2, 0, 6, 4>(x * factor, y * factor));
    store(result + 8, shuffle<3, 1, 7, 5>(z * factor, w * factor));
    store(result + 12, shuffle<2, 0, 6, 4>(z * factor, w * factor));
}

}  // namespace KVMATH::SIMD
