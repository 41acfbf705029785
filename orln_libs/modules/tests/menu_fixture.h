// Menus and list boxes on a page.
#ifndef MODULES_TESTS_MENU_FIXTURE_H
#define MODULES_TESTS_MENU_FIXTURE_H

#include <string>

#include "grid_fixture.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_menu.h"

class MENU_FIXTURE : public GRID_FIXTURE {
protected:
    static constexpr int SEPARATOR_HEIGHT = 3;

    void SetUp() override {
        GRID_FIXTURE::SetUp();
        popup_style = title_style = item_style = alternate_style = separator_style = grid_style;
        popup_style.cell_left_gap = popup_style.cell_right_gap = popup_style.cell_top_gap =
            popup_style.cell_bottom_gap = 0;
        separator_style.font_y_sz = SEPARATOR_HEIGHT;
        item_style.mouse_over_colour = COLOUR_BLUE;
        chosen = -1;
    }
    void TearDown() override {
        area().clear_objects(1, 1);
        GRID_FIXTURE::TearDown();
    }

    // 40 by 10 at the place, with items as wide as their texts have characters.
    WM_MENU* add_menu(int x1, int y1, MENU_TYPE type) {
        auto* menu =
            new WM_MENU(static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
                        static_cast<std::int16_t>(x1 + 39), static_cast<std::int16_t>(y1 + 9),
                        "Menu", type, item_style, popup_style, title_style, item_style,
                        alternate_style, separator_style, 0, &effect, 0);
        area().add_object(menu, 0);
        return menu;
    }
    WM_MENU* open_menu(int items) {
        WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
        fill(menu->popup.get(), items);
        draw_all();
        menu->open();
        whole_tick();
        return menu;
    }
    // Not in the modal list yet.
    WM_FLOATING_MENU* add_floating_menu(int x1, int y1, const char* title,
                                        unsigned char not_owned = 0) {
        return new WM_FLOATING_MENU(static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
                                    title, popup_style, title_style, item_style, alternate_style,
                                    separator_style, 0, not_owned, nullptr, nullptr, &effect,
                                    nullptr, 0, 0);
    }
    // More items, each of 40 characters, which tell their row when they are chosen.
    void fill(WM_FLOATING_MENU* menu, int items) {
        for (int i = 0; i < items; ++i) {
            const std::intptr_t row = menu->get_row_count();
            std::string text = "Item " + std::to_string(row);
            text.resize(40, ' ');
            menu->add_button(text.c_str(), choose, this, reinterpret_cast<void*>(row), 0, nullptr,
                             nullptr);
        }
    }
    static WM_MESG choose(WM_SCREEN_OBJECT* /*object*/, void* data1, void* data2) {
        static_cast<MENU_FIXTURE*>(data1)->chosen =
            static_cast<int>(reinterpret_cast<std::intptr_t>(data2));
        return WM_MESG_NONE;
    }
    WM_STYLE_SET popup_style, title_style, item_style, alternate_style, separator_style;
    EFFECT_INFO effect;
    int chosen = -1;
};

#endif  // MODULES_TESTS_MENU_FIXTURE_H
