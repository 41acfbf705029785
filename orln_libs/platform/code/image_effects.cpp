// Turned pictures, wipes and strips of sprites.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "platform/image.h"

namespace {

// One pixel of a picture, invisible outside of it, with its colour multiplied by its alpha.
struct WEIGHTED_PIXEL {
    double red = 0, green = 0, blue = 0, alpha = 0;

    void add(const IMAGE& image, std::int32_t x, std::int32_t y, double weight) {
        if (x < 0 || y < 0 || x >= image.width || y >= image.height) {
            return;
        }
        const COLOUR pixel = image.row(y)[x];
        weight *= pixel.alpha();
        red += weight * pixel.red();
        green += weight * pixel.green();
        blue += weight * pixel.blue();
        alpha += weight;
    }
    COLOUR get() const {
        if (alpha < 0.5) {
            return COLOUR_INVISIBLE;
        }
        const auto channel = [](double value) {
            return static_cast<unsigned char>(std::min(255.0, value + 0.5));
        };
        return COLOUR(channel(red / alpha), channel(green / alpha), channel(blue / alpha),
                      channel(alpha));
    }
};

COLOUR interpolate(const IMAGE& image, double x, double y) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto column = static_cast<std::int32_t>(left);
    const auto line = static_cast<std::int32_t>(top);
    WEIGHTED_PIXEL pixel;
    pixel.add(image, column, line, (1 - (x - left)) * (1 - (y - top)));
    pixel.add(image, column + 1, line, (x - left) * (1 - (y - top)));
    pixel.add(image, column, line + 1, (1 - (x - left)) * (y - top));
    pixel.add(image, column + 1, line + 1, (x - left) * (y - top));
    return pixel.get();
}

// Draws the wipe at part / whole.
void draw_wipe(IMAGE& target, const IMAGE& first, const IMAGE& second, std::int32_t x,
               std::int32_t y, std::int32_t type, std::int32_t part, std::int32_t whole,
               IMAGE_COPY_TYPE copy_type) {
    const std::int32_t w = first.width;
    const std::int32_t h = first.height;
    const auto scaled = [&](std::int32_t side) {
        return static_cast<std::int32_t>(std::int64_t{side} * part / whole);
    };
    const bool moves = type <= IMAGE_BLEND_MOVE_DOWN;
    const std::int32_t nw = scaled(w);
    const std::int32_t nh = scaled(h);
    const auto put = [&](const IMAGE& image, std::int32_t sx, std::int32_t sy, std::int32_t width,
                         std::int32_t height, std::int32_t dx, std::int32_t dy) {
        image.put(sx, sy, width, height, x + dx, y + dy, &target, copy_type);
    };
    switch (type) {
        case IMAGE_BLEND_MOVE_LEFT:
        case IMAGE_BLEND_REVEAL_LEFT:
            put(first, moves ? nw : 0, 0, w - nw, h, 0, 0);
            put(second, moves ? 0 : w - nw, 0, nw, h, w - nw, 0);
            break;
        case IMAGE_BLEND_MOVE_RIGHT:
        case IMAGE_BLEND_REVEAL_RIGHT:
            put(first, moves ? 0 : nw, 0, w - nw, h, nw, 0);
            put(second, moves ? w - nw : 0, 0, nw, h, 0, 0);
            break;
        case IMAGE_BLEND_MOVE_UP:
        case IMAGE_BLEND_REVEAL_UP:
            put(first, 0, moves ? nh : 0, w, h - nh, 0, 0);
            put(second, 0, moves ? 0 : h - nh, w, nh, 0, h - nh);
            break;
        case IMAGE_BLEND_MOVE_DOWN:
        case IMAGE_BLEND_REVEAL_DOWN:
            put(first, 0, moves ? 0 : nh, w, h - nh, 0, nh);
            put(second, 0, moves ? h - nh : 0, w, nh, 0, 0);
            break;
        default:
            break;
    }
}

bool has_same_size(const IMAGE& a, const IMAGE& b) {
    return a.width == b.width && a.height == b.height;
}

bool ends_with(const char* name, const char* suffix) {
    const std::size_t length = std::strlen(name);
    const std::size_t end = std::strlen(suffix);
    return length > end && std::strcmp(name + length - end, suffix) == 0;
}

// The pictures of a folder in the order of their names.
std::vector<std::string> list_pictures(const DISK_MANAGER& disk) {
    std::vector<std::string> names;
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    if (disk.get_dir_list(false, false, false, list, count)) {
        for (std::int32_t i = 0; i < count; ++i) {
            const char* name = list[i].name;
            if (ends_with(name, ".png") || ends_with(name, ".jpg") || ends_with(name, ".jpeg")) {
                names.emplace_back(name);
            }
        }
    }
    DISK_MANAGER::free_list(list);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

void IMAGE::rotate(IMAGE& target, IMAGE_ROTATE_VALUE turn) const {
    if (&target == this) {
        IMAGE copy_of_this;
        copy_of_this.copy_pixels_from(*this);
        copy_of_this.rotate(target, turn);
        return;
    }
    if (target.locked) {
        return;
    }
    const bool is_upright = turn == IMAGE_ROTATE_180;
    target.reset(is_upright ? width : height, is_upright ? height : width);
    for (std::int32_t y = 0; target.pixels && y < height; ++y) {
        const COLOUR* from = row(y);
        for (std::int32_t x = 0; x < width; ++x) {
            switch (turn) {
                case IMAGE_ROTATE_90:
                    target.row(x)[height - 1 - y] = from[x];
                    break;
                case IMAGE_ROTATE_180:
                    target.row(height - 1 - y)[width - 1 - x] = from[x];
                    break;
                case IMAGE_ROTATE_270:
                    target.row(width - 1 - x)[y] = from[x];
                    break;
            }
        }
    }
}

void IMAGE::rotate(IMAGE& target, float degrees) const {
    if (&target == this) {
        IMAGE copy_of_this;
        copy_of_this.copy_pixels_from(*this);
        copy_of_this.rotate(target, degrees);
        return;
    }
    if (target.locked || !std::isfinite(degrees)) {
        return;
    }
    const double angle = std::fmod(double{degrees}, 360.0) * std::numbers::pi / 180.0;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    // A little less, so that a quarter turn doesn't gain a pixel by rounding.
    constexpr double SLACK = 1e-4;
    const double new_width = std::abs(width * cosine) + std::abs(height * sine) - SLACK;
    const double new_height = std::abs(width * sine) + std::abs(height * cosine) - SLACK;
    target.reset(static_cast<std::int32_t>(std::ceil(new_width)),
                 static_cast<std::int32_t>(std::ceil(new_height)));
    if (!target.pixels || !pixels) {
        return;
    }
    for (std::int32_t y = 0; y < target.height; ++y) {
        const double dy = y - (target.height - 1) / 2.0;
        for (std::int32_t x = 0; x < target.width; ++x) {
            const double dx = x - (target.width - 1) / 2.0;
            target.row(y)[x] = interpolate(*this, dx * cosine + dy * sine + (width - 1) / 2.0,
                                           dy * cosine - dx * sine + (height - 1) / 2.0);
        }
    }
}

void IMAGE::draw_blended_images(const IMAGE& first, const IMAGE& second, std::int32_t x,
                                std::int32_t y, IMAGE_BLEND_TYPE type, char percent) {
    constexpr std::int32_t FAR_AWAY = 1 << 29;  // leaves room to add the pictures' sides
    if (has_same_size(first, second)) {
        draw_wipe(*this, first, second, std::clamp(x, -FAR_AWAY, FAR_AWAY),
                  std::clamp(y, -FAR_AWAY, FAR_AWAY), type, std::clamp<int>(percent, 0, 100), 100,
                  IMAGE_COPY_BLEND);
    }
}

unsigned char IMAGE::create_sprite_transition_image(const IMAGE& first, const IMAGE& second,
                                                    IMAGE_TRANSITION_TYPE type,
                                                    std::int32_t frames) {
    if (locked || frames < 1 || !first.pixels || !has_same_size(first, second) ||
        frames > MAX_WIDTH / first.width) {
        return 0;
    }
    IMAGE strip(frames * first.width, first.height);
    for (std::int32_t i = 0; i < frames; ++i) {
        draw_wipe(strip, first, second, i * first.width, 0, type, i, std::max(frames - 1, 1),
                  IMAGE_COPY_SOLID);
    }
    copy_pixels_from(strip);
    return 1;
}

unsigned char IMAGE::create_sprite_image_from_path(const DISK_MANAGER& disk, const char* name,
                                                   std::int32_t cell_width,
                                                   std::int32_t cell_height) {
    DISK_MANAGER folder = disk;
    if (locked || (name && *name && !folder.move_down(name))) {
        return 0;
    }
    const std::vector<std::string> names = list_pictures(folder);
    IMAGE strip;
    for (std::size_t i = 0; i < names.size(); ++i) {
        IMAGE cell;
        if (!cell.load(folder, names[i].c_str(), cell_width, cell_height)) {
            return 0;
        }
        if (i == 0) {
            cell_width = cell.width;
            cell_height = cell.height;
            if (names.size() > static_cast<std::size_t>(MAX_WIDTH / cell_width)) {
                return 0;
            }
            strip.reset(static_cast<std::int32_t>(names.size()) * cell_width, cell_height);
        }
        cell.put(static_cast<std::int32_t>(i) * cell_width, 0, &strip, IMAGE_COPY_SOLID);
    }
    if (!strip.pixels) {
        return 0;
    }
    copy_pixels_from(strip);
    return 1;
}
