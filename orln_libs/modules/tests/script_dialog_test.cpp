// Labels and dialogs without a skin: sizes, looks, effects over time, compositing, dragging.
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "modules/winman/object_hint.h"
#include "modules/winman/wm_dialog.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "winman_fixture.h"

namespace {

// The first modal object of the window: sets the toolkit's clock for those behind it.
class CLOCK : public WM_SCREEN_OBJECT {
public:
    CLOCK() : WM_SCREEN_OBJECT(0, nullptr, nullptr, nullptr, 0) { not_owned = true; }
    WM_MESG update(unsigned char) override {
        now_ms = time;
        flashing_flags = flashes;
        return WM_MESG_NONE;
    }
    std::uint32_t time = 1000;
    std::uint16_t flashes = 0;
};

WM_STYLE_SET make_style(COLOUR background) {
    WM_STYLE_SET style;
    style.bg_colour = background;
    style.fg_colour = COLOUR_WHITE;
    style.flags = 0;
    return style;
}

// A dialog that tells when it goes.
class TEST_DIALOG : public WM_DIALOG {
public:
    TEST_DIALOG(int x1, int y1, int w, int h, const EFFECT_INFO& info, COLOUR colour = COLOUR_BLUE,
                const char* title_text = nullptr, bool defer = false)
        : WM_DIALOG(static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
                    static_cast<std::int16_t>(w), static_cast<std::int16_t>(h), title_text, defer,
                    make_style(colour), make_style(COLOUR_GREEN), make_style(COLOUR_INVISIBLE),
                    &info, 0) {
        ++alive;
    }
    ~TEST_DIALOG() override { --alive; }
    static inline int alive = 0;
};

constexpr EFFECT_INFO NO_EFFECT = {0, 100, 400, 128};

class SCRIPT_DIALOG_TEST : public WINMAN_FIXTURE {
protected:
    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        TEST_DIALOG::alive = 0;
        WM_DIALOG::drag_contents = true;
        area().add_modal_object(&clock, 0);
        pages().set_background_colour(COLOUR_BLACK);
        draw_all();
    }
    void TearDown() override {
        WM_DIALOG::darken_background = WM_DIALOG::grey_background = false;
        WM_DIALOG::drag_contents = true;
        area().remove_modal_object(&clock, 0, 0);
        WINMAN_FIXTURE::TearDown();
        EXPECT_EQ(0, TEST_DIALOG::alive);
        FONT_MANAGER::get_instance().free_font(-1);
    }

    TEST_DIALOG* show(TEST_DIALOG* dialog) {
        area().add_modal_object(dialog, 0);
        pages().check_for_draw();
        return dialog;
    }
    void tick(std::uint32_t time) {
        clock.time = time;
        area().update(1);
        pages().check_for_draw();
    }
    void mouse(int px, int py, bool left) {
        MOUSE::set_position(0, static_cast<std::int16_t>(px), static_cast<std::int16_t>(py));
        MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, left);
        area().monitor();
        pages().check_for_draw();
    }
    static std::vector<COLOUR> picture() {
        std::vector<COLOUR> pixels;
        for (int y = 0; y < HEIGHT; ++y) {
            const COLOUR* row = info().back_buffer->row(y);
            pixels.insert(pixels.end(), row, row + WIDTH);
        }
        return pixels;
    }
    // Anything goes wrong with the picture that repainting it mends.
    void expect_picture_complete(const char* when) {
        const std::vector<COLOUR> before = picture();
        area().mark_entire_redraw_area();
        pages().check_for_draw();
        EXPECT_TRUE(before == picture()) << when;
    }
    static bool load_a_font() {
        DISK_MANAGER disk;
        return disk.move_down("/usr/share/fonts/opentype/inter", false, true) &&
               FONT_MANAGER::get_instance().load_font("Inter-Bold.otf", 0, &disk) == 0;
    }
    // The rectangle round all pixels other than black.
    static WM_REGION find_ink() {
        WM_REGION ink;
        for (std::int16_t y = 0; y < HEIGHT; ++y) {
            for (std::int16_t x = 0; x < WIDTH; ++x) {
                if ((pixel(x, y).value & 0xFFFFFF) == 0) {
                    continue;
                }
                WM_REGION point;
                point.left = point.right = x;
                point.top = point.bottom = y;
                ink.is_set() ? ink.unite(point) : void(ink = point);
            }
        }
        return ink;
    }
    std::unique_ptr<WM_SCRIPT> script(int x1, int y1, int x2, int y2, const WM_STYLE_SET& style,
                                      const char* text) {
        return std::make_unique<WM_SCRIPT>(
            static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
            static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2), style, text, 0);
    }
    void draw(WM_SCRIPT& label) {
        info().back_buffer->clear(COLOUR_BLACK);
        label.draw_object();
    }

    CLOCK clock;
};

using ScriptTest = SCRIPT_DIALOG_TEST;
using DialogTest = SCRIPT_DIALOG_TEST;

// --- Scripts ---

// Without a font a text is as wide as it has bytes.
TEST_F(ScriptTest, NaturalSizeIsTextAndGaps) {
    WM_STYLE_SET style = make_style(COLOUR_RED);
    style.font = 5;
    style.font_x_sz = style.font_y_sz = 12;
    style.border_left_gap = 7;
    style.border_top_gap = 3;
    style.border_bottom_gap = 4;
    const auto natural = script(0, 0, -5, -3, style, "four");
    EXPECT_EQ(7 + 4, natural->width);
    EXPECT_EQ(3 + 12 + 4, natural->height);
    EXPECT_EQ(0, natural->right_gap);  // 65535
    EXPECT_EQ(INT16_MAX, script(0, 0, -1, -1, style, std::string(40000, 'w').c_str())->width);
    const auto given = script(10, 20, 39, -1, style, nullptr);
    EXPECT_EQ(30, given->width);
    EXPECT_EQ(19, given->height);
    EXPECT_STREQ("", given->get_text());
    std::int16_t x_gap = -1, y_gap = -1;
    WM_SCRIPT::calc_xgap_from_style_set(style, x_gap);
    WM_SCRIPT::calc_ygap_from_style_set(style, y_gap);
    EXPECT_EQ(7, x_gap);
    EXPECT_EQ(7, y_gap);
}

TEST_F(ScriptTest, BackgroundFollowsFlagsAndFlashing) {
    WM_STYLE_SET style = make_style(COLOUR_RED);
    style.fading_colour = COLOUR_BLUE;
    style.flashing_colour = COLOUR_GREEN;
    const auto label = script(10, 10, 109, 59, style, "");
    const auto at = [&](int px, int py) { return pixel(px, py); };
    draw(*label);
    EXPECT_EQ(COLOUR_RED, at(10, 10));
    EXPECT_EQ(COLOUR_RED, at(109, 59));
    EXPECT_EQ(COLOUR_BLACK, at(110, 59));

    label->script_flags = SCRIPT_HORIZONTAL_FADE;
    draw(*label);
    EXPECT_EQ(COLOUR_RED, at(10, 59));
    EXPECT_EQ(COLOUR_BLUE, at(109, 10));
    label->script_flags = SCRIPT_VERTICAL_FADE;
    draw(*label);
    EXPECT_EQ(COLOUR_RED, at(109, 10));
    EXPECT_EQ(COLOUR_BLUE, at(10, 59));

    label->script_flags = SCRIPT_DARKEN;
    info().back_buffer->clear(COLOUR_WHITE);
    label->draw_object();
    EXPECT_NEAR(127, at(50, 30).red(), 2);
    label->flashing = true;
    draw(*label);
    EXPECT_EQ(COLOUR_GREEN, at(50, 30));
    label->has_background = false;
    draw(*label);
    EXPECT_EQ(COLOUR_BLACK, at(50, 30));
}

TEST_F(ScriptTest, TextFlagsPlaceTheInk) {
    ASSERT_TRUE(load_a_font()) << "the package fonts-inter is needed";
    WM_STYLE_SET style = make_style(COLOUR_INVISIBLE);
    style.font = 0;
    style.font_x_sz = style.font_y_sz = 16;
    const auto label = script(20, 20, 179, 119, style, "HH");
    const int text_width = FONT_MANAGER::get_instance().get_string_width(0, 16, 16, "HH");
    const auto ink_with = [&](std::uint32_t flags) {
        label->script_flags = flags;
        draw(*label);
        return find_ink();
    };
    const WM_REGION centred = ink_with(0);
    ASSERT_TRUE(centred.is_set());
    EXPECT_NEAR(100, (centred.left + centred.right) / 2, 2);
    EXPECT_NEAR(70, (centred.top + centred.bottom) / 2, 4);
    EXPECT_NEAR(20, ink_with(SCRIPT_LEFT_JUSTIFY_TEXT).left, 3);
    EXPECT_NEAR(179, ink_with(SCRIPT_RIGHT_JUSTIFY_TEXT).right, 3);
    EXPECT_LT(ink_with(SCRIPT_TOP_ALIGN_TEXT).bottom, 20 + 16);
    EXPECT_GT(ink_with(SCRIPT_BOTTOM_ALIGN_TEXT).top, 119 - 17);

    label->reserved_left = 60;
    const WM_REGION reserved = ink_with(SCRIPT_LEFT_JUSTIFY_TEXT);
    EXPECT_NEAR(80, reserved.left, 3);
    EXPECT_NEAR(80 + text_width, reserved.right, 4);
    label->reserved_left = 0;

    ink_with(0);
    int brightest = 0, faint = 0;
    for (const COLOUR each : picture()) {
        brightest = std::max<int>(brightest, each.red());
    }
    label->enabled = false;
    ink_with(0);
    for (const COLOUR each : picture()) {
        faint = std::max<int>(faint, each.red());
    }
    EXPECT_EQ(255, brightest);
    EXPECT_NEAR(255 / 4, faint, 4);

    // A text that doesn't fit becomes the hint, until there is another text.
    const auto narrow = script(20, 20, 50, 40, style, "HHHHHHHHHH");
    draw(*narrow);
    EXPECT_STREQ("HHHHHHHHHH", narrow->get_hint_text());
    narrow->set_text("H");
    draw(*narrow);
    EXPECT_EQ(nullptr, narrow->get_hint_text());
    narrow->set_hint_text("H");  // one that was set stays, whatever it says
    narrow->set_text("I");
    EXPECT_STREQ("H", narrow->get_hint_text());
}

TEST_F(ScriptTest, IconStandsInItsGap) {
    WM_STYLE_SET style = make_style(COLOUR_INVISIBLE);
    style.border_left_gap = style.border_right_gap = 30;
    const auto label = script(20, 20, 179, 119, style, "");
    label->icon.reset(10, 8);
    label->icon.clear(COLOUR_WHITE);
    const auto ink_with = [&](std::uint32_t flags) {
        label->script_flags = flags;
        draw(*label);
        return find_ink();
    };
    const WM_REGION left = ink_with(SCRIPT_ICON_LEFT);
    EXPECT_EQ(30, left.left);
    EXPECT_EQ(39, left.right);
    EXPECT_EQ(66, left.top);
    EXPECT_EQ(73, left.bottom);
    EXPECT_EQ(160, ink_with(SCRIPT_ICON_RIGHT).left);
    EXPECT_EQ(95, ink_with(0).left);
    EXPECT_EQ(255, pixel(99, 70).red());
    label->enabled = false;
    ink_with(0);
    EXPECT_NEAR(255 / 4, pixel(99, 70).red(), 1);
}

TEST_F(ScriptTest, FlashesOnTheSharedBeatAndRedrawsOnChangeOnly) {
    const auto label = script(0, 0, 49, 19, make_style(COLOUR_RED), "a");
    label->not_owned = true;
    area().add_modal_object(label.get(), 0);
    draw_all();
    const auto redraws_on = [&](int flashes) {
        clock.flashes = static_cast<std::uint16_t>(flashes);
        area().update(1);
        const bool marked = info().pending_count != 0;
        pages().check_for_draw();
        return marked;
    };
    EXPECT_FALSE(redraws_on(1024)) << "there is no flash text";
    label->flash_text.set(label->flash_text.value, "b");
    EXPECT_TRUE(redraws_on(1024));
    EXPECT_TRUE(label->flashing);
    EXPECT_FALSE(redraws_on(1024 | 1));
    EXPECT_TRUE(redraws_on(1));
    EXPECT_FALSE(label->flashing);
}

TEST_F(ScriptTest, ShownHintGoesAtTheFirstInputAfterItsOwnerHadIt) {
    TEST_OBJECT* owner = add(new TEST_OBJECT(0, 0, 40, 20, COLOUR_RED, "owner"));
    const auto hint = script(50, 50, 80, 60, make_style(COLOUR_RED), "hint");
    hint->owner = owner;
    hint->not_owned = true;
    EXPECT_TRUE(hint->hide_on_screen_refresh());
    EXPECT_EQ(WM_MESG_NONE, hint->monitor());
    EXPECT_EQ(1, owner->monitors);
    KEYBOARD::process_key_event(KEY_LEFT);
    EXPECT_EQ(WM_MESG_REMOVE_MODAL, hint->monitor());
    KEYBOARD().clear_buffer();
    MOUSE::process_mouse_button(MOUSE_BUTTON_RIGHT, 1);
    owner->monitor_result = WM_MESG_CHANGE_PAGE;
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, hint->monitor());
    EXPECT_EQ(WM_MESG_REMOVE_MODAL, hint->monitor());
}

TEST_F(ScriptTest, HidingTakesTheHintAway) {
    auto* label = script(0, 0, 49, 19, make_style(COLOUR_RED), "a").release();
    area().add_object(label, 0);
    label->set_hint_text("a hint");
    const std::int32_t others = area().get_modal_object_count();
    MOUSE::set_position(0, 10, 10);
    WM_SCREEN_OBJECT::now_ms = 5000;
    label->monitor();
    WM_SCREEN_OBJECT::now_ms = 5000 + 501;
    label->monitor();
    EXPECT_EQ(others + 1, area().get_modal_object_count());
    label->hide(0, 0);
    EXPECT_EQ(others, area().get_modal_object_count());
}

// --- Effects ---

TEST_F(DialogTest, WithoutEffectsItIsThereAtOnceAndDimsWhileDragged) {
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 20, 60, 40, NO_EFFECT, COLOUR_BLUE, "t"));
    EXPECT_EQ(255, dialog->alpha);
    EXPECT_EQ(COLOUR_BLUE, pixel(50, 55));
    mouse(25, 22, false);
    mouse(25, 22, true);
    EXPECT_TRUE(dialog->is_dragging());
    EXPECT_EQ(128, dialog->alpha);
    mouse(25, 22, false);
    EXPECT_FALSE(dialog->is_dragging());
    EXPECT_EQ(255, dialog->alpha);
}

TEST_F(DialogTest, FadesRunOverTheirTime) {
    const EFFECT_INFO fades = {EFFECT_FADE_IN | EFFECT_FADE_OUT | EFFECT_DIM | EFFECT_BRIGHTEN, 100,
                               400, 55};
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 20, 60, 40, fades));
    EXPECT_EQ(0, dialog->alpha);
    tick(2000);
    EXPECT_EQ(0, dialog->alpha);  // the time begins now
    tick(2050);
    EXPECT_EQ(127, dialog->alpha);
    EXPECT_EQ(COLOUR_BLACK.value & 0xFF, pixel(50, 40).red());
    EXPECT_NEAR(127, pixel(50, 40).blue(), 2);
    tick(2100);
    EXPECT_EQ(255, dialog->alpha);
    EXPECT_FALSE(dialog->is_animating());
    dialog->start_fade(55);
    tick(3000);
    tick(3100);
    EXPECT_EQ(205, dialog->alpha) << "between visible alphas the other time counts";
    tick(3500);
    EXPECT_EQ(55, dialog->alpha);
    dialog->start_fade(255);
    tick(4000);
    tick(4200);
    EXPECT_EQ(155, dialog->alpha);
    // The clock may wrap in the middle, or just at the beginning.
    dialog->start_fade(255);
    tick(0xFFFFFFF0u);
    tick(0xFFFFFFF0u + 200u);
    EXPECT_EQ(205, dialog->alpha);
    dialog->start_fade(255);
    tick(0);
    EXPECT_EQ(205, dialog->alpha);
    tick(199);
    EXPECT_EQ(230, dialog->alpha);
}

TEST_F(DialogTest, EachChangeThatTheFlagsLeaveOutIsAJump) {
    struct CASE {
        unsigned char from, to;
        std::uint16_t flag;
    };
    for (const CASE& each : {CASE{0, 255, EFFECT_FADE_IN}, CASE{255, 0, EFFECT_FADE_OUT},
                             CASE{255, 100, EFFECT_DIM}, CASE{100, 255, EFFECT_BRIGHTEN}}) {
        for (const bool with : {false, true}) {
            const std::uint16_t flags =
                with ? each.flag : static_cast<std::uint16_t>(0xF & ~each.flag);
            TEST_DIALOG dialog(0, 0, 10, 10, {flags, 100, 100, 0});
            dialog.alpha = each.from;
            dialog.start_fade(each.to);
            EXPECT_EQ(with ? each.from : each.to, dialog.alpha) << int{each.flag};
            dialog.no_effects = true;
            dialog.alpha = each.from;
            dialog.start_fade(each.to);
            EXPECT_EQ(each.to, dialog.alpha);
        }
    }
}

TEST_F(DialogTest, SlidesInAndOutAndIsRemoved) {
    const EFFECT_INFO slide = {EFFECT_SLIDE_IN | EFFECT_SLIDE_OUT | EFFECT_SLIDE_ABOVE, 100, 0,
                               255};
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 60, 60, 40, slide));
    TEST_OBJECT* child = new TEST_OBJECT(10, 10, 5, 5);
    dialog->add_object(child, 1);
    const int child_offset = child->y - dialog->y;
    EXPECT_EQ(20, dialog->y);
    EXPECT_EQ(60, dialog->get_y()) << "its place is the one that it slides to";
    tick(2000);
    tick(2025);
    EXPECT_EQ(30, dialog->y);
    EXPECT_EQ(30 + child_offset, child->y);
    EXPECT_EQ(COLOUR_BLUE, pixel(50, 65));
    EXPECT_EQ(COLOUR_BLACK, pixel(50, 58)) << "not outside of its place";
    expect_picture_complete("half way in");
    // Moving it in the middle moves where it will end.
    dialog->move(100, 60);
    tick(2075);
    EXPECT_EQ(50, dialog->y);
    EXPECT_EQ(100, dialog->x);
    tick(2100);
    EXPECT_EQ(60, dialog->y);
    EXPECT_FALSE(dialog->is_animating());
    EXPECT_EQ(COLOUR_BLACK, pixel(50, 65));
    expect_picture_complete("in its place");

    pages().close_modal_dialogs();
    EXPECT_EQ(255, dialog->alpha) << "it slides, so that it must be seen";
    tick(3000);
    tick(3050);
    EXPECT_EQ(40, dialog->y);
    EXPECT_EQ(60, dialog->get_y());
    expect_picture_complete("half way out");
    EXPECT_EQ(1, TEST_DIALOG::alive);
    tick(3100);
    EXPECT_EQ(0, TEST_DIALOG::alive);
    EXPECT_EQ(COLOUR_BLACK, pixel(110, 65));
}

TEST_F(DialogTest, SlidesFromTheEdgeAndFinishesWhenHidden) {
    const EFFECT_INFO slide = {
        EFFECT_SLIDE_IN | EFFECT_SLIDE_BELOW | EFFECT_SLIDE_RIGHT | EFFECT_SLIDE_FROM_EDGE, 100, 0,
        255};
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 60, 60, 40, slide));
    EXPECT_EQ(WIDTH, dialog->x);
    EXPECT_EQ(HEIGHT, dialog->y);
    tick(2000);
    tick(2050);
    EXPECT_EQ(110, dialog->x);
    dialog->hide(0, 0);
    EXPECT_EQ(20, dialog->x);
    EXPECT_EQ(60, dialog->y);
    // Shown again it slides again.
    dialog->request_draw(0, 0);
    pages().check_for_draw();
    EXPECT_EQ(WIDTH, dialog->x);
}

TEST_F(DialogTest, ClosedByAFadeItCanBeShownAgain) {
    const EFFECT_INFO fade = {EFFECT_FADE_IN | EFFECT_FADE_OUT, 100, 100, 255};
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 20, 60, 40, fade));
    tick(1000);
    tick(1100);
    dialog->start_fade(0);
    tick(2000);
    EXPECT_TRUE(dialog->visible);
    tick(2100);
    EXPECT_FALSE(dialog->visible);
    EXPECT_EQ(1, TEST_DIALOG::alive) << "only hidden";
    dialog->request_draw(0, 0);
    tick(3000);
    tick(3001);
    tick(3051);
    EXPECT_TRUE(dialog->visible);
    EXPECT_NEAR(127, dialog->alpha, 1);
    tick(3101);
    EXPECT_EQ(255, dialog->alpha);
    // One that is to close before it was ever drawn closes, too.
    TEST_DIALOG* other = new TEST_DIALOG(20, 20, 60, 40, NO_EFFECT);
    area().add_modal_object(other, 0);
    other->start_closing();
    tick(4000);
    EXPECT_EQ(1, TEST_DIALOG::alive);
}

// --- Compositing ---

TEST_F(DialogTest, HalfFadedPixelsAreThoseOfAPlainBlend) {
    add(new TEST_OBJECT(0, 0, 70, 100, COLOUR_YELLOW));
    add(new TEST_OBJECT(70, 0, 70, 100, COLOUR(12, 34, 56)));
    draw_all();
    TEST_DIALOG* dialog = new TEST_DIALOG(30, 30, 80, 60, NO_EFFECT, COLOUR(200, 100, 50, 128));
    dialog->add_object(new TEST_OBJECT(20, 20, 30, 30, COLOUR_RED), 1);
    const std::vector<COLOUR> under = picture();
    show(dialog);
    const std::vector<COLOUR> full = picture();
    EXPECT_FALSE(under == full);
    for (const std::uint8_t alpha : std::initializer_list<std::uint8_t>{1, 100, 200, 254}) {
        dialog->alpha = dialog->target_alpha = alpha;
        dialog->request_draw(0, 0);
        pages().check_for_draw();
        std::vector<COLOUR> expected = under;
        for (int y = 30; y < 90; ++y) {
            for (int x = 30; x < 110; ++x) {
                const std::size_t i = static_cast<std::size_t>(y * WIDTH + x);
                const auto drawn_alpha = static_cast<unsigned char>(full[i].alpha() * alpha / 255);
                expected[i].mix(full[i].with_alpha(drawn_alpha), drawn_alpha);
            }
        }
        const std::vector<COLOUR> got = picture();
        for (std::size_t i = 0; i < got.size(); ++i) {
            ASSERT_EQ(expected[i].value & 0xFFFFFF, got[i].value & 0xFFFFFF)
                << int{alpha} << " at " << i % WIDTH << "," << i / WIDTH;
        }
        // Redrawing a part of it gives the same picture.
        area().mark_redraw_subarea(40, 40, 50, 50, 0);
        pages().check_for_draw();
        EXPECT_TRUE(got == picture()) << int{alpha};
    }
}

TEST_F(DialogTest, TranslucentDialogThatDrawsNothingLeavesTheBufferAlone) {
    TEST_DIALOG* dialog = show(new TEST_DIALOG(30, 30, 80, 60, NO_EFFECT));
    dialog->alpha = dialog->target_alpha = 100;
    dialog->request_draw(0, 0);
    pages().check_for_draw();
    const std::vector<COLOUR> before = picture();
    IMAGE& buffer = *info().back_buffer;
    buffer.set_not_dirty();
    buffer.mark_dirty_area(5, 6, 7, 8);
    dialog->check_for_redraw();  // no region is to be drawn
    EXPECT_TRUE(before == picture());
    EXPECT_EQ(5, buffer.dirty_left);
    EXPECT_EQ(8, buffer.dirty_bottom);
    // What was dirty before a drawing is dirty afterwards.
    dialog->request_draw(0, 0);
    pages().check_for_draw();
    EXPECT_EQ(5, buffer.dirty_left);
    EXPECT_EQ(109, buffer.dirty_right);
}

TEST_F(DialogTest, BackgroundIsDarkenedOnceWhateverIsRedrawn) {
    add(new TEST_OBJECT(0, 0, WIDTH, HEIGHT, COLOUR(200, 100, 40)));
    draw_all();
    WM_DIALOG::darken_background = true;
    TEST_DIALOG* dialog = show(new TEST_DIALOG(30, 30, 80, 60, NO_EFFECT));
    const COLOUR dark = pixel(150, 120);
    EXPECT_NEAR(100, dark.red(), 1);
    EXPECT_EQ(dark, pixel(5, 5)) << "all of the window, not just what was to be redrawn";
    EXPECT_EQ(COLOUR_BLUE, pixel(40, 40));
    show(new TEST_DIALOG(60, 60, 80, 60, NO_EFFECT, COLOUR_GREEN));
    EXPECT_EQ(dark, pixel(150, 130));
    area().mark_redraw_subarea(150, 120, 160, 130, 0);
    pages().check_for_draw();
    EXPECT_EQ(dark, pixel(155, 125));
    expect_picture_complete("darkened");
    dialog->hide(0, 0);
    pages().check_for_draw();
    EXPECT_EQ(dark, pixel(155, 125)) << "by the other one";
    area().clear_objects(1, 0);
    area().add_modal_object(&clock, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR(200, 100, 40), pixel(155, 125));
    EXPECT_EQ(COLOUR(200, 100, 40), pixel(5, 5));
}

TEST_F(DialogTest, BackgroundIsGreyedAndTheDialogIsNot) {
    add(new TEST_OBJECT(0, 0, WIDTH, HEIGHT, COLOUR(200, 100, 60)));
    draw_all();
    WM_DIALOG::grey_background = true;
    show(new TEST_DIALOG(30, 30, 80, 60, NO_EFFECT));
    EXPECT_EQ(COLOUR(120, 120, 120), pixel(5, 5));
    area().mark_redraw_subarea(100, 80, 130, 110, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_BLUE, pixel(40, 40));
    EXPECT_EQ(COLOUR(120, 120, 120), pixel(125, 105));
}

// --- Dragging ---

TEST_F(DialogTest, ContentsFollowThePointerWithinTheWindow) {
    add(new TEST_OBJECT(0, 0, WIDTH, HEIGHT, COLOUR_YELLOW));
    draw_all();
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 20, 60, 40, NO_EFFECT, COLOUR_BLUE, "title"));
    TEST_OBJECT* child = new TEST_OBJECT(10, 5, 5, 5);
    dialog->add_object(child, 1);
    const int child_x = child->x - dialog->x;
    // Only a press that begins in the drag area drags.
    mouse(5, 5, false);
    mouse(5, 5, true);
    mouse(25, 22, true);
    EXPECT_FALSE(dialog->dragging);
    mouse(40, 55, false);
    mouse(40, 55, true);
    EXPECT_FALSE(dialog->dragging) << "in the contents";
    mouse(25, 22, false);
    mouse(25, 22, true);
    ASSERT_TRUE(dialog->dragging);
    EXPECT_FALSE(dialog->dragged);
    mouse(65, 52, true);
    EXPECT_TRUE(dialog->dragged);
    EXPECT_EQ(60, dialog->x);
    EXPECT_EQ(50, dialog->y);
    EXPECT_EQ(60 + child_x, child->x);
    expect_picture_complete("dragged");
    mouse(-300, 500, true);
    EXPECT_EQ(0, dialog->x);
    EXPECT_EQ(HEIGHT - 40, dialog->y);
    mouse(65, 52, false);
    EXPECT_EQ(60, dialog->x);
    EXPECT_FALSE(dialog->dragging);
    EXPECT_EQ(255, dialog->alpha);
    expect_picture_complete("dropped");
    dialog->draggable = false;
    mouse(65, 52, true);
    EXPECT_FALSE(dialog->dragging);
    // Closing ends a drag, and the drag doesn't end the closing.
    dialog->draggable = true;
    mouse(65, 52, false);
    mouse(65, 52, true);
    EXPECT_TRUE(dialog->dragging);
    dialog->start_closing();
    mouse(65, 52, false);
    mouse(65, 52, true);
    tick(5000);
    EXPECT_EQ(0, TEST_DIALOG::alive);
}

TEST_F(DialogTest, OutlineIsDraggedAndLeavesNoTrace) {
    TEST_OBJECT* page = add(new TEST_OBJECT(0, 0, WIDTH, HEIGHT, COLOUR(10, 20, 30)));
    draw_all();
    WM_DIALOG::drag_contents = false;
    TEST_DIALOG* dialog = show(new TEST_DIALOG(20, 20, 60, 40, NO_EFFECT, COLOUR_BLUE, "title"));
    const std::vector<COLOUR> page_with_dialog = picture();
    mouse(25, 22, false);
    mouse(25, 22, true);
    mouse(95, 72, true);
    EXPECT_EQ(20, dialog->x) << "not before the drop";
    EXPECT_EQ(COLOUR(245, 235, 225), pixel(90, 75)) << "the outline's left edge, inverted";
    EXPECT_EQ(COLOUR(10, 20, 30), pixel(100, 80));
    // The page changes under the outline while it is there.
    page->colour = COLOUR(50, 60, 70);
    page->request_draw(0, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR(205, 195, 185), pixel(90, 75));
    page->colour = COLOUR(10, 20, 30);
    page->request_draw(0, 0);
    pages().check_for_draw();
    area().mark_redraw_subarea(85, 75, 95, 80, 0);
    pages().check_for_draw();
    expect_picture_complete("outline");
    mouse(105, 72, true);
    expect_picture_complete("outline moved");
    mouse(25, 22, true);
    mouse(25, 22, false);
    EXPECT_TRUE(page_with_dialog == picture()) << "back where it was";
    mouse(25, 22, true);
    mouse(95, 72, true);
    mouse(95, 72, false);
    EXPECT_EQ(90, dialog->x);
    EXPECT_EQ(70, dialog->y);
    expect_picture_complete("dropped");
    mouse(95, 72, true);
    mouse(25, 22, true);
    area().clear_objects(1, 0);
    pages().check_for_draw();
    expect_picture_complete("removed in the middle of a drag");
    area().add_modal_object(&clock, 0);
}

// --- What else ---

TEST_F(DialogTest, RefreshesWaitUntilItIsHidden) {
    TEST_DIALOG* dialog =
        show(new TEST_DIALOG(20, 20, 60, 40, NO_EFFECT, COLOUR_BLUE, nullptr, true));
    mouse(0, 0, false);
    pages().refresh_page_next_monitor(1);
    pages().refresh_page_next_monitor(1);
    EXPECT_FALSE(area(1).refresh_next_monitor);
    EXPECT_TRUE(dialog->refresh_pending);
    dialog->hide(0, 0);
    EXPECT_TRUE(area(0).refresh_next_monitor);
    EXPECT_TRUE(area(1).refresh_next_monitor);
    EXPECT_FALSE(dialog->refresh_pending);
    // The same for one that is deleted while it is on show.
    area(1).refresh_next_monitor = false;
    dialog->request_draw(0, 0);
    pages().refresh_page_next_monitor(0);
    ASSERT_TRUE(dialog->refresh_pending);
    area().remove_modal_object(dialog, 1, 0);
    EXPECT_TRUE(area(1).refresh_next_monitor);
    area(0).refresh_next_monitor = area(1).refresh_next_monitor = false;
}

TEST_F(DialogTest, TitleAndContentsShareTheInside) {
    WM_STYLE_SET frame = make_style(COLOUR_BLUE);
    frame.border_left_gap = 5;
    frame.border_right_gap = 6;
    frame.border_top_gap = 7;
    frame.border_bottom_gap = 8;
    frame.y_spacing = 3;
    WM_STYLE_SET bar = make_style(COLOUR_GREEN);
    bar.font_x_sz = bar.font_y_sz = 10;
    KEYBOARD::process_key_event(KEY_ESCAPE);
    WM_DIALOG dialog(-1, -1, 100, 80, "title", 0, frame, bar, WM_STYLE_SET(), nullptr, 0);
    EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code()) << "a waiting Escape is consumed";
    EXPECT_EQ(50, dialog.x);
    EXPECT_EQ(35, dialog.y);
    EXPECT_EQ(150, dialog.effect.time);
    EXPECT_EQ(192, dialog.effect.drag_alpha);
    ASSERT_NE(nullptr, dialog.title);
    EXPECT_EQ(55, dialog.title->x);
    EXPECT_EQ(42, dialog.title->y);
    EXPECT_EQ(89, dialog.title->width);
    EXPECT_EQ(10, dialog.title->height);
    EXPECT_EQ(7 + 10 + 3, dialog.get_title_height());
    EXPECT_EQ(55, dialog.contents->x);
    EXPECT_EQ(55, dialog.contents->y);
    EXPECT_EQ(89, dialog.contents->width);
    EXPECT_EQ(80 - 20 - 8, dialog.contents->height);

    TEST_OBJECT* child = new TEST_OBJECT(2, 2, 10, 10);
    dialog.add_object(child, 1);
    EXPECT_EQ(57, child->x);
    EXPECT_TRUE(dialog.find_object(child));
    dialog.resize(120, 90, 1);
    EXPECT_EQ(109, dialog.contents->width);
    EXPECT_EQ(30, child->width);
    EXPECT_EQ(20, child->height);
    dialog.set_title("");
    EXPECT_EQ(nullptr, dialog.title);
    EXPECT_EQ(42, dialog.contents->y);
    EXPECT_EQ(90 - 7 - 8, dialog.contents->height);
    dialog.set_title("again");
    EXPECT_EQ(55, dialog.contents->y);
    dialog.remove_object(child, 1, 0);
    EXPECT_EQ(0, TEST_OBJECT::alive);
}

}  // namespace
