// WM_CHECK_BOX: a box and its label, which toggle together.
#ifndef MODULES_WINMAN_WM_CHECK_BOX_H
#define MODULES_WINMAN_WM_CHECK_BOX_H

#include <cstdint>
#include <memory>

#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"

class WM_BUTTON;

// Two child buttons; a release on either toggles, and so do Return and Space with the focus. The
// images of the style are those of the box, which shows the checked state by its active images;
// without images it shows an "X".
class WM_CHECK_BOX : public WM_SCREEN_OBJECT {
public:
    // `text` may be null. The callback runs after a toggle by the user.
    WM_CHECK_BOX(std::int16_t x, std::int16_t y, const WM_STYLE_SET& style, const char* text,
                 WM_CALLBACK callback, void* data1, void* data2, signed char window);
    // With values for right_data1 and right_data2.
    WM_CHECK_BOX(std::int16_t x, std::int16_t y, const WM_STYLE_SET& style, const char* text,
                 WM_CALLBACK callback, void* data1, void* data2, void* right_data1,
                 void* right_data2, signed char window);
    ~WM_CHECK_BOX() override;

    void hide(unsigned char modals, unsigned char children) override;
    // Passes a WM_MESG_REMOVE_OBJECT of the callback to the parent, which removes the check box.
    WM_MESG monitor() override;
    // Centres both parts vertically.
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    // A part allows the focus and is enabled.
    bool can_have_focus() override;
    void draw_object() override {}

    // As a toggle by the user, without the callback.
    void set_checked(unsigned char on);
    // For both parts.
    void set_enabled(unsigned char on);

    bool checked = false;
    WM_BUTTON* box = nullptr;  // children
    WM_BUTTON* label = nullptr;
    std::unique_ptr<WM_STYLE_SET> label_style;

    // The activated_query of the box; `data` is the check box.
    static unsigned char activated_callback(void* data);
    // The callback of both parts; `data1` is the check box.
    static WM_MESG callback_of_parts(WM_SCREEN_OBJECT* object, void* data1, void* data2);

private:
    bool removal_requested = false;  // by the callback, in this monitor

    void setup(const WM_STYLE_SET& style, const char* text);
};

#endif  // MODULES_WINMAN_WM_CHECK_BOX_H
