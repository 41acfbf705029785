#include "autopatch/add_on_panel.h"

#include <algorithm>
#include <cstdio>

#include "autopatch/add_on.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/profile_grid.h"
#include "modules/gui/tagged_text.h"
#include "modules/gui/text_box.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_grid.h"
#include "platform/dm_file_info.h"
#include "platform/image.h"

namespace {

constexpr const char* DESCRIPTION_STYLE = "DIALOG_DESCRIPTION";
constexpr std::int16_t FACT_ROWS = 5;

std::int32_t MIDDLE_AREA_PANEL_Y_SPACING() {
    static std::int16_t index = -1;
    return GUI_SKIN::get_constant("MIDDLE_AREA_PANEL_Y_SPACING", nullptr, &index);
}

// A skin without the constant gets rows of one line of text.
std::int32_t PROFILE_ROW_HEIGHT(const char* style_name) {
    static std::int16_t index = -1;
    static std::int32_t grid_index = -1, label_index = -1;
    const std::int32_t row_height =
        GUI_SKIN::get_constant("PROFILE_ROW_HEIGHT", style_name, &index);
    if (row_height > 0) {
        return row_height;
    }
    return std::max<std::int32_t>(
        WM_GRID::calc_min_row_height(
            GUI_SKIN::get_style_set("PROFILE_GRID", style_name, &grid_index),
            &GUI_SKIN::get_style_set("PROFILE_LABEL", style_name, &label_index)),
        1);
}

// Of the section, or else the skin's only one.
const IMAGE& get_app_logo(const char* style_name) {
    static std::int32_t section_index = -1, index = -1;
    const IMAGE* logo = GUI_SKIN::get_image("APP_LOGO", style_name, &section_index);
    return logo->width != 0 ? *logo : *GUI_SKIN::get_image("APP_LOGO", nullptr, &index);
}

COLOUR get_description_colour() {
    static std::int32_t index = -1;
    return GUI_SKIN::get_style_set("TEXT_BOX_WORD", DESCRIPTION_STYLE, &index).fg_colour;
}

// The grid would squeeze a picture that is too large for it.
void show_picture(PROFILE_GRID& facts, const IMAGE& picture) {
    std::int32_t room_width = 0, room_height = 0;
    if (!facts.get_picture_room(0, 1, room_width, room_height)) {
        return;
    }
    IMAGE fitting;
    if (picture.width > room_width || picture.height > room_height) {
        fitting.keep_aspect = true;
        fitting.resize_from(picture, room_width, room_height, 1);
    } else {
        fitting.copy_pixels_from(picture);
    }
    facts.add_left_picture_image(0, 1, fitting, 0, nullptr, nullptr, nullptr);
}

}  // namespace

unsigned char ADD_ON_PANEL::is_3d_capable = 1;

ADD_ON_PANEL::ADD_ON_PANEL(std::int16_t panel_x, std::int16_t panel_y, std::int16_t panel_width,
                           std::int16_t panel_height, const ADD_ON* shown_add_on,
                           const char* style_name, signed char panel_window,
                           WM_CALLBACK panel_callback, void* user1, void* user2,
                           unsigned char flags)
    : PANEL_BASE(panel_x, panel_y, static_cast<std::int16_t>(panel_x + panel_width - 1),
                 static_cast<std::int16_t>(panel_y + panel_height - 1), flags, panel_callback,
                 user1, user2, panel_window),
      add_on(shown_add_on) {
    const std::int32_t row_height = PROFILE_ROW_HEIGHT(style_name);
    build_facts(style_name, row_height);
    build_description(style_name, row_height,
                      FACT_ROWS * row_height + MIDDLE_AREA_PANEL_Y_SPACING());
}

void ADD_ON_PANEL::build_facts(const char* style_name, std::int32_t row_height) {
    auto* facts = new PROFILE_GRID(0, 0, static_cast<std::int16_t>(get_internal_width() - 1),
                                   static_cast<std::int16_t>(FACT_ROWS * row_height - 1),
                                   PROFILE_GRID::MODE_PICTURES, 1, nullptr, FACT_ROWS, style_name,
                                   nullptr, nullptr, nullptr, window);
    const char* const title_text = add_on->get_shown_title();
    facts->add_title_script(0, 0, title_text, 0);
    facts->add_script(0, 1, "Add On Name", title_text, 0);
    facts->add_script(0, 2, "Type", get_type_text(*add_on), 0);
    facts->add_script(0, 3, "Build Number", get_build_text(*add_on).c_str(), 0);
    facts->add_script(0, 4, "Size", get_size_text(*add_on).c_str(), 0);
    const bool has_image = add_on->image->width != 0 && add_on->image->height != 0;
    show_picture(*facts, has_image ? *add_on->image : get_app_logo(style_name));
    add_internal_object(facts, 1);
}

void ADD_ON_PANEL::build_description(const char* style_name, std::int32_t row_height,
                                     std::int32_t top) {
    // At least the title and a row of text.
    const std::int32_t room = std::max(get_internal_height() - top, 2 * row_height);
    auto* grid = new PROFILE_GRID(
        0, static_cast<std::int16_t>(top), static_cast<std::int16_t>(get_internal_width() - 1),
        static_cast<std::int16_t>(top + room - 1), PROFILE_GRID::MODE_PICTURES, 1, nullptr,
        static_cast<std::int16_t>(room / row_height), style_name, nullptr, nullptr, nullptr,
        window);
    grid->add_title_script(0, 0, "Description", 0);
    const std::string description = get_description_text(*add_on, get_description_colour());
    grid->set_special_object(new TEXT_BOX(0, 0, 99, 99, description.c_str(), -1, nullptr,
                                          TBF_MULTI_LINE | TBF_FIXED_SIZE, DESCRIPTION_STYLE,
                                          nullptr, nullptr, nullptr, window));
    add_internal_object(grid, 1);
}

const char* ADD_ON_PANEL::get_type_text(const ADD_ON& add_on) {
    switch (add_on.type) {
        case ADD_ON::ADD_ON_APPLICATION:
            return "Client";
        case ADD_ON::ADD_ON_SKIN:
            return "Skin";
        case ADD_ON::ADD_ON_MISC:
            break;
    }
    return "Miscellaneous";
}

std::string ADD_ON_PANEL::get_build_text(const ADD_ON& add_on) {
    if (add_on.version == 0) {
        return "Not installed";
    }
    char text[16];
    std::snprintf(text, sizeof text, "%u", unsigned{add_on.version});
    return text;
}

std::string ADD_ON_PANEL::get_size_text(const ADD_ON& add_on) {
    const std::uint32_t size = add_on.get_file_size();
    return size != 0 ? DM_FILE_INFO::get_size_string(size) : "???";
}

std::string ADD_ON_PANEL::get_description_text(const ADD_ON& add_on, COLOUR colour) {
    std::string text;
    for (std::uint16_t i = 0; i < add_on.description_count; ++i) {
        const char* const line = add_on.get_description_line(i);
        text.append(line != nullptr ? line : "").append("\n");
    }
    const std::string marked = make_colour_tag(COLOUR_RED), plain = make_colour_tag(colour);
    if (add_on.requires_3d() && !is_3d_capable) {
        text.append("\n").append(marked).append("Warning:").append(plain);
        text.append(
            " It appears that your system is unable to run 3D. This add on may not work as "
            "expected.\n");
        text.append("Please ensure that are running the latest drivers for your graphics card.");
        text.append("\n");
    }
    if (add_on.type == ADD_ON::ADD_ON_APPLICATION) {
        text.append("\nFor more information and for news and support visit ").append(marked);
        text.append("<").append(WEB_SITE).append(":url#").append(WEB_SITE).append(">");
        text.append(plain).append(".");
    }
    return text;
}
