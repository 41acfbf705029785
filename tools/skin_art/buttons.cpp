// Push buttons: a body of 28 pixels within a margin of two for the ring that shows where the
// pointer or the focus is.
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

namespace {

constexpr int WIDTH = 44;
constexpr int HEIGHT = 32;
constexpr int END = 10;  // what stays whole at the left and right
constexpr double RING = 2;
constexpr double RADIUS = 5;
const BOX BODY = BOX{0, 0, WIDTH, HEIGHT}.inset(RING);

// The colours of one state.
struct BUTTON_LOOK {
    COLOUR top, bottom, edge;
    COLOUR ring = COLOUR_INVISIBLE;
    COLOUR gleam = COLOUR_INVISIBLE;   // a line under the upper edge
    COLOUR shadow = COLOUR_INVISIBLE;  // a line below the body
};

void put_button(PICTURE_OUTPUT& output, const std::string& name, const BUTTON_LOOK& look) {
    CANVAS canvas(WIDTH, HEIGHT);
    canvas.fill(BODY.moved(0, 1), RADIUS, look.shadow);
    canvas.fill(BODY.inset(-RING), RADIUS + RING, look.ring);
    canvas.erase(BODY.inset(0.5), RADIUS);
    canvas.fill(BODY, RADIUS, look.top, look.bottom);
    const BOX inside = BODY.inset(1);
    canvas.fill({inside.x + 2, inside.y, inside.width - 4, 1}, 0, look.gleam);
    canvas.frame(BODY, RADIUS, look.edge);
    output.put_across(canvas, name, END, END);
}

void put_plain(const PALETTE& palette, PICTURE_OUTPUT& output) {
    const COLOUR top = palette["face_top"];
    const COLOUR bottom = palette["face_bottom"];
    const COLOUR edge = palette["face_line"];
    const COLOUR ink = palette["ink"];
    const COLOUR accent = palette["accent"];
    const COLOUR ring = palette.faded("accent", 0.38);
    const COLOUR shadow = palette.faded("shadow", 0.13);
    const BUTTON_LOOK up{top, bottom, edge, COLOUR_INVISIBLE, COLOUR_INVISIBLE, shadow};
    const BUTTON_LOOK over{top, blend(bottom, accent, 0.06), accent, ring};
    const COLOUR pressed = blend(bottom, ink, 0.07);
    const BUTTON_LOOK down{blend(bottom, ink, 0.12), pressed, blend(edge, ink, 0.25)};
    const COLOUR flat = blend(top, bottom, 0.5).with_alpha(140);
    const BUTTON_LOOK disabled{flat, flat, edge.with_alpha(150)};
    put_button(output, "button_plain_up", up);
    put_button(output, "button_plain_over", over);
    put_button(output, "button_plain_down", down);
    put_button(output, "button_plain_disabled", disabled);
    // Pressed in for good, as of a choice that is on.
    const COLOUR wash = palette["accent_wash"];
    const BUTTON_LOOK on{blend(wash, ink, 0.04), wash, palette["accent_dark"]};
    BUTTON_LOOK on_over = on;
    on_over.ring = ring;
    const BUTTON_LOOK on_down{blend(wash, ink, 0.12), blend(wash, ink, 0.08), on.edge};
    const BUTTON_LOOK on_disabled{wash.with_alpha(140), wash.with_alpha(140),
                                  on.edge.with_alpha(110)};
    put_button(output, "button_plain_active_up", on);
    put_button(output, "button_plain_active_over", on_over);
    put_button(output, "button_plain_active_down", on_down);
    put_button(output, "button_plain_active_disabled", on_disabled);
}

void put_main(const PALETTE& palette, PICTURE_OUTPUT& output) {
    const COLOUR light = palette["accent_light"];
    const COLOUR accent = palette["accent"];
    const COLOUR dark = palette["accent_dark"];
    const COLOUR gleam = COLOUR_WHITE.with_alpha(90);
    const COLOUR shadow = palette.faded("shadow", 0.2);
    const BUTTON_LOOK up{light, accent, dark, COLOUR_INVISIBLE, gleam, shadow};
    const BUTTON_LOOK over{blend(light, COLOUR_WHITE, 0.22), blend(accent, COLOUR_WHITE, 0.14),
                           dark, palette.faded("accent", 0.45), gleam};
    const BUTTON_LOOK down{blend(accent, dark, 0.55), blend(accent, dark, 0.3),
                           blend(dark, COLOUR_BLACK, 0.2)};
    const COLOUR flat = blend(accent, palette["face_bottom"], 0.45).with_alpha(190);
    const BUTTON_LOOK disabled{flat, flat, dark.with_alpha(80)};
    put_button(output, "button_main_up", up);
    put_button(output, "button_main_over", over);
    put_button(output, "button_main_down", down);
    put_button(output, "button_main_disabled", disabled);
}

}  // namespace

void draw_buttons(const PALETTE& palette, PICTURE_OUTPUT& output) {
    put_plain(palette, output);
    put_main(palette, output);
}
