// WM_SCREEN_INFO: the description of a page, an entry of an area's history.
#ifndef MODULES_WINMAN_SCREEN_INFO_H
#define MODULES_WINMAN_SCREEN_INFO_H

#include <cstdint>

#include "modules/winman/wm_mesg.h"

class WM_PAGE_MANAGER;

// A page isn't an object but functions over `data`: `create` builds its controls into the current
// area each time the page comes on show, `destroy` frees the data when the entry goes.
struct WM_SCREEN_INFO {
    using CREATE = void (*)(WM_PAGE_MANAGER& manager);
    using DESTROY = void (*)(void*& data);
    using MONITOR = WM_MESG (*)(WM_PAGE_MANAGER& manager);
    using COMPARE = unsigned char (*)(void* left, void* right);
    using OBJECTS_DELETING = void (*)(WM_PAGE_MANAGER& manager);

    // An empty entry with a `unique` of its own.
    WM_SCREEN_INFO();

    // No page: `create` is null.
    bool is_empty() const { return create == nullptr; }
    // Destroys the data and empties the entry, with a new `unique`.
    void clear();
    // Empties it without destroying the data, which has gone elsewhere.
    void reset();
    // Empties it for a page with this data, which isn't destroyed if it was this entry's already.
    void make_way_for(const void* next_data);

    // The same functions and `unique`, and the same data, by `compare` if there is one.
    bool operator==(const WM_SCREEN_INFO& other) const;

    CREATE create = nullptr;
    DESTROY destroy = nullptr;
    MONITOR monitor = nullptr;
    COMPARE compare = nullptr;
    OBJECTS_DELETING objects_deleting = nullptr;  // the page's controls are about to be deleted
    void* data = nullptr;
    bool keep = false;     // stays in the history when the page is left
    std::uint32_t unique;  // pages that share it are one stop of going back and forward
};

#endif  // MODULES_WINMAN_SCREEN_INFO_H
