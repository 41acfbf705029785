// The page manager: history, changes of pages, the tick, fades, focus, drawing.
#include <gmock/gmock.h>

#include "modules/winman/page_base.h"
#include "platform/process_tools.h"
#include "winman_fixture.h"

namespace {

using ::testing::ElementsAre;

// A page with one object, which journals its life.
class TEST_PAGE : public WM_PAGE_BASE {
public:
    TEST_PAGE(WM_PAGE_MANAGER& manager, std::string label, bool keep = true,
              std::uint32_t page_unique = 0, std::int32_t in_area = 0,
              COLOUR page_colour = COLOUR_RED)
        : name(std::move(label)), colour(page_colour) {
        setup(in_area, manager, keep, 1, page_unique);
    }
    ~TEST_PAGE() override { life.push_back("-" + name); }

    void create(WM_PAGE_MANAGER& manager) override {
        life.push_back("+" + name);
        object = new TEST_OBJECT(0, 0, manager.get_current_area()->get_width(),
                                 manager.get_current_area()->get_height(), colour);
        object->allowed_focus = true;
        object->callback = handle_callback;
        add_object(object, 1);
    }
    WM_MESG handle(WM_SCREEN_OBJECT* from, void* data1, void*) override {
        handled = from == object ? data1 : nullptr;
        return WM_MESG_HANDLED;
    }
    WM_MESG monitor() override {
        ++monitors;
        return std::exchange(result, WM_MESG_NONE);
    }
    void objects_deleting() override { object = nullptr; }

    std::string name;
    COLOUR colour;
    TEST_OBJECT* object = nullptr;
    void* handled = nullptr;
    int monitors = 0;
    WM_MESG result = WM_MESG_NONE;

    static inline std::vector<std::string> life;
};

class PageManagerTest : public WINMAN_FIXTURE {
protected:
    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        TEST_PAGE::life.clear();
        WM_PAGE_MANAGER::monitor_delay_ms = 0;
    }
    TEST_PAGE* go(const std::string& name, bool keep = true, std::uint32_t unique = 0,
                  COLOUR colour = COLOUR_RED) {
        auto* page = new TEST_PAGE(pages(), name, keep, unique, 0, colour);
        pages().go_to_page(0);
        return page;
    }
    static TEST_PAGE* current() {
        return static_cast<TEST_PAGE*>(static_cast<WM_PAGE_BASE*>(area().get_current().data));
    }
};

// --- History ---

TEST_F(PageManagerTest, ThePageThatIsKeptComesBackWithItsData) {
    TEST_PAGE* first = go("a");
    go("b", false);
    EXPECT_EQ(1, area().current_screen);
    EXPECT_TRUE(pages().is_back_unique_valid(0));
    pages().set_next_page_to_history(0, 0);
    pages().go_to_page(0);
    EXPECT_EQ(first, current());
    EXPECT_EQ(1, area().history_count);
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("+a", "+b", "-b", "+a"));
    pages().set_next_page_to_history(7, 0);
    pages().set_next_page_to_history(-2, 0);
    pages().go_to_page(0);
    EXPECT_EQ(4u, TEST_PAGE::life.size());
    pages().set_next_page_to_history(0, -1);  // the page on show: built anew
    pages().go_to_page(0);
    EXPECT_EQ("+a", TEST_PAGE::life.back());
    EXPECT_EQ(5u, TEST_PAGE::life.size());
}

TEST_F(PageManagerTest, GoingForwardFromTheMiddleDropsTheForwardPart) {
    go("a");
    go("b");
    go("c");
    pages().set_next_page_to_history(0, 0);
    pages().go_to_page(0);
    EXPECT_EQ(3, area().history_count);
    EXPECT_TRUE(pages().is_next_unique_valid(0));
    TEST_PAGE::life.clear();
    go("d");
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("-b", "-c", "+d"));
    EXPECT_EQ(2, area().history_count);
    EXPECT_EQ(1, area().current_screen);
}

TEST_F(PageManagerTest, TheTwentyFirstKeptPageDropsTheOldest) {
    for (int i = 0; i < 21; ++i) {
        go(std::to_string(i));
    }
    EXPECT_EQ(19, area().current_screen);
    EXPECT_EQ(20, area().history_count);
    EXPECT_EQ("20", current()->name);
    EXPECT_EQ(1, std::count(TEST_PAGE::life.begin(), TEST_PAGE::life.end(), "-0"));
    EXPECT_EQ(0, std::count(TEST_PAGE::life.begin(), TEST_PAGE::life.end(), "-1"));
    EXPECT_EQ(area().get_current().data, pages().get_page_data_from_history(19, 0));
    EXPECT_EQ(nullptr, pages().get_page_data_from_history(20, 0));
}

TEST_F(PageManagerTest, BackAndNextTreatPagesOfOneUniqueAsOneStop) {
    go("a", true, 1001);
    go("b", true, 1002);
    // The same page again doesn't grow the history; another one of its unique does.
    pages().set_next_page(0, WM_PAGE_BASE::create_callback, WM_PAGE_BASE::destroy_callback,
                          static_cast<WM_PAGE_BASE*>(new TEST_PAGE(pages(), "c", true, 1003)),
                          WM_PAGE_BASE::monitor_callback, 1, 1002,
                          WM_PAGE_BASE::objects_deleting_callback);
    pages().go_to_page(0);
    EXPECT_EQ(2, area().current_screen);
    EXPECT_EQ(1002u, area().get_current().unique);
    pages().set_next_page_back_unique(0);
    EXPECT_EQ(0, area().history_target);
    pages().go_to_page(0);
    EXPECT_EQ("a", current()->name);
    EXPECT_FALSE(pages().is_back_unique_valid(0));
    pages().set_next_page_back_unique(0);
    EXPECT_EQ(-1, area().history_target);
    pages().set_next_page_next_unique(0);
    EXPECT_EQ(1, area().history_target);
}

TEST_F(PageManagerTest, ThePageOnShowReplacesItself) {
    go("a", true, 500);
    go("b", true, 501);
    TEST_PAGE::life.clear();
    go("b2", true, 501);
    EXPECT_EQ(1, area().current_screen);
    EXPECT_EQ(2, area().history_count);
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("-b", "+b2"));
}

TEST_F(PageManagerTest, APageChosenAgainWithItsOwnDataLivesOn) {
    TEST_PAGE* page = go("a", true, 500);
    page->setup(0, pages(), 1, 1, 500);
    pages().go_to_page(0);
    EXPECT_EQ(page, current());
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("+a", "+a"));
    EXPECT_EQ(1, area().history_count);
}

TEST_F(PageManagerTest, AWaitingPageIsDestroyedByTheNext) {
    auto* waiting = new TEST_PAGE(pages(), "a");
    EXPECT_TRUE(pages().is_page_data_valid(static_cast<WM_PAGE_BASE*>(waiting)));
    new TEST_PAGE(pages(), "b");
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("-a"));
    int data = 0;
    pages().set_next_page(0, nullptr, nullptr, &data, nullptr, 0, 0, nullptr);
    pages().set_next_page(9, WM_PAGE_BASE::create_callback, nullptr, &data, nullptr, 0, 0, nullptr);
    EXPECT_FALSE(pages().is_page_data_valid(&data));
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("-a"));
}

TEST_F(PageManagerTest, APageWithoutDataIsDestroyedToo) {
    static int destroyed;
    destroyed = 0;
    const auto choose = [] {
        pages().set_next_page(
            0, [](WM_PAGE_MANAGER&) {}, [](void*& data) { destroyed += data == nullptr; }, nullptr,
            nullptr, 0, 0, nullptr);
    };
    choose();
    choose();
    EXPECT_EQ(1, destroyed);
    pages().go_to_page(0);
    choose();
    pages().go_to_page(0);
    EXPECT_EQ(2, destroyed);
}

TEST_F(PageManagerTest, EntriesCanBeDeletedButNotTheCurrentOne) {
    go("a");
    go("b");
    go("c");
    pages().delete_page_from_history(2, 0);
    EXPECT_EQ(3, area().history_count);
    pages().delete_page_from_history(0, 0);
    EXPECT_EQ(2, area().history_count);
    EXPECT_EQ(1, area().current_screen);
    EXPECT_EQ("c", current()->name);
    pages().clear_history(0);
    EXPECT_EQ(1, area().history_count);
    EXPECT_EQ(0, area().current_screen);
    EXPECT_FALSE(area().get_current().keep);
    EXPECT_EQ("c", current()->name);
    area().clear_on_change = true;
    pages().go_to_page(0);
    EXPECT_TRUE(area().get_current().is_empty());
    EXPECT_EQ("-c", TEST_PAGE::life.back());
    EXPECT_EQ(0, area().objects.get_count());
}

// --- The tick ---

TEST_F(PageManagerTest, AChangeOfPagesTakesTheTickWithoutInput) {
    auto* page = new TEST_PAGE(pages(), "a");
    EXPECT_EQ(WM_MESG_CHANGE_PAGE, pages().monitor(0));
    EXPECT_EQ(0, page->monitors);
    EXPECT_EQ(0, page->object->monitors);
    EXPECT_TRUE(page->object->has_focus());
    EXPECT_EQ(COLOUR_RED, pixel(0, 0));
    EXPECT_EQ(WM_MESG_NONE, pages().monitor(0));
    EXPECT_EQ(1, page->monitors);
    EXPECT_EQ(1, page->object->monitors);

    auto* next = new TEST_PAGE(pages(), "b");
    area().change_next_monitor = true;
    pages().monitor(0);
    EXPECT_EQ(next, current());
    EXPECT_EQ(0, next->monitors);
    next->result = WM_MESG_QUIT;
    EXPECT_EQ(WM_MESG_QUIT, pages().monitor(0));
    EXPECT_EQ(0, next->object->monitors);
}

TEST_F(PageManagerTest, MessagesRebuildPagesAndClearModalObjects) {
    TEST_PAGE* page = go("a");
    new TEST_PAGE(pages(), "other", true, 0, 1);
    pages().go_to_page(1);
    add_modal(new TEST_OBJECT(0, 0, 5, 5))->goes_on_refresh = false;
    TEST_PAGE::life.clear();
    page->result = WM_MESG_REBUILD_AREA;
    EXPECT_EQ(WM_MESG_NONE, pages().monitor(0));
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("+a"));
    EXPECT_EQ(1, area().get_modal_object_count());
    page->result = WM_MESG_REBUILD_ALL_AREAS_CLEAR_MODALS;
    EXPECT_EQ(WM_MESG_NONE, pages().monitor(0));
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("+a", "+a", "+other"));
    EXPECT_EQ(0, area().get_modal_object_count());
    EXPECT_EQ(1, area().objects.get_count());

    TEST_OBJECT* dialog = add_modal(new TEST_OBJECT(0, 0, 5, 5));
    dialog->type_flags |= WMF_DIALOG;
    page->result = WM_MESG_CLOSE_MODAL_DIALOGS;
    EXPECT_EQ(WM_MESG_CLOSE_MODAL_DIALOGS, pages().monitor(0));
    EXPECT_EQ(1, dialog->closings);
    page->result = WM_MESG_CLEAR_MODALS;
    EXPECT_EQ(WM_MESG_NONE, pages().monitor(0));
    EXPECT_EQ(0, area().get_modal_object_count());
    EXPECT_EQ(3u, TEST_PAGE::life.size());
}

TEST_F(PageManagerTest, ADialogMayDeferARefresh) {
    go("a");
    TEST_OBJECT dialog(0, 0, 5, 5);
    dialog.defers = true;
    manager().set_active_dialog(0, &dialog);
    pages().refresh_page_next_monitor(0);
    EXPECT_FALSE(area().refresh_next_monitor);
    dialog.defers = false;
    pages().refresh_page_next_monitor(0);
    TEST_PAGE::life.clear();
    pages().monitor(0);
    EXPECT_THAT(TEST_PAGE::life, ElementsAre("+a"));
}

TEST_F(PageManagerTest, PageMonitorsKeepTheirInterval) {
    TEST_PAGE* page = go("a");
    WM_PAGE_MANAGER::monitor_delay_ms = 30000;
    pages().monitor(0);
    const int after_first = page->monitors;
    pages().monitor(0);
    EXPECT_EQ(after_first, page->monitors);
    EXPECT_EQ(2, page->object->monitors);  // all other work goes on
    WM_PAGE_MANAGER::monitor_delay_ms = 0;
}

TEST_F(PageManagerTest, ASimulatedClickLeavesTheRealMouseAsItWas) {
    TEST_PAGE* page = go("a");
    struct SEEN {
        std::int16_t x, y;
        bool left;
    } seen = {0, 0, false};
    page->object->right_callback = [](WM_SCREEN_OBJECT*, void*, void*) { return WM_MESG_NONE; };
    pages().set_next_page(
        1, [](WM_PAGE_MANAGER&) {}, nullptr, &seen,
        [](WM_PAGE_MANAGER& manager) {
            *static_cast<SEEN*>(manager.get_area(1)->get_current().data) = {
                MOUSE::x, MOUSE::y, MOUSE::is_down(MOUSE_BUTTON_LEFT)};
            return WM_MESG_NONE;
        },
        1, 0, nullptr);
    pages().go_to_page(1);
    MOUSE::set_position(0, 7, 8);
    pages().simulated_x = 40;
    pages().simulated_y = 50;
    pages().simulated_button = true;
    pages().monitor(0);
    EXPECT_EQ(40, seen.x);
    EXPECT_EQ(50, seen.y);
    EXPECT_TRUE(seen.left);
    EXPECT_EQ(7, MOUSE::x);
    EXPECT_EQ(8, MOUSE::y);
    EXPECT_FALSE(MOUSE::is_down(MOUSE_BUTTON_LEFT));
    pages().monitor(0);
    EXPECT_EQ(7, seen.x);
    EXPECT_FALSE(seen.left);
    MOUSE::set_position(4, 9, 9);  // over another window
    pages().monitor(0);
    EXPECT_EQ(-1, seen.x);
    EXPECT_EQ(9, MOUSE::x);
    // An event that comes in during the tick isn't lost by that.
    area(1).get_current().monitor = [](WM_PAGE_MANAGER&) {
        MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 1);
        return WM_MESG_NONE;
    };
    pages().monitor(0);
    EXPECT_TRUE(MOUSE::is_down(MOUSE_BUTTON_LEFT));
    area(1).get_current().monitor = [](WM_PAGE_MANAGER&) {
        MOUSE::set_position(0, 30, 31);
        return WM_MESG_NONE;
    };
    pages().monitor(0);
    EXPECT_EQ(30, MOUSE::x);
    EXPECT_EQ(0, MOUSE::window);
}

TEST_F(PageManagerTest, ControlsReachTheirPage) {
    TEST_PAGE* page = go("a");
    int value = 0;
    EXPECT_EQ(WM_MESG_HANDLED, page->object->callback(page->object, &value, nullptr));
    EXPECT_EQ(&value, page->handled);
    EXPECT_EQ(WIDTH, page->get_width());
    TEST_OBJECT elsewhere(0, 0, 1, 1);
    elsewhere.window = 3;
    EXPECT_EQ(WM_MESG_NONE, WM_PAGE_BASE::handle_callback(&elsewhere, nullptr, nullptr));
}

// --- Drawing ---

TEST_F(PageManagerTest, RegionsUnderOneDialogAreDrawnOnce) {
    draw_all();
    TEST_OBJECT* dialog = add_modal(new TEST_OBJECT(0, 0, 190, 140, COLOUR_WHITE));
    info().clear_pending_update_regions();
    area().mark_redraw_subarea(0, 0, 9, 9, 0);
    area().mark_redraw_subarea(100, 100, 109, 109, 0);
    area().mark_redraw_subarea(195, 145, 199, 149, 0);  // beside it
    ASSERT_EQ(3, info().pending_count);
    pages().check_for_draw();
    EXPECT_EQ(1, dialog->draws);
    EXPECT_EQ(COLOUR_WHITE, pixel(50, 50));  // within the union
    EXPECT_NE(COLOUR_WHITE, pixel(150, 120));
}

TEST_F(PageManagerTest, TheBackgroundFollowsTheWindow) {
    IMAGE picture(10, 10);
    picture.clear(COLOUR_GREEN);
    pages().set_background(picture, 5, 5);
    EXPECT_EQ(WIDTH, pages().background.width);
    EXPECT_EQ(COLOUR_GREEN, pages().background.row(5)[5]);
    EXPECT_EQ(COLOUR_BLACK, pages().background.row(0)[0]);
    EXPECT_EQ(1, info().pending_count);
    manager().set_display_dimensions(0, make_graphics_sizes(100, 80));
    EXPECT_EQ(WIDTH, pages().get_background(1).width);
    EXPECT_EQ(100, pages().get_background(0).width);
    pages().handle_resize(100, 80);
    EXPECT_EQ(100, area(1).width);
    std::int16_t x1, y1, x2, y2;
    pages().get_popup_area(x1, y1, x2, y2);
    EXPECT_EQ(99, x2);
    EXPECT_EQ(79, y2);
}

TEST_F(PageManagerTest, FadesTakeTheirTimeAndEndOnTheNewPage) {
    go("a", true, 0, COLOUR_BLUE);
    draw_all();
    pages().fade_time = 60;
    using FADE = void (WM_PAGE_MANAGER::*)(std::int32_t);
    const std::pair<FADE, COLOUR> fades[] = {{&WM_PAGE_MANAGER::mix_to_page, COLOUR_RED},
                                             {&WM_PAGE_MANAGER::fade_in_page, COLOUR_GREEN},
                                             {&WM_PAGE_MANAGER::fade_out_in_page, COLOUR_YELLOW}};
    for (const auto& [fade, colour] : fades) {
        new TEST_PAGE(pages(), "next", true, 0, 0, colour);
        const std::uint32_t start = get_ms_count();
        (pages().*fade)(0);
        EXPECT_GE(get_ms_count() - start, 60u);
        EXPECT_LT(get_ms_count() - start, 2000u);
        EXPECT_EQ(colour, pixel(10, 10));
        EXPECT_EQ(60, pages().fade_time);
    }
    pages().fade_out_page();
    EXPECT_EQ(COLOUR_BLACK, pixel(10, 10));
    // By message: out, then the new page stands there at once.
    new TEST_PAGE(pages(), "last", true, 0, 0, COLOUR_WHITE);
    current()->result = WM_MESG_FADE_OUT_PAGE;
    EXPECT_EQ(WM_MESG_FADE_OUT_PAGE, pages().monitor(0));
    EXPECT_EQ(COLOUR_WHITE, pixel(10, 10));
}

// --- Focus ---

class FocusTest : public PageManagerTest {
protected:
    TEST_OBJECT* add_focusable(std::int32_t in_area = 0) {
        auto* object = new TEST_OBJECT(0, 0, 10, 10);
        object->allowed_focus = true;
        area(in_area).add_object(object, 0);
        return object;
    }
    static WM_SCREEN_OBJECT* focal() { return manager().get_focal_object(0); }
    static void press_tab(std::uint32_t modifiers) {
        KEYBOARD::set_modifiers(modifiers);
        KEYBOARD::process_key_event(KEY_TAB);
        pages().monitor(0);
        KEYBOARD::set_modifiers(0);
    }
};

TEST_F(FocusTest, TabWalksThroughObjectsAndAreas) {
    TEST_OBJECT* a = add_focusable();
    TEST_OBJECT* b = add_focusable();
    TEST_OBJECT* c = add_focusable(1);
    press_tab(0);
    EXPECT_EQ(a, focal());
    press_tab(0);
    EXPECT_EQ(b, focal());
    press_tab(0);
    press_tab(0);
    EXPECT_EQ(a, focal());  // round the end
    press_tab(KEYBOARD_MODIFIER_SHIFT);
    EXPECT_EQ(c, focal());
    press_tab(KEYBOARD_MODIFIER_CONTROL);
    EXPECT_EQ(a, focal());
    b->hide(0, 0);
    press_tab(0);
    EXPECT_EQ(c, focal());
    c->give_focus_to_prev_object();
    b->give_focus_to_next_object();  // hasn't the focus: no request
    pages().monitor(0);
    EXPECT_EQ(a, focal());
    EXPECT_EQ(KEY_NONE, KEYBOARD().peek_code());
}

TEST_F(FocusTest, AnAreaWithoutFocusableObjectsIsPassedBy) {
    add_window(1, 3);
    manager().set_window_as_focal_window(1);
    TEST_OBJECT* objects[2];
    for (const int i : {0, 1}) {
        objects[i] = new TEST_OBJECT(0, 0, 10, 10);
        objects[i]->window = 1;
        objects[i]->allowed_focus = true;
        pages(1).get_area(2 * i)->add_object(objects[i], 0);
    }
    objects[0]->take_focus(1);
    EXPECT_TRUE(pages(1).give_focus_to_next_area());
    EXPECT_TRUE(objects[1]->has_focus());
    EXPECT_TRUE(pages(1).give_focus_to_prev_area());
    EXPECT_TRUE(objects[0]->has_focus());
    objects[0]->allowed_focus = objects[1]->allowed_focus = false;
    EXPECT_FALSE(pages(1).give_focus_to_next_area());
}

TEST_F(FocusTest, AModalObjectKeepsTheFocusAndGivesItBack) {
    TEST_OBJECT* a = add_focusable();
    TEST_OBJECT* b = add_focusable();
    pages().monitor(0);
    EXPECT_EQ(a, focal());
    b->take_focus(1);
    pages().monitor(0);
    a->last_focus_time = b->last_focus_time - 10;
    TEST_OBJECT* modal = add_modal(new TEST_OBJECT(0, 0, 50, 50));
    TEST_OBJECT* buttons[2];
    for (TEST_OBJECT*& button : buttons) {
        button = add(new TEST_OBJECT(0, 0, 5, 5), modal);
        button->allowed_focus = true;
    }
    pages().monitor(0);
    EXPECT_EQ(buttons[0], focal());
    press_tab(0);
    EXPECT_EQ(buttons[1], focal());
    press_tab(0);
    EXPECT_EQ(buttons[0], focal());
    EXPECT_FALSE(pages().give_focus_to_next_area());
    area().remove_modal_object(modal, 1, 0);
    EXPECT_EQ(nullptr, focal());
    pages().monitor(0);
    EXPECT_EQ(b, focal());
    // With nothing left to take it, a hidden object loses it.
    b->hide(0, 0);
    area().hide(0, 1);
    pages().monitor(0);
    EXPECT_EQ(nullptr, focal());
}

TEST_F(FocusTest, AnObjectThatIsHiddenItselfLosesTheFocus) {
    TEST_OBJECT* a = add_focusable();
    TEST_OBJECT* b = add_focusable();
    pages().monitor(0);
    EXPECT_EQ(a, focal());
    a->hide(0, 0);
    pages().monitor(0);
    EXPECT_EQ(b, focal());
    b->hide(0, 0);
    pages().monitor(0);
    EXPECT_EQ(nullptr, focal());
}

class CELLS : public TEST_OBJECT {
public:
    CELLS() : TEST_OBJECT(0, 0, 100, 100) { type_flags |= WMF_GRID; }
    void visit_cells(CELL_VISITOR visit, void* data) override {
        for (TEST_OBJECT& cell : cells) {
            if (!visit(&cell, data)) {
                return;
            }
        }
    }
    TEST_OBJECT cells[2] = {{0, 0, 5, 5}, {5, 0, 5, 5}};
};

TEST_F(FocusTest, TheWalkGoesThroughTheCellsOfAGrid) {
    auto* grid = new CELLS;
    add(grid);
    TEST_OBJECT* after = add_focusable();
    for (TEST_OBJECT& cell : grid->cells) {
        cell.allowed_focus = true;
    }
    press_tab(0);
    EXPECT_EQ(&grid->cells[0], focal());
    press_tab(0);
    EXPECT_EQ(&grid->cells[1], focal());
    press_tab(0);
    EXPECT_EQ(after, focal());
    press_tab(KEYBOARD_MODIFIER_SHIFT);
    EXPECT_EQ(&grid->cells[1], focal());
}

TEST(PageManagerDeathTest, AWindowNeedsAnArea) {
    EXPECT_EXIT(WM_PAGE_MANAGER(0, 10, 0), ::testing::ExitedWithCode(1), "invalid number of areas");
}

}  // namespace
