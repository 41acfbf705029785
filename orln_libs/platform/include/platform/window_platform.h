// The native windows, pointer, clipboard and event queue, as plain operations.
//
// Everything here belongs to the main thread. The display is opened at the first call that needs
// it. Without a display (none reachable, or SDL_VIDEODRIVER=dummy) everything still works, on
// windows that nobody sees; has_display() tells.
//
// Sizes and positions are in the pixels of the back buffers. On a display with a scale above 1 a
// window is that much larger on the glass: the picture is enlarged when it is presented, pixel by
// pixel, and positions of the pointer are mapped back.
//
// A window handle is null or what open_graphics() gave and close_window() hasn't taken yet; any
// other pointer is ignored. An operation on a window that isn't there does nothing.
#ifndef PLATFORM_WINDOW_PLATFORM_H
#define PLATFORM_WINDOW_PLATFORM_H

#include <cstdint>

#include "platform/open_graphics.h"

class DISK_MANAGER;
class IMAGE;
class PTRARRAY;

// --- Life ---

// Opens the display, if that hasn't been done. From then on display_message() shows message boxes
// where there is a display.
void start_window_platform();
// Closes all windows and the display. A later operation opens it again.
void stop_window_platform();
// Whether the user can see windows.
bool has_display();

// --- Events ---

// Set when something reached the screen; the periodic update clears it.
extern bool events_something_done;

// Takes the waiting events: KEYBOARD, MOUSE and GLOBAL_INPUT follow, and the application's
// WINDOW_EVENTS are called. As the application is to see each change of a mouse button and each
// key, the rest may be left to the next call. May be called again from within them. Never waits,
// and doesn't open the display.
void process_os_events();
// Sleeps until an event waits or the time is over. Takes none. False if surely none waits.
bool wait_for_events(std::uint32_t timeout_ms);

// --- Windows ---

// Makes a window, or gives the window `handle` other settings, and calls create_back_buffer() for
// the buffer that the application has for settings.window_index.
//
// A size that isn't given is the desktop's; it is raised to the minimum and, but for full screen,
// lowered to the maximum and in height to the free part of the desktop. A position that isn't above
// 0 is centred, axis by axis; a floating window may also stand at 0 or beyond the edge. Windows
// other than floating ones are kept on the desktop and activated. Null, and nothing has changed, if
// the minimum doesn't fit the desktop or the maximum, or the display has no such full-screen mode.
// Otherwise the handle, with the size in `width` and `height`.
//
// That the system refuses the main window is fatal.
void* open_graphics(void* handle, OPEN_GRAPHICS_SETTINGS& settings, std::int16_t& width,
                    std::int16_t& height);
// Gives the image that size, opaque black pixels and the whole as active area, and locks its size.
// Running out of memory is fatal.
void create_back_buffer(IMAGE* image, std::int16_t width, std::int16_t height);
// Leaves full screen, empties the window's back buffer and removes the window.
void close_window(void* window);
void show_window(void* window);
void hide_window(void* window);
void minimise_window(void* window);
// 8-bit text; null for none.
void set_window_title(void* window, const char* title);
// A width or height of -1 or 0 keeps the size.
void move_window(void* window, std::int16_t x, std::int16_t y, std::int16_t width,
                 std::int16_t height);
// Asks for the user's attention: 0 not any more, 255 until the window is activated, else briefly.
void notify_window(void* window, unsigned char count);
void platform_bring_window_to_front(void* window, unsigned char minimised);

// Presents the dirty rectangle of the window's back buffer, or with a null window of the buffer
// `index` (-1 for none), and clears it. Nothing if the buffer is clean.
void swap_screens(void* window, int index);
// Stores the window's back buffer as a PNG file. 1 for success.
unsigned char save_window_picture(void* window, const DISK_MANAGER& folder, const char* name);

// --- Desktop ---

// The main screen's size. The flag has no effect.
OPEN_GRAPHICS_SIZES platform_get_desktop_size(unsigned char flag = 0);
// The size when the display was opened.
OPEN_GRAPHICS_SIZES platform_get_original_desktop_dimensions();
// The top left corner of what panels leave free.
OPEN_GRAPHICS_SIZES platform_get_window_start_positions();
// Adds the full-screen modes that the application finds suitable, as new DISPLAY_SETTINGS that
// belong to the array.
void get_list_of_supported_display_settings(PTRARRAY& settings);
// The whole number that pictures are enlarged by, 1 to 8. Follows from the display's resolution,
// unless one is set here, before the first window; 0 goes back to the display's.
std::int32_t get_display_scale();
void set_display_scale(std::int32_t scale);

// --- Pointer and clipboard ---

// Sets the pointer: 0 arrow, 1 and 2 pointing hand, 3 and 4 dragging, 5 and 6 text beam, 8 resize.
// Anything else is the arrow.
void change_mouse_icon(char id);

// Texts are 8-bit (text_encoding.h).
bool is_text_in_clipboard();
// Copies the text, cut to `size` bytes with the end; empty if there is none.
void get_clipboard_text(char* buffer, std::int32_t size);
void set_clipboard_text(const char* text);

#endif  // PLATFORM_WINDOW_PLATFORM_H
