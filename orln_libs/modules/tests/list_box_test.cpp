// WM_LIST_BOX: its choice, its readout, and the ways to change it.
#include "menu_fixture.h"
#include "modules/winman/wm_list_box.h"
#include "modules/winman/wm_script.h"

namespace {

class ListBoxTest : public MENU_FIXTURE {
protected:
    // 40 by 10 at (20, 20); 30 pixels are left to the text by the arrow.
    WM_LIST_BOX* add_box(std::vector<const char*> lines, std::int16_t selection = -1) {
        auto* box = new WM_LIST_BOX(20, 20, 59, 29, selection, -1, lines.data(),
                                    static_cast<std::int16_t>(lines.size()), "None", item_style,
                                    popup_style, title_style, item_style, alternate_style,
                                    separator_style, count, this, nullptr, &effect, 0);
        area().add_object(box, 0);
        draw_all();
        return box;
    }
    static void* data(std::intptr_t number) { return reinterpret_cast<void*>(number); }
    // A box with items at three depths: 0 "a"=10, 1 title, 2 menu{"b"=20, menu{"c"=30,"d"=40}},
    // 3 "e"=50.
    WM_LIST_BOX* add_deep_box() {
        WM_LIST_BOX* box = add_box({});
        box->add_line("a", data(10));
        box->add_title("Heading");
        WM_MENU* menu = box->add_menu("more", 0, 0);
        box->add_line_to_menu(menu, "b", data(20));
        WM_MENU* inner = menu->popup->add_menu("deeper", 0, 0, nullptr, nullptr);
        box->add_line_to_menu(inner, "c", data(30));
        box->add_line_to_menu(inner, "d", data(40));
        box->add_line("e", data(50));
        return box;
    }
    static std::vector<int> place(const WM_LIST_BOX* box) {
        return {box->selection, box->sub_selection, box->sub_sub_selection};
    }
    static std::string readout(const WM_LIST_BOX* box) { return box->get_title_text(); }
};

TEST_F(ListBoxTest, WithoutLinesItShowsTheOtherTextFaded) {
    WM_LIST_BOX* box = add_box({});
    EXPECT_EQ("None", readout(box));
    EXPECT_EQ(127, box->text.alpha());
    EXPECT_EQ(TEXT.with_alpha(127), box->text);
    EXPECT_EQ(-1, box->selection);
    EXPECT_EQ(nullptr, box->selected_data);
    box->set_current_selection(3, 0);
    EXPECT_EQ(-1, box->selection);
    box->add_line("One");
    box->set_current_selection(0, 1);
    EXPECT_EQ("One", readout(box));
    EXPECT_EQ(TEXT, box->text);
    box->clear_lines();
    EXPECT_EQ("None", readout(box));
    EXPECT_EQ(0, box->line_count);
}

TEST_F(ListBoxTest, ASelectionBeyondTheLinesIsTheNearest) {
    WM_LIST_BOX* box = add_box({"a", "b", "c"}, 7);
    EXPECT_EQ(2, box->selection);
    EXPECT_EQ("c", readout(box));
    EXPECT_EQ(3, box->line_count);
    box->set_current_selection(-5, 0);
    EXPECT_EQ(0, box->selection);
    EXPECT_TRUE(box->selection_changed);
    WM_LIST_BOX* none = add_box({"a", "b"});
    EXPECT_EQ(-1, none->selection);
    EXPECT_EQ("None", readout(none));
}

TEST_F(ListBoxTest, AQuietChoiceIsNobodysBusiness) {
    WM_LIST_BOX* box = add_box({"a", "b", "c"}, 0);
    box->set_current_selection(1, 1);
    tick();
    EXPECT_FALSE(box->selection_changed);
    EXPECT_EQ(0, calls);
    box->set_current_selection(2, 0);
    EXPECT_TRUE(box->selection_changed);
    result = WM_MESG_REBUILD_AREA;
    EXPECT_EQ(WM_MESG_REBUILD_AREA, tick());
    EXPECT_EQ(1, calls);
    EXPECT_EQ(WM_MESG_NONE, tick());
    EXPECT_EQ(1, calls) << "once for each change";
}

TEST_F(ListBoxTest, AWideReadoutIsCutWithoutEllipsis) {
    WM_LIST_BOX* box = add_box({"123456789012345678901234567890abcdef", "short"}, 0);
    EXPECT_EQ("123456789012345678901234567890", readout(box));
    box->resize(20, 10, 0);
    EXPECT_EQ("1234567890", readout(box));
    box->resize(100, 10, 0);
    EXPECT_EQ("123456789012345678901234567890abcdef", readout(box));
    box->resize(5, 10, 0);
    EXPECT_EQ("", readout(box));
}

TEST_F(ListBoxTest, TheMouseChooses) {
    WM_LIST_BOX* box = add_box({"a", "b", "c"}, 1);
    point(25, 25);
    press();
    EXPECT_TRUE(box->popup->visible);
    EXPECT_EQ(box->popup->get_button(1), focal()) << "the choice has the focus";
    EXPECT_EQ(40, box->popup->width);
    release();
    point(25, 55);
    press();
    release();
    EXPECT_EQ(2, box->selection);
    EXPECT_EQ("c", readout(box));
    EXPECT_TRUE(box->selection_changed);
    EXPECT_FALSE(box->popup->visible);
    EXPECT_EQ(0, calls) << "not while the popup has the input";
    tick();
    EXPECT_EQ(1, calls);
}

TEST_F(ListBoxTest, AnOpenedListShowsTheChoice) {
    std::vector<std::string> texts;
    std::vector<const char*> lines;
    for (int i = 0; i < 100; ++i) {
        texts.push_back("line " + std::to_string(i));
    }
    for (const std::string& text : texts) {
        lines.push_back(text.c_str());
    }
    WM_LIST_BOX* box = add_box(lines, 60);
    press_key(KEY_TAB);
    press_key(KEY_RETURN);
    EXPECT_TRUE(box->popup->visible);
    EXPECT_TRUE(box->popup->grid->is_row_visible(60));
    EXPECT_TRUE(box->popup->scroll_top_button->visible);
    EXPECT_TRUE(box->popup->scroll_bottom_button->visible);
    press_key(KEY_DOWN);
    press_key(KEY_RETURN);
    EXPECT_EQ(61, box->selection);
    whole_tick();
    EXPECT_EQ(1, calls);
    EXPECT_EQ(box, focal());
}

TEST_F(ListBoxTest, ChoicesHaveThreeDepths) {
    WM_LIST_BOX* box = add_deep_box();
    EXPECT_EQ(2, box->line_count);
    const struct {
        std::intptr_t value;
        std::vector<int> place;
        const char* text;
    } cases[] = {{10, {0, -1, -1}, "a"},
                 {20, {2, 0, -1}, "b"},
                 {30, {2, 1, 0}, "c"},
                 {40, {2, 1, 1}, "d"},
                 {50, {3, -1, -1}, "e"}};
    for (const auto& each : cases) {
        EXPECT_TRUE(box->set_selection_from_data(data(each.value), 1, 0));
        EXPECT_EQ(each.place, place(box));
        EXPECT_EQ(each.text, readout(box));
        EXPECT_EQ(data(each.value), box->selected_data);
    }
    EXPECT_FALSE(box->set_selection_from_data(data(31), 1, 0));
    EXPECT_EQ(data(50), box->selected_data);
    EXPECT_TRUE(box->set_selection_from_data(data(33), 1, 1));
    EXPECT_EQ(data(30), box->selected_data);
    EXPECT_TRUE(box->set_selection_from_data(data(35), 1, 1));
    EXPECT_EQ(data(30), box->selected_data) << "the first of equals";
    EXPECT_TRUE(box->set_selection_from_data(data(-7), 0, 1));
    EXPECT_EQ(data(10), box->selected_data);
    EXPECT_TRUE(box->selection_changed);
    // By the item itself, as when it is clicked.
    WM_BUTTON* d = box->popup->get_menu(2)->popup->get_menu(1)->popup->get_button(1);
    d->callback(d, d->callback_data1, d->callback_data2);
    EXPECT_EQ((std::vector<int>{2, 1, 1}), place(box));
    EXPECT_EQ(d, box->get_selected_button());
    box->set_current_selection(1, 1);
    EXPECT_NE(1, box->selection) << "a heading can't be chosen";
}

TEST_F(ListBoxTest, WheelAndArrowsStepThroughAllItems) {
    WM_LIST_BOX* box = add_deep_box();
    box->set_selection_from_data(data(10), 1, 0);
    MOUSE::wheel_pos = -5;
    point(25, 25);
    EXPECT_EQ(0, MOUSE::wheel_pos) << "what was turned before doesn't count";
    EXPECT_EQ("a", readout(box));
    for (const char* expected : {"b", "c", "d", "e", "e"}) {
        MOUSE::wheel_pos = -1;
        tick();
        EXPECT_EQ(expected, readout(box));
    }
    EXPECT_EQ(4, calls);
    MOUSE::wheel_pos = 2;
    tick();
    EXPECT_EQ("c", readout(box));
    EXPECT_TRUE(box->selection_changed);
    point(150, 100);
    MOUSE::wheel_pos = 1;
    tick();
    EXPECT_EQ("c", readout(box));
    EXPECT_EQ(nullptr, manager().get_mouse_wheel_focus(WM_WINDOW_MANAGER::MAIN_WINDOW));
    MOUSE::wheel_pos = 0;
    box->take_focus(1);
    press_key(KEY_DOWN);
    EXPECT_EQ("d", readout(box));
    press_key(KEY_UP);
    EXPECT_EQ("c", readout(box));
    box->clear_selection();
    press_key(KEY_DOWN);
    EXPECT_EQ("a", readout(box));
}

TEST_F(ListBoxTest, TheChosenIconAppearsOnTheBox) {
    WM_LIST_BOX* box = add_box({"a", "b"}, 0);
    box->popup->get_button(1)->icon.reset(6, 4);
    box->set_current_selection(1, 1);
    EXPECT_EQ(6, box->icon.width);
    box->clear_selection();
    EXPECT_EQ(0, box->icon.width);
    box->show_icons = false;
    box->set_current_selection(1, 1);
    EXPECT_EQ(0, box->icon.width);
}

TEST_F(ListBoxTest, StandsInAGrid) {
    WM_GRID* grid = add_grid(60, 30);
    const char* lines[] = {"a", "b"};
    WM_LIST_BOX* box =
        grid->add_list_box(0, 1, item_style, popup_style, title_style, item_style, alternate_style,
                           separator_style, lines, 2, "None", count, this, nullptr);
    EXPECT_EQ(60, box->width);
    GRID_FIXTURE::fill(grid, 10, false);
    EXPECT_EQ(40, box->width);
    draw_all();
    point(15, 25);
    press();
    EXPECT_TRUE(box->popup->visible);
    EXPECT_EQ(40, box->popup->width);
    EXPECT_TRUE(grid->find_object(box->popup->get_button(1)));
    release();
    point(15, 45);
    press();
    release();
    EXPECT_EQ("b", readout(box));
    tick();
    EXPECT_EQ(1, calls);
    // Deleting the box while its popup is open takes it out of the modal list.
    box->open();
    grid->clear(1);
    EXPECT_EQ(0, area().get_modal_object_count());
}

}  // namespace
