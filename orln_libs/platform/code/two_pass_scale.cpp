#include "platform/two_pass_scale.h"

#include <algorithm>
#include <memory>
#include <new>

void LINE_CONTRIBUTIONS::add(std::int32_t left, const double* pixel_weights, std::int32_t count) {
    while (count > 1 && pixel_weights[count - 1] <= 0) {
        --count;
    }
    while (count > 1 && pixel_weights[0] <= 0) {
        ++left;
        ++pixel_weights;
        --count;
    }
    double total = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        total += pixel_weights[i];
    }
    samples.push_back({left, count, weights.size()});
    std::int32_t rest = PART_UNIT;
    std::size_t largest = parts.size();
    for (std::int32_t i = 0; i < count; ++i) {
        const double share = total > 0 ? pixel_weights[i] / total : 1.0;
        const auto part = static_cast<std::uint16_t>(share * PART_UNIT + 0.5);
        weights.push_back(static_cast<float>(share));
        parts.push_back(part);
        rest -= part;
        if (part > parts[largest]) {
            largest = parts.size() - 1;
        }
    }
    // What rounding leaves over goes to the largest.
    parts[largest] = static_cast<std::uint16_t>(parts[largest] + rest);
}

namespace {

// Weighted sums of one sample, its colours multiplied by their alphas.
struct WEIGHTED_SUM {
    double red = 0, green = 0, blue = 0, alpha = 0;

    void add(COLOUR pixel, double weight) {
        const double visible = weight * pixel.alpha() / 255.0;
        red += visible * pixel.red();
        green += visible * pixel.green();
        blue += visible * pixel.blue();
        alpha += visible;
    }
    // `alpha` is what is left of the weights when the transparent part of each is taken away.
    COLOUR get() const {
        if (alpha <= 0) {
            return COLOUR_INVISIBLE;
        }
        const auto channel = [](double value) {
            return static_cast<unsigned char>(std::min(value + 0.5, 255.0));
        };
        return COLOUR(channel(red / alpha), channel(green / alpha), channel(blue / alpha),
                      channel(alpha * 255.0));
    }
};

// One sample of a line whose pixels are `step` apart.
COLOUR scale_sample(const COLOUR* source, std::ptrdiff_t step, const LINE_CONTRIBUTIONS& line,
                    const LINE_CONTRIBUTIONS::SAMPLE& sample) {
    WEIGHTED_SUM sum;
    for (std::int32_t i = 0; i < sample.count; ++i) {
        sum.add(source[(sample.left + i) * step],
                double{line.weights[sample.first_weight + static_cast<std::size_t>(i)]});
    }
    return sum.get();
}

void ScaleRow(const COLOUR* source, COLOUR* target, const LINE_CONTRIBUTIONS& line) {
    for (const LINE_CONTRIBUTIONS::SAMPLE& sample : line.samples) {
        *target++ = scale_sample(source, 1, line, sample);
    }
}

void ScaleCol(const COLOUR* source, std::ptrdiff_t source_stride, COLOUR* target,
              std::ptrdiff_t target_stride, const LINE_CONTRIBUTIONS& line) {
    for (const LINE_CONTRIBUTIONS::SAMPLE& sample : line.samples) {
        *target = scale_sample(source, source_stride, line, sample);
        target += target_stride;
    }
}

}  // namespace

namespace two_pass_scale {

bool scale_plain(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
                 const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
                 const std::atomic<bool>* aborted) {
    const std::unique_ptr<COLOUR[]> pixels(new (std::nothrow)
                                               COLOUR[static_cast<std::size_t>(target.width) *
                                                      static_cast<std::size_t>(source.height)]);
    if (!pixels) {
        return false;
    }
    const PICTURE<COLOUR> between = {pixels.get(), target.width, source.height, target.width};
    for (std::int32_t y = 0; y < source.height; ++y) {
        ScaleRow(source.row(y), between.row(y), across);
    }
    if (aborted && aborted->load(std::memory_order_relaxed)) {
        return false;
    }
    for (std::int32_t x = 0; x < target.width; ++x) {
        ScaleCol(between.pixels + x, between.stride, target.pixels + x, target.stride, down);
    }
    return true;
}

#if !defined(__SSE2__)

bool scale(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
           const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
           const std::atomic<bool>* aborted) {
    return scale_plain(source, target, across, down, aborted);
}

#endif

}  // namespace two_pass_scale
