// WM_BUTTON: push button, label, drag source. The base of menus and panels.
#ifndef MODULES_WINMAN_WM_BUTTON_H
#define MODULES_WINMAN_WM_BUTTON_H

#include <cstdint>

#include "modules/gui/parameter.h"
#include "modules/winman/image_box.h"
#include "modules/winman/object_hint.h"
#include "modules/winman/owned_text.h"
#include "modules/winman/screen_object.h"
#include "platform/image.h"

class WM_STYLE_SET;

enum BUTTON_TYPE : std::int32_t {
    // Looks pressed while the left button is down on it.
    BUTTON_TYPE_PUSH = 0,
    // Looks pressed whenever the pointer is over it.
    BUTTON_TYPE_HOVER_HIGHLIGHT = 1,
    // Entering counts as a press, leaving as a release; a real press does nothing.
    BUTTON_TYPE_HOVER_FIRE = 2,
};

// The bits of WM_BUTTON::button_flags. The constructor takes them from the style, but for those
// that the owner sets.
enum BUTTON_FLAG : std::uint32_t {
    BUTTON_LEFT_JUSTIFY_TEXT = 0x00000001,
    BUTTON_RIGHT_JUSTIFY_TEXT = 0x00000002,
    BUTTON_TOP_ALIGN_TEXT = 0x00000004,
    BUTTON_BOTTOM_ALIGN_TEXT = 0x00000008,
    BUTTON_LEFT_ARROW = 0x00000010,  // owner
    BUTTON_RIGHT_ARROW = 0x00000020,
    BUTTON_UP_ARROW = 0x00000040,
    BUTTON_DOWN_ARROW = 0x00000080,
    // The pressed bit of shading_flags is the owner's; otherwise it mirrors `pressed`.
    BUTTON_OWNER_SHADING = 0x00000100,
    BUTTON_HFADED_BACKGROUND = 0x00000200,  // owner; from `bg` to `fading`
    BUTTON_VFADED_BACKGROUND = 0x00000400,
    BUTTON_SHADOW_TEXT = 0x00001000,
    BUTTON_INSET_TEXT = 0x00002000,
    BUTTON_ICON_LEFT = 0x00004000,
    BUTTON_ICON_RIGHT = 0x00008000,
    BUTTON_ICON_TOP = 0x00010000,
    BUTTON_ICON_BOTTOM = 0x00020000,
    BUTTON_ICON_ATTACH_TO_TEXT = 0x00040000,
    BUTTON_WRAP_TEXT = 0x00080000,
    BUTTON_DONT_RESIZE_IMAGE = 0x00100000,
    BUTTON_DONT_MASK_CLICK = 0x00200000,  // is_in_it stops at the rectangle
};

// The bits of shading_flags.
enum BUTTON_SHADING : std::int16_t {
    BUTTON_SHADING_PRESSED = 1,
    BUTTON_SHADING_SHIFT = 16,  // the content moves one pixel right and down while pressed
};

// The bits of callback_flags: when the callback runs.
enum BUTTON_EVENT : unsigned char {
    BUTTON_EVENT_NONE = 0,
    BUTTON_EVENT_PRESS = 1,
    BUTTON_EVENT_RELEASE = 2,
    BUTTON_EVENT_REPEAT = 4,           // while held, see auto_repeat_rate
    BUTTON_EVENT_RELEASE_OUTSIDE = 8,  // after a press inside
};

// The bits of drag_flags: which ends of a drag are reported.
enum BUTTON_DRAG_EVENT : std::uint32_t {
    BUTTON_DRAG_STARTED = 1,
    BUTTON_DROPPED_AT_START = 2,
    BUTTON_DROPPED_ON_OTHER = 4,
    BUTTON_DROPPED_ON_ITSELF = 8,
};

// `target` is the object under the pointer, or null.
using BUTTON_DRAG_CALLBACK = WM_MESG (*)(WM_SCREEN_OBJECT* self, WM_SCREEN_OBJECT* target,
                                         std::int16_t x, std::int16_t y, std::uint32_t event,
                                         void* data1, void* data2);
// The button is to look activated.
using BUTTON_ACTIVATED_QUERY = unsigned char (*)(void* data);

// The looks come from a style set, of which the button keeps no reference; its images are shared.
// The fields are the owner's to change, followed by request_draw.
//
// With the focus, Return and Space click the button. The focus may come to a clickable button with
// a callback; an owner that wants otherwise changes `allowed_focus`. A button with the focus looks
// as under the pointer, or has a frame in the highlight colour where the style has no such looks.
class WM_BUTTON : public WM_SCREEN_OBJECT {
public:
    // drag_x while no drag is being tracked.
    static constexpr std::int16_t NO_DRAG = INT16_MIN;

    static bool mouseovers_enabled;
    static std::uint32_t auto_repeat_rate, auto_repeat_threshhold;  // in milliseconds

    // A negative x2 or y2 asks for the size that the content takes. Null texts are allowed.
    // Without `clickable` no callback runs and the pointer keeps its shape. `owner_shading` sets
    // BUTTON_OWNER_SHADING.
    WM_BUTTON(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
              const WM_STYLE_SET& style, const char* title, const char* hint, WM_CALLBACK callback,
              void* data1, void* data2, unsigned char callback_flags, signed char window,
              unsigned char clickable, unsigned char owner_shading);
    ~WM_BUTTON() override;

    // The constructor's work with plain values: -1 as the font or a size means FONT_MANAGER's
    // current one.
    void setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
               const char* title, COLOUR bg, COLOUR active_bg, COLOUR highlight, BUTTON_TYPE type,
               signed char font, std::int16_t font_x_sz, std::int16_t font_y_sz, std::uint16_t left,
               std::uint16_t right, std::uint16_t top, std::uint16_t bottom,
               std::uint16_t x_spacing, std::uint16_t y_spacing, unsigned char callback_flags);

    void request_draw(unsigned char modals, unsigned char children) override;
    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    bool is_in_it(std::int16_t px, std::int16_t py) override;
    // From the press of a drag on.
    bool is_dragging() override { return drag_x != NO_DRAG; }
    bool can_have_focus() override;
    void take_focus(unsigned char forward) override;
    bool is_in_redraw_area() override;
    void draw_object() override;

    // The eleven boxes from a style with loaded images, or else from the files `base` with the
    // suffixes "_up" and so on in the stored path `path`. Null as `base` clears them. Yields
    // is_graphical().
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    void clear_images();
    bool is_graphical() const { return up_box.are_images_valid() && down_box.are_images_valid(); }
    // Background `colour`, text `second`. The images but flashing_box and dragging_box get the
    // colour, with `tri` all three as IMAGE_BOX::set_trialpha_colours.
    void set_colours(COLOUR colour, COLOUR second, COLOUR third, unsigned char tri);

    // With `grow` the button becomes wide enough for the text. Null does nothing and yields false.
    bool set_string(const char* text, unsigned char grow);
    const char* get_title_text() const { return title; }

    // Null or empty: no hint. Yields whether there is one.
    bool set_hint_text(const char* hint_text);
    const char* get_hint_text() const { return hint.get_text(); }
    void hide_hint_text() { hint.hide(); }
    void update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
        hint.update_hint_time(time, px, py);
    }
    bool set_icon_hint_text(const char* hint_text) { return icon_hint.set_text(hint_text); }
    const char* get_icon_hint_text() const { return icon_hint.get_text(); }
    void hide_icon_hint_text() { icon_hint.hide(); }
    void update_icon_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
        icon_hint.update_hint_time(time, px, py);
    }

    // The button has the focus, itself or as a part of focus_owner.
    bool is_focused() const;

    char active_mark[2] = {};  // drawn left of the title while `activated`
    OWNED_TEXT title;          // never null after setup
    COLOUR bg, active_bg, active_text, highlight, highlight_text, mouse_over, mouse_over_text,
        flashing_bg, flashing_text, underline, mouse_over_underline;
    COLOUR text = COLOUR_BLACK, fading = COLOUR_BLACK;
    bool pressed = false;                        // looks pressed
    bool last_left = false, last_right = false;  // mouse buttons at the last monitor
    bool pressed_inside = false;                 // the left press began here
    bool press_held = false;                     // counts as that; set by WM_MENU
    bool enabled = true;
    bool mouse_over_now = false;
    // If set, `activated` is its answer at every monitor.
    BUTTON_ACTIVATED_QUERY activated_query = nullptr;
    void* activated_query_data = nullptr;
    BUTTON_TYPE button_type = BUTTON_TYPE_PUSH;
    std::uint32_t button_flags = 0;
    std::int16_t shading_flags = 0;
    signed char font = -1;
    std::int16_t font_x_sz = -1, font_y_sz = -1;
    OBJECT_HINT hint{*this}, icon_hint{*this};
    std::uint16_t left_gap = 0, right_gap = 0, top_gap = 0, bottom_gap = 0;
    // Margins that the text keeps clear of.
    std::int16_t reserved_left = 0, reserved_right = 0, reserved_top = 0, reserved_bottom = 0;
    std::uint16_t icon_x_spacing = 0, icon_y_spacing = 0;  // between icon and text
    std::int16_t icon_left = 0, icon_right = -1;           // the icon on screen, for its hint
    unsigned char callback_flags = 0;                      // of BUTTON_EVENT
    bool final_event = false;  // within a callback: the event ends the click
    bool clickable;
    PARAMETER flash_text{PARAMETER::TYPE_STRING};  // shown while blinking; empty: no blinking
    bool flashing = false;
    std::uint16_t flash_mask = 1024;  // of WM_SCREEN_OBJECT::flashing_flags
    std::uint32_t repeat_time = 0;
    bool repeating = false;
    bool right_drag = true;  // the right button drags too
    bool dragging = false;
    std::int16_t drag_x = NO_DRAG, drag_y = NO_DRAG;    // the pointer; at the press until it starts
    std::int16_t drag_offset_x = 0, drag_offset_y = 0;  // the corner less the pointer
    BUTTON_DRAG_CALLBACK drag_callback = nullptr;       // null: can't be dragged
    void* drag_data1 = nullptr;
    void* drag_data2 = nullptr;
    std::uint32_t drag_flags = 0;  // of BUTTON_DRAG_EVENT
    IMAGE icon;
    IMAGE drag_image;  // shown at the pointer; without a size dragging_box or the button itself
    IMAGE_BOX up_box, down_box, disabled_box, over_box, active_up_box, active_down_box,
        active_disabled_box, active_over_box, highlighted_box, flashing_box, dragging_box;
    // The composite control that the button is a part of, and that has the focus in its place;
    // `allowed_focus` says then whether keys come here.
    WM_SCREEN_OBJECT* focus_owner = nullptr;

protected:
    // The mark of the focus, where the style has no look for it.
    virtual void draw_focus();
    bool has_focus_look() const;
    COLOUR get_focus_colour() const { return highlight.is_set() ? highlight : get_text_colour(); }

private:
    // What the mouse and the keyboard are doing to the button in this tick.
    struct INPUT;

    void set_styled_colours(const WM_STYLE_SET& style);
    void set_flags(const WM_STYLE_SET& style, bool owner_shading);
    std::int32_t get_text_width(const char* of_text) const;

    INPUT read_input();
    bool is_held() const { return pressed_inside || press_held; }
    void query_activated();
    void monitor_hints(const INPUT& input);
    WM_MESG monitor_click(const INPUT& input);
    void set_mouse_over(bool over);
    BUTTON_EVENT find_event(const INPUT& input);
    BUTTON_EVENT find_change(const INPUT& input);
    WM_MESG fire(BUTTON_EVENT event, const INPUT& input);
    void set_pointer_shape(const INPUT& input) const;

    WM_MESG monitor_drag(const INPUT& input);
    WM_MESG move_drag(const INPUT& input);
    WM_MESG end_drag(const INPUT& input);
    WM_MESG report_drag(BUTTON_DRAG_EVENT event, const INPUT& input);
    void stop_drag_tracking() { drag_x = drag_y = NO_DRAG; }
    void enter_modal_list();
    void leave_modal_list();
    WM_REGION get_drag_region() const;
    void draw_dragged(IMAGE& target);

    bool is_hot() const { return enabled && (mouse_over_now || is_focused()); }
    bool is_shaded() const;
    COLOUR get_background_colour() const;
    COLOUR get_text_colour() const;
    COLOUR get_underline_colour() const;
    const char* get_shown_text() const;
    IMAGE_BOX& get_current_box();
    void draw_background(IMAGE& target);
    void draw_label(IMAGE& target, std::int32_t offset);
    void draw_active_mark(IMAGE& target, std::int32_t offset);
    void draw_arrows(std::int32_t offset);

    std::int16_t press_x = 0, press_y = 0;  // where the drag was begun
    std::int16_t area_before_drag = -1;
    bool not_owned_before_drag = false;
    bool hint_is_cut_text = false;  // the hint was set because the text had no room
};

#endif  // MODULES_WINMAN_WM_BUTTON_H
