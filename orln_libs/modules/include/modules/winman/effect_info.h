// EFFECT_INFO: how a floating object comes and goes.
#ifndef MODULES_WINMAN_EFFECT_INFO_H
#define MODULES_WINMAN_EFFECT_INFO_H

#include <cstdint>

// The bits of EFFECT_INFO::flags. A change of the alpha that none of them asks for is a jump.
enum EFFECT_FLAG : std::uint16_t {
    EFFECT_FADE_IN = 0x0001,    // up from invisible
    EFFECT_FADE_OUT = 0x0002,   // down to invisible
    EFFECT_DIM = 0x0004,        // down to an alpha other than 0
    EFFECT_BRIGHTEN = 0x0008,   // up from an alpha other than 0
    EFFECT_SLIDE_IN = 0x0010,   // when opening
    EFFECT_SLIDE_OUT = 0x0020,  // when closing
    // Where a slide comes from or goes to; a side of each axis may be combined.
    EFFECT_SLIDE_ABOVE = 0x0040,
    EFFECT_SLIDE_LEFT = 0x0080,
    EFFECT_SLIDE_BELOW = 0x0100,
    EFFECT_SLIDE_RIGHT = 0x0200,
    EFFECT_SLIDE_FROM_EDGE = 0x0400,  // from the window's edge, not just by the object's own size
};

struct EFFECT_INFO {
    std::uint16_t flags = 0;
    std::uint32_t time = 0;          // of a slide, and of a fade from or to invisible; milliseconds
    std::uint32_t reshade_time = 0;  // of a fade between two visible alphas; milliseconds
    unsigned char drag_alpha = 255;  // while the object is dragged
};

#endif  // MODULES_WINMAN_EFFECT_INFO_H
