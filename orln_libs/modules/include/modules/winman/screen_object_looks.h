// What all screen objects take from the skin.
#ifndef MODULES_WINMAN_SCREEN_OBJECT_LOOKS_H
#define MODULES_WINMAN_SCREEN_OBJECT_LOOKS_H

#include "modules/winman/style_set.h"
#include "platform/image.h"

// The base of WM_SCREEN_OBJECT that GUI_SKIN fills when a skin has been loaded, so that the skin
// needs to know nothing else of screen objects. Only class-wide members.
class WM_SCREEN_OBJECT_LOOKS {
public:
    static WM_STYLE_SET hint_style_set;  // the style set "HINT"

    // The skin's images "ARROW_UP", "ARROW_UP_DISABLED" and so on; empty if it has none.
    static IMAGE up_arrow_image, down_arrow_image, left_arrow_image, right_arrow_image;
    static IMAGE disabled_up_arrow_image, disabled_down_arrow_image, disabled_left_arrow_image,
        disabled_right_arrow_image;
};

#endif  // MODULES_WINMAN_SCREEN_OBJECT_LOOKS_H
