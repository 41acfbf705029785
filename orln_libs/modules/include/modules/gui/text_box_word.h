// TEXT_BOX_WORD: one word of a text box's line, in a cell of its grid.
//
// A run of spaces is a word too, and an empty word ends every line. A word that stands for an
// embedded object has that object as its child.
#ifndef MODULES_GUI_TEXT_BOX_WORD_H
#define MODULES_GUI_TEXT_BOX_WORD_H

#include <cstdint>
#include <memory>
#include <string>

#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"

class TEXT_BOX_WORD : public WM_SCREEN_OBJECT {
public:
    // A style that many words share; none of them changes it.
    using SHARED_STYLE = std::shared_ptr<const WM_STYLE_SET>;

    // With a copy of the style. A negative x2 gives the width of the text, a negative y2 the top
    // gap, the font's height and the bottom gap. Null is the empty text.
    TEXT_BOX_WORD(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                  const WM_STYLE_SET& style, const char* text, signed char window);
    // The same without the copy: a style set is too large to have one in each word of a long text.
    TEXT_BOX_WORD(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                  SHARED_STYLE style, std::string text, signed char window);

    // These leave the size as it is. Null is the empty text.
    void set_text(const char* source);
    void append_text(const char* more);
    // Keeps the first `length` characters; nothing if the word has no more than that.
    void truncate_text(std::int32_t length);

    // The width in pixels of the first characters; 0 for a count below 1 or above the word's own.
    std::int32_t get_text_width(std::int32_t characters) const;
    std::int32_t get_text_length() const { return static_cast<std::int32_t>(text.size()); }

    void draw_object() override;

    std::string text;          // the characters shown; empty for an end of line
    const SHARED_STYLE style;  // the one in force when the word was made; never null
    // Indices into TEXT_BOX::text of the first and the last character; -1: none.
    std::int32_t text_start = -1, text_end = -1;
    bool continuation = false;   // not the first word of a tag: the cursor never lands in it
    std::int16_t cursor_x = -1;  // of the caret, in the word; -1: none
    std::int16_t selection_start_x = -1, selection_end_x = -1;  // highlighted; -1: nothing
    bool enabled = true;                                        // false: the text is faint
};

#endif  // MODULES_GUI_TEXT_BOX_WORD_H
