// The cursor of text boxes: where it stands, where it may go, and how it is kept in view.
#include <algorithm>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/wm_grid.h"
#include "text_box_position.h"

// --- The steps, value by value ---

// Defines one of the operations that go from a position to another.
#define DEFINE_TEXT_BOX_STEP(step)                                                              \
    bool TEXT_BOX::step(std::int16_t column, std::int16_t row, std::int16_t from_x,             \
                        std::int32_t offset, std::int16_t& out_column, std::int16_t& out_row,   \
                        std::int16_t& out_x, std::int32_t& out_offset) {                        \
        TEXT_BOX_POSITION to;                                                                   \
        const bool changed = TEXT_BOX_NAVIGATOR(*this).step({column, row, from_x, offset}, to); \
        out_column = to.column;                                                                 \
        out_row = to.row;                                                                       \
        out_x = to.x;                                                                           \
        out_offset = to.offset;                                                                 \
        return changed;                                                                         \
    }

DEFINE_TEXT_BOX_STEP(find_text_start)
DEFINE_TEXT_BOX_STEP(find_line_start)
DEFINE_TEXT_BOX_STEP(find_text_end)
DEFINE_TEXT_BOX_STEP(find_line_end)
DEFINE_TEXT_BOX_STEP(find_previous_char)
DEFINE_TEXT_BOX_STEP(find_next_char)
DEFINE_TEXT_BOX_STEP(find_previous_word)
DEFINE_TEXT_BOX_STEP(find_next_word)
DEFINE_TEXT_BOX_STEP(find_previous_line)
DEFINE_TEXT_BOX_STEP(find_next_line)

#undef DEFINE_TEXT_BOX_STEP

bool TEXT_BOX::find_nearest_char(std::int16_t px, std::int16_t py, std::int16_t& column,
                                 std::int16_t& row, std::int16_t& out_x, std::int32_t& offset) {
    TEXT_BOX_POSITION to;
    if (!TEXT_BOX_NAVIGATOR(*this).find_nearest_char(px, py, to)) {
        return false;
    }
    column = to.column;
    row = to.row;
    out_x = to.x;
    offset = to.offset;
    return !to.is_same_place(get_cursor());
}

bool TEXT_BOX::get_text_index_from_char(std::int16_t column, std::int16_t row, std::int16_t from_x,
                                        std::int32_t offset, std::int32_t& index) {
    return TEXT_BOX_NAVIGATOR(*this).get_index({column, row, from_x, offset}, index);
}

bool TEXT_BOX::get_char_from_text_index(std::int32_t index, std::int16_t& column, std::int16_t& row,
                                        std::int16_t& out_x, std::int32_t& offset) {
    TEXT_BOX_POSITION position;
    if (!TEXT_BOX_NAVIGATOR(*this).get_position(index, position)) {
        return false;
    }
    column = position.column;
    row = position.row;
    out_x = position.x;
    offset = position.offset;
    return true;
}

// --- The cursor ---

TEXT_BOX_POSITION TEXT_BOX::get_cursor() const {
    return {cursor_column, cursor_row, cursor_x, cursor_offset};
}

TEXT_BOX_POSITION TEXT_BOX::get_moving_end() const {
    if (!has_selection()) {
        return get_cursor();
    }
    return cursor_at_start ? TEXT_BOX_POSITION{start_column, start_row, start_x, start_offset}
                           : TEXT_BOX_POSITION{end_column, end_row, end_x, end_offset};
}

void TEXT_BOX::set_cursor(const TEXT_BOX_POSITION& position) {
    hide_cursor();
    cursor_column = position.column;
    cursor_row = position.row;
    cursor_x = position.x;
    cursor_offset = position.offset;
}

void TEXT_BOX::move_cursor(std::int16_t column, std::int16_t row, std::int16_t new_x,
                           std::int32_t offset) {
    const TEXT_BOX_POSITION position{column, row, new_x, offset};
    set_cursor(position);
    scroll_into_view(position);
}

// Behind a word's last character the caret stands on the word's last pixels. So it does at the end
// of a line that leaves no room for more.
TEXT_BOX_WORD* TEXT_BOX::find_caret_word(std::int16_t& caret_x) const {
    const TEXT_BOX_NAVIGATOR navigator(*this);
    std::int16_t column = cursor_column;
    TEXT_BOX_WORD* word = navigator.get_word(column, cursor_row);
    caret_x = cursor_x;
    while (word != nullptr && word->width < 1 && column > 0) {
        word = navigator.get_word(--column, cursor_row);
        caret_x = INT16_MAX;
    }
    if (word != nullptr) {
        const std::int32_t last = std::max(word->width - 1, 0);
        caret_x = static_cast<std::int16_t>(std::min<std::int32_t>(caret_x, last));
    }
    return word;
}

void TEXT_BOX::show_cursor() {
    std::int16_t caret_x = -1;
    TEXT_BOX_WORD* word = find_caret_word(caret_x);
    if (word != nullptr && word->cursor_x != caret_x) {
        word->cursor_x = caret_x;
        word->request_draw(0, 0);
    }
}

void TEXT_BOX::hide_cursor() {
    std::int16_t caret_x = -1;
    TEXT_BOX_WORD* word = find_caret_word(caret_x);
    if (word != nullptr && word->cursor_x != -1) {
        word->cursor_x = -1;
        word->request_draw(0, 0);
    }
}

void TEXT_BOX::show_cursor_or_selection() {
    if (has_selection()) {
        hide_cursor();
        show_selection();
    } else if ((flags & TBF_EDITABLE) && enabled) {
        show_cursor();
    }
}

bool TEXT_BOX::move_cursor_to_index(std::int32_t index) {
    TEXT_BOX_POSITION position;
    if (!TEXT_BOX_NAVIGATOR(*this).get_position(index, position)) {
        return false;
    }
    move_cursor(position.column, position.row, position.x, position.offset);
    return true;
}

// The layout after a change of the text, with the cursor at that index.
void TEXT_BOX::refresh_at(std::int32_t index) {
    const std::int16_t shift = get_line_shift();
    refresh();
    set_line_shift(shift);
    if (!move_cursor_to_index(index)) {
        move_cursor_to_end();  // beyond the rows that are laid out
    }
    if (has_focus()) {
        show_cursor_or_selection();
    }
}

void TEXT_BOX::refresh_in_place() {
    std::int32_t index = 0;
    const bool keeps = (flags & TBF_EDITABLE) && !default_text_shown &&
                       TEXT_BOX_NAVIGATOR(*this).get_index(get_moving_end(), index);
    if (keeps) {
        refresh_at(index);
    } else {
        refresh();
    }
}

// --- Scrolling ---

void TEXT_BOX::scroll_into_view(const TEXT_BOX_POSITION& position) {
    if (grid == nullptr || position.row < 0 || position.row >= grid->row_count) {
        return;
    }
    if (!(flags & TBF_MULTI_LINE)) {
        scroll_line_into_view(position);
    } else if (position.row == 0) {
        set_scroll_to_top();
    } else if (position.row == grid->row_count - 1) {
        set_scroll_to_bottom();
    } else {
        grid->check_scrolling();
        if (!grid->is_row_visible(position.row)) {
            grid->set_scroll_to_row(position.row, 0);
        }
    }
}

// How far a single line that is wider than the box has been moved to the left.
std::int16_t TEXT_BOX::get_line_shift() const {
    const bool single = !(flags & TBF_MULTI_LINE) && grid != nullptr && grid->row_count == 1;
    return single ? static_cast<std::int16_t>(std::max(-grid->rows[0]->x_offset, 0))
                  : std::int16_t{0};
}

void TEXT_BOX::set_line_shift(std::int16_t shift) {
    if ((flags & TBF_MULTI_LINE) || grid == nullptr || grid->row_count != 1) {
        return;
    }
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    const std::int16_t last = TEXT_BOX_NAVIGATOR(*this).get_last_column(0);
    if (!grid->get_cell_coords(last, 0, x1, y1, x2, y2)) {
        return;
    }
    // No further than to the end of the line, which must leave room for the caret.
    WM_GRID_ROW& row = *grid->rows[0];
    const std::int32_t line_end = x1 - row.x_offset - grid->x;
    const std::int32_t furthest = std::max(line_end - (text_width - 1), 0);
    const std::int32_t wanted = std::min<std::int32_t>(shift, furthest);
    if (wanted > 0 || row.x_offset < 0) {
        move_line(static_cast<std::int16_t>(-wanted));
    }
}

void TEXT_BOX::scroll_line_into_view(const TEXT_BOX_POSITION& position) {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    if (!grid->get_cell_coords(position.column, 0, x1, y1, x2, y2)) {
        return;
    }
    const std::int32_t caret = x1 - grid->x + std::max<std::int16_t>(position.x, 0);
    const std::int32_t beyond = caret - (text_width - 1);
    const std::int32_t move = caret < 0 ? -caret : -std::max(beyond, 0);
    if (move != 0) {
        move_line(static_cast<std::int16_t>(grid->rows[0]->x_offset + move));
    }
}

void TEXT_BOX::move_line(std::int16_t x_offset) {
    WM_GRID_ROW& row = *grid->rows[0];
    if (row.x_offset == x_offset) {
        return;
    }
    row.x_offset = x_offset;
    grid->refresh_layout();
    grid->request_draw(0, 0);
}
