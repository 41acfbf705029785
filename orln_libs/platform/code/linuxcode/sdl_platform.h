// The inside of the window layer: the open display and its windows. Main thread only.
#ifndef PLATFORM_CODE_SDL_PLATFORM_H
#define PLATFORM_CODE_SDL_PLATFORM_H

#include <SDL.h>

#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "platform/keyboard.h"
#include "platform/open_graphics.h"

class IMAGE;

struct SDL_WINDOW_DELETER {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};
struct SDL_CURSOR_DELETER {
    void operator()(SDL_Cursor* cursor) const { SDL_FreeCursor(cursor); }
};
struct SDL_SURFACE_DELETER {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

// What a window handle points to.
struct NATIVE_WINDOW {
    std::unique_ptr<SDL_Window, SDL_WINDOW_DELETER> sdl;
    char index = -1;
    bool main = false;
    bool floating = false;
    bool full_screen = false;
    std::int16_t width = 0, height = 0;  // of the content, in pixels of the back buffer
    // Seen in the queue, told to the application once the queue is empty: while the user drags an
    // edge many sizes arrive, and only the last is worth a new layout.
    bool resized = false;
    bool exposed = false;
    std::int16_t new_width = 0, new_height = 0;
    // Just shown at `place`, in SDL's units, where the window manager may put the frame instead of
    // the content.
    bool placing = false;
    SDL_Point place = {0, 0};
};

// A rectangle of the desktop. Its origin is the main screen's top left corner.
struct DESKTOP_AREA {
    std::int32_t x = 0, y = 0, width = 0, height = 0;
};

class WINDOW_SYSTEM {
public:
    static constexpr std::int32_t MAX_SCALE = 8;

    // The one window system, opened if it isn't.
    static WINDOW_SYSTEM& open();
    // The same, but null if it isn't open.
    static WINDOW_SYSTEM* find();
    static void close();
    ~WINDOW_SYSTEM();

    NATIVE_WINDOW* find_window(const void* handle);
    NATIVE_WINDOW* find_window_by_id(std::uint32_t sdl_id);
    NATIVE_WINDOW* find_window_by_index(int index);
    NATIVE_WINDOW* find_main_window();
    void remove_window(const NATIVE_WINDOW* window);

    // The main screen, and the part of it that panels leave free.
    DESKTOP_AREA get_desktop() const;
    DESKTOP_AREA get_usable_desktop() const;
    OPEN_GRAPHICS_SIZES get_desktop_size() const;

    // Between our pixels and SDL's units. Lengths are multiplied; points of the desktop are moved
    // to the main screen's origin as well.
    int to_units(std::int32_t pixels) const { return static_cast<int>(pixels * scale); }
    std::int16_t from_units(std::int32_t units) const;
    SDL_Point to_native_point(std::int32_t x, std::int32_t y) const;
    void from_native_point(std::int32_t native_x, std::int32_t native_y, std::int16_t& x,
                           std::int16_t& y) const;
    void find_scale();

    bool is_own_thread() const { return std::this_thread::get_id() == own_thread; }

    bool display = false;  // somebody can see the windows
    std::int32_t scale = 1;
    OPEN_GRAPHICS_SIZES original_size = 0;
    OPEN_GRAPHICS_SIZES last_size = 0;  // last told to the application
    std::vector<std::unique_ptr<NATIVE_WINDOW>> windows;
    std::unique_ptr<SDL_Cursor, SDL_CURSOR_DELETER> cursors[SDL_NUM_SYSTEM_CURSORS];
    SDL_SystemCursor cursor_shown = SDL_SYSTEM_CURSOR_ARROW;
    std::uint32_t modifiers = 0;   // held as of the last event, as SDL's bits
    int waits_without_asking = 0;  // see wait_for_events()

private:
    WINDOW_SYSTEM();
    bool open_video();

    const std::thread::id own_thread = std::this_thread::get_id();
    KEYBOARD keyboard;  // keeps its state alive between polls
    bool video = false;
    SDL_Point origin = {0, 0};  // of the main screen, in SDL's units
};

// The application's back buffer of a window, or null.
IMAGE* find_back_buffer(void* handle);
// Presents the dirty rectangle of `image` in the window.
void present_image(const WINDOW_SYSTEM& system, NATIVE_WINDOW& window, const IMAGE& image);
// A message box over the main window, if there is one; for display_message(). False if there is no
// display, or from another thread than the main one.
bool show_message_box(const char* title, const char* text);

#endif  // PLATFORM_CODE_SDL_PLATFORM_H
