// COLOUR: the pixel of the software image library.
#ifndef PLATFORM_COLOUR_H
#define PLATFORM_COLOUR_H

#include <cstdint>

// One 32-bit word 0xAARRGGBB, in memory the bytes B, G, R, A. Alpha 0 means not drawn; the controls
// treat a value below 0x01000000 as a colour that isn't set.
class COLOUR {
public:
    constexpr COLOUR() = default;
    constexpr COLOUR(std::uint32_t argb) : value(argb) {}

    constexpr unsigned char alpha() const { return static_cast<unsigned char>(value >> 24); }
    constexpr unsigned char red() const { return static_cast<unsigned char>(value >> 16); }
    constexpr unsigned char green() const { return static_cast<unsigned char>(value >> 8); }
    constexpr unsigned char blue() const { return static_cast<unsigned char>(value); }

    friend constexpr bool operator==(const COLOUR&, const COLOUR&) = default;

    std::uint32_t value = 0;

    // An alpha at or above this counts as opaque.
    static unsigned char alpha_solid_threshold;
};

static_assert(sizeof(COLOUR) == 4, "rows of pixels are handed on as 32-bit words");

inline constexpr COLOUR COLOUR_WHITE = 0xFFFFFFFFu;
inline constexpr COLOUR COLOUR_MAGENTA = 0xFFFF00FFu;
inline constexpr COLOUR COLOUR_BLUE = 0xFF0000FFu;
inline constexpr COLOUR COLOUR_GREEN = 0xFF00FF00u;
inline constexpr COLOUR COLOUR_YELLOW = 0xFFFFFF00u;
inline constexpr COLOUR COLOUR_RED = 0xFFFF0000u;
inline constexpr COLOUR COLOUR_GREY = 0xFFC0C0C0u;
inline constexpr COLOUR COLOUR_PURPLE = 0xFF800080u;
inline constexpr COLOUR COLOUR_DARK_BLUE = 0xFF000080u;
inline constexpr COLOUR COLOUR_DARK_GREEN = 0xFF008000u;
inline constexpr COLOUR COLOUR_DARK_RED = 0xFF800000u;
inline constexpr COLOUR COLOUR_DARK_GREY = 0xFF808080u;
inline constexpr COLOUR COLOUR_BLACK = 0xFF000000u;
inline constexpr COLOUR COLOUR_INVISIBLE = 0x00000000u;

#endif  // PLATFORM_COLOUR_H
