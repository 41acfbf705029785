// A text box on a page, and a user who types into it.
//
// Texts are written with marks: "|" is the cursor, "[" and "]" are the ends of a selection, in
// which the cursor stands at one of them: "a[bc|]d".
#ifndef MODULES_TESTS_TEXT_EDIT_FIXTURE_H
#define MODULES_TESTS_TEXT_EDIT_FIXTURE_H

#include <cstdint>
#include <cstdio>
#include <string>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/window_platform.h"
#include "winman_fixture.h"

class TEXT_EDIT_FIXTURE : public WINMAN_FIXTURE {
protected:
    static constexpr std::uint32_t EDIT = TBF_EDITABLE | TBF_SELECTABLE;
    static constexpr std::uint32_t LINES = EDIT | TBF_MULTI_LINE;
    static constexpr std::uint32_t SHIFT = KEYBOARD_MODIFIER_SHIFT;
    static constexpr std::uint32_t CONTROL = KEYBOARD_MODIFIER_CONTROL;
    static constexpr std::int16_t LEFT = 10, TOP = 10;

    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        WM_SCREEN_OBJECT::now_ms = 1000;
        set_clipboard_text("");
        DISK_MANAGER folder;
        ASSERT_TRUE(folder.move_down("/usr/share/fonts/opentype/inter", false, true));
        FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
        fonts.font = fonts.load_font("Inter-Bold.otf", 0, &folder);
        ASSERT_EQ(0, fonts.font) << "the test needs the Inter fonts";
    }
    void TearDown() override {
        TEXT_BOX::substitution_array.clear();
        KEYBOARD().clear_buffer();
        FONT_MANAGER::get_instance().free_font(-1);
        WINMAN_FIXTURE::TearDown();
    }

    static int get_width(const std::string& text) {
        const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
        return FONT_MANAGER::get_instance().get_string_width(fonts.font, fonts.x_size, fonts.y_size,
                                                             text.c_str());
    }

    // A box without the focus.
    TEXT_BOX& add_box(const std::string& text, std::uint32_t flags, int max_length = 100,
                      const char* valid_chars = nullptr, int box_width = 150, int box_height = 60) {
        box = new TEXT_BOX(LEFT, TOP, static_cast<std::int16_t>(LEFT + box_width - 1),
                           static_cast<std::int16_t>(TOP + box_height - 1), text.c_str(),
                           max_length, valid_chars, flags, "", count_call, this, nullptr, 0);
        area().add_object(box, 0);
        // Left-aligned lines without space between the words.
        box->background->script_flags |= SCRIPT_LEFT_JUSTIFY_TEXT;
        box->grid->grid_style.x_spacing = 0;
        box->set_text(text.c_str(), 1);
        return *box;
    }
    // One with the focus and a marked text.
    TEXT_BOX& edit(const std::string& marked, std::uint32_t flags = EDIT, int max_length = 100,
                   const char* valid_chars = nullptr, int box_width = 150, int box_height = 60) {
        std::string text = marked;
        for (const char mark : {'[', ']', '|'}) {
            std::erase(text, mark);
        }
        add_box(text, flags, max_length, valid_chars, box_width, box_height);
        box->take_focus(0);
        box->clear_selection();
        place_cursor(marked);
        if (box->has_selection()) {
            box->show_selection();
        } else if (flags & TBF_EDITABLE) {
            box->show_cursor();
        }
        tick();
        return *box;
    }
    void place_cursor(const std::string& marked) {
        std::int32_t cursor = -1, start = -1, end = -1, index = 0;
        for (const char c : marked) {
            (c == '|' ? cursor : c == '[' ? start : c == ']' ? end : index) = index;
            index += c == '|' || c == '[' || c == ']' ? 0 : 1;
        }
        move_to(start < 0 || cursor == start ? (start < 0 ? cursor : end) : start);
        if (start >= 0) {
            std::int16_t column, row, x;
            std::int32_t offset;
            ASSERT_TRUE(box->get_char_from_text_index(cursor, column, row, x, offset));
            box->update_selection(column, row, x, offset, 0);
            box->move_cursor(column, row, x, offset);
        }
    }
    void move_to(std::int32_t index) {
        std::int16_t column, row, x;
        std::int32_t offset;
        ASSERT_TRUE(box->get_char_from_text_index(index, column, row, x, offset)) << index;
        box->move_cursor(column, row, x, offset);
    }

    // The text with its marks.
    std::string state() {
        const std::int32_t cursor = get_cursor();
        std::int32_t start = -1, end = -1;
        if (box->has_selection()) {
            start = index_of(box->start_column, box->start_row, box->start_offset);
            end = index_of(box->end_column, box->end_row, box->end_offset);
        }
        std::string marked;
        for (std::int32_t i = 0; i <= static_cast<std::int32_t>(box->text.size()); ++i) {
            marked += i == start ? "[" : "";
            marked += i == cursor ? "|" : "";
            marked += i == end ? "]" : "";
            marked += box->text.substr(static_cast<std::size_t>(i), 1);
        }
        return marked;
    }
    std::int32_t index_of(std::int16_t column, std::int16_t row, std::int32_t offset) {
        std::int32_t index = -1;
        return box->get_text_index_from_char(column, row, 0, offset, index) ? index : -1;
    }
    // Of a selection the end where the cursor stands.
    std::int32_t get_cursor() {
        if (!box->has_selection()) {
            return index_of(box->cursor_column, box->cursor_row, box->cursor_offset);
        }
        return box->cursor_at_start ? index_of(box->start_column, box->start_row, box->start_offset)
                                    : index_of(box->end_column, box->end_row, box->end_offset);
    }
    TEXT_BOX_WORD* get_word(std::int16_t column, std::int16_t row) {
        return static_cast<TEXT_BOX_WORD*>(box->grid->get_object(column, row));
    }
    // How many words show a caret, and a highlight.
    int count_carets() {
        return count_words([](const TEXT_BOX_WORD& word) { return word.cursor_x >= 0; });
    }
    int count_highlights() {
        return count_words([](const TEXT_BOX_WORD& word) { return word.selection_end_x >= 0; });
    }
    template <class TEST>
    int count_words(TEST test) {
        int count = 0;
        for (std::int16_t row = 0; row < box->grid->row_count; ++row) {
            for (std::int16_t column = 0; get_word(column, row) != nullptr; ++column) {
                count += test(*get_word(column, row)) ? 1 : 0;
            }
        }
        return count;
    }

    static void add_substitution(const char* from, const char* to) {
        TEXT_BOX_SUBSTITUTION substitution;
        std::snprintf(substitution.from, sizeof substitution.from, "%s", from);
        std::snprintf(substitution.to, sizeof substitution.to, "%s", to);
        TEXT_BOX::add_substitution(substitution);
    }

    // --- The user ---

    WM_MESG tick(std::uint32_t ms = 15) {
        WM_SCREEN_OBJECT::now_ms += ms;
        manager().mouse_icon = 0;
        return area().monitor();
    }
    WM_MESG press_key(KEY_TYPE key, std::uint32_t modifiers = 0) {
        KEYBOARD::set_modifiers(modifiers);
        KEYBOARD::process_key_event(key);
        if (key == KEY_RETURN || key == KEY_ENTER) {
            KEYBOARD::process_char_event('\n', 0);
        }
        const WM_MESG result = tick();
        KEYBOARD::set_modifiers(0);
        return result;
    }
    // As the window layer delivers it: the letter in lower case.
    WM_MESG shortcut(char letter, std::uint32_t more = 0) {
        KEYBOARD::set_modifiers(CONTROL | more);
        KEYBOARD::process_char_event(static_cast<unsigned char>(letter), 0);
        const WM_MESG result = tick();
        KEYBOARD::set_modifiers(0);
        return result;
    }
    WM_MESG type(const std::string& text) {
        WM_MESG result = WM_MESG_NONE;
        for (const char c : text) {
            if (c == '\n') {
                result = press_key(KEY_RETURN);
                continue;
            }
            KEYBOARD::process_char_event(static_cast<unsigned char>(c), 0);
            result = tick();
        }
        return result;
    }
    WM_MESG point(int px, int py) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), static_cast<std::int16_t>(py));
        return tick();
    }
    WM_MESG set_button(std::int16_t button, bool down) {
        MOUSE::process_mouse_button(button, down ? 1 : 0);
        return tick();
    }
    WM_MESG click(int px, int py, std::int16_t button = MOUSE_BUTTON_LEFT) {
        point(px, py);
        WM_MESG result = set_button(button, true);
        result = result != WM_MESG_NONE ? result : set_button(button, false);
        tick();
        return result;
    }
    static std::string get_clipboard() {
        char buffer[5000];
        get_clipboard_text(buffer, sizeof buffer);
        return buffer;
    }

    static WM_MESG count_call(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
        auto& test = *static_cast<TEXT_EDIT_FIXTURE*>(data1);
        auto& called = *static_cast<TEXT_BOX*>(object);
        ++test.calls;
        test.reason = called.return_pressed ? "return" : called.clicked ? "click" : "change";
        return test.answer;
    }

    TEXT_BOX* box = nullptr;  // the area's
    int calls = 0;
    std::string reason;
    WM_MESG answer = WM_MESG_NONE;  // of the callback
};

#endif  // MODULES_TESTS_TEXT_EDIT_FIXTURE_H
