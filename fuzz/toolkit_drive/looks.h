// A skin that exists only in memory, with a look of its own for each part.
#ifndef FUZZ_TOOLKIT_DRIVE_LOOKS_H
#define FUZZ_TOOLKIT_DRIVE_LOOKS_H

#include <cstdint>
#include <string>

#include "modules/gui/gui_skin.h"
#include "modules/winman/effect_info.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"

class LOOKS {
public:
    LOOKS() {
        load_font();
        for (const char* name : PARTS) {
            add_style(name);
        }
        for (const char* where : {"TAB", "SUB"}) {
            for (const char* place : {"FIRST", "MID", "LAST"}) {
                const std::string name = std::string("PANEL_FRAME_") + where + "_" + place;
                add_style(name);
                add_style(name + "_SELECTED");
            }
        }
        add_constant("PANEL_FRAME_MAIN_TAB_X_GAP", 2);
        add_constant("PANEL_FRAME_SUB_TAB_START_X", 5);
        add_constant("PANEL_FRAME_ICON_BAR_WIDTH", 14);
        add_constant("MESSAGE_BOX_WIDTH", 90);
        add_constant("MESSAGE_BOX_HEIGHT", 80);  // with room for a line of its text
        add_constant("DIALOG_AUTO_RESIZE_X_AMOUNT", 2);
        add_constant("DIALOG_AUTO_RESIZE_Y_AMOUNT", 1);
        add_constant("DIALOG_DEFAULT_CONTROL_WIDTH", 120);
        add_constant("DIALOG_DEFAULT_CONTROL_HEIGHT", 18);
        tools().sort_style_sets();
        tools().sort_constants();
        give_details();
        WM_SCREEN_OBJECT::hint_style_set = get("HINT");
        make_picture(picture, 12, 9);
        make_picture(strip, 30, 8);
    }

    static WM_STYLE_SET& get(const char* name) { return GUI_SKIN::get_style_set(name); }

    // Half of its pixels are translucent, some are invisible.
    IMAGE picture;
    IMAGE strip;  // three frames of 10 by 8

private:
    static constexpr const char* PARTS[] = {
        "BLANK",
        "BUTTON",
        "CHECK_BOX",
        "DIALOG",
        "DIALOG_BACKGROUND",
        "DIALOG_BACKGROUND_WARNING",
        "DIALOG_BUTTON_CANCEL",
        "DIALOG_BUTTON_NORMAL",
        "DIALOG_BUTTON_POSITIVE_ACTION",
        "DIALOG_CHECK_BOX",
        "DIALOG_MESSAGE_TEXT_BOX_BACKGROUND",
        "DIALOG_MESSAGE_TEXT_BOX_GRID",
        "DIALOG_MESSAGE_TEXT_BOX_SCROLLBAR",
        "DIALOG_MESSAGE_TEXT_BOX_WORD",
        "DIALOG_TITLE",
        "FLOATING_MENU_ITEM",
        "FLOATING_MENU_ITEM_ALTERNATE",
        "FLOATING_MENU_POPUP",
        "FLOATING_MENU_SEPARATOR",
        "FLOATING_MENU_TITLE",
        "GRID",
        "HINT",
        "PANEL_BACKGROUND",
        "PANEL_FRAME_BACKGROUND",
        "PANEL_FRAME_BOTTOM_FIRST",
        "PANEL_FRAME_BOTTOM_LAST",
        "PANEL_FRAME_BOTTOM_MID",
        "PANEL_FRAME_CENTRE",
        "PANEL_FRAME_ICON_BAR",
        "PANEL_FRAME_TITLE",
        "PANEL_FRAME_TITLE_TEXT_BOX_BACKGROUND",
        "PANEL_FRAME_TITLE_TEXT_BOX_GRID",
        "PANEL_FRAME_TITLE_TEXT_BOX_SCROLLBAR",
        "PANEL_FRAME_TITLE_TEXT_BOX_WORD",
        "PANEL_FRAME_TOP_FIRST",
        "PANEL_FRAME_TOP_LAST",
        "PANEL_FRAME_TOP_MID",
        "PANEL_FRAME_TOP_NO_TABS_FIRST",
        "PANEL_FRAME_TOP_NO_TABS_LAST",
        "PROFILE_ENTRY",
        "PROFILE_GRID",
        "PROFILE_GRID_REPORT",
        "PROFILE_LABEL",
        "PROFILE_SCROLLBAR",
        "PROFILE_TITLE_ONLY",
        "PROGRESS_BAR",
        "SCRIPT",
        "SCROLLBAR",
        "SCROLLBAR_HORIZONTAL",
        "TEXT_BOX_BACKGROUND",
        "TEXT_BOX_GRID",
        "TEXT_BOX_INFO",
        "TEXT_BOX_SCROLLBAR",
        "TEXT_BOX_SEPARATOR",
        "TEXT_BOX_WORD",
        "TEXT_BOX_WORD_BOLD",
        "TEXT_BOX_WORD_BOLD_ITALIC",
        "TEXT_BOX_WORD_ITALIC",
    };

    static WM_PAGE_TOOL_MANAGER& tools() { return WM_PAGE_TOOL_MANAGER::get_instance(); }

    // Without the font texts are as wide as they have characters, and not drawn.
    void load_font() {
        DISK_MANAGER folder;
        if (folder.move_down("/usr/share/fonts/opentype/inter", false, true)) {
            font = FONT_MANAGER::get_instance().load_font("Inter-Bold.otf", -1, &folder);
        }
    }
    void add_style(const std::string& name) {
        std::uint32_t hash = 2166136261u;
        for (const char c : name) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
        }
        auto* set = new WM_STYLE_SET;
        set->set_name(name.c_str());
        set->bg_colour = COLOUR((hash & 0x7F7F7Fu) | 0xFF000000u);
        set->fg_colour = COLOUR_WHITE;
        set->highlight_colour = COLOUR_RED;
        set->mouse_over_colour = COLOUR((hash >> 8 & 0x7F7F7Fu) | 0xFF808080u);
        set->active_colour = COLOUR_GREEN;
        set->font = font < 0 ? std::int8_t{100} : font;
        set->font_x_sz = set->font_y_sz = 10;
        set->border_left_gap = set->border_right_gap = 2;
        set->border_top_gap = set->border_bottom_gap = 1;
        tools().style_sets.add(set);
    }
    static void add_constant(const char* name, std::int16_t value) {
        auto* constant = new WM_PTM_CONSTANT_INFO;
        constant->set_name(name);
        constant->value = value;
        tools().constants.add(constant);
    }
    static void give_details() {
        get("BLANK").bg_colour = COLOUR_INVISIBLE;
        get("SCRIPT").bg_colour = COLOUR(0x60, 0x20, 0x40, 0x60);
        get("SCROLLBAR").flags |= STYLE_SB_WITH_BUTTONS;
        get("SCROLLBAR").grid_scrollbar_width = 9;
        get("SCROLLBAR").scrollbar_button_width = 6;
        get("SCROLLBAR_HORIZONTAL").flags |= STYLE_SB_HORIZONTAL;
        get("TEXT_BOX_SCROLLBAR").grid_scrollbar_width = 7;
        get("TEXT_BOX_SEPARATOR").font_y_sz = 2;
        get("FLOATING_MENU_SEPARATOR").font_y_sz = 3;
        get("GRID").flags |= STYLE_GRID_COLUMN_DIVIDERS | STYLE_GRID_TYPE_LINES;
        get("PANEL_FRAME_CENTRE").border_left_gap = 4;
        // The row has room for the text box within.
        get("PANEL_FRAME_TITLE").border_top_gap = get("PANEL_FRAME_TITLE").border_bottom_gap = 4;
    }
    static void make_picture(IMAGE& image, int width, int height) {
        image.reset(width, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int alpha = (x + y) % 7 == 0 ? 0 : (x + y) % 2 == 0 ? 128 : 255;
                image.row(y)[x] = COLOUR(static_cast<std::uint32_t>(alpha) << 24 |
                                         static_cast<std::uint32_t>(x * 20) << 16 |
                                         static_cast<std::uint32_t>(y * 25));
            }
        }
    }

    std::int8_t font = -1;
};

#endif  // FUZZ_TOOLKIT_DRIVE_LOOKS_H
