// Screen objects: the tree, input order, right clicks, focus, redraw.
#include <gmock/gmock.h>

#include "winman_fixture.h"

namespace {

using ::testing::ElementsAre;

class ScreenObjectTest : public WINMAN_FIXTURE {};

// --- The tree ---

TEST_F(ScreenObjectTest, ChildrenMoveResizeAndChangeAreaWithTheirParent) {
    TEST_OBJECT* parent = add(new TEST_OBJECT(10, 20, 100, 100));
    auto* child = new TEST_OBJECT(5, 6, 10, 10);
    parent->add_object(child, 1);
    EXPECT_EQ(15, child->x);
    EXPECT_EQ(26, child->y);
    EXPECT_EQ(0, child->area);
    parent->move(0, 0);
    EXPECT_EQ(5, child->x);
    EXPECT_EQ(6, child->y);
    parent->resize(110, 90, 1);
    EXPECT_EQ(20, child->width);
    EXPECT_EQ(0, child->height);
    parent->set_area(-3);
    EXPECT_EQ(-3, child->area);

    parent->move(10, 20);
    child->not_owned = true;
    parent->remove_object(child, 1, 1);
    EXPECT_EQ(nullptr, child->parent);
    EXPECT_FALSE(child->visible);
    EXPECT_EQ(5, child->x);
    EXPECT_EQ(1, child->area);  // out of a modal object of area 1
    delete child;
    // Neither null, nor the object itself, nor a stranger.
    parent->add_object(nullptr, 0);
    parent->add_object(parent, 0);
    TEST_OBJECT stranger(0, 0, 1, 1);
    parent->remove_object(&stranger, 1, 0);
    parent->remove_object(nullptr, 1, 0);
    EXPECT_EQ(0, parent->objects.get_count());
}

TEST_F(ScreenObjectTest, ClearingDeletesOwnedObjectsAndOnlyHidesTheOthers) {
    TEST_OBJECT kept(0, 0, 10, 10);
    kept.not_owned = true;
    TEST_OBJECT kept_modal(0, 0, 10, 10);
    kept_modal.not_owned = true;
    TEST_OBJECT hint(0, 0, 10, 10);
    hint.goes_on_refresh = true;
    add(&kept);
    add(new TEST_OBJECT(0, 0, 5, 5));
    add_modal(&kept_modal);
    add_modal(&hint);
    add_modal(new TEST_OBJECT(0, 0, 5, 5));
    EXPECT_EQ(5, TEST_OBJECT::alive);

    area().clear_objects(0, 1);  // a refresh: the hint goes, other modal objects stay
    EXPECT_EQ(4, TEST_OBJECT::alive);
    EXPECT_FALSE(kept.visible);
    EXPECT_FALSE(hint.visible);
    EXPECT_FALSE(hint.is_modal_object());
    EXPECT_EQ(2, area().get_modal_object_count());

    area().clear_objects(1, 0);
    EXPECT_EQ(3, TEST_OBJECT::alive);
    EXPECT_FALSE(kept_modal.visible);
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(ScreenObjectTest, DeletedObjectsLeaveNoPointersBehind) {
    TEST_OBJECT* object = add(new TEST_OBJECT(0, 0, 10, 10));
    manager().set_focal_object(0, object);
    manager().set_right_mouse_object(0, object);
    manager().set_mouse_wheel_focus(0, object);
    manager().set_active_dialog(0, object);
    auto* modal = new TEST_OBJECT(0, 0, 10, 10);
    object->add_modal_object(modal, 0);
    area().remove_object(object, 1, 0);
    EXPECT_EQ(nullptr, manager().get_focal_object(0));
    EXPECT_EQ(nullptr, manager().get_right_mouse_object(0));
    EXPECT_EQ(nullptr, manager().get_mouse_wheel_focus(0));
    EXPECT_EQ(nullptr, manager().get_active_dialog(0));
    EXPECT_EQ(&area(), modal->parent);
}

TEST_F(ScreenObjectTest, OperationsWithoutAWindowManagerDoNothing) {
    WM_WINDOW_MANAGER::destroy();
    {
        TEST_OBJECT object(0, 0, 10, 10);
        object.right_callback = [](WM_SCREEN_OBJECT*, void*, void*) { return WM_MESG_QUIT; };
        object.allowed_focus = true;
        EXPECT_EQ(WM_MESG_NONE, object.monitor());
        EXPECT_EQ(WM_MESG_NONE, object.update(1));
        object.take_focus(1);
        object.check_for_redraw();
        object.check_modal_redraw();
        object.force_draw_object();
        object.mark_entire_redraw_area();
        object.add_modal_object(&object, 0);
        EXPECT_FALSE(object.has_focus());
        EXPECT_FALSE(object.is_in_it(1, 1));
        EXPECT_EQ(nullptr, object.get_page_manager());
        EXPECT_EQ(nullptr, object.get_back_buffer(0));
        EXPECT_EQ(0, object.draws);
    }
    WM_WINDOW_MANAGER::create();
}

// --- Input ---

TEST_F(ScreenObjectTest, ALaterChildIsMonitoredAndFoundFirst) {
    add(new TEST_OBJECT(0, 0, 50, 50, COLOUR_RED, "a"));
    TEST_OBJECT* upper = add(new TEST_OBJECT(20, 20, 50, 50, COLOUR_RED, "b"));
    add(new TEST_OBJECT(100, 100, 5, 5, COLOUR_RED, "c"));
    area().monitor();
    EXPECT_THAT(TEST_OBJECT::journal, ElementsAre("c", "b", "a"));
    EXPECT_EQ(upper, area().find_object_at_pos(30, 30));
    EXPECT_EQ(&area(), area().find_object_at_pos(90, 10));
    upper->hide(0, 0);
    EXPECT_NE(upper, area().find_object_at_pos(30, 30));

    TEST_OBJECT::journal.clear();
    upper->request_draw(0, 0);
    upper->monitor_result = WM_MESG_HANDLED;
    EXPECT_EQ(WM_MESG_HANDLED, area().monitor());
    EXPECT_THAT(TEST_OBJECT::journal, ElementsAre("c", "b"));
}

TEST_F(ScreenObjectTest, RemoveObjectTakesOnlyThatChildAndTheWalkGoesOn) {
    add(new TEST_OBJECT(0, 0, 5, 5, COLOUR_RED, "a"));
    add(new TEST_OBJECT(0, 0, 5, 5, COLOUR_RED, "b"))->monitor_result = WM_MESG_REMOVE_OBJECT;
    add(new TEST_OBJECT(0, 0, 5, 5, COLOUR_RED, "c"));
    EXPECT_EQ(WM_MESG_NONE, area().monitor());
    EXPECT_THAT(TEST_OBJECT::journal, ElementsAre("c", "b", "a"));
    EXPECT_EQ(2, TEST_OBJECT::alive);
    EXPECT_EQ(2, area().objects.get_count());
}

TEST_F(ScreenObjectTest, AVisibleModalObjectTakesAllInput) {
    TEST_OBJECT* below = add(new TEST_OBJECT(0, 0, 200, 150));
    TEST_OBJECT* modal = add_modal(new TEST_OBJECT(50, 50, 20, 20));
    TEST_OBJECT* hidden = add_modal(new TEST_OBJECT(0, 0, 5, 5));
    hidden->hide(0, 0);
    EXPECT_EQ(-2, modal->area);
    modal->set_area(0);
    area().monitor();
    EXPECT_EQ(0, below->monitors);
    EXPECT_EQ(1, modal->monitors);
    EXPECT_EQ(-2, modal->area);
    EXPECT_EQ(1, area().get_active_modal_object_count(0));
    EXPECT_EQ(-2, area().get_active_modal_object_area());

    modal->hide(0, 0);
    area().monitor();
    EXPECT_EQ(1, below->monitors);
    EXPECT_EQ(-1, area().get_active_modal_object_area());

    modal->request_draw(0, 0);
    modal->monitor_result = WM_MESG_REMOVE_MODAL;
    EXPECT_EQ(WM_MESG_NONE, area().monitor());
    EXPECT_EQ(2, TEST_OBJECT::alive);

    hidden->close_requested = true;
    EXPECT_EQ(WM_MESG_NONE, area().update(1));
    EXPECT_EQ(1, TEST_OBJECT::alive);
}

struct RIGHT_CLICKS {
    int count = 0;
    static WM_MESG callback(WM_SCREEN_OBJECT*, void* data, void*) {
        ++static_cast<RIGHT_CLICKS*>(data)->count;
        return WM_MESG_PASS;
    }
};

TEST_F(ScreenObjectTest, RightClicksFireOnThePressTheReleaseOrBoth) {
    TEST_OBJECT* object = add(new TEST_OBJECT(10, 10, 20, 20));
    RIGHT_CLICKS clicks;
    object->right_callback = RIGHT_CLICKS::callback;
    object->right_data1 = &clicks;
    const auto click = [&](std::int16_t x, std::int16_t release_x) {
        clicks.count = 0;
        MOUSE::set_position(0, x, 15);
        MOUSE::process_mouse_button(MOUSE_BUTTON_RIGHT, 1);
        const bool pressed = area().monitor() == WM_MESG_PASS;
        MOUSE::set_position(0, release_x, 15);
        MOUSE::process_mouse_button(MOUSE_BUTTON_RIGHT, 0);
        const bool released = area().monitor() == WM_MESG_PASS;
        EXPECT_EQ(clicks.count, pressed + released);
        return std::pair(pressed, released);
    };
    EXPECT_EQ(std::pair(true, true), click(15, 15));
    EXPECT_EQ(std::pair(true, false), click(15, 100));  // released outside
    EXPECT_EQ(std::pair(false, false), click(100, 15));
    object->right_mode = WM_SCREEN_OBJECT::RIGHT_ON_PRESS;
    EXPECT_EQ(std::pair(true, false), click(15, 15));
    object->right_mode = WM_SCREEN_OBJECT::RIGHT_ON_RELEASE;
    EXPECT_EQ(std::pair(false, true), click(15, 15));
    EXPECT_EQ(nullptr, manager().get_right_mouse_object(0));
}

TEST_F(ScreenObjectTest, AnObjectThatMissesTheReleaseDoesNotKeepTheRightButton) {
    RIGHT_CLICKS clicks[2];
    TEST_OBJECT* objects[2];
    for (int i = 0; i < 2; ++i) {
        objects[i] = add(new TEST_OBJECT(50 * i, 0, 20, 20));
        objects[i]->right_callback = RIGHT_CLICKS::callback;
        objects[i]->right_data1 = &clicks[i];
    }
    const auto tick = [](std::int16_t x, unsigned char down) {
        MOUSE::set_position(0, x, 5);
        MOUSE::process_mouse_button(MOUSE_BUTTON_RIGHT, down);
        pages().monitor(0);
    };
    tick(5, 1);
    EXPECT_EQ(1, clicks[0].count);
    objects[0]->hide(0, 0);
    tick(5, 0);
    tick(55, 0);
    tick(55, 1);
    EXPECT_EQ(1, clicks[1].count);
    tick(55, 0);
    EXPECT_EQ(2, clicks[1].count);
    EXPECT_EQ(1, clicks[0].count);
}

TEST_F(ScreenObjectTest, ControlAndReturnAreARightClickAtTheCentre) {
    TEST_OBJECT* object = add(new TEST_OBJECT(10, 10, 20, 20));
    RIGHT_CLICKS clicks;
    object->right_callback = RIGHT_CLICKS::callback;
    object->right_data1 = &clicks;
    object->allowed_focus = true;
    KEYBOARD keyboard;
    KEYBOARD::process_key_event(KEY_RETURN);
    area().monitor();
    EXPECT_EQ(0, clicks.count);  // neither the focus nor Control
    keyboard.get_code();
    object->take_focus(1);
    KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_CONTROL);
    area().monitor();
    KEYBOARD::process_key_event(KEY_RETURN);
    area().monitor();
    area().monitor();
    EXPECT_EQ(1, clicks.count);  // once per press
    keyboard.get_code();
    area().monitor();
    EXPECT_EQ(2, clicks.count);
    area().monitor();
    EXPECT_EQ(2, clicks.count);
}

TEST_F(ScreenObjectTest, HitsNeedTheFocalWindowAndTheClipRegion) {
    TEST_OBJECT* object = add(new TEST_OBJECT(10, 10, 20, 20));
    EXPECT_TRUE(object->is_in_it(10, 29));
    EXPECT_FALSE(object->is_in_it(30, 10));
    WM_REGION& clip = *manager().get_is_in_me_region(0);
    clip.left = clip.top = 0;
    clip.right = clip.bottom = 15;
    EXPECT_TRUE(object->is_in_it(15, 15));
    EXPECT_FALSE(object->is_in_it(16, 15));
    clip = WM_REGION();
    TEST_OBJECT* child = add(new TEST_OBJECT(100, 100, 5, 5), object);
    EXPECT_TRUE(object->is_in_it(102, 102));
    EXPECT_FALSE(object->is_in_me(102, 102));
    EXPECT_TRUE(area().find_object(child));
    manager().set_window_as_focal_window(1);
    EXPECT_FALSE(object->is_in_it(15, 15));
}

// --- Focus ---

TEST_F(ScreenObjectTest, FocusChangesTellBothSides) {
    std::vector<WM_SCREEN_OBJECT*> told;
    TEST_OBJECT* objects[2];
    for (TEST_OBJECT*& object : objects) {
        object = add(new TEST_OBJECT(0, 0, 10, 10));
        object->focus_data = &told;
        object->focus_callback = [](WM_SCREEN_OBJECT* changed, void* data) {
            static_cast<std::vector<WM_SCREEN_OBJECT*>*>(data)->push_back(changed);
        };
    }
    objects[0]->take_focus(1);
    EXPECT_EQ(nullptr, manager().get_focal_object(0));  // not allowed to
    objects[0]->allowed_focus = objects[1]->allowed_focus = true;
    objects[0]->take_focus(1);
    objects[1]->take_focus(1);
    objects[1]->take_focus(1);
    EXPECT_THAT(told, ElementsAre(objects[0], objects[0], objects[1]));
    EXPECT_TRUE(objects[0]->focus_lost);
    EXPECT_TRUE(objects[1]->has_focus());

    TEST_OBJECT dialog(0, 0, 5, 5);
    dialog.dragging = true;
    manager().set_active_dialog(0, &dialog);
    objects[0]->take_focus(1);
    EXPECT_TRUE(objects[1]->has_focus());
    manager().set_window_as_focal_window(1);
    EXPECT_FALSE(objects[1]->has_focus());
}

// --- Redraw ---

TEST_F(ScreenObjectTest, OnlyChangesUnderADrawnParentAreMarked) {
    pages().set_background_colour(COLOUR_BLUE);
    pages().check_for_draw();
    area().drawn = false;
    TEST_OBJECT* object = add(new TEST_OBJECT(10, 10, 20, 20));
    EXPECT_EQ(0, info().pending_count);  // the area isn't on the back buffer
    draw_all();
    EXPECT_TRUE(object->drawn);
    object->move(60, 10);
    ASSERT_EQ(1, info().pending_count);  // 30 pixels apart: joined
    EXPECT_EQ(10, info().pending_regions[0].left);
    EXPECT_EQ(79, info().pending_regions[0].right);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_RED, pixel(60, 10));
    EXPECT_EQ(COLOUR_BLUE, pixel(20, 20));

    object->hide(0, 0);
    EXPECT_FALSE(object->drawn);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_BLUE, pixel(60, 10));
    object->request_draw(0, 0);  // shows it again
    EXPECT_TRUE(object->visible);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_RED, pixel(60, 10));
    object->mark_redraw_subarea(-10, -10, -1, -1, 0);
    object->mark_redraw_subarea(WIDTH, 0, WIDTH + 5, 5, 0);
    EXPECT_EQ(0, info().pending_count);  // outside of the window
}

TEST_F(ScreenObjectTest, DrawingStaysInTheRegionAndSkipsWhatIsCovered) {
    pages().set_background_colour(COLOUR_BLUE);
    TEST_OBJECT* object = add(new TEST_OBJECT(0, 0, 100, 100));
    draw_all();
    object->colour = COLOUR_GREEN;
    object->mark_redraw_subarea(10, 10, 19, 19, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_GREEN, pixel(19, 19));
    EXPECT_EQ(COLOUR_RED, pixel(20, 19));
    EXPECT_EQ(COLOUR_BLUE, pixel(150, 10));
    EXPECT_EQ(0, info().back_buffer->active_left);
    EXPECT_EQ(WIDTH - 1, info().back_buffer->active_right);

    TEST_OBJECT* child = add(new TEST_OBJECT(0, 0, 50, 50, COLOUR_YELLOW), object);
    child->opaque = true;
    object->draws = child->draws = 0;
    object->mark_redraw_subarea(10, 10, 19, 19, 0);
    pages().check_for_draw();
    EXPECT_EQ(0, object->draws);
    EXPECT_EQ(1, child->draws);
    TEST_OBJECT* modal = add_modal(new TEST_OBJECT(0, 0, 60, 60, COLOUR_WHITE));
    modal->opaque = true;
    object->mark_redraw_subarea(10, 10, 19, 19, 0);
    pages().check_for_draw();
    EXPECT_EQ(1, child->draws);
    EXPECT_EQ(COLOUR_WHITE, pixel(10, 10));
}

TEST_F(ScreenObjectTest, WhatIsMarkedWhileDrawingIsDropped) {
    TEST_OBJECT* object = add(new TEST_OBJECT(0, 0, 10, 10));
    object->redraw_itself = true;
    draw_all();
    EXPECT_EQ(1, object->draws);
    EXPECT_EQ(0, info().pending_count);
}

TEST_F(ScreenObjectTest, ForcedDrawingWorksWithAndWithoutAnArea) {
    pages().set_background_colour(COLOUR_BLUE);
    info().clear_pending_update_regions();
    TEST_OBJECT status(20, 20, 10, 10);  // in no area
    status.force_draw_object();
    EXPECT_EQ(1, status.draws);
    EXPECT_EQ(COLOUR_RED, pixel(20, 20));
    TEST_OBJECT* bar = add(new TEST_OBJECT(50, 50, 10, 10));
    add_modal(new TEST_OBJECT(55, 55, 10, 10, COLOUR_WHITE));
    info().clear_pending_update_regions();
    bar->force_draw_object();
    EXPECT_EQ(COLOUR_RED, pixel(50, 50));
    EXPECT_EQ(COLOUR_WHITE, pixel(59, 59));
    EXPECT_NE(COLOUR_WHITE, pixel(60, 60));
    EXPECT_EQ(0, info().pending_count);
    EXPECT_FALSE(info().update_region.is_set());
    EXPECT_EQ(WIDTH - 1, info().back_buffer->active_right);
}

TEST_F(ScreenObjectTest, ArrowsPointTheRightWay) {
    TEST_OBJECT object(0, 0, 10, 10);
    const auto draw = [&](SCROBJ_ARROW_TYPE type) {
        info().back_buffer->clear(COLOUR_BLACK);
        object.draw_arrow(0, 0, 20, 20, COLOUR_WHITE, type, 1, 2, 2);
        const auto is_set = [&](int x, int y) { return pixel(x, y) == COLOUR_WHITE ? 1 : 0; };
        // The corners of each side: the base fills both, no other side has one.
        return std::vector<int>{is_set(3, 18) + is_set(17, 18), is_set(3, 2) + is_set(17, 2),
                                is_set(18, 3) + is_set(18, 17), is_set(2, 3) + is_set(2, 17)};
    };
    EXPECT_THAT(draw(SCROBJ_ARROW_UP), ElementsAre(2, 0, 0, 0));
    EXPECT_THAT(draw(SCROBJ_ARROW_DOWN), ElementsAre(0, 2, 0, 0));
    EXPECT_THAT(draw(SCROBJ_ARROW_LEFT), ElementsAre(0, 0, 2, 0));
    EXPECT_THAT(draw(SCROBJ_ARROW_RIGHT), ElementsAre(0, 0, 0, 2));
}

TEST(FlashingFlags, EvenBitsAreSquareWavesAndOddBitsPulses) {
    for (std::uint32_t ms : {0u, 49u, 50u, 99u, 125u, 1234u, 7999u, 16000u, 4000000000u}) {
        const std::uint32_t flags = WM_SCREEN_OBJECT::compute_flashing_flags(ms);
        EXPECT_EQ((ms / 50) % 2 == 0, (flags & 0x0001) != 0) << ms;
        EXPECT_EQ(ms / 10 == ms / 100 * 10, (flags & 0x0002) != 0) << ms;
        EXPECT_EQ((ms / 125) % 2 == 0, (flags & 0x0004) != 0) << ms;
        EXPECT_EQ(ms / 25 == ms / 250 * 10, (flags & 0x0008) != 0) << ms;
        EXPECT_EQ((ms / 2000) % 2 == 0, (flags & 0x0400) != 0) << ms;
        EXPECT_EQ(ms / 400 == ms / 4000 * 10, (flags & 0x0800) != 0) << ms;
        EXPECT_EQ((ms / 8000) % 2 == 0, (flags & 0x4000) != 0) << ms;
        EXPECT_EQ(ms / 1600 == ms / 16000 * 10, (flags & 0x8000) != 0) << ms;
    }
}

}  // namespace
