// Fields to type in, and the lines between paragraphs.
#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

void draw_text_fields(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr double RADIUS = 5;
    CANVAS field(48, 32);
    field.fill(field.all(), RADIUS, palette["surface"]);
    field.fill({RADIUS, 1, field.all().width - 2 * RADIUS, 1}, 0, palette.faded("shadow", 0.06));
    field.frame(field.all(), RADIUS, palette["line_strong"]);
    output.put_nine(field, "text_field", 8);

    CANVAS separator(32, 9);
    separator.fill({0, 4, 32, 1}, 0, palette["line"]);
    output.put_across(separator, "text_separator", 4, 4);
}
