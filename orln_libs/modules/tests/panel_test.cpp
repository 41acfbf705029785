#include <cstdint>
#include <memory>
#include <vector>

#include "modules/gui/panel_base.h"
#include "modules/gui/panel_frame.h"
#include "modules/gui/text_box.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "panel_fixture.h"
#include "platform/message.h"

namespace {

class PanelBaseTest : public PANEL_FIXTURE {};

TEST_F(PanelBaseTest, AreasStandInsideAndAboveTheGaps) {
    set_gaps("PANEL_BACKGROUND", 3, 5, 7, 9);
    PANEL_BASE panel(10, 20, 109, 79, 0, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(100, panel.width);
    EXPECT_EQ(60, panel.height);
    EXPECT_EQ(13, panel.get_internal_x());
    EXPECT_EQ(27, panel.get_internal_y());
    EXPECT_EQ(92, panel.get_internal_width());
    EXPECT_EQ(44, panel.get_internal_height());
    EXPECT_EQ(13, panel.get_upper_area_x());
    EXPECT_EQ(20, panel.get_upper_area_y());
    EXPECT_EQ(92, panel.get_upper_area_width());
    EXPECT_EQ(7, panel.get_upper_area_height());

    auto* object = new TEST_OBJECT(1, 2, 5, 5);
    panel.add_internal_object(object, 1);
    EXPECT_EQ(14, object->x);
    EXPECT_EQ(29, object->y);
    panel.clear_internal_objects();
    EXPECT_EQ(0, TEST_OBJECT::alive);
}

TEST_F(PanelBaseTest, APanelSmallerThanItsGapsHasSmallAreasNotTheWindows) {
    set_gaps("PANEL_BACKGROUND", 30, 30, 30, 30);
    PANEL_BASE panel(0, 0, 9, 9, 0, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(1, panel.get_internal_width());
    EXPECT_EQ(1, panel.get_internal_height());
}

TEST_F(PanelBaseTest, FlagsChooseTheLookAndTheCallbackMakesItAButton) {
    style("PANEL_BACKGROUND").bg_colour = COLOUR_BLUE;
    style("PANEL_BACKGROUND_EXTENDED").bg_colour = COLOUR_GREEN;
    CALL_RECORD record;
    auto* plain = new PANEL_BASE(0, 0, 19, 19, 0, nullptr, nullptr, nullptr, 0);
    auto* extended = new PANEL_BASE(20, 0, 39, 19, PANEL_BASE::PANEL_EXTENDED,
                                    CALL_RECORD::callback, &record, nullptr, 0);
    auto* blank =
        new PANEL_BASE(40, 0, 59, 19, PANEL_BASE::PANEL_BLANK | PANEL_BASE::PANEL_EXTENDED, nullptr,
                       nullptr, nullptr, 0);
    for (WM_SCREEN_OBJECT* panel : {plain, extended, blank}) {
        area().add_object(panel, 0);
    }
    draw_all();
    EXPECT_EQ(COLOUR_BLUE, pixel(10, 10));
    EXPECT_EQ(COLOUR_GREEN, pixel(30, 10));
    EXPECT_EQ(COLOUR_INVISIBLE.value & 0xFFFFFFu, pixel(50, 10).value & 0xFFFFFFu);

    EXPECT_FALSE(plain->can_have_focus());
    EXPECT_TRUE(extended->can_have_focus());
    click(30, 10);
    click(10, 10);
    EXPECT_EQ(1, record.calls);
    EXPECT_EQ(extended, record.object);
}

// A frame of 400 by 300 with a margin of 4, in rows of 20.
class PanelFrameTest : public PANEL_FIXTURE {
protected:
    void SetUp() override {
        PANEL_FIXTURE::SetUp();
        set_gaps("PANEL_FRAME_BACKGROUND", 4, 4, 4, 4);
        for (const char* piece :
             {"TOP_FIRST", "TOP_LAST", "TOP_NO_TABS_FIRST", "TOP_NO_TABS_LAST", "BOTTOM_FIRST",
              "BOTTOM_MID", "BOTTOM_LAST", "BOTTOM_FIRST_HOLDER", "BOTTOM_MID_HOLDER",
              "BOTTOM_LAST_HOLDER"}) {
            sized_style(std::string("PANEL_FRAME_") + piece, 6, 20);
        }
        for (const char* place : {"FIRST", "MID", "LAST"}) {
            for (const char* state : {"", "_SELECTED"}) {
                // A text of one character adds a pixel.
                sized_style(std::string("PANEL_FRAME_TAB_") + place + state, TAB_WIDTH - 1, 20);
                sized_style(std::string("PANEL_FRAME_SUB_") + place + state, TAB_WIDTH - 1, 12);
            }
        }
        style("PANEL_FRAME_TOP_MID");
        style("PANEL_FRAME_TOP_MID_SELECTED");
        sized_style("PANEL_FRAME_TITLE", 10, 20);
        set_gaps("PANEL_FRAME_CENTRE", 5, 7, 3, 2);
        set_gaps("PANEL_FRAME_CENTRE_HOLDER", 15, 17, 3, 2);
        set_gaps("PANEL_FRAME_CENTRE_SMALL_BORDER", 1, 1, 1, 1);
        set_gaps("PANEL_FRAME_ICON_BAR", 2, 2, 6, 6);
        constant("PANEL_FRAME_MAIN_TAB_START_X", 10);
        constant("PANEL_FRAME_MAIN_TAB_X_GAP", 2);
        constant("PANEL_FRAME_SUB_TAB_START_X", 10);
        constant("PANEL_FRAME_SUB_TAB_X_GAP", 2);
        constant("PANEL_FRAME_ICON_BAR_WIDTH", 30);
    }

    using TABS = std::vector<PANEL_FRAME_TAB>;

    // "Squad" (1) with "First" (11) and "Youth" (12), "Club" (2), "Shop" (-1).
    static TABS usual_tabs() {
        return {{"Squad", 0, 1, 0},
                {"First", 1, 11, 0},
                {"Youth", 1, 12, 5},
                {"Club", 0, 2, 0},
                {"Shop", 0, -1, 0}};
    }
    std::unique_ptr<PANEL_FRAME> make(const TABS& tabs, int id, int sub_id, unsigned char flags = 0,
                                      MESSAGE* settings = nullptr, const char* title = nullptr) {
        return std::make_unique<PANEL_FRAME>(
            std::int16_t{0}, std::int16_t{0}, std::int16_t{399}, std::int16_t{299}, title,
            tabs.data(), static_cast<std::int32_t>(tabs.size()), id, sub_id, flags, nullptr,
            settings, CALL_RECORD::callback, &record, nullptr, std::int8_t{0});
    }
    static WM_BUTTON& tab(const PTRARRAY& buttons, int index) {
        return *buttons.get<WM_BUTTON>(index);
    }
    static bool has_look(const WM_BUTTON& button, const char* name) {
        return button.bg == colour_of(name);
    }

    static constexpr int TAB_WIDTH = 40;
    CALL_RECORD record;
};

TEST_F(PanelFrameTest, TheActivePairChoosesMainAndSubTab) {
    const auto frame = make(usual_tabs(), 12, 5);
    ASSERT_EQ(3, frame->tab_buttons.get_count());
    EXPECT_TRUE(has_look(tab(frame->tab_buttons, 0), "PANEL_FRAME_TAB_FIRST_SELECTED"));
    EXPECT_TRUE(has_look(tab(frame->tab_buttons, 1), "PANEL_FRAME_TAB_MID"));
    EXPECT_TRUE(has_look(tab(frame->tab_buttons, 2), "PANEL_FRAME_TAB_LAST"));
    ASSERT_EQ(2, frame->sub_tab_buttons.get_count());
    EXPECT_TRUE(has_look(tab(frame->sub_tab_buttons, 0), "PANEL_FRAME_SUB_FIRST"));
    EXPECT_TRUE(has_look(tab(frame->sub_tab_buttons, 1), "PANEL_FRAME_SUB_LAST_SELECTED"));
    EXPECT_STREQ(" - Squad - Youth", frame->get_tab_title());
    EXPECT_EQ(12, frame->tabs[0].id) << "the main tab opens its last sub-tab";
    EXPECT_TRUE(tab(frame->tab_buttons, 0).enabled);
    EXPECT_FALSE(tab(frame->tab_buttons, 2).enabled) << "negative id";
    EXPECT_EQ(nullptr, frame->title);
}

TEST_F(PanelFrameTest, AMainTabWithoutSubTabsHasNoSubRow) {
    const auto frame = make(usual_tabs(), 2, 0);
    EXPECT_TRUE(has_look(tab(frame->tab_buttons, 1), "PANEL_FRAME_TAB_MID_SELECTED"));
    EXPECT_EQ(0, frame->sub_tab_buttons.get_count());
    EXPECT_STREQ(" - Club", frame->get_tab_title());
}

TEST_F(PanelFrameTest, NoTabIsSelectedByAnUnknownOrNegativePair) {
    for (const int id : {99, 12, -1}) {
        const auto frame = make(usual_tabs(), id, 0);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NE(colour_of("PANEL_FRAME_TAB_FIRST_SELECTED"), tab(frame->tab_buttons, i).bg);
            EXPECT_NE(colour_of("PANEL_FRAME_TAB_LAST_SELECTED"), tab(frame->tab_buttons, i).bg);
        }
        EXPECT_EQ(0, frame->sub_tab_buttons.get_count());
        EXPECT_STREQ("", frame->get_tab_title());
    }
}

TEST_F(PanelFrameTest, SubTabsWithoutAMainTabBelongToNothing) {
    const auto frame = make({{"Lost", 1, 5, 0}, {"Main", 0, 1, 0}, {"Sub", 1, 6, 0}}, 5, 0);
    EXPECT_EQ(1, frame->tab_buttons.get_count());
    EXPECT_EQ(0, frame->sub_tab_buttons.get_count());
    EXPECT_EQ(1, frame->tab_menu->item_count);
}

TEST_F(PanelFrameTest, OneTabIsATitleAndNoRow) {
    auto frame = make({{"Alone", 0, 1, 0}}, 1, 0);
    EXPECT_EQ(0, frame->tab_buttons.get_count());
    EXPECT_STREQ("Alone", frame->get_title());
    EXPECT_STREQ("Given", make({{"Alone", 0, 1, 0}}, 1, 0, 0, nullptr, "Given")->get_title());
    EXPECT_STREQ("", make({}, 1, 0)->get_title());
}

TEST_F(PanelFrameTest, ThePiecesJoinWithoutASeam) {
    const auto frame = make(usual_tabs(), 11, 0);
    area().add_object(frame.get(), 0);
    // Every column of the top row, and every row from top to bottom, shows one of the pieces.
    std::vector<int> covered(400, 0);
    int bottom_of_top = 0;
    for (OBJECT_WALK walk(frame->background->objects, OBJECT_WALK::FORWARD);
         WM_SCREEN_OBJECT* piece = walk.next();) {
        if (piece->y == 4 && (piece->type_flags & WMF_SCRIPT) != 0) {
            bottom_of_top = piece->y + piece->height;
            for (int i = piece->x; i < piece->x + piece->width; ++i) {
                ++covered[static_cast<std::size_t>(i)];
            }
        }
    }
    for (int i = 0; i < 400; ++i) {
        EXPECT_EQ(i >= 4 && i < 396 ? 1 : 0, covered[static_cast<std::size_t>(i)]) << i;
    }
    EXPECT_EQ(24, bottom_of_top);
    EXPECT_EQ(24, frame->title_holder->y);
    EXPECT_EQ(44, frame->centre->y);
    EXPECT_EQ(frame->bottom_first->y, frame->centre->y + frame->centre->height);
    EXPECT_EQ(296, frame->bottom_first->y + frame->bottom_first->height);
    EXPECT_EQ(frame->bottom_mid->x, frame->bottom_first->x + frame->bottom_first->width);
    EXPECT_EQ(frame->bottom_last->x, frame->bottom_mid->x + frame->bottom_mid->width);
    EXPECT_EQ(396, frame->bottom_last->x + frame->bottom_last->width);
    area().remove_object(frame.get(), 0, 0);
}

TEST_F(PanelFrameTest, FlagsChooseTheCentreAndTheIconBar) {
    auto frame = make(usual_tabs(), 2, 0);
    EXPECT_EQ(9, frame->get_internal_x());
    EXPECT_EQ(47, frame->get_internal_y());
    EXPECT_EQ(380, frame->get_internal_width());
    EXPECT_EQ(227, frame->get_internal_height());
    EXPECT_EQ(nullptr, frame->icon_bar);

    frame = make(usual_tabs(), 2, 0, PANEL_FRAME::FRAME_SMALL_BORDER);
    EXPECT_EQ(390, frame->get_internal_width());

    style("PANEL_FRAME_CENTRE_HOLDER").x_spacing = 3;
    frame = make(usual_tabs(), 2, 0, PANEL_FRAME::FRAME_ICON_BAR);
    EXPECT_EQ(380 - 30 - 3, frame->get_internal_width());
    ASSERT_NE(nullptr, frame->icon_bar);
    EXPECT_EQ(396 - 7 - 30, frame->icon_bar->x);
    EXPECT_EQ(47, frame->icon_bar->y);
    EXPECT_EQ(227, frame->icon_bar->height);

    frame = make(usual_tabs(), 2, 0, PANEL_FRAME::FRAME_LOWER_HOLDER);
    EXPECT_EQ(colour_of("PANEL_FRAME_BOTTOM_LAST_HOLDER"), frame->bottom_last->bg);
    EXPECT_EQ(19, frame->get_internal_x());
}

TEST_F(PanelFrameTest, ContentGoesInsideTheCentre) {
    const auto frame = make(usual_tabs(), 2, 0);
    auto* object = new TEST_OBJECT(1, 1, 5, 5);
    frame->add_object(object, 1);
    EXPECT_EQ(frame->internal, object->parent);
    EXPECT_EQ(10, object->x);
    frame->remove_object(object, 1, 0);
    EXPECT_EQ(0, TEST_OBJECT::alive);
    frame->add_object(new TEST_OBJECT(0, 0, 5, 5), 1);
    frame->clear_objects(0, 1);
    EXPECT_EQ(0, TEST_OBJECT::alive);
    EXPECT_NE(nullptr, frame->background->parent) << "the pieces stay";
}

TEST_F(PanelFrameTest, APrefixChangesAllNames) {
    set_gaps("DIALOG_PANEL_FRAME_BACKGROUND", 8, 8, 8, 8);
    set_gaps("DIALOG_PANEL_FRAME_CENTRE", 2, 2, 2, 2);
    PANEL_FRAME frame(0, 0, 99, 99, "Title", nullptr, 0, 0, 0, 0, "DIALOG", nullptr, nullptr,
                      nullptr, nullptr, 0);
    EXPECT_EQ(10, frame.get_internal_x());
    EXPECT_STREQ("DIALOG_PANEL_FRAME_TITLE", frame.title->style_prefix);
}

// The limit is 400 - 4 - 6 = 390; the last of n tabs ends at 4 + 10 + 42 n - 3.
TEST_F(PanelFrameTest, TabsThatReachTheLimitAreNarrowedAndGetHints) {
    const auto tabs_of = [](int count) {
        TABS tabs;
        for (int i = 0; i < count; ++i) {
            tabs.emplace_back("A", static_cast<unsigned char>(0), i, 0);
        }
        return tabs;
    };
    auto frame = make(tabs_of(8), 0, 0);
    EXPECT_EQ(TAB_WIDTH, tab(frame->tab_buttons, 7).width);
    EXPECT_EQ(nullptr, tab(frame->tab_buttons, 0).get_hint_text());

    // 12 tabs end at 515: (390 - 10) * 100 / (515 - 10) percent.
    frame = make(tabs_of(12), 0, 0);
    ASSERT_EQ(12, frame->tab_buttons.get_count());
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(TAB_WIDTH * 75 / 100, tab(frame->tab_buttons, i).width);
        EXPECT_STREQ("A", tab(frame->tab_buttons, i).get_hint_text());
        EXPECT_EQ(14 + i * 32, tab(frame->tab_buttons, i).x);
    }
}

TEST_F(PanelFrameTest, SubTabsHaveALimitOfTheirOwn) {
    TABS tabs = {{"M", 0, 0, 0}, {"O", 0, 100, 0}};
    for (int i = 1; i <= 7; ++i) {
        tabs.emplace(tabs.begin() + i, "S", static_cast<unsigned char>(1), i, 0);
    }
    auto frame = make(tabs, 1, 0);
    EXPECT_EQ(TAB_WIDTH, tab(frame->sub_tab_buttons, 6).width);

    // 7 tabs end at 305, the limit is 240: (240 - 10) * 100 / (305 - 10) percent.
    frame = make(tabs, 1, 0, PANEL_FRAME::FRAME_KEEP_SUB_ROW_END);
    EXPECT_EQ(TAB_WIDTH * 77 / 100, tab(frame->sub_tab_buttons, 6).width);
    EXPECT_STREQ("S", tab(frame->sub_tab_buttons, 6).get_hint_text());
    EXPECT_EQ(TAB_WIDTH, tab(frame->tab_buttons, 0).width);
    EXPECT_EQ(nullptr, tab(frame->tab_buttons, 0).get_hint_text());
    EXPECT_EQ(28, tab(frame->sub_tab_buttons, 0).y) << "in the middle of the title's row";
}

TEST_F(PanelFrameTest, AFarTooSmallFrameStillStands) {
    const TABS tabs = usual_tabs();
    PANEL_FRAME frame(0, 0, 5, 5, "Title", tabs.data(), 5, 11, 0, 15, nullptr, nullptr, nullptr,
                      nullptr, nullptr, 0);
    EXPECT_EQ(1, frame.get_internal_width());
    EXPECT_EQ(1, frame.get_internal_height());
    for (int i = 0; i < 3; ++i) {
        EXPECT_GE(tab(frame.tab_buttons, i).width, 1);
    }
    auto* object = new TEST_OBJECT(0, 0, 30, 10);
    frame.add_lower_frame_object(object);
    EXPECT_EQ(0, object->width) << "there is no room at all";
    frame.clear_lower_frame_objects();
}

TEST_F(PanelFrameTest, CallbackStoresThePairAndRunsOnceForAChange) {
    PANEL_FRAME* frame = make(usual_tabs(), 11, 0).release();
    area().add_object(frame, 0);
    record.answer = WM_MESG_REBUILD_AREA;
    const WM_BUTTON& squad = tab(frame->tab_buttons, 0);
    click(squad.x + 5, squad.y + 5);
    EXPECT_EQ(0, record.calls) << "the tab that is shown";
    const WM_BUTTON& youth = tab(frame->sub_tab_buttons, 1);
    EXPECT_EQ(WM_MESG_REBUILD_AREA, click(youth.x + 5, youth.y + 5));
    EXPECT_EQ(1, record.calls);
    EXPECT_EQ(frame, record.object);
    EXPECT_EQ(12, frame->active_id);
    EXPECT_EQ(5, frame->active_sub_id);
    const WM_BUTTON& shop = tab(frame->tab_buttons, 2);
    click(shop.x + 5, shop.y + 5);
    EXPECT_EQ(1, record.calls) << "disabled";
}

TEST_F(PanelFrameTest, SetTabActivatedFindsTheMainTabOfThePair) {
    TABS tabs = usual_tabs();
    tabs[3].activated = 1;
    const auto frame = make(tabs, 11, 0);
    EXPECT_TRUE(tab(frame->tab_buttons, 1).activated);
    frame->set_tab_activated(2, 0, 0);
    EXPECT_FALSE(tab(frame->tab_buttons, 1).activated);
    frame->set_tab_activated(2, 7, 1);
    EXPECT_FALSE(tab(frame->tab_buttons, 1).activated);
}

TEST_F(PanelFrameTest, TheMenuListsAllTabs) {
    const auto frame = make(usual_tabs(), 11, 0);
    const WM_FLOATING_MENU& menu = *frame->tab_menu;
    // Two sub-tabs, a separator, "Club", a separator, "Shop".
    EXPECT_EQ(4, menu.item_count);
    ASSERT_EQ(6, menu.get_row_count());
    EXPECT_STREQ("Squad - First", menu.get_button(0)->get_title_text());
    EXPECT_STREQ("Squad - Youth", menu.get_button(1)->get_title_text());
    EXPECT_EQ(nullptr, menu.get_button(2));
    EXPECT_STREQ("Club", menu.get_button(3)->get_title_text());
    EXPECT_TRUE(menu.get_button(3)->enabled);
    EXPECT_STREQ("Shop", menu.get_button(5)->get_title_text());
    EXPECT_FALSE(menu.get_button(5)->enabled);

    PANEL_FRAME::handle_callback(menu.get_button(1), frame.get(),
                                 menu.get_button(1)->callback_data2);
    EXPECT_EQ(12, frame->active_id);
    EXPECT_EQ(5, frame->active_sub_id);
    EXPECT_EQ(1, record.calls);
}

TEST_F(PanelFrameTest, ARightClickOpensTheMenuAtThePointer) {
    sized_style("FLOATING_MENU_ITEM", 30, 12);
    PANEL_FRAME* frame = make(usual_tabs(), 11, 0).release();
    area().add_object(frame, 0);
    EXPECT_FALSE(frame->tab_menu->is_modal_object());
    const WM_BUTTON& squad = tab(frame->tab_buttons, 0);
    click(squad.x + 5, squad.y + 5, MOUSE_BUTTON_RIGHT);
    ASSERT_TRUE(frame->tab_menu->is_modal_object());
    EXPECT_TRUE(frame->tab_menu->visible);
    EXPECT_EQ(squad.x + 5, frame->tab_menu->x);
    EXPECT_EQ(squad.y + 5, frame->tab_menu->y);
    // A right click by keys opens it below the tab.
    MOUSE::set_position(0, 199, 149);
    PANEL_FRAME::alt_handle_callback(&tab(frame->tab_buttons, 1), nullptr, frame);
    EXPECT_EQ(tab(frame->tab_buttons, 1).x, frame->tab_menu->x);
    EXPECT_EQ(24, frame->tab_menu->y);
    // Near the window's edge it is moved in.
    const TABS tabs(5, PANEL_FRAME_TAB("A", 0, 1, 0));
    auto at_edge = make(tabs, 1, 0);
    area().add_object(at_edge.get(), 0);
    at_edge->not_owned = true;
    MOUSE::set_position(0, 195, 15);
    PANEL_FRAME::alt_handle_callback(&tab(at_edge->tab_buttons, 4), nullptr, at_edge.get());
    EXPECT_EQ(WIDTH, at_edge->tab_menu->x + at_edge->tab_menu->width);
    EXPECT_EQ(15, at_edge->tab_menu->y);
    area().remove_object(at_edge.get(), 0, 0);
    at_edge.reset();
    // The frame may go while the menu is open.
    area().remove_object(frame, 1, 0);
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(PanelFrameTest, AMenuEntryChangesTheTabAndItsAnswerReachesThePage) {
    sized_style("FLOATING_MENU_ITEM", 30, 12);
    PANEL_FRAME* frame = make(usual_tabs(), 11, 0).release();
    area().add_object(frame, 0);
    const WM_BUTTON& squad = tab(frame->tab_buttons, 0);
    click(squad.x + 5, squad.y + 5, MOUSE_BUTTON_RIGHT);
    draw_all();
    area().monitor();
    record.answer = WM_MESG_REBUILD_AREA;
    const WM_BUTTON& club = *frame->tab_menu->get_button(3);
    EXPECT_EQ(WM_MESG_REBUILD_AREA, click(club.x + 5, club.y + 5));
    EXPECT_EQ(1, record.calls);
    EXPECT_EQ(2, frame->active_id);
    EXPECT_FALSE(frame->tab_menu->is_modal_object());
    // The menu can be opened once more.
    click(squad.x + 5, squad.y + 5, MOUSE_BUTTON_RIGHT);
    EXPECT_TRUE(frame->tab_menu->is_modal_object());
    EXPECT_TRUE(frame->tab_menu->visible);
}

TEST_F(PanelFrameTest, SettingsAreTheCountAndTheIdsOfTheMainTabs) {
    MESSAGE settings;
    make(usual_tabs(), 12, 5, 0, &settings);
    const std::vector<unsigned char> expected = {3, 0, 0, 0, 12, 0, 0,   0,   0,   0,   0, 0, 2, 0,
                                                 0, 0, 0, 0, 0,  0, 255, 255, 255, 255, 0, 0, 0, 0};
    const auto stored = [&settings] {
        return std::vector<unsigned char>(settings.get_buffer(),
                                          settings.get_buffer() + settings.get_length());
    };
    EXPECT_EQ(expected, stored());
    // The next frame shows another tab, and remembers; it writes in the place of the old record.
    {
        const auto frame = make(usual_tabs(), 2, 0, 0, &settings);
        EXPECT_EQ(12, frame->tabs[0].id);
        EXPECT_EQ(2, frame->tabs[3].id);
        EXPECT_EQ(12, static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(
                          tab(frame->tab_buttons, 0).callback_data2)));
    }
    EXPECT_EQ(expected, stored());

    settings.set_byte_order(BYTEORDER_BIG);
    settings.clear();
    make({{"A", 0, 1, 2}}, 1, 2, 0, &settings);
    EXPECT_EQ((std::vector<unsigned char>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 2}), stored());
}

TEST_F(PanelFrameTest, DamagedOrUnknownSettingsKeepTheCallersTabs) {
    const auto first_id_after = [this](const std::vector<std::int32_t>& words, bool cut = false) {
        MESSAGE settings;
        for (const std::int32_t word : words) {
            EXPECT_TRUE(settings << word);
        }
        if (cut) {
            settings.shrink_buffer(1);
        }
        return make(usual_tabs(), 2, 0, 0, &settings)->tabs[0].id;
    };
    EXPECT_EQ(12, first_id_after({1, 12, 0}));
    EXPECT_EQ(12, first_id_after({3, 99, 0, 12, 7, 2, 0})) << "99 is skipped";
    EXPECT_EQ(1, first_id_after({1, 99, 0}));
    EXPECT_EQ(1, first_id_after({2, 12, 0, 2})) << "a number is missing";
    EXPECT_EQ(1, first_id_after({2, 12, 0, 2, 0}, true)) << "a byte is missing";
    EXPECT_EQ(1, first_id_after({-1, 12, 0})) << "a count beyond the data";
    EXPECT_EQ(1, first_id_after({12}, true)) << "no whole count";
    EXPECT_EQ(1, first_id_after({1, -1, 0})) << "no sub-tab that can be shown";
}

TEST_F(PanelFrameTest, TheTitleStandsLeftOrWithSubTabsRight) {
    set_gaps("PANEL_FRAME_TITLE_TEXT_BOX_BACKGROUND", 20, 20, 2, 2);
    auto frame = make(usual_tabs(), 2, 0);
    frame->set_title("Title", 0);
    ASSERT_NE(nullptr, frame->title);
    const int width = frame->title->width;
    EXPECT_GE(width, 40);
    EXPECT_EQ(4 + 5, frame->title->x);
    EXPECT_EQ(24 + (20 - frame->title->height) / 2, frame->title->y);

    frame = make(usual_tabs(), 11, 0);
    frame->set_title("Title", 0);
    EXPECT_EQ(396 - 5 - width, frame->title->x);
    frame->set_title("Title", 1);
    EXPECT_EQ(4 + 5, frame->title->x);
    EXPECT_STREQ("Title", frame->get_title());
    frame->set_title(frame->get_title(), 0);
    EXPECT_STREQ("Title", frame->get_title()) << "its own text again";
    EXPECT_EQ(396 - 5 - width, frame->title->x);
    frame->set_title(nullptr, 0);
    EXPECT_EQ(nullptr, frame->title);
    EXPECT_STREQ("", frame->get_title());

    set_gaps("PANEL_FRAME_TITLE_TEXT_BOX_BACKGROUND", 300, 300, 2, 2);
    frame->set_title("Title", 0);
    EXPECT_EQ(392 - 10, frame->title->width) << "narrowed to the room";
    EXPECT_EQ(4 + 5, frame->title->x);
}

TEST_F(PanelFrameTest, UpperObjectsShareTheRowFromTheRight) {
    style("PANEL_FRAME_TITLE").x_spacing = 4;
    const auto frame = make(usual_tabs(), 2, 0);
    TEST_OBJECT* objects[3];
    for (auto& object : objects) {
        object = new TEST_OBJECT(0, 0, 100, 10);
    }
    EXPECT_EQ(1, frame->add_upper_frame_object(objects[0]));
    EXPECT_EQ(1, frame->add_upper_frame_object(objects[1]));
    EXPECT_EQ(1, frame->add_upper_frame_object(0, objects[2]));
    EXPECT_EQ(0, frame->add_upper_frame_object(nullptr));
    EXPECT_EQ(0, frame->add_upper_frame_object(objects[0])) << "it is there already";
    EXPECT_EQ(0, frame->find_upper_frame_object(objects[2]));
    EXPECT_EQ(2, frame->find_upper_frame_object(objects[1]));
    EXPECT_EQ(291, objects[2]->x);
    EXPECT_EQ(187, objects[0]->x);
    EXPECT_EQ(83, objects[1]->x);
    EXPECT_EQ(29, objects[0]->y);

    frame->hide_upper_frame_objects();
    EXPECT_FALSE(objects[1]->visible);
    frame->show_upper_frame_objects();
    EXPECT_TRUE(objects[1]->visible);

    // 600 + 8 in a room of 382: 62 percent each.
    frame->resize_upper_frame_object(objects[0], 400, 12);
    EXPECT_EQ(248, objects[0]->width);
    EXPECT_EQ(12, objects[0]->height);
    EXPECT_EQ(62, objects[1]->width);
    frame->resize_upper_frame_object(objects[0], 100, 12);
    EXPECT_EQ(100, objects[1]->width) << "back to its own";
    frame->clear_upper_frame_objects();
    EXPECT_EQ(0, TEST_OBJECT::alive);
    EXPECT_EQ(-1, frame->find_upper_frame_object(objects[0]));
}

TEST_F(PanelFrameTest, LowerObjectsStretchTheEndPiece) {
    set_gaps("PANEL_FRAME_BOTTOM_LAST_HOLDER", 10, 6, 2, 2);
    style("PANEL_FRAME_BOTTOM_LAST_HOLDER").x_spacing = 4;
    const auto plain = make(usual_tabs(), 2, 0);
    TEST_OBJECT refused(0, 0, 10, 10);
    EXPECT_EQ(0, plain->add_lower_frame_object(&refused));

    const auto frame = make(usual_tabs(), 2, 0, PANEL_FRAME::FRAME_LOWER_HOLDER);
    EXPECT_EQ(16, frame->bottom_last->width);
    PTRARRAY list;
    TEST_OBJECT* objects[2];
    for (auto& object : objects) {
        object = new TEST_OBJECT(0, 0, 100, 10);
        list.add(object);
    }
    frame->add_lower_frame_objects(list);
    EXPECT_EQ(220, frame->bottom_last->width);
    EXPECT_EQ(176, frame->bottom_last->x);
    EXPECT_EQ(176, frame->bottom_mid->x + frame->bottom_mid->width);
    EXPECT_EQ(186, objects[0]->x);
    EXPECT_EQ(290, objects[1]->x);
    // 504 in a room of 392 - 6 - 16 = 370: 73 percent.
    frame->resize_lower_frame_object(objects[1], 400, 10);
    EXPECT_EQ(73, objects[0]->width);
    EXPECT_EQ(292, objects[1]->width);
    EXPECT_EQ(16 + 73 + 4 + 292, frame->bottom_last->width);
    EXPECT_EQ(396, frame->bottom_last->x + frame->bottom_last->width);
    frame->clear_lower_frame_objects();
    EXPECT_EQ(16, frame->bottom_last->width);
    EXPECT_EQ(1, TEST_OBJECT::alive) << "the refused one";
}

TEST_F(PanelFrameTest, IconsStandInTheBarFromBothEnds) {
    style("PANEL_FRAME_ICON_BAR").y_spacing = 3;
    const auto frame = make(usual_tabs(), 2, 0, PANEL_FRAME::FRAME_ICON_BAR);
    TEST_OBJECT* objects[4];
    for (auto& object : objects) {
        object = new TEST_OBJECT(0, 0, 16, 20);
    }
    frame->add_upper_icon_bar_object(objects[0]);
    frame->add_upper_icon_bar_object(objects[1]);
    frame->add_lower_icon_bar_object(objects[2]);
    frame->add_lower_icon_bar_object(0, objects[3]);
    EXPECT_EQ(359 + 2 + 5, objects[0]->x);
    EXPECT_EQ(47 + 6, objects[0]->y);
    EXPECT_EQ(47 + 6 + 23, objects[1]->y);
    EXPECT_EQ(274 - 6 - 20, objects[3]->y);
    EXPECT_EQ(274 - 6 - 20 - 23, objects[2]->y);
    frame->clear_upper_icon_bar_objects();
    EXPECT_EQ(2, TEST_OBJECT::alive);
    frame->hide_lower_icon_bar_objects();
    EXPECT_FALSE(objects[2]->visible);
}

}  // namespace
