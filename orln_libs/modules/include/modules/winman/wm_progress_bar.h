// WM_PROGRESS_BAR: how far a job has come, as a bar with a percentage.
#ifndef MODULES_WINMAN_WM_PROGRESS_BAR_H
#define MODULES_WINMAN_WM_PROGRESS_BAR_H

#include <cstdint>

#include "modules/winman/image_box.h"
#include "modules/winman/owned_text.h"
#include "modules/winman/screen_object.h"

class WM_STYLE_SET;

enum PROGRESS_BAR_FLAG : std::uint16_t {
    PROGRESS_BAR_NO_BORDER = 1,
    PROGRESS_BAR_DONT_RESIZE_IMAGE = 2,
    PROGRESS_BAR_ONLY_BAR = 4,           // no background, no label
    PROGRESS_BAR_VERTICAL = 8,           // filled from the bottom; no label
    PROGRESS_BAR_TEXT_ON_BAR = 16,       // the text goes with the filled part
    PROGRESS_BAR_ALT_PERCENTAGE = 32,    // the rest has a text of its own
    PROGRESS_BAR_ONLY_CUSTOM_TEXT = 64,  // no percentage
};

// A change of the position is drawn only if it changes the bar's length in pixels.
//
// The argument `now` of the operations: 0 asks for a redraw like everything else; otherwise the
// change is drawn and shown at once, and the events of the system are served once per second. That
// is how a long job shows its progress without going back to the main loop.
class WM_PROGRESS_BAR : public WM_SCREEN_OBJECT {
public:
    // The rectangle must lie within the window; anything else ends the process. `label` may be
    // null. With `custom_only` the only text on the bar is set_custom_bar_string's.
    WM_PROGRESS_BAR(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                    const char* label, std::int32_t max_steps, const WM_STYLE_SET& style,
                    signed char window, unsigned char custom_only);
    ~WM_PROGRESS_BAR() override;

    bool can_have_focus() override { return false; }
    void draw_object() override;

    // Out of 0 to max_steps: nothing happens.
    void set_pos(std::int32_t new_pos, unsigned char now);
    void inc_pos(unsigned char now);
    void dec_pos(unsigned char now);
    // Lowers the position too where needed. Nothing below 0.
    void set_max_steps(std::int32_t steps, unsigned char now);
    // In place of the percentage; null for the percentage.
    void set_custom_bar_string(const char* text, unsigned char now);
    void set_bar_colour(COLOUR colour, unsigned char now);
    void set_bar_text_colour(COLOUR colour, unsigned char now);
    void set_alt_bar_colour(COLOUR colour, unsigned char now);
    void set_alt_bar_text_colour(COLOUR colour, unsigned char now);

    // The four boxes from a style with loaded images, or else from the files `base` with the
    // suffixes "_bg", "_empty", "_full" and "_alt" in the stored path `path`. Null as `base` clears
    // them. Yields is_graphical().
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    void clear_images();
    bool is_graphical() const {
        return empty_box.are_images_valid() && full_box.are_images_valid();
    }

    // Serves the events of the system, at most once per calendar second.
    static void update_os();
    // The filled length in pixels differs.
    bool needs_redraw(std::int32_t old_pos, std::int32_t old_max, std::int32_t new_pos,
                      std::int32_t new_max) const;

    OWNED_TEXT label;          // may be null
    OWNED_TEXT custom_string;  // may be null
    std::int32_t max_steps = 0, pos = 0;
    COLOUR bg, label_colour, bar_colour, bar_text_colour, alt_bar_colour, alt_bar_text_colour;
    signed char font = -1;
    std::int16_t font_x_sz = -1, font_y_sz = -1;
    std::uint16_t left_gap = 0, right_gap = 0, top_gap = 0, bottom_gap = 0;
    std::uint16_t bar_flags = 0;  // of PROGRESS_BAR_FLAG
    std::int16_t text_flags = 0;  // of IMAGE_TEXT_FLAG
    IMAGE_BOX bg_box, empty_box, full_box, alt_box;

private:
    struct BAR {
        std::int32_t x, y, width, height;
    };

    void setup(const WM_STYLE_SET& style, const char* label_text);
    void change(std::int32_t new_pos, std::int32_t new_max, unsigned char now);
    void set_colour(COLOUR& where, COLOUR colour, unsigned char now);
    void show_change(unsigned char now);
    std::int32_t get_text_width(const char* text) const;
    BAR get_bar() const;
    std::int32_t get_length(const BAR& bar) const;
    // The pixels of a bar of `length` pixels that are filled.
    static std::int32_t get_fill(std::int32_t length, std::int32_t at, std::int32_t steps);
    std::int32_t get_minimum_length(const IMAGE_BOX& box) const;
    BAR get_filled_part(const BAR& bar, std::int32_t filled) const;
    BAR get_rest(const BAR& bar, std::int32_t length) const;
    BAR grow_for_text(const BAR& part, const BAR& bar, const char* text) const;
    void draw_background(IMAGE& target);
    void draw_bar(IMAGE& target, const BAR& bar, std::int32_t filled);
    void draw_box(IMAGE& target, IMAGE_BOX& box, const BAR& place) const;
    void draw_texts(IMAGE& target, const BAR& bar, std::int32_t filled) const;
    void draw_text(IMAGE& target, const BAR& place, const char* text, COLOUR colour,
                   std::int32_t flags) const;
};

#endif  // MODULES_WINMAN_WM_PROGRESS_BAR_H
