#include "modules/winman/wm_list_box.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "../gui/to_short.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "platform/font_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

EFFECT_INFO WM_LIST_BOX::default_list_box_effect_info = {0x22, 200, 200, 224};

WM_LIST_BOX::WM_LIST_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                         std::int16_t selection_, std::int16_t sub_selection_,
                         const char* const* lines, std::int16_t count, const char* no_selection,
                         const WM_STYLE_SET& box, const WM_STYLE_SET& popup_style,
                         const WM_STYLE_SET& title_set, const WM_STYLE_SET& item,
                         const WM_STYLE_SET& alternate, const WM_STYLE_SET& separator,
                         WM_CALLBACK callback_, void* data1, void* data2, const EFFECT_INFO* effect,
                         signed char window_)
    : WM_LIST_BOX(x1, y1, x2, y2, selection_, sub_selection_, lines, count, no_selection, box,
                  popup_style, title_set, item, alternate, separator, nullptr, nullptr, nullptr,
                  callback_, data1, data2, effect, window_) {
}

WM_LIST_BOX::WM_LIST_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                         std::int16_t selection_, std::int16_t sub_selection_,
                         const char* const* lines, std::int16_t count, const char* no_selection,
                         const WM_STYLE_SET& box, const WM_STYLE_SET& popup_style,
                         const WM_STYLE_SET& title_set, const WM_STYLE_SET& item,
                         const WM_STYLE_SET& alternate, const WM_STYLE_SET& separator,
                         const WM_STYLE_SET* child_item, const WM_STYLE_SET* child_alternate,
                         const WM_STYLE_SET* child_menu, WM_CALLBACK callback_, void* data1,
                         void* data2, const EFFECT_INFO* effect, signed char window_)
    : WM_MENU(x1, y1, x2, y2, nullptr, MENU_BELOW, box, popup_style, title_set, item, alternate,
              separator, 1, effect != nullptr ? effect : &default_list_box_effect_info, window_,
              nullptr, nullptr, child_item, child_alternate, child_menu),
      title_style(title_set),
      selection_callback(callback_),
      selection_data1(data1),
      selection_data2(data2) {
    type_flags |= WMF_LIST_BOX;
    if (!is_graphical()) {
        // Images have an arrow of their own. This one stands in a square at the right end.
        button_flags |= BUTTON_DOWN_ARROW;
        reserved_right = height;
    }
    setup(selection_, sub_selection_, lines, count, no_selection);
}

WM_LIST_BOX::~WM_LIST_BOX() = default;

void WM_LIST_BOX::setup(std::int16_t first_selection, std::int16_t first_sub_selection,
                        const char* const* lines, std::int16_t count, const char* no_selection) {
    no_selection_text.set(no_selection != nullptr ? no_selection : "");
    normal_colour = text;
    for (std::int16_t i = 0; lines != nullptr && i < count; ++i) {
        add_line(lines[i]);
    }
    if (first_selection >= 0) {
        set_current_selection(first_selection, 1, first_sub_selection, -1);
    } else {
        update_current_selection();
    }
    remember_place();
}

// --- Lines ---

WM_BUTTON* WM_LIST_BOX::internal_add_line(const char* line, void* data, unsigned char use_data) {
    WM_BUTTON* button = popup->add_button(line, list_box_selection_callback, this,
                                          use_data ? data : nullptr, 0, nullptr, nullptr);
    line_count = to_short(line_count + (button != nullptr ? 1 : 0));
    return button;
}

WM_MENU* WM_LIST_BOX::add_menu(const char* line, unsigned char separator_before,
                               unsigned char dont_mask) {
    return popup->add_menu(line, separator_before, dont_mask, nullptr, nullptr);
}

WM_BUTTON* WM_LIST_BOX::add_line_to_menu(WM_MENU* menu, const char* line, void* data) {
    return menu != nullptr ? menu->popup->add_button(line, list_box_selection_callback, this, data,
                                                     0, nullptr, nullptr)
                           : nullptr;
}

WM_SCRIPT* WM_LIST_BOX::add_title(const char* line) {
    return popup->add_script(line, &title_style, nullptr);
}

void WM_LIST_BOX::clear_lines() {
    popup->clear(1);
    line_count = 0;
    clear_selection();
}

// --- Choice ---

template <class VISIT>
void WM_LIST_BOX::visit_items(VISIT visit) const {
    const auto visit_popup = [&](const auto& self, const WM_FLOATING_MENU& menu, const PLACE& above,
                                 int depth) -> bool {
        for (std::int16_t row = 0; row < menu.get_row_count(); ++row) {
            PLACE place = above;
            (depth == 0 ? place.row : depth == 1 ? place.sub : place.sub_sub) = row;
            if (const WM_MENU* inner = menu.get_menu(row)) {
                if (depth < 2 && !self(self, *inner->popup, place, depth + 1)) {
                    return false;
                }
            } else if (WM_BUTTON* button = menu.get_button(row)) {
                if (!visit(*button, place)) {
                    return false;
                }
            }
        }
        return true;
    };
    visit_popup(visit_popup, *popup, PLACE(), 0);
}

WM_BUTTON* WM_LIST_BOX::find_button(const PLACE& place) const {
    const WM_FLOATING_MENU* menu = popup.get();
    for (const std::int16_t row : {place.row, place.sub, place.sub_sub}) {
        const WM_MENU* inner = menu->get_menu(row);
        if (inner == nullptr) {
            return menu->get_button(row);
        }
        menu = inner->popup.get();
    }
    return nullptr;
}

WM_BUTTON* WM_LIST_BOX::get_selected_button() const {
    return find_button(get_place());
}

void WM_LIST_BOX::remember_place() {
    last_selection = selection;
    last_sub_selection = sub_selection;
    last_sub_sub_selection = sub_sub_selection;
}

void WM_LIST_BOX::set_place(const PLACE& place, bool quiet) {
    selection_changed = selection_changed || (!quiet && !(place == get_place()));
    selection = place.row;
    sub_selection = place.sub;
    sub_sub_selection = place.sub_sub;
    if (quiet) {
        remember_place();
    }
    update_current_selection();
}

// The row, or else the nearest one that isn't a title or a separator; -1 without any.
std::int16_t WM_LIST_BOX::get_nearest_item(std::int32_t row) const {
    const std::int32_t count = popup->get_row_count();
    row = std::clamp<std::int32_t>(row, 0, std::max(count - 1, 0));
    for (std::int32_t distance = 0; distance < count; ++distance) {
        for (const std::int32_t candidate : {row + distance, row - distance}) {
            if (candidate >= 0 && candidate < count && popup->get_button(to_short(candidate))) {
                return to_short(candidate);
            }
        }
    }
    return -1;
}

void WM_LIST_BOX::set_current_selection(std::int16_t new_selection, unsigned char quiet,
                                        std::int16_t new_sub_selection,
                                        std::int16_t new_sub_sub_selection) {
    set_place({get_nearest_item(new_selection), new_sub_selection, new_sub_sub_selection},
              quiet != 0);
}

void WM_LIST_BOX::clear_selection() {
    set_place(PLACE(), true);
}

void WM_LIST_BOX::update_current_selection() {
    const WM_BUTTON* button = get_selected_button();
    if (button == nullptr) {
        selected_data = nullptr;
        icon.reset(0, 0);
        set_readout_string(no_selection_text, 1);
        return;
    }
    selected_data = button->callback_data2;
    if (show_icons) {
        icon.copy_pixels_from(button->icon);
    }
    set_readout_string(button->get_title_text(), 0);
}

void WM_LIST_BOX::set_readout_string(const char* readout, unsigned char faded) {
    text = faded ? normal_colour.with_alpha(static_cast<unsigned char>(normal_colour.alpha() / 2))
                 : normal_colour;
    std::string shown = readout != nullptr ? readout : "";
    const std::int32_t room = width - left_gap - std::max<std::int32_t>(right_gap, reserved_right);
    const auto fits = [&](std::size_t bytes) {
        return FONT_MANAGER::get_instance().get_string_width(
                   font, font_x_sz, font_y_sz, shown.substr(0, bytes).c_str()) <= room;
    };
    // Byte by byte from the end, found by halving.
    std::size_t fitting = 0, beyond = shown.size() + 1;
    while (beyond - fitting > 1) {
        const std::size_t middle = fitting + (beyond - fitting) / 2;
        (fits(middle) ? fitting : beyond) = middle;
    }
    shown.resize(fitting);
    set_string(shown.c_str(), 0);
}

bool WM_LIST_BOX::set_selection_from_data(void* data, unsigned char quiet, unsigned char nearest) {
    const auto number = [](const void* pointer) {
        return reinterpret_cast<std::intptr_t>(pointer);
    };
    PLACE found;
    std::uintptr_t least = UINTPTR_MAX;
    bool any = false;
    visit_items([&](const WM_BUTTON& button, const PLACE& place) {
        const std::intptr_t one = number(button.callback_data2), other = number(data);
        const std::uintptr_t distance =
            one > other ? static_cast<std::uintptr_t>(one) - static_cast<std::uintptr_t>(other)
                        : static_cast<std::uintptr_t>(other) - static_cast<std::uintptr_t>(one);
        if ((distance == 0 || nearest) && (!any || distance < least)) {
            any = true;
            least = distance;
            found = place;
        }
        return distance != 0;
    });
    if (any) {
        set_place(found, quiet != 0);
    }
    return any;
}

WM_MESG WM_LIST_BOX::list_box_selection_callback(WM_SCREEN_OBJECT* object, void* data1,
                                                 void* /*data2*/) {
    auto& box = *static_cast<WM_LIST_BOX*>(data1);
    PLACE chosen;
    box.visit_items([&](const WM_BUTTON& button, const PLACE& place) {
        chosen = &button == object ? place : chosen;
        return &button != object;
    });
    box.set_place(chosen, false);
    box.selection_changed = true;
    return WM_MESG_NONE;
}

// --- Input ---

// To a neighbour among all items, however deep.
void WM_LIST_BOX::step_selection(std::int32_t steps) {
    const PLACE now = get_place();
    std::int32_t count = 0, index = -1;
    visit_items([&](const WM_BUTTON& button, const PLACE& place) {
        if (button.enabled) {
            index = place == now ? count : index;
            ++count;
        }
        return true;
    });
    if (count == 0) {
        return;
    }
    // Without a choice the first step down is to the first item.
    const std::int32_t target = std::clamp(index + steps, 0, count - 1);
    std::int32_t i = 0;
    PLACE found = now;
    visit_items([&](const WM_BUTTON& button, const PLACE& place) {
        if (button.enabled && i++ == target) {
            found = place;
            return false;
        }
        return true;
    });
    set_place(found, false);
}

void WM_LIST_BOX::read_wheel() {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager == nullptr || !manager->is_object_on_focal_window(this)) {
        return;
    }
    const bool mine = manager->get_mouse_wheel_focus(window) == this;
    if (!is_in_it(MOUSE::x, MOUSE::y)) {
        if (mine) {
            manager->set_mouse_wheel_focus(window, nullptr);
        }
        return;
    }
    if (!mine) {
        manager->set_mouse_wheel_focus(window, this);
        MOUSE::wheel_pos = 0;
    } else if (MOUSE::wheel_pos != 0) {
        step_selection(-MOUSE::wheel_pos);
        MOUSE::wheel_pos = 0;
    }
}

void WM_LIST_BOX::read_keys() {
    KEYBOARD keyboard;
    const KEY_TYPE key = keyboard.peek_code();
    if (has_focus() && (key == KEY_UP || key == KEY_DOWN)) {
        keyboard.get_code();
        step_selection(key == KEY_UP ? -1 : 1);
    }
}

WM_MESG WM_LIST_BOX::monitor() {
    const bool was_open = popup_open && popup->visible;
    const WM_MESG result = WM_MENU::monitor();
    const bool open_now = popup_open && popup->visible;
    if (open_now && !was_open && selection >= 0) {
        popup->auto_scroll_to_row(selection, 1);
        if (WM_BUTTON* chosen = popup->get_button(selection)) {
            chosen->take_focus(1);
        }
    }
    if (enabled && visible && !open_now) {
        read_wheel();
        read_keys();
    }
    if (get_place() == get_last_place()) {
        return result;
    }
    remember_place();
    if (selection_callback == nullptr) {
        return result;
    }
    const WM_MESG answer = selection_callback(this, selection_data1, selection_data2);
    return answer != WM_MESG_NONE ? answer : result;
}

void WM_LIST_BOX::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    if (new_width == width && new_height == height) {
        return;
    }
    WM_MENU::resize(new_width, new_height, children);
    if (button_flags & (BUTTON_DOWN_ARROW | BUTTON_UP_ARROW)) {
        reserved_right = height;
    }
    update_current_selection();
}
