// The frame's tabs: which one is shown, what a press on another one does, and the tab memory.
#include "modules/gui/panel_frame.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "kvcore/text_field.h"
#include "modules/gui/text_box.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "panel_frame_data.h"
#include "platform/message.h"
#include "platform/mouse.h"
#include "skin_lookup.h"

namespace {

SKIN_STYLE FLOATING_MENU_POPUP_INDEX{"FLOATING_MENU_POPUP"};
SKIN_STYLE FLOATING_MENU_TITLE_INDEX{"FLOATING_MENU_TITLE"};
SKIN_STYLE FLOATING_MENU_ITEM_INDEX{"FLOATING_MENU_ITEM"};
SKIN_STYLE FLOATING_MENU_ITEM_ALTERNATE_INDEX{"FLOATING_MENU_ITEM_ALTERNATE"};
SKIN_STYLE FLOATING_MENU_SEPARATOR_INDEX{"FLOATING_MENU_SEPARATOR"};

// The two numbers of a stored main tab.
constexpr std::int64_t STORED_TAB_SIZE = 8;

}  // namespace

PANEL_FRAME::PANEL_FRAME(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                         const char* title_text, const PANEL_FRAME_TAB* tab_list,
                         std::int32_t count, std::int32_t active, std::int32_t active_sub,
                         unsigned char flags, const char* prefix, MESSAGE* tab_memory,
                         WM_CALLBACK frame_callback, void* data1, void* data2,
                         signed char frame_window)
    : WM_SCREEN_OBJECT(1, frame_callback, data1, data2, frame_window),
      tab_count(tab_list != nullptr ? std::max(count, 0) : 0),
      active_id(active),
      active_sub_id(active_sub),
      frame_flags(flags),
      settings(tab_memory) {
    type_flags |= WMF_COMPOSITE;
    KVCORE::copy_text_field(skin_prefix, prefix);
    x = x1;
    y = y1;
    width = static_cast<std::int16_t>(std::max(x2 - x1 + 1, 0));
    height = static_cast<std::int16_t>(std::max(y2 - y1 + 1, 0));

    copy_tabs(tab_list);
    if (settings != nullptr) {
        settings->set_pos(0, false);
        if (settings->get_payload_length() > 0 && !read_settings_from_data_device(*settings)) {
            copy_tabs(tab_list);
        }
    }
    build_pieces(find_selected_main_tab());
    if (title_text != nullptr && *title_text != '\0') {
        set_title(title_text, 0);
    } else if (tab_count == 1) {
        set_title(get_tab(0).text, 0);
    }
    build_tab_menu();
}

PANEL_FRAME::~PANEL_FRAME() {
    if (settings != nullptr) {
        settings->reset_payload();
        write_settings_to_data_device(*settings);
    }
    if (tab_menu->is_modal_object()) {
        remove_modal_object(tab_menu.get(), 0, 0);
    }
}

void PANEL_FRAME::copy_tabs(const PANEL_FRAME_TAB* source) {
    tabs = std::make_unique<PANEL_FRAME_TAB[]>(static_cast<std::size_t>(tab_count));
    std::copy_n(source, tab_count, tabs.get());
}

std::int32_t PANEL_FRAME::find_main_tab(std::int32_t tab) const {
    while (tab >= 0 && get_tab(tab).is_sub_tab) {
        --tab;
    }
    return tab;
}

bool PANEL_FRAME::has_sub_tabs(std::int32_t main_tab) const {
    return main_tab + 1 < tab_count && get_tab(main_tab + 1).is_sub_tab;
}

bool PANEL_FRAME::is_active(const PANEL_FRAME_TAB& tab) const {
    return active_id >= 0 && tab.id == active_id && tab.sub_id == active_sub_id;
}

std::int32_t PANEL_FRAME::find_selected_main_tab() {
    for (std::int32_t i = 0; i < tab_count; ++i) {
        const std::int32_t main_tab = find_main_tab(i);
        if (main_tab >= 0 && is_active(get_tab(i))) {
            get_tab(main_tab).id = active_id;
            return main_tab;
        }
    }
    return -1;
}

void PANEL_FRAME::append_to_tab_title(const char* text) {
    const std::size_t used = std::strlen(tab_title);
    std::snprintf(tab_title + used, sizeof tab_title - used, " - %s", text);
}

void PANEL_FRAME::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    internal->add_object(object, relative);
}

void PANEL_FRAME::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                unsigned char make_relative) {
    internal->remove_object(object, delete_it, make_relative);
}

void PANEL_FRAME::clear_objects(unsigned char all_modals, unsigned char children) {
    internal->clear_objects(all_modals, children);
}

std::int16_t PANEL_FRAME::get_internal_x() const {
    return internal->get_x();
}

std::int16_t PANEL_FRAME::get_internal_y() const {
    return internal->get_y();
}

std::int16_t PANEL_FRAME::get_internal_width() const {
    return internal->get_width();
}

std::int16_t PANEL_FRAME::get_internal_height() const {
    return internal->get_height();
}

TEXT_BOX* PANEL_FRAME::make_title(const char* text) const {
    char style[PREFIX_SIZE + sizeof "_PANEL_FRAME_TITLE"] = "PANEL_FRAME_TITLE";
    if (*skin_prefix != '\0') {
        std::snprintf(style, sizeof style, "%s_PANEL_FRAME_TITLE", skin_prefix);
    }
    return new TEXT_BOX(0, 0, -1, -1, text, -1, nullptr, 0, style, nullptr, nullptr, nullptr,
                        window);
}

void PANEL_FRAME::set_title(const char* text, unsigned char keep_position) {
    TEXT_BOX* const old_title = title;
    title = text != nullptr && *text != '\0' ? make_title(text) : nullptr;
    // Only now, as the text may be its own.
    if (old_title != nullptr) {
        title_holder->remove_object(old_title, 1, 0);
    }
    if (title == nullptr) {
        return;
    }
    const INNER_RECT inner(*title_holder);
    if (title->width > inner.width) {
        title->resize(static_cast<std::int16_t>(inner.width), title->height, 0);
    }
    const bool at_right = sub_tab_buttons.get_count() != 0 && keep_position == 0;
    title->move(static_cast<std::int16_t>(at_right ? inner.right() - title->width : inner.left),
                static_cast<std::int16_t>(inner.centre_y(title->height)));
    title_holder->add_object(title, 0);
}

const char* PANEL_FRAME::get_title() const {
    return title != nullptr ? title->get_text() : "";
}

void PANEL_FRAME::set_tab_activated(std::int32_t id, std::int32_t sub_id, unsigned char on) {
    for (std::int32_t i = 0; i < tab_buttons.get_count(); ++i) {
        auto* button = tab_buttons.get<WM_BUTTON>(i);
        if (number_from_pointer(button->callback_data2) == id &&
            number_from_pointer(button->right_data1) == sub_id) {
            button->set_activated(on);
            button->request_draw(0, 0);
        }
    }
}

WM_MESG PANEL_FRAME::handle_callback(WM_SCREEN_OBJECT* button, void* frame, void* id) {
    auto* const self = static_cast<PANEL_FRAME*>(frame);
    const std::int32_t new_id = number_from_pointer(id);
    const std::int32_t new_sub_id = number_from_pointer(button->right_data1);
    if (new_id == self->active_id && new_sub_id == self->active_sub_id) {
        return WM_MESG_NONE;
    }
    self->active_id = new_id;
    self->active_sub_id = new_sub_id;
    return self->callback != nullptr
               ? self->callback(self, self->callback_data1, self->callback_data2)
               : WM_MESG_NONE;
}

WM_MESG PANEL_FRAME::alt_handle_callback(WM_SCREEN_OBJECT* button, void* /*sub_id*/, void* frame) {
    static_cast<PANEL_FRAME*>(frame)->open_tab_menu(*button);
    return WM_MESG_HANDLED;
}

void PANEL_FRAME::open_tab_menu(WM_SCREEN_OBJECT& button) {
    if (tab_menu->is_modal_object()) {
        remove_modal_object(tab_menu.get(), 0, 0);
    }
    // A press of keys leaves the pointer where it is.
    const bool at_pointer = button.is_in_me(MOUSE::x, MOUSE::y);
    tab_menu->move(at_pointer ? MOUSE::x : button.x,
                   at_pointer ? MOUSE::y : static_cast<std::int16_t>(button.y + button.height));
    tab_menu->calc_new_size();  // the window may be another size now; keeps the menu inside it
    tab_menu->reset();
    tab_menu->clear();
    add_modal_object(tab_menu.get(), 0);
    tab_menu->request_draw(0, 0);
}

void PANEL_FRAME::build_tab_menu() {
    tab_menu = std::make_unique<WM_FLOATING_MENU>(
        std::int16_t{0}, std::int16_t{0}, nullptr, FLOATING_MENU_POPUP_INDEX.get(),
        FLOATING_MENU_TITLE_INDEX.get(), FLOATING_MENU_ITEM_INDEX.get(),
        FLOATING_MENU_ITEM_ALTERNATE_INDEX.get(), FLOATING_MENU_SEPARATOR_INDEX.get(), 0, 1,
        nullptr, nullptr, nullptr, nullptr, window, 0);
    for (std::int32_t i = 0; i < tab_count; ++i) {
        const std::int32_t main_tab = find_main_tab(i);
        if (main_tab < 0 || (main_tab == i && has_sub_tabs(i))) {
            continue;
        }
        const bool separator_before =
            tab_menu->item_count != 0 && (main_tab == i || main_tab == i - 1);
        if (main_tab == i) {
            add_menu_entry(get_tab(i).text, get_tab(i), separator_before);
        } else {
            char text[2 * PANEL_FRAME_TAB::TEXT_SIZE + 4];
            std::snprintf(text, sizeof text, "%s - %s", get_tab(main_tab).text, get_tab(i).text);
            add_menu_entry(text, get_tab(i), separator_before);
        }
    }
}

void PANEL_FRAME::add_menu_entry(const char* text, const PANEL_FRAME_TAB& tab,
                                 bool separator_before) {
    WM_BUTTON* button = tab_menu->add_button(text, handle_callback, this, pointer_from(tab.id),
                                             separator_before, nullptr, nullptr);
    if (button != nullptr) {
        button->right_data1 = pointer_from(tab.sub_id);
        button->enabled = tab.id >= 0;
    }
}

unsigned char PANEL_FRAME::write_settings_to_data_device(DATA_DEVICE& device) const {
    const auto is_main = [](const PANEL_FRAME_TAB& tab) { return tab.is_sub_tab == 0; };
    const auto count = std::count_if(tabs.get(), tabs.get() + tab_count, is_main);
    if (!(device << static_cast<std::uint32_t>(count))) {
        return 0;
    }
    for (std::int32_t i = 0; i < tab_count; ++i) {
        if (is_main(get_tab(i)) && (!(device << get_tab(i).id) || !(device << get_tab(i).sub_id))) {
            return 0;
        }
    }
    return 1;
}

unsigned char PANEL_FRAME::read_settings_from_data_device(DATA_DEVICE& device) {
    std::uint32_t count = 0;
    if (!(device >> count) || device.get_bytes_left() < count * STORED_TAB_SIZE) {
        return 0;
    }
    for (; count != 0; --count) {
        std::int32_t id = 0, sub_id = 0;
        if (!(device >> id) || !(device >> sub_id)) {
            return 0;
        }
        // A disabled sub-tab can't have been shown.
        for (std::int32_t i = 0; id >= 0 && i < tab_count; ++i) {
            const std::int32_t main_tab = find_main_tab(i);
            if (get_tab(i).is_sub_tab && get_tab(i).id == id && main_tab >= 0) {
                get_tab(main_tab).id = id;
            }
        }
    }
    return 1;
}
