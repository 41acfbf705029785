// Drawing of WM_GRID.
#include "active_area.h"
#include "platform/image.h"
#include "wm_grid_tools.h"

using wm_grid::index_of;

void WM_GRID::check_for_redraw() {
    if (visible) {
        check_scrolling();
    }
    WM_SCREEN_OBJECT::check_for_redraw();
}

void WM_GRID::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    make_scrollbar();
    draw_background(*buffer);
    draw_rows(*buffer);
    if (grid_style.has_flag(STYLE_GRID_COLUMN_DIVIDERS)) {
        draw_column_dividers(*buffer);
    }
    if (scrollbar != nullptr) {
        scrollbar->check_for_redraw();
    }
    if (has_focus()) {
        const COLOUR frame = grid_style.highlight_colour.is_set() ? grid_style.highlight_colour
                                                                  : grid_style.fg_colour;
        buffer->draw_rect(x, y, x + width - 1, y + height - 1, frame, 1, 1);
    }
}

// Of the whole grid; with lines each row has its own.
void WM_GRID::draw_background(IMAGE& buffer) {
    if (grid_style.has_flag(STYLE_GRID_TYPE_LINES)) {
        return;
    }
    std::int32_t bottom = y + height - 1;
    if (grid_style.has_flag(STYLE_GRID_ONLY_DRAW_USED_LINES)) {
        const VIEW view = get_view();
        const std::int32_t used = std::min<std::int32_t>(get_rows_height(), get_inner_height());
        if (used <= 0) {
            return;
        }
        bottom -= view.bottom - view.top + 1 - used;
    }
    if (background.are_images_valid()) {
        background.draw(x, y, to_short(x + width - 1), to_short(bottom), &buffer,
                        !grid_style.has_flag(STYLE_DONT_RESIZE_IMAGE), IMAGE_COPY_BLEND);
    } else if (grid_style.bg_colour.is_set()) {
        buffer.fill_rect(x, y, x + width - 1, bottom, grid_style.bg_colour, 1);
    }
}

void WM_GRID::draw_rows(IMAGE& buffer) {
    const std::int32_t top = get_view().top;
    const std::int32_t fixed = get_fixed_height();
    for_visible_rows([&](std::int16_t row) {
        draw_row(buffer, row, row == 0 && fixed > 0 ? top : top + fixed);
        return true;
    });
}

void WM_GRID::draw_row(IMAGE& buffer, std::int16_t row, std::int32_t clip_top) {
    const VIEW view = get_view();
    const bool is_fixed = row == 0 && has_fixed_row();
    const std::int32_t row_top =
        view.top + get_row_top(row) - (is_fixed ? 0 : get_scroll_position());
    const VIEW band = {view.left, row_top, view.right - get_bar_width(),
                       row_top + rows[index_of(row)]->height - 1};
    const SAVED_ACTIVE_AREA saved(&buffer);
    buffer.add_rect_to_active_area(band.left, std::max(band.top, clip_top), band.right,
                                   std::min(band.bottom, view.bottom));
    draw_row_background(buffer, row, band);
    place_row(row, false);  // the owner may have set the row's offset since
    for (std::int16_t column = 0; column < rows[index_of(row)]->columns; ++column) {
        if (WM_SCREEN_OBJECT* object = get_object(column, row)) {
            object->check_for_redraw();
        }
    }
}

void WM_GRID::draw_row_background(IMAGE& buffer, std::int16_t row, const VIEW& band) {
    const auto draw = [&](IMAGE_BOX& box, COLOUR colour) {
        if (box.are_images_valid()) {
            box.draw(to_short(band.left), to_short(band.top), to_short(band.right),
                     to_short(band.bottom), &buffer, !grid_style.has_flag(STYLE_DONT_RESIZE_IMAGE),
                     IMAGE_COPY_BLEND);
        } else if (colour.is_set()) {
            buffer.fill_rect(band.left, band.top, band.right, band.bottom, colour, 1);
        }
    };
    if (rows[index_of(row)]->highlighted) {
        draw(highlighted_box, grid_style.highlight_colour);
    } else if (row >= first_visible && (row - first_visible) % 2 != 0 &&
               alternate_box.are_images_valid()) {
        draw(alternate_box, COLOUR_INVISIBLE);
    } else if (grid_style.has_flag(STYLE_GRID_TYPE_LINES)) {
        draw(background, grid_style.bg_colour);
    }
}

void WM_GRID::draw_column_dividers(IMAGE& buffer) {
    const VIEW view = get_view();
    const std::int16_t row = first_visible != -1 ? first_visible : std::int16_t{0};
    if (row >= row_count) {
        return;
    }
    const SAVED_ACTIVE_AREA saved(&buffer);
    buffer.add_rect_to_active_area(view.left, view.top, view.right - get_bar_width(), view.bottom);
    for (std::int16_t column = 0; column < rows[index_of(row)]->columns; ++column) {
        std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        rows[index_of(row)]->get_coords(column, bar_layout ? 1 : 0, x1, y1, x2, y2);
        buffer.draw_vertical_line(x + x2 + 1, view.top, view.bottom, grid_style.fg_colour);
    }
}
