// A picture being drawn, anti-aliased, with the few figures that the skin is made of.
#ifndef SKIN_ART_CANVAS_H
#define SKIN_ART_CANVAS_H

#include <cairo.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "platform/colour.h"

// In pixels; edges lie between pixels.
struct BOX {
    double x, y, width, height;

    // Smaller by `amount` on every side; larger for a negative one.
    BOX inset(double amount) const {
        return {x + amount, y + amount, width - 2 * amount, height - 2 * amount};
    }
    BOX moved(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
};

struct POINT {
    double x, y;
};

// The radii of a box's corners.
struct CORNERS {
    constexpr CORNERS(double all)  // NOLINT: a single radius is the usual case
        : top_left(all), top_right(all), bottom_right(all), bottom_left(all) {}
    constexpr CORNERS(double a, double b, double c, double d)
        : top_left(a), top_right(b), bottom_right(c), bottom_left(d) {}
    CORNERS inset(double amount) const;

    double top_left, top_right, bottom_right, bottom_left;
};

class CANVAS {
public:
    // Empty: every pixel is transparent.
    CANVAS(int width, int height);
    ~CANVAS();
    CANVAS(const CANVAS&) = delete;
    CANVAS& operator=(const CANVAS&) = delete;

    int get_width() const { return width; }
    int get_height() const { return height; }
    BOX all() const { return {0, 0, double(width), double(height)}; }

    void fill(const BOX& box, const CORNERS& corners, COLOUR colour);
    // From `top` at the box's upper edge to `bottom` at its lower one.
    void fill(const BOX& box, const CORNERS& corners, COLOUR top, COLOUR bottom);
    // A frame of that width along the inside of the box.
    void frame(const BOX& box, const CORNERS& corners, COLOUR colour, double thickness = 1);
    // A soft shadow that fades out over `reach` pixels around the box, and lies under it as well.
    void shadow(const BOX& box, const CORNERS& corners, COLOUR colour, double reach);
    // Makes the inside of the box transparent again.
    void erase(const BOX& box, const CORNERS& corners);
    void disc(POINT centre, double radius, COLOUR colour);
    // A line through the points, with round ends and corners.
    void line(std::initializer_list<POINT> points, COLOUR colour, double thickness);
    void polygon(std::initializer_list<POINT> points, COLOUR colour);

    cairo_t* get_context() { return context; }
    // Straight (not premultiplied) colours, row by row.
    std::vector<std::uint32_t> get_pixels() const;

private:
    void trace(const BOX& box, const CORNERS& corners);
    void set_colour(COLOUR colour);

    int width, height;
    cairo_surface_t* surface;
    cairo_t* context;
};

#endif  // SKIN_ART_CANVAS_H
