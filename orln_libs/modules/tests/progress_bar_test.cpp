// Progress bars: lengths in pixels, texts, and when they are drawn.
#include <memory>

#include "controls_fixture.h"
#include "modules/winman/wm_progress_bar.h"
#include "platform/image_cache.h"

namespace {

class ProgressBarTest : public CONTROLS_FIXTURE {
protected:
    static constexpr COLOUR REST = COLOUR_BLUE;

    void SetUp() override {
        CONTROLS_FIXTURE::SetUp();
        style.border_left_gap = style.border_right_gap = style.border_top_gap =
            style.border_bottom_gap = 0;
    }
    WM_PROGRESS_BAR* add_bar(int w, int h, std::int32_t steps, const char* label = nullptr,
                             unsigned char custom_only = 0) {
        auto* bar =
            new WM_PROGRESS_BAR(10, 10, static_cast<std::int16_t>(w), static_cast<std::int16_t>(h),
                                label, steps, style, 0, custom_only);
        bar->alt_bar_colour = REST;
        area().add_object(bar, 0);
        draw_all();
        return bar;
    }
    // The filled pixels along the middle of the bar.
    int filled() {
        draw();
        return count_pixels(10, 15, WIDTH - 1, 15, HIGHLIGHT);
    }
    // The columns that hold pixels of neither colour: the text's.
    std::pair<int, int> find_text(int x1, int x2, int y1, int y2) {
        std::pair<int, int> columns(1000, -1);
        for (int x = x1; x <= x2; ++x) {
            for (int y = y1; y <= y2; ++y) {
                const COLOUR at = pixel(x, y);
                if (at != HIGHLIGHT && at != REST && at != FACE) {
                    columns.first = std::min(columns.first, x);
                    columns.second = std::max(columns.second, x);
                }
            }
        }
        return columns;
    }
};

TEST_F(ProgressBarTest, FillsByItsPosition) {
    WM_PROGRESS_BAR* bar = add_bar(50, 20, 200);
    EXPECT_EQ(1, filled());  // never nothing
    EXPECT_EQ(49, count_pixels(11, 15, 59, 15, REST));
    bar->set_pos(100, 0);
    EXPECT_EQ(26, filled());
    EXPECT_EQ(HIGHLIGHT, pixel(10 + 25, 29));
    EXPECT_EQ(REST, pixel(10 + 26, 10));
    bar->set_pos(200, 0);
    EXPECT_EQ(50, filled());
    bar->set_pos(201, 0);
    bar->set_pos(-1, 0);
    bar->inc_pos(0);
    EXPECT_EQ(200, bar->pos);
    bar->set_max_steps(-1, 0);
    EXPECT_EQ(200, bar->max_steps);
    bar->set_max_steps(100, 0);
    EXPECT_EQ(100, bar->pos);
    bar->set_max_steps(0, 0);
    EXPECT_EQ(0, bar->pos);
    EXPECT_EQ(50, filled());
    bar->dec_pos(0);
    EXPECT_EQ(0, bar->pos);
    // Sizes beyond what 32 bits hold when multiplied.
    bar->set_max_steps(2000000000, 0);
    bar->set_pos(1000000000, 0);
    EXPECT_EQ(26, filled());
}

TEST_F(ProgressBarTest, DrawsOnlyChangesOfTheLength) {
    WM_PROGRESS_BAR* bar = add_bar(50, 20, 1000);
    bar->set_pos(5, 0);
    EXPECT_FALSE(take_redraw());
    bar->set_pos(20, 0);
    EXPECT_TRUE(take_redraw());
    bar->inc_pos(0);
    bar->dec_pos(0);
    EXPECT_FALSE(take_redraw());
    bar->set_max_steps(500, 0);
    EXPECT_TRUE(take_redraw());
    EXPECT_TRUE(bar->needs_redraw(0, 100, 2, 100));
    EXPECT_FALSE(bar->needs_redraw(0, 100, 1, 100));
    EXPECT_FALSE(bar->needs_redraw(7, 0, 1000, 1000));  // both full
    bar->set_custom_bar_string("text", 0);
    EXPECT_TRUE(take_redraw());
    bar->set_custom_bar_string("text", 0);
    EXPECT_FALSE(take_redraw());
    bar->hide(0, 0);
    take_redraw();
    bar->set_pos(400, 0);
    EXPECT_FALSE(take_redraw());
    EXPECT_FALSE(bar->visible);
}

TEST_F(ProgressBarTest, NowDrawsWithoutTheTick) {
    WM_PROGRESS_BAR* bar = add_bar(50, 20, 100);
    bar->set_pos(50, 1);
    EXPECT_EQ(26, count_pixels(10, 15, 59, 15, HIGHLIGHT));
    bar->set_bar_colour(COLOUR_GREEN, 1);
    EXPECT_EQ(26, count_pixels(10, 15, 59, 15, COLOUR_GREEN));
    EXPECT_FALSE(take_redraw());
}

TEST_F(ProgressBarTest, VerticalBarFillsFromTheBottom) {
    style.flags |= STYLE_PB_VERTICAL;
    WM_PROGRESS_BAR* bar = add_bar(20, 50, 100, "no label here");
    EXPECT_EQ(nullptr, static_cast<const char*>(bar->label));
    bar->set_pos(20, 0);
    draw();
    EXPECT_EQ(11, count_pixels(15, 10, 15, 59, HIGHLIGHT));
    EXPECT_EQ(HIGHLIGHT, pixel(10, 59));
    EXPECT_EQ(REST, pixel(29, 48));
}

TEST_F(ProgressBarTest, GapsAndLabelTakeTheirRoom) {
    style.border_left_gap = 3;
    style.border_right_gap = 5;
    style.border_top_gap = 2;
    style.border_bottom_gap = 4;
    WM_PROGRESS_BAR* bar = add_bar(100, 20, 1, "Label");
    bar->set_pos(1, 0);
    draw();
    EXPECT_EQ(100 - 3 - 5 - (5 + 3), count_pixels(10, 15, 109, 15, HIGHLIGHT));
    EXPECT_EQ(HIGHLIGHT, pixel(10 + 3 + 5 + 3, 12));
    EXPECT_EQ(FACE, pixel(10 + 3 + 5 + 2, 15));
    EXPECT_EQ(FACE, pixel(30, 11));
    EXPECT_EQ(HIGHLIGHT, pixel(30, 25));
    EXPECT_EQ(FACE, pixel(30, 26));

    style.flags |= STYLE_PB_ONLY_DRAW_BAR;
    area().remove_object(bar, 1, 0);
    bar = add_bar(100, 20, 0, "Label");
    EXPECT_EQ(92, count_pixels(10, 15, 109, 15, HIGHLIGHT));
    EXPECT_EQ(COLOUR_BLACK, pixel(11, 11));  // no background

    style.border_left_gap = style.border_top_gap = WM_STYLE_SET::NO_BORDER_GAP;
    style.font_y_sz = 16;
    EXPECT_EQ(5, add_bar(50, 20, 1)->left_gap);
    EXPECT_EQ(2, add_bar(50, 20, 1)->top_gap);
    EXPECT_EQ(0, add_bar(50, 15, 1)->top_gap);
}

TEST_F(ProgressBarTest, TextsStandOnTheBar) {
    use_font();
    WM_PROGRESS_BAR* bar = add_bar(150, 20, 100);
    const auto text = [&] {
        draw_all();
        return find_text(10, 159, 10, 29);
    };
    const auto whole = text();
    EXPECT_NEAR(85, (whole.first + whole.second) / 2, 2);
    bar->bar_flags |= PROGRESS_BAR_TEXT_ON_BAR;
    const auto at_start = text();  // has no room on one pixel, but is not cut
    EXPECT_LE(at_start.first, 14);
    EXPECT_EQ(whole.second - whole.first, at_start.second - at_start.first);
    bar->set_pos(60, 0);
    const auto later = text();
    EXPECT_NEAR(10 + 91 / 2, (later.first + later.second) / 2, 2);
    bar->bar_flags |= PROGRESS_BAR_ALT_PERCENTAGE;
    const int rest_end = text().second;
    EXPECT_NEAR(10 + 91 + 30, (find_text(101, 159, 10, 29).first + rest_end) / 2, 2);
    bar->set_alt_bar_text_colour(COLOUR_INVISIBLE, 0);
    EXPECT_EQ(later, text());
    bar->set_bar_text_colour(COLOUR_INVISIBLE, 0);
    EXPECT_EQ(-1, text().second);

    // Only a custom text.
    area().remove_object(bar, 1, 0);
    bar = add_bar(150, 20, 100, nullptr, 1);
    EXPECT_EQ(-1, text().second);
    bar->set_custom_bar_string("Checking", 0);
    EXPECT_GT(text().second - text().first, 40);
    bar->set_custom_bar_string(nullptr, 0);
    EXPECT_EQ(-1, text().second);
}

TEST_F(ProgressBarTest, PiecesHaveTheirLeastLength) {
    IMAGE_CACHE cache;
    IMAGE empty(1, 20), end(4, 20), middle(2, 20), alt(2, 20);
    empty.clear(COLOUR_WHITE);
    end.clear(HIGHLIGHT);
    middle.clear(HIGHLIGHT);
    alt.clear(REST);
    WM_PROGRESS_BAR* bar = add_bar(50, 20, 100);
    bar->empty_box.cache = bar->full_box.cache = bar->alt_box.cache = &cache;
    bar->empty_box.left = bar->empty_box.centre = bar->empty_box.right = &empty;
    bar->full_box.left = bar->full_box.right = &end;
    bar->full_box.centre = &middle;
    ASSERT_TRUE(bar->is_graphical());
    draw_all();
    EXPECT_EQ(10, filled());
    EXPECT_EQ(40, count_pixels(20, 15, 59, 15, COLOUR_WHITE));
    bar->alt_box.left = bar->alt_box.centre = bar->alt_box.right = &alt;
    bar->set_pos(40, 0);
    draw_all();
    EXPECT_EQ(21, filled());
    EXPECT_EQ(29, count_pixels(31, 15, 59, 15, REST));
    bar->set_pos(96, 0);
    draw_all();
    EXPECT_EQ(6, count_pixels(10, 15, 59, 15, REST));
    bar->set_pos(100, 0);
    draw_all();
    EXPECT_EQ(50, filled());
    area().remove_object(bar, 1, 0);  // before its cache
}

TEST_F(ProgressBarTest, MustLieInTheWindow) {
    const auto make = [this](int x, int y, int w, int h) {
        std::make_unique<WM_PROGRESS_BAR>(
            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
            static_cast<std::int16_t>(w), static_cast<std::int16_t>(h), nullptr, 1, style,
            static_cast<signed char>(0), static_cast<unsigned char>(0));
    };
    make(0, 0, WIDTH, HEIGHT);
    const char* message = "WM_PROGRESS_BAR::setup\\(\\) - bar coordinates error";
    EXPECT_EXIT(make(-1, 0, 10, 10), testing::ExitedWithCode(1), message);
    EXPECT_EXIT(make(0, 1, 10, HEIGHT), testing::ExitedWithCode(1), message);
    EXPECT_EXIT(make(191, 0, 10, 10), testing::ExitedWithCode(1),
                "Application was unable to continue");
}

}  // namespace
