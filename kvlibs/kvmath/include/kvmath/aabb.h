// AABB_BASE: a box along the axes, by its lowest and highest corner. A box whose minimum is above
// its maximum in any axis is empty.
#pragma once

#include "kvmath/scalar.h"
#include "kvmath/types.h"
#include "kvmath/vector3.h"

namespace KVMATH {

template <typename T>
class AABB_BASE {
public:
    using VECTOR = VECTOR3_BASE<T>;

    // The box of the origin alone.
    constexpr AABB_BASE() = default;
    constexpr AABB_BASE(const VECTOR& minimum, const VECTOR& maximum)
        : min_(minimum), max_(maximum) {}

    constexpr bool operator==(const AABB_BASE&) const = default;

    constexpr const VECTOR& get_min() const { return min_; }
    constexpr void set_min(const VECTOR& minimum) { min_ = minimum; }
    constexpr const VECTOR& get_max() const { return max_; }
    constexpr void set_max(const VECTOR& maximum) { max_ = maximum; }

    // Makes the empty box, to which points and boxes can be added.
    constexpr void invalidate() {
        constexpr T LARGEST = SCALAR<T>::LARGEST;
        min_ = VECTOR(LARGEST, LARGEST, LARGEST);
        max_ = -min_;
    }

    constexpr bool is_empty() const {
        return max_.x < min_.x || max_.y < min_.y || max_.z < min_.z;
    }

    // The middle, zero for the box of invalidate.
    constexpr VECTOR get_mid() const { return (min_ + max_) * SCALAR<T>::HALF; }

    // The lengths along the axes; of an empty box zero.
    constexpr VECTOR get_dimensions() const { return is_empty() ? VECTOR() : max_ - min_; }

    // Corner 0 to 7: bit 0 of the index picks the higher x, bit 1 y, bit 2 z.
    constexpr VECTOR get_vertex(int index) const {
        return {(index & 1) != 0 ? max_.x : min_.x, (index & 2) != 0 ? max_.y : min_.y,
                (index & 4) != 0 ? max_.z : min_.z};
    }

    // Side 0 to 5: lowest and highest x, lowest and highest y, lowest and highest z. Its normal
    // points outwards.
    QUAD_BASE<T> get_quad(int side) const;

    // True for a point in the box or on its surface.
    constexpr bool contains_point(const VECTOR& p) const {
        return p.x >= min_.x && p.x <= max_.x && p.y >= min_.y && p.y <= max_.y && p.z >= min_.z &&
               p.z <= max_.z;
    }

    // The point of the box nearest to a point: the point itself if it is inside. An empty box
    // gives the point.
    VECTOR get_closest_point_to(const VECTOR& point) const;

    // True if the sphere and the box share a point. An empty box shares none.
    bool intersect_sphere(const SPHERE_BASE<T>& sphere) const;

    // True if the boxes share a point, touching included. An empty box shares none.
    constexpr bool overlapping(const AABB_BASE& o) const {
        return !is_empty() && !o.is_empty() && min_.x <= o.max_.x && o.min_.x <= max_.x &&
               min_.y <= o.max_.y && o.min_.y <= max_.y && min_.z <= o.max_.z && o.min_.z <= max_.z;
    }

    // The smallest box that holds both.
    AABB_BASE operator+(const AABB_BASE& other) const { return AABB_BASE(*this) += other; }
    AABB_BASE operator+(const VECTOR& point) const { return AABB_BASE(*this) += point; }
    AABB_BASE& operator+=(const AABB_BASE& other);
    AABB_BASE& operator+=(const VECTOR& point);

    // The box round this one after an affine transform (J. Arvo, "Transforming axis-aligned
    // bounding boxes", 1990). An empty box stays as it is.
    AABB_BASE operator*(const MATRIX_BASE<T>& matrix) const;

private:
    VECTOR min_;
    VECTOR max_;
};

extern template class AABB_BASE<float>;
extern template class AABB_BASE<FIXED_POINT>;

}  // namespace KVMATH
