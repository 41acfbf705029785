// The objects that share the frame's title row, its lower row and its icon bar.
#include <algorithm>

#include "modules/gui/panel_frame.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_script.h"
#include "panel_frame_data.h"
#include "skin_lookup.h"

namespace {

SKIN_STYLE PANEL_FRAME_TITLE_INDEX{"PANEL_FRAME_TITLE"};
SKIN_STYLE PANEL_FRAME_BOTTOM_LAST_HOLDER_INDEX{"PANEL_FRAME_BOTTOM_LAST_HOLDER"};
SKIN_STYLE PANEL_FRAME_ICON_BAR_INDEX{"PANEL_FRAME_ICON_BAR"};

WM_SCREEN_OBJECT* object_at(const PTRARRAY& list, std::int32_t index) {
    return list.get<WM_SCREEN_OBJECT>(index);
}

// Without a valid index at the end.
void insert_entry(PTRARRAY& list, std::int32_t index, void* entry) {
    list.add(entry);
    if (index >= 0 && index < list.get_count() - 1) {
        void** const end = list.get_data() + list.get_count();
        std::rotate(list.get_data() + index, end - 1, end);
    }
}

// Gives the objects their natural widths, or in too small a room the same percentage of them, and
// yields the width that they take together.
std::int32_t share_width(const PTRARRAY& list, const PTRARRAY& widths, std::int32_t room,
                         std::int32_t spacing) {
    const std::int32_t count = list.get_count();
    std::int32_t total = std::max(count - 1, 0) * spacing;
    for (std::int32_t i = 0; i < count; ++i) {
        total += number_from_pointer(widths[i]);
    }
    room = std::max(room, 0);
    const std::int32_t percent = total > room ? room * 100 / total : 100;
    std::int32_t used = std::max(count - 1, 0) * spacing;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t shared = number_from_pointer(widths[i]) * percent / 100;
        object_at(list, i)->resize(static_cast<std::int16_t>(shared), object_at(list, i)->height,
                                   0);
        used += shared;
    }
    return used;
}

void show_at(WM_SCREEN_OBJECT& object, std::int32_t left, std::int32_t top) {
    object.move(static_cast<std::int16_t>(left), static_cast<std::int16_t>(top));
    object.request_draw(0, 0);
}

void hide_all(const PTRARRAY& list) {
    for (std::int32_t i = 0; i < list.get_count(); ++i) {
        object_at(list, i)->hide(0, 0);
    }
}

void resize_entry(const PTRARRAY& list, PTRARRAY& widths, WM_SCREEN_OBJECT* object,
                  std::int16_t new_width, std::int16_t new_height) {
    const std::int32_t index = list.find(object);
    if (index >= 0) {
        object->resize(new_width, new_height, 0);
        widths[index] = pointer_from(new_width);
    }
}

}  // namespace

unsigned char PANEL_FRAME::take_object(WM_SCREEN_OBJECT* holder, PTRARRAY& list, PTRARRAY* widths,
                                       std::int32_t index, WM_SCREEN_OBJECT* object) {
    if (holder == nullptr || object == nullptr || list.find(object) >= 0) {
        return 0;
    }
    hide_all(list);
    insert_entry(list, index, object);
    if (widths != nullptr) {
        insert_entry(*widths, index, pointer_from(object->width));
    }
    holder->add_object(object, 0);
    return 1;
}

void PANEL_FRAME::clear_holder(WM_SCREEN_OBJECT* holder, PTRARRAY& list, PTRARRAY* widths) {
    for (std::int32_t i = 0; i < list.get_count(); ++i) {
        holder->remove_object(object_at(list, i), 1, 0);
    }
    list.clear();
    if (widths != nullptr) {
        widths->clear();
    }
}

unsigned char PANEL_FRAME::add_upper_frame_object(WM_SCREEN_OBJECT* object) {
    return add_upper_frame_object(upper_objects.get_count(), object);
}

unsigned char PANEL_FRAME::add_upper_frame_object(std::int32_t index, WM_SCREEN_OBJECT* object) {
    const unsigned char taken =
        take_object(title_holder, upper_objects, &upper_widths, index, object);
    show_upper_frame_objects();
    return taken;
}

void PANEL_FRAME::add_upper_frame_objects(PTRARRAY& objects_to_add) {
    for (std::int32_t i = 0; i < objects_to_add.get_count(); ++i) {
        add_upper_frame_object(object_at(objects_to_add, i));
    }
}

void PANEL_FRAME::clear_upper_frame_objects() {
    clear_holder(title_holder, upper_objects, &upper_widths);
}

void PANEL_FRAME::show_upper_frame_objects() {
    const INNER_RECT inner(*title_holder);
    const std::int32_t spacing = PANEL_FRAME_TITLE_INDEX.get(skin_prefix).x_spacing;
    share_width(upper_objects, upper_widths, inner.width, spacing);
    std::int32_t right = inner.right();
    for (std::int32_t i = 0; i < upper_objects.get_count(); ++i) {
        WM_SCREEN_OBJECT& object = *object_at(upper_objects, i);
        show_at(object, right - object.width, inner.centre_y(object.height));
        right -= object.width + spacing;
    }
}

void PANEL_FRAME::hide_upper_frame_objects() {
    hide_all(upper_objects);
}

void PANEL_FRAME::resize_upper_frame_object(WM_SCREEN_OBJECT* object, std::int16_t new_width,
                                            std::int16_t new_height) {
    resize_entry(upper_objects, upper_widths, object, new_width, new_height);
    show_upper_frame_objects();
}

std::int32_t PANEL_FRAME::find_upper_frame_object(const WM_SCREEN_OBJECT* object) const {
    return upper_objects.find(object);
}

unsigned char PANEL_FRAME::add_lower_frame_object(WM_SCREEN_OBJECT* object) {
    return add_lower_frame_object(lower_objects.get_count(), object);
}

unsigned char PANEL_FRAME::add_lower_frame_object(std::int32_t index, WM_SCREEN_OBJECT* object) {
    WM_SCRIPT* const holder = frame_flags & FRAME_LOWER_HOLDER ? bottom_last : nullptr;
    const unsigned char taken = take_object(holder, lower_objects, &lower_widths, index, object);
    show_lower_frame_objects();
    return taken;
}

void PANEL_FRAME::add_lower_frame_objects(PTRARRAY& objects_to_add) {
    for (std::int32_t i = 0; i < objects_to_add.get_count(); ++i) {
        add_lower_frame_object(object_at(objects_to_add, i));
    }
}

void PANEL_FRAME::clear_lower_frame_objects() {
    clear_holder(bottom_last, lower_objects, &lower_widths);
    show_lower_frame_objects();
}

void PANEL_FRAME::show_lower_frame_objects() {
    if ((frame_flags & FRAME_LOWER_HOLDER) == 0) {
        return;
    }
    const std::int32_t gaps = bottom_last->left_gap + bottom_last->right_gap;
    const std::int32_t room = INNER_RECT(*background).width - bottom_first->width - gaps;
    const std::int32_t spacing = PANEL_FRAME_BOTTOM_LAST_HOLDER_INDEX.get(skin_prefix).x_spacing;
    place_bottom(gaps + share_width(lower_objects, lower_widths, room, spacing));

    const INNER_RECT inner(*bottom_last);
    std::int32_t left = inner.left;
    for (std::int32_t i = 0; i < lower_objects.get_count(); ++i) {
        WM_SCREEN_OBJECT& object = *object_at(lower_objects, i);
        show_at(object, left, inner.centre_y(object.height));
        left += object.width + spacing;
    }
}

void PANEL_FRAME::hide_lower_frame_objects() {
    hide_all(lower_objects);
}

void PANEL_FRAME::resize_lower_frame_object(WM_SCREEN_OBJECT* object, std::int16_t new_width,
                                            std::int16_t new_height) {
    resize_entry(lower_objects, lower_widths, object, new_width, new_height);
    show_lower_frame_objects();
}

std::int32_t PANEL_FRAME::find_lower_frame_object(const WM_SCREEN_OBJECT* object) const {
    return lower_objects.find(object);
}

void PANEL_FRAME::show_icons(const PTRARRAY& list, bool from_top) {
    if (icon_bar == nullptr) {
        return;
    }
    const INNER_RECT inner(*icon_bar);
    const std::int32_t spacing = PANEL_FRAME_ICON_BAR_INDEX.get(skin_prefix).y_spacing;
    std::int32_t edge = from_top ? inner.top : inner.bottom();
    for (std::int32_t i = 0; i < list.get_count(); ++i) {
        WM_SCREEN_OBJECT& object = *object_at(list, i);
        show_at(object, inner.centre_x(object.width), from_top ? edge : edge - object.height);
        edge += from_top ? object.height + spacing : -(object.height + spacing);
    }
}

unsigned char PANEL_FRAME::add_upper_icon_bar_object(WM_SCREEN_OBJECT* object) {
    return add_upper_icon_bar_object(upper_icons.get_count(), object);
}

unsigned char PANEL_FRAME::add_upper_icon_bar_object(std::int32_t index, WM_SCREEN_OBJECT* object) {
    const unsigned char taken = take_object(icon_bar, upper_icons, nullptr, index, object);
    show_upper_icon_bar_objects();
    return taken;
}

void PANEL_FRAME::add_upper_icon_bar_objects(PTRARRAY& objects_to_add) {
    for (std::int32_t i = 0; i < objects_to_add.get_count(); ++i) {
        add_upper_icon_bar_object(object_at(objects_to_add, i));
    }
}

void PANEL_FRAME::clear_upper_icon_bar_objects() {
    clear_holder(icon_bar, upper_icons, nullptr);
}

void PANEL_FRAME::show_upper_icon_bar_objects() {
    show_icons(upper_icons, true);
}

void PANEL_FRAME::hide_upper_icon_bar_objects() {
    hide_all(upper_icons);
}

unsigned char PANEL_FRAME::add_lower_icon_bar_object(WM_SCREEN_OBJECT* object) {
    return add_lower_icon_bar_object(lower_icons.get_count(), object);
}

unsigned char PANEL_FRAME::add_lower_icon_bar_object(std::int32_t index, WM_SCREEN_OBJECT* object) {
    const unsigned char taken = take_object(icon_bar, lower_icons, nullptr, index, object);
    show_lower_icon_bar_objects();
    return taken;
}

void PANEL_FRAME::add_lower_icon_bar_objects(PTRARRAY& objects_to_add) {
    for (std::int32_t i = 0; i < objects_to_add.get_count(); ++i) {
        add_lower_icon_bar_object(object_at(objects_to_add, i));
    }
}

void PANEL_FRAME::clear_lower_icon_bar_objects() {
    clear_holder(icon_bar, lower_icons, nullptr);
}

void PANEL_FRAME::show_lower_icon_bar_objects() {
    show_icons(lower_icons, false);
}

void PANEL_FRAME::hide_lower_icon_bar_objects() {
    hide_all(lower_icons);
}
