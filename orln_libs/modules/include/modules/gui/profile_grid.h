// PROFILE_GRID: a table of labels and values, with pictures at its side.
//
// Each cell of the outer grid is a small grid of its own with two objects, a label and a value; a
// title cell is one object alone. All looks come from the skin, with the grid's prefix in front of
// their names (see GUI_SKIN). The pictures belong to a cell and push labels and values of the rows
// beside them aside.
//
//     auto* facts = new DIALOG_PROFILE_GRID(0, 0, 399, 119, PROFILE_GRID::MODE_PICTURES, 1,
//     nullptr,
//                                           5, nullptr, nullptr, nullptr, -1);
//     facts->add_title_script(0, 0, "Client", 0);
//     facts->add_script(0, 1, "Build Number", "1620", PROFILE_GRID::VALUE_BOLD);
//
// An operation on a cell that doesn't exist does nothing, or answers null or 0.
#ifndef MODULES_GUI_PROFILE_GRID_H
#define MODULES_GUI_PROFILE_GRID_H

#include <cstddef>
#include <cstdint>

#include "modules/winman/screen_object.h"
#include "platform/ptrarray.h"

class IMAGE;
class IMAGE_CACHE;
class WM_BUTTON;
class WM_GRID;
class WM_IMAGE;
class WM_SCRIPT;
class WM_STYLE_SET;

class PROFILE_GRID : public WM_SCREEN_OBJECT {
public:
    // How the rows get their height, and where titles and pictures may stand.
    enum MODE : signed char {
        MODE_FILLED = 0,    // `fill_rows` rows fill the box
        MODE_REPORT = 1,    // rows of PROFILE_ROW_HEIGHT, in the style "PROFILE_GRID_REPORT"
        MODE_PICTURES = 2,  // as MODE_FILLED, with pictures; only row 0 has titles
        MODE_DOUBLE = 3,    // rows of twice PROFILE_ROW_HEIGHT
    };

    // The parts of a cell, out of which the lowest set bit of each group counts.
    enum CELL_FLAG : unsigned long long {
        TITLE_CENTRED = 1ull << 0,
        TITLE_WITH_ICON = 1ull << 1,
        TITLE_BACK = 1ull << 2,
        TITLE_NEXT = 1ull << 3,
        LABEL_CENTRED = 1ull << 4,
        LABEL_WITH_ICON = 1ull << 5,
        LABEL_GREYED_OUT = 1ull << 6,
        LABEL_GREYED_OUT_CENTRED = 1ull << 7,
        LABEL_GREYED_OUT_WITH_ICON = 1ull << 8,
        LABEL_ITALIC = 1ull << 9,
        LABEL_ITALIC_WITH_ICON = 1ull << 10,
        LABEL_BOLD = 1ull << 11,
        LABEL_BOLD_WITH_ICON = 1ull << 12,
        VALUE_ATTRIBUTE_VERY_GOOD = 1ull << 13,
        VALUE_ATTRIBUTE_GOOD = 1ull << 14,
        VALUE_ATTRIBUTE_OK = 1ull << 15,
        VALUE_ATTRIBUTE_WEAK = 1ull << 16,
        VALUE_BOLD_ATTRIBUTE_VERY_GOOD = 1ull << 17,
        VALUE_BOLD_ATTRIBUTE_GOOD = 1ull << 18,
        VALUE_BOLD_ATTRIBUTE_OK = 1ull << 19,
        VALUE_BOLD_ATTRIBUTE_WEAK = 1ull << 20,
        VALUE_POSITIVE_CASH = 1ull << 21,
        VALUE_NEGATIVE_CASH = 1ull << 22,
        VALUE_POSITIVE_CASH_CENTRED = 1ull << 23,
        VALUE_NEGATIVE_CASH_CENTRED = 1ull << 24,
        VALUE_POSITIVE_CASH_LEFT_ALIGNED = 1ull << 25,
        VALUE_NEGATIVE_CASH_LEFT_ALIGNED = 1ull << 26,
        VALUE_STAT = 1ull << 27,
        VALUE_STAT_YELLOW_CARDS = 1ull << 28,
        VALUE_STAT_RED_CARDS = 1ull << 29,
        VALUE_STAT_AVERAGE_RATING = 1ull << 30,
        VALUE_BOLD = 1ull << 31,
        VALUE_LEFT_ALIGNED = 1ull << 32,
        LAYOUT_FIXED_LABEL = 1ull << 33,  // the label has 200 pixels, the value the rest
        LAYOUT_LABEL_ONLY = 1ull << 34,
        LAYOUT_VALUE_ONLY = 1ull << 35,
    };
    static constexpr std::int16_t FIXED_LABEL_WIDTH = 200;
    // What a picture must leave of its cell's width, beside its borders.
    static constexpr std::int16_t MIN_TEXT_WIDTH = 249;
    static constexpr std::size_t PREFIX_SIZE = 256;

    // The corners give the size, `columns` and `layout` (see WM_GRID; null: equal widths) the
    // columns. `fill_rows` counts in the modes 0 and 2.
    PROFILE_GRID(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                 signed char mode, std::int16_t columns, const std::int16_t* layout,
                 std::int16_t fill_rows, const char* prefix, WM_CALLBACK callback, void* data1,
                 void* data2, signed char window);

    // A title in a cell of its own, in the look of its place in the row. Null in mode 2 beyond row
    // 0 and in an unknown mode. The grid owns what is returned, here and below.
    WM_SCRIPT* add_title_script(std::int16_t column, std::int16_t row, const char* text,
                                unsigned long long flags);
    WM_BUTTON* add_title_button(std::int16_t column, std::int16_t row, const char* text,
                                unsigned long long flags, WM_CALLBACK cell_callback, void* data1,
                                void* data2);
    // A label with a text, a button or any object as its value, in the place of what stood in the
    // cell. Yields the value. A given object is taken over only if it is returned.
    WM_SCRIPT* add_script(std::int16_t column, std::int16_t row, const char* label,
                          const char* value, unsigned long long flags);
    WM_BUTTON* add_button(std::int16_t column, std::int16_t row, const char* label,
                          const char* value, unsigned long long flags, WM_CALLBACK cell_callback,
                          void* data1, void* data2);
    WM_SCREEN_OBJECT* add_object(std::int16_t column, std::int16_t row, const char* label,
                                 WM_SCREEN_OBJECT* object, unsigned long long flags);
    // A child of the whole, outside the cells.
    using WM_SCREEN_OBJECT::add_object;

    // The value and the label of a nested cell; null for a title.
    WM_SCREEN_OBJECT* get_entry_object(std::int16_t column, std::int16_t row) const;
    WM_SCRIPT* get_label_script(std::int16_t column, std::int16_t row) const;
    // A cell that isn't nested.
    WM_SCREEN_OBJECT* get_title_object(std::int16_t column, std::int16_t row) const;

    std::int16_t get_number_of_columns(std::int16_t row) const;
    std::int16_t get_number_of_rows() const;
    void delete_rows(std::int16_t from, std::int16_t to);
    // All rows, pictures and the special object go.
    void clear();
    // The columns of rows that are added from now on.
    void set_current_layout(std::int16_t columns, const std::int16_t* layout);

    // The row that is highlighted, the first of several; -1 for none, also as an argument. A row
    // beyond the grid is refused. Setting it sets `selection_changed`.
    std::int16_t get_selected_row() const;
    void set_selected_row(std::int16_t row);
    unsigned char get_highlighted(std::int16_t row) const;
    void set_highlighted(std::int16_t row, unsigned char on);

    // One object over a range of cells, which replaces the earlier one; or over the first column
    // from row 1 to the last row that fits. The rows needn't exist. 1 if taken over; a null object
    // or a column that doesn't exist leaves everything as it was.
    unsigned char set_special_object(std::int16_t x1, std::int16_t y1, std::int16_t x2,
                                     std::int16_t y2, WM_SCREEN_OBJECT* object);
    unsigned char set_special_object(WM_SCREEN_OBJECT* object);
    void clear_special_object();

    // Pixels left to scroll, the greatest position being the top; see WM_GRID::scroll.
    std::int32_t get_scroll_position() const;
    void set_scroll_position(std::int32_t position);
    bool is_scroll_at_top() const;
    bool is_scroll_at_bottom() const;
    void set_scroll_to_top();
    void set_scroll_to_bottom();

    // A picture at the left or right side of a cell, reaching down as far as there is room, with a
    // black frame if `border` is set. Null for row 0, for a row that doesn't fit, and in any mode
    // but 2. The first form copies the picture and reduces what is too large; the second one opens
    // it in the cache, with its proportions kept, as EXACT_SIZE or, with `reload`, as RELOAD. A
    // picture that can't be opened leaves an empty image in the place.
    WM_IMAGE* add_left_picture_image(std::int16_t column, std::int16_t row, const IMAGE& picture,
                                     unsigned char border, WM_CALLBACK image_callback, void* data1,
                                     void* data2);
    WM_IMAGE* add_left_picture_image(std::int16_t column, std::int16_t row, IMAGE_CACHE& cache,
                                     const char* path, const char* name, unsigned char reload,
                                     unsigned char border, WM_CALLBACK image_callback, void* data1,
                                     void* data2);
    WM_IMAGE* add_right_picture_image(std::int16_t column, std::int16_t row, const IMAGE& picture,
                                      unsigned char border, WM_CALLBACK image_callback, void* data1,
                                      void* data2);
    WM_IMAGE* add_right_picture_image(std::int16_t column, std::int16_t row, IMAGE_CACHE& cache,
                                      const char* path, const char* name, unsigned char reload,
                                      unsigned char border, WM_CALLBACK image_callback, void* data1,
                                      void* data2);
    void clear_left_picture_images();
    void clear_right_picture_images();
    // The largest picture for a cell. False where none may stand.
    bool get_picture_room(std::int16_t column, std::int16_t row, std::int32_t& room_width,
                          std::int32_t& room_height) const;
    // What the pictures take of a cell's width at that side.
    std::int16_t get_left_border_adjustment(std::int16_t column, std::int16_t row) const;
    std::int16_t get_right_border_adjustment(std::int16_t column, std::int16_t row) const;

    signed char mode;
    char skin_prefix[PREFIX_SIZE];
    WM_GRID* grid = nullptr;                     // a child
    PTRARRAY left_images, right_images;          // PICTURE*, owned
    WM_SCREEN_OBJECT* special_object = nullptr;  // a child; null for none
    bool selection_changed = false;              // to be cleared by who reads it

private:
    // A picture and the column that it stands in. The image is a child of `grid`.
    struct PICTURE {
        std::int16_t column;
        WM_IMAGE* image;
    };
    enum SIDE { LEFT, RIGHT };

    WM_STYLE_SET* get_title_style(std::int16_t column, std::int16_t row,
                                  unsigned long long flags) const;
    WM_GRID* get_nested(std::int16_t column, std::int16_t row) const;
    WM_GRID* add_nested(std::int16_t column, std::int16_t row, const char* label,
                        unsigned long long flags);
    bool finish_nested(WM_GRID& cell, std::int16_t column, std::int16_t row,
                       WM_SCREEN_OBJECT* value);
    std::int16_t get_last_visible_row() const;
    // Gives a nested cell the gaps that the pictures beside it ask for now.
    void adjust_cell(std::int16_t column, std::int16_t row);
    void adjust_cells(std::int16_t column, std::int16_t from_row);
    std::int16_t get_border_adjustment(const PTRARRAY& pictures, std::int16_t column,
                                       std::int16_t row) const;
    WM_IMAGE* add_picture(SIDE side, std::int16_t column, std::int16_t row, const IMAGE& picture,
                          unsigned char border, WM_CALLBACK image_callback, void* data1,
                          void* data2);
    WM_IMAGE* add_picture(SIDE side, std::int16_t column, std::int16_t row, IMAGE_CACHE& cache,
                          const char* path, const char* name, unsigned char reload,
                          unsigned char border, WM_CALLBACK image_callback, void* data1,
                          void* data2);
    void clear_pictures(PTRARRAY& pictures);
};

#endif  // MODULES_GUI_PROFILE_GRID_H
