// WM_MESG: the toolkit's only message, the result of every callback, `monitor` and `update`.
#ifndef MODULES_WINMAN_WM_MESG_H
#define MODULES_WINMAN_WM_MESG_H

#include <cstdint>

class WM_SCREEN_OBJECT;

// The value decides what the object's container or the page manager does next.
enum WM_MESG : std::int32_t {
    // Window 0: handed to the application; a child window is closed.
    WM_MESG_QUIT = -1,
    // Nothing happened; the next object is monitored.
    WM_MESG_NONE = 0,
    // Input consumed: monitoring stops, nothing else happens.
    WM_MESG_HANDLED = 1,
    WM_MESG_PASS = 2,
    // The closing fade of every modal dialog of the window starts.
    WM_MESG_CLOSE_MODAL_DIALOGS = 3,
    // Returned by a modal object: it is removed from the modal list and deleted.
    WM_MESG_REMOVE_MODAL = 4,
    // Returned by a child from `monitor`: the parent removes and deletes it and goes on.
    WM_MESG_REMOVE_OBJECT = 5,
    // The page of the current area, or of all areas from the current one on, is built anew. Modal
    // objects stay, but for those that ask to go on a refresh; with CLEAR_MODALS they all go.
    WM_MESG_REBUILD_AREA = 6,
    WM_MESG_REBUILD_ALL_AREAS = 7,
    WM_MESG_REBUILD_AREA_CLEAR_MODALS = 8,
    WM_MESG_REBUILD_ALL_AREAS_CLEAR_MODALS = 9,
    // All modal objects of the window go, pages stay.
    WM_MESG_CLEAR_MODALS = 10,
    // Every area changes to its next page: at once, by a cross-fade, by a fade from black, by one
    // to black and one from it, or by a fade to black.
    WM_MESG_CHANGE_PAGE = 11,
    WM_MESG_MIX_TO_PAGE = 12,
    WM_MESG_FADE_IN_PAGE = 13,
    WM_MESG_FADE_OUT_IN_PAGE = 14,
    WM_MESG_FADE_OUT_PAGE = 15,
};

// What a control calls: the object and the two values given with the callback, which the object
// never owns. It must leave the object alive, and what that stands in: what is to go or to be built
// anew does so by the answer, once the objects have returned.
using WM_CALLBACK = WM_MESG (*)(WM_SCREEN_OBJECT* object, void* data1, void* data2);
// Called on both sides of a change of the focus.
using WM_FOCUS_CALLBACK = void (*)(WM_SCREEN_OBJECT* object, void* data);

#endif  // MODULES_WINMAN_WM_MESG_H
