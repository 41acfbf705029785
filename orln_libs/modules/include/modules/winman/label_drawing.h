// LABEL_DRAWING: a text with an icon in a rectangle, as WM_BUTTON and WM_SCRIPT draw it.
#ifndef MODULES_WINMAN_LABEL_DRAWING_H
#define MODULES_WINMAN_LABEL_DRAWING_H

#include <cstdint>

#include "platform/colour.h"

class IMAGE;
class IMAGE_BOX;

// The caller maps the bits of its own flags to these. A justification or alignment that is absent
// means centred.
enum LABEL_FLAG : std::uint32_t {
    LABEL_LEFT_JUSTIFY_TEXT = 0x0001,
    LABEL_RIGHT_JUSTIFY_TEXT = 0x0002,
    LABEL_TOP_ALIGN_TEXT = 0x0004,
    LABEL_BOTTOM_ALIGN_TEXT = 0x0008,
    LABEL_SHADOW_TEXT = 0x0010,
    LABEL_INSET_TEXT = 0x0020,
    LABEL_CHISELLED_TEXT = 0x0040,
    LABEL_ICON_LEFT = 0x0080,
    LABEL_ICON_RIGHT = 0x0100,
    LABEL_ICON_TOP = 0x0200,
    LABEL_ICON_BOTTOM = 0x0400,
    LABEL_ICON_ATTACH_TO_TEXT = 0x0800,  // beside the text, not in the gap
    LABEL_WRAP_TEXT = 0x1000,
};

// Fill in the fields, call `draw`, read the results. Costs no memory of its own; it is made anew
// for each draw.
struct LABEL_DRAWING {
    // What is disabled is shown with a part of its alpha.
    static constexpr int DISABLED_ALPHA_DIVISOR = 4;
    static constexpr unsigned char DISABLED_ICON_ALPHA = 255 / DISABLED_ALPHA_DIVISOR;

    LABEL_DRAWING() = default;
    // For a WM_BUTTON or a WM_SCRIPT: its place, font, gaps and icon. What depends on its state is
    // left to be filled in.
    template <class CONTROL>
    explicit LABEL_DRAWING(const CONTROL& control);

    // Draws within the target's active area, which is as before afterwards.
    void draw(IMAGE& target);

    // The colour of something disabled, fainter by DISABLED_ALPHA_DIVISOR.
    static COLOUR get_disabled_colour(COLOUR colour) {
        return colour.with_alpha(
            static_cast<unsigned char>(colour.alpha() / DISABLED_ALPHA_DIVISOR));
    }

    // The natural height of a control with this box in the plain state: that of the centre piece
    // if the box has just a left, a centre and a right piece, otherwise the font's and the gaps'.
    static std::int32_t get_natural_height(const IMAGE_BOX& box, std::int32_t font_y_size,
                                           std::int32_t top_gap, std::int32_t bottom_gap);

    std::int32_t x = 0, y = 0, width = 0, height = 0;
    std::uint32_t flags = 0;
    const char* text = "";  // must not be null
    COLOUR text_colour, underline;
    signed char font = -1;
    std::int32_t font_x_size = 0, font_y_size = 0;
    std::int32_t left_gap = 0, right_gap = 0, top_gap = 0, bottom_gap = 0;
    // Margins that the text keeps clear of; 0 for none. The gap is as wide where the text would
    // enter one.
    std::int32_t reserved_left = 0, reserved_right = 0, reserved_top = 0, reserved_bottom = 0;
    const IMAGE* icon = nullptr;  // one without a height isn't drawn
    unsigned char icon_alpha = 255;
    std::int32_t icon_x_spacing = 0, icon_y_spacing = 0;  // between an attached icon and the text
    std::int32_t offset = 0;  // 1 shifts everything right and down: the control is pressed

    // Results: the icon's cell, 0 and -1 without one, and that the text had to be cut.
    std::int32_t icon_left = 0, icon_right = -1;
    unsigned char was_cut = 0;

private:
    struct BOX {
        std::int32_t x1, y1, x2, y2;
    };
    BOX get_inner_box() const;
    BOX get_icon_cell() const;
    std::int32_t get_text_x(const BOX& box, std::int32_t text_width) const;
    std::int32_t get_text_y(const BOX& box) const;
    void keep_clear_of_margins(std::int32_t text_width);
    BOX attach_icon(BOX& text_box, std::int32_t text_width) const;
    void draw_icon(IMAGE& target, const BOX& cell);
    void draw_text(IMAGE& target, const BOX& text_box);
};

template <class CONTROL>
LABEL_DRAWING::LABEL_DRAWING(const CONTROL& control)
    : x(control.x),
      y(control.y),
      width(control.width),
      height(control.height),
      font(control.font),
      font_x_size(control.font_x_sz),
      font_y_size(control.font_y_sz),
      left_gap(control.left_gap),
      right_gap(control.right_gap),
      top_gap(control.top_gap),
      bottom_gap(control.bottom_gap),
      reserved_left(control.reserved_left),
      reserved_right(control.reserved_right),
      reserved_top(control.reserved_top),
      reserved_bottom(control.reserved_bottom),
      icon(&control.icon),
      icon_x_spacing(control.icon_x_spacing),
      icon_y_spacing(control.icon_y_spacing) {
}

#endif  // MODULES_WINMAN_LABEL_DRAWING_H
