#include "platform/colour.h"

#include <algorithm>
#include <cmath>

unsigned char COLOUR::alpha_solid_threshold = 255;

namespace {

unsigned char to_channel(double part) {
    return static_cast<unsigned char>(std::clamp(part, 0.0, 1.0) * 255.0 + 0.5);
}

// The hue, from 0 to 1, of channels whose largest is `high`; `range` is above 0.
double find_hue(double red, double green, double blue, double high, double range) {
    double hue = 0;
    if (red == high) {
        hue = (green - blue) / range;
    } else if (green == high) {
        hue = 2.0 + (blue - red) / range;
    } else {
        hue = 4.0 + (red - green) / range;
    }
    return hue < 0 ? hue / 6.0 + 1.0 : hue / 6.0;
}

struct HSL {
    explicit HSL(const COLOUR& colour) { colour.get_hsl(hue, saturation, lightness); }

    double hue = 0, saturation = 0, lightness = 0;
};

bool lies_in(double value, double low, double high) {
    return value >= low && value <= high;
}

// Below this a colour counts as grey.
constexpr double GREY_SATURATION = 0.25;

double hue_difference(const HSL& a, const HSL& b) {
    if ((a.saturation > GREY_SATURATION) != (b.saturation > GREY_SATURATION)) {
        return 0.5;
    }
    const double difference = std::abs(a.hue - b.hue);
    return std::min(difference, 1.0 - difference);
}

// Two colours that are dark, or light, throughout.
bool are_both_extreme(const HSL& a, const HSL& b, bool is_text) {
    const double dark = is_text ? 0.33 : 0.25;
    return (a.lightness < dark && b.lightness < dark) || (a.lightness > 0.82 && b.lightness > 0.82);
}

}  // namespace

void COLOUR::get_hsl(double& hue, double& saturation, double& lightness) const {
    const double r = red() / 255.0;
    const double g = green() / 255.0;
    const double b = blue() / 255.0;
    const double high = std::max({r, g, b});
    const double low = std::min({r, g, b});
    const double range = high - low;
    lightness = (high + low) / 2.0;
    if (range <= 0) {
        hue = saturation = 0;
        return;
    }
    saturation = lightness <= 0.5 ? range / (high + low) : range / (2.0 - high - low);
    hue = find_hue(r, g, b, high, range);
}

double COLOUR::hue_to_rgb(double low, double high, double hue) {
    hue -= std::floor(hue);
    if (hue * 6.0 < 1.0) {
        return low + (high - low) * 6.0 * hue;
    }
    if (hue * 2.0 < 1.0) {
        return high;
    }
    if (hue * 3.0 < 2.0) {
        return low + (high - low) * (2.0 / 3.0 - hue) * 6.0;
    }
    return low;
}

void COLOUR::set_hsl(double hue, double saturation, double lightness) {
    saturation = std::clamp(saturation, 0.0, 1.0);
    lightness = std::clamp(lightness, 0.0, 1.0);
    const double high = lightness <= 0.5 ? lightness * (1.0 + saturation)
                                         : lightness + saturation - lightness * saturation;
    const double low = 2.0 * lightness - high;
    *this = COLOUR(to_channel(hue_to_rgb(low, high, hue + 1.0 / 3.0)),
                   to_channel(hue_to_rgb(low, high, hue)),
                   to_channel(hue_to_rgb(low, high, hue - 1.0 / 3.0)), alpha());
}

void COLOUR::rgb_to_hsv(double& hue, double& saturation, double& brightness) const {
    const double r = red() / 255.0;
    const double g = green() / 255.0;
    const double b = blue() / 255.0;
    const double range = std::max({r, g, b}) - std::min({r, g, b});
    brightness = std::max({r, g, b});
    saturation = brightness > 0 ? range / brightness : 0;
    hue = range > 0 ? find_hue(r, g, b, brightness, range) : 0;
}

void COLOUR::recolour(COLOUR tint) {
    const unsigned char old_alpha = alpha();
    const int brightness = (red() + green() + blue()) / 3;
    const int mean = (tint.red() + tint.green() + tint.blue()) / 3;
    const auto channel = [&](int from) {
        if (mean == 0) {
            return static_cast<unsigned char>(from);
        }
        return static_cast<unsigned char>(
            brightness > mean ? from + (255 - from) * (brightness - mean) / (255 - mean)
                              : std::min(255, from * brightness / mean));
    };
    *this = COLOUR(channel(tint.red()), channel(tint.green()), channel(tint.blue()), old_alpha);
}

void COLOUR::set_suitable_text_colour(const COLOUR& background) {
    const int sum = background.red() + background.green() + background.blue();
    *this = sum < 384 ? COLOUR_WHITE : COLOUR_BLACK;
}

bool COLOUR::is_white() const {
    return red() > 220 && green() > 220 && blue() > 220;
}

bool COLOUR::is_red() const {
    return green() >= blue() && red() > blue() && red() >= green() && red() - blue() >= 64 &&
           red() - green() > 127;
}

bool COLOUR::is_blue() const {
    return red() < green() && green() <= blue() && blue() - red() > 63;
}

bool COLOUR::is_yellow() const {
    return green() > blue() && red() > blue() && red() - blue() >= 128 && green() - blue() > 127;
}

bool COLOUR::is_purple() const {
    return red() != 0 && blue() != 0 && red() >= blue() && green() <= 101 && red() - blue() < 97;
}

bool COLOUR::clashes(const COLOUR& other, char mode, unsigned char) const {
    const HSL a(*this);
    const HSL b(other);
    const bool is_text = mode == 1;
    const double hues = hue_difference(a, b);
    const double saturations = std::abs(a.saturation - b.saturation);
    const double lighter = std::max(a.lightness, b.lightness);
    double lightnesses = std::abs(a.lightness - b.lightness);

    if (lightnesses < 0.4 && hues > 0.088 && lies_in(a.lightness, 0.25, 0.7) &&
        lies_in(b.lightness, 0.25, 0.7)) {
        lightnesses *= 3.2;
    }
    if (lightnesses >= 0.4) {
        return false;
    }
    if (hues < 0.09) {
        const bool are_two_sky_blues = !is_text && lies_in(a.hue, 0.585, 0.61) &&
                                       lies_in(b.hue, 0.585, 0.61) && lightnesses > 0.2 &&
                                       lies_in(lighter, 0.4, 0.42);
        const bool is_readable_shade = is_text && lightnesses > 0.18 && hues > 0.02;
        const bool is_grey_on_colour =
            saturations > 0.72 && std::max(a.saturation, b.saturation) > 0.8;
        return (!are_two_sky_blues && !is_readable_shade && !is_grey_on_colour) ||
               are_both_extreme(a, b, is_text);
    }
    if (hues < 0.15) {
        const bool is_readable_shade = is_text && lightnesses > 0.15 && lighter >= 0.33;
        const bool are_two_reds =
            !is_text && std::max(a.hue, b.hue) > 0.99 && lies_in(lighter, 0.4, 0.5);
        if (!is_readable_shade && !are_two_reds &&
            ((is_blue() && other.is_blue()) || (is_red() && other.is_red()) ||
             (hues < 0.12 && lightnesses < 0.2))) {
            return true;
        }
    }
    return are_both_extreme(a, b, is_text);
}
