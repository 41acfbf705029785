// WINDOWED_APPLICATION_FRAMEWORK: the part of the chain that knows about windows.
//
// It holds the sizes that windows are opened with and what the display has to offer. The window
// events themselves are routed by the window manager.
#ifndef MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H
#define MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H

#include "modules/frameworks/base_application_framework.h"
#include "modules/frameworks/graphics_sizes.h"

class WINDOWED_APPLICATION_FRAMEWORK : public BASE_APPLICATION_FRAMEWORK {
public:
    // `depth` is the colour depth in bits, 32 for every program here.
    WINDOWED_APPLICATION_FRAMEWORK(signed char depth, OPEN_GRAPHICS_SIZES minimum);

    signed char get_colour_depth() const { return colour_depth; }
    OPEN_GRAPHICS_SIZES get_minimum_window_size() const { return minimum_window_size; }
    // Copies initial_min_window_dimensions to this instance.
    void update_initial_min_window_dimensions();

    static OPEN_GRAPHICS_SIZES initial_min_window_dimensions;

protected:
    signed char colour_depth;
    OPEN_GRAPHICS_SIZES minimum_window_size;
};

#endif  // MODULES_FRAMEWORKS_WINDOWED_APPLICATION_FRAMEWORK_H
