// The words of a link in a text box show and have the focus as one.
#include "modules/gui/text_box_link.h"

#include "modules/winman/object_walk.h"
#include "text_box_fixture.h"

namespace {

constexpr COLOUR HOT = COLOUR_GREEN, PRESSED = COLOUR_BLUE, FRAME = COLOUR_RED;

class TextBoxLinks : public TextBoxFixture {
protected:
    void SetUp() override {
        TextBoxFixture::SetUp();
        add_style("LINK").mouse_over_colour = HOT;
        style("LINK").highlight_colour = PRESSED;
        TEXT_BOX::create_tag_object_callback = make_link;
        clicked.clear();
    }

    static WM_SCREEN_OBJECT* make_link(TEXT_BOX&, const char*, TEXT_BOX_TAG& tag, const char* word,
                                       COLOUR&, signed char, std::int16_t, std::int16_t,
                                       unsigned char, signed char in_window) {
        return new TEXT_BOX_LINK(style("LINK"), word, nullptr, note_click, nullptr, &tag,
                                 in_window);
    }
    static WM_MESG note_click(WM_SCREEN_OBJECT*, void*, void* tag) {
        clicked += static_cast<const TEXT_BOX_TAG*>(tag)->value;
        return WM_MESG_NONE;
    }

    // A turn of the main loop, and one more for what follows from it.
    static void tick() {
        for (int i = 0; i < 2; ++i) {
            area().update(0);
            area().monitor();
            pages().check_for_draw();
        }
    }
    static void point(int px, int py) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), static_cast<std::int16_t>(py));
        tick();
    }
    static void set_button(bool down) {
        MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, down ? 1 : 0);
        tick();
    }
    // The first pixels of a row of the window: "g" hot, "b" pressed, "r" a frame.
    static std::string looks(int y, int count) {
        std::string result;
        for (int x = 0; x < count; ++x) {
            const COLOUR colour = pixel(x, y);
            result += colour == HOT ? 'g' : colour == PRESSED ? 'b' : colour == FRAME ? 'r' : '.';
        }
        return result;
    }
    static TEXT_BOX_LINK* link(const TEXT_BOX& box, int column, int row) {
        OBJECT_WALK walk(word(box, column, row).objects, OBJECT_WALK::FORWARD);
        return dynamic_cast<TEXT_BOX_LINK*>(walk.next());
    }

    static inline std::string clicked;
};

TEST_F(TextBoxLinks, AllWordsOfALinkLookAsTheOneThatIsUsed) {
    make("a<two words:x#1>b<other:x#2>", TBF_MULTI_LINE, 40);
    draw_all();
    EXPECT_EQ("................", looks(1, 16));
    for (const int over : {1, 4, 9}) {  // a word, the space, a word
        point(over, 5);
        EXPECT_EQ(".ggggggggg......", looks(1, 16)) << over;
    }
    set_button(true);
    EXPECT_EQ(".bbbbbbbbb......", looks(1, 16));
    set_button(false);
    EXPECT_EQ("1", clicked) << "once";
    // The click has given the focus to the link, which looks the same.
    point(12, 5);
    EXPECT_EQ(".ggggggggg.ggggg", looks(1, 16));
    point(30, 5);
    EXPECT_EQ(".ggggggggg......", looks(1, 16));
}

TEST_F(TextBoxLinks, ALinkIsOneStopOfTheFocus) {
    // The second word begins the name, too.
    TEXT_BOX& box = make("<a a:x#1> <b:x#2>", TBF_MULTI_LINE, 40);
    draw_all();
    ASSERT_TRUE(pages().give_focus_to_next_object());
    EXPECT_TRUE(link(box, 0, 0)->has_focus());
    tick();
    EXPECT_EQ("ggg...", looks(1, 6));
    KEYBOARD::process_char_event(' ', 0);
    tick();
    EXPECT_EQ("1", clicked);
    ASSERT_TRUE(pages().give_focus_to_next_object());
    EXPECT_TRUE(link(box, 4, 0)->has_focus());
    tick();
    EXPECT_EQ("....g.", looks(1, 6));
    // A press on any word brings the focus to the link.
    point(2, 5);
    set_button(true);
    EXPECT_TRUE(link(box, 0, 0)->has_focus());
    set_button(false);
}

TEST_F(TextBoxLinks, AStyleWithoutALookForTheFocusHasOneFrameForEachLine) {
    style("LINK").mouse_over_colour = COLOUR_INVISIBLE;
    style("LINK").highlight_colour = FRAME;
    make("<ab cd ef:x#1>", TBF_MULTI_LINE, 6);
    draw_all();
    ASSERT_TRUE(pages().give_focus_to_next_object());
    tick();
    EXPECT_EQ("rrrrr.", looks(0, 6));
    EXPECT_EQ("r...r.", looks(5, 6)) << "nothing between the words";
    EXPECT_EQ("rrrrr.", looks(LINE_HEIGHT - 1, 6));
    EXPECT_EQ("rr....", looks(LINE_HEIGHT, 6));
}

TEST_F(TextBoxLinks, ALinkGoesOnInTheNextLine) {
    // The space at the wrap goes, and so does the one that a wrapped line would begin with.
    TEXT_BOX& box = make("aaaa< bb cc dd:x#1>", TBF_MULTI_LINE, 4);
    ASSERT_EQ(4, box.grid->row_count);
    EXPECT_EQ(nullptr, link(box, 0, 1)) << "the space";
    draw_all();
    ASSERT_TRUE(pages().give_focus_to_next_object());
    EXPECT_TRUE(link(box, 1, 1)->has_focus()) << "the first word that is left";
    tick();
    EXPECT_EQ("....", looks(1, 4));
    for (int row = 1; row < 4; ++row) {
        EXPECT_EQ("gg..", looks(row * LINE_HEIGHT + 1, 4)) << row;
    }
    // A new layout while the link is in use.
    box.append_text(" <ee:x#2>");
    tick();
    EXPECT_EQ("....", looks(LINE_HEIGHT + 1, 4));
}

TEST_F(TextBoxLinks, TheSpacesOfALinkAreStretchedWithTheLine) {
    make("<aa bb cc:x#1> ddddddd", TBF_MULTI_LINE | TBF_JUSTIFY, 12);
    draw_all();
    point(1, 5);
    EXPECT_EQ("gggggggggggg", looks(1, 12));
}

}  // namespace
