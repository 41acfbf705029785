// Life, setting up and cells of WM_GRID. Layout and scrolling, input and drawing have sources of
// their own.
#include "modules/winman/wm_grid.h"

#include <iterator>
#include <string>
#include <utility>

#include "modules/winman/page_tool_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_list_box.h"
#include "modules/winman/wm_script.h"
#include "platform/font_manager.h"
#include "wm_grid_tools.h"

using wm_grid::index_of;

std::int32_t WM_GRID::mouse_wheel_half_line_factor = 1;

namespace {

// The least box, and what a smaller one becomes.
constexpr std::int16_t MIN_SIZE = 2, REPLACED_SIZE = 6;
// Image boxes from a folder are kept in the cache.
constexpr unsigned char CACHE_FLAGS = 8;

void fill_in_defaults(WM_STYLE_SET& style) {
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    if (style.font == -1) {
        style.font = fonts.font;
    }
    if (style.font_x_sz == -1) {
        style.font_x_sz = fonts.x_size;
    }
    if (style.font_y_sz == -1) {
        style.font_y_sz = fonts.y_size;
    }
    style.border_left_gap = style.get_object_left_gap();
    style.border_right_gap = style.get_object_right_gap();
    style.border_top_gap = style.get_object_top_gap();
    style.border_bottom_gap = style.get_object_bottom_gap();
    style.cell_left_gap = style.get_cell_left_gap();
    style.cell_right_gap = style.get_cell_right_gap();
    style.cell_top_gap = style.get_cell_top_gap();
    style.cell_bottom_gap = style.get_cell_bottom_gap();
}

}  // namespace

WM_GRID::WM_GRID(signed char window_) : WM_SCREEN_OBJECT(1, nullptr, nullptr, nullptr, window_) {
    type_flags |= WMF_GRID;
    for (IMAGE_BOX* box : {&background, &highlighted_box, &alternate_box}) {
        box->cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
    }
}

WM_GRID::WM_GRID(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                 std::int16_t columns, const std::int16_t* layout, const WM_STYLE_SET& style,
                 const WM_STYLE_SET& scrollbar_style_, signed char window_)
    : WM_GRID(window_) {
    visible = draw_requested = style.visible;
    setup(x1, y1, x2, y2, columns, layout, style, scrollbar_style_);
}

WM_GRID::~WM_GRID() {
    // A cell that goes must not ask its grid for anything.
    drawn = false;
    rows.clear();
    row_count = 0;
}

void WM_GRID::setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                    std::int16_t columns, const std::int16_t* layout, const WM_STYLE_SET& style,
                    const WM_STYLE_SET& new_scrollbar_style) {
    clear(1);
    grid_style = style;
    fill_in_defaults(grid_style);
    scrollbar_style = new_scrollbar_style;
    scrollbar_style.flags &= ~static_cast<std::uint32_t>(STYLE_SB_HORIZONTAL);
    if (style.image_filename != nullptr) {
        set_images(style.image_path, style.image_filename, &style);
    } else {
        set_images(nullptr, nullptr, nullptr);
    }
    allowed_focus = true;
    fill_rows = 0;
    row_height = calc_min_row_height(grid_style, nullptr);
    set_current_layout(std::max<std::int16_t>(columns, 1), layout);
    const bool too_small = x2 - x1 + 1 < MIN_SIZE || y2 - y1 + 1 < MIN_SIZE;
    mark_own_rectangle();
    x = x1;
    y = y1;
    width = too_small ? REPLACED_SIZE : to_short(x2 - x1 + 1);
    height = too_small ? REPLACED_SIZE : to_short(y2 - y1 + 1);
    mark_own_rectangle();
}

void WM_GRID::copy_box(IMAGE_BOX& box, const WM_STYLE_SET& style, STYLE_BOX which) {
    if (const IMAGE_BOX* source = style.get_box(which)) {
        box = *source;
    }
}

bool WM_GRID::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    for (IMAGE_BOX* box : {&background, &highlighted_box, &alternate_box}) {
        box->clear_images();
    }
    mark_own_rectangle();
    if (base == nullptr) {
        return false;
    }
    if (style != nullptr && style->images_loaded) {
        copy_box(background, *style, STYLE_BOX_BASE);
        copy_box(highlighted_box, *style, STYLE_BOX_HIGHLIGHTED);
        copy_box(alternate_box, *style, STYLE_BOX_ALTERNATE);
    } else {
        const std::string name = base;
        background.load_images(path, base, CACHE_FLAGS);
        highlighted_box.load_images(path, (name + "_highlighted").c_str(), CACHE_FLAGS);
        alternate_box.load_images(path, (name + "_alternate").c_str(), CACHE_FLAGS);
    }
    return background.are_images_valid();
}

void WM_GRID::set_current_layout(std::int16_t columns, const std::int16_t* layout) {
    if (columns < 1) {
        return;
    }
    const auto count = static_cast<std::size_t>(columns);
    if (layout == nullptr) {
        default_layout.assign(count, 1);
    } else {
        default_layout.assign(layout, layout + count);
    }
    default_columns = columns;
}

// --- Cells ---

WM_SCREEN_OBJECT* WM_GRID::add_object(std::int16_t column, std::int16_t row,
                                      WM_SCREEN_OBJECT* object) {
    const std::int16_t columns =
        row >= 0 && row < row_count ? rows[index_of(row)]->columns : default_columns;
    if (object == nullptr || object == this || row < 0 || column < 0 || column >= columns ||
        row == INT16_MAX || (max_rows >= 0 && row >= max_rows) || !make_rows(to_short(row + 1))) {
        return nullptr;
    }
    object->set_area(area);
    // What was there marks its own place as it is hidden; the new one has none yet.
    rows[index_of(row)]->set_object(column, object, 1);
    object->parent = nullptr;
    place_cell(column, row, true);
    object->parent = this;
    if (drawn && object->visible && is_row_in_view(row)) {
        mark_redraw_subarea(object->x, object->y, to_short(object->x + object->width - 1),
                            to_short(object->y + object->height - 1), REDRAW_GAP);
    }
    return object;
}

WM_BUTTON* WM_GRID::add_button(std::int16_t column, std::int16_t row, const WM_STYLE_SET& style,
                               const char* title, const char* hint, WM_CALLBACK button_callback,
                               void* data1, void* data2, unsigned char callback_flags) {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    get_cell_coords(column, row, x1, y1, x2, y2);
    auto button = std::make_unique<WM_BUTTON>(
        x1, y1, x2, y2, style, title, hint, button_callback, data1, data2, callback_flags, window,
        static_cast<unsigned char>(1), static_cast<unsigned char>(0));
    return add_object(column, row, button.get()) != nullptr ? button.release() : nullptr;
}

WM_SCRIPT* WM_GRID::add_script(std::int16_t column, std::int16_t row, const WM_STYLE_SET& style,
                               const char* text) {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    get_cell_coords(column, row, x1, y1, x2, y2);
    auto script = std::make_unique<WM_SCRIPT>(x1, y1, x2, y2, style, text, window);
    return add_object(column, row, script.get()) != nullptr ? script.release() : nullptr;
}

WM_IMAGE* WM_GRID::add_image(std::int16_t column, std::int16_t row, const IMAGE& picture,
                             WM_CALLBACK image_callback, void* data1, void* data2,
                             unsigned char click_mode) {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    get_cell_coords(column, row, x1, y1, x2, y2);
    auto image = std::make_unique<WM_IMAGE>(x1, y1, to_short(x2 - x1 + 1), to_short(y2 - y1 + 1),
                                            static_cast<unsigned char>(1), image_callback, data1,
                                            data2, click_mode, window);
    image->image.copy_pixels_from(picture);
    return add_object(column, row, image.get()) != nullptr ? image.release() : nullptr;
}

WM_LIST_BOX* WM_GRID::add_list_box(std::int16_t column, std::int16_t row, const WM_STYLE_SET& box,
                                   const WM_STYLE_SET& popup, const WM_STYLE_SET& title,
                                   const WM_STYLE_SET& item, const WM_STYLE_SET& alternate,
                                   const WM_STYLE_SET& separator, const char* const* lines,
                                   std::int16_t line_count, const char* no_selection_text,
                                   WM_CALLBACK box_callback, void* data1, void* data2) {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    get_cell_coords(column, row, x1, y1, x2, y2);
    auto list_box = std::make_unique<WM_LIST_BOX>(
        x1, y1, x2, y2, std::int16_t{-1}, std::int16_t{-1}, lines, line_count, no_selection_text,
        box, popup, title, item, alternate, separator, box_callback, data1, data2, nullptr, window);
    return add_object(column, row, list_box.get()) != nullptr ? list_box.release() : nullptr;
}

WM_SCREEN_OBJECT* WM_GRID::get_object(std::int16_t column, std::int16_t row) const {
    return row >= 0 && row < row_count ? rows[index_of(row)]->get_object(column) : nullptr;
}

bool WM_GRID::get_object_cell(const WM_SCREEN_OBJECT* object, std::int16_t& column,
                              std::int16_t& row) const {
    if (object == nullptr || object->parent != this) {
        return false;
    }
    const auto find = [&](std::int16_t from, std::int16_t to) {
        for (std::int16_t in_row = std::max<std::int16_t>(from, 0); in_row < to; ++in_row) {
            const WM_GRID_ROW& cells = *rows[index_of(in_row)];
            for (std::int16_t in_column = 0; in_column < cells.columns; ++in_column) {
                if (cells.get_object(in_column) == object) {
                    column = in_column;
                    row = in_row;
                    return true;
                }
            }
        }
        return false;
    };
    // Most questions are about what is on the screen.
    return find(first_visible, std::min(row_count, to_short(last_visible + 1))) ||
           find(0, row_count);
}

void WM_GRID::take_out(std::int16_t column, std::int16_t row) {
    rows[index_of(row)]->objects[index_of(column)] = nullptr;
}

void WM_GRID::clear(unsigned char delete_objects) {
    mark_own_rectangle();
    if (!delete_objects) {
        for (const auto& row : rows) {
            for (std::int16_t column = 0; column < row->columns; ++column) {
                row->set_object(column, nullptr, 0);
            }
        }
    }
    // Deleting an object may run code that looks at the grid.
    std::vector<std::unique_ptr<WM_GRID_ROW>> old_rows;
    old_rows.swap(rows);
    row_count = 0;
    first_visible = last_visible = -1;
    scroll.value.long_value = scroll.min.long_value = scroll.max.long_value = 0;
    last_scroll = last_max = 0;
    scrollbar.reset();
    bar_layout = false;
}

void WM_GRID::clear_rows() {
    for (const auto& row : rows) {
        for (std::int16_t column = 0; column < row->columns; ++column) {
            row->set_object(column, nullptr, 1);
        }
    }
}

void WM_GRID::delete_rows(std::int16_t from, std::int16_t to) {
    from = std::max<std::int16_t>(from, 0);
    to = std::min(to, to_short(row_count - 1));
    if (from > to) {
        return;
    }
    std::vector<std::unique_ptr<WM_GRID_ROW>> old_rows(
        std::make_move_iterator(rows.begin() + from),
        std::make_move_iterator(rows.begin() + to + 1));
    rows.erase(rows.begin() + from, rows.begin() + to + 1);
    row_count = static_cast<std::int16_t>(rows.size());
    sum_heights(from);
    old_rows.clear();
    update_range(PLACE_VISIBLE);
}

void WM_GRID::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    WM_SCREEN_OBJECT::add_object(object, relative);
}

void WM_GRID::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                            unsigned char make_relative) {
    std::int16_t column = 0, row = 0;
    if (!get_object_cell(object, column, row)) {
        WM_SCREEN_OBJECT::remove_object(object, delete_it, make_relative);
        return;
    }
    object->hide(0, 0);
    take_out(column, row);
    object->parent = nullptr;
    if (delete_it && !object->not_owned) {
        delete object;
        return;
    }
    object->set_area(area < -1 ? to_short(-2 - area) : std::int16_t{0});
    if (make_relative) {
        object->move(to_short(object->get_x() - x), to_short(object->get_y() - y));
    }
}

// --- The tree ---

bool WM_GRID::find_object(WM_SCREEN_OBJECT* object) {
    // From the object up, which costs the depth instead of all cells.
    for (WM_SCREEN_OBJECT* up = object; up != nullptr; up = up->parent) {
        if (up->parent == this) {
            std::int16_t column = 0, row = 0;
            if (up == scrollbar.get() || get_object_cell(up, column, row)) {
                return true;
            }
            break;
        }
    }
    return WM_SCREEN_OBJECT::find_object(object);
}

void WM_GRID::set_area(std::int16_t new_area) {
    WM_SCREEN_OBJECT::set_area(new_area);
    if (scrollbar != nullptr) {
        scrollbar->set_area(new_area);
    }
    for (const auto& row : rows) {
        for (std::int16_t column = 0; column < row->columns; ++column) {
            if (WM_SCREEN_OBJECT* object = row->get_object(column)) {
                object->set_area(new_area);
            }
        }
    }
}

void WM_GRID::visit_cells(CELL_VISITOR visit, void* data) {
    for_visible_rows([&](std::int16_t row) {
        for (std::int16_t column = 0; row < row_count && column < rows[index_of(row)]->columns;
             ++column) {
            WM_SCREEN_OBJECT* object = get_object(column, row);
            if (object != nullptr && !visit(object, data)) {
                return false;
            }
        }
        return true;
    });
}

// --- Sizes from style sets ---

std::int16_t WM_GRID::calc_min_row_height(const WM_STYLE_SET& style,
                                          const WM_STYLE_SET* cell_style) {
    const auto text_height = [](const WM_STYLE_SET& of) {
        const std::int16_t font_height =
            of.font_y_sz > 0 ? of.font_y_sz : FONT_MANAGER::get_instance().y_size;
        return font_height;
    };
    const std::int32_t inside = cell_style != nullptr
                                    ? text_height(*cell_style) + cell_style->get_object_top_gap() +
                                          cell_style->get_object_bottom_gap()
                                    : text_height(style);
    return to_short(std::max(inside, 2) + calc_y_cell_gap_from_style_set(style));
}

std::int16_t WM_GRID::calc_x_border_gap_from_style_set(const WM_STYLE_SET& style) {
    return to_short(style.get_object_left_gap() + style.get_object_right_gap());
}

std::int16_t WM_GRID::calc_y_border_gap_from_style_set(const WM_STYLE_SET& style) {
    return to_short(style.get_object_top_gap() + style.get_object_bottom_gap());
}

std::int16_t WM_GRID::calc_x_cell_gap_from_style_set(const WM_STYLE_SET& style) {
    return to_short(style.get_cell_left_gap() + style.get_cell_right_gap());
}

std::int16_t WM_GRID::calc_y_cell_gap_from_style_set(const WM_STYLE_SET& style) {
    return to_short(style.get_cell_top_gap() + style.get_cell_bottom_gap());
}
