// Coordinates are calculated in 32 bits and kept in 16.
#ifndef MODULES_CODE_GUI_TO_SHORT_H
#define MODULES_CODE_GUI_TO_SHORT_H

#include <algorithm>
#include <cstdint>

// The nearest number that fits.
inline std::int16_t to_short(std::int32_t number) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(number, INT16_MIN, INT16_MAX));
}

#endif  // MODULES_CODE_GUI_TO_SHORT_H
