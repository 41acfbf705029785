// Where the patch engine stands in the list of add-ons to be fetched: an entry of the list and,
// below it, a stack of levels of children.
//
// Only leaves have archives. An add-on with children is descended into, and each child that isn't
// valid is fetched in turn. A level lists at most 64 children at a time; when these are done the
// level lists the next ones. The cursor owns nothing and keeps no pointers: every operation is
// given the top add-on of the current entry, which has to be the same until the entry is done.
#ifndef AUTOPATCH_FETCH_CURSOR_H
#define AUTOPATCH_FETCH_CURSOR_H

#include <cstdint>

class ADD_ON;

class FETCH_CURSOR {
public:
    static constexpr int MAX_DEPTH = 16;
    static constexpr int MAX_LISTED_CHILDREN = 64;

    enum DESCENT {
        DESCENT_DONE,      // the new level lists at least one child
        DESCENT_NOTHING,   // no child needs fetching; the cursor hasn't moved
        DESCENT_TOO_DEEP,  // the stack is full; the cursor hasn't moved
    };

    FETCH_CURSOR() { reset(); }

    // Back to the top of an entry.
    void reset();

    // The add-on that the cursor stands on: `top` itself or a descendant. Null if the tree has
    // changed so that the recorded place no longer exists.
    ADD_ON* current(ADD_ON* top) const;

    // Goes one level down, into the children of current(top). `added_units` receives the size of
    // all its children that need fetching, in units of ten bytes each rounded down.
    DESCENT descend(ADD_ON* top, std::uint32_t& added_units);

    // Leaves the add-on that the cursor stands on. True when the cursor now stands on another
    // descendant of `top`; false when the whole entry is done, and the cursor is reset.
    bool advance(ADD_ON* top);

    // The level of the stack, -1 at the top.
    std::int32_t depth() const { return child_depth; }

private:
    ADD_ON* node_above(ADD_ON* top, std::int32_t level) const;
    std::int16_t list_children(const ADD_ON& parent, std::int32_t level, std::int32_t first);

    std::int32_t child_depth;
    std::int16_t child_cursor[MAX_DEPTH];
    std::int32_t child_list[MAX_DEPTH][MAX_LISTED_CHILDREN];
    std::int16_t child_count[MAX_DEPTH];
};

#endif  // AUTOPATCH_FETCH_CURSOR_H
