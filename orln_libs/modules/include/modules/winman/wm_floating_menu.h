// WM_FLOATING_MENU: a column of items that pops up, takes all input and dismisses itself.
//
// A menu of its own is made, filled, and added with add_modal_object:
//
//     auto* menu = new WM_FLOATING_MENU(MOUSE::x, MOUSE::y, nullptr, popup, title, item, alternate,
//                                       separator, 0, 0, nullptr, nullptr, nullptr, nullptr,
//                                       window, 0);
//     menu->add_button("Copy", callback, data1, data2, 0, nullptr, nullptr);
//     area->add_modal_object(menu, 0);
//
// It is deleted once the user has chosen something or left it, unless it is `not_owned`. The popup
// of a WM_MENU or WM_LIST_BOX is one, too, and lives as long as that. The callback of an item may
// hide the menu, but must not delete it or its items.
//
// Keys: the arrows move through the items, Right and Return open a sub-menu, Left leaves it, Return
// and Space choose, Escape closes; typing goes to the item that begins so.
#ifndef MODULES_WINMAN_WM_FLOATING_MENU_H
#define MODULES_WINMAN_WM_FLOATING_MENU_H

#include <cstdint>

#include "modules/winman/style_set.h"
#include "modules/winman/wm_dialog.h"

class WM_BUTTON;
class WM_GRID;
class WM_MENU;
class WM_SCRIPT;

class WM_FLOATING_MENU : public WM_DIALOG {
public:
    static constexpr std::int32_t MAX_TYPED = 10;
    // A pause longer than this begins a new search, in milliseconds.
    static constexpr std::uint32_t TYPING_PAUSE = 999;

    // All styles are copied. With `alternate_rows` every second item is in the alternate style. The
    // pointers may be null: items of sub-menus look like those of the menu then, sub-menus like
    // items, and the effect is default_floating_menu_effect_info. `not_owned`: the modal list
    // doesn't delete it. `defer` as for WM_DIALOG.
    WM_FLOATING_MENU(std::int16_t x, std::int16_t y, const char* title, const WM_STYLE_SET& popup,
                     const WM_STYLE_SET& title_set, const WM_STYLE_SET& item,
                     const WM_STYLE_SET& alternate_item, const WM_STYLE_SET& separator,
                     unsigned char alternate_rows, unsigned char not_owned,
                     const WM_STYLE_SET* child_item, const WM_STYLE_SET* child_alternate,
                     const EFFECT_INFO* effect_info, const WM_STYLE_SET* child_menu,
                     signed char window, unsigned char defer);
    ~WM_FLOATING_MENU() override;

    // --- Items; rows are numbered from 0, separators and titles included. All are the menu's ---

    // `data2` is what WM_LIST_BOX calls an item's data. Without a callback the item only closes the
    // menu. Styles of null are the menu's own.
    WM_BUTTON* add_button(const char* text, WM_CALLBACK item_callback, void* data1, void* data2,
                          unsigned char separator_before, const WM_STYLE_SET* style,
                          const WM_STYLE_SET* alternate);
    // A sub-menu, to be filled through its `popup`. `dont_mask`: its whole rectangle reacts,
    // whatever the image.
    WM_MENU* add_menu(const char* text, unsigned char separator_before, unsigned char dont_mask,
                      const WM_STYLE_SET* style, const WM_STYLE_SET* alternate);
    // A text among the items, which can't be chosen. A null style is the item's.
    WM_SCRIPT* add_script(const char* text, const WM_STYLE_SET* style,
                          const WM_STYLE_SET* alternate);
    WM_SCRIPT* add_seperator();
    // Null if the row isn't one. A sub-menu is also a button.
    WM_BUTTON* get_button(std::int16_t row) const;
    WM_MENU* get_menu(std::int16_t row) const;
    std::int16_t get_row_count() const;
    // Deletes all items; with the flag also shrinks the menu at once.
    void clear(unsigned char new_size);
    using WM_DIALOG::clear;

    // --- Showing ---

    // Makes it ready to be opened: no button pressed or under the pointer, nothing typed.
    void reset();
    // The size that the items take, within the popup area; moves a menu of its own into that.
    void calc_new_size();
    // In this menu or one of the sub-menus that are open.
    bool is_in_menu(std::int16_t px, std::int16_t py);
    bool is_object_in_this_menu(WM_SCREEN_OBJECT* object);
    // With `centre` in the middle.
    void auto_scroll_to_row(std::int16_t row, unsigned char centre);
    // As WM_GRID::scroll: pixels left to scroll.
    std::int32_t get_scroll_position() const;
    void set_scroll_position(std::int32_t position);
    // Puts scroll buttons where there are rows beyond the first and the last one shown.
    void check_for_scrolling_buttons();
    void clear_scrolling_buttons();
    // Closes the open sub-menus, with `parents` also the menus that this one hangs from; by the
    // closing effect, or at once.
    void close_linked_popup(unsigned char parents);
    void hide_linked_popup(unsigned char parents);
    // Hides this menu and its open sub-menus at once.
    void hide_with_popup_children();
    void set_childrens_allowed_focus(unsigned char allowed);

    void hide(unsigned char modals, unsigned char children) override;
    void start_closing() override;
    WM_MESG monitor() override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    void set_title(const char* text) override;

    WM_GRID* grid = nullptr;                    // the items; a child of `contents`
    std::int16_t item_count = 0;                // buttons and sub-menus
    std::int16_t menu_count = 0;                // sub-menus
    std::int16_t first_row = 0, last_row = -1;  // the rows shown between the scroll buttons
    std::int16_t min_width = 0;
    std::int16_t max_height = 0;  // below that of the popup area, for popups beside it; 0: none
    WM_STYLE_SET grid_style, item_style, alternate_item_style, separator_style, child_item_style,
        child_alternate_style, child_menu_style;
    // Made when first needed, visible while there are rows beyond.
    WM_BUTTON* scroll_top_button = nullptr;
    WM_BUTTON* scroll_bottom_button = nullptr;
    WM_MENU* owner_menu = nullptr;  // whose popup it is
    char typed[MAX_TYPED] = {};     // not terminated
    std::int8_t typed_count = 0;
    std::uint32_t typed_time = 0;
    bool first_press = false;  // the press that opened the menu isn't over
    bool alternate_rows;

    static EFFECT_INFO default_floating_menu_effect_info;

    // The popup that the button of this one is in; null for none.
    WM_FLOATING_MENU* get_parent_popup() const;

private:
    WM_SCREEN_OBJECT* append_item(WM_SCREEN_OBJECT* item);
    const WM_STYLE_SET& choose_style(const WM_STYLE_SET* style, const WM_STYLE_SET* alternate,
                                     const WM_STYLE_SET& own) const;
    template <class ACTION>
    void for_sub_menus(ACTION action) const;
    void show_from(std::int32_t position);
    void show_scroll_button(WM_BUTTON*& button, bool bottom, bool shown);
    std::int32_t align_to_row(std::int32_t position, bool down) const;
    static WM_MESG scrolling_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2);
    void scroll_rows(std::int32_t steps);
    bool is_separator(std::int16_t row) const;

    // None is pressed or under the pointer.
    void reset_buttons();
    void become_visible();
    void read_typing();
    void search_typed();
    void read_wheel();
    bool read_navigation_keys();
    void step_focus(std::int32_t from, std::int32_t step);
    bool go_to_neighbour(bool forward);
    void focus_row(std::int16_t row, unsigned char centre);
    std::int16_t find_focal_row() const;
    void follow_pointer(bool left_down);
    WM_MESG monitor_contents();
    void leave();
    void finish_choice(WM_MESG result);
    void leave_modal_list(bool with_answer);
    void handle_release(WM_MESG result);

    std::int16_t widest_item = 0, tallest_item = 0;
    bool was_visible = false, buttons_were_down = false, escape_was_down = false;
    std::int16_t pointer_x = -1, pointer_y = -1;  // at the last monitor
};

#endif  // MODULES_WINMAN_WM_FLOATING_MENU_H
