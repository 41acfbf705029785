// What must hold after every tick, whatever was done.
#ifndef FUZZ_TOOLKIT_DRIVE_CHECKS_H
#define FUZZ_TOOLKIT_DRIVE_CHECKS_H

#include <cstdint>
#include <cstdio>
#include <typeinfo>

#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/image.h"
#include "program.h"

class CHECKS {
public:
    CHECKS() : info(*WM_WINDOW_MANAGER::get_instance()->get_window_info(0)) {}

    // Between ticks nothing is left of the drawing.
    void check_drawing_state() {
        const IMAGE& buffer = *info.back_buffer;
        require(info.pending_count == 0 && !info.update_region.is_set());
        require(!info.is_in_me_region.is_set() && info.monitor_modals);
        require(buffer.active_left == 0 && buffer.active_top == 0);
        require(buffer.active_right == buffer.width - 1 &&
                buffer.active_bottom == buffer.height - 1);
    }

    // What was drawn since `before` lies in the dirty rectangle, which the screen gets.
    void check_dirty_rectangle(const IMAGE& before) {
        const IMAGE& buffer = *info.back_buffer;
        for (int y = 0; y < buffer.height && before.height == buffer.height; ++y) {
            for (int x = 0; x < buffer.width && before.width == buffer.width; ++x) {
                const bool is_dirty = x >= buffer.dirty_left && x <= buffer.dirty_right &&
                                      y >= buffer.dirty_top && y <= buffer.dirty_bottom;
                require(is_dirty || before.row(y)[x] == buffer.row(y)[x]);
            }
        }
    }

    // The back buffer is what drawing everything gives.
    void check_nothing_is_stale() {
        drawn.copy_pixels_from(*info.back_buffer);
        draw_all();
        if (!(drawn == *info.back_buffer)) {
            tell_difference();
            require(false);
        }
    }

    // Each control stays within its rectangle when it draws itself and its parts.
    void check_frames() {
        drawn.copy_pixels_from(*info.back_buffer);
        for (const auto& area : info.page_manager->areas) {
            if (area->visible) {
                check_frames_of(area->objects);
            }
        }
        check_frames_of(info.modal_screen_objects);
        drawn.put(0, 0, info.back_buffer.get(), IMAGE_COPY_SOLID);
    }

    void check_focus() {
        if (!is_focus_reachable()) {
            tell(*info.focal_object);
            require(false);
        }
    }
    // The object with the focus is on the page, or in the topmost modal object, where the user
    // sees it. It may have been disabled there: the focus waits for the next Tab, so that a second
    // press of a key doesn't go to another control.
    bool is_focus_reachable() {
        WM_SCREEN_OBJECT* const focal = info.focal_object;
        // While a dialog is dragged the focus doesn't move.
        if (focal == nullptr ||
            (info.active_dialog != nullptr && info.active_dialog->is_dragging())) {
            return true;
        }
        WM_SCREEN_OBJECT* top = find_top_modal();
        if (top != nullptr && top != focal && !top->find_object(focal)) {
            return false;
        }
        for (const auto& area : info.page_manager->areas) {
            top = top == nullptr && area->find_object(focal) ? area.get() : top;
        }
        if (top == nullptr) {
            return false;
        }
        const WM_SCREEN_OBJECT* shown = focal;
        while (shown != top && shown != nullptr && shown->visible) {
            shown = shown->parent;
        }
        return shown != nullptr && shown->visible;
    }

private:
    static constexpr COLOUR MARK = COLOUR(0xFF123456u);

    void draw_all() {
        info.page_manager->areas[0]->mark_entire_redraw_area();
        info.page_manager->check_for_draw();
        require(info.pending_count == 0);
    }

    // Hints leave the focus to what lies under them.
    WM_SCREEN_OBJECT* find_top_modal() const {
        OBJECT_WALK walk(info.modal_screen_objects, OBJECT_WALK::BACKWARD);
        WM_SCREEN_OBJECT* modal = walk.next();
        while (modal != nullptr && (!modal->visible || modal->hide_on_screen_refresh())) {
            modal = walk.next();
        }
        return modal;
    }

    void check_frames_of(const PTRLLIST& objects) {
        OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* object = walk.next()) {
            // What follows the pointer is drawn there.
            if (object->visible && !object->is_dragging()) {
                check_frame(*object);
            }
        }
    }
    void check_frame(WM_SCREEN_OBJECT& object) {
        IMAGE& buffer = *info.back_buffer;
        buffer.clear(MARK);
        info.update_region = {.top = 0,
                              .left = 0,
                              .right = to_coordinate(buffer.width - 1),
                              .bottom = to_coordinate(buffer.height - 1)};
        object.check_for_redraw();
        info.update_region = WM_REGION();
        for (int y = 0; y < buffer.height; ++y) {
            for (int x = 0; x < buffer.width; ++x) {
                const bool is_inside = x >= object.x && x < object.x + object.get_width() &&
                                       y >= object.y && y < object.y + object.get_height();
                if (!is_inside && buffer.row(y)[x] != MARK) {
                    std::fprintf(stderr, "drawn at %d, %d: ", x, y);
                    tell(object);
                    require(false);
                }
            }
        }
    }

    // For whoever looks into a failure.
    static void tell(WM_SCREEN_OBJECT& object) {
        for (const WM_SCREEN_OBJECT* each = &object; each != nullptr; each = each->parent) {
            std::fprintf(stderr, "%s at %d, %d, %d by %d%s%s\n", typeid(*each).name(), each->x,
                         each->y, each->width, each->height, each->visible ? "" : ", hidden",
                         each->parent != nullptr ? ", in" : "");
        }
    }
    // What stands on the page there, and which modal objects there are.
    void tell_place(std::int16_t x, std::int16_t y) const {
        if (WM_SCREEN_OBJECT* object = info.page_manager->find_object_at_pos(x, y)) {
            tell(*object);
        }
        OBJECT_WALK walk(info.modal_screen_objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* modal = walk.next()) {
            std::fprintf(stderr, "modal ");
            tell(*modal);
            if (WM_SCREEN_OBJECT* object = modal->find_object_at_pos(x, y)) {
                tell(*object);
            }
        }
    }
    // The first pixel, and the rectangle around all of them.
    void tell_difference() const {
        const IMAGE& buffer = *info.back_buffer;
        WM_REGION all;
        std::int16_t first_x = -1, first_y = -1;
        for (std::int16_t y = 0; y < buffer.height; ++y) {
            for (std::int16_t x = 0; x < buffer.width; ++x) {
                if (drawn.row(y)[x] != buffer.row(y)[x]) {
                    first_x = all.is_set() ? first_x : x;
                    first_y = all.is_set() ? first_y : y;
                    const WM_REGION pixel = {.top = y, .left = x, .right = x, .bottom = y};
                    all.is_set() ? all.unite(pixel) : static_cast<void>(all = pixel);
                }
            }
        }
        std::fprintf(stderr, "%08X instead of %08X at %d, %d, in all %d, %d to %d, %d\n",
                     drawn.row(first_y)[first_x].value, buffer.row(first_y)[first_x].value, first_x,
                     first_y, all.left, all.top, all.right, all.bottom);
        tell_place(first_x, first_y);
    }

    WM_WINDOW_INFO& info;
    IMAGE drawn;
};

#endif  // FUZZ_TOOLKIT_DRIVE_CHECKS_H
