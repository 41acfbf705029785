// WM_IMAGE: a picture that may be clicked.
#ifndef MODULES_WINMAN_WM_IMAGE_H
#define MODULES_WINMAN_WM_IMAGE_H

#include <cstdint>

#include "modules/winman/object_hint.h"
#include "modules/winman/screen_object.h"
#include "platform/image.h"

// The bits of WM_IMAGE::click_mode.
enum IMAGE_CLICK_MODE : unsigned char {
    IMAGE_CLICK_ON_PRESS = 1,
    IMAGE_CLICK_ON_RELEASE = 2,
};

// The owner fills `image`. It is scaled to the object's size while auto_resize is set; an object
// without a size (0 or -1) takes that of the image when it is drawn. With the focus, which the
// owner allows, Return and Space click at the centre.
class WM_IMAGE : public WM_SCREEN_OBJECT {
public:
    WM_IMAGE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
             unsigned char visible, WM_CALLBACK callback, void* data1, void* data2,
             unsigned char click_mode, signed char window);
    ~WM_IMAGE() override;

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char draw) override;
    std::int16_t get_width() override;
    std::int16_t get_height() override;
    void draw_object() override;

    // Null or empty: no hint. Yields whether there is one.
    bool set_hint_text(const char* hint_text) { return hint.set_text(hint_text); }
    void update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
        hint.update_hint_time(time, px, py);
    }

    IMAGE image;
    bool last_pressed = false;  // the left button at the last monitor
    bool repeat_while_held = false;
    // Within a callback: where the click was, from the object's corner; -1 otherwise.
    std::int16_t click_x = -1, click_y = -1;
    unsigned char click_mode;  // of IMAGE_CLICK_MODE
    bool mouse_over_now = false;
    COLOUR overlay_colour = COLOUR_INVISIBLE;  // over the image under the pointer and with focus
    bool auto_resize = true;
    OBJECT_HINT hint{*this};

private:
    bool has_size() const { return width != 0 && width != -1 && height != 0 && height != -1; }
    void take_size();
    WM_MESG click(bool left, std::int16_t px, std::int16_t py);

    bool click_key_was_down = false;
};

#endif  // MODULES_WINMAN_WM_IMAGE_H
