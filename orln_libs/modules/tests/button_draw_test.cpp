// The pixels of buttons, and of the label drawing that they share with scripts.
#include "controls_fixture.h"
#include "modules/winman/label_drawing.h"
#include "platform/image_cache.h"

namespace {

class ButtonDrawTest : public CONTROLS_FIXTURE {
protected:
    // The bounding box of what differs from the colour in a rectangle.
    struct BOUNDS {
        int left = 1000, top = 1000, right = -1, bottom = -1;
    };
    static BOUNDS find_bounds(int x1, int y1, int x2, int y2, COLOUR background) {
        BOUNDS bounds;
        for (int y = y1; y <= y2; ++y) {
            for (int x = x1; x <= x2; ++x) {
                if (pixel(x, y) != background) {
                    bounds.left = std::min(bounds.left, x);
                    bounds.right = std::max(bounds.right, x);
                    bounds.top = std::min(bounds.top, y);
                    bounds.bottom = std::max(bounds.bottom, y);
                }
            }
        }
        return bounds;
    }
    BOUNDS draw_text_bounds(WM_BUTTON& button) {
        draw_all();
        return find_bounds(button.x, button.y, button.x + button.width - 1,
                           button.y + button.height - 1, FACE);
    }
};

TEST_F(ButtonDrawTest, FillsItsRectangleInTheColourOfItsState) {
    style.active_colour = COLOUR_BLUE;
    style.mouse_over_colour = COLOUR_GREEN;
    style.flashing_colour = COLOUR_YELLOW;
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    const auto expect = [&](COLOUR colour) {
        draw_all();
        EXPECT_EQ(400, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, colour));
        EXPECT_EQ(colour, pixel(10, 10));
        EXPECT_EQ(colour, pixel(29, 29));
    };
    expect(FACE);
    button->mouse_over_now = true;
    expect(COLOUR_GREEN);
    button->mouse_over_now = false;
    button->take_focus(1);
    expect(COLOUR_GREEN);
    info().focal_object = nullptr;
    button->mouse_over_now = true;
    button->activated = true;
    expect(COLOUR_BLUE);
    button->active_mark[0] = '*';  // shows it instead of the colour
    expect(COLOUR_GREEN);
    button->pressed = true;
    expect(HIGHLIGHT);
    button->flashing = true;
    expect(COLOUR_YELLOW);
    button->flashing = button->pressed = button->activated = button->mouse_over_now = false;
    button->bg = COLOUR_INVISIBLE;
    draw_all();
    EXPECT_EQ(COLOUR_BLACK, pixel(15, 15));
}

TEST_F(ButtonDrawTest, FadesButNotWhilePressed) {
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    button->bg = COLOUR_WHITE;
    button->button_flags |= BUTTON_HFADED_BACKGROUND;
    draw_all();
    EXPECT_EQ(COLOUR_WHITE, pixel(10, 20));
    EXPECT_EQ(COLOUR_BLACK, pixel(29, 20));
    EXPECT_EQ(pixel(20, 10), pixel(20, 29));
    button->button_flags ^= BUTTON_HFADED_BACKGROUND | BUTTON_VFADED_BACKGROUND;
    draw_all();
    EXPECT_EQ(COLOUR_WHITE, pixel(20, 10));
    EXPECT_EQ(COLOUR_BLACK, pixel(20, 29));
    button->pressed = true;
    draw_all();
    EXPECT_EQ(400, count_pixels(10, 10, 29, 29, HIGHLIGHT));
}

TEST_F(ButtonDrawTest, FocusIsVisible) {
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    button->take_focus(1);
    draw_all();
    EXPECT_EQ(4 * 19, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, HIGHLIGHT));
    EXPECT_EQ(HIGHLIGHT, pixel(29, 10));
    EXPECT_EQ(FACE, pixel(28, 11));
    const auto frame_pixels = [&] {
        draw_all();
        return count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, HIGHLIGHT);
    };
    button->mouse_over = COLOUR_GREEN;  // the style's own look
    EXPECT_EQ(0, frame_pixels());
    button->activated = true;  // which gives way to this one
    EXPECT_EQ(4 * 19, frame_pixels());
    button->active_mark[0] = '*';
    EXPECT_EQ(0, frame_pixels());
    button->active_mark[0] = '\0';

    // The same with images.
    IMAGE_CACHE cache;
    IMAGE picture(20, 20);
    for (IMAGE_BOX* box :
         {&button->up_box, &button->down_box, &button->over_box, &button->active_over_box}) {
        box->cache = &cache;
    }
    button->up_box.centre = button->down_box.centre = button->over_box.centre = &picture;
    EXPECT_EQ(0, frame_pixels());  // without images of its own the activated button has these
    button->active_up_box.cache = &cache;
    button->active_up_box.centre = &picture;
    EXPECT_EQ(4 * 19, frame_pixels());
    button->active_over_box.centre = &picture;
    EXPECT_EQ(0, frame_pixels());
    area().remove_object(button, 1, 0);  // before its cache
}

TEST_F(ButtonDrawTest, BoxFollowsTheState) {
    IMAGE_CACHE cache;
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    struct {
        IMAGE_BOX& box;
        COLOUR colour;
        IMAGE picture;
    } states[] = {{button->up_box, 0xFF000001u, {}},
                  {button->down_box, 0xFF000002u, {}},
                  {button->disabled_box, 0xFF000003u, {}},
                  {button->over_box, 0xFF000004u, {}},
                  {button->active_up_box, 0xFF000005u, {}},
                  {button->active_down_box, 0xFF000006u, {}},
                  {button->active_disabled_box, 0xFF000007u, {}},
                  {button->active_over_box, 0xFF000008u, {}},
                  {button->highlighted_box, 0xFF000009u, {}},
                  {button->flashing_box, 0xFF00000Au, {}}};
    for (auto& state : states) {
        state.picture.reset(20, 20);
        state.picture.clear(state.colour);
        state.box.cache = &cache;
        state.box.centre = &state.picture;
    }
    const auto shown = [&] {
        draw_all();
        return static_cast<int>(pixel(20, 20).value & 0xFFu);
    };
    EXPECT_EQ(1, shown());
    button->mouse_over_now = true;
    EXPECT_EQ(4, shown());
    WM_BUTTON::mouseovers_enabled = false;
    EXPECT_EQ(1, shown());
    WM_BUTTON::mouseovers_enabled = true;
    button->activated = true;
    EXPECT_EQ(8, shown());
    button->mouse_over_now = false;
    EXPECT_EQ(5, shown());
    button->pressed = true;
    EXPECT_EQ(9, shown());
    button->highlighted_box.centre = nullptr;
    EXPECT_EQ(6, shown());
    button->active_down_box.centre = nullptr;
    EXPECT_EQ(5, shown());
    button->active_up_box.centre = nullptr;
    EXPECT_EQ(2, shown());
    button->button_flags |= BUTTON_OWNER_SHADING;  // the pressed bit is the owner's now
    button->shading_flags = 0;
    EXPECT_EQ(1, shown());
    button->enabled = false;
    EXPECT_EQ(7, shown());
    button->activated = false;
    EXPECT_EQ(3, shown());
    button->flashing = true;
    EXPECT_EQ(10, shown());
    area().remove_object(button, 1, 0);  // before its cache
}

TEST_F(ButtonDrawTest, TextStandsWhereItsFlagsSay) {
    use_font();
    style.border_left_gap = 4;
    style.border_right_gap = 6;
    style.border_top_gap = style.border_bottom_gap = 2;
    WM_BUTTON* button = add_button(20, 20, 119, 79, 2, "HHH");
    const BOUNDS centred = draw_text_bounds(*button);
    EXPECT_NEAR(20 + 4 + 90 / 2, (centred.left + centred.right) / 2, 1);
    EXPECT_NEAR(50, (centred.top + centred.bottom) / 2, 3);
    button->button_flags = BUTTON_LEFT_JUSTIFY_TEXT | BUTTON_TOP_ALIGN_TEXT;
    const BOUNDS left = draw_text_bounds(*button);
    EXPECT_NEAR(24, left.left, 2);
    EXPECT_EQ(centred.right - centred.left, left.right - left.left);
    button->button_flags = BUTTON_RIGHT_JUSTIFY_TEXT | BUTTON_BOTTOM_ALIGN_TEXT;
    const BOUNDS right = draw_text_bounds(*button);
    EXPECT_NEAR(113, right.right, 2);
    EXPECT_EQ(60 - 4 - 16 - 1, right.top - left.top);  // the inner height less a line

    // Pressed: one pixel right and down.
    button->highlight = COLOUR_INVISIBLE;
    button->pressed = true;
    const BOUNDS pressed = draw_text_bounds(*button);
    EXPECT_EQ(right.left + 1, pressed.left);
    EXPECT_EQ(right.top + 1, pressed.top);
    EXPECT_EQ(right.right + 1, pressed.right);
    button->shading_flags = 0;
    EXPECT_EQ(right.left, draw_text_bounds(*button).left);
}

TEST_F(ButtonDrawTest, DisabledTextAndIconAreFaint) {
    use_font();
    WM_BUTTON* button = add_button(20, 20, 119, 49, 2, "HHH");
    draw_all();
    EXPECT_NE(0, count_pixels(20, 20, 119, 49, TEXT));
    button->enabled = false;
    draw_all();
    int brightest = 0;
    for (int y = 20; y < 50; ++y) {
        for (int x = 20; x < 120; ++x) {
            brightest = std::max<int>(brightest, pixel(x, y).green());
        }
    }
    COLOUR faint = FACE;
    faint.mix(TEXT, 255 / 4);
    EXPECT_NEAR(faint.green(), brightest, 2);
    // So is the icon.
    button->icon.reset(10, 10);
    button->icon.clear(TEXT);
    button->set_string("", 0);
    draw_all();
    EXPECT_EQ(100, count_pixels(20, 20, 119, 49, faint));
}

TEST_F(ButtonDrawTest, TextKeepsClearOfReservedMargins) {
    use_font();
    WM_BUTTON* button = add_button(20, 20, 119, 49, 2, "HHH");
    const BOUNDS free = draw_text_bounds(*button);
    button->reserved_left = 20;  // doesn't reach the text
    EXPECT_EQ(free.left, draw_text_bounds(*button).left);
    button->reserved_left = 60;
    const BOUNDS moved = draw_text_bounds(*button);
    EXPECT_GE(moved.left, 20 + 60);
    EXPECT_EQ(0, button->left_gap);  // only for the draw
    button->reserved_left = 20;
    button->reserved_right = 45;  // moves it into the left margin
    EXPECT_GE(draw_text_bounds(*button).left, 20 + 20);
    button->reserved_left = button->reserved_right = 0;
    button->reserved_bottom = 14;
    EXPECT_LT(draw_text_bounds(*button).bottom, 50 - 14);
}

TEST_F(ButtonDrawTest, IconHasItsCell) {
    style.font = NO_FONT;
    style.border_left_gap = 20;
    style.border_right_gap = 30;
    style.border_top_gap = 0;
    style.border_bottom_gap = 0;
    WM_BUTTON* button = add_button(10, 10, 109, 39, 2, "text");
    button->icon.reset(10, 10);
    button->icon.clear(COLOUR_GREEN);
    const auto place = [&](std::uint32_t flags) {
        button->button_flags = flags;
        draw_all();
        EXPECT_EQ(100, count_pixels(10, 10, 109, 39, COLOUR_GREEN));
        for (int y = 10; y < 40; ++y) {
            for (int x = 10; x < 110; ++x) {
                if (pixel(x, y) == COLOUR_GREEN) {
                    return std::pair(x, y);
                }
            }
        }
        return std::pair(-1, -1);
    };
    EXPECT_EQ(std::pair(10 + 5, 20), place(BUTTON_ICON_LEFT));
    EXPECT_EQ(10, button->icon_left);
    EXPECT_EQ(29, button->icon_right);
    EXPECT_EQ(std::pair(80 + 10, 20), place(BUTTON_ICON_RIGHT));
    EXPECT_EQ(std::pair(10 + 45, 20), place(0));
    // Beside the text, which is 4 wide: it is centred, with the icon and a gap of 1.
    EXPECT_EQ(std::pair(30 + (50 - 11 - 4) / 2, 20),
              place(BUTTON_ICON_LEFT | BUTTON_ICON_ATTACH_TO_TEXT));
    EXPECT_EQ(std::pair(30 + (50 - 11 - 4) / 2 + 4 + 1, 20),
              place(BUTTON_ICON_RIGHT | BUTTON_ICON_ATTACH_TO_TEXT));
    EXPECT_EQ(std::pair(34 + 1, 20),
              place(BUTTON_ICON_RIGHT | BUTTON_ICON_ATTACH_TO_TEXT | BUTTON_LEFT_JUSTIFY_TEXT));
    EXPECT_EQ(std::pair(30 + 20, 10 + (30 - 11 - 10) / 2),
              place(BUTTON_ICON_TOP | BUTTON_ICON_ATTACH_TO_TEXT));
    // Clipped to a cell that is too small.
    button->left_gap = 4;
    button->button_flags = BUTTON_ICON_LEFT;
    draw_all();
    EXPECT_EQ(40, count_pixels(10, 10, 109, 39, COLOUR_GREEN));
}

TEST_F(ButtonDrawTest, ArrowsStandAtTheirEdges) {
    WM_BUTTON* button = add_button(20, 20, 79, 49);
    const auto bounds = [&](std::uint32_t flags) {
        button->button_flags = flags;
        draw_all();
        return find_bounds(20, 20, 79, 49, FACE);
    };
    const BOUNDS left = bounds(BUTTON_LEFT_ARROW);
    EXPECT_EQ(25, left.left);
    EXPECT_LE(left.right, 34);
    const BOUNDS right = bounds(BUTTON_RIGHT_ARROW);
    EXPECT_EQ(79 - 3 - 5, right.right);
    EXPECT_GE(right.left, 79 - 3 - 15);
    const BOUNDS up = bounds(BUTTON_UP_ARROW);
    EXPECT_EQ(30, up.top);
    EXPECT_GE(up.left, 60);
    const BOUNDS down = bounds(BUTTON_DOWN_ARROW);
    EXPECT_EQ(39, down.bottom);
    EXPECT_EQ(up.left, down.left);
    button->enabled = false;
    EXPECT_EQ(40, bounds(BUTTON_DOWN_ARROW).bottom);  // twice, one pixel apart
}

TEST_F(ButtonDrawTest, ActiveMarkStandsBeforeTheTitle) {
    use_font();
    style.border_left_gap = 20;
    style.flags |= STYLE_LEFT_JUSTIFY_TEXT;
    WM_BUTTON* button = add_button(20, 20, 119, 49, 2, "HHH");
    const BOUNDS plain = draw_text_bounds(*button);
    button->active_mark[0] = 'H';
    EXPECT_EQ(plain.left, draw_text_bounds(*button).left);
    button->activated = true;
    const BOUNDS marked = draw_text_bounds(*button);
    EXPECT_LT(marked.left, 40);
    EXPECT_GE(marked.left, 20);
    EXPECT_EQ(plain.right, marked.right);
}

TEST_F(ButtonDrawTest, StaysWithinItsRectangle) {
    use_font();
    style.flags |= STYLE_WRAP_TEXT | STYLE_SHADOW_TEXT;
    WM_BUTTON* button =
        add_button(50, 50, 89, 69, 2, "A long text that is wrapped into more lines than fit");
    button->icon.reset(200, 200);
    button->icon.clear(COLOUR_GREEN);
    button->pressed = true;
    button->take_focus(1);
    draw_all();
    EXPECT_EQ(WIDTH * HEIGHT - 40 * 20, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, COLOUR_BLACK));
    const IMAGE& buffer = *info().back_buffer;
    EXPECT_EQ(0, buffer.active_left);
    EXPECT_EQ(WIDTH - 1, buffer.active_right);
}

}  // namespace
