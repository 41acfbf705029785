// OBJECT_WALK: a walk over a list of screen objects whose callbacks may change the list.
#ifndef MODULES_WINMAN_OBJECT_WALK_H
#define MODULES_WINMAN_OBJECT_WALK_H

#include "platform/llist.h"

class WM_SCREEN_OBJECT;

// The list's cursor keeps the place, so that removing the object that comes next only ends the
// walk. A walk within a walk gives the outer one its place back, as long as that still exists.
//
//     OBJECT_WALK walk(objects, OBJECT_WALK::BACKWARD);
//     while (WM_SCREEN_OBJECT* child = walk.next()) ...
class OBJECT_WALK {
public:
    enum DIRECTION { FORWARD, BACKWARD };

    OBJECT_WALK(const PTRLLIST& list, DIRECTION direction);
    ~OBJECT_WALK();
    OBJECT_WALK(const OBJECT_WALK&) = delete;
    OBJECT_WALK& operator=(const OBJECT_WALK&) = delete;

    // Null at the end.
    WM_SCREEN_OBJECT* next();

private:
    const PTRLLIST& walked;
    LISTNODE* const outer_place;
    const DIRECTION way;
};

// Appends, whatever walks are under way.
void append_object(PTRLLIST& list, WM_SCREEN_OBJECT* object);
// The object is in the list.
bool contains_object(const PTRLLIST& list, const WM_SCREEN_OBJECT* object);

#endif  // MODULES_WINMAN_OBJECT_WALK_H
