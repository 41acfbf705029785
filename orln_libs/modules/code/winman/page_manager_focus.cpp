// The keyboard focus: from object to object, from area to area, and back to where it was.
#include <utility>

#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"

namespace {

// The modal object that keeps the focus, the topmost visible one; null for none. A hint doesn't:
// what lies under it has the focus as before.
WM_SCREEN_OBJECT* find_focus_keeper(const WM_WINDOW_INFO& info) {
    OBJECT_WALK modals(info.modal_screen_objects, OBJECT_WALK::BACKWARD);
    WM_SCREEN_OBJECT* modal = nullptr;
    do {
        modal = modals.next();
    } while (modal != nullptr && (!modal->visible || modal->hide_on_screen_refresh()));
    return modal;
}

}  // namespace

// What a depth-first walk of visible objects found.
struct WM_PAGE_MANAGER::FOCUS_WALK {
    bool has_focal_object = false;  // some object of the window has the focus
    bool to_the_end = false;        // not only until both neighbours are found
    bool seen_focal = false;
    WM_SCREEN_OBJECT* first = nullptr;
    WM_SCREEN_OBJECT* last = nullptr;
    WM_SCREEN_OBJECT* previous = nullptr;
    WM_SCREEN_OBJECT* next = nullptr;
    WM_SCREEN_OBJECT* recent = nullptr;

    bool goes_on() const { return to_the_end || previous == nullptr || next == nullptr; }

    void visit(WM_SCREEN_OBJECT& object) {
        const bool focusable = object.can_have_focus();
        if (focusable) {
            first = first == nullptr ? &object : first;
            last = &object;
        }
        if (object.has_focus()) {
            seen_focal = true;
            return;
        }
        if (!focusable) {
            return;
        }
        if (next == nullptr) {
            (seen_focal || !has_focal_object ? next : previous) = &object;
        }
        const std::uint32_t time = object.last_focus_time;
        if (time != 0 &&
            (recent == nullptr || static_cast<std::int32_t>(time - recent->last_focus_time) > 0)) {
            recent = &object;
        }
    }
};

void WM_PAGE_MANAGER::find_focal_objects(WM_SCREEN_OBJECT* object, FOCUS_WALK& walk) {
    if (object == nullptr) {
        return;
    }
    if (!object->visible) {
        walk.seen_focal = walk.seen_focal || object->has_focus();
        return;
    }
    walk.visit(*object);
    OBJECT_WALK children(object->objects, OBJECT_WALK::FORWARD);
    while (walk.goes_on()) {
        WM_SCREEN_OBJECT* child = children.next();
        if (child == nullptr) {
            break;
        }
        find_focal_objects(child, walk);
    }
    if ((object->type_flags & WMF_GRID) && walk.goes_on()) {
        object->visit_cells(
            [](WM_SCREEN_OBJECT* cell, void* data) {
                auto& in_walk = *static_cast<FOCUS_WALK*>(data);
                find_focal_objects(cell, in_walk);
                return in_walk.goes_on();
            },
            &walk);
    }
}

// The modal object that keeps the focus, or else all areas.
void WM_PAGE_MANAGER::walk_focus(FOCUS_WALK& walk) {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return;
    }
    walk.has_focal_object = info->focal_object != nullptr;
    if (WM_SCREEN_OBJECT* modal = find_focus_keeper(*info)) {
        find_focal_objects(modal, walk);
        return;
    }
    for (const auto& area : areas) {
        find_focal_objects(area.get(), walk);
    }
}

bool WM_PAGE_MANAGER::give_focus_to_next_object() {
    FOCUS_WALK walk;
    walk_focus(walk);
    WM_SCREEN_OBJECT* target = walk.next != nullptr ? walk.next : walk.first;
    if (target != nullptr) {
        target->take_focus(1);
    }
    return target != nullptr;
}

bool WM_PAGE_MANAGER::give_focus_to_prev_object() {
    FOCUS_WALK walk;
    walk_focus(walk);
    WM_SCREEN_OBJECT* target = walk.previous != nullptr ? walk.previous : walk.last;
    if (target != nullptr) {
        target->take_focus(0);
    }
    return target != nullptr;
}

bool WM_PAGE_MANAGER::give_focus_to_recent_object() {
    FOCUS_WALK walk;
    walk.to_the_end = true;
    walk_focus(walk);
    if (walk.recent != nullptr) {
        walk.recent->take_focus(1);
    }
    return walk.recent != nullptr;
}

// The first visible area after `first` in that direction that has an object for the focus, `first`
// itself being the last choice.
bool WM_PAGE_MANAGER::give_focus_to_area(std::int32_t first, std::int32_t step) {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || find_focus_keeper(*info) != nullptr) {
        return false;
    }
    for (std::int32_t i = 1; i <= area_count; ++i) {
        const std::int32_t index = ((first + i * step) % area_count + area_count) % area_count;
        WM_AREA* area = get_area(index);
        if (!area->visible) {
            continue;
        }
        FOCUS_WALK walk;
        find_focal_objects(area, walk);
        if (walk.first != nullptr) {
            walk.first->take_focus(0);
            return true;
        }
    }
    return false;
}

bool WM_PAGE_MANAGER::give_focus_to_next_area() {
    const WM_WINDOW_INFO* info = get_window_info();
    const WM_SCREEN_OBJECT* focal = info != nullptr ? info->focal_object : nullptr;
    return give_focus_to_area(focal != nullptr && focal->area > 0 ? focal->area : 0, 1);
}

bool WM_PAGE_MANAGER::give_focus_to_prev_area() {
    const WM_WINDOW_INFO* info = get_window_info();
    const WM_SCREEN_OBJECT* focal = info != nullptr ? info->focal_object : nullptr;
    if (focal == nullptr) {
        return give_focus_to_area(1, -1);
    }
    return give_focus_to_area(focal->area > 0 ? focal->area : 0, -1);
}

// The focal object is hidden, gone or under a modal object: the focus goes to what had it last
// among the objects that can be reached, or to the first of them, or to none.
void WM_PAGE_MANAGER::keep_focus_reachable() {
    if (give_focus_to_recent_object() || give_focus_to_next_object()) {
        return;
    }
    WM_WINDOW_INFO* info = get_window_info();
    WM_SCREEN_OBJECT* focal =
        info != nullptr ? std::exchange(info->focal_object, nullptr) : nullptr;
    if (focal == nullptr) {
        return;
    }
    if (focal->visible) {
        focal->request_draw(0, 0);
    }
    if (focal->focus_callback != nullptr) {
        focal->focus_callback(focal, focal->focus_data);
    }
}
