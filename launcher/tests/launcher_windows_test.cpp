// The launcher's windows, without a display and with a server that can't be reached or never
// answers.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "launcher/download_page.h"
#include "launcher/error_page.h"
#include "launcher/launcher.h"
#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/kvcore_startup.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_window.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"

namespace {

namespace fs = std::filesystem;

constexpr signed char MAIN = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr signed char SPLASH = WM_WINDOW_MANAGER::SPLASH_WINDOW;

// Accepts connections on the loopback interface, and never says a word.
class SILENT_SERVER {
public:
    SILENT_SERVER() : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const place = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(0, ::bind(listener, place, size));
        EXPECT_EQ(0, ::listen(listener, 1));
        EXPECT_EQ(0, ::getsockname(listener, place, &size));
        port = ntohs(address.sin_port);
    }
    ~SILENT_SERVER() {
        stop();
        for (const int each : crowd) {
            ::close(each);
        }
    }
    SILENT_SERVER(const SILENT_SERVER&) = delete;
    SILENT_SERVER& operator=(const SILENT_SERVER&) = delete;

    void stop() {
        drop();
        close_one(listener);
    }
    // Ends the accepted connection.
    void drop() { close_one(connection); }
    // Takes all places in the queue: who connects from now on waits.
    bool fill() {
        for (int i = 0; i < 20; ++i) {
            crowd.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
            ::connect(crowd.back(), reinterpret_cast<sockaddr*>(&address), sizeof address);
            pollfd connecting = {crowd.back(), POLLOUT, 0};
            if (::poll(&connecting, 1, 100) == 0) {
                return true;
            }
        }
        return false;
    }
    // Somebody has connected within that time.
    bool accept(int wait_ms) {
        pollfd waiting = {listener, POLLIN, 0};
        if (::poll(&waiting, 1, wait_ms) == 1) {
            connection = ::accept(listener, nullptr, nullptr);
        }
        return connection != -1;
    }

    int port = 0;

private:
    static void close_one(int& descriptor) {
        if (descriptor != -1) {
            ::close(descriptor);
            descriptor = -1;
        }
    }

    sockaddr_in address = {};
    int listener, connection = -1;
    std::vector<int> crowd;
};

class LauncherWindows : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "launcher_windows_XXXXXX").string();
        root = ::mkdtemp(name.data());
        fs::create_directories(root / "data" / "config");
        fs::create_directories(root / "user");
        fs::create_directories(root / "pictures");
        fs::copy(LAUNCHER_SKIN_DATA, root / "data", fs::copy_options::recursive);
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        ::setenv("XDG_DATA_HOME", (root / "user").c_str(), 1);
        ::setenv("HOME", root.c_str(), 1);
        ASSERT_TRUE(DISK_MANAGER::set_base_folder(root.c_str()));
        KVCORE::RESULT result;
        initialise_kvcore(result);
    }

    // Nobody listens at port 1.
    void start(int port = 1) {
        std::ofstream(root / "data" / "config" / "launcher.cfg", std::ios::trunc)
            << "HOST_NAME\n\t127.0.0.1\nPORT_NUMBER\n\t" << port << "\nAUTO_LAUNCH\n\t1\n";
        LAUNCHER_TEST_OPTIONS options;
        options.picture_folder = (root / "pictures").string();
        launcher = new LAUNCHER(false, false, options);  // deleted by ORLN_APPLICATION
    }

    void TearDown() override {
        ORLN_APPLICATION::shutdown();
        stop_window_platform();
        shutdown_kvcore();
        GUI_SKIN::forget_skin_path();
        FONT_MANAGER::get_instance().free_font(-1);
        DISK_MANAGER::set_base_folder(nullptr);
        window_aborted = false;
        fs::remove_all(root);
    }

    static WM_WINDOW_MANAGER& manager() { return *WM_WINDOW_MANAGER::get_instance(); }
    static WM_PAGE_MANAGER& pages() { return *manager().get_page_manager(MAIN); }
    static IMAGE& buffer(signed char window) { return *manager().get_back_buffer(window); }

    bool update(int count = 1) {
        for (int i = 0; i < count; ++i) {
            if (!launcher->monitor()) {
                return false;
            }
            orln_sleep(1);
        }
        return true;
    }
    template <class CONDITION>
    bool update_until(CONDITION condition) {
        const std::uint32_t begin = get_ms_count();
        bool running = true;
        while (running && !condition() && get_ms_count() - begin < 30000) {
            running = update();
        }
        return running && condition();
    }
    // Whether there is a text in that row of the splash's status box.
    static bool has_text(int row) {
        for (int y = 25 + 10 * row; y < 35 + 10 * row; ++y) {
            for (int x = 230; x < 425; ++x) {
                if (buffer(SPLASH).row(y)[x].get_rgb_brightness() < 60) {
                    return true;
                }
            }
        }
        return false;
    }
    // The engine gives up and the error page comes on show.
    void run_until_error_page() {
        start();
        const std::uint32_t begin = get_ms_count();
        while (!manager().get_window_info(MAIN) || manager().get_window_info(SPLASH)) {
            ASSERT_LT(get_ms_count() - begin, 60000u);
            ASSERT_TRUE(update());
        }
        ASSERT_TRUE(update(4));
    }
    // The download page in the place of the error page, as a run that could connect shows it.
    DOWNLOAD_PAGE& show_download_page() {
        auto* page = new DOWNLOAD_PAGE(pages());
        pages().get_current_area()->change_next_monitor = true;
        EXPECT_TRUE(update(3));
        return *page;
    }
    template <class OBJECT>
    static OBJECT* find(WM_SCREEN_OBJECT& parent) {
        OBJECT_WALK walk(parent.objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            if (auto* found = dynamic_cast<OBJECT*>(child)) {
                return found;
            }
        }
        return nullptr;
    }
    static void press(KEY_TYPE key) { KEYBOARD::process_key_event(key); }
    std::string settings() const {
        std::ifstream file(root / "data" / "config" / "launcher.cfg");
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    fs::path root;
    LAUNCHER* launcher = nullptr;
};

void* to_data(std::intptr_t value) {
    return reinterpret_cast<void*>(value);
}

TEST_F(LauncherWindows, SplashStandsCentredOverAHiddenMainWindow) {
    start();
    ASSERT_TRUE(update());
    EXPECT_EQ(446, buffer(SPLASH).width);
    EXPECT_EQ(208, buffer(SPLASH).height);
    EXPECT_EQ(WM_WINDOW::HIDDEN, manager().get_window(MAIN)->state);
    EXPECT_EQ(WM_WINDOW::SHOWN, manager().get_window(SPLASH)->state);
    EXPECT_STREQ("Tessarine Launcher", manager().get_main_window()->title);
    const OPEN_GRAPHICS_SIZES desktop = platform_get_desktop_size();
    EXPECT_EQ((graphics_width(desktop) - 446) / 2, manager().get_window(SPLASH)->x);
    EXPECT_EQ((graphics_height(desktop) - 208) / 2, manager().get_window(SPLASH)->y);
}

TEST_F(LauncherWindows, EngineWaitsForTheFirstDrawingOfTheStatusBox) {
    SILENT_SERVER server;
    start(server.port);
    ASSERT_TRUE(update());
    EXPECT_FALSE(server.accept(100));
    ASSERT_TRUE(update(3));
    EXPECT_TRUE(server.accept(5000));
}

TEST_F(LauncherWindows, StatusBoxIsDrawnOnlyWhenItChanges) {
    SILENT_SERVER server;
    start(server.port);
    ASSERT_TRUE(update(2));
    EXPECT_TRUE(has_text(0)) << "Installed add-on versions:";
    EXPECT_TRUE(has_text(1)) << "None installed";
    EXPECT_FALSE(has_text(2));
    EXPECT_TRUE(has_text(3)) << "Connect attempt 1 of 10...";
    // "Receiving validation response..." is where it stays.
    ASSERT_TRUE(update_until([&] { return has_text(5); }));
    EXPECT_TRUE(has_text(4)) << "Sent validation request...";
    EXPECT_FALSE(has_text(6));

    // A mark in the box stays while nothing changes, and goes when the connection is lost.
    const COLOUR mark = 0xFF123456u;
    const auto is_marked = [&](int y) { return buffer(SPLASH).row(y)[300] == mark; };
    buffer(SPLASH).row(170)[300] = buffer(SPLASH).row(20)[300] = mark;
    ASSERT_TRUE(update(20));
    EXPECT_TRUE(is_marked(170));
    ASSERT_TRUE(server.accept(5000));
    server.stop();
    EXPECT_TRUE(update_until([&] { return !is_marked(170); }));
    EXPECT_TRUE(is_marked(20)) << "above the box";
}

// Also the one behind an attempt that took longer than an update.
TEST_F(LauncherWindows, EveryConnectAttemptIsShown) {
    SILENT_SERVER server;
    ASSERT_TRUE(server.fill());
    start(server.port);
    ASSERT_TRUE(update(50));
    server.stop();  // the first attempt ends when it is told again, within a second or two
    std::set<std::vector<std::uint32_t>> pictures;
    EXPECT_TRUE(update_until([&] {
        if (!manager().get_window_info(SPLASH)) {
            return true;
        }
        std::vector<std::uint32_t> row;
        for (int y = 55; y < 65; ++y) {
            for (int x = 230; x < 425; ++x) {
                row.push_back(buffer(SPLASH).row(y)[x].value);
            }
        }
        pictures.insert(row);
        return false;
    }));
    EXPECT_EQ(10u, pictures.size());
}

// A connect may wait for a minute, and holds the engine meanwhile.
TEST_F(LauncherWindows, ConnectThatHangsHoldsUpNeitherTheSplashNorTheExit) {
    SILENT_SERVER server;
    start(server.port);
    ASSERT_TRUE(update_until([&] { return server.accept(0); }));
    ASSERT_TRUE(update_until([] { return has_text(5); }));
    ASSERT_TRUE(server.fill());
    server.drop();
    const std::uint32_t lost = get_ms_count();
    // "Connect attempt 2 of 10..." stands alone again.
    EXPECT_TRUE(update_until([] { return !has_text(4); }));
    ASSERT_TRUE(update(20));
    EXPECT_LT(get_ms_count() - lost, 5000u);

    const std::uint32_t leaving = get_ms_count();
    ORLN_APPLICATION::shutdown();
    EXPECT_LT(get_ms_count() - leaving, 5000u);
}

TEST_F(LauncherWindows, FirstInstallationWithoutAServerEndsAtTheErrorPage) {
    ASSERT_NO_FATAL_FAILURE(run_until_error_page());
    EXPECT_EQ(500, buffer(MAIN).width);
    EXPECT_EQ(250, buffer(MAIN).height);
    EXPECT_EQ(WM_WINDOW::SHOWN, manager().get_window(MAIN)->state);
    const auto* text = find<TEXT_BOX>(*pages().get_area(0));
    ASSERT_NE(nullptr, text);
    EXPECT_NE(nullptr, std::strstr(text->get_text(), "Unable to connect"));
    EXPECT_FALSE(text->get_scrolling()) << "the whole message is in view";
    const auto* ok = find<WM_BUTTON>(*pages().get_area(0));
    ASSERT_NE(nullptr, ok);
    EXPECT_STREQ("Ok", ok->get_title_text());
    EXPECT_TRUE(ok->has_focus());
    // Pictures of both were taken.
    EXPECT_TRUE(fs::exists(root / "pictures" / "splash.png"));
    EXPECT_TRUE(fs::exists(root / "pictures" / "error.png"));

    EXPECT_TRUE(update(20));
    press(KEY_RETURN);
    EXPECT_FALSE(update(3));
}

TEST_F(LauncherWindows, PictureOfAPageThatGoesAtOnceIsTakenAsItGoes) {
    start();
    ASSERT_TRUE(update(2));
    EXPECT_FALSE(fs::exists(root / "pictures" / "splash.png")) << "it isn't complete yet";
    ORLN_APPLICATION::shutdown();
    EXPECT_TRUE(fs::exists(root / "pictures" / "splash.png"));
}

TEST_F(LauncherWindows, EscapeLeavesTheErrorPage) {
    ASSERT_NO_FATAL_FAILURE(run_until_error_page());
    press(KEY_ESCAPE);
    EXPECT_FALSE(update(2));
}

TEST_F(LauncherWindows, DownloadPageAsksBeforeItCancels) {
    ASSERT_NO_FATAL_FAILURE(run_until_error_page());
    DOWNLOAD_PAGE& page = show_download_page();
    const WM_AREA& area = *pages().get_area(0);
    EXPECT_EQ(WM_MESG_NONE, page.handle(nullptr, to_data(DOWNLOAD_PAGE::VALUE_CANCEL), nullptr));
    EXPECT_EQ(1, area.get_active_modal_object_count(-1));
    EXPECT_EQ(WM_MESG_REMOVE_MODAL,
              page.handle(nullptr, to_data(DOWNLOAD_PAGE::VALUE_NO), nullptr));
    EXPECT_EQ(WM_MESG_QUIT, page.handle(nullptr, to_data(DOWNLOAD_PAGE::VALUE_YES), nullptr));
    EXPECT_EQ(WM_MESG_NONE, page.handle(nullptr, to_data(0), nullptr));

    // Escape answers the question with no, and asks it again.
    press(KEY_ESCAPE);
    ASSERT_TRUE(update(3));
    EXPECT_EQ(0, area.get_active_modal_object_count(-1));
    press(KEY_ESCAPE);
    ASSERT_TRUE(update(3));
    EXPECT_EQ(1, area.get_active_modal_object_count(-1));
    // "No" has the focus.
    press(KEY_RETURN);
    ASSERT_TRUE(update(4));
    EXPECT_EQ(0, area.get_active_modal_object_count(-1));
}

TEST_F(LauncherWindows, CheckBoxSetsAutoLaunchAndAnOrderlyExitStoresIt) {
    ASSERT_NO_FATAL_FAILURE(run_until_error_page());
    show_download_page();
    auto* box = find<WM_CHECK_BOX>(*pages().get_area(0));
    ASSERT_NE(nullptr, box);
    EXPECT_TRUE(box->checked);
    // Tab goes from "Cancel" to the check box, and from there back to "Cancel".
    const WM_SCREEN_OBJECT* cancel = manager().get_focal_object(MAIN);
    ASSERT_NE(nullptr, cancel);
    press(KEY_TAB);
    ASSERT_TRUE(update(2));
    EXPECT_NE(cancel, manager().get_focal_object(MAIN));
    press(KEY_RETURN);
    ASSERT_TRUE(update(3));
    EXPECT_FALSE(box->checked);
    EXPECT_FALSE(launcher->get_auto_launch());
    press(KEY_TAB);
    ASSERT_TRUE(update(2));
    EXPECT_EQ(cancel, manager().get_focal_object(MAIN));

    EXPECT_NE(std::string::npos, settings().find("AUTO_LAUNCH\n\t1\n"));
    ORLN_APPLICATION::shutdown();
    EXPECT_NE(std::string::npos, settings().find("AUTO_LAUNCH\n\t0\n"));
    EXPECT_NE(std::string::npos, settings().find("WINDOW_MODE_0"));
}

}  // namespace
