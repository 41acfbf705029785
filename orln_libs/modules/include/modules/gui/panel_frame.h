// PANEL_FRAME: the frame around a page's content, with tabs, sub-tabs, title and icon bar.
//
// All of it is put together from pieces of the skin, with the frame's prefix in front of their
// names (see GUI_SKIN):
//
//     PANEL_FRAME_BACKGROUND, whose gaps are the frame's margin
//     +-----------+-----------------------------------+----------+
//     | TOP_FIRST | main tabs, on TOP_MID             | TOP_LAST |
//     +-----------+-----------------------------------+----------+
//     | TITLE     sub-tabs, title, upper frame objects           |
//     +----------------------------------------------------------+
//     | CENTRE    the content (`internal`)            | ICON_BAR |
//     +--------------+-------------------+-----------------------+
//     | BOTTOM_FIRST | BOTTOM_MID        | BOTTOM_LAST           |
//     +--------------+-------------------+-----------------------+
//
// A frame is built for one pair of identifiers. A press on another tab stores that tab's pair in
// active_id and active_sub_id and runs the frame's callback, which has the page built anew with a
// new frame by its answer, such as WM_MESG_REBUILD_AREA; the frame must outlive the callback. Which
// sub-tab a main tab showed last is kept in a MESSAGE that outlives the frames.
#ifndef MODULES_GUI_PANEL_FRAME_H
#define MODULES_GUI_PANEL_FRAME_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "modules/gui/panel_frame_tab.h"
#include "modules/winman/screen_object.h"
#include "platform/ptrarray.h"

class DATA_DEVICE;
class MESSAGE;
class TEXT_BOX;
class WM_BUTTON;
class WM_FLOATING_MENU;
class WM_MANAGER;
class WM_SCRIPT;
class WM_STYLE_SET;

class PANEL_FRAME : public WM_SCREEN_OBJECT {
public:
    // Bits of `frame_flags`.
    enum FRAME_FLAG : unsigned char {
        FRAME_KEEP_SUB_ROW_END = 1,  // the last 150 pixels of the sub-tabs' row stay free
        FRAME_LOWER_HOLDER = 2,      // the lower row holds objects
        FRAME_ICON_BAR = 4,
        FRAME_SMALL_BORDER = 8,
    };
    static constexpr std::int16_t SUB_ROW_FREE_WIDTH = 150;
    static constexpr std::size_t TITLE_SIZE = 256;
    static constexpr std::size_t PREFIX_SIZE = 256;

    // The corners give the size; the frame doesn't follow a later resize. `title`, `tabs` and
    // `prefix` are copied; each may be null. With a null or empty title and a single tab, that
    // tab's text is the title. `settings` (null: no memory) is not owned and must outlive the
    // frame, which reads it now and writes it when it goes. The callback, which gets the frame,
    // runs after a change of tab.
    PANEL_FRAME(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                const char* title, const PANEL_FRAME_TAB* tabs, std::int32_t tab_count,
                std::int32_t active_id, std::int32_t active_sub_id, unsigned char flags,
                const char* prefix, MESSAGE* settings, WM_CALLBACK callback, void* data1,
                void* data2, signed char window);
    ~PANEL_FRAME() override;

    // The content, in `internal`.
    void add_object(WM_SCREEN_OBJECT* object, unsigned char relative) override;
    void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                       unsigned char make_relative) override;
    void clear_objects(unsigned char all_modals, unsigned char children);
    std::int16_t get_internal_x() const;
    std::int16_t get_internal_y() const;
    std::int16_t get_internal_width() const;
    std::int16_t get_internal_height() const;

    // Null or empty: no title. The title stands at the left of its row, in a frame with sub-tabs
    // at the right; with `keep_position` at the left there, too.
    void set_title(const char* text, unsigned char keep_position);
    // Never null.
    const char* get_title() const;
    // The texts of the selected tabs, each behind " - ". Never null.
    const char* get_tab_title() const { return tab_title; }
    // The active look of the main tab with that pair.
    void set_tab_activated(std::int32_t id, std::int32_t sub_id, unsigned char on);

    // Objects in the title's row, which share it from the right; the first one is the rightmost. A
    // holder owns its objects as add_object does. They keep their widths as long as there is room,
    // and are narrowed in proportion when there isn't. `index` inserts, moving the later ones on;
    // beyond the end it appends. `show` and `hide` are for all of a holder. 1 if taken; 0 (null, or
    // no such holder) leaves the object to the caller.
    unsigned char add_upper_frame_object(WM_SCREEN_OBJECT* object);
    unsigned char add_upper_frame_object(std::int32_t index, WM_SCREEN_OBJECT* object);
    void add_upper_frame_objects(PTRARRAY& objects_to_add);
    void clear_upper_frame_objects();
    void show_upper_frame_objects();
    void hide_upper_frame_objects();
    // A new width to keep, and a new height.
    void resize_upper_frame_object(WM_SCREEN_OBJECT* object, std::int16_t new_width,
                                   std::int16_t new_height);
    // The index, or -1.
    std::int32_t find_upper_frame_object(const WM_SCREEN_OBJECT* object) const;

    // The same in the lower row, with FRAME_LOWER_HOLDER. They stand at its right end in their
    // order, the first one leftmost, and the row's end piece grows round them.
    unsigned char add_lower_frame_object(WM_SCREEN_OBJECT* object);
    unsigned char add_lower_frame_object(std::int32_t index, WM_SCREEN_OBJECT* object);
    void add_lower_frame_objects(PTRARRAY& objects_to_add);
    void clear_lower_frame_objects();
    void show_lower_frame_objects();
    void hide_lower_frame_objects();
    void resize_lower_frame_object(WM_SCREEN_OBJECT* object, std::int16_t new_width,
                                   std::int16_t new_height);
    std::int32_t find_lower_frame_object(const WM_SCREEN_OBJECT* object) const;

    // The same in the icon bar, with FRAME_ICON_BAR: upper ones from its top downwards, lower ones
    // from its bottom upwards.
    unsigned char add_upper_icon_bar_object(WM_SCREEN_OBJECT* object);
    unsigned char add_upper_icon_bar_object(std::int32_t index, WM_SCREEN_OBJECT* object);
    void add_upper_icon_bar_objects(PTRARRAY& objects_to_add);
    void clear_upper_icon_bar_objects();
    void show_upper_icon_bar_objects();
    void hide_upper_icon_bar_objects();
    unsigned char add_lower_icon_bar_object(WM_SCREEN_OBJECT* object);
    unsigned char add_lower_icon_bar_object(std::int32_t index, WM_SCREEN_OBJECT* object);
    void add_lower_icon_bar_objects(PTRARRAY& objects_to_add);
    void clear_lower_icon_bar_objects();
    void show_lower_icon_bar_objects();
    void hide_lower_icon_bar_objects();

    // The stored form of the tab memory: a 32-bit count of main tabs, and for each its two
    // identifiers as 32-bit numbers. Reading gives each stored first identifier to the main tab
    // that has a sub-tab with it; unknown ones are skipped, and the second number isn't used. 1 for
    // success.
    unsigned char write_settings_to_data_device(DATA_DEVICE& device) const;
    unsigned char read_settings_from_data_device(DATA_DEVICE& device);

    // The callbacks of the tabs: `data1` is the frame and `data2` the first identifier, the
    // button's right_data1 the second one. The other one opens the menu of all tabs at the pointer.
    static WM_MESG handle_callback(WM_SCREEN_OBJECT* button, void* frame, void* id);
    static WM_MESG alt_handle_callback(WM_SCREEN_OBJECT* button, void* sub_id, void* frame);

    std::unique_ptr<PANEL_FRAME_TAB[]> tabs;
    std::int32_t tab_count;
    std::int32_t active_id, active_sub_id;  // the shown tab
    unsigned char frame_flags;
    char skin_prefix[PREFIX_SIZE];
    MESSAGE* settings;  // not owned; may be null
    char tab_title[TITLE_SIZE] = "";

    // The pieces: `background` is the only child, the others are its children or theirs.
    WM_SCRIPT* background = nullptr;
    WM_SCRIPT* title_holder = nullptr;
    TEXT_BOX* title = nullptr;  // null without a title
    WM_SCRIPT* bottom_first = nullptr;
    WM_SCRIPT* bottom_mid = nullptr;
    WM_SCRIPT* bottom_last = nullptr;
    WM_SCRIPT* centre = nullptr;
    WM_SCRIPT* icon_bar = nullptr;  // null without FRAME_ICON_BAR
    WM_MANAGER* internal = nullptr;
    std::unique_ptr<WM_FLOATING_MENU> tab_menu;

    // WM_SCREEN_OBJECT*; the widths are numbers in the place of pointers.
    PTRARRAY upper_objects, upper_widths, lower_objects, lower_widths;
    PTRARRAY upper_icons, lower_icons;
    PTRARRAY tab_buttons, sub_tab_buttons;  // WM_BUTTON*

private:
    struct TAB_ROW;

    PANEL_FRAME_TAB& get_tab(std::int32_t index) const { return tabs.get()[index]; }
    void copy_tabs(const PANEL_FRAME_TAB* source);
    std::int32_t find_main_tab(std::int32_t tab) const;
    bool has_sub_tabs(std::int32_t main_tab) const;
    bool is_active(const PANEL_FRAME_TAB& tab) const;
    std::int32_t find_selected_main_tab();
    void append_to_tab_title(const char* text);

    void build_pieces(std::int32_t selected);
    std::int32_t build_top(std::int32_t selected);
    std::int32_t make_main_tabs(std::int32_t selected, std::int32_t limit);
    WM_BUTTON* make_tab(const PANEL_FRAME_TAB& tab, const WM_STYLE_SET& style);
    void fit_row(const TAB_ROW& row);
    void build_strips(std::int32_t selected, std::int32_t left, std::int32_t right,
                      std::int32_t top, std::int32_t row_height);
    void place_main_tabs(std::int32_t row_bottom);
    void build_sub_row(std::int32_t selected, std::int32_t limit);
    void build_bottom();
    void place_bottom(std::int32_t last_width);
    void build_centre();
    TEXT_BOX* make_title(const char* text) const;
    void build_tab_menu();
    void add_menu_entry(const char* text, const PANEL_FRAME_TAB& tab, bool separator_before);
    void open_tab_menu(WM_SCREEN_OBJECT& button);

    unsigned char take_object(WM_SCREEN_OBJECT* holder, PTRARRAY& list, PTRARRAY* widths,
                              std::int32_t index, WM_SCREEN_OBJECT* object);
    void clear_holder(WM_SCREEN_OBJECT* holder, PTRARRAY& list, PTRARRAY* widths);
    void show_icons(const PTRARRAY& list, bool from_top);
};

#endif  // MODULES_GUI_PANEL_FRAME_H
