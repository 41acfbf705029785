// MESSAGE_BOX: a dialog with a text, which grows to fit it.
#ifndef MODULES_GUI_MESSAGE_BOX_H
#define MODULES_GUI_MESSAGE_BOX_H

#include <cstdint>

#include "modules/gui/dialog_base.h"

class WM_ANIMATION;
class WM_CHECK_BOX;

// The bits of a message box's mode; the first goes before the second.
enum MESSAGE_BOX_MODE : signed char {
    MESSAGE_BOX_DO_NOT_SHOW_AGAIN = 1,  // with a check box
    MESSAGE_BOX_PLEASE_WAIT = 2,        // with the animation
};

class MESSAGE_BOX : public DIALOG_BASE {
public:
    // No value of please_wait_animation_frame.
    static constexpr std::uint16_t NO_FRAME = 65535;

    // The text is a tagged one, see text_box.h. `kind` and buttons: see DIALOG_BASE.
    MESSAGE_BOX(const char* title, const char* text, signed char mode, signed char kind,
                signed char window);
    MESSAGE_BOX(const char* title, const char* text, signed char mode, signed char kind,
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                WM_CALLBACK callback1, signed char window);
    MESSAGE_BOX(const char* title, const char* text, signed char mode, signed char kind,
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                WM_CALLBACK callback1, WM_CALLBACK callback2, signed char window);
    MESSAGE_BOX(const char* title, const char* text, signed char mode, signed char kind,
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                const char* text3, void* data1_3, void* data2_3, signed char type3,
                WM_CALLBACK callback1, WM_CALLBACK callback2, WM_CALLBACK callback3,
                signed char window);
    MESSAGE_BOX(const char* title, const char* text, signed char mode, signed char kind,
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                const char* text3, void* data1_3, void* data2_3, signed char type3,
                const char* text4, void* data1_4, void* data2_4, signed char type4,
                WM_CALLBACK callback1, WM_CALLBACK callback2, WM_CALLBACK callback3,
                WM_CALLBACK callback4, signed char window);
    ~MESSAGE_BOX() override;

    // The check box is checked; false without one.
    bool get_do_not_show_this_again() const;

    signed char mode;
    WM_CHECK_BOX* do_not_show = nullptr;  // child
    WM_ANIMATION* please_wait = nullptr;  // child

    // The frame at which the last animation ended, so that the next box goes on from there.
    static std::uint16_t please_wait_animation_frame;

private:
    void setup(const char* text);
    void add_please_wait(std::int16_t top);
    void add_do_not_show(std::int16_t top);
};

#endif  // MODULES_GUI_MESSAGE_BOX_H
