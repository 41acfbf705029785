// What WM_BUTTON and WM_SCRIPT have in common: their faces, filled or of images.
#ifndef MODULES_CODE_WINMAN_CONTROL_FACE_H
#define MODULES_CODE_WINMAN_CONTROL_FACE_H

#include "modules/winman/image_box.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_manager.h"
#include "platform/image.h"

enum class FACE_FADE { NONE, ACROSS, DOWN };

// Fills the object's rectangle, with a fade from `colour` to `end`. A colour that isn't set leaves
// everything as it is.
inline void fill_face(IMAGE& target, const WM_SCREEN_OBJECT& object, COLOUR colour, COLOUR end,
                      FACE_FADE fade) {
    const std::int32_t x2 = object.x + object.width - 1, y2 = object.y + object.height - 1;
    if (!colour.is_set()) {
        return;
    }
    switch (fade) {
        case FACE_FADE::NONE:
            target.fill_rect(object.x, object.y, x2, y2, colour, 1);
            break;
        case FACE_FADE::ACROSS:
            target.fill_hfaded_rect(object.x, object.y, x2, y2, colour, end);
            break;
        case FACE_FADE::DOWN:
            target.fill_vfaded_rect(object.x, object.y, x2, y2, colour, end);
            break;
    }
}

// is_in_it of the two: a visible child at the point, or the object's rectangle where `mask` isn't
// transparent. Null as the mask: all of the rectangle.
inline bool is_in_face(WM_SCREEN_OBJECT& object, const IMAGE_BOX* mask, std::int16_t px,
                       std::int16_t py) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (!object.visible || manager == nullptr || !manager->is_object_on_focal_window(&object)) {
        return false;
    }
    if (object.is_in_child(px, py)) {
        return true;
    }
    return object.is_in_me(px, py) &&
           (mask == nullptr ||
            mask->is_in_it(static_cast<std::int16_t>(px - object.x),
                           static_cast<std::int16_t>(py - object.y), object.width, object.height));
}

#endif  // MODULES_CODE_WINMAN_CONTROL_FACE_H
