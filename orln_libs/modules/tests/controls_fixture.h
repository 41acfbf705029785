// A page with controls, and a user who moves the mouse and presses keys.
#ifndef MODULES_TESTS_CONTROLS_FIXTURE_H
#define MODULES_TESTS_CONTROLS_FIXTURE_H

#include <cstdint>
#include <string>
#include <vector>

#include "modules/winman/style_set.h"
#include "modules/winman/wm_button.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "winman_fixture.h"

// The first object on the page: in its update it replaces the clock and the blink phases, for the
// objects behind it.
class TEST_CLOCK : public WM_SCREEN_OBJECT {
public:
    TEST_CLOCK() : WM_SCREEN_OBJECT(1, nullptr, nullptr, nullptr, 0) {}
    WM_MESG update(unsigned char /*modal_pass*/) override {
        now_ms = time;
        flashing_flags = phases;
        return WM_MESG_NONE;
    }
    static inline std::uint32_t time = 0;
    static inline std::uint16_t phases = 0;
};

class CONTROLS_FIXTURE : public WINMAN_FIXTURE {
protected:
    static constexpr COLOUR FACE = 0xFF204060u, TEXT = COLOUR_WHITE, HIGHLIGHT = COLOUR_RED;

    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        style.fg_colour = TEXT;
        style.bg_colour = FACE;
        style.highlight_colour = HIGHLIGHT;
        style.font = NO_FONT;
        style.font_x_sz = style.font_y_sz = 10;
        WM_SCREEN_OBJECT::hint_delay_time = 500;
        WM_SCREEN_OBJECT::now_ms = TEST_CLOCK::time = 1000;
        area().add_object(new TEST_CLOCK, 0);
        calls = 0;
        result = WM_MESG_NONE;
        pages().set_background_colour(COLOUR_BLACK);
        draw_all();
    }
    void TearDown() override {
        KEYBOARD().clear_buffer();
        FONT_MANAGER::get_instance().free_font(-1);
        WINMAN_FIXTURE::TearDown();
    }

    // A font that isn't there: its texts are as wide as they have characters, and not drawn.
    static constexpr signed char NO_FONT = 100;

    // From now on the style has a real font.
    void use_font() {
        DISK_MANAGER folder;
        ASSERT_TRUE(folder.move_down("/usr/share/fonts/opentype/inter", false, true));
        style.font = FONT_MANAGER::get_instance().load_font("Inter-Bold.otf", -1, &folder);
        ASSERT_GE(style.font, 0) << "the package fonts-inter is needed";
        style.font_x_sz = style.font_y_sz = 16;
    }

    WM_BUTTON* add_button(int x1, int y1, int x2, int y2, unsigned char events = 2,
                          const char* title = "", WM_CALLBACK callback = count) {
        auto* button =
            new WM_BUTTON(static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
                          static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2), style,
                          title, nullptr, callback, this, nullptr, events, 0, 1, 0);
        area().add_object(button, 0);
        return button;
    }

    // What the callback of add_button does.
    static WM_MESG count(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
        auto& test = *static_cast<CONTROLS_FIXTURE*>(data1);
        ++test.calls;
        test.was_final =
            (object->type_flags & WMF_BUTTON) && static_cast<WM_BUTTON*>(object)->final_event;
        return test.result;
    }

    // One pass of input at a later time.
    WM_MESG tick(std::uint32_t ms = 15) {
        WM_SCREEN_OBJECT::now_ms += ms;
        manager().mouse_icon = 0;
        return area().monitor();
    }
    // One pass of updates at a later time.
    WM_MESG update(std::uint32_t ms, std::uint16_t phases = 0) {
        TEST_CLOCK::time += ms;
        TEST_CLOCK::phases = phases;
        return area().update(0);
    }
    WM_MESG point(int px, int py) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), static_cast<std::int16_t>(py));
        return tick();
    }
    WM_MESG press(std::int16_t button = MOUSE_BUTTON_LEFT) {
        MOUSE::process_mouse_button(button, 1);
        return tick();
    }
    WM_MESG release(std::int16_t button = MOUSE_BUTTON_LEFT) {
        MOUSE::process_mouse_button(button, 0);
        return tick();
    }
    static void type(KEY_TYPE key) { KEYBOARD::process_key_event(key); }
    static void type_space() {
        KEYBOARD::process_key_event(static_cast<KEY_TYPE>(1000));
        KEYBOARD::process_char_event(' ', 0);
    }
    // Rectangles are waiting to be drawn; forgets them.
    static bool take_redraw() {
        const bool waiting = info().pending_count != 0;
        info().clear_pending_update_regions();
        return waiting;
    }
    void draw() { pages().check_for_draw(); }

    // The pixels of a colour in a rectangle, corners included.
    static int count_pixels(int x1, int y1, int x2, int y2, COLOUR colour) {
        int found = 0;
        for (int y = y1; y <= y2; ++y) {
            for (int x = x1; x <= x2; ++x) {
                found += pixel(x, y) == colour ? 1 : 0;
            }
        }
        return found;
    }

    WM_STYLE_SET style;
    int calls = 0;
    bool was_final = false;
    WM_MESG result = WM_MESG_NONE;
};

#endif  // MODULES_TESTS_CONTROLS_FIXTURE_H
