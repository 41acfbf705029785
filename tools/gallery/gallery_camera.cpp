#include "gallery_camera.h"

#include <filesystem>

#include "modules/gui/message_box.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_manager.h"
#include "platform/window_platform.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
// Some time after 0, which the toolkit takes as "never".
constexpr std::uint32_t START_MS = 100000;
// Change of page, first monitor, what that changed.
constexpr std::int32_t TICKS_UNTIL_COMPLETE = 5;

// The clock is asked by a plain function.
std::uint32_t camera_ms = START_MS;

std::uint32_t get_camera_ms() {
    return camera_ms;
}

}  // namespace

GALLERY_CAMERA::GALLERY_CAMERA() : usual_clock(WM_SCREEN_OBJECT::millisecond_clock) {
    WM_SCREEN_OBJECT::millisecond_clock = get_camera_ms;
}

bool GALLERY_CAMERA::set_folder(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(name, error);
    std::filesystem::create_directories(path, error);
    ready = !error && folder.move_down(path.c_str(), false, true);
    return ready;
}

GALLERY_CAMERA::~GALLERY_CAMERA() {
    WM_SCREEN_OBJECT::millisecond_clock = usual_clock;
}

void GALLERY_CAMERA::start_page(const char* name) {
    page = name;
    camera_ms = START_MS;
    MESSAGE_BOX::please_wait_animation_frame = MESSAGE_BOX::NO_FRAME;
    MOUSE::release_all();
    MOUSE::wheel_pos = 0;
    KEYBOARD::set_modifiers(0);
    KEYBOARD().clear_buffer();
    leave();
    tick(TICKS_UNTIL_COMPLETE);
}

void GALLERY_CAMERA::take(const char* state) {
    const std::string name = *state == '\0' ? page + ".png" : page + "-" + state + ".png";
    const WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    ready = save_window_picture(manager.get_window_handle(WINDOW), folder, name.c_str()) && ready;
}

void GALLERY_CAMERA::tick(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        camera_ms += TICK_MS;
        WM_WINDOW_MANAGER::get_instance()->monitor(0);
    }
}

void GALLERY_CAMERA::move(std::int32_t x, std::int32_t y) {
    MOUSE::set_position(static_cast<char>(WINDOW), static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y));
    tick(2);
}

void GALLERY_CAMERA::move_to(const WM_SCREEN_OBJECT& object, std::int32_t x, std::int32_t y) {
    move(object.x + (x >= 0 ? x : object.width / 2), object.y + (y >= 0 ? y : object.height / 2));
}

void GALLERY_CAMERA::leave() {
    MOUSE::set_position(-1, -1, -1);
    tick(2);
}

void GALLERY_CAMERA::press(MOUSE_BUTTON button) {
    MOUSE::process_mouse_button(button, 1);
    tick(2);
}

void GALLERY_CAMERA::release(MOUSE_BUTTON button) {
    MOUSE::process_mouse_button(button, 0);
    tick(3);
}

void GALLERY_CAMERA::click(const WM_SCREEN_OBJECT& object, MOUSE_BUTTON button) {
    move_to(object);
    press(button);
    release(button);
}

void GALLERY_CAMERA::key(KEY_TYPE code, std::uint32_t modifiers) {
    KEYBOARD::set_modifiers(modifiers);
    KEYBOARD::process_key_event(code);
    tick(3);
    KEYBOARD::set_modifiers(0);
}

void GALLERY_CAMERA::type(const char* text) {
    for (; *text != '\0'; ++text) {
        KEYBOARD::process_char_event(static_cast<unsigned char>(*text), 0);
        tick();
    }
}
