// Check boxes, images, animations and sprites.
#include "controls_fixture.h"
#include "modules/winman/sprite.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_image.h"
#include "platform/image_cache.h"

namespace {

// --- WM_CHECK_BOX ---

class CheckBoxTest : public CONTROLS_FIXTURE {
protected:
    WM_CHECK_BOX* add_check_box(const char* text) {
        auto* check_box = new WM_CHECK_BOX(10, 10, style, text, count, this, nullptr, 0);
        area().add_object(check_box, 0);
        return check_box;
    }
};

TEST_F(CheckBoxTest, SizeIsThatOfItsParts) {
    const WM_CHECK_BOX* check_box = add_check_box("Start the game");
    EXPECT_EQ(14, check_box->box->width);  // the font and 4
    EXPECT_EQ(14, check_box->box->height);
    EXPECT_EQ(12, check_box->box->y);
    EXPECT_EQ(10 + 14 + 5, check_box->label->x);
    EXPECT_EQ(14, check_box->label->width);
    EXPECT_EQ(10 + 2 * 3, check_box->label->height);
    EXPECT_EQ(14 + 14 + 5, check_box->width);
    EXPECT_EQ(16, check_box->height);
    style.font_y_sz = 4;
    EXPECT_EQ(10, add_check_box("")->box->width);
}

TEST_F(CheckBoxTest, ReleaseOnEitherPartToggles) {
    WM_CHECK_BOX* check_box = add_check_box("Start the game");
    result = WM_MESG_PASS;
    for (const int px : {15, 35}) {
        calls = 0;
        point(px, 18);
        EXPECT_EQ(WM_MESG_HANDLED, press());
        EXPECT_FALSE(check_box->checked);
        EXPECT_EQ(WM_MESG_PASS, release());
        EXPECT_TRUE(check_box->checked);
        EXPECT_EQ(1, calls);
        EXPECT_STREQ("X", check_box->box->get_title_text());
        press();
        release();
        EXPECT_FALSE(check_box->checked);
        EXPECT_STREQ(" ", check_box->box->get_title_text());
        press();
        point(100, 100);
        release();
        EXPECT_FALSE(check_box->checked);
    }
    calls = 0;
    check_box->set_checked(1);
    EXPECT_TRUE(check_box->checked);
    tick();
    EXPECT_TRUE(check_box->box->activated);
    EXPECT_EQ(0, calls);
}

TEST_F(CheckBoxTest, IsOneStopOfTheFocus) {
    WM_CHECK_BOX* check_box = add_check_box("Start the game");
    WM_BUTTON* next = add_button(100, 10, 119, 29);
    ASSERT_TRUE(pages().give_focus_to_next_object());
    EXPECT_TRUE(check_box->has_focus());
    type_space();
    tick();
    EXPECT_TRUE(check_box->checked);
    EXPECT_EQ(1, calls);
    tick();
    type(KEY_RETURN);
    tick();
    EXPECT_FALSE(check_box->checked);
    tick();
    draw_all();
    EXPECT_EQ(4 * 13, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, HIGHLIGHT));  // round the box

    pages().give_focus_to_next_object();
    EXPECT_TRUE(next->has_focus());
    draw();
    EXPECT_EQ(0, count_pixels(0, 0, 60, HEIGHT - 1, HIGHLIGHT));
    pages().give_focus_to_prev_object();
    EXPECT_TRUE(check_box->has_focus());
    pages().give_focus_to_prev_object();
    EXPECT_TRUE(next->has_focus());
    point(35, 18);
    press();
    EXPECT_TRUE(check_box->has_focus());  // by a press on the label
    release();
    check_box->set_enabled(0);
    EXPECT_FALSE(check_box->can_have_focus());
    calls = 0;
    press();
    release();
    EXPECT_EQ(0, calls);
}

TEST_F(CheckBoxTest, ACallbackRemovesTheWholeCheckBox) {
    for (const int px : {15, 35}) {
        WM_CHECK_BOX* check_box = add_check_box("Start the game");
        result = WM_MESG_REMOVE_OBJECT;
        point(px, 18);
        press();
        EXPECT_EQ(WM_MESG_NONE, release());
        EXPECT_FALSE(area().find_object(check_box));
        tick();
    }
}

TEST_F(CheckBoxTest, ResizeCentresTheParts) {
    WM_CHECK_BOX* check_box = add_check_box("Start the game");
    check_box->resize(60, 40, 1);
    EXPECT_EQ(60, check_box->width);
    EXPECT_EQ(14, check_box->box->width);
    EXPECT_EQ(10 + 13, check_box->box->y);
    EXPECT_EQ(10 + 12, check_box->label->y);
}

TEST_F(CheckBoxTest, ImagesAreThoseOfTheBox) {
    IMAGE_CACHE cache;
    IMAGE picture(14, 14);
    picture.clear(COLOUR_GREEN);
    auto& plain = *(style.boxes[STYLE_BOX_BASE] = std::make_unique<IMAGE_BOX>(&cache));
    plain.centre = &picture;
    style.image_filename.set("check");
    style.images_loaded = true;
    style.flags |= STYLE_DONT_RESIZE_IMAGE | STYLE_LEFT_JUSTIFY_TEXT;
    WM_CHECK_BOX* check_box = add_check_box("Start the game");
    EXPECT_TRUE(check_box->box->is_graphical());
    EXPECT_FALSE(check_box->label->is_graphical());
    EXPECT_EQ(BUTTON_DONT_RESIZE_IMAGE, check_box->box->button_flags);
    EXPECT_EQ(BUTTON_LEFT_JUSTIFY_TEXT, check_box->label->button_flags);
    check_box->set_checked(1);
    EXPECT_STREQ("", check_box->box->get_title_text());
    area().remove_object(check_box, 1, 0);
    style.boxes[STYLE_BOX_BASE].reset();  // before its cache
}

// --- WM_IMAGE ---

class ImageTest : public CONTROLS_FIXTURE {
protected:
    WM_IMAGE* add_image(int w, int h, unsigned char mode = IMAGE_CLICK_ON_PRESS) {
        auto* image =
            new WM_IMAGE(10, 10, static_cast<std::int16_t>(w), static_cast<std::int16_t>(h), 1,
                         remember, this, nullptr, mode, 0);
        area().add_object(image, 0);
        image->image.reset(8, 6);
        image->image.clear(COLOUR_GREEN);
        return image;
    }
    static WM_MESG remember(WM_SCREEN_OBJECT* object, void* data1, void* /*data2*/) {
        auto& test = *static_cast<ImageTest*>(data1);
        const auto& image = *static_cast<WM_IMAGE*>(object);
        ++test.calls;
        test.click_x = image.click_x;
        test.click_y = image.click_y;
        return WM_MESG_HANDLED;
    }
    int click_x = -2, click_y = -2;
};

TEST_F(ImageTest, TakesTheSizeOfThePictureOrTheReverse) {
    const WM_IMAGE* natural = add_image(-1, -1);
    draw_all();
    EXPECT_EQ(8, natural->width);
    EXPECT_EQ(6, natural->height);
    EXPECT_EQ(48, count_pixels(10, 10, 17, 15, COLOUR_GREEN));
    area().clear_objects(0, 1);

    WM_IMAGE* scaled = add_image(20, 30);
    draw_all();
    EXPECT_EQ(20, scaled->image.width);
    EXPECT_EQ(600, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, COLOUR_GREEN));
    scaled->resize(10, 10, 1);
    EXPECT_EQ(10, scaled->image.height);
    scaled->auto_resize = false;
    scaled->resize(31, 30, 1);
    draw_all();
    EXPECT_EQ(100, count_pixels(10 + 10, 10 + 10, 29, 29, COLOUR_GREEN));
    scaled->resize(5, 5, 1);  // never beyond the object
    draw_all();
    EXPECT_EQ(25, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, COLOUR_GREEN));
}

TEST_F(ImageTest, ClicksAsItsModeSays) {
    WM_IMAGE* image = add_image(20, 20);
    for (unsigned char mode = 0; mode < 4; ++mode) {
        image->click_mode = mode;
        calls = 0;
        point(13, 25);
        press();
        EXPECT_EQ(mode & 1, calls);
        EXPECT_EQ(2, manager().mouse_icon);
        tick();
        release();
        EXPECT_EQ((mode & 1) + (mode >> 1), calls);
        EXPECT_EQ(1, manager().mouse_icon);
    }
    EXPECT_EQ(3, click_x);
    EXPECT_EQ(15, click_y);
    EXPECT_EQ(-1, image->click_x);
    image->click_mode = 1;
    image->repeat_while_held = true;
    calls = 0;
    press();
    tick();
    tick();
    EXPECT_EQ(3, calls);
    release();
    point(100, 100);
    press();
    point(15, 15);  // the held button counts here
    EXPECT_EQ(4, calls);
}

TEST_F(ImageTest, KeysClickAtTheCentre) {
    WM_IMAGE* image = add_image(20, 20, 3);
    EXPECT_FALSE(image->can_have_focus());
    image->allowed_focus = true;
    image->take_focus(1);
    type_space();
    tick();
    tick();
    tick();
    EXPECT_EQ(2, calls);  // a press and a release
    EXPECT_EQ(10, click_x);
    EXPECT_EQ(10, click_y);
}

TEST_F(ImageTest, OverlayShowsPointerAndFocus) {
    WM_IMAGE* image = add_image(20, 20);
    image->overlay_colour = 0x80FF0000u;
    draw_all();
    EXPECT_EQ(COLOUR_GREEN, pixel(15, 15));
    COLOUR covered = COLOUR_GREEN;
    covered.mix(image->overlay_colour, 0x80);
    point(15, 15);
    draw();
    EXPECT_EQ(covered, pixel(15, 15));
    point(50, 50);
    draw();
    EXPECT_EQ(COLOUR_GREEN, pixel(15, 15));
    image->allowed_focus = true;
    image->take_focus(1);
    draw();
    EXPECT_EQ(covered, pixel(15, 15));
    image->overlay_colour = COLOUR_INVISIBLE;
    draw_all();
    EXPECT_EQ(18 * 18, count_pixels(10, 10, 29, 29, COLOUR_GREEN));  // in a frame
}

// --- SPRITE and WM_ANIMATION ---

// Frames of 4 by 4, of the colours 1, 2 and so on.
void make_strip(IMAGE& strip, int frames) {
    strip.reset(4 * frames, 4);
    for (int i = 0; i < frames; ++i) {
        strip.fill_rect(4 * i, 0, 4 * i + 3, 3, 0xFF000001u + static_cast<std::uint32_t>(i));
    }
}

TEST(SpriteTest, DrawsAFrameAndTakesItAway) {
    IMAGE strip, target(40, 40);
    make_strip(strip, 3);
    target.clear(COLOUR_WHITE);
    SPRITE sprite(&target, &strip, 3);
    EXPECT_EQ(4, sprite.frame_width);
    sprite.move(10, 12, 2);
    sprite.move(20, 20, 4);  // no such frame
    sprite.move(20, 20, 0);
    sprite.draw(1, 255);
    EXPECT_EQ(0xFF000002u, target.row(12)[10].value);
    EXPECT_EQ(0xFF000002u, target.row(15)[13].value);
    EXPECT_EQ(COLOUR_WHITE, target.row(16)[13]);
    sprite.draw(1, 255);  // what it kept is still what was there first
    sprite.hide();
    EXPECT_EQ(COLOUR_WHITE, target.row(12)[10]);
    sprite.draw(0, 128);
    EXPECT_NEAR(127, target.row(12)[10].red(), 1);
    sprite.hide();
    EXPECT_NE(COLOUR_WHITE, target.row(12)[10]);  // nothing was kept

    target.clear(COLOUR_WHITE);
    sprite.draw_sub(1, 1, 10, 1, 0, 255);
    EXPECT_EQ(COLOUR_WHITE, target.row(13)[10]);
    EXPECT_EQ(0xFF000002u, target.row(13)[13].value);
    EXPECT_EQ(COLOUR_WHITE, target.row(13)[14]);  // nothing of the next frame
    sprite.move(-2, 38, 1);
    sprite.draw(1, 255);
    EXPECT_EQ(0xFF000001u, target.row(39)[1].value);
    sprite.hide();
    EXPECT_EQ(COLOUR_WHITE, target.row(39)[1]);
}

TEST(SpriteTest, FindsCollisions) {
    IMAGE strip, target(40, 40);
    make_strip(strip, 1);
    SPRITE one(&target, &strip, 1), two(&target, &strip, 1);
    one.move(10, 10, 1);
    two.move(14, 10, 1);
    EXPECT_FALSE(one.check_for_collision(two));
    two.move(13, 13, 1);
    EXPECT_TRUE(one.check_for_collision(two));
    two.move(13, 14, 1);
    EXPECT_FALSE(two.check_for_collision(one));
    target.row(12)[13] = 0xFF123456u;
    EXPECT_TRUE(one.check_for_collision(COLOUR(0xFF123456u)));
    EXPECT_FALSE(one.check_for_collision(COLOUR(0xFE123456u)));
    EXPECT_FALSE(two.check_for_collision(COLOUR(0xFF123456u)));
}

TEST(SpriteDeathTest, NeedsAFrame) {
    IMAGE strip(4, 4), target(4, 4);
    EXPECT_EXIT(SPRITE(&target, &strip, 0), testing::ExitedWithCode(1),
                "SPRITE::SPRITE\\(\\) - invalid number of frames");
}

class AnimationTest : public CONTROLS_FIXTURE {
protected:
    WM_ANIMATION* add_animation(int frames,
                                ANIMATION_CALLBACK_TYPE type = ANIMATION_CALLBACK_ON_PRESS) {
        IMAGE strip;
        make_strip(strip, frames);
        auto* animation = new WM_ANIMATION(10, 10, &strip, static_cast<std::int16_t>(frames), 100,
                                           1, count, this, nullptr, type, 0);
        animation->last_step = TEST_CLOCK::time;
        area().add_object(animation, 0);
        return animation;
    }
};

TEST_F(AnimationTest, StepsByItsDelay) {
    WM_ANIMATION* animation = add_animation(3);
    EXPECT_EQ(4, animation->width);
    EXPECT_EQ(4, animation->height);
    draw_all();
    EXPECT_EQ(16, count_pixels(10, 10, 13, 13, 0xFF000001u));
    EXPECT_EQ(WM_MESG_NONE, update(99));
    EXPECT_FALSE(take_redraw());
    EXPECT_EQ(WM_MESG_HANDLED, update(1));
    draw();
    EXPECT_EQ(16, count_pixels(10, 10, 13, 13, 0xFF000002u));
    update(250);
    EXPECT_EQ(3, animation->sprite.frame);  // one step, however late
    update(100);
    EXPECT_EQ(1, animation->sprite.frame);
    EXPECT_EQ(WM_MESG_HANDLED, update(0u - 5000u));  // a clock put back
    animation->playing = false;
    EXPECT_EQ(WM_MESG_NONE, update(100));
    animation->playing = true;
    animation->hide(0, 0);
    EXPECT_EQ(WM_MESG_NONE, update(100));
}

TEST_F(AnimationTest, StopsAtTheFirstOrLastFrame) {
    WM_ANIMATION* animation = add_animation(3);
    animation->stop_at_last = true;
    update(100);
    EXPECT_TRUE(animation->playing);
    update(100);
    EXPECT_FALSE(animation->playing);
    EXPECT_FALSE(animation->stop_at_last);
    EXPECT_EQ(3, animation->sprite.frame);
    animation->playing = animation->stop_at_first = true;
    update(100);
    EXPECT_FALSE(animation->playing);
    EXPECT_EQ(1, animation->sprite.frame);
}

TEST_F(AnimationTest, FadesInTwoRounds) {
    WM_ANIMATION* animation = add_animation(2);
    animation->fading_out = true;
    animation->stop_at_first = true;
    for (const double alpha : {191.0, 127.0, 63.0, 0.0}) {
        EXPECT_TRUE(animation->fading_out);
        EXPECT_TRUE(animation->playing);  // not before the fade is over
        update(100);
        EXPECT_EQ(alpha, animation->alpha);
    }
    EXPECT_FALSE(animation->fading_out);
    EXPECT_FALSE(animation->playing);
    draw_all();
    EXPECT_EQ(COLOUR_BLACK, pixel(11, 11));
    animation->fading_in = true;  // also when it doesn't play
    update(100);
    EXPECT_EQ(64.0, animation->alpha);
}

TEST_F(AnimationTest, OneFrameGoesOn) {
    WM_ANIMATION* animation = add_animation(1);
    draw_all();
    update(100);
    EXPECT_EQ(1, animation->sprite.frame);
    EXPECT_TRUE(take_redraw());
}

TEST_F(AnimationTest, ClicksAsItsTypeSays) {
    const struct {
        ANIMATION_CALLBACK_TYPE type;
        int on_press, in_all;
    } cases[] = {{ANIMATION_CALLBACK_ON_PRESS, 1, 1},
                 {ANIMATION_CALLBACK_ON_RELEASE, 0, 1},
                 {ANIMATION_CALLBACK_ON_BOTH, 1, 2}};
    for (const auto& expected : cases) {
        WM_ANIMATION* animation = add_animation(2, expected.type);
        calls = 0;
        point(11, 11);
        press();
        EXPECT_EQ(expected.on_press, calls);
        EXPECT_EQ(2, manager().mouse_icon);
        release();
        EXPECT_EQ(expected.in_all, calls);
        EXPECT_FALSE(animation->can_have_focus());
        area().remove_object(animation, 1, 0);
    }
}

}  // namespace
