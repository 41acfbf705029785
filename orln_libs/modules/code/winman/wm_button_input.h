// The mouse and the keyboard as a button sees them in one tick.
#ifndef MODULES_CODE_WINMAN_WM_BUTTON_INPUT_H
#define MODULES_CODE_WINMAN_WM_BUTTON_INPUT_H

#include "modules/winman/wm_button.h"

struct WM_BUTTON::INPUT {
    std::int16_t x = -1, y = -1;
    bool focal = false;  // the button's window has the input; otherwise no mouse button is down
    bool left = false, right = false;
    bool left_before = false, right_before = false;  // at the last tick
    bool over = false;
    bool click_key = false;  // the keyboard's click came in this tick
};

#endif  // MODULES_CODE_WINMAN_WM_BUTTON_INPUT_H
