// SPHERE_BASE: a centre and a radius.
#pragma once

#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class SPHERE_BASE {
public:
    constexpr SPHERE_BASE() = default;
    constexpr SPHERE_BASE(const VECTOR3_BASE<T>& centre, T radius)
        : centre_(centre), radius_(radius) {}

    constexpr bool operator==(const SPHERE_BASE&) const = default;

    constexpr const VECTOR3_BASE<T>& get_centre() const { return centre_; }
    constexpr void set_centre(const VECTOR3_BASE<T>& centre) { centre_ = centre; }
    constexpr T get_radius() const { return radius_; }
    constexpr T get_radius_sq() const { return radius_ * radius_; }
    constexpr void set_radius(T radius) { radius_ = radius; }

    // True for a point in the sphere or on its surface.
    constexpr bool is_inside(const VECTOR3_BASE<T>& point) const {
        return centre_.distance_sq(point) <= get_radius_sq();
    }

private:
    VECTOR3_BASE<T> centre_;
    T radius_{};
};

}  // namespace KVMATH
