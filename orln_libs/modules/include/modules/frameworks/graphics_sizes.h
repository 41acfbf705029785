// Packed sizes that windows and display modes are described with.
#ifndef MODULES_FRAMEWORKS_GRAPHICS_SIZES_H
#define MODULES_FRAMEWORKS_GRAPHICS_SIZES_H

#include <cstdint>

// Width in the low 16 bits, height in the high 16 bits; 0xFFFF in a half means not given.
using OPEN_GRAPHICS_SIZES = std::uint32_t;

constexpr OPEN_GRAPHICS_SIZES make_graphics_sizes(std::uint16_t width, std::uint16_t height) {
    return static_cast<std::uint32_t>(width) | (static_cast<std::uint32_t>(height) << 16);
}
constexpr std::uint16_t graphics_width(OPEN_GRAPHICS_SIZES sizes) {
    return static_cast<std::uint16_t>(sizes & 0xFFFFu);
}
constexpr std::uint16_t graphics_height(OPEN_GRAPHICS_SIZES sizes) {
    return static_cast<std::uint16_t>(sizes >> 16);
}

#endif  // MODULES_FRAMEWORKS_GRAPHICS_SIZES_H
