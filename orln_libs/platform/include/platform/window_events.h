// WINDOW_EVENTS: what the platform's windows ask of the application and tell it.
//
// The application implements this interface and installs it; the window layer calls it from
// process_os_events(), open_graphics(), close_window() and swap_screens(), on the main thread. A
// `window` is a handle that open_graphics() gave. Each operation has a neutral body, so that an
// application overrides what concerns it.
#ifndef PLATFORM_WINDOW_EVENTS_H
#define PLATFORM_WINDOW_EVENTS_H

#include <cstdint>

#include "platform/open_graphics.h"

class IMAGE;

class WINDOW_EVENTS {
public:
    virtual ~WINDOW_EVENTS() = default;

    // --- What happened ---

    virtual void handle_window_restored(void* /*window*/) {}
    virtual void handle_window_minimised(void* /*window*/) {}
    // The content has a new size. The back buffer still has the old one; handle_paint_window
    // follows.
    virtual void handle_window_resized(void* /*window*/, OPEN_GRAPHICS_SIZES /*size*/) {}
    virtual void handle_desktop_size_changed(OPEN_GRAPHICS_SIZES /*size*/) {}
    // The content is to be made good: called with the back buffer locked, and followed by the
    // presentation of the whole of it. `blit` is 0.
    virtual void handle_paint_window(void* /*window*/, unsigned char /*blit*/) {}
    // The user asked to close a window other than the main one.
    virtual void handle_window_closed(void* /*window*/) {}
    // The user asked to close the main window, or the desktop asks the program to end.
    virtual void handle_quit_request() {}
    virtual void handle_window_moved(void* /*window*/, std::int16_t /*x*/, std::int16_t /*y*/) {}
    // The user activated the window, or pressed a mouse button in it.
    virtual void set_focal_window(void* /*window*/) {}

    // --- What the windows need to know ---

    // The focal window's handle; null if there is none.
    virtual void* get_focal_window() { return nullptr; }
    // Limits of the user's resizing; a half that isn't given doesn't limit.
    virtual OPEN_GRAPHICS_SIZES get_window_minimum_size(void* /*window*/) {
        return NO_GRAPHICS_SIZES;
    }
    virtual OPEN_GRAPHICS_SIZES get_window_maximum_size(void* /*window*/) {
        return NO_GRAPHICS_SIZES;
    }
    // The lock around drawing into a back buffer. `thread` is 1 for the main thread; false if it
    // is taken and `wait` is 0.
    virtual bool lock_backbuffer(int /*index*/, int /*thread*/, unsigned char /*wait*/) {
        return true;
    }
    virtual void unlock_backbuffer(int /*index*/) {}
    // The back buffers; null for none. The application owns them.
    virtual IMAGE* get_window_backbuffer(void* /*window*/) { return nullptr; }
    virtual IMAGE* get_backbuffer_from_index(char /*index*/) { return nullptr; }
    // The platform's own record of a back buffer, kept by the application: set when the buffer is
    // made, null when it goes.
    virtual void* get_data_for_back_buffer(IMAGE* /*buffer*/) { return nullptr; }
    virtual void set_data_for_back_buffer(IMAGE* /*buffer*/, void* /*data*/) {}
    virtual char get_window_index(void* /*window*/) { return -1; }
    // The display mode that the program is in. While it is full screen the user can't resize.
    virtual bool get_is_full_screen() { return false; }
    virtual void set_is_full_screen(unsigned char /*full_screen*/) {}
    // Borderless windows, which aren't activated when they are shown.
    virtual bool is_floating_window(char /*index*/) { return false; }
    virtual bool is_handle_to_floating_window(void* /*window*/) { return false; }
    // Whether a full-screen mode belongs into the list of modes.
    virtual bool is_display_mode_suitable(std::int16_t /*refresh_rate*/, std::int16_t /*depth*/,
                                          std::int16_t /*width*/, std::int16_t /*height*/) {
        return true;
    }

    // While set, swap_screens() does nothing: something else draws the windows.
    static bool use_external_rendering;
};

// Installs the application's implementation, not owned; null takes it out. Without one, window
// events are dropped and only KEYBOARD and MOUSE follow the user.
void set_window_events(WINDOW_EVENTS* events);
WINDOW_EVENTS* get_window_events();

#endif  // PLATFORM_WINDOW_EVENTS_H
