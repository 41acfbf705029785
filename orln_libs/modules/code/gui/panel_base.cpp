#include "modules/gui/panel_base.h"

#include <algorithm>

#include "modules/winman/style_set.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "skin_lookup.h"

namespace {

SKIN_STYLE BLANK_INDEX{"BLANK"};
SKIN_STYLE PANEL_BACKGROUND_INDEX{"PANEL_BACKGROUND"};
SKIN_STYLE PANEL_BACKGROUND_EXTENDED_INDEX{"PANEL_BACKGROUND_EXTENDED"};

WM_STYLE_SET& get_panel_style(unsigned char flags) {
    if (flags & PANEL_BASE::PANEL_BLANK) {
        return BLANK_INDEX.get();
    }
    if (flags & PANEL_BASE::PANEL_EXTENDED) {
        return PANEL_BACKGROUND_EXTENDED_INDEX.get();
    }
    return PANEL_BACKGROUND_INDEX.get();
}

// A side below 1 would mean that of the window.
WM_MANAGER* add_area(WM_SCRIPT& background, std::int32_t left, std::int32_t top, std::int32_t width,
                     std::int32_t height) {
    auto* area =
        new WM_MANAGER(static_cast<std::int16_t>(background.x + left),
                       static_cast<std::int16_t>(background.y + top),
                       static_cast<std::int16_t>(std::max(width, 1)),
                       static_cast<std::int16_t>(std::max(height, 1)), 1, background.window);
    area->type_flags |= WMF_MANAGER;
    background.add_object(area, 0);
    return area;
}

}  // namespace

PANEL_BASE::PANEL_BASE(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                       unsigned char flags, WM_CALLBACK panel_callback, void* data1, void* data2,
                       signed char panel_window)
    : WM_BUTTON(x1, y1, x2, y2, get_panel_style(flags), "", nullptr, panel_callback, data1, data2,
                BUTTON_EVENT_RELEASE, panel_window, panel_callback != nullptr, 0),
      panel_flags(flags) {
    auto* background = new WM_SCRIPT(x1, y1, x2, y2, get_panel_style(flags), "", panel_window);
    add_object(background, 0);
    // Only one of the two shows the style, as a translucent one would be doubled: the button if it
    // can be clicked, because it also has the looks for that.
    if (panel_callback != nullptr) {
        background->clear_images();
        background->has_background = false;
    } else {
        clear_images();
        bg = mouse_over = COLOUR_INVISIBLE;
    }
    const std::int32_t inner_width =
        background->width - background->left_gap - background->right_gap;
    internal = add_area(*background, background->left_gap, background->top_gap, inner_width,
                        background->height - background->top_gap - background->bottom_gap);
    upper_area = add_area(*background, background->left_gap, 0, inner_width, background->top_gap);
}

void PANEL_BASE::add_internal_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    internal->add_object(object, relative);
}

void PANEL_BASE::remove_internal_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                        unsigned char make_relative) {
    internal->remove_object(object, delete_it, make_relative);
}

void PANEL_BASE::clear_internal_objects() {
    internal->clear_objects(0, 1);
}

std::int16_t PANEL_BASE::get_internal_x() const {
    return internal->get_x();
}

std::int16_t PANEL_BASE::get_internal_y() const {
    return internal->get_y();
}

std::int16_t PANEL_BASE::get_internal_width() const {
    return internal->get_width();
}

std::int16_t PANEL_BASE::get_internal_height() const {
    return internal->get_height();
}

void PANEL_BASE::add_upper_area_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    upper_area->add_object(object, relative);
}

void PANEL_BASE::remove_upper_area_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                          unsigned char make_relative) {
    upper_area->remove_object(object, delete_it, make_relative);
}

void PANEL_BASE::clear_upper_area_objects() {
    upper_area->clear_objects(0, 1);
}

std::int16_t PANEL_BASE::get_upper_area_x() const {
    return upper_area->get_x();
}

std::int16_t PANEL_BASE::get_upper_area_y() const {
    return upper_area->get_y();
}

std::int16_t PANEL_BASE::get_upper_area_width() const {
    return upper_area->get_width();
}

std::int16_t PANEL_BASE::get_upper_area_height() const {
    return upper_area->get_height();
}
