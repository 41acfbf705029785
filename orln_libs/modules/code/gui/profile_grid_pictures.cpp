// The pictures at the sides of a PROFILE_GRID's cells.
#include <algorithm>
#include <vector>

#include "modules/gui/profile_grid.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_image.h"
#include "platform/image_cache.h"
#include "skin_lookup.h"

namespace {

SKIN_STYLE BLANK_INDEX{"BLANK"};
SKIN_CONSTANT PROFILE_PICTURE_IMAGE_BORDER_SIZE_INDEX{"PROFILE_PICTURE_IMAGE_BORDER_SIZE"};

// Each side on its own.
void shrink_to_room(IMAGE& image, std::int32_t room_width, std::int32_t room_height) {
    if (image.width > room_width || image.height > room_height) {
        image.resize(std::min<std::int32_t>(image.width, room_width),
                     std::min<std::int32_t>(image.height, room_height), 1);
    }
}

}  // namespace

bool PROFILE_GRID::get_picture_room(std::int16_t column, std::int16_t row, std::int32_t& room_width,
                                    std::int32_t& room_height) const {
    const std::int16_t last_row = get_last_visible_row();
    std::int16_t x1, y1, x2, y2, unused, bottom;
    if (mode != MODE_PICTURES || row < 1 || row > last_row ||
        !grid->get_cell_coords(column, row, x1, y1, x2, y2) ||
        !grid->get_cell_coords(column, last_row, unused, unused, unused, bottom)) {
        return false;
    }
    const std::int32_t border = PROFILE_PICTURE_IMAGE_BORDER_SIZE_INDEX.get(skin_prefix);
    const std::int32_t cell_width = x2 - x1;
    room_width =
        std::max({(cell_width + 1) / 2 - border, cell_width - 2 * border - MIN_TEXT_WIDTH, 1});
    room_height = std::max(bottom - y1 - 2 * border + 1, 1);
    return true;
}

WM_IMAGE* PROFILE_GRID::add_picture(SIDE side, std::int16_t column, std::int16_t row,
                                    const IMAGE& picture, unsigned char border,
                                    WM_CALLBACK image_callback, void* data1, void* data2) {
    std::int32_t room_width = 0, room_height = 0;
    std::int16_t x1, y1, x2, y2;
    if (!get_picture_room(column, row, room_width, room_height) ||
        !grid->get_cell_coords(column, row, x1, y1, x2, y2)) {
        return nullptr;
    }
    auto* shown =
        new WM_IMAGE(0, 0, 0, 0, 1, image_callback, data1, data2, IMAGE_CLICK_ON_RELEASE, window);
    shown->allowed_focus = image_callback != nullptr;
    shown->image.copy_pixels_from(picture);
    shrink_to_room(shown->image, room_width, room_height);
    if (border) {
        shown->image.draw_rect(0, 0, shown->image.width - 1, shown->image.height - 1, COLOUR_BLACK);
    }
    const std::int32_t margin = PROFILE_PICTURE_IMAGE_BORDER_SIZE_INDEX.get(skin_prefix);
    shown->width = shown->image.width;
    shown->height = shown->image.height;
    shown->x = static_cast<std::int16_t>(side == LEFT ? x1 + margin : x2 - shown->width - margin);
    shown->y = static_cast<std::int16_t>(y1 + margin);
    grid->add_object(shown, 0);
    (side == LEFT ? left_images : right_images).add(new PICTURE{column, shown});
    adjust_cells(column, row);
    return shown;
}

WM_IMAGE* PROFILE_GRID::add_picture(SIDE side, std::int16_t column, std::int16_t row,
                                    IMAGE_CACHE& cache, const char* path, const char* name,
                                    unsigned char reload, unsigned char border,
                                    WM_CALLBACK image_callback, void* data1, void* data2) {
    std::int32_t room_width = 0, room_height = 0;
    if (!get_picture_room(column, row, room_width, room_height)) {
        return nullptr;
    }
    IMAGE* opened = cache.open_image(path, name, IMAGE::NO_SIZE, IMAGE::NO_SIZE,
                                     reload ? IMAGE_CACHE::RELOAD : IMAGE_CACHE::EXACT_SIZE, 1);
    if (opened == nullptr) {
        return add_picture(side, column, row, IMAGE(), 0, image_callback, data1, data2);
    }
    if (opened->width > room_width || opened->height > room_height) {
        // The tighter of the two scales, in whole numbers.
        std::int32_t new_width = room_width, new_height = room_height;
        if (room_width * opened->height < room_height * opened->width) {
            new_height = std::max(opened->height * room_width / opened->width, 1);
        } else {
            new_width = std::max(opened->width * room_height / opened->height, 1);
        }
        cache.resize_image(opened, new_width, new_height, 1);
    }
    WM_IMAGE* const shown =
        add_picture(side, column, row, *opened, border, image_callback, data1, data2);
    cache.close(opened);
    return shown;
}

WM_IMAGE* PROFILE_GRID::add_left_picture_image(std::int16_t column, std::int16_t row,
                                               const IMAGE& picture, unsigned char border,
                                               WM_CALLBACK image_callback, void* data1,
                                               void* data2) {
    return add_picture(LEFT, column, row, picture, border, image_callback, data1, data2);
}

WM_IMAGE* PROFILE_GRID::add_left_picture_image(std::int16_t column, std::int16_t row,
                                               IMAGE_CACHE& cache, const char* path,
                                               const char* name, unsigned char reload,
                                               unsigned char border, WM_CALLBACK image_callback,
                                               void* data1, void* data2) {
    return add_picture(LEFT, column, row, cache, path, name, reload, border, image_callback, data1,
                       data2);
}

WM_IMAGE* PROFILE_GRID::add_right_picture_image(std::int16_t column, std::int16_t row,
                                                const IMAGE& picture, unsigned char border,
                                                WM_CALLBACK image_callback, void* data1,
                                                void* data2) {
    return add_picture(RIGHT, column, row, picture, border, image_callback, data1, data2);
}

WM_IMAGE* PROFILE_GRID::add_right_picture_image(std::int16_t column, std::int16_t row,
                                                IMAGE_CACHE& cache, const char* path,
                                                const char* name, unsigned char reload,
                                                unsigned char border, WM_CALLBACK image_callback,
                                                void* data1, void* data2) {
    return add_picture(RIGHT, column, row, cache, path, name, reload, border, image_callback, data1,
                       data2);
}

void PROFILE_GRID::clear_pictures(PTRARRAY& pictures) {
    std::vector<std::int16_t> columns;
    for (std::int32_t i = 0; i < pictures.get_count(); ++i) {
        const auto& picture = *pictures.get<PICTURE>(i);
        columns.push_back(picture.column);
        grid->remove_object(picture.image, 1, 0);
    }
    pictures.clear();
    for (const std::int16_t column : columns) {
        adjust_cells(column, 0);
    }
}

void PROFILE_GRID::clear_left_picture_images() {
    clear_pictures(left_images);
}

void PROFILE_GRID::clear_right_picture_images() {
    clear_pictures(right_images);
}

std::int16_t PROFILE_GRID::get_border_adjustment(const PTRARRAY& pictures, std::int16_t column,
                                                 std::int16_t row) const {
    std::int16_t x1, y1, x2, y2;
    if (pictures.is_empty() || !grid->get_cell_coords(column, row, x1, y1, x2, y2)) {
        return 0;
    }
    const std::int32_t border = PROFILE_PICTURE_IMAGE_BORDER_SIZE_INDEX.get(skin_prefix);
    std::int32_t adjustment = 0;
    for (std::int32_t i = 0; i < pictures.get_count(); ++i) {
        const auto& picture = *pictures.get<PICTURE>(i);
        const WM_IMAGE& image = *picture.image;
        if (picture.column == column && image.y - border <= y2 &&
            image.y + image.height - 1 + border >= y1) {
            adjustment = std::max(adjustment, image.width + 2 * border);
        }
    }
    return static_cast<std::int16_t>(adjustment);
}

std::int16_t PROFILE_GRID::get_left_border_adjustment(std::int16_t column, std::int16_t row) const {
    return get_border_adjustment(left_images, column, row);
}

std::int16_t PROFILE_GRID::get_right_border_adjustment(std::int16_t column,
                                                       std::int16_t row) const {
    return get_border_adjustment(right_images, column, row);
}

void PROFILE_GRID::adjust_cell(std::int16_t column, std::int16_t row) {
    WM_GRID* const cell = get_nested(column, row);
    if (cell == nullptr) {
        return;
    }
    const WM_STYLE_SET& blank = BLANK_INDEX.get();
    cell->grid_style.border_left_gap = static_cast<std::uint16_t>(
        blank.get_object_left_gap() + get_left_border_adjustment(column, row));
    cell->grid_style.border_right_gap = static_cast<std::uint16_t>(
        blank.get_object_right_gap() + get_right_border_adjustment(column, row));
    cell->refresh_layout();
}

void PROFILE_GRID::adjust_cells(std::int16_t column, std::int16_t from_row) {
    for (std::int16_t row = from_row; row < grid->row_count; ++row) {
        adjust_cell(column, row);
    }
}
