// MOUSE: where the pointer is and which buttons are down, kept for whoever polls it.
//
// All instances are the same mouse. For the main thread only.
#ifndef PLATFORM_MOUSE_H
#define PLATFORM_MOUSE_H

#include <cstdint>

enum MOUSE_BUTTON : std::int16_t {
    MOUSE_BUTTON_LEFT = 1,
    MOUSE_BUTTON_RIGHT = 2,
    MOUSE_BUTTON_MIDDLE = 3,
    MOUSE_BUTTON_BACK = 4,
    MOUSE_BUTTON_FORWARD = 5,
};

class MOUSE {
public:
    // The position within the content of window `window`, outside of it while a button is held
    // there. All -1 while the pointer is over none of our windows, or over one that is neither
    // focal nor floating.
    static std::int16_t x, y;
    static char window;
    // get_ms_count() of the last change of position or buttons.
    static std::uint32_t last_event_time;
    // Bit n - 1 is set while button n is down.
    static unsigned char buttons;
    // Wheel steps, away from the user positive. Readers subtract what they have used.
    static std::int32_t wheel_pos;

    static bool is_down(std::int16_t button) {
        return button >= 1 && button <= 8 && ((buttons >> (button - 1)) & 1) != 0;
    }

    // --- For the event handlers ---

    // Stores a position that differs, with the time. True if it did differ.
    static bool set_position(char window, std::int16_t x, std::int16_t y);
    // Button 1 to 8 went down or up. The release of button 4 or 5 runs its callback. Any other
    // number does nothing.
    static void process_mouse_button(std::int16_t button, unsigned char down);
    // The buttons are up, and what they would have done on release isn't done.
    static void release_all();

    // Null for none.
    static void (*handle_navigation_left_callback)();
    static void (*handle_navigation_right_callback)();
};

#endif  // PLATFORM_MOUSE_H
