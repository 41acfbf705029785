// WM_ANIMATION: a strip of frames that plays.
#ifndef MODULES_WINMAN_WM_ANIMATION_H
#define MODULES_WINMAN_WM_ANIMATION_H

#include <cstdint>

#include "modules/winman/object_hint.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/sprite.h"
#include "platform/image.h"

enum ANIMATION_CALLBACK_TYPE : std::int32_t {
    ANIMATION_CALLBACK_ON_PRESS = 0,
    ANIMATION_CALLBACK_ON_RELEASE = 1,
    ANIMATION_CALLBACK_ON_BOTH = 2,
};

// Plays from the start. It is started again by clearing stop_at_first and stop_at_last and setting
// `playing`, and fading_in if fade_on_start is set.
class WM_ANIMATION : public WM_SCREEN_OBJECT {
public:
    // Copies the strip and takes the size of one frame. `frame_delay` in milliseconds.
    WM_ANIMATION(std::int16_t x, std::int16_t y, IMAGE* sheet, std::int16_t frames,
                 std::int16_t frame_delay, unsigned char visible, WM_CALLBACK callback, void* data1,
                 void* data2, ANIMATION_CALLBACK_TYPE type, signed char window);
    ~WM_ANIMATION() override;

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    // WM_MESG_HANDLED when a step was made.
    WM_MESG update(unsigned char modal_pass) override;
    bool can_have_focus() override { return false; }
    void draw_object() override;

    // Null or empty: no hint. Yields whether there is one.
    bool set_hint_text(const char* hint_text) { return hint.set_text(hint_text); }
    void update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
        hint.update_hint_time(time, px, py);
    }

    IMAGE sheet;  // own copy of the strip; before `sprite`, which draws from it
    SPRITE sprite;
    bool clickable = false;
    bool last_pressed = false;  // the left button at the last monitor
    bool playing = true;
    bool stop_at_first = false, stop_at_last = false;
    bool fade_on_start = false, fading_in = false, fading_out = false;
    double alpha = 255.0;
    bool repeat_while_held = false;
    std::int16_t click_x = -1, click_y = -1;  // as in WM_IMAGE
    std::uint16_t frame_delay;
    std::uint32_t last_step = 0;  // now_ms
    ANIMATION_CALLBACK_TYPE callback_type;
    OBJECT_HINT hint{*this};

private:
    WM_MESG click(bool left, std::int16_t px, std::int16_t py);
    void step_fade();
};

#endif  // MODULES_WINMAN_WM_ANIMATION_H
