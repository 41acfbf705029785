// WM_SCREEN_OBJECT: the base of everything that stands in a window.
//
// It carries the rectangle, the tree of child objects, visibility and redraw, the mouse callbacks
// and the focus, and defines the three passes that every object takes part in on every tick:
//
//     update             time-driven work, called whether or not the object may receive input
//     monitor            input; objects read the shared MOUSE and KEYBOARD, no event reaches them
//     check_for_redraw   drawing into the window's back buffer, one dirty rectangle at a time
//
// Nothing is drawn when something changes: a change marks a rectangle, and the page manager draws
// what is marked once per tick. What is marked while that goes on is dropped.
//
// Coordinates are window pixels from the top left corner, absolute also for children; rectangles
// given by corners include both. Operations that need the window manager do nothing, or answer 0,
// when it is gone. Main thread only, between lock_backbuffer and unlock_backbuffer of the window.
#ifndef MODULES_WINMAN_SCREEN_OBJECT_H
#define MODULES_WINMAN_SCREEN_OBJECT_H

#include <cstdint>

#include "modules/winman/screen_object_looks.h"
#include "modules/winman/wm_mesg.h"
#include "modules/winman/wm_region.h"
#include "platform/colour.h"
#include "platform/llist.h"

class IMAGE;
class WM_PAGE_MANAGER;
class WM_WINDOW_INFO;

// What an object is, in WM_SCREEN_OBJECT::type_flags.
enum WM_TYPE_FLAG : std::uint32_t {
    WMF_MANAGER = 0x0001,
    WMF_BUTTON = 0x0002,
    WMF_MENU = 0x0004,
    WMF_IMAGE = 0x0008,
    WMF_SCRIPT = 0x0010,
    WMF_DIALOG = 0x0020,  // WM_MESG_CLOSE_MODAL_DIALOGS may close it
    WMF_SCROLLBAR = 0x0040,
    WMF_GRID = 0x0080,  // the focus walk descends into its cells
    WMF_LIST_BOX = 0x0100,
    WMF_PROGRESS_BAR = 0x0200,
    WMF_ANIMATION = 0x0800,
    WMF_FLOATING_MENU = 0x2000,
    WMF_COMPOSITE = 0x4000,
};

enum SCROBJ_ARROW_TYPE : std::int32_t {
    SCROBJ_ARROW_UP = 0,
    SCROBJ_ARROW_DOWN = 1,
    SCROBJ_ARROW_LEFT = 2,
    SCROBJ_ARROW_RIGHT = 3,
};

class WM_SCREEN_OBJECT : public WM_SCREEN_OBJECT_LOOKS {
public:
    // Rectangles closer than this are redrawn as one.
    static constexpr std::int16_t REDRAW_GAP = 32;
    // The value of hint_delay_time that turns hints off.
    static constexpr std::int16_t HINTS_OFF = 32767;

    // The values of right_mode: when the right callback fires.
    enum RIGHT_MODE : std::int32_t { RIGHT_ON_PRESS = 0, RIGHT_ON_RELEASE = 1, RIGHT_ON_BOTH = 2 };

    // Without a size. The data stays the caller's. Window -1 is window 0.
    WM_SCREEN_OBJECT(unsigned char visible, WM_CALLBACK callback, void* data1, void* data2,
                     signed char window);
    WM_SCREEN_OBJECT(const WM_SCREEN_OBJECT&) = delete;
    WM_SCREEN_OBJECT& operator=(const WM_SCREEN_OBJECT&) = delete;
    // Leaves the window's records and deletes the children.
    virtual ~WM_SCREEN_OBJECT();

    // Shows the object and asks for a redraw; with the flags also all modal objects of the window,
    // and the children.
    virtual void request_draw(unsigned char modals, unsigned char children);
    // The reverse.
    virtual void hide(unsigned char modals, unsigned char children);
    // Input. A visible modal object of the window takes all of it.
    virtual WM_MESG monitor();
    // Time. With `modal_pass` the window's modal objects instead of the children.
    virtual WM_MESG update(unsigned char modal_pass);

    // The object is visible and the point lies in it or in a visible child, in its rectangle (only
    // in the focal window and in its is_in_me region), or in a child.
    virtual bool is_in_it(std::int16_t px, std::int16_t py);
    virtual bool is_in_me(std::int16_t px, std::int16_t py);
    virtual bool is_in_child(std::int16_t px, std::int16_t py);
    // The innermost object at the point, of several the one added last; null for none.
    virtual WM_SCREEN_OBJECT* find_object_at_pos(std::int16_t px, std::int16_t py);
    // `object` is a child, or a child's descendant.
    virtual bool find_object(WM_SCREEN_OBJECT* object);

    // Moves the children too.
    virtual void move(std::int16_t new_x, std::int16_t new_y);
    // With `children` they grow by as much, and theirs.
    virtual void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children);
    // Of the children too.
    virtual void set_area(std::int16_t new_area);
    virtual bool is_dragging() { return false; }

    // Takes ownership, unless the object is `not_owned`. With `relative` its position is taken as
    // one within this object.
    virtual void add_object(WM_SCREEN_OBJECT* object, unsigned char relative);
    // Hides a child and takes it out. With `delete_it` it is deleted, unless `not_owned`; otherwise
    // the caller has it, with `make_relative` at its position within this object.
    virtual void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                               unsigned char make_relative);

    virtual bool can_have_focus() { return get_allowed_focus(); }
    // The argument tells a container from which side the focus comes: 1 forward, 0 backward.
    virtual void take_focus(unsigned char forward);
    virtual void set_activated(unsigned char on) { activated = on != 0; }
    virtual std::int16_t get_x() { return x; }
    virtual std::int16_t get_y() { return y; }
    virtual std::int16_t get_width() { return width; }
    virtual std::int16_t get_height() { return height; }
    // A modal object that goes when a page is built anew: a hint. The focus stays below it.
    virtual bool hide_on_screen_refresh() { return false; }

    // Draws what meets the update region, then the children that aren't modal.
    virtual void check_for_redraw();
    // Draws all modal objects of the window.
    virtual void check_modal_redraw();
    virtual bool is_in_redraw_area();
    // The object is opaque over the whole rectangle, so that nothing behind it need be drawn.
    virtual bool is_obscuring(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2);
    // The object's own picture, on get_back_buffer(-1), clipped to what is to be drawn.
    virtual void draw_object() {}

    // What containers and dialogs tell the page manager:

    // Calls `visit` for each object that is shown but not one of `objects`, until it yields false:
    // a grid's visible cells, left to right, top to bottom. Asked only with WMF_GRID.
    using CELL_VISITOR = bool (*)(WM_SCREEN_OBJECT* cell, void* data);
    virtual void visit_cells(CELL_VISITOR /*visit*/, void* /*data*/) {}
    // A modal dialog begins to fade out, and is removed once that is done. Asked only with
    // WMF_DIALOG. The base is removed at its next update.
    virtual void start_closing() { close_requested = true; }
    // As the window's active dialog, asked before a page refresh: true to run it later, when the
    // dialog is hidden.
    virtual bool defer_page_refresh() { return false; }

    // The focus may come here: allowed, and on the focal window.
    bool get_allowed_focus() const;
    bool has_focus() const;
    // With `with_parents`: and so are all ancestors.
    bool get_visible(unsigned char with_parents) const;

    // The window's modal objects: all; the visible ones, with an area other than -1 those whose
    // area is negative or equal to it; the area of the topmost visible one that has one, or -1.
    std::int32_t get_modal_object_count() const;
    std::int32_t get_active_modal_object_count(std::int16_t in_area) const;
    std::int16_t get_active_modal_object_area() const;
    bool is_modal_object() const;
    // add_object and remove_object for the window's modal list.
    void add_modal_object(WM_SCREEN_OBJECT* object, unsigned char relative);
    void remove_modal_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                             unsigned char make_relative);
    // Takes out the modal objects that hide on a refresh, with `all_modals` every one of them, and
    // deletes the children with `children`. A `not_owned` object is only hidden.
    void clear_objects(unsigned char all_modals, unsigned char children);

    // Asks for a redraw of a rectangle, cut to the window, or of all of it; one closer than `gap`
    // to another that is waiting is joined with that.
    void mark_redraw_subarea(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                             std::int16_t gap);
    void mark_entire_redraw_area();
    // Draws the object's rectangle into the back buffer now. The caller goes on with
    // WM_WINDOW_MANAGER::blit_window.
    void force_draw_object();
    // A modal object above this one, or without `modal` a child, is opaque over the rectangle.
    bool is_obscured(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                     unsigned char modal);

    // The IMAGE of a window; a negative index means the object's own window. May be null.
    IMAGE* get_back_buffer(signed char of_window) const;
    WM_PAGE_MANAGER* get_page_manager();
    // Of an object with the focus: the page manager moves it on at its next monitor.
    void give_focus_to_next_object();
    void give_focus_to_prev_object();
    // The skin's image of the type and state, centred, or else a triangle in the colour. A gap is
    // kept free on both sides of the axis; -1 means a third of the size.
    void draw_arrow(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                    COLOUR colour, SCROBJ_ARROW_TYPE type, unsigned char enabled,
                    std::int16_t x_gap, std::int16_t y_gap);

    // Sets now_ms outside the tick, for long loading loops.
    static void update_now_ms();

    signed char window;
    std::int16_t x = 0, y = 0, width = 0, height = 0;
    bool activated = false;
    bool visible;
    bool draw_requested;
    bool drawn = false;            // on the back buffer; changes of children only show then
    bool not_owned = false;        // removal and clear_objects don't delete it
    bool close_requested = false;  // modal: to be removed after monitor or update
    bool focus_lost = false;       // forces one redraw
    PTRLLIST objects;              // WM_SCREEN_OBJECT*, in the order of adding; see OBJECT_WALK
    WM_SCREEN_OBJECT* parent = nullptr;
    // The area that the object lives in, -1 for none; below that, a modal object of area
    // `-2 - area`.
    std::int16_t area = -1;
    std::uint32_t type_flags = 0;
    WM_CALLBACK callback;
    void* callback_data1;
    void* callback_data2;
    WM_CALLBACK right_callback = nullptr;
    void* right_data1 = nullptr;
    void* right_data2 = nullptr;
    std::int32_t right_mode = RIGHT_ON_BOTH;
    bool return_was_down = false;  // the Return key, at the last monitor
    WM_FOCUS_CALLBACK focus_callback = nullptr;
    void* focus_data = nullptr;
    bool allowed_focus = false;
    std::uint32_t last_focus_time = 0;  // now_ms of the last tick with the focus; 0: never

    static std::uint32_t now_ms;                  // the toolkit's clock, taken once per tick
    static std::uint32_t (*millisecond_clock)();  // where it is taken from: get_ms_count
    static std::uint16_t flashing_flags;          // blink phases, see compute_flashing_flags
    static bool checking_modal_redraw;            // modal objects are being redrawn
    static std::int16_t hint_delay_time;          // in milliseconds
    static std::int16_t object_effects_delay;     // in milliseconds
    static COLOUR outline_colour, border_colour;

    // The blink phases at a time: even bits are square waves, odd bits short pulses, each pair of
    // bits slower than the one before.
    static std::uint16_t compute_flashing_flags(std::uint32_t ms);

protected:
    // The slot of the object's window; null if there is none.
    WM_WINDOW_INFO* get_window_info() const;
    // mark_redraw_subarea of the object's rectangle, if the parent is on the back buffer, or the
    // object itself as a modal one.
    void mark_own_rectangle();
    WM_REGION get_region() const;

private:
    WM_MESG monitor_modals(WM_WINDOW_INFO& info, bool& taken);
    WM_MESG monitor_right_button(WM_WINDOW_INFO& info);
    WM_MESG update_modals();
    // Appends it to the children or to the window's modal list.
    void take_in(WM_SCREEN_OBJECT& object, PTRLLIST& list, std::int16_t object_area, bool relative);
    void release_removed(WM_SCREEN_OBJECT& object, bool make_relative);
    void clear_modals(WM_WINDOW_INFO& info, bool all_modals);
};

#endif  // MODULES_WINMAN_SCREEN_OBJECT_H
