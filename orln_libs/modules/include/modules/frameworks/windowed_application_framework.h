// WINDOWED_APPLICATION_FRAMEWORK: the part of the chain that knows about windows.
//
// It owns the skin and the window manager, holds the sizes that windows are opened with, and
// forwards the platform's window events to the window manager. Without a window nothing of it needs
// a display.
#ifndef MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H
#define MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H

#include <memory>

#include "modules/frameworks/base_application_framework.h"
#include "modules/frameworks/orln_windowed_application.h"
#include "platform/open_graphics.h"

class GUI_SKIN;

class WINDOWED_APPLICATION_FRAMEWORK : public ORLN_WINDOWED_APPLICATION,
                                       public BASE_APPLICATION_FRAMEWORK {
public:
    // `depth` is the colour depth in bits, 32 for every program here. Creates the window manager.
    WINDOWED_APPLICATION_FRAMEWORK(signed char depth, OPEN_GRAPHICS_SIZES minimum);
    ~WINDOWED_APPLICATION_FRAMEWORK() override;

    // Builds the areas of a window, or with -1 of all of them, for the window's size. `load`: the
    // background is taken from the skin again.
    virtual void initialize_areas(unsigned char load, signed char window) = 0;

    void handle_window_restored(void* window) override;
    // Hides the window if the program is set to do that.
    void handle_window_minimised(void* window) override;
    void handle_window_resized(void* window, OPEN_GRAPHICS_SIZES size) override;
    void handle_desktop_size_changed(OPEN_GRAPHICS_SIZES size) override;
    OPEN_GRAPHICS_SIZES get_window_minimum_size(void* window) override;
    OPEN_GRAPHICS_SIZES get_window_maximum_size(void* window) override;
    void handle_paint_window(void* window, unsigned char blit) override;
    bool lock_backbuffer(int index, int thread, unsigned char wait) override;
    void unlock_backbuffer(int index) override;
    void set_focal_window(void* window) override;
    void* get_focal_window() override;
    IMAGE* get_window_backbuffer(void* window) override;
    void* get_data_for_back_buffer(IMAGE* back_buffer) override;
    void set_data_for_back_buffer(IMAGE* back_buffer, void* data) override;
    IMAGE* get_backbuffer_from_index(char index) override;
    void handle_window_closed(void* window) override;
    char get_window_index(void* window) override;
    bool get_is_full_screen() override;
    void set_is_full_screen(unsigned char on) override;
    void handle_window_moved(void* window, std::int16_t x, std::int16_t y) override;
    bool is_floating_window(char index) override;
    bool is_handle_to_floating_window(void* window) override;
    bool is_display_mode_suitable(std::int16_t refresh_rate, std::int16_t depth, std::int16_t width,
                                  std::int16_t height) override;
    DISPLAY_SETTINGS get_display_settings() override;
    bool abort_window_redraw() override;

    GUI_SKIN* get_skin() const { return global_gui_skin.get(); }
    signed char get_colour_depth() const { return colour_depth; }
    OPEN_GRAPHICS_SIZES get_minimum_window_size() const { return minimum_window_size; }
    void set_minimum_window_size(OPEN_GRAPHICS_SIZES size) { minimum_window_size = size; }
    // Copies initial_min_window_dimensions to this instance.
    void update_initial_min_window_dimensions();

    // The running application, if it is one of these; else null.
    static WINDOWED_APPLICATION_FRAMEWORK* get_windowed_instance();

    static const DISPLAY_SETTINGS default_display_settings;
    static OPEN_GRAPHICS_SIZES initial_min_window_dimensions;

protected:
    std::unique_ptr<GUI_SKIN> global_gui_skin;
    bool window_painted = false;  // the paint after the last resize has been done
    signed char colour_depth;
    OPEN_GRAPHICS_SIZES minimum_window_size;
};

#endif  // MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H
