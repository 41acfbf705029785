// GALLERY_PAGE_PROFILES: tables of labels and values in each mode, with all their looks.
#ifndef GALLERY_PAGE_PROFILES_H
#define GALLERY_PAGE_PROFILES_H

#include "gallery_page.h"

class PROFILE_GRID;

class GALLERY_PAGE_PROFILES : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_PROFILES(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { TITLE = 1, VALUE };

    PROFILE_GRID* add_grid(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                           std::int32_t mode, std::int16_t columns, std::int16_t fill_rows);
    void build_values(std::int32_t width, std::int32_t height);
    void build_pictures(std::int32_t x, std::int32_t width, std::int32_t height);
    void build_report(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
    void build_double(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);

    PROFILE_GRID* values = nullptr;
    PROFILE_GRID* report_grid = nullptr;
};

#endif  // GALLERY_PAGE_PROFILES_H
