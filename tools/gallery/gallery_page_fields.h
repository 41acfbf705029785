// GALLERY_PAGE_FIELDS: text boxes to write in.
#ifndef GALLERY_PAGE_FIELDS_H
#define GALLERY_PAGE_FIELDS_H

#include "gallery_page.h"

class GALLERY_PAGE_FIELDS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_FIELDS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { CHANGED = 1 };

    TEXT_BOX* add_field(std::int32_t y, const char* label, const char* text,
                        std::int32_t max_length, const char* valid_chars, std::uint32_t flags);

    TEXT_BOX* name_field = nullptr;
    TEXT_BOX* password_field = nullptr;
    TEXT_BOX* editor = nullptr;
    TEXT_BOX* limited = nullptr;
};

#endif  // GALLERY_PAGE_FIELDS_H
