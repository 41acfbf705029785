#include "autopatch/fetch_cursor.h"

#include <algorithm>

#include "autopatch/add_on.h"

void FETCH_CURSOR::reset() {
    child_depth = -1;
    std::fill(std::begin(child_cursor), std::end(child_cursor), std::int16_t{0});
    std::fill(std::begin(child_count), std::end(child_count), std::int16_t{0});
}

// The add-on whose children `level` lists.
ADD_ON* FETCH_CURSOR::node_above(ADD_ON* top, std::int32_t level) const {
    ADD_ON* node = top;
    for (std::int32_t i = 0; i < level && node; ++i) {
        node = node->get_child(child_list[i][child_cursor[i]]);
    }
    return node;
}

ADD_ON* FETCH_CURSOR::current(ADD_ON* top) const {
    return node_above(top, child_depth + 1);
}

// Lists the children of `parent` from index `first` on that need fetching, as many as fit.
std::int16_t FETCH_CURSOR::list_children(const ADD_ON& parent, std::int32_t level,
                                         std::int32_t first) {
    std::int16_t listed = 0;
    const std::int32_t children = parent.get_child_count();
    for (std::int32_t i = first; i < children && listed < MAX_LISTED_CHILDREN; ++i) {
        if (!parent.get_child(i)->is_valid(false)) {
            child_list[level][listed++] = i;
        }
    }
    child_cursor[level] = 0;
    child_count[level] = listed;
    return listed;
}

FETCH_CURSOR::DESCENT FETCH_CURSOR::descend(ADD_ON* top, std::uint32_t& added_units) {
    added_units = 0;
    const ADD_ON* const parent = current(top);
    if (!parent) {
        return DESCENT_NOTHING;
    }
    if (child_depth + 1 >= MAX_DEPTH) {
        return DESCENT_TOO_DEEP;
    }
    if (list_children(*parent, child_depth + 1, 0) == 0) {
        return DESCENT_NOTHING;
    }
    for (std::int32_t i = 0; i < parent->get_child_count(); ++i) {
        const ADD_ON* const child = parent->get_child(i);
        if (!child->is_valid(false)) {
            added_units += child->file_size / 10;
        }
    }
    ++child_depth;
    return DESCENT_DONE;
}

bool FETCH_CURSOR::advance(ADD_ON* top) {
    while (child_depth >= 0) {
        const std::int32_t level = child_depth;
        if (++child_cursor[level] < child_count[level]) {
            return true;
        }
        // The list of this level is done. A full list may have left children behind.
        const std::int32_t last = child_list[level][child_count[level] - 1];
        const ADD_ON* const parent = node_above(top, level);
        if (parent && list_children(*parent, level, last + 1) != 0) {
            return true;
        }
        --child_depth;
    }
    reset();
    return false;
}
