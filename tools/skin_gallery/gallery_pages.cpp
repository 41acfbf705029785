#include "gallery_pages.h"

#include <iterator>

#include "modules/gui/gui_skin.h"
#include "modules/gui/message_box.h"
#include "modules/gui/panel_frame.h"
#include "modules/gui/panel_profile_grid.h"
#include "modules/gui/text_box.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object_looks.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_area.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_progress_bar.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

WM_WINDOW_INFO& get_window() {
    return *WM_WINDOW_MANAGER::get_instance()->get_window_info(WINDOW);
}

WM_AREA& get_area() {
    return *get_window().page_manager->get_area(0);
}

template <class OBJECT>
OBJECT* add(OBJECT* object) {
    get_area().add_object(object, 0);
    return object;
}

const WM_STYLE_SET& style(const char* name) {
    return GUI_SKIN::get_style_set(name);
}

WM_MESG do_nothing(WM_SCREEN_OBJECT*, void*, void*) {
    return WM_MESG_NONE;
}

WM_BUTTON* add_button(std::int16_t x, std::int16_t y, const char* style_name, const char* title) {
    auto* button = new WM_BUTTON(x, y, -1, -1, style(style_name), title, nullptr, do_nothing,
                                 nullptr, nullptr, BUTTON_EVENT_RELEASE, WINDOW, 1, 0);
    return add(button);
}

WM_CHECK_BOX* add_check_box(std::int16_t x, std::int16_t y, const char* text, bool checked) {
    auto* box = new WM_CHECK_BOX(x, y, style("DIALOG_CHECK_BOX"), text, do_nothing, nullptr,
                                 nullptr, WINDOW);
    box->set_checked(checked);
    return add(box);
}

void add_progress_bar(std::int16_t y, std::int32_t percent, const char* text) {
    auto* bar =
        new WM_PROGRESS_BAR(24, y, 392, 40, nullptr, 100, style("DIALOG_PROGRESS_BAR"), WINDOW, 0);
    bar->set_pos(percent, 0);
    bar->set_custom_bar_string(text, 0);
    add(bar);
}

constexpr const char* LONG_TEXT =
    "A text box shows <:style_on#bold>bold<:style_off#bold>, "
    "<:style_on#italic>italic<:style_off#italic> and "
    "<:style_on#faded>faded<:style_off#faded> words, wraps its lines and scrolls.\n"
    "<:separator#>\n"
    "What a line can't hold goes on in the next one, and where the lines are more than the box can "
    "show, a scroll bar stands at its right.\nIt can be dragged, and the wheel of the mouse moves "
    "it, too.\nThis is the last line.";

void build_controls() {
    add_button(22, 16, "DIALOG_BUTTON_ACKNOWLEDGE", "Launch Game");
    add_button(160, 16, "DIALOG_BUTTON_CANCEL", "Cancel");
    WM_BUTTON* over = add_button(262, 16, "DIALOG_BUTTON_CANCEL", "Focus");
    over->mouse_over_now = true;
    WM_BUTTON* down = add_button(352, 16, "DIALOG_BUTTON_CANCEL", "Press");
    down->pressed = true;
    WM_BUTTON* off = add_button(22, 56, "DIALOG_BUTTON_ACKNOWLEDGE", "Disabled");
    off->enabled = false;
    off = add_button(132, 56, "DIALOG_BUTTON_CANCEL", "Disabled");
    off->enabled = false;
    WM_BUTTON* on = add_button(242, 56, "DIALOG_BUTTON_NORMAL", "Switched on");
    on->set_activated(1);
    add_check_box(24, 100, "Launch the game when the download is complete", true);
    add_check_box(24, 126, "Do Not Show This Again", false);
    add_progress_bar(148, 45, "Downloading 1 of 3   45% - 812.5 Kb/s");
    add_progress_bar(182, 0, "Waiting");
    auto* field =
        add(new TEXT_BOX(24, 228, 415, 255, "Typed text", 100, nullptr,
                         TBF_SELECTABLE | TBF_EDITABLE, "", nullptr, nullptr, nullptr, WINDOW));
    field->take_focus(1);
    add(new TEXT_BOX(24, 264, 415, 372, LONG_TEXT, -1, nullptr, TBF_MULTI_LINE, "", nullptr,
                     nullptr, nullptr, WINDOW));
    add(new WM_SCRIPT(300, 118, -1, -1, WM_SCREEN_OBJECT_LOOKS::hint_style_set, "A tool tip",
                      WINDOW));
}

void build_dialog() {
    auto* dialog = new MESSAGE_BOX("Cancel Download?",
                                   "Are you sure that you wish to cancel the download? The "
                                   "download will resume next time you start the application",
                                   0, 2, "Yes", nullptr, nullptr, 3, "No", nullptr, nullptr, 4,
                                   do_nothing, do_nothing, WINDOW);
    get_area().add_modal_object(dialog, 0);
}

void build_wait_dialog() {
    auto* dialog =
        new MESSAGE_BOX("Please Wait", "The skins are being compiled.", MESSAGE_BOX_PLEASE_WAIT, 1,
                        "Cancel", nullptr, nullptr, 2, do_nothing, WINDOW);
    get_area().add_modal_object(dialog, 0);
}

void build_menu() {
    auto* menu = new WM_FLOATING_MENU(
        24, 20, "Edit", style("FLOATING_MENU_POPUP"), style("FLOATING_MENU_TITLE"),
        style("FLOATING_MENU_ITEM"), style("FLOATING_MENU_ITEM_ALTERNATE"),
        style("FLOATING_MENU_SEPARATOR"), 0, 0, nullptr, nullptr, nullptr, nullptr, WINDOW, 0);
    const struct {
        const char* title;
        bool separator, enabled;
    } items[] = {{"Undo", false, true}, {"Redo", false, false}, {"Cut", true, true},
                 {"Copy", false, true}, {"Paste", false, true}, {"Select All", true, true}};
    for (const auto& [title, separator, enabled] : items) {
        WM_BUTTON* button =
            menu->add_button(title, do_nothing, nullptr, nullptr, separator, nullptr, nullptr);
        button->enabled = enabled;
        button->mouse_over_now = button->get_title_text() == std::string("Copy");
    }
    get_area().add_modal_object(menu, 0);
}

void fill_table(PROFILE_GRID& grid) {
    const struct {
        const char* label;
        const char* value;
        unsigned long long flags;
    } rows[] = {
        {"Pace", "17", PROFILE_GRID::VALUE_ATTRIBUTE_VERY_GOOD},
        {"Passing", "14", PROFILE_GRID::VALUE_ATTRIBUTE_GOOD},
        {"Heading", "9", PROFILE_GRID::VALUE_ATTRIBUTE_OK},
        {"Long throws", "4", PROFILE_GRID::VALUE_ATTRIBUTE_WEAK},
        {"Balance", "12 500 000", PROFILE_GRID::VALUE_POSITIVE_CASH},
        {"Loan", "-3 200 000", PROFILE_GRID::VALUE_NEGATIVE_CASH},
    };
    grid.add_title_script(0, 0, "Attributes", 0);
    grid.add_title_script(1, 0, "Season", 0);
    std::int16_t row = 1;
    for (const auto& [label, value, flags] : rows) {
        grid.add_script(0, row, label, value, flags);
        grid.add_script(1, row, row == 3 ? "Greyed out" : "Appearances", row == 3 ? "-" : "28",
                        row == 3 ? PROFILE_GRID::LABEL_GREYED_OUT : PROFILE_GRID::VALUE_BOLD);
        ++row;
    }
    grid.set_selected_row(4);
}

void build_frame() {
    static const PANEL_FRAME_TAB TABS[] = {
        {"Overview", 0, 1, 0}, {"Squad", 0, 2, 0}, {"Players", 1, 2, 0},
        {"Staff", 1, 3, 0},    {"Youth", 1, 4, 0}, {"Finances", 0, 5, 0},
    };
    auto* frame = add(new PANEL_FRAME(
        16, 14, 623, 345, "Northgate", TABS, static_cast<std::int32_t>(std::size(TABS)), 2, 0,
        PANEL_FRAME::FRAME_LOWER_HOLDER, nullptr, nullptr, nullptr, nullptr, nullptr, WINDOW));
    auto* grid =
        new PANEL_PROFILE_GRID(0, 0, static_cast<std::int16_t>(frame->get_internal_width() - 1),
                               static_cast<std::int16_t>(7 * 26 - 1), PROFILE_GRID::MODE_FILLED, 2,
                               nullptr, 7, nullptr, nullptr, nullptr, WINDOW);
    fill_table(*grid);
    frame->add_object(grid, 1);
    for (const char* title : {"Cancel", "Apply"}) {
        frame->add_lower_frame_object(new WM_BUTTON(0, 0, -1, -1, style("DIALOG_BUTTON_NORMAL"),
                                                    title, nullptr, do_nothing, nullptr, nullptr,
                                                    BUTTON_EVENT_RELEASE, WINDOW, 1, 0));
    }
}

}  // namespace

const std::vector<GALLERY_PAGE>& get_gallery_pages() {
    static const std::vector<GALLERY_PAGE> PAGES = {
        {"page_controls", 440, 390, build_controls}, {"page_dialog", 500, 260, build_dialog},
        {"page_wait", 500, 260, build_wait_dialog},  {"page_menu", 180, 240, build_menu},
        {"page_frame", 640, 360, build_frame},
    };
    return PAGES;
}

void draw_gallery_page(const GALLERY_PAGE& page, IMAGE& picture) {
    WM_WINDOW_MANAGER::create();
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(static_cast<std::uint16_t>(page.width),
                                                         static_cast<std::uint16_t>(page.height));
    if (manager.add_window(WINDOW, 1, size, size, size)) {
        IMAGE& buffer = *get_window().back_buffer;
        buffer.reset(page.width, page.height);
        manager.set_window_as_focal_window(WINDOW);
        IMAGE background;
        background.resize_from(*GUI_SKIN::get_image("BACKGROUND"), page.width, page.height, 1);
        get_window().page_manager->set_background(background, 0, 0);
        page.build();
        get_area().mark_entire_redraw_area();
        get_window().page_manager->check_for_draw();
        picture.copy_pixels_from(buffer);
    }
    WM_WINDOW_MANAGER::destroy();
}
