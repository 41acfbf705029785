// Pages of real controls in the loaded skin, for the skin's documentation and for whoever changes
// its pictures.
#ifndef SKIN_GALLERY_GALLERY_PAGES_H
#define SKIN_GALLERY_GALLERY_PAGES_H

#include <cstdint>
#include <vector>

class IMAGE;

struct GALLERY_PAGE {
    const char* file;  // the picture's name
    std::int16_t width, height;
    void (*build)();  // puts the controls into the window's first area
};

const std::vector<GALLERY_PAGE>& get_gallery_pages();

// Builds the page in a window of its own, which isn't shown, and copies what it looks like.
// WM_WINDOW_MANAGER must not exist.
void draw_gallery_page(const GALLERY_PAGE& page, IMAGE& picture);

#endif  // SKIN_GALLERY_GALLERY_PAGES_H
