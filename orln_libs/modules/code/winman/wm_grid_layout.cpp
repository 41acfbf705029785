// Where the rows of a WM_GRID stand, how far it scrolls, and which of them are in view.
#include <new>

#include "wm_grid_tools.h"

using wm_grid::index_of;

// --- Measures ---

WM_GRID::VIEW WM_GRID::get_view() const {
    return {x + grid_style.get_object_left_gap(), y + grid_style.get_object_top_gap(),
            x + width - 1 - grid_style.get_object_right_gap(),
            y + height - 1 - grid_style.get_object_bottom_gap()};
}

std::int16_t WM_GRID::get_inner_width() const {
    const VIEW view = get_view();
    return to_short(std::max(view.right - view.left + 1, 0));
}

std::int16_t WM_GRID::get_inner_height() const {
    const VIEW view = get_view();
    return to_short(std::max(view.bottom - view.top + 1, 0));
}

std::int32_t WM_GRID::get_rows_height() const {
    return row_count > 0 ? rows.back()->bottom - grid_style.y_spacing : 0;
}

bool WM_GRID::has_fixed_row() const {
    return grid_style.has_flag(STYLE_GRID_FIX_TOP_ROW);
}

bool WM_GRID::has_scrolled_rows() const {
    return row_count > (has_fixed_row() ? 1 : 0);
}

std::int32_t WM_GRID::get_bar_width() const {
    return bar_layout
               ? std::min<std::int32_t>(scrollbar_style.grid_scrollbar_width, get_inner_width())
               : 0;
}

std::int32_t WM_GRID::get_row_top(std::int16_t row) const {
    return row > 0 ? rows[index_of(to_short(row - 1))]->bottom : 0;
}

std::int32_t WM_GRID::get_fixed_height() const {
    return has_fixed_row() && row_count > 0 ? rows.front()->bottom : 0;
}

bool WM_GRID::is_row_in_view(std::int16_t row) const {
    return (row == 0 && has_fixed_row()) || (row >= first_visible && row <= last_visible);
}

bool WM_GRID::get_row_y_pos(std::int16_t row, std::int32_t& top, std::int32_t& bottom) const {
    top = bottom = 0;
    if (row < 0 || row >= row_count) {
        return false;
    }
    top = get_row_top(row);
    bottom = top + rows[index_of(row)]->height - 1;
    return true;
}

bool WM_GRID::is_row_visible(std::int16_t row) const {
    std::int32_t top = 0, bottom = 0;
    if (!get_row_y_pos(row, top, bottom)) {
        return false;
    }
    if (row == 0 && has_fixed_row()) {
        return true;
    }
    const std::int32_t position = get_scroll_position();
    return top >= position + get_fixed_height() && bottom < position + get_inner_height();
}

std::int16_t WM_GRID::calc_row_height_from_visible_lines(std::int16_t lines) const {
    const std::int32_t spacing = grid_style.y_spacing;
    return to_short(
        std::max((get_inner_height() + spacing) / std::max<std::int32_t>(lines, 1) - spacing, 1));
}

bool WM_GRID::get_cell_coords(std::int16_t column, std::int16_t row, std::int16_t& x1,
                              std::int16_t& y1, std::int16_t& x2, std::int16_t& y2) const {
    x1 = y1 = x2 = y2 = 0;
    if (row < 0) {
        return false;
    }
    std::int32_t top = 0;
    const unsigned char with_bar = bar_layout ? 1 : 0;
    if (row < row_count) {
        if (!rows[index_of(row)]->get_coords(column, with_bar, x1, y1, x2, y2)) {
            return false;
        }
        top = get_row_top(row);
    } else {
        WM_GRID_ROW coming(const_cast<WM_GRID*>(this));
        coming.set_layout(width, default_columns, default_layout.data(), grid_style);
        coming.set_height(to_short(row_height + grid_style.y_spacing), grid_style);
        if (!coming.get_coords(column, with_bar, x1, y1, x2, y2)) {
            return false;
        }
        top = (row_count > 0 ? rows.back()->bottom : 0) +
              (row - row_count) * (coming.height + grid_style.y_spacing);
    }
    if (!(row == 0 && has_fixed_row())) {
        top -= get_scroll_position();
    }
    top += get_view().top;
    x1 = to_short(x1 + x);
    x2 = to_short(x2 + x);
    // Far out of view a cell is held within the range of a short, but keeps its height.
    const std::int32_t cell_height = y2 - y1;
    y1 = to_short(std::min(top + y1, INT16_MAX - cell_height));
    y2 = to_short(y1 + cell_height);
    return true;
}

// --- Changes ---

bool WM_GRID::make_rows(std::int16_t count) {
    const std::int16_t first_new = row_count;
    if (count <= first_new) {
        return true;
    }
    while (row_count < count) {
        auto row = std::unique_ptr<WM_GRID_ROW>(new (std::nothrow) WM_GRID_ROW(this));
        if (row == nullptr) {
            break;
        }
        row->set_layout(width, default_columns, default_layout.data(), grid_style);
        row->set_height(to_short(row_height + grid_style.y_spacing), grid_style);
        rows.push_back(std::move(row));
        ++row_count;
    }
    sum_heights(first_new);
    update_range(PLACE_NONE);
    return row_count >= count;
}

void WM_GRID::sum_heights(std::int16_t from) {
    std::int32_t bottom = get_row_top(from);
    for (std::int16_t row = from; row < row_count; ++row) {
        WM_GRID_ROW& one = *rows[index_of(row)];
        bottom += one.height + grid_style.y_spacing;
        one.bottom = bottom;
    }
}

void WM_GRID::update_range(PLACING placing) {
    // What stands at the top of the view stays there, as far as it can.
    const std::int32_t position = get_scroll_position();
    const std::int32_t range = std::max(get_rows_height() - get_inner_height(), 0);
    scroll.min.long_value = 0;
    scroll.max.long_value = range;
    scroll.value.long_value = std::clamp(range - position, 0, range);
    const bool wants_bar = range > 0 && !grid_style.has_flag(STYLE_GRID_NO_SCROLLBAR);
    if (wants_bar != bar_layout) {
        bar_layout = wants_bar;
        placing = PLACE_ALL;
    }
    if (!wants_bar) {
        scrollbar.reset();
    }
    fit_scrollbar();
    find_visible_rows();
    if (placing == PLACE_ALL) {
        place_all_cells();
    } else if (placing == PLACE_VISIBLE) {
        place_visible_cells();
    }
    mark_own_rectangle();
}

void WM_GRID::apply_fill_rows() {
    if (fill_rows <= 0) {
        return;
    }
    row_height = calc_row_height_from_visible_lines(fill_rows);
    for (const auto& row : rows) {
        row->set_height(to_short(row_height + grid_style.y_spacing), grid_style);
    }
    sum_heights(0);
}

void WM_GRID::set_fill_rows(std::int16_t count) {
    fill_rows = std::max<std::int16_t>(count, 0);
    apply_fill_rows();
    update_range(PLACE_ALL);
}

void WM_GRID::set_row_height(std::int16_t new_height) {
    row_height = std::max<std::int16_t>(new_height, 1);
}

void WM_GRID::set_row_height(std::int16_t row, std::int16_t new_height) {
    if (row < 0 || row >= row_count) {
        return;
    }
    rows[index_of(row)]->set_height(to_short(new_height + grid_style.y_spacing), grid_style);
    sum_heights(row);
    place_row(row, true);
    update_range(PLACE_VISIBLE);
}

void WM_GRID::refresh_layout() {
    apply_fill_rows();
    for (const auto& row : rows) {
        row->calc_ratios(width, grid_style);
        row->set_height(to_short(row->height + grid_style.y_spacing), grid_style);
    }
    sum_heights(0);
    update_range(PLACE_ALL);
}

void WM_GRID::move(std::int16_t new_x, std::int16_t new_y) {
    if (new_x == x && new_y == y) {
        return;
    }
    const std::int32_t dx = new_x - x, dy = new_y - y;
    WM_SCREEN_OBJECT::move(new_x, new_y);
    if (scrollbar != nullptr) {
        scrollbar->move(to_short(scrollbar->x + dx), to_short(scrollbar->y + dy));
    }
    place_visible_cells();
}

void WM_GRID::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    if (new_width == width && new_height == height) {
        return;
    }
    const bool other_width = new_width != width;
    WM_SCREEN_OBJECT::resize(new_width, new_height, children);
    if (other_width) {
        for (const auto& row : rows) {
            row->calc_ratios(width, grid_style);
        }
    }
    apply_fill_rows();
    update_range(other_width || fill_rows > 0 ? PLACE_ALL : PLACE_VISIBLE);
}

// --- The bar ---

void WM_GRID::make_scrollbar() {
    if (!bar_layout || scrollbar != nullptr) {
        return;
    }
    const VIEW view = get_view();
    scrollbar = std::make_unique<WM_SCROLLBAR>(
        to_short(view.right - get_bar_width() + 1), to_short(view.top), to_short(view.right),
        to_short(view.bottom), &scroll, scrollbar_style, nullptr, nullptr, nullptr, window,
        scrollbar_movement_callback);
    scrollbar->allowed_focus = false;  // the keys come to the cells, or to the grid
    scrollbar->parent = this;
    scrollbar->set_area(area);
    fit_scrollbar();
}

void WM_GRID::fit_scrollbar() {
    if (scrollbar == nullptr) {
        return;
    }
    const VIEW view = get_view();
    const std::int32_t bar_width = get_bar_width();
    scrollbar->move(to_short(view.right - bar_width + 1), to_short(view.top));
    scrollbar->resize(to_short(bar_width), get_inner_height(), 0);
    scrollbar->wheel_step =
        to_short(std::max(row_height / 2 * mouse_wheel_half_line_factor, std::int32_t{1}));
    const std::int64_t proportional = std::int64_t{scrollbar->get_max_travel()} *
                                      get_inner_height() /
                                      std::max(get_rows_height(), std::int32_t{1});
    scrollbar->slider_size =
        to_short(std::max({static_cast<std::int32_t>(proportional),
                           std::int32_t{scrollbar_style.scrollbar_slider_width},
                           std::int32_t{WM_SCROLLBAR::MIN_SLIDER_SIZE}}));
    scrollbar->set_travel();
}

// --- Places ---

void WM_GRID::place_cell(std::int16_t column, std::int16_t row, bool with_size) {
    WM_SCREEN_OBJECT* object = get_object(column, row);
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    if (object == nullptr || !get_cell_coords(column, row, x1, y1, x2, y2)) {
        return;
    }
    if (with_size) {
        object->resize(to_short(std::max(x2 - x1 + 1, 0)), to_short(y2 - y1 + 1), 1);
    }
    object->move(x1, y1);
}

void WM_GRID::place_row(std::int16_t row, bool with_size) {
    for (std::int16_t column = 0; column < rows[index_of(row)]->columns; ++column) {
        place_cell(column, row, with_size);
    }
}

void WM_GRID::place_all_cells() {
    const QUIET quiet(*this);
    for (std::int16_t row = 0; row < row_count; ++row) {
        place_row(row, true);
    }
}

void WM_GRID::place_visible_cells() {
    const QUIET quiet(*this);
    for_visible_rows([&](std::int16_t row) {
        place_row(row, false);
        return true;
    });
}

// Cells that leave the view are no longer on the back buffer; those that come into it get their
// place in the window.
void WM_GRID::find_visible_rows() {
    const std::int16_t old_first = first_visible, old_last = last_visible;
    const std::int32_t position = get_scroll_position();
    first_visible = last_visible = -1;
    if (has_scrolled_rows()) {
        first_visible = find_row_at(position + get_fixed_height());
        last_visible = find_row_at(position + std::max<std::int32_t>(get_inner_height(), 1) - 1);
        last_visible = std::max(first_visible, last_visible);
    }
    for (std::int16_t row = std::max<std::int16_t>(old_first, 0); row <= old_last; ++row) {
        if (row >= row_count || is_row_in_view(row)) {
            continue;
        }
        for (std::int16_t column = 0; column < rows[index_of(row)]->columns; ++column) {
            if (WM_SCREEN_OBJECT* object = get_object(column, row)) {
                object->drawn = false;
            }
        }
    }
}

std::int16_t WM_GRID::find_row_at(std::int32_t y_pos) const {
    const std::int16_t first_scrolled = has_fixed_row() && has_scrolled_rows() ? 1 : 0;
    const auto begin = rows.begin() + first_scrolled;
    const auto found = std::partition_point(begin, rows.end(),
                                            [&](const auto& row) { return row->bottom <= y_pos; });
    return to_short(
        std::min<std::int32_t>(static_cast<std::int32_t>(found - rows.begin()), row_count - 1));
}

// --- Scrolling ---

void WM_GRID::check_scrolling() {
    const std::int32_t value = scroll.value.long_value, max = scroll.max.long_value;
    if (value == last_scroll && max == last_max && (first_visible != -1 || !has_scrolled_rows())) {
        return;
    }
    last_scroll = value;
    last_max = max;
    find_visible_rows();
    place_visible_cells();
    keep_focus_in_view();
}

bool WM_GRID::set_scroll_value(std::int32_t value) {
    const std::int32_t old = scroll.value.long_value;
    scroll.value.long_value = std::clamp(value, scroll.min.long_value, scroll.max.long_value);
    check_scrolling();
    return scroll.value.long_value != old;
}

void WM_GRID::set_scroll_to_position(std::int32_t pixels) {
    const std::int32_t max = scroll.max.long_value;
    set_scroll_value(max - std::clamp(pixels, 0, max));
}

void WM_GRID::set_scroll_to_row(std::int16_t row, unsigned char centre) {
    std::int32_t top = 0, bottom = 0;
    if (!get_row_y_pos(row, top, bottom) || (row == 0 && has_fixed_row())) {
        return;
    }
    const std::int32_t fixed = get_fixed_height(), inner = get_inner_height();
    const std::int32_t position = get_scroll_position();
    if (centre) {
        set_scroll_to_position((top + bottom + 1) / 2 - fixed - (inner - fixed) / 2);
    } else if (top < position + fixed || bottom - top + 1 > inner - fixed) {
        set_scroll_to_position(top - fixed);
    } else if (bottom >= position + inner) {
        set_scroll_to_position(bottom + 1 - inner);
    }
    check_scrolling();
}

std::int32_t WM_GRID::scrollbar_movement_callback(WM_SCROLLBAR* bar,
                                                  SCROLLBAR_BUTTON_DOWN_TYPE type) {
    const auto* grid = static_cast<const WM_GRID*>(bar->parent);
    return grid != nullptr ? grid->get_movement(type) : 0;
}

std::int32_t WM_GRID::get_movement(SCROLLBAR_BUTTON_DOWN_TYPE type) const {
    if (row_count == 0) {
        return 0;
    }
    const bool up = type == SCROLLBAR_LINE_UP || type == SCROLLBAR_PAGE_UP;
    const bool line = type == SCROLLBAR_LINE_UP || type == SCROLLBAR_LINE_DOWN;
    const std::int32_t given_step = line ? line_step : page_step;
    if (given_step != 0) {
        return up ? given_step : -given_step;
    }
    if (!line) {
        return get_page_movement(up);
    }
    const std::int32_t edge = get_scroll_position() + get_fixed_height();
    return up ? edge - get_row_top(find_row_at(edge - 1))
              : edge - rows[index_of(find_row_at(edge))]->bottom;
}

std::int32_t WM_GRID::get_page_movement(bool up) const {
    const std::int32_t fixed = get_fixed_height();
    const std::int32_t edge = get_scroll_position() + fixed;
    const std::int32_t room = get_inner_height() - fixed + grid_style.y_spacing;
    if (up) {
        // The furthest row from which everything down to the present top fits.
        std::int16_t row = find_row_at(edge - 1);
        while (row > 0 && edge - get_row_top(to_short(row - 1)) <= room) {
            --row;
        }
        return edge - std::max(get_row_top(row), fixed);
    }
    // To the first row that isn't wholly in view.
    std::int16_t row = find_row_at(edge);
    std::int32_t target = rows[index_of(row)]->bottom;
    while (row + 1 < row_count && rows[index_of(to_short(row + 1))]->bottom - edge <= room) {
        ++row;
        target = rows[index_of(row)]->bottom;
    }
    return edge - target;
}
