// A window of the toolkit without a native window, and objects that tell what happened to them.
#ifndef MODULES_TESTS_WINMAN_FIXTURE_H
#define MODULES_TESTS_WINMAN_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

// Counts its passes, fills its rectangle with a colour, and writes its name into a shared journal
// when it is monitored.
class TEST_OBJECT : public WM_SCREEN_OBJECT {
public:
    TEST_OBJECT(int x1, int y1, int w, int h, COLOUR fill = COLOUR_RED, std::string label = "")
        : WM_SCREEN_OBJECT(1, nullptr, nullptr, nullptr, 0), colour(fill), name(std::move(label)) {
        x = static_cast<std::int16_t>(x1);
        y = static_cast<std::int16_t>(y1);
        width = static_cast<std::int16_t>(w);
        height = static_cast<std::int16_t>(h);
        ++alive;
    }
    ~TEST_OBJECT() override { --alive; }

    WM_MESG monitor() override {
        ++monitors;
        journal.push_back(name);
        const WM_MESG result = WM_SCREEN_OBJECT::monitor();
        return result != WM_MESG_NONE ? result : std::exchange(monitor_result, WM_MESG_NONE);
    }
    WM_MESG update(unsigned char modal_pass) override {
        ++updates;
        const WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
        return result != WM_MESG_NONE ? result : std::exchange(update_result, WM_MESG_NONE);
    }
    void draw_object() override {
        ++draws;
        get_back_buffer(-1)->fill_rect(x, y, x + width - 1, y + height - 1, colour);
        if (redraw_itself) {
            request_draw(0, 0);
        }
    }
    bool is_obscuring(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2) override {
        return opaque && x1 >= x && y1 >= y && x2 < x + width && y2 < y + height;
    }
    bool hide_on_screen_refresh() override { return goes_on_refresh; }
    bool is_dragging() override { return dragging; }
    void start_closing() override { ++closings; }
    bool defer_page_refresh() override { return defers; }

    COLOUR colour;
    std::string name;
    WM_MESG monitor_result = WM_MESG_NONE, update_result = WM_MESG_NONE;
    bool opaque = false, goes_on_refresh = false, redraw_itself = false, dragging = false,
         defers = false;
    int monitors = 0, updates = 0, draws = 0, closings = 0;

    static inline int alive = 0;
    static inline std::vector<std::string> journal;
};

class WINMAN_FIXTURE : public ::testing::Test {
protected:
    static constexpr std::int16_t WIDTH = 200, HEIGHT = 150;

    void SetUp() override {
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        TEST_OBJECT::alive = 0;
        TEST_OBJECT::journal.clear();
        MOUSE::set_position(-1, -1, -1);
        MOUSE::release_all();
        KEYBOARD::set_modifiers(0);
        WM_WINDOW_MANAGER::create();
        add_window(0, 2);
        manager().set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
    }
    void TearDown() override {
        WM_WINDOW_MANAGER::destroy();
        EXPECT_EQ(0, TEST_OBJECT::alive);
        KEYBOARD::set_modifiers(0);
        MOUSE::release_all();
        MOUSE::set_position(-1, -1, -1);
    }

    void add_window(signed char index, std::int16_t areas) {
        const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(WIDTH, HEIGHT);
        ASSERT_TRUE(manager().add_window(index, areas, size, size, size));
        info(index).back_buffer->reset(WIDTH, HEIGHT);
        info(index).back_buffer->set_not_dirty();
    }

    static WM_WINDOW_MANAGER& manager() { return *WM_WINDOW_MANAGER::get_instance(); }
    static WM_WINDOW_INFO& info(signed char index = 0) { return *manager().get_window_info(index); }
    static WM_PAGE_MANAGER& pages(signed char index = 0) { return *info(index).page_manager; }
    static WM_AREA& area(std::int32_t number = 0) { return *pages().get_area(number); }
    static COLOUR pixel(int x, int y) { return info().back_buffer->row(y)[x]; }

    TEST_OBJECT* add(TEST_OBJECT* object, WM_SCREEN_OBJECT* parent = nullptr) {
        (parent != nullptr ? parent : &area())->add_object(object, 0);
        return object;
    }
    TEST_OBJECT* add_modal(TEST_OBJECT* object) {
        area().add_modal_object(object, 0);
        return object;
    }
    // Draws everything, so that later changes stand alone.
    void draw_all() {
        area().mark_entire_redraw_area();
        pages().check_for_draw();
        ASSERT_EQ(0, info().pending_count);
    }
};

#endif  // MODULES_TESTS_WINMAN_FIXTURE_H
