// Named pictures: arrows, the background of pages, the program's logo and the sign that something
// is going on.
#include <cmath>
#include <numbers>
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"
#include "tile_mark.h"

namespace {

// A chevron that points to the right, turned by quarters.
void put_arrow(PICTURE_OUTPUT& output, const std::string& name, int quarters, COLOUR colour) {
    constexpr int SIZE = 9;
    CANVAS canvas(SIZE, SIZE);
    cairo_t* context = canvas.get_context();
    cairo_translate(context, SIZE / 2.0, SIZE / 2.0);
    cairo_rotate(context, quarters * std::numbers::pi / 2);
    canvas.line({{-1.6, -3}, {1.6, 0}, {-1.6, 3}}, colour, 1.6);
    output.put(canvas, name);
}

}  // namespace

void draw_arrows(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr const char* NAMES[] = {"arrow_right", "arrow_down", "arrow_left", "arrow_up"};
    for (int quarters = 0; quarters < 4; ++quarters) {
        const std::string name = NAMES[quarters];
        put_arrow(output, name, quarters, palette["ink_soft"]);
        put_arrow(output, name + "_disabled", quarters, palette.faded("ink_faint", 0.55));
    }
}

void draw_background(const PALETTE& palette, PICTURE_OUTPUT& output) {
    CANVAS canvas(800, 500);
    canvas.fill(canvas.all(), 0, palette["page_top"], palette["page_bottom"]);
    // A few faint tiles that run out of the lower right corner.
    constexpr double STEP = 46;
    constexpr double TILE = 40;
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 7; ++column) {
            const double fade = 1 - (row + column) / 7.5;
            if (fade > 0 && (row * 5 + column * 3) % 7 < 4) {
                canvas.fill({800 - STEP * (column + 1) + 8, 500 - STEP * (row + 1) + 8, TILE, TILE},
                            6, palette.faded("page_tile", fade));
            }
        }
    }
    output.put(canvas, "background");
}

void draw_logo(const PALETTE& palette, PICTURE_OUTPUT& output) {
    CANVAS canvas(128, 88);
    canvas.fill(canvas.all(), 6, palette["page_top"], palette["page_bottom"]);
    canvas.frame(canvas.all(), 6, palette["line"]);
    draw_tile_mark(canvas, {64 - 27, 44 - 27, 54, 54}, palette);
    output.put(canvas, "app_logo");
}

void draw_wait_animation(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr int FRAMES = 12;
    constexpr int SIZE = 32;
    CANVAS canvas(FRAMES * SIZE, SIZE);
    const COLOUR accent = palette["accent"];
    const COLOUR rest = blend(palette["ink_faint"], palette["surface"], 0.35);
    for (int frame = 0; frame < FRAMES; ++frame) {
        const POINT centre{frame * SIZE + SIZE / 2.0, SIZE / 2.0};
        for (int dot = 0; dot < FRAMES; ++dot) {
            // How long ago the dot was the first one, 0 to 1.
            const double age = ((frame - dot + FRAMES) % FRAMES) / double(FRAMES);
            const double angle = 2 * std::numbers::pi * dot / FRAMES - std::numbers::pi / 2;
            const double strength = (1 - age) * (1 - age);
            COLOUR colour = blend(rest, accent, std::min(strength * 1.4, 1.0));
            colour = colour.with_alpha(static_cast<unsigned char>(90 + 165 * strength));
            canvas.disc({centre.x + 11.5 * std::cos(angle), centre.y + 11.5 * std::sin(angle)},
                        1.5 + 1.1 * strength, colour);
        }
    }
    output.put(canvas, "please_wait_animation");
}
