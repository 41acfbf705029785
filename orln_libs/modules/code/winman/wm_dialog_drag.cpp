// Dragging a dialog, itself or as an outline.
#include <algorithm>

#include "../gui/to_short.h"
#include "modules/winman/wm_dialog.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"
#include "platform/mouse.h"

namespace {

// Keeps a dialog on the window; what is larger than the window keeps its beginning there.
std::int16_t clamp_place(std::int32_t place, std::int32_t size, std::int32_t window_size) {
    return to_short(std::max(std::min(place, window_size - size), 0));
}

}  // namespace

bool WM_DIALOG::is_in_title_bar(std::int16_t px, std::int16_t py) {
    return title != nullptr && title->is_in_me(px, py);
}

bool WM_DIALOG::in_drag_area(std::int16_t px, std::int16_t py) {
    if (!is_in_me(px, py)) {
        return false;
    }
    if (is_in_title_bar(px, py) || !contents->is_in_me(px, py)) {
        return true;
    }
    return !no_drag_in_contents && !contents->is_in_child(px, py);
}

void WM_DIALOG::draw_xor_outline(std::int16_t at_x, std::int16_t at_y) {
    if (IMAGE* buffer = get_back_buffer(-1)) {
        buffer->draw_xor_rect(at_x, at_y, at_x + width - 1, at_y + height - 1, COLOUR_WHITE);
    }
}

void WM_DIALOG::move_outline(std::int16_t new_x, std::int16_t new_y) {
    erase_outline();
    drag_x = new_x;
    drag_y = new_y;
    draw_xor_outline(drag_x, drag_y);
    outline_shown = true;
}

void WM_DIALOG::erase_outline() {
    if (outline_shown) {
        outline_shown = false;
        draw_xor_outline(drag_x, drag_y);
    }
}

void WM_DIALOG::start_drag() {
    finish_slide();
    dragging = true;
    dragged = false;
    drag_x = x;
    drag_y = y;
    drag_offset_x = to_short(MOUSE::x - x);
    drag_offset_y = to_short(MOUSE::y - y);
    start_fade(effect.drag_alpha);
    if (!drag_contents) {
        move_outline(x, y);
    }
}

void WM_DIALOG::continue_drag() {
    // No position: the pointer is over none of our windows.
    if (MOUSE::x != -1 || MOUSE::y != -1) {
        std::int32_t window_width = 0, window_height = 0;
        get_window_size(window_width, window_height);
        const std::int16_t new_x = clamp_place(MOUSE::x - drag_offset_x, width, window_width);
        const std::int16_t new_y = clamp_place(MOUSE::y - drag_offset_y, height, window_height);
        if (new_x != drag_x || new_y != drag_y) {
            dragged = true;
            if (outline_shown) {
                move_outline(new_x, new_y);
            } else {
                drag_x = new_x;
                drag_y = new_y;
                move(new_x, new_y);
            }
        }
    }
    if (!MOUSE::is_down(MOUSE_BUTTON_LEFT)) {
        end_drag();
    }
}

void WM_DIALOG::end_drag() {
    dragging = false;
    if (outline_shown) {
        erase_outline();
        move(drag_x, drag_y);
    }
    start_fade(255);
}
