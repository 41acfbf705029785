// What controls with the keyboard focus have in common.
#ifndef MODULES_WINMAN_FOCUS_TOOLS_H
#define MODULES_WINMAN_FOCUS_TOOLS_H

#include "platform/colour.h"

class WM_SCREEN_OBJECT;

// Return, Enter or Space was pressed since the last call: the keyboard's click. Reads the key, and
// with it what was typed before, which belongs to no one while a control without text has the
// focus. To be asked only by the object with the focus. With a right callback, Control and Return
// are its right click and left to it.
bool take_click_key(const WM_SCREEN_OBJECT& object);

// The look of the focus where the skin has none for the control: a frame of one pixel within the
// object's rectangle.
void draw_focus_frame(WM_SCREEN_OBJECT& object, COLOUR colour);

#endif  // MODULES_WINMAN_FOCUS_TOOLS_H
