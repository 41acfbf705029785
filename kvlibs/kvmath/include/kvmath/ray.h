// RAY_BASE: a half line. RAY is the float instance.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
struct RAY_BASE {
    VECTOR3_BASE<T> origin;
    VECTOR3_BASE<T> direction;  // of any length

    constexpr VECTOR3_BASE<T> get_point(T t) const { return origin + direction * t; }

    // True if the ray meets the plane, from either side; get_point(*t) is where. Meeting it
    // behind the origin or so far out that t has no value isn't meeting it, and a ray along the
    // plane never meets it, not even within it. t may be null; it is set on true only.
    bool intersect(const PLANE_BASE<T>& plane, T* t) const;

    // True if the ray meets the sphere's surface; get_point(*t) is where it does first. From
    // inside, that is where it leaves the sphere. A ray of direction zero meets nothing.
    bool intersect(const SPHERE_BASE<T>& sphere, T* t) const;
};

extern template struct RAY_BASE<float>;
extern template struct RAY_BASE<FIXED_POINT>;

}  // namespace KVMATH
