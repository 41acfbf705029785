// WM_SCRIPT: the label of the toolkit. A text, perhaps with an icon, on a colour, a fade or an
// image. It also serves as hint, as the frame of text boxes and as the separator of menus.
#ifndef MODULES_WINMAN_WM_SCRIPT_H
#define MODULES_WINMAN_WM_SCRIPT_H

#include <cstdint>
#include <memory>

#include "modules/gui/parameter.h"
#include "modules/winman/image_box.h"
#include "modules/winman/screen_object.h"
#include "platform/colour.h"
#include "platform/image.h"

class OBJECT_HINT;

// The bits of WM_SCRIPT::script_flags. Those of the style come with the constructor.
enum WM_SCRIPT_FLAG : std::uint32_t {
    SCRIPT_LEFT_JUSTIFY_TEXT = 0x00000004,
    SCRIPT_RIGHT_JUSTIFY_TEXT = 0x00000008,
    SCRIPT_TOP_ALIGN_TEXT = 0x00000010,
    SCRIPT_BOTTOM_ALIGN_TEXT = 0x00000020,
    SCRIPT_DARKEN = 0x00000040,           // owner: what lies behind is darkened, not filled
    SCRIPT_HORIZONTAL_FADE = 0x00000080,  // owner: from `bg` to `fading`
    SCRIPT_VERTICAL_FADE = 0x00000100,    // owner
    SCRIPT_SHADOW_TEXT = 0x00000400,
    SCRIPT_INSET_TEXT = 0x00000800,
    SCRIPT_CHISELLED_TEXT = 0x00001000,  // owner
    SCRIPT_ICON_LEFT = 0x00002000,
    SCRIPT_ICON_RIGHT = 0x00004000,
    SCRIPT_ICON_TOP = 0x00008000,
    SCRIPT_ICON_BOTTOM = 0x00010000,
    SCRIPT_ICON_ATTACH_TO_TEXT = 0x00020000,
    SCRIPT_WRAP_TEXT = 0x00040000,
    SCRIPT_DONT_RESIZE_IMAGE = 0x00080000,
    SCRIPT_DONT_MASK_CLICK = 0x00100000,
};

class WM_SCRIPT : public WM_SCREEN_OBJECT {
public:
    // Corners; a negative x2 or y2 asks for a width or height from the text and the style's gaps.
    // Everything is copied; a null text is empty.
    WM_SCRIPT(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
              const WM_STYLE_SET& style, const char* text, signed char window);
    ~WM_SCRIPT() override;

    // The constructor's work on place, text, colours and font. Gaps of 65535 are 0, spacings of
    // 65535 the left and the top gap; a font of -1 and sizes below 1 are those of FONT_MANAGER.
    void setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
               const char* new_text, COLOUR new_text_colour, COLOUR background,
               signed char new_font, std::int16_t new_font_x_sz, std::int16_t new_font_y_sz,
               std::uint16_t left, std::uint16_t right, std::uint16_t top, std::uint16_t bottom,
               std::uint16_t x_spacing, std::uint16_t y_spacing);

    // Replaces the text, and redraws a visible script. The size stays. Null is empty.
    void set_text(const char* new_text);
    // The text; never null, valid until it is changed.
    const char* get_text() const;

    // The background becomes `first` and the text `second`. With images they are recoloured, from
    // what they were at first, by `first`, with `tri` by all three.
    void set_colours(COLOUR first, COLOUR second, COLOUR third, unsigned char tri);
    // The same for the blinking state.
    void set_flashing_colours(COLOUR first, COLOUR second, COLOUR third, unsigned char tri);
    // Takes the images of a style that has loaded its own, otherwise loads "BASE_up", or else
    // "BASE", and "BASE_flashing" from the folder. A null `base` clears them. Yields is_graphical.
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    bool is_graphical() const { return up_box.are_images_valid(); }
    void clear_images();

    // Tool tips of the script and of its icon. Null or empty: none.
    void set_hint_text(const char* hint_text);
    void set_icon_hint_text(const char* hint_text);
    // Null without a hint.
    const char* get_hint_text() const;
    const char* get_icon_hint_text() const;
    // The pointer comes from an object whose hint was showing: the hint's clock and position.
    void update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py);
    void update_icon_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py);

    // The width, or height, that a script of this style has beside its text.
    static void calc_xgap_from_style_set(const WM_STYLE_SET& style, std::int16_t& gap);
    static void calc_ygap_from_style_set(const WM_STYLE_SET& style, std::int16_t& gap);

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    bool is_in_it(std::int16_t px, std::int16_t py) override;
    bool can_have_focus() override { return false; }
    bool hide_on_screen_refresh() override { return true; }
    void draw_object() override;

    PARAMETER text{PARAMETER::TYPE_STRING};
    PARAMETER flash_text{PARAMETER::TYPE_STRING};  // shown while blinking; empty: no blinking
    bool flashing = false;
    COLOUR text_colour, bg, fading = COLOUR_BLACK, flashing_bg, flashing_text;
    bool has_background = true;
    signed char font = -1;
    std::int16_t font_x_sz = -1, font_y_sz = -1;
    std::unique_ptr<OBJECT_HINT> hint, icon_hint;  // null until one is set
    std::uint16_t left_gap = 0, right_gap = 0, top_gap = 0, bottom_gap = 0;
    // Margins that the text keeps clear of.
    std::int16_t reserved_left = 0, reserved_right = 0, reserved_top = 0, reserved_bottom = 0;
    std::uint16_t icon_x_spacing = 0, icon_y_spacing = 0;
    std::int16_t icon_left = 0, icon_right = -1;  // the icon on screen, for its hint
    std::uint32_t script_flags = 0;
    std::int16_t shading_flags = 0;
    bool enabled = true;              // false: fainter, without shadow and inset
    std::uint16_t flash_mask = 1024;  // of flashing_flags
    // Of a hint: the control that it belongs to. Such a script goes at the first input.
    WM_SCREEN_OBJECT* owner = nullptr;
    IMAGE icon;
    IMAGE_BOX up_box, flashing_box;
    std::unique_ptr<IMAGE_BOX> saved_box, saved_flash_box;  // as they were before recolouring

private:
    WM_MESG monitor_hint();
    void draw_background(IMAGE& buffer);

    bool hint_is_cut_text = false;  // the hint was set because the text had no room
};

#endif  // MODULES_WINMAN_WM_SCRIPT_H
