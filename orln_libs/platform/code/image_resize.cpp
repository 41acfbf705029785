// Scaling.
#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "image_fatal.h"
#include "platform/image.h"
#include "platform/two_pass_scale.h"

namespace {

// The picture of four times each side that supersampling stands for would have fewer bytes than
// this, 20 MB.
constexpr std::int64_t MAX_SUPERSAMPLED_BYTES = 0x13FFFFF;
constexpr std::int32_t SAMPLES = 4;  // along each side of a pixel

bool is_given(std::int32_t side) {
    return side != IMAGE::NO_SIZE && side != -1;
}

// The distance of two samples in 16.16 fixed point. No position overflows its 32 bits: a side of a
// picture has at most 15.
std::uint32_t find_step(std::int32_t source_size, std::int64_t count) {
    return static_cast<std::uint32_t>((std::int64_t{source_size} << 16) / count);
}

// The nearest source positions of `count` samples.
std::vector<std::int32_t> find_nearest(std::int32_t source_size, std::int64_t count) {
    std::vector<std::int32_t> positions(static_cast<std::size_t>(count));
    const std::uint32_t step = find_step(source_size, count);
    std::uint32_t at = 0;
    for (std::int32_t& position : positions) {
        position = static_cast<std::int32_t>(at >> 16);
        at += step;
    }
    return positions;
}

struct SCALE_SOURCE {
    const COLOUR* pixels;
    std::int32_t width, height, stride;

    const COLOUR* row(std::int32_t y) const {
        return pixels + static_cast<std::ptrdiff_t>(y) * stride;
    }
};

void sample_nearest(const SCALE_SOURCE& source, IMAGE& target) {
    const std::vector<std::int32_t> rows = find_nearest(source.height, target.height);
    const std::uint32_t step = find_step(source.width, target.width);
    for (std::int32_t y = 0; y < target.height; ++y) {
        const auto at = static_cast<std::size_t>(y);
        COLOUR* to = target.row(y);
        if (y > 0 && rows[at] == rows[at - 1]) {
            std::copy_n(target.row(y - 1), target.width, to);
            continue;
        }
        // Four at a time, so that they don't wait for each other's positions.
        const COLOUR* from = source.row(rows[at]);
        std::uint32_t position = 0;
        std::int32_t x = 0;
        for (; x + 4 <= target.width; x += 4, position += 4 * step) {
            const COLOUR first = from[position >> 16];
            const COLOUR second = from[(position + step) >> 16];
            const COLOUR third = from[(position + 2 * step) >> 16];
            const COLOUR fourth = from[(position + 3 * step) >> 16];
            to[x] = first;
            to[x + 1] = second;
            to[x + 2] = third;
            to[x + 3] = fourth;
        }
        for (; x < target.width; ++x, position += step) {
            to[x] = from[position >> 16];
        }
    }
}

// Sums of pixels with 16 bits for each channel.
struct CHANNEL_SUMS {
    std::uint32_t red_blue = 0, alpha_green = 0;

    void add(COLOUR pixel) {
        red_blue += pixel.value & 0x00FF00FFu;
        alpha_green += (pixel.value >> 8) & 0x00FF00FFu;
    }
    void add(const CHANNEL_SUMS& other) {
        red_blue += other.red_blue;
        alpha_green += other.alpha_green;
    }
    COLOUR divide(int shift) const {
        return COLOUR(((red_blue >> shift) & 0x00FF00FFu) |
                      (((alpha_green >> shift) & 0x00FF00FFu) << 8));
    }
};

// What nearest samples at four times each side and scale_down_by_4() would yield, without the large
// picture between: each pixel is the mean of 4 by 4 samples.
void supersample(const SCALE_SOURCE& source, IMAGE& target) {
    const std::vector<std::int32_t> columns =
        find_nearest(source.width, std::int64_t{SAMPLES} * target.width);
    const std::vector<std::int32_t> rows =
        find_nearest(source.height, std::int64_t{SAMPLES} * target.height);
    const auto width = static_cast<std::size_t>(target.width);
    std::vector<CHANNEL_SUMS> line(width);  // of one source row, four samples each
    std::vector<CHANNEL_SUMS> sums(width);
    std::int32_t line_row = -1;
    for (std::int32_t y = 0; y < target.height; ++y) {
        std::fill(sums.begin(), sums.end(), CHANNEL_SUMS());
        for (std::int32_t i = 0; i < SAMPLES; ++i) {
            const std::int32_t source_row = rows[static_cast<std::size_t>(SAMPLES * y + i)];
            if (source_row != line_row) {
                const COLOUR* from = source.row(source_row);
                const std::int32_t* column = columns.data();
                for (std::size_t x = 0; x < width; ++x, column += SAMPLES) {
                    CHANNEL_SUMS four;
                    four.add(from[column[0]]);
                    four.add(from[column[1]]);
                    four.add(from[column[2]]);
                    four.add(from[column[3]]);
                    line[x] = four;
                }
                line_row = source_row;
            }
            for (std::size_t x = 0; x < width; ++x) {
                sums[x].add(line[x]);
            }
        }
        COLOUR* to = target.row(y);
        for (std::size_t x = 0; x < width; ++x) {
            to[x] = sums[x].divide(4);
        }
    }
}

}  // namespace

bool IMAGE::find_resized(std::int32_t& new_width, std::int32_t& new_height, std::int32_t old_width,
                         std::int32_t old_height) const {
    const bool has_width = is_given(new_width);
    const bool has_height = is_given(new_height);
    std::int64_t w = has_width ? new_width : old_width;
    std::int64_t h = has_height ? new_height : old_height;
    const auto keep_proportions = [&](bool fit_width, bool fit_height) {
        if (!keep_aspect || old_width < 1 || old_height < 1 || w < 1 || h < 1) {
            return;
        }
        // The tighter of the two scales; a side that isn't given sets none.
        if (fit_width && (!fit_height || w * old_height <= h * old_width)) {
            h = std::max<std::int64_t>(1, w * old_height / old_width);
        } else if (fit_height) {
            w = std::max<std::int64_t>(1, h * old_width / old_height);
        }
    };
    keep_proportions(has_width, has_height);
    const std::int64_t largest_width = max_width > 0 ? max_width : w;
    const std::int64_t largest_height = max_height > 0 ? max_height : h;
    if (w > largest_width || h > largest_height) {
        w = std::min(w, largest_width);
        h = std::min(h, largest_height);
        keep_proportions(true, true);
    }
    if (w < 0 || h < 0 || w > MAX_WIDTH || h > MAX_HEIGHT) {
        return false;
    }
    new_width = static_cast<std::int32_t>(w);
    new_height = static_cast<std::int32_t>(h);
    return true;
}

// Expects the pixels of `source` outside of this image.
void IMAGE::scale_from(const COLOUR* source, std::int32_t source_width, std::int32_t source_height,
                       std::int32_t source_stride, std::int32_t new_width, std::int32_t new_height,
                       bool smooth) {
    const std::int16_t kept_max_width = max_width;
    const std::int16_t kept_max_height = max_height;
    reset(new_width, new_height);
    max_width = kept_max_width;
    max_height = kept_max_height;
    if (!pixels || !source || source_width < 1 || source_height < 1) {
        return;
    }
    const SCALE_SOURCE from = {source, source_width, source_height, source_stride};
    const std::int64_t supersampled_bytes =
        std::int64_t{width} * height * SAMPLES * SAMPLES * std::int64_t{sizeof(COLOUR)};
    if (!smooth) {
        sample_nearest(from, *this);
    } else if (fast_scale && supersampled_bytes <= MAX_SUPERSAMPLED_BYTES) {
        supersample(from, *this);
    } else if (!C2PassScale<CBilinearFilter>().Scale(source, source_width, source_height,
                                                     source_stride, pixels.get(), width, height,
                                                     stride)) {
        stop_with_error("IMAGE::resize() - unable to allocate image buffer");
    }
}

void IMAGE::resize(std::int32_t new_width, std::int32_t new_height, unsigned char smooth) {
    if (locked || !find_resized(new_width, new_height, width, height)) {
        return;
    }
    if (new_width == width && new_height == height) {
        if (pixels) {
            widen_dirty_to_all();
        }
        return;
    }
    const std::unique_ptr<COLOUR[]> old_pixels = std::move(pixels);
    scale_from(old_pixels.get(), width, height, stride, new_width, new_height, smooth != 0);
}

void IMAGE::resize_from(const IMAGE& source, std::int32_t new_width, std::int32_t new_height,
                        unsigned char smooth) {
    if (&source == this) {
        resize(new_width, new_height, smooth);
        return;
    }
    if (locked || !find_resized(new_width, new_height, source.width, source.height)) {
        return;
    }
    if (new_width == source.width && new_height == source.height) {
        const std::int16_t kept_max_width = max_width;
        const std::int16_t kept_max_height = max_height;
        copy_pixels_from(source);
        max_width = kept_max_width;
        max_height = kept_max_height;
        return;
    }
    scale_from(source.pixels.get(), source.width, source.height, source.stride, new_width,
               new_height, smooth != 0);
}

void IMAGE::scale_down(std::int32_t factor) {
    const std::int32_t new_width = width / factor;
    const std::int32_t new_height = height / factor;
    if (locked || !pixels || width == 1 || height == 1 || new_width < 1 || new_height < 1) {
        return;
    }
    const std::unique_ptr<COLOUR[]> old_pixels = std::move(pixels);
    const SCALE_SOURCE from = {old_pixels.get(), width, height, stride};
    const std::int16_t kept_max_width = max_width;
    const std::int16_t kept_max_height = max_height;
    reset(new_width, new_height);
    max_width = kept_max_width;
    max_height = kept_max_height;
    const int shift = factor == 2 ? 2 : 4;
    for (std::int32_t y = 0; y < height; ++y) {
        COLOUR* to = row(y);
        for (std::int32_t x = 0; x < width; ++x) {
            CHANNEL_SUMS sums;
            for (std::int32_t i = 0; i < factor; ++i) {
                const COLOUR* pixel = from.row(factor * y + i) + std::ptrdiff_t{factor} * x;
                for (std::int32_t j = 0; j < factor; ++j) {
                    sums.add(pixel[j]);
                }
            }
            to[x] = sums.divide(shift);
        }
    }
}

void IMAGE::scale_down_by_2() {
    scale_down(2);
}

void IMAGE::scale_down_by_4() {
    scale_down(4);
}
