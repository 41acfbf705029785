#include "x11_resolution.h"

#include <SDL.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr char RESOURCE_NAME[] = "Xft.dpi:";
constexpr float LARGEST_RESOLUTION = 2000.0f;

// The few operations of Xlib that are needed, from the library that SDL itself has loaded: SDL
// doesn't offer this resource, and the tree depends on no X11 headers for it.
struct XLIB {
    using DISPLAY = void;
    DISPLAY* (*open_display)(const char* name) = nullptr;
    char* (*resource_manager_string)(DISPLAY* display) = nullptr;  // belongs to the display
    int (*close_display)(DISPLAY* display) = nullptr;

    explicit XLIB(void* library)
        : open_display(find<DISPLAY*(const char*)>(library, "XOpenDisplay")),
          resource_manager_string(find<char*(DISPLAY*)>(library, "XResourceManagerString")),
          close_display(find<int(DISPLAY*)>(library, "XCloseDisplay")) {}
    bool is_complete() const { return open_display && resource_manager_string && close_display; }

    template <typename FUNCTION>
    static FUNCTION* find(void* library, const char* name) {
        return reinterpret_cast<FUNCTION*>(SDL_LoadFunction(library, name));
    }
};

}  // namespace

float read_resource_resolution(const char* resources) {
    for (const char* line = resources; line && *line;) {
        if (std::strncmp(line, RESOURCE_NAME, sizeof RESOURCE_NAME - 1) == 0) {
            const float value = std::strtof(line + sizeof RESOURCE_NAME - 1, nullptr);
            return value > 0 && value <= LARGEST_RESOLUTION ? value : 0;
        }
        line = std::strchr(line, '\n');
        line = line ? line + 1 : nullptr;
    }
    return 0;
}

float find_x11_resolution() {
    void* const library = SDL_LoadObject("libX11.so.6");
    if (!library) {
        return 0;
    }
    float result = 0;
    const XLIB xlib(library);
    if (xlib.is_complete()) {
        if (XLIB::DISPLAY* display = xlib.open_display(nullptr)) {
            result = read_resource_resolution(xlib.resource_manager_string(display));
            xlib.close_display(display);
        }
    }
    SDL_UnloadObject(library);
    return result;
}
