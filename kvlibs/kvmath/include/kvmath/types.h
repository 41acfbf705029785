// The names of the value types, for headers that only mention them. Each is a template over its
// scalar, made for float and FIXED_POINT; a plain name stands for the float instance.
#pragma once

#include <cstdint>

namespace KVMATH {

class FIXED_POINT;

template <typename T>
struct BASEVECTOR2;
template <typename T>
struct VECTOR3_BASE;
template <typename T>
struct BASEVECTOR4;
template <typename T>
struct QUAT_BASE;
template <typename T>
class MATRIX_BASE;
template <typename T>
struct PLANE_BASE;
template <typename T>
class SPHERE_BASE;
template <typename T>
class AABB_BASE;
template <typename T>
class LINE_BASE;
template <typename T>
struct RAY_BASE;
template <typename T, typename V = VECTOR3_BASE<T>>
class BASE_TRIANGLE;
template <typename T>
class QUAD_BASE;
template <typename T>
class CAPSULE;
template <typename T>
class POLYGON_BASE;
template <typename T>
class FRUSTUM_BASE;
template <typename T>
class BARYCENTRIC_BASE;
template <int lo, int hi, typename T = float>
struct PROJECTION_BASE;

using VECTOR2 = BASEVECTOR2<float>;
using VECTOR3 = VECTOR3_BASE<float>;
using VECTOR4 = BASEVECTOR4<float>;
using QUAT = QUAT_BASE<float>;
using MATRIX = MATRIX_BASE<float>;
using PLANE = PLANE_BASE<float>;
using SPHERE = SPHERE_BASE<float>;
using AABB = AABB_BASE<float>;
using LINE = LINE_BASE<float>;
using RAY = RAY_BASE<float>;
using TRIANGLE = BASE_TRIANGLE<float>;
using QUAD = QUAD_BASE<float>;
using POLYGON = POLYGON_BASE<float>;
using FRUSTUM = FRUSTUM_BASE<float>;
using BARYCENTRIC = BARYCENTRIC_BASE<float>;

}  // namespace KVMATH
