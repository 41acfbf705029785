// What the mouse and the keyboard do to buttons.
#include "controls_fixture.h"
#include "platform/image_cache.h"

namespace {

using ButtonTest = CONTROLS_FIXTURE;

TEST_F(ButtonTest, NaturalSizeComesFromTheContent) {
    style.border_left_gap = 3;
    style.border_right_gap = 4;
    style.border_top_gap = 5;
    style.border_bottom_gap = WM_STYLE_SET::NO_BORDER_GAP;
    const WM_BUTTON* button = add_button(10, 20, -1, -1, 2, "Launch");
    EXPECT_EQ(3 + 4 + 6, button->width);
    EXPECT_EQ(5 + 10, button->height);
    EXPECT_EQ(7, add_button(0, 0, -1, 5)->width);
    EXPECT_EQ(6, add_button(0, 0, -1, 5)->height);
    EXPECT_STREQ("", add_button(0, 0, 9, 9, 2, nullptr)->get_title_text());
    EXPECT_EQ(INT16_MAX, add_button(0, 0, -1, 5, 2, std::string(40000, 'w').c_str())->width);

    // A box of three across has the height of its centre.
    IMAGE left(2, 31), centre(1, 33), right(2, 35);
    auto& box = *(style.boxes[STYLE_BOX_UP] = std::make_unique<IMAGE_BOX>());
    box.left = &left;
    box.centre = &centre;
    box.right = &right;
    style.image_filename.set("button");
    style.images_loaded = true;
    IMAGE_CACHE cache;
    box.cache = &cache;
    EXPECT_EQ(33, add_button(0, 0, -1, -1)->height);
    box.top = &left;
    EXPECT_EQ(15, add_button(0, 0, -1, -1)->height);
    area().clear_objects(0, 1);
    style.boxes[STYLE_BOX_UP].reset();  // before its cache
}

TEST_F(ButtonTest, StyleGivesFlagsAndColours) {
    style.flags = STYLE_DRAW_BORDER | STYLE_RIGHT_JUSTIFY_TEXT | STYLE_WRAP_TEXT | STYLE_ICON_TOP;
    style.shading_flags = 17;
    style.mouse_over_colour = COLOUR_GREEN;
    WM_BUTTON* button = add_button(0, 0, 9, 9);
    EXPECT_EQ(BUTTON_RIGHT_JUSTIFY_TEXT | BUTTON_WRAP_TEXT | BUTTON_ICON_TOP, button->button_flags);
    EXPECT_EQ(16, button->shading_flags);  // the pressed bit is no look of a style
    EXPECT_EQ(FACE, button->active_bg);    // without an active colour
    EXPECT_EQ(COLOUR_GREEN, button->mouse_over);
    EXPECT_EQ(COLOUR_INVISIBLE, button->mouse_over_text);
    EXPECT_EQ(COLOUR_BLACK, button->fading);
    style.flags = 0;
    EXPECT_EQ(0, add_button(0, 0, 9, 9)->shading_flags);

    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    style.font = -1;
    style.font_x_sz = style.font_y_sz = -1;
    EXPECT_EQ(fonts.y_size, add_button(0, 0, 9, 9)->font_y_sz);
}

TEST_F(ButtonTest, CallbackRunsOnTheEventsAskedFor) {
    struct {
        unsigned char events;
        int on_press, on_release, on_release_outside;
    } cases[] = {{1, 1, 0, 0}, {2, 0, 1, 0}, {3, 1, 1, 0}, {8, 0, 0, 1}, {11, 1, 1, 1}};
    for (const auto& expected : cases) {
        SCOPED_TRACE(int{expected.events});
        WM_BUTTON* button = add_button(10, 10, 29, 29, expected.events);
        for (const bool outside : {false, true}) {
            calls = 0;
            point(15, 15);
            press();
            EXPECT_EQ(expected.on_press, calls);
            EXPECT_FALSE(was_final && expected.on_press != 0);
            calls = 0;
            was_final = false;
            if (outside) {
                point(40, 40);
            }
            release();
            const int on_end = outside ? expected.on_release_outside : expected.on_release;
            EXPECT_EQ(on_end, calls);
            EXPECT_EQ(on_end != 0, was_final);
            EXPECT_FALSE(button->final_event);
            EXPECT_FALSE(button->pressed);
            tick();
            EXPECT_EQ(on_end, calls);
        }
        area().remove_object(button, 1, 0);
    }
}

TEST_F(ButtonTest, ResultOfTheCallbackIsPassedOn) {
    add_button(10, 10, 29, 29);
    point(15, 15);
    EXPECT_EQ(WM_MESG_NONE, press());  // no callback on the press
    EXPECT_EQ(WM_MESG_HANDLED, release());
    result = WM_MESG_CHANGE_PAGE;
    press();
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, release());
}

TEST_F(ButtonTest, LooksLeftOnceItHasOpenedADialog) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 2, "", [](WM_SCREEN_OBJECT*, void*, void*) {
        area().add_modal_object(new TEST_CLOCK, 0);
        return WM_MESG_NONE;
    });
    point(15, 15);
    EXPECT_TRUE(button->mouse_over_now);
    press();
    release();
    EXPECT_FALSE(button->mouse_over_now)
        << "nothing tells it that the pointer goes on to the dialog";
}

TEST_F(ButtonTest, PressMustBeginOnTheButton) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 3);
    point(50, 50);
    press();
    point(15, 15);
    EXPECT_FALSE(button->pressed);
    release();
    EXPECT_EQ(0, calls);

    // Out and back with the button held is a click.
    button->callback_flags = 2;
    point(15, 15);
    press();
    EXPECT_TRUE(button->pressed);
    point(50, 50);
    point(15, 15);
    release();
    EXPECT_EQ(1, calls);
}

TEST_F(ButtonTest, DisabledHiddenOrUnclickableButtonsDoNothing) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 3);
    const auto click = [this] {
        point(15, 15);
        press();
        const signed char shape = manager().mouse_icon;
        release();
        return shape;
    };
    button->enabled = false;
    EXPECT_EQ(0, click());
    button->enabled = true;
    button->hide(0, 0);
    EXPECT_EQ(0, click());
    button->request_draw(0, 0);
    button->clickable = false;
    EXPECT_EQ(0, click());
    EXPECT_EQ(0, calls);
    button->clickable = true;
    EXPECT_EQ(2, click());  // the pointer of something pressed
    EXPECT_EQ(2, calls);
    tick();
    EXPECT_EQ(1, manager().mouse_icon);
    point(40, 40);
    EXPECT_EQ(0, manager().mouse_icon);
    manager().focal_window = -1;
    EXPECT_EQ(0, click());
    EXPECT_EQ(2, calls);
}

TEST_F(ButtonTest, HeldButtonRepeats) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, BUTTON_EVENT_REPEAT);
    point(15, 15);
    press();
    tick(300);
    EXPECT_EQ(0, calls);  // not later than the threshold
    tick(1);
    EXPECT_EQ(1, calls);
    tick(30);
    EXPECT_EQ(1, calls);
    tick(1);
    EXPECT_EQ(2, calls);
    MOUSE::set_position(0, 50, 50);
    tick(500);
    EXPECT_EQ(2, calls);  // only over the button
    MOUSE::set_position(0, 15, 15);
    tick();
    EXPECT_EQ(3, calls);
    release();
    EXPECT_FALSE(button->repeating);
    press();
    tick(200);
    EXPECT_EQ(3, calls);  // the threshold is back
    // The clock wraps.
    release();
    WM_SCREEN_OBJECT::now_ms = 0xFFFFFFF0u;
    press();
    tick(400);
    EXPECT_EQ(4, calls);
}

TEST_F(ButtonTest, HoverTypes) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 3);
    button->button_type = BUTTON_TYPE_HOVER_HIGHLIGHT;
    point(15, 15);
    EXPECT_TRUE(button->pressed);
    EXPECT_EQ(0, calls);
    press();
    release();
    EXPECT_EQ(2, calls);
    EXPECT_TRUE(button->pressed);
    point(40, 40);
    EXPECT_FALSE(button->pressed);

    calls = 0;
    button->button_type = BUTTON_TYPE_HOVER_FIRE;
    point(15, 15);
    EXPECT_EQ(1, calls);
    EXPECT_FALSE(was_final);
    press();
    release();
    EXPECT_EQ(1, calls);  // a real press does nothing
    point(40, 40);
    EXPECT_EQ(2, calls);
    EXPECT_TRUE(was_final);
}

TEST_F(ButtonTest, KeysClickTheFocusedButtonOnce) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 3);
    type(KEY_RETURN);
    tick();
    EXPECT_EQ(0, calls);  // without the focus
    KEYBOARD keyboard;
    keyboard.clear_buffer();
    button->take_focus(1);
    ASSERT_TRUE(button->has_focus());

    const auto expect_click = [&] {
        calls = 0;
        EXPECT_EQ(WM_MESG_HANDLED, tick());
        EXPECT_EQ(1, calls);
        EXPECT_TRUE(was_final);
        EXPECT_EQ(KEY_NONE, keyboard.peek_code());
        EXPECT_EQ(0, keyboard.peek_char());
        tick();
        tick();
        EXPECT_EQ(1, calls);
        EXPECT_FALSE(button->pressed);
    };
    type(KEY_RETURN);
    KEYBOARD::process_char_event('\r', 0);
    expect_click();
    type_space();
    expect_click();
    KEYBOARD::process_char_event('a', 0);  // typed before
    type_space();
    expect_click();

    button->callback_flags = BUTTON_EVENT_PRESS;  // what fires on a press does so by key
    type(KEY_RETURN);
    calls = 0;
    tick();
    EXPECT_EQ(1, calls);
    button->enabled = false;
    type(KEY_RETURN);
    tick();
    EXPECT_EQ(1, calls);
    EXPECT_EQ(KEY_RETURN, keyboard.peek_code());  // left to others
    EXPECT_FALSE(button->can_have_focus());
}

TEST_F(ButtonTest, ControlAndReturnIsTheRightClick) {
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    static int right_clicks;
    right_clicks = 0;
    button->right_callback = [](WM_SCREEN_OBJECT*, void*, void*) {
        ++right_clicks;
        KEYBOARD().get_code();
        return WM_MESG_HANDLED;
    };
    button->right_mode = WM_SCREEN_OBJECT::RIGHT_ON_PRESS;
    button->take_focus(1);
    KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_CONTROL);
    type(KEY_RETURN);
    tick();
    EXPECT_EQ(1, right_clicks);
    EXPECT_EQ(0, calls);
}

TEST_F(ButtonTest, FocusComesToButtonsThatDoSomething) {
    EXPECT_TRUE(add_button(10, 10, 29, 29)->can_have_focus());
    EXPECT_FALSE(add_button(10, 10, 29, 29, 2, "", nullptr)->can_have_focus());
    auto* label = new WM_BUTTON(0, 0, 9, 9, style, "", nullptr, count, this, nullptr, 2, 0, 0, 0);
    area().add_object(label, 0);
    EXPECT_FALSE(label->can_have_focus());
    WM_BUTTON* button = add_button(40, 40, 59, 59);
    point(45, 45);
    press();
    EXPECT_TRUE(button->has_focus());  // by a press
}

TEST_F(ButtonTest, ActivatedFollowsTheQuery) {
    static unsigned char answer;
    answer = 1;
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    button->activated_query = [](void*) { return answer; };
    draw_all();
    tick();
    EXPECT_TRUE(button->activated);
    EXPECT_TRUE(take_redraw());
    tick();
    EXPECT_FALSE(take_redraw());
    button->callback = [](WM_SCREEN_OBJECT*, void*, void*) {
        answer = 0;
        return WM_MESG_NONE;
    };
    point(15, 15);
    press();
    release();
    EXPECT_FALSE(button->activated);  // in the tick of the click
}

TEST_F(ButtonTest, PointerRedrawsOnlyWhatChangesItsLook) {
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    draw_all();
    point(15, 15);
    EXPECT_TRUE(button->mouse_over_now);
    EXPECT_FALSE(take_redraw());
    button->mouse_over_text = COLOUR_GREEN;
    point(40, 40);
    EXPECT_TRUE(take_redraw());
    button->callback = nullptr;
    point(15, 15);
    EXPECT_FALSE(take_redraw());
}

TEST_F(ButtonTest, FlashTextBlinks) {
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    draw_all();
    update(10, 0xFFFF);
    EXPECT_FALSE(button->flashing);
    button->flash_text.set(button->flash_text.value, "NEW");
    button->flash_mask = 0x0010;
    const auto update_at = [&](std::uint16_t phases) {
        update(10, phases);
        return take_redraw();
    };
    EXPECT_FALSE(update_at(0));
    EXPECT_TRUE(update_at(0x0010));
    EXPECT_TRUE(button->flashing);
    EXPECT_FALSE(update_at(0x0030));
    EXPECT_TRUE(update_at(0x0020));
    EXPECT_FALSE(button->flashing);
}

TEST_F(ButtonTest, SetStringGrowsAndRedraws) {
    WM_BUTTON* button = add_button(10, 10, 29, 29, 2, "old");
    draw_all();
    EXPECT_FALSE(button->set_string(nullptr, 1));
    EXPECT_FALSE(take_redraw());
    EXPECT_TRUE(button->set_string("a much longer text than before", 0));
    EXPECT_EQ(20, button->width);
    EXPECT_TRUE(take_redraw());
    button->set_string(button->get_title_text(), 1);
    EXPECT_EQ(31, button->width);
    button->set_string("short", 1);
    EXPECT_EQ(31, button->width);
}

TEST_F(ButtonTest, TransparentPixelsAreNoPartOfAGraphicalButton) {
    IMAGE picture(20, 20);
    picture.fill_rect(10, 0, 19, 19, COLOUR_WHITE);
    IMAGE_CACHE cache;
    WM_BUTTON* button = add_button(10, 10, 29, 29);
    for (IMAGE_BOX* box : {&button->up_box, &button->down_box}) {
        box->cache = &cache;
        box->centre = &picture;
    }
    ASSERT_TRUE(button->is_graphical());
    EXPECT_FALSE(button->is_in_it(15, 15));
    EXPECT_TRUE(button->is_in_it(20, 15));
    EXPECT_FALSE(button->is_in_it(30, 15));
    button->button_flags |= BUTTON_DONT_MASK_CLICK;
    EXPECT_TRUE(button->is_in_it(15, 15));
    button->visible = false;
    EXPECT_FALSE(button->is_in_it(20, 15));
    area().remove_object(button, 1, 0);  // before its cache
}

}  // namespace
