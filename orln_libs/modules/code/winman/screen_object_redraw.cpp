// How a change of a screen object comes into the back buffer.
#include <algorithm>
#include <utility>

#include "active_area.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/image.h"

bool WM_SCREEN_OBJECT::checking_modal_redraw = false;

namespace {

// The active area of the back buffer is narrowed to the update region once in a nesting of
// check_for_redraw, by its first object.
class REDRAW_CLIPPING {
public:
    REDRAW_CLIPPING(IMAGE& buffer, const WM_REGION& region)
        : first(!std::exchange(clipping_set, true)), old_region(first ? &buffer : nullptr) {
        if (first) {
            buffer.add_rect_to_active_area(region.left, region.top, region.right, region.bottom);
        }
    }
    ~REDRAW_CLIPPING() {
        if (first) {
            clipping_set = false;
        }
    }
    REDRAW_CLIPPING(const REDRAW_CLIPPING&) = delete;
    REDRAW_CLIPPING& operator=(const REDRAW_CLIPPING&) = delete;

private:
    static inline bool clipping_set = false;
    const bool first;
    const SAVED_ACTIVE_AREA old_region;
};

}  // namespace

IMAGE* WM_SCREEN_OBJECT::get_back_buffer(signed char of_window) const {
    if (of_window < 0) {
        of_window = std::max<signed char>(window, 0);
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_back_buffer(of_window) : nullptr;
}

WM_REGION WM_SCREEN_OBJECT::get_region() const {
    // The virtual sizes stand for the whole window where a manager has none of its own.
    auto& self = const_cast<WM_SCREEN_OBJECT&>(*this);
    // A far edge beyond the range is far outside of the window.
    const auto get_far_edge = [](std::int32_t near_edge, std::int32_t size) {
        return static_cast<std::int16_t>(std::min<std::int32_t>(near_edge + size - 1, INT16_MAX));
    };
    WM_REGION region;
    region.left = self.get_x();
    region.top = self.get_y();
    region.right = get_far_edge(region.left, self.get_width());
    region.bottom = get_far_edge(region.top, self.get_height());
    return region;
}

// --- Changes ---

void WM_SCREEN_OBJECT::mark_redraw_subarea(std::int16_t x1, std::int16_t y1, std::int16_t x2,
                                           std::int16_t y2, std::int16_t gap) {
    WM_WINDOW_INFO* info = get_window_info();
    WM_REGION region = {.top = y1, .left = x1, .right = x2, .bottom = y2};
    if (info != nullptr && info->cut_to_window(region)) {
        info->add_pending_update_region(region, gap);
    }
}

void WM_SCREEN_OBJECT::mark_entire_redraw_area() {
    mark_redraw_subarea(0, 0, INT16_MAX, INT16_MAX, REDRAW_GAP);
}

void WM_SCREEN_OBJECT::mark_own_rectangle() {
    // A modal object is seen on its own, also when what has opened it isn't: not yet, or no more.
    if ((parent != nullptr && parent->drawn) || (drawn && is_modal_object())) {
        const WM_REGION region = get_region();
        mark_redraw_subarea(region.left, region.top, region.right, region.bottom, REDRAW_GAP);
    }
}

void WM_SCREEN_OBJECT::request_draw(unsigned char modals, unsigned char children) {
    visible = true;
    draw_requested = true;
    WM_WINDOW_INFO* info = modals ? get_window_info() : nullptr;
    if (info != nullptr) {
        OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* modal = walk.next()) {
            if (modal != this) {
                modal->request_draw(0, children);
            }
        }
    }
    if (children) {
        OBJECT_WALK walk(objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            child->request_draw(0, children);
        }
    }
    mark_own_rectangle();
}

void WM_SCREEN_OBJECT::hide(unsigned char modals, unsigned char children) {
    draw_requested = false;
    if (!visible) {
        return;
    }
    WM_WINDOW_INFO* info = modals ? get_window_info() : nullptr;
    if (info != nullptr) {
        OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* modal = walk.next()) {
            if (modal != this) {
                modal->hide(0, children);
            }
        }
    }
    if (children) {
        OBJECT_WALK walk(objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            child->hide(0, children);
        }
    }
    visible = false;
    mark_own_rectangle();
    drawn = false;
}

void WM_SCREEN_OBJECT::move(std::int16_t new_x, std::int16_t new_y) {
    if (new_x == x && new_y == y) {
        return;
    }
    {
        OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            child->move(static_cast<std::int16_t>(child->x + new_x - x),
                        static_cast<std::int16_t>(child->y + new_y - y));
        }
    }
    mark_own_rectangle();
    x = new_x;
    y = new_y;
    mark_own_rectangle();
}

void WM_SCREEN_OBJECT::resize(std::int16_t new_width, std::int16_t new_height,
                              unsigned char children) {
    if (new_width == width && new_height == height) {
        return;
    }
    if (children) {
        OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            child->resize(static_cast<std::int16_t>(child->width + new_width - width),
                          static_cast<std::int16_t>(child->height + new_height - height), children);
        }
    }
    mark_own_rectangle();
    width = new_width;
    height = new_height;
    mark_own_rectangle();
}

// --- Drawing ---

bool WM_SCREEN_OBJECT::is_in_redraw_area() {
    const WM_WINDOW_INFO* info = get_window_info();
    return info != nullptr && info->update_region.is_set() &&
           get_region().touches(info->update_region);
}

bool WM_SCREEN_OBJECT::is_obscuring(std::int16_t /*x1*/, std::int16_t /*y1*/, std::int16_t /*x2*/,
                                    std::int16_t /*y2*/) {
    return false;
}

bool WM_SCREEN_OBJECT::is_obscured(std::int16_t x1, std::int16_t y1, std::int16_t x2,
                                   std::int16_t y2, unsigned char modal) {
    if (!get_region().touches({.top = y1, .left = x1, .right = x2, .bottom = y2})) {
        return false;
    }
    if (modal) {
        const WM_WINDOW_INFO* info = get_window_info();
        if (info == nullptr) {
            return false;
        }
        OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* above = walk.next()) {
            if (above == this || above->find_object(this)) {
                return false;
            }
            if (above->visible && above->is_obscuring(x1, y1, x2, y2)) {
                return true;
            }
        }
        return false;
    }
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        if (child->visible &&
            (child->is_obscuring(x1, y1, x2, y2) || child->is_obscured(x1, y1, x2, y2, 0))) {
            return true;
        }
    }
    return false;
}

void WM_SCREEN_OBJECT::check_for_redraw() {
    WM_WINDOW_INFO* info = get_window_info();
    IMAGE* buffer = get_back_buffer(-1);
    if (!visible || info == nullptr || buffer == nullptr) {
        return;
    }
    const WM_REGION region = info->update_region;
    const REDRAW_CLIPPING clipping(*buffer, region);
    const bool obscured = is_obscured(region.left, region.top, region.right, region.bottom, 1);
    if ((is_in_redraw_area() || focus_lost) && !obscured) {
        if (!is_obscured(region.left, region.top, region.right, region.bottom, 0)) {
            draw_object();
        }
        draw_requested = false;
        drawn = true;
        OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            if (!contains_object(info->modal_screen_objects, child)) {
                child->check_for_redraw();
            }
        }
    } else if (draw_requested || obscured) {
        draw_requested = false;
        drawn = true;
    }
    focus_lost = false;
}

void WM_SCREEN_OBJECT::check_modal_redraw() {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return;
    }
    checking_modal_redraw = true;
    OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* modal = walk.next()) {
        if (modal->area >= 0) {
            modal->set_area(static_cast<std::int16_t>(-2 - modal->area));
        }
        modal->check_for_redraw();
    }
    checking_modal_redraw = false;
}

void WM_SCREEN_OBJECT::force_draw_object() {
    WM_WINDOW_INFO* info = get_window_info();
    IMAGE* buffer = get_back_buffer(-1);
    WM_REGION region = get_region();
    if (info == nullptr || buffer == nullptr || !info->cut_to_window(region)) {
        return;
    }
    const WM_REGION saved_region = std::exchange(info->update_region, region);
    const SAVED_ACTIVE_AREA saved_active(buffer);
    buffer->set_active_area(region.left, region.top, region.right, region.bottom);
    if (WM_PAGE_MANAGER* manager = info->page_manager.get()) {
        manager->get_background(0).put(0, 0, buffer, IMAGE_COPY_SOLID);
        for (const auto& each_area : manager->areas) {
            each_area->check_for_redraw();
        }
        if (manager->area_count > 0) {
            manager->areas[0]->check_modal_redraw();
        }
    }
    if (area == -1) {
        check_for_redraw();
    }
    info->update_region = saved_region;
}

// --- Arrows ---

void WM_SCREEN_OBJECT::draw_arrow(std::int16_t x1, std::int16_t y1, std::int16_t x2,
                                  std::int16_t y2, COLOUR colour, SCROBJ_ARROW_TYPE type,
                                  unsigned char enabled, std::int16_t x_gap, std::int16_t y_gap) {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr || type < SCROBJ_ARROW_UP || type > SCROBJ_ARROW_RIGHT) {
        return;
    }
    const IMAGE* const images[][2] = {{&disabled_up_arrow_image, &up_arrow_image},
                                      {&disabled_down_arrow_image, &down_arrow_image},
                                      {&disabled_left_arrow_image, &left_arrow_image},
                                      {&disabled_right_arrow_image, &right_arrow_image}};
    const IMAGE& image = *images[type][enabled != 0];
    if (image.width > 0 && image.height > 0) {
        image.put((x1 + x2 + 1 - image.width) / 2, (y1 + y2 + 1 - image.height) / 2, buffer);
        return;
    }
    const std::int32_t gap_x = x_gap == -1 ? (x2 - x1 + 1) / 3 : x_gap;
    const std::int32_t gap_y = y_gap == -1 ? (y2 - y1 + 1) / 3 : y_gap;
    const std::int32_t left = x1 + gap_x, right = x2 - gap_x;
    const std::int32_t top = y1 + gap_y, bottom = y2 - gap_y;
    const bool upright = type == SCROBJ_ARROW_UP || type == SCROBJ_ARROW_DOWN;
    const bool from_start = type == SCROBJ_ARROW_UP || type == SCROBJ_ARROW_LEFT;
    const std::int32_t length = upright ? bottom - top : right - left;
    const std::int32_t breadth = upright ? right - left : bottom - top;
    if (length < 0 || breadth < 0) {
        return;
    }
    // One line across for each step from the tip to the base.
    for (std::int32_t step = 0; step <= length; ++step) {
        const std::int32_t half = length == 0 ? breadth / 2 : breadth * step / (2 * length);
        if (upright) {
            const std::int32_t line = from_start ? top + step : bottom - step;
            const std::int32_t centre = (left + right) / 2;
            buffer->draw_line(centre - half, line, centre + half, line, colour);
        } else {
            const std::int32_t line = from_start ? left + step : right - step;
            const std::int32_t centre = (top + bottom) / 2;
            buffer->draw_line(line, centre - half, line, centre + half, colour);
        }
    }
}
