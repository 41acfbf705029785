// Scaling: sizes, the three ways, the two-pass scaler beside its reference, turning.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <random>

#include "platform/image.h"
#include "platform/two_pass_scale.h"

namespace {

void fill_with_noise(IMAGE& image, unsigned seed, bool opaque) {
    std::mt19937 random(seed);
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            image.row(y)[x] = COLOUR(static_cast<std::uint32_t>(random()));
            if (opaque) {
                image.row(y)[x] = image.row(y)[x].with_alpha(255);
            }
        }
    }
}

// The largest difference of a channel, colours multiplied by their alphas.
int difference(const IMAGE& a, const IMAGE& b) {
    double worst = 0;
    for (std::int32_t y = 0; y < a.height; ++y) {
        for (std::int32_t x = 0; x < a.width; ++x) {
            const COLOUR p = a.row(y)[x];
            const COLOUR q = b.row(y)[x];
            const auto compare = [&](int u, int v) {
                worst = std::max(worst, std::abs(u * p.alpha() - v * q.alpha()) / 255.0);
            };
            compare(p.red(), q.red());
            compare(p.green(), q.green());
            compare(p.blue(), q.blue());
            worst = std::max(worst, std::abs(double(p.alpha()) - q.alpha()));
        }
    }
    return static_cast<int>(std::ceil(worst));
}

TEST(ImageResize, FindsTheSizeFromWhatIsGivenTheAspectAndTheLimits) {
    struct CASE {
        std::int32_t w, h;
        bool keep_aspect;
        std::int16_t max_w, max_h;
        std::int32_t result_w, result_h;
    };
    const CASE cases[] = {
        {200, 30, false, 0, 0, 200, 30},
        {200, IMAGE::NO_SIZE, false, 0, 0, 200, 50},
        {-1, 20, false, 0, 0, 100, 20},
        {200, 60, true, 0, 0, 120, 60},  // the tighter scale
        {200, 200, true, 0, 0, 200, 100},
        {33, IMAGE::NO_SIZE, true, 0, 0, 33, 16},  // truncated
        {IMAGE::NO_SIZE, 75, true, 0, 0, 150, 75},
        {200, 30, false, 150, 20, 150, 20},
        {200, IMAGE::NO_SIZE, true, 60, 0, 60, 30},
        {200, IMAGE::NO_SIZE, true, 0, 60, 120, 60},  // pushed over the limit by the aspect
        {1, 1, true, 0, 0, 1, 1},
        {-5, 10, false, 0, 0, 100, 50},  // refused
        {40000, 10, false, 0, 0, 100, 50},
        {32767, 10, false, 0, 0, 100, 50},
        {0, 10, false, 0, 0, 0, 0},
    };
    for (const CASE& c : cases) {
        IMAGE image(100, 50);
        image.keep_aspect = c.keep_aspect;
        image.max_width = c.max_w;
        image.max_height = c.max_h;
        image.resize(c.w, c.h, 0);
        EXPECT_EQ(c.result_w, image.width) << c.w << ' ' << c.h;
        EXPECT_EQ(c.result_h, image.height) << c.w << ' ' << c.h;
        EXPECT_EQ(c.max_w, image.max_width);
    }
    IMAGE image(4, 4);
    image.set_not_dirty();
    image.resize(4, IMAGE::NO_SIZE, 1);
    EXPECT_TRUE(image.is_dirty());
    image.locked = true;
    image.resize(8, 8, 1);
    image.scale_down_by_2();
    EXPECT_EQ(4, image.width);
    IMAGE empty;
    empty.resize(5, 5, 1);
    EXPECT_EQ(COLOUR_INVISIBLE, empty.row(4)[4]);
}

TEST(ImageResize, NearestTakesPixelsInFixedSteps) {
    IMAGE image(5, 3);
    fill_with_noise(image, 1, false);
    for (const auto& [w, h] : {std::pair{13, 7}, {3, 2}, {5, 9}, {1, 1}, {64, 3}}) {
        IMAGE scaled;
        scaled.resize_from(image, w, h, 0);
        ASSERT_EQ(w, scaled.width);
        for (std::int32_t y = 0; y < h; ++y) {
            for (std::int32_t x = 0; x < w; ++x) {
                const std::int32_t sx = (x * ((5 << 16) / w)) >> 16;
                const std::int32_t sy = (y * ((3 << 16) / h)) >> 16;
                ASSERT_EQ(image.row(sy)[sx], scaled.row(y)[x]);
            }
        }
        IMAGE in_place;
        in_place.copy_pixels_from(image);
        in_place.resize(w, h, 0);
        EXPECT_TRUE(in_place == scaled);
    }
}

TEST(ImageResize, SupersamplingIsNearestAtFourTimesTheSizeScaledDown) {
    IMAGE image(7, 5);
    fill_with_noise(image, 2, false);
    for (const auto& [w, h] : {std::pair{3, 2}, {7, 4}, {16, 11}, {1, 1}, {100, 1}}) {
        IMAGE expected;
        expected.resize_from(image, 4 * w, 4 * h, 0);
        expected.scale_down_by_4();
        IMAGE scaled;
        scaled.resize_from(image, w, h, 1);
        EXPECT_TRUE(expected == scaled) << w << ' ' << h;
    }
    IMAGE one(1, 1);
    one.row(0)[0] = 0x80402010u;
    one.resize(3, 3, 1);
    EXPECT_EQ(COLOUR(0x80402010u), one.row(2)[2]);
}

TEST(ImageResize, ScaleDownIsTheMeanAndDropsWhatIsLeftOver) {
    IMAGE image(5, 3);
    image.row(0)[0] = 0x01020304u;
    image.row(0)[1] = 0x03040506u;
    image.row(1)[0] = 0xFF00FF00u;
    image.row(1)[1] = 0x00FF00FFu;
    image.scale_down_by_2();
    EXPECT_EQ(2, image.width);
    EXPECT_EQ(1, image.height);
    EXPECT_EQ(COLOUR(0x4041'4142u), image.row(0)[0]);
    image.scale_down_by_2();
    EXPECT_EQ(2, image.width);
    IMAGE narrow(3, 8);
    narrow.scale_down_by_4();  // nothing would be left
    EXPECT_EQ(3, narrow.width);
}

TEST(TwoPassScale, WeightsAddUpAndLieWithinTheSource) {
    const C2PassScale<CBilinearFilter> scaler;
    for (const auto& [from, to] : {std::pair{1, 1},
                                   {1, 9},
                                   {9, 1},
                                   {10, 25},
                                   {25, 10},
                                   {7, 7},
                                   {1000, 3},
                                   {2, 3},
                                   {3, 1000}}) {
        const LINE_CONTRIBUTIONS line = scaler.CalcContributions(to, from, double(to) / from);
        ASSERT_EQ(static_cast<std::size_t>(to), line.samples.size());
        for (const auto& sample : line.samples) {
            ASSERT_GE(sample.left, 0);
            ASSERT_GE(sample.count, 1);
            ASSERT_LE(sample.left + sample.count, from);
            double sum = 0;
            std::int32_t parts = 0;
            for (std::int32_t i = 0; i < sample.count; ++i) {
                const std::size_t at = sample.first_weight + static_cast<std::size_t>(i);
                sum += double{line.weights[at]};
                parts += line.parts[at];
            }
            EXPECT_NEAR(1, sum, 1e-5);
            EXPECT_EQ(LINE_CONTRIBUTIONS::PART_UNIT, parts);
        }
    }
    // Halfway between two pixels both count the same.
    const LINE_CONTRIBUTIONS doubled = scaler.CalcContributions(20, 10, 2);
    EXPECT_FLOAT_EQ(0.5f, doubled.weights[doubled.samples[5].first_weight]);
    EXPECT_EQ(2, doubled.samples[5].left);
}

TEST(TwoPassScale, GivesWhatTheReferenceGives) {
    const C2PassScale<CBilinearFilter> scaler;
    for (const bool opaque : {true, false}) {
        for (const auto& [sw, sh, dw, dh] : {std::tuple{20, 10, 47, 33},
                                             {64, 64, 30, 17},
                                             {1, 5, 9, 9},
                                             {5, 1, 9, 9},
                                             {3, 3, 3, 3},
                                             {200, 150, 7, 5},
                                             {2, 2, 301, 40},
                                             {97, 400, 33, 401},
                                             {300, 3, 11, 1},
                                             {31, 29, 30, 28},
                                             {600, 900, 500, 300}}) {
            IMAGE source(sw, sh);
            fill_with_noise(source, static_cast<unsigned>(sw * dh), opaque);
            if (sw == 600 && opaque) {
                source.row(500)[300] = 0;  // shows only in the middle that it isn't opaque
            }
            IMAGE expected(dw, dh);
            IMAGE actual(dw, dh);
            const LINE_CONTRIBUTIONS across = scaler.CalcContributions(dw, sw, double(dw) / sw);
            const LINE_CONTRIBUTIONS down = scaler.CalcContributions(dh, sh, double(dh) / sh);
            ASSERT_TRUE(two_pass_scale::scale_plain(
                {source.pixels.get(), sw, sh, source.stride},
                {expected.pixels.get(), dw, dh, expected.stride}, across, down, nullptr));
            ASSERT_EQ(actual.pixels.get(),
                      scaler.Scale(source.pixels.get(), sw, sh, source.stride, actual.pixels.get(),
                                   dw, dh, actual.stride));
            EXPECT_LE(difference(expected, actual), 2) << sw << ' ' << sh << ' ' << dw << ' ' << dh;
        }
    }
}

TEST(TwoPassScale, TransparentPixelsDoNotBleedAndPlainColoursStay) {
    IMAGE image(2, 2);
    image.row(0)[0] = image.row(1)[0] = 0x00FF0000u;  // red that isn't seen
    image.row(0)[1] = image.row(1)[1] = COLOUR_BLUE;
    image.fast_scale = false;
    image.resize(9, 9, 1);
    for (std::int32_t x = 0; x < 9; ++x) {
        EXPECT_EQ(0, image.row(4)[x].red());
        EXPECT_EQ(image.row(4)[x].alpha() == 0 ? 0 : 255, image.row(4)[x].blue());
    }
    EXPECT_NEAR(170, image.row(4)[3].alpha(), 1);
    for (const std::uint32_t colour : {0xFFFFFFFFu, 0xFF102030u, 0x80C86432u}) {
        for (const auto& [w, h] : {std::pair{7, 90}, {300, 31}}) {
            IMAGE plain(50, 40);
            plain.clear(colour);
            plain.fast_scale = false;
            plain.resize(w, h, 1);
            for (std::int32_t i = 0; i < w; ++i) {
                ASSERT_EQ(COLOUR(colour), plain.row(h / 2)[i]);
            }
        }
    }
}

TEST(TwoPassScale, RefusesNothingToScaleAndCanBeAborted) {
    COLOUR pixels[4] = {};
    const C2PassScale<CBilinearFilter> scaler;
    EXPECT_EQ(nullptr, scaler.Scale(pixels, 0, 2, 2, pixels, 1, 1, 1));
    EXPECT_EQ(nullptr, scaler.Scale(nullptr, 2, 2, 2, pixels, 1, 1, 1));
    EXPECT_EQ(nullptr, scaler.Scale(pixels, 2, 2, 2, pixels, 1, -1, 1));
    const std::atomic<bool> aborted = true;
    COLOUR target[4];
    EXPECT_EQ(nullptr,
              C2PassScale<CBilinearFilter>(&aborted).Scale(pixels, 2, 2, 2, target, 2, 2, 2));
}

TEST(ImageRotate, QuarterTurnsMovePixelsAndAnglesAgreeWithThem) {
    IMAGE image(3, 2);
    fill_with_noise(image, 9, true);
    IMAGE turned;
    image.rotate(turned, IMAGE_ROTATE_90);
    ASSERT_EQ(2, turned.width);
    EXPECT_EQ(image.row(0)[0], turned.row(0)[1]);
    EXPECT_EQ(image.row(1)[2], turned.row(2)[0]);
    IMAGE by_angle;
    image.rotate(by_angle, 90.0f);
    EXPECT_TRUE(turned == by_angle);
    image.rotate(by_angle, -270.0f);
    EXPECT_TRUE(turned == by_angle);
    image.rotate(turned, IMAGE_ROTATE_270);
    image.rotate(by_angle, 270.0f);
    EXPECT_TRUE(turned == by_angle);
    turned.rotate(turned, IMAGE_ROTATE_90);
    EXPECT_TRUE(turned == image);
    image.rotate(turned, IMAGE_ROTATE_180);
    EXPECT_EQ(image.row(0)[0], turned.row(1)[2]);
    image.rotate(by_angle, 45.0f);
    EXPECT_EQ(4, by_angle.width);
    EXPECT_EQ(0, by_angle.row(0)[0].alpha());
}

}  // namespace
