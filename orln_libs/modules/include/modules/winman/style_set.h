// WM_STYLE_SET: the look of one kind of control.
//
// Colours, font, gaps, drawing flags and up to 31 scalable images under a name such as
// "DIALOG_BUTTON_CANCEL". A skin is mostly a folder of style set files. Controls never load them:
// they take a style set from GUI_SKIN::get_style_set and copy what they need.
//
// A ".ss" file is a CONFIG_FILE. Colours are "#" and eight hexadecimal digits (alpha, red, green,
// blue), other values decimal numbers. What can't be read as that, or doesn't fit its field, is
// refused with a warning that names the file: a colour then stays as at construction, anything else
// is taken as absent.
#ifndef MODULES_WINMAN_STYLE_SET_H
#define MODULES_WINMAN_STYLE_SET_H

#include <cstdint>
#include <memory>

#include "modules/winman/image_box.h"
#include "modules/winman/owned_text.h"
#include "platform/colour.h"
#include "platform/data_device_client.h"

class CONFIG_FILE;
class DISK_MANAGER;

// The bits of WM_STYLE_SET::flags. Each has a key of its name in the ".ss" file, in lower case and
// without "STYLE_".
enum STYLE_FLAG : std::uint32_t {
    STYLE_DRAW_BORDER = 0x00000001,  // use `shading_flags` for a frame
    STYLE_LEFT_JUSTIFY_TEXT = 0x00000002,
    STYLE_RIGHT_JUSTIFY_TEXT = 0x00000004,  // both together: full width
    STYLE_TOP_ALIGN_TEXT = 0x00000008,
    STYLE_BOTTOM_ALIGN_TEXT = 0x00000010,
    STYLE_SHADOW_TEXT = 0x00000020,
    STYLE_INSET_TEXT = 0x00000040,
    STYLE_ICON_LEFT = 0x00000080,
    STYLE_ICON_RIGHT = 0x00000100,
    STYLE_ICON_TOP = 0x00000200,
    STYLE_ICON_BOTTOM = 0x00000400,
    STYLE_ICON_ATTACH_TO_TEXT = 0x00000800,  // the icon sits beside the text, not at the edge
    STYLE_WRAP_TEXT = 0x00001000,
    STYLE_DONT_RESIZE_IMAGE = 0x00002000,
    STYLE_DONT_MASK_CLICK = 0x00004000,   // clicks are not tested against image transparency
    STYLE_SB_HORIZONTAL = 0x00008000,     // the scroll bar is horizontal
    STYLE_SB_WITH_BUTTONS = 0x00010000,   // the scroll bar has end buttons
    STYLE_GRID_FIX_TOP_ROW = 0x00020000,  // also the key "_grid_fix_top_row"
    STYLE_GRID_NO_SCROLLBAR = 0x00040000,
    STYLE_GRID_ONLY_DRAW_USED_LINES = 0x00080000,
    STYLE_GRID_TYPE_LINES = 0x00100000,
    STYLE_PB_ONLY_DRAW_BAR = 0x00200000,
    STYLE_PB_VERTICAL = 0x00400000,
    STYLE_PB_POSITION_TEXT_ON_BAR = 0x00800000,
    STYLE_PB_DRAW_ALT_PERCENTAGE = 0x01000000,
    STYLE_GRID_COLUMN_DIVIDERS = 0x02000000,
};

// The image boxes of a style set, by the suffix behind the image base name.
enum STYLE_BOX {
    STYLE_BOX_BASE,  // no suffix
    STYLE_BOX_UP,    // "_up", and so on
    STYLE_BOX_DOWN,
    STYLE_BOX_DISABLED,
    STYLE_BOX_OVER,
    STYLE_BOX_ACTIVE_UP,
    STYLE_BOX_ACTIVE_DOWN,
    STYLE_BOX_ACTIVE_DISABLED,
    STYLE_BOX_ACTIVE_OVER,
    STYLE_BOX_HIGHLIGHTED,
    STYLE_BOX_ALTERNATE,  // "_alternate", or else "_alt"
    STYLE_BOX_FLASHING,
    STYLE_BOX_DRAGGING,
    STYLE_BOX_BG,
    STYLE_BOX_EMPTY,
    STYLE_BOX_FULL,
    STYLE_BOX_BAR,
    STYLE_BOX_BAR_DISABLED,
    STYLE_BOX_BAR_OVER,
    STYLE_BOX_SLIDER_UP,
    STYLE_BOX_SLIDER_DOWN,
    STYLE_BOX_SLIDER_DISABLED,
    STYLE_BOX_SLIDER_OVER,
    STYLE_BOX_LESS_UP,
    STYLE_BOX_LESS_DOWN,
    STYLE_BOX_LESS_DISABLED,
    STYLE_BOX_LESS_OVER,
    STYLE_BOX_MORE_UP,
    STYLE_BOX_MORE_DOWN,
    STYLE_BOX_MORE_DISABLED,
    STYLE_BOX_MORE_OVER,
    STYLE_BOX_COUNT
};

class WM_STYLE_SET : public DATA_DEVICE_CLIENT {
public:
    static constexpr int PATH_SIZE = 2048;
    static constexpr std::uint16_t NO_BORDER_GAP = 65535;

    // The font's index for a name, -1 if unknown; and the name for an index, null if unknown.
    using FIND_FONT = signed char (*)(const char* name, void* data);
    using FIND_FONT_NAME = const char* (*)(signed char font, void* data);

    WM_STYLE_SET() = default;
    // Copies share the images through the cache.
    WM_STYLE_SET(const WM_STYLE_SET& other) : DATA_DEVICE_CLIENT(other) { *this = other; }
    WM_STYLE_SET& operator=(const WM_STYLE_SET& other);
    ~WM_STYLE_SET() override = default;
    // All stored fields are equal; the images aren't compared.
    bool operator==(const WM_STYLE_SET& other) const;

    // All fields as at construction, without images.
    void clear();
    // Null is allowed.
    void set_name(const char* text) { name.set(text); }
    void set_image_base_string(const char* text) { image_filename.set(text); }

    // The stored form: image_filename and name (dynamic text), image_path (2048 bytes, padded with
    // 0), then the fields below in their order. Reading ends with load_runtime_image_cache. 1 for
    // success; after a failed read the set is half filled.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

    // Reads `file` in the folder of `disk`. False, with a half-filled set, if "name",
    // "image_filename" or "image_path" is missing or, without `defaults`, the name doesn't contain
    // "DEFAULT". "$HERE" as the path is the folder itself. A key that is absent takes its field
    // from `defaults`; without them it stays as at construction (bits: off). The images are loaded
    // on the way, with cache_flags. `find_font` may be null: the font is not looked up then.
    bool read_from_config_file(CONFIG_FILE& file, FIND_FONT find_font, void* data,
                               const DISK_MANAGER& disk, const WM_STYLE_SET* defaults);
    // The reverse: writes the whole file, with the fields that differ from `defaults`, or all.
    // `file` must be a cached one. "recolourable" is not written. False if a write fails or a text
    // has no room in a configuration value.
    bool write_to_config_file(CONFIG_FILE& file, FIND_FONT_NAME find_font_name, void* data,
                              const DISK_MANAGER& disk, const WM_STYLE_SET* defaults) const;

    // Opens the boxes whose images exist, from image_path and image_filename. Nothing without a
    // file name or with cache_ibox_data off.
    void load_runtime_image_cache();
    void clear_runtime_cache();

    // Tints the images, unless the set isn't recolourable.
    void recolour(COLOUR colour);

    // The box, or null if the set has no such images. Owned by the set.
    IMAGE_BOX* get_box(STYLE_BOX box) const { return boxes[box].get(); }

    // A gap, or what stands for it where it is 65535 (not given).
    static std::uint16_t given_gap(std::uint16_t gap, std::uint16_t otherwise = 0) {
        return gap == NO_BORDER_GAP ? otherwise : gap;
    }
    // The border gaps; those that aren't given are 0.
    std::uint16_t get_object_left_gap() const { return given_gap(border_left_gap); }
    std::uint16_t get_object_right_gap() const { return given_gap(border_right_gap); }
    std::uint16_t get_object_top_gap() const { return given_gap(border_top_gap); }
    std::uint16_t get_object_bottom_gap() const { return given_gap(border_bottom_gap); }
    // The cell gaps; those that aren't given, which are negative, are 0.
    std::int16_t get_cell_left_gap() const { return given_cell_gap(cell_left_gap); }
    std::int16_t get_cell_right_gap() const { return given_cell_gap(cell_right_gap); }
    std::int16_t get_cell_top_gap() const { return given_cell_gap(cell_top_gap); }
    std::int16_t get_cell_bottom_gap() const { return given_cell_gap(cell_bottom_gap); }

    // The flags for the text operations of IMAGE.
    std::int16_t get_text_drawing_flags() const;

    bool has_flag(STYLE_FLAG flag) const { return (flags & flag) != 0; }

    char image_path[PATH_SIZE] = {};  // a stored path
    COLOUR fg_colour = COLOUR_WHITE;
    COLOUR bg_colour = COLOUR_BLACK;
    COLOUR fading_colour, highlight_colour, highlight_text_colour, active_colour,
        active_text_colour, mouse_over_colour, mouse_over_text_colour, flashing_colour,
        flashing_text_colour, underline_colour, mouse_over_underline_colour;
    bool visible = true;
    std::uint32_t flags = STYLE_DRAW_BORDER;
    std::int16_t shading_flags = 16;
    signed char font = -1;
    std::int16_t font_x_sz = -1, font_y_sz = -1;
    std::uint16_t border_left_gap = NO_BORDER_GAP, border_right_gap = NO_BORDER_GAP,
                  border_top_gap = NO_BORDER_GAP, border_bottom_gap = NO_BORDER_GAP;
    std::int16_t cell_left_gap = -1, cell_right_gap = -1, cell_top_gap = -1, cell_bottom_gap = -1;
    std::uint16_t x_spacing = 1, y_spacing = 1;
    std::uint16_t scrollbar_button_width = 15;
    std::uint16_t scrollbar_slider_width = 10;
    std::uint16_t grid_scrollbar_width = 15;
    std::unique_ptr<IMAGE_BOX> boxes[STYLE_BOX_COUNT];
    OWNED_TEXT image_filename;
    OWNED_TEXT name;
    bool recolourable = true;
    bool images_loaded = false;  // load_runtime_image_cache has run

    // Passed to every IMAGE_CACHE::open_image of a style set.
    static unsigned char cache_flags;
    // Style sets load their images.
    static bool cache_ibox_data;

private:
    static std::int16_t given_cell_gap(std::int16_t gap) { return gap < 0 ? std::int16_t{0} : gap; }
};

#endif  // MODULES_WINMAN_STYLE_SET_H
