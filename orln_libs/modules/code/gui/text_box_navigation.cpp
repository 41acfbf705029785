// Steps through the laid-out text of a TEXT_BOX, and the way between positions and indices.
#include <algorithm>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_grid.h"
#include "text_box_layout.h"
#include "text_box_position.h"

namespace {

// The count of leading characters that are not wider than `width`.
std::int32_t count_chars(const TEXT_BOX_WORD& word, std::int32_t width) {
    std::int32_t low = 0, high = word.get_text_length();
    while (low < high) {
        const std::int32_t middle = (low + high + 1) / 2;
        if (word.get_text_width(middle) <= width) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return low;
}

}  // namespace

// --- Cells ---

TEXT_BOX_WORD* TEXT_BOX_NAVIGATOR::get_word(std::int16_t column, std::int16_t row) const {
    if (box.grid == nullptr || column < 0 || row < 0) {
        return nullptr;
    }
    // A text box puts nothing else into its grid.
    return static_cast<TEXT_BOX_WORD*>(box.grid->get_object(column, row));
}

std::int16_t TEXT_BOX_NAVIGATOR::get_row_count() const {
    return box.grid != nullptr ? box.grid->row_count : std::int16_t{0};
}

std::int16_t TEXT_BOX_NAVIGATOR::get_last_column(std::int16_t row) const {
    if (row < 0 || row >= get_row_count()) {
        return -1;
    }
    return static_cast<std::int16_t>(box.grid->rows[static_cast<std::size_t>(row)]->columns - 1);
}

bool TEXT_BOX_NAVIGATOR::is_line_end(std::int16_t column, std::int16_t row) const {
    return column == get_last_column(row);
}

// A plain word shows its "<", or a star for it.
bool TEXT_BOX_NAVIGATOR::is_unit(const TEXT_BOX_WORD& word) const {
    return (word.text.empty() || word.text.front() == ' ') && word.text_start >= 0 &&
           word.text_start < static_cast<std::int32_t>(box.text.size()) &&
           box.text[static_cast<std::size_t>(word.text_start)] == '<';
}

TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::make(std::int16_t column, std::int16_t row,
                                           std::int32_t offset) const {
    const TEXT_BOX_WORD* word = get_word(column, row);
    const std::int32_t x = word != nullptr ? word->get_text_width(offset) : 0;
    return {column, row, static_cast<std::int16_t>(std::clamp(x, 0, 32767)), offset};
}

// Forward to the first word that the cursor may stand in. The end of a line always is one.
TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::leave_continuation(TEXT_BOX_POSITION position) const {
    const std::int16_t last = get_last_column(position.row);
    const std::int16_t first = position.column;
    while (position.column < last) {
        const TEXT_BOX_WORD* word = get_word(position.column, position.row);
        if (word == nullptr || !word->continuation) {
            break;
        }
        ++position.column;
    }
    return position.column == first ? position : make(position.column, position.row, 0);
}

TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::make_row_start(std::int16_t row) const {
    return leave_continuation(make(0, row, 0));
}

TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::make_row_end(std::int16_t row) const {
    return make(get_last_column(row), row, 0);
}

TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::normalise(const TEXT_BOX_POSITION& position) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    if (word == nullptr || is_line_end(position.column, position.row) || is_unit(*word) ||
        position.offset < word->get_text_length()) {
        return position;
    }
    return leave_continuation(
        make(static_cast<std::int16_t>(position.column + 1), position.row, 0));
}

// --- Indices ---

bool TEXT_BOX_NAVIGATOR::get_index(const TEXT_BOX_POSITION& position, std::int32_t& index) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    if (word == nullptr) {
        return false;
    }
    const auto length = static_cast<std::int32_t>(box.text.size());
    if (is_line_end(position.column, position.row)) {
        // Of a wrapped line, the place behind its last character.
        const TEXT_BOX_WORD* before =
            get_word(static_cast<std::int16_t>(position.column - 1), position.row);
        index = word->text_start < 0 ? length : word->text_start;
        if (before != nullptr && before->text_end >= index) {
            index = before->text_end + 1;
        }
    } else if (word->text_start < 0) {
        return false;
    } else if (is_unit(*word)) {
        index = word->text_start;
    } else if (word->text_end - word->text_start + 1 == word->get_text_length()) {
        index = word->text_start + std::clamp(position.offset, 0, word->get_text_length());
    } else {
        index = word->text_start;
        for (std::int32_t left = position.offset; index < length; ++index) {
            const char character = box.text[static_cast<std::size_t>(index)];
            if (!TEXT_BOX_LAYOUT::is_dropped(character) && left-- <= 0) {
                break;
            }
        }
    }
    index = std::min(index, length);
    return true;
}

bool TEXT_BOX_NAVIGATOR::get_position(std::int32_t index, TEXT_BOX_POSITION& position) const {
    if (index < 0 || index > static_cast<std::int32_t>(box.text.size())) {
        return false;
    }
    const std::int16_t count = get_row_count();
    for (std::int16_t row = 0; row < count; ++row) {
        std::int32_t line_end = 0;
        const bool last = row == count - 1;
        if (!get_index(make_row_end(row), line_end) || (index > line_end && !last)) {
            continue;
        }
        std::int32_t next_start = 0;
        if (index == line_end && !last &&
            get_index(make_row_start(static_cast<std::int16_t>(row + 1)), next_start) &&
            next_start == index) {
            continue;  // at a wrap the start of the next line, where typing goes on
        }
        return find_in_row(index, row, position);
    }
    return false;
}

bool TEXT_BOX_NAVIGATOR::find_in_row(std::int32_t index, std::int16_t row,
                                     TEXT_BOX_POSITION& position) const {
    const std::int16_t last = get_last_column(row);
    std::int16_t before = -1;  // the last plain word, if nothing else has followed
    for (std::int16_t column = 0; column <= last; ++column) {
        const TEXT_BOX_WORD* word = get_word(column, row);
        if (word == nullptr || (word->continuation && column < last)) {
            before = -1;
            continue;
        }
        std::int32_t start = 0;
        if (!get_index({column, row, 0, 0}, start)) {
            continue;
        }
        if (index < start && before >= 0 && get_word(before, row)->text_end + 1 == index) {
            position = make(before, row, get_word(before, row)->get_text_length());
            return true;
        }
        if (index <= start || column == last || (is_unit(*word) && index <= word->text_end)) {
            position = make(column, row, 0);
            return true;
        }
        if (index <= word->text_end) {
            std::int32_t offset = 0;
            for (std::int32_t i = word->text_start; i < index; ++i) {
                const char character = box.text[static_cast<std::size_t>(i)];
                offset += TEXT_BOX_LAYOUT::is_dropped(character) ? 0 : 1;
            }
            position = make(column, row, std::min(offset, word->get_text_length()));
            return true;
        }
        before = is_unit(*word) ? std::int16_t{-1} : column;
    }
    return false;
}

// --- Characters ---

bool TEXT_BOX_NAVIGATOR::step_back(TEXT_BOX_POSITION& position) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    if (word == nullptr) {
        return false;
    }
    if (position.offset > 0 && !is_line_end(position.column, position.row) && !is_unit(*word)) {
        position = make(position.column, position.row, position.offset - 1);
        return true;
    }
    if (position.column > 0) {
        const auto column = static_cast<std::int16_t>(position.column - 1);
        const TEXT_BOX_WORD* before = get_word(column, position.row);
        const bool plain = before != nullptr && before->get_text_length() > 0 && !is_unit(*before);
        position = make(column, position.row, plain ? before->get_text_length() - 1 : 0);
        return true;
    }
    if (position.row == 0) {
        return false;
    }
    position = make_row_end(static_cast<std::int16_t>(position.row - 1));
    return true;
}

bool TEXT_BOX_NAVIGATOR::step_forward(TEXT_BOX_POSITION& position) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    if (word == nullptr) {
        return false;
    }
    if (is_line_end(position.column, position.row)) {
        if (position.row + 1 >= get_row_count()) {
            return false;
        }
        position = make(0, static_cast<std::int16_t>(position.row + 1), 0);
    } else if (!is_unit(*word) && position.offset + 1 < word->get_text_length()) {
        position = make(position.column, position.row, position.offset + 1);
    } else {
        position = make(static_cast<std::int16_t>(position.column + 1), position.row, 0);
    }
    return true;
}

bool TEXT_BOX_NAVIGATOR::find_previous_char(const TEXT_BOX_POSITION& from,
                                            TEXT_BOX_POSITION& to) const {
    to = from;
    std::int32_t first = 0, index = 0;
    if (!get_index(from, first)) {
        return false;
    }
    TEXT_BOX_POSITION position = from;
    while (step_back(position)) {
        if (get_index(position, index) && index != first &&
            !get_word(position.column, position.row)->continuation) {
            to = position;
            return true;
        }
    }
    return false;
}

bool TEXT_BOX_NAVIGATOR::find_next_char(const TEXT_BOX_POSITION& from,
                                        TEXT_BOX_POSITION& to) const {
    to = from;
    std::int32_t first = 0, index = 0;
    TEXT_BOX_POSITION position = normalise(from);
    if (!get_index(position, first)) {
        return false;
    }
    while (step_forward(position)) {
        if (get_index(position, index) && index != first &&
            !get_word(position.column, position.row)->continuation) {
            to = position;
            return true;
        }
    }
    return false;
}

bool TEXT_BOX_NAVIGATOR::get_range_at(const TEXT_BOX_POSITION& position,
                                      TEXT_BOX_RANGE& range) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    std::int32_t index = 0;
    if (word == nullptr || !get_index(position, index) ||
        index >= static_cast<std::int32_t>(box.text.size())) {
        return false;
    }
    if (is_line_end(position.column, position.row)) {
        range = {index, index + 1};
        return box.text[static_cast<std::size_t>(index)] == '\n';
    }
    if (is_unit(*word)) {
        range = {word->text_start, word->text_end + 1};
        return true;
    }
    range = {index, index + 1};
    return position.offset < word->get_text_length();
}

bool TEXT_BOX_NAVIGATOR::get_next_range(const TEXT_BOX_POSITION& position,
                                        TEXT_BOX_RANGE& range) const {
    TEXT_BOX_POSITION place = normalise(position), next;
    while (!get_range_at(place, range)) {
        if (!find_next_char(place, next)) {
            return false;
        }
        place = next;
    }
    return true;
}

bool TEXT_BOX_NAVIGATOR::get_previous_range(const TEXT_BOX_POSITION& position,
                                            TEXT_BOX_RANGE& range) const {
    TEXT_BOX_POSITION place = position, previous;
    while (find_previous_char(place, previous)) {
        if (get_range_at(previous, range)) {
            return true;
        }
        place = previous;
    }
    return false;
}

// --- Words ---

bool TEXT_BOX_NAVIGATOR::is_space_at(const TEXT_BOX_POSITION& position) const {
    const TEXT_BOX_WORD* word = get_word(position.column, position.row);
    if (word == nullptr || is_line_end(position.column, position.row)) {
        return true;
    }
    return !is_unit(*word) && position.offset < word->get_text_length() &&
           word->text[static_cast<std::size_t>(position.offset)] == ' ';
}

bool TEXT_BOX_NAVIGATOR::find_previous_word(const TEXT_BOX_POSITION& from,
                                            TEXT_BOX_POSITION& to) const {
    TEXT_BOX_POSITION position = from, before;
    while (find_previous_char(position, before)) {
        position = before;
        if (position.is_same_place(make_row_start(position.row)) ||
            (!is_space_at(position) && find_previous_char(position, before) &&
             is_space_at(before))) {
            break;
        }
    }
    to = position;
    return !to.is_same_place(from);
}

bool TEXT_BOX_NAVIGATOR::find_next_word(const TEXT_BOX_POSITION& from,
                                        TEXT_BOX_POSITION& to) const {
    TEXT_BOX_POSITION position = from, next;
    while (find_next_char(position, next)) {
        const bool behind_space = is_space_at(normalise(position));
        position = next;
        if (is_line_end(position.column, position.row) ||
            (behind_space && !is_space_at(position))) {
            break;
        }
    }
    to = position;
    return !to.is_same_place(from);
}

// --- Lines ---

bool TEXT_BOX_NAVIGATOR::find_text_start(const TEXT_BOX_POSITION& from,
                                         TEXT_BOX_POSITION& to) const {
    to = get_row_count() > 0 ? make_row_start(0) : from;
    return !to.is_same_place(from);
}

bool TEXT_BOX_NAVIGATOR::find_text_end(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const {
    const std::int16_t count = get_row_count();
    to = count > 0 ? make_row_end(static_cast<std::int16_t>(count - 1)) : from;
    return !to.is_same_place(from);
}

bool TEXT_BOX_NAVIGATOR::find_line_start(const TEXT_BOX_POSITION& from,
                                         TEXT_BOX_POSITION& to) const {
    to = get_word(from.column, from.row) != nullptr ? make_row_start(from.row) : from;
    return !to.is_same_place(from);
}

bool TEXT_BOX_NAVIGATOR::find_line_end(const TEXT_BOX_POSITION& from, TEXT_BOX_POSITION& to) const {
    to = get_word(from.column, from.row) != nullptr ? make_row_end(from.row) : from;
    return !to.is_same_place(from);
}

TEXT_BOX_POSITION TEXT_BOX_NAVIGATOR::find_at_x(std::int16_t row, std::int32_t px,
                                                PLACE_RULE rule) const {
    const std::int16_t last = get_last_column(row);
    for (std::int16_t column = 0; column < last; ++column) {
        const TEXT_BOX_WORD* word = get_word(column, row);
        std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        if (word == nullptr || !box.grid->get_cell_coords(column, row, x1, y1, x2, y2) || px > x2) {
            continue;
        }
        const std::int32_t distance = px - x1;
        const std::int32_t length = word->get_text_length();
        std::int32_t offset = 0;
        if (distance <= 0 || word->continuation) {
            offset = 0;
        } else if (length == 0 || is_unit(*word)) {
            offset = distance * 2 <= x2 - x1 ? 0 : length + 1;
        } else {
            offset = std::min(count_chars(*word, distance), length - 1);
            const std::int32_t before = word->get_text_width(offset);
            const std::int32_t behind = word->get_text_width(offset + 1);
            offset += rule == BEGINS_NEAREST && behind - distance < distance - before ? 1 : 0;
        }
        if (offset < length || offset == 0) {
            return leave_continuation(make(column, row, offset));
        }
        return leave_continuation(make(static_cast<std::int16_t>(column + 1), row, 0));
    }
    return make_row_end(row);
}

bool TEXT_BOX_NAVIGATOR::find_in_other_row(const TEXT_BOX_POSITION& from, std::int16_t row,
                                           TEXT_BOX_POSITION& to) const {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    if (!box.grid->get_cell_coords(from.column, from.row, x1, y1, x2, y2)) {
        return false;
    }
    to = find_at_x(row, x1 + from.x, BEGINS_NEAREST);
    return !to.is_same_place(from);
}

bool TEXT_BOX_NAVIGATOR::find_previous_line(const TEXT_BOX_POSITION& from,
                                            TEXT_BOX_POSITION& to) const {
    to = from;
    if (get_word(from.column, from.row) == nullptr) {
        return false;
    }
    return from.row == 0 ? find_text_start(from, to)
                         : find_in_other_row(from, static_cast<std::int16_t>(from.row - 1), to);
}

bool TEXT_BOX_NAVIGATOR::find_next_line(const TEXT_BOX_POSITION& from,
                                        TEXT_BOX_POSITION& to) const {
    to = from;
    if (get_word(from.column, from.row) == nullptr) {
        return false;
    }
    return from.row + 1 >= get_row_count()
               ? find_text_end(from, to)
               : find_in_other_row(from, static_cast<std::int16_t>(from.row + 1), to);
}

// --- Points ---

std::int16_t TEXT_BOX_NAVIGATOR::find_row_at(std::int16_t py) const {
    box.grid->check_scrolling();
    const auto end = static_cast<std::int16_t>(get_row_count() - 1);
    const std::int16_t first = std::clamp(box.grid->first_visible, std::int16_t{0}, end);
    const std::int16_t last =
        box.grid->last_visible < first ? end : std::min(box.grid->last_visible, end);
    for (std::int16_t row = first; row < last; ++row) {
        std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        if (box.grid->get_cell_coords(0, row, x1, y1, x2, y2) && py <= y2) {
            return row;
        }
    }
    return last;
}

bool TEXT_BOX_NAVIGATOR::find_nearest_char(std::int16_t px, std::int16_t py,
                                           TEXT_BOX_POSITION& to) const {
    if (get_row_count() == 0) {
        return false;
    }
    WM_REGION view{box.grid->y, box.grid->x,
                   static_cast<std::int16_t>(box.grid->x + box.grid->width - 1),
                   static_cast<std::int16_t>(box.grid->y + box.grid->height - 1)};
    if (const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance()) {
        const WM_REGION* region = manager->get_is_in_me_region(box.window);
        if (region != nullptr && region->left >= 0) {
            view = {std::max(view.top, region->top), std::max(view.left, region->left),
                    std::min(view.right, region->right), std::min(view.bottom, region->bottom)};
        }
    }
    // Of an empty view the top left corner.
    px = std::max(std::min(px, view.right), view.left);
    py = std::max(std::min(py, view.bottom), view.top);
    to = find_at_x(find_row_at(py), px, HOLDS_X);
    return true;
}
