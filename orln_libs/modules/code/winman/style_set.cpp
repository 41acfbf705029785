#include "modules/winman/style_set.h"

#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>

#include "modules/winman/page_tool_manager.h"
#include "path_field.h"
#include "platform/data_device.h"

unsigned char WM_STYLE_SET::cache_flags = 1;
bool WM_STYLE_SET::cache_ibox_data = true;

namespace {

// Behind the base name, in the order of STYLE_BOX.
constexpr const char* BOX_SUFFIXES[STYLE_BOX_COUNT] = {
    "",
    "_up",
    "_down",
    "_disabled",
    "_over",
    "_active_up",
    "_active_down",
    "_active_disabled",
    "_active_over",
    "_highlighted",
    "_alternate",
    "_flashing",
    "_dragging",
    "_bg",
    "_empty",
    "_full",
    "_bar",
    "_bar_disabled",
    "_bar_over",
    "_slider_up",
    "_slider_down",
    "_slider_disabled",
    "_slider_over",
    "_less_up",
    "_less_down",
    "_less_disabled",
    "_less_over",
    "_more_up",
    "_more_down",
    "_more_disabled",
    "_more_over",
};
constexpr const char* ALTERNATE_SUFFIX = "_alt";  // serves when there is no "_alternate"

constexpr char TINTED_CHANNEL = 3;  // of IMAGE::recolour_channel: every pixel

// The stored numbers, in the order of the stored form.
template <class SET>
auto stored_fields(SET& set) {
    return std::tie(set.fg_colour, set.bg_colour, set.fading_colour, set.highlight_colour,
                    set.highlight_text_colour, set.active_colour, set.active_text_colour,
                    set.mouse_over_colour, set.mouse_over_text_colour, set.flashing_colour,
                    set.flashing_text_colour, set.underline_colour, set.mouse_over_underline_colour,
                    set.visible, set.flags, set.shading_flags, set.font, set.font_x_sz,
                    set.font_y_sz, set.border_left_gap, set.border_right_gap, set.border_top_gap,
                    set.border_bottom_gap, set.cell_left_gap, set.cell_right_gap, set.cell_top_gap,
                    set.cell_bottom_gap, set.x_spacing, set.y_spacing, set.scrollbar_button_width,
                    set.scrollbar_slider_width, set.grid_scrollbar_width, set.recolourable);
}

template <class FIELD>
bool read_field(const DATA_DEVICE& device, FIELD& field) {
    if constexpr (std::is_same_v<FIELD, COLOUR>) {
        return device >> field.value;
    } else {
        return device >> field;
    }
}

template <class FIELD>
bool write_field(DATA_DEVICE& device, const FIELD& field) {
    if constexpr (std::is_same_v<FIELD, COLOUR>) {
        return device << field.value;
    } else {
        return device << field;
    }
}

}  // namespace

WM_STYLE_SET& WM_STYLE_SET::operator=(const WM_STYLE_SET& other) {
    if (this == &other) {
        return *this;
    }
    KVCORE::copy_text_field(image_path, other.image_path);
    stored_fields(*this) = stored_fields(other);
    image_filename = other.image_filename;
    name = other.name;
    images_loaded = other.images_loaded;
    for (int i = 0; i < STYLE_BOX_COUNT; ++i) {
        boxes[i] = other.boxes[i] ? std::make_unique<IMAGE_BOX>(*other.boxes[i]) : nullptr;
    }
    return *this;
}

bool WM_STYLE_SET::operator==(const WM_STYLE_SET& other) const {
    return std::strcmp(image_path, other.image_path) == 0 &&
           OWNED_TEXT::compare(image_filename, other.image_filename) == 0 &&
           OWNED_TEXT::compare(name, other.name) == 0 &&
           stored_fields(*this) == stored_fields(other);
}

void WM_STYLE_SET::clear() {
    static const WM_STYLE_SET EMPTY;
    *this = EMPTY;
}

unsigned char WM_STYLE_SET::get_from_data_device(const DATA_DEVICE& device) {
    const auto read_numbers = [&device](auto&... fields) {
        return (read_field(device, fields) && ...);
    };
    if (!image_filename.get_from_data_device(device) || !name.get_from_data_device(device) ||
        !get_path_field(device, image_path) || !std::apply(read_numbers, stored_fields(*this))) {
        return 0;
    }
    load_runtime_image_cache();
    return 1;
}

unsigned char WM_STYLE_SET::put_to_data_device(DATA_DEVICE& device) const {
    const auto write_numbers = [&device](const auto&... fields) {
        return (write_field(device, fields) && ...);
    };
    return image_filename.put_to_data_device(device) && name.put_to_data_device(device) &&
           put_path_field(device, image_path) && std::apply(write_numbers, stored_fields(*this));
}

void WM_STYLE_SET::clear_runtime_cache() {
    for (auto& box : boxes) {
        box.reset();
    }
    images_loaded = false;
}

void WM_STYLE_SET::load_runtime_image_cache() {
    if (!image_filename || !cache_ibox_data) {
        return;
    }
    clear_runtime_cache();
    const std::string base(image_filename);
    auto box = std::make_unique<IMAGE_BOX>(&WM_PAGE_TOOL_MANAGER::styleset_image_cache);
    const auto load = [&](const char* suffix) {
        box->load_images(image_path, (base + suffix).c_str(), cache_flags);
        return box->are_images_valid();
    };
    for (int i = 0; i < STYLE_BOX_COUNT; ++i) {
        if (load(BOX_SUFFIXES[i]) || (i == STYLE_BOX_ALTERNATE && load(ALTERNATE_SUFFIX))) {
            boxes[i] = std::move(box);
            box = std::make_unique<IMAGE_BOX>(&WM_PAGE_TOOL_MANAGER::styleset_image_cache);
        }
    }
    images_loaded = true;
}

void WM_STYLE_SET::recolour(COLOUR colour) {
    if (!recolourable) {
        return;
    }
    for (auto& box : boxes) {
        if (box) {
            box->recolour_channel(colour, TINTED_CHANNEL);
        }
    }
}

std::int16_t WM_STYLE_SET::get_text_drawing_flags() const {
    int text_flags = 0;
    const auto add = [&](STYLE_FLAG style_flag, IMAGE_TEXT_FLAG text_flag) {
        text_flags |= has_flag(style_flag) ? text_flag : 0;
    };
    add(STYLE_RIGHT_JUSTIFY_TEXT, IMAGE_TEXT_RIGHT);
    add(STYLE_LEFT_JUSTIFY_TEXT, IMAGE_TEXT_LEFT);
    add(STYLE_TOP_ALIGN_TEXT, IMAGE_TEXT_TOP);
    add(STYLE_BOTTOM_ALIGN_TEXT, IMAGE_TEXT_BOTTOM);
    add(STYLE_INSET_TEXT, IMAGE_TEXT_INSET);
    add(STYLE_SHADOW_TEXT, IMAGE_TEXT_SHADOW);
    return static_cast<std::int16_t>(text_flags);
}
