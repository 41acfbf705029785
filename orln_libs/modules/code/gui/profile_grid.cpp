// The grid's cells: titles, labels and values. The pictures are in profile_grid_pictures.cpp.
#include "modules/gui/profile_grid.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "kvcore/text_field.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "skin_lookup.h"
#include "to_short.h"

namespace {

SKIN_STYLE BLANK_INDEX{"BLANK"};
SKIN_STYLE PROFILE_GRID_INDEX{"PROFILE_GRID"};
SKIN_STYLE PROFILE_GRID_REPORT_INDEX{"PROFILE_GRID_REPORT"};
SKIN_STYLE PROFILE_SCROLLBAR_INDEX{"PROFILE_SCROLLBAR"};
SKIN_CONSTANT PROFILE_ROW_HEIGHT_INDEX{"PROFILE_ROW_HEIGHT"};

// Titles by the place of their column, each as it is, centred and with an icon.
enum TITLE_PLACE { TITLE_ONLY, TITLE_FIRST, TITLE_MIDDLE, TITLE_LAST };
SKIN_STYLE TITLE_INDEX[][3] = {
    {{"PROFILE_TITLE_ONLY"}, {"PROFILE_TITLE_ONLY_CENTRED"}, {"PROFILE_TITLE_ONLY_WITH_ICON"}},
    {{"PROFILE_TITLE_FIRST"}, {"PROFILE_TITLE_FIRST_CENTRED"}, {"PROFILE_TITLE_FIRST_WITH_ICON"}},
    {{"PROFILE_TITLE_MIDDLE"},
     {"PROFILE_TITLE_MIDDLE_CENTRED"},
     {"PROFILE_TITLE_MIDDLE_WITH_ICON"}},
    {{"PROFILE_TITLE_LAST"}, {"PROFILE_TITLE_LAST_CENTRED"}, {"PROFILE_TITLE_LAST_WITH_ICON"}},
};
SKIN_STYLE PROFILE_TITLE_BACK_INDEX{"PROFILE_TITLE_BACK"};
SKIN_STYLE PROFILE_TITLE_NEXT_INDEX{"PROFILE_TITLE_NEXT"};

// Labels and values by their flags, in the order of the bits, and without one.
SKIN_STYLE LABEL_INDEX[] = {
    {"PROFILE_LABEL_CENTRED"},
    {"PROFILE_LABEL_WITH_ICON"},
    {"PROFILE_LABEL_GREYED_OUT"},
    {"PROFILE_LABEL_GREYED_OUT_CENTRED"},
    {"PROFILE_LABEL_GREYED_OUT_WITH_ICON"},
    {"PROFILE_LABEL_ITALIC"},
    {"PROFILE_LABEL_ITALIC_WITH_ICON"},
    {"PROFILE_LABEL_BOLD"},
    {"PROFILE_LABEL_BOLD_WITH_ICON"},
};
SKIN_STYLE PROFILE_LABEL_INDEX{"PROFILE_LABEL"};
SKIN_STYLE ENTRY_INDEX[] = {
    {"PROFILE_ENTRY_ATTRIBUTE_VERY_GOOD"},
    {"PROFILE_ENTRY_ATTRIBUTE_GOOD"},
    {"PROFILE_ENTRY_ATTRIBUTE_OK"},
    {"PROFILE_ENTRY_ATTRIBUTE_WEAK"},
    {"PROFILE_ENTRY_BOLD_ATTRIBUTE_VERY_GOOD"},
    {"PROFILE_ENTRY_BOLD_ATTRIBUTE_GOOD"},
    {"PROFILE_ENTRY_BOLD_ATTRIBUTE_OK"},
    {"PROFILE_ENTRY_BOLD_ATTRIBUTE_WEAK"},
    {"PROFILE_ENTRY_POSITIVE_CASH"},
    {"PROFILE_ENTRY_NEGATIVE_CASH"},
    {"PROFILE_ENTRY_POSITIVE_CASH_CENTRED"},
    {"PROFILE_ENTRY_NEGATIVE_CASH_CENTRED"},
    {"PROFILE_ENTRY_POSITIVE_CASH_LEFT_ALIGNED"},
    {"PROFILE_ENTRY_NEGATIVE_CASH_LEFT_ALIGNED"},
    {"PROFILE_ENTRY_STAT"},
    {"PROFILE_ENTRY_STAT_YELLOW_CARDS"},
    {"PROFILE_ENTRY_STAT_RED_CARDS"},
    {"PROFILE_ENTRY_STAT_AVERAGE_RATING"},
    {"PROFILE_ENTRY_BOLD"},
    {"PROFILE_ENTRY_LEFT_ALIGNED"},
};
SKIN_STYLE PROFILE_ENTRY_INDEX{"PROFILE_ENTRY"};

// The style of the lowest flag that is set, the first one being `first_flag`.
template <std::size_t N>
WM_STYLE_SET& choose_style(SKIN_STYLE (&styles)[N], unsigned long long first_flag,
                           SKIN_STYLE& plain, unsigned long long flags, const char* prefix) {
    for (SKIN_STYLE& style : styles) {
        if (flags & first_flag) {
            return style.get(prefix);
        }
        first_flag <<= 1;
    }
    return plain.get(prefix);
}

WM_STYLE_SET& get_entry_style(unsigned long long flags, const char* prefix) {
    return choose_style(ENTRY_INDEX, PROFILE_GRID::VALUE_ATTRIBUTE_VERY_GOOD, PROFILE_ENTRY_INDEX,
                        flags, prefix);
}

WM_STYLE_SET& get_grid_style(signed char mode, const char* prefix) {
    return mode == PROFILE_GRID::MODE_REPORT ? PROFILE_GRID_REPORT_INDEX.get(prefix)
                                             : PROFILE_GRID_INDEX.get(prefix);
}

}  // namespace

PROFILE_GRID::PROFILE_GRID(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                           signed char grid_mode, std::int16_t columns, const std::int16_t* layout,
                           std::int16_t fill_rows, const char* prefix, WM_CALLBACK grid_callback,
                           void* data1, void* data2, signed char grid_window)
    : WM_SCREEN_OBJECT(1, grid_callback, data1, data2, grid_window),
      mode(grid_mode),
      left_images(0, 0, delete_entry<PICTURE>),
      right_images(0, 0, delete_entry<PICTURE>) {
    type_flags |= WMF_COMPOSITE;
    KVCORE::copy_text_field(skin_prefix, prefix);
    x = x1;
    y = y1;
    width = static_cast<std::int16_t>(std::max(x2 - x1 + 1, 0));
    height = static_cast<std::int16_t>(std::max(y2 - y1 + 1, 0));

    const WM_STYLE_SET& style = get_grid_style(mode, skin_prefix);
    grid = new WM_GRID(x1, y1, x2, y2, columns, layout, style,
                       PROFILE_SCROLLBAR_INDEX.get(skin_prefix), window);
    add_object(grid, 0);
    if (mode == MODE_FILLED || mode == MODE_PICTURES) {
        grid->set_fill_rows(fill_rows);
        return;
    }
    const std::int32_t unit = PROFILE_ROW_HEIGHT_INDEX.get(skin_prefix);
    const std::int32_t pitch = mode == MODE_REPORT ? unit : 2 * unit;
    grid->set_row_height(pitch == 0 ? WM_GRID::calc_min_row_height(style, nullptr)
                                    : to_short(std::max(pitch - style.y_spacing, 1)));
}

// Null where no title may stand.
WM_STYLE_SET* PROFILE_GRID::get_title_style(std::int16_t column, std::int16_t row,
                                            unsigned long long flags) const {
    if (mode < MODE_FILLED || mode > MODE_DOUBLE || (mode == MODE_PICTURES && row != 0)) {
        return nullptr;
    }
    const std::int32_t columns =
        row >= 0 && row < grid->row_count ? get_number_of_columns(row) : grid->default_columns;
    const TITLE_PLACE place = columns == 1            ? TITLE_ONLY
                              : column == 0           ? TITLE_FIRST
                              : column == columns - 1 ? TITLE_LAST
                                                      : TITLE_MIDDLE;
    SKIN_STYLE& style = flags & TITLE_CENTRED     ? TITLE_INDEX[place][1]
                        : flags & TITLE_WITH_ICON ? TITLE_INDEX[place][2]
                        : flags & TITLE_BACK      ? PROFILE_TITLE_BACK_INDEX
                        : flags & TITLE_NEXT      ? PROFILE_TITLE_NEXT_INDEX
                                                  : TITLE_INDEX[place][0];
    return &style.get(skin_prefix);
}

WM_SCRIPT* PROFILE_GRID::add_title_script(std::int16_t column, std::int16_t row, const char* text,
                                          unsigned long long flags) {
    const WM_STYLE_SET* const style = get_title_style(column, row, flags);
    return style != nullptr ? grid->add_script(column, row, *style, text) : nullptr;
}

WM_BUTTON* PROFILE_GRID::add_title_button(std::int16_t column, std::int16_t row, const char* text,
                                          unsigned long long flags, WM_CALLBACK cell_callback,
                                          void* data1, void* data2) {
    const WM_STYLE_SET* const style = get_title_style(column, row, flags);
    return style != nullptr ? grid->add_button(column, row, *style, text, nullptr, cell_callback,
                                               data1, data2, BUTTON_EVENT_RELEASE)
                            : nullptr;
}

// The cell with its label, in the place of what stood there; without its value.
WM_GRID* PROFILE_GRID::add_nested(std::int16_t column, std::int16_t row, const char* label,
                                  unsigned long long flags) {
    std::int16_t x1, y1, x2, y2;
    if (row < 0 || !grid->get_cell_coords(column, row, x1, y1, x2, y2)) {
        return nullptr;
    }
    const WM_STYLE_SET& label_style =
        choose_style(LABEL_INDEX, LABEL_CENTRED, PROFILE_LABEL_INDEX, flags, skin_prefix);
    auto script = std::make_unique<WM_SCRIPT>(std::int16_t{0}, std::int16_t{0}, std::int16_t{-1},
                                              std::int16_t{-1}, label_style, label, window);
    std::int16_t layout[2] = {static_cast<std::int16_t>(-script->width), 1};
    if (flags & LAYOUT_FIXED_LABEL) {
        layout[0] = -FIXED_LABEL_WIDTH;
    } else if (flags & LAYOUT_LABEL_ONLY) {
        layout[0] = 1;
        layout[1] = 0;
    } else if (flags & LAYOUT_VALUE_ONLY) {
        layout[0] = 0;
    }
    const WM_STYLE_SET& blank = BLANK_INDEX.get();
    auto cell =
        std::make_unique<WM_GRID>(x1, y1, x2, y2, std::int16_t{2}, layout, blank, blank, window);
    cell->set_fill_rows(1);
    if (grid->add_object(column, row, cell.get()) == nullptr) {
        return nullptr;
    }
    cell->add_object(0, 0, script.release());
    return cell.release();
}

bool PROFILE_GRID::finish_nested(WM_GRID& cell, std::int16_t column, std::int16_t row,
                                 WM_SCREEN_OBJECT* value) {
    const bool added = cell.add_object(1, 0, value) != nullptr;
    adjust_cell(column, row);
    return added;
}

WM_SCRIPT* PROFILE_GRID::add_script(std::int16_t column, std::int16_t row, const char* label,
                                    const char* value, unsigned long long flags) {
    WM_GRID* const cell = add_nested(column, row, label, flags);
    if (cell == nullptr) {
        return nullptr;
    }
    auto* script = new WM_SCRIPT(0, 0, -1, -1, get_entry_style(flags, skin_prefix), value, window);
    finish_nested(*cell, column, row, script);
    return script;
}

WM_BUTTON* PROFILE_GRID::add_button(std::int16_t column, std::int16_t row, const char* label,
                                    const char* value, unsigned long long flags,
                                    WM_CALLBACK cell_callback, void* data1, void* data2) {
    WM_GRID* const cell = add_nested(column, row, label, flags);
    if (cell == nullptr) {
        return nullptr;
    }
    auto* button = new WM_BUTTON(0, 0, -1, -1, get_entry_style(flags, skin_prefix), value, nullptr,
                                 cell_callback, data1, data2, BUTTON_EVENT_RELEASE, window, 1, 0);
    finish_nested(*cell, column, row, button);
    return button;
}

WM_SCREEN_OBJECT* PROFILE_GRID::add_object(std::int16_t column, std::int16_t row, const char* label,
                                           WM_SCREEN_OBJECT* object, unsigned long long flags) {
    WM_GRID* const cell = object != nullptr ? add_nested(column, row, label, flags) : nullptr;
    return cell != nullptr && finish_nested(*cell, column, row, object) ? object : nullptr;
}

WM_GRID* PROFILE_GRID::get_nested(std::int16_t column, std::int16_t row) const {
    WM_SCREEN_OBJECT* const cell = grid->get_object(column, row);
    return cell != nullptr && (cell->type_flags & WMF_GRID) != 0 ? static_cast<WM_GRID*>(cell)
                                                                 : nullptr;
}

WM_SCREEN_OBJECT* PROFILE_GRID::get_entry_object(std::int16_t column, std::int16_t row) const {
    const WM_GRID* const cell = get_nested(column, row);
    return cell != nullptr ? cell->get_object(1, 0) : nullptr;
}

WM_SCRIPT* PROFILE_GRID::get_label_script(std::int16_t column, std::int16_t row) const {
    const WM_GRID* const cell = get_nested(column, row);
    return cell != nullptr ? static_cast<WM_SCRIPT*>(cell->get_object(0, 0)) : nullptr;
}

WM_SCREEN_OBJECT* PROFILE_GRID::get_title_object(std::int16_t column, std::int16_t row) const {
    return get_nested(column, row) == nullptr ? grid->get_object(column, row) : nullptr;
}

std::int16_t PROFILE_GRID::get_number_of_columns(std::int16_t row) const {
    return row >= 0 && row < grid->row_count ? grid->rows[static_cast<std::size_t>(row)]->columns
                                             : std::int16_t{0};
}

std::int16_t PROFILE_GRID::get_number_of_rows() const {
    return grid->row_count;
}

void PROFILE_GRID::delete_rows(std::int16_t from, std::int16_t to) {
    grid->delete_rows(from, to);
    // What has moved up stands beside other pictures now.
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        for (std::int16_t column = 0; column < get_number_of_columns(row); ++column) {
            adjust_cell(column, row);
        }
    }
}

void PROFILE_GRID::clear() {
    clear_special_object();
    clear_left_picture_images();
    clear_right_picture_images();
    grid->clear(1);
}

void PROFILE_GRID::set_current_layout(std::int16_t columns, const std::int16_t* layout) {
    grid->set_current_layout(columns, layout);
}

std::int16_t PROFILE_GRID::get_selected_row() const {
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        if (get_highlighted(row)) {
            return row;
        }
    }
    return -1;
}

void PROFILE_GRID::set_selected_row(std::int16_t row) {
    if (row < -1 || row >= grid->row_count) {
        return;
    }
    const std::int16_t old_row = get_selected_row();
    if (old_row != row) {
        set_highlighted(old_row, 0);
        set_highlighted(row, 1);
    }
    selection_changed = true;
}

unsigned char PROFILE_GRID::get_highlighted(std::int16_t row) const {
    return row >= 0 && row < grid->row_count &&
           grid->rows[static_cast<std::size_t>(row)]->highlighted;
}

void PROFILE_GRID::set_highlighted(std::int16_t row, unsigned char on) {
    if (row >= 0 && row < grid->row_count && get_highlighted(row) != (on != 0)) {
        grid->rows[static_cast<std::size_t>(row)]->highlighted = on != 0;
        grid->request_draw(0, 0);
    }
}

// The last of the rows that fit, be they there or to come.
std::int16_t PROFILE_GRID::get_last_visible_row() const {
    const std::int32_t inner_height = grid->get_inner_height();
    const std::int32_t spacing = grid->grid_style.y_spacing;
    std::int32_t top = 0;
    for (std::int16_t row = 0; row < INT16_MAX; ++row) {
        const std::int32_t row_height = row < grid->row_count
                                            ? grid->rows[static_cast<std::size_t>(row)]->height
                                            : grid->row_height;
        if (top + row_height > inner_height) {
            return static_cast<std::int16_t>(row - 1);
        }
        top += std::max(row_height + spacing, 1);
    }
    return INT16_MAX;
}

unsigned char PROFILE_GRID::set_special_object(std::int16_t x1, std::int16_t y1, std::int16_t x2,
                                               std::int16_t y2, WM_SCREEN_OBJECT* object) {
    std::int16_t left, top, right, bottom, unused;
    if (object == nullptr || !grid->get_cell_coords(x1, y1, left, top, unused, unused) ||
        !grid->get_cell_coords(x2, y2, unused, unused, right, bottom)) {
        return 0;
    }
    if (object == special_object) {
        remove_object(object, 0, 0);
    } else {
        clear_special_object();
    }
    special_object = object;
    object->resize(static_cast<std::int16_t>(std::max(right - left + 1, 0)),
                   static_cast<std::int16_t>(std::max(bottom - top + 1, 0)), 0);
    object->move(left, top);
    add_object(object, 0);
    return 1;
}

unsigned char PROFILE_GRID::set_special_object(WM_SCREEN_OBJECT* object) {
    return set_special_object(0, 1, 0, std::max<std::int16_t>(get_last_visible_row(), 1), object);
}

void PROFILE_GRID::clear_special_object() {
    if (special_object != nullptr) {
        remove_object(special_object, 1, 0);
        special_object = nullptr;
    }
}

std::int32_t PROFILE_GRID::get_scroll_position() const {
    return grid->scroll.value.long_value;
}

void PROFILE_GRID::set_scroll_position(std::int32_t position) {
    grid->scroll.set(grid->scroll.value, position);
    grid->check_scrolling();
}

bool PROFILE_GRID::is_scroll_at_top() const {
    return grid->scroll.value.long_value == grid->scroll.max.long_value;
}

bool PROFILE_GRID::is_scroll_at_bottom() const {
    return grid->scroll.value.long_value == grid->scroll.min.long_value;
}

void PROFILE_GRID::set_scroll_to_top() {
    set_scroll_position(grid->scroll.max.long_value);
}

void PROFILE_GRID::set_scroll_to_bottom() {
    set_scroll_position(grid->scroll.min.long_value);
}
