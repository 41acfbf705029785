// Filters over a whole picture.
#include "platform/image.h"

#include "pixel_rows.h"

namespace {

// Calls `operation` for each pixel of a picture; the padding of the stride is left alone.
template <class OPERATION>
void for_all_pixels(IMAGE& image, OPERATION operation) {
    for (std::int32_t y = 0; image.pixels && y < image.height; ++y) {
        COLOUR* row = image.row(y);
        for (std::int32_t x = 0; x < image.width; ++x) {
            operation(row[x]);
        }
    }
}

// The share of a weight in a channel that sums up three of them.
unsigned weigh(unsigned char weight, unsigned char channel) {
    return unsigned{weight} * channel;
}

unsigned char as_channel(unsigned weighted_sum) {
    const unsigned value = weighted_sum / 255;
    return static_cast<unsigned char>(value < 255 ? value : 255);
}

}  // namespace

void IMAGE::make_grey() {
    if (!can_draw("make_grey")) {
        return;
    }
    for_all_pixels(*this, [](COLOUR& pixel) {
        const auto mean =
            static_cast<unsigned char>((pixel.red() + pixel.green() + pixel.blue()) / 3);
        pixel = COLOUR(mean, mean, mean, pixel.alpha());
    });
    widen_dirty_to_all();
}

void IMAGE::recolour(COLOUR colour) {
    recolour_channel(colour, 3);
}

void IMAGE::recolour_channel(COLOUR colour, char channel) {
    if (!can_draw("recolour_channel")) {
        return;
    }
    for_all_pixels(*this, [&](COLOUR& pixel) {
        const int r = pixel.red();
        const int g = pixel.green();
        const int b = pixel.blue();
        const bool stands_out = channel == 0   ? r > g && r > b
                                : channel == 1 ? g > r && g > b
                                : channel == 2 ? b > r && b > g
                                               : channel == 3;
        if (stands_out) {
            pixel.recolour(colour);
        }
    });
    widen_dirty_to_all();
}

void IMAGE::set_trialpha_colours(COLOUR red, COLOUR green, COLOUR blue) {
    if (!can_draw("set_trialpha_colours")) {
        return;
    }
    for_all_pixels(*this, [&](COLOUR& pixel) {
        const auto sum = [&](unsigned char c1, unsigned char c2, unsigned char c3) {
            return as_channel(weigh(pixel.red(), c1) + weigh(pixel.green(), c2) +
                              weigh(pixel.blue(), c3));
        };
        pixel = COLOUR(sum(red.red(), green.red(), blue.red()),
                       sum(red.green(), green.green(), blue.green()),
                       sum(red.blue(), green.blue(), blue.blue()), pixel.alpha());
    });
    widen_dirty_to_all();
}

void IMAGE::realpha(unsigned char alpha, unsigned char absolute, unsigned char keep_transparent) {
    if (!can_draw("realpha")) {
        return;
    }
    for_all_pixels(*this, [&](COLOUR& pixel) {
        if (!absolute) {
            pixel = pixel.with_alpha(static_cast<unsigned char>(scale_alpha(pixel.alpha(), alpha)));
        } else if (!keep_transparent || pixel.alpha() != 0) {
            pixel = pixel.with_alpha(alpha);
        }
    });
    widen_dirty_to_all();
}

void IMAGE::flatern_alpha(unsigned char floor) {
    if (!can_draw("flatern_alpha")) {
        return;
    }
    for_all_pixels(*this, [&](COLOUR& pixel) {
        const int above = pixel.alpha() - floor;
        // With a floor of 255 only what is opaque already stays.
        const int alpha = above < 0 ? 0 : floor == 255 ? 255 : above * 255 / (255 - floor);
        pixel = pixel.with_alpha(static_cast<unsigned char>(alpha));
    });
    widen_dirty_to_all();
}

void IMAGE::replace_colour(COLOUR from, COLOUR to, unsigned char keep_alpha) {
    if (!can_draw("replace_colour")) {
        return;
    }
    for_all_pixels(*this, [&](COLOUR& pixel) {
        if (keep_alpha ? pixel.with_alpha(0) == from.with_alpha(0) : pixel == from) {
            pixel = keep_alpha ? to.with_alpha(pixel.alpha()) : to;
        }
    });
    widen_dirty_to_all();
}
