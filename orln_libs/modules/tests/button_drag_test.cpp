// Buttons that are dragged.
#include "controls_fixture.h"
#include "modules/winman/object_walk.h"

namespace {

class ButtonDragTest : public CONTROLS_FIXTURE {
protected:
    struct REPORT {
        std::uint32_t event;
        WM_SCREEN_OBJECT* target;
        int x, y;
    };

    void SetUp() override {
        CONTROLS_FIXTURE::SetUp();
        button = add_button(10, 10, 29, 29);
        other = add_button(100, 10, 119, 29);
        button->drag_callback = report;
        button->drag_data1 = this;
        button->drag_flags = 15;
        draw_all();
    }

    static WM_MESG report(WM_SCREEN_OBJECT* self, WM_SCREEN_OBJECT* target, std::int16_t x,
                          std::int16_t y, std::uint32_t event, void* data1, void* /*data2*/) {
        auto& test = *static_cast<ButtonDragTest*>(data1);
        EXPECT_EQ(test.button, self);
        test.reports.push_back({event, target, x, y});
        return test.drag_result;
    }
    void drag_to(int x, int y, std::int16_t with = MOUSE_BUTTON_LEFT) {
        point(15, 16);
        press(with);
        point(x, y);
    }
    bool is_in_modal_list() { return contains_object(info().modal_screen_objects, button); }

    WM_BUTTON* button = nullptr;
    WM_BUTTON* other = nullptr;
    std::vector<REPORT> reports;
    WM_MESG drag_result = WM_MESG_NONE;
};

TEST_F(ButtonDragTest, StartsBeyondThreePixels) {
    drag_to(18, 19);
    EXPECT_TRUE(button->is_dragging());  // the press is tracked
    EXPECT_FALSE(button->dragging);
    EXPECT_TRUE(reports.empty());
    EXPECT_FALSE(is_in_modal_list());
    point(18, 20);
    EXPECT_TRUE(button->dragging);
    EXPECT_TRUE(is_in_modal_list());
    ASSERT_EQ(1u, reports.size());
    EXPECT_EQ(BUTTON_DRAG_STARTED, reports[0].event);
    EXPECT_EQ(button, reports[0].target);
    EXPECT_EQ(18, reports[0].x);
    EXPECT_EQ(20, reports[0].y);
    EXPECT_EQ(4, manager().mouse_icon);
    point(19, 20);
    EXPECT_EQ(1u, reports.size());
}

TEST_F(ButtonDragTest, ClickIsNoDrag) {
    point(15, 16);
    press();
    release();
    EXPECT_TRUE(reports.empty());
    EXPECT_FALSE(button->is_dragging());
    EXPECT_EQ(1, calls);
    point(40, 40);
    press();
    point(15, 16);
    point(25, 26);
    EXPECT_TRUE(reports.empty());  // a press elsewhere
}

TEST_F(ButtonDragTest, EndsAreReported) {
    const struct {
        int x, y;
        std::uint32_t event;
        WM_SCREEN_OBJECT* target;
    } drops[] = {{105, 15, BUTTON_DROPPED_ON_OTHER, other},
                 {150, 100, BUTTON_DROPPED_ON_OTHER, pages().find_object_at_pos(150, 100)},
                 {20, 20, BUTTON_DROPPED_ON_ITSELF, button},
                 {15, 16, BUTTON_DROPPED_AT_START, button}};
    const std::int16_t own_area = button->area;
    for (const auto& drop : drops) {
        SCOPED_TRACE(drop.event);
        reports.clear();
        calls = 0;
        drag_to(60, 60);
        ASSERT_EQ(1u, reports.size());
        point(drop.x, drop.y);
        release();
        ASSERT_EQ(2u, reports.size());
        EXPECT_EQ(drop.event, reports[1].event);
        EXPECT_EQ(drop.target, reports[1].target);
        // Back where it was, and no click but at the start.
        EXPECT_EQ(drop.event == BUTTON_DROPPED_AT_START ? 1 : 0, calls);
        EXPECT_FALSE(button->is_dragging());
        EXPECT_FALSE(is_in_modal_list());
        EXPECT_FALSE(button->not_owned);
        EXPECT_EQ(&area(), button->parent);
        EXPECT_EQ(own_area, button->area);
        EXPECT_FALSE(button->pressed);
    }
}

TEST_F(ButtonDragTest, OnlyTheEventsAskedForAreReported) {
    button->drag_flags = BUTTON_DROPPED_ON_OTHER;
    drag_to(60, 60);
    EXPECT_TRUE(button->dragging);
    drag_result = WM_MESG_CHANGE_PAGE;
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, release());
    EXPECT_EQ(1u, reports.size());
    button->drag_flags = BUTTON_DROPPED_AT_START;
    point(15, 16);
    press();
    EXPECT_EQ(WM_MESG_HANDLED, release());
    EXPECT_EQ(1u, reports.size());
}

TEST_F(ButtonDragTest, RightButtonDragsWhereAllowed) {
    drag_to(60, 60, MOUSE_BUTTON_RIGHT);
    EXPECT_TRUE(button->dragging);
    release(MOUSE_BUTTON_RIGHT);
    button->right_drag = false;
    drag_to(60, 60, MOUSE_BUTTON_RIGHT);
    EXPECT_FALSE(button->dragging);
}

TEST_F(ButtonDragTest, CallbackOfThePressEndsTheTracking) {
    button->callback_flags = BUTTON_EVENT_PRESS;
    drag_to(60, 60);
    EXPECT_EQ(1, calls);
    EXPECT_FALSE(button->dragging);
}

TEST_F(ButtonDragTest, PictureFollowsThePointer) {
    button->highlight = COLOUR_INVISIBLE;
    button->allowed_focus = false;
    drag_to(65, 66);
    draw();
    EXPECT_EQ(FACE, pixel(60, 60));
    EXPECT_EQ(FACE, pixel(79, 79));
    EXPECT_EQ(COLOUR_BLACK, pixel(59, 60));
    EXPECT_EQ(FACE, pixel(11, 11));  // and stays at its place
    point(75, 66);
    draw();
    EXPECT_EQ(COLOUR_BLACK, pixel(60, 60));
    EXPECT_EQ(FACE, pixel(89, 60));

    button->drag_image.reset(4, 4);
    button->drag_image.clear(COLOUR_GREEN);
    draw_all();
    point(85, 66);
    draw();
    EXPECT_EQ(16, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, COLOUR_GREEN));
    EXPECT_EQ(COLOUR_GREEN, pixel(80, 60));
    release();
    draw();
    EXPECT_EQ(0, count_pixels(0, 0, WIDTH - 1, HEIGHT - 1, COLOUR_GREEN));
    EXPECT_EQ(0, count_pixels(40, 40, WIDTH - 1, HEIGHT - 1, FACE));
}

TEST_F(ButtonDragTest, OwnerKeepsWhatIsNotThePages) {
    button->not_owned = true;
    drag_to(60, 60);
    release();
    ASSERT_EQ(2u, reports.size());
    EXPECT_TRUE(button->not_owned);
    button->not_owned = false;
}

TEST_F(ButtonDragTest, CallbackMayHideTheButton) {
    button->over_box.centre = &button->icon;  // redraws itself when the pointer comes
    button->drag_callback = [](WM_SCREEN_OBJECT* self, WM_SCREEN_OBJECT*, std::int16_t,
                               std::int16_t, std::uint32_t, void*, void*) {
        self->hide(0, 0);
        return WM_MESG_NONE;
    };
    drag_to(20, 20);
    EXPECT_FALSE(button->visible);
    EXPECT_FALSE(is_in_modal_list());
    release();
    EXPECT_FALSE(button->visible);
    button->over_box.centre = nullptr;
}

TEST_F(ButtonDragTest, ButtonMayGoWhileItIsDragged) {
    drag_to(60, 60);
    ASSERT_TRUE(is_in_modal_list());
    button->hide(0, 0);
    EXPECT_FALSE(is_in_modal_list());
    EXPECT_FALSE(button->not_owned);
    release();
    button->request_draw(0, 0);
    drag_to(60, 60);
    ASSERT_TRUE(is_in_modal_list());
    area().objects.remove_node(button);
    delete button;
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
    tick();
}

TEST_F(ButtonDragTest, PageMayBeBuiltAnewWhileItIsDragged) {
    button->add_object(new TEST_OBJECT(12, 12, 2, 2), 0);
    drag_to(60, 60);
    area().clear_objects(1, 0);  // only the modal objects go
    EXPECT_FALSE(button->dragging);
    EXPECT_EQ(&area(), button->parent);
    button->request_draw(0, 0);
    EXPECT_TRUE(take_redraw());
    release();
    drag_to(60, 60);
    ASSERT_TRUE(is_in_modal_list());
    area().clear_objects(0, 1);  // the page was the owner all along
    EXPECT_EQ(0, info().modal_screen_objects.get_count());
    EXPECT_EQ(0, TEST_OBJECT::alive);
}

}  // namespace
