// Image boxes: which pieces are found, and which pixels they become.
#include "modules/winman/image_box.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

#include "platform/image_cache.h"
#include "skin_fixture.h"

namespace {

constexpr COLOUR A = COLOUR_RED, B = COLOUR_GREEN, C = COLOUR_BLUE, D = COLOUR_YELLOW;
constexpr COLOUR NONE = COLOUR_INVISIBLE;

class ImageBox : public SkinTest {
protected:
    ImageBox() : box(&cache) { std::filesystem::create_directories(path_of("skins/s")); }
    ~ImageBox() override {
        box.clear_images();
        cache.soft_clear();
    }

    void piece(const std::string& name, std::int32_t width, std::int32_t height, COLOUR colour) {
        put_png(std::string("skins/s/").append(name).append(".png"), width, height, colour);
    }
    bool load() { return box.load_images(cursor("skins/s"), "b", 1); }

    // Nine pieces: corners A of 2 by 3, edges B, centre C of 2 by 2.
    bool load_nine() {
        for (const char* corner :
             {"b_top_left", "b_top_right", "b_bottom_left", "b_bottom_right"}) {
            piece(corner, 2, 3, A);
        }
        piece("b_top_mid", 4, 3, B);
        piece("b_bottom_mid", 4, 3, B);
        piece("b_mid_left", 2, 4, B);
        piece("b_mid_right", 2, 4, B);
        piece("b_mid_mid", 2, 2, C);
        return load();
    }

    // The box drawn into a transparent picture, as letters: "." for what isn't drawn.
    std::string drawn(int x1, int y1, int x2, int y2, int width, int height,
                      IMAGE_COPY_TYPE type = IMAGE_COPY_BLEND) {
        IMAGE target(width, height);
        draw(x1, y1, x2, y2, target, type);
        return letters(target);
    }
    void draw(int x1, int y1, int x2, int y2, IMAGE& target,
              IMAGE_COPY_TYPE type = IMAGE_COPY_BLEND) {
        box.draw(static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
                 static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2), &target, 0, type);
    }
    static std::string letters(const IMAGE& image) {
        std::string text;
        for (int y = 0; y < image.height; ++y) {
            for (int x = 0; x < image.width; ++x) {
                const COLOUR colour = image.row(y)[x];
                text += colour == A      ? 'A'
                        : colour == B    ? 'B'
                        : colour == C    ? 'C'
                        : colour == D    ? 'D'
                        : colour == NONE ? '.'
                                         : '?';
            }
            text += '/';
        }
        return text;
    }

    IMAGE_CACHE& cache = WM_PAGE_TOOL_MANAGER::styleset_image_cache;
    IMAGE_BOX box;
};

TEST_F(ImageBox, TakesTheFormThatItsFilesHave) {
    EXPECT_FALSE(load());
    EXPECT_FALSE(box.are_images_valid());
    piece("b", 1, 1, A);
    EXPECT_TRUE(load());
    EXPECT_EQ("..../.A../..../", drawn(0, 0, 2, 2, 4, 3));

    piece("b_top", 3, 1, A);
    piece("b_mid", 1, 1, B);
    piece("b_bottom", 1, 2, C);
    EXPECT_TRUE(load());
    EXPECT_EQ("AAA./.B../.B../.C../.C../", drawn(0, 0, 2, 4, 4, 5));

    piece("b_left", 1, 3, A);
    piece("b_mid", 2, 1, B);
    piece("b_right", 2, 1, C);
    EXPECT_TRUE(load());
    EXPECT_EQ("A....../ABBBCC./A....../", drawn(0, 0, 5, 2, 7, 3));

    // Nine pieces come before all others; without one of them the box isn't whole.
    piece("b_top_left", 1, 1, D);
    EXPECT_FALSE(load());
    EXPECT_FALSE(box.are_images_valid());
    EXPECT_TRUE(load_nine());
    IMAGE_BOX without_cache;
    EXPECT_FALSE(without_cache.load_images("$APPDATA/skins/s", "b", 1));
    EXPECT_FALSE(without_cache.are_images_valid());
    without_cache = box;
    EXPECT_EQ(box.bottom_right, without_cache.bottom_right);
}

TEST_F(ImageBox, NinePiecesFillEveryRectangle) {
    ASSERT_TRUE(load_nine());
    EXPECT_EQ(
        "........./"
        ".AABBBAA./"
        ".AABBBAA./"
        ".AABBBAA./"
        ".BBCCCBB./"
        ".AABBBAA./"
        ".AABBBAA./"
        ".AABBBAA./"
        "........./",
        drawn(1, 1, 7, 7, 9, 9));
    // Too small for the sides: shares in proportion, no centre, nothing outside.
    EXPECT_EQ("AA../AA../AA../..../", drawn(0, 0, 1, 2, 4, 4));
    EXPECT_EQ("A./../", drawn(0, 0, 0, 0, 2, 2));
    // The next large one has its natural sides again.
    EXPECT_EQ("AABAA/AABAA/AABAA/AABAA/AABAA/AABAA/", drawn(0, 0, 4, 5, 5, 6));
    // Drawn small, the pieces that others see have kept their size.
    IMAGE_BOX other(&cache);
    EXPECT_TRUE(other.load_images(cursor("skins/s"), "b", 1));
    EXPECT_EQ(2, other.top_left->width);
    // Nothing outside the active area, whatever the rectangle is.
    IMAGE target(4, 4);
    target.set_active_area(1, 1, 2, 2);
    const auto start = std::chrono::steady_clock::now();
    draw(-32768, -32768, 32767, 32767, target);
    EXPECT_EQ("..../.CC./.CC./..../", letters(target));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    draw(3, 3, 0, 0, target);
    box.draw(0, 0, 1, 1, nullptr, 0, IMAGE_COPY_BLEND);
}

// However small the tiles are, each pixel is that of its place in the piece, once.
TEST_F(ImageBox, SmallTilesMeetWithoutASeam) {
    constexpr std::int32_t LEFT = 3, TOP = 2, WIDTH = 120, HEIGHT = 90;
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 2}, {1, 40}, {50, 1}, {32, 32}}) {
        IMAGE tile(width, height);
        IMAGE corner(1, 1);
        for (std::int32_t y = 0; y < height; ++y) {
            for (std::int32_t x = 0; x < width; ++x) {
                tile.row(y)[x] = COLOUR(static_cast<std::uint32_t>(0x80100000 + 256 * y + x));
            }
        }
        box.top_left = &corner;  // of sides without a width: the centre fills it all
        box.centre = &tile;
        IMAGE target(130, 100);
        target.clear(COLOUR_WHITE);
        target.set_active_area(10, 5, 127, 80);
        IMAGE expected(130, 100);
        expected.clear(COLOUR_WHITE);
        expected.set_active_area(10, 5, 127, 80);
        for (std::int32_t y = 0; y < HEIGHT; ++y) {
            for (std::int32_t x = 0; x < WIDTH; ++x) {
                tile.put(x % width, y % height, 1, 1, LEFT + x, TOP + y, &expected);
            }
        }
        draw(LEFT, TOP, LEFT + WIDTH - 1, TOP + HEIGHT - 1, target);
        box.top_left = box.centre = nullptr;
        EXPECT_TRUE(target == expected) << width << " by " << height;
        EXPECT_EQ(expected.dirty_right, target.dirty_right);
        EXPECT_EQ(expected.dirty_top, target.dirty_top);
    }
}

TEST_F(ImageBox, OverlaysStayWithinTheOutline) {
    piece("b", 2, 2, A);
    piece("b_colay", 1, 1, B);
    piece("b_solay", 1, 1, C);
    piece("b_polay", 1, 1, D);
    ASSERT_TRUE(load());
    // The stretched one covers the centred one, and the corner isn't part of the box.
    EXPECT_EQ("..../.CC./.CC./..../", drawn(0, 0, 3, 3, 4, 4));
    EXPECT_EQ("CC/CD/", drawn(0, 0, 1, 1, 2, 2));
    EXPECT_EQ("CC/CD/", drawn(0, 0, 1, 1, 2, 2, IMAGE_COPY_SOLID));
    // Other ways of copying know no overlays.
    IMAGE target(2, 2);
    target.clear(B);
    draw(0, 0, 1, 1, target, IMAGE_COPY_MULTIPLY_ALPHA);
    EXPECT_EQ("BB/BB/", letters(target));
}

TEST_F(ImageBox, KeepsItsLastPicture) {
    ASSERT_TRUE(load_nine());
    const std::string direct = drawn(1, 0, 8, 8, 10, 10);
    IMAGE_BOX::store_local_result = true;
    EXPECT_EQ(direct, drawn(1, 0, 8, 8, 10, 10));
    ASSERT_NE(nullptr, box.local_result);
    box.local_result->clear(D);
    EXPECT_EQ("..../.DDD/.DDD/", drawn(1, 1, 8, 9, 4, 3));
    EXPECT_EQ("AABAA/AABAA/AABAA/AABAA/AABAA/AABAA/", drawn(0, 0, 4, 5, 5, 6));
    box.recolour(COLOUR_BLUE);
    EXPECT_EQ(nullptr, box.local_result);
    // A picture of an absurd size is drawn without one.
    IMAGE target(2, 2);
    draw(0, 0, 32767, 32767, target);
    EXPECT_EQ(nullptr, box.local_result);
}

TEST_F(ImageBox, KnowsWhichPointsAreItsOwn) {
    piece("b", 2, 2, A);
    ASSERT_TRUE(load());
    EXPECT_FALSE(box.is_in_it(0, 0, 4, 4));
    EXPECT_TRUE(box.is_in_it(1, 1, 4, 4));
    EXPECT_TRUE(box.is_in_it(2, 2, 4, 4));
    EXPECT_FALSE(box.is_in_it(3, 2, 4, 4));
    EXPECT_FALSE(box.is_in_it(-1, 1, 4, 4));

    piece("b_left", 2, 2, A);
    piece("b_mid", 1, 4, NONE);
    piece("b_right", 2, 4, A);
    ASSERT_TRUE(load());
    EXPECT_FALSE(box.is_in_it(0, 0, 8, 4));  // above the left end
    EXPECT_TRUE(box.is_in_it(1, 1, 8, 4));
    EXPECT_FALSE(box.is_in_it(4, 1, 8, 4));  // the centre is transparent
    EXPECT_TRUE(box.is_in_it(7, 0, 8, 4));

    ASSERT_TRUE(load_nine());
    box.centre->row(1)[0] = NONE;
    EXPECT_TRUE(box.is_in_it(0, 0, 9, 10));
    EXPECT_TRUE(box.is_in_it(8, 9, 9, 10));
    EXPECT_TRUE(box.is_in_it(2, 3, 9, 10));
    EXPECT_FALSE(box.is_in_it(2, 4, 9, 10));
    EXPECT_TRUE(box.is_in_it(3, 4, 9, 10));
    EXPECT_FALSE(box.is_in_it(4, 6, 9, 10));
    EXPECT_FALSE(box.is_in_it(9, 0, 9, 10));
    EXPECT_FALSE(IMAGE_BOX(&cache).is_in_it(0, 0, 1, 1));
}

TEST_F(ImageBox, ColoursOfItsOwn) {
    piece("b", 2, 2, A);
    ASSERT_TRUE(load());
    IMAGE_BOX copy = box;
    copy.replace_colour(A, B);
    EXPECT_EQ(A, box.centre->row(0)[0]);
    EXPECT_EQ(B, copy.centre->row(0)[0]);
    copy.make_grey();
    EXPECT_EQ(COLOUR(85, 85, 85), copy.centre->row(0)[0]);
    copy = copy;
    EXPECT_TRUE(copy.are_images_valid());
    copy.clear_images();
    EXPECT_EQ(1, static_cast<CACHE_ENTRY*>(box.centre->cache_entry)->use_count);
}

}  // namespace
