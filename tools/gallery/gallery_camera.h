// GALLERY_CAMERA: takes pictures of pages and of what happens on them, the same ones in every run.
//
// While there is a camera the toolkit runs on its clock, which moves by a fixed time with each
// tick, and the pointer and the keyboard are moved by it. Input goes the usual way, through MOUSE
// and KEYBOARD.
#ifndef GALLERY_CAMERA_H
#define GALLERY_CAMERA_H

#include <cstdint>
#include <string>

#include "platform/disk_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

class WM_SCREEN_OBJECT;

class GALLERY_CAMERA {
public:
    static constexpr std::uint32_t TICK_MS = 20;

    GALLERY_CAMERA();
    GALLERY_CAMERA(const GALLERY_CAMERA&) = delete;
    GALLERY_CAMERA& operator=(const GALLERY_CAMERA&) = delete;
    ~GALLERY_CAMERA();

    // Where the pictures go; makes the folder if it isn't there. False if it can't be used.
    bool set_folder(const std::string& name);
    // Everything could be written so far.
    bool is_ready() const { return ready; }
    const std::string& get_page() const { return page; }
    // Shows the page that was chosen, with the pointer out of the window and the clock put back.
    void start_page(const char* name);
    // Stores "PAGE-STATE.png", or "PAGE.png" for an empty state.
    void take(const char* state);

    void tick(std::int32_t count = 1);
    void wait(std::uint32_t ms) { tick(static_cast<std::int32_t>(ms / TICK_MS)); }
    void move(std::int32_t x, std::int32_t y);
    // To a place within the object; its middle without one.
    void move_to(const WM_SCREEN_OBJECT& object, std::int32_t x = -1, std::int32_t y = -1);
    void leave();
    void press(MOUSE_BUTTON button = MOUSE_BUTTON_LEFT);
    void release(MOUSE_BUTTON button = MOUSE_BUTTON_LEFT);
    void click(const WM_SCREEN_OBJECT& object, MOUSE_BUTTON button = MOUSE_BUTTON_LEFT);
    // With KEYBOARD_MODIFIER bits.
    void key(KEY_TYPE key, std::uint32_t modifiers = 0);
    void type(const char* text);

private:
    std::uint32_t (*const usual_clock)();
    DISK_MANAGER folder;
    std::string page;
    bool ready = false;
};

#endif  // GALLERY_CAMERA_H
