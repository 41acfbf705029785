// The click of controls that tell their callback where it was.
#ifndef MODULES_CODE_WINMAN_CLICK_CALLBACK_H
#define MODULES_CODE_WINMAN_CLICK_CALLBACK_H

#include "../gui/to_short.h"
#include "modules/winman/screen_object.h"

// Runs the callback of a WM_IMAGE or WM_ANIMATION, which has the place of the click, from the
// object's corner, in its click_x and click_y meanwhile.
template <class CONTROL>
WM_MESG run_click_callback(CONTROL& control, std::int16_t px, std::int16_t py) {
    control.click_x = to_short(px - control.x);
    control.click_y = to_short(py - control.y);
    const WM_MESG result =
        control.callback(&control, control.callback_data1, control.callback_data2);
    control.click_x = control.click_y = -1;
    return result;
}

#endif  // MODULES_CODE_WINMAN_CLICK_CALLBACK_H
