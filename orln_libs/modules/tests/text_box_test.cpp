// How text boxes lay text out.
#include "modules/gui/text_box.h"

#include "kvcore/text_field.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/wm_button.h"
#include "text_box_fixture.h"

namespace {

using LINES = std::vector<std::string>;

class TextBoxLayout : public TextBoxFixture {};
class TextBoxTags : public TextBoxFixture {};
class TextBoxText : public TextBoxFixture {};
class TextBoxSize : public TextBoxFixture {};

// --- Words and lines ---

TEST_F(TextBoxLayout, WordsKnowWhichCharactersTheyShow) {
    const TEXT_BOX& box = make("ab  c\nde");
    EXPECT_EQ((LINES{"ab|  |c", "de"}), lines(box));
    EXPECT_EQ("0-1", span(box, 0, 0));
    EXPECT_EQ("2-3", span(box, 1, 0));
    EXPECT_EQ("4-4", span(box, 2, 0));
    EXPECT_EQ("5-5", span(box, 3, 0));  // the line feed
    EXPECT_EQ("6-7", span(box, 0, 1));
    EXPECT_EQ("8-8", span(box, 1, 1));  // the end
    EXPECT_EQ(7, box.plain_length);
}

TEST_F(TextBoxLayout, LinesBreakBetweenWordsAndDropTheSpaceThere) {
    const TEXT_BOX& box = make("aaaa bbbb cccc", TBF_MULTI_LINE, 10);
    EXPECT_EQ((LINES{"aaaa| |bbbb", "cccc"}), lines(box));
    EXPECT_EQ(9, row_width(box, 0));
    EXPECT_EQ("9-9", span(box, word_count(box, 0) - 1, 0));
    // The word fits exactly, so that the space opens the next line.
    EXPECT_EQ((LINES{"aaaa| |bbbb", "cccc"}), lines(make("aaaa bbbb cccc", TBF_MULTI_LINE, 9)));
    // Spaces at the start of a paragraph stay.
    EXPECT_EQ((LINES{"  |a", " |b"}), lines(make("  a\n b")));
}

TEST_F(TextBoxLayout, AnEditableBoxKeepsSpacesAtLineEnds) {
    const TEXT_BOX& box = make("aaaa bbbb cccc", TBF_MULTI_LINE | TBF_EDITABLE, 10);
    EXPECT_EQ((LINES{"aaaa| |bbbb| ", "cccc"}), lines(box));
    EXPECT_EQ((LINES{"aaaa| |bbbb", " |cccc"}),
              lines(make("aaaa bbbb cccc", TBF_MULTI_LINE | TBF_EDITABLE, 9)));
}

TEST_F(TextBoxLayout, AWordWiderThanTheBoxBreaksInside) {
    const TEXT_BOX& box = make("ab cdefghijklmno p", TBF_MULTI_LINE, 8);
    EXPECT_EQ((LINES{"ab| |cdefg", "hijklmno", "p"}), lines(box));
    EXPECT_EQ("3-7", span(box, 2, 0));
    EXPECT_EQ("8-15", span(box, 0, 1));
    // The end of a broken line is behind its last character.
    EXPECT_EQ("8-8", span(box, 3, 0));
    EXPECT_EQ(18, box.plain_length);
}

TEST_F(TextBoxLayout, ControlCharactersGoButKeepTheirPlaceInTheText) {
    const TEXT_BOX& box = make("a\tb\rcdefgh", TBF_MULTI_LINE, 4);
    EXPECT_EQ((LINES{"abcd", "efgh"}), lines(box));
    EXPECT_EQ("0-5", span(box, 0, 0));
    EXPECT_EQ("6-9", span(box, 0, 1));
}

TEST_F(TextBoxLayout, ASingleLineTakesLineFeedsAsSpaces) {
    const TEXT_BOX& box = make("aaaa\nbbbb cccc dddd eeee", 0, 10, 30);
    EXPECT_EQ((LINES{"aaaa| |bbbb| |cccc| |dddd| |eeee"}), lines(box));
    EXPECT_EQ(LINE_HEIGHT + 8, box.grid->height);
    EXPECT_EQ(6, box.grid->y);
    EXPECT_FALSE(box.get_scrolling());
    // A line is no longer than the coordinates reach.
    const TEXT_BOX& endless = make(std::string(40000, 'x'), 0, 100, 30);
    EXPECT_EQ(1, endless.grid->row_count);
    EXPECT_LE(row_width(endless, 0), 32767);
    EXPECT_GT(row_width(endless, 0), 31000);
}

TEST_F(TextBoxLayout, WordsAreAtMost1023Characters) {
    const TEXT_BOX& box = make(std::string(1500, 'x'), 0, 100, 30);
    EXPECT_EQ("0-1022", span(box, 0, 0));
    EXPECT_EQ("1023-1499", span(box, 1, 0));
}

TEST_F(TextBoxLayout, OnlyTheFirst1000RowsAreLaidOut) {
    std::string text;
    for (int i = 0; i < 1500; ++i) {
        text += "x\n";
    }
    const TEXT_BOX& box = make(text);
    EXPECT_EQ(TEXT_BOX::MAX_ROWS, box.grid->row_count);
    EXPECT_EQ("x", row_text(box, 999));
    EXPECT_EQ("", row_text(box, 1000));
    EXPECT_EQ("2000-2000", span(box, 0, 1000));
    const TEXT_BOX& wrapped = make(std::string(5000, 'x'), TBF_MULTI_LINE | TBF_EDITABLE, 8, 100);
    EXPECT_EQ("3000-3000", span(wrapped, 0, 1000));  // 1000 rows of 3, beside the scroll bar
}

TEST_F(TextBoxLayout, RowsThatNeedAScrollBarAreNarrower) {
    const std::string text = "aaaa bbbb cccc dddd eeee ffff";
    EXPECT_EQ((LINES{"aaaa| |bbbb| |cccc", "dddd| |eeee| |ffff"}),
              lines(make(text, TBF_MULTI_LINE, 15, 20)));
    const TEXT_BOX& box = make(text, TBF_MULTI_LINE, 15, 19);
    EXPECT_EQ((LINES{"aaaa| |bbbb", "cccc| |dddd", "eeee| |ffff"}), lines(box));
    EXPECT_EQ(15 - BAR_WIDTH, box.text_width);
    EXPECT_TRUE(box.get_scrolling());
}

TEST_F(TextBoxLayout, TheFrameAlignsTheLines) {
    style("TEXT_BOX_BACKGROUND").flags = STYLE_RIGHT_JUSTIFY_TEXT;
    EXPECT_EQ(17, offset(make("abc"), 0));
    style("TEXT_BOX_BACKGROUND").flags = 0;
    const TEXT_BOX& box = make("abc\n" + std::string(20, 'x'));
    EXPECT_EQ(8, offset(box, 0));
    EXPECT_EQ(0, offset(box, 1));
}

TEST_F(TextBoxLayout, JustifiedLinesFillTheWidthButForTheLastOfAParagraph) {
    // 15 pixels of words and spaces in 20: 5 for two gaps, the rest to the later one.
    const TEXT_BOX& box =
        make("aaaa bbbb ccccc dddddd ee\nff gg", TBF_MULTI_LINE | TBF_JUSTIFY, 20, 100);
    EXPECT_EQ((LINES{"aaaa| |bbbb| |ccccc", "dddddd| |ee", "ff| |gg"}), lines(box));
    EXPECT_EQ(20, row_width(box, 0));
    EXPECT_EQ(3, word(box, 1, 0).width);
    EXPECT_EQ(4, word(box, 3, 0).width);
    EXPECT_EQ(9, row_width(box, 1));
    EXPECT_EQ(5, row_width(box, 2));
    // Gaps in front of the indent stay.
    const TEXT_BOX& list = make("a b <:fix_indent#>cc dd eeeeeeeee ffffffffffff",
                                TBF_MULTI_LINE | TBF_JUSTIFY, 20, 100);
    EXPECT_EQ(20, row_width(list, 0));
    EXPECT_EQ(1, word(list, 1, 0).width);
    EXPECT_EQ(1, word(list, 3, 0).width);
}

TEST_F(TextBoxLayout, LayoutOfAHostileTextStaysLinear) {
    // None of these has a tag, or a place to break, in sight.
    for (const std::string& text : {std::string(300000, '<'), std::string(300000, 'x'),
                                    std::string(300000, '<') + ":x>", "<:" + std::string(9, '<')}) {
        make(text, TBF_MULTI_LINE, 150, 100);
        make(text, 0, 150, 100);
    }
}

// --- Tags ---

TEST_F(TextBoxTags, LooksChangeAtATag) {
    style("TEXT_BOX_WORD_BOLD").fg_colour = COLOUR_RED;
    style("TEXT_BOX_WORD_BOLD_ITALIC").fg_colour = COLOUR_BLUE;
    const TEXT_BOX& box = make(
        "a<:COLOUR#4278255360>b<:default#>c<:style_on#bold>d<:style_on#italic>e<:style_off#bold>"
        "<:style_off#italic>f<:style#3>g<:style#0><:bg_colour#4294967040>h<:style_on#Bold>i",
        TBF_MULTI_LINE, 100);
    ASSERT_EQ((LINES{"a|b|c|d|e|f|g|h|i"}), lines(box));
    const COLOUR expected[] = {COLOUR_BLACK, COLOUR_GREEN, COLOUR_BLACK, COLOUR_RED,  COLOUR_BLUE,
                               COLOUR_BLACK, COLOUR_BLUE,  COLOUR_BLACK, COLOUR_BLACK};
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(expected[i].value, word(box, i, 0).style->fg_colour.value) << i;
    }
    EXPECT_EQ(COLOUR_INVISIBLE, word(box, 6, 0).style->bg_colour);
    EXPECT_EQ(COLOUR_YELLOW, word(box, 7, 0).style->bg_colour);
    EXPECT_EQ("21-21", span(box, 1, 0));
    EXPECT_EQ(COLOUR_INVISIBLE, word(box, word_count(box, 0) - 1, 0).style->bg_colour);
    EXPECT_EQ(9, box.plain_length);
    EXPECT_EQ(0, box.tags.get_count());
}

TEST_F(TextBoxTags, FadedHalvesTheAlphaAndSizesAreDifferences) {
    const TEXT_BOX& box = make(
        "<:style_on#faded>a<:default#><:font_x_size#3>b<:font_y_size#-25>c<:font_x_size#nonsense>d",
        TBF_MULTI_LINE, 100);
    EXPECT_EQ(127, word(box, 0, 0).style->fg_colour.alpha());
    EXPECT_EQ(LINE_HEIGHT + 3, word(box, 1, 0).style->font_x_sz);
    EXPECT_EQ(LINE_HEIGHT, word(box, 1, 0).style->font_y_sz);
    EXPECT_EQ(1, word(box, 2, 0).style->font_y_sz);  // 10 less 10, but a size
    EXPECT_EQ(LINE_HEIGHT, word(box, 3, 0).style->font_x_sz);
    const TEXT_BOX& signs =
        make("<:font_x_size#+2>a<:font_x_size# 99999999999>b<:font_x_size#-99999999999>c",
             TBF_MULTI_LINE, 100);
    EXPECT_EQ(LINE_HEIGHT + 2, word(signs, 0, 0).style->font_x_sz);
    EXPECT_EQ(LINE_HEIGHT + 10, word(signs, 1, 0).style->font_x_sz);
    EXPECT_EQ(1, word(signs, 2, 0).style->font_x_sz);
}

TEST_F(TextBoxTags, ALineIsAsHighAsItsHighestText) {
    const auto heights = [](const TEXT_BOX& box) {
        std::vector<int> result;
        for (const auto& row : box.grid->rows) {
            result.push_back(row->height);
        }
        return result;
    };
    const std::string text = "a\nb<:font_y_size#6>c<:font_y_size#-4>d\ne<:font_y_size#3>\n\n<f:x#>";
    const TEXT_BOX& box = make(text, TBF_MULTI_LINE, 50);
    EXPECT_EQ((std::vector<int>{10, 16, 10, 13, 13}), heights(box));
    EXPECT_EQ(16, word(box, 0, 1).height);
    EXPECT_EQ(26, word(box, 0, 2).y);
    EXPECT_EQ(62, make(text, TBF_MULTI_LINE, 50, 0).height);
    EXPECT_FALSE(make(text, TBF_MULTI_LINE, 50, 62).get_scrolling());
    EXPECT_TRUE(make(text, TBF_MULTI_LINE, 50, 61).get_scrolling());
    // A single line has the height of its box, or its text's own.
    const std::string line = "a<:font_y_size#6>b";
    EXPECT_EQ((std::vector<int>{12}), heights(make(line, 0, 50, 12)));
    EXPECT_EQ(16, make(line, 0, 50, 0).height);
}

TEST_F(TextBoxTags, WhatIsNoTagStaysVisible) {
    const auto text_of = [](const std::string& text, std::uint32_t flags = TBF_MULTI_LINE) {
        const TEXT_BOX& box = make(text, flags, 100);
        std::string result;
        for (int column = 0; column < word_count(box, 0); ++column) {
            result += shown(word(box, column, 0));
        }
        return result;
    };
    for (const char* text : {"1<2", "<", "a<b:", "a<b:c#", "a<b:c#d", "a<b:c>d", "a<b>c#d>",
                             "<:colour#1:2>x", "<:colour#1:2>x<", "<<<"}) {
        EXPECT_EQ(text, text_of(text));
    }
    // A whole tag behind it isn't taken for a part of it.
    EXPECT_EQ("<:colour#1:2>x", text_of("<:colour#1:2>x<:default#>"));
    EXPECT_EQ("<:colour#1>x", text_of("<:colour#1>x", TBF_MULTI_LINE | TBF_NO_TAGS));
    // A name may have colons.
    EXPECT_EQ("9:30 o'clock", text_of("<9:30:time#9> o'clock"));
}

TEST_F(TextBoxTags, AnUnknownTagShowsItsNameAsWords) {
    const TEXT_BOX& box = make("a <two words:url#there>b", TBF_MULTI_LINE, 100);
    EXPECT_EQ((LINES{"a| |two| |words|b"}), lines(box));
    for (int column = 2; column < 5; ++column) {
        EXPECT_EQ("2-22", span(box, column, 0));
        EXPECT_EQ(column != 2, word(box, column, 0).continuation);
    }
    EXPECT_EQ(" ", word(box, 3, 0).text);  // a gap for the layout
    EXPECT_EQ("", word(box, 2, 0).text);
    EXPECT_EQ(3, box.plain_length);
    ASSERT_EQ(1, box.tags.get_count());
    EXPECT_STREQ("two words", box.tags.get<TEXT_BOX_TAG>(0)->name);
    EXPECT_STREQ("url", box.tags.get<TEXT_BOX_TAG>(0)->type);
    EXPECT_STREQ("there", box.tags.get<TEXT_BOX_TAG>(0)->value);
    // The space of a name goes at a line's end like any other.
    EXPECT_EQ((LINES{"a| |two", "words|b"}), lines(make("a <two words:u#>b", TBF_MULTI_LINE, 7)));
}

TEST_F(TextBoxTags, APossessiveBelongsToTheName) {
    EXPECT_EQ("Ann's| |hat", row_text(make("<Ann:p#1>'s hat", TBF_MULTI_LINE, 100), 0));
    EXPECT_EQ("Ann's", row_text(make("<Ann:p#1>'s", TBF_MULTI_LINE, 100), 0));
    EXPECT_EQ("Ann|'so", row_text(make("<Ann:p#1>'so", TBF_MULTI_LINE, 100), 0));
    EXPECT_EQ("Ann|'s.", row_text(make("<Ann:p#1>'s.", TBF_MULTI_LINE, 100), 0));
    const std::string longest(253, 'n');
    const auto row_of = [](const std::string& name) {
        return row_text(make("<" + name + ":p#1>'s ", TBF_MULTI_LINE, 400), 0);
    };
    EXPECT_EQ(longest + "'s| ", row_of(longest));
    EXPECT_EQ(longest + "n|'s| ", row_of(longest + "n"));
    // Behind a tag that shows nothing it is text.
    EXPECT_EQ("a|'s", row_text(make("a<:default#>'s", TBF_MULTI_LINE, 100), 0));
    EXPECT_EQ(255u, row_of(std::string(300, 'n')).find('|'));  // cut
}

TEST_F(TextBoxTags, IndentsHoldForTheLinesThatFollow) {
    const TEXT_BOX& box = make(
        "- <:fix_indent#>aaaa bbbb <:fix_indent#>cc dd ee<:unfix_indent#> ff gggggg\nh"
        "<:default#> iiiiiiiiiiiii j",
        TBF_MULTI_LINE, 16);
    EXPECT_EQ((LINES{"-| |aaaa| |bbbb| |cc", "dd", "ee", "ff| |gggggg", "h", "iiiiiiiiiiiii| |j"}),
              lines(box));
    const int expected[] = {0, 12, 12, 2, 2, 0};
    for (int row = 0; row < 6; ++row) {
        EXPECT_EQ(expected[row], offset(box, row)) << row;
    }
}

TEST_F(TextBoxTags, TheEleventhIndentIsIgnored) {
    std::string text;
    for (int i = 0; i < 11; ++i) {
        text += "a<:fix_indent#>";
    }
    text += "\nb<:unfix_indent#>\nc";
    const TEXT_BOX& box = make(text, TBF_MULTI_LINE, 100);
    EXPECT_EQ(10, offset(box, 1));
    EXPECT_EQ(9, offset(box, 2));
    EXPECT_EQ(0, offset(make("a<:unfix_indent#>\nb"), 1));
}

TEST_F(TextBoxTags, ASeparatorTakesTheRestOfTheLine) {
    const TEXT_BOX& box = make("abc<:separator#>\nd");
    EXPECT_EQ(16, word(box, 1, 0).width);
    OBJECT_WALK walk(word(box, 1, 0).objects, OBJECT_WALK::FORWARD);
    const WM_SCREEN_OBJECT* line = walk.next();
    ASSERT_NE(nullptr, line);
    EXPECT_TRUE(line->type_flags & WMF_SCRIPT);
    EXPECT_EQ(2, line->height);
    EXPECT_EQ(4, line->y);
    EXPECT_EQ(3, line->x);
    // A box of its text's size isn't as wide as its separators could be.
    const TEXT_BOX& own_size =
        make("abcdef\n<:separator#>\nabc<:separator#>", TBF_MULTI_LINE, 0, 0);
    EXPECT_EQ(6, own_size.width);
    EXPECT_EQ(5, word(own_size, 0, 1).width);
    // On a full line there is still one, on the next.
    EXPECT_EQ(2, make(std::string(20, 'x') + "<:separator#>").grid->row_count);
}

// --- Embedded objects ---

struct MADE {
    std::string prefix, word, tag;
    COLOUR colour;
    int style, x_delta, y_delta, enabled;
};
std::vector<MADE> made;

WM_SCREEN_OBJECT* make_button(TEXT_BOX&, const char* prefix, TEXT_BOX_TAG& tag, const char* word,
                              COLOUR& colour, signed char style_byte, std::int16_t x_delta,
                              std::int16_t y_delta, unsigned char enabled, signed char window) {
    made.push_back({prefix, word, std::string(tag.type) + "=" + tag.value, colour, style_byte,
                    x_delta, y_delta, enabled});
    if (std::string(tag.type) == "plain") {
        return nullptr;
    }
    return new WM_BUTTON(0, 0, 5, 7, WM_STYLE_SET(), word, nullptr, nullptr, nullptr, nullptr, 1,
                         window, 1, 0);
}

WM_SCREEN_OBJECT* child_of(const TEXT_BOX_WORD& of) {
    OBJECT_WALK walk(of.objects, OBJECT_WALK::FORWARD);
    return walk.next();
}

TEST_F(TextBoxTags, TheApplicationMakesTheObjects) {
    made.clear();
    TEXT_BOX::create_tag_object_callback = make_button;
    TEXT_BOX& box = make("", TBF_MULTI_LINE, 60);
    KVCORE::copy_text_field(box.style_prefix, "PRE");
    box.set_enabled(0);
    box.set_text("<:colour#4278190335><:style_on#bold><:font_y_size#2>x <a b:thing#v w><c:plain#>");
    ASSERT_EQ(4u, made.size());
    EXPECT_EQ("a", made[0].word);
    EXPECT_EQ(" ", made[1].word);
    EXPECT_EQ("b", made[2].word);
    EXPECT_EQ("PRE", made[0].prefix);
    EXPECT_EQ("thing=v w", made[0].tag);
    EXPECT_EQ(COLOUR_BLUE, made[0].colour);
    EXPECT_EQ(TEXT_BOX_BOLD, made[0].style);
    EXPECT_EQ(0, made[0].x_delta);
    EXPECT_EQ(2, made[0].y_delta);
    EXPECT_EQ(0, made[0].enabled);
    ASSERT_EQ(7, word_count(box, 0));
    EXPECT_EQ(6, word(box, 2, 0).width);
    EXPECT_TRUE(child_of(word(box, 2, 0))->type_flags & WMF_BUTTON);
    EXPECT_EQ("c", shown(word(box, 5, 0)));
    EXPECT_FALSE(word(box, 0, 0).enabled);
    // No callback but the one that it came with.
    EXPECT_EQ(nullptr, child_of(word(box, 2, 0))->callback);
}

TEST_F(TextBoxTags, ObjectsWiderThanTheBoxStandOnLinesOfTheirOwn) {
    TEXT_BOX::create_tag_object_callback = make_button;
    const TEXT_BOX& box = make("<a:t#><b:t#>c", TBF_MULTI_LINE, 4);
    ASSERT_EQ(3, box.grid->row_count);
    EXPECT_EQ(2, word_count(box, 0));
    EXPECT_EQ(2, word_count(box, 1));
    EXPECT_EQ("c", row_text(box, 2));
}

std::vector<std::string> clicks;

WM_MESG note_click(WM_SCREEN_OBJECT* object, void*, void* data2) {
    auto& box = static_cast<TEXT_BOX&>(*object);
    clicks.push_back(std::string(box.tag_clicked ? "tag " : "") + std::to_string(box.tag_data1) +
                     " " + std::to_string(box.tag_data2));
    if (data2 != nullptr) {
        box.set_text("changed");
    }
    return WM_MESG_HANDLED;
}

TEST_F(TextBoxTags, ACallbackTagRunsTheCallbackOfTheBox) {
    clicks.clear();
    TEXT_BOX::create_tag_object_callback = make_button;
    TEXT_BOX& box =
        make("<go:callback# 12, -7> <no:callback#1> <no:Callback#1,2>", TBF_MULTI_LINE, 100);
    box.callback = note_click;
    WM_SCREEN_OBJECT* button = child_of(word(box, 0, 0));
    EXPECT_EQ(BUTTON_EVENT_RELEASE, static_cast<WM_BUTTON*>(button)->callback_flags);
    EXPECT_EQ(WM_MESG_HANDLED,
              button->callback(button, button->callback_data1, button->callback_data2));
    EXPECT_EQ((LINES{"tag 12 -7"}), clicks);
    EXPECT_FALSE(box.tag_clicked);
    EXPECT_EQ(-1, box.tag_data1);
    EXPECT_EQ(nullptr, child_of(word(box, 2, 0))->callback);
    EXPECT_EQ(nullptr, child_of(word(box, 4, 0))->callback);
}

TEST_F(TextBoxTags, TheCallbackMayChangeTheText) {
    TEXT_BOX::create_tag_object_callback = make_button;
    TEXT_BOX& box = make("<go:callback#1,2>", TBF_MULTI_LINE, 100);
    box.callback = note_click;
    box.callback_data2 = &box;
    draw_all();
    MOUSE::set_position(0, 2, 2);
    MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 1);
    area().monitor();
    MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 0);
    area().monitor();
    EXPECT_STREQ("changed", box.get_text());
    EXPECT_EQ((LINES{"changed"}), lines(box));
    area().monitor();
    draw_all();
}

// Refers to its tag as long as it lives.
class TAG_BUTTON : public WM_BUTTON {
public:
    TAG_BUTTON(const TEXT_BOX_TAG& of, const char* word, signed char in_window)
        : WM_BUTTON(0, 0, 5, 7, WM_STYLE_SET(), word, nullptr, nullptr, nullptr, nullptr, 1,
                    in_window, 1, 0),
          tag(of) {}
    ~TAG_BUTTON() override {
        ended.push_back(tag.value);
        running_ended = running_ended || running == this;
    }

    const TEXT_BOX_TAG& tag;
    static inline LINES ended;
    static inline const WM_SCREEN_OBJECT* running = nullptr;
    static inline bool running_ended = false;
};

WM_MESG append_twice(WM_SCREEN_OBJECT* object, void*, void*) {
    auto& box = static_cast<TEXT_BOX&>(*object);
    box.append_text("x\n");
    box.append_text("y\n");
    return WM_MESG_HANDLED;
}

TEST_F(TextBoxTags, AChangeByTheCallbackKeepsTheViewAndTheObjectThatRuns) {
    TAG_BUTTON::ended.clear();
    TEXT_BOX::create_tag_object_callback =
        [](TEXT_BOX&, const char*, TEXT_BOX_TAG& tag, const char* word, COLOUR&, signed char,
           std::int16_t, std::int16_t, unsigned char, signed char in_window) -> WM_SCREEN_OBJECT* {
        return new TAG_BUTTON(tag, word, in_window);
    };
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += i == 10 ? "<go:callback#1,2>\n" : std::to_string(i) + "\n";
    }
    TEXT_BOX& box = make(text, TBF_MULTI_LINE, 40, 50);
    TAG_BUTTON::ended.clear();  // the first try without a scroll bar
    box.callback = append_twice;
    box.grid->set_scroll_to_row(10, 1);
    const std::int16_t top = box.grid->first_visible;
    ASSERT_GT(top, 0);
    WM_SCREEN_OBJECT* button = child_of(word(box, 0, 10));
    button->callback(button, button->callback_data1, button->callback_data2);
    EXPECT_EQ(top, box.grid->first_visible);
    EXPECT_EQ((LINES{"1,2"}), TAG_BUTTON::ended) << "the second append's own";
    // The next click finds the last one's button still there.
    TAG_BUTTON::ended.clear();
    button = child_of(word(box, 0, 10));
    TAG_BUTTON::running = button;
    button->callback(button, button->callback_data1, button->callback_data2);
    EXPECT_FALSE(TAG_BUTTON::running_ended);
    box.refresh();
    EXPECT_TRUE(TAG_BUTTON::running_ended);
}

// --- The text ---

TEST_F(TextBoxText, LimitsAreHardOnlyIfAskedFor) {
    TEXT_BOX& box = make("abc", TBF_MULTI_LINE, 100, 100, 5);
    EXPECT_EQ(5, box.max_text_length);
    EXPECT_TRUE(box.append_text("def"));
    EXPECT_EQ(6, box.max_text_length);
    box.set_flags(TBF_MULTI_LINE | TBF_HARD_LIMIT);
    EXPECT_FALSE(box.append_text("g"));
    EXPECT_FALSE(box.insert_text("g"));
    EXPECT_STREQ("abcdef", box.get_text());
    box.set_max_text_length(2);
    EXPECT_EQ(6, box.max_text_length);
    box.set_text("abcdefgh");
    EXPECT_EQ(8, box.max_text_length);
    EXPECT_EQ("abcdefgh", row_text(box, 0));
    EXPECT_EQ(256, make("", 0).max_text_length);
    EXPECT_EQ(300, make(std::string(300, 'x'), 0).max_text_length);
}

TEST_F(TextBoxText, AnEqualTextDoesNothing) {
    TEXT_BOX& box = make("abc");
    const WM_SCREEN_OBJECT* before = box.grid->get_object(0, 0);
    box.grid->get_object(0, 0)->width = 77;
    box.set_text("abc");
    EXPECT_EQ(before, box.grid->get_object(0, 0));
    EXPECT_EQ(77, before->width);
    box.set_text("abc", 1);
    EXPECT_EQ(3, box.grid->get_object(0, 0)->width);
    box.set_text(nullptr);
    EXPECT_STREQ("", box.get_text());
}

TEST_F(TextBoxText, InsertedTextGoesToTheCursorOfAnEditableBox) {
    TEXT_BOX& box = make("ad", TBF_EDITABLE | TBF_MULTI_LINE, 100);
    std::int16_t column = 0, row = 0, x = 0;
    std::int32_t in_word = 0;
    ASSERT_TRUE(box.get_char_from_text_index(1, column, row, x, in_word));
    box.move_cursor(column, row, x, in_word);
    EXPECT_TRUE(box.insert_text("bc"));
    EXPECT_STREQ("abcd", box.get_text());
    std::int32_t index = 0;
    ASSERT_TRUE(box.get_text_index_from_char(box.cursor_column, box.cursor_row, box.cursor_x,
                                             box.cursor_offset, index));
    EXPECT_EQ(4, index);
    // While the default text is shown there is no place of the cursor.
    TEXT_BOX& replaced = make("abcdef", TBF_EDITABLE, 100, 30);
    replaced.set_default_text("x");
    replaced.set_text("abcdefg");
    EXPECT_TRUE(replaced.insert_text("h"));
    EXPECT_STREQ("abcdefgh", replaced.get_text());
    TEXT_BOX& empty = make("", TBF_EDITABLE, 100, 30);
    EXPECT_TRUE(empty.insert_text("x"));
    EXPECT_STREQ("x", empty.get_text());
}

TEST_F(TextBoxText, TheDefaultTextShowsWithoutTheFocus) {
    TEXT_BOX& box = make("text", TBF_EDITABLE, 100, 30);
    box.set_default_text("type <here:x#>");
    EXPECT_EQ("type| |here", row_text(box, 0));
    box.take_focus(0);
    EXPECT_EQ("text", row_text(box, 0));
    box.set_default_text(nullptr);
    EXPECT_EQ("text", row_text(box, 0));
}

TEST_F(TextBoxText, AnUnfocusedBoxWithAPrefixShowsItBeforeTheText) {
    TEXT_BOX& box = make("text", TBF_EDITABLE, 100, 30);
    EXPECT_EQ(0, box.grid->x);
    box.set_prefix_text("To:");
    EXPECT_EQ(3 + 1, box.grid->x);
    EXPECT_EQ(99, box.grid->x + box.grid->width - 1);
    box.set_default_text("nobody");
    EXPECT_EQ(0, box.grid->x);
    box.set_default_text("");
    EXPECT_EQ(4, box.grid->x);
    box.set_flags(TBF_MULTI_LINE);
    EXPECT_EQ(0, box.grid->x);
    EXPECT_EQ(30, box.grid->height);
    TEXT_BOX& lines = make("text");
    lines.set_prefix_text("To:");
    EXPECT_EQ(0, lines.grid->x);
}

TEST_F(TextBoxText, PartsMadeOutsideTheWindowAreAsLargeAsInside) {
    TEXT_BOX& prefixed = make("text", TBF_EDITABLE, 100, 14);
    prefixed.move(0, -50);
    prefixed.set_prefix_text("To:");
    const TEXT_BOX_WORD* prefix = nullptr;
    OBJECT_WALK walk(prefixed.background->objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* part = walk.next()) {
        prefix = prefix == nullptr ? dynamic_cast<TEXT_BOX_WORD*>(part) : prefix;
    }
    ASSERT_NE(nullptr, prefix);
    EXPECT_EQ(prefixed.grid->y, prefix->y);
    EXPECT_EQ(prefixed.grid->height, prefix->height);
    TEXT_BOX& counting = make("text", TBF_MULTI_LINE, 100, 100, 10);
    counting.move(-200, 0);
    counting.set_flags(TBF_MULTI_LINE | TBF_SHOW_REMAINING);
    ASSERT_NE(nullptr, counting.info);
    EXPECT_EQ(-200, counting.info->x);
    EXPECT_EQ(100, counting.info->width);
    EXPECT_EQ(100, counting.info->y + counting.info->height);
}

TEST_F(TextBoxText, APasswordShowsAsStars) {
    const TEXT_BOX& box = make("ab c<d:e#f>", TBF_EDITABLE | TBF_PASSWORD, 100, 30);
    EXPECT_EQ("**|*|*|*", row_text(box, 0));
    TEXT_BOX& hinted = make("secret secret", TBF_PASSWORD, 8, 30);
    hinted.resize(6, 30, 1);
    EXPECT_EQ(nullptr, hinted.get_hint_text());
}

TEST_F(TextBoxText, TheLineBelowCountsWhatIsLeft) {
    TEXT_BOX& box = make("abc", TBF_MULTI_LINE | TBF_SHOW_REMAINING, 100, 100, 10);
    ASSERT_NE(nullptr, box.info);
    EXPECT_STREQ("7 characters remaining", box.info->get_text());
    EXPECT_EQ(99, box.info->y + box.info->height - 1);
    EXPECT_EQ(100 - box.info->height, box.grid->height);
    box.append_text("defg");
    EXPECT_STREQ("3 characters remaining", box.info->get_text());
    box.set_max_text_length(12);
    EXPECT_STREQ("5 characters remaining", box.info->get_text());
    box.set_flags(TBF_MULTI_LINE);
    EXPECT_EQ(nullptr, box.info);
    EXPECT_EQ(100, box.grid->height);
}

TEST_F(TextBoxText, TheHintHasNoTags) {
    TEXT_BOX& box = make("x");
    box.set_hint_text("see <here:url#w>");
    EXPECT_STREQ("see here", box.get_hint_text());
    box.set_hint_text("");
    EXPECT_EQ(nullptr, box.get_hint_text());
}

TEST_F(TextBoxText, ScrollingSurvivesAChange) {
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += std::to_string(i) + "\n";
    }
    TEXT_BOX& box = make(text, TBF_MULTI_LINE, 40, 50);
    EXPECT_TRUE(box.get_scrolled_to_top());
    EXPECT_EQ(160, box.get_scroll_position());  // 21 rows of 10 in 50
    box.set_scroll_position(130);
    box.append_text("x\n");
    EXPECT_EQ(3, box.grid->first_visible);
    EXPECT_EQ(140, box.get_scroll_position());
    box.set_scroll_to_bottom();
    box.append_text("y");
    EXPECT_TRUE(box.get_scrolled_to_bottom());
    box.set_scroll_to_top();
    EXPECT_TRUE(box.get_scrolled_to_top());
    EXPECT_FALSE(box.get_scrolled_to_bottom());
    box.set_text("short");
    EXPECT_FALSE(box.get_scrolling());
    EXPECT_TRUE(box.get_scrolled_to_top() && box.get_scrolled_to_bottom());
}

// --- Sizes ---

TEST_F(TextBoxSize, ABoxTakesTheSizeOfItsText) {
    WM_STYLE_SET& frame = style("TEXT_BOX_BACKGROUND");
    frame.border_left_gap = 3;
    frame.border_right_gap = 4;
    frame.border_top_gap = 1;
    frame.border_bottom_gap = 2;
    const TEXT_BOX& box = make("abc\nabcdefg", TBF_MULTI_LINE, 0, 0);
    EXPECT_EQ(7 + 7, box.width);
    EXPECT_EQ(2 * LINE_HEIGHT + 3, box.height);
    EXPECT_EQ((LINES{"abc", "abcdefg"}), lines(box));
    EXPECT_FALSE(box.get_scrolling());
    const TEXT_BOX& line = make("abc\nabcdefg", 0, 0, 0);
    EXPECT_EQ(11 + 7, line.width);
    EXPECT_EQ(LINE_HEIGHT + 3, line.height);
    // One side alone; a centred text doesn't stand in the middle of nowhere.
    frame.flags = 0;
    EXPECT_EQ(2 * LINE_HEIGHT + 3, make("aaaa bbbb", TBF_MULTI_LINE, 7 + 6, 0).height);
    const TEXT_BOX& wide = make("aaaa bbbb", TBF_MULTI_LINE, 0, 50);
    EXPECT_EQ(9 + 7, wide.width);
    EXPECT_EQ(50, wide.height);
    EXPECT_EQ(0, offset(wide, 0));
}

TEST_F(TextBoxSize, TheSizeOfTheTextDoesNotDependOnThePlace) {
    TEXT_BOX box(70, 60, -1, -1, "abc\nd", -1, nullptr, TBF_MULTI_LINE | TBF_SHOW_REMAINING, "",
                 nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(3, box.width);
    EXPECT_EQ(2 * LINE_HEIGHT + box.info->height, box.height);
    EXPECT_FALSE(box.get_scrolling());
    EXPECT_EQ((LINES{"abc", "d"}), lines(box));
}

TEST_F(TextBoxSize, AFixedSizeIsTakenAsItStands) {
    const TEXT_BOX& box = make("abc", TBF_MULTI_LINE | TBF_FIXED_SIZE, 0, 0);
    EXPECT_EQ(nullptr, box.grid);
    EXPECT_TRUE(box.get_valid());
    EXPECT_FALSE(box.get_scrolling());
    EXPECT_EQ(0, box.get_scroll_position());
}

TEST_F(TextBoxSize, ResizingWrapsAnew) {
    TEXT_BOX& box = make("aaaa bbbb");
    IMAGE icon(3, 3);
    icon.clear(COLOUR_RED);
    box.set_icon_image(icon);
    box.resize(6, 60, 1);
    EXPECT_EQ((LINES{"aaaa", "bbbb"}), lines(box));
    EXPECT_TRUE(box.get_icon_image() == icon);
    box.resize(-1, -1, 1);
    EXPECT_EQ(9, box.width);
    EXPECT_EQ(LINE_HEIGHT, box.height);
    box.clear_icon_image();
    EXPECT_EQ(0, box.get_icon_image().width);
}

TEST_F(TextBoxSize, ASingleLineThatDoesNotFitHasAHint) {
    TEXT_BOX& box = make("some <long text:x#y>", 0, 0, 0);
    EXPECT_EQ(nullptr, box.get_hint_text());
    box.resize(10, box.height, 1);
    EXPECT_STREQ("some long text", box.get_hint_text());
    box.set_text("another <long text:x#y>");
    EXPECT_STREQ("another long text", box.get_hint_text());
    box.resize(100, box.height, 1);
    EXPECT_EQ(nullptr, box.get_hint_text());
    // Also when the user changes the text, and when it becomes a secret.
    TEXT_BOX& edited = make("a text", TBF_EDITABLE, 20, 30);
    edited.resize(5, 30, 1);
    ASSERT_STREQ("a text", edited.get_hint_text());
    edited.take_focus(0);
    KEYBOARD::process_char_event('s', 0);
    area().monitor();
    EXPECT_STREQ("a texts", edited.get_hint_text());
    edited.set_flags(TBF_EDITABLE | TBF_PASSWORD);
    EXPECT_EQ(nullptr, edited.get_hint_text());
}

// --- Drawing ---

TEST_F(TextBoxLayout, SpacesWithoutAWidthAreNotDrawn) {
    const TEXT_BOX& box =
        make("<:bg_colour#4278255360>aaaa<:bg_colour#4278190335> bbbb", TBF_MULTI_LINE, 7, 30);
    ASSERT_EQ((LINES{"aaaa", "bbbb"}), lines(box));
    draw_all();
    EXPECT_EQ(COLOUR_GREEN, pixel(3, 5));
    EXPECT_EQ(COLOUR_BLUE, pixel(3, 15));
}

TEST_F(TextBoxLayout, OffsetsSelectionAndCaretAreDrawn) {
    style("TEXT_BOX_BACKGROUND").flags = STYLE_RIGHT_JUSTIFY_TEXT;
    style("TEXT_BOX_WORD").bg_colour = COLOUR_GREEN;
    style("TEXT_BOX_WORD").highlight_colour = COLOUR_BLUE;
    TEXT_BOX& box = make("abcd", TBF_MULTI_LINE, 20, 30);
    word(box, 0, 0).cursor_x = 0;
    draw_all();
    EXPECT_NE(COLOUR_GREEN, pixel(15, 9));
    EXPECT_EQ(COLOUR_BLACK, pixel(16, 9));
    EXPECT_EQ(COLOUR_GREEN, pixel(17, 0));
    EXPECT_EQ(COLOUR_GREEN, pixel(19, 9));
    word(box, 0, 0).selection_start_x = 1;
    word(box, 0, 0).selection_end_x = 2;
    word(box, 0, 0).cursor_x = -1;
    draw_all();
    EXPECT_EQ(COLOUR_BLUE, pixel(17, 5));
    EXPECT_EQ(COLOUR_BLUE, pixel(18, 5));
    EXPECT_NE(COLOUR_BLUE, pixel(16, 5));
    EXPECT_NE(COLOUR_BLUE, pixel(19, 5));
}

}  // namespace
