#include "modules/frameworks/windowed_application_framework.h"

OPEN_GRAPHICS_SIZES WINDOWED_APPLICATION_FRAMEWORK::initial_min_window_dimensions =
    make_graphics_sizes(1024, 758);

WINDOWED_APPLICATION_FRAMEWORK::WINDOWED_APPLICATION_FRAMEWORK(signed char depth,
                                                               OPEN_GRAPHICS_SIZES minimum)
    : colour_depth(depth), minimum_window_size(minimum) {
    update_initial_min_window_dimensions();
}

void WINDOWED_APPLICATION_FRAMEWORK::update_initial_min_window_dimensions() {
    minimum_window_size = initial_min_window_dimensions;
}
