#include "platform/mouse.h"

#include "platform/process_tools.h"

std::int16_t MOUSE::x = -1;
std::int16_t MOUSE::y = -1;
char MOUSE::window = -1;
std::uint32_t MOUSE::last_event_time = 0;
unsigned char MOUSE::buttons = 0;
std::int32_t MOUSE::wheel_pos = 0;
void (*MOUSE::handle_navigation_left_callback)() = nullptr;
void (*MOUSE::handle_navigation_right_callback)() = nullptr;

bool MOUSE::set_position(char new_window, std::int16_t new_x, std::int16_t new_y) {
    if (new_window == window && new_x == x && new_y == y) {
        return false;
    }
    window = new_window;
    x = new_x;
    y = new_y;
    last_event_time = get_ms_count();
    return true;
}

void MOUSE::process_mouse_button(std::int16_t button, unsigned char down) {
    if (button < 1 || button > 8) {
        return;
    }
    const unsigned bit = 1u << (button - 1);
    last_event_time = get_ms_count();
    if (down) {
        buttons = static_cast<unsigned char>(buttons | bit);
        return;
    }
    buttons = static_cast<unsigned char>(buttons & ~bit);
    if (button == MOUSE_BUTTON_BACK && handle_navigation_left_callback) {
        handle_navigation_left_callback();
    } else if (button == MOUSE_BUTTON_FORWARD && handle_navigation_right_callback) {
        handle_navigation_right_callback();
    }
}

void MOUSE::release_all() {
    if (buttons != 0) {
        buttons = 0;
        last_event_time = get_ms_count();
    }
}
