// Where a window stands, as it is stored from one run to the next.
#ifndef MODULES_CODE_WINMAN_WINDOW_PLACE_H
#define MODULES_CODE_WINMAN_WINDOW_PLACE_H

#include <cstdint>

#include "modules/winman/window_manager.h"

struct WM_WINDOW_MANAGER::PLACE {
    OPEN_GRAPHICS_SIZES size = NO_GRAPHICS_SIZES;
    std::int32_t stored_width = -1, stored_height = -1;  // -1: not stored
    std::int16_t x = -1, y = -1;
    bool extended = true;
};

#endif  // MODULES_CODE_WINMAN_WINDOW_PLACE_H
