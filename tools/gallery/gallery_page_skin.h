// GALLERY_PAGE_SKIN: what the skin consists of. Its colours, fonts and pictures.
#ifndef GALLERY_PAGE_SKIN_H
#define GALLERY_PAGE_SKIN_H

#include "gallery_page.h"

class GALLERY_PAGE_SKIN : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_SKIN(GALLERY& owner) : GALLERY_PAGE(owner) {}

protected:
    void build() override;
    void forget() override {}

private:
    void build_colours(std::int32_t width);
    void build_fonts(std::int32_t x, std::int32_t width);
    void build_images(std::int32_t x, std::int32_t y);
};

#endif  // GALLERY_PAGE_SKIN_H
