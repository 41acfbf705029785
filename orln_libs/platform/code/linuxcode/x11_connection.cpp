#include "x11_connection.h"

#include <SDL.h>
// The last header: those of Xlib, which it includes, define macros with common names.
#include <SDL_syswm.h>

int find_x11_connection(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!window || !SDL_GetWindowWMInfo(window, &info) || info.subsystem != SDL_SYSWM_X11) {
        return -1;
    }
    return ConnectionNumber(info.info.x11.display);
}
