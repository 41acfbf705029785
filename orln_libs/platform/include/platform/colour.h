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
    constexpr COLOUR(unsigned char red, unsigned char green, unsigned char blue,
                     unsigned char alpha = 255)
        : value((std::uint32_t{alpha} << 24) | (std::uint32_t{red} << 16) |
                (std::uint32_t{green} << 8) | blue) {}

    constexpr unsigned char alpha() const { return static_cast<unsigned char>(value >> 24); }
    constexpr unsigned char red() const { return static_cast<unsigned char>(value >> 16); }
    constexpr unsigned char green() const { return static_cast<unsigned char>(value >> 8); }
    constexpr unsigned char blue() const { return static_cast<unsigned char>(value); }

    // The same colour with another alpha.
    constexpr COLOUR with_alpha(unsigned char alpha) const {
        return COLOUR((value & 0x00FFFFFFu) | (std::uint32_t{alpha} << 24));
    }
    // False for a value that the controls take as "no colour given".
    constexpr bool is_set() const { return value >= 0x01000000u; }

    // Draws `other` over this pixel. Alpha 0 does nothing; one at or above alpha_solid_threshold
    // stores `other`; between them each of R, G, B becomes
    // (other * alpha + this * (255 - alpha)) >> 8 and the alphas add up to at most 255, so that
    // drawing on a transparent image leaves partial coverage. The alpha of `other` itself counts
    // only when it is stored.
    void mix(const COLOUR& other, unsigned char alpha) {
        if (alpha == 0) {
            return;
        }
        if (alpha >= alpha_solid_threshold) {
            value = other.value;
            return;
        }
        // Red and blue lie far enough apart to be multiplied together.
        const std::uint32_t keep = 255u - alpha;
        const std::uint32_t red_blue =
            (((other.value & 0xFF00FFu) * alpha + (value & 0xFF00FFu) * keep) >> 8) & 0xFF00FFu;
        const std::uint32_t mixed_green =
            (((other.value & 0xFF00u) * alpha + (value & 0xFF00u) * keep) >> 8) & 0xFF00u;
        const std::uint32_t sum = (value >> 24) + alpha;
        value = ((sum < 255u ? sum : 255u) << 24) | red_blue | mixed_green;
    }

    // Hue, saturation and lightness, each from 0 to 1; a grey has hue and saturation 0. Setting
    // limits saturation and lightness to that range, wraps the hue and leaves the alpha. The
    // formulas are those of Foley and van Dam's double hexcone, as in the W3C's CSS Color Module.
    void get_hsl(double& hue, double& saturation, double& lightness) const;
    void set_hsl(double hue, double saturation, double lightness);
    // One channel (0 to 1) of a hue that lies between the channel values `low` and `high`.
    static double hue_to_rgb(double low, double high, double hue);
    // Hue, saturation and value of the single hexcone (A. R. Smith, 1978), each from 0 to 1.
    void rgb_to_hsv(double& hue, double& saturation, double& brightness) const;

    // Keeps this pixel's brightness, the mean of R, G and B, and its alpha, and takes the hue of
    // `tint`.
    void recolour(COLOUR tint);

    // Becomes white or black, whichever is readable on `background`.
    void set_suitable_text_colour(const COLOUR& background);

    // (299 R + 587 G + 114 B) / 1000.
    unsigned char get_rgb_brightness() const {
        return static_cast<unsigned char>((299u * red() + 587u * green() + 114u * blue()) / 1000u);
    }

    // What a person would call the colour.
    bool is_white() const;
    bool is_red() const;
    bool is_blue() const;
    bool is_yellow() const;
    bool is_purple() const;

    // True if the two are too close to be read on each other, by their differences in hue,
    // lightness and saturation. Mode 0 is the rule for areas, mode 1 that for text, which forgives
    // near hues but not two dark colours. The last argument has no effect.
    bool clashes(const COLOUR& other, char mode, unsigned char flag = 0) const;

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
