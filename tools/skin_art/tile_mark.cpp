#include "tile_mark.h"

#include "palette.h"

void draw_tile_mark(CANVAS& canvas, const BOX& box, const PALETTE& palette) {
    const COLOUR light = palette["accent_light"];
    const COLOUR accent = palette["accent"];
    const COLOUR dark = palette["accent_dark"];
    const struct {
        int column, row;
        COLOUR colour;
    } tiles[] = {
        {0, 0, blend(light, COLOUR_WHITE, 0.35)}, {1, 0, accent}, {2, 0, light},
        {1, 1, blend(accent, dark, 0.45)},        {1, 2, dark},
    };
    const double gap = box.width / 18;
    const double side = (box.width - 2 * gap) / 3;
    for (const auto& [column, row, colour] : tiles) {
        const BOX tile{box.x + column * (side + gap), box.y + row * (side + gap), side, side};
        canvas.fill(tile, side / 4.5, blend(colour, COLOUR_WHITE, 0.12), colour);
    }
}
