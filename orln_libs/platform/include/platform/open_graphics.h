// The records that windows and display modes are described with.
#ifndef PLATFORM_OPEN_GRAPHICS_H
#define PLATFORM_OPEN_GRAPHICS_H

#include <cstdint>

// Width in the low 16 bits, height in the high 16 bits; 0xFFFF in a half means not given. Positions
// are packed the same way: x in the low half, y in the high half.
using OPEN_GRAPHICS_SIZES = std::uint32_t;

inline constexpr std::uint16_t GRAPHICS_SIZE_NOT_GIVEN = 0xFFFF;
inline constexpr OPEN_GRAPHICS_SIZES NO_GRAPHICS_SIZES = 0xFFFFFFFF;

constexpr OPEN_GRAPHICS_SIZES make_graphics_sizes(std::uint16_t width, std::uint16_t height) {
    return static_cast<std::uint32_t>(width) | (static_cast<std::uint32_t>(height) << 16);
}
constexpr std::uint16_t graphics_width(OPEN_GRAPHICS_SIZES sizes) {
    return static_cast<std::uint16_t>(sizes & 0xFFFFu);
}
constexpr std::uint16_t graphics_height(OPEN_GRAPHICS_SIZES sizes) {
    return static_cast<std::uint16_t>(sizes >> 16);
}

// A full-screen mode. The refresh rate is a word that is only compared.
struct DISPLAY_SETTINGS {
    std::int16_t refresh_rate = 0;
    std::int16_t colour_depth = 32;
    std::int16_t width = 0;
    std::int16_t height = 0;

    bool operator==(const DISPLAY_SETTINGS&) const = default;
};

// What open_graphics() is asked for. Sizes are of the content, in the pixels of the back buffer.
struct OPEN_GRAPHICS_SETTINGS {
    const char* title = nullptr;  // 8-bit text; not owned; null for none
    OPEN_GRAPHICS_SIZES size = NO_GRAPHICS_SIZES;
    bool full_screen = false;
    bool hidden = false;    // don't show the window yet
    bool main = false;      // the main window: failing to create it is fatal
    char window_index = 0;  // 0 to 4
    OPEN_GRAPHICS_SIZES minimum_size = NO_GRAPHICS_SIZES;
    OPEN_GRAPHICS_SIZES maximum_size = NO_GRAPHICS_SIZES;
    // The content's top left corner on the desktop; -1 (0xFFFF) for not given.
    std::int16_t x = -1;
    std::int16_t y = -1;
};

#endif  // PLATFORM_OPEN_GRAPHICS_H
