// Keys between SDL and KEY_TYPE.
#include <SDL.h>

#include "platform/keyboard.h"

namespace {

struct KEY_PAIR {
    std::int32_t native;
    KEY_TYPE key;
};

constexpr KEY_TYPE numbered(KEY_TYPE first, std::int32_t number) {
    return static_cast<KEY_TYPE>(first + number);
}

// Where a value has several native keys, the first one is the way back.
constexpr KEY_PAIR KEY_PAIRS[] = {
    {SDLK_ESCAPE, KEY_ESCAPE},
    {SDLK_TAB, KEY_TAB},
    {SDLK_BACKSPACE, KEY_BACKSPACE},
    {SDLK_KP_ENTER, KEY_ENTER},
    {SDLK_RETURN, KEY_RETURN},
    {SDLK_INSERT, KEY_INSERT},
    {SDLK_DELETE, KEY_DELETE},
    {SDLK_HOME, KEY_HOME},
    {SDLK_END, KEY_END},
    {SDLK_PAGEUP, KEY_PAGE_UP},
    {SDLK_PAGEDOWN, KEY_PAGE_DOWN},
    {SDLK_LEFT, KEY_LEFT},
    {SDLK_RIGHT, KEY_RIGHT},
    {SDLK_UP, KEY_UP},
    {SDLK_DOWN, KEY_DOWN},
    {SDLK_KP_CLEAR, KEY_KEYPAD_CLEAR},
    {SDLK_NUMLOCKCLEAR, KEY_KEYPAD_CLEAR},
    {SDLK_KP_DIVIDE, KEY_KEYPAD_DIVIDE},
    {SDLK_KP_MULTIPLY, KEY_KEYPAD_MULTIPLY},
    {SDLK_KP_MINUS, KEY_KEYPAD_MINUS},
    {SDLK_KP_PLUS, KEY_KEYPAD_PLUS},
    {SDLK_KP_PERIOD, KEY_KEYPAD_POINT},
    {SDLK_KP_COMMA, KEY_KEYPAD_POINT},
    {SDLK_KP_0, KEY_KEYPAD_0},
    {SDLK_KP_1, numbered(KEY_KEYPAD_0, 1)},
    {SDLK_KP_2, numbered(KEY_KEYPAD_0, 2)},
    {SDLK_KP_3, numbered(KEY_KEYPAD_0, 3)},
    {SDLK_KP_4, numbered(KEY_KEYPAD_0, 4)},
    {SDLK_KP_5, numbered(KEY_KEYPAD_0, 5)},
    {SDLK_KP_6, numbered(KEY_KEYPAD_0, 6)},
    {SDLK_KP_7, numbered(KEY_KEYPAD_0, 7)},
    {SDLK_KP_8, numbered(KEY_KEYPAD_0, 8)},
    {SDLK_KP_9, KEY_KEYPAD_9},
    {SDLK_F1, KEY_F1},
    {SDLK_F2, numbered(KEY_F1, 1)},
    {SDLK_F3, numbered(KEY_F1, 2)},
    {SDLK_F4, numbered(KEY_F1, 3)},
    {SDLK_F5, numbered(KEY_F1, 4)},
    {SDLK_F6, numbered(KEY_F1, 5)},
    {SDLK_F7, numbered(KEY_F1, 6)},
    {SDLK_F8, numbered(KEY_F1, 7)},
    {SDLK_F9, numbered(KEY_F1, 8)},
    {SDLK_F10, numbered(KEY_F1, 9)},
    {SDLK_F11, numbered(KEY_F1, 10)},
    {SDLK_F12, KEY_F12},
    {SDLK_LSHIFT, KEY_SHIFT_LEFT},
    {SDLK_RSHIFT, KEY_SHIFT_RIGHT},
    {SDLK_LCTRL, KEY_CONTROL},
    {SDLK_RCTRL, KEY_CONTROL},
    {SDLK_LGUI, KEY_COMMAND},
    {SDLK_RGUI, KEY_COMMAND},
    {SDLK_LALT, KEY_ALT},
    {SDLK_RALT, KEY_ALT},
};

}  // namespace

KEY_TYPE KEYBOARD::get_key_ascii(KEY_TYPE key, KEYBOARD_CONVERSION conversion) {
    const bool from_native = conversion == KEYBOARD_FROM_NATIVE;
    for (const KEY_PAIR& pair : KEY_PAIRS) {
        if (key == (from_native ? pair.native : static_cast<std::int32_t>(pair.key))) {
            return from_native ? pair.key : static_cast<KEY_TYPE>(pair.native);
        }
    }
    return KEY_NONE;
}
