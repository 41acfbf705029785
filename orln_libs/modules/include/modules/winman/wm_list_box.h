// WM_LIST_BOX: a menu that shows its current choice on the button, the toolkit's drop-down list.
//
// The chosen item is known by up to three rows: in the popup, in a sub-menu there, and in a
// sub-menu of that; -1 for depths that aren't used. Rows count separators and titles. The owner
// reads `selection_changed`, or has a callback.
#ifndef MODULES_WINMAN_WM_LIST_BOX_H
#define MODULES_WINMAN_WM_LIST_BOX_H

#include <cstdint>

#include "modules/winman/owned_text.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_menu.h"

class WM_LIST_BOX : public WM_MENU {
public:
    // `lines` are `line_count` texts, copied. `selection` and `sub_selection` are the first choice,
    // see set_current_selection; a selection of -1 is none. The callback runs after the user has
    // chosen something else. A null effect is default_list_box_effect_info.
    WM_LIST_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                std::int16_t selection, std::int16_t sub_selection, const char* const* lines,
                std::int16_t line_count, const char* no_selection_text, const WM_STYLE_SET& box,
                const WM_STYLE_SET& popup_style, const WM_STYLE_SET& title,
                const WM_STYLE_SET& item, const WM_STYLE_SET& alternate,
                const WM_STYLE_SET& separator, WM_CALLBACK callback, void* data1, void* data2,
                const EFFECT_INFO* effect, signed char window);
    // With styles of their own for the items of sub-menus and for sub-menus.
    WM_LIST_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                std::int16_t selection, std::int16_t sub_selection, const char* const* lines,
                std::int16_t line_count, const char* no_selection_text, const WM_STYLE_SET& box,
                const WM_STYLE_SET& popup_style, const WM_STYLE_SET& title,
                const WM_STYLE_SET& item, const WM_STYLE_SET& alternate,
                const WM_STYLE_SET& separator, const WM_STYLE_SET* child_item,
                const WM_STYLE_SET* child_alternate, const WM_STYLE_SET* child_menu,
                WM_CALLBACK callback, void* data1, void* data2, const EFFECT_INFO* effect,
                signed char window);
    ~WM_LIST_BOX() override;

    // --- Lines ---

    WM_BUTTON* add_line(const char* line) { return internal_add_line(line, nullptr, 0); }
    // With data, for selected_data and set_selection_from_data.
    WM_BUTTON* add_line(const char* line, void* data) { return internal_add_line(line, data, 1); }
    WM_BUTTON* internal_add_line(const char* text, void* data, unsigned char use_data);
    // A sub-menu; its lines are added with add_line_to_menu.
    WM_MENU* add_menu(const char* text, unsigned char separator_before, unsigned char dont_mask);
    WM_BUTTON* add_line_to_menu(WM_MENU* menu, const char* text, void* data);
    WM_SCRIPT* add_title(const char* text);
    // Takes all lines away; nothing is chosen then.
    void clear_lines();

    // --- Choice ---

    // Of `new_selection`, one beyond the rows is the last row, one below 0 the first. `quiet`:
    // selection_changed stays, and the callback doesn't run.
    void set_current_selection(std::int16_t new_selection, unsigned char quiet,
                               std::int16_t new_sub_selection = -1,
                               std::int16_t new_sub_sub_selection = -1);
    // Nothing is chosen.
    void clear_selection();
    // Shows the chosen item on the box and takes over its data.
    void update_current_selection();
    // Chooses the item with this data, with `nearest` the one whose data, as a number, is nearest
    // to it. Whether there is one.
    bool set_selection_from_data(void* data, unsigned char quiet, unsigned char nearest);
    // The text on the box, cut until it fits; `faded` halves the alpha of its colour.
    void set_readout_string(const char* text, unsigned char faded);
    // The chosen item, or null.
    WM_BUTTON* get_selected_button() const;

    WM_MESG monitor() override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;

    std::int16_t selection = -1, sub_selection = -1, sub_sub_selection = -1;
    std::int16_t last_selection = -1;  // of the last monitor, with the next two
    bool selection_changed = false;    // set by user action; the owner clears it
    void* selected_data = nullptr;     // `data2` of the chosen item
    bool show_icons = true;            // the item's icon appears on the box
    OWNED_TEXT no_selection_text;      // shown, faded, when nothing is chosen
    COLOUR normal_colour;              // of the text
    std::int16_t line_count = 0;
    WM_STYLE_SET title_style;
    WM_CALLBACK selection_callback = nullptr;  // the box's; `callback` is the button's
    void* selection_data1 = nullptr;
    void* selection_data2 = nullptr;

    static EFFECT_INFO default_list_box_effect_info;

private:
    struct PLACE {
        std::int16_t row = -1, sub = -1, sub_sub = -1;
        bool operator==(const PLACE&) const = default;
    };

    void setup(std::int16_t first_selection, std::int16_t first_sub_selection,
               const char* const* lines, std::int16_t count, const char* no_selection);
    static WM_MESG list_box_selection_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2);
    PLACE get_place() const { return {selection, sub_selection, sub_sub_selection}; }
    PLACE get_last_place() const {
        return {last_selection, last_sub_selection, last_sub_sub_selection};
    }
    void remember_place();
    void set_place(const PLACE& place, bool quiet);
    WM_BUTTON* find_button(const PLACE& place) const;
    // Calls `visit(WM_BUTTON&, PLACE)` for all items at the three depths until it yields false.
    template <class VISIT>
    void visit_items(VISIT visit) const;
    std::int16_t get_nearest_item(std::int32_t row) const;
    void step_selection(std::int32_t steps);
    void read_wheel();
    void read_keys();

    std::int16_t last_sub_selection = -1, last_sub_sub_selection = -1;
};

#endif  // MODULES_WINMAN_WM_LIST_BOX_H
