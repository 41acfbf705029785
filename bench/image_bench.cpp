// IMAGE beside pixman: fills, copies and scaling, at the size of an icon and of a screen. Each pair
// has the same name but for the library.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "platform/image.h"
#include "platform/two_pass_scale.h"

namespace {

enum CONTENT { OPAQUE, TRANSLUCENT, PICTURE };

// A picture as skins have them: an opaque middle, an invisible border, a soft edge between.
std::uint32_t picture_alpha(std::int32_t x, std::int32_t y, std::int32_t width,
                            std::int32_t height) {
    const std::int32_t edge = std::min(std::min(x, width - 1 - x), std::min(y, height - 1 - y));
    const std::int32_t soft = std::min(width, height) / 16;
    return edge < soft ? 0 : edge < 2 * soft ? 128 : 255;
}

void fill_with(IMAGE& image, CONTENT content) {
    std::mt19937 random(7);
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            const std::uint32_t colour = static_cast<std::uint32_t>(random());
            const std::uint32_t alpha = content == OPAQUE ? 255
                                        : content == TRANSLUCENT
                                            ? colour >> 24
                                            : picture_alpha(x, y, image.width, image.height);
            image.row(y)[x] = (colour & 0x00FFFFFFu) | (alpha << 24);
        }
    }
}

// pixman's pictures hold their colours multiplied by alpha.
std::uint32_t premultiply(COLOUR colour) {
    const auto part = [&](std::uint32_t channel) { return channel * colour.alpha() / 255; };
    return (std::uint32_t{colour.alpha()} << 24) | (part(colour.red()) << 16) |
           (part(colour.green()) << 8) | part(colour.blue());
}

// The same picture for pixman.
class PEER {
public:
    explicit PEER(const IMAGE& image)
        : words(static_cast<std::size_t>(image.stride) * static_cast<std::size_t>(image.height)) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            words[i] = premultiply(image.pixels[i]);
        }
        picture = pixman_image_create_bits(PIXMAN_a8r8g8b8, image.width, image.height, words.data(),
                                           image.stride * 4);
    }
    ~PEER() { pixman_image_unref(picture); }
    PEER(const PEER&) = delete;
    PEER& operator=(const PEER&) = delete;

    void scale_to(std::int32_t width, std::int32_t height, pixman_filter_t filter) {
        const double x = double(pixman_image_get_width(picture)) / width;
        const double y = double(pixman_image_get_height(picture)) / height;
        pixman_transform_t transform;
        pixman_transform_init_scale(&transform, pixman_double_to_fixed(x),
                                    pixman_double_to_fixed(y));
        pixman_image_set_transform(picture, &transform);
        if (filter != PIXMAN_FILTER_SEPARABLE_CONVOLUTION) {
            pixman_image_set_filter(picture, filter, nullptr, 0);
            return;
        }
        int count = 0;
        pixman_fixed_t* values = pixman_filter_create_separable_convolution(
            &count, pixman_double_to_fixed(x), pixman_double_to_fixed(y), PIXMAN_KERNEL_LINEAR,
            PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_IMPULSE, PIXMAN_KERNEL_IMPULSE, 4, 4);
        pixman_image_set_filter(picture, filter, values, count);
        std::free(values);
    }

    std::vector<std::uint32_t> words;
    pixman_image_t* picture;
};

// Two pictures of the benchmark's size, for both libraries.
struct PAIR {
    PAIR(std::int32_t width, std::int32_t height, CONTENT content)
        : source(width, height), target(width, height) {
        fill_with(source, content);
        fill_with(target, OPAQUE);
        peer_source = std::make_unique<PEER>(source);
        peer_target = std::make_unique<PEER>(target);
    }

    IMAGE source, target;
    std::unique_ptr<PEER> peer_source, peer_target;
};

std::int32_t width_of(const benchmark::State& state) {
    return static_cast<std::int32_t>(state.range(0));
}
std::int32_t height_of(const benchmark::State& state) {
    return static_cast<std::int32_t>(state.range(1));
}

void count_pixels(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
}

void fill_image(benchmark::State& state) {
    IMAGE target(width_of(state), height_of(state));
    for (auto _ : state) {
        target.fill_rect(0, 0, target.width - 1, target.height - 1, COLOUR(0xFF336699u));
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}
void fill_pixman(benchmark::State& state) {
    IMAGE image(width_of(state), height_of(state));
    PEER target(image);
    for (auto _ : state) {
        pixman_fill(target.words.data(), image.stride, 32, 0, 0, image.width, image.height,
                    0xFF336699u);
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}

void copy_image(benchmark::State& state, CONTENT content, IMAGE_COPY_TYPE type,
                unsigned char alpha) {
    PAIR pair(width_of(state), height_of(state), content);
    for (auto _ : state) {
        pair.target.copy(&pair.source, 0, 0, 0, 0, pair.source.width, pair.source.height, type,
                         alpha);
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}
void copy_pixman(benchmark::State& state, CONTENT content, pixman_op_t operation,
                 unsigned char alpha) {
    PAIR pair(width_of(state), height_of(state), content);
    const pixman_color_t colour = {0, 0, 0, static_cast<std::uint16_t>(alpha * 257)};
    pixman_image_t* mask = alpha == 255 ? nullptr : pixman_image_create_solid_fill(&colour);
    for (auto _ : state) {
        pixman_image_composite32(operation, pair.peer_source->picture, mask,
                                 pair.peer_target->picture, 0, 0, 0, 0, 0, 0, width_of(state),
                                 height_of(state));
        benchmark::ClobberMemory();
    }
    if (mask) {
        pixman_image_unref(mask);
    }
    count_pixels(state);
}

// The source has `percent` of the target's sides.
void scale_image(benchmark::State& state, CONTENT content, std::int32_t percent) {
    IMAGE source(width_of(state) * percent / 100, height_of(state) * percent / 100);
    fill_with(source, content);
    IMAGE target(width_of(state), height_of(state));
    for (auto _ : state) {
        target.resize_from(source, width_of(state), height_of(state), 0);
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}
void two_pass_image(benchmark::State& state, CONTENT content, std::int32_t percent) {
    IMAGE source(width_of(state) * percent / 100, height_of(state) * percent / 100);
    fill_with(source, content);
    IMAGE target(width_of(state), height_of(state));
    for (auto _ : state) {
        C2PassScale<CBilinearFilter>().Scale(source.pixels.get(), source.width, source.height,
                                             source.stride, target.pixels.get(), target.width,
                                             target.height, target.stride);
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}
void scale_pixman(benchmark::State& state, CONTENT content, std::int32_t percent,
                  pixman_filter_t filter) {
    IMAGE image(width_of(state) * percent / 100, height_of(state) * percent / 100);
    fill_with(image, content);
    PEER source(image);
    source.scale_to(width_of(state), height_of(state), filter);
    PEER target(IMAGE(width_of(state), height_of(state)));
    for (auto _ : state) {
        pixman_image_composite32(PIXMAN_OP_SRC, source.picture, nullptr, target.picture, 0, 0, 0, 0,
                                 0, 0, width_of(state), height_of(state));
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}

// What it takes to scale pixels that aren't multiplied by their alphas, as ours are, with pixman.
void scale_pixman_unmultiplied(benchmark::State& state, CONTENT content, std::int32_t percent,
                               pixman_filter_t filter) {
    IMAGE image(width_of(state) * percent / 100, height_of(state) * percent / 100);
    fill_with(image, content);
    PEER source(image);
    source.scale_to(width_of(state), height_of(state), filter);
    IMAGE result(width_of(state), height_of(state));
    PEER target(result);
    std::uint32_t factors[256] = {};
    for (std::uint32_t i = 1; i < 256; ++i) {
        factors[i] = (255u << 16) / i;
    }
    for (auto _ : state) {
        for (std::size_t i = 0; i < source.words.size(); ++i) {
            source.words[i] = premultiply(image.pixels[i]);
        }
        pixman_image_composite32(PIXMAN_OP_SRC, source.picture, nullptr, target.picture, 0, 0, 0, 0,
                                 0, 0, width_of(state), height_of(state));
        for (std::size_t i = 0; i < target.words.size(); ++i) {
            const COLOUR pixel = target.words[i];
            const std::uint32_t factor = factors[pixel.alpha()];
            result.pixels[i] =
                (std::uint32_t{pixel.alpha()} << 24) | ((pixel.red() * factor) & 0xFF0000u) |
                (((pixel.green() * factor) >> 16) << 8) | ((pixel.blue() * factor) >> 16);
        }
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}

#define AT_BOTH_SIZES Args({64, 64})->Args({1920, 1080})

BENCHMARK(fill_image)->AT_BOTH_SIZES;
BENCHMARK(fill_pixman)->AT_BOTH_SIZES;

#define COPY_PAIR(name, content, type, operation, alpha)                      \
    BENCHMARK_CAPTURE(copy_image, name, content, type, alpha)->AT_BOTH_SIZES; \
    BENCHMARK_CAPTURE(copy_pixman, name, content, operation, alpha)->AT_BOTH_SIZES

COPY_PAIR(solid, OPAQUE, IMAGE_COPY_SOLID, PIXMAN_OP_SRC, 255);
COPY_PAIR(blend_translucent, TRANSLUCENT, IMAGE_COPY_BLEND, PIXMAN_OP_OVER, 255);
COPY_PAIR(blend_picture, PICTURE, IMAGE_COPY_BLEND, PIXMAN_OP_OVER, 255);
COPY_PAIR(blend_constant_alpha, PICTURE, IMAGE_COPY_BLEND, PIXMAN_OP_OVER, 100);
COPY_PAIR(blend_constant_alpha_translucent, TRANSLUCENT, IMAGE_COPY_BLEND, PIXMAN_OP_OVER, 100);

#define SCALE_PAIR(name, content, percent)                                 \
    BENCHMARK_CAPTURE(scale_image, name, content, percent)->AT_BOTH_SIZES; \
    BENCHMARK_CAPTURE(scale_pixman, name, content, percent, PIXMAN_FILTER_NEAREST)->AT_BOTH_SIZES

SCALE_PAIR(nearest_up, OPAQUE, 60);
SCALE_PAIR(nearest_down, OPAQUE, 150);

#define TWO_PASS_PAIR(name, content, percent)                                 \
    BENCHMARK_CAPTURE(two_pass_image, name, content, percent)->AT_BOTH_SIZES; \
    BENCHMARK_CAPTURE(scale_pixman, name, content, percent, PIXMAN_FILTER_BILINEAR)->AT_BOTH_SIZES

TWO_PASS_PAIR(bilinear_up, OPAQUE, 50);
TWO_PASS_PAIR(bilinear_up_translucent, TRANSLUCENT, 50);
BENCHMARK_CAPTURE(scale_pixman_unmultiplied, bilinear_up_translucent, TRANSLUCENT, 50,
                  PIXMAN_FILTER_BILINEAR)
    ->AT_BOTH_SIZES;
// Scaling down, the filter takes in every source pixel; pixman's bilinear filter skips most of
// them, its convolution does the same as ours.
TWO_PASS_PAIR(bilinear_down, OPAQUE, 200);
BENCHMARK_CAPTURE(scale_pixman, bilinear_down_convolution, OPAQUE, 200,
                  PIXMAN_FILTER_SEPARABLE_CONVOLUTION)
    ->AT_BOTH_SIZES;

}  // namespace
