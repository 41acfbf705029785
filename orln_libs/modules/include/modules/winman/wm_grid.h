// WM_GRID: the toolkit's table, and everything that scrolls.
//
// Rows of cells, each cell holding one screen object, with a layout per row and a pixel-exact
// vertical position. A WM_SCROLLBAR appears when the rows outgrow the box. Text boxes, menus and
// panel lists are grids.
//
// The objects are parented to the grid and deleted by it, unless `not_owned`; they stand at their
// place in the window only while their row is in view, and take part in no pass otherwise, so that
// a grid of thousands of rows costs what the visible ones cost. Objects added with the two-argument
// add_object stand beside the table and don't scroll.
//
// In a grid that overflows, Page Up, Page Down, Home and End scroll when no cell wants them. Where
// no visible cell can take the focus the grid itself takes it, and the arrow keys scroll as well.
#ifndef MODULES_WINMAN_WM_GRID_H
#define MODULES_WINMAN_WM_GRID_H

#include <cstdint>
#include <memory>
#include <vector>

#include "modules/gui/parameter.h"
#include "modules/winman/image_box.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_grid_row.h"
#include "modules/winman/wm_scrollbar.h"

class WM_BUTTON;
class WM_IMAGE;
class WM_LIST_BOX;
class WM_SCRIPT;

class WM_GRID : public WM_SCREEN_OBJECT {
public:
    // Not usable before setup.
    explicit WM_GRID(signed char window);
    WM_GRID(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
            std::int16_t columns, const std::int16_t* layout, const WM_STYLE_SET& style,
            const WM_STYLE_SET& scrollbar_style, signed char window);
    ~WM_GRID() override;

    // --- Setting up ---

    // An empty grid in the rectangle; one below 2 by 2 becomes 6 by 6. Gaps and fonts that the
    // style doesn't give are 0 and FONT_MANAGER's. The layout is that of the rows to come, see
    // set_current_layout. The row height is that of the style's font.
    void setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
               std::int16_t columns, const std::int16_t* layout, const WM_STYLE_SET& style,
               const WM_STYLE_SET& scrollbar_style);
    // The images `base`, "%s_highlighted" and "%s_alternate", from the style if it has loaded them,
    // else from the folder. A null `base` clears them. Whether the first one is there.
    bool set_images(const char* path, const char* base, const WM_STYLE_SET* style);
    // The layout of rows to come, see WM_GRID_ROW::set_layout. Fewer than one column is ignored.
    void set_current_layout(std::int16_t columns, const std::int16_t* layout);
    // The height of rows to come, without the gap.
    void set_row_height(std::int16_t height);
    // That of one row.
    void set_row_height(std::int16_t row, std::int16_t height);
    // So many rows are to fill the box, whatever its height; 0 for none.
    void set_fill_rows(std::int16_t rows);
    // Lays all rows out anew. For owners that have changed gaps or spacings in grid_style.
    void refresh_layout();

    // --- Cells ---

    // Puts an object into a cell and makes the rows up to it. What was there is deleted. Null, with
    // the object still the caller's, for a null object, a negative row, a column that the row
    // hasn't, a row beyond `max_rows` rows, or no memory.
    WM_SCREEN_OBJECT* add_object(std::int16_t column, std::int16_t row, WM_SCREEN_OBJECT* object);
    // A control of the cell's size. Null as above.
    WM_BUTTON* add_button(std::int16_t column, std::int16_t row, const WM_STYLE_SET& style,
                          const char* title, const char* hint, WM_CALLBACK callback, void* data1,
                          void* data2, unsigned char callback_flags);
    WM_SCRIPT* add_script(std::int16_t column, std::int16_t row, const WM_STYLE_SET& style,
                          const char* text);
    WM_IMAGE* add_image(std::int16_t column, std::int16_t row, const IMAGE& image,
                        WM_CALLBACK callback, void* data1, void* data2, unsigned char click_mode);
    // The styles as for WM_LIST_BOX.
    WM_LIST_BOX* add_list_box(std::int16_t column, std::int16_t row, const WM_STYLE_SET& box,
                              const WM_STYLE_SET& popup, const WM_STYLE_SET& title,
                              const WM_STYLE_SET& item, const WM_STYLE_SET& alternate,
                              const WM_STYLE_SET& separator, const char* const* lines,
                              std::int16_t line_count, const char* no_selection_text,
                              WM_CALLBACK callback, void* data1, void* data2);
    // Null for an empty cell or one that doesn't exist.
    WM_SCREEN_OBJECT* get_object(std::int16_t column, std::int16_t row) const;
    // Where an object stands; false if it is in no cell.
    bool get_object_cell(const WM_SCREEN_OBJECT* object, std::int16_t& column,
                         std::int16_t& row) const;
    // The inside of a cell in the window, also of a row that doesn't exist yet. False for a bad
    // column. Rows far out of view are held within the range of a short.
    bool get_cell_coords(std::int16_t column, std::int16_t row, std::int16_t& x1, std::int16_t& y1,
                         std::int16_t& x2, std::int16_t& y2) const;
    // Takes all rows out and goes to the top. With the flag the objects are deleted, unless they
    // are `not_owned`; otherwise they are the caller's.
    void clear(unsigned char delete_objects);
    // Deletes what is in the cells; the rows stay.
    void clear_rows();
    // With their objects; `to` is included. The rows below move up.
    void delete_rows(std::int16_t from, std::int16_t to);

    // --- Scrolling ---

    // Follows `scroll`, if it has changed: finds the visible rows, places their cells, and moves
    // the focus out of a row that has left the view.
    void check_scrolling();
    // The least way that brings the whole row into view; with `centre` its middle to the middle of
    // the view.
    void set_scroll_to_row(std::int16_t row, unsigned char centre);
    // This many pixels of the rows are above the view.
    void set_scroll_to_position(std::int32_t pixels);
    std::int32_t get_scroll_position() const {
        return scroll.max.long_value - scroll.value.long_value;
    }
    // The whole row is in view.
    bool is_row_visible(std::int16_t row) const;
    // Where a row stands, from the top of the first row; `bottom` is its last line. False if it
    // doesn't exist.
    bool get_row_y_pos(std::int16_t row, std::int32_t& top, std::int32_t& bottom) const;
    // The rows are higher than the box.
    bool is_overflowing() const { return scroll.max.long_value > 0; }
    // What is inside the border gaps; the width includes the scroll bar.
    std::int16_t get_inner_width() const;
    std::int16_t get_inner_height() const;
    // The height of all rows.
    std::int32_t get_rows_height() const;

    // --- Focus ---

    // Scrolls the cell into view and gives its object the focus. Whether it has taken it.
    bool give_child_object_focus(std::int16_t column, std::int16_t row);
    // The object of the cell that holds the window's focus, perhaps in an object of its own.
    WM_SCREEN_OBJECT* find_focal_child_object() const;

    // --- Sizes from style sets ---

    // The least height, without the gap, of a row of such a grid for a line of text in `cell_style`
    // with its gaps; null for the grid's own font.
    static std::int16_t calc_min_row_height(const WM_STYLE_SET& style,
                                            const WM_STYLE_SET* cell_style);
    // The row height with which that many rows fill the inner height.
    std::int16_t calc_row_height_from_visible_lines(std::int16_t lines) const;
    // Both border gaps, or both cell gaps, together.
    static std::int16_t calc_x_border_gap_from_style_set(const WM_STYLE_SET& style);
    static std::int16_t calc_y_border_gap_from_style_set(const WM_STYLE_SET& style);
    static std::int16_t calc_x_cell_gap_from_style_set(const WM_STYLE_SET& style);
    static std::int16_t calc_y_cell_gap_from_style_set(const WM_STYLE_SET& style);

    // --- WM_SCREEN_OBJECT ---

    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    WM_SCREEN_OBJECT* find_object_at_pos(std::int16_t px, std::int16_t py) override;
    bool find_object(WM_SCREEN_OBJECT* object) override;
    void move(std::int16_t new_x, std::int16_t new_y) override;
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    void set_area(std::int16_t new_area) override;
    void add_object(WM_SCREEN_OBJECT* object, unsigned char relative) override;
    // Also takes an object out of its cell.
    void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                       unsigned char make_relative) override;
    bool can_have_focus() override;
    void check_for_redraw() override;
    void draw_object() override;
    void visit_cells(CELL_VISITOR visit, void* data) override;

    std::vector<std::unique_ptr<WM_GRID_ROW>> rows;
    std::int16_t row_count = 0;
    // The scrolled rows that are in view, be it in part; -1 when unknown. A fixed row 0 isn't among
    // them.
    std::int16_t first_visible = -1, last_visible = -1;
    std::int32_t max_rows = -1;  // -1: no limit
    std::vector<std::int16_t> default_layout;
    std::int16_t default_columns = 0;
    std::int16_t row_height = 0;  // of rows to come, without the gap
    std::int16_t fill_rows = 0;
    WM_STYLE_SET grid_style, scrollbar_style;
    IMAGE_BOX background, highlighted_box, alternate_box;
    bool keyboard_navigation = false;         // the arrow keys move the focus between cells
    PARAMETER scroll{PARAMETER::TYPE_LONG};   // pixels left to scroll, from `max` at the top to 0
    std::unique_ptr<WM_SCROLLBAR> scrollbar;  // made by the first draw that needs it
    std::int32_t last_scroll = 0, last_max = 0;  // what check_scrolling saw last
    std::int32_t page_step = 0, line_step = 0;   // in pixels; 0: by rows

    // The wheel moves by half a row times this.
    static std::int32_t mouse_wheel_half_line_factor;

    // The step in pixels for a button of the grid's bar, up being positive: to the edge of a row,
    // or by as many whole rows as fit.
    static std::int32_t scrollbar_movement_callback(WM_SCROLLBAR* bar,
                                                    SCROLLBAR_BUTTON_DOWN_TYPE type);

private:
    // What is inside the border gaps, in the window.
    struct VIEW {
        std::int32_t left, top, right, bottom;
    };
    class QUIET;

    VIEW get_view() const;
    bool has_fixed_row() const;
    // There are rows besides a fixed one.
    bool has_scrolled_rows() const;
    std::int32_t get_bar_width() const;
    std::int32_t get_row_top(std::int16_t row) const;
    // Of the fixed row with its gap, or 0.
    std::int32_t get_fixed_height() const;
    // The row that stands, with its gap, at this height of the rows; of those that scroll.
    std::int16_t find_row_at(std::int32_t y_pos) const;
    std::int32_t get_movement(SCROLLBAR_BUTTON_DOWN_TYPE type) const;
    std::int32_t get_page_movement(bool up) const;
    bool is_row_in_view(std::int16_t row) const;

    bool make_rows(std::int16_t count);
    void sum_heights(std::int16_t from);
    void apply_fill_rows();
    // After a change of the rows or the size: the scroll range, and which layout is in force. The
    // argument tells which cells stand elsewhere now, in any case.
    enum PLACING { PLACE_NONE, PLACE_VISIBLE, PLACE_ALL };
    void update_range(PLACING placing);
    void find_visible_rows();
    void fit_scrollbar();
    void make_scrollbar();
    void place_cell(std::int16_t column, std::int16_t row, bool with_size);
    void place_row(std::int16_t row, bool with_size);
    void place_all_cells();
    void place_visible_cells();
    void take_out(std::int16_t column, std::int16_t row);
    bool set_scroll_value(std::int32_t value);
    // Calls `action(row)` for the fixed row and the rows in view, until it yields false.
    template <class ACTION>
    void for_visible_rows(ACTION action) const;
    static void copy_box(IMAGE_BOX& box, const WM_STYLE_SET& style, STYLE_BOX which);

    void follow_pointer_with_wheel();
    bool is_wheel_taken_inside(WM_SCREEN_OBJECT* holder) const;
    WM_SCREEN_OBJECT* get_cell_of(WM_SCREEN_OBJECT* object) const;
    bool find_focal_cell(std::int16_t& column, std::int16_t& row) const;
    WM_SCREEN_OBJECT* find_focusable_in_cell(std::int16_t column, std::int16_t row) const;
    void move_focus_by_keys();
    void scroll_by_keys();
    bool give_row_focus(std::int16_t row, std::int16_t column);
    void keep_focus_in_view();
    void show_focal_row();
    WM_MESG monitor_row(std::int16_t row);
    WM_MESG monitor_cells();
    WM_MESG update_row(std::int16_t row);

    void draw_background(IMAGE& buffer);
    void draw_rows(IMAGE& buffer);
    void draw_row(IMAGE& buffer, std::int16_t row, std::int32_t clip_top);
    void draw_row_background(IMAGE& buffer, std::int16_t row, const VIEW& band);
    void draw_column_dividers(IMAGE& buffer);

    const WM_SCREEN_OBJECT* shown_focal = nullptr;  // whose row was brought into view last
    bool bar_layout = false;  // the cells are laid out for the variant with scroll bar
};

#endif  // MODULES_WINMAN_WM_GRID_H
