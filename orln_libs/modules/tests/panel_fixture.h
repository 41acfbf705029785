// A skin that exists only in memory, made by the tests of what takes all its looks from a skin.
#ifndef MODULES_TESTS_PANEL_FIXTURE_H
#define MODULES_TESTS_PANEL_FIXTURE_H

#include <string>

#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "winman_fixture.h"

// Without fonts a text has no width, so that natural sizes are the gaps of the style.
class PANEL_FIXTURE : public WINMAN_FIXTURE {
protected:
    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        tools().clear();
        style("BLANK").bg_colour = COLOUR_INVISIBLE;
    }
    void TearDown() override {
        WINMAN_FIXTURE::TearDown();
        tools().clear();
    }

    static WM_PAGE_TOOL_MANAGER& tools() { return WM_PAGE_TOOL_MANAGER::get_instance(); }

    // The set of that name, without gaps and with a background colour of its own if it is new.
    static WM_STYLE_SET& style(const std::string& name) {
        if (WM_STYLE_SET* found = tools().find_style_set(name.c_str())) {
            return *found;
        }
        auto* set = new WM_STYLE_SET;
        set->set_name(name.c_str());
        set->bg_colour = colour_of(name);
        set->font_x_sz = set->font_y_sz = 8;
        set->x_spacing = set->y_spacing = 0;
        tools().style_sets.add(set);
        tools().sort_style_sets();
        return *set;
    }
    // With gaps that make up a natural size.
    static WM_STYLE_SET& sized_style(const std::string& name, int width, int height) {
        WM_STYLE_SET& set = style(name);
        set.border_left_gap = static_cast<std::uint16_t>(width / 2);
        set.border_right_gap = static_cast<std::uint16_t>(width - width / 2);
        set.border_top_gap = static_cast<std::uint16_t>((height - 8) / 2);
        set.border_bottom_gap = static_cast<std::uint16_t>(height - 8 - (height - 8) / 2);
        return set;
    }
    static void set_gaps(const std::string& name, int left, int right, int top, int bottom) {
        WM_STYLE_SET& set = style(name);
        set.border_left_gap = static_cast<std::uint16_t>(left);
        set.border_right_gap = static_cast<std::uint16_t>(right);
        set.border_top_gap = static_cast<std::uint16_t>(top);
        set.border_bottom_gap = static_cast<std::uint16_t>(bottom);
    }
    static COLOUR colour_of(const std::string& name) {
        return COLOUR(static_cast<std::uint32_t>(std::hash<std::string>{}(name)) | 0xFF000000u);
    }
    static void constant(const std::string& name, int value) {
        auto* info = new WM_PTM_CONSTANT_INFO;
        info->set_name(name.c_str());
        info->value = static_cast<std::int16_t>(value);
        tools().constants.add(info);
        tools().sort_constants();
    }

    // A press and a release at a point, with a tick after each.
    static WM_MESG click(int x, int y, std::int16_t button = MOUSE_BUTTON_LEFT) {
        MOUSE::set_position(0, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
        area().monitor();
        MOUSE::process_mouse_button(button, 1);
        area().monitor();
        MOUSE::process_mouse_button(button, 0);
        return area().monitor();
    }
};

// What a callback saw, and what it is to answer.
struct CALL_RECORD {
    int calls = 0;
    WM_SCREEN_OBJECT* object = nullptr;
    void* data2 = nullptr;
    WM_MESG answer = WM_MESG_NONE;

    static WM_MESG callback(WM_SCREEN_OBJECT* object, void* record, void* data2) {
        auto& self = *static_cast<CALL_RECORD*>(record);
        ++self.calls;
        self.object = object;
        self.data2 = data2;
        return self.answer;
    }
};

#endif  // MODULES_TESTS_PANEL_FIXTURE_H
