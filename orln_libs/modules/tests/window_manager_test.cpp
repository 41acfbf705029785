// The window manager: slots, dirty rectangles, opening, settings, the tick over several windows.
// Native windows are those of a platform without a display.
#include <gmock/gmock.h>

#include "../../platform/tests/disk_fixture.h"
#include "modules/3d/render_manager_3d.h"
#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/windowed_application_framework.h"
#include "platform/config_file.h"
#include "platform/window_platform.h"
#include "winman_fixture.h"

namespace {

using ::testing::HasSubstr;

class DirtyRectangles : public WINMAN_FIXTURE {
protected:
    void mark(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
              std::int16_t gap = 0) {
        manager().add_pending_update_region(0, x1, y1, x2, y2, gap);
    }
};

TEST_F(DirtyRectangles, NeighboursWithinTheGapJoinUntilNoneIsLeft) {
    mark(0, 0, 9, 9);
    mark(2, 2, 5, 5);  // inside
    mark(60, 0, 69, 9);
    EXPECT_EQ(2, info().pending_count);
    mark(120, 0, 129, 9, 32);
    EXPECT_EQ(3, info().pending_count);
    mark(40, 0, 41, 9, 31);  // 31 from the left one, 19 from the middle one
    EXPECT_EQ(2, info().pending_count);
    mark(95, 0, 96, 9, 32);  // the union with one reaches the other
    ASSERT_EQ(1, info().pending_count);
    const WM_REGION& region = *manager().get_pending_update_region(0, 0);
    EXPECT_EQ(0, region.left);
    EXPECT_EQ(129, region.right);
    EXPECT_EQ(nullptr, manager().get_pending_update_region(0, 1));

    info().update_region = region;  // while something is drawn
    mark(0, 100, 5, 105);
    EXPECT_EQ(1, info().pending_count);
}

TEST_F(DirtyRectangles, TooManyBecomeTheWholeWindow) {
    for (std::int16_t i = 0; i < 100; ++i) {
        const auto x = static_cast<std::int16_t>(i % 20 * 10);
        const auto y = static_cast<std::int16_t>(i / 20 * 10);
        mark(x, y, x, y);
    }
    EXPECT_EQ(100, info().pending_count);
    mark(100, 140, 101, 141);
    ASSERT_EQ(1, info().pending_count);
    EXPECT_EQ(0, info().pending_regions[0].left);
    EXPECT_EQ(WIDTH - 1, info().pending_regions[0].right);
    EXPECT_EQ(HEIGHT - 1, info().pending_regions[0].bottom);
}

class WindowSlots : public WINMAN_FIXTURE {};

TEST_F(WindowSlots, BadIndicesHaveNeutralAnswers) {
    for (const int number : {-1, 1, 5, 127, -128}) {
        const auto index = static_cast<signed char>(number);
        EXPECT_EQ(nullptr, manager().get_window_info(index));
        EXPECT_EQ(nullptr, manager().get_page_manager(index));
        EXPECT_EQ(nullptr, manager().get_back_buffer(index));
        EXPECT_EQ(nullptr, manager().get_update_region(index));
        EXPECT_EQ(1, manager().get_focal_object_monitored(index));
        EXPECT_EQ(1, manager().get_monitor_modals(index));
        EXPECT_EQ(0u, manager().get_min_dimensions(index));
        manager().set_focal_object(index, nullptr);
        manager().set_max_dimensions(index, 1);
        manager().close_window(index);
        manager().hide_window(index);
        manager().blit_window(index, 1);
        unsigned char failed = 0, changed = 0;
        manager().draw_window(index, 0, failed, changed);
        EXPECT_EQ(1, failed);
    }
    EXPECT_FALSE(manager().add_window(5, 1, 1, 1, 1));
    EXPECT_FALSE(manager().add_window(-1, 1, 1, 1, 1));
    EXPECT_FALSE(manager().set_to_window(5));
}

TEST_F(WindowSlots, TheDisplayModeDecidesAboutChildWindows) {
    EXPECT_TRUE(manager().can_create_child_window(1));
    EXPECT_TRUE(manager().can_create_child_window(3));
    manager().desktop_alerts = false;
    EXPECT_FALSE(manager().can_create_child_window(3));
    add_window(1, 1);
    EXPECT_TRUE(manager().set_to_window(1));
    EXPECT_EQ(1, manager().get_focal_window());
    EXPECT_TRUE(manager().set_display_mode(WM_WINDOW_MANAGER::SINGLE_WINDOW, -1));
    EXPECT_EQ(nullptr, manager().get_window_info(1));
    EXPECT_EQ(0, manager().get_focal_window());
    EXPECT_FALSE(manager().can_create_child_window(1));
    EXPECT_FALSE(manager().set_to_window(1));
    EXPECT_FALSE(manager().add_window(1, 1, 1, 1, 1));
    manager().desktop_alerts = true;
    EXPECT_TRUE(manager().can_create_child_window(3));
}

TEST_F(WindowSlots, TheAlertsWindowIsFocalOnItsOwn) {
    add_window(3, 1);
    manager().set_window_as_focal_window(3);
    EXPECT_EQ(0, manager().focal_window);
    EXPECT_EQ(3, manager().focal_alerts_window);
    EXPECT_EQ(3, manager().get_last_focal_window());
    EXPECT_TRUE(manager().is_object_on_focal_window(pages(3).get_area(0)));
    EXPECT_TRUE(manager().is_object_on_focal_window(&area()));
    manager().close_window(3);
    EXPECT_EQ(-1, manager().focal_alerts_window);
    EXPECT_EQ(0, manager().get_last_focal_window());
    add_window(1, 1);
    add_window(3, 1);
    manager().set_window_as_focal_window(1);
    manager().set_window_as_focal_window(3);
    manager().close_window(3);  // the child window keeps the keyboard
    EXPECT_EQ(1, manager().get_focal_window());
    EXPECT_EQ(1, manager().get_last_focal_window());
    manager().set_window_as_focal_window(77);
    EXPECT_EQ(1, manager().get_focal_window());
    EXPECT_FALSE(WM_WINDOW_MANAGER::is_window_data_saveable(4));
    EXPECT_TRUE(WM_WINDOW_MANAGER::is_window_data_saveable(2));
}

TEST_F(WindowSlots, TheMarkOfTheFocusComesAndGoesWithTheFocalWindow) {
    add_window(1, 1);
    TEST_OBJECT* object = add(new TEST_OBJECT(0, 0, 10, 10));
    object->allowed_focus = true;
    object->take_focus(1);
    draw_all();
    manager().set_window_as_focal_window(1);
    EXPECT_EQ(1, info().pending_count);
    draw_all();
    manager().set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
    EXPECT_EQ(1, info().pending_count);
    draw_all();
    manager().set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
    EXPECT_EQ(0, info().pending_count);
}

TEST_F(WindowSlots, AModalObjectStopsAllOtherWindows) {
    add_window(1, 1);
    auto* main_object = new TEST_OBJECT(0, 0, 5, 5);
    area().add_object(main_object, 0);
    auto* child_object = new TEST_OBJECT(0, 0, 5, 5);
    child_object->window = 1;
    pages(1).get_area(0)->add_object(child_object, 0);
    manager().monitor(0);
    EXPECT_EQ(1, main_object->updates);
    EXPECT_EQ(1, child_object->updates);
    auto* modal = new TEST_OBJECT(0, 0, 5, 5);
    modal->window = 1;
    pages(1).get_area(0)->add_modal_object(modal, 0);
    EXPECT_EQ(1, manager().get_modal_window_index());
    manager().monitor(0);
    EXPECT_EQ(1, main_object->updates);
    EXPECT_EQ(2, child_object->updates);
    EXPECT_EQ(1, child_object->monitors);

    modal->monitor_result = WM_MESG_QUIT;  // closes its window, not the program
    EXPECT_EQ(WM_MESG_NONE, manager().monitor(0));
    EXPECT_EQ(nullptr, manager().get_page_manager(1));
    EXPECT_NE(nullptr, manager().get_window(1));
    manager().monitor(0);
    EXPECT_EQ(2, main_object->updates);
    main_object->monitor_result = WM_MESG_QUIT;
    EXPECT_EQ(WM_MESG_QUIT, manager().monitor(0));
}

TEST_F(WindowSlots, ALockedBackBufferSkipsItsWindow) {
    ORLN_3D::RENDER_MANAGER_3D renderer;
    auto* object = new TEST_OBJECT(0, 0, 5, 5);
    area().add_object(object, 0);
    ASSERT_TRUE(renderer.lock_backbuffer(0, ORLN_3D::THREAD_ID_RENDER, 0));
    manager().monitor(0);
    EXPECT_EQ(0, object->updates);
    renderer.unlock_backbuffer(0);
    manager().monitor(0);
    EXPECT_EQ(1, object->updates);
    EXPECT_TRUE(renderer.lock_backbuffer(0, ORLN_3D::THREAD_ID_RENDER, 0));
    renderer.unlock_backbuffer(0);
}

// --- With an application and the platform's windows ---

class TEST_PROGRAM : public WINDOWED_APPLICATION_FRAMEWORK {
public:
    TEST_PROGRAM() : WINDOWED_APPLICATION_FRAMEWORK(32, make_graphics_sizes(300, 200)) {
        set_minimum_window_size(make_graphics_sizes(300, 200));
    }
    bool monitor() override { return true; }
    std::int32_t get_build_number() const override { return 1; }
    void initialise() override {}
    void destroy() override {}
    void startup_manual_singletons() override {}
    void shutdown_manual_singletons() override {}
    void initialize_areas(unsigned char, signed char window) override {
        initialized.push_back(window);
    }
    bool abort_window_redraw() override { return false; }

    std::vector<int> initialized;
};

class Windows : public DISK_FIXTURE {
protected:
    void SetUp() override {
        DISK_FIXTURE::SetUp();
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        ORLN_WINDOWED_APPLICATION::first_window_drawn = false;
        program = new TEST_PROGRAM;
        renderer = std::make_unique<ORLN_3D::RENDER_MANAGER_3D>();
        const OPEN_GRAPHICS_SIZES desktop = platform_get_desktop_size();
        desktop_width = graphics_width(desktop);
        desktop_height = graphics_height(desktop);
    }
    void TearDown() override {
        if (manager() != nullptr) {
            manager()->shutdown();
            manager()->config_file = nullptr;
        }
        renderer.reset();
        ORLN_APPLICATION::shutdown();
        EXPECT_EQ(nullptr, WM_WINDOW_MANAGER::get_instance());
        EXPECT_EQ(nullptr, get_window_events());
        stop_window_platform();
        DISK_FIXTURE::TearDown();
    }

    static WM_WINDOW_MANAGER* manager() { return WM_WINDOW_MANAGER::get_instance(); }
    static WM_WINDOW& window(signed char index) { return *manager()->get_window(index); }
    static void add(signed char index, OPEN_GRAPHICS_SIZES min, OPEN_GRAPHICS_SIZES max) {
        ASSERT_TRUE(manager()->add_window(index, 1, min, NO_GRAPHICS_SIZES, max));
    }
    static void draw(signed char index, bool hidden = false) {
        unsigned char failed = 1, changed = 1;
        manager()->draw_window(index, hidden, failed, changed);
        EXPECT_EQ(0, failed);
        EXPECT_EQ(0, changed);
    }

    TEST_PROGRAM* program = nullptr;
    std::unique_ptr<ORLN_3D::RENDER_MANAGER_3D> renderer;
    std::int32_t desktop_width = 0, desktop_height = 0;
    static constexpr OPEN_GRAPHICS_SIZES SMALL = make_graphics_sizes(300, 200);
    static constexpr OPEN_GRAPHICS_SIZES LARGE = make_graphics_sizes(600, 400);
};

TEST_F(Windows, OpenShowAndCloseLikeASplashAndAMainWindow) {
    add(0, SMALL, SMALL);
    add(4, make_graphics_sizes(100, 50), make_graphics_sizes(100, 50));
    window(0).set_title("Main");
    draw(0, true);
    draw(4);
    EXPECT_EQ(WM_WINDOW::HIDDEN, window(0).state);
    EXPECT_EQ(WM_WINDOW::SHOWN, window(4).state);
    EXPECT_EQ(1, manager()->get_number_of_pending_update_regions(4));  // all of it is to be drawn
    EXPECT_NE(nullptr, window(4).handle);
    ASSERT_EQ(100, manager()->get_back_buffer(4)->width);
    EXPECT_EQ(4, manager()->get_window_index(window(4).handle));
    EXPECT_EQ(4, manager()->get_window_index(manager()->get_back_buffer(4)));
    EXPECT_TRUE(program->is_handle_to_floating_window(window(4).handle));

    manager()->get_page_manager(4)->set_background_colour(COLOUR_GREEN);
    events_something_done = false;
    EXPECT_EQ(WM_MESG_NONE, manager()->monitor(1));
    EXPECT_EQ(COLOUR_GREEN, manager()->get_back_buffer(4)->row(0)[0]);
    EXPECT_FALSE(manager()->get_back_buffer(4)->is_dirty());
    EXPECT_TRUE(events_something_done);
    EXPECT_TRUE(ORLN_WINDOWED_APPLICATION::first_window_drawn);
    events_something_done = false;
    manager()->monitor(1);
    EXPECT_FALSE(events_something_done);  // nothing changed

    draw(0);
    manager()->close_window(4);
    EXPECT_EQ(nullptr, manager()->get_window(4));
    EXPECT_EQ(WM_WINDOW::SHOWN, window(0).state);
    manager()->set_window_as_focal_window(window(0).handle);
    EXPECT_EQ(window(0).handle, program->get_focal_window());
}

TEST_F(Windows, ResizingMakesBufferAndPagesAnew) {
    add(0, SMALL, LARGE);
    draw(0);
    void* handle = window(0).handle;
    program->handle_window_resized(handle, LARGE);
    EXPECT_EQ(300, window(0).width);  // nothing has been shown yet
    manager()->blit_window(static_cast<signed char>(0), 0);
    program->handle_window_resized(handle, LARGE);
    EXPECT_EQ(600, window(0).width);
    program->handle_paint_window(handle, 0);
    EXPECT_EQ(600, manager()->get_back_buffer(0)->width);
    EXPECT_EQ(600, manager()->get_page_manager(0)->background.width);
    EXPECT_EQ(400, manager()->get_page_manager(0)->get_area(0)->height);
    EXPECT_THAT(program->initialized, ::testing::ElementsAre(0));
    EXPECT_TRUE(manager()->get_page_manager(0)->get_area(0)->refresh_next_monitor);
    program->handle_paint_window(handle, 0);
    EXPECT_EQ(1u, program->initialized.size());  // painted already
    EXPECT_EQ(SMALL, program->get_window_minimum_size(handle));
    EXPECT_EQ(LARGE, program->get_window_maximum_size(handle));

    program->handle_window_moved(handle, 12, 13);
    EXPECT_EQ(12, window(0).x);
    program->handle_window_minimised(handle);
    EXPECT_EQ(WM_WINDOW::MINIMISED, window(0).state);
    EXPECT_TRUE(manager()->show_alert_as_desktop_alert());
    program->handle_window_moved(handle, 99, 99);
    EXPECT_EQ(12, window(0).x);
    program->handle_window_restored(handle);
    EXPECT_EQ(WM_WINDOW::SHOWN, window(0).state);
    int stray = 0;
    program->handle_window_resized(&stray, SMALL);
    program->handle_paint_window(nullptr, 0);
    program->handle_window_closed(handle);  // the main window isn't closed by that
    EXPECT_EQ(600, window(0).width);
}

TEST_F(Windows, TheUserMayCloseAChildWindow) {
    add(0, SMALL, SMALL);
    draw(0);
    add(1, SMALL, SMALL);
    draw(1);
    manager()->set_window_as_focal_window(1);
    program->handle_window_closed(window(1).handle);
    EXPECT_EQ(nullptr, manager()->get_window(1));
    EXPECT_EQ(0, manager()->get_focal_window());
}

TEST_F(Windows, SettingsComeBack) {
    CONFIG_FILE file("windows.cfg", true, FOLDER_APPDATA, true);
    manager()->config_file = &file;
    add(0, SMALL, LARGE);
    window(0).set_size(make_graphics_sizes(410, 310));
    window(0).set_coordinates(20, 30);
    window(0).set_extended(0);
    manager()->desktop_alerts = false;
    manager()->notification_count = static_cast<signed char>(255);  // until the window is activated
    manager()->close_window(0);
    const std::string text = read(root / "opt/game/data/config/windows.cfg");
    EXPECT_THAT(text, HasSubstr("WINDOW_WIDTH_0\n\t410"));
    EXPECT_THAT(text, HasSubstr("WINDOW_MODE_0\n\t0"));
    EXPECT_THAT(text, HasSubstr("SCREEN_COLOUR_DEPTH\n\t32"));

    manager()->desktop_alerts = true;
    manager()->notification_count = 1;
    add(0, SMALL, LARGE);
    EXPECT_EQ(410, window(0).width);
    EXPECT_EQ(310, window(0).height);
    EXPECT_EQ(20, window(0).x);
    EXPECT_EQ(30, window(0).y);
    EXPECT_FALSE(window(0).extended);
    EXPECT_FALSE(manager()->desktop_alerts);
    EXPECT_EQ(255, static_cast<unsigned char>(manager()->notification_count));
    manager()->config_file = nullptr;
}

TEST_F(Windows, StoredPlacesAreBroughtWithinTheirLimits) {
    CONFIG_FILE file("windows.cfg", true, FOLDER_APPDATA, true);
    struct CASE {
        const char *width, *height, *x, *y;
        int expected_width, expected_height, expected_x, expected_y;
    };
    const std::string off_right = std::to_string(desktop_width - 100);
    const CASE cases[] = {
        {"350", "250", off_right.c_str(), "10", 350, 250, -1, 10},
        {"350", "250", "10", "32000", 350, 250, 10, -1},
        {"10", "10", "5", "5", 300, 200, 5, 5},
        {"5000", "32766", "0", "0", 600, desktop_height, 0, 0},
        {"-5", "4294967295", "5", "5", 300, 200, -1, -1},
        {"x", "250", "5", "5", 300, 250, -1, -1},
    };
    for (const CASE& each : cases) {
        manager()->close_window(0);
        DISK_MANAGER& folder = file.get_base_path();
        file.write(folder, "WINDOW_WIDTH_0", each.width);
        file.write(folder, "WINDOW_HEIGHT_0", each.height);
        file.write(folder, "WINDOW_X1_0", each.x);
        file.write(folder, "WINDOW_Y1_0", each.y);
        file.write(folder, "DISPLAY_MODE", "77");
        manager()->config_file = &file;
        add(0, SMALL, LARGE);
        manager()->config_file = nullptr;
        EXPECT_EQ(each.expected_width, window(0).width) << each.width;
        EXPECT_EQ(each.expected_height, window(0).height) << each.height;
        EXPECT_EQ(each.expected_x, window(0).x) << each.x;
        EXPECT_EQ(each.expected_y, window(0).y) << each.y;
        EXPECT_EQ(WM_WINDOW_MANAGER::SEVERAL_WINDOWS, manager()->display_mode);
    }
}

TEST_F(Windows, StoredNumbersThatMakeNoSenseChangeNothing) {
    CONFIG_FILE file("windows.cfg", true, FOLDER_APPDATA, true);
    DISK_MANAGER& folder = file.get_base_path();
    const DISPLAY_SETTINGS& known = WINDOWED_APPLICATION_FRAMEWORK::default_display_settings;
    file.write(folder, "DISPLAY_MODE", "2");
    file.write(folder, "SCREEN_COLOUR_DEPTH", std::to_string(known.colour_depth).c_str());
    file.write(folder, "SCREEN_REFRESH_RATE", std::to_string(known.refresh_rate).c_str());
    file.write(folder, "SCREEN_WIDTH", std::to_string(known.width + 65536).c_str());
    file.write(folder, "SCREEN_HEIGHT", std::to_string(known.height).c_str());
    manager()->config_file = &file;
    for (const char* count : {"256", "-1", "99999999999", "many", ""}) {
        file.write(folder, "WINDOW_NOTIFICATION_COUNT", count);
        add(0, SMALL, LARGE);
        EXPECT_EQ(1, manager()->notification_count) << count;
    }
    EXPECT_EQ(-1, manager()->current_display_setting);
    file.write(folder, "SCREEN_WIDTH", std::to_string(known.width).c_str());
    add(0, SMALL, LARGE);
    EXPECT_EQ(0, manager()->current_display_setting);
    manager()->config_file = nullptr;
}

TEST_F(Windows, AlertsSlideInAndOut) {
    add(0, SMALL, SMALL);
    draw(0);
    add(3, make_graphics_sizes(60, 20), make_graphics_sizes(60, 20));
    EXPECT_EQ(-20, window(3).y);
    EXPECT_EQ(desktop_width - 61, window(3).x);
    EXPECT_TRUE(window(3).target_pending);
    manager()->monitor(0);
    EXPECT_EQ(1, window(3).y);
    EXPECT_FALSE(window(3).target_pending);
    EXPECT_EQ(WM_WINDOW::SHOWN, window(3).state);
    manager()->hide_window(3);
    EXPECT_EQ(-20, window(3).y);
    EXPECT_EQ(1, window(3).target_y);
    EXPECT_EQ(nullptr, manager()->get_page_manager(3));
    EXPECT_EQ(WM_WINDOW::HIDDEN, window(3).state);
    add(3, make_graphics_sizes(60, 20), make_graphics_sizes(60, 20));
    EXPECT_NE(nullptr, manager()->get_page_manager(3));
    manager()->monitor(0);
    EXPECT_EQ(1, window(3).y);
    window(3).set_target_positions(-1, 12);  // only one way
    manager()->monitor(0);
    EXPECT_EQ(12, window(3).y);
    EXPECT_EQ(desktop_width - 61, window(3).x);
}

TEST_F(Windows, FullScreenComesAndGoes) {
    add(0, SMALL, LARGE);
    draw(0);
    EXPECT_FALSE(manager()->set_display_mode(WM_WINDOW_MANAGER::FULL_SCREEN, 0));
    EXPECT_TRUE(program->get_is_full_screen());
    EXPECT_EQ(0, manager()->current_display_setting);
    EXPECT_EQ(WINDOWED_APPLICATION_FRAMEWORK::default_display_settings.height, window(0).height);
    EXPECT_EQ(program->get_display_settings(),
              WINDOWED_APPLICATION_FRAMEWORK::default_display_settings);
    EXPECT_TRUE(manager()->set_to_use_alternate_display_setting(0));
    EXPECT_TRUE(manager()->set_to_use_alternate_display_setting(44));
    EXPECT_TRUE(manager()->is_display_mode_supported(WM_WINDOW_MANAGER::FULL_SCREEN));
    const DISPLAY_SETTINGS known = WINDOWED_APPLICATION_FRAMEWORK::default_display_settings;
    EXPECT_FALSE(
        program->is_display_mode_suitable(known.refresh_rate, 32, known.width, known.height));
    EXPECT_TRUE(program->is_display_mode_suitable(75, 32, known.width, known.height));
    EXPECT_FALSE(program->is_display_mode_suitable(75, 16, known.width, known.height));
    EXPECT_FALSE(program->is_display_mode_suitable(75, 32, 10, known.height));
}

TEST_F(Windows, AWindowLargerThanTheDesktopOpensInFullScreen) {
    const auto wide = make_graphics_sizes(static_cast<std::uint16_t>(desktop_width + 10), 200);
    program->set_minimum_window_size(wide);
    add(0, wide, NO_GRAPHICS_SIZES);
    unsigned char failed = 1, changed = 0;
    ::testing::internal::CaptureStderr();
    manager()->draw_window(0, 0, failed, changed);
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());  // the first time without a word
    EXPECT_EQ(0, failed);
    EXPECT_EQ(1, changed);
    EXPECT_TRUE(program->get_is_full_screen());
    EXPECT_EQ(desktop_width + 10, window(0).width);

    manager()->display_mode = WM_WINDOW_MANAGER::SEVERAL_WINDOWS;
    ::testing::internal::CaptureStderr();
    manager()->draw_window(0, 0, failed, changed);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(),
                HasSubstr("Warning: The available desktop space is not large enough to display a " +
                          std::to_string(desktop_width + 10) + " x 200 window. "));
    EXPECT_TRUE(program->get_is_full_screen());
    manager()->display_mode = WM_WINDOW_MANAGER::SEVERAL_WINDOWS;
    add(1, wide, NO_GRAPHICS_SIZES);
    manager()->draw_window(1, 0, failed, changed);
    EXPECT_EQ(1, failed);
    EXPECT_EQ(nullptr, window(1).handle);
}

// --- The render manager ---

TEST(RenderManager, TheBackBufferLockNestsPerOwner) {
    ORLN_3D::RENDER_MANAGER_3D renderer;
    using namespace ORLN_3D;
    EXPECT_TRUE(renderer.lock_backbuffer(2, THREAD_ID_MAIN, 0));
    EXPECT_TRUE(renderer.lock_backbuffer(2, THREAD_ID_MAIN, 0));
    EXPECT_FALSE(renderer.lock_backbuffer(2, THREAD_ID_RENDER, 0));
    EXPECT_TRUE(renderer.lock_backbuffer(1, THREAD_ID_RENDER, 0));
    renderer.unlock_backbuffer(1);
    renderer.unlock_backbuffer(2);
    EXPECT_FALSE(renderer.lock_backbuffer(2, THREAD_ID_RENDER, 0));
    renderer.set_main_thread_rendering(1);
    EXPECT_TRUE(renderer.lock_backbuffer(2, THREAD_ID_RENDER, 0));
    renderer.unlock_backbuffer(2);
    renderer.set_main_thread_rendering(0);
    EXPECT_FALSE(renderer.lock_backbuffer(2, THREAD_ID_RENDER, 0));
    renderer.unlock_backbuffer(2);
    renderer.unlock_backbuffer(2);  // one too many
    EXPECT_TRUE(renderer.lock_backbuffer(2, THREAD_ID_RENDER, 0));
    renderer.unlock_backbuffer(2);
    EXPECT_FALSE(renderer.lock_backbuffer(5, THREAD_ID_MAIN, 0));
    EXPECT_FALSE(renderer.lock_backbuffer(-1, THREAD_ID_MAIN, 1));
}

TEST(RenderManager, WithoutARenderThreadNothingWaits) {
    ORLN_3D::RENDER_MANAGER_3D renderer;
    EXPECT_EQ(&renderer, ORLN_3D::RENDER_MANAGER_BASE::get_instance());
    EXPECT_TRUE(renderer.get_use_3d_rendering());
    EXPECT_FALSE(renderer.is_3d_capable());
    EXPECT_FALSE(renderer.start_render_thread(-1));
    EXPECT_FALSE(renderer.start_render_thread(7));
    WM_WINDOW window(0, 0, 0, 0, 0, 0);
    renderer.add_window(window);
    renderer.remove_window(window);
    renderer.resize_window(window);
    renderer.pause_render_thread();
    renderer.resume_render_thread();
    renderer.wait_for_render_loop(false);
    renderer.stop_render_thread(false);
    ORLN_3D::OBJECT_3D objects[2];
    renderer.add_object(&objects[0]);
    renderer.add_object(&objects[1]);
    renderer.remove_object(&objects[0]);
    EXPECT_THAT(renderer.get_objects(), ::testing::ElementsAre(&objects[1]));
    const std::pair<int, int> sizes[] = {{0, 0}, {1, 1},     {2, 2},     {3, 4},
                                         {5, 8}, {480, 512}, {640, 1024}};
    for (const auto& [size, rounded] : sizes) {
        EXPECT_EQ(rounded, ORLN_3D::RENDER_MANAGER_3D::round_up_to_power_of_two(size));
    }
}

TEST(RenderManager, TheBaseAnswersForAProgramWithoutAScreen) {
    ORLN_3D::RENDER_MANAGER_BASE base;
    EXPECT_TRUE(base.lock_backbuffer(0, ORLN_3D::THREAD_ID_RENDER, 0));
    EXPECT_FALSE(base.get_use_3d_rendering());
    EXPECT_TRUE(base.get_graphics_hardware().is_empty());
}

}  // namespace
