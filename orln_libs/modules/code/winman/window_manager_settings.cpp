// What the window manager keeps from one run to the next.
//
// Stored numbers are believed only as far as they make sense: a size or a position that doesn't is
// taken as not stored.
#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "modules/frameworks/windowed_application_framework.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/config_file.h"
#include "platform/image.h"
#include "platform/window_platform.h"
#include "window_place.h"

bool WM_WINDOW_MANAGER::read_number(const char* key, std::int32_t& value) const {
    std::uint32_t stored = static_cast<std::uint32_t>(value);
    if (!config_file->read(config_file->get_base_path(), key, stored)) {
        return false;
    }
    value = static_cast<std::int32_t>(stored);
    return true;
}

bool WM_WINDOW_MANAGER::read_number_within(const char* key, std::int32_t least, std::int32_t most,
                                           std::int32_t& value) const {
    std::int32_t stored = value;
    if (!read_number(key, stored) || stored < least || stored > most) {
        return false;
    }
    value = stored;
    return true;
}

bool WM_WINDOW_MANAGER::read_window_number(const char* name, signed char index, std::int32_t least,
                                           std::int32_t most, std::int32_t& value) const {
    char key[CONFIG_FILE::key_size];
    std::snprintf(key, sizeof key, "%s_%" PRId32, name, std::int32_t{index});
    return read_number_within(key, least, most, value);
}

// Every write replaces the file: only what has changed is written.
void WM_WINDOW_MANAGER::write_number(const char* key, std::int32_t value) {
    std::int32_t stored = ~value;
    if (!read_number(key, stored) || stored != value) {
        config_file->write(config_file->get_base_path(), key, static_cast<std::uint32_t>(value));
    }
}

void WM_WINDOW_MANAGER::write_window_number(const char* name, signed char index,
                                            std::int32_t value) {
    char key[CONFIG_FILE::key_size];
    std::snprintf(key, sizeof key, "%s_%" PRId32, name, std::int32_t{index});
    write_number(key, value);
}

void WM_WINDOW_MANAGER::read_program_settings() {
    std::int32_t value = display_mode;
    read_number_within("DISPLAY_MODE", SINGLE_WINDOW, FULL_SCREEN, value);
    display_mode = static_cast<signed char>(value);
    value = desktop_alerts;
    read_number("DESKTOP_ALERTS", value);
    desktop_alerts = value != 0;
    value = minimize_to_tray;
    read_number("MINIMIZE_TO_TRAY", value);
    minimize_to_tray = value != 0;
    value = static_cast<unsigned char>(notification_count);
    read_number_within("WINDOW_NOTIFICATION_COUNT", 0, UINT8_MAX, value);
    notification_count = static_cast<signed char>(value);

    const auto read_short = [this](const char* key, std::int16_t& field) {
        std::int32_t stored = -1;
        const bool found = read_number_within(key, INT16_MIN, INT16_MAX, stored);
        field = static_cast<std::int16_t>(stored);
        return found;
    };
    DISPLAY_SETTINGS setting;
    const bool stored = read_short("SCREEN_COLOUR_DEPTH", setting.colour_depth) &&
                        read_short("SCREEN_REFRESH_RATE", setting.refresh_rate) &&
                        read_short("SCREEN_WIDTH", setting.width) &&
                        read_short("SCREEN_HEIGHT", setting.height);
    if (!stored || display_mode != FULL_SCREEN) {
        return;
    }
    load_supported_display_settings();
    const std::int32_t found = find_display_setting(setting);
    if (found != -1) {
        apply_display_setting(found);
    }
}

void WM_WINDOW_MANAGER::read_place(signed char index, PLACE& place) const {
    read_window_number("WINDOW_HEIGHT", index, 1, IMAGE::MAX_HEIGHT, place.stored_height);
    read_window_number("WINDOW_WIDTH", index, 1, IMAGE::MAX_WIDTH, place.stored_width);
    std::int32_t x = -1, y = -1, mode = 1;
    const bool has_position = read_window_number("WINDOW_X1", index, INT16_MIN, INT16_MAX, x) &&
                              read_window_number("WINDOW_Y1", index, INT16_MIN, INT16_MAX, y);
    read_window_number("WINDOW_MODE", index, INT32_MIN, INT32_MAX, mode);
    place.extended = mode != 0;
    if (place.stored_width != -1 && place.stored_height != -1 && has_position) {
        place.x = static_cast<std::int16_t>(x);
        place.y = static_cast<std::int16_t>(y);
    }
}

// Brings a stored size between its limits, and drops a position that doesn't show the window.
// `place.size` is the minimum at first.
void WM_WINDOW_MANAGER::fit_place(signed char index, PLACE& place,
                                  const OPEN_GRAPHICS_SIZES& max) const {
    if (place.stored_width == -1 && place.stored_height == -1) {
        return;
    }
    const OPEN_GRAPHICS_SIZES desktop = platform_get_desktop_size(0);
    std::int32_t width = graphics_width(place.size), height = graphics_height(place.size);
    if (place.stored_width != -1) {
        width = std::min<std::int32_t>(std::max(width, place.stored_width), graphics_width(max));
    }
    if (place.stored_height != -1) {
        height =
            std::min<std::int32_t>(std::max(height, place.stored_height), graphics_height(desktop));
    }
    if (index == MAIN_WINDOW) {
        const OPEN_GRAPHICS_SIZES least = get_application_minimum();
        width = std::max<std::int32_t>(width, graphics_width(least));
        height = std::max<std::int32_t>(height, graphics_height(least));
    }
    place.size =
        make_graphics_sizes(static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
    if (place.x + width > graphics_width(desktop)) {
        place.x = -1;
    }
    if (place.y + height > graphics_height(desktop)) {
        place.y = -1;
    }
}

void WM_WINDOW_MANAGER::save_all_data_to_config_file() {
    if (config_file == nullptr || shutting_down) {
        return;
    }
    write_number("DISPLAY_MODE", display_mode);
    write_number("DESKTOP_ALERTS", desktop_alerts);
    write_number("MINIMIZE_TO_TRAY", minimize_to_tray);
    write_number("WINDOW_NOTIFICATION_COUNT", static_cast<unsigned char>(notification_count));
    const DISPLAY_SETTINGS* setting = get_display_setting(current_display_setting);
    const DISPLAY_SETTINGS& saved =
        setting != nullptr ? *setting : WINDOWED_APPLICATION_FRAMEWORK::default_display_settings;
    write_number("SCREEN_COLOUR_DEPTH", saved.colour_depth);
    write_number("SCREEN_REFRESH_RATE", saved.refresh_rate);
    write_number("SCREEN_WIDTH", saved.width);
    write_number("SCREEN_HEIGHT", saved.height);
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        const WM_WINDOW* window = is_window_data_saveable(i) ? get_window(i) : nullptr;
        if (window == nullptr) {
            continue;
        }
        write_window_number("WINDOW_HEIGHT", i, window->height);
        write_window_number("WINDOW_WIDTH", i, window->width);
        write_window_number("WINDOW_X1", i, window->x);
        write_window_number("WINDOW_Y1", i, window->y);
        write_window_number("WINDOW_MODE", i, window->extended);
    }
}
