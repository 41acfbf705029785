// Whether a Shift key is down, whichever of the three codes the window layer gives it.
#ifndef MODULES_CODE_GUI_SHIFT_KEYS_H
#define MODULES_CODE_GUI_SHIFT_KEYS_H

#include "platform/keyboard.h"

inline bool is_shift_down(const KEYBOARD& keyboard) {
    return keyboard.get_key_value(KEY_SHIFT) || keyboard.get_key_value(KEY_SHIFT_LEFT) ||
           keyboard.get_key_value(KEY_SHIFT_RIGHT);
}

#endif  // MODULES_CODE_GUI_SHIFT_KEYS_H
