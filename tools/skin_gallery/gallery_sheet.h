// Sheets of pictures that show every style set of a skin, for the skin's documentation.
#ifndef SKIN_GALLERY_GALLERY_SHEET_H
#define SKIN_GALLERY_GALLERY_SHEET_H

#include <string>
#include <vector>

class IMAGE;
class WM_STYLE_SET;

// A family of style sets on one sheet.
struct GALLERY_FAMILY {
    const char* file;                   // the picture's name
    std::vector<std::string> prefixes;  // of the names of its style sets
};

const std::vector<GALLERY_FAMILY>& get_gallery_families();

// Draws the family's style sets of the loaded skin, one a line: the name, a sample of its text, and
// its boxes, each with the state that it is for. Names under a prefix look like those without and
// are left out. The picture is empty if the skin has none of them.
void draw_gallery_sheet(const GALLERY_FAMILY& family, IMAGE& sheet);

// The named images of the loaded skin, one a line.
void draw_image_sheet(IMAGE& sheet);

#endif  // SKIN_GALLERY_GALLERY_SHEET_H
