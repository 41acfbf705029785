// GALLERY_PAGE_MARKS: check boxes, progress bars, pictures and animations.
#ifndef GALLERY_PAGE_MARKS_H
#define GALLERY_PAGE_MARKS_H

#include "gallery_page.h"

class WM_ANIMATION;
class WM_CHECK_BOX;
class WM_IMAGE;
class WM_PROGRESS_BAR;

class GALLERY_PAGE_MARKS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_MARKS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;
    void work() override;

private:
    enum COMMAND : std::int32_t { CHECKED = 1, PICTURE, ANIMATION, PLAY, FADE };

    void build_check_boxes();
    void build_images(std::int32_t y);
    void build_bars(std::int32_t x);
    void build_animations(std::int32_t x, std::int32_t y);
    WM_CHECK_BOX* add_check_box(std::int32_t y, const char* text, bool checked, bool enabled);
    WM_IMAGE* add_image(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
    WM_PROGRESS_BAR* add_bar(std::int32_t x, std::int32_t y, std::int32_t width,
                             std::int32_t height, const char* label, std::int32_t pos,
                             std::uint32_t flags);

    WM_CHECK_BOX* first_box = nullptr;
    WM_IMAGE* overlaid = nullptr;
    WM_ANIMATION* playing = nullptr;
    WM_ANIMATION* fading = nullptr;
    WM_PROGRESS_BAR* running = nullptr;
    std::uint32_t start_ms = 0;  // of the running bar
};

#endif  // GALLERY_PAGE_MARKS_H
