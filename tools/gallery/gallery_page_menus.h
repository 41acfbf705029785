// GALLERY_PAGE_MENUS: menus and list boxes.
#ifndef GALLERY_PAGE_MENUS_H
#define GALLERY_PAGE_MENUS_H

#include "gallery_page.h"

class WM_FLOATING_MENU;
class WM_LIST_BOX;
class WM_MENU;

class GALLERY_PAGE_MENUS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_MENUS(GALLERY& owner) : GALLERY_PAGE(owner) {}

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { ITEM = 1, LIST, OPEN_AT_POINTER };
    static constexpr int LONG_COUNT = 60;

    void build_menu_bar();
    void build_sides();
    void build_lists(std::int32_t x);
    WM_MENU* add_menu(std::int32_t x, std::int32_t y, std::int32_t width, const char* title,
                      std::int32_t type, std::uint32_t arrow, bool alternate,
                      const char* popup_title);
    void add_item(WM_FLOATING_MENU& menu, const char* text, bool separator_before = false,
                  bool enabled = true);
    void fill_edit(WM_FLOATING_MENU& menu);
    void fill_view(WM_FLOATING_MENU& menu);
    WM_LIST_BOX* add_list(std::int32_t x, std::int32_t y, const char* label,
                          const char* const* lines, std::int16_t count, std::int16_t selection,
                          const char* no_selection_text);
    void open_at_pointer(WM_SCREEN_OBJECT& button);

    WM_MENU* edit_menu = nullptr;
    WM_MENU* view_menu = nullptr;
    WM_MENU* long_menu = nullptr;
    WM_MENU* side_menu = nullptr;
    WM_LIST_BOX* plain_list = nullptr;
    WM_LIST_BOX* rich_list = nullptr;
};

#endif  // GALLERY_PAGE_MENUS_H
