// The socket on which an X server's events come.
#ifndef PLATFORM_CODE_X11_CONNECTION_H
#define PLATFORM_CODE_X11_CONNECTION_H

struct SDL_Window;

// Readable once the server has sent something that SDL hasn't taken yet. -1 for a window that
// isn't one of an X server.
int find_x11_connection(SDL_Window* window);

#endif  // PLATFORM_CODE_X11_CONNECTION_H
