// WM_REGION: a rectangle of window pixels, inclusive on all four sides.
#ifndef MODULES_WINMAN_WM_REGION_H
#define MODULES_WINMAN_WM_REGION_H

#include <cstdint>

struct WM_REGION {
    std::int16_t top = -1, left = -1, right = -1, bottom = -1;

    // A left edge below 0 means that there is no rectangle.
    bool is_set() const { return left >= 0; }
    bool contains(std::int16_t x, std::int16_t y) const {
        return x >= left && x <= right && y >= top && y <= bottom;
    }
    bool contains(const WM_REGION& other) const {
        return other.left >= left && other.right <= right && other.top >= top &&
               other.bottom <= bottom;
    }
    // The two have a pixel in common, or would if each were widened by `gap`.
    bool touches(const WM_REGION& other, std::int32_t gap = 0) const {
        return other.left - gap <= right && other.top - gap <= bottom &&
               other.right + gap >= left && other.bottom + gap >= top;
    }
    // Becomes the smallest rectangle round both.
    void unite(const WM_REGION& other) {
        top = other.top < top ? other.top : top;
        left = other.left < left ? other.left : left;
        right = other.right > right ? other.right : right;
        bottom = other.bottom > bottom ? other.bottom : bottom;
    }

    friend bool operator==(const WM_REGION&, const WM_REGION&) = default;
};

#endif  // MODULES_WINMAN_WM_REGION_H
