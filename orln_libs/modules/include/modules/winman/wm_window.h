// WM_WINDOW: a platform window of the toolkit, its sizes, its place and its state.
#ifndef MODULES_WINMAN_WM_WINDOW_H
#define MODULES_WINMAN_WM_WINDOW_H

#include <cstdint>

#include "platform/open_graphics.h"

class IMAGE;
struct OPEN_GRAPHICS_SETTINGS;

class WM_WINDOW {
public:
    enum STATE : std::int32_t { CLOSED = 0, SHOWN = 1, HIDDEN = 2, MINIMISED = 3 };

    using STATE_CALLBACK = void (*)(signed char first, signed char second);

    WM_WINDOW(signed char index, OPEN_GRAPHICS_SIZES size, OPEN_GRAPHICS_SIZES min,
              OPEN_GRAPHICS_SIZES extended_min, OPEN_GRAPHICS_SIZES max, unsigned char extended);
    WM_WINDOW(const WM_WINDOW&) = delete;
    WM_WINDOW& operator=(const WM_WINDOW&) = delete;
    // The platform window must have been closed.
    ~WM_WINDOW() = default;

    // Opens the platform window, or opens it anew with other settings, and takes over the size that
    // it got. The form with a title shows a window of that size at the place that is stored. False,
    // and the window as it was, if the platform refuses.
    bool open(OPEN_GRAPHICS_SETTINGS& settings);
    bool open(const char* title, OPEN_GRAPHICS_SIZES size, unsigned char full_screen);
    void close();
    void hide();
    // Calls restore_callback if the window was minimised.
    void show();
    // Calls minimise_callback.
    void minimise();
    // Keeps the size.
    void move(std::int16_t new_x, std::int16_t new_y);
    // Stores a position without moving anything.
    void set_coordinates(std::int16_t new_x, std::int16_t new_y);
    // Where move_window_to_target_positions goes; the slide is due then.
    void set_target_positions(std::int16_t new_x, std::int16_t new_y);
    // Which minimum counts; the size is raised to it.
    void set_extended(unsigned char on);
    // Hands the window to the render manager; with `wait` until it is on the screen.
    void blit(unsigned char wait);
    // Asks for the user's attention; a count of 0 doesn't.
    void notify(signed char count);
    // Slides to the target, 2 pixels each 10 milliseconds.
    void move_window_to_target_positions();

    // Cut at the field's size; null clears.
    void set_title(const char* text);
    // An unset half of `extended_min` is taken from `min`.
    void set_min_dimensions(OPEN_GRAPHICS_SIZES min, OPEN_GRAPHICS_SIZES extended_min);
    // The minimum in force.
    OPEN_GRAPHICS_SIZES get_min_dimensions() const {
        return extended ? extended_min_dimensions : min_dimensions;
    }
    // The window's buffer; null if its slot has none.
    IMAGE* get_back_buffer() const;
    OPEN_GRAPHICS_SIZES get_size() const {
        return make_graphics_sizes(static_cast<std::uint16_t>(width),
                                   static_cast<std::uint16_t>(height));
    }
    // With the minimum in force for a side that isn't known yet.
    OPEN_GRAPHICS_SIZES get_size_or_minimum() const;
    void set_size(OPEN_GRAPHICS_SIZES size);

    OPEN_GRAPHICS_SIZES max_dimensions;
    std::int16_t width = -1, height = -1;  // -1 (65535 in 16 bits): not known
    OPEN_GRAPHICS_SIZES min_dimensions = 0, extended_min_dimensions = 0;
    std::int16_t target_x = -1, target_y = -1;  // where a slide ends; -1: none
    std::int16_t x = -1, y = -1;                // -1: the platform centres
    char title[100] = {};
    void* handle = nullptr;          // the platform's window; null when closed
    void* monitor_handle = nullptr;  // the platform's display
    STATE_CALLBACK minimise_callback = nullptr, restore_callback = nullptr;
    signed char callback_first = -1, callback_second = -1;
    std::int32_t state = CLOSED;
    bool extended;
    bool target_pending = false;  // a slide is due
    signed char index;

private:
    static std::int16_t step_towards(std::int16_t from, std::int16_t to);
};

#endif  // MODULES_WINMAN_WM_WINDOW_H
