#include "text_box_layout.h"

#include <algorithm>
#include <utility>

#include "modules/winman/wm_grid.h"
#include "to_short.h"
#include "word_font.h"

TEXT_BOX_LAYOUT::TEXT_BOX_LAYOUT(TEXT_BOX& laid_out, std::string_view shown, bool may_narrow_)
    : box(laid_out),
      text(shown.substr(0, INT32_MAX)),
      may_narrow(may_narrow_),
      multi_line((box.flags & TBF_MULTI_LINE) != 0),
      keeps_spaces((box.flags & TBF_EDITABLE) != 0),
      hides_text((box.flags & TBF_PASSWORD) != 0 && !box.shows_default_text()),
      finder(text) {
    word.reserve(MAX_WORD);
}

TEXT_BOX_LAYOUT::~TEXT_BOX_LAYOUT() {
    for (std::int32_t i = 0; i < line.get_count(); ++i) {
        delete line.get<TEXT_BOX_WORD>(i);
    }
}

// --- The walk ---

bool TEXT_BOX_LAYOUT::run() {
    const auto length = static_cast<std::int32_t>(text.size());
    while (!stopped && !(at == length && word.empty())) {
        // Finishing a word may go back in the text.
        if (word_ends_here()) {
            finish_word();
        } else {
            take_character();
        }
    }
    if (!outgrown) {
        end_line(at, false);
    }
    return !outgrown;
}

char TEXT_BOX_LAYOUT::get_character(std::int32_t index) const {
    const char c = text[static_cast<std::size_t>(index)];
    return c == '\n' && !multi_line ? ' ' : c;
}

bool TEXT_BOX_LAYOUT::word_ends_here() const {
    if (word.empty()) {
        return false;
    }
    if (static_cast<std::size_t>(at) == text.size() || word.size() == MAX_WORD) {
        return true;
    }
    const char c = get_character(at);
    if (is_dropped(c)) {
        return false;
    }
    return c == '\n' || is_tag_start(c) || (c == ' ') != (word.front() == ' ');
}

void TEXT_BOX_LAYOUT::take_character() {
    const char c = get_character(at);
    TEXT_BOX_TAG_PLACE place;
    if (is_tag_start(c) && finder.find(at, place)) {
        take_tag(place);
        return;
    }
    if (c == '\n') {
        end_line(at, false);
        wrapped = false;
    } else if (!is_dropped(c)) {
        if (word.empty()) {
            word_start = at;
        }
        word_end = at;
        word.push_back(c);
    }
    ++at;
}

// --- Words ---

bool TEXT_BOX_LAYOUT::is_spaces(const TEXT_BOX_WORD& made) {
    return !made.text.empty() && made.text.front() == ' ';
}

void TEXT_BOX_LAYOUT::make_empty(TEXT_BOX_WORD& made) {
    made.width = 0;
    made.clear_objects(0, 1);
}

std::string TEXT_BOX_LAYOUT::get_displayed(std::string_view characters) const {
    return hides_text ? std::string(characters.size(), '*') : std::string(characters);
}

bool TEXT_BOX_LAYOUT::fits(std::int32_t word_width) const {
    return !multi_line || line_x + word_width <= get_room();
}

void TEXT_BOX_LAYOUT::finish_word() {
    auto made = std::make_unique<TEXT_BOX_WORD>(std::int16_t{0}, std::int16_t{0}, std::int16_t{-1},
                                                std::int16_t{-1}, get_style(look),
                                                get_displayed(word), box.window);
    made->text_start = word_start;
    made->text_end = word_end;
    const bool opens_wrapped = wrapped && line.is_empty() && is_spaces(*made) && !keeps_spaces;
    const bool is_too_long = made->width > get_room() && word.size() > 1 && !opens_wrapped;
    if (is_too_long && !fits(made->width)) {
        add_cut_word(std::move(made));
        return;
    }
    const auto length = static_cast<std::int32_t>(word.size());
    const std::int32_t height = made->height;
    word.clear();
    place(std::move(made), height);
    box.plain_length += stopped ? 0 : length;
}

// Adds as much of the word as there is room for; the walk goes on behind that, on a new line.
void TEXT_BOX_LAYOUT::add_cut_word(WORD made) {
    const WORD_FONT font(*made->style);
    const std::int32_t room = get_room() - line_x;
    std::int32_t kept = 0, kept_width = 0;
    for (const char c : made->text) {
        const std::int32_t next_width = kept_width + font.get_char_width(c);
        if (kept > 0 && next_width > room) {
            break;
        }
        kept_width = next_width;
        ++kept;
    }
    made->truncate_text(kept);
    made->width = static_cast<std::int16_t>(kept_width);
    at = word_start;
    for (std::int32_t left = kept; left > 0; ++at) {
        if (!is_dropped(get_character(at))) {
            made->text_end = at;
            --left;
        }
    }
    box.plain_length += kept;
    word.clear();
    const std::int32_t height = made->height;
    append(std::move(made), height);
    // The caret at the end of this line stands behind the last character.
    line_end = at;
    wrap_line();
}

void TEXT_BOX_LAYOUT::place(WORD made, std::int32_t height) {
    if (!fits(made->width) && !line.is_empty()) {
        if (is_spaces(*previous) && !keeps_spaces) {
            line_x -= previous->width;
            make_empty(*previous);
        }
        wrap_line();
        if (stopped) {
            at = made->text_start;
            return;
        }
    }
    if (wrapped && line.is_empty() && is_spaces(*made) && !keeps_spaces) {
        make_empty(*made);
    }
    if (is_full() || indent + line_x + made->width > INT16_MAX) {
        at = made->text_start;
        stopped = true;
        return;
    }
    append(std::move(made), height);
}

void TEXT_BOX_LAYOUT::append(WORD made, std::int32_t height) {
    made->enabled = box.enabled;
    text_height = std::max(text_height, height);
    line_x += made->width;
    line_end = made->text_end;
    if (line.add(made.get())) {
        previous = made.release();
    } else {
        stopped = true;
    }
}

// --- Lines ---

std::int16_t TEXT_BOX_LAYOUT::get_left_margin() const {
    return indent_count > 0 ? indents[indent_count - 1] : std::int16_t{0};
}

void TEXT_BOX_LAYOUT::wrap_line() {
    end_line(line_end, true);
    wrapped = true;
}

void TEXT_BOX_LAYOUT::end_line(std::int32_t marker_index, bool justify) {
    // What stands behind the text isn't marked with its background.
    TEXT_BOX_LOOK end_look = look;
    end_look.bg = COLOUR_INVISIBLE;
    auto marker = std::make_unique<TEXT_BOX_WORD>(std::int16_t{0}, std::int16_t{0}, std::int16_t{0},
                                                  std::int16_t{-1}, get_style(end_look),
                                                  std::string(), box.window);
    marker->text_start = marker->text_end = marker_index;
    marker->enabled = box.enabled;
    if (line.is_empty()) {
        text_height = marker->height;  // that of the caret
    }
    if (line.add(marker.get())) {
        static_cast<void>(marker.release());
    }
    extent = std::max(extent, indent + line_x);
    make_row(justify);
    line.clear();
    previous = nullptr;
    line_x = text_height = 0;
    indent = get_left_margin();
    ++row;
    outgrown = may_narrow && box.grid->is_overflowing();
    stopped = stopped || outgrown || row >= TEXT_BOX::MAX_ROWS - 1;
}

// As high as its text asks for, but no lower than the grid's rows. A single line has the height of
// its box, if that isn't to be found.
void TEXT_BOX_LAYOUT::make_row(bool justify) {
    WM_GRID& grid = *box.grid;
    const std::int16_t usual = grid.row_height;
    if (multi_line || box.auto_height) {
        grid.set_row_height(
            to_short(std::max<std::int32_t>(usual, text_height - grid.grid_style.y_spacing)));
    }
    box.create_text_box_words(row, indent, get_left_margin(), line, justify);
    grid.set_row_height(usual);
}
