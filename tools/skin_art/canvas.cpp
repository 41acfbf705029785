#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "failure.h"

CORNERS CORNERS::inset(double amount) const {
    const auto less = [amount](double radius) {
        return radius <= 0 ? radius : std::max(radius - amount, 0.0);
    };
    return {less(top_left), less(top_right), less(bottom_right), less(bottom_left)};
}

CANVAS::CANVAS(int canvas_width, int canvas_height)
    : width(canvas_width),
      height(canvas_height),
      surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      context(cairo_create(surface)) {
    if (cairo_status(context) != CAIRO_STATUS_SUCCESS) {
        fail("There is no memory for a picture of %d x %d", width, height);
    }
}

CANVAS::~CANVAS() {
    cairo_destroy(context);
    cairo_surface_destroy(surface);
}

void CANVAS::set_colour(COLOUR colour) {
    cairo_set_source_rgba(context, colour.red() / 255.0, colour.green() / 255.0,
                          colour.blue() / 255.0, colour.alpha() / 255.0);
}

void CANVAS::trace(const BOX& box, const CORNERS& corners) {
    constexpr double QUARTER = std::numbers::pi / 2;
    const double right = box.x + box.width;
    const double bottom = box.y + box.height;
    const double limit = std::max(std::min(box.width, box.height) / 2, 0.0);
    int turn = 0;
    const auto corner = [&](double x, double y, double inward_x, double inward_y, double wanted) {
        const double radius = std::min(wanted, limit);
        const double start = (2 + turn++) * QUARTER;
        cairo_arc(context, x + inward_x * radius, y + inward_y * radius, radius, start,
                  start + QUARTER);
    };
    cairo_new_path(context);
    corner(box.x, box.y, 1, 1, corners.top_left);
    corner(right, box.y, -1, 1, corners.top_right);
    corner(right, bottom, -1, -1, corners.bottom_right);
    corner(box.x, bottom, 1, -1, corners.bottom_left);
    cairo_close_path(context);
}

void CANVAS::fill(const BOX& box, const CORNERS& corners, COLOUR colour) {
    trace(box, corners);
    set_colour(colour);
    cairo_fill(context);
}

void CANVAS::fill(const BOX& box, const CORNERS& corners, COLOUR top, COLOUR bottom) {
    cairo_pattern_t* gradient = cairo_pattern_create_linear(0, box.y, 0, box.y + box.height);
    const auto add_stop = [gradient](double at, COLOUR colour) {
        cairo_pattern_add_color_stop_rgba(gradient, at, colour.red() / 255.0,
                                          colour.green() / 255.0, colour.blue() / 255.0,
                                          colour.alpha() / 255.0);
    };
    add_stop(0, top);
    add_stop(1, bottom);
    trace(box, corners);
    cairo_set_source(context, gradient);
    cairo_fill(context);
    cairo_pattern_destroy(gradient);
}

void CANVAS::frame(const BOX& box, const CORNERS& corners, COLOUR colour, double thickness) {
    trace(box.inset(thickness / 2), corners.inset(thickness / 2));
    set_colour(colour);
    cairo_set_line_width(context, thickness);
    cairo_stroke(context);
}

void CANVAS::shadow(const BOX& box, const CORNERS& corners, COLOUR colour, double reach) {
    // Thin layers, the outer ones under the inner ones, of which each adds its share: the sum falls
    // off with the square of the distance.
    constexpr int LAYERS = 16;
    constexpr double SUM = LAYERS * (LAYERS + 1) / 2.0;
    for (int layer = LAYERS; layer >= 1; --layer) {
        const double distance = reach * layer / LAYERS;
        const double share = (LAYERS + 1 - layer) / SUM;
        trace(box.inset(-distance), corners.inset(-distance));
        cairo_set_source_rgba(context, colour.red() / 255.0, colour.green() / 255.0,
                              colour.blue() / 255.0, colour.alpha() / 255.0 * share);
        cairo_fill(context);
    }
}

void CANVAS::erase(const BOX& box, const CORNERS& corners) {
    trace(box, corners);
    cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
    cairo_fill(context);
    cairo_set_operator(context, CAIRO_OPERATOR_OVER);
}

void CANVAS::disc(POINT centre, double radius, COLOUR colour) {
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    set_colour(colour);
    cairo_fill(context);
}

void CANVAS::line(std::initializer_list<POINT> points, COLOUR colour, double thickness) {
    cairo_new_path(context);
    for (const POINT& point : points) {
        cairo_line_to(context, point.x, point.y);
    }
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(context, thickness);
    set_colour(colour);
    cairo_stroke(context);
}

void CANVAS::polygon(std::initializer_list<POINT> points, COLOUR colour) {
    cairo_new_path(context);
    for (const POINT& point : points) {
        cairo_line_to(context, point.x, point.y);
    }
    cairo_close_path(context);
    set_colour(colour);
    cairo_fill(context);
}

std::vector<std::uint32_t> CANVAS::get_pixels() const {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    std::vector<std::uint32_t> pixels;
    pixels.reserve(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(data + std::ptrdiff_t(y) * stride);
        for (int x = 0; x < width; ++x) {
            const COLOUR premultiplied(row[x]);
            const unsigned alpha = premultiplied.alpha();
            const auto straight = [alpha](unsigned channel) {
                return static_cast<unsigned char>(
                    alpha == 0 ? 0 : std::min((channel * 255 + alpha / 2) / alpha, 255u));
            };
            pixels.push_back(COLOUR(straight(premultiplied.red()), straight(premultiplied.green()),
                                    straight(premultiplied.blue()),
                                    static_cast<unsigned char>(alpha))
                                 .value);
        }
    }
    return pixels;
}
