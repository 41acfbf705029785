// Keeps the active area of an image for the length of a block.
#ifndef MODULES_CODE_WINMAN_ACTIVE_AREA_H
#define MODULES_CODE_WINMAN_ACTIVE_AREA_H

#include "modules/winman/wm_region.h"
#include "platform/image.h"

// Does nothing for a null image.
class SAVED_ACTIVE_AREA {
public:
    explicit SAVED_ACTIVE_AREA(IMAGE* saved_image) : image(saved_image) {
        if (image != nullptr) {
            area.left = image->active_left;
            area.top = image->active_top;
            area.right = image->active_right;
            area.bottom = image->active_bottom;
        }
    }
    // Stores the fields themselves: set_active_area would turn an empty area into a line.
    ~SAVED_ACTIVE_AREA() {
        if (image != nullptr) {
            image->active_left = area.left;
            image->active_top = area.top;
            image->active_right = area.right;
            image->active_bottom = area.bottom;
        }
    }
    SAVED_ACTIVE_AREA(const SAVED_ACTIVE_AREA&) = delete;
    SAVED_ACTIVE_AREA& operator=(const SAVED_ACTIVE_AREA&) = delete;

private:
    IMAGE* const image;
    WM_REGION area;
};

#endif  // MODULES_CODE_WINMAN_ACTIVE_AREA_H
