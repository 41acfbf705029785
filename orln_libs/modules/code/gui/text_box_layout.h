// TEXT_BOX_LAYOUT: one walk through the text of a TEXT_BOX that fills its grid with words.
#ifndef MODULES_CODE_GUI_TEXT_BOX_LAYOUT_H
#define MODULES_CODE_GUI_TEXT_BOX_LAYOUT_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_tag.h"
#include "modules/gui/text_box_word.h"
#include "platform/colour.h"
#include "platform/ptrarray.h"

// What the tags so far ask for.
struct TEXT_BOX_LOOK {
    COLOUR fg = COLOUR_INVISIBLE, bg = COLOUR_INVISIBLE;  // invisible: the style's own
    signed char style = 0;                                // TEXT_BOX_STYLE bits
    std::int16_t x_delta = 0, y_delta = 0;

    friend bool operator==(const TEXT_BOX_LOOK&, const TEXT_BOX_LOOK&) = default;
};

// The box has an empty grid and its `text_width`; the shown text stays as it is meanwhile.
//
// Time and memory grow with the characters that are laid out: each word is measured once, words
// share their styles, and characters that make tags are found once.
class TEXT_BOX_LAYOUT {
public:
    // `may_narrow`: the walk is to end as soon as the rows need a scroll bar.
    TEXT_BOX_LAYOUT(TEXT_BOX& laid_out, std::string_view shown, bool may_narrow);
    ~TEXT_BOX_LAYOUT();
    TEXT_BOX_LAYOUT(const TEXT_BOX_LAYOUT&) = delete;
    TEXT_BOX_LAYOUT& operator=(const TEXT_BOX_LAYOUT&) = delete;

    // False if it ended because of `may_narrow`.
    bool run();
    // The index reached in the text, and the pixels of the longest line.
    std::int32_t get_index() const { return at; }
    std::int32_t get_extent() const { return extent; }

    // A control character, which no word shows.
    static bool is_dropped(char c) { return static_cast<unsigned char>(c) < ' ' && c != '\n'; }

private:
    using WORD = std::unique_ptr<TEXT_BOX_WORD>;
    using TAG_ACTION = void (TEXT_BOX_LAYOUT::*)(const TEXT_BOX_TAG_PLACE& place);
    struct STATE_TAG {
        std::string_view type;
        TAG_ACTION action;
    };

    // Styles that have been made lately; the next one takes the place of the oldest.
    struct STYLE_CACHE {
        struct ENTRY {
            TEXT_BOX_LOOK look;
            TEXT_BOX_WORD::SHARED_STYLE style;
        };
        std::array<ENTRY, 16> entries;
        std::size_t next = 0;
    };

    static constexpr std::size_t MAX_WORD = 1023;
    static constexpr std::size_t MAX_INDENTS = 10;
    // The columns of a row, and its pixels, are 16-bit. There is room for the end of the line, and
    // before it for the first piece of a word that is cut.
    static constexpr std::int32_t MAX_LINE_WORDS = INT16_MAX - 2;

    // --- The walk ---
    void take_character();
    bool word_ends_here() const;
    bool is_tag_start(char c) const { return c == '<' && !(box.flags & TBF_NO_TAGS); }
    // A line feed of a single line is a space.
    char get_character(std::int32_t index) const;

    // --- Words ---
    void finish_word();
    void add_cut_word(WORD made);
    // Puts a word behind the line, or on the next one. A text of the given height must fit into the
    // line.
    void place(WORD made, std::int32_t text_height);
    void append(WORD made, std::int32_t text_height);
    std::string get_displayed(std::string_view characters) const;
    bool is_full() const { return line.get_count() >= MAX_LINE_WORDS; }
    bool fits(std::int32_t word_width) const;
    std::int32_t get_room() const { return box.text_width - indent; }
    static bool is_spaces(const TEXT_BOX_WORD& made);
    static void make_empty(TEXT_BOX_WORD& made);

    // --- Lines ---
    void wrap_line();
    void end_line(std::int32_t marker_index, bool justify);
    void make_row(bool justify);
    std::int16_t get_left_margin() const;

    // --- Tags: code/gui/text_box_tags.cpp ---
    void take_tag(const TEXT_BOX_TAG_PLACE& place);
    static const STATE_TAG* find_state_tag(std::string_view type);
    void take_fg_colour(const TEXT_BOX_TAG_PLACE& place);
    void take_bg_colour(const TEXT_BOX_TAG_PLACE& place);
    void take_style_on(const TEXT_BOX_TAG_PLACE& place);
    void take_style_off(const TEXT_BOX_TAG_PLACE& place);
    void take_style(const TEXT_BOX_TAG_PLACE& place);
    void take_font_x_size(const TEXT_BOX_TAG_PLACE& place);
    void take_font_y_size(const TEXT_BOX_TAG_PLACE& place);
    void take_fix_indent(const TEXT_BOX_TAG_PLACE& place);
    void take_unfix_indent(const TEXT_BOX_TAG_PLACE& place);
    void take_separator(const TEXT_BOX_TAG_PLACE& place);
    void take_default(const TEXT_BOX_TAG_PLACE& place);
    void take_named_tag(const TEXT_BOX_TAG_PLACE& place);
    void take_possessive(const TEXT_BOX_TAG_PLACE& place, TEXT_BOX_TAG& tag);
    WM_SCREEN_OBJECT* create_tag_object(TEXT_BOX_TAG& tag, const std::string& word);
    void set_tag_callback(WM_SCREEN_OBJECT& object, const TEXT_BOX_TAG& tag);
    void place_object(WM_SCREEN_OBJECT* object, std::int32_t height, bool spaces,
                      const TEXT_BOX_TAG_PLACE& place, bool first);
    TEXT_BOX_WORD::SHARED_STYLE get_style(const TEXT_BOX_LOOK& wanted);

    TEXT_BOX& box;
    const std::string_view text;
    const bool may_narrow;
    const bool multi_line;
    const bool keeps_spaces;  // at line ends
    const bool hides_text;    // a password
    TEXT_BOX_TAG_FINDER finder;
    std::int32_t at = 0;
    bool stopped = false;   // no more rows
    bool outgrown = false;  // because of may_narrow

    std::string word;  // not finished yet
    std::int32_t word_start = 0, word_end = 0;
    PTRARRAY line{64};                  // TEXT_BOX_WORD*, this object's until the row is made
    TEXT_BOX_WORD* previous = nullptr;  // the last of `line`
    std::int32_t line_end = 0;          // the last index of the line
    std::int16_t row = 0;
    std::int32_t line_x = 0;       // from the indent
    std::int32_t text_height = 0;  // of the highest text of the line
    std::int16_t indent = 0;
    std::array<std::int16_t, MAX_INDENTS> indents{};
    std::size_t indent_count = 0;
    bool wrapped = false;  // the line began by a wrap
    std::int32_t extent = 0;

    TEXT_BOX_LOOK look;
    STYLE_CACHE styles;
};

#endif  // MODULES_CODE_GUI_TEXT_BOX_LAYOUT_H
