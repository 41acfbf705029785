#include "modules/winman/wm_grid_row.h"

#include <algorithm>

#include "../gui/to_short.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_grid.h"

namespace {

void dispose(WM_SCREEN_OBJECT* object) {
    if (object == nullptr) {
        return;
    }
    object->hide(0, 0);
    object->parent = nullptr;
    if (!object->not_owned) {
        delete object;
    }
}

}  // namespace

void WM_GRID_ROW::clear() {
    for (std::int16_t column = 0; column < columns; ++column) {
        dispose(objects[static_cast<std::size_t>(column)]);
    }
    columns = 0;
    objects.reset();
    layout.reset();
    for (int variant = 0; variant < VARIANT_COUNT; ++variant) {
        left[variant].reset();
        right[variant].reset();
    }
}

bool WM_GRID_ROW::set_object(std::int16_t column, WM_SCREEN_OBJECT* object,
                             unsigned char delete_old) {
    if (column < 0 || column >= columns) {
        return false;
    }
    WM_SCREEN_OBJECT*& cell = objects[static_cast<std::size_t>(column)];
    WM_SCREEN_OBJECT* const old = cell;
    cell = object;
    if (old != nullptr && old != object) {
        if (delete_old) {
            dispose(old);
        } else {
            old->hide(0, 0);
            old->parent = nullptr;
        }
    }
    return true;
}

WM_SCREEN_OBJECT* WM_GRID_ROW::get_object(std::int16_t column) const {
    return column >= 0 && column < columns ? objects[static_cast<std::size_t>(column)] : nullptr;
}

void WM_GRID_ROW::set_height(std::int16_t pitch, const WM_STYLE_SET& style) {
    const std::int32_t top = style.get_cell_top_gap(), low = style.get_cell_bottom_gap();
    height = to_short(std::max(pitch - style.y_spacing, top + low + 2));
    cell_top = to_short(top);
    cell_bottom = to_short(height - 1 - low);
}

bool WM_GRID_ROW::get_coords(std::int16_t column, unsigned char with_scrollbar, std::int16_t& x1,
                             std::int16_t& y1, std::int16_t& x2, std::int16_t& y2) const {
    x1 = y1 = x2 = y2 = 0;
    if (column < 0 || column >= columns) {
        return false;
    }
    const int variant = with_scrollbar ? WITH_SCROLLBAR : WITHOUT_SCROLLBAR;
    const auto index = static_cast<std::size_t>(column);
    x1 = to_short(left[variant][index] + x_offset);
    x2 = to_short(right[variant][index] + x_offset + (column == columns - 1 ? extra_last : 0));
    y1 = cell_top;
    y2 = cell_bottom;
    return true;
}

void WM_GRID_ROW::calc_ratios(std::int16_t width, const WM_STYLE_SET& style) {
    const std::int32_t between =
        style.get_cell_left_gap() + style.get_cell_right_gap() + style.x_spacing;
    const std::int32_t bar_width =
        (grid != nullptr ? grid->scrollbar_style : style).grid_scrollbar_width;
    std::int64_t fixed = 0, weights = 0;
    for (std::int16_t column = 0; column < columns; ++column) {
        const std::int32_t entry = layout[static_cast<std::size_t>(column)];
        (entry < 0 ? fixed : weights) += entry < 0 ? -entry : entry;
    }
    for (int variant = 0; variant < VARIANT_COUNT; ++variant) {
        std::int64_t room = width - style.get_object_left_gap() - style.get_object_right_gap() -
                            (columns - 1) * between;
        room =
            std::max<std::int64_t>(room - (variant == WITH_SCROLLBAR ? bar_width : 0) - fixed, 0);
        std::int64_t weights_so_far = 0, shared = 0;
        std::int32_t x = style.get_object_left_gap();
        for (std::size_t column = 0; column < static_cast<std::size_t>(columns); ++column) {
            std::int32_t column_width = -layout[column];
            if (column_width <= 0) {
                weights_so_far += layout[column];
                const std::int64_t share = weights > 0 ? room * weights_so_far / weights : 0;
                column_width = static_cast<std::int32_t>(share - shared);
                shared = share;
            }
            left[variant][column] = to_short(x);
            right[variant][column] = to_short(x + column_width - 1);
            x += column_width + between;
        }
    }
}

void WM_GRID_ROW::set_layout(std::int16_t width, std::int16_t new_columns,
                             const std::int16_t* new_layout, const WM_STYLE_SET& style) {
    const std::int16_t count = std::max<std::int16_t>(new_columns, 0);
    const auto size = static_cast<std::size_t>(count);
    auto new_objects = std::make_unique<WM_SCREEN_OBJECT*[]>(size);
    // The argument may be this row's own layout.
    auto entries = std::make_unique<std::int16_t[]>(size);
    for (std::size_t column = 0; column < size; ++column) {
        entries[column] = new_layout != nullptr ? new_layout[column] : std::int16_t{1};
    }
    for (std::int16_t column = 0; column < columns; ++column) {
        WM_SCREEN_OBJECT* object = objects[static_cast<std::size_t>(column)];
        if (column < count) {
            new_objects[static_cast<std::size_t>(column)] = object;
        } else {
            dispose(object);
        }
    }
    objects = std::move(new_objects);
    layout = std::move(entries);
    columns = count;
    for (int variant = 0; variant < VARIANT_COUNT; ++variant) {
        left[variant] = std::make_unique<std::int16_t[]>(size);
        right[variant] = std::make_unique<std::int16_t[]>(size);
    }
    calc_ratios(width, style);
}
