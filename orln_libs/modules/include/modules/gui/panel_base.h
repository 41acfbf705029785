// PANEL_BASE: a button-shaped panel with an inner area and one above it.
//
// A card of a page: the skin's background with its frame, an area inside the frame for the content
// and one in the frame's upper edge for a title or a few small controls. The whole card can be
// clicked if it has a callback.
#ifndef MODULES_GUI_PANEL_BASE_H
#define MODULES_GUI_PANEL_BASE_H

#include <cstdint>

#include "modules/winman/wm_button.h"

class WM_MANAGER;
class WM_SCRIPT;

class PANEL_BASE : public WM_BUTTON {
public:
    // Bits of `panel_flags`: the style of the button and of its background. The lowest one counts;
    // without one it is "PANEL_BACKGROUND".
    enum PANEL_FLAG : unsigned char {
        PANEL_BLANK = 1,     // "BLANK"
        PANEL_EXTENDED = 2,  // "PANEL_BACKGROUND_EXTENDED"
    };

    // The corners give the size. The callback runs when the panel is clicked; a panel without one
    // takes no clicks and no focus.
    PANEL_BASE(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
               unsigned char flags, WM_CALLBACK callback, void* data1, void* data2,
               signed char window);

    // The content of the two areas, with the meanings of add_object, remove_object and
    // clear_objects of WM_SCREEN_OBJECT. The areas clip what stands in them.
    void add_internal_object(WM_SCREEN_OBJECT* object, unsigned char relative);
    void remove_internal_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                unsigned char make_relative);
    void clear_internal_objects();
    std::int16_t get_internal_x() const;
    std::int16_t get_internal_y() const;
    std::int16_t get_internal_width() const;
    std::int16_t get_internal_height() const;

    void add_upper_area_object(WM_SCREEN_OBJECT* object, unsigned char relative);
    void remove_upper_area_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                  unsigned char make_relative);
    void clear_upper_area_objects();
    std::int16_t get_upper_area_x() const;
    std::int16_t get_upper_area_y() const;
    std::int16_t get_upper_area_width() const;
    std::int16_t get_upper_area_height() const;

    unsigned char panel_flags;
    WM_MANAGER* internal = nullptr;    // a child of the background
    WM_MANAGER* upper_area = nullptr;  // likewise; as high as the background's top gap
};

#endif  // MODULES_GUI_PANEL_BASE_H
