// WM_MENU and WM_FLOATING_MENU: places, opening and closing, choosing by mouse and by keys.
#include <chrono>
#include <memory>

#include "menu_fixture.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/wm_script.h"

namespace {

class MenuTest : public MENU_FIXTURE {};

// --- Place and size ---

TEST_F(MenuTest, StandsWhereItsTypeSays) {
    struct {
        MENU_TYPE type;
        int x, y;
    } const cases[] = {
        {MENU_BELOW, 60, 73}, {MENU_ABOVE, 60, 27}, {MENU_LEFT, 18, 60}, {MENU_RIGHT, 102, 60}};
    for (const auto& each : cases) {
        WM_MENU* menu = add_menu(60, 60, each.type);
        menu->x_offset = 2;
        menu->y_offset = 3;
        fill(menu->popup.get(), 3);
        menu->open();
        EXPECT_EQ(40, menu->popup->width) << "of the button, or of the widest item";
        EXPECT_EQ(30, menu->popup->height);
        EXPECT_EQ(each.x, menu->popup->x) << each.type;
        EXPECT_EQ(each.y, menu->popup->y) << each.type;
        area().remove_object(menu, 1, 0);
        EXPECT_EQ(0, area().get_modal_object_count());
    }
}

TEST_F(MenuTest, GoesToTheOppositeSideWhereThatHasTheRoom) {
    WM_MENU* below = add_menu(20, 130, MENU_BELOW);
    below->button_flags |= BUTTON_DOWN_ARROW;
    fill(below->popup.get(), 5);
    below->open();
    EXPECT_EQ(MENU_ABOVE, below->menu_type);
    EXPECT_EQ(80, below->popup->y);
    EXPECT_TRUE(below->button_flags & BUTTON_UP_ARROW);
    EXPECT_FALSE(below->button_flags & BUTTON_DOWN_ARROW);
    below->close_at_once();
    WM_MENU* right = add_menu(150, 20, MENU_RIGHT);
    fill(right->popup.get(), 1);
    right->popup->get_button(0)->set_string("", 0);
    right->open();
    EXPECT_EQ(MENU_LEFT, right->menu_type);
    right->close_at_once();
    // Inside the window in any case.
    WM_MENU* edge = add_menu(170, 20, MENU_BELOW);
    edge->popup->add_button("an item that is wide for a window of two hundred", nullptr, nullptr,
                            nullptr, 0, nullptr, nullptr);
    edge->open();
    EXPECT_EQ(WIDTH, edge->popup->x + edge->popup->width);
}

TEST_F(MenuTest, SizeFollowsItemsTitleAndFrame) {
    popup_style.border_left_gap = popup_style.border_right_gap = 3;
    popup_style.border_top_gap = popup_style.border_bottom_gap = 2;
    popup_style.y_spacing = 1;
    item_style.border_left_gap = 4;
    const std::unique_ptr<WM_FLOATING_MENU> menu(add_floating_menu(10, 10, "A title"));
    EXPECT_EQ(7 + 6, menu->width) << "without items that of the title";
    menu->add_button("Item", nullptr, nullptr, nullptr, 0, nullptr, nullptr);
    menu->add_button("Longer item", nullptr, nullptr, nullptr, 1, nullptr, nullptr);
    EXPECT_EQ(11 + 4 + 6, menu->width);
    EXPECT_EQ(2 + 10 + 1 + 2 * 10 + SEPARATOR_HEIGHT + 2, menu->height);
    EXPECT_EQ(2, menu->item_count);
    EXPECT_EQ(3, menu->get_row_count());
    EXPECT_EQ(nullptr, menu->get_button(1)) << "the separator";
    menu->set_title("A title that is longer");
    EXPECT_EQ(22 + 6, menu->width);
    menu->clear(0);
    EXPECT_EQ(-1, menu->last_row);
    menu->clear(1);
    EXPECT_EQ(0, menu->item_count);
    EXPECT_EQ(2 + 10 + 1 + 2, menu->height);
    // A menu of its own is moved into the window.
    const std::unique_ptr<WM_FLOATING_MENU> corner(add_floating_menu(195, 145, nullptr));
    fill(corner.get(), 4);
    EXPECT_EQ(WIDTH, corner->x + corner->width);
    EXPECT_EQ(HEIGHT, corner->y + corner->height);
}

TEST_F(MenuTest, AlternateItemsHaveTheirStyle) {
    alternate_style.bg_colour = COLOUR_GREEN;
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    menu->popup->alternate_rows = true;
    fill(menu->popup.get(), 3);
    EXPECT_EQ(FACE, menu->popup->get_button(0)->bg);
    EXPECT_EQ(COLOUR_GREEN, menu->popup->get_button(1)->bg);
    EXPECT_EQ(FACE, menu->popup->get_button(2)->bg);
}

// --- Opening, choosing and closing by mouse ---

TEST_F(MenuTest, ThePressThatOpensChoosesNothing) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    fill(menu->popup.get(), 3);
    draw_all();
    point(25, 25);
    EXPECT_EQ(WM_MESG_HANDLED, press());
    EXPECT_TRUE(menu->popup_open);
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_EQ(1, area().get_active_modal_object_count(-1));
    point(25, 45);
    release();
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_EQ(-1, chosen);
    // A press and a release on an item do.
    press();
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_EQ(-1, chosen);
    release();
    EXPECT_EQ(1, chosen);
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_EQ(0, area().get_modal_object_count());
    whole_tick();
    EXPECT_FALSE(menu->popup_open);
    EXPECT_FALSE(menu->pressed);
}

TEST_F(MenuTest, APressMayEndOnAnotherItem) {
    WM_MENU* menu = open_menu(3);
    point(25, 35);
    press();
    point(25, 55);
    release();
    EXPECT_EQ(2, chosen);
    EXPECT_FALSE(menu->popup->visible);
    // One that began in the menu and ends outside closes it.
    menu->open();
    whole_tick();
    chosen = -1;
    point(25, 35);
    press();
    point(150, 100);
    release();
    whole_tick();
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_EQ(-1, chosen);
}

TEST_F(MenuTest, OnlyItemsThatCanBeChosenCloseTheMenu) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    fill(menu->popup.get(), 1);
    menu->popup->add_script("A heading", nullptr, nullptr);
    menu->popup->add_button("Disabled", choose, this, this, 0, nullptr, nullptr)->enabled = false;
    menu->popup->add_button("Only closes", nullptr, nullptr, nullptr, 0, nullptr, nullptr);
    menu->open();
    whole_tick();
    for (const int y : {45, 55}) {
        point(25, y);
        press();
        release();
        EXPECT_TRUE(menu->popup->visible) << y;
    }
    point(25, 65);
    press();
    release();
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_EQ(-1, chosen);
}

TEST_F(MenuTest, AMenuOfItsOwnIsDeletedWhenItCloses) {
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    fill(menu, 2);
    area().add_modal_object(menu, 0);
    whole_tick();
    EXPECT_TRUE(area().get_modal_object_count() == 1);
    point(100, 100);
    press();
    EXPECT_EQ(1, area().get_modal_object_count());
    release();
    whole_tick();
    EXPECT_EQ(0, area().get_modal_object_count());

    WM_FLOATING_MENU* kept = add_floating_menu(20, 20, nullptr, 1);
    fill(kept, 2);
    area().add_modal_object(kept, 0);
    whole_tick();
    point(22, 22);
    press();
    release();
    EXPECT_EQ(0, chosen);
    EXPECT_EQ(0, area().get_modal_object_count());
    EXPECT_FALSE(kept->visible);
    delete kept;
}

TEST_F(MenuTest, WhatAnItemAnswersArrives) {
    const auto answer = [](WM_SCREEN_OBJECT*, void*, void*) { return WM_MESG_CHANGE_PAGE; };
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    menu->add_button("Go there at once", answer, nullptr, nullptr, 0, nullptr, nullptr);
    area().add_modal_object(menu, 0);
    WM_MENU* in_page = add_menu(20, 60, MENU_BELOW);
    in_page->popup->add_button("Go", answer, nullptr, nullptr, 0, nullptr, nullptr);
    whole_tick();
    point(22, 25);
    press();
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, release());
    whole_tick();
    EXPECT_EQ(0, area().get_modal_object_count());
    in_page->open();
    whole_tick();
    point(22, 75);
    press();
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, release());
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(MenuTest, OpenCallbackFillsThePopup) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    menu->open_callback = [](WM_SCREEN_OBJECT* object, void*, void*) {
        WM_FLOATING_MENU& popup = *static_cast<WM_MENU*>(object)->popup;
        popup.clear(0);
        popup.add_button("Made now", nullptr, nullptr, nullptr, 0, nullptr, nullptr);
        return WM_MESG_NONE;
    };
    menu->open();
    menu->close_at_once();
    menu->open();
    EXPECT_EQ(1, menu->popup->item_count);
    EXPECT_EQ(10, menu->popup->height);
    // Hiding the button takes the popup along.
    menu->hide(0, 0);
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(MenuTest, AnotherPressOnTheButtonCloses) {
    WM_MENU* menu = open_menu(3);
    point(25, 25);
    press();
    release();
    whole_tick();
    whole_tick();
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_FALSE(menu->popup_open);
    WM_MENU::menu_callback(menu, menu, nullptr);
    EXPECT_TRUE(menu->popup->visible);
    WM_MENU::menu_callback(menu, menu, nullptr);
    whole_tick();
    EXPECT_FALSE(menu->popup->visible);
}

TEST_F(MenuTest, AFadingPopupTakesNoMoreInput) {
    effect.flags = EFFECT_FADE_OUT;
    effect.time = 100000;
    WM_MENU* menu = open_menu(3);
    press_key(KEY_ESCAPE);
    whole_tick();
    EXPECT_EQ(0, menu->popup->target_alpha);
    EXPECT_TRUE(menu->popup->visible);
    point(25, 35);
    press();
    release();
    EXPECT_EQ(-1, chosen);
    EXPECT_TRUE(menu->popup->visible);
    menu->close_at_once();
}

// --- Keys ---

TEST_F(MenuTest, EverythingWorksByKeys) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    fill(menu->popup.get(), 2);
    menu->popup->add_seperator();
    fill(menu->popup.get(), 2);
    menu->popup->get_button(1)->enabled = false;
    draw_all();
    press_key(KEY_TAB);
    EXPECT_EQ(menu, focal());
    press_key(KEY_RETURN);
    EXPECT_TRUE(menu->popup->visible);
    whole_tick();
    EXPECT_EQ(menu->popup->get_button(0), focal()) << "the focus goes into the menu";
    press_key(KEY_DOWN);
    EXPECT_EQ(menu->popup->get_button(3), focal()) << "past what can't be chosen";
    press_key(KEY_DOWN);
    press_key(KEY_DOWN);
    EXPECT_EQ(menu->popup->get_button(0), focal()) << "round";
    press_key(KEY_UP);
    EXPECT_EQ(menu->popup->get_button(4), focal());
    press_key(KEY_HOME);
    EXPECT_EQ(menu->popup->get_button(0), focal());
    press_key(KEY_END);
    EXPECT_EQ(menu->popup->get_button(4), focal());
    EXPECT_EQ(-1, chosen);
    press_key(KEY_RETURN);
    EXPECT_EQ(4, chosen);
    EXPECT_FALSE(menu->popup->visible);
    whole_tick();
    EXPECT_EQ(menu, focal()) << "and back";
    type_space();
    whole_tick();
    EXPECT_TRUE(menu->popup->visible);
    whole_tick();
    press_key(KEY_HOME);
    type_space();
    whole_tick();
    EXPECT_EQ(0, chosen);
    EXPECT_FALSE(menu->popup->visible);
}

TEST_F(MenuTest, EscapeClosesWhenItGoesUp) {
    WM_MENU* menu = open_menu(3);
    press_key(KEY_ESCAPE);
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code());
    whole_tick();
    whole_tick();
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_FALSE(menu->popup_open);
    EXPECT_EQ(-1, chosen);
}

TEST_F(MenuTest, TypingFindsItems) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    for (const char* text : {"Arsenal", "Aston", "Bath", "asterix"}) {
        menu->popup->add_button(text, choose, this, nullptr, 0, nullptr, nullptr);
    }
    menu->open();
    tick();
    const auto row_after = [&](char character, std::uint32_t ms) {
        KEYBOARD::process_char_event(static_cast<unsigned char>(character), 0);
        tick(ms);
        std::int16_t column = -1, row = -1;
        menu->popup->grid->get_object_cell(focal(), column, row);
        return row;
    };
    EXPECT_EQ(2, row_after('B', 0));
    EXPECT_EQ(0, row_after('a', 1000)) << "a new search after more than 999 ms";
    EXPECT_EQ(1, row_after('s', 999)) << "one prefix within them";
    EXPECT_EQ(1, row_after('t', 999));
    EXPECT_EQ(3, row_after('E', 999));
    EXPECT_EQ(3, row_after('x', 500)) << "nothing begins so";
    for (int i = 0; i < 20; ++i) {
        row_after('x', 10);
    }
    EXPECT_EQ(WM_FLOATING_MENU::MAX_TYPED, menu->popup->typed_count);
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_EQ(-1, chosen);
}

// --- Sub-menus ---

TEST_F(MenuTest, SubMenusOpenAndTheWholeChainCloses) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    fill(menu->popup.get(), 1);
    WM_MENU* sub = menu->popup->add_menu("More", 0, 0, nullptr, nullptr);
    EXPECT_EQ(1, menu->popup->menu_count);
    EXPECT_EQ(menu, sub->owner_menu);
    fill(sub->popup.get(), 2);
    WM_MENU* deeper = sub->popup->add_menu("Deeper", 0, 0, nullptr, nullptr);
    fill(deeper->popup.get(), 2);
    menu->open();
    whole_tick();
    point(30, 45);
    whole_tick();
    EXPECT_TRUE(sub->popup->visible) << "the pointer opens it";
    EXPECT_EQ(sub->x + sub->width - 8, sub->popup->x);
    EXPECT_EQ(MENU_RIGHT, sub->menu_type);
    EXPECT_TRUE(menu->popup->is_in_menu(static_cast<std::int16_t>(sub->popup->x + 1),
                                        static_cast<std::int16_t>(sub->popup->y + 1)));
    EXPECT_TRUE(menu->popup->is_object_in_this_menu(sub->popup->get_button(0)));
    whole_tick();
    // On to another item of the first popup: the sub-menu closes.
    point(30, 35);
    whole_tick();
    whole_tick();
    EXPECT_FALSE(sub->popup->visible);
    EXPECT_TRUE(menu->popup->visible);
    // By keys: right, right, and back.
    menu->popup->get_button(1)->take_focus(1);
    press_key(KEY_RIGHT);
    EXPECT_TRUE(sub->popup->visible);
    whole_tick();
    sub->popup->get_button(2)->take_focus(1);
    press_key(KEY_RIGHT);
    EXPECT_TRUE(deeper->popup->visible);
    whole_tick();
    press_key(KEY_LEFT);
    whole_tick();
    EXPECT_FALSE(deeper->popup->visible);
    EXPECT_EQ(deeper, focal());
    press_key(KEY_RETURN);
    EXPECT_TRUE(deeper->popup->visible);
    whole_tick();
    press_key(KEY_DOWN);
    press_key(KEY_RETURN);
    EXPECT_EQ(1, chosen);
    whole_tick();
    whole_tick();
    for (WM_MENU* each : {menu, sub, deeper}) {
        EXPECT_FALSE(each->popup->visible);
    }
    EXPECT_EQ(0, area().get_modal_object_count());
    EXPECT_FALSE(menu->popup_open);
}

TEST_F(MenuTest, EscapeClosesTheWholeChain) {
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    WM_MENU* sub = menu->add_menu("More", 0, 0, nullptr, nullptr);
    EXPECT_EQ(menu, sub->owner_menu);
    fill(sub->popup.get(), 2);
    area().add_modal_object(menu, 0);
    whole_tick();
    sub->open();
    whole_tick();
    press_key(KEY_ESCAPE);
    whole_tick();
    whole_tick();
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(MenuTest, APopupWhoseButtonIsntDrawnYetIsShown) {
    effect.flags = EFFECT_FADE_IN;  // at first nothing of the menu is on the back buffer
    effect.time = 100000;
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    WM_MENU* sub = menu->add_menu("More", 0, 0, nullptr, nullptr);
    fill(sub->popup.get(), 5);
    area().add_modal_object(menu, 0);
    whole_tick();
    sub->open();
    whole_tick();
    const WM_FLOATING_MENU& popup = *sub->popup;
    EXPECT_EQ(FACE, pixel(popup.x + 1, popup.y + popup.height - 1));
    sub->start_closing_popup();
    whole_tick();
    EXPECT_EQ(COLOUR_BLACK, pixel(popup.x + 1, popup.y + popup.height - 1));
}

TEST_F(MenuTest, APopupThatIsLeftAtOnceStaysClosed) {
    effect.flags = EFFECT_FADE_OUT;  // of the menu, which keeps its sub-menu in the list so long
    effect.time = 100000;
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    WM_MENU* sub = menu->add_menu("More", 0, 0, nullptr, nullptr);
    fill(sub->popup.get(), 5);
    area().add_modal_object(menu, 0);
    whole_tick();
    sub->open();
    menu->close_linked_popup(0);
    menu->start_closing();
    whole_tick();
    whole_tick();
    const WM_FLOATING_MENU& popup = *sub->popup;
    EXPECT_EQ(0, popup.alpha);
    EXPECT_EQ(COLOUR_BLACK, pixel(popup.x + 1, popup.y + popup.height - 1));
}

TEST_F(MenuTest, AButtonUnderADialogShowsThatItsPopupHasGone) {
    WM_MENU* menu = open_menu(3);
    EXPECT_EQ(HIGHLIGHT, pixel(22, 22));
    // A dialog of its own accord, by which the button's monitor isn't called any more.
    auto* dialog = new TEST_OBJECT(100, 100, 20, 20);
    area().add_modal_object(dialog, 0);
    menu->start_closing_popup();
    whole_tick();
    whole_tick();
    EXPECT_FALSE(menu->popup->visible);
    EXPECT_EQ(FACE, pixel(22, 22));
}

TEST_F(MenuTest, OpenedAnewItForgetsItsSubMenus) {
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    WM_MENU* sub = menu->popup->add_menu("More", 0, 0, nullptr, nullptr);
    fill(sub->popup.get(), 2);
    menu->open();
    sub->open();
    menu->open();
    EXPECT_TRUE(menu->popup->visible);
    EXPECT_FALSE(sub->popup->visible);
    EXPECT_EQ(1, area().get_modal_object_count());
}

// --- Groups ---

TEST_F(MenuTest, AGroupFollowsThePointer) {
    effect.flags = EFFECT_FADE_OUT;
    effect.time = 100000;
    WM_MENU* menus[] = {add_menu(10, 10, MENU_BELOW), add_menu(60, 10, MENU_BELOW),
                        add_menu(110, 10, MENU_BELOW)};
    for (WM_MENU* menu : menus) {
        fill(menu->popup.get(), 2);
    }
    menus[1]->add_to_group(menus[0]);
    menus[2]->add_to_group(menus[1]);
    EXPECT_EQ(menus[2], menus[1]->group_next);
    EXPECT_EQ(menus[0], menus[2]->group_next);
    EXPECT_EQ(menus[1], menus[0]->find_group_member_at_pos(65, 15));
    EXPECT_EQ(nullptr, menus[0]->find_group_member_at_pos(55, 15));
    draw_all();
    point(65, 15);
    whole_tick();
    EXPECT_FALSE(menus[1]->popup_open) << "nothing is open";
    menus[0]->open();
    whole_tick();
    EXPECT_TRUE(menus[0]->popup->visible) << "a pointer that rests changes nothing";
    menus[0]->mouse_over_now = true;
    point(66, 15);
    whole_tick();
    EXPECT_FALSE(menus[0]->popup->visible) << "at once, without a fade";
    EXPECT_FALSE(menus[0]->mouse_over_now);
    EXPECT_TRUE(menus[1]->popup->visible);
    EXPECT_EQ(1, area().get_modal_object_count());
    menus[2]->enabled = false;
    point(115, 15);
    whole_tick();
    EXPECT_TRUE(menus[1]->popup->visible) << "not to a disabled one";
    point(190, 140);
    menus[2]->enabled = true;
    press_key(KEY_RIGHT);
    EXPECT_TRUE(menus[2]->popup->visible);
    press_key(KEY_RIGHT);
    EXPECT_TRUE(menus[0]->popup->visible) << "the ring goes round";
    press_key(KEY_LEFT);
    EXPECT_TRUE(menus[2]->popup->visible);
    menus[2]->close_at_once();
    area().remove_object(menus[1], 1, 0);
    EXPECT_EQ(menus[2], menus[0]->group_next);
    menus[2]->remove_from_group();
    EXPECT_EQ(nullptr, menus[0]->group_next);
    EXPECT_EQ(nullptr, menus[0]->find_group_member_at_pos(15, 15));
}

TEST_F(MenuTest, MenuModeForcesTheButtonType) {
    WM_MENU::menu_mode = WM_MENU::MODE_HOVER_FIRE;
    WM_MENU* menu = add_menu(20, 20, MENU_BELOW);
    WM_MENU::menu_mode = WM_MENU::MODE_BY_TYPE;
    fill(menu->popup.get(), 2);
    point(25, 25);
    EXPECT_TRUE(menu->popup->visible);
}

// --- More items than room ---

TEST_F(MenuTest, ScrollButtonsStandWhereThereIsMore) {
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    fill(menu, 30);
    area().add_modal_object(menu, 0);
    EXPECT_EQ(150, menu->height);
    EXPECT_EQ(0, menu->y);
    ASSERT_NE(nullptr, menu->scroll_bottom_button);
    EXPECT_EQ(nullptr, menu->scroll_top_button);
    EXPECT_EQ(0, menu->first_row);
    EXPECT_EQ(13, menu->last_row);
    whole_tick();
    point(25, 145);
    press();
    EXPECT_TRUE(menu->scroll_top_button->visible);
    EXPECT_EQ(1, menu->first_row);
    EXPECT_EQ(13, menu->last_row);
    EXPECT_EQ(10, menu->get_button(1)->y) << "only the first row has gone";
    tick(WM_BUTTON::auto_repeat_threshhold + 1);
    EXPECT_EQ(2, menu->first_row) << "held, it goes on";
    release();
    EXPECT_TRUE(menu->visible);
    menu->auto_scroll_to_row(29, 0);
    EXPECT_EQ(29, menu->last_row);
    EXPECT_FALSE(menu->scroll_bottom_button->visible);
    EXPECT_EQ(140, menu->get_button(29)->y);
    point(25, 5);
    press();
    release();
    EXPECT_EQ(15, menu->first_row);
    EXPECT_EQ(27, menu->last_row) << "the lower button is back";
    menu->auto_scroll_to_row(8, 1);
    EXPECT_EQ(2, menu->first_row);
    EXPECT_EQ(14, menu->last_row);
    menu->auto_scroll_to_row(0, 1);
    EXPECT_FALSE(menu->scroll_top_button->visible);
    // Focus and wheel take the view along.
    press_key(KEY_END);
    EXPECT_EQ(29, menu->last_row);
    press_key(KEY_DOWN);
    EXPECT_EQ(0, menu->first_row);
    MOUSE::wheel_pos = 1;
    whole_tick();
    EXPECT_EQ(0, menu->first_row) << "nothing above";
    EXPECT_EQ(0, MOUSE::wheel_pos);
    MOUSE::wheel_pos = -3;
    whole_tick();
    EXPECT_EQ(3, menu->first_row);
    EXPECT_EQ(menu->get_button(4), focal());
    const std::int32_t position = menu->get_scroll_position();
    menu->set_scroll_position(position + 10);
    EXPECT_EQ(2, menu->first_row);
}

TEST_F(MenuTest, ScrollingPassesSeparatorsOver) {
    WM_FLOATING_MENU* menu = add_floating_menu(20, 20, nullptr);
    fill(menu, 1);
    menu->add_button("behind a line", nullptr, nullptr, nullptr, 1, nullptr, nullptr);
    fill(menu, 30);
    area().add_modal_object(menu, 0);
    whole_tick();
    point(25, 145);
    press();
    release();
    EXPECT_EQ(2, menu->first_row);
}

TEST_F(MenuTest, ScrollButtonsAreAsHighAsItems) {
    const std::unique_ptr<WM_FLOATING_MENU> menu(add_floating_menu(20, 20, nullptr));
    fill(menu.get(), 30);
    menu->add_seperator();
    menu->calc_new_size();
    EXPECT_EQ(10, menu->scroll_bottom_button->height);
    EXPECT_EQ(13, menu->last_row);
}

TEST_F(MenuTest, APopupThatFitsNowhereStaysBesideItsButton) {
    WM_MENU* menu = add_menu(20, 60, MENU_BELOW);
    fill(menu->popup.get(), 30);
    menu->open();
    EXPECT_EQ(70, menu->popup->y);
    EXPECT_EQ(80, menu->popup->height);
    menu->close_at_once();
    menu->move(20, 110);
    menu->open();
    EXPECT_EQ(MENU_ABOVE, menu->menu_type);
    EXPECT_EQ(0, menu->popup->y);
    EXPECT_EQ(110, menu->popup->height);
}

TEST_F(MenuTest, LongMenusAreBuiltQuickly) {
    const std::unique_ptr<WM_FLOATING_MENU> menu(add_floating_menu(20, 20, nullptr));
    const auto start = std::chrono::steady_clock::now();
    fill(menu.get(), 3000);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(3000, menu->item_count);
    EXPECT_EQ(150, menu->height);
    // Some hundredths of a second; with work for all items at each one it would be many.
    EXPECT_LT(taken.count(), 2);
}

}  // namespace
