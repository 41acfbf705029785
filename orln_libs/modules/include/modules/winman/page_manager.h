// WM_PAGE_MANAGER: the content of one window.
//
// It divides the window into a fixed number of areas, each of which shows one page at a time and
// remembers up to 20 earlier ones, like the history of a browser. Leaving a page deletes its
// controls; going back calls its create function again, with the data that was kept.
//
// A page is chosen with set_next_page and shown by the next change of the area: when a callback
// returns one of the WM_MESG_..._PAGE values, when `change_next_monitor` is set on the area, or at
// once by go_to_page. An area that is -1 means the current area; an index out of range makes an
// operation do nothing and answer 0.
//
// Main thread only, under lock_backbuffer of the window.
#ifndef MODULES_WINMAN_PAGE_MANAGER_H
#define MODULES_WINMAN_PAGE_MANAGER_H

#include <cstdint>
#include <memory>
#include <vector>

#include "modules/winman/screen_info.h"
#include "modules/winman/wm_area.h"
#include "modules/winman/wm_region.h"
#include "platform/colour.h"
#include "platform/image.h"
#include "platform/keyboard.h"

class WM_WINDOW_INFO;

class WM_PAGE_MANAGER {
public:
    // `keyboard_buffer` is the size of the character buffer of KEYBOARD. Fewer than one area ends
    // the process.
    WM_PAGE_MANAGER(std::int16_t areas, std::int32_t keyboard_buffer, signed char window);
    WM_PAGE_MANAGER(const WM_PAGE_MANAGER&) = delete;
    WM_PAGE_MANAGER& operator=(const WM_PAGE_MANAGER&) = delete;
    ~WM_PAGE_MANAGER();

    // One tick of the window: the focus keys, update, input, page changes, drawing; with `blit` the
    // result is shown. Yields the message that the tick ended with.
    WM_MESG monitor(unsigned char blit);

    // Hides and deletes everything in the window, and the data of the pages on show.
    void shutdown();

    // --- Choosing the next page ---

    // Makes the area current and stores the page to change to; one that was waiting is destroyed. A
    // `unique` of 0 gives the page one of its own. Without `create` nothing happens, and the data
    // stays the caller's.
    void set_next_page(std::int32_t area, WM_SCREEN_INFO::CREATE create,
                       WM_SCREEN_INFO::DESTROY destroy, void* data,
                       WM_SCREEN_INFO::MONITOR page_monitor, unsigned char keep,
                       std::uint32_t unique, WM_SCREEN_INFO::OBJECTS_DELETING objects_deleting);
    // The next change goes to that entry; to the current one means to build it anew.
    void set_next_page_to_history(std::int32_t index, std::int32_t area);
    // The same for the nearest entry of another `unique`, forward or back; and whether there is
    // one with a page.
    void set_next_page_next_unique(std::int32_t area);
    void set_next_page_back_unique(std::int32_t area);
    bool is_back_unique_valid(std::int32_t area) const;
    bool is_next_unique_valid(std::int32_t area) const;

    void* get_page_data_from_history(std::int32_t index, std::int32_t area) const;
    // Some entry or waiting page of some area holds this data.
    bool is_page_data_valid(const void* data) const;
    // Not the current entry.
    void delete_page_from_history(std::int32_t index, std::int32_t area);
    // All but the current entry, which will not be kept.
    void clear_history(std::int32_t area);

    // The page is built anew at the next tick, or later if the active dialog asks for that.
    void refresh_page_next_monitor(std::int32_t area);
    // Changes all areas now, beginning with this one.
    void go_to_page(std::int32_t area);
    // Changes one area now.
    void change_page(std::int32_t area);
    // Runs the create function and gives the focus to the first object if no object has it.
    void setup_page(WM_SCREEN_INFO& page);

    // --- Drawing and geometry ---

    // What lies behind all areas: a picture at a position on black, or a colour.
    void set_background(const IMAGE& image, std::int16_t x, std::int16_t y);
    void set_background_colour(COLOUR colour);
    // The background. With 0 it gets the window's size first, and the whole window is marked.
    IMAGE& get_background(unsigned char as_it_is);
    void handle_resize(std::int16_t width, std::int16_t height);
    // The rectangle that popups may use: the whole window.
    void get_popup_area(std::int16_t& x1, std::int16_t& y1, std::int16_t& x2,
                        std::int16_t& y2) const;
    // The innermost object at the point, or the area there, or null.
    WM_SCREEN_OBJECT* find_object_at_pos(std::int16_t x, std::int16_t y);
    void close_modal_dialogs();
    // Draws what is marked into the back buffer.
    void check_for_draw();

    // --- Fades. The program stands still until they are over ---

    void mix_to_page(std::int32_t area);
    void fade_in_page(std::int32_t area);
    void fade_out_page();
    void fade_out_in_page(std::int32_t area);

    // --- Focus. True if there was an object to take it ---

    bool give_focus_to_next_object();
    bool give_focus_to_prev_object();
    bool give_focus_to_next_area();
    bool give_focus_to_prev_area();
    // The object that had it last.
    bool give_focus_to_recent_object();

    // --- Areas ---

    std::int16_t get_area_count() const { return area_count; }
    // Null for an index out of range; -1 is the current area.
    WM_AREA* get_area(std::int32_t area) const;
    WM_AREA* get_current_area() const { return current_area_object; }
    // Which area page callbacks work on. An index out of range is ignored.
    void set_current_area(std::int32_t area);

    WM_AREA* current_area_object = nullptr;
    IMAGE background;
    std::vector<std::unique_ptr<WM_AREA>> areas;
    std::int16_t area_count = 0;
    std::int16_t current_area = 0;
    bool use_page_fades = false;   // the first page of an area fades in
    std::int32_t fade_time = 700;  // in milliseconds
    // A synthetic state of the left button at this position during the next tick; -1: none.
    std::int16_t simulated_x = -1, simulated_y = -1;
    bool simulated_button = false;
    bool focus_prev_requested = false, focus_next_requested = false;
    signed char window;

    // The least time between two calls of the pages' own `monitor`, in milliseconds.
    static std::int16_t monitor_delay_ms;

private:
    struct FOCUS_WALK;

    WM_WINDOW_INFO* get_window_info() const;
    void get_window_size(std::int16_t& width, std::int16_t& height) const;
    bool is_focal() const;
    void mark_area(WM_AREA& area);
    void mark_whole_window();

    void free_right_button(WM_WINDOW_INFO& info);
    void move_focus_by_keys();
    bool are_page_monitors_due();
    WM_MESG run_updates(bool& handled);
    WM_MESG update_current_area(bool& handled);
    WM_MESG run_input(bool page_monitors_due);
    WM_MESG monitor_current_area(bool page_monitors_due);
    WM_MESG act_on(WM_MESG result);
    void keep_focus_reachable();

    void give_focus_if_none();
    void change_all_pages(std::int32_t first);
    void rebuild_page(WM_AREA& area, bool clear_modals);
    void rebuild_all_pages(bool clear_modals);
    void refresh_page_now(WM_AREA& area);
    static void step_to_history_target(WM_AREA& area);
    static void step_to_next_screen(WM_AREA& area);
    static void remove_history_entry(WM_AREA& area, std::int32_t index);
    std::int32_t find_unique(const WM_AREA* area, std::int32_t step) const;

    void join_modal_regions(WM_WINDOW_INFO& info, bool* touched_by_modal);
    void draw_region(WM_WINDOW_INFO& info, const WM_REGION& region, bool with_modals);
    template <class DRAW_FRAME>
    void run_fade(DRAW_FRAME draw_frame);
    IMAGE* copy_back_buffer(IMAGE& picture) const;

    void walk_focus(FOCUS_WALK& walk);
    static void find_focal_objects(WM_SCREEN_OBJECT* object, FOCUS_WALK& walk);
    bool give_focus_to_area(std::int32_t first, std::int32_t step);

    KEYBOARD keyboard;  // keeps the size of its buffer
    std::uint32_t last_page_monitor = 0;
    bool right_was_down = false;  // the right button or its key, at the last tick
};

#endif  // MODULES_WINMAN_PAGE_MANAGER_H
