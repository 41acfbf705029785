// Dragging of buttons.
#include <cstdlib>

#include "../gui/to_short.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/wm_button.h"
#include "wm_button_input.h"

namespace {

// The pointer has to move by more than this before a press becomes a drag.
constexpr int DRAG_THRESHOLD = 3;

}  // namespace

WM_MESG WM_BUTTON::monitor_drag(const INPUT& input) {
    if (drag_callback == nullptr) {
        return WM_MESG_NONE;
    }
    const bool held = input.left || (right_drag && input.right);
    const bool held_before = input.left_before || (right_drag && input.right_before);
    if (held && !held_before && input.over && enabled) {
        drag_x = press_x = input.x;
        drag_y = press_y = input.y;
        drag_offset_x = to_short(x - input.x);
        drag_offset_y = to_short(y - input.y);
        request_draw(0, 0);
        return WM_MESG_NONE;
    }
    if (held && drag_x != NO_DRAG) {
        return move_drag(input);
    }
    if (!held && dragging) {
        return end_drag(input);
    }
    if (!held) {
        stop_drag_tracking();
    }
    return WM_MESG_NONE;
}

WM_MESG WM_BUTTON::move_drag(const INPUT& input) {
    const bool moved = input.x != drag_x || input.y != drag_y;
    const bool far = std::abs(input.x - press_x) > DRAG_THRESHOLD ||
                     std::abs(input.y - press_y) > DRAG_THRESHOLD;
    if (!moved || (!dragging && !far)) {
        return WM_MESG_NONE;
    }
    request_draw(0, 0);
    drag_x = input.x;
    drag_y = input.y;
    WM_MESG result = WM_MESG_NONE;
    if (!dragging) {
        enter_modal_list();
        result = report_drag(BUTTON_DRAG_STARTED, input);
    }
    if (visible) {
        request_draw(0, 0);
    }
    return result;
}

WM_MESG WM_BUTTON::end_drag(const INPUT& input) {
    request_draw(0, 0);
    leave_modal_list();
    stop_drag_tracking();
    if (input.x == press_x && input.y == press_y) {
        return report_drag(BUTTON_DROPPED_AT_START, input);
    }
    pressed_inside = false;
    WM_PAGE_MANAGER* pages = get_page_manager();
    const bool on_itself = pages != nullptr && pages->find_object_at_pos(input.x, input.y) == this;
    return report_drag(on_itself ? BUTTON_DROPPED_ON_ITSELF : BUTTON_DROPPED_ON_OTHER, input);
}

WM_MESG WM_BUTTON::report_drag(BUTTON_DRAG_EVENT event, const INPUT& input) {
    WM_PAGE_MANAGER* pages = get_page_manager();
    if ((drag_flags & event) == 0 || pages == nullptr) {
        return WM_MESG_NONE;
    }
    return drag_callback(this, pages->find_object_at_pos(input.x, input.y), input.x, input.y, event,
                         drag_data1, drag_data2);
}

// While it is dragged the button takes all input, and its picture goes over everything.
void WM_BUTTON::enter_modal_list() {
    area_before_drag = area;
    not_owned_before_drag = not_owned;
    dragging = true;
    not_owned = true;
    if (parent != nullptr) {
        parent->add_modal_object(this, 0);
    }
}

// Not by remove_modal_object: the parent keeps the button.
void WM_BUTTON::leave_modal_list() {
    dragging = false;
    not_owned = not_owned_before_drag;
    if (WM_WINDOW_INFO* info = get_window_info()) {
        info->modal_screen_objects.remove_node(this);
    }
    set_area(area_before_drag);
}

// Where the picture at the pointer is.
WM_REGION WM_BUTTON::get_drag_region() const {
    const bool has_image = drag_image.width > 0 && drag_image.height > 0;
    WM_REGION region;
    region.left = to_short(drag_x + drag_offset_x);
    region.top = to_short(drag_y + drag_offset_y);
    region.right = to_short(region.left + (has_image ? drag_image.width : width) - 1);
    region.bottom = to_short(region.top + (has_image ? drag_image.height : height) - 1);
    return region;
}

bool WM_BUTTON::is_in_redraw_area() {
    if (WM_SCREEN_OBJECT::is_in_redraw_area()) {
        return true;
    }
    const WM_WINDOW_INFO* info = dragging ? get_window_info() : nullptr;
    return info != nullptr && info->update_region.is_set() &&
           get_drag_region().touches(info->update_region);
}

void WM_BUTTON::draw_dragged(IMAGE& target) {
    const WM_REGION place = get_drag_region();
    if (drag_image.width > 0 && drag_image.height > 0) {
        drag_image.put(place.left, place.top, &target);
        return;
    }
    if (dragging_box.are_images_valid()) {
        dragging_box.draw(place.left, place.top, place.right, place.bottom, &target,
                          (button_flags & BUTTON_DONT_RESIZE_IMAGE) == 0, IMAGE_COPY_BLEND);
        return;
    }
    const std::int16_t own_x = x, own_y = y;
    x = place.left;
    y = place.top;
    checking_modal_redraw = false;
    draw_object();
    checking_modal_redraw = true;
    x = own_x;
    y = own_y;
}
