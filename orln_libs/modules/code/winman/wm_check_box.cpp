#include "modules/winman/wm_check_box.h"

#include <algorithm>
#include <utility>

#include "../gui/to_short.h"
#include "modules/winman/wm_button.h"
#include "platform/font_manager.h"

namespace {

// The box is so much larger than a letter, and never smaller than this.
constexpr std::int16_t BOX_EXTRA = 4, BOX_MINIMUM = 10;
constexpr std::int16_t BOX_TOP = 2;  // its place within the check box
constexpr unsigned char PART_EVENTS = BUTTON_EVENT_PRESS | BUTTON_EVENT_RELEASE;

}  // namespace

WM_CHECK_BOX::WM_CHECK_BOX(std::int16_t x_, std::int16_t y_, const WM_STYLE_SET& style,
                           const char* text, WM_CALLBACK callback_, void* data1, void* data2,
                           signed char window_)
    : WM_SCREEN_OBJECT(style.visible, callback_, data1, data2, window_) {
    x = x_;
    y = y_;
    setup(style, text);
}

WM_CHECK_BOX::WM_CHECK_BOX(std::int16_t x_, std::int16_t y_, const WM_STYLE_SET& style,
                           const char* text, WM_CALLBACK callback_, void* data1, void* data2,
                           void* right1, void* right2, signed char window_)
    : WM_CHECK_BOX(x_, y_, style, text, callback_, data1, data2, window_) {
    right_data1 = right1;
    right_data2 = right2;
}

WM_CHECK_BOX::~WM_CHECK_BOX() = default;

void WM_CHECK_BOX::setup(const WM_STYLE_SET& style, const char* text) {
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    const std::int16_t font_x_sz = style.font_x_sz == -1 ? fonts.x_size : style.font_x_sz;
    const std::int16_t font_y_sz = style.font_y_sz == -1 ? fonts.y_size : style.font_y_sz;
    const std::int16_t side = std::max(to_short(font_y_sz + BOX_EXTRA), BOX_MINIMUM);
    const std::int16_t box_y = to_short(y + BOX_TOP);
    box = new WM_BUTTON(x, box_y, to_short(x + side - 1), to_short(box_y + side - 1), style, "",
                        nullptr, callback_of_parts, this, nullptr, PART_EVENTS, window, 1, 0);
    box->activated_query = activated_callback;
    box->activated_query_data = this;
    // The mark stands in the middle, whatever the style keeps free round the label.
    box->left_gap = box->right_gap = box->top_gap = box->bottom_gap = 0;
    box->button_flags &=
        ~static_cast<std::uint32_t>(BUTTON_LEFT_JUSTIFY_TEXT | BUTTON_RIGHT_JUSTIFY_TEXT |
                                    BUTTON_TOP_ALIGN_TEXT | BUTTON_BOTTOM_ALIGN_TEXT);
    if (style.image_filename != nullptr && style.has_flag(STYLE_DONT_RESIZE_IMAGE)) {
        box->button_flags = BUTTON_DONT_RESIZE_IMAGE;
    }

    label_style = std::make_unique<WM_STYLE_SET>(style);
    label_style->image_filename.clear();
    label_style->clear_runtime_cache();
    label_style->flags &= ~static_cast<std::uint32_t>(STYLE_DONT_RESIZE_IMAGE);
    label_style->border_top_gap = label_style->border_bottom_gap =
        static_cast<std::uint16_t>(side - font_y_sz - 1);
    const std::int16_t between = to_short(font_x_sz / 2);
    label = new WM_BUTTON(to_short(x + side + between), y, -1, -1, *label_style, text, nullptr,
                          callback_of_parts, this, nullptr, PART_EVENTS, window, 1, 0);
    // One stop of the focus: the check box has it, and its box shows it and takes the keys.
    box->focus_owner = label->focus_owner = this;
    label->allowed_focus = false;

    width = to_short(side + between + label->width);
    height = std::max(box->height, label->height);
    add_object(box, 0);
    add_object(label, 0);
}

void WM_CHECK_BOX::hide(unsigned char modals, unsigned char children) {
    for (WM_BUTTON* part : {box, label}) {
        part->hint.reset();
        part->icon_hint.reset();
    }
    WM_SCREEN_OBJECT::hide(modals, children);
}

void WM_CHECK_BOX::resize(std::int16_t new_width, std::int16_t new_height,
                          unsigned char /*children*/) {
    WM_SCREEN_OBJECT::resize(new_width, new_height, 0);
    for (WM_BUTTON* part : {box, label}) {
        part->move(part->x, to_short(y + (height - part->height) / 2));
    }
}

bool WM_CHECK_BOX::can_have_focus() {
    return (box->enabled && box->get_allowed_focus()) ||
           (label->enabled && label->get_allowed_focus());
}

void WM_CHECK_BOX::set_checked(unsigned char on) {
    checked = on != 0;
    box->set_activated(on);
    if (!box->is_graphical()) {
        box->set_string(checked ? "X" : " ", 0);
    }
    if (visible) {
        request_draw(0, 0);
    }
}

void WM_CHECK_BOX::set_enabled(unsigned char on) {
    box->enabled = label->enabled = on != 0;
    if (visible) {
        request_draw(0, 0);
    }
}

unsigned char WM_CHECK_BOX::activated_callback(void* data) {
    return static_cast<const WM_CHECK_BOX*>(data)->checked;
}

WM_MESG WM_CHECK_BOX::callback_of_parts(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
    if (!static_cast<const WM_BUTTON*>(object)->final_event) {
        return WM_MESG_NONE;
    }
    auto& check_box = *static_cast<WM_CHECK_BOX*>(data1);
    check_box.set_checked(!check_box.checked);
    const WM_MESG result =
        check_box.callback != nullptr
            ? check_box.callback(&check_box, check_box.callback_data1, check_box.callback_data2)
            : WM_MESG_NONE;
    if (result == WM_MESG_REMOVE_OBJECT) {
        check_box.removal_requested = true;  // of the check box, not of the part
        return WM_MESG_HANDLED;
    }
    return result;
}

WM_MESG WM_CHECK_BOX::monitor() {
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    return std::exchange(removal_requested, false) ? WM_MESG_REMOVE_OBJECT : result;
}
