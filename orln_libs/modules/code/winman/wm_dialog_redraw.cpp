// How a dialog comes into the back buffer.
#include "active_area.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/window_info.h"
#include "modules/winman/wm_dialog.h"

namespace {

constexpr std::int32_t DARKEN_PERCENT = 50;

WM_REGION get_active_region(const IMAGE& image) {
    WM_REGION region;
    region.left = image.active_left;
    region.top = image.active_top;
    region.right = image.active_right;
    region.bottom = image.active_bottom;
    return region;
}

WM_REGION get_dirty_region(const IMAGE& image) {
    WM_REGION region;
    region.left = image.dirty_left;
    region.top = image.dirty_top;
    region.right = image.dirty_right;
    region.bottom = image.dirty_bottom;
    return region;
}

// Copies a rectangle of `source`, which lies at the origin of `origin`, into `target` likewise.
void copy_region(IMAGE& target, const WM_REGION& target_origin, const IMAGE& source,
                 const WM_REGION& source_origin, const WM_REGION& region, IMAGE_COPY_TYPE type) {
    target.copy(&source, region.left - source_origin.left, region.top - source_origin.top,
                region.left - target_origin.left, region.top - target_origin.top,
                region.right - region.left + 1, region.bottom - region.top + 1, type);
}

}  // namespace

bool WM_DIALOG::is_in_redraw_area() {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || !info->update_region.is_set()) {
        return false;
    }
    if (WM_SCREEN_OBJECT::is_in_redraw_area() || shades_background()) {
        return true;
    }
    WM_REGION outline;
    outline.left = drag_x;
    outline.top = drag_y;
    outline.right = static_cast<std::int16_t>(drag_x + width - 1);
    outline.bottom = static_cast<std::int16_t>(drag_y + height - 1);
    return outline_shown && outline.touches(info->update_region);
}

// Of several dialogs only the lowest shades, so that the window is shaded once.
bool WM_DIALOG::shades_background() const {
    const WM_WINDOW_INFO* info = darken_background || grey_background ? get_window_info() : nullptr;
    if (info == nullptr) {
        return false;
    }
    OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::FORWARD);
    while (const WM_SCREEN_OBJECT* modal = walk.next()) {
        if (modal->visible && (modal->type_flags & WMF_DIALOG) != 0 &&
            (modal->type_flags & WMF_FLOATING_MENU) == 0) {
            return modal == this;
        }
    }
    return false;
}

// What is being redrawn has just been painted in full colour. At the first drawing that goes for
// the whole window.
void WM_DIALOG::shade_background(IMAGE& buffer, bool whole_window) {
    const SAVED_ACTIVE_AREA saved(&buffer);
    has_shaded = true;
    if (whole_window) {
        buffer.set_active_area(0, 0, buffer.width - 1, buffer.height - 1);
    }
    const WM_REGION region = get_active_region(buffer);
    if (!region.is_set()) {
        return;
    }
    if (grey_background && whole_window) {
        buffer.make_grey();
    } else if (grey_background) {
        IMAGE part(region.right - region.left + 1, region.bottom - region.top + 1);
        part.get(region.left, region.top, &buffer);
        part.make_grey();
        part.put(region.left, region.top, &buffer, IMAGE_COPY_SOLID);
    }
    if (darken_background) {
        buffer.darken_rect(region.left, region.top, region.right, region.bottom, DARKEN_PERCENT);
    }
}

// Draws the dialog at full strength, takes it back and puts it on what lay under it with its alpha.
void WM_DIALOG::draw_translucent(IMAGE& buffer) {
    const WM_REGION region = get_active_region(buffer);
    if (!region.is_set() || !WM_SCREEN_OBJECT::is_in_redraw_area()) {
        WM_SCREEN_OBJECT::check_for_redraw();
        return;
    }
    const WM_REGION dialog = get_region();
    WM_REGION window_origin;
    window_origin.left = window_origin.top = 0;
    const WM_REGION dirty_before = get_dirty_region(buffer);
    buffer.set_not_dirty();
    under_image.reset(width, height);
    copy_region(under_image, dialog, buffer, window_origin, region, IMAGE_COPY_SOLID);
    WM_SCREEN_OBJECT::check_for_redraw();
    if (buffer.is_dirty()) {
        const WM_REGION drawn_region = get_dirty_region(buffer);
        fade_image.reset(width, height);
        copy_region(fade_image, dialog, buffer, window_origin, drawn_region, IMAGE_COPY_SOLID);
        copy_region(buffer, window_origin, under_image, dialog, drawn_region, IMAGE_COPY_SOLID);
        fade_image.realpha(alpha, 0, 0);
        copy_region(buffer, window_origin, fade_image, dialog, drawn_region, IMAGE_COPY_BLEND);
    }
    if (dirty_before.is_set()) {
        const SAVED_ACTIVE_AREA saved(&buffer);
        buffer.set_active_area(0, 0, buffer.width - 1, buffer.height - 1);
        buffer.mark_dirty_area(dirty_before.left, dirty_before.top, dirty_before.right,
                               dirty_before.bottom);
    }
}

void WM_DIALOG::check_for_redraw() {
    IMAGE* buffer = get_back_buffer(-1);
    if (!visible || buffer == nullptr) {
        return;
    }
    const bool first = !drawn;
    if (checking_modal_redraw && shades_background()) {
        shade_background(*buffer, first);
    }
    // Only now the effects begin: making what the dialog shows may have taken long.
    if (first && !closing && WM_SCREEN_OBJECT::is_in_redraw_area()) {
        start_fade(255);
        start_animation(1);
    }
    {
        const SAVED_ACTIVE_AREA saved(buffer);
        // Where it stands, also in a slide. Narrowed to the slide's end, one from the window's edge
        // would be seen only there, and one that closes not at all at its place.
        const WM_REGION region = get_region();
        buffer->add_rect_to_active_area(region.left, region.top, region.right, region.bottom);
        if (alpha == 0) {
            draw_requested = false;
            drawn = true;
        } else if (alpha == 255) {
            WM_SCREEN_OBJECT::check_for_redraw();
        } else {
            draw_translucent(*buffer);
        }
    }
    if (outline_shown) {
        draw_xor_outline(drag_x, drag_y);
    }
}

void WM_DIALOG::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (alpha == 0 || buffer == nullptr) {
        return;
    }
    place_children();
    const std::int16_t x2 = static_cast<std::int16_t>(x + width - 1);
    const std::int16_t y2 = static_cast<std::int16_t>(y + height - 1);
    if (is_graphical()) {
        box.draw(x, y, x2, y2, buffer, !dialog_style.has_flag(STYLE_DONT_RESIZE_IMAGE),
                 IMAGE_COPY_BLEND);
    } else if (dialog_style.bg_colour.is_set()) {
        buffer->fill_rect(x, y, x2, y2, dialog_style.bg_colour, 1);
    }
}
