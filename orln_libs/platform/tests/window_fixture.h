// An application with windows that nobody sees, and a hand on their event queue.
#ifndef PLATFORM_TESTS_WINDOW_FIXTURE_H
#define PLATFORM_TESTS_WINDOW_FIXTURE_H

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/window_events.h"
#include "platform/window_platform.h"

class TEST_APPLICATION : public WINDOW_EVENTS {
public:
    static constexpr int WINDOW_COUNT = 5;

    void handle_window_restored(void* window) override { tell("restored", window); }
    void handle_window_minimised(void* window) override { tell("minimised", window); }
    void handle_window_resized(void* window, OPEN_GRAPHICS_SIZES size) override {
        tell("resized", window, graphics_width(size), graphics_height(size));
    }
    void handle_desktop_size_changed(OPEN_GRAPHICS_SIZES size) override {
        tell("desktop", nullptr, graphics_width(size), graphics_height(size));
    }
    void handle_paint_window(void* window, unsigned char blit) override {
        tell("paint", window, blit, locks);
    }
    void handle_window_closed(void* window) override { tell("closed", window); }
    void handle_quit_request() override { tell("quit", nullptr); }
    void handle_window_moved(void* window, std::int16_t x, std::int16_t y) override {
        tell("moved", window, x, y);
    }
    void set_focal_window(void* window) override {
        tell("focal", window);
        focal = window;
    }
    void* get_focal_window() override { return focal; }
    OPEN_GRAPHICS_SIZES get_window_minimum_size(void*) override { return minimum; }
    bool lock_backbuffer(int, int thread, unsigned char) override {
        EXPECT_EQ(1, thread);
        ++locks;
        return true;
    }
    void unlock_backbuffer(int) override { --locks; }
    IMAGE* get_window_backbuffer(void* window) override {
        const char index = get_window_index(window);
        return index < 0 ? nullptr : get_backbuffer_from_index(index);
    }
    IMAGE* get_backbuffer_from_index(char index) override {
        return &buffers[static_cast<std::size_t>(index)];
    }
    char get_window_index(void* window) override {
        const auto found = std::find(handles.begin(), handles.end(), window);
        return found == handles.end() ? static_cast<char>(-1)
                                      : static_cast<char>(found - handles.begin());
    }
    bool is_floating_window(char index) override { return index >= 3; }

    // What was told since the last call, one line each: "resized 0 640 480".
    std::vector<std::string> take_told() {
        std::vector<std::string> result;
        result.swap(told);
        return result;
    }

    std::array<IMAGE, WINDOW_COUNT> buffers;
    std::array<void*, WINDOW_COUNT> handles{};
    void* focal = nullptr;
    OPEN_GRAPHICS_SIZES minimum = NO_GRAPHICS_SIZES;
    int locks = 0;

private:
    void tell(const char* what, void* window, int a = -1, int b = -1) {
        std::string line = what;
        if (window) {
            line += " " + std::to_string(get_window_index(window));
        }
        if (a != -1 || b != -1) {
            line += " " + std::to_string(a) + " " + std::to_string(b);
        }
        told.push_back(line);
    }

    std::vector<std::string> told;
};

class WINDOW_TEST : public testing::Test {
protected:
    using TOLD = std::vector<std::string>;

    void SetUp() override {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        set_window_events(&application);
        start_window_platform();
        const OPEN_GRAPHICS_SIZES size = platform_get_desktop_size();
        desktop_width = graphics_width(size);
        desktop_height = graphics_height(size);
        MOUSE::release_all();
        MOUSE::set_position(-1, -1, -1);
        MOUSE::wheel_pos = 0;
        SDL_SetModState(KMOD_NONE);
        settle();
    }

    void TearDown() override {
        stop_window_platform();
        set_window_events(nullptr);
        set_display_scale(0);
    }

    static OPEN_GRAPHICS_SETTINGS settings_for(int index, int width, int height) {
        OPEN_GRAPHICS_SETTINGS settings;
        settings.title = "Window";
        settings.size = make_graphics_sizes(static_cast<std::uint16_t>(width),
                                            static_cast<std::uint16_t>(height));
        settings.window_index = static_cast<char>(index);
        settings.main = index == 0;
        return settings;
    }

    // Opens, or opens again, and expects success with that size.
    void* open(OPEN_GRAPHICS_SETTINGS settings) {
        const auto index = static_cast<std::size_t>(settings.window_index);
        void* const handle =
            open_graphics(application.handles[index], settings, opened_width, opened_height);
        if (handle) {
            application.handles[index] = handle;
        }
        return handle;
    }
    void* open(int index, int width, int height) {
        return open(settings_for(index, width, height));
    }

    // The native window behind an index. The test opens windows in the order of their ids.
    static SDL_Window* native(std::uint32_t id) { return SDL_GetWindowFromID(id); }
    static std::uint32_t last_id() {
        std::uint32_t id = 0;
        for (std::uint32_t i = 1; i < 1000; ++i) {
            id = native(i) ? i : id;
        }
        return id;
    }

    // Takes the events of what was done so far and forgets what they told.
    void settle() {
        process_os_events();
        application.take_told();
        KEYBOARD().clear_buffer();
    }

    TOLD take_after(const SDL_Event& event) { return take_after({event}, 0); }
    TOLD take_after(const std::vector<SDL_Event>& events, int) {
        for (SDL_Event event : events) {
            EXPECT_EQ(1, SDL_PushEvent(&event));
        }
        process_os_events();
        return application.take_told();
    }

    static SDL_Event window_event(std::uint32_t id, SDL_WindowEventID what, int data1 = 0,
                                  int data2 = 0) {
        SDL_Event event = {};
        event.type = SDL_WINDOWEVENT;
        event.window.windowID = id;
        event.window.event = static_cast<Uint8>(what);
        event.window.data1 = data1;
        event.window.data2 = data2;
        return event;
    }
    static SDL_Event motion(std::uint32_t id, int x, int y) {
        SDL_Event event = {};
        event.type = SDL_MOUSEMOTION;
        event.motion.windowID = id;
        event.motion.x = x;
        event.motion.y = y;
        return event;
    }
    static SDL_Event button(std::uint32_t id, int sdl_button, bool down, int x, int y) {
        SDL_Event event = {};
        event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.windowID = id;
        event.button.button = static_cast<Uint8>(sdl_button);
        event.button.x = x;
        event.button.y = y;
        return event;
    }
    static SDL_Event key(SDL_Keycode sym, int modifiers = KMOD_NONE, bool down = true) {
        SDL_Event event = {};
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = sym;
        event.key.keysym.mod = static_cast<Uint16>(modifiers);
        return event;
    }
    static SDL_Event text(const char* utf8) {
        SDL_Event event = {};
        event.type = SDL_TEXTINPUT;
        SDL_strlcpy(event.text.text, utf8, sizeof event.text.text);
        return event;
    }
    // All characters that wait in the keyboard's buffer.
    static std::string typed() {
        KEYBOARD keyboard;
        std::string result;
        while (const unsigned char c = keyboard.get_char()) {
            result += static_cast<char>(c);
        }
        return result;
    }

    TEST_APPLICATION application;
    int desktop_width = 0, desktop_height = 0;
    std::int16_t opened_width = 0, opened_height = 0;
};

#endif  // PLATFORM_TESTS_WINDOW_FIXTURE_H
