// RECTANGLE_S32: a rectangle in pixels.
#pragma once

#include <cstdint>

namespace KVMATH {

struct RECTANGLE_S32 {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    constexpr bool operator==(const RECTANGLE_S32&) const = default;

    // In 64 bits, which hold the difference of any two edges.
    constexpr std::int64_t get_width() const { return std::int64_t{right} - left; }
    constexpr std::int64_t get_height() const { return std::int64_t{bottom} - top; }
};

}  // namespace KVMATH
