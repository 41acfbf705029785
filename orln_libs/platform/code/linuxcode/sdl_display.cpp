#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/process_tools.h"
#include "platform/ptrarray.h"
#include "platform/window_events.h"
#include "platform/window_platform.h"
#include "sdl_platform.h"
#include "x11_resolution.h"

namespace {

// Deleted by close() alone: at the end of the process the desktop tidies up by itself, and other
// static objects may be gone already.
WINDOW_SYSTEM* window_system = nullptr;
std::int32_t chosen_scale = 0;

constexpr float NORMAL_DPI = 96.0f;
// A desktop that is no larger than this isn't enlarged at all, whatever its resolution.
constexpr std::int32_t SCALED_DESKTOP_WIDTH = 1024;
constexpr std::int32_t SCALED_DESKTOP_HEIGHT = 700;

// What the system answers while nothing can be opened at all.
constexpr DESKTOP_AREA DESKTOP_STAND_IN = {0, 0, 1024, 768};

const char* const DUMMY_DRIVER = "dummy";

bool is_driver(const char* name) {
    const char* driver = SDL_GetCurrentVideoDriver();
    return driver && std::strcmp(driver, name) == 0;
}

// The drivers of the desktops that are there, in the order of trying. SDL by itself would also take
// over a text console, and its libraries complain about a desktop that isn't there.
const char* find_desktop_drivers() {
    const bool has_x11 = std::getenv("DISPLAY") != nullptr;
    const bool has_wayland = std::getenv("WAYLAND_DISPLAY") != nullptr;
    if (has_x11) {
        return has_wayland ? "x11,wayland" : "x11";
    }
    return has_wayland ? "wayland" : DUMMY_DRIVER;
}

void set_hints() {
    // The program has its own signal handlers, and its own rules for when it ends.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
    // A launcher doesn't keep the screen saver away, nor the compositor out.
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    // The click that activates a window counts as a click.
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");
}

std::int16_t to_short(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, INT16_MIN, INT16_MAX));
}

std::uint16_t to_size(std::int32_t value) {
    return static_cast<std::uint16_t>(std::clamp<std::int32_t>(value, 0, INT16_MAX));
}

// Towards minus infinity, so that a pixel left of the edge isn't taken for the first one.
std::int32_t floor_divide(std::int32_t value, std::int32_t divisor) {
    return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

}  // namespace

// --- The one window system ---

WINDOW_SYSTEM& WINDOW_SYSTEM::open() {
    if (!window_system) {
        window_system = new WINDOW_SYSTEM;
        window_system->original_size = window_system->get_desktop_size();
        window_system->last_size = window_system->original_size;
        set_message_box(show_message_box);
    }
    return *window_system;
}

WINDOW_SYSTEM* WINDOW_SYSTEM::find() {
    return window_system;
}

void WINDOW_SYSTEM::close() {
    set_message_box(nullptr);
    delete window_system;
    window_system = nullptr;
}

WINDOW_SYSTEM::WINDOW_SYSTEM() {
    SDL_SetMainReady();
    set_hints();
    video = open_video();
    if (!video) {
        return;
    }
    display = !is_driver(DUMMY_DRIVER);
    // X11 puts single rectangles on the screen from shared memory; without this SDL would make an
    // OpenGL context and redraw the whole window for each of them. Wayland has no such way.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, is_driver("wayland") ? "1" : "0");
    SDL_StartTextInput();
    SDL_Rect bounds;
    if (SDL_GetDisplayBounds(0, &bounds) == 0) {
        origin = {bounds.x, bounds.y};
    }
    find_scale();
}

WINDOW_SYSTEM::~WINDOW_SYSTEM() {
    windows.clear();
    for (auto& cursor : cursors) {
        cursor.reset();
    }
    if (video) {
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
        SDL_Quit();
    }
}

// Without a display the windows are made where nobody sees them.
bool WINDOW_SYSTEM::open_video() {
    SDL_SetHint(SDL_HINT_VIDEODRIVER, find_desktop_drivers());  // SDL_VIDEODRIVER goes before
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) == 0) {
        return true;
    }
    SDL_SetHint(SDL_HINT_VIDEODRIVER, DUMMY_DRIVER);
    return SDL_InitSubSystem(SDL_INIT_VIDEO) == 0;
}

void WINDOW_SYSTEM::find_scale() {
    scale = 1;
    if (chosen_scale > 0) {
        scale = chosen_scale;
        return;
    }
    // Wayland enlarges by itself and tells through the size of the window's surface.
    if (!display || is_driver("wayland")) {
        return;
    }
    // What the user has chosen goes before what the screen measures.
    float dpi = is_driver("x11") ? find_x11_resolution() : 0;
    if (dpi <= 0 && SDL_GetDisplayDPI(0, nullptr, &dpi, nullptr) != 0) {
        return;
    }
    // From 1.75 on two pixels for one are nearer than one.
    const DESKTOP_AREA desktop = get_desktop();
    scale = std::clamp(static_cast<std::int32_t>(dpi / NORMAL_DPI + 0.25f), 1, MAX_SCALE);
    while (scale > 1 && (desktop.width / scale < SCALED_DESKTOP_WIDTH ||
                         desktop.height / scale < SCALED_DESKTOP_HEIGHT)) {
        --scale;
    }
}

// --- Windows ---

NATIVE_WINDOW* WINDOW_SYSTEM::find_window(const void* handle) {
    for (auto& window : windows) {
        if (window.get() == handle) {
            return window.get();
        }
    }
    return nullptr;
}

NATIVE_WINDOW* WINDOW_SYSTEM::find_window_by_id(std::uint32_t sdl_id) {
    SDL_Window* const sdl = SDL_GetWindowFromID(sdl_id);
    for (auto& window : windows) {
        if (sdl && window->sdl.get() == sdl) {
            return window.get();
        }
    }
    return nullptr;
}

NATIVE_WINDOW* WINDOW_SYSTEM::find_window_by_index(int index) {
    for (auto& window : windows) {
        if (window->index == index) {
            return window.get();
        }
    }
    return nullptr;
}

NATIVE_WINDOW* WINDOW_SYSTEM::find_main_window() {
    for (auto& window : windows) {
        if (window->main) {
            return window.get();
        }
    }
    return nullptr;
}

void WINDOW_SYSTEM::remove_window(const NATIVE_WINDOW* window) {
    std::erase_if(windows, [window](const auto& entry) { return entry.get() == window; });
}

// --- The desktop ---

std::int16_t WINDOW_SYSTEM::from_units(std::int32_t units) const {
    return to_short(floor_divide(units, scale));
}

SDL_Point WINDOW_SYSTEM::to_native_point(std::int32_t x, std::int32_t y) const {
    return {origin.x + to_units(x), origin.y + to_units(y)};
}

void WINDOW_SYSTEM::from_native_point(std::int32_t native_x, std::int32_t native_y, std::int16_t& x,
                                      std::int16_t& y) const {
    x = from_units(native_x - origin.x);
    y = from_units(native_y - origin.y);
}

DESKTOP_AREA WINDOW_SYSTEM::get_desktop() const {
    SDL_Rect bounds;
    if (!video || SDL_GetDisplayBounds(0, &bounds) != 0) {
        return DESKTOP_STAND_IN;
    }
    return {0, 0, bounds.w / scale, bounds.h / scale};
}

DESKTOP_AREA WINDOW_SYSTEM::get_usable_desktop() const {
    SDL_Rect bounds;
    if (!video || SDL_GetDisplayUsableBounds(0, &bounds) != 0) {
        return get_desktop();
    }
    return {(bounds.x - origin.x) / scale, (bounds.y - origin.y) / scale, bounds.w / scale,
            bounds.h / scale};
}

OPEN_GRAPHICS_SIZES WINDOW_SYSTEM::get_desktop_size() const {
    const DESKTOP_AREA desktop = get_desktop();
    return make_graphics_sizes(to_size(desktop.width), to_size(desktop.height));
}

// --- Operations ---

void start_window_platform() {
    WINDOW_SYSTEM::open();
}

void stop_window_platform() {
    WINDOW_SYSTEM::close();
}

bool has_display() {
    return WINDOW_SYSTEM::open().display;
}

OPEN_GRAPHICS_SIZES platform_get_desktop_size(unsigned char) {
    return WINDOW_SYSTEM::open().get_desktop_size();
}

OPEN_GRAPHICS_SIZES platform_get_original_desktop_dimensions() {
    return WINDOW_SYSTEM::open().original_size;
}

OPEN_GRAPHICS_SIZES platform_get_window_start_positions() {
    const DESKTOP_AREA usable = WINDOW_SYSTEM::open().get_usable_desktop();
    return make_graphics_sizes(to_size(usable.x), to_size(usable.y));
}

void get_list_of_supported_display_settings(PTRARRAY& settings) {
    const WINDOW_SYSTEM& system = WINDOW_SYSTEM::open();
    WINDOW_EVENTS* events = get_window_events();
    const int count = system.display ? SDL_GetNumDisplayModes(0) : 0;
    for (int i = 0; i < count; ++i) {
        SDL_DisplayMode mode;
        if (SDL_GetDisplayMode(0, i, &mode) != 0 || SDL_BITSPERPIXEL(mode.format) < 24) {
            continue;
        }
        const DISPLAY_SETTINGS entry = {to_short(mode.refresh_rate), 32,
                                        to_short(mode.w / system.scale),
                                        to_short(mode.h / system.scale)};
        if (!events || events->is_display_mode_suitable(entry.refresh_rate, entry.colour_depth,
                                                        entry.width, entry.height)) {
            auto record = std::make_unique<DISPLAY_SETTINGS>(entry);
            if (settings.add(record.get())) {
                record.release();
            }
        }
    }
}

std::int32_t get_display_scale() {
    return WINDOW_SYSTEM::open().scale;
}

void set_display_scale(std::int32_t scale) {
    chosen_scale = std::clamp<std::int32_t>(scale, 0, WINDOW_SYSTEM::MAX_SCALE);
    WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    if (system && system->windows.empty()) {
        system->find_scale();
        system->original_size = system->get_desktop_size();
        system->last_size = system->original_size;
    }
}
