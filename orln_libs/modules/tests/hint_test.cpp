// Tool tips.
#include "controls_fixture.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_script.h"
#include "platform/process_tools.h"

namespace {

class HintTest : public CONTROLS_FIXTURE {
protected:
    void SetUp() override {
        CONTROLS_FIXTURE::SetUp();
        WM_SCREEN_OBJECT::hint_style_set = style;
        button = add_button(10, 60, 49, 79);
        button->set_hint_text("A hint");
        draw_all();
    }
    // The pointer comes to the button and stays.
    void show_hint() {
        point(20, 70);
        tick(500);
        ASSERT_TRUE(button->hint.is_showing());
    }

    WM_BUTTON* button = nullptr;
};

TEST_F(HintTest, ShowsOnceThePointerHasStayed) {
    point(20, 70);
    tick(400);
    point(25, 72);  // moving inside goes on counting
    EXPECT_FALSE(button->hint.is_showing());
    tick(85);
    ASSERT_TRUE(button->hint.is_showing());
    const WM_SCRIPT& hint = *button->hint.script;
    EXPECT_STREQ("A hint", button->get_hint_text());
    EXPECT_EQ(25, hint.x);
    EXPECT_EQ(72, hint.y + hint.height - 1);
    point(30, 75);
    EXPECT_EQ(30, hint.x);  // follows
    draw();
    EXPECT_EQ(FACE, pixel(31, 74));

    point(80, 100);
    EXPECT_FALSE(button->hint.is_showing());
    EXPECT_EQ(OBJECT_HINT::NO_POSITION, button->hint.hint_x);
    EXPECT_EQ(0u, button->hint.hint_time);
    draw();
    EXPECT_EQ(0, count_pixels(50, 40, WIDTH - 1, HEIGHT - 1, FACE));
}

TEST_F(HintTest, StaysInsideTheWindow) {
    button->move(150, 0);
    button->set_hint_text(std::string(30, 'w').c_str());
    point(180, 3);
    tick(500);
    ASSERT_TRUE(button->hint.is_showing());
    EXPECT_EQ(WIDTH - 30, button->hint.script->x);
    EXPECT_EQ(0, button->hint.script->y);
}

TEST_F(HintTest, InputTakesItAway) {
    show_hint();
    press();
    EXPECT_FALSE(button->hint.is_showing());
    tick(600);
    EXPECT_FALSE(button->hint.is_showing());  // held
    release();
    EXPECT_EQ(1, calls);
    tick(400);
    EXPECT_FALSE(button->hint.is_showing());  // waits anew
    tick(100);
    EXPECT_TRUE(button->hint.is_showing());

    type(KEY_ESCAPE);
    tick();
    EXPECT_FALSE(button->hint.is_showing());
    tick();
    EXPECT_FALSE(button->hint.is_showing());
    tick(500);
    EXPECT_FALSE(button->hint.is_showing());  // somebody may read the key yet
    KEYBOARD::last_event_time -= 500;
    tick();
    tick();
    EXPECT_TRUE(button->hint.is_showing());
}

TEST_F(HintTest, TheWheelTakesItAway) {
    MOUSE::wheel_pos = 2;  // that nobody wanted, from before
    show_hint();
    tick();
    EXPECT_TRUE(button->hint.is_showing());
    MOUSE::wheel_pos = 1;
    tick();
    EXPECT_FALSE(button->hint.is_showing());
    tick(485);
    EXPECT_FALSE(button->hint.is_showing()) << "the clock began anew";
    MOUSE::wheel_pos = 0;
}

TEST_F(HintTest, OffOrHiddenShowsNone) {
    WM_SCREEN_OBJECT::hint_delay_time = WM_SCREEN_OBJECT::HINTS_OFF;
    point(20, 70);
    tick(40000);
    EXPECT_FALSE(button->hint.is_showing());
    WM_SCREEN_OBJECT::hint_delay_time = 500;
    tick();
    ASSERT_TRUE(button->hint.is_showing());
    button->hide(0, 0);
    EXPECT_FALSE(button->hint.is_showing());
    EXPECT_EQ(OBJECT_HINT::NO_POSITION, button->hint.hint_x);
    button->request_draw(0, 0);
    tick();
    tick(499);
    EXPECT_FALSE(button->hint.is_showing());
    button->set_hint_text("");
    EXPECT_EQ(nullptr, button->get_hint_text());
    tick(500);
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
}

TEST_F(HintTest, NextControlGoesOnWithTheClock) {
    WM_BUTTON* next = add_button(50, 60, 89, 79);
    next->set_hint_text("Another");
    show_hint();
    point(60, 70);
    EXPECT_FALSE(button->hint.is_showing());
    EXPECT_FALSE(next->hint.is_showing());  // the hint had this tick's input
    tick();
    EXPECT_TRUE(next->hint.is_showing());

    // Without a hint on show the next one waits.
    point(20, 100);
    point(20, 70);
    tick(300);
    point(60, 70);
    tick(300);
    EXPECT_FALSE(next->hint.is_showing());
    tick(300);
    EXPECT_TRUE(next->hint.is_showing());
}

TEST_F(HintTest, GoesWithWhatItsControlStandsIn) {
    TEST_OBJECT* panel = add(new TEST_OBJECT(0, 50, 100, 50));
    area().objects.remove_node(button);
    panel->add_object(button, 0);
    button->callback_flags = BUTTON_EVENT_PRESS;
    show_hint();
    panel->hide(0, 0);
    press();
    EXPECT_EQ(0, calls);  // nobody sees the button
    release();
    panel->request_draw(0, 0);
    show_hint();
    panel->hide(0, 0);
    tick();
    EXPECT_FALSE(button->hint.is_showing());
}

TEST_F(HintTest, LeavesTheFocusWhereItIs) {
    WM_SCREEN_OBJECT::millisecond_clock = [] { return TEST_CLOCK::time; };
    WM_BUTTON* before = add_button(100, 10, 119, 29);
    WM_BUTTON* focused = add_button(120, 10, 139, 29);
    WM_BUTTON* next = add_button(140, 10, 159, 29);
    before->take_focus(1);
    pages().monitor(0);
    focused->take_focus(1);
    const auto tick_page = [](int px, std::uint32_t ms) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), 70);
        TEST_CLOCK::time += ms;
        pages().monitor(0);
    };
    tick_page(20, 15);
    tick_page(20, 500);
    ASSERT_TRUE(button->hint.is_showing());
    tick_page(25, 15);
    EXPECT_TRUE(focused->has_focus());
    type(KEY_TAB);
    tick_page(25, 15);
    EXPECT_TRUE(button->hint.is_showing());
    EXPECT_TRUE(next->has_focus());
    next->hide(0, 0);
    tick_page(25, 15);
    EXPECT_TRUE(button->hint.is_showing());
    EXPECT_FALSE(next->has_focus());
    KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_CONTROL);
    type(KEY_TAB);
    tick_page(25, 15);
    KEYBOARD::set_modifiers(0);
    EXPECT_TRUE(button->has_focus());  // the first of the area
    tick_page(180, 15);
    EXPECT_FALSE(button->hint.is_showing());
    tick_page(180, 15);
    EXPECT_TRUE(button->has_focus());
    WM_SCREEN_OBJECT::millisecond_clock = get_ms_count;
}

TEST_F(HintTest, IconHasAHintOfItsOwn) {
    button->set_icon_hint_text("The icon");
    button->icon_left = 10;
    button->icon_right = 20;
    button->icon_x_spacing = 2;
    point(22, 70);
    tick(500);
    EXPECT_TRUE(button->icon_hint.is_showing());
    EXPECT_FALSE(button->hint.is_showing());
    point(23, 70);
    EXPECT_FALSE(button->icon_hint.is_showing());
    EXPECT_TRUE(button->hint.is_showing());  // at once
    point(15, 70);
    EXPECT_TRUE(button->icon_hint.is_showing());
    button->hide_icon_hint_text();
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
    EXPECT_STREQ("The icon", button->get_icon_hint_text());
}

TEST_F(HintTest, LabelsDoTheSame) {
    auto* label = new WM_SCRIPT(100, 60, 139, 79, style, "", 0);
    area().add_object(label, 0);
    label->set_icon_hint_text("The icon");
    label->set_hint_text("The label");
    const auto shown_at = [&](int px) {
        point(px, 70);
        tick(500);
        return label->icon_hint->is_showing() ? label->get_icon_hint_text()
               : label->hint->is_showing()    ? label->get_hint_text()
                                              : "none";
    };
    label->icon_x_spacing = 200;
    EXPECT_STREQ("The label", shown_at(101));  // there is no icon
    label->icon_left = 130;
    label->icon_right = 139;
    label->icon_x_spacing = 2;
    EXPECT_STREQ("The icon", shown_at(110));
    label->script_flags |= SCRIPT_ICON_RIGHT;  // only the icon's end
    EXPECT_STREQ("The label", shown_at(127));
    EXPECT_STREQ("The icon", shown_at(128));
    label->set_hint_text(nullptr);
    EXPECT_STREQ("The icon", shown_at(110));
}

TEST_F(HintTest, GoesWithItsControl) {
    auto* image = new WM_IMAGE(100, 60, 20, 20, 1, nullptr, nullptr, nullptr, 0, 0);
    image->set_hint_text("An image");
    area().add_object(image, 0);
    point(105, 65);
    tick(500);
    ASSERT_EQ(1, info().modal_screen_objects.get_count());
    area().remove_object(image, 1, 0);
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
    show_hint();
    pages().shutdown();
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
}

TEST_F(HintTest, TextThatIsCutBecomesTheHint) {
    use_font();
    WM_BUTTON* narrow = add_button(10, 100, 69, 119, 2, "This text has no room here");
    WM_BUTTON* wide = add_button(10, 120, 69, 139, 2, "Room");
    draw_all();
    EXPECT_STREQ("This text has no room here", narrow->get_hint_text());
    EXPECT_EQ(nullptr, wide->get_hint_text());
    narrow->set_string("Short", 0);
    EXPECT_EQ(nullptr, narrow->get_hint_text());
    narrow->set_hint_text("Own");
    narrow->set_string("This one has no room either", 0);
    draw_all();
    EXPECT_STREQ("Own", narrow->get_hint_text());
}

}  // namespace
