#include "gallery_page.h"

#include <vector>

#include "gallery.h"
#include "gallery_pages.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/panel_frame.h"
#include "modules/gui/text_box.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"
#include "platform/keyboard.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t MARGIN = 8;
constexpr std::int32_t REPORT_HEIGHT = 20;
constexpr std::int32_t COMMAND_TAB = -1, COMMAND_SKIN = -2;

WM_PAGE_MANAGER& get_pages() {
    return *WM_WINDOW_MANAGER::get_instance()->get_page_manager(WINDOW);
}

}  // namespace

GALLERY_PAGE::GALLERY_PAGE(GALLERY& owner) : gallery(owner) {
    setup(-1, get_pages(), 0, 1, 0);
}

const WM_STYLE_SET& GALLERY_PAGE::style(const char* name) {
    return GUI_SKIN::get_style_set(name);
}

void GALLERY_PAGE::get_icon(IMAGE& icon, std::int32_t width, std::int32_t height) {
    icon.resize_from(*GUI_SKIN::get_image("APP_LOGO"), width, height, 1);
}

// --- The frame ---

void GALLERY_PAGE::create(WM_PAGE_MANAGER& /*manager*/) {
    std::vector<PANEL_FRAME_TAB> tabs;
    for (const GALLERY_PAGE_ENTRY& page : get_gallery_pages()) {
        tabs.emplace_back(page.title, std::uint8_t{0}, static_cast<std::int32_t>(tabs.size()), 0);
    }
    frame = new PANEL_FRAME(
        MARGIN, MARGIN, to_short(get_width() - MARGIN - 1), to_short(get_height() - MARGIN - 1),
        ("Skin: " + gallery.get_skins().get_current()).c_str(), tabs.data(),
        static_cast<std::int32_t>(tabs.size()), gallery.get_page_index(), 0, 0, nullptr, nullptr,
        handle_callback, to_data(COMMAND_TAB), nullptr, WINDOW);
    add_object(frame, 0);
    const std::string next = gallery.get_skins().get_next(gallery.get_skins().get_current());
    frame->add_upper_frame_object(
        new WM_BUTTON(0, 0, -1, -1, style("DIALOG_BUTTON_NORMAL"), ("Show in " + next).c_str(),
                      "Builds the page anew in another skin", handle_callback,
                      to_data(COMMAND_SKIN), nullptr, BUTTON_EVENT_RELEASE, WINDOW, 1, 0));
    report_line =
        add_label(0, frame->get_internal_height() - REPORT_HEIGHT, frame->get_internal_width(), "");
    build();
    frame->tab_buttons.get<WM_BUTTON>(gallery.get_page_index())->take_focus(1);
}

void GALLERY_PAGE::objects_deleting() {
    frame = nullptr;
    report_line = nullptr;
    forget();
}

WM_MESG GALLERY_PAGE::handle(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
    const auto command = static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(data1));
    switch (command) {
        case COMMAND_TAB:
            gallery.choose_page(frame->active_id);
            return WM_MESG_CHANGE_PAGE;
        case COMMAND_SKIN:
            gallery.choose_next_skin();
            return WM_MESG_NONE;
        default:
            return object != nullptr ? act(*object, command) : WM_MESG_NONE;
    }
}

WM_MESG GALLERY_PAGE::monitor() {
    work();
    KEYBOARD keyboard;
    const KEY_TYPE key = keyboard.peek_code();
    const bool leaves = (key == KEY_PAGE_DOWN || key == KEY_PAGE_UP) &&
                        keyboard.get_key_value(KEY_CONTROL) &&
                        frame->get_active_modal_object_count(-1) == 0;
    if (!leaves) {
        return WM_MESG_NONE;
    }
    keyboard.get_code();
    gallery.choose_page(gallery.get_page_index() + (key == KEY_PAGE_DOWN ? 1 : -1));
    return WM_MESG_CHANGE_PAGE;
}

// --- Controls ---

std::int32_t GALLERY_PAGE::get_inner_width() const {
    return frame->get_internal_width();
}

std::int32_t GALLERY_PAGE::get_inner_height() const {
    return frame->get_internal_height() - REPORT_HEIGHT;
}

void GALLERY_PAGE::add_inside(WM_SCREEN_OBJECT* object) {
    frame->add_object(object, 1);
}

WM_SCRIPT* GALLERY_PAGE::add_heading(std::int32_t x, std::int32_t y, std::int32_t width,
                                     const char* text) {
    return add(new WM_SCRIPT(to_short(x), to_short(y), to_short(x + width - 1), -1,
                             style("DIALOG_TITLE"), text, WINDOW));
}

WM_SCRIPT* GALLERY_PAGE::add_label(std::int32_t x, std::int32_t y, std::int32_t width,
                                   const char* text) {
    return add(new WM_SCRIPT(to_short(x), to_short(y), to_short(x + width - 1), to_short(y + 19),
                             style("DIALOG_LABEL"), text, WINDOW));
}

WM_BUTTON* GALLERY_PAGE::add_button(std::int32_t x, std::int32_t y, std::int32_t width,
                                    std::int32_t height, const WM_STYLE_SET& look, const char* text,
                                    const char* hint, std::int32_t command) {
    return add(new WM_BUTTON(to_short(x), to_short(y), to_short(width < 0 ? -1 : x + width - 1),
                             to_short(height < 0 ? -1 : y + height - 1), look, text, hint,
                             command != 0 ? handle_callback : WM_CALLBACK{}, to_data(command),
                             nullptr, BUTTON_EVENT_RELEASE, WINDOW, 1, 0));
}

WM_BUTTON* GALLERY_PAGE::add_plain_button(std::int32_t x, std::int32_t y, std::int32_t width,
                                          const char* text, std::int32_t command) {
    return add_button(x, y, width, -1, style("DIALOG_BUTTON_NORMAL"), text, nullptr, command);
}

TEXT_BOX* GALLERY_PAGE::add_text_box(std::int32_t x, std::int32_t y, std::int32_t width,
                                     std::int32_t height, const char* text, std::int32_t max_length,
                                     const char* valid_chars, std::uint32_t flags,
                                     std::int32_t command) {
    return add(new TEXT_BOX(to_short(x), to_short(y), to_short(x + width - 1),
                            to_short(y + height - 1), text, max_length, valid_chars, flags, "",
                            command != 0 ? handle_callback : WM_CALLBACK{}, to_data(command),
                            nullptr, WINDOW));
}

void GALLERY_PAGE::report(const std::string& text) {
    report_line->set_text(text.c_str());
    gallery.tell(text);
}
