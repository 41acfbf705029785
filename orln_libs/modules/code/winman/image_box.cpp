#include "modules/winman/image_box.h"

#include <algorithm>
#include <string>

#include "platform/disk_manager.h"
#include "platform/image_cache.h"

bool IMAGE_BOX::store_local_result = false;

namespace {

using PIECE = IMAGE* IMAGE_BOX::*;

constexpr PIECE PIECES[] = {&IMAGE_BOX::left,
                            &IMAGE_BOX::centre,
                            &IMAGE_BOX::right,
                            &IMAGE_BOX::top,
                            &IMAGE_BOX::bottom,
                            &IMAGE_BOX::top_left,
                            &IMAGE_BOX::top_right,
                            &IMAGE_BOX::bottom_left,
                            &IMAGE_BOX::bottom_right,
                            &IMAGE_BOX::centre_overlay,
                            &IMAGE_BOX::stretch_overlay,
                            &IMAGE_BOX::position_overlay};

// A box beyond this side is drawn straight to its target, without pictures between: no size that a
// skin gives makes them large.
constexpr std::int32_t MAX_PICTURE_BOX_SIDE = 4096;

std::int32_t width_of(const IMAGE* piece) {
    return piece ? piece->width : 0;
}

std::int32_t height_of(const IMAGE* piece) {
    return piece ? piece->height : 0;
}

void put_piece(const IMAGE* piece, std::int32_t x, std::int32_t y, IMAGE& target,
               IMAGE_COPY_TYPE copy_type) {
    if (piece) {
        piece->put(x, y, &target, copy_type);
    }
}

// A tile costs as much as some hundred of its pixels. Where there would be many small ones, they
// are joined to tiles of at least this side first.
constexpr std::int32_t JOINED_SIDE = 32;
constexpr std::int32_t MANY_TILES = 64;

// Makes `joined` a picture of that many pieces.
void join_pieces(const IMAGE& piece, std::int32_t columns, std::int32_t rows, IMAGE& joined) {
    joined.reset(piece.width * columns, piece.height * rows);
    piece.put(0, 0, &joined, IMAGE_COPY_SOLID);
    for (std::int32_t done = piece.width; done < joined.width; done *= 2) {
        joined.copy(&joined, 0, 0, done, 0, done, piece.height, IMAGE_COPY_SOLID);
    }
    for (std::int32_t done = piece.height; done < joined.height; done *= 2) {
        joined.copy(&joined, 0, 0, 0, done, joined.width, done, IMAGE_COPY_SOLID);
    }
}

// Repeats the piece over the rectangle from its top left corner; the last tiles are cut. Only tiles
// in the active area cost anything.
void tile_piece(const IMAGE* piece, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                std::int32_t y2, IMAGE& target, IMAGE_COPY_TYPE copy_type) {
    if (width_of(piece) < 1 || height_of(piece) < 1 || target.active_right < 0) {
        return;
    }
    const std::int32_t width = piece->width;
    const std::int32_t height = piece->height;
    const auto first_tile = [](std::int32_t start, std::int32_t active, std::int32_t size) {
        return start + (std::max(active - start, 0) / size) * size;
    };
    const std::int32_t end_x = std::min<std::int32_t>(x2, target.active_right);
    const std::int32_t end_y = std::min<std::int32_t>(y2, target.active_bottom);
    const std::int32_t start_x = first_tile(x1, target.active_left, width);
    const std::int32_t start_y = first_tile(y1, target.active_top, height);
    if (start_x > end_x || start_y > end_y) {
        return;
    }
    const std::int32_t columns = (end_x - start_x) / width + 1;
    const std::int32_t rows = (end_y - start_y) / height + 1;
    if (columns * rows > MANY_TILES &&
        ((columns > 1 && width < JOINED_SIDE) || (rows > 1 && height < JOINED_SIDE))) {
        const auto pieces_of = [](std::int32_t side) { return (JOINED_SIDE + side - 1) / side; };
        IMAGE joined;
        join_pieces(*piece, std::min(columns, pieces_of(width)), std::min(rows, pieces_of(height)),
                    joined);
        tile_piece(&joined, start_x, start_y, x2, y2, target, copy_type);
        return;
    }
    for (std::int32_t y = start_y; y <= end_y; y += height) {
        for (std::int32_t x = start_x; x <= end_x; x += width) {
            piece->put(0, 0, std::min(width, x2 - x + 1), std::min(height, y2 - y + 1), x, y,
                       &target, copy_type);
        }
    }
}

bool is_pixel_set(const IMAGE* piece, std::int32_t x, std::int32_t y) {
    return piece && piece->pixels && x >= 0 && y >= 0 && x < piece->width && y < piece->height &&
           piece->row(y)[x].alpha() != 0;
}

// The same for a point of a tiled stretch.
bool is_tile_pixel_set(const IMAGE* piece, std::int32_t x, std::int32_t y) {
    return width_of(piece) > 0 && height_of(piece) > 0 && x >= 0 && y >= 0 &&
           is_pixel_set(piece, x % piece->width, y % piece->height);
}

}  // namespace

// A rectangle, corners included.
struct IMAGE_BOX::AREA {
    std::int32_t x1, y1, x2, y2;

    std::int32_t width() const { return x2 - x1 + 1; }
    std::int32_t height() const { return y2 - y1 + 1; }
    bool fits_picture() const {
        return width() <= MAX_PICTURE_BOX_SIDE && height() <= MAX_PICTURE_BOX_SIDE;
    }
};

// The ends of one axis.
struct IMAGE_BOX::DIVISION {
    std::int32_t first, last;
};

// What the two ends get of an axis: their own sizes or, if that is too much, shares in proportion.
IMAGE_BOX::DIVISION IMAGE_BOX::divide(std::int32_t size, std::int32_t first, std::int32_t last) {
    if (first + last <= size) {
        return {first, last};
    }
    const std::int32_t share = first * size / (first + last);
    return {share, last == 0 ? 0 : last * size / (last + share)};
}

IMAGE_BOX& IMAGE_BOX::operator=(const IMAGE_BOX& other) {
    if (this == &other) {
        return *this;
    }
    clear_images();
    if (other.cache) {
        cache = other.cache;
        for (const PIECE piece : PIECES) {
            this->*piece = other.*piece ? cache->duplicate(other.*piece) : nullptr;
        }
    }
    return *this;
}

void IMAGE_BOX::clear_images() {
    for (const PIECE piece : PIECES) {
        if (this->*piece) {
            cache->close(this->*piece);
            this->*piece = nullptr;
        }
    }
    local_result.reset();
}

bool IMAGE_BOX::load_images(const DISK_MANAGER& disk, const char* base, unsigned char cache_flags) {
    char path[DISK_MANAGER::PATH_SIZE];
    if (!disk.get_relative_path(path)) {
        clear_images();
        return false;
    }
    return load_images(path, base, cache_flags);
}

bool IMAGE_BOX::load_images(const char* path, const char* base, unsigned char cache_flags) {
    clear_images();
    if (!cache || !path || !base) {
        return false;
    }
    const auto open = [&](const char* suffix, IMAGE*& piece) {
        const std::string name = std::string(base) + suffix;
        piece = cache->open_image(path, name.c_str(), -1, -1, cache_flags, 1);
        return piece != nullptr;
    };
    open("_colay", centre_overlay);
    open("_solay", stretch_overlay);
    open("_polay", position_overlay);
    // Every piece is tried, whatever else is missing: a box with a centre can be drawn.
    bool complete = true;
    const auto need = [&](const char* suffix, IMAGE*& piece) {
        complete = open(suffix, piece) && complete;
    };
    if (open("_top_left", top_left)) {
        need("_top_mid", top);
        need("_top_right", top_right);
        need("_mid_left", left);
        need("_mid_mid", centre);
        need("_mid_right", right);
        need("_bottom_left", bottom_left);
        need("_bottom_mid", bottom);
        need("_bottom_right", bottom_right);
    } else if (open("_left", left)) {
        need("_mid", centre);
        need("_right", right);
    } else if (open("_top", top)) {
        need("_mid", centre);
        need("_bottom", bottom);
    } else {
        need("", centre);
    }
    return complete;
}

// The size that a piece has when it isn't shrunk: a box that was drawn small can grow again.
std::int32_t IMAGE_BOX::natural_width(const IMAGE* piece) const {
    const std::int32_t original = piece && cache ? cache->get_image_orig_width(piece) : 0;
    return original > 0 ? original : width_of(piece);
}

std::int32_t IMAGE_BOX::natural_height(const IMAGE* piece) const {
    const std::int32_t original = piece && cache ? cache->get_image_orig_height(piece) : 0;
    return original > 0 ? original : height_of(piece);
}

void IMAGE_BOX::resize_piece(IMAGE*& piece, std::int32_t width, std::int32_t height) {
    if (piece && width > 0 && height > 0 && (piece->width != width || piece->height != height)) {
        cache->resize_image(piece, width, height, 1);
    }
}

void IMAGE_BOX::draw(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                     IMAGE* target, unsigned char, IMAGE_COPY_TYPE copy_type) {
    const AREA area{x1, y1, x2, y2};
    if (!target || !are_images_valid() || area.width() < 1 || area.height() < 1) {
        return;
    }
    const bool with_overlays = copy_type == IMAGE_COPY_BLEND || copy_type == IMAGE_COPY_SOLID;
    if (!store_local_result || !area.fits_picture()) {
        draw_picture(area, *target, copy_type);
        if (with_overlays) {
            draw_overlays(area, *target);
        }
        return;
    }
    if (!local_result || local_result->width != area.width() ||
        local_result->height != area.height()) {
        if (!local_result) {
            local_result = std::make_unique<IMAGE>();
        }
        local_result->reset(area.width(), area.height());
        local_result->clear(COLOUR_INVISIBLE);
        const AREA whole{0, 0, area.width() - 1, area.height() - 1};
        draw_picture(whole, *local_result, IMAGE_COPY_SOLID);
        if (with_overlays) {
            draw_overlays(whole, *local_result);
        }
    }
    local_result->put(area.x1, area.y1, target, copy_type);
}

void IMAGE_BOX::draw_picture(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) {
    if (top_left) {
        draw_nine(area, target, copy_type);
    } else if (left || right) {
        draw_across(area, target, copy_type);
    } else if (top || bottom) {
        draw_down(area, target, copy_type);
    } else {
        put_piece(centre, area.x1 + (area.width() - centre->width) / 2,
                  area.y1 + (area.height() - centre->height) / 2, target, copy_type);
    }
}

void IMAGE_BOX::draw_nine(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) {
    const DIVISION x = divide(area.width(), natural_width(left), natural_width(right));
    const DIVISION y = divide(area.height(), natural_height(top), natural_height(bottom));
    resize_piece(top_left, x.first, y.first);
    resize_piece(top_right, x.last, y.first);
    resize_piece(bottom_left, x.first, y.last);
    resize_piece(bottom_right, x.last, y.last);
    resize_piece(left, x.first, height_of(left));
    resize_piece(right, x.last, height_of(right));
    resize_piece(top, width_of(top), y.first);
    resize_piece(bottom, width_of(bottom), y.last);

    // The rectangle between the corners, and where the far ends begin.
    const AREA inner{area.x1 + x.first, area.y1 + y.first, area.x2 - x.last, area.y2 - y.last};
    const std::int32_t far_x = inner.x2 + 1;
    const std::int32_t far_y = inner.y2 + 1;
    // Through tile_piece, so that a corner whose share is nothing isn't drawn.
    tile_piece(top_left, area.x1, area.y1, inner.x1 - 1, inner.y1 - 1, target, copy_type);
    tile_piece(top_right, far_x, area.y1, area.x2, inner.y1 - 1, target, copy_type);
    tile_piece(bottom_left, area.x1, far_y, inner.x1 - 1, area.y2, target, copy_type);
    tile_piece(bottom_right, far_x, far_y, area.x2, area.y2, target, copy_type);
    tile_piece(centre, inner.x1, inner.y1, inner.x2, inner.y2, target, copy_type);
    tile_piece(top, inner.x1, area.y1, inner.x2, inner.y1 - 1, target, copy_type);
    tile_piece(bottom, inner.x1, far_y, inner.x2, area.y2, target, copy_type);
    tile_piece(left, area.x1, inner.y1, inner.x1 - 1, inner.y2, target, copy_type);
    tile_piece(right, far_x, inner.y1, area.x2, inner.y2, target, copy_type);
}

void IMAGE_BOX::draw_across(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) const {
    const DIVISION x = divide(area.width(), width_of(left), width_of(right));
    const auto middle = [&area](const IMAGE* piece) {
        return area.y1 + (area.height() - height_of(piece)) / 2;
    };
    put_piece(left, area.x1, middle(left), target, copy_type);
    put_piece(right, area.x2 - x.last + 1, middle(right), target, copy_type);
    tile_piece(centre, area.x1 + x.first, middle(centre), area.x2 - x.last,
               middle(centre) + height_of(centre) - 1, target, copy_type);
}

void IMAGE_BOX::draw_down(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) const {
    const DIVISION y = divide(area.height(), height_of(top), height_of(bottom));
    const auto middle = [&area](const IMAGE* piece) {
        return area.x1 + (area.width() - width_of(piece)) / 2;
    };
    put_piece(top, middle(top), area.y1, target, copy_type);
    put_piece(bottom, middle(bottom), area.y2 - y.last + 1, target, copy_type);
    tile_piece(centre, middle(centre), area.y1 + y.first, middle(centre) + width_of(centre) - 1,
               area.y2 - y.last, target, copy_type);
}

// Each overlay is cut to the outline of the box: its alpha is multiplied by that of the box's own
// picture.
void IMAGE_BOX::draw_overlays(const AREA& area, IMAGE& target) {
    if ((!centre_overlay && !stretch_overlay && !position_overlay) || !area.fits_picture()) {
        return;
    }
    const std::int32_t width = area.width();
    const std::int32_t height = area.height();
    IMAGE outline(width, height);
    draw_picture(AREA{0, 0, width - 1, height - 1}, outline, IMAGE_COPY_SOLID);

    const auto draw_overlay = [&](const IMAGE& overlay, std::int32_t x, std::int32_t y) {
        IMAGE cut(width, height);
        overlay.put(x, y, &cut, IMAGE_COPY_SOLID);
        outline.put(0, 0, &cut, IMAGE_COPY_MULTIPLY_ALPHA);
        cut.put(area.x1, area.y1, &target, IMAGE_COPY_BLEND);
    };
    const auto centred = [](std::int32_t space, std::int32_t size) { return (space - size) / 2; };
    const auto at_end = [&](std::int32_t space, std::int32_t size) {
        return size > space ? centred(space, size) : space - size;
    };
    if (centre_overlay) {
        draw_overlay(*centre_overlay, centred(width, centre_overlay->width),
                     centred(height, centre_overlay->height));
    }
    if (stretch_overlay) {
        IMAGE stretched;
        stretched.resize_from(*stretch_overlay, width, height, 1);
        draw_overlay(stretched, 0, 0);
    }
    if (position_overlay) {
        draw_overlay(*position_overlay, at_end(width, position_overlay->width),
                     at_end(height, position_overlay->height));
    }
}

bool IMAGE_BOX::is_in_it(std::int16_t x, std::int16_t y, std::int16_t width,
                         std::int16_t height) const {
    if (!are_images_valid() || x < 0 || y < 0 || x >= width || y >= height) {
        return false;
    }
    const auto centred = [](std::int32_t space, std::int32_t size) { return (space - size) / 2; };
    if (top_left) {
        const DIVISION dx = divide(width, natural_width(left), natural_width(right));
        const DIVISION dy = divide(height, natural_height(top), natural_height(bottom));
        const std::int32_t far_x = width - dx.last;
        const std::int32_t far_y = height - dy.last;
        // Column and row of the piece: 0 the near end, 1 between, 2 the far end.
        const int column = x < dx.first ? 0 : x < far_x ? 1 : 2;
        const int row = y < dy.first ? 0 : y < far_y ? 1 : 2;
        const IMAGE* const grid[3][3] = {
            {top_left, top, top_right}, {left, centre, right}, {bottom_left, bottom, bottom_right}};
        const std::int32_t origin_x[] = {0, dx.first, far_x};
        const std::int32_t origin_y[] = {0, dy.first, far_y};
        const std::int32_t piece_x = x - origin_x[column];
        const std::int32_t piece_y = y - origin_y[row];
        const IMAGE* piece = grid[row][column];
        return column == 1 || row == 1 ? is_tile_pixel_set(piece, piece_x, piece_y)
                                       : is_pixel_set(piece, piece_x, piece_y);
    }
    if (left || right) {
        const DIVISION dx = divide(width, width_of(left), width_of(right));
        const auto piece_y = [&](const IMAGE* piece) {
            return y - centred(height, height_of(piece));
        };
        if (x < dx.first) {
            return is_pixel_set(left, x, piece_y(left));
        }
        if (x >= width - dx.last) {
            return is_pixel_set(right, x - (width - dx.last), piece_y(right));
        }
        return width_of(centre) > 0 &&
               is_pixel_set(centre, (x - dx.first) % centre->width, piece_y(centre));
    }
    if (top || bottom) {
        const DIVISION dy = divide(height, height_of(top), height_of(bottom));
        const auto piece_x = [&](const IMAGE* piece) {
            return x - centred(width, width_of(piece));
        };
        if (y < dy.first) {
            return is_pixel_set(top, piece_x(top), y);
        }
        if (y >= height - dy.last) {
            return is_pixel_set(bottom, piece_x(bottom), y - (height - dy.last));
        }
        return height_of(centre) > 0 &&
               is_pixel_set(centre, piece_x(centre), (y - dy.first) % centre->height);
    }
    return is_pixel_set(centre, x - centred(width, centre->width),
                        y - centred(height, centre->height));
}

template <class OPERATION>
void IMAGE_BOX::change_images(OPERATION operation) {
    for (const PIECE piece : PIECES) {
        if (this->*piece) {
            operation(this->*piece);
        }
    }
    local_result.reset();
}

void IMAGE_BOX::make_grey() {
    change_images([this](IMAGE*& image) { cache->make_grey(image); });
}

void IMAGE_BOX::recolour(COLOUR colour) {
    change_images([this, colour](IMAGE*& image) { cache->recolour(image, colour); });
}

void IMAGE_BOX::recolour_channel(COLOUR colour, char channel) {
    change_images([this, colour, channel](IMAGE*& image) {
        cache->recolour_channel(image, colour, channel);
    });
}

void IMAGE_BOX::set_trialpha_colours(COLOUR red, COLOUR green, COLOUR blue) {
    change_images([this, red, green, blue](IMAGE*& image) {
        cache->set_trialpha_colours(image, red, green, blue);
    });
}

void IMAGE_BOX::replace_colour(COLOUR from, COLOUR to) {
    change_images([this, from, to](IMAGE*& image) { cache->replace_colour(image, from, to); });
}
