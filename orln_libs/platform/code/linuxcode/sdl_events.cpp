// The event queue: what SDL reports becomes KEYBOARD, MOUSE and calls of WINDOW_EVENTS.
#include <poll.h>

#include <algorithm>
#include <ctime>

#include "platform/global_input.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"
#include "platform/text_encoding.h"
#include "platform/window_events.h"
#include "platform/window_platform.h"
#include "sdl_platform.h"
#include "x11_connection.h"

namespace {

constexpr int MAIN_THREAD = 1;

// --- Keyboard ---

std::uint32_t find_modifiers(std::uint32_t sdl_modifiers) {
    return ((sdl_modifiers & KMOD_SHIFT) ? KEYBOARD_MODIFIER_SHIFT : 0u) |
           ((sdl_modifiers & (KMOD_CTRL | KMOD_GUI)) ? KEYBOARD_MODIFIER_CONTROL : 0u) |
           ((sdl_modifiers & KMOD_ALT) ? KEYBOARD_MODIFIER_ALT : 0u);
}

bool is_modifier(KEY_TYPE key) {
    return key >= KEY_SHIFT_LEFT;
}

// With Num Lock off the digits of the keypad are the keys that are printed under them.
KEY_TYPE find_key(const SDL_Keysym& keysym) {
    const auto key =
        KEYBOARD::get_key_ascii(static_cast<KEY_TYPE>(keysym.sym), KEYBOARD_FROM_NATIVE);
    if ((keysym.mod & KMOD_NUM) != 0 || key < KEY_KEYPAD_POINT || key > KEY_KEYPAD_9) {
        return key;
    }
    constexpr KEY_TYPE UNDER_KEYPAD[] = {KEY_DELETE,    KEY_INSERT, KEY_END,      KEY_DOWN,
                                         KEY_PAGE_DOWN, KEY_LEFT,   KEY_KEYPAD_0, KEY_RIGHT,
                                         KEY_HOME,      KEY_UP,     KEY_PAGE_UP};
    return key == KEY_KEYPAD_0 + 5 ? key : UNDER_KEYPAD[key - KEY_KEYPAD_POINT];
}

void take_modifiers(WINDOW_SYSTEM& system, std::uint32_t sdl_modifiers) {
    system.modifiers = sdl_modifiers;
    KEYBOARD::set_modifiers(find_modifiers(sdl_modifiers));
}

// Held for a shortcut, not for one of the characters that some layouts have there.
bool is_shortcut(std::uint32_t sdl_modifiers) {
    return (sdl_modifiers & KMOD_CTRL) != 0 && (sdl_modifiers & (KMOD_ALT | KMOD_MODE)) == 0;
}

void take_key_down(WINDOW_SYSTEM& system, const SDL_KeyboardEvent& event) {
    take_modifiers(system, event.keysym.mod);
    const KEY_TYPE key = find_key(event.keysym);
    if (key != KEY_NONE && !is_modifier(key)) {
        KEYBOARD::process_key_event(key);
        if (key == KEY_ENTER || key == KEY_RETURN) {
            KEYBOARD::process_char_event('\n', 0);
        }
        return;
    }
    // With Control a key has no text or a control character, yet a shortcut needs its letter.
    const std::int32_t symbol = event.keysym.sym;
    if (is_shortcut(event.keysym.mod) && symbol > ' ' && symbol <= 0xFF && symbol != 0x7F) {
        KEYBOARD::process_char_event(static_cast<std::uint32_t>(symbol), 0);
    }
}

void take_text(const WINDOW_SYSTEM& system, const char* text) {
    if (is_shortcut(system.modifiers)) {
        return;  // has come with the key already
    }
    for (const char c : utf8_to_system(text)) {
        KEYBOARD::process_char_event(static_cast<unsigned char>(c), 0);
    }
}

// --- Mouse ---

std::int16_t find_button(std::uint8_t sdl_button) {
    switch (sdl_button) {
        case SDL_BUTTON_LEFT:
            return MOUSE_BUTTON_LEFT;
        case SDL_BUTTON_RIGHT:
            return MOUSE_BUTTON_RIGHT;
        case SDL_BUTTON_MIDDLE:
            return MOUSE_BUTTON_MIDDLE;
        case SDL_BUTTON_X1:
            return MOUSE_BUTTON_BACK;
        case SDL_BUTTON_X2:
            return MOUSE_BUTTON_FORWARD;
        default:
            return 0;
    }
}

// The toolkit looks at one pointer, whose position counts for the focal window and the floating
// ones. Over another window there is nothing to point at until it is activated.
bool takes_pointer(NATIVE_WINDOW& window) {
    WINDOW_EVENTS* events = get_window_events();
    void* const focal = events ? events->get_focal_window() : nullptr;
    return !focal || focal == &window || window.floating;
}

void take_position(const WINDOW_SYSTEM& system, NATIVE_WINDOW* window, std::int32_t x,
                   std::int32_t y) {
    if (window && takes_pointer(*window)) {
        MOUSE::set_position(window->index, system.from_units(x), system.from_units(y));
    } else {
        MOUSE::set_position(-1, -1, -1);
    }
}

void take_button(WINDOW_SYSTEM& system, const SDL_MouseButtonEvent& event) {
    const std::int16_t button = find_button(event.button);
    if (NATIVE_WINDOW* window = system.find_window_by_id(event.windowID);
        window && event.type == SDL_MOUSEBUTTONDOWN) {
        if ((SDL_GetWindowFlags(window->sdl.get()) & SDL_WINDOW_INPUT_FOCUS) == 0) {
            SDL_RaiseWindow(window->sdl.get());
        }
        if (WINDOW_EVENTS* events = get_window_events()) {
            events->set_focal_window(window);
        }
    }
    // The application may have closed the window.
    take_position(system, system.find_window_by_id(event.windowID), event.x, event.y);
    MOUSE::process_mouse_button(button, event.type == SDL_MOUSEBUTTONDOWN);
    take_modifiers(system, static_cast<std::uint32_t>(SDL_GetModState()));
}

// --- Windows ---

void repaint(NATIVE_WINDOW* window) {
    WINDOW_EVENTS* events = get_window_events();
    const int index = window->index;
    if (!events->lock_backbuffer(index, MAIN_THREAD, 1)) {
        return;
    }
    events->handle_paint_window(window, 0);
    if (IMAGE* image = events->get_window_backbuffer(window)) {
        // Whatever the active area is: the whole of the window is due.
        image->dirty_left = image->dirty_top = image->width > 0 ? 0 : -1;
        image->dirty_right = static_cast<std::int16_t>(image->width - 1);
        image->dirty_bottom = static_cast<std::int16_t>(image->height - 1);
        swap_screens(window, index);
    }
    events->unlock_backbuffer(index);
}

// Raises a size to the application's minimum, if the user went below.
void keep_minimum(const WINDOW_SYSTEM& system, NATIVE_WINDOW& window) {
    const OPEN_GRAPHICS_SIZES minimum = get_window_events()->get_window_minimum_size(&window);
    const auto raise = [](std::int16_t size, std::uint16_t limit) {
        return limit > INT16_MAX ? size : std::max(size, static_cast<std::int16_t>(limit));
    };
    const std::int16_t width = raise(window.new_width, graphics_width(minimum));
    const std::int16_t height = raise(window.new_height, graphics_height(minimum));
    if (width != window.new_width || height != window.new_height) {
        window.new_width = width;
        window.new_height = height;
        SDL_SetWindowSize(window.sdl.get(), system.to_units(width), system.to_units(height));
    }
}

void tell_size(const WINDOW_SYSTEM& system, NATIVE_WINDOW* window) {
    if (window->full_screen || window->new_width < 1 || window->new_height < 1) {
        return;
    }
    keep_minimum(system, *window);
    if (window->new_width == window->width && window->new_height == window->height) {
        return;
    }
    window->width = window->new_width;
    window->height = window->new_height;
    get_window_events()->handle_window_resized(
        window, make_graphics_sizes(static_cast<std::uint16_t>(window->width),
                                    static_cast<std::uint16_t>(window->height)));
}

// Tells the application of new sizes and exposed contents. It may open and close windows on the
// way, so the list is looked through anew after each.
void tell_pending(WINDOW_SYSTEM& system) {
    for (;;) {
        const auto found =
            std::find_if(system.windows.begin(), system.windows.end(),
                         [](const auto& entry) { return entry->resized || entry->exposed; });
        if (found == system.windows.end()) {
            return;
        }
        NATIVE_WINDOW* const window = found->get();
        const bool resized = window->resized;
        window->resized = window->exposed = false;
        if (!get_window_events()) {
            continue;
        }
        if (resized) {
            tell_size(system, window);
        }
        if (get_window_events() && system.find_window(window)) {
            repaint(window);
        }
    }
}

void check_desktop(WINDOW_SYSTEM& system) {
    const OPEN_GRAPHICS_SIZES size = system.get_desktop_size();
    WINDOW_EVENTS* events = get_window_events();
    if (size != system.last_size && events) {
        system.last_size = size;
        events->handle_desktop_size_changed(size);
    }
}

// Whether the window manager has put a new window's frame where its content should be. Then the
// window is moved; without that it would creep over the desktop from run to run, as its place is
// stored and asked for again.
bool correct_place(NATIVE_WINDOW& window, int x, int y) {
    int top = 0;
    int left = 0;
    if (!window.placing ||
        SDL_GetWindowBordersSize(window.sdl.get(), &top, &left, nullptr, nullptr) != 0) {
        return false;
    }
    window.placing = false;
    if ((top == 0 && left == 0) || x != window.place.x + left || y != window.place.y + top) {
        return false;
    }
    SDL_SetWindowPosition(window.sdl.get(), window.place.x, window.place.y);
    return true;
}

void take_move(const WINDOW_SYSTEM& system, NATIVE_WINDOW* window, const SDL_WindowEvent& event,
               WINDOW_EVENTS& events) {
    if (window->full_screen || correct_place(*window, event.data1, event.data2)) {
        return;
    }
    std::int16_t x, y;
    system.from_native_point(event.data1, event.data2, x, y);
    events.handle_window_moved(window, x, y);
}

// The user's close box.
void take_close(NATIVE_WINDOW* window, WINDOW_EVENTS& events) {
    if (window->main) {
        events.handle_quit_request();
    } else {
        events.handle_window_closed(window);
    }
}

void take_window_event(WINDOW_SYSTEM& system, const SDL_WindowEvent& event) {
    NATIVE_WINDOW* const window = system.find_window_by_id(event.windowID);
    WINDOW_EVENTS* const events = get_window_events();
    if (!window || !events) {
        return;
    }
    switch (event.event) {
        case SDL_WINDOWEVENT_SIZE_CHANGED:
            window->resized = true;
            window->new_width = system.from_units(event.data1);
            window->new_height = system.from_units(event.data2);
            break;
        case SDL_WINDOWEVENT_EXPOSED:
            window->exposed = true;
            break;
        case SDL_WINDOWEVENT_MOVED:
            take_move(system, window, event, *events);
            break;
        case SDL_WINDOWEVENT_MINIMIZED:
            events->handle_window_minimised(window);
            break;
        case SDL_WINDOWEVENT_RESTORED:
        case SDL_WINDOWEVENT_MAXIMIZED:
            events->handle_window_restored(window);
            break;
        case SDL_WINDOWEVENT_FOCUS_GAINED:
            SDL_FlashWindow(window->sdl.get(), SDL_FLASH_CANCEL);
            events->set_focal_window(window);
            break;
        case SDL_WINDOWEVENT_LEAVE:
            // A drag goes on outside.
            if (MOUSE::buttons == 0 && MOUSE::window == window->index) {
                MOUSE::set_position(-1, -1, -1);
            }
            break;
        case SDL_WINDOWEVENT_CLOSE:
            take_close(window, *events);
            break;
        case SDL_WINDOWEVENT_DISPLAY_CHANGED:
            check_desktop(system);
            break;
        default:
            break;
    }
}

void take_quit(WINDOW_SYSTEM& system) {
    WINDOW_EVENTS* events = get_window_events();
    if (!events) {
        return;
    }
    if (NATIVE_WINDOW* window = system.find_main_window()) {
        const std::uint32_t flags = window->sdl ? SDL_GetWindowFlags(window->sdl.get()) : 0;
        // A hidden window stays so, for the program has nothing to show in it.
        if ((flags & SDL_WINDOW_HIDDEN) == 0) {
            platform_bring_window_to_front(window, (flags & SDL_WINDOW_MINIMIZED) != 0);
        }
        events->set_focal_window(window);
    }
    events->handle_quit_request();
}

bool is_input(std::uint32_t type) {
    return type == SDL_KEYDOWN || type == SDL_KEYUP || type == SDL_TEXTINPUT ||
           (type >= SDL_MOUSEMOTION && type <= SDL_MOUSEWHEEL);
}

// What one round of events is. Once a round the toolkit looks at the buttons, at the last key with
// a name and at the modifiers, while characters queue. A click that comes and goes between two
// looks would be lost, a key would hide the one before, a character would overtake it, and Shift
// that is up again would not count. So a round ends with a button, and before what isn't to come
// together with the keys before it.
class EVENT_ROUND {
public:
    EVENT_ROUND()
        : left(SDL_PeepEvents(nullptr, 0, SDL_PEEKEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT)) {}
    // False at its end. An application that answers an event with another one isn't kept here.
    bool take(SDL_Event& event) {
        if (left-- <= 0 || peep(event, SDL_PEEKEVENT) <= 0 ||
            ((event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) && !may_take_key(event))) {
            return false;
        }
        if (event.type == SDL_MOUSEBUTTONDOWN || event.type == SDL_MOUSEBUTTONUP) {
            left = 0;
        }
        return peep(event, SDL_GETEVENT) > 0;
    }

private:
    static int peep(SDL_Event& event, SDL_eventaction action) {
        return SDL_PeepEvents(&event, 1, action, SDL_FIRSTEVENT, SDL_LASTEVENT);
    }
    bool may_take_key(const SDL_Event& event) {
        const KEY_TYPE key = find_key(event.key.keysym);
        if (is_modifier(key)) {
            return !seen_named && !seen_character;
        }
        if (event.type == SDL_KEYUP) {
            return true;
        }
        const bool named = key != KEY_NONE;
        if (seen_named || (named && seen_character)) {
            return false;
        }
        (named ? seen_named : seen_character) = true;
        return true;
    }

    int left;
    bool seen_named = false;
    bool seen_character = false;
};

void take_event(WINDOW_SYSTEM& system, const SDL_Event& event) {
    if (is_input(event.type)) {
        GLOBAL_INPUT::record_input(get_ms_count());
    }
    switch (event.type) {
        case SDL_MOUSEMOTION:
            take_position(system, system.find_window_by_id(event.motion.windowID), event.motion.x,
                          event.motion.y);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            take_button(system, event.button);
            break;
        case SDL_MOUSEWHEEL:
            MOUSE::wheel_pos += event.wheel.y;
            break;
        case SDL_KEYDOWN:
            take_key_down(system, event.key);
            break;
        case SDL_KEYUP:
            take_modifiers(system, event.key.keysym.mod);
            break;
        case SDL_TEXTINPUT:
            take_text(system, event.text.text);
            break;
        case SDL_WINDOWEVENT:
            take_window_event(system, event.window);
            break;
        case SDL_DISPLAYEVENT:
            check_desktop(system);
            break;
        case SDL_QUIT:
            take_quit(system);
            break;
        default:
            break;
    }
}

// What is released while another program has the keyboard isn't told to us.
void forget_held_keys(WINDOW_SYSTEM& system) {
    take_modifiers(system, 0);
    MOUSE::release_all();
}

// SDL's own wait asks for events twice before it sleeps, each time with several system calls: a
// quarter of what an idle program costs. What wakes it is the connection to the X server, and after
// process_os_events() nothing is left to be asked for, but for what came with the answer to a
// request of SDL's since then or doesn't come from the server; that may wait for a few updates.
bool wait_for_display(WINDOW_SYSTEM& system, int timeout_ms) {
    constexpr int WAITS_WITHOUT_ASKING = 3;
    const int connection =
        system.windows.empty() ? -1 : find_x11_connection(system.windows.front()->sdl.get());
    if (connection < 0) {
        return SDL_WaitEventTimeout(nullptr, timeout_ms) != 0;
    }
    if (++system.waits_without_asking > WAITS_WITHOUT_ASKING) {
        system.waits_without_asking = 0;
        SDL_PumpEvents();
    }
    if (SDL_HasEvents(SDL_FIRSTEVENT, SDL_LASTEVENT)) {
        return true;
    }
    pollfd readable = {connection, POLLIN, 0};
    return ::poll(&readable, 1, timeout_ms) != 0;
}

}  // namespace

void process_os_events() {
    WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    if (!system) {
        return;
    }
    bool lost_focus = false;
    SDL_Event event;
    SDL_PumpEvents();
    EVENT_ROUND round;
    while (system && round.take(event)) {
        lost_focus = lost_focus || (event.type == SDL_WINDOWEVENT &&
                                    event.window.event == SDL_WINDOWEVENT_FOCUS_LOST);
        take_event(*system, event);
        system = WINDOW_SYSTEM::find();
    }
    if (system) {
        if (lost_focus && !SDL_GetKeyboardFocus()) {
            forget_held_keys(*system);
        }
        tell_pending(*system);
    }
}

bool wait_for_events(std::uint32_t timeout_ms) {
    WINDOW_SYSTEM* const system = WINDOW_SYSTEM::find();
    if (system && system->display) {
        return wait_for_display(*system,
                                static_cast<int>(std::min<std::uint32_t>(timeout_ms, INT32_MAX)));
    }
    // Nothing can come but signals, which end the sleep.
    const timespec wait = {static_cast<std::time_t>(timeout_ms / 1000),
                           static_cast<long>(timeout_ms % 1000) * 1000000};
    nanosleep(&wait, nullptr);
    return system != nullptr;
}
