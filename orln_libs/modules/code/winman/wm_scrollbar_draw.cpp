// Drawing of WM_SCROLLBAR.
#include "active_area.h"
#include "modules/gui/parameter.h"
#include "modules/winman/object_hint.h"
#include "modules/winman/wm_scrollbar.h"
#include "platform/image.h"

namespace {

// The part of a button's side that is left free on each side of its arrow.
constexpr std::int16_t ARROW_GAP_PART = 4;

}  // namespace

// The first of the two that can be drawn, or null.
IMAGE_BOX* WM_SCROLLBAR::find_box(STYLE_BOX first_choice, STYLE_BOX fallback) {
    for (const STYLE_BOX which : {first_choice, fallback}) {
        IMAGE_BOX& box = images[which - STYLE_BOX_BAR];
        if (box.are_images_valid()) {
            return &box;
        }
    }
    return nullptr;
}

bool WM_SCROLLBAR::draw_piece(const WM_REGION& region, STYLE_BOX normal, STYLE_BOX state) {
    IMAGE_BOX* box = find_box(state, normal);
    if (box == nullptr) {
        return false;
    }
    box->draw(region.left, region.top, region.right, region.bottom, get_back_buffer(-1),
              (draw_flags & DONT_RESIZE_IMAGE) == 0, IMAGE_COPY_BLEND);
    return true;
}

void WM_SCROLLBAR::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    // A bar that is too short for its slider and buttons doesn't draw beyond its ends.
    const SAVED_ACTIVE_AREA saved(buffer);
    buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    const bool focused = has_focus();
    if (is_graphical()) {
        const bool on_bar = over == ON_BAR_BEFORE || over == ON_BAR_BEHIND;
        draw_piece(get_region(), STYLE_BOX_BAR,
                   !enabled ? STYLE_BOX_BAR_DISABLED
                   : on_bar ? STYLE_BOX_BAR_OVER
                            : STYLE_BOX_BAR);
        draw_piece(get_slider_region(), STYLE_BOX_SLIDER_UP,
                   !enabled                       ? STYLE_BOX_SLIDER_DISABLED
                   : dragging                     ? STYLE_BOX_SLIDER_DOWN
                   : over == ON_SLIDER || focused ? STYLE_BOX_SLIDER_OVER
                                                  : STYLE_BOX_SLIDER_UP);
    } else {
        draw_plain(*buffer);
    }
    if (has_buttons()) {
        draw_button(*buffer, false);
        draw_button(*buffer, true);
    }
    if (focused) {
        buffer->draw_rect(x, y, x + width - 1, y + height - 1, slider, 1, 1);
    }
}

void WM_SCROLLBAR::draw_plain(IMAGE& buffer) {
    if (bar.is_set()) {
        buffer.fill_rect(x, y, x + width - 1, y + height - 1, bar, 1);
    }
    if (outline.is_set()) {
        buffer.draw_rect(x, y, x + width - 1, y + height - 1, outline, 1, 1);
    }
    const WM_REGION region = get_slider_region();
    COLOUR colour = slider;
    if (!enabled) {
        colour = COLOUR(colour.red(), colour.green(), colour.blue(), colour.alpha() / 4);
    }
    // A slim gap to the outline lets the slider stand out.
    const int gap_x = is_vertical() && width > 6 ? 2 : 0,
              gap_y = !is_vertical() && height > 6 ? 2 : 0;
    buffer.fill_rect(region.left + gap_x, region.top + gap_y, region.right - gap_x,
                     region.bottom - gap_y, colour, 1);
}

void WM_SCROLLBAR::draw_button(IMAGE& buffer, bool more) {
    const WM_REGION region = get_button_region(more);
    const bool is_over = over == (more ? ON_MORE : ON_LESS);
    const bool is_down = is_over && held == over;
    const STYLE_BOX up = more ? STYLE_BOX_MORE_UP : STYLE_BOX_LESS_UP;
    const STYLE_BOX state = !enabled  ? (more ? STYLE_BOX_MORE_DISABLED : STYLE_BOX_LESS_DISABLED)
                            : is_down ? (more ? STYLE_BOX_MORE_DOWN : STYLE_BOX_LESS_DOWN)
                            : is_over ? (more ? STYLE_BOX_MORE_OVER : STYLE_BOX_LESS_OVER)
                                      : up;
    if (draw_piece(region, up, state)) {
        return;
    }
    if (!is_graphical()) {
        if (bar.is_set()) {
            buffer.fill_rect(region.left, region.top, region.right, region.bottom,
                             is_down ? slider : bar, 1);
        }
        if (outline.is_set()) {
            buffer.draw_rect(region.left, region.top, region.right, region.bottom, outline, 1, 1);
        }
    }
    const SCROBJ_ARROW_TYPE arrow = is_vertical() ? (more ? SCROBJ_ARROW_DOWN : SCROBJ_ARROW_UP)
                                                  : (more ? SCROBJ_ARROW_RIGHT : SCROBJ_ARROW_LEFT);
    const auto gap_x = static_cast<std::int16_t>((region.right - region.left + 1) / ARROW_GAP_PART);
    const auto gap_y = static_cast<std::int16_t>((region.bottom - region.top + 1) / ARROW_GAP_PART);
    draw_arrow(region.left, region.top, region.right, region.bottom, text, arrow, enabled, gap_x,
               gap_y);
}
