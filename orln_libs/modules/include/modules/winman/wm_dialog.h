// WM_DIALOG: a floating frame with a title and a content area, which fades and slides.
//
// A dialog is made, added with add_modal_object, and shows itself by its effects. It ends by
// start_closing, or by hide and removal. While its alpha is neither 0 nor 255 it composites itself
// over what lies behind it.
#ifndef MODULES_WINMAN_WM_DIALOG_H
#define MODULES_WINMAN_WM_DIALOG_H

#include <cstdint>

#include "modules/winman/effect_info.h"
#include "modules/winman/image_box.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"
#include "platform/image.h"

class WM_MANAGER;
class WM_SCRIPT;

class WM_DIALOG : public WM_SCREEN_OBJECT {
public:
    // -1 for x or y centres on the window. A null or empty title means no title bar. `defer`:
    // page refreshes of the window wait until this dialog is hidden. A null effect is
    // default_dialog_effect_info. Everything is copied.
    WM_DIALOG(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
              const char* title, unsigned char defer, const WM_STYLE_SET& dialog,
              const WM_STYLE_SET& title_bar, const WM_STYLE_SET& contents_set,
              const EFFECT_INFO* effect_info, signed char window);
    ~WM_DIALOG() override;

    // The constructor's work; may be called once only.
    void setup(std::int16_t new_x, std::int16_t new_y, std::int16_t new_width,
               std::int16_t new_height, const char* title_text, const EFFECT_INFO* effect_info);
    // Takes the frame of a style that has loaded its images, otherwise loads it from the folder. A
    // null `base` clears it. Yields is_graphical.
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    bool is_graphical() const { return box.are_images_valid(); }

    // Fades to an alpha, or jumps there: see EFFECT_FLAG.
    void start_fade(unsigned char target);
    // Slides in or out, if the effect says so. A slide under way is finished first.
    void start_animation(unsigned char opening_slide);
    // A fade or a slide is under way.
    bool is_animating() const;
    // Puts the effects back to where they were at construction, for a dialog to be shown again.
    void clear();
    // On the window.
    void centre_x();
    void centre_y();
    // From the dialog's top edge to where its contents begin: top gap, title and spacing.
    std::int16_t get_title_height() const;
    // A press at the point begins a drag: in the title bar, on the frame round the contents, and
    // without `no_drag_in_contents` on what of the contents no object covers.
    bool in_drag_area(std::int16_t px, std::int16_t py);
    // Inverts the outline of the dialog as if it stood at this position.
    void draw_xor_outline(std::int16_t at_x, std::int16_t at_y);

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    // Position means the place at which the dialog stands when it isn't sliding; a slide under way
    // goes on and ends there.
    void move(std::int16_t new_x, std::int16_t new_y) override;
    std::int16_t get_x() override;
    std::int16_t get_y() override;
    // With `children` the objects in the contents grow by as much.
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    bool is_dragging() override { return dragging; }
    // These go to `contents`.
    void add_object(WM_SCREEN_OBJECT* object, unsigned char relative) override;
    void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                       unsigned char make_relative) override;
    bool can_have_focus() override { return false; }
    bool is_in_redraw_area() override;
    void check_for_redraw() override;
    void draw_object() override;
    // Begins to fade and slide out; the dialog is removed when that is done.
    void start_closing() override;
    bool defer_page_refresh() override;

    virtual bool is_in_title_bar(std::int16_t px, std::int16_t py);
    // Null or empty removes the title.
    virtual void set_title(const char* text);

    bool dragging = false;
    bool refresh_pending = false;  // a page refresh waits for this dialog to be hidden
    bool defer_refresh;
    WM_STYLE_SET dialog_style, title_style, contents_style;
    WM_SCRIPT* title = nullptr;  // child, or null
    std::int16_t drag_offset_x = 0, drag_offset_y = 0;
    std::int16_t drag_x = 0, drag_y = 0;  // where the dialog, or its outline, is dragged to
    WM_MANAGER* contents = nullptr;       // child
    bool draggable = false;
    bool no_drag_in_contents = true;
    bool dragged = false;  // moved since the press
    IMAGE_BOX box;
    EFFECT_INFO effect;
    std::uint32_t duration = 0, start_time = 0;  // of the fade or slide; start 0: not begun
    bool remove_when_hidden = false;             // update removes it after the closing effect
    bool no_effects = false;                     // fades jump
    unsigned char alpha = 255, start_alpha = 255, target_alpha = 255;
    IMAGE fade_image;  // work area of the compositing
    std::int16_t start_x = 0, start_y = 0, target_x = 0, target_y = 0;
    bool opening = true;  // the slide runs inwards

    static EFFECT_INFO default_dialog_effect_info;
    static bool drag_contents;  // false: an outline is dragged
    // What a modal dialog does to the window behind it.
    static bool darken_background, grey_background;
    static WM_DIALOG* active_dialog;  // the last that was monitored, of any window; null: gone

protected:
    // The rectangle of the contents at the dialog's present place and size.
    WM_REGION get_contents_region() const;
    void get_window_size(std::int32_t& window_width, std::int32_t& window_height) const;
    // Not at the place at which it will end.
    bool is_sliding() const { return x != target_x || y != target_y; }

private:
    // Left, right and bottom gap round the contents.
    std::int32_t get_left_gap() const;
    std::int32_t get_right_gap() const;
    std::int32_t get_bottom_gap() const;
    void add_title(const char* text);
    void place_children();

    void step_effects();
    bool is_closed() const;
    void finish_slide();
    void run_pending_refresh();

    void start_drag();
    void continue_drag();
    void end_drag();
    void move_outline(std::int16_t new_x, std::int16_t new_y);
    void erase_outline();

    bool shades_background() const;
    void shade_background(IMAGE& buffer, bool whole_window);
    void draw_translucent(IMAGE& buffer);

    bool has_shaded = false;     // the window behind it
    bool closing = false;        // the effects under way end in hiding
    bool left_was_down = true;   // the left button at the last monitor
    bool outline_shown = false;  // at drag_x, drag_y
    IMAGE under_image;           // what lies under a translucent dialog while it is drawn
};

#endif  // MODULES_WINMAN_WM_DIALOG_H
