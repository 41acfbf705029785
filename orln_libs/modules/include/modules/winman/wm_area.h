// WM_AREA: a part of a window that shows one page at a time and remembers earlier ones.
#ifndef MODULES_WINMAN_WM_AREA_H
#define MODULES_WINMAN_WM_AREA_H

#include <cstdint>

#include "modules/winman/screen_info.h"
#include "modules/winman/wm_manager.h"

// The page manager decides what happens; see page_manager.h.
class WM_AREA : public WM_MANAGER {
public:
    static constexpr std::int32_t HISTORY_SIZE = 20;

    explicit WM_AREA(signed char window);

    // Deletes the page's controls and empties the whole history.
    void clear();
    // Tells the page on show that its controls are about to be deleted.
    void run_objects_deleting();

    WM_SCREEN_INFO& get_current() { return history[current_screen]; }
    const WM_SCREEN_INFO& get_current() const { return history[current_screen]; }

    WM_SCREEN_INFO history[HISTORY_SIZE];
    WM_SCREEN_INFO next_screen;               // the page to change to
    std::int32_t current_screen = 0;          // the page on show
    std::int32_t history_count = 1;           // used entries
    std::int32_t history_target = -1;         // where the next change goes; -1: none
    bool clear_on_change = false;             // the next change empties the area
    bool refresh_now = false;                 // the next change builds the page anew
    bool refresh_next_monitor = false;        // the next tick builds the page anew
    bool change_next_monitor = false;         // the next tick changes the page
    WM_PAGE_MANAGER* page_manager = nullptr;  // the owner
};

#endif  // MODULES_WINMAN_WM_AREA_H
