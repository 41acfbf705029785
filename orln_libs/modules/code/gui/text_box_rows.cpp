// From the words of a line to a row of the grid, and where the grid stands in the box.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <vector>

#include "kvcore/text_field.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "text_box_layout.h"
#include "to_short.h"

namespace {

constexpr std::int32_t SINGLE_LINE_ROOM = 8;  // pixels that a single line is higher than its text

bool is_gap(const TEXT_BOX_WORD& word) {
    return word.width > 0 && !word.text.empty() && word.text.front() == ' ';
}

// The words of a line without the end of the line.
class LINE_WORDS {
public:
    explicit LINE_WORDS(const PTRARRAY& array) : words(array) {}

    TEXT_BOX_WORD* const* begin() const {
        return reinterpret_cast<TEXT_BOX_WORD* const*>(words.get_data());
    }
    TEXT_BOX_WORD* const* end() const { return begin() + std::max(words.get_count() - 1, 0); }

private:
    const PTRARRAY& words;
};

std::int32_t get_total_width(const LINE_WORDS& words) {
    std::int32_t total = 0;
    for (const TEXT_BOX_WORD* word : words) {
        total += word->width;
    }
    return total;
}

// Widens the gaps that begin at `fixed_indent` or behind it, so that the line fills `room`. Without
// such a gap the line stays, and false is the answer.
bool stretch_gaps(const LINE_WORDS& words, std::int32_t indent, std::int32_t fixed_indent,
                  std::int32_t room, std::int32_t total) {
    std::vector<TEXT_BOX_WORD*> gaps;
    std::int32_t at = indent;
    for (TEXT_BOX_WORD* word : words) {
        if (at >= fixed_indent && is_gap(*word)) {
            gaps.push_back(word);
        }
        at += word->width;
    }
    auto left = static_cast<std::int32_t>(gaps.size());
    for (TEXT_BOX_WORD* gap : gaps) {
        const std::int32_t share = std::max((room - total) / left--, 0);
        gap->resize(to_short(gap->width + share), gap->height, 1);  // with the space of a link
        total += share;
    }
    return !gaps.empty();
}

}  // namespace

void TEXT_BOX::create_text_box_words(std::int16_t row, std::int16_t indent,
                                     std::int16_t fixed_indent, PTRARRAY& words,
                                     unsigned char justify) {
    const LINE_WORDS line(words);
    const std::int32_t total = get_total_width(line);
    const std::int32_t room = text_width - indent;
    const bool stretched =
        (flags & TBF_JUSTIFY) && justify && stretch_gaps(line, indent, fixed_indent, room, total);
    std::int32_t offset = indent;
    const std::uint32_t alignment = background->script_flags;
    if (!stretched && !(alignment & SCRIPT_LEFT_JUSTIFY_TEXT) && room > total) {
        const std::int32_t space = room - total;
        offset += alignment & SCRIPT_RIGHT_JUSTIFY_TEXT ? space : space / 2;
    }
    std::vector<std::int16_t> layout;
    layout.reserve(static_cast<std::size_t>(words.get_count()));
    for (const TEXT_BOX_WORD* word : line) {
        layout.push_back(static_cast<std::int16_t>(-word->width));
    }
    layout.push_back(stretched ? 0 : 1);
    grid->set_current_layout(static_cast<std::int16_t>(layout.size()), layout.data());
    for (std::int32_t column = 0; column < words.get_count(); ++column) {
        auto* word = words.get<TEXT_BOX_WORD>(column);
        if (grid->add_object(static_cast<std::int16_t>(column), row, word) == nullptr) {
            delete word;
        }
    }
    if (row < grid->row_count) {
        grid->rows[static_cast<std::size_t>(row)]->x_offset = to_short(offset);
    }
}

// --- Where everything stands ---

struct TEXT_BOX::PLACES {
    std::int32_t left, top, right, bottom;  // inside the gaps of the background
    std::int32_t grid_left, grid_top, grid_bottom;
    std::int32_t line_height, blank_width;
};

TEXT_BOX::PLACES TEXT_BOX::find_places() {
    const WM_STYLE_SET& style = GUI_SKIN::get_style_set("TEXT_BOX_BACKGROUND", style_prefix);
    PLACES places;
    places.left = x + style.get_object_left_gap();
    places.top = y + style.get_object_top_gap();
    places.right = x + width - 1 - style.get_object_right_gap();
    places.bottom = y + height - 1 - style.get_object_bottom_gap();
    const TEXT_BOX_WORD probe(0, 0, -1, -1, GUI_SKIN::get_style_set("TEXT_BOX_WORD", style_prefix),
                              " ", window);
    places.line_height = probe.height;
    places.blank_width = probe.width;
    places.grid_left = places.left;
    places.grid_top = places.top;
    places.grid_bottom = places.bottom;
    make_info(places);
    if (info != nullptr) {
        places.grid_bottom = places.bottom - info->height - style.y_spacing;
    }
    if (!(flags & TBF_MULTI_LINE)) {
        const std::int32_t inner = places.bottom - places.top + 1;
        const std::int32_t line = std::min(places.line_height + SINGLE_LINE_ROOM, inner);
        places.grid_top += (inner - line) / 2;
        places.grid_bottom = places.grid_top + line - 1;
    }
    make_prefix(places);
    if (prefix_word != nullptr) {
        places.grid_left += prefix_word->width + places.blank_width;
    }
    return places;
}

void TEXT_BOX::make_info(const PLACES& places) {
    const bool wanted = (flags & TBF_SHOW_REMAINING) && (flags & TBF_MULTI_LINE);
    if (!wanted && info != nullptr) {
        background->remove_object(info, 1, 0);
        info = nullptr;
    }
    if (!wanted || info != nullptr) {
        return;
    }
    // Made at the origin: beyond the window's edge its far edge may be negative, which has a
    // meaning.
    info = new WM_SCRIPT(0, 0, to_short(std::max(places.right - places.left, 0)), -1,
                         GUI_SKIN::get_style_set("TEXT_BOX_INFO", style_prefix),
                         "Info will go here...", window);
    info->move(to_short(places.left), to_short(places.bottom - info->height + 1));
    background->add_object(info, 0);
}

void TEXT_BOX::make_prefix(const PLACES& places) {
    if (prefix_word != nullptr) {
        background->remove_object(prefix_word, 1, 0);
        prefix_word = nullptr;
    }
    const bool has_prefix = prefix_text != nullptr && *prefix_text != '\0';
    if (!has_prefix || (flags & TBF_MULTI_LINE) || shows_default_text()) {
        return;
    }
    WM_STYLE_SET style;
    set_style_set(COLOUR_INVISIBLE, COLOUR_INVISIBLE, TEXT_BOX_FADED, 0, 0, style);
    prefix_word =
        new TEXT_BOX_WORD(0, 0, -1, to_short(std::max(places.grid_bottom - places.grid_top, 0)),
                          style, prefix_text, window);
    prefix_word->move(to_short(places.left), to_short(places.grid_top));
    prefix_word->enabled = enabled;
    background->add_object(prefix_word, 0);
}

// A grid that stands where it is to stand is kept, with the focus that it may have.
void TEXT_BOX::make_grid(const PLACES& places) {
    const WM_STYLE_SET& style = GUI_SKIN::get_style_set("TEXT_BOX_GRID", style_prefix);
    const std::int16_t left = to_short(places.grid_left), top = to_short(places.grid_top);
    const std::int16_t right = to_short(places.right), bottom = to_short(places.grid_bottom);
    if (grid != nullptr && grid->x == left && grid->y == top &&
        grid->x + grid->width - 1 == right && grid->y + grid->height - 1 == bottom) {
        grid->clear(1);
    } else {
        if (grid != nullptr) {
            background->remove_object(grid, 1, 0);
        }
        grid = new WM_GRID(left, top, right, bottom, 1, nullptr, style,
                           GUI_SKIN::get_style_set("TEXT_BOX_SCROLLBAR", style_prefix), window);
        background->add_object(grid, 0);
    }
    // The keys of a box that takes the focus itself scroll by moving its cursor.
    grid->allowed_focus = !allowed_focus;
    grid->grid_style.flags = style.flags;
    std::int32_t line_height = places.line_height;
    if (!(flags & TBF_MULTI_LINE)) {
        // One line never scrolls up and down, and stands in the middle of a grid that has a size.
        grid->grid_style.flags |= STYLE_GRID_NO_SCROLLBAR;
        line_height = auto_height ? line_height : grid->get_inner_height();
    }
    grid->set_row_height(to_short(std::max(line_height - grid->grid_style.y_spacing, 1)));
    text_width = grid->width;
}

// --- The layout ---

void TEXT_BOX::lay_out() {
    default_text_shown = shows_default_text();
    const PLACES places = find_places();
    make_grid(places);
    const std::int32_t narrow =
        grid->width -
        GUI_SKIN::get_style_set("TEXT_BOX_SCROLLBAR", style_prefix).grid_scrollbar_width;
    bool may_narrow = (flags & TBF_MULTI_LINE) && narrow < text_width && narrow > 0;
    for (bool done = false; !done; may_narrow = false) {
        tags.clear();
        plain_length = 0;
        TEXT_BOX_LAYOUT layout(*this, get_shown_text(), may_narrow);
        done = layout.run();
        text_extent = layout.get_extent();
        reached_index =
            shows_default_text() ? static_cast<std::int32_t>(text.size()) : layout.get_index();
        if (!done) {
            grid->clear(1);
            text_width = to_short(narrow);
        }
    }
}

// The sizes that were asked for with a negative number. They are summed up from what has a size:
// the far edges of so large a box are beyond the coordinates.
void TEXT_BOX::shrink_to_text() {
    const WM_STYLE_SET& frame = GUI_SKIN::get_style_set("TEXT_BOX_BACKGROUND", style_prefix);
    const WM_STYLE_SET& style = grid->grid_style;
    const std::int32_t new_width = grid->x - x + WM_GRID::calc_x_border_gap_from_style_set(style) +
                                   text_extent + frame.get_object_right_gap();
    const std::int32_t below_grid = info != nullptr ? info->height + frame.y_spacing : 0;
    const std::int32_t new_height =
        frame.get_object_top_gap() + WM_GRID::calc_y_border_gap_from_style_set(style) +
        grid->get_rows_height() + below_grid + frame.get_object_bottom_gap();
    const std::int16_t shrunk_width = auto_width ? to_short(new_width) : width;
    const std::int16_t shrunk_height = auto_height ? to_short(new_height) : height;
    auto_width = auto_height = false;
    WM_SCREEN_OBJECT::resize(shrunk_width, shrunk_height, 0);
    rebuild();
}

void TEXT_BOX::refresh(unsigned char /*unused*/) {
    if (background == nullptr || width < 2 || height < 2) {
        return;
    }
    if (!tag_clicked) {
        drop_retired();
    } else if (retired == nullptr) {
        rebuild();
        return;
    }
    const SCROLL_PLACE scrolled = get_scroll_place();
    lay_out();
    if (auto_width || auto_height) {
        shrink_to_text();
        return;
    }
    clear_positions();
    grid->first_visible = grid->last_visible = -1;  // the rows have been given their offsets
    set_scroll_place(scrolled);
    show_info();
    update_fit_hint(hint_set);
    redraw();
}

void TEXT_BOX::show_info() {
    std::snprintf(remaining_text, sizeof remaining_text, "%" PRId32 " characters remaining",
                  max_text_length - reached_index);
    if (info != nullptr) {
        info->set_text(info_message[0] != '\0' ? info_message : remaining_text);
    }
}
