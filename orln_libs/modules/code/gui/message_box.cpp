#include "modules/gui/message_box.h"

#include <algorithm>

#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_manager.h"
#include "skin_lookup.h"
#include "to_short.h"

std::uint16_t MESSAGE_BOX::please_wait_animation_frame = MESSAGE_BOX::NO_FRAME;

namespace {

// Between the text and what stands below it, and what is left free in all, in y spacings.
constexpr std::int32_t SPACINGS_BELOW_TEXT = 2, SPACINGS_IN_ALL = 6;
// A lower text box lays nothing out, and so would seem to hold every text.
constexpr std::int32_t LEAST_TEXT_HEIGHT = 2;

std::int32_t get_y_spacing() {
    static SKIN_STYLE DIALOG_BACKGROUND_INDEX = {"DIALOG_BACKGROUND"};
    return DIALOG_BACKGROUND_INDEX.get().y_spacing;
}

std::int16_t get_control_height() {
    static SKIN_CONSTANT DIALOG_DEFAULT_CONTROL_HEIGHT_INDEX = {"DIALOG_DEFAULT_CONTROL_HEIGHT"};
    return DIALOG_DEFAULT_CONTROL_HEIGHT_INDEX.get();
}

IMAGE* get_please_wait_image() {
    static std::int32_t PLEASE_WAIT_ANIMATION_INDEX = -1;
    return GUI_SKIN::get_image("PLEASE_WAIT_ANIMATION", nullptr, &PLEASE_WAIT_ANIMATION_INDEX);
}

}  // namespace

MESSAGE_BOX::MESSAGE_BOX(const char* title_text, const char* text, signed char box_mode,
                         signed char kind, signed char window_)
    : DIALOG_BASE(-1, -1, -1, -1, title_text, 0, kind, window_), mode(box_mode) {
    setup(text);
}

MESSAGE_BOX::MESSAGE_BOX(const char* title_text, const char* text, signed char box_mode,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, WM_CALLBACK callback1, signed char window_)
    : DIALOG_BASE(-1, -1, -1, -1, title_text, 0, kind, text1, data1_1, data2_1, type1, callback1,
                  window_),
      mode(box_mode) {
    setup(text);
}

MESSAGE_BOX::MESSAGE_BOX(const char* title_text, const char* text, signed char box_mode,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         signed char window_)
    : DIALOG_BASE(-1, -1, -1, -1, title_text, 0, kind, text1, data1_1, data2_1, type1, text2,
                  data1_2, data2_2, type2, callback1, callback2, window_),
      mode(box_mode) {
    setup(text);
}

MESSAGE_BOX::MESSAGE_BOX(const char* title_text, const char* text, signed char box_mode,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, const char* text3, void* data1_3, void* data2_3,
                         signed char type3, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         WM_CALLBACK callback3, signed char window_)
    : DIALOG_BASE(-1, -1, -1, -1, title_text, 0, kind, text1, data1_1, data2_1, type1, text2,
                  data1_2, data2_2, type2, text3, data1_3, data2_3, type3, callback1, callback2,
                  callback3, window_),
      mode(box_mode) {
    setup(text);
}

MESSAGE_BOX::MESSAGE_BOX(const char* title_text, const char* text, signed char box_mode,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, const char* text3, void* data1_3, void* data2_3,
                         signed char type3, const char* text4, void* data1_4, void* data2_4,
                         signed char type4, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         WM_CALLBACK callback3, WM_CALLBACK callback4, signed char window_)
    : DIALOG_BASE(-1, -1, -1, -1, title_text, 0, kind, text1, data1_1, data2_1, type1, text2,
                  data1_2, data2_2, type2, text3, data1_3, data2_3, type3, text4, data1_4, data2_4,
                  type4, callback1, callback2, callback3, callback4, window_),
      mode(box_mode) {
    setup(text);
}

MESSAGE_BOX::~MESSAGE_BOX() {
    if (please_wait != nullptr) {
        please_wait_animation_frame = static_cast<std::uint16_t>(please_wait->sprite.frame);
    }
}

void MESSAGE_BOX::setup(const char* text) {
    static SKIN_CONSTANT MESSAGE_BOX_WIDTH_INDEX = {"MESSAGE_BOX_WIDTH"};
    static SKIN_CONSTANT MESSAGE_BOX_HEIGHT_INDEX = {"MESSAGE_BOX_HEIGHT"};
    const std::int16_t box_width = MESSAGE_BOX_WIDTH_INDEX.get();
    const std::int16_t box_height = MESSAGE_BOX_HEIGHT_INDEX.get();
    resize(box_width > 0 ? box_width : width, box_height > 0 ? box_height : height, 0);
    centre_x();
    centre_y();

    std::int32_t text_height = contents->height;
    const std::int32_t y_spacing = get_y_spacing();
    const bool with_check_box = (mode & MESSAGE_BOX_DO_NOT_SHOW_AGAIN) != 0;
    const bool with_animation = !with_check_box && (mode & MESSAGE_BOX_PLEASE_WAIT) != 0;
    if (with_check_box) {
        text_height -= SPACINGS_IN_ALL * y_spacing + get_control_height();
    } else if (with_animation) {
        text_height -= SPACINGS_IN_ALL * y_spacing + get_please_wait_image()->height;
    }
    if (text_height < LEAST_TEXT_HEIGHT) {
        resize(width, to_short(height + LEAST_TEXT_HEIGHT - text_height), 0);
        centre_y();
        text_height = LEAST_TEXT_HEIGHT;
    }
    auto* text_box = new TEXT_BOX(0, 0, to_short(contents->width - 1), to_short(text_height - 1),
                                  text, -1, nullptr, TBF_MULTI_LINE | TBF_FIXED_SIZE,
                                  "DIALOG_MESSAGE", nullptr, nullptr, nullptr, window);
    std::int16_t added_x = 0, added_y = 0;
    expand_text_box(*text_box, added_x, added_y);
    add_object(text_box, 1);
    const std::int16_t below = to_short(text_box->get_height() + SPACINGS_BELOW_TEXT * y_spacing);
    if (with_check_box) {
        add_do_not_show(below);
    } else if (with_animation) {
        add_please_wait(below);
    }
}

void MESSAGE_BOX::add_please_wait(std::int16_t top) {
    static SKIN_CONSTANT MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT_INDEX = {
        "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT"};
    static SKIN_CONSTANT MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE_INDEX = {
        "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE"};
    IMAGE* sheet = get_please_wait_image();
    const std::int16_t frames = MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT_INDEX.get();
    // In milliseconds a frame.
    const std::int16_t rate = MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE_INDEX.get();
    // A skin without the strip.
    if (frames < 1 || sheet->width < frames) {
        return;
    }
    please_wait = new WM_ANIMATION(to_short((contents->width - sheet->width / frames) / 2), top,
                                   sheet, frames, std::max<std::int16_t>(rate, 1), 1, nullptr,
                                   nullptr, nullptr, ANIMATION_CALLBACK_ON_PRESS, window);
    if (please_wait_animation_frame >= 1 && please_wait_animation_frame <= frames) {
        please_wait->sprite.frame = static_cast<std::int16_t>(please_wait_animation_frame);
    }
    add_object(please_wait, 1);
}

void MESSAGE_BOX::add_do_not_show(std::int16_t top) {
    static SKIN_STYLE DIALOG_CHECK_BOX_INDEX = {"DIALOG_CHECK_BOX"};
    static SKIN_CONSTANT DIALOG_DEFAULT_CONTROL_WIDTH_INDEX = {"DIALOG_DEFAULT_CONTROL_WIDTH"};
    do_not_show = new WM_CHECK_BOX(0, top, DIALOG_CHECK_BOX_INDEX.get(), "Do Not Show This Again",
                                   nullptr, nullptr, nullptr, window);
    const std::int16_t control_width = DIALOG_DEFAULT_CONTROL_WIDTH_INDEX.get();
    const std::int16_t control_height = get_control_height();
    do_not_show->resize(control_width > 0 ? control_width : do_not_show->width,
                        control_height > 0 ? control_height : do_not_show->height, 0);
    do_not_show->move(to_short((contents->width - do_not_show->width) / 2), top);
    add_object(do_not_show, 1);
}

bool MESSAGE_BOX::get_do_not_show_this_again() const {
    return do_not_show != nullptr && do_not_show->checked;
}
