// GALLERY_PAGE_BUTTONS: buttons. Each look of several styles, held still, and buttons to be tried.
#ifndef GALLERY_PAGE_BUTTONS_H
#define GALLERY_PAGE_BUTTONS_H

#include "gallery_page.h"

class GALLERY_PAGE_BUTTONS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_BUTTONS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { PRESSED = 1, REPEATED, HOVERED };

    void build_looks(std::int32_t y);
    void add_looks(std::int32_t y, std::int32_t height, const char* name, const WM_STYLE_SET& look,
                   const char* text);
    void build_live(std::int32_t y);
    void build_icons(std::int32_t y);
    void build_arrows(std::int32_t y);
    void build_drawing(std::int32_t y);
    WM_BUTTON* add_live(std::int32_t column, std::int32_t y, const char* text, const char* hint);
    static WM_MESG drag_callback(WM_SCREEN_OBJECT* self, WM_SCREEN_OBJECT* target, std::int16_t x,
                                 std::int16_t y, std::uint32_t event, void* page, void* unused);

    std::int32_t presses = 0;
    WM_BUTTON* press_button = nullptr;
    WM_BUTTON* drag_button = nullptr;
    WM_BUTTON* drop_button = nullptr;
    WM_BUTTON* icon_button = nullptr;
};

#endif  // GALLERY_PAGE_BUTTONS_H
