// The picture of a button.
#include "../gui/to_short.h"
#include "active_area.h"
#include "control_face.h"
#include "flag_map.h"
#include "modules/winman/focus_tools.h"
#include "modules/winman/label_drawing.h"
#include "modules/winman/wm_button.h"
#include "platform/font_manager.h"
#include "platform/image.h"

namespace {

constexpr FLAG_PAIR LABEL_FLAGS_OF_BUTTON[] = {
    {BUTTON_LEFT_JUSTIFY_TEXT, LABEL_LEFT_JUSTIFY_TEXT},
    {BUTTON_RIGHT_JUSTIFY_TEXT, LABEL_RIGHT_JUSTIFY_TEXT},
    {BUTTON_TOP_ALIGN_TEXT, LABEL_TOP_ALIGN_TEXT},
    {BUTTON_BOTTOM_ALIGN_TEXT, LABEL_BOTTOM_ALIGN_TEXT},
    {BUTTON_SHADOW_TEXT, LABEL_SHADOW_TEXT},
    {BUTTON_INSET_TEXT, LABEL_INSET_TEXT},
    {BUTTON_ICON_LEFT, LABEL_ICON_LEFT},
    {BUTTON_ICON_RIGHT, LABEL_ICON_RIGHT},
    {BUTTON_ICON_TOP, LABEL_ICON_TOP},
    {BUTTON_ICON_BOTTOM, LABEL_ICON_BOTTOM},
    {BUTTON_ICON_ATTACH_TO_TEXT, LABEL_ICON_ATTACH_TO_TEXT},
    {BUTTON_WRAP_TEXT, LABEL_WRAP_TEXT},
};

// The right arrow keeps this distance from the edge.
constexpr int RIGHT_ARROW_GAP = 3;

}  // namespace

void WM_BUTTON::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    {
        const SAVED_ACTIVE_AREA saved(buffer);
        buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
        if ((button_flags & BUTTON_OWNER_SHADING) == 0) {
            shading_flags = to_short((shading_flags & ~BUTTON_SHADING_PRESSED) |
                                     (pressed ? BUTTON_SHADING_PRESSED : 0));
        }
        if (is_graphical()) {
            get_current_box().draw(x, y, to_short(x + width - 1), to_short(y + height - 1), buffer,
                                   (button_flags & BUTTON_DONT_RESIZE_IMAGE) == 0,
                                   IMAGE_COPY_BLEND);
        } else {
            draw_background(*buffer);
        }
        const std::int32_t offset =
            enabled && (shading_flags & BUTTON_SHADING_SHIFT) && is_shaded() ? 1 : 0;
        draw_label(*buffer, offset);
        draw_active_mark(*buffer, offset);
        draw_arrows(offset);
        draw_focus();
    }
    if (checking_modal_redraw && dragging) {
        draw_dragged(*buffer);
    }
}

void WM_BUTTON::draw_focus() {
    if (is_focused() && !has_focus_look()) {
        draw_focus_frame(*this, get_focus_colour());
    }
}

// The pressed state of the drawing, which the owner may have taken over.
bool WM_BUTTON::is_shaded() const {
    return (button_flags & BUTTON_OWNER_SHADING) ? (shading_flags & BUTTON_SHADING_PRESSED) != 0
                                                 : pressed;
}

// The style tells the focus by its looks under the pointer, which what is activated needn't have.
bool WM_BUTTON::has_focus_look() const {
    if (mouse_over_text.is_set() || (mouse_over_underline.is_set() && callback != nullptr)) {
        return true;
    }
    if (!is_graphical()) {
        return mouse_over.is_set() && !(activated && active_mark[0] == '\0');
    }
    const bool shows_active_box =
        activated && (active_over_box.are_images_valid() || active_up_box.are_images_valid());
    return mouseovers_enabled && (shows_active_box ? active_over_box : over_box).are_images_valid();
}

COLOUR WM_BUTTON::get_background_colour() const {
    COLOUR colour = is_hot() && mouse_over.is_set() ? mouse_over : bg;
    if (activated && active_mark[0] == '\0') {
        colour = active_bg;
    }
    if (pressed && highlight.is_set()) {
        colour = highlight;
    }
    return flashing && flashing_bg.is_set() ? flashing_bg : colour;
}

COLOUR WM_BUTTON::get_text_colour() const {
    COLOUR colour = text;
    if (activated && active_mark[0] == '\0' && active_text.is_set()) {
        colour = active_text;
    }
    if (pressed && highlight_text.is_set()) {
        colour = highlight_text;
    }
    if (flashing && flashing_text.is_set()) {
        colour = flashing_text;
    }
    if (is_hot() && mouse_over_text.is_set()) {
        colour = mouse_over_text;
    }
    return enabled ? colour : LABEL_DRAWING::get_disabled_colour(colour);
}

COLOUR WM_BUTTON::get_underline_colour() const {
    if (callback == nullptr) {
        return COLOUR_INVISIBLE;
    }
    return is_hot() && mouse_over_underline.is_set() ? mouse_over_underline : underline;
}

const char* WM_BUTTON::get_shown_text() const {
    const bool blinks = flashing && flash_text.get_str_length() > 0;
    return blinks ? flash_text.value.string_value : static_cast<const char*>(title);
}

// The first valid one of those that fit the state.
IMAGE_BOX& WM_BUTTON::get_current_box() {
    const bool shaded = (shading_flags & BUTTON_SHADING_PRESSED) != 0;
    const bool hot = is_hot() && mouseovers_enabled;
    const struct {
        bool applies;
        IMAGE_BOX& box;
    } states[] = {
        {flashing, flashing_box},
        {pressed, highlighted_box},
        {activated && !enabled, active_disabled_box},
        {activated && shaded, active_down_box},
        {activated && hot, active_over_box},
        {activated, active_up_box},
        {!enabled, disabled_box},
        {shaded, down_box},
        {hot, over_box},
    };
    for (const auto& state : states) {
        if (state.applies && state.box.are_images_valid()) {
            return state.box;
        }
    }
    return up_box;
}

void WM_BUTTON::draw_background(IMAGE& target) {
    const bool fades = !(pressed && highlight.is_set());
    FACE_FADE fade = FACE_FADE::NONE;
    if (fades && (button_flags & BUTTON_HFADED_BACKGROUND)) {
        fade = FACE_FADE::ACROSS;
    } else if (fades && (button_flags & BUTTON_VFADED_BACKGROUND)) {
        fade = FACE_FADE::DOWN;
    }
    fill_face(target, *this, get_background_colour(), fading, fade);
}

void WM_BUTTON::draw_label(IMAGE& target, std::int32_t offset) {
    LABEL_DRAWING label(*this);
    label.flags = map_flags(LABEL_FLAGS_OF_BUTTON, button_flags);
    if (!enabled) {
        label.flags &= ~static_cast<std::uint32_t>(LABEL_SHADOW_TEXT | LABEL_INSET_TEXT);
        label.icon_alpha = LABEL_DRAWING::DISABLED_ICON_ALPHA;
    }
    label.text = get_shown_text();
    label.text_colour = get_text_colour();
    label.underline = get_underline_colour();
    label.offset = offset;
    label.draw(target);
    icon_left = to_short(label.icon_left);
    icon_right = to_short(label.icon_right);
    if (label.was_cut && !hint.is_set()) {
        hint_is_cut_text = set_hint_text(label.text);
    }
}

void WM_BUTTON::draw_active_mark(IMAGE& target, std::int32_t offset) {
    if (!activated || active_mark[0] == '\0') {
        return;
    }
    const COLOUR colour = get_text_colour();
    const std::int32_t mark_x = x + left_gap - get_text_width(active_mark) + offset;
    const std::int32_t mark_y = y + (height - font_y_sz) / 2 - bottom_gap + offset;
    for (std::int32_t shift = enabled ? 0 : 1; shift >= 0; --shift) {
        target.process_and_render_string(mark_x + shift, mark_y + shift, colour, COLOUR_INVISIBLE,
                                         COLOUR_INVISIBLE, font, font_x_sz, font_y_sz, active_mark,
                                         0);
    }
}

void WM_BUTTON::draw_arrows(std::int32_t offset) {
    const std::int32_t half = height / 2;
    const std::int32_t right = x + width - 1;
    const struct {
        BUTTON_FLAG flag;
        SCROBJ_ARROW_TYPE type;
        std::int32_t x1, x2;
    } arrows[] = {
        {BUTTON_LEFT_ARROW, SCROBJ_ARROW_LEFT, x, x + half - 1},
        {BUTTON_RIGHT_ARROW, SCROBJ_ARROW_RIGHT, right - RIGHT_ARROW_GAP - half + 1,
         right - RIGHT_ARROW_GAP},
        {BUTTON_UP_ARROW, SCROBJ_ARROW_UP, right - height + 1, right},
        {BUTTON_DOWN_ARROW, SCROBJ_ARROW_DOWN, right - height + 1, right},
    };
    for (const auto& arrow : arrows) {
        if ((button_flags & arrow.flag) == 0) {
            continue;
        }
        for (std::int32_t shift = enabled ? 0 : 1; shift >= 0; --shift) {
            const std::int32_t by = shift + offset;
            draw_arrow(to_short(arrow.x1 + by), to_short(y + by), to_short(arrow.x2 + by),
                       to_short(y + height - 1 + by), get_text_colour(), arrow.type, enabled, -1,
                       -1);
        }
    }
}
