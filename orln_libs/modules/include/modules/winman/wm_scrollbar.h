// WM_SCROLLBAR: a slider for any PARAMETER with a range.
//
// A vertical bar stands for the largest value at the top, a horizontal one for the smallest at the
// left. Dragging the slider, a press in the bar (a page), the end buttons (a line, repeated while
// held) and the wheel change the value, and the callback tells of it. A bar of its own takes the
// focus: the arrow keys, Page Up, Page Down, Home and End move it.
#ifndef MODULES_WINMAN_WM_SCROLLBAR_H
#define MODULES_WINMAN_WM_SCROLLBAR_H

#include <cstdint>
#include <memory>

#include "modules/winman/image_box.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"
#include "platform/colour.h"

class OBJECT_HINT;
class PARAMETER;
class WM_SCROLLBAR;

enum SCROLLBAR_TYPE : std::int32_t {
    SCROLLBAR_HORIZONTAL = 0,
    SCROLLBAR_HORIZONTAL_WITH_BUTTONS = 1,
    SCROLLBAR_VERTICAL = 2,
    SCROLLBAR_VERTICAL_WITH_BUTTONS = 3,
};

enum SCROLLBAR_BUTTON_DOWN_TYPE : std::int32_t {
    SCROLLBAR_NO_BUTTON = 0,
    SCROLLBAR_LINE_UP = 1,
    SCROLLBAR_LINE_DOWN = 2,
    SCROLLBAR_PAGE_UP = 3,
    SCROLLBAR_PAGE_DOWN = 4,
};

class WM_SCROLLBAR : public WM_SCREEN_OBJECT {
public:
    // The step for a press, in units of the variable; up is positive.
    using MOVEMENT_CALLBACK = std::int32_t (*)(WM_SCROLLBAR* bar, SCROLLBAR_BUTTON_DOWN_TYPE type);

    // The bit of draw_flags for "dont_resize_image".
    static constexpr unsigned char DONT_RESIZE_IMAGE = 4;
    static constexpr std::int16_t MIN_SLIDER_SIZE = 6;

    // Type, sizes, colours and images are the style's. The variable must outlive the bar, be a
    // number and have a `min` below its `max`; otherwise the process ends. The callback runs when
    // the user has changed the value.
    WM_SCROLLBAR(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                 PARAMETER* variable, const WM_STYLE_SET& style, WM_CALLBACK callback, void* data1,
                 void* data2, signed char window, MOVEMENT_CALLBACK movement = nullptr,
                 const char* hint = nullptr);
    ~WM_SCROLLBAR() override;

    void setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
               SCROLLBAR_TYPE bar_type, PARAMETER* variable, std::int16_t slider,
               std::int16_t button);
    // Works `travel` and `start` out anew; after a change of size, type, slider or buttons.
    void set_travel();
    // The length that the slider moves in, its own included.
    std::int16_t get_max_travel() const;
    // Moves the value as a press of that kind does. The step of line_step and page_step is repeated
    // until the slider has moved on the screen, or the range ends; that of a movement_callback
    // counts as it is. True if the value has changed.
    bool move_slew_var(SCROLLBAR_BUTTON_DOWN_TYPE type);
    // Null for none.
    void set_hint_text(const char* text);
    // The images "%s_bar" to "%s_more_over" from the style if it has loaded them, else
    // from the folder. A null `base` clears them. Whether the bar is graphical now.
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    // The bar and the slider have images.
    bool is_graphical() const;
    void clear_images();

    // Where the slider stands: vertical its top, horizontal its right edge, which is not its own.
    std::int16_t get_slider_position() const;
    // The slider's rectangle.
    WM_REGION get_slider_region() const;

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    bool can_have_focus() override { return enabled && get_allowed_focus(); }
    void move(std::int16_t new_x, std::int16_t new_y) override;
    void draw_object() override;

    SCROLLBAR_TYPE type = SCROLLBAR_VERTICAL;
    PARAMETER* slew_var = nullptr;
    double last_value = 0;    // at the last update
    std::int32_t travel = 0;  // pixels that the slider moves
    std::int16_t start = 0;   // its position at the first of them
    std::int16_t slider_size = 0, button_size = 0;
    COLOUR bar, slider, text, outline;  // without images; `text` is that of the arrows
    bool dragging = false, last_left = false;
    unsigned char draw_flags = 0;
    std::int32_t page_step = 1, line_step = 1;
    PARAMETER* linked_var = nullptr;  // kept in step, in proportion; not owned
    std::int32_t limit = -1;          // the value doesn't pass it; -1: none
    bool enabled = true;
    MOVEMENT_CALLBACK movement_callback = nullptr;
    bool changed = false;         // the value has moved in this tick
    std::int16_t wheel_step = 1;  // per unit of the wheel; 0: the wheel is not read

    // Of a held end button, in milliseconds.
    static std::uint32_t button_auto_repeat_rate, button_auto_repeat_threshhold;

private:
    // What the pointer is on.
    enum PLACE { NOWHERE, ON_BAR_BEFORE, ON_SLIDER, ON_BAR_BEHIND, ON_LESS, ON_MORE };
    static constexpr int IMAGE_COUNT = STYLE_BOX_MORE_OVER - STYLE_BOX_BAR + 1;

    bool is_vertical() const { return type >= SCROLLBAR_VERTICAL; }
    bool has_buttons() const {
        return type == SCROLLBAR_HORIZONTAL_WITH_BUTTONS || type == SCROLLBAR_VERTICAL_WITH_BUTTONS;
    }
    WM_REGION get_region_along(std::int32_t from, std::int32_t length) const;
    WM_REGION get_button_region(bool more) const;
    PLACE find_place(std::int16_t px, std::int16_t py);
    void press(PLACE place, std::int16_t px, std::int16_t py);
    void drag_to(std::int16_t px, std::int16_t py);
    void repeat_held_button(PLACE place);
    void read_wheel();
    bool move_by_key();
    bool set_value(double value);
    std::int32_t get_step(SCROLLBAR_BUTTON_DOWN_TYPE type);
    void set_over(PLACE place);

    IMAGE_BOX* find_box(STYLE_BOX first_choice, STYLE_BOX fallback);
    // Whether there is an image for it.
    bool draw_piece(const WM_REGION& region, STYLE_BOX normal, STYLE_BOX state);
    void draw_plain(IMAGE& buffer);
    void draw_button(IMAGE& buffer, bool more);

    IMAGE_BOX images[IMAGE_COUNT];
    PLACE over = NOWHERE;   // under the pointer
    PLACE held = NOWHERE;   // where the press began that is still held
    std::int32_t grip = 0;  // pointer minus slider position at the press
    std::uint32_t repeat_time = 0;
    bool repeating = false;
    std::unique_ptr<OBJECT_HINT> hint;
};

#endif  // MODULES_WINMAN_WM_SCROLLBAR_H
