// Filled polygons and circles.
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/image.h"

namespace {

constexpr std::int32_t FAR_AWAY = 1 << 29;

struct SPAN {
    std::int32_t left, right;
};

// Crossings lie at pixels exactly where an edge's corners do; the slack is for the division.
constexpr double SLACK = 1e-6;

void add_span(std::vector<SPAN>& spans, double left, double right) {
    const SPAN span = {static_cast<std::int32_t>(std::ceil(left - SLACK)),
                       static_cast<std::int32_t>(std::floor(right + SLACK))};
    if (span.left <= span.right) {
        spans.push_back(span);
    }
}

// Overlapping spans become one, so that no pixel is mixed twice.
void merge_spans(std::vector<SPAN>& spans) {
    if (spans.empty()) {
        return;
    }
    std::sort(spans.begin(), spans.end(),
              [](const SPAN& a, const SPAN& b) { return a.left < b.left; });
    std::size_t last = 0;
    for (std::size_t i = 1; i < spans.size(); ++i) {
        if (spans[i].left <= spans[last].right) {
            spans[last].right = std::max(spans[last].right, spans[i].right);
        } else {
            spans[++last] = spans[i];
        }
    }
    spans.resize(last + 1);
}

// The spans between the edges that row `y` crosses. An edge counts from its upper end (included) to
// its lower one or, with `lower`, the other way round: together the two rules take in both ends.
void add_crossings(std::vector<SPAN>& spans, std::vector<double>& crossings, const std::int32_t* xs,
                   const std::int32_t* ys, std::int32_t count, std::int32_t y, bool lower) {
    crossings.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t next = i + 1 < count ? i + 1 : 0;
        const std::int32_t top = std::min(ys[i], ys[next]);
        const std::int32_t bottom = std::max(ys[i], ys[next]);
        if (lower ? (y > top && y <= bottom) : (y >= top && y < bottom)) {
            crossings.push_back(xs[i] + static_cast<double>(y - ys[i]) * (xs[next] - xs[i]) /
                                            (ys[next] - ys[i]));
        }
    }
    std::sort(crossings.begin(), crossings.end());
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
        add_span(spans, crossings[i], crossings[i + 1]);
    }
}

// The largest x of a circle in the row at that distance from its centre, -1 for none. The circle
// goes through the outer edges of its pixels: x * x + d * d <= (r + 1/2) * (r + 1/2).
std::int32_t half_width(std::int64_t radius, std::int64_t distance) {
    const std::int64_t square = radius * radius + radius - distance * distance;
    if (distance > radius || square < 0) {
        return -1;
    }
    auto root = static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)));
    while (root * root > square) {
        --root;
    }
    while ((root + 1) * (root + 1) <= square) {
        ++root;
    }
    return static_cast<std::int32_t>(root);
}

}  // namespace

void IMAGE::fill_figure(const std::int32_t* xs, const std::int32_t* ys, std::int32_t count,
                        COLOUR colour, bool blend) {
    AREA active;
    if (count < 1 || !get_active(active)) {
        return;
    }
    const std::int32_t top = std::max(*std::min_element(ys, ys + count), active.top);
    const std::int32_t bottom = std::min(*std::max_element(ys, ys + count), active.bottom);
    std::vector<SPAN> spans;
    std::vector<double> crossings;
    for (std::int32_t y = top; y <= bottom; ++y) {
        spans.clear();
        add_crossings(spans, crossings, xs, ys, count, y, false);
        add_crossings(spans, crossings, xs, ys, count, y, true);
        for (std::int32_t i = 0; i < count; ++i) {
            const std::int32_t next = i + 1 < count ? i + 1 : 0;
            if (ys[i] == y && ys[next] == y) {
                spans.push_back({std::min(xs[i], xs[next]), std::max(xs[i], xs[next])});
            }
        }
        merge_spans(spans);
        for (const SPAN& span : spans) {
            AREA area;
            if (clip(span.left, y, span.right, y, area)) {
                fill_area(area, colour, blend);
            }
        }
    }
}

void IMAGE::fill_polygon(const std::int16_t* xs, const std::int16_t* ys, std::int32_t count,
                         COLOUR colour, unsigned char blend) {
    if (!can_draw("fill_polygon") || !xs || !ys || count < 1) {
        return;
    }
    const std::vector<std::int32_t> wide_xs(xs, xs + count);
    const std::vector<std::int32_t> wide_ys(ys, ys + count);
    fill_figure(wide_xs.data(), wide_ys.data(), count, colour, blend != 0);
}

void IMAGE::plot_triangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          std::int32_t x3, std::int32_t y3, COLOUR colour, unsigned char blend) {
    if (!can_draw("plot_triangle")) {
        return;
    }
    std::int32_t xs[3] = {x1, x2, x3};
    std::int32_t ys[3] = {y1, y2, y3};
    for (int i = 0; i < 3; ++i) {
        xs[i] = std::clamp(xs[i], -FAR_AWAY, FAR_AWAY);
        ys[i] = std::clamp(ys[i], -FAR_AWAY, FAR_AWAY);
    }
    fill_figure(xs, ys, 3, colour, blend != 0);
}

void IMAGE::plot_circle(std::int32_t x, std::int32_t y, std::int32_t radius, COLOUR colour,
                        unsigned char filled, unsigned char blend) {
    AREA active;
    if (!can_draw("plot_circle") || !get_active(active) || radius < 0) {
        return;
    }
    x = std::clamp(x, -FAR_AWAY, FAR_AWAY);
    y = std::clamp(y, -FAR_AWAY, FAR_AWAY);
    radius = std::min(radius, FAR_AWAY);
    const auto fill = [&](std::int32_t left, std::int32_t right, std::int32_t at) {
        AREA area;
        if (left <= right && clip(x + left, at, x + right, at, area)) {
            fill_area(area, colour, blend != 0);
        }
    };
    const std::int32_t bottom = std::min(y + radius, active.bottom);
    for (std::int32_t at = std::max(y - radius, active.top); at <= bottom; ++at) {
        const std::int32_t distance = std::abs(at - y);
        const std::int32_t outer = half_width(radius, distance);
        // The outline's part of a row reaches to where the next row out ends.
        const std::int32_t inner = std::min(half_width(radius, distance + 1) + 1, outer);
        if (filled || inner == 0) {
            fill(-outer, outer, at);
        } else {
            fill(-outer, -inner, at);
            fill(inner, outer, at);
        }
    }
}
