#include "gallery_page_menus.h"

#include <iterator>

#include "gallery_camera.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_list_box.h"
#include "modules/winman/wm_menu.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t MENU_WIDTH = 100, LIST_LABEL_WIDTH = 120, LIST_WIDTH = 220;

// The popup's frame has a shadow all round.
constexpr std::int16_t POPUP_OFFSET = -6;

const char* const POSITIONS[] = {"Keeper", "Back", "Midfield", "Forward"};

}  // namespace

void GALLERY_PAGE_MENUS::build() {
    build_menu_bar();
    build_sides();
    build_lists(get_inner_width() / 2 + 40);
}

void GALLERY_PAGE_MENUS::forget() {
    edit_menu = view_menu = long_menu = side_menu = nullptr;
    plain_list = rich_list = nullptr;
}

// --- Menus ---

WM_MENU* GALLERY_PAGE_MENUS::add_menu(std::int32_t x, std::int32_t y, std::int32_t width,
                                      const char* title, std::int32_t type, std::uint32_t arrow,
                                      bool alternate, const char* popup_title) {
    auto* menu = new WM_MENU(
        to_short(x), to_short(y), to_short(x + width - 1), -1, title, static_cast<MENU_TYPE>(type),
        style("DIALOG_BUTTON_NORMAL"), style("FLOATING_MENU_POPUP"), style("FLOATING_MENU_TITLE"),
        style("FLOATING_MENU_ITEM"), style("FLOATING_MENU_ITEM_ALTERNATE"),
        style("FLOATING_MENU_SEPARATOR"), alternate, nullptr, WINDOW, popup_title);
    menu->button_flags |= arrow;
    menu->x_offset = menu->y_offset = POPUP_OFFSET;
    return add(menu);
}

void GALLERY_PAGE_MENUS::add_item(WM_FLOATING_MENU& menu, const char* text, bool separator_before,
                                  bool enabled) {
    menu.add_button(text, handle_callback, to_data(ITEM), nullptr, separator_before, nullptr,
                    nullptr)
        ->enabled = enabled;
}

void GALLERY_PAGE_MENUS::fill_edit(WM_FLOATING_MENU& menu) {
    add_item(menu, "Undo");
    add_item(menu, "Redo", false, false);
    add_item(menu, "Cut", true);
    add_item(menu, "Copy");
    add_item(menu, "Paste", false, false);
    add_item(menu, "Select All", true);
}

void GALLERY_PAGE_MENUS::fill_view(WM_FLOATING_MENU& menu) {
    WM_BUTTON* shown =
        menu.add_button("Ratings", handle_callback, to_data(ITEM), nullptr, 0, nullptr, nullptr);
    shown->active_mark[0] = '\xB7';
    shown->top_gap = shown->bottom_gap = 0;  // which the mark would stand higher by
    shown->set_activated(1);
    add_item(menu, "Shirts");
    menu.add_script("Camera", &style("FLOATING_MENU_TITLE"), nullptr);
    WM_MENU* camera = menu.add_menu("Stand", 0, 1, nullptr, nullptr);
    for (const char* text : {"North", "East", "South"}) {
        add_item(*camera->popup, text);
    }
    WM_MENU* height = camera->popup->add_menu("West", 1, 1, nullptr, nullptr);
    for (const char* text : {"Lower tier", "Upper tier", "Roof"}) {
        add_item(*height->popup, text);
    }
    add_item(menu, "Behind the goal");
    menu.add_menu("Replay", 1, 1, nullptr, nullptr)->enabled = false;
}

void GALLERY_PAGE_MENUS::build_menu_bar() {
    add_heading(0, 0, 400, "A bar of menus");
    WM_MENU* club = add_menu(0, 30, MENU_WIDTH, "Club", MENU_BELOW, 0, false, nullptr);
    for (const char* text : {"Squad", "Staff", "Finances"}) {
        add_item(*club->popup, text);
    }
    edit_menu = add_menu(MENU_WIDTH + 4, 30, MENU_WIDTH, "Edit", MENU_BELOW, 0, false, "Edit");
    fill_edit(*edit_menu->popup);
    view_menu =
        add_menu(2 * (MENU_WIDTH + 4), 30, MENU_WIDTH, "View", MENU_BELOW, 0, false, nullptr);
    fill_view(*view_menu->popup);
    long_menu =
        add_menu(3 * (MENU_WIDTH + 4), 30, MENU_WIDTH, "Long", MENU_BELOW, 0, true, nullptr);
    for (int i = 1; i <= LONG_COUNT; ++i) {
        add_item(*long_menu->popup, ("Match day " + std::to_string(i)).c_str());
    }
    edit_menu->add_to_group(club);
    view_menu->add_to_group(edit_menu);
    long_menu->add_to_group(view_menu);
}

// The popup on each side of its button, and one of its own at the pointer.
void GALLERY_PAGE_MENUS::build_sides() {
    const struct {
        const char* title;
        MENU_TYPE type;
        std::uint32_t arrow;
        std::int32_t x, y;
    } menus[] = {
        {"Below", MENU_BELOW, BUTTON_DOWN_ARROW, 140, 250},
        {"Above", MENU_ABOVE, BUTTON_UP_ARROW, 140, 210},
        {"Left", MENU_LEFT, BUTTON_LEFT_ARROW, 0, 230},
        {"Right", MENU_RIGHT, BUTTON_RIGHT_ARROW, 280, 230},
    };
    add_heading(0, 150, 400, "On each side");
    for (const auto& [title, type, arrow, x, y] : menus) {
        WM_MENU* menu = add_menu(x, y, 120, title, type, arrow, false, nullptr);
        fill_edit(*menu->popup);
        side_menu = type == MENU_RIGHT ? menu : side_menu;
    }
    add_heading(0, 330, 400, "Of its own");
    add_plain_button(0, 360, 160, "Menu at the pointer", OPEN_AT_POINTER);
}

void GALLERY_PAGE_MENUS::open_at_pointer(WM_SCREEN_OBJECT& button) {
    const bool over = button.is_in_me(MOUSE::x, MOUSE::y);
    auto* menu = new WM_FLOATING_MENU(
        over ? MOUSE::x : button.x, over ? MOUSE::y : to_short(button.y + button.height), nullptr,
        style("FLOATING_MENU_POPUP"), style("FLOATING_MENU_TITLE"), style("FLOATING_MENU_ITEM"),
        style("FLOATING_MENU_ITEM_ALTERNATE"), style("FLOATING_MENU_SEPARATOR"), 0, 0, nullptr,
        nullptr, nullptr, nullptr, WINDOW, 0);
    fill_edit(*menu);
    page_manager->get_current_area()->add_modal_object(menu, 0);
}

// --- List boxes ---

WM_LIST_BOX* GALLERY_PAGE_MENUS::add_list(std::int32_t x, std::int32_t y, const char* label,
                                          const char* const* lines, std::int16_t count,
                                          std::int16_t selection, const char* no_selection_text) {
    WM_STYLE_SET look = style("DIALOG_BUTTON_NORMAL");
    look.flags |= STYLE_LEFT_JUSTIFY_TEXT;
    add_label(x, y + 6, LIST_LABEL_WIDTH, label);
    auto* list = new WM_LIST_BOX(
        to_short(x + LIST_LABEL_WIDTH), to_short(y),
        to_short(x + LIST_LABEL_WIDTH + LIST_WIDTH - 1), -1, selection, -1, lines, count,
        no_selection_text, look, style("FLOATING_MENU_POPUP"), style("FLOATING_MENU_TITLE"),
        style("FLOATING_MENU_ITEM"), style("FLOATING_MENU_ITEM_ALTERNATE"),
        style("FLOATING_MENU_SEPARATOR"), handle_callback, to_data(LIST), nullptr, nullptr, WINDOW);
    list->button_flags |= BUTTON_DOWN_ARROW;
    list->y_offset = POPUP_OFFSET;
    return add(list);
}

void GALLERY_PAGE_MENUS::build_lists(std::int32_t x) {
    const auto count = static_cast<std::int16_t>(std::size(POSITIONS));
    add_heading(x, 0, 300, "List boxes");
    plain_list = add_list(x, 30, "Plain", POSITIONS, count, 1, "None");
    add_list(x, 70, "Nothing chosen", POSITIONS, count, -1, "Choose a position");
    add_list(x, 110, "No lines", nullptr, 0, -1, "There is nothing to choose");
    WM_LIST_BOX* disabled = add_list(x, 150, "Disabled", POSITIONS, count, 2, "None");
    disabled->enabled = false;

    rich_list = add_list(x, 190, "Titles and icons", nullptr, 0, -1, "Nobody");
    rich_list->add_title("First team");
    IMAGE icon;
    get_icon(icon, 20, 14);
    std::intptr_t number = 1;
    for (const char* text : {"Ada Northgate", "Bela Krause", "Chidi Okafor"}) {
        WM_BUTTON* line = rich_list->add_line(text, to_data(static_cast<std::int32_t>(number++)));
        line->button_flags |= BUTTON_ICON_RIGHT;
        line->right_gap = 34;
        line->icon.copy_pixels_from(icon);
    }
    rich_list->add_title("Youth");
    WM_MENU* youth = rich_list->add_menu("Under 19", 0, 1);
    for (const char* text : {"Dana Lind", "Emil Vasquez"}) {
        rich_list->add_line_to_menu(youth, text, to_data(static_cast<std::int32_t>(number++)));
    }
    rich_list->button_flags |= BUTTON_ICON_LEFT;
    rich_list->set_selection_from_data(to_data(2), 1, 0);

    WM_LIST_BOX* days = add_list(x, 230, "Many lines", nullptr, 0, -1, "None");
    for (int i = 1; i <= LONG_COUNT; ++i) {
        days->add_line(("Match day " + std::to_string(i)).c_str());
    }
    days->set_current_selection(34, 1);
}

WM_MESG GALLERY_PAGE_MENUS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    if (command == OPEN_AT_POINTER) {
        open_at_pointer(object);
        return WM_MESG_NONE;
    }
    const char* text = static_cast<WM_BUTTON&>(object).get_title_text();
    report(std::string("\"") + text + "\" was chosen");
    return WM_MESG_NONE;
}

void GALLERY_PAGE_MENUS::take_pictures(GALLERY_CAMERA& camera) {
    camera.click(*edit_menu);
    camera.key(KEY_DOWN);
    camera.take("menu");
    camera.move_to(*view_menu);  // which opens in its place
    camera.key(KEY_DOWN);
    camera.key(KEY_DOWN);
    camera.key(KEY_RIGHT);
    camera.key(KEY_DOWN);
    camera.take("sub_menu");
    camera.key(KEY_ESCAPE);
    camera.wait(500);

    camera.click(*long_menu);
    camera.key(KEY_END);
    camera.take("long");
    camera.key(KEY_ESCAPE);
    camera.wait(500);

    camera.click(*side_menu);
    camera.take("right");
    camera.key(KEY_ESCAPE);
    camera.wait(500);

    camera.click(*rich_list);
    camera.wait(500);
    camera.take("list");
    camera.key(KEY_ESCAPE);
    camera.wait(500);
    camera.click(*plain_list);
    camera.wait(500);
    camera.key(KEY_DOWN);
    camera.key(KEY_RETURN);
    camera.wait(500);
    camera.leave();
    camera.take("chosen");
}
