// The program's sign: five tiles that form a T.
#ifndef SKIN_ART_TILE_MARK_H
#define SKIN_ART_TILE_MARK_H

#include "canvas.h"

class PALETTE;

// In the square `box`.
void draw_tile_mark(CANVAS& canvas, const BOX& box, const PALETTE& palette);

#endif  // SKIN_ART_TILE_MARK_H
