// WM_WINDOW_INFO: a slot of the window manager. What belongs to one window.
#ifndef MODULES_WINMAN_WINDOW_INFO_H
#define MODULES_WINMAN_WINDOW_INFO_H

#include <cstdint>
#include <memory>

#include "modules/winman/wm_region.h"
#include "platform/llist.h"
#include "platform/open_graphics.h"

class IMAGE;
class WM_AREA;
class WM_PAGE_MANAGER;
class WM_SCREEN_OBJECT;
class WM_WINDOW;

class WM_WINDOW_INFO {
public:
    static constexpr std::int32_t MAX_PENDING_REGIONS = 100;
    static constexpr std::int32_t KEYBOARD_BUFFER_SIZE = 512;

    // With a window that isn't open yet, an empty back buffer and a page manager.
    WM_WINDOW_INFO(signed char index, std::int16_t areas, OPEN_GRAPHICS_SIZES size,
                   OPEN_GRAPHICS_SIZES min, OPEN_GRAPHICS_SIZES extended_min,
                   OPEN_GRAPHICS_SIZES max, unsigned char extended);
    WM_WINDOW_INFO(const WM_WINDOW_INFO&) = delete;
    WM_WINDOW_INFO& operator=(const WM_WINDOW_INFO&) = delete;
    ~WM_WINDOW_INFO();

    // A new back buffer and page manager, for a window that was hidden.
    void setup_window_data(signed char index, std::int16_t areas);
    // Closes the platform window and deletes everything but the WM_WINDOW. The render thread
    // touches no window meanwhile.
    void close_window();
    // Hides the platform window and deletes the page manager.
    void hide_window();
    // Forgets objects and rectangles.
    void clear_object_data();

    // Adds a dirty rectangle; one that lies within `gap` of others is joined with them. Nothing
    // while a rectangle is being drawn.
    void add_pending_update_region(WM_REGION region, std::int16_t gap);
    // False if nothing of the rectangle lies in the window.
    bool cut_to_window(WM_REGION& region) const;
    void clear_pending_update_regions() { pending_count = 0; }

    std::unique_ptr<WM_PAGE_MANAGER> page_manager;
    std::unique_ptr<WM_WINDOW> window;
    std::unique_ptr<IMAGE> back_buffer;  // sized by the platform
    void* back_buffer_data = nullptr;    // the platform's pixel store
    bool focal_object_monitored = false;
    WM_SCREEN_OBJECT* focal_object = nullptr;
    WM_SCREEN_OBJECT* right_mouse_object = nullptr;
    WM_SCREEN_OBJECT* mouse_wheel_focus = nullptr;
    PTRLLIST modal_screen_objects;  // from the lowest to the topmost; deleted by its users
    bool monitor_modals = true;     // false while a modal object runs its monitor
    WM_SCREEN_OBJECT* active_dialog = nullptr;  // a WM_DIALOG
    WM_SCREEN_OBJECT* active_menu = nullptr;    // a WM_FLOATING_MENU
    WM_REGION is_in_me_region;                  // clips hit tests while set
    WM_REGION update_region;                    // the rectangle being drawn
    WM_REGION pending_regions[MAX_PENDING_REGIONS];
    std::int32_t pending_count = 0;

    // Forgets an object that is going away. A modal object that it opened goes over to its area, so
    // that it is still redrawn when it changes and when it closes.
    void forget_object(WM_SCREEN_OBJECT* object);

private:
    WM_REGION get_whole_window() const;
    WM_AREA* get_area_of_modal(const WM_SCREEN_OBJECT& modal) const;
};

#endif  // MODULES_WINMAN_WINDOW_INFO_H
