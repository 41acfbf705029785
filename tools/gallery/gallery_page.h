// GALLERY_PAGE: what the pages have in common. A frame whose tabs lead to the other pages, a button
// for the next skin, and a line that tells what a control has reported.
#ifndef GALLERY_PAGE_H
#define GALLERY_PAGE_H

#include <cstdint>
#include <string>

#include "modules/winman/page_base.h"

class GALLERY;
class GALLERY_CAMERA;
class IMAGE;
class PANEL_FRAME;
class TEXT_BOX;
class WM_BUTTON;
class WM_SCREEN_OBJECT;
class WM_SCRIPT;
class WM_STYLE_SET;

class GALLERY_PAGE : public WM_PAGE_BASE {
public:
    void create(WM_PAGE_MANAGER& manager) final;
    WM_MESG handle(WM_SCREEN_OBJECT* object, void* data1, void* data2) final;
    WM_MESG monitor() final;
    void objects_deleting() final;
    // Pictures of the page's states, after the one of the page as it is.
    virtual void take_pictures(GALLERY_CAMERA& /*camera*/) {}

protected:
    // Becomes the next page.
    explicit GALLERY_PAGE(GALLERY& gallery);

    // Puts the controls on the page. Places are within the frame's inside.
    virtual void build() = 0;
    // Forgets the controls, which are about to be deleted.
    virtual void forget() = 0;
    // A control that was made with handle_callback and to_data(command) reports.
    virtual WM_MESG act(WM_SCREEN_OBJECT& /*object*/, std::int32_t /*command*/) {
        return WM_MESG_NONE;
    }
    // Once per tick.
    virtual void work() {}

    // Commands of the pages are above 0.
    static void* to_data(std::int32_t command) {
        return reinterpret_cast<void*>(static_cast<std::intptr_t>(command));
    }
    static std::int16_t to_short(std::int32_t value) { return static_cast<std::int16_t>(value); }

    std::int32_t get_inner_width() const;
    std::int32_t get_inner_height() const;

    // Puts an object that stands at a place within the frame's inside onto the page.
    template <class OBJECT>
    OBJECT* add(OBJECT* object) {
        add_inside(object);
        return object;
    }
    WM_SCRIPT* add_heading(std::int32_t x, std::int32_t y, std::int32_t width, const char* text);
    WM_SCRIPT* add_label(std::int32_t x, std::int32_t y, std::int32_t width, const char* text);
    // A width or height of -1 is the button's own. Command 0: no callback.
    WM_BUTTON* add_button(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                          const WM_STYLE_SET& style, const char* text, const char* hint,
                          std::int32_t command);
    // In "DIALOG_BUTTON_NORMAL".
    WM_BUTTON* add_plain_button(std::int32_t x, std::int32_t y, std::int32_t width,
                                const char* text, std::int32_t command);
    TEXT_BOX* add_text_box(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                           const char* text, std::int32_t max_length, const char* valid_chars,
                           std::uint32_t flags, std::int32_t command);
    // Shows the text in the line at the lower edge, and writes it to standard output.
    void report(const std::string& text);

    static const WM_STYLE_SET& style(const char* name);
    // The skin's logo at that size.
    static void get_icon(IMAGE& icon, std::int32_t width, std::int32_t height);

    GALLERY& gallery;

private:
    void add_inside(WM_SCREEN_OBJECT* object);

    PANEL_FRAME* frame = nullptr;
    WM_SCRIPT* report_line = nullptr;
};

#endif  // GALLERY_PAGE_H
