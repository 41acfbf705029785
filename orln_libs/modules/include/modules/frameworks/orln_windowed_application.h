// ORLN_WINDOWED_APPLICATION: the interface of a program with windows.
#ifndef MODULES_FRAMEWORKS_ORLN_WINDOWED_APPLICATION_H
#define MODULES_FRAMEWORKS_ORLN_WINDOWED_APPLICATION_H

#include <cstdint>

#include "platform/window_events.h"

// What the platform's windows ask and tell, of which a program has to answer everything but
// handle_quit_request. Windows are named by the platform's handle. Main thread only.
class ORLN_WINDOWED_APPLICATION : public WINDOW_EVENTS {
public:
    void handle_window_restored(void* window) override = 0;
    void handle_window_minimised(void* window) override = 0;
    void handle_window_resized(void* window, OPEN_GRAPHICS_SIZES size) override = 0;
    void handle_desktop_size_changed(OPEN_GRAPHICS_SIZES size) override = 0;
    OPEN_GRAPHICS_SIZES get_window_minimum_size(void* window) override = 0;
    OPEN_GRAPHICS_SIZES get_window_maximum_size(void* window) override = 0;
    // With `blit` the window is only shown with its new background. Without it its back buffer is
    // made anew at the window's size, and the pages with it.
    void handle_paint_window(void* window, unsigned char blit) override = 0;
    bool lock_backbuffer(int index, int thread, unsigned char wait) override = 0;
    void unlock_backbuffer(int index) override = 0;
    void set_focal_window(void* window) override = 0;
    void* get_focal_window() override = 0;
    IMAGE* get_window_backbuffer(void* window) override = 0;
    void* get_data_for_back_buffer(IMAGE* back_buffer) override = 0;
    void set_data_for_back_buffer(IMAGE* back_buffer, void* data) override = 0;
    IMAGE* get_backbuffer_from_index(char index) override = 0;
    void handle_window_closed(void* window) override = 0;
    char get_window_index(void* window) override = 0;
    bool get_is_full_screen() override = 0;
    void set_is_full_screen(unsigned char on) override = 0;
    void handle_window_moved(void* window, std::int16_t x, std::int16_t y) override = 0;
    bool is_floating_window(char index) override = 0;
    bool is_handle_to_floating_window(void* window) override = 0;
    bool is_display_mode_suitable(std::int16_t refresh_rate, std::int16_t depth, std::int16_t width,
                                  std::int16_t height) override = 0;
    // The full-screen mode in force, or the default one.
    virtual DISPLAY_SETTINGS get_display_settings() = 0;
    // Nothing can be painted yet.
    virtual bool abort_window_redraw() = 0;

    // The running application, if it is one with windows; else null.
    static ORLN_WINDOWED_APPLICATION* get_instance();

    // Some window has been shown.
    static bool first_window_drawn;
};

#endif  // MODULES_FRAMEWORKS_ORLN_WINDOWED_APPLICATION_H
