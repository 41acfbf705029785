#include "modules/winman/object_walk.h"

#include "modules/winman/screen_object.h"

namespace {

bool is_node_of(const PTRLLIST& list, const LISTNODE* place) {
    for (const LISTNODE* node = list.get_head(); node != nullptr; node = node->next) {
        if (node == place) {
            return true;
        }
    }
    return false;
}

}  // namespace

OBJECT_WALK::OBJECT_WALK(const PTRLLIST& list, DIRECTION direction)
    : walked(list), outer_place(list.get_cursor()), way(direction) {
    walked.set_cursor(way == FORWARD ? walked.get_head() : walked.get_tail());
}

OBJECT_WALK::~OBJECT_WALK() {
    const bool has_place = outer_place != nullptr && is_node_of(walked, outer_place);
    walked.set_cursor(has_place ? outer_place : nullptr);
}

WM_SCREEN_OBJECT* OBJECT_WALK::next() {
    return static_cast<WM_SCREEN_OBJECT*>(way == FORWARD ? walked.get_info_inc()
                                                         : walked.get_info_dec());
}

void append_object(PTRLLIST& list, WM_SCREEN_OBJECT* object) {
    LISTNODE* const place = list.get_cursor();
    list.set_cursor(nullptr);  // a new node goes before the cursor's, without one to the end
    list.add_node(object);
    list.set_cursor(place);
}

bool contains_object(const PTRLLIST& list, const WM_SCREEN_OBJECT* object) {
    OBJECT_WALK walk(list, OBJECT_WALK::FORWARD);
    while (const WM_SCREEN_OBJECT* entry = walk.next()) {
        if (entry == object) {
            return true;
        }
    }
    return false;
}
