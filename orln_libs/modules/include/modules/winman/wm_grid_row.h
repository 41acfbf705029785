// WM_GRID_ROW: one row of a WM_GRID, its cells and where they stand.
#ifndef MODULES_WINMAN_WM_GRID_ROW_H
#define MODULES_WINMAN_WM_GRID_ROW_H

#include <cstdint>
#include <memory>

class WM_GRID;
class WM_SCREEN_OBJECT;
class WM_STYLE_SET;

// A row belongs to its grid, which keeps `bottom` of all rows in step. x is counted from the grid's
// left edge, y from the row's top; both corners of a cell belong to it. A row without a grid may be
// used to work out where cells would stand.
class WM_GRID_ROW {
public:
    // Which of the two layouts: without and with room for the grid's scroll bar.
    enum VARIANT { WITHOUT_SCROLLBAR = 0, WITH_SCROLLBAR = 1, VARIANT_COUNT = 2 };

    explicit WM_GRID_ROW(WM_GRID* of_grid = nullptr) : grid(of_grid) {}
    ~WM_GRID_ROW() { clear(); }
    WM_GRID_ROW(const WM_GRID_ROW&) = delete;
    WM_GRID_ROW& operator=(const WM_GRID_ROW&) = delete;

    // Deletes the objects, unless they are `not_owned`, and forgets the columns.
    void clear();
    // Puts an object, or null, into a cell. The one that was there is hidden and, with
    // `delete_old`, deleted unless it is `not_owned`. False for a column that doesn't exist.
    bool set_object(std::int16_t column, WM_SCREEN_OBJECT* object, unsigned char delete_old);
    // Null for an empty cell or a column that doesn't exist.
    WM_SCREEN_OBJECT* get_object(std::int16_t column) const;
    // `pitch` is the height with the gap to the next row. Places the inside of the cells too.
    void set_height(std::int16_t pitch, const WM_STYLE_SET& style);
    // False, and all 0, for a column that doesn't exist. A column without width has x2 = x1 - 1.
    bool get_coords(std::int16_t column, unsigned char with_scrollbar, std::int16_t& x1,
                    std::int16_t& y1, std::int16_t& x2, std::int16_t& y2) const;
    // Works the columns out anew for a grid of that width. The bar's width is that of the grid's
    // scroll bar style, or of `style` for a row without a grid.
    void calc_ratios(std::int16_t width, const WM_STYLE_SET& style);
    // `new_layout` has `new_columns` entries, which are copied: a negative one is a fixed width of
    // so many pixels, the others share the rest by weight, without losing a pixel. Null is a weight
    // of 1 for all. Objects in columns that go are deleted.
    void set_layout(std::int16_t width, std::int16_t new_columns, const std::int16_t* new_layout,
                    const WM_STYLE_SET& style);

    WM_GRID* grid;
    bool highlighted = false;                      // drawn in the highlight
    std::unique_ptr<WM_SCREEN_OBJECT*[]> objects;  // null for an empty cell
    std::int16_t columns = 0;
    std::int16_t height = 0;                     // without the gap to the next row
    std::int16_t cell_top = 0, cell_bottom = 0;  // the inside of the cells
    std::int32_t bottom = 0;                     // heights and gaps of all rows up to this one
    std::unique_ptr<std::int16_t[]> left[VARIANT_COUNT], right[VARIANT_COUNT];
    std::unique_ptr<std::int16_t[]> layout;  // as given to set_layout
    std::int16_t extra_last = 0;             // added to the last column's right edge
    std::int16_t x_offset = 0;               // added to every x
};

#endif  // MODULES_WINMAN_WM_GRID_ROW_H
