// The inner loops, vector instructions beside the plain reference: every alpha, every width of a
// row's end, and nothing written beside the block.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "../code/pixel_rows.h"

namespace {

constexpr std::int32_t HEIGHT = 3;
constexpr std::int32_t MARGIN = 5;

struct VERSION {
    std::string name;
    std::function<void(const PIXEL_BLOCK&, const SOURCE_PIXELS&)> plain, vector;
};

using PIXELS = std::vector<COLOUR>;
using BYTES = std::vector<unsigned char>;

class PixelRows : public testing::Test {
protected:
    ~PixelRows() override { COLOUR::alpha_solid_threshold = 255; }

    COLOUR any() { return COLOUR(static_cast<std::uint32_t>(random())); }

    // Source pixels with the alphas from `first` on, one after the other.
    PIXELS make_source(std::int32_t width, unsigned first) {
        PIXELS pixels;
        for (std::int32_t i = 0; i < width * HEIGHT; ++i) {
            pixels.push_back(any().with_alpha(static_cast<unsigned char>(first + unsigned(i) / 2)));
        }
        return pixels;
    }

    void compare(const VERSION& version, std::int32_t width, const PIXELS& source) {
        const std::int32_t stride = width + 2 * MARGIN;
        PIXELS expected;
        for (std::int32_t i = 0; i < stride * HEIGHT; ++i) {
            expected.push_back(i % 7 == 0 ? COLOUR_WHITE : any());
        }
        PIXELS actual = expected;
        const SOURCE_PIXELS from = {source.data(), width};
        version.plain({expected.data() + MARGIN, stride, width, HEIGHT}, from);
        version.vector({actual.data() + MARGIN, stride, width, HEIGHT}, from);
        ASSERT_EQ(expected, actual) << version.name << " at width " << width;
    }

    std::mt19937 random{1};
};

template <class ROWS>
void add_versions(std::vector<VERSION>& versions, const std::string& name) {
    versions.push_back({name + " fill", [](const auto& t, const auto&) { PLAIN_ROWS::fill(t, 7); },
                        [](const auto& t, const auto&) { ROWS::fill(t, 7); }});
    versions.push_back({name + " copy", PLAIN_ROWS::copy, ROWS::copy});
    versions.push_back({name + " blend", PLAIN_ROWS::blend, ROWS::blend});
    versions.push_back({name + " mask", PLAIN_ROWS::mask, ROWS::mask});
    versions.push_back(
        {name + " multiply_alpha", PLAIN_ROWS::multiply_alpha, ROWS::multiply_alpha});
}

std::vector<VERSION> all_versions() {
    std::vector<VERSION> versions;
#if defined(__SSE2__)
    add_versions<SSE2_ROWS>(versions, "SSE2");
    if (AVX2_ROWS::is_supported()) {
        versions.push_back({"AVX2 blend", PLAIN_ROWS::blend, AVX2_ROWS::blend});
    }
#endif
    add_versions<PIXEL_ROWS>(versions, "chosen");
    return versions;
}

TEST_F(PixelRows, VectorsGiveWhatThePlainLoopsGive) {
    for (const unsigned char threshold : BYTES{255, 250, 128, 1, 0}) {
        COLOUR::alpha_solid_threshold = threshold;
        for (const VERSION& version : all_versions()) {
            for (std::int32_t width = 1; width <= 35; ++width) {
                compare(version, width, make_source(width, static_cast<unsigned>(random())));
            }
            compare(version, 180, make_source(180, 0));  // every alpha
            for (const unsigned char alpha : BYTES{0, 1, 249, 254, 255}) {
                PIXELS uniform(40 * HEIGHT);
                for (COLOUR& pixel : uniform) {
                    pixel = any().with_alpha(alpha);
                }
                compare(version, 40, uniform);
                uniform[50] = uniform[50].with_alpha(100);  // one that stands out
                uniform[77] = uniform[77].with_alpha(0);
                compare(version, 40, uniform);
            }
        }
    }
}

TEST_F(PixelRows, EveryAlphaOfTheWholeCopyAndOfAColour) {
    for (const unsigned char threshold : BYTES{255, 250, 1}) {
        COLOUR::alpha_solid_threshold = threshold;
        for (unsigned value = 0; value < 256; ++value) {
            const auto alpha = static_cast<unsigned char>(value);
            const COLOUR colour = any().with_alpha(alpha);
            const VERSION scaled = {
                "blend_scaled",
                [&](const auto& t, const auto& s) { PLAIN_ROWS::blend_scaled(t, s, alpha); },
                [&](const auto& t, const auto& s) { PIXEL_ROWS::blend_scaled(t, s, alpha); }};
            const VERSION mixed = {
                "mix_colour",
                [&](const auto& t, const auto&) { PLAIN_ROWS::mix_colour(t, colour, alpha); },
                [&](const auto& t, const auto&) { PIXEL_ROWS::mix_colour(t, colour, alpha); }};
#if defined(__SSE2__)
            const VERSION older = {
                "SSE2 blend_scaled", scaled.plain,
                [&](const auto& t, const auto& s) { SSE2_ROWS::blend_scaled(t, s, alpha); }};
            compare(older, 171, make_source(171, value));
#endif
            compare(scaled, 173, make_source(173, value));
            compare(scaled, 7, make_source(7, value));
            compare(mixed, 23, make_source(23, value));
        }
    }
}

TEST_F(PixelRows, CoverageIsScaledByTheColoursAlpha) {
    for (const unsigned char threshold : BYTES{255, 250}) {
        COLOUR::alpha_solid_threshold = threshold;
        for (std::int32_t width = 1; width <= 300; width += width < 20 ? 1 : 93) {
            // Exactly as long as the glyph, so that a read beyond its end shows.
            std::vector<unsigned char> bytes;
            for (std::int32_t i = 0; i < width * HEIGHT; ++i) {
                bytes.push_back(static_cast<unsigned char>(i % 5 == 0 ? 255 : i % 5 == 1 ? 0 : i));
            }
            const SOURCE_COVERAGE coverage = {bytes.data(), width};
            // At the widest, which has every coverage, every alpha.
            for (unsigned alpha = 0; alpha<256; alpha += width> 200 ? 1 : 51) {
                const COLOUR colour = any().with_alpha(static_cast<unsigned char>(alpha));
                const VERSION version = {"mix_coverage",
                                         [&](const auto& t, const auto&) {
                                             PLAIN_ROWS::mix_coverage(t, coverage, colour);
                                         },
                                         [&](const auto& t, const auto&) {
                                             PIXEL_ROWS::mix_coverage(t, coverage, colour);
                                         }};
                compare(version, width, {});
            }
        }
    }
}

}  // namespace
