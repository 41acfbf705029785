// Copies, clipping, the dirty rectangle, primitives, filters and wipes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "platform/image.h"

namespace {

constexpr std::int32_t FAR = std::numeric_limits<std::int32_t>::max();

IMAGE& fill_with_noise(IMAGE& image, unsigned seed) {
    std::mt19937 random(seed);
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            image.row(y)[x] = COLOUR(static_cast<std::uint32_t>(random()));
        }
    }
    return image;
}

// The pixels that differ from `ground`, as rows of "#" and ".".
std::string show(const IMAGE& image, COLOUR ground = COLOUR_WHITE) {
    std::string text;
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            text += image.row(y)[x] == ground ? '.' : '#';
        }
        text += '\n';
    }
    return text;
}

std::string dirty(const IMAGE& image) {
    return std::to_string(image.dirty_left) + ' ' + std::to_string(image.dirty_top) + ' ' +
           std::to_string(image.dirty_right) + ' ' + std::to_string(image.dirty_bottom);
}

void make_clean(IMAGE& image) {
    image.set_active_area(0, 0, image.width, image.height);
    image.clear(COLOUR_WHITE);
    image.set_not_dirty();
}

TEST(ImageArea, IsSortedClampedNarrowedAndEmptied) {
    IMAGE image(10, 8);
    image.set_active_area(20, 5, -3, 2);
    EXPECT_EQ(0, image.active_left);
    EXPECT_EQ(9, image.active_right);
    EXPECT_EQ(2, image.active_top);
    EXPECT_EQ(5, image.active_bottom);
    image.add_rect_to_active_area(4, 4, 12, 7);
    EXPECT_EQ(4, image.active_left);
    EXPECT_EQ(9, image.active_right);
    EXPECT_EQ(4, image.active_top);
    EXPECT_EQ(5, image.active_bottom);
    image.add_rect_to_active_area(0, 0, 3, 3);
    EXPECT_EQ(-1, image.active_left);
    EXPECT_EQ(-1, image.active_bottom);
    image.set_not_dirty();
    image.fill_rect(0, 0, 9, 7, COLOUR_RED);
    image.mark_dirty_area(0, 0, 9, 7);
    EXPECT_FALSE(image.is_dirty());
    EXPECT_EQ(COLOUR_INVISIBLE, image.row(4)[4]);
    image.set_active_area(0, 0, 9, 7);
    image.add_rect_to_active_area(6, 4, 5, 5);
    EXPECT_EQ(-1, image.active_left) << "a rectangle without a width holds no column";
    IMAGE().set_active_area(0, 0, 5, 5);
}

TEST(ImageArea, DirtyRectangleGrowsByWhatIsDrawnAndNothingElse) {
    IMAGE image(20, 20);
    image.set_not_dirty();
    image.set_active_area(5, 5, 14, 14);
    image.fill_rect(0, 0, 4, 19, COLOUR_RED);  // outside
    image.draw_line(0, 0, 19, 4, COLOUR_RED);
    EXPECT_FALSE(image.is_dirty());
    image.fill_rect(12, 13, 30, 30, COLOUR_RED);
    EXPECT_EQ("12 13 14 14", dirty(image));
    image.mark_dirty_area(6, 14, 7, 14);
    EXPECT_EQ("6 13 14 14", dirty(image));
    image.set_not_dirty();
    image.plot_circle(100, 100, 5, COLOUR_RED);
    EXPECT_FALSE(image.is_dirty());
}

TEST(ImageArea, FieldsSetByHandCannotLeadOutsideOfThePixels) {
    IMAGE image(4, 4);
    image.active_right = image.active_bottom = 1000;
    image.fill_rect(-FAR, -FAR, FAR, FAR, COLOUR_RED);
    EXPECT_EQ("0 0 3 3", dirty(image));
}

TEST(ImageFatal, APrimitiveWithoutPixelsEndsTheProcess) {
    const auto run = [](auto draw) {
        IMAGE image;
        image.usable = true;
        draw(image);
    };
    EXPECT_EXIT(run([](IMAGE& i) { i.fill_rect(0, 0, 1, 1, COLOUR_RED); }),
                testing::ExitedWithCode(1),
                "Error: IMAGE::fill_rect\\(\\) - setup not called\n"
                "Application was unable to continue");
    EXPECT_EXIT(run([](IMAGE& i) { i.darken_rect(0, 0, 1, 1, 50); }), testing::ExitedWithCode(1),
                "IMAGE::darken_rect\\(\\) - setup not called");
    EXPECT_EXIT(run([](IMAGE& i) { i.plot_anti_aliased_line(0, 0, 5, 2, COLOUR_RED); }),
                testing::ExitedWithCode(1),
                "IMAGE::plot_anti_aliased_line\\(\\) - setup not called");
}

TEST(ImageCopy, EveryClippingGivesWhatAPixelByPixelCopyGives) {
    IMAGE source(7, 5);
    fill_with_noise(source, 1);
    for (const auto type :
         {IMAGE_COPY_BLEND, IMAGE_COPY_SOLID, IMAGE_COPY_MASK, IMAGE_COPY_MULTIPLY_ALPHA}) {
        for (std::int32_t step = 0; step < 400; ++step) {
            std::mt19937 random(static_cast<unsigned>(step));
            const auto pick = [&] { return static_cast<std::int32_t>(random() % 24) - 10; };
            const std::int32_t sx = pick();
            const std::int32_t sy = pick();
            const std::int32_t dx = pick();
            const std::int32_t dy = pick();
            const std::int32_t w = pick() + 5;
            const std::int32_t h = pick() + 5;
            const auto alpha = static_cast<unsigned char>(step % 3 == 0 ? 255 : random());
            IMAGE actual(9, 6);
            fill_with_noise(actual, 2);
            actual.set_active_area(1, 1, 7, 4);
            actual.set_not_dirty();
            IMAGE expected(9, 6);
            fill_with_noise(expected, 2);
            bool any = false;
            for (std::int32_t y = 0; y < h; ++y) {
                for (std::int32_t x = 0; x < w; ++x) {
                    if (sx + x < 0 || sx + x >= 7 || sy + y < 0 || sy + y >= 5 || dx + x < 1 ||
                        dx + x > 7 || dy + y < 1 || dy + y > 4) {
                        continue;
                    }
                    any = true;
                    const COLOUR from = source.row(sy + y)[sx + x];
                    COLOUR& to = expected.row(dy + y)[dx + x];
                    switch (type) {
                        case IMAGE_COPY_BLEND:
                            to.mix(from, static_cast<unsigned char>(from.alpha() * alpha / 255));
                            break;
                        case IMAGE_COPY_SOLID:
                            to = from;
                            break;
                        case IMAGE_COPY_MASK:
                            to = to.with_alpha(from.alpha() ? 255 : 0);
                            break;
                        case IMAGE_COPY_MULTIPLY_ALPHA:
                            to = to.with_alpha(
                                static_cast<unsigned char>(to.alpha() * from.alpha() / 255));
                            break;
                    }
                }
            }
            actual.copy(&source, sx, sy, dx, dy, w, h, type, alpha);
            ASSERT_TRUE(expected == actual) << type << ' ' << step;
            ASSERT_EQ(any, actual.is_dirty());
        }
    }
}

// What a copy does to a pixel, channel by channel: the same in plain words.
COLOUR copied(COLOUR to, COLOUR from, IMAGE_COPY_TYPE type, unsigned whole_alpha) {
    const auto byte = [](unsigned value) { return static_cast<unsigned char>(value); };
    const unsigned alpha = from.alpha() * whole_alpha / 255;
    switch (type) {
        case IMAGE_COPY_SOLID:
            return from;
        case IMAGE_COPY_MASK:
            return COLOUR(to.red(), to.green(), to.blue(), from.alpha() != 0 ? 255 : 0);
        case IMAGE_COPY_MULTIPLY_ALPHA:
            return COLOUR(to.red(), to.green(), to.blue(), byte(to.alpha() * from.alpha() / 255u));
        case IMAGE_COPY_BLEND:
            break;
    }
    if (alpha == 0 || alpha == 255) {
        return alpha == 0 ? to : from;
    }
    const auto mixed = [&](unsigned old_channel, unsigned new_channel) {
        return byte((new_channel * alpha + old_channel * (255 - alpha)) / 256);
    };
    return COLOUR(mixed(to.red(), from.red()), mixed(to.green(), from.green()),
                  mixed(to.blue(), from.blue()), byte(std::min(255u, to.alpha() + alpha)));
}

TEST(ImageCopy, EveryAlphaOfBothSidesInEveryType) {
    // The source's alpha runs along the rows, the target's down the columns.
    IMAGE source(256, 256);
    IMAGE before(256, 256);
    fill_with_noise(source, 5);
    fill_with_noise(before, 6);
    for (std::int32_t y = 0; y < 256; ++y) {
        for (std::int32_t x = 0; x < 256; ++x) {
            source.row(y)[x] = source.row(y)[x].with_alpha(static_cast<unsigned char>(x));
            before.row(y)[x] = before.row(y)[x].with_alpha(static_cast<unsigned char>(y));
        }
    }
    const auto check = [&](IMAGE_COPY_TYPE type, unsigned whole_alpha, std::int32_t rows) {
        IMAGE target;
        target.copy_pixels_from(before);
        source.put(0, 0, 256, rows, 0, 0, &target, type, static_cast<unsigned char>(whole_alpha));
        for (std::int32_t y = 0; y < rows; ++y) {
            for (std::int32_t x = 0; x < 256; ++x) {
                ASSERT_EQ(copied(before.row(y)[x], source.row(y)[x], type, whole_alpha),
                          target.row(y)[x])
                    << type << ": " << x << " on " << y << " by " << whole_alpha;
            }
        }
    };
    for (const auto type :
         {IMAGE_COPY_BLEND, IMAGE_COPY_SOLID, IMAGE_COPY_MASK, IMAGE_COPY_MULTIPLY_ALPHA}) {
        check(type, 255, 256);
    }
    for (unsigned whole_alpha = 0; whole_alpha < 256; ++whole_alpha) {
        check(IMAGE_COPY_BLEND, whole_alpha, 3);
    }
}

TEST(ImageCopy, WithinOneImageTheSourceIsReadBeforeItIsOverwritten) {
    for (const auto& [dx, dy] : {std::pair{0, 3}, {0, -3}, {2, 0}, {-2, 0}, {1, 1}, {-1, -2}}) {
        IMAGE image(12, 12);
        fill_with_noise(image, 3);
        IMAGE before;
        before.copy_pixels_from(image);
        IMAGE expected;
        expected.copy_pixels_from(image);
        expected.copy(&before, 3, 3, 3 + dx, 3 + dy, 6, 6, IMAGE_COPY_SOLID);
        image.copy(&image, 3, 3, 3 + dx, 3 + dy, 6, 6, IMAGE_COPY_SOLID);
        EXPECT_TRUE(expected == image) << dx << ' ' << dy;
    }
}

TEST(ImageCopy, PutAndGetAreCopiesToAndFrom) {
    IMAGE small(2, 2);
    fill_with_noise(small, 4);
    IMAGE large(5, 5);
    small.put(1, 2, &large, IMAGE_COPY_SOLID);
    EXPECT_EQ(small.row(1)[1], large.row(3)[2]);
    small.put(1, 1, 1, 1, 4, 4, &large, IMAGE_COPY_SOLID);
    EXPECT_EQ(small.row(1)[1], large.row(4)[4]);
    IMAGE again(2, 2);
    again.get(1, 2, &large);
    EXPECT_TRUE(small == again);
    small.put(0, 0, nullptr);
    large.copy(nullptr, 0, 0, 0, 0, 5, 5);
    IMAGE empty;
    large.copy(&empty, 0, 0, 0, 0, 5, 5);
    empty.copy(&large, 0, 0, 0, 0, 5, 5);
    large.copy(&small, FAR, FAR, -FAR, -FAR, FAR, FAR);
    large.copy(&small, -FAR, 0, -FAR, 0, FAR, 2);
}

TEST(ImageDraw, RectanglesFramesAndFades) {
    IMAGE image(6, 5);
    make_clean(image);
    image.draw_rect(5, 4, 0, 0, 0x80000000u, 1, 1);
    EXPECT_EQ("######\n#....#\n#....#\n#....#\n######\n", show(image));
    const COLOUR grey = image.row(0)[3];
    EXPECT_EQ(grey, image.row(0)[0]);  // corners are mixed once
    EXPECT_EQ(grey, image.row(4)[5]);
    make_clean(image);
    image.draw_rect(0, 0, 5, 4, COLOUR_RED, 3);
    EXPECT_EQ(std::string::npos, show(image).find('.'));

    make_clean(image);
    image.draw_xor_rect(1, 1, 4, 3, 0x00FF00FFu);
    EXPECT_EQ("......\n.####.\n.#..#.\n.####.\n......\n", show(image));
    EXPECT_EQ(COLOUR(0xFF00FF00u), image.row(1)[1]);
    image.draw_xor_rect(1, 1, 4, 3, 0x00FF00FFu);
    EXPECT_EQ(std::string::npos, show(image).find('#'));
    image.draw_xor_rect(2, 2, 2, 2, COLOUR_WHITE);
    EXPECT_EQ(COLOUR_BLACK, image.row(2)[2]);

    // Fades count over the whole rectangle, whatever part is drawn.
    make_clean(image);
    image.fill_hfaded_rect(-6, 0, 14, 4, COLOUR_BLACK, COLOUR(200, 100, 0));
    EXPECT_EQ(COLOUR(60, 30, 0), image.row(2)[0]);
    EXPECT_EQ(COLOUR(110, 55, 0), image.row(4)[5]);
    image.fill_vfaded_rect(0, 4, 5, 0, COLOUR_BLACK, COLOUR_WHITE);
    EXPECT_EQ(COLOUR_BLACK, image.row(0)[3]);
    EXPECT_EQ(COLOUR(128, 128, 128), image.row(2)[3]);
    EXPECT_EQ(COLOUR_WHITE, image.row(4)[3]);
    image.fill_vfaded_rect(0, 2, 5, 2, COLOUR_RED, COLOUR_BLUE);
    EXPECT_EQ(COLOUR_RED, image.row(2)[0]);

    image.clear(0x40C08020u);
    image.darken_rect(0, 0, 2, 0, 50);
    EXPECT_EQ(COLOUR(0x40604010u), image.row(0)[2]);
    EXPECT_EQ(COLOUR(0x40C08020u), image.row(0)[3]);
    image.darken_rect(0, 0, 2, 0, 1000);
    EXPECT_EQ(COLOUR(0x40000000u), image.row(0)[0]);
}

TEST(ImageDraw, LinesGoFromEndToEndInEveryDirection) {
    for (int i = 0; i < 64; ++i) {
        const std::int32_t x =
            10 + static_cast<std::int32_t>(std::lround(9 * std::cos(i * 0.0982)));
        const std::int32_t y =
            10 + static_cast<std::int32_t>(std::lround(9 * std::sin(i * 0.0982)));
        IMAGE there(21, 21);
        make_clean(there);
        there.plot_line(10, 10, x, y, COLOUR_BLACK);
        EXPECT_EQ(COLOUR_BLACK, there.row(10)[10]);
        EXPECT_EQ(COLOUR_BLACK, there.row(y)[x]);
        const std::string text = show(there);
        EXPECT_EQ(std::max(std::abs(x - 10), std::abs(y - 10)) + 1,
                  std::count(text.begin(), text.end(), '#'));
        // The part within an area is the same as without one.
        IMAGE part(21, 21);
        make_clean(part);
        part.set_active_area(4, 6, 15, 14);
        part.plot_line(10, 10, x, y, COLOUR_BLACK);
        for (std::int32_t row = 0; row < 21; ++row) {
            for (std::int32_t column = 0; column < 21; ++column) {
                const bool inside = column >= 4 && column <= 15 && row >= 6 && row <= 14;
                ASSERT_EQ(inside ? there.row(row)[column] : COLOUR_WHITE, part.row(row)[column]);
            }
        }
    }
    IMAGE image(9, 7);
    make_clean(image);
    image.draw_line(0, 1, 8, 5, COLOUR_BLACK, 3);
    EXPECT_EQ("#........\n###......\n#####....\n.######..\n...######\n.....####\n.......##\n",
              show(image));
    image.draw_line(-FAR, -FAR, FAR, FAR, COLOUR_BLACK, FAR);  // ends at once
    image.draw_line(FAR, -5, -FAR, 3, COLOUR_BLACK, 1, 1);
    make_clean(image);
    for (const bool anti_alias : {false, true}) {
        image.draw_line(FAR - 3, FAR - 9, FAR, FAR, COLOUR_BLACK, 1, anti_alias);
        image.draw_line(-FAR, 9 - FAR, 3 - FAR, -FAR, COLOUR_BLACK, 1, anti_alias);
    }
    EXPECT_FALSE(image.is_dirty());
    make_clean(image);
    image.draw_horizontal_line(7, 2, 3, COLOUR_BLACK, 2);
    image.draw_vertical_line(0, 9, 5, COLOUR_BLACK);
    EXPECT_EQ(".........\n.........\n..######.\n..######.\n.........\n#........\n#........\n",
              show(image));
}

TEST(ImageDraw, AnAntiAliasedLineSharesItsAlphaBetweenTwoPixels) {
    IMAGE image(9, 5);
    make_clean(image);
    image.plot_anti_aliased_line(0, 0, 8, 4, 0xC8000000u);
    const auto mixed = [](unsigned char alpha) {
        COLOUR pixel = COLOUR_WHITE;
        pixel.mix(COLOUR_BLACK, alpha);
        return pixel;
    };
    EXPECT_EQ(mixed(200), image.row(0)[0]);
    EXPECT_EQ(mixed(100), image.row(0)[1]);
    EXPECT_EQ(mixed(100), image.row(1)[1]);
    EXPECT_EQ(mixed(200), image.row(1)[2]);
    EXPECT_EQ(COLOUR_WHITE, image.row(2)[2]);
    make_clean(image);
    image.plot_anti_aliased_line(0, 0, 8, 4, 0x00FF0000u);
    EXPECT_FALSE(image.is_dirty());
    image.plot_anti_aliased_line(0, 2, 8, 2, COLOUR_RED);
    EXPECT_EQ(COLOUR_RED, image.row(2)[8]);
    EXPECT_EQ("0 2 8 2", dirty(image));
}

TEST(ImageDraw, FiguresTakeInThePixelsOnTheirOutlineOnce) {
    IMAGE image(9, 7);
    make_clean(image);
    image.plot_triangle(4, 0, 0, 4, 8, 4, 0x80000000u, 1);
    EXPECT_EQ("....#....\n...###...\n..#####..\n.#######.\n#########\n.........\n.........\n",
              show(image));
    for (std::int32_t x = 0; x < 9; ++x) {
        EXPECT_EQ(image.row(0)[4], image.row(4)[x]);  // no pixel is mixed twice
    }
    make_clean(image);
    const std::int16_t xs[] = {0, 8, 8, 6, 6, 2, 2, 0};
    const std::int16_t ys[] = {0, 0, 6, 6, 3, 3, 6, 6};
    image.fill_polygon(xs, ys, 8, COLOUR_BLACK);
    EXPECT_EQ("#########\n#########\n#########\n#########\n###...###\n###...###\n###...###\n",
              show(image));
    image.fill_polygon(xs, ys, 0, COLOUR_BLACK);
    image.fill_polygon(nullptr, ys, 3, COLOUR_BLACK);
    image.plot_triangle(-FAR, -FAR, FAR, 0, 0, FAR, COLOUR_BLACK);

    make_clean(image);
    image.plot_circle(4, 3, 3, COLOUR_BLACK);
    EXPECT_EQ("...###...\n..#...#..\n.#.....#.\n.#.....#.\n.#.....#.\n..#...#..\n...###...\n",
              show(image));
    make_clean(image);
    image.plot_circle(4, 3, 1, 0x80000000u, 1, 1);
    EXPECT_EQ(".........\n.........\n...###...\n...###...\n...###...\n.........\n.........\n",
              show(image));
    image.plot_circle(4, 3, FAR, COLOUR_BLACK, 1);
    EXPECT_EQ(std::string::npos, show(image).find('.'));
    make_clean(image);
    image.plot_circle(4, 3, -1, COLOUR_BLACK);
    EXPECT_FALSE(image.is_dirty());
}

TEST(ImageFilter, AlphaFiltersOverEveryAlpha) {
    IMAGE image(256, 1);
    const auto set = [&] {
        for (std::int32_t i = 0; i < 256; ++i) {
            image.row(0)[i] = COLOUR(1, 2, 3, static_cast<unsigned char>(i));
        }
    };
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<unsigned char>(value);
        set();
        image.realpha(byte, 0, 0);
        for (std::int32_t i = 0; i < 256; ++i) {
            ASSERT_EQ(COLOUR(1, 2, 3, static_cast<unsigned char>(i * value / 255)),
                      image.row(0)[i]);
        }
        set();
        image.realpha(byte, 1, 1);
        EXPECT_EQ(0, image.row(0)[0].alpha());
        EXPECT_EQ(value, image.row(0)[1].alpha());
        image.realpha(byte, 1, 0);
        EXPECT_EQ(value, image.row(0)[0].alpha());
        set();
        image.flatern_alpha(byte);
        for (std::int32_t i = 0; i < 256; ++i) {
            const int expected = i < value      ? 0
                                 : value == 255 ? 255
                                                : (i - value) * 255 / (255 - value);
            ASSERT_EQ(expected, image.row(0)[i].alpha()) << i << ' ' << value;
        }
    }
}

TEST(ImageFilter, ColourFilters) {
    IMAGE image(3, 1);
    COLOUR* row = image.row(0);
    row[0] = 0x80FF0000u;
    row[1] = 0x40102030u;
    row[2] = COLOUR_GREY;
    image.make_grey();
    EXPECT_EQ(COLOUR(0x80555555u), row[0]);
    EXPECT_EQ(COLOUR(0x40202020u), row[1]);

    row[0] = 0x80FF8000u;
    image.set_trialpha_colours(COLOUR(100, 0, 0), COLOUR(255, 255, 255), COLOUR_BLUE);
    EXPECT_EQ(COLOUR(228, 128, 128, 0x80), row[0]);

    row[0] = COLOUR_RED;
    row[1] = COLOUR_GREEN;
    row[2] = COLOUR_GREY;
    image.recolour_channel(COLOUR_BLUE, 0);
    EXPECT_EQ(COLOUR_BLUE, row[0]);
    EXPECT_EQ(COLOUR_GREEN, row[1]);
    EXPECT_EQ(COLOUR_GREY, row[2]);
    image.recolour_channel(COLOUR_RED, 3);
    EXPECT_EQ(COLOUR_RED, row[1]);
    EXPECT_NE(COLOUR_GREY, row[2]);

    row[0] = 0x80FF0000u;
    row[1] = COLOUR_RED;
    image.replace_colour(COLOUR_RED, COLOUR_GREEN);
    EXPECT_EQ(COLOUR(0x80FF0000u), row[0]);
    EXPECT_EQ(COLOUR_GREEN, row[1]);
    image.replace_colour(COLOUR_RED, COLOUR_BLUE, 1);
    EXPECT_EQ(COLOUR(0x800000FFu), row[0]);
}

TEST(ImageWipe, ShowsPartsOfBothInEveryDirection) {
    IMAGE first(4, 4);
    IMAGE second(4, 4);
    for (std::int32_t y = 0; y < 4; ++y) {
        for (std::int32_t x = 0; x < 4; ++x) {
            first.row(y)[x] =
                COLOUR(static_cast<unsigned char>(x), static_cast<unsigned char>(y), 1);
            second.row(y)[x] =
                COLOUR(static_cast<unsigned char>(x), static_cast<unsigned char>(y), 2);
        }
    }
    // Where the pixel at (x, y) of a wipe at a quarter comes from.
    struct CASE {
        IMAGE_BLEND_TYPE type;
        COLOUR top_left, bottom_right;
    };
    const CASE cases[] = {{IMAGE_BLEND_MOVE_LEFT, COLOUR(1, 0, 1), COLOUR(0, 3, 2)},
                          {IMAGE_BLEND_MOVE_RIGHT, COLOUR(3, 0, 2), COLOUR(2, 3, 1)},
                          {IMAGE_BLEND_MOVE_UP, COLOUR(0, 1, 1), COLOUR(3, 0, 2)},
                          {IMAGE_BLEND_MOVE_DOWN, COLOUR(0, 3, 2), COLOUR(3, 2, 1)},
                          {IMAGE_BLEND_REVEAL_LEFT, COLOUR(0, 0, 1), COLOUR(3, 3, 2)},
                          {IMAGE_BLEND_REVEAL_RIGHT, COLOUR(0, 0, 2), COLOUR(3, 3, 1)},
                          {IMAGE_BLEND_REVEAL_UP, COLOUR(0, 0, 1), COLOUR(3, 3, 2)},
                          {IMAGE_BLEND_REVEAL_DOWN, COLOUR(0, 0, 2), COLOUR(3, 3, 1)}};
    for (const CASE& c : cases) {
        IMAGE target(6, 6);
        target.draw_blended_images(first, second, 1, 1, c.type, 25);
        EXPECT_EQ(c.top_left, target.row(1)[1]) << c.type;
        EXPECT_EQ(c.bottom_right, target.row(4)[4]) << c.type;
        EXPECT_EQ(COLOUR_INVISIBLE, target.row(0)[0]);
        EXPECT_EQ(COLOUR_INVISIBLE, target.row(5)[5]);
        target.set_not_dirty();
        target.draw_blended_images(first, second, FAR, -FAR, c.type, 25);
        EXPECT_FALSE(target.is_dirty());

        IMAGE strip;
        ASSERT_TRUE(strip.create_sprite_transition_image(
            first, second, static_cast<IMAGE_TRANSITION_TYPE>(c.type), 5));
        ASSERT_EQ(20, strip.width);
        IMAGE cell(4, 4);
        cell.get(0, 0, &strip);
        EXPECT_TRUE(cell == first);
        cell.get(4, 0, &strip);
        EXPECT_EQ(c.top_left, cell.row(0)[0]);
        cell.get(16, 0, &strip);
        EXPECT_TRUE(cell == second);
    }
    IMAGE strip(2, 2);
    EXPECT_FALSE(
        strip.create_sprite_transition_image(first, IMAGE(4, 5), IMAGE_TRANSITION_MOVE_LEFT, 5));
    EXPECT_FALSE(
        strip.create_sprite_transition_image(first, second, IMAGE_TRANSITION_MOVE_LEFT, 0));
    EXPECT_FALSE(
        strip.create_sprite_transition_image(first, second, IMAGE_TRANSITION_MOVE_LEFT, 8192));
    EXPECT_FALSE(
        strip.create_sprite_transition_image(IMAGE(), IMAGE(), IMAGE_TRANSITION_MOVE_LEFT, 3));
    EXPECT_EQ(2, strip.width);
}

}  // namespace
