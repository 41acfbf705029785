// Progress bars and scroll bars.
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

namespace {

// A scroll bar keeps some distance to what it scrolls.
constexpr int WIDTH = 16;
constexpr int DISTANCE = 4;
constexpr BOX BAR = {DISTANCE, 0, WIDTH - DISTANCE, 32};
const SIDES BAR_SIDES = {DISTANCE + 4, 8, 4, 8};

void put_slider(PICTURE_OUTPUT& output, const std::string& state, COLOUR colour, double inset) {
    CANVAS canvas(WIDTH, static_cast<int>(BAR.height));
    const double width = BAR.width - 2 * inset;
    canvas.fill({BAR.x + inset, 2, width, BAR.height - 4}, width / 2, colour);
    output.put_nine(canvas, "scroll_bar_slider_" + state, BAR_SIDES);
}

void put_track(PICTURE_OUTPUT& output, const std::string& name, COLOUR colour) {
    CANVAS canvas(WIDTH, static_cast<int>(BAR.height));
    canvas.fill(BAR.inset(1), 5, colour);
    output.put_nine(canvas, name, BAR_SIDES);
}

// An end button; `turn` is -1 for the one that points up, 1 for the other.
void put_end_button(PICTURE_OUTPUT& output, const std::string& name, COLOUR face, COLOUR arrow,
                    double turn) {
    constexpr double HEIGHT = 14;
    constexpr double MIDDLE = BAR.x + BAR.width / 2;
    CANVAS canvas(WIDTH, static_cast<int>(HEIGHT));
    canvas.fill(BOX{BAR.x, 0, BAR.width, HEIGHT}.inset(1), 3, face);
    canvas.line({{MIDDLE - 2.5, HEIGHT / 2 - turn * 1.5},
                 {MIDDLE, HEIGHT / 2 + turn * 1.25},
                 {MIDDLE + 2.5, HEIGHT / 2 - turn * 1.5}},
                arrow, 1.5);
    output.put(canvas, name);
}

}  // namespace

void draw_progress_bar(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr double RADIUS = 6;
    constexpr int SIDE = 7;
    CANVAS empty(48, 24);
    empty.fill(empty.all(), RADIUS, palette["groove"]);
    empty.fill({RADIUS, 1, empty.all().width - 2 * RADIUS, 1}, 0, palette.faded("shadow", 0.07));
    empty.frame(empty.all(), RADIUS, palette["line_strong"]);
    output.put_nine(empty, "progress_empty", SIDE);

    const auto put_filled = [&](const char* name, COLOUR top, COLOUR middle, COLOUR edge) {
        // The bar is never drawn shorter than this, so it is as short as its round ends allow.
        CANVAS canvas(2 * SIDE + 2, 24);
        const BOX body = canvas.all();
        canvas.fill(body, RADIUS, middle);
        canvas.fill({body.x, body.y, body.width, SIDE}, {RADIUS, RADIUS, 0, 0}, top, middle);
        canvas.fill({RADIUS, 1, body.width - 2 * RADIUS, 1}, 0, COLOUR_WHITE.with_alpha(80));
        canvas.frame(body, RADIUS, edge);
        output.put_nine(canvas, name, SIDE);
    };
    put_filled("progress_full", palette["bar_light"], palette["bar"], palette["bar_edge"]);
}

void draw_scroll_bar(const PALETTE& palette, PICTURE_OUTPUT& output) {
    put_track(output, "scroll_bar_bar", palette["groove"]);
    put_track(output, "scroll_bar_bar_over", palette["groove"]);
    put_track(output, "scroll_bar_bar_disabled", palette.faded("groove", 0.5));
    put_slider(output, "up", palette["slider"], 3);
    put_slider(output, "over", palette["slider_over"], 2);
    put_slider(output, "down", blend(palette["slider_over"], palette["ink"], 0.25), 2);
    put_slider(output, "disabled", palette.faded("slider", 0.4), 3);
    const struct {
        const char* state;
        COLOUR face, arrow;
    } states[] = {
        {"up", COLOUR_INVISIBLE, palette["ink_soft"]},
        {"over", palette["groove"], palette["ink"]},
        {"down", palette["slider"], palette["ink"]},
        {"disabled", COLOUR_INVISIBLE, palette.faded("ink_faint", 0.6)},
    };
    for (const auto& [state, face, arrow] : states) {
        put_end_button(output, std::string("scroll_bar_less_") + state, face, arrow, -1);
        put_end_button(output, std::string("scroll_bar_more_") + state, face, arrow, 1);
    }
}
