// KEYBOARD: what the user pressed and typed, kept for whoever polls it.
//
// The instances share one state, which lives as long as there is an instance; the window layer
// keeps one. For the main thread only.
#ifndef PLATFORM_KEYBOARD_H
#define PLATFORM_KEYBOARD_H

#include <cstdint>

// Any other value of the underlying type may stand for a native key code, see get_key_ascii.
enum KEY_TYPE : std::int32_t {
    KEY_NONE = 0,
    KEY_ESCAPE = 1,
    KEY_TAB = 2,
    KEY_BACKSPACE = 3,
    KEY_ENTER = 4,  // the keypad's
    KEY_RETURN = 5,
    KEY_INSERT = 6,
    KEY_DELETE = 7,
    KEY_HOME = 8,
    KEY_END = 9,
    KEY_PAGE_UP = 10,
    KEY_PAGE_DOWN = 11,
    KEY_LEFT = 12,
    KEY_RIGHT = 13,
    KEY_UP = 14,
    KEY_DOWN = 15,
    KEY_KEYPAD_CLEAR = 16,
    KEY_KEYPAD_DIVIDE = 17,
    KEY_KEYPAD_MULTIPLY = 18,
    KEY_KEYPAD_MINUS = 19,
    KEY_KEYPAD_PLUS = 20,
    KEY_KEYPAD_POINT = 21,
    KEY_KEYPAD_0 = 22,  // to 31 for the digit 9
    KEY_KEYPAD_9 = 31,
    KEY_F1 = 32,  // to 43 for F12
    KEY_F12 = 43,
    KEY_SHIFT_LEFT = 44,
    KEY_SHIFT_RIGHT = 45,
    KEY_CONTROL = 46,
    KEY_SHIFT = 47,
    KEY_COMMAND = 48,
    KEY_ALT = 49,
};
inline constexpr std::int32_t KEY_TYPE_COUNT = 50;

enum KEYBOARD_CONVERSION : std::int32_t {
    KEYBOARD_FROM_NATIVE = 0,
    KEYBOARD_TO_NATIVE = 1,
};

// Bits of KEYBOARD::set_modifiers.
enum KEYBOARD_MODIFIER : std::uint32_t {
    KEYBOARD_MODIFIER_SHIFT = 1,
    KEYBOARD_MODIFIER_CONTROL = 2,  // Control or Command
    KEYBOARD_MODIFIER_ALT = 4,
};

class KEYBOARD {
public:
    KEYBOARD();
    ~KEYBOARD();
    KEYBOARD(const KEYBOARD&) : KEYBOARD() {}
    KEYBOARD& operator=(const KEYBOARD&) { return *this; }

    // --- For those who poll ---

    // The last key pressed, KEY_NONE if there is none; reads and clears it and its mark as down.
    KEY_TYPE get_code();
    // The same without clearing.
    KEY_TYPE peek_code() const;
    // 1 if the key is marked as down: pressed and not yet read by get_code, or, for KEY_CONTROL,
    // KEY_SHIFT, KEY_COMMAND and KEY_ALT, held now. 0 for a code outside 1 to 49.
    unsigned char get_key_value(KEY_TYPE key) const;
    // The oldest character, 0 if there is none; reads and removes it. Characters are of the
    // system's 8-bit text. While KEY_COMMAND is down the letters, digits and signs are those of the
    // keys, in lower case: shortcuts, not text.
    unsigned char get_char();
    unsigned char peek_char() const;
    // Forgets the last key, its mark, and all characters.
    void clear_buffer();
    // Room for that many characters, at least 1; 10 at first. What is in the buffer goes.
    void set_buffer_sz(std::int32_t size);

    // --- For the event handlers; without an instance they do nothing ---

    // A key went down or repeats.
    static void process_key_event(KEY_TYPE key);
    // A character was typed: 13 is stored as 10, one above 255 as "?". `replace` overwrites the
    // last one instead of adding. A full buffer drops it.
    static void process_char_event(std::uint32_t character, unsigned char replace);
    // The modifier keys that are held now, of KEYBOARD_MODIFIER.
    static void set_modifiers(std::uint32_t bits);

    // Converts a key code of the operating system into one of the values above, or back; KEY_NONE
    // where there is no counterpart.
    static KEY_TYPE get_key_ascii(KEY_TYPE key, KEYBOARD_CONVERSION conversion);

    // Sees each key first; true drops it. Null for none.
    static bool (*handle_global_keypress_callback)(KEY_TYPE key);
    // get_ms_count() at the last key.
    static std::uint32_t last_event_time;
};

#endif  // PLATFORM_KEYBOARD_H
