// GALLERY_PAGE_PANELS: frames with tabs, and panels.
#ifndef GALLERY_PAGE_PANELS_H
#define GALLERY_PAGE_PANELS_H

#include <memory>

#include "gallery_page.h"
#include "platform/message.h"

class PANEL_BASE;
class PANEL_FRAME;

class GALLERY_PAGE_PANELS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_PANELS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { TAB = 1, OVERFLOWING_TAB, PANEL, NOTHING };

    void build_frame();
    void build_overflowing();
    void build_small_frames(std::int32_t x);
    void build_panels(std::int32_t y);
    WM_BUTTON* make_button(const char* text);
    PANEL_BASE* add_panel(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                          unsigned char flags, const char* text, std::int32_t command);

    PANEL_FRAME* full_frame = nullptr;
    PANEL_FRAME* crowded = nullptr;
    // The tabs on show, and the frame's memory of its sub-tabs. They outlive the frames.
    std::int32_t tab = 2, sub_tab = 1, crowded_tab = 3;
    MESSAGE memory;
};

#endif  // GALLERY_PAGE_PANELS_H
