// Grids, bars and menus on a page, with whole ticks of the window.
#ifndef MODULES_TESTS_GRID_FIXTURE_H
#define MODULES_TESTS_GRID_FIXTURE_H

#include "controls_fixture.h"
#include "modules/winman/wm_grid.h"

// A cell that can take the focus, and counts its resizes.
class TEST_CELL : public TEST_OBJECT {
public:
    explicit TEST_CELL(bool focusable = true, COLOUR fill = COLOUR_RED, std::string label = "")
        : TEST_OBJECT(0, 0, 1, 1, fill, std::move(label)) {
        allowed_focus = focusable;
    }
    void resize(std::int16_t w, std::int16_t h, unsigned char children) override {
        resizes += w != width || h != height ? 1 : 0;
        TEST_OBJECT::resize(w, h, children);
    }
    int resizes = 0;
};

class GRID_FIXTURE : public CONTROLS_FIXTURE {
protected:
    void SetUp() override {
        CONTROLS_FIXTURE::SetUp();
        grid_style = style;
        grid_style.border_left_gap = grid_style.border_right_gap = grid_style.border_top_gap =
            grid_style.border_bottom_gap = 0;
        grid_style.x_spacing = grid_style.y_spacing = 0;
        bar_style = style;
        bar_style.flags |= STYLE_SB_WITH_BUTTONS;
        bar_style.grid_scrollbar_width = 20;
        bar_style.scrollbar_button_width = 10;
    }

    // At (10, 10) on the page, with rows of `pitch`.
    WM_GRID* add_grid(int w, int h, std::int16_t pitch = 10, std::int16_t columns = 1,
                      const std::int16_t* layout = nullptr) {
        auto* grid = new WM_GRID(10, 10, static_cast<std::int16_t>(10 + w - 1),
                                 static_cast<std::int16_t>(10 + h - 1), columns, layout, grid_style,
                                 bar_style, 0);
        grid->set_row_height(static_cast<std::int16_t>(pitch - grid_style.y_spacing));
        area().add_object(grid, 0);
        return grid;
    }
    static TEST_CELL* add_cell(WM_GRID* grid, int column, int row, bool focusable = true) {
        auto* cell = new TEST_CELL(focusable);
        grid->add_object(static_cast<std::int16_t>(column), static_cast<std::int16_t>(row), cell);
        return cell;
    }
    static void fill(WM_GRID* grid, int rows, bool focusable = true) {
        for (int row = grid->row_count; row < rows; ++row) {
            add_cell(grid, 0, row, focusable);
        }
    }
    // Focus keys, updates, input and drawing.
    WM_MESG whole_tick() { return pages().monitor(0); }
    WM_MESG press_key(KEY_TYPE key) {
        type(key);
        return whole_tick();
    }
    static WM_SCREEN_OBJECT* focal() {
        return manager().get_focal_object(WM_WINDOW_MANAGER::MAIN_WINDOW);
    }

    WM_STYLE_SET grid_style, bar_style;
};

#endif  // MODULES_TESTS_GRID_FIXTURE_H
