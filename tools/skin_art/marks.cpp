// Check boxes: 13 pixels square within a margin for the ring. They stand a little high, in line
// with the label.
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

namespace {

constexpr int SIZE = 17;
constexpr double RADIUS = 3;
constexpr double RING = 1;
constexpr BOX BODY = {3, 1, 13, 13};

void put_box(PICTURE_OUTPUT& output, const std::string& name, COLOUR face, COLOUR edge, COLOUR ring,
             COLOUR mark) {
    CANVAS canvas(SIZE, SIZE);
    canvas.fill(BODY.inset(-RING), RADIUS + RING, ring);
    canvas.erase(BODY.inset(0.5), RADIUS);
    canvas.fill(BODY, RADIUS, face);
    canvas.frame(BODY, RADIUS, edge);
    if (mark.alpha() != 0) {
        canvas.line({{6.4, 7.7}, {8.6, 9.9}, {12.7, 4.9}}, mark, 1.8);
    }
    output.put(canvas, "check_box_" + name);
}

}  // namespace

void draw_check_marks(const PALETTE& palette, PICTURE_OUTPUT& output) {
    const COLOUR none = COLOUR_INVISIBLE;
    const COLOUR face = palette["face_top"];
    const COLOUR edge = blend(palette["face_line"], palette["ink"], 0.18);
    const COLOUR accent = palette["accent"];
    const COLOUR dark = palette["accent_dark"];
    const COLOUR mark = palette["on_accent"];
    const COLOUR ring = palette.faded("accent", 0.6);
    put_box(output, "up", face, edge, none, none);
    put_box(output, "over", face, accent, ring, none);
    put_box(output, "down", palette["accent_wash"], dark, none, none);
    put_box(output, "disabled", face.with_alpha(110), edge.with_alpha(110), none, none);
    put_box(output, "active_up", accent, dark, none, mark);
    put_box(output, "active_over", palette["accent_light"], dark, ring, mark);
    put_box(output, "active_down", blend(accent, dark, 0.5), dark, none, mark);
    put_box(output, "active_disabled", accent.with_alpha(90), dark.with_alpha(70), none,
            mark.with_alpha(130));
}
