// Keyboard, mouse and clipboard, by themselves and from the event queue.
#include "platform/debug_stream.h"
#include "platform/global_input.h"
#include "platform/orln_string.h"
#include "platform/process_tools.h"
#include "window_fixture.h"

namespace {

using KEYBOARD_TEST = WINDOW_TEST;
using MOUSE_TEST = WINDOW_TEST;
using CLIPBOARD_TEST = WINDOW_TEST;

KEY_TYPE from_native(SDL_Keycode key) {
    return KEYBOARD::get_key_ascii(static_cast<KEY_TYPE>(key), KEYBOARD_FROM_NATIVE);
}

TEST_F(KEYBOARD_TEST, KeysStayUntilRead) {
    KEYBOARD keyboard;
    EXPECT_EQ(KEY_NONE, keyboard.get_code());
    KEYBOARD::process_key_event(KEY_LEFT);
    EXPECT_EQ(1, keyboard.get_key_value(KEY_LEFT));
    EXPECT_EQ(KEY_LEFT, keyboard.peek_code());
    {
        KEYBOARD other;  // the same keyboard
        EXPECT_EQ(KEY_LEFT, other.get_code());
    }
    EXPECT_EQ(KEY_NONE, keyboard.get_code());
    EXPECT_EQ(0, keyboard.get_key_value(KEY_LEFT));
    KEYBOARD::process_key_event(KEY_LEFT);
    KEYBOARD::process_key_event(KEY_TAB);
    EXPECT_EQ(0, keyboard.get_key_value(KEY_LEFT)) << "only the last one is down";
    keyboard.clear_buffer();
    EXPECT_EQ(KEY_NONE, keyboard.peek_code());
    EXPECT_EQ(0, keyboard.get_key_value(KEY_TAB));
    for (const int outside : {-1, 0, 50, 0x40000050}) {
        EXPECT_EQ(0, keyboard.get_key_value(static_cast<KEY_TYPE>(outside)));
        KEYBOARD::process_key_event(static_cast<KEY_TYPE>(outside));
    }
    KEYBOARD::process_key_event(KEY_NONE);
}

TEST_F(KEYBOARD_TEST, ModifiersAreIndependentOfKeys) {
    KEYBOARD keyboard;
    const auto held = [&] {
        std::string result;
        for (const KEY_TYPE key : {KEY_SHIFT, KEY_CONTROL, KEY_COMMAND, KEY_ALT}) {
            result += keyboard.get_key_value(key) ? '1' : '0';
        }
        return result;
    };
    const char* const expected[] = {"0000", "1000", "0110", "1110", "0001", "1001", "0111", "1111"};
    for (std::uint32_t bits = 0; bits < 8; ++bits) {
        KEYBOARD::set_modifiers(bits);
        EXPECT_EQ(expected[bits], held()) << bits;
    }
    KEYBOARD::process_key_event(KEY_HOME);
    keyboard.get_code();
    keyboard.clear_buffer();
    EXPECT_EQ("1111", held());
}

TEST_F(KEYBOARD_TEST, GlobalCallbackSeesKeysFirst) {
    static int seen;
    seen = 0;
    KEYBOARD::handle_global_keypress_callback = [](KEY_TYPE key) {
        seen = key;
        return key == KEY_F1;
    };
    KEYBOARD::last_event_time = 0;
    KEYBOARD keyboard;
    KEYBOARD::process_key_event(KEY_F1);
    EXPECT_EQ(KEY_F1, seen);
    EXPECT_EQ(KEY_NONE, keyboard.get_code());
    EXPECT_NE(0u, KEYBOARD::last_event_time) << "a dropped key is input, too";
    KEYBOARD::process_key_event(KEY_F12);
    EXPECT_EQ(KEY_F12, keyboard.get_code());
    KEYBOARD::handle_global_keypress_callback = nullptr;
}

TEST_F(KEYBOARD_TEST, CharactersQueueInTheirOrder) {
    KEYBOARD keyboard;
    keyboard.set_buffer_sz(10);
    for (int i = 0; i < 12; ++i) {
        KEYBOARD::process_char_event(static_cast<std::uint32_t>('a' + i), 0);
    }
    EXPECT_EQ("abcdefghij", typed()) << "a full buffer drops what comes";
    KEYBOARD::process_char_event('x', 1);
    KEYBOARD::process_char_event('y', 0);
    KEYBOARD::process_char_event('z', 1);
    KEYBOARD::process_char_event('\r', 0);
    KEYBOARD::process_char_event(0xFF, 0);
    KEYBOARD::process_char_event(0x100, 0);
    EXPECT_EQ('x', keyboard.peek_char());
    EXPECT_EQ("xz\n\xFF?", typed());
    EXPECT_EQ(0, keyboard.get_char());
    keyboard.set_buffer_sz(0);
    KEYBOARD::process_char_event('a', 0);
    KEYBOARD::process_char_event('b', 0);
    EXPECT_EQ("a", typed());
    keyboard.set_buffer_sz(512);
    for (int i = 0; i < 600; ++i) {
        KEYBOARD::process_char_event('c', 0);
    }
    EXPECT_EQ(512u, typed().size());
}

TEST_F(KEYBOARD_TEST, StateLivesAsLongAsAnInstance) {
    stop_window_platform();
    KEYBOARD::process_key_event(KEY_UP);
    KEYBOARD::process_char_event('a', 0);
    KEYBOARD::set_modifiers(7);
    {
        KEYBOARD keyboard;
        EXPECT_EQ(KEY_NONE, keyboard.get_code());
        EXPECT_EQ(0, keyboard.get_char());
        EXPECT_EQ(0, keyboard.get_key_value(KEY_ALT));
        KEYBOARD::process_char_event('b', 0);
        const KEYBOARD copy(keyboard);
        EXPECT_EQ('b', copy.peek_char());
    }
    EXPECT_EQ("", typed());
}

TEST_F(KEYBOARD_TEST, EveryValueHasANativeKey) {
    for (int value = 1; value < KEY_TYPE_COUNT; ++value) {
        const auto key = static_cast<KEY_TYPE>(value);
        const KEY_TYPE native = KEYBOARD::get_key_ascii(key, KEYBOARD_TO_NATIVE);
        if (key == KEY_SHIFT) {  // either of the two keys
            EXPECT_EQ(KEY_NONE, native);
            continue;
        }
        EXPECT_NE(KEY_NONE, native) << value;
        EXPECT_EQ(key, KEYBOARD::get_key_ascii(native, KEYBOARD_FROM_NATIVE)) << value;
    }
    EXPECT_EQ(10, from_native(SDLK_PAGEUP));
    EXPECT_EQ(15, from_native(SDLK_DOWN));
    EXPECT_EQ(21, from_native(SDLK_KP_PERIOD));
    EXPECT_EQ(27, from_native(SDLK_KP_5));
    EXPECT_EQ(41, from_native(SDLK_F10));
    EXPECT_EQ(KEY_NONE, from_native(SDLK_a));
    EXPECT_EQ(KEY_NONE, KEYBOARD::get_key_ascii(static_cast<KEY_TYPE>(77), KEYBOARD_TO_NATIVE));
}

TEST_F(KEYBOARD_TEST, KeyEventsAreTranslated) {
    open(0, 200, 100);
    settle();
    KEYBOARD keyboard;
    GLOBAL_INPUT::record_input(0);
    take_after(key(SDLK_LEFT, KMOD_LSHIFT | KMOD_RCTRL));
    EXPECT_EQ(1, keyboard.get_key_value(KEY_SHIFT));
    EXPECT_EQ(1, keyboard.get_key_value(KEY_COMMAND));
    EXPECT_EQ(0, keyboard.get_key_value(KEY_ALT));
    EXPECT_EQ(KEY_LEFT, keyboard.get_code());
    EXPECT_NE(0u, GLOBAL_INPUT::get_last_input_time());
    SDL_Event repeat = key(SDLK_LEFT);
    repeat.key.repeat = 1;
    take_after(repeat);
    EXPECT_EQ(KEY_LEFT, keyboard.get_code());
    EXPECT_EQ(0, keyboard.get_key_value(KEY_SHIFT));
    // A modifier by itself, and a key's release, only change the modifiers.
    take_after(key(SDLK_LALT, KMOD_LALT));
    EXPECT_EQ(1, keyboard.get_key_value(KEY_ALT));
    take_after(key(SDLK_LALT, KMOD_NONE, false));
    EXPECT_EQ(0, keyboard.get_key_value(KEY_ALT));
    take_after(key(SDLK_UP, KMOD_NONE, false));
    EXPECT_EQ(KEY_NONE, keyboard.get_code());
    EXPECT_EQ("", typed());
    // Both Return keys type a line feed.
    take_after(key(SDLK_RETURN));
    EXPECT_EQ(KEY_RETURN, keyboard.get_code());
    take_after(key(SDLK_KP_ENTER));
    EXPECT_EQ(KEY_ENTER, keyboard.get_code());
    EXPECT_EQ("\n\n", typed());
    // The keypad follows Num Lock.
    take_after(key(SDLK_KP_7, KMOD_NUM));
    EXPECT_EQ(KEY_KEYPAD_0 + 7, keyboard.get_code());
    const KEY_TYPE under[] = {
        KEY_END,   KEY_DOWN, KEY_PAGE_DOWN, KEY_LEFT,   static_cast<KEY_TYPE>(27),
        KEY_RIGHT, KEY_HOME, KEY_UP,        KEY_PAGE_UP};
    for (int i = 0; i < 9; ++i) {
        take_after(key(SDLK_KP_1 + i));
        EXPECT_EQ(under[i], keyboard.get_code()) << i;
    }
    take_after(key(SDLK_KP_0));
    EXPECT_EQ(KEY_INSERT, keyboard.get_code());
    take_after(key(SDLK_KP_PERIOD));
    EXPECT_EQ(KEY_DELETE, keyboard.get_code());
}

TEST_F(KEYBOARD_TEST, TextAndShortcutsComeAsCharacters) {
    open(0, 200, 100);
    settle();
    KEYBOARD().set_buffer_sz(100);
    take_after({key(SDLK_a), text("a"), text("\xC3\xA9\xE2\x82\xAC!")}, 0);
    EXPECT_EQ("a\xE9?!", typed());
    EXPECT_EQ(KEY_NONE, KEYBOARD().get_code());
    // Some keys have a text in spite of Control; it doesn't count twice.
    take_after({key(SDLK_LCTRL, KMOD_LCTRL), key(SDLK_v, KMOD_LCTRL), key(SDLK_1, KMOD_LCTRL),
                text("1"), key(SDLK_z, KMOD_LCTRL | KMOD_LSHIFT)},
               0);
    EXPECT_EQ("v1z", typed());
    EXPECT_EQ(1, KEYBOARD().get_key_value(KEY_COMMAND));
    take_after({key(SDLK_LCTRL, KMOD_NONE, false), key(SDLK_q), text("q")}, 0);
    EXPECT_EQ("q", typed());
    // A layout's third level that looks like Control and Alt is text.
    take_after({key(SDLK_q, KMOD_LCTRL | KMOD_RALT), text("@")}, 0);
    EXPECT_EQ("@", typed());
}

TEST_F(KEYBOARD_TEST, QuickKeysAreSeenOneByOne) {
    open(0, 200, 100);
    settle();
    KEYBOARD keyboard;
    take_after({key(SDLK_TAB), key(SDLK_TAB, KMOD_NONE, false), key(SDLK_a), text("a"),
                key(SDLK_RETURN), key(SDLK_RETURN, KMOD_NONE, false)},
               0);
    EXPECT_EQ(KEY_TAB, keyboard.get_code());
    EXPECT_EQ("", typed());
    process_os_events();
    EXPECT_EQ(KEY_NONE, keyboard.get_code());
    EXPECT_EQ("a", typed());
    process_os_events();
    EXPECT_EQ(KEY_RETURN, keyboard.get_code());
    typed();
    // What is held with a key is held for as long as the application looks.
    take_after({key(SDLK_LSHIFT, KMOD_LSHIFT), key(SDLK_TAB, KMOD_LSHIFT),
                key(SDLK_TAB, KMOD_LSHIFT, false), key(SDLK_LSHIFT, KMOD_NONE, false)},
               0);
    EXPECT_EQ(1, keyboard.get_key_value(KEY_SHIFT));
    EXPECT_EQ(KEY_TAB, keyboard.get_code());
    process_os_events();
    EXPECT_EQ(0, keyboard.get_key_value(KEY_SHIFT));
}

TEST_F(MOUSE_TEST, ButtonsAreBits) {
    static std::string navigated;
    navigated.clear();
    MOUSE::handle_navigation_left_callback = [] { navigated += '<'; };
    MOUSE::handle_navigation_right_callback = [] { navigated += '>'; };
    for (std::int16_t number = 1; number <= 5; ++number) {
        MOUSE::process_mouse_button(number, 1);
    }
    EXPECT_EQ(0x1F, MOUSE::buttons);
    EXPECT_EQ("", navigated);
    MOUSE::process_mouse_button(2, 0);
    EXPECT_EQ(0x1D, MOUSE::buttons);
    EXPECT_FALSE(MOUSE::is_down(MOUSE_BUTTON_RIGHT));
    EXPECT_TRUE(MOUSE::is_down(MOUSE_BUTTON_MIDDLE));
    MOUSE::process_mouse_button(5, 0);
    MOUSE::process_mouse_button(4, 0);
    EXPECT_EQ("><", navigated);
    for (const int outside : {-1, 0, 9}) {
        MOUSE::process_mouse_button(static_cast<std::int16_t>(outside), 1);
    }
    EXPECT_EQ(0x05, MOUSE::buttons);
    MOUSE::release_all();
    EXPECT_EQ(0, MOUSE::buttons);
    EXPECT_EQ("><", navigated);
    MOUSE::handle_navigation_left_callback = MOUSE::handle_navigation_right_callback = nullptr;
}

TEST_F(MOUSE_TEST, EventsAreTranslated) {
    void* main = open(0, 200, 100);
    const std::uint32_t id = last_id();
    settle();
    MOUSE::last_event_time = 0;
    take_after(motion(id, 12, 34));
    EXPECT_EQ(12, MOUSE::x);
    EXPECT_EQ(34, MOUSE::y);
    EXPECT_EQ(0, MOUSE::window);
    EXPECT_NE(0u, MOUSE::last_event_time);
    MOUSE::last_event_time = 0;
    take_after(motion(id, 12, 34));
    EXPECT_EQ(0u, MOUSE::last_event_time) << "nothing has moved";

    const struct {
        int sdl;
        std::int16_t number;
    } buttons[] = {{SDL_BUTTON_LEFT, 1},
                   {SDL_BUTTON_RIGHT, 2},
                   {SDL_BUTTON_MIDDLE, 3},
                   {SDL_BUTTON_X1, 4},
                   {SDL_BUTTON_X2, 5}};
    for (const auto& b : buttons) {
        const TOLD told = take_after(button(id, b.sdl, true, 20, 30));
        EXPECT_EQ("focal 0", told.empty() ? "" : told[0]);
        EXPECT_EQ(1 << (b.number - 1), MOUSE::buttons);
        EXPECT_EQ(20, MOUSE::x);
        take_after(button(id, b.sdl, false, 21, 30));
        EXPECT_EQ(0, MOUSE::buttons);
        EXPECT_EQ(21, MOUSE::x);
    }
    take_after(button(id, 9, true, 0, 0));
    EXPECT_EQ(0, MOUSE::buttons);

    SDL_Event wheel = {};
    wheel.type = SDL_MOUSEWHEEL;
    wheel.wheel.y = 3;
    take_after(wheel);
    wheel.wheel.y = -1;
    take_after(wheel);
    EXPECT_EQ(2, MOUSE::wheel_pos);
    EXPECT_EQ(main, application.focal);
}

TEST_F(MOUSE_TEST, QuickClickIsSeenDownAndUp) {
    open(0, 200, 100);
    const std::uint32_t id = last_id();
    settle();
    // All of it waits when the application comes to look.
    take_after({motion(id, 5, 6), button(id, SDL_BUTTON_LEFT, true, 5, 6),
                button(id, SDL_BUTTON_LEFT, false, 5, 6), motion(id, 90, 6)},
               0);
    EXPECT_TRUE(MOUSE::is_down(MOUSE_BUTTON_LEFT));
    process_os_events();
    EXPECT_EQ(0, MOUSE::buttons);
    EXPECT_EQ(5, MOUSE::x) << "it is released where it was";
    process_os_events();
    EXPECT_EQ(90, MOUSE::x);
}

TEST_F(MOUSE_TEST, PointerBelongsToTheFocalOrAFloatingWindow) {
    open(0, 200, 100);
    const std::uint32_t main_id = last_id();
    open(1, 200, 100);
    const std::uint32_t child_id = last_id();
    open(3, 50, 50);
    const std::uint32_t alert_id = last_id();
    settle();
    application.focal = application.handles[0];
    take_after(motion(main_id, 5, 6));
    EXPECT_EQ(0, MOUSE::window);
    take_after(motion(child_id, 7, 8));
    EXPECT_EQ(-1, MOUSE::window);
    EXPECT_EQ(-1, MOUSE::x);
    take_after(motion(alert_id, 9, 10));
    EXPECT_EQ(3, MOUSE::window);
    EXPECT_EQ(9, MOUSE::x);
    // A press makes the window focal before the position counts.
    take_after(button(child_id, SDL_BUTTON_LEFT, true, 7, 8));
    EXPECT_EQ(1, MOUSE::window);
    EXPECT_EQ(7, MOUSE::x);
    // While the button is held a drag may leave the window.
    take_after(window_event(child_id, SDL_WINDOWEVENT_LEAVE));
    EXPECT_EQ(7, MOUSE::x);
    take_after(motion(child_id, -20, 400));
    EXPECT_EQ(-20, MOUSE::x);
    take_after(button(child_id, SDL_BUTTON_LEFT, false, 9, 9));
    take_after(window_event(main_id, SDL_WINDOWEVENT_LEAVE));
    EXPECT_EQ(9, MOUSE::x) << "another window's";
    take_after(window_event(child_id, SDL_WINDOWEVENT_LEAVE));
    EXPECT_EQ(-1, MOUSE::x);
    // What is held when the program loses the keyboard counts as released.
    take_after(button(child_id, SDL_BUTTON_LEFT, true, 7, 8));
    KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_SHIFT);
    take_after(window_event(child_id, SDL_WINDOWEVENT_FOCUS_LOST));
    EXPECT_EQ(0, MOUSE::buttons);
    EXPECT_EQ(0, KEYBOARD().get_key_value(KEY_SHIFT));
    take_after(button(child_id, SDL_BUTTON_LEFT, true, 7, 8));
    close_window(application.handles[1]);
    EXPECT_EQ(-1, MOUSE::window);
    EXPECT_EQ(0, MOUSE::buttons);
}

TEST_F(CLIPBOARD_TEST, TextsPassInTheSystemsEncoding) {
    set_clipboard_text("");
    EXPECT_FALSE(is_text_in_clipboard());
    char buffer[8] = "before";
    get_clipboard_text(buffer, sizeof buffer);
    EXPECT_STREQ("", buffer);
    set_clipboard_text("\xE9t\xE9");
    EXPECT_TRUE(is_text_in_clipboard());
    get_clipboard_text(buffer, sizeof buffer);
    EXPECT_STREQ("\xE9t\xE9", buffer);
    SDL_SetClipboardText("1\xE2\x82\xAC 23456789");
    get_clipboard_text(buffer, sizeof buffer);
    EXPECT_STREQ("1? 2345", buffer) << "cut to the buffer";
    get_clipboard_text(buffer, 1);
    EXPECT_STREQ("", buffer);
    set_clipboard_text(nullptr);
    get_clipboard_text(nullptr, 10);
    get_clipboard_text(buffer, 0);
    EXPECT_TRUE(is_text_in_clipboard());
}

TEST_F(CLIPBOARD_TEST, StringsOfAnyLengthPass) {
    ORLN_STRING text(std::string(20'000, '\xE9').c_str());
    text.copy_into_clipboard();
    ORLN_STRING other("before");
    other.copy_from_clipboard();
    EXPECT_TRUE(other == text) << other.get_length();
    set_clipboard_text("");
    other.copy_from_clipboard();
    EXPECT_TRUE(other.is_empty());
}

// The box is shown by the hook alone, and only after the line on standard error.
TEST(MESSAGE_BOX, GetsTheTextsCut) {
    static std::string shown;
    shown.clear();
    set_message_box([](const char* title, const char* box_text) {
        shown = std::string(title) + "|" + box_text;
        return true;
    });
    testing::internal::CaptureStderr();
    display_message("Warning", "one\ntwo", 1);
    EXPECT_EQ("Warning: one two\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ("Warning|one\ntwo", shown);
    set_message_box(nullptr);
}

}  // namespace
