// The ".ss" form of WM_STYLE_SET.
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "kvcore/text_field.h"
#include "modules/winman/style_set.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "skin_values.h"

namespace {

constexpr const char* HERE = "$HERE";
constexpr const char* DEFAULT_NAME_PART = "DEFAULT";
constexpr const char* FIX_TOP_ROW_OLD_KEY = "_grid_fix_top_row";

template <class TYPE>
struct FIELD_KEY {
    const char* key;
    TYPE WM_STYLE_SET::*field;
};

constexpr FIELD_KEY<COLOUR> COLOURS[] = {
    {"fg_colour", &WM_STYLE_SET::fg_colour},
    {"bg_colour", &WM_STYLE_SET::bg_colour},
    {"fading_colour", &WM_STYLE_SET::fading_colour},
    {"highlight_colour", &WM_STYLE_SET::highlight_colour},
    {"highlight_text_colour", &WM_STYLE_SET::highlight_text_colour},
    {"active_colour", &WM_STYLE_SET::active_colour},
    {"active_text_colour", &WM_STYLE_SET::active_text_colour},
    {"mouse_over_colour", &WM_STYLE_SET::mouse_over_colour},
    {"mouse_over_text_colour", &WM_STYLE_SET::mouse_over_text_colour},
    {"flashing_colour", &WM_STYLE_SET::flashing_colour},
    {"flashing_text_colour", &WM_STYLE_SET::flashing_text_colour},
    {"underline_colour", &WM_STYLE_SET::underline_colour},
    {"mouse_over_underline_colour", &WM_STYLE_SET::mouse_over_underline_colour},
};

constexpr FIELD_KEY<bool> VISIBLE = {"visible", &WM_STYLE_SET::visible};
constexpr FIELD_KEY<std::int16_t> SHADING_FLAGS = {"shading_flags", &WM_STYLE_SET::shading_flags};

constexpr FIELD_KEY<std::int16_t> FONT_SIZES[] = {
    {"font_x_sz", &WM_STYLE_SET::font_x_sz},
    {"font_y_sz", &WM_STYLE_SET::font_y_sz},
};

constexpr FIELD_KEY<std::uint16_t> BORDER_GAPS[] = {
    {"border_left_gap", &WM_STYLE_SET::border_left_gap},
    {"border_right_gap", &WM_STYLE_SET::border_right_gap},
    {"border_top_gap", &WM_STYLE_SET::border_top_gap},
    {"border_bottom_gap", &WM_STYLE_SET::border_bottom_gap},
};

constexpr FIELD_KEY<std::int16_t> CELL_GAPS[] = {
    {"cell_left_gap", &WM_STYLE_SET::cell_left_gap},
    {"cell_right_gap", &WM_STYLE_SET::cell_right_gap},
    {"cell_top_gap", &WM_STYLE_SET::cell_top_gap},
    {"cell_bottom_gap", &WM_STYLE_SET::cell_bottom_gap},
};

constexpr FIELD_KEY<std::uint16_t> SIZES[] = {
    {"x_spacing", &WM_STYLE_SET::x_spacing},
    {"y_spacing", &WM_STYLE_SET::y_spacing},
    {"scrollbar_button_width", &WM_STYLE_SET::scrollbar_button_width},
    {"scrollbar_slider_width", &WM_STYLE_SET::scrollbar_slider_width},
    {"grid_scrollbar_width", &WM_STYLE_SET::grid_scrollbar_width},
};

struct FLAG_KEY {
    const char* key;
    STYLE_FLAG flag;
};

// In the order in which they are written.
constexpr FLAG_KEY FLAGS[] = {
    {"draw_border", STYLE_DRAW_BORDER},
    {"left_justify_text", STYLE_LEFT_JUSTIFY_TEXT},
    {"right_justify_text", STYLE_RIGHT_JUSTIFY_TEXT},
    {"top_align_text", STYLE_TOP_ALIGN_TEXT},
    {"bottom_align_text", STYLE_BOTTOM_ALIGN_TEXT},
    {"shadow_text", STYLE_SHADOW_TEXT},
    {"inset_text", STYLE_INSET_TEXT},
    {"icon_left", STYLE_ICON_LEFT},
    {"icon_right", STYLE_ICON_RIGHT},
    {"icon_top", STYLE_ICON_TOP},
    {"icon_bottom", STYLE_ICON_BOTTOM},
    {"icon_attach_to_text", STYLE_ICON_ATTACH_TO_TEXT},
    {"wrap_text", STYLE_WRAP_TEXT},
    {"dont_resize_image", STYLE_DONT_RESIZE_IMAGE},
    {"dont_mask_click", STYLE_DONT_MASK_CLICK},
    {"sb_horizontal", STYLE_SB_HORIZONTAL},
    {"sb_with_buttons", STYLE_SB_WITH_BUTTONS},
    {"grid_fix_top_row", STYLE_GRID_FIX_TOP_ROW},
    {"grid_only_draw_used_lines", STYLE_GRID_ONLY_DRAW_USED_LINES},
    {"grid_type_lines", STYLE_GRID_TYPE_LINES},
    {"grid_column_dividers", STYLE_GRID_COLUMN_DIVIDERS},
    {"grid_no_scrollbar", STYLE_GRID_NO_SCROLLBAR},
    {"pb_only_draw_bar", STYLE_PB_ONLY_DRAW_BAR},
    {"pb_vertical", STYLE_PB_VERTICAL},
    {"pb_position_text_on_bar", STYLE_PB_POSITION_TEXT_ON_BAR},
    {"pb_draw_alt_percentage", STYLE_PB_DRAW_ALT_PERCENTAGE},
};

class STYLE_READER {
public:
    STYLE_READER(CONFIG_FILE& config_file, const DISK_MANAGER& folder, WM_STYLE_SET& target,
                 const WM_STYLE_SET* default_set)
        : file(config_file), disk(folder), set(target), defaults(default_set) {}

    // True if the key is there.
    bool read_text(const char* key) { return file.read(disk, key, value); }
    const char* get_text() const { return value; }

    void read_colour(const FIELD_KEY<COLOUR>& key) {
        if (!read_text(key.key)) {
            take_default(key.field);
        } else if (!parse_skin_colour(value, set.*key.field)) {
            refuse(key.key);
        }
    }

    // True if the key holds a number of at most 16 bits, in which either sign may be meant.
    bool read_number(const char* key, std::int32_t& number, std::int32_t maximum = UINT16_MAX) {
        if (!read_text(key)) {
            return false;
        }
        if (!parse_skin_number(value, number) || number > maximum) {
            refuse(key);
            return false;
        }
        return true;
    }

    template <class TYPE>
    void read_field(const FIELD_KEY<TYPE>& key, std::int32_t maximum = UINT16_MAX) {
        std::int32_t number = 0;
        if (read_number(key.key, number, maximum)) {
            set.*key.field = static_cast<TYPE>(number);
        } else {
            take_default(key.field);
        }
    }

    template <class TYPE, std::size_t N>
    void read_fields(const FIELD_KEY<TYPE> (&keys)[N], std::int32_t maximum = UINT16_MAX) {
        for (const auto& key : keys) {
            read_field(key, maximum);
        }
    }

    void read_field(const FIELD_KEY<bool>& key) {
        std::int32_t number = 0;
        if (read_number(key.key, number)) {
            set.*key.field = number != 0;
        } else {
            take_default(key.field);
        }
    }

    void read_flag(const char* key, STYLE_FLAG flag) {
        std::int32_t number = 0;
        if (read_number(key, number)) {
            set_flag(flag, number != 0);
        } else if (defaults) {
            set_flag(flag, defaults->has_flag(flag));
        }
    }
    void set_flag(STYLE_FLAG flag, bool on) {
        set.flags = on ? set.flags | flag : set.flags & ~static_cast<std::uint32_t>(flag);
    }

private:
    template <class TYPE>
    void take_default(TYPE WM_STYLE_SET::*field) {
        if (defaults) {
            set.*field = defaults->*field;
        }
    }
    void refuse(const char* key) { trace_refused_value(disk, file.get_filename(), key, value); }

    CONFIG_FILE& file;
    const DISK_MANAGER& disk;
    WM_STYLE_SET& set;
    const WM_STYLE_SET* defaults;
    char value[CONFIG_FILE::value_size];
};

class STYLE_WRITER {
public:
    STYLE_WRITER(CONFIG_FILE& config_file, const DISK_MANAGER& folder, const WM_STYLE_SET& source,
                 const WM_STYLE_SET* default_set)
        : file(config_file), disk(folder), set(source), defaults(default_set) {}

    // A text that would be cut is refused, because it would name something else then.
    bool write_text(const char* key, const char* text) {
        return std::strlen(text) < CONFIG_FILE::value_size && file.write(disk, key, text);
    }
    bool write_number(const char* key, std::int32_t number) {
        return file.write(disk, key, static_cast<std::uint32_t>(number));
    }

    bool write_field(const FIELD_KEY<COLOUR>& key) {
        char text[16];
        std::snprintf(text, sizeof text, "#%08" PRIX32, (set.*key.field).value);
        return write_text(key.key, text);
    }
    template <class TYPE>
    bool write_field(const FIELD_KEY<TYPE>& key) {
        return write_number(key.key, set.*key.field);
    }

    // Fields like the defaults' are left out.
    template <class TYPE>
    bool write_changed(const FIELD_KEY<TYPE>& key) {
        return (defaults && set.*key.field == defaults->*key.field) || write_field(key);
    }
    template <class TYPE, std::size_t N>
    bool write_changed(const FIELD_KEY<TYPE> (&keys)[N]) {
        for (const auto& key : keys) {
            if (!write_changed(key)) {
                return false;
            }
        }
        return true;
    }

    bool write_flags() {
        for (const auto& [key, flag] : FLAGS) {
            const bool is_default = defaults && set.has_flag(flag) == defaults->has_flag(flag);
            if (!is_default && !write_number(key, set.has_flag(flag))) {
                return false;
            }
        }
        return true;
    }

    bool write_font(WM_STYLE_SET::FIND_FONT_NAME find_font_name, void* data) {
        if (!find_font_name || (defaults && set.font == defaults->font)) {
            return true;
        }
        // A font without a name is written as an empty one, which reads as no font.
        const char* name = find_font_name(set.font, data);
        return write_text("font_name", name ? name : "");
    }

    bool write_all(WM_STYLE_SET::FIND_FONT_NAME find_font_name, void* data, const char* path) {
        return write_text("name", set.name ? set.name : "") &&
               write_text("image_filename", set.image_filename ? set.image_filename : "") &&
               write_text("image_path", path) && write_changed(COLOURS) && write_changed(VISIBLE) &&
               write_changed(SHADING_FLAGS) && write_changed(FONT_SIZES) &&
               write_font(find_font_name, data) && write_changed(BORDER_GAPS) &&
               write_changed(CELL_GAPS) && write_changed(SIZES) && write_flags() &&
               file.write_all_keys(disk);
    }

private:
    CONFIG_FILE& file;
    const DISK_MANAGER& disk;
    const WM_STYLE_SET& set;
    const WM_STYLE_SET* defaults;
};

}  // namespace

bool WM_STYLE_SET::read_from_config_file(CONFIG_FILE& file, FIND_FONT find_font, void* data,
                                         const DISK_MANAGER& disk, const WM_STYLE_SET* defaults) {
    clear();
    STYLE_READER reader(file, disk, *this, defaults);
    const char* text = reader.get_text();
    if (!reader.read_text("name")) {
        return false;
    }
    name.set(text);
    if (!defaults && !std::strstr(name, DEFAULT_NAME_PART)) {
        return false;
    }
    if (!reader.read_text("image_filename")) {
        return false;
    }
    image_filename.set(*text ? text : nullptr);
    if (!reader.read_text("image_path")) {
        return false;
    }
    if (std::strcmp(text, HERE) != 0) {
        KVCORE::copy_text_field(image_path, text);
    } else if (!disk.get_relative_path(image_path)) {
        return false;
    }
    std::int32_t number = 0;
    recolourable = !reader.read_number("recolourable", number) || number != 0;
    load_runtime_image_cache();

    for (const auto& key : COLOURS) {
        reader.read_colour(key);
    }
    reader.read_field(VISIBLE);
    reader.read_field(SHADING_FLAGS);
    reader.read_fields(FONT_SIZES, FONT_MANAGER::MAX_TEXT_SIZE);
    if (!reader.read_text("font_name")) {
        font = defaults ? defaults->font : static_cast<signed char>(-1);
    } else if (find_font && *text) {
        font = find_font(text, data);
    }
    reader.read_fields(BORDER_GAPS);
    reader.read_fields(CELL_GAPS);
    reader.read_fields(SIZES);

    flags = 0;
    reader.read_flag(FIX_TOP_ROW_OLD_KEY, STYLE_GRID_FIX_TOP_ROW);
    for (const auto& [key, flag] : FLAGS) {
        if (flag == STYLE_GRID_FIX_TOP_ROW) {
            // The older spelling counts unless this one says otherwise.
            if (reader.read_number(key, number)) {
                reader.set_flag(flag, number != 0);
            }
        } else {
            reader.read_flag(key, flag);
        }
    }
    return true;
}

bool WM_STYLE_SET::write_to_config_file(CONFIG_FILE& file, FIND_FONT_NAME find_font_name,
                                        void* data, const DISK_MANAGER& disk,
                                        const WM_STYLE_SET* defaults) const {
    char folder[DISK_MANAGER::PATH_SIZE];
    const bool is_here = disk.get_relative_path(folder) && std::strcmp(folder, image_path) == 0;
    file.keys.clear();
    const bool was_bulk = file.bulk_write;
    file.bulk_write = true;
    STYLE_WRITER writer(file, disk, *this, defaults);
    const bool written = writer.write_all(find_font_name, data, is_here ? HERE : image_path);
    file.bulk_write = was_bulk;
    return written;
}
