// Mouse, focus, scrolling and the edit menu of a text box.
#include <random>

#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"
#include "text_edit_fixture.h"

class TextEditMouseTest : public TEXT_EDIT_FIXTURE {
protected:
    // The left edge of the character at an index, and the middle of its row.
    int x_of(std::int32_t index) { return place_of(index).first; }
    int y_of(std::int32_t index) { return place_of(index).second; }
    std::pair<int, int> place_of(std::int32_t index) {
        std::int16_t column, row, x, x1, y1, x2, y2;
        std::int32_t offset;
        EXPECT_TRUE(box->get_char_from_text_index(index, column, row, x, offset)) << index;
        EXPECT_TRUE(box->grid->get_cell_coords(column, row, x1, y1, x2, y2));
        return {x1 + x, (y1 + y2) / 2};
    }
    void point_at(std::int32_t index) { point(x_of(index), y_of(index)); }
    void press() { set_button(MOUSE_BUTTON_LEFT, true); }
    void release() {
        set_button(MOUSE_BUTTON_LEFT, false);
        tick();
    }
    void press_at(std::int32_t index) {
        point_at(index);
        press();
    }
    TEST_OBJECT* add_other() {
        TEST_OBJECT* other = add(new TEST_OBJECT(100, 100, 20, 20));
        other->allowed_focus = true;
        return other;
    }
    WM_FLOATING_MENU* get_menu() {
        PTRLLIST& modals = info().modal_screen_objects;
        modals.set_cursor(modals.get_tail());
        auto* top = static_cast<WM_SCREEN_OBJECT*>(modals.get_info_dec());
        return top != nullptr && (top->type_flags & WMF_FLOATING_MENU)
                   ? static_cast<WM_FLOATING_MENU*>(top)
                   : nullptr;
    }
    WM_FLOATING_MENU* open_menu(std::int32_t index) {
        click(x_of(index), y_of(index), MOUSE_BUTTON_RIGHT);
        return get_menu();
    }
    // "Undo Redo|Cut+Copy+Paste|Select All+": "+" follows what can be chosen, "|" is a separator.
    std::string describe(const WM_FLOATING_MENU& menu) {
        std::string text;
        for (std::int16_t row = 0; row < menu.get_row_count(); ++row) {
            const WM_BUTTON* button = menu.get_button(row);
            if (button == nullptr) {
                text += "|";
                continue;
            }
            text += text.empty() || text.back() == '|' ? "" : " ";
            text += button->get_title_text();
            text += button->enabled ? "+" : "";
        }
        return text;
    }
    std::string describe_menu(std::int32_t index) {
        WM_FLOATING_MENU* menu = open_menu(index);
        if (menu == nullptr) {
            return "no menu";
        }
        const std::string text = describe(*menu);
        area().remove_modal_object(menu, 1, 0);
        box->take_focus(1);
        return text;
    }
    // As the menu's button does it.
    WM_MESG choose(WM_FLOATING_MENU& menu, const std::string& title) {
        for (std::int16_t row = 0; row < menu.get_row_count(); ++row) {
            WM_BUTTON* button = menu.get_button(row);
            if (button != nullptr && title == button->get_title_text()) {
                return button->callback(button, button->callback_data1, button->callback_data2);
            }
        }
        ADD_FAILURE() << title;
        return WM_MESG_NONE;
    }
};

// --- Clicks and drags ---

TEST_F(TextEditMouseTest, AClickGivesTheFocusAndPlacesTheCursor) {
    add_box("abc def\nghi", LINES);
    EXPECT_FALSE(box->has_focus());
    EXPECT_EQ(0, count_carets());
    point_at(5);
    EXPECT_EQ(5, manager().mouse_icon);
    press();
    EXPECT_TRUE(box->has_focus());
    EXPECT_EQ("abc d|ef\nghi", state());
    EXPECT_EQ(1, count_carets());
    release();
    press_at(9);
    EXPECT_EQ("abc def\ng|hi", state());
    release();
    // Beside and below the lines the nearest character is meant.
    click(LEFT + 140, y_of(0));
    EXPECT_EQ("abc def|\nghi", state());
    click(x_of(8), TOP + 59);
    EXPECT_EQ("abc def\n|ghi", state());
    click(LEFT + 140, TOP + 59);
    EXPECT_EQ("abc def\nghi|", state());
    point(LEFT + 155, TOP);
    EXPECT_EQ(0, manager().mouse_icon);
}

TEST_F(TextEditMouseTest, ThePixelsOfTheFontDecide) {
    edit("|Will il\nWWW iiiiiii", LINES, 100, nullptr, 180, 100);
    for (std::int32_t i = 0; i < 7; ++i) {
        const int width = x_of(i + 1) - x_of(i);
        ASSERT_GT(width, 0) << i;
        for (const int dx : {0, width - 1}) {
            click(x_of(i) + dx, y_of(i));
            EXPECT_EQ(i, get_cursor()) << dx;
        }
    }
    // Down to the character that is nearest to the same x.
    for (std::int32_t i = 0; i <= 7; ++i) {
        move_to(i);
        const int x = x_of(i);
        press_key(KEY_DOWN);
        const std::int32_t below = get_cursor();
        ASSERT_GE(below, 8);
        for (std::int32_t other = 8; other <= 19; ++other) {
            EXPECT_LE(std::abs(x_of(below) - x), std::abs(x_of(other) - x)) << i << " " << other;
        }
    }
}

TEST_F(TextEditMouseTest, DraggingSelects) {
    edit("|abc def\nghi", LINES);
    press_at(2);
    point_at(6);
    EXPECT_EQ("ab[c de|]f\nghi", state());
    EXPECT_EQ(0, count_carets());
    EXPECT_EQ(get_width("ab"), get_word(0, 0)->selection_start_x);
    EXPECT_EQ(get_word(0, 0)->width - 1, get_word(0, 0)->selection_end_x);
    EXPECT_EQ(get_width("de"), get_word(2, 0)->selection_end_x);
    point_at(9);
    EXPECT_EQ("ab[c def\ng|]hi", state());
    point_at(1);
    EXPECT_EQ("a[|b]c def\nghi", state()) << "the press stays one end";
    EXPECT_EQ(-1, get_word(2, 0)->selection_end_x);
    point_at(2);
    EXPECT_EQ("ab|c def\nghi", state());
    EXPECT_EQ(1, count_carets());
    point(LEFT + 500, TOP - 300);
    EXPECT_EQ("ab[c def|]\nghi", state()) << "beyond the box the nearest character";
    release();
    point_at(9);
    EXPECT_EQ("ab[c def|]\nghi", state());
    KEYBOARD::set_modifiers(SHIFT);
    press_at(10);
    EXPECT_EQ("ab[c def\ngh|]i", state());
    point_at(0);
    EXPECT_EQ("[|ab]c def\nghi", state());
    release();
    KEYBOARD::set_modifiers(0);
    press_at(4);
    EXPECT_EQ("abc |def\nghi", state());
    EXPECT_EQ(0, count_highlights());
    // While a button is down, keys do nothing.
    type("x");
    press_key(KEY_DELETE);
    EXPECT_EQ("abc |def\nghi", state());
    release();
    tick();
    EXPECT_EQ("abc |def\nghi", state()) << "and not later either";
}

TEST_F(TextEditMouseTest, PressesThatBeginElsewhereAreNotTheTexts) {
    edit("|abc def", EDIT);
    point(LEFT + 160, TOP + 100);
    press();
    point_at(4);
    point_at(6);
    EXPECT_EQ("|abc def", state());
    release();
    press_at(4);
    EXPECT_EQ("abc |def", state());
    release();
    area().remove_object(box, 1, 0);

    // The scroll bar isn't the text.
    std::string lines = "|";
    for (int i = 0; i < 20; ++i) {
        lines += "line\n";
    }
    edit(lines, LINES);
    ASSERT_LT(box->text_width, 150);
    point(LEFT + box->text_width + 2, TOP + 30);
    EXPECT_EQ(0, manager().mouse_icon);
    press();
    point(LEFT + 2, TOP + 30);
    EXPECT_EQ(0, get_cursor());
    release();
    area().remove_object(box, 1, 0);

    // Unselectable text only has a cursor.
    edit("|abc def", TBF_EDITABLE);
    press_at(2);
    point_at(5);
    EXPECT_EQ("ab|c def", state());
    release();
}

TEST_F(TextEditMouseTest, ClicksThatSelectAllAndClicksThatFire) {
    add_box("abc", EDIT | TBF_CLICK_SELECTS_ALL);
    press_at(1);
    EXPECT_EQ("[abc|]", state());
    point_at(2);
    EXPECT_EQ("[abc|]", state()) << "the rest of the click is no drag";
    release();
    click(x_of(1), y_of(1));
    EXPECT_EQ("a|bc", state());
    area().remove_object(box, 1, 0);

    add_box("abc", TBF_CLICK_FIRES);
    answer = WM_MESG_CHANGE_PAGE;
    point_at(1);
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, set_button(MOUSE_BUTTON_LEFT, true));
    EXPECT_EQ("click", reason);
    EXPECT_EQ(WM_MESG_NONE, tick());
    release();
    EXPECT_EQ(1, calls) << "once a press";
    EXPECT_FALSE(box->has_focus());
}

TEST_F(TextEditMouseTest, ABoxThatIsNotEnabledStillHasItsHint) {
    add_box("abc", EDIT | TBF_CLICK_FIRES);
    box->set_hint_text("hint");
    box->set_enabled(0);
    WM_SCREEN_OBJECT::hint_delay_time = 500;
    point_at(1);
    tick(500);
    EXPECT_TRUE(box->hint.is_showing());
    press();
    EXPECT_FALSE(box->hint.is_showing());
    EXPECT_EQ(0, calls);
    EXPECT_FALSE(box->has_focus());
    release();
}

// --- Focus ---

TEST_F(TextEditMouseTest, FocusComesAndGoes) {
    TEST_OBJECT* other = add_other();
    add_box("abc", EDIT);
    KEYBOARD::process_char_event('x', 0);
    KEYBOARD::process_key_event(KEY_DELETE);
    box->take_focus(0);
    tick();
    EXPECT_EQ("[abc|]", state()) << "what was typed before isn't meant";
    EXPECT_GT(count_highlights(), 0);
    move_to(1);
    box->clear_selection();
    box->show_cursor();
    other->take_focus(0);
    tick();
    EXPECT_EQ(0, count_carets());
    type("x");
    EXPECT_EQ("a|bc", state());
    KEYBOARD().clear_buffer();
    box->take_focus(1);
    EXPECT_EQ("a|bc", state()) << "the position is kept";
    EXPECT_EQ(1, count_carets());
    press_key(KEY_RIGHT, SHIFT);
    other->take_focus(0);
    tick();
    EXPECT_EQ("a[b|]c", state());
    EXPECT_EQ(0, count_highlights());
    box->take_focus(1);
    EXPECT_GT(count_highlights(), 0);

    // What can't be used can't have the focus.
    other->take_focus(0);
    box->set_enabled(0);
    EXPECT_FALSE(box->can_have_focus());
    box->take_focus(0);
    EXPECT_FALSE(box->has_focus());
    click(x_of(1), y_of(1));
    EXPECT_FALSE(box->has_focus());
    box->set_enabled(1);
    EXPECT_TRUE(box->can_have_focus());
    box->set_flags(0);
    EXPECT_FALSE(box->can_have_focus());
}

TEST_F(TextEditMouseTest, TypingGoesOnAfterAChangeOfTheBox) {
    edit("ab|cd", EDIT);
    box->set_prefix_text("To:");
    EXPECT_EQ("ab|cd", state());
    box->set_enabled(0);
    box->set_enabled(1);
    EXPECT_EQ(1, count_carets());
    place_cursor("a[bc|]d");
    box->set_flags(EDIT | TBF_LEADING_SPACE);
    EXPECT_EQ("abc|d", state());
    type("x");
    EXPECT_EQ("abcx|d", state());
    box->refresh();
    tick();
    EXPECT_EQ("abcxd|", state());
    EXPECT_EQ(1, count_carets());
}

TEST_F(TextEditMouseTest, TheFocusComesBackWithItsWindow) {
    for (const char* default_text : {"", "default"}) {
        edit("ab|c", EDIT);
        box->set_default_text(default_text);
        manager().set_window_as_focal_window(static_cast<signed char>(1));
        tick();
        EXPECT_EQ(0, count_carets());
        manager().set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
        tick();
        EXPECT_EQ(*default_text == '\0' ? "ab|c" : "abc|", state());
        EXPECT_EQ(1, count_carets());
        type("x");
        EXPECT_EQ(*default_text == '\0' ? "abx|c" : "abcx|", state());
        area().remove_object(box, 1, 0);
    }
}

TEST_F(TextEditMouseTest, TheDefaultTextStandsInWithoutTheFocus) {
    TEST_OBJECT* other = add_other();
    add_box("", EDIT);
    box->set_default_text("Type here");
    EXPECT_EQ("Type", get_word(0, 0)->text);
    box->take_focus(1);
    EXPECT_EQ("", get_word(0, 0)->text);
    EXPECT_EQ("|", state());
    type("ab");
    EXPECT_EQ("ab|", state());
    other->take_focus(0);
    tick();
    EXPECT_EQ("Type", get_word(0, 0)->text);
    EXPECT_EQ(0, count_carets());
    click(x_of(1), TOP + 30);
    EXPECT_EQ("a|b", state());
}

TEST_F(TextEditMouseTest, TheCaretIsDrawn) {
    edit("ab|c", EDIT);
    draw_all();
    const int x = x_of(2), y = y_of(2);
    EXPECT_EQ(COLOUR_WHITE, pixel(x, y));
    press_key(KEY_LEFT);
    pages().check_for_draw();
    EXPECT_NE(COLOUR_WHITE, pixel(x, y));
    EXPECT_EQ(COLOUR_WHITE, pixel(x_of(1), y));
}

// Also where there is no room behind the last character.
TEST_F(TextEditMouseTest, TheCaretIsDrawnAtTheEndOfAFullLine) {
    const auto has_caret = [this](int x, int y) {
        draw_all();
        const bool shown = pixel(x, y) == COLOUR_WHITE;
        box->hide_cursor();
        pages().check_for_draw();
        return shown && pixel(x, y) != COLOUR_WHITE;
    };
    edit("|", EDIT, 200, nullptr, 100, 30);
    type(std::string(40, 'a'));
    EXPECT_TRUE(has_caret(LEFT + 98, y_of(0) - 7));
    area().remove_object(box, 1, 0);

    // A line that fills the box, with another below it.
    edit("|aaaa bbbb", LINES, 200, nullptr, get_width("aaaa "));
    ASSERT_EQ(2, box->grid->row_count);
    press_key(KEY_END);
    EXPECT_EQ(0, box->cursor_row);
    EXPECT_TRUE(has_caret(LEFT + get_width("aaaa ") - 1, y_of(0)));
    area().remove_object(box, 1, 0);

    // Behind a word, before a tag.
    edit("a|<:style_on#bold>b", EDIT);
    EXPECT_TRUE(has_caret(LEFT + get_width("a") - 1, y_of(0) - 7));
}

// --- Scrolling ---

TEST_F(TextEditMouseTest, TheCursorIsScrolledIntoView) {
    std::string lines = "|";
    for (int i = 0; i < 20; ++i) {
        lines += std::to_string(i) + "\n";
    }
    edit(lines, LINES);
    EXPECT_TRUE(box->get_scrolled_to_top());
    for (int i = 0; i < 10; ++i) {
        press_key(KEY_DOWN);
        EXPECT_TRUE(box->grid->is_row_visible(box->cursor_row)) << box->cursor_row;
    }
    EXPECT_FALSE(box->get_scrolled_to_top());
    EXPECT_FALSE(box->get_scrolled_to_bottom());
    press_key(KEY_END, CONTROL);
    EXPECT_TRUE(box->get_scrolled_to_bottom());
    type("x");
    EXPECT_TRUE(box->get_scrolled_to_bottom());
    press_key(KEY_HOME, CONTROL | SHIFT);
    EXPECT_TRUE(box->get_scrolled_to_top());
    // Dragging below the box moves it on.
    press_at(0);
    for (int i = 0; i < 5; ++i) {
        point(LEFT + 1, TOP + 100 + i);
    }
    EXPECT_FALSE(box->get_scrolled_to_top());
    EXPECT_TRUE(box->has_selection());
    release();
}

TEST_F(TextEditMouseTest, ALongLineMovesWithTheCaret) {
    edit("|", EDIT, 200, nullptr, 100, 30);
    type(std::string(40, '0'));
    const auto caret = [this] {
        std::int16_t x1 = 0, y1, x2, y2;
        box->grid->get_cell_coords(box->cursor_column, 0, x1, y1, x2, y2);
        return x1 + box->cursor_x;
    };
    EXPECT_EQ(LEFT + 99, caret()) << "at the right edge";
    EXPECT_EQ(caret(), get_word(1, 0)->x) << "the end of the line has moved there";
    const int moved_to = get_word(0, 0)->x;
    for (int i = 0; i < 5; ++i) {
        press_key(KEY_LEFT);
    }
    EXPECT_EQ(moved_to, get_word(0, 0)->x) << "within the view nothing moves";
    type("0");
    EXPECT_EQ(moved_to, get_word(0, 0)->x) << "nor when the layout is made anew";
    press_key(KEY_HOME);
    EXPECT_EQ(LEFT, caret());
    press_key(KEY_END);
    EXPECT_EQ(LEFT + 99, caret());
    while (box->text.size() > 2) {
        press_key(KEY_BACKSPACE);
        EXPECT_LE(LEFT, get_word(1, 0)->x);
        EXPECT_GE(LEFT + 99, get_word(1, 0)->x);
    }
    EXPECT_EQ(LEFT, get_word(0, 0)->x);
}

// --- Anything goes ---

// Tagged texts of all sorts, in boxes of all sorts: whatever the user does, the cursor and the
// selection stand at characters, and the limit holds.
TEST_F(TextEditMouseTest, NothingBreaksThePositions) {
    const char* const pieces[] = {"a",
                                  "bc ",
                                  "  ",
                                  "\n",
                                  "<",
                                  ">",
                                  "\r\x01",
                                  "<:colour#4278190335>",
                                  "<na me:t#v>",
                                  "<:separator#0>",
                                  "<:fix_indent#0>",
                                  "<x:style_on#bold>",
                                  "<:style_off#bold>",
                                  "wwwwwwwwwwwwwwwwwwwwwwwwww"};
    std::mt19937 random(77);
    const auto pick = [&random](std::size_t count) { return random() % count; };
    const auto make_text = [&] {
        std::string text;
        for (auto left = pick(12); left > 0; --left) {
            text += pieces[pick(std::size(pieces))];
        }
        return text;
    };
    constexpr KEY_TYPE KEYS[] = {KEY_LEFT, KEY_RIGHT,  KEY_UP,        KEY_DOWN,   KEY_HOME,
                                 KEY_END,  KEY_DELETE, KEY_BACKSPACE, KEY_RETURN, KEY_INSERT};
    add_substitution("bc", "<:colour#1>");
    for (int i = 0; i < 300; ++i) {
        const std::uint32_t flags =
            (random() & 0x1FFFFu & ~static_cast<std::uint32_t>(TBF_POPUP_MENU)) | TBF_EDITABLE;
        add_box(make_text(), flags, 60, pick(8) == 0 ? "abc <>" : nullptr,
                20 + static_cast<int>(pick(120)), 20 + static_cast<int>(pick(60)));
        box->take_focus(static_cast<unsigned char>(pick(2)));
        const std::size_t limit = static_cast<std::size_t>(box->max_text_length);
        for (int step = 0; step < 60; ++step) {
            const std::uint32_t modifiers =
                static_cast<std::uint32_t>(random() & (SHIFT | CONTROL));
            switch (pick(5)) {
                case 0:
                    press_key(KEYS[pick(std::size(KEYS))], modifiers);
                    break;
                case 1:
                    type(std::string(1, "ab c<>"[pick(6)]));
                    break;
                case 2:
                    shortcut("acvxz"[pick(5)], modifiers & SHIFT);
                    break;
                case 3:
                    set_button(MOUSE_BUTTON_LEFT, pick(2) == 0);
                    point(LEFT - 5 + static_cast<int>(pick(160)),
                          TOP - 5 + static_cast<int>(pick(90)));
                    break;
                default:
                    if (pick(4) == 0) {
                        set_clipboard_text(make_text().c_str());
                    }
            }
            const auto length = static_cast<std::int32_t>(box->text.size());
            const std::int32_t cursor = get_cursor();
            ASSERT_TRUE(cursor >= 0 && cursor <= length) << i << " " << step;
            ASSERT_FALSE(get_word(box->cursor_column, box->cursor_row)->continuation);
            ASSERT_LE(box->text.size(), limit) << i << " " << step;
            if (box->has_selection()) {
                ASSERT_LT(index_of(box->start_column, box->start_row, box->start_offset),
                          index_of(box->end_column, box->end_row, box->end_offset));
            }
        }
        set_button(MOUSE_BUTTON_LEFT, false);
        area().remove_object(box, 1, 0);
    }
}

// --- The edit menu ---

TEST_F(TextEditMouseTest, TheEditMenuOffersWhatCanBeDone) {
    edit("ab|cd", EDIT | TBF_POPUP_MENU);
    EXPECT_EQ("Undo Redo|Cut Copy Paste|Select All+", describe_menu(1));
    EXPECT_EQ("ab|cd", state()) << "the right button doesn't move the cursor";
    set_clipboard_text("x");
    type("e");
    press_key(KEY_LEFT, SHIFT);
    EXPECT_EQ("Undo+ Redo|Cut+ Copy+ Paste+|Select All+", describe_menu(1));
    shortcut('z');
    shortcut('a');
    EXPECT_EQ("Undo Redo+|Cut+ Copy+ Paste+|Select All", describe_menu(1));
    area().remove_object(box, 1, 0);

    edit("[abcd|]", EDIT | TBF_POPUP_MENU | TBF_PASSWORD);
    EXPECT_EQ("Undo Redo|Cut Copy Paste+|Select All", describe_menu(1));
    area().remove_object(box, 1, 0);
    edit("a[b|]cd", TBF_SELECTABLE | TBF_POPUP_MENU);
    EXPECT_EQ("Undo Redo|Cut Copy+ Paste|Select All+", describe_menu(1));
    area().remove_object(box, 1, 0);
    edit("a[b|]cd", EDIT);
    EXPECT_EQ("no menu", describe_menu(1));
}

TEST_F(TextEditMouseTest, TheEditMenuActsOnItsBox) {
    TEST_OBJECT* other = add_other();
    edit("a[bc|]d", EDIT | TBF_POPUP_MENU);
    box->set_default_text("default");
    WM_FLOATING_MENU* menu = open_menu(1);
    ASSERT_NE(nullptr, menu);
    other->take_focus(0);  // as the menu takes it
    choose(*menu, "Cut");
    EXPECT_EQ("a|d", state());
    EXPECT_EQ("bc", get_clipboard());
    EXPECT_TRUE(box->has_focus());
    choose(*menu, "Paste");
    EXPECT_EQ("abc|d", state());
    choose(*menu, "Undo");
    EXPECT_EQ("ad|", state());
    choose(*menu, "Redo");
    EXPECT_EQ("abcd|", state());
    choose(*menu, "Select All");
    EXPECT_EQ("[abcd|]", state());
    set_clipboard_text("");
    choose(*menu, "Copy");
    EXPECT_EQ("abcd", get_clipboard());
    // A press that began elsewhere opens none, nor does one that ends elsewhere.
    area().remove_modal_object(menu, 1, 0);
    point(LEFT + 160, TOP + 100);
    set_button(MOUSE_BUTTON_RIGHT, true);
    point_at(1);
    set_button(MOUSE_BUTTON_RIGHT, false);
    EXPECT_EQ(nullptr, get_menu());
    tick();
    set_button(MOUSE_BUTTON_RIGHT, true);
    point(LEFT + 160, TOP + 100);
    set_button(MOUSE_BUTTON_RIGHT, false);
    EXPECT_EQ(nullptr, get_menu());
    // A right click where there is no cursor yet sets one.
    other->take_focus(0);
    tick();
    area().remove_object(box, 1, 0);
    add_box("abcd", TBF_SELECTABLE | TBF_POPUP_MENU);
    ASSERT_NE(nullptr, open_menu(2));
    EXPECT_EQ("ab|cd", state());
    // The menu goes with its box.
    area().remove_object(box, 1, 0);
    EXPECT_EQ(nullptr, get_menu());
    tick();
}

TEST_F(TextEditMouseTest, TheUserChoosesFromTheEditMenu) {
    edit("ab|cd", EDIT | TBF_POPUP_MENU);
    const auto run = [this](int px, int py, bool down) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), static_cast<std::int16_t>(py));
        MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, down ? 1 : 0);
        for (int i = 0; i < 3; ++i) {
            pages().monitor(0);
        }
    };
    WM_FLOATING_MENU* menu = open_menu(1);
    ASSERT_NE(nullptr, menu);
    run(menu->x, menu->y, false);
    const WM_BUTTON* item = menu->get_button(static_cast<std::int16_t>(menu->get_row_count() - 1));
    ASSERT_STREQ("Select All", item->get_title_text());
    const int px = item->x + 2, py = item->y + item->height / 2;
    run(px, py, false);
    run(px, py, true);
    run(px, py, false);
    EXPECT_EQ(nullptr, get_menu());
    EXPECT_TRUE(box->has_focus());
    EXPECT_EQ("[abcd|]", state());
    EXPECT_GT(count_highlights(), 0);
    type("x");
    EXPECT_EQ("x|", state());
    // Escape leaves it.
    menu = open_menu(0);
    ASSERT_NE(nullptr, menu);
    run(WIDTH - 1, HEIGHT - 1, false);
    KEYBOARD::process_key_event(KEY_ESCAPE);
    run(WIDTH - 1, HEIGHT - 1, false);
    EXPECT_EQ(nullptr, get_menu());
    EXPECT_TRUE(box->has_focus());
    EXPECT_EQ(1, count_carets());
}
