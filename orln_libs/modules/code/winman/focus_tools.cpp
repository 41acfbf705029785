#include "modules/winman/focus_tools.h"

#include "modules/winman/screen_object.h"
#include "platform/image.h"
#include "platform/keyboard.h"

bool take_click_key(const WM_SCREEN_OBJECT& object) {
    KEYBOARD keyboard;
    const bool control = keyboard.get_key_value(KEY_CONTROL) != 0;
    if (control && object.right_callback != nullptr) {
        return false;
    }
    bool clicked = keyboard.get_key_value(KEY_RETURN) || keyboard.get_key_value(KEY_ENTER);
    if (clicked) {
        keyboard.get_code();
    }
    if (control || keyboard.get_key_value(KEY_COMMAND) || keyboard.get_key_value(KEY_ALT)) {
        return clicked;  // the characters are shortcuts
    }
    while (const unsigned char character = keyboard.get_char()) {
        if (character == ' ') {
            clicked = true;
            // Its key has no name of its own.
            const KEY_TYPE code = keyboard.peek_code();
            if (code < KEY_NONE || code >= KEY_TYPE_COUNT) {
                keyboard.get_code();
            }
        }
    }
    return clicked;
}

void draw_focus_frame(WM_SCREEN_OBJECT& object, COLOUR colour) {
    IMAGE* buffer = object.get_back_buffer(-1);
    if (buffer != nullptr && object.width > 0 && object.height > 0) {
        buffer->draw_rect(object.x, object.y, object.x + object.width - 1,
                          object.y + object.height - 1, colour, 1, 1);
    }
}
