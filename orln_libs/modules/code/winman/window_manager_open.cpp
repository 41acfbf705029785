// Opening windows, and the mode of the display.
#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "modules/3d/render_manager_base.h"
#include "modules/frameworks/trace_output.h"
#include "modules/frameworks/windowed_application_framework.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"
#include "window_place.h"

namespace {

OPEN_GRAPHICS_SIZES get_larger(OPEN_GRAPHICS_SIZES a, OPEN_GRAPHICS_SIZES b) {
    return make_graphics_sizes(std::max(graphics_width(a), graphics_width(b)),
                               std::max(graphics_height(a), graphics_height(b)));
}

OPEN_GRAPHICS_SIZES get_smaller(OPEN_GRAPHICS_SIZES a, OPEN_GRAPHICS_SIZES b) {
    return make_graphics_sizes(std::min(graphics_width(a), graphics_width(b)),
                               std::min(graphics_height(a), graphics_height(b)));
}

// `size` with its unset halves taken from `other`.
template <class GET_OTHER>
OPEN_GRAPHICS_SIZES fill_in(OPEN_GRAPHICS_SIZES size, GET_OTHER get_other) {
    const std::uint16_t width = graphics_width(size), height = graphics_height(size);
    if (width != GRAPHICS_SIZE_NOT_GIVEN && height != GRAPHICS_SIZE_NOT_GIVEN) {
        return size;
    }
    const OPEN_GRAPHICS_SIZES other = get_other();
    return make_graphics_sizes(width == GRAPHICS_SIZE_NOT_GIVEN ? graphics_width(other) : width,
                               height == GRAPHICS_SIZE_NOT_GIVEN ? graphics_height(other) : height);
}

}  // namespace

OPEN_GRAPHICS_SIZES WM_WINDOW_MANAGER::get_application_minimum() {
    const auto* application = WINDOWED_APPLICATION_FRAMEWORK::get_windowed_instance();
    return application != nullptr ? application->get_minimum_window_size()
                                  : WINDOWED_APPLICATION_FRAMEWORK::initial_min_window_dimensions;
}

void WM_WINDOW_MANAGER::set_application_minimum(OPEN_GRAPHICS_SIZES size) {
    if (auto* application = WINDOWED_APPLICATION_FRAMEWORK::get_windowed_instance()) {
        application->set_minimum_window_size(size);
    }
}

// --- Filling a slot ---

bool WM_WINDOW_MANAGER::can_create_child_window(signed char index) const {
    if (shutting_down) {
        return false;
    }
    if (index == ALERTS_WINDOW) {
        return desktop_alerts;
    }
    return display_mode == SEVERAL_WINDOWS;
}

bool WM_WINDOW_MANAGER::add_window(signed char index, std::int16_t areas, OPEN_GRAPHICS_SIZES min,
                                   OPEN_GRAPHICS_SIZES extended_min, OPEN_GRAPHICS_SIZES max) {
    if (shutting_down || index < 0 || index >= WINDOW_COUNT ||
        (index != MAIN_WINDOW && !can_create_child_window(index))) {
        return false;
    }
    if (index == MAIN_WINDOW && config_file != nullptr) {
        read_program_settings();
    }
    max = fill_in(max, [] { return platform_get_desktop_size(0); });
    extended_min = fill_in(extended_min, [min] { return min; });
    if (WM_WINDOW_INFO* info = get_window_info(index)) {
        info->setup_window_data(index, areas);
    } else {
        PLACE place;
        place.size = min;
        if (is_window_data_saveable(index) && config_file != nullptr) {
            read_place(index, place);
            place.size = place.extended ? extended_min : min;
            fit_place(index, place, max);
        }
        set_window_info(index, new WM_WINDOW_INFO(index, areas, place.size, min, extended_min, max,
                                                  place.extended));
        get_window(index)->set_coordinates(place.x, place.y);
    }
    if (index == ALERTS_WINDOW) {
        place_alerts_window(min);
    }
    return true;
}

// Above the top right of the desktop, from where it slides in.
void WM_WINDOW_MANAGER::place_alerts_window(OPEN_GRAPHICS_SIZES min) {
    WM_WINDOW& window = *get_window(ALERTS_WINDOW);
    const auto x = static_cast<std::int16_t>(graphics_width(platform_get_desktop_size(0)) -
                                             graphics_width(min) - 1);
    const auto y =
        static_cast<std::int16_t>(graphics_height(platform_get_window_start_positions()) + 1);
    window.set_target_positions(x, y);
    window.set_coordinates(x, static_cast<std::int16_t>(-window.height));
}

// --- The platform window ---

void WM_WINDOW_MANAGER::setup_opening(signed char index, unsigned char hidden,
                                      OPEN_GRAPHICS_SETTINGS& settings) const {
    const WM_WINDOW& window = *get_window(index);
    settings.title = window.title;
    settings.hidden = hidden != 0;
    settings.main = index == MAIN_WINDOW;
    settings.window_index = static_cast<char>(index);
    settings.x = window.x;
    settings.y = window.y;
    settings.minimum_size = window.get_min_dimensions();
    settings.maximum_size = window.max_dimensions;
    const OPEN_GRAPHICS_SIZES stored = window.get_size_or_minimum();
    settings.size = stored;
    if (index != MAIN_WINDOW) {
        return;
    }
    const OPEN_GRAPHICS_SIZES application_size = get_application_minimum();
    settings.size = get_larger(application_size, stored);
    settings.minimum_size = get_smaller(application_size, window.get_min_dimensions());
    settings.full_screen = display_mode == FULL_SCREEN;
    if (settings.full_screen) {
        settings.size = settings.maximum_size = application_size;
    }
}

void WM_WINDOW_MANAGER::draw_window(signed char index, unsigned char hidden, unsigned char& failed,
                                    unsigned char& changed) {
    failed = changed = 0;
    WM_WINDOW* window = get_window(index);
    if (window == nullptr) {
        failed = 1;
        return;
    }
    const bool was_open = window->handle != nullptr;
    OPEN_GRAPHICS_SETTINGS settings;
    setup_opening(index, hidden, settings);
    if (index == MAIN_WINDOW) {
        open_main_window(settings, changed);
    } else if (!window->open(settings)) {
        failed = 1;
    }
    window_drawn = true;
    WM_PAGE_MANAGER* pages = get_page_manager(index);
    if (!failed && pages != nullptr) {
        pages->areas[0]->mark_entire_redraw_area();  // the back buffer is a new one
    }
    ORLN_3D::RENDER_MANAGER_BASE* renderer = ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    if (!failed && !was_open) {
        TRACE_OUTPUT::output_trace("Adding window index %" PRId32, std::int32_t{index});
        if (renderer != nullptr) {
            renderer->add_window(*window);
        }
    }
}

// Tries the other way once when the first one fails, then ends the process.
void WM_WINDOW_MANAGER::open_main_window(OPEN_GRAPHICS_SETTINGS& settings, unsigned char& changed) {
    WM_WINDOW& window = *get_main_window();
    bool first_failure = true;
    while (!window.open(settings)) {
        tell_opening_failed(settings, first_failure);
        first_failure = false;
        settings.full_screen = !settings.full_screen;
        settings.size = settings.minimum_size = get_application_minimum();
        settings.maximum_size =
            settings.full_screen ? settings.size : get_larger(window.max_dimensions, settings.size);
        changed = 1;
    }
    if (settings.full_screen) {
        display_mode = FULL_SCREEN;
    }
}

void WM_WINDOW_MANAGER::tell_opening_failed(const OPEN_GRAPHICS_SETTINGS& settings,
                                            bool first_failure) const {
    const char* format = nullptr;
    if (settings.full_screen) {
        format = first_failure ? "Your system is unable to display in %d x %d full-screen mode. "
                                 "Using windowed mode instead..."
                               : "Your system is unable to display in %d x %d full-screen mode. "
                                 "Unable to start application.";
    } else if (!first_failure) {
        format =
            "Your desktop is not large enough to display a %d x %d window. Unable to start "
            "application.";
    } else if (window_drawn) {
        format = "The available desktop space is not large enough to display a %d x %d window. ";
    } else {
        return;
    }
    char text[256];
    std::snprintf(text, sizeof text, format,
                  static_cast<int>(graphics_width(settings.minimum_size)),
                  static_cast<int>(graphics_height(settings.minimum_size)));
    display_message(first_failure ? "Warning" : "Error", text, 0);
    if (!first_failure) {
        exit_app("Application was unable to continue");
    }
}

// --- The mode of the display ---

bool WM_WINDOW_MANAGER::is_display_mode_supported(signed char mode) const {
    if (mode > SEVERAL_WINDOWS) {
        return true;
    }
    const OPEN_GRAPHICS_SIZES desktop = platform_get_original_desktop_dimensions();
    const OPEN_GRAPHICS_SIZES needed = get_application_minimum();
    return graphics_width(desktop) >= graphics_width(needed) &&
           graphics_height(desktop) >= graphics_height(needed);
}

// The platform's list follows the default setting at the first use, as it needs the display.
void WM_WINDOW_MANAGER::load_supported_display_settings() {
    if (!display_settings_loaded) {
        display_settings_loaded = true;
        get_list_of_supported_display_settings(supported_display_settings);
    }
}

const DISPLAY_SETTINGS* WM_WINDOW_MANAGER::get_display_setting(std::int32_t setting) const {
    return supported_display_settings.get<DISPLAY_SETTINGS>(setting);
}

std::int32_t WM_WINDOW_MANAGER::find_display_setting(const DISPLAY_SETTINGS& setting) const {
    for (std::int32_t i = 0; i < supported_display_settings.get_count(); ++i) {
        if (*get_display_setting(i) == setting) {
            return i;
        }
    }
    return -1;
}

void WM_WINDOW_MANAGER::apply_display_setting(std::int32_t setting) {
    const DISPLAY_SETTINGS& chosen = *get_display_setting(setting);
    current_display_setting = setting;
    set_application_minimum(make_graphics_sizes(static_cast<std::uint16_t>(chosen.width),
                                                static_cast<std::uint16_t>(chosen.height)));
}

bool WM_WINDOW_MANAGER::set_display_mode(signed char mode, signed char setting) {
    if (shutting_down) {
        return false;
    }
    was_full_screen = display_mode == FULL_SCREEN;
    const bool is_full_screen = mode == FULL_SCREEN;
    display_mode = mode;
    if (mode == SINGLE_WINDOW || mode == FULL_SCREEN) {
        close_child_windows();
    }
    if (was_full_screen == is_full_screen) {
        return true;
    }
    if (was_full_screen) {
        if (auto* application = WINDOWED_APPLICATION_FRAMEWORK::get_windowed_instance()) {
            application->update_initial_min_window_dimensions();
        }
        set_display_dimensions(MAIN_WINDOW, make_graphics_sizes(1024, 758));
    }
    load_supported_display_settings();
    if (get_display_setting(setting) != nullptr) {
        apply_display_setting(setting);
    }
    unsigned char failed = 0, changed = 0;
    draw_window(MAIN_WINDOW, 0, failed, changed);
    return failed != 0;
}

bool WM_WINDOW_MANAGER::set_to_use_alternate_display_setting(std::int32_t setting) {
    load_supported_display_settings();
    if (shutting_down || setting == current_display_setting ||
        get_display_setting(setting) == nullptr) {
        return true;
    }
    apply_display_setting(setting);
    if (auto* application = ORLN_WINDOWED_APPLICATION::get_instance()) {
        application->handle_window_resized(get_window_handle(MAIN_WINDOW),
                                           get_application_minimum());
    }
    unsigned char failed = 0, changed = 0;
    draw_window(MAIN_WINDOW, 0, failed, changed);
    blit_window(MAIN_WINDOW, 0);
    return failed == 0;
}
