// WM_MENU: a button that opens a popup of items.
//
// Menus may form a group, as in a menu bar: while one of them is open, the pointer opens the next.
// The popup belongs to the menu and is filled by its owner, before or in `open_callback`.
#ifndef MODULES_WINMAN_WM_MENU_H
#define MODULES_WINMAN_WM_MENU_H

#include <cstdint>
#include <memory>

#include "modules/winman/wm_button.h"
#include "modules/winman/wm_floating_menu.h"

// Where the popup stands, as seen from the button. It goes to the opposite side where it would
// leave the popup area and that side has the room.
enum MENU_TYPE : std::int32_t {
    MENU_BELOW = 0,
    MENU_ABOVE = 1,
    MENU_LEFT = 2,
    MENU_RIGHT = 3,
};

class WM_MENU : public WM_BUTTON {
public:
    // The values of menu_mode.
    enum MODE : std::int32_t { MODE_BY_TYPE = 0, MODE_PUSH = 1, MODE_HOVER_FIRE = 2 };

    // The gap of a floating menu's sub-menus to their button.
    static constexpr std::int16_t SUB_MENU_OFFSET = -8;

    // x and y as for WM_BUTTON. `popup_title_text` may be null. A null effect is
    // default_menu_effect_info.
    WM_MENU(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2, const char* title,
            MENU_TYPE type, const WM_STYLE_SET& button, const WM_STYLE_SET& popup_style,
            const WM_STYLE_SET& popup_title, const WM_STYLE_SET& item,
            const WM_STYLE_SET& alternate, const WM_STYLE_SET& separator,
            unsigned char alternate_rows, const EFFECT_INFO* effect, signed char window,
            const char* popup_title_text = nullptr, const char* hint = nullptr,
            const WM_STYLE_SET* child_item = nullptr, const WM_STYLE_SET* child_alternate = nullptr,
            const WM_STYLE_SET* child_menu = nullptr);
    ~WM_MENU() override;

    // Sizes the popup and places it by menu_type.
    void position_popup();
    // Opens the popup, or closes it if it is open. The callback of the button; data1 is the menu.
    static WM_MESG menu_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2);
    void open();
    // Starts the popup's closing effect.
    void start_closing_popup();
    // Closes the popup and its sub-menus at once.
    void close_at_once();

    // Leaves its group and stands behind `other` in that one's. Null is ignored.
    void add_to_group(WM_MENU* other);
    void remove_from_group();
    // The member whose button is there, perhaps this one; null for none, or without a group.
    WM_MENU* find_group_member_at_pos(std::int16_t px, std::int16_t py);

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    bool find_object(WM_SCREEN_OBJECT* object) override;
    void move(std::int16_t new_x, std::int16_t new_y) override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    void set_area(std::int16_t new_area) override;
    void draw_object() override;

    bool popup_open = false;  // the popup is in the modal list
    std::unique_ptr<WM_FLOATING_MENU> popup;
    MENU_TYPE menu_type;
    WM_SCREEN_OBJECT* owner_menu = nullptr;  // of a sub-menu: the menu or floating menu it is in
    WM_CALLBACK open_callback = nullptr;     // runs before the popup opens
    void* open_data1 = nullptr;
    void* open_data2 = nullptr;
    std::int16_t x_offset = 0, y_offset = 0;  // gap to the popup
    WM_MENU* group_next = nullptr;            // a ring; null without a group
    WM_MENU* group_prev = nullptr;

    static std::int32_t menu_mode;  // forces the BUTTON_TYPE of new menus
    static EFFECT_INFO default_menu_effect_info;

private:
    // Takes the popup out of the modal list; the button is back to normal.
    void forget_popup();
    void keep_direction();
    void choose_side();
    void place_popup();
    void set_arrow();
    void close_behind_pointer();

    std::int16_t opened_x = -1, opened_y = -1;  // the pointer then
};

#endif  // MODULES_WINMAN_WM_MENU_H
