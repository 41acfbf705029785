#include "kvmath/ray.h"

#include "kvmath/plane.h"
#include "kvmath/scalar.h"
#include "kvmath/sphere.h"

namespace KVMATH {

template <typename T>
bool RAY_BASE<T>::intersect(const PLANE_BASE<T>& plane, T* t) const {
    const T approach = plane.get_normal().dot(direction);
    if (approach == T(0)) {
        return false;
    }
    const T result = -(plane * origin) / approach;
    if (!(result >= T(0) && result < SCALAR<T>::LARGEST)) {
        return false;
    }
    if (t != nullptr) {
        *t = result;
    }
    return true;
}

template <typename T>
bool RAY_BASE<T>::intersect(const SPHERE_BASE<T>& sphere, T* t) const {
    const T length = direction.magnitude();
    if (length == T(0)) {
        return false;
    }
    const VECTOR3_BASE<T> unit = direction / length;
    const VECTOR3_BASE<T> to_centre = sphere.get_centre() - origin;
    const T nearest = to_centre.dot(unit);
    // From the ray's nearest point to the centre: as a vector it keeps its digits at a distance
    // where the difference of two squares loses them.
    const T miss_sq = (to_centre - unit * nearest).magnitude_sq();
    if (miss_sq > sphere.get_radius_sq()) {
        return false;
    }
    const T half_chord = get_square_root(sphere.get_radius_sq() - miss_sq);
    const T leave = nearest + half_chord;
    if (leave < T(0)) {
        return false;
    }
    const T enter = nearest - half_chord;
    if (t != nullptr) {
        *t = (enter >= T(0) ? enter : leave) / length;
    }
    return true;
}

template struct RAY_BASE<float>;
template struct RAY_BASE<FIXED_POINT>;

}  // namespace KVMATH
