#include "gallery_page_panels.h"

#include <algorithm>
#include <iterator>

#include "gallery_camera.h"
#include "modules/gui/panel_base.h"
#include "modules/gui/panel_frame.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_script.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

const PANEL_FRAME_TAB TABS[] = {
    {"Overview", 0, 0, 0}, {"Squad", 0, 1, 1},   {"Players", 1, 1, 1},  {"Staff", 1, 2, 1},
    {"Youth", 1, 3, 1},    {"Closed", 1, -1, 1}, {"Finances", 0, 4, 0}, {"Not open", 0, -1, 0},
};
const PANEL_FRAME_TAB CROWDED_TABS[] = {
    {"Information", 0, 0, 0}, {"Attributes", 0, 1, 0}, {"Performance", 0, 2, 0},
    {"Contract", 0, 3, 0},    {"Training", 0, 4, 0},   {"Injuries", 0, 5, 0},
    {"History", 0, 6, 0},     {"Comparison", 0, 7, 0},
};

}  // namespace

void GALLERY_PAGE_PANELS::build() {
    build_frame();
    build_overflowing();
    build_small_frames(get_inner_width() - 250);
    build_panels(get_inner_height() - 148);
}

void GALLERY_PAGE_PANELS::forget() {
    full_frame = crowded = nullptr;
}

WM_BUTTON* GALLERY_PAGE_PANELS::make_button(const char* text) {
    return new WM_BUTTON(0, 0, -1, -1, style("DIALOG_BUTTON_NORMAL"), text, nullptr,
                         handle_callback, to_data(NOTHING), nullptr, BUTTON_EVENT_RELEASE, WINDOW,
                         1, 0);
}

// Tabs, sub-tabs, a title, objects in the title's row and in the lower one, and an icon bar.
void GALLERY_PAGE_PANELS::build_frame() {
    full_frame =
        add(new PANEL_FRAME(0, 0, to_short(get_inner_width() - 267), 232, "Northgate", TABS,
                            static_cast<std::int32_t>(std::size(TABS)), tab, sub_tab,
                            PANEL_FRAME::FRAME_LOWER_HOLDER | PANEL_FRAME::FRAME_ICON_BAR, nullptr,
                            &memory, handle_callback, to_data(TAB), nullptr, WINDOW));
    for (const char* text : {"Cancel", "Apply"}) {
        full_frame->add_lower_frame_object(make_button(text));
    }
    for (int i = 0; i < 3; ++i) {
        auto* icon =
            new WM_BUTTON(0, 0, 25, 19, style("TEXT_BOX_BUTTON"), "", "An icon", handle_callback,
                          to_data(NOTHING), nullptr, BUTTON_EVENT_RELEASE, WINDOW, 1, 0);
        get_icon(icon->icon, 22, 15);
        i < 2 ? full_frame->add_upper_icon_bar_object(icon)
              : full_frame->add_lower_icon_bar_object(icon);
    }
    full_frame->add_object(
        new WM_SCRIPT(0, 0, to_short(full_frame->get_internal_width() - 1),
                      to_short(full_frame->get_internal_height() - 1), style("DIALOG_LABEL"),
                      (std::string("The page of") + full_frame->get_tab_title()).c_str(), WINDOW),
        1);
}

// More tabs than there is room for.
void GALLERY_PAGE_PANELS::build_overflowing() {
    crowded = add(new PANEL_FRAME(0, 240, to_short(get_inner_width() - 267), 330, nullptr,
                                  CROWDED_TABS, static_cast<std::int32_t>(std::size(CROWDED_TABS)),
                                  crowded_tab, 0, 0, nullptr, nullptr, handle_callback,
                                  to_data(OVERFLOWING_TAB), nullptr, WINDOW));
    crowded->set_title("More tabs than there is room for", 0);
}

void GALLERY_PAGE_PANELS::build_small_frames(std::int32_t x) {
    const std::int16_t right = to_short(get_inner_width() - 1);
    static const PANEL_FRAME_TAB ONE_TAB[] = {{"One tab is a title", 0, 0, 0}};
    add(new PANEL_FRAME(to_short(x), 0, right, 112, nullptr, ONE_TAB, 1, 0, 0, 0, nullptr, nullptr,
                        nullptr, nullptr, nullptr, WINDOW));
    auto* upper = add(new PANEL_FRAME(to_short(x), 120, right, 232, "Upper row", nullptr, 0, 0, 0,
                                      PANEL_FRAME::FRAME_SMALL_BORDER, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, WINDOW));
    upper->add_upper_frame_object(make_button("Two"));
    upper->add_upper_frame_object(make_button("One"));
    add(new PANEL_FRAME(to_short(x), 240, right, 330, "In a dialog", nullptr, 0, 0, 0, 0, "DIALOG",
                        nullptr, nullptr, nullptr, nullptr, WINDOW));
}

PANEL_BASE* GALLERY_PAGE_PANELS::add_panel(std::int32_t x, std::int32_t y, std::int32_t width,
                                           std::int32_t height, unsigned char flags,
                                           const char* text, std::int32_t command) {
    auto* panel = add(new PANEL_BASE(
        to_short(x), to_short(y), to_short(x + width - 1), to_short(y + height - 1), flags,
        command != 0 ? handle_callback : WM_CALLBACK{}, to_data(command), nullptr, WINDOW));
    panel->add_internal_object(
        new WM_SCRIPT(0, 0, to_short(std::max<std::int32_t>(panel->get_internal_width() - 1, 0)),
                      19, style("DIALOG_LABEL"), text, WINDOW),
        1);
    if (panel->get_upper_area_height() > 0) {
        panel->add_upper_area_object(
            new WM_SCRIPT(0, 16, to_short(panel->get_upper_area_width() - 1), -1,
                          style("DIALOG_TITLE"), "Upper area", WINDOW),
            1);
    }
    return panel;
}

void GALLERY_PAGE_PANELS::build_panels(std::int32_t y) {
    const std::int32_t gap = 12, width = (get_inner_width() - 3 * gap) / 4;
    constexpr std::int32_t HEIGHT = 110;
    add_panel(0, y, width, HEIGHT, PANEL_BASE::PANEL_EXTENDED, "An extended panel", 0);
    add_panel(width + gap, y, width, HEIGHT, PANEL_BASE::PANEL_EXTENDED, "It can be clicked",
              PANEL);
    add_panel(2 * (width + gap), y, width, HEIGHT, 0, "A panel on a frame", 0);
    add_panel(3 * (width + gap), y, width, HEIGHT, PANEL_BASE::PANEL_BLANK, "A blank panel", 0);
}

WM_MESG GALLERY_PAGE_PANELS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    switch (command) {
        case TAB:
            tab = full_frame->active_id;
            sub_tab = full_frame->active_sub_id;
            return WM_MESG_REBUILD_AREA;
        case OVERFLOWING_TAB:
            crowded_tab = crowded->active_id;
            return WM_MESG_REBUILD_AREA;
        case PANEL:
            report("The panel was clicked");
            return WM_MESG_NONE;
        default:
            report(std::string("\"") + static_cast<WM_BUTTON&>(object).get_title_text() +
                   "\" was pressed");
            return WM_MESG_NONE;
    }
}

void GALLERY_PAGE_PANELS::take_pictures(GALLERY_CAMERA& camera) {
    camera.click(*full_frame->sub_tab_buttons.get<WM_BUTTON>(2));
    camera.leave();
    camera.take("sub_tab");
    camera.click(*full_frame->tab_buttons.get<WM_BUTTON>(1), MOUSE_BUTTON_RIGHT);
    camera.key(KEY_DOWN);
    camera.take("tab_menu");
    camera.key(KEY_ESCAPE);
    camera.wait(300);
    camera.click(*full_frame->tab_buttons.get<WM_BUTTON>(0));
    camera.leave();
    camera.take("other_tab");
}
