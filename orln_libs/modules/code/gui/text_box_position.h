// Positions in the text of a TEXT_BOX, and the steps from one to another.
#ifndef MODULES_GUI_TEXT_BOX_POSITION_H
#define MODULES_GUI_TEXT_BOX_POSITION_H

#include <cstdint>

class TEXT_BOX;
class TEXT_BOX_WORD;

// A place between two characters: the cell of a word, and how far it is into the word. -1: none.
struct TEXT_BOX_POSITION {
    std::int16_t column = -1, row = -1;
    std::int16_t x = -1;       // in pixels
    std::int32_t offset = -1;  // in characters

    bool is_set() const { return column >= 0 && row >= 0; }
    bool is_same_place(const TEXT_BOX_POSITION& other) const {
        return column == other.column && row == other.row && offset == other.offset;
    }
};

// A range of indices of the text; `end` isn't part of it.
struct TEXT_BOX_RANGE {
    std::int32_t start = 0, end = 0;

    std::int32_t get_length() const { return end - start; }
};

// Steps through the laid-out words of a box. It holds nothing but the box, so it is made where it
// is needed. The positions that it yields lie in no `continuation` word.
//
// A word of a tag's name is one unit: the only place in it is its start, and the next one is behind
// the whole tag. A position behind the last character of a plain word is the same place as the
// start of the next word, unless a tag without a name stands between the two.
class TEXT_BOX_NAVIGATOR {
public:
    explicit TEXT_BOX_NAVIGATOR(const TEXT_BOX& of_box) : box(of_box) {}

    // Each stores where the step leads, and yields whether that is another place. Without a text,
    // or from a cell that doesn't exist, there is no step.
    bool find_text_start(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_text_end(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_line_start(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_line_end(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_previous_char(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_next_char(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    // To where a word begins; not beyond the start or the end of a row.
    bool find_previous_word(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_next_word(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    // To the same x; beyond the first or the last row to its start or end.
    bool find_previous_line(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    bool find_next_line(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const;
    // The character of the visible rows that is nearest to a point of the window. False without a
    // text.
    bool find_nearest_char(std::int16_t px, std::int16_t py, TEXT_BOX_POSITION& to) const;

    // Between positions and indices. False for a cell that doesn't exist, or an index outside the
    // text.
    bool get_index(const TEXT_BOX_POSITION& position, std::int32_t& index) const;
    bool get_position(std::int32_t index, TEXT_BOX_POSITION& position) const;
    // What is removed with the character that stands at the position, or before it: one character,
    // or the whole of a tag. False at the text's end or start.
    bool get_next_range(const TEXT_BOX_POSITION& position, TEXT_BOX_RANGE& range) const;
    bool get_previous_range(const TEXT_BOX_POSITION& position, TEXT_BOX_RANGE& range) const;

    TEXT_BOX_WORD* get_word(std::int16_t column, std::int16_t row) const;
    // The last cell of a row, which ends the line; -1 for a row that isn't there.
    std::int16_t get_last_column(std::int16_t row) const;
    std::int16_t get_row_count() const;

private:
    bool is_line_end(std::int16_t column, std::int16_t row) const;
    // The word stands for a part of a tag.
    bool is_unit(const TEXT_BOX_WORD& word) const;
    TEXT_BOX_POSITION make(std::int16_t column, std::int16_t row, std::int32_t offset) const;
    TEXT_BOX_POSITION make_row_start(std::int16_t row) const;
    TEXT_BOX_POSITION make_row_end(std::int16_t row) const;
    // One step of a character, into any word.
    bool step_back(TEXT_BOX_POSITION& position) const;
    bool step_forward(TEXT_BOX_POSITION& position) const;
    // From behind a word's last character to the next word.
    TEXT_BOX_POSITION normalise(const TEXT_BOX_POSITION& position) const;
    TEXT_BOX_POSITION leave_continuation(TEXT_BOX_POSITION position) const;
    bool is_space_at(const TEXT_BOX_POSITION& position) const;
    bool get_range_at(const TEXT_BOX_POSITION& position, TEXT_BOX_RANGE& range) const;
    bool find_in_row(std::int32_t index, std::int16_t row, TEXT_BOX_POSITION& position) const;
    bool find_in_other_row(const TEXT_BOX_POSITION& from, std::int16_t row,
                           TEXT_BOX_POSITION& to) const;
    // How a character is chosen: the one whose span holds the x, or the one that begins nearest to
    // it.
    enum PLACE_RULE { HOLDS_X, BEGINS_NEAREST };
    TEXT_BOX_POSITION find_at_x(std::int16_t row, std::int32_t px, PLACE_RULE rule) const;
    std::int16_t find_row_at(std::int16_t py) const;

    const TEXT_BOX& box;
};

#endif  // MODULES_GUI_TEXT_BOX_POSITION_H
