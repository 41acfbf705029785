// What the sources of PANEL_FRAME share.
#ifndef MODULES_GUI_PANEL_FRAME_DATA_H
#define MODULES_GUI_PANEL_FRAME_DATA_H

#include <algorithm>
#include <cstdint>

#include "modules/winman/wm_script.h"

// A number in the place of a callback's data.
inline void* pointer_from(std::int32_t number) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(number));
}
inline std::int32_t number_from_pointer(const void* pointer) {
    return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(pointer));
}

// The room inside a script's gaps, in window coordinates.
struct INNER_RECT {
    explicit INNER_RECT(const WM_SCRIPT& script)
        : left(script.x + script.left_gap),
          top(script.y + script.top_gap),
          width(std::max(script.width - script.left_gap - script.right_gap, 0)),
          height(std::max(script.height - script.top_gap - script.bottom_gap, 0)) {}

    // One past the last pixel.
    std::int32_t right() const { return left + width; }
    std::int32_t bottom() const { return top + height; }
    // Where an object must stand to be in the middle.
    std::int32_t centre_x(std::int32_t object_width) const {
        return left + (width - object_width) / 2;
    }
    std::int32_t centre_y(std::int32_t object_height) const {
        return top + (height - object_height) / 2;
    }

    std::int32_t left, top, width, height;
};

#endif  // MODULES_GUI_PANEL_FRAME_DATA_H
