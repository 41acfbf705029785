// The selection of text boxes.
#include <algorithm>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "text_box_position.h"

namespace {

// The highlight of one word; -1 for none.
void highlight(TEXT_BOX_WORD& word, std::int32_t from_x, std::int32_t to_x) {
    const auto start = static_cast<std::int16_t>(from_x);
    const auto end = static_cast<std::int16_t>(to_x);
    if (word.selection_start_x != start || word.selection_end_x != end) {
        word.selection_start_x = start;
        word.selection_end_x = end;
        word.request_draw(0, 0);
    }
}

// Calls `action(word, is_first, is_last)` for each word from one cell to another.
template <class ACTION>
void for_words(const TEXT_BOX_NAVIGATOR& navigator, const TEXT_BOX_POSITION& start,
               const TEXT_BOX_POSITION& end, ACTION action) {
    for (std::int16_t row = start.row; row <= end.row; ++row) {
        const std::int16_t first = row == start.row ? start.column : std::int16_t{0};
        const std::int16_t last = row == end.row ? end.column : navigator.get_last_column(row);
        for (std::int16_t column = first; column <= last; ++column) {
            if (TEXT_BOX_WORD* word = navigator.get_word(column, row)) {
                action(*word, row == start.row && column == first,
                       row == end.row && column == last);
            }
        }
    }
}

}  // namespace

void TEXT_BOX::update_selection(std::int16_t column, std::int16_t row, std::int16_t new_x,
                                std::int32_t offset, unsigned char extend) {
    const TEXT_BOX_POSITION position{column, row, new_x, offset};
    // The end that stays.
    TEXT_BOX_POSITION anchor = get_cursor();
    if (extend && has_selection()) {
        anchor = cursor_at_start
                     ? TEXT_BOX_POSITION{end_column, end_row, end_x, end_offset}
                     : TEXT_BOX_POSITION{start_column, start_row, start_x, start_offset};
    }
    const TEXT_BOX_NAVIGATOR navigator(*this);
    std::int32_t index = 0, anchor_index = 0;
    if (!navigator.get_index(position, index) || !navigator.get_index(anchor, anchor_index)) {
        return;
    }
    clear_selection();
    if (index == anchor_index) {
        set_cursor(position);
        return;
    }
    cursor_at_start = index < anchor_index;
    const TEXT_BOX_POSITION& start = cursor_at_start ? position : anchor;
    const TEXT_BOX_POSITION& end = cursor_at_start ? anchor : position;
    start_column = start.column;
    start_row = start.row;
    start_x = start.x;
    start_offset = start.offset;
    end_column = end.column;
    end_row = end.row;
    end_x = end.x;
    end_offset = end.offset;
}

void TEXT_BOX::show_selection() {
    if (!has_selection()) {
        return;
    }
    for_words(TEXT_BOX_NAVIGATOR(*this), {start_column, start_row, start_x, start_offset},
              {end_column, end_row, end_x, end_offset},
              [this](TEXT_BOX_WORD& word, bool first, bool last) {
                  highlight(word, first ? start_x : 0, last ? end_x : word.width - 1);
              });
}

void TEXT_BOX::hide_selection() {
    if (!has_selection()) {
        return;
    }
    for_words(TEXT_BOX_NAVIGATOR(*this), {start_column, start_row, start_x, start_offset},
              {end_column, end_row, end_x, end_offset},
              [](TEXT_BOX_WORD& word, bool, bool) { highlight(word, -1, -1); });
}

void TEXT_BOX::clear_selection() {
    hide_selection();
    start_column = start_row = start_x = -1;
    end_column = end_row = end_x = -1;
    start_offset = end_offset = -1;
    cursor_at_start = false;
}

void TEXT_BOX::select_all() {
    const TEXT_BOX_NAVIGATOR navigator(*this);
    TEXT_BOX_POSITION start, end;
    navigator.find_text_start({}, start);
    navigator.find_text_end({}, end);
    clear_selection();
    if (start.is_set()) {
        set_cursor(start);
        update_selection(end.column, end.row, end.x, end.offset, 0);
        set_cursor(end);
    }
}

bool TEXT_BOX::get_selected_range(TEXT_BOX_RANGE& range) const {
    const TEXT_BOX_NAVIGATOR navigator(*this);
    if (default_text_shown) {
        return false;
    }
    if (!has_selection()) {
        const bool found = navigator.get_index(get_cursor(), range.start);
        range.end = range.start;
        return found;
    }
    return navigator.get_index({start_column, start_row, start_x, start_offset}, range.start) &&
           navigator.get_index({end_column, end_row, end_x, end_offset}, range.end) &&
           range.start <= range.end;
}

// A selection can't hold more than what is laid out.
bool TEXT_BOX::is_all_selected() const {
    const TEXT_BOX_NAVIGATOR navigator(*this);
    TEXT_BOX_POSITION first, last;
    TEXT_BOX_RANGE all, selected;
    navigator.find_text_start({}, first);
    navigator.find_text_end({}, last);
    if (!navigator.get_index(first, all.start) || !navigator.get_index(last, all.end)) {
        return true;
    }
    return all.get_length() == 0 || (has_selection() && get_selected_range(selected) &&
                                     selected.start <= all.start && selected.end >= all.end);
}

WM_MESG TEXT_BOX::handle_select_all_request() {
    if (flags & TBF_SELECTABLE) {
        hide_cursor();
        select_all();
        show_cursor_or_selection();
    }
    return WM_MESG_NONE;
}
