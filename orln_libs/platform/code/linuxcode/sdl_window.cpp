// The life of the native windows.
#include <algorithm>

#include "platform/image.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"
#include "platform/text_encoding.h"
#include "platform/window_events.h"
#include "platform/window_platform.h"
#include "sdl_platform.h"

namespace {

// A half of a size as a number, `otherwise` if it isn't given.
std::int32_t given_or(std::uint16_t value, std::int32_t otherwise) {
    return value == GRAPHICS_SIZE_NOT_GIVEN ? otherwise : value;
}

struct EXTENT {
    std::int32_t width, height;
};

EXTENT get_extent(OPEN_GRAPHICS_SIZES size, std::int32_t width, std::int32_t height) {
    return {given_or(graphics_width(size), width), given_or(graphics_height(size), height)};
}

// The size that a window gets. False if it can't keep its own limits, or those of the desktop.
bool plan_size(const WINDOW_SYSTEM& system, const OPEN_GRAPHICS_SETTINGS& settings, EXTENT& size) {
    const DESKTOP_AREA desktop = system.get_desktop();
    const DESKTOP_AREA usable = system.get_usable_desktop();
    const EXTENT minimum = get_extent(settings.minimum_size, 1, 1);
    const EXTENT maximum = get_extent(settings.maximum_size, IMAGE::MAX_WIDTH, IMAGE::MAX_HEIGHT);
    size = get_extent(settings.size, desktop.width, desktop.height);
    size = {std::max({size.width, minimum.width, 1}), std::max({size.height, minimum.height, 1})};
    if (!settings.full_screen) {
        size.width = std::min({size.width, maximum.width, desktop.width});
        size.height = std::min({size.height, maximum.height, usable.height});
    }
    return size.width >= minimum.width && size.height >= minimum.height &&
           size.width <= maximum.width && size.height <= maximum.height;
}

// A window's place on one axis.
std::int32_t plan_place(std::int32_t asked, bool floating, std::int32_t length,
                        std::int32_t desktop_length, std::int32_t usable_start,
                        std::int32_t usable_length) {
    const bool is_given = floating ? asked != -1 : asked > 0;
    std::int32_t place = is_given ? asked : (desktop_length - length) / 2;
    if (!floating) {
        place = std::max(std::min(place, usable_start + usable_length - length), usable_start);
    }
    return place;
}

SDL_Point plan_position(const WINDOW_SYSTEM& system, const OPEN_GRAPHICS_SETTINGS& settings,
                        bool floating, EXTENT size) {
    const DESKTOP_AREA desktop = system.get_desktop();
    const DESKTOP_AREA usable = system.get_usable_desktop();
    return {plan_place(settings.x, floating, size.width, desktop.width, usable.x, usable.width),
            plan_place(settings.y, floating, size.height, desktop.height, usable.y, usable.height)};
}

// The display's mode of exactly that size. Without a display every size will do.
bool find_mode(const WINDOW_SYSTEM& system, EXTENT size, SDL_DisplayMode& mode) {
    const SDL_DisplayMode wanted = {0, system.to_units(size.width), system.to_units(size.height), 0,
                                    nullptr};
    if (!system.display) {
        mode = wanted;
        return true;
    }
    return SDL_GetClosestDisplayMode(0, &wanted, &mode) && mode.w == wanted.w && mode.h == wanted.h;
}

bool is_resizable(const OPEN_GRAPHICS_SETTINGS& settings, bool floating) {
    return !floating && (settings.minimum_size != settings.maximum_size ||
                         settings.minimum_size == NO_GRAPHICS_SIZES);
}

std::unique_ptr<NATIVE_WINDOW> create_window(const WINDOW_SYSTEM& system,
                                             const OPEN_GRAPHICS_SETTINGS& settings, EXTENT size,
                                             bool floating) {
    auto window = std::make_unique<NATIVE_WINDOW>();
    std::uint32_t flags = SDL_WINDOW_HIDDEN | SDL_WINDOW_ALLOW_HIGHDPI;
    flags |= floating ? SDL_WINDOW_BORDERLESS : 0;
    flags |= is_resizable(settings, floating) ? SDL_WINDOW_RESIZABLE : 0;
    window->sdl.reset(SDL_CreateWindow("", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                                       system.to_units(size.width), system.to_units(size.height),
                                       flags));
    // Without a display a window does without its native half.
    return window->sdl || !system.display ? std::move(window) : nullptr;
}

void set_limits(const WINDOW_SYSTEM& system, SDL_Window* sdl,
                const OPEN_GRAPHICS_SETTINGS& settings, EXTENT size, bool floating) {
    const EXTENT minimum = get_extent(settings.minimum_size, 1, 1);
    const EXTENT maximum = get_extent(settings.maximum_size, IMAGE::MAX_WIDTH, IMAGE::MAX_HEIGHT);
    // Loosen first: a limit that the old one forbids would be refused.
    SDL_SetWindowMinimumSize(sdl, 1, 1);
    SDL_SetWindowMaximumSize(sdl, system.to_units(std::max(maximum.width, size.width)),
                             system.to_units(std::max(maximum.height, size.height)));
    SDL_SetWindowMinimumSize(sdl, system.to_units(std::max(minimum.width, 1)),
                             system.to_units(std::max(minimum.height, 1)));
    SDL_SetWindowResizable(sdl, is_resizable(settings, floating) ? SDL_TRUE : SDL_FALSE);
}

// Brings the native window in line with the settings. False if full screen is refused.
bool configure_window(const WINDOW_SYSTEM& system, NATIVE_WINDOW& window,
                      const OPEN_GRAPHICS_SETTINGS& settings, EXTENT size,
                      const SDL_DisplayMode& mode) {
    SDL_Window* const sdl = window.sdl.get();
    // SDL keeps a hidden window's wish for full screen until it is shown.
    if (settings.full_screen && sdl &&
        (SDL_SetWindowDisplayMode(sdl, &mode) != 0 ||
         SDL_SetWindowFullscreen(sdl, SDL_WINDOW_FULLSCREEN) != 0)) {
        return false;
    }
    const bool was_full_screen = window.full_screen;
    window.full_screen = settings.full_screen;
    window.width = static_cast<std::int16_t>(size.width);
    window.height = static_cast<std::int16_t>(size.height);
    if (!sdl) {
        return true;
    }
    SDL_SetWindowTitle(sdl, system_to_utf8(settings.title ? settings.title : "").c_str());
    if (settings.full_screen) {
        return true;
    }
    if (was_full_screen) {
        SDL_SetWindowFullscreen(sdl, 0);
    }
    SDL_SetWindowBordered(sdl, window.floating ? SDL_FALSE : SDL_TRUE);
    set_limits(system, sdl, settings, size, window.floating);
    SDL_SetWindowSize(sdl, system.to_units(size.width), system.to_units(size.height));
    const SDL_Point place = plan_position(system, settings, window.floating, size);
    const SDL_Point native = system.to_native_point(place.x, place.y);
    SDL_SetWindowPosition(sdl, native.x, native.y);
    return true;
}

NATIVE_WINDOW* find_native_window(void* handle) {
    WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    NATIVE_WINDOW* window = system ? system->find_window(handle) : nullptr;
    return window && window->sdl ? window : nullptr;
}

// Some window managers choose the place of a window anew when it is shown.
void show_in_place(NATIVE_WINDOW& window) {
    SDL_Window* const sdl = window.sdl.get();
    SDL_Point& place = window.place;
    SDL_GetWindowPosition(sdl, &place.x, &place.y);
    SDL_ShowWindow(sdl);
    if ((SDL_GetWindowFlags(sdl) & SDL_WINDOW_FULLSCREEN) == 0) {
        SDL_SetWindowPosition(sdl, place.x, place.y);
        window.placing = !window.floating;
    }
}

}  // namespace

void* open_graphics(void* handle, OPEN_GRAPHICS_SETTINGS& settings, std::int16_t& width,
                    std::int16_t& height) {
    WINDOW_SYSTEM& system = WINDOW_SYSTEM::open();
    WINDOW_EVENTS* events = get_window_events();
    const bool floating = events && events->is_floating_window(settings.window_index);
    EXTENT size;
    SDL_DisplayMode mode = {};
    if (!plan_size(system, settings, size) ||
        (settings.full_screen && !find_mode(system, size, mode))) {
        return nullptr;
    }
    NATIVE_WINDOW* window = system.find_window(handle);
    if (!window) {
        std::unique_ptr<NATIVE_WINDOW> created = create_window(system, settings, size, floating);
        if (!created) {
            if (settings.main) {
                display_message("Error", "open_graphics() - main window is invalid", 1);
                exit_app("Application was unable to continue");
            }
            return nullptr;
        }
        window = system.windows.emplace_back(std::move(created)).get();
        window->index = settings.window_index;
        window->main = settings.main;
    }
    window->floating = floating;
    if (!configure_window(system, *window, settings, size, mode)) {
        if (window != handle) {
            system.remove_window(window);
        }
        return nullptr;
    }
    width = window->width;
    height = window->height;
    create_back_buffer(events ? events->get_backbuffer_from_index(settings.window_index) : nullptr,
                       width, height);
    if (window->sdl && !settings.hidden) {
        show_in_place(*window);
        if (!floating) {
            SDL_RaiseWindow(window->sdl.get());
        }
    }
    return window;
}

void close_window(void* handle) {
    WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    NATIVE_WINDOW* window = system ? system->find_window(handle) : nullptr;
    if (!window) {
        return;
    }
    if (window->full_screen && window->sdl) {
        SDL_SetWindowFullscreen(window->sdl.get(), 0);
    }
    if (IMAGE* image = find_back_buffer(handle)) {
        image->locked = false;
        image->reset(0, 0);
        get_window_events()->set_data_for_back_buffer(image, nullptr);
    }
    if (MOUSE::window == window->index) {
        MOUSE::release_all();
        MOUSE::set_position(-1, -1, -1);
    }
    system->remove_window(window);
}

void show_window(void* handle) {
    if (NATIVE_WINDOW* window = find_native_window(handle)) {
        show_in_place(*window);
    }
}

void hide_window(void* handle) {
    if (NATIVE_WINDOW* window = find_native_window(handle)) {
        SDL_HideWindow(window->sdl.get());
    }
}

void minimise_window(void* handle) {
    if (NATIVE_WINDOW* window = find_native_window(handle)) {
        SDL_MinimizeWindow(window->sdl.get());
    }
}

void set_window_title(void* window, const char* title) {
    if (const NATIVE_WINDOW* found = find_native_window(window)) {
        SDL_SetWindowTitle(found->sdl.get(), system_to_utf8(title ? title : "").c_str());
    }
}

void move_window(void* handle, std::int16_t x, std::int16_t y, std::int16_t width,
                 std::int16_t height) {
    NATIVE_WINDOW* const window = find_native_window(handle);
    if (!window || window->full_screen) {
        return;
    }
    const WINDOW_SYSTEM* const system = WINDOW_SYSTEM::find();
    const std::int32_t new_width = width > 0 ? width : window->width;
    const std::int32_t new_height = height > 0 ? height : window->height;
    if (new_width != window->width || new_height != window->height) {
        SDL_SetWindowSize(window->sdl.get(), system->to_units(new_width),
                          system->to_units(new_height));
    }
    const SDL_Point native = system->to_native_point(x, y);
    window->placing = false;
    SDL_SetWindowPosition(window->sdl.get(), native.x, native.y);
}

void notify_window(void* handle, unsigned char count) {
    if (NATIVE_WINDOW* window = find_native_window(handle)) {
        SDL_FlashWindow(window->sdl.get(), count == 0     ? SDL_FLASH_CANCEL
                                           : count == 255 ? SDL_FLASH_UNTIL_FOCUSED
                                                          : SDL_FLASH_BRIEFLY);
    }
}

void platform_bring_window_to_front(void* handle, unsigned char minimised) {
    NATIVE_WINDOW* const window = find_native_window(handle);
    if (!window) {
        return;
    }
    if (minimised) {
        SDL_RestoreWindow(window->sdl.get());
    }
    if ((SDL_GetWindowFlags(window->sdl.get()) & SDL_WINDOW_HIDDEN) != 0) {
        show_in_place(*window);
    }
    SDL_RaiseWindow(window->sdl.get());
}
