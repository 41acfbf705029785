// Layout, cells, scrolling, focus and drawing of WM_GRID.
#include <chrono>
#include <memory>

#include "grid_fixture.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_script.h"

namespace {

class GridTest : public GRID_FIXTURE {
protected:
    // The left and right edges of a row's columns.
    static std::vector<int> edges(const WM_GRID_ROW& row, bool with_bar) {
        std::vector<int> result;
        for (std::int16_t column = 0; column < row.columns; ++column) {
            std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
            EXPECT_TRUE(row.get_coords(column, with_bar, x1, y1, x2, y2));
            result.push_back(x1);
            result.push_back(x2);
        }
        return result;
    }
    static int top_of(const WM_GRID* grid, std::int16_t row) {
        std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        grid->get_cell_coords(0, row, x1, y1, x2, y2);
        return y1;
    }
};

// --- Layout ---

TEST_F(GridTest, WeightsShareTheRoomWithoutLosingAPixel) {
    grid_style.border_left_gap = 3;
    grid_style.border_right_gap = 4;
    grid_style.cell_left_gap = 1;
    grid_style.cell_right_gap = 2;
    grid_style.x_spacing = 2;
    WM_GRID_ROW row;
    grid_style.grid_scrollbar_width = 20;
    const std::int16_t layout[] = {1, 1, 1};
    // 100 - 3 - 4 - 2 gaps of 5 leave 83: 27, 28, 28.
    row.set_layout(100, 3, layout, grid_style);
    EXPECT_EQ((std::vector<int>{3, 29, 35, 62, 68, 95}), edges(row, false));
    // 63 with the bar.
    EXPECT_EQ((std::vector<int>{3, 23, 29, 49, 55, 75}), edges(row, true));
}

TEST_F(GridTest, FixedColumnsKeepTheirWidth) {
    WM_GRID_ROW row;
    grid_style.grid_scrollbar_width = 15;
    const std::int16_t layout[] = {-30, 1, 3};
    row.set_layout(100, 3, layout, grid_style);
    EXPECT_EQ((std::vector<int>{0, 29, 30, 46, 47, 99}), edges(row, false));
    EXPECT_EQ((std::vector<int>{0, 29, 30, 42, 43, 84}), edges(row, true));
    row.x_offset = 7;
    row.extra_last = 5;
    EXPECT_EQ((std::vector<int>{7, 36, 37, 53, 54, 111}), edges(row, false));
    // More fixed pixels than there are: weighted columns have no width, not a negative one.
    const std::int16_t wide[] = {-90, 1, -30};
    row.x_offset = row.extra_last = 0;
    row.set_layout(100, 3, wide, grid_style);
    EXPECT_EQ((std::vector<int>{0, 89, 90, 89, 90, 119}), edges(row, false));
    const std::int16_t nothing[] = {0, 0};
    row.set_layout(100, 2, nothing, grid_style);
    EXPECT_EQ((std::vector<int>{0, -1, 0, -1}), edges(row, false));
}

TEST_F(GridTest, RowHeightLeavesRoomForTheGaps) {
    grid_style.cell_top_gap = 3;
    grid_style.cell_bottom_gap = 2;
    grid_style.y_spacing = 4;
    WM_GRID_ROW row;
    row.set_height(20, grid_style);
    EXPECT_EQ(16, row.height);
    EXPECT_EQ(3, row.cell_top);
    EXPECT_EQ(13, row.cell_bottom);
    row.set_height(1, grid_style);
    EXPECT_EQ(7, row.height);
    EXPECT_EQ(3, row.cell_top);
    EXPECT_EQ(4, row.cell_bottom);
}

TEST_F(GridTest, TinyBoxBecomesUsable) {
    WM_GRID grid(5, 5, 5, 30, 0, nullptr, grid_style, bar_style, 0);
    EXPECT_EQ(6, grid.width);
    EXPECT_EQ(6, grid.height);
    EXPECT_EQ(1, grid.default_columns);
}

TEST_F(GridTest, RowsFillTheBox) {
    grid_style.y_spacing = 2;
    WM_GRID* grid = add_grid(50, 58);
    grid->set_fill_rows(3);
    EXPECT_EQ(18, grid->row_height);
    fill(grid, 3);
    EXPECT_EQ(58, grid->get_rows_height());
    EXPECT_FALSE(grid->is_overflowing());
    grid->resize(50, 100, 0);
    EXPECT_EQ(32, grid->row_height);
    EXPECT_EQ(32, grid->get_object(0, 2)->height);
    EXPECT_EQ(10 + 2 * 34, grid->get_object(0, 2)->y);
    grid->resize(50, 3, 0);
    EXPECT_EQ(1, grid->row_height);
}

// --- Cells ---

TEST_F(GridTest, CellsAreSizedPlacedAndOwned) {
    grid_style.border_left_gap = grid_style.border_top_gap = 2;
    grid_style.cell_left_gap = grid_style.cell_top_gap = 1;
    grid_style.x_spacing = 3;
    const std::int16_t layout[] = {-20, 1};
    WM_GRID* grid = add_grid(60, 40, 10, 2, layout);
    grid->set_area(1);
    TEST_CELL* cell = add_cell(grid, 1, 2);
    EXPECT_EQ(3, grid->row_count);
    EXPECT_EQ(10 + 2 + 20 + 1 + 3, cell->x);
    EXPECT_EQ(10 + 2 + 20 + 1, cell->y);
    EXPECT_EQ(60 - 2 - 4 - 20, cell->width);
    EXPECT_EQ(9, cell->height);
    EXPECT_EQ(1, cell->area);
    EXPECT_EQ(grid, cell->parent);
    EXPECT_TRUE(grid->find_object(cell));
    std::int16_t column = -1, row = -1;
    EXPECT_TRUE(grid->get_object_cell(cell, column, row));
    EXPECT_EQ(1, column);
    EXPECT_EQ(2, row);

    // An old object is replaced, a refused one stays the caller's.
    add_cell(grid, 1, 2);
    EXPECT_EQ(1, TEST_OBJECT::alive);
    auto refused = std::make_unique<TEST_CELL>();
    EXPECT_EQ(nullptr, grid->add_object(2, 0, refused.get()));
    EXPECT_EQ(nullptr, grid->add_object(0, -1, refused.get()));
    EXPECT_EQ(nullptr, grid->add_object(0, 0, nullptr));
    grid->max_rows = 3;
    EXPECT_EQ(nullptr, grid->add_object(0, 3, refused.get()));
    EXPECT_EQ(nullptr, refused->parent);
    EXPECT_EQ(3, grid->row_count);

    // Taking out gives the object back, or deletes it.
    WM_SCREEN_OBJECT* taken = grid->get_object(1, 2);
    grid->remove_object(taken, 0, 0);
    EXPECT_EQ(nullptr, grid->get_object(1, 2));
    EXPECT_EQ(nullptr, taken->parent);
    grid->add_object(0, 0, taken);
    grid->remove_object(taken, 1, 0);
    EXPECT_EQ(1, TEST_OBJECT::alive);

    // Free-standing objects are children, not cells.
    grid->add_object(new TEST_CELL, 1);
    EXPECT_EQ(1, grid->objects.get_count());
}

TEST_F(GridTest, ControlsAreMadeAtTheCellsSize) {
    const std::int16_t layout[] = {1, 1};
    WM_GRID* grid = add_grid(60, 40, 10, 2, layout);
    WM_BUTTON* button = grid->add_button(1, 3, style, "Go", nullptr, count, this, nullptr, 2);
    EXPECT_EQ(40, button->x);
    EXPECT_EQ(40, button->y);
    EXPECT_EQ(30, button->width);
    EXPECT_EQ(10, button->height);
    EXPECT_STREQ("Label", grid->add_script(0, 3, style, "Label")->get_text());
    EXPECT_EQ(nullptr, grid->add_script(2, 0, style, "Nowhere"));
}

TEST_F(GridTest, RowsAreDeletedWithTheirObjects) {
    WM_GRID* grid = add_grid(50, 100);
    fill(grid, 5);
    WM_SCREEN_OBJECT* last = grid->get_object(0, 4);
    grid->delete_rows(1, 2);
    EXPECT_EQ(3, grid->row_count);
    EXPECT_EQ(3, TEST_OBJECT::alive);
    EXPECT_EQ(last, grid->get_object(0, 2));
    EXPECT_EQ(30, last->y);
    grid->delete_rows(2, 100);
    EXPECT_EQ(2, grid->row_count);
    grid->clear_rows();
    EXPECT_EQ(2, grid->row_count);
    EXPECT_EQ(0, TEST_OBJECT::alive);
    TEST_CELL* kept = add_cell(grid, 0, 0);
    kept->not_owned = true;
    grid->clear(1);
    EXPECT_EQ(0, grid->row_count);
    EXPECT_EQ(1, TEST_OBJECT::alive);
    delete kept;
    TEST_CELL* given_back = add_cell(grid, 0, 0);
    grid->clear(0);
    EXPECT_EQ(1, TEST_OBJECT::alive);
    delete given_back;
}

// --- Scrolling ---

TEST_F(GridTest, WithoutOverflowThereIsNoBar) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 5);
    draw_all();
    EXPECT_EQ(0, grid->scroll.min.long_value);
    EXPECT_EQ(0, grid->scroll.max.long_value);
    EXPECT_EQ(nullptr, grid->scrollbar);
    EXPECT_FALSE(grid->can_have_focus());
    EXPECT_EQ(50, grid->get_object(0, 0)->width);
}

TEST_F(GridTest, TheRowThatOverflowsLaysAllOutOnce) {
    const std::int16_t layout[] = {-15, 1};
    WM_GRID* grid = add_grid(50, 50, 10, 2, layout);
    std::vector<TEST_CELL*> fixed, weighted;
    for (int row = 0; row < 8; ++row) {
        fixed.push_back(add_cell(grid, 0, row));
        weighted.push_back(add_cell(grid, 1, row));
    }
    for (const TEST_CELL* cell : fixed) {
        EXPECT_EQ(1, cell->resizes);
        EXPECT_EQ(15, cell->width);
    }
    for (int row = 0; row < 8; ++row) {
        EXPECT_EQ(row < 5 ? 2 : 1, weighted[static_cast<std::size_t>(row)]->resizes);
        EXPECT_EQ(15, weighted[static_cast<std::size_t>(row)]->width);
    }
    EXPECT_EQ(30, grid->scroll.max.long_value);
    EXPECT_EQ(30, grid->scroll.value.long_value);
    draw_all();
    ASSERT_NE(nullptr, grid->scrollbar);
    EXPECT_EQ(40, grid->scrollbar->x);
    EXPECT_EQ(20, grid->scrollbar->width);
    EXPECT_EQ(50, grid->scrollbar->height);
    EXPECT_EQ(SCROLLBAR_VERTICAL_WITH_BUTTONS, grid->scrollbar->type);
    EXPECT_EQ(5, grid->scrollbar->wheel_step);
    // 30 pixels of travel in all, of which 50 of 80 pixels are in view.
    EXPECT_EQ(18, grid->scrollbar->slider_size);
    EXPECT_EQ(12, grid->scrollbar->travel);
    // Back again when the rows go.
    grid->delete_rows(5, 7);
    EXPECT_EQ(nullptr, grid->scrollbar);
    EXPECT_EQ(35, weighted[0]->width);
}

TEST_F(GridTest, TheBarIsNoWiderThanTheGrid) {
    WM_GRID* grid = add_grid(12, 50);
    fill(grid, 8);
    draw_all();
    ASSERT_NE(nullptr, grid->scrollbar);
    EXPECT_EQ(10, grid->scrollbar->x);
    EXPECT_EQ(12, grid->scrollbar->width);
}

TEST_F(GridTest, NoBarWhereTheStyleForbidsIt) {
    grid_style.flags |= STYLE_GRID_NO_SCROLLBAR;
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 8);
    draw_all();
    EXPECT_EQ(nullptr, grid->scrollbar);
    EXPECT_TRUE(grid->is_overflowing());
    EXPECT_EQ(50, grid->get_object(0, 7)->width);
}

TEST_F(GridTest, TheViewStaysPutWhileRowsCome) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 10);
    grid->set_scroll_to_position(23);
    EXPECT_EQ(27, grid->scroll.value.long_value);
    EXPECT_EQ(2, grid->first_visible);
    EXPECT_EQ(7, grid->last_visible);
    EXPECT_EQ(10 - 3, grid->get_object(0, 2)->y);
    fill(grid, 20);
    EXPECT_EQ(23, grid->get_scroll_position());
    EXPECT_EQ(127, grid->scroll.value.long_value);
    grid->delete_rows(6, 19);
    EXPECT_EQ(10, grid->get_scroll_position());
    EXPECT_EQ(10, grid->get_object(0, 1)->y);
}

TEST_F(GridTest, ScrollsToRows) {
    grid_style.y_spacing = 2;
    WM_GRID* grid = add_grid(50, 50);  // rows of 8 with gaps of 2
    fill(grid, 30);
    const auto position_after = [&](std::int16_t row, unsigned char centre) {
        grid->set_scroll_to_row(row, centre);
        return grid->get_scroll_position();
    };
    EXPECT_EQ(298 - 50, grid->scroll.max.long_value);
    EXPECT_EQ(0, position_after(4, 0));
    EXPECT_EQ(58 - 50, position_after(5, 0));
    EXPECT_TRUE(grid->is_row_visible(5));
    EXPECT_FALSE(grid->is_row_visible(0));
    EXPECT_EQ(0, position_after(0, 0));
    EXPECT_EQ(100 + 4 - 25, position_after(10, 1));
    EXPECT_EQ(248, position_after(29, 1));
    EXPECT_EQ(248, position_after(99, 1)) << "a row that doesn't exist";
    std::int32_t top = 0, bottom = 0;
    EXPECT_TRUE(grid->get_row_y_pos(29, top, bottom));
    EXPECT_EQ(290, top);
    EXPECT_EQ(297, bottom);
    EXPECT_FALSE(grid->get_row_y_pos(30, top, bottom));
}

TEST_F(GridTest, StepsEndAtEdgesOfRows) {
    WM_GRID* grid = add_grid(50, 48);
    fill(grid, 20);
    for (const std::int16_t row : {std::int16_t{3}, std::int16_t{4}}) {
        grid->set_row_height(row, 25);
    }
    draw_all();
    WM_SCROLLBAR& bar = *grid->scrollbar;
    const auto position_after = [&](SCROLLBAR_BUTTON_DOWN_TYPE type) {
        bar.move_slew_var(type);
        grid->check_scrolling();
        return grid->get_scroll_position();
    };
    EXPECT_EQ(10, position_after(SCROLLBAR_LINE_DOWN));
    grid->set_scroll_to_position(33);
    EXPECT_EQ(55, position_after(SCROLLBAR_LINE_DOWN));
    EXPECT_EQ(30, position_after(SCROLLBAR_LINE_UP));
    EXPECT_EQ(20, position_after(SCROLLBAR_LINE_UP));
    // Of 48 pixels from 20 on the rows 2 and 3 fit.
    EXPECT_EQ(55, position_after(SCROLLBAR_PAGE_DOWN));
    EXPECT_EQ(100, position_after(SCROLLBAR_PAGE_DOWN));
    EXPECT_EQ(55, position_after(SCROLLBAR_PAGE_UP));
    EXPECT_EQ(10, position_after(SCROLLBAR_PAGE_UP)) << "45 of the 48 pixels";
    EXPECT_EQ(0, position_after(SCROLLBAR_PAGE_UP));
    EXPECT_EQ(0, position_after(SCROLLBAR_LINE_UP));
    grid->set_scroll_to_position(9999);
    const std::int32_t last = grid->scroll.max.long_value;
    EXPECT_EQ(last, position_after(SCROLLBAR_LINE_DOWN));
    grid->line_step = 7;
    EXPECT_EQ(last - 7, position_after(SCROLLBAR_LINE_UP));
    grid->page_step = 100;
    EXPECT_EQ(last - 107, position_after(SCROLLBAR_PAGE_UP));
}

TEST_F(GridTest, AFixedRowStaysAboveTheOthers) {
    grid_style.flags |= STYLE_GRID_FIX_TOP_ROW;
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 20);
    grid->set_scroll_to_position(15);
    EXPECT_EQ(10, grid->get_object(0, 0)->y);
    EXPECT_EQ(2, grid->first_visible);
    EXPECT_EQ(6, grid->last_visible);
    EXPECT_EQ(10 + 20 - 15, grid->get_object(0, 2)->y);
    EXPECT_TRUE(grid->is_row_visible(0));
    draw_all();
    grid->scrollbar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(20, grid->get_scroll_position());
    grid->scrollbar->move_slew_var(SCROLLBAR_PAGE_DOWN);
    EXPECT_EQ(60, grid->get_scroll_position());
    grid->scrollbar->move_slew_var(SCROLLBAR_PAGE_UP);
    EXPECT_EQ(20, grid->get_scroll_position());
    grid->scrollbar->move_slew_var(SCROLLBAR_PAGE_UP);
    EXPECT_EQ(0, grid->get_scroll_position());
    grid->set_scroll_to_row(9, 0);
    EXPECT_EQ(50, grid->get_scroll_position());
    grid->set_scroll_to_row(5, 0);
    EXPECT_EQ(40, grid->get_scroll_position()) << "below the fixed row";
    // The fixed row hides what is scrolled under it from the pointer.
    grid->set_scroll_to_position(15);
    EXPECT_EQ(grid->get_object(0, 0), grid->find_object_at_pos(12, 16));
    EXPECT_EQ(grid->get_object(0, 2), grid->find_object_at_pos(12, 21));
}

TEST_F(GridTest, AFixedRowAloneRests) {
    grid_style.flags |= STYLE_GRID_FIX_TOP_ROW;
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 1);
    grid->check_scrolling();
    draw_all();
    grid->check_scrolling();
    EXPECT_FALSE(take_redraw());
}

TEST_F(GridTest, LongListsCostWhatIsInView) {
    WM_GRID* grid = add_grid(50, 50);
    const auto start = std::chrono::steady_clock::now();
    fill(grid, 20000);
    const auto filled = std::chrono::steady_clock::now();
    // Beyond what a short holds.
    EXPECT_EQ(200000 - 50, grid->scroll.max.long_value);
    for (int i = 0; i < 20000; ++i) {
        grid->set_scroll_to_position(i * 10);
    }
    grid->set_scroll_to_position(199900);
    EXPECT_EQ(10, grid->get_object(0, 19990)->y);
    EXPECT_EQ(10, grid->get_object(0, 19990)->height);
    EXPECT_EQ(19990, grid->first_visible);
    const auto scrolled = std::chrono::steady_clock::now();
    const std::chrono::duration<double> filling = filled - start, scrolling = scrolled - filled;
    // Some hundredths of a second; with work for all rows at each step it would be minutes.
    EXPECT_LT(filling.count(), 5);
    EXPECT_LT(scrolling.count(), 5);
}

// --- Passes ---

TEST_F(GridTest, OnlyRowsInViewTakePart) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 10);
    grid->set_scroll_to_position(25);
    draw_all();
    whole_tick();
    for (std::int16_t row = 0; row < 10; ++row) {
        const auto* cell = static_cast<TEST_CELL*>(grid->get_object(0, row));
        const int in_view = row >= 2 && row <= 7 ? 1 : 0;
        EXPECT_EQ(in_view, cell->monitors) << row;
        EXPECT_EQ(in_view, cell->updates) << row;
        EXPECT_EQ(in_view == 1, cell->draws > 0) << row;
    }
    // Clipped at the edges: row 2 shows its lower half, row 7 its upper one.
    EXPECT_EQ(COLOUR_BLACK, pixel(20, 9));
    EXPECT_EQ(COLOUR_RED, pixel(20, 10));
    EXPECT_EQ(COLOUR_RED, pixel(20, 59));
    EXPECT_EQ(COLOUR_BLACK, pixel(20, 60));
    // A row that has left the view isn't on the buffer any more.
    grid->set_scroll_to_position(50);
    EXPECT_FALSE(grid->get_object(0, 2)->drawn);
    grid->move(30, 20);
    EXPECT_EQ(30, grid->get_object(0, 5)->x);
    EXPECT_EQ(20, grid->get_object(0, 5)->y);
    EXPECT_EQ(60, grid->scrollbar->x);
}

TEST_F(GridTest, ScrolledOutPartsDontReact) {
    WM_GRID* grid = add_grid(50, 50);
    WM_BUTTON* button = grid->add_button(0, 0, style, "", nullptr, count, this, nullptr, 2);
    fill(grid, 20, false);
    grid->set_scroll_to_position(5);
    draw_all();
    point(20, 8);  // above the grid, where the button's hidden half would be
    press();
    release();
    EXPECT_EQ(0, calls);
    point(20, 11);
    EXPECT_EQ(button, pages().find_object_at_pos(20, 11));
    press();
    release();
    EXPECT_EQ(1, calls);
    EXPECT_FALSE(manager().get_is_in_me_region(WM_WINDOW_MANAGER::MAIN_WINDOW)->is_set());
}

WM_MESG clear_grid(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
    object->not_owned = true;  // the click isn't over
    static_cast<WM_GRID*>(data1)->clear(1);
    return WM_MESG_NONE;
}

TEST_F(GridTest, CallbacksMayChangeTheRows) {
    WM_GRID* grid = add_grid(50, 50);
    WM_BUTTON* button = grid->add_button(0, 0, style, "", nullptr, clear_grid, grid, nullptr, 1);
    fill(grid, 20, false);
    draw_all();
    point(20, 12);
    EXPECT_EQ(WM_MESG_HANDLED, press());
    EXPECT_EQ(0, grid->row_count);
    delete button;

    fill(grid, 3);
    auto* leaving = static_cast<TEST_CELL*>(grid->get_object(0, 1));
    leaving->monitor_result = WM_MESG_REMOVE_OBJECT;
    whole_tick();
    EXPECT_EQ(nullptr, grid->get_object(0, 1));
    EXPECT_EQ(1, static_cast<TEST_CELL*>(grid->get_object(0, 0))->monitors) << "the walk goes on";
}

// --- Focus and keys ---

TEST_F(GridTest, TheFocusWalkEntersCells) {
    const std::int16_t layout[] = {1, 1};
    WM_GRID* grid = add_grid(50, 50, 10, 2, layout);
    TEST_CELL* cells[] = {add_cell(grid, 0, 0), add_cell(grid, 1, 0), add_cell(grid, 1, 1)};
    press_key(KEY_TAB);
    for (const int expected : {1, 2, 0, 1}) {
        EXPECT_EQ(cells[(expected + 2) % 3], focal());
        press_key(KEY_TAB);
        EXPECT_EQ(cells[expected], focal());
    }
}

TEST_F(GridTest, ArrowsMoveTheFocusBetweenCells) {
    const std::int16_t layout[] = {1, 1, 1};
    WM_GRID* grid = add_grid(60, 50, 10, 3, layout);
    grid->keyboard_navigation = true;
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 3; ++column) {
            add_cell(grid, column, row, column != 1 && row % 3 != 1);
        }
    }
    EXPECT_TRUE(grid->give_child_object_focus(0, 0));
    EXPECT_FALSE(grid->give_child_object_focus(1, 0));
    const auto focus_after = [&](KEY_TYPE key) {
        press_key(key);
        EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code()) << "consumed";
        std::int16_t column = -1, row = -1;
        grid->get_object_cell(focal(), column, row);
        return row * 10 + column;
    };
    EXPECT_EQ(2, focus_after(KEY_RIGHT));
    EXPECT_EQ(22, focus_after(KEY_DOWN));
    EXPECT_EQ(20, focus_after(KEY_LEFT));
    EXPECT_EQ(30, focus_after(KEY_DOWN));
    EXPECT_EQ(50, focus_after(KEY_DOWN));
    EXPECT_TRUE(grid->is_row_visible(5)) << "scrolling follows";
    EXPECT_EQ(30, focus_after(KEY_UP));
    EXPECT_EQ(grid->get_object(0, 3), grid->find_focal_child_object());
}

TEST_F(GridTest, TheFocusStaysInView) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 30);
    grid->give_child_object_focus(0, 2);
    grid->set_scroll_to_position(100);
    EXPECT_EQ(grid->get_object(0, 10), focal()) << "left at the top: the first row in view";
    grid->set_scroll_to_position(0);
    EXPECT_EQ(grid->get_object(0, 4), focal()) << "left at the bottom: the last row in view";
}

TEST_F(GridTest, TheFocusThatFollowsTheViewDoesntMoveIt) {
    WM_GRID* grid = add_grid(50, 55);
    fill(grid, 30);
    draw_all();
    grid->give_child_object_focus(0, 0);
    grid->set_scroll_to_position(13);
    EXPECT_EQ(grid->get_object(0, 1), focal()) << "in view in part";
    whole_tick();
    EXPECT_EQ(13, grid->get_scroll_position());
}

TEST_F(GridTest, TheFocusWalkBringsRowsWhollyIntoView) {
    WM_GRID* grid = add_grid(50, 55);
    fill(grid, 30);
    draw_all();
    grid->give_child_object_focus(0, 4);
    press_key(KEY_TAB);
    EXPECT_EQ(grid->get_object(0, 5), focal());
    EXPECT_TRUE(grid->is_row_visible(5));
    grid->set_scroll_to_position(8);
    whole_tick();
    EXPECT_EQ(8, grid->get_scroll_position()) << "the user may scroll it out again";
}

TEST_F(GridTest, KeysScrollWhatNoCellWants) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 30, false);
    draw_all();
    press_key(KEY_TAB);
    EXPECT_EQ(grid, focal()) << "without focusable cells the grid itself takes the focus";
    const auto position_after = [&](KEY_TYPE key) {
        press_key(key);
        return grid->get_scroll_position();
    };
    EXPECT_EQ(10, position_after(KEY_DOWN));
    EXPECT_EQ(60, position_after(KEY_PAGE_DOWN));
    EXPECT_EQ(50, position_after(KEY_UP));
    EXPECT_EQ(0, position_after(KEY_PAGE_UP));
    EXPECT_EQ(250, position_after(KEY_END));
    EXPECT_EQ(0, position_after(KEY_HOME));
    EXPECT_EQ(COLOUR_RED, pixel(10, 10)) << "a frame in the highlight colour";
    EXPECT_EQ(COLOUR_RED, pixel(59, 59));
}

TEST_F(GridTest, TheWheelGoesToTheInnermostGrid) {
    WM_GRID* outer = add_grid(100, 100, 50);
    auto* inner = new WM_GRID(0, 0, 9, 9, 1, nullptr, grid_style, bar_style, 0);
    inner->set_row_height(10);
    outer->add_object(0, 0, inner);
    fill(inner, 20);
    fill(outer, 10);
    draw_all();
    point(20, 80);
    EXPECT_TRUE(manager().has_mouse_wheel_focus(outer->scrollbar.get()));
    MOUSE::wheel_pos = -1;
    whole_tick();
    EXPECT_EQ(25, outer->get_scroll_position());
    outer->set_scroll_to_position(0);
    point(20, 20);
    EXPECT_TRUE(manager().has_mouse_wheel_focus(inner->scrollbar.get()));
    MOUSE::wheel_pos = -2;
    whole_tick();
    EXPECT_EQ(10, inner->get_scroll_position());
    EXPECT_EQ(0, outer->get_scroll_position());
    point(20, 80);
    point(20, 80);
    EXPECT_TRUE(manager().has_mouse_wheel_focus(outer->scrollbar.get()));
    point(150, 140);
    EXPECT_EQ(nullptr, manager().get_mouse_wheel_focus(WM_WINDOW_MANAGER::MAIN_WINDOW));
}

// --- Drawing ---

TEST_F(GridTest, RowsAndDividersAreDrawn) {
    grid_style.flags |= STYLE_GRID_COLUMN_DIVIDERS;
    grid_style.x_spacing = 3;
    const std::int16_t layout[] = {-20, 1};
    WM_GRID* grid = add_grid(50, 50, 10, 2, layout);
    fill(grid, 3);
    grid->rows[1]->highlighted = true;
    grid->clear_rows();
    draw_all();
    EXPECT_EQ(FACE, pixel(12, 12));
    EXPECT_EQ(HIGHLIGHT, pixel(12, 22));
    EXPECT_EQ(TEXT, pixel(30, 12)) << "one pixel right of the first column";
    EXPECT_EQ(TEXT, pixel(30, 59)) << "over the inner height";
    EXPECT_EQ(FACE, pixel(31, 12));
}

TEST_F(GridTest, NothingIsDrawnBeyondTheView) {
    grid_style.y_spacing = 2;
    grid_style.border_top_gap = 2;
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 10);
    grid->rows[0]->highlighted = true;
    grid->set_scroll_to_position(9);  // of row 0 only the gap below it is in view
    draw_all();
    EXPECT_EQ(FACE, pixel(12, 11)) << "the border";
    EXPECT_EQ(COLOUR_RED, pixel(12, 13)) << "row 1";
    // A bar that is too short for its pieces.
    grid->resize(50, 18, 0);
    area().mark_entire_redraw_area();
    draw_all();
    EXPECT_EQ(0, count_pixels(10, 28, 59, 60, FACE) + count_pixels(10, 28, 59, 60, TEXT) +
                     count_pixels(10, 28, 59, 60, HIGHLIGHT));
}

TEST_F(GridTest, OnlyTheUsedHeightIsFilled) {
    grid_style.flags |= STYLE_GRID_ONLY_DRAW_USED_LINES;
    grid_style.border_bottom_gap = 2;
    WM_GRID* grid = add_grid(50, 50);
    draw_all();
    EXPECT_EQ(COLOUR_BLACK, pixel(12, 10));
    fill(grid, 2);
    grid->clear_rows();
    draw_all();
    EXPECT_EQ(FACE, pixel(12, 31));
    EXPECT_EQ(COLOUR_BLACK, pixel(12, 32));
}

TEST_F(GridTest, ImagesAlternateFromTheFirstVisibleRow) {
    IMAGE plain(50, 10), odd(50, 10), bright(50, 10);
    plain.clear(COLOUR(0, 0, 200));
    odd.clear(COLOUR(0, 200, 0));
    bright.clear(COLOUR(200, 200, 0));
    grid_style.flags |= STYLE_GRID_TYPE_LINES;
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 10);
    grid->clear_rows();
    // The boxes are the cache's business; here they borrow pictures for a while.
    grid->background.centre = &plain;
    grid->alternate_box.centre = &odd;
    grid->highlighted_box.centre = &bright;
    grid->rows[4]->highlighted = true;
    grid->set_scroll_to_position(10);
    draw_all();
    EXPECT_EQ(COLOUR(0, 0, 200), pixel(12, 12)) << "row 1";
    EXPECT_EQ(COLOUR(0, 200, 0), pixel(12, 22)) << "row 2";
    EXPECT_EQ(COLOUR(0, 0, 200), pixel(12, 32)) << "row 3";
    EXPECT_EQ(COLOUR(200, 200, 0), pixel(12, 42)) << "row 4";
    grid->grid_style.flags |= STYLE_GRID_FIX_TOP_ROW;
    for (const int position : {0, 10}) {
        grid->set_scroll_to_position(position);
        draw_all();
        EXPECT_EQ(COLOUR(0, 0, 200), pixel(12, 12)) << "the fixed row doesn't take part";
        EXPECT_EQ(COLOUR(0, 0, 200), pixel(12, 22));
        EXPECT_EQ(COLOUR(0, 200, 0), pixel(12, 32));
    }
    grid->background.centre = grid->alternate_box.centre = grid->highlighted_box.centre = nullptr;
}

TEST_F(GridTest, GapsMayChangeLater) {
    WM_GRID* grid = add_grid(50, 50);
    fill(grid, 2);
    grid->grid_style.border_left_gap = 12;
    grid->refresh_layout();
    EXPECT_EQ(22, grid->get_object(0, 1)->x);
    EXPECT_EQ(38, grid->get_object(0, 1)->width);
    grid->rows[1]->x_offset = 5;
    draw_all();
    EXPECT_EQ(27, grid->get_object(0, 1)->x);
    EXPECT_EQ(22, grid->get_object(0, 0)->x);
    EXPECT_EQ(20, top_of(grid, 1));
    EXPECT_EQ(60, top_of(grid, 5)) << "of a row to come";
}

}  // namespace
