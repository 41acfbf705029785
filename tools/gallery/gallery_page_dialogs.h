// GALLERY_PAGE_DIALOGS: message boxes and dialogs, and how they come and go.
#ifndef GALLERY_PAGE_DIALOGS_H
#define GALLERY_PAGE_DIALOGS_H

#include <cstdint>

#include "gallery_page.h"
#include "modules/winman/effect_info.h"

class DIALOG_BASE;

class GALLERY_PAGE_DIALOGS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_DIALOGS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t {
        PLAIN = 1,
        CONFIRM,
        WARNING,
        ERROR,
        FOUR_BUTTONS,
        DO_NOT_SHOW,
        PLEASE_WAIT,
        LONG_TEXT,
        CONTROLS,
        FADE,
        SLIDE,
        SLIDE_FROM_EDGE,
        TRANSLUCENT,
        ANSWER,
        DRAG_OUTLINE,
        DARKEN,
        GREY,
    };

    void build_buttons(std::int32_t x, const char* heading, std::int32_t first, std::int32_t last);
    void build_settings(std::int32_t x);
    // Shows the dialog of that command; the page manager owns it.
    DIALOG_BASE* open(std::int32_t command);
    DIALOG_BASE* make(std::int32_t command);
    DIALOG_BASE* make_with_controls();
    void take_message(GALLERY_CAMERA& camera, std::int32_t command, const char* state);
};

#endif  // GALLERY_PAGE_DIALOGS_H
