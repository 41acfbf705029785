// C2PassScale: the scaler for large pictures. A horizontal pass into a temporary picture, then a
// vertical one, each weighting the source pixels within the filter's reach of a sample (separable
// resampling, as in D. Schumacher, "General filtered image rescaling", Graphics Gems III, 1992).
//
// What is weighted is the colour multiplied by its alpha, so that transparent pixels don't bleed
// their colour.
#ifndef PLATFORM_TWO_PASS_SCALE_H
#define PLATFORM_TWO_PASS_SCALE_H

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/colour.h"

// The source pixels of each sample of a line, and their weights.
class LINE_CONTRIBUTIONS {
public:
    // `count` pixels from `left` on, with as many weights from `first_weight` on.
    struct SAMPLE {
        std::int32_t left, count;
        std::size_t first_weight;
    };

    std::vector<SAMPLE> samples;
    std::vector<float> weights;  // of each sample, they add up to 1
    // The same as parts of PART_UNIT, adding up to exactly that.
    std::vector<std::uint16_t> parts;
    static constexpr std::int32_t PART_UNIT = 65535;

    // Appends the sample of the pixels from `left` on. The weights aren't negative; they may have
    // any sum, and zeros at either end, which are dropped. Nothing but zeros counts as the first
    // pixel alone.
    void add(std::int32_t left, const double* pixel_weights, std::int32_t count);
};

// The work behind C2PassScale.
namespace two_pass_scale {

// Rows are `stride` pixels apart.
template <class PIXEL>
struct PICTURE {
    PIXEL* pixels;
    std::int32_t width, height, stride;

    PIXEL* row(std::int32_t y) const { return pixels + static_cast<std::ptrdiff_t>(y) * stride; }
};

// Scales `source` to the samples of `across` in each row and of `down` in each column. False if
// memory can't be had, or `*aborted` (`aborted` may be null) was set between passes.
bool scale(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
           const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
           const std::atomic<bool>* aborted);

// The reference, pixel by pixel in floating point. The other may use vector instructions; what they
// yield differs by rounding only.
bool scale_plain(const PICTURE<const COLOUR>& source, const PICTURE<COLOUR>& target,
                 const LINE_CONTRIBUTIONS& across, const LINE_CONTRIBUTIONS& down,
                 const std::atomic<bool>* aborted);

}  // namespace two_pass_scale

// A triangle: linear interpolation between neighbours, and their weighted mean when scaling down.
class CBilinearFilter {
public:
    explicit CBilinearFilter(double filter_width = 1.0) : width(filter_width) {}
    double GetWidth() const { return width; }
    double Filter(double x) const {
        const double distance = x < 0 ? -x : x;
        return distance < width ? width - distance : 0.0;
    }

private:
    double width;
};

template <class FILTER>
class C2PassScale : public FILTER {
public:
    // `abort_flag`, if given, may be set by another thread to end a scaling between its passes.
    explicit C2PassScale(const std::atomic<bool>* abort_flag = nullptr) : aborted(abort_flag) {}

    // Scales `sw` by `sh` pixels, rows `ss` pixels apart, to `dw` by `dh` pixels in `dst`, rows
    // `ds` pixels apart; the two may not overlap. Yields `dst`; null, with `dst` not complete, if
    // it was aborted, a size is below 1, or memory can't be had.
    COLOUR* Scale(const COLOUR* src, std::int32_t sw, std::int32_t sh, std::int32_t ss, COLOUR* dst,
                  std::int32_t dw, std::int32_t dh, std::int32_t ds) const {
        if (!src || !dst || sw < 1 || sh < 1 || dw < 1 || dh < 1) {
            return nullptr;
        }
        const bool done = two_pass_scale::scale(
            {src, sw, sh, ss}, {dst, dw, dh, ds}, CalcContributions(dw, sw, double(dw) / sw),
            CalcContributions(dh, sh, double(dh) / sh), aborted);
        return done ? dst : nullptr;
    }

    // The contributions to the `line_size` samples of a line of `src_size` pixels.
    LINE_CONTRIBUTIONS CalcContributions(std::int32_t line_size, std::int32_t src_size,
                                         double scale) const {
        // Scaling down, the filter is stretched over all pixels that a sample stands for.
        const double filter_scale = std::min(scale, 1.0);
        const double reach = this->GetWidth() / filter_scale;
        const std::int32_t window = 2 * static_cast<std::int32_t>(std::ceil(reach)) + 2;
        LINE_CONTRIBUTIONS line;
        const auto count = static_cast<std::size_t>(line_size);
        line.samples.reserve(count);
        line.weights.reserve(count * static_cast<std::size_t>(window));
        line.parts.reserve(count * static_cast<std::size_t>(window));
        std::vector<double> weights(static_cast<std::size_t>(window) + 1);
        for (std::int32_t i = 0; i < line_size; ++i) {
            const double centre = i / scale;
            auto left = std::max(static_cast<std::int32_t>(std::floor(centre - reach)), 0);
            auto right =
                std::min(static_cast<std::int32_t>(std::ceil(centre + reach)), src_size - 1);
            if (right - left + 1 > window) {
                if (left < src_size / 2) {
                    ++left;
                } else {
                    --right;
                }
            }
            for (std::int32_t j = left; j <= right; ++j) {
                weights[static_cast<std::size_t>(j - left)] =
                    filter_scale * this->Filter((centre - j) * filter_scale);
            }
            line.add(left, weights.data(), right - left + 1);
        }
        return line;
    }

private:
    const std::atomic<bool>* aborted;
};

#endif  // PLATFORM_TWO_PASS_SCALE_H
