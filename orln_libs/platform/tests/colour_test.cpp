// COLOUR: mixing, colour models, the names of colours and clashes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "platform/colour.h"

namespace {

// The definition of mix, channel by channel.
COLOUR mix_reference(COLOUR pixel, COLOUR other, unsigned alpha, unsigned threshold) {
    if (alpha == 0) {
        return pixel;
    }
    if (alpha >= threshold) {
        return other;
    }
    const auto channel = [&](unsigned mine, unsigned theirs) {
        return static_cast<unsigned char>((theirs * alpha + mine * (255 - alpha)) >> 8);
    };
    return COLOUR(channel(pixel.red(), other.red()), channel(pixel.green(), other.green()),
                  channel(pixel.blue(), other.blue()),
                  static_cast<unsigned char>(std::min(255u, pixel.alpha() + alpha)));
}

TEST(Colour, IsAWordWithAlphaOnTopAndBlueFirstInMemory) {
    const COLOUR colour = 0x11223344u;
    EXPECT_EQ(0x11, colour.alpha());
    EXPECT_EQ(0x22, colour.red());
    EXPECT_EQ(0x33, colour.green());
    EXPECT_EQ(0x44, colour.blue());
    EXPECT_EQ(colour, COLOUR(0x22, 0x33, 0x44, 0x11));
    EXPECT_EQ(COLOUR(0xFF223344u), colour.with_alpha(255));
    EXPECT_FALSE(COLOUR(0x00FFFFFFu).is_set());
    EXPECT_TRUE(COLOUR(0x01000000u).is_set());
    EXPECT_EQ(COLOUR_MAGENTA, COLOUR(255, 0, 255));
}

TEST(Colour, MixFollowsItsDefinitionForEveryAlphaAndThreshold) {
    for (const unsigned threshold : {255u, 250u, 1u}) {
        COLOUR::alpha_solid_threshold = static_cast<unsigned char>(threshold);
        for (unsigned alpha = 0; alpha < 256; ++alpha) {
            for (const std::uint32_t mine :
                 {0u, 0xFF000000u, 0xFFFFFFFFu, 0x80FF017Fu, 0x01345678u}) {
                for (const std::uint32_t theirs : {0u, 0xFFFFFFFFu, 0x40C08001u, 0xFF00FF00u}) {
                    COLOUR mixed = mine;
                    mixed.mix(theirs, static_cast<unsigned char>(alpha));
                    ASSERT_EQ(mix_reference(mine, theirs, alpha, threshold), mixed)
                        << std::hex << mine << ' ' << theirs << ' ' << alpha;
                }
            }
        }
    }
    COLOUR::alpha_solid_threshold = 255;
    COLOUR half = COLOUR_INVISIBLE;
    half.mix(COLOUR_WHITE, 128);  // white at half its strength, and half covered
    EXPECT_EQ(COLOUR(0x807F7F7Fu), half);
}

TEST(Colour, HslAndBackGivesTheSameColour) {
    for (std::uint32_t r = 0; r < 256; r += 15) {
        for (std::uint32_t g = 0; g < 256; g += 15) {
            for (std::uint32_t b = 0; b < 256; b += 15) {
                const COLOUR colour = 0x7F000000u | (r << 16) | (g << 8) | b;
                double h = -1;
                double s = -1;
                double l = -1;
                colour.get_hsl(h, s, l);
                ASSERT_TRUE(h >= 0 && h < 1 && s >= 0 && s <= 1 && l >= 0 && l <= 1);
                COLOUR again = colour;
                again.set_hsl(h, s, l);
                ASSERT_EQ(colour, again);
            }
        }
    }
    double h = 0;
    double s = 0;
    double l = 0;
    COLOUR_BLUE.get_hsl(h, s, l);
    EXPECT_DOUBLE_EQ(2.0 / 3.0, h);
    EXPECT_DOUBLE_EQ(1, s);
    EXPECT_DOUBLE_EQ(0.5, l);
    COLOUR_GREY.get_hsl(h, s, l);
    EXPECT_EQ(0, h + s);
    COLOUR colour = COLOUR_RED;
    colour.set_hsl(-1.0 / 3.0, 7, 0.5);  // wrapped and limited
    EXPECT_EQ(COLOUR_BLUE, colour);
    COLOUR(0xFF804020u).rgb_to_hsv(h, s, l);
    EXPECT_NEAR(20.0 / 360, h, 1e-9);
    EXPECT_NEAR(0.75, s, 1e-9);
    EXPECT_NEAR(128 / 255.0, l, 1e-9);
}

TEST(Colour, RecolourKeepsBrightnessAndAlpha) {
    const COLOUR tint = 0xFF604020u;  // mean 64
    const auto recoloured = [](COLOUR pixel, COLOUR by) {
        pixel.recolour(by);
        return pixel;
    };
    EXPECT_EQ(COLOUR(0x12604020u), recoloured(0x12404040u, tint));  // as bright
    EXPECT_EQ(COLOUR(0x12302010u), recoloured(0x12202020u, tint));  // half as bright
    EXPECT_EQ(COLOUR(0x12FFFFFFu), recoloured(0x12FFFFFFu, tint));  // white stays
    EXPECT_EQ(COLOUR(0x12000000u), recoloured(0x12000000u, tint));
    // 96 + 159 * 64 / 191 and so on.
    EXPECT_EQ(COLOUR(96 + 53, 64 + 64, 32 + 74, 0x12), recoloured(0x12808080u, tint));
    EXPECT_EQ(COLOUR(0x12000000u), recoloured(0x12808080u, COLOUR_BLACK));
    EXPECT_EQ(COLOUR(0x12808080u), recoloured(0x12808080u, COLOUR_WHITE));
}

TEST(Colour, NoChangeOfTheColourTouchesAnyAlpha) {
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        const COLOUR pixel = COLOUR(0x00804020u).with_alpha(static_cast<unsigned char>(alpha));
        EXPECT_EQ(alpha, pixel.alpha());
        EXPECT_EQ(alpha != 0, pixel.is_set());
        for (const COLOUR tint : {COLOUR_RED, COLOUR_BLACK, COLOUR(0x00204060u)}) {
            COLOUR changed = pixel;
            changed.recolour(tint);
            COLOUR opaque = pixel.with_alpha(255);
            opaque.recolour(tint.with_alpha(77));
            EXPECT_EQ(opaque.with_alpha(static_cast<unsigned char>(alpha)), changed);
            changed.set_hsl(0.3, 0.6, 0.4);
            EXPECT_EQ(alpha, changed.alpha());
        }
        double hue = 0;
        double saturation = 0;
        double lightness = 0;
        pixel.get_hsl(hue, saturation, lightness);
        EXPECT_NEAR(20.0 / 360, hue, 1e-9);
        EXPECT_EQ(COLOUR(0xFF804020u).get_rgb_brightness(), pixel.get_rgb_brightness());
    }
}

TEST(Colour, BrightnessAndReadableText) {
    EXPECT_EQ(255, COLOUR_WHITE.get_rgb_brightness());
    EXPECT_EQ(149, COLOUR_GREEN.get_rgb_brightness());
    EXPECT_EQ(29, COLOUR_BLUE.get_rgb_brightness());
    COLOUR text;
    text.set_suitable_text_colour(COLOUR(127, 128, 128));
    EXPECT_EQ(COLOUR_WHITE, text);
    text.set_suitable_text_colour(COLOUR(128, 128, 128));
    EXPECT_EQ(COLOUR_BLACK, text);
}

TEST(Colour, NamesOfColours) {
    EXPECT_TRUE(COLOUR(221, 221, 221).is_white());
    EXPECT_FALSE(COLOUR(220, 255, 255).is_white());

    EXPECT_TRUE(COLOUR(200, 72, 72).is_red());
    EXPECT_FALSE(COLOUR(200, 73, 72).is_red());  // R - G is 127
    EXPECT_FALSE(COLOUR(200, 20, 40).is_red());  // G below B
    EXPECT_TRUE(COLOUR(10, 20, 74).is_blue());
    EXPECT_FALSE(COLOUR(10, 20, 73).is_blue());
    EXPECT_FALSE(COLOUR(20, 20, 200).is_blue());  // R not below G
    EXPECT_FALSE(COLOUR(10, 90, 80).is_blue());
    EXPECT_TRUE(COLOUR(228, 228, 100).is_yellow());
    EXPECT_FALSE(COLOUR(227, 228, 100).is_yellow());
    EXPECT_FALSE(COLOUR(228, 227, 100).is_yellow());
    EXPECT_TRUE(COLOUR(196, 101, 100).is_purple());
    EXPECT_FALSE(COLOUR(196, 102, 100).is_purple());
    EXPECT_FALSE(COLOUR(197, 50, 100).is_purple());
    EXPECT_FALSE(COLOUR(99, 50, 100).is_purple());
    EXPECT_FALSE(COLOUR(5, 0, 0).is_purple());
}

TEST(Colour, Clashes) {
    const auto clash = [](COLOUR a, COLOUR b, char mode) {
        EXPECT_EQ(a.clashes(b, mode), b.clashes(a, mode));
        return a.clashes(b, mode);
    };
    for (const char mode : {'\0', '\1'}) {
        EXPECT_FALSE(clash(COLOUR_BLACK, COLOUR_WHITE, mode));
        EXPECT_TRUE(clash(COLOUR_RED, COLOUR_RED, mode));
        EXPECT_TRUE(clash(COLOUR_BLACK, 0xFF101010u, mode));
        EXPECT_TRUE(clash(COLOUR_WHITE, 0xFFF8F8F0u, mode));
        EXPECT_FALSE(clash(COLOUR_RED, COLOUR_GREEN, mode));
        EXPECT_TRUE(clash(COLOUR(30, 60, 200), COLOUR(40, 60, 180), mode));  // two blues
    }
    // Two dark colours of quite other hues: forgiven below 0.33 for areas only.
    const COLOUR dark_red(140, 0, 0);
    const COLOUR dark_green(0, 140, 0);
    EXPECT_FALSE(clash(dark_red, dark_green, 0));
    EXPECT_TRUE(clash(dark_red, dark_green, 1));
    // Shades of near hues, 0.2 apart in lightness: readable as text.
    COLOUR light;
    COLOUR dark;
    light.set_hsl(0.35, 0.6, 0.75);
    dark.set_hsl(0.30, 0.6, 0.5);
    EXPECT_TRUE(clash(light, dark, 0));
    EXPECT_FALSE(clash(light, dark, 1));
}

}  // namespace
