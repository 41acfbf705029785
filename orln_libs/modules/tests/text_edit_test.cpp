// What the keys do in a text box: cursor, selection, typing, deleting, history, clipboard.
#include <deque>
#include <random>
#include <vector>

#include "text_edit_fixture.h"

class TextEditTest : public TEXT_EDIT_FIXTURE {};

// --- Keys ---

struct KEY_CASE {
    const char* before;
    KEY_TYPE key;
    std::uint32_t modifiers;
    const char* after;
};

TEST_F(TextEditTest, KeysMoveTheCursorAndTheSelection) {
    const KEY_CASE cases[] = {
        {"ab| cd", KEY_LEFT, 0, "a|b cd"},
        {"|ab", KEY_LEFT, 0, "|ab"},
        {"a|b", KEY_RIGHT, 0, "ab|"},
        {"ab|", KEY_RIGHT, 0, "ab|"},
        {"a[bc|]d", KEY_LEFT, 0, "a|bcd"},
        {"a[|bc]d", KEY_RIGHT, 0, "abc|d"},
        {"a[bc|]d", KEY_RIGHT, CONTROL, "abc|d"},
        {"a[bc|]d", KEY_LEFT, CONTROL, "a|bcd"},
        {"one  two th|ree", KEY_LEFT, CONTROL, "one  two |three"},
        {"one  two |three", KEY_LEFT, CONTROL, "one  |two three"},
        {"one  |two three", KEY_LEFT, CONTROL, "|one  two three"},
        {"o|ne  two", KEY_RIGHT, CONTROL, "one  |two"},
        {"one  |two", KEY_RIGHT, CONTROL, "one  two|"},
        // Lines end words.
        {"one\n|two", KEY_LEFT, CONTROL, "|one\ntwo"},
        {"o|ne\ntwo", KEY_RIGHT, CONTROL, "one|\ntwo"},
        {"one|\ntwo", KEY_RIGHT, CONTROL, "one\n|two"},
        {"ab|c", KEY_LEFT, SHIFT, "a[|b]c"},
        {"a[|b]c", KEY_LEFT, SHIFT, "[|ab]c"},
        {"a[|b]c", KEY_RIGHT, SHIFT, "ab|c"},
        {"a[b|]c", KEY_RIGHT, SHIFT, "a[bc|]"},
        // The moving end passes the one that stays.
        {"one t[|wo] three", KEY_RIGHT, SHIFT | CONTROL, "one two[ |]three"},
        {"one t|wo", KEY_LEFT, SHIFT | CONTROL, "one [|t]wo"},
        {"one t[wo|] three", KEY_LEFT, SHIFT | CONTROL, "one [|t]wo three"},
        {"abc\nd|ef\nghi", KEY_UP, 0, "a|bc\ndef\nghi"},
        {"abc\nd|ef\nghi", KEY_DOWN, 0, "abc\ndef\ng|hi"},
        {"abc\nde\nghi|", KEY_UP, 0, "abc\nde|\nghi"},
        {"a\n\nb|", KEY_UP, 0, "a\n|\nb"},
        {"a|bc\ndef", KEY_UP, 0, "|abc\ndef"},
        {"abc\nd|ef", KEY_DOWN, 0, "abc\ndef|"},
        {"abc\nd|ef", KEY_UP, SHIFT, "a[|bc\nd]ef"},
        {"a|bc\ndef", KEY_DOWN, SHIFT, "a[bc\nd|]ef"},
        {"a[bc\nd|]ef", KEY_DOWN, 0, "abc\ndef|"},
        {"abc\nde|f", KEY_HOME, 0, "abc\n|def"},
        {"abc\nd|ef", KEY_END, 0, "abc\ndef|"},
        {"ab|c\ndef", KEY_END, 0, "abc|\ndef"},
        {"abc\nde|f", KEY_HOME, SHIFT, "abc\n[|de]f"},
        {"abc\nd|ef", KEY_END, SHIFT, "abc\nd[ef|]"},
        {"abc\nde|f", KEY_HOME, CONTROL, "|abc\ndef"},
        {"a|bc\ndef", KEY_END, CONTROL, "abc\ndef|"},
        {"abc\nde|f", KEY_HOME, CONTROL | SHIFT, "[|abc\nde]f"},
        {"a|bc\ndef", KEY_END, CONTROL | SHIFT, "a[bc\ndef|]"},
        {"a[bc|]\n", KEY_HOME, 0, "|abc\n"},
        {"a|bc", KEY_DELETE, 0, "a|c"},
        {"abc|", KEY_DELETE, 0, "abc|"},
        {"a|\nb", KEY_DELETE, 0, "a|b"},
        {"a[bc|]d", KEY_DELETE, 0, "a|d"},
        {"ab|c", KEY_BACKSPACE, 0, "a|c"},
        {"|abc", KEY_BACKSPACE, 0, "|abc"},
        {"a\n|b", KEY_BACKSPACE, 0, "a|b"},
        {"a[|bc]d", KEY_BACKSPACE, 0, "a|d"},
        {"a|", KEY_RETURN, 0, "a\n|"},
        {"a[b|]c", KEY_ENTER, 0, "a\n|c"},
        // Keys that are none of the box's.
        {"a|b", KEY_F1, 0, "a|b"},
        {"a|b", KEY_INSERT, 0, "a|b"},
    };
    for (const KEY_CASE& one : cases) {
        edit(one.before, LINES);
        ASSERT_EQ(one.before, state());
        press_key(one.key, one.modifiers);
        EXPECT_EQ(one.after, state())
            << one.before << " key " << one.key << " modifiers " << one.modifiers;
        EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code()) << "the key is used up";
        EXPECT_EQ(box->has_selection() ? 0 : 1, count_carets()) << one.before;
        EXPECT_EQ(box->has_selection(), count_highlights() > 0) << one.before;
        area().remove_object(box, 1, 0);
    }
}

TEST_F(TextEditTest, ReadOnlyAndUnselectableBoxesRefuseTheirPart) {
    edit("a[b|]c", TBF_SELECTABLE);
    press_key(KEY_DELETE);
    press_key(KEY_BACKSPACE);
    type("x");
    shortcut('x');
    set_clipboard_text("y");
    shortcut('v');
    EXPECT_EQ("a[b|]c", state());
    EXPECT_EQ(0, count_carets());
    press_key(KEY_RIGHT, SHIFT);
    EXPECT_EQ("a[bc|]", state());
    shortcut('c');
    EXPECT_EQ("bc", get_clipboard());
    area().remove_object(box, 1, 0);

    edit("ab|c", TBF_EDITABLE);
    press_key(KEY_LEFT, SHIFT);
    EXPECT_EQ("a|bc", state()) << "moves without selecting";
    shortcut('a');
    EXPECT_EQ("a|bc", state());
}

TEST_F(TextEditTest, TheCursorTreatsATagAsOneCharacter) {
    const std::string named = "a<big link:other#1>b", plain = "a<:style_on#bold>b";
    edit(named + "|", LINES | TBF_SELECTABLE);
    press_key(KEY_LEFT);
    EXPECT_EQ("a<big link:other#1>|b", state());
    press_key(KEY_LEFT);
    EXPECT_EQ("a|<big link:other#1>b", state());
    press_key(KEY_RIGHT);
    EXPECT_EQ("a<big link:other#1>|b", state());
    press_key(KEY_BACKSPACE);
    EXPECT_EQ("a|b", state());
    area().remove_object(box, 1, 0);

    // One that shows nothing stays when the characters beside it go.
    edit(plain + "|", LINES);
    press_key(KEY_LEFT);
    press_key(KEY_BACKSPACE);
    EXPECT_EQ("<:style_on#bold>|b", state());
    press_key(KEY_DELETE);
    EXPECT_EQ("<:style_on#bold>", box->text);
    area().remove_object(box, 1, 0);

    // Behind a word, typing goes on in the word's look.
    edit("a|<:style_on#bold>b", LINES);
    type("xy");
    EXPECT_EQ("axy|<:style_on#bold>b", state());
    press_key(KEY_RIGHT);
    EXPECT_EQ("axy<:style_on#bold>b|", state());
}

TEST_F(TextEditTest, AnOpenBracketBeforeAControlCharacterIsNoTag) {
    edit("|<\x01x>", LINES);
    press_key(KEY_RIGHT);
    EXPECT_EQ("<\x01|x>", state());
    press_key(KEY_DELETE);
    EXPECT_EQ("<\x01>", box->text);
}

TEST_F(TextEditTest, CursorStepsPassAWrappedLineEnd) {
    // "aaaa bbbb " fills the first line.
    edit("aaaa bbbb |cccc", LINES, 100, nullptr, get_width("aaaa bbbb ") + 1);
    ASSERT_EQ(2, box->grid->row_count);
    EXPECT_EQ(1, box->cursor_row) << "at a wrap typing goes on in the next line";
    press_key(KEY_LEFT);
    EXPECT_EQ("aaaa bbbb| cccc", state());
    EXPECT_EQ(0, box->cursor_row);
    press_key(KEY_END);
    EXPECT_EQ("aaaa bbbb |cccc", state());
    EXPECT_EQ(0, box->cursor_row);
    press_key(KEY_RIGHT);
    EXPECT_EQ("aaaa bbbb c|ccc", state());
    press_key(KEY_HOME);
    press_key(KEY_BACKSPACE);
    EXPECT_EQ("aaaa bbbb|cccc", state());
    press_key(KEY_END);
    press_key(KEY_DELETE);
    EXPECT_EQ("aaaa bbbbcccc|", state());
}

// --- Typing ---

struct TYPING_CASE {
    const char* before;
    std::uint32_t flags;
    const char* typed;
    const char* after;
};

TEST_F(TextEditTest, TypingObeysTheFlags) {
    const TYPING_CASE cases[] = {
        {"a|b", 0, "xy", "axy|b"},
        {"a[b|]c", 0, "x", "ax|c"},
        {"a|", 0, "<>", "a|"},
        {"a|", TBF_NO_TAGS, "<>", "a<>|"},
        {"|a", 0, " ", "|a"},
        {"[a|]b", 0, " ", "[a|]b"},
        {"|a", TBF_LEADING_SPACE, " ", " |a"},
        {"a|", 0, " ", "a |"},
        {"a|", TBF_NO_TRAILING_SPACE, " ", "a|"},
        {"a|b", TBF_NO_TRAILING_SPACE, " ", "a |b"},
        {"a[b|]", TBF_NO_TRAILING_SPACE, " ", "a[b|]"},
        {"a|b", 0, "\t\x01\x7F", "a|b"},
        {"a|b", 0, "\xE9", "a\xE9|b"},
        {"a|b", 0, "\n", "a|b"},
        {"a|b", TBF_MULTI_LINE, "\n", "a\n|b"},
    };
    for (const TYPING_CASE& one : cases) {
        edit(one.before, EDIT | one.flags);
        type(one.typed);
        EXPECT_EQ(one.after, state()) << one.before << " typed " << one.typed;
        EXPECT_EQ(0, KEYBOARD().peek_char());
        area().remove_object(box, 1, 0);
    }
}

TEST_F(TextEditTest, LimitsAndValidCharacters) {
    edit("abc|", EDIT, 4);
    type("def");
    EXPECT_EQ("abcd|", state());
    press_key(KEY_LEFT, SHIFT);
    type("x");
    EXPECT_EQ("abcx|", state()) << "a selection makes room";
    area().remove_object(box, 1, 0);

    edit("|", EDIT, 10, "0123");
    type("1a23b");
    EXPECT_EQ("123|", state());
    area().remove_object(box, 1, 0);

    edit("|", EDIT, 10, "");
    type("1");
    EXPECT_EQ("|", state());
    set_clipboard_text("ab");
    shortcut('v');
    EXPECT_EQ(
        "?"
        "?|",
        state());
}

TEST_F(TextEditTest, SeveralCharactersOfOneTickAllArrive) {
    edit("|");
    for (const char c : {'a', 'b', 'c'}) {
        KEYBOARD::process_char_event(static_cast<unsigned char>(c), 0);
    }
    tick();
    EXPECT_EQ("abc|", state());
}

TEST_F(TextEditTest, ReturnRunsTheCallbackAndForgetsTheHistory) {
    edit("|", LINES | TBF_RETURN_FIRES);
    type("ab");
    EXPECT_EQ(0, calls);
    answer = WM_MESG_CHANGE_PAGE;
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, press_key(KEY_RETURN));
    EXPECT_EQ(1, calls);
    EXPECT_EQ("return", reason);
    EXPECT_FALSE(box->return_pressed);
    EXPECT_EQ("ab|", state());
    EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code());
    shortcut('z');
    EXPECT_EQ("ab|", state());
}

TEST_F(TextEditTest, ChangesAreTold) {
    edit("ab|", EDIT | TBF_NOTIFY_CHANGE);
    answer = WM_MESG_HANDLED;
    EXPECT_EQ(WM_MESG_HANDLED, type("c"));
    EXPECT_EQ("change", reason);
    press_key(KEY_BACKSPACE);
    shortcut('z');
    shortcut('z', SHIFT);
    shortcut('a');
    shortcut('x');
    shortcut('v');
    EXPECT_EQ(6, calls);
    press_key(KEY_LEFT);
    type("<");
    EXPECT_EQ(6, calls) << "nothing has changed";
    EXPECT_EQ("a|b", state());
}

TEST_F(TextEditTest, SubstitutionsReplaceWhatHasJustBeenTyped) {
    add_substitution("", "never");
    add_substitution("b)", "first");
    add_substitution("(b)", "second");
    add_substitution("->", "=>");
    add_substitution("fi", "x");
    add_substitution("grow", "growing a lot");
    add_substitution("loop", "Loop");
    add_substitution("Loop", "loop");
    edit("|", EDIT | TBF_SUBSTITUTIONS | TBF_NO_TAGS, 20);
    type("(b)");
    EXPECT_EQ("(first|", state()) << "the first record wins";
    type("->");
    EXPECT_EQ("(first=>|", state());
    shortcut('z');
    EXPECT_EQ("(first-|", state());
    area().remove_object(box, 1, 0);

    edit("12345678 |9", EDIT | TBF_SUBSTITUTIONS, 20);
    type("grow");
    EXPECT_EQ("12345678 grow|9", state()) << "no room";
    type("loop");
    EXPECT_EQ(18u, box->text.size()) << "records that undo each other come to an end";
    area().remove_object(box, 1, 0);

    // Replaced and removed records; a box that doesn't ask for them.
    add_substitution("->", "#");
    TEXT_BOX_SUBSTITUTION gone;
    std::snprintf(gone.from, sizeof gone.from, "%s", "fi");
    TEXT_BOX::delete_substitution(gone);
    TEXT_BOX::delete_substitution(gone);
    EXPECT_EQ(7, TEXT_BOX::substitution_array.get_count());
    edit("-|", EDIT | TBF_SUBSTITUTIONS | TBF_NO_TAGS);
    type(">fi");
    EXPECT_EQ("#fi|", state());
    area().remove_object(box, 1, 0);
    edit("-|", EDIT | TBF_NO_TAGS);
    type(">");
    EXPECT_EQ("->|", state());
}

// --- History ---

TEST_F(TextEditTest, UndoAndRedo) {
    edit("|");
    shortcut('z');
    shortcut('z', SHIFT);
    EXPECT_EQ("|", state());
    type("abc");
    shortcut('z');
    EXPECT_EQ("ab|", state());
    shortcut('z');
    shortcut('z');
    shortcut('z');
    EXPECT_EQ("|", state()) << "at position 0 nothing more";
    EXPECT_EQ(0, box->history_position);
    shortcut('z', SHIFT);
    EXPECT_EQ("a|", state());
    shortcut('z', SHIFT);
    shortcut('z', SHIFT);
    shortcut('z', SHIFT);
    EXPECT_EQ("abc|", state());
    EXPECT_EQ(-1, box->history_position);
    shortcut('z');
    shortcut('z');
    type("x");
    EXPECT_EQ("ax|", state());
    shortcut('z', SHIFT);
    EXPECT_EQ("ax|", state()) << "typing ends what could be done again";
    shortcut('z');
    EXPECT_EQ("a|", state());
    box->set_text("other");
    type("!");
    shortcut('z');
    EXPECT_EQ("other|", state()) << "a text that the program has set is a state too";
}

TEST_F(TextEditTest, TheHistoryIsBounded) {
    edit("|", EDIT, 5000);
    for (int i = 0; i < 1200; ++i) {
        type("a");
    }
    EXPECT_EQ(1000, box->history.get_count());
    for (int i = 0; i < 1200; ++i) {
        shortcut('z');
    }
    EXPECT_EQ(201u, box->text.size());
    area().remove_object(box, 1, 0);

    // Of a text of a megabyte there are fewer.
    constexpr int LENGTH = 1 << 20;
    edit("|" + std::string(LENGTH, 'a'), LINES, 2 * LENGTH);
    for (int i = 0; i < 20; ++i) {
        type("b");
    }
    EXPECT_EQ(15, box->history.get_count());
    shortcut('z');
    EXPECT_EQ(LENGTH + 19u, box->text.size());
}

// --- Clipboard ---

TEST_F(TextEditTest, CutCopyAndPaste) {
    edit("a[bc|]d");
    shortcut('c');
    EXPECT_EQ("bc", get_clipboard());
    EXPECT_EQ("a[bc|]d", state());
    shortcut('x');
    EXPECT_EQ("a|d", state());
    shortcut('v');
    EXPECT_EQ("abc|d", state());
    press_key(KEY_INSERT, SHIFT);
    EXPECT_EQ("abcbc|d", state());
    set_clipboard_text("keep");
    shortcut('x');
    shortcut('c');
    EXPECT_EQ("keep", get_clipboard()) << "without a selection nothing is cut or copied";
    shortcut('z');
    shortcut('z');
    EXPECT_EQ("ad|", state());
    shortcut('z');
    EXPECT_EQ("abcd|", state());
    shortcut('a');
    EXPECT_EQ("[abcd|]", state());
    shortcut('v');
    EXPECT_EQ("keep|", state());
    set_clipboard_text("");
    shortcut('v');
    EXPECT_EQ("keep|", state());
    KEYBOARD::set_modifiers(CONTROL);
    type("bq");
    EXPECT_EQ("keep|", state()) << "shortcuts that don't exist are no text";
}

TEST_F(TextEditTest, PastesAreCutToTheRoom) {
    edit("ab[cd|]", LINES | TBF_SHOW_REMAINING, 6, nullptr, 150);
    set_clipboard_text("12345678");
    shortcut('v');
    EXPECT_EQ("ab1234|", state());
    EXPECT_STREQ("0 characters remaining", box->info->get_text());
    shortcut('v');
    EXPECT_EQ("ab1234|", state());
    EXPECT_STREQ("Pasted text is too big", box->info->get_text());
    tick(1000);
    EXPECT_STREQ("Pasted text is too big", box->info->get_text()) << "for a second";
    tick(1);
    EXPECT_STREQ("0 characters remaining", box->info->get_text());
    EXPECT_EQ("", std::string(box->info_message));

    // Nothing valid fits into what is left: the cursor goes to the selection's end.
    set_clipboard_text("a<:colour#1>");
    place_cursor("ab1[|2]34");
    box->flags |= TBF_LEADING_SPACE;
    set_clipboard_text("<:colour#1>");
    shortcut('v');
    EXPECT_EQ("ab1[2|]34", state());
    EXPECT_STREQ("Pasted text is too big", box->info->get_text());
    EXPECT_EQ(1, box->history.get_count());
}

TEST_F(TextEditTest, PasswordsStayInTheBox) {
    edit("[ab|]", EDIT | TBF_PASSWORD);
    set_clipboard_text("old");
    shortcut('c');
    shortcut('x');
    box->handle_copy_request();
    box->handle_cut_request();
    EXPECT_EQ("old", get_clipboard());
    EXPECT_EQ("[ab|]", state());
    type("xyz");
    EXPECT_EQ("***", get_word(0, 0)->text);
    EXPECT_TRUE(box->history.is_empty());
    shortcut('z');
    EXPECT_EQ("xyz|", state());
    shortcut('v');
    EXPECT_EQ("xyzold|", state());
}

TEST_F(TextEditTest, InvalidCharactersAreRemoved) {
    const struct {
        std::uint32_t flags;
        const char* before;
        const char* after;
    } cases[] = {
        {0, "a\r\nb\tc\x01", "abc"},
        {TBF_MULTI_LINE, "a\rb\nc\r\nd\t", "a\nb\nc\nd"},
        {0, "  a b  ", "a b  "},
        {TBF_LEADING_SPACE, " a", " a"},
        {TBF_NO_TRAILING_SPACE, " a  ", "a"},
        {TBF_NO_TRAILING_SPACE, "   ", ""},
        {0, "a<:colour#1>b<c", "a<:colour#1>b"},
        {0, "<:FIX_indent#0>a<b:x#y><:unfix_indent#0>c", "a<b:x#y>c"},
        {0, "a>b", "a>b"},
        {TBF_NO_TAGS, "<:fix_indent#0>a<c", "<:fix_indent#0>a<c"},
        {0, "", ""},
    };
    for (const auto& one : cases) {
        add_box("", EDIT | one.flags);
        std::string text = one.before;
        box->remove_invalid_chars(text.data());
        EXPECT_STREQ(one.after, text.c_str()) << one.before;
        area().remove_object(box, 1, 0);
    }
    add_box("", EDIT);
    box->remove_invalid_chars(nullptr);
    edit("[ab <:colour#1>c|]", EDIT);
    shortcut('c');
    EXPECT_EQ("ab <:colour#1>c", get_clipboard()) << "tags are copied too";
}

// --- Random edits against a plain model ---

class EDIT_MODEL {
public:
    std::string text;
    std::int32_t cursor = 0, anchor = 0;  // equal without a selection
    static constexpr std::size_t LIMIT = 70;

    std::size_t start() const { return static_cast<std::size_t>(std::min(cursor, anchor)); }
    std::size_t end() const { return static_cast<std::size_t>(std::max(cursor, anchor)); }
    bool has_selection() const { return cursor != anchor; }

    void replace(std::size_t from, std::size_t to, const std::string& by) {
        undone.clear();
        done.push_back(text);
        text.replace(from, to - from, by);
        set_cursor(from + by.size(), false);
    }
    void type(const std::string& typed) {
        const std::size_t room = LIMIT - (text.size() - (end() - start()));
        if (room > 0) {
            replace(start(), end(), typed.substr(0, room));
        }
    }
    void remove(bool forward) {
        if (has_selection()) {
            replace(start(), end(), "");
        } else if (forward ? start() < text.size() : start() > 0) {
            const std::size_t from = start() - (forward ? 0 : 1);
            replace(from, from + 1, "");
        }
    }
    void step(bool right, bool extend) {
        if (has_selection() && !extend) {
            set_cursor(right ? end() : start(), false);
            return;
        }
        const auto length = static_cast<std::int32_t>(text.size());
        const std::int32_t to = std::clamp(cursor + (right ? 1 : -1), 0, length);
        set_cursor(static_cast<std::size_t>(to), extend);
    }
    void set_cursor(std::size_t index, bool extend) {
        cursor = static_cast<std::int32_t>(index);
        anchor = extend ? anchor : cursor;
    }
    void swap_state(std::vector<std::string>& from, std::vector<std::string>& to) {
        if (!from.empty()) {
            to.push_back(text);
            text = from.back();
            from.pop_back();
            set_cursor(text.size(), false);
        }
    }
    void undo() { swap_state(done, undone); }
    void redo() { swap_state(undone, done); }

private:
    std::vector<std::string> done, undone;
};

TEST_F(TextEditTest, RandomEditsFollowAPlainModel) {
    constexpr std::uint32_t FLAGS = LINES | TBF_NO_TAGS | TBF_LEADING_SPACE;
    edit("|", FLAGS, EDIT_MODEL::LIMIT, nullptr, get_width("aaaaaaaaaaaaaa"), 60);
    EDIT_MODEL model;
    std::mt19937 random(20'241);
    std::string clipboard;
    for (int i = 0; i < 20'000; ++i) {
        const auto choice = random() % 100;
        const std::uint32_t shift = random() % 3 == 0 ? SHIFT : 0;
        if (choice < 40) {
            const std::string typed(1, "abcde  \n"[random() % 8]);
            type(typed);
            model.type(typed);
        } else if (choice < 52) {
            const bool forward = random() % 2 == 0;
            press_key(forward ? KEY_DELETE : KEY_BACKSPACE);
            model.remove(forward);
        } else if (choice < 70) {
            const bool right = random() % 2 == 0;
            press_key(right ? KEY_RIGHT : KEY_LEFT, shift);
            model.step(right, shift != 0);
        } else if (choice < 74) {
            const bool end = random() % 2 == 0;
            press_key(end ? KEY_END : KEY_HOME, CONTROL | shift);
            model.set_cursor(end ? model.text.size() : 0, shift != 0);
        } else if (choice < 84) {
            // Where lines and words end is the layout's: the model follows.
            const KEY_TYPE keys[] = {KEY_UP, KEY_DOWN, KEY_HOME, KEY_END, KEY_LEFT, KEY_RIGHT};
            const auto which = random() % 6;
            const bool by_word = which >= 4;
            const std::int32_t before = model.cursor;
            if (by_word && shift == 0 && model.has_selection()) {
                continue;
            }
            press_key(keys[which], shift | (by_word ? CONTROL : 0));
            const std::int32_t after = get_cursor();
            const bool backward = which == 0 || which == 2 || which == 4;
            ASSERT_TRUE(backward ? after <= before : after >= before) << i;
            model.set_cursor(static_cast<std::size_t>(after), shift != 0);
        } else if (choice < 88) {
            shortcut('a');
            model.anchor = 0;
            model.cursor = static_cast<std::int32_t>(model.text.size());
        } else if (choice < 91) {
            shortcut(shift ? 'x' : 'c');
            if (model.has_selection()) {
                clipboard = model.text.substr(model.start(), model.end() - model.start());
                if (shift) {
                    model.remove(true);
                }
            }
        } else if (choice < 94) {
            shortcut('v');
            if (!clipboard.empty()) {
                model.type(clipboard);
            }
        } else {
            shortcut('z', shift);
            shift ? model.redo() : model.undo();
        }
        ASSERT_EQ(model.text, box->text) << i << " choice " << choice;
        ASSERT_EQ(model.cursor, get_cursor()) << i << " choice " << choice << " " << state();
        ASSERT_EQ(model.has_selection(), box->has_selection()) << i << " choice " << choice;
        if (model.has_selection()) {
            ASSERT_EQ(static_cast<std::int32_t>(model.start()),
                      index_of(box->start_column, box->start_row, box->start_offset));
            ASSERT_EQ(static_cast<std::int32_t>(model.end()),
                      index_of(box->end_column, box->end_row, box->end_offset));
        }
        ASSERT_EQ(box->has_selection() ? 0 : 1, count_carets()) << i << " choice " << choice;
    }
}
