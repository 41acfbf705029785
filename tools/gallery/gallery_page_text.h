// GALLERY_PAGE_TEXT: text boxes to read. The tags of their language, and how lines are set.
#ifndef GALLERY_PAGE_TEXT_H
#define GALLERY_PAGE_TEXT_H

#include "gallery_page.h"

#include "platform/colour.h"

class TEXT_BOX_TAG;

class GALLERY_PAGE_TEXT : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_TEXT(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

    // For TEXT_BOX::create_tag_object_callback: a button for a "url" or "callback" tag.
    static WM_SCREEN_OBJECT* create_link(TEXT_BOX& box, const char* style_prefix, TEXT_BOX_TAG& tag,
                                         const char* word, COLOUR& colours, signed char style,
                                         std::int16_t font_x_delta, std::int16_t font_y_delta,
                                         unsigned char enabled, signed char window);

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { LINK = 1, BOX };

    TEXT_BOX* tagged = nullptr;
};

#endif  // GALLERY_PAGE_TEXT_H
