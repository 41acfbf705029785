// The edit menu of text boxes.
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/window_info.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"
#include "platform/mouse.h"
#include "platform/window_platform.h"

namespace {

// The values that TEXT_BOX::handle_callback gets.
enum EDIT_MENU_ITEM : std::intptr_t {
    ITEM_UNDO = 1,
    ITEM_REDO = 2,
    ITEM_CUT = 3,
    ITEM_COPY = 4,
    ITEM_PASTE = 5,
    ITEM_SELECT_ALL = 6,
};

}  // namespace

void TEXT_BOX::open_edit_menu() {
    static std::int32_t popup_index = -1, title_index = -1, item_index = -1, alternate_index = -1,
                        separator_index = -1;
    hint.hide();
    auto* menu = new WM_FLOATING_MENU(
        MOUSE::x, MOUSE::y, nullptr,
        GUI_SKIN::get_style_set("FLOATING_MENU_POPUP", nullptr, &popup_index),
        GUI_SKIN::get_style_set("FLOATING_MENU_TITLE", nullptr, &title_index),
        GUI_SKIN::get_style_set("FLOATING_MENU_ITEM", nullptr, &item_index),
        GUI_SKIN::get_style_set("FLOATING_MENU_ITEM_ALTERNATE", nullptr, &alternate_index),
        GUI_SKIN::get_style_set("FLOATING_MENU_SEPARATOR", nullptr, &separator_index), 1, 0,
        nullptr, nullptr, nullptr, nullptr, window, 0);
    const bool secret = (flags & TBF_PASSWORD) != 0;
    const bool editable = (flags & TBF_EDITABLE) != 0;
    const bool has_history = editable && !secret && !history.is_empty();
    const auto add = [&](EDIT_MENU_ITEM item, const char* title, bool available, bool separated) {
        WM_BUTTON* button = menu->add_button(title, handle_callback, reinterpret_cast<void*>(item),
                                             this, separated ? 1 : 0, nullptr, nullptr);
        if (button != nullptr) {
            button->enabled = available;
        }
    };
    add(ITEM_UNDO, "Undo", has_history && history_position != 0, false);
    add(ITEM_REDO, "Redo", has_history && history_position >= 0, false);
    add(ITEM_CUT, "Cut", editable && !secret && has_selection(), true);
    add(ITEM_COPY, "Copy", !secret && has_selection(), false);
    add(ITEM_PASTE, "Paste", editable && is_text_in_clipboard(), false);
    add(ITEM_SELECT_ALL, "Select All", (flags & TBF_SELECTABLE) && !is_all_selected(), true);
    edit_menu = menu;
    add_modal_object(menu, 0);
}

// The menu acts on this box, so it goes with it.
void TEXT_BOX::close_edit_menu() {
    const WM_WINDOW_INFO* window_info = get_window_info();
    WM_SCREEN_OBJECT* menu = edit_menu;
    edit_menu = nullptr;
    // It deletes itself once it is closed; another object may stand at its address by now.
    if (menu != nullptr && window_info != nullptr &&
        contains_object(window_info->modal_screen_objects, menu) && menu->parent == this &&
        (menu->type_flags & WMF_FLOATING_MENU)) {
        remove_modal_object(menu, 1, 0);
    }
}

WM_MESG TEXT_BOX::handle_menu_item(std::int32_t item) {
    take_focus(1);  // from the menu
    switch (item) {
        case ITEM_UNDO:
            return handle_undo_request();
        case ITEM_REDO:
            return handle_redo_request();
        case ITEM_CUT:
            return handle_cut_request();
        case ITEM_COPY:
            return handle_copy_request();
        case ITEM_PASTE:
            return handle_paste_request();
        case ITEM_SELECT_ALL:
            return handle_select_all_request();
        default:
            return WM_MESG_NONE;
    }
}
