// Geometry, input and values of WM_SCROLLBAR.
#include <chrono>

#include "grid_fixture.h"
#include "modules/gui/parameter.h"
#include "modules/winman/wm_scrollbar.h"

namespace {

class ScrollbarTest : public GRID_FIXTURE {
protected:
    void SetUp() override {
        GRID_FIXTURE::SetUp();
        set_range(0, 100);
        bar_style.scrollbar_slider_width = 20;
    }
    void set_range(std::int32_t min, std::int32_t max) {
        variable.min.long_value = min;
        variable.max.long_value = max;
        variable.value.long_value = max;
    }
    // 120 pixels long and 10 broad at (10, 10).
    WM_SCROLLBAR* add_bar(bool vertical, bool buttons) {
        bar_style.flags = (buttons ? STYLE_SB_WITH_BUTTONS : 0u) |
                          (vertical ? 0u : static_cast<unsigned>(STYLE_SB_HORIZONTAL));
        auto* bar = new WM_SCROLLBAR(10, 10, vertical ? 19 : 129, vertical ? 129 : 19, &variable,
                                     bar_style, count, this, nullptr, 0);
        area().add_object(bar, 0);
        draw_all();
        return bar;
    }
    std::int32_t value() const { return variable.value.long_value; }

    PARAMETER variable{PARAMETER::TYPE_LONG};
};

TEST_F(ScrollbarTest, TravelsOverWhatTheSliderAndTheButtonsLeave) {
    struct {
        bool vertical, buttons;
        int travel, start, at_max, at_min;
    } const cases[] = {{false, false, 100, 30, 130, 30},
                       {false, true, 80, 40, 120, 40},
                       {true, false, 100, 10, 10, 110},
                       {true, true, 80, 20, 20, 100}};
    for (const auto& each : cases) {
        WM_SCROLLBAR* bar = add_bar(each.vertical, each.buttons);
        EXPECT_EQ(each.travel, bar->travel);
        EXPECT_EQ(each.start, bar->start);
        variable.value.long_value = 100;
        EXPECT_EQ(each.at_max, bar->get_slider_position());
        variable.value.long_value = 0;
        EXPECT_EQ(each.at_min, bar->get_slider_position());
        area().remove_object(bar, 1, 0);
    }
    // The slider of a horizontal bar ends at its position.
    WM_SCROLLBAR* bar = add_bar(false, false);
    EXPECT_EQ(10, bar->get_slider_region().left);
    EXPECT_EQ(29, bar->get_slider_region().right);
    bar->slider_size = 200;
    bar->set_travel();
    EXPECT_EQ(0, bar->travel) << "never backwards";
}

TEST_F(ScrollbarTest, DraggingIsTheInverseOfThePosition) {
    for (const std::int32_t range : {7, 100, 100000}) {
        set_range(-3, range - 3);
        WM_SCROLLBAR* bar = add_bar(true, true);
        point(12, 25);
        press();
        EXPECT_TRUE(bar->dragging);
        for (int pixel_y = 25; pixel_y <= 105; ++pixel_y) {
            point(12, pixel_y);
            if (range >= bar->travel) {
                EXPECT_EQ(pixel_y - 5, bar->get_slider_position()) << range;
            }
        }
        EXPECT_EQ(-3, value());
        point(190, -1);  // far outside, upwards
        EXPECT_EQ(range - 3, value()) << "a held slider follows anywhere";
        EXPECT_EQ(WM_MESG_HANDLED, tick());
        release();
        EXPECT_FALSE(bar->dragging);
        point(12, 80);
        EXPECT_EQ(range - 3, value());
        area().remove_object(bar, 1, 0);
    }
}

TEST_F(ScrollbarTest, APressThatDoesntMoveLeavesTheValue) {
    set_range(0, 100000);
    WM_SCROLLBAR* bar = add_bar(true, false);
    variable.value.long_value = 54321;
    point(12, bar->get_slider_position() + 3);
    press();
    tick();
    release();
    EXPECT_EQ(54321, value());
    EXPECT_EQ(0, calls);
}

TEST_F(ScrollbarTest, PressesInTheBarMoveByAPage) {
    WM_SCROLLBAR* bar = add_bar(true, true);
    bar->page_step = 30;
    point(12, 90);
    press();
    EXPECT_EQ(70, value());
    EXPECT_EQ(1, calls);
    for (int i = 0; i < 100; ++i) {
        tick(50);
    }
    EXPECT_EQ(70, value()) << "once for each press";
    release();
    point(12, 22);
    press();
    EXPECT_EQ(100, value()) << "towards the pointer";
    release();
    WM_SCROLLBAR* across = add_bar(false, false);
    across->page_step = 30;
    area().remove_object(bar, 1, 0);
    point(40, 15);
    press();
    EXPECT_EQ(70, value()) << "left of the slider";
}

TEST_F(ScrollbarTest, HeldButtonsRepeat) {
    WM_SCROLLBAR* bar = add_bar(true, true);
    bar->line_step = 2;
    point(12, 125);
    press();
    EXPECT_EQ(98, value());
    tick(WM_SCROLLBAR::button_auto_repeat_threshhold);
    EXPECT_EQ(98, value());
    tick(1);
    EXPECT_EQ(96, value());
    tick(WM_SCROLLBAR::button_auto_repeat_rate);
    EXPECT_EQ(96, value());
    tick(1);
    EXPECT_EQ(94, value());
    point(12, 60);
    tick(1000);
    EXPECT_EQ(94, value()) << "not while the pointer is off the button";
    release();
    point(12, 12);
    press();
    EXPECT_EQ(96, value());
    release();
    // A press that began elsewhere is none.
    point(150, 12);
    press();
    point(12, 12);
    tick(2000);
    EXPECT_EQ(96, value());
}

TEST_F(ScrollbarTest, AStepGoesOnUntilTheSliderMoves) {
    set_range(0, 100000);
    WM_SCROLLBAR* bar = add_bar(true, false);
    const std::int16_t position = bar->get_slider_position();
    EXPECT_TRUE(bar->move_slew_var(SCROLLBAR_LINE_DOWN));
    EXPECT_EQ(position + 1, bar->get_slider_position());
    EXPECT_EQ(99000, value());
    // A step that is told counts as it is.
    bar->movement_callback = [](WM_SCROLLBAR*, SCROLLBAR_BUTTON_DOWN_TYPE type) {
        return type == SCROLLBAR_LINE_UP ? 3 : -3;
    };
    bar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(98997, value());
    bar->movement_callback = [](WM_SCROLLBAR*, SCROLLBAR_BUTTON_DOWN_TYPE) { return 0; };
    EXPECT_FALSE(bar->move_slew_var(SCROLLBAR_LINE_DOWN)) << "and no step doesn't hang";
    bar->movement_callback = nullptr;
    bar->line_step = 0;
    EXPECT_FALSE(bar->move_slew_var(SCROLLBAR_LINE_DOWN));
    bar->line_step = 1;
    bar->limit = 99500;
    bar->move_slew_var(SCROLLBAR_LINE_UP);
    bar->move_slew_var(SCROLLBAR_LINE_UP);
    EXPECT_EQ(99500, value());
}

// One by one these would be millions of steps, or steps that the value is too large for.
TEST_F(ScrollbarTest, StepsFarBelowAPixelAreFoundAtOnce) {
    const auto begin = std::chrono::steady_clock::now();
    set_range(0, 2000000000);
    WM_SCROLLBAR* bar = add_bar(true, false);
    bar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(1980000000, value()) << "a hundredth, of a hundred pixels of travel";
    bar->line_step = 30000000;
    bar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(1950000000, value()) << "no more than it takes";
    bar->line_step = 1;
    variable.value.long_value = 3;
    bar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(0, value()) << "to the end, where less than a pixel is left";
    bar->slider_size = 200;
    bar->set_travel();
    bar->move_slew_var(SCROLLBAR_LINE_UP);
    EXPECT_EQ(1, value()) << "one step, where the slider can't move";

    PARAMETER huge(PARAMETER::TYPE_DOUBLE);
    huge.max.double_value = huge.value.double_value = 1e18;
    WM_SCROLLBAR fine(10, 10, 19, 129, &huge, bar_style, nullptr, nullptr, nullptr, 0);
    fine.move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_DOUBLE_EQ(0.99e18, huge.value.double_value);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(taken.count(), 1);
}

TEST_F(ScrollbarTest, ALinkedVariableKeepsStep) {
    WM_SCROLLBAR* bar = add_bar(true, false);
    PARAMETER linked(PARAMETER::TYPE_LONG);
    linked.min.long_value = 10;
    linked.max.long_value = 20;
    linked.value.long_value = 20;
    bar->linked_var = &linked;
    // Its steps are ten of the bar's, and the bar takes them over.
    EXPECT_TRUE(bar->move_slew_var(SCROLLBAR_LINE_DOWN));
    EXPECT_EQ(19, linked.value.long_value);
    EXPECT_EQ(90, value());
    bar->move_slew_var(SCROLLBAR_LINE_UP);
    EXPECT_EQ(20, linked.value.long_value);
    EXPECT_EQ(100, value());
    // Nor does what it takes over pass the limit.
    bar->limit = 75;
    bar->move_slew_var(SCROLLBAR_LINE_DOWN);
    EXPECT_EQ(75, value());
}

TEST_F(ScrollbarTest, FractionsScrollToo) {
    PARAMETER volume(PARAMETER::TYPE_DOUBLE);
    volume.max.double_value = 1.0;
    volume.value.double_value = 0.25;
    bar_style.flags = STYLE_SB_HORIZONTAL;
    WM_SCROLLBAR bar(10, 10, 129, 19, &volume, bar_style, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(30 + 25, bar.get_slider_position());
    area().add_object(&bar, 0);
    bar.not_owned = true;
    draw_all();
    point(45, 12);
    press();
    point(70, 12);
    EXPECT_DOUBLE_EQ(0.5, volume.value.double_value);
    release();
    area().remove_object(&bar, 0, 0);
}

TEST_F(ScrollbarTest, TheWheelMovesTheFocusedBar) {
    WM_SCROLLBAR* bar = add_bar(true, false);
    bar->wheel_step = 4;
    MOUSE::wheel_pos = -2;
    tick();
    EXPECT_EQ(100, value());
    EXPECT_EQ(-2, MOUSE::wheel_pos) << "someone else's";
    manager().set_mouse_wheel_focus(WM_WINDOW_MANAGER::MAIN_WINDOW, bar);
    tick();
    EXPECT_EQ(92, value());
    EXPECT_EQ(0, MOUSE::wheel_pos);
    bar->wheel_step = 0;
    MOUSE::wheel_pos = 1;
    tick();
    EXPECT_EQ(92, value());
    MOUSE::wheel_pos = 0;
}

TEST_F(ScrollbarTest, KeysMoveABarOfItsOwn) {
    WM_SCROLLBAR* bar = add_bar(false, true);
    bar->page_step = 20;
    bar->line_step = 5;
    variable.value.long_value = 50;
    press_key(KEY_TAB);
    EXPECT_EQ(bar, focal());
    const auto value_after = [&](KEY_TYPE key) {
        press_key(key);
        return value();
    };
    EXPECT_EQ(55, value_after(KEY_RIGHT));
    EXPECT_EQ(50, value_after(KEY_LEFT));
    EXPECT_EQ(30, value_after(KEY_PAGE_DOWN));
    EXPECT_EQ(0, value_after(KEY_HOME));
    EXPECT_EQ(100, value_after(KEY_END));
    EXPECT_EQ(100, value_after(KEY_UP)) << "across, the other arrows aren't its own";
    KEYBOARD().clear_buffer();
    bar->enabled = false;
    point(12, 12);
    press();
    release();
    EXPECT_EQ(100, value());
    EXPECT_FALSE(bar->can_have_focus());
}

TEST_F(ScrollbarTest, TellsWhenTheValueHasMoved) {
    WM_SCROLLBAR* bar = add_bar(true, false);
    take_redraw();
    bar->update(0);
    EXPECT_FALSE(bar->changed);
    EXPECT_FALSE(take_redraw());
    variable.value.long_value = 40;
    bar->update(0);
    EXPECT_TRUE(bar->changed);
    EXPECT_TRUE(take_redraw());
    bar->update(0);
    EXPECT_FALSE(bar->changed);
    result = WM_MESG_REBUILD_AREA;
    point(12, 129);
    EXPECT_EQ(WM_MESG_REBUILD_AREA, press());
}

TEST_F(ScrollbarTest, PlainBarsAreDrawn) {
    WM_SCROLLBAR* bar = add_bar(true, true);
    bar->outline = COLOUR_INVISIBLE;
    draw_all();
    EXPECT_EQ(HIGHLIGHT, pixel(14, 30));
    EXPECT_EQ(FACE, pixel(14, 60));
    EXPECT_GT(count_pixels(10, 10, 19, 19, TEXT), 3) << "an arrow";
    EXPECT_GT(count_pixels(10, 120, 19, 129, TEXT), 3);
    EXPECT_FALSE(bar->is_graphical());
}

using ScrollbarDeathTest = ScrollbarTest;

TEST_F(ScrollbarDeathTest, RefusesVariablesWithoutARange) {
    const auto make = [&](PARAMETER* of) {
        WM_SCROLLBAR(0, 0, 9, 99, of, bar_style, nullptr, nullptr, nullptr, 0);
    };
    EXPECT_DEATH(make(nullptr), "WM_SCROLLBAR::setup\\(\\) - slew var invalid");
    set_range(5, 5);
    EXPECT_DEATH(make(&variable), "slew var invalid");
    PARAMETER pointer(PARAMETER::TYPE_POINTER);
    EXPECT_DEATH(make(&pointer), "slew var invalid type");
    set_range(0, 5);
    WM_SCROLLBAR bar(0, 0, 9, 99, &variable, bar_style, nullptr, nullptr, nullptr, 0);
    bar.type = static_cast<SCROLLBAR_TYPE>(4);
    EXPECT_DEATH(bar.set_travel(), "WM_SCROLLBAR::set_travel\\(\\) - slew var invalid");
}

}  // namespace
