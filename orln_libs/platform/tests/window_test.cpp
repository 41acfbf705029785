// The windows: sizes, places, events, presentation.
#include "../code/linuxcode/x11_resolution.h"
#include "platform/disk_manager.h"
#include "platform/ptrarray.h"
#include "temp_folder.h"
#include "window_fixture.h"

namespace {

// The pixel that the user would see.
std::uint32_t shown_pixel(std::uint32_t id, int x, int y) {
    const SDL_Surface* surface = SDL_GetWindowSurface(SDL_GetWindowFromID(id));
    if (!surface || x >= surface->w || y >= surface->h) {
        return 0xDEADBEEF;
    }
    std::uint32_t pixel;
    std::memcpy(&pixel, static_cast<const char*>(surface->pixels) + y * surface->pitch + x * 4, 4);
    return pixel & 0xFFFFFF;
}

SDL_Rect native_place(std::uint32_t id) {
    SDL_Rect place = {};
    SDL_GetWindowPosition(SDL_GetWindowFromID(id), &place.x, &place.y);
    SDL_GetWindowSize(SDL_GetWindowFromID(id), &place.w, &place.h);
    return place;
}

TEST_F(WINDOW_TEST, WithoutADisplayEverythingAnswers) {
    EXPECT_FALSE(has_display());
    EXPECT_GT(desktop_width, 0);
    EXPECT_GT(desktop_height, 0);
    EXPECT_EQ(platform_get_desktop_size(), platform_get_original_desktop_dimensions());
    EXPECT_EQ(0u, platform_get_window_start_positions());
    EXPECT_EQ(1, get_display_scale());
    PTRARRAY modes;
    get_list_of_supported_display_settings(modes);
    EXPECT_EQ(0, modes.get_count());
    change_mouse_icon(5);
    change_mouse_icon(99);
    wait_for_events(1);
    int stray = 0;
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&stray)}) {
        show_window(handle);
        hide_window(handle);
        minimise_window(handle);
        move_window(handle, 1, 2, 3, 4);
        notify_window(handle, 255);
        platform_bring_window_to_front(handle, 1);
        swap_screens(handle, -1);
        close_window(handle);
    }
    stop_window_platform();
    close_window(&stray);
    swap_screens(&stray, 0);
    EXPECT_TRUE(open(0, 100, 100)) << "the display opens again";
}

TEST_F(WINDOW_TEST, DriverThatIsNotThereMeansNoDisplay) {
    stop_window_platform();
    setenv("SDL_VIDEODRIVER", "no-such-driver", 1);
    EXPECT_FALSE(has_display());
    // Not even the driver without a display: windows have no native half, but a back buffer.
    void* main = open(0, 300, 200);
    ASSERT_TRUE(main);
    EXPECT_EQ(300, application.buffers[0].width);
    show_window(main);
    move_window(main, 5, 5, 400, 300);
    platform_bring_window_to_front(main, 1);
    change_mouse_icon(1);
    set_clipboard_text("text");
    events_something_done = false;
    swap_screens(main, 0);
    EXPECT_TRUE(events_something_done);
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    SDL_PushEvent(&quit);
    process_os_events();
    close_window(main);
    EXPECT_EQ(0, application.buffers[0].width);
}

TEST_F(WINDOW_TEST, SizeIsFittedBetweenLimitsAndDesktop) {
    struct CASE {
        OPEN_GRAPHICS_SIZES size, minimum, maximum;
        int width, height;  // 0: refused
    };
    const OPEN_GRAPHICS_SIZES none = NO_GRAPHICS_SIZES;
    const auto s = [](int w, int h) {
        return make_graphics_sizes(static_cast<std::uint16_t>(w), static_cast<std::uint16_t>(h));
    };
    const int dw = desktop_width, dh = desktop_height;
    const CASE cases[] = {
        {s(640, 480), none, none, 640, 480},
        {none, none, none, dw, dh},
        {s(0xFFFF, 200), none, none, dw, 200},
        {s(100, 100), s(200, 0xFFFF), none, 200, 100},
        {s(500, 500), s(100, 100), s(400, 300), 400, 300},
        {s(dw + 50, dh + 50), none, none, dw, dh},
        {s(dw + 50, dh), s(dw + 1, 100), none, 0, 0},  // the minimum is wider than the desktop
        {s(100, 100), s(100, dh + 1), none, 0, 0},
        {s(100, 100), s(300, 300), s(200, 400), 0, 0},  // the limits contradict each other
        {s(0, 0), none, none, 1, 1},
    };
    for (const CASE& c : cases) {
        OPEN_GRAPHICS_SETTINGS settings = settings_for(1, 1, 1);
        settings.size = c.size;
        settings.minimum_size = c.minimum;
        settings.maximum_size = c.maximum;
        opened_width = opened_height = 0;
        void* handle = open(settings);
        EXPECT_EQ(c.width != 0, handle != nullptr) << c.size;
        EXPECT_EQ(c.width, opened_width) << c.size;
        EXPECT_EQ(c.height, opened_height) << c.size;
        if (handle) {
            EXPECT_EQ(c.width, application.buffers[1].width);
            EXPECT_EQ(c.height, native_place(last_id()).h);
        }
        close_window(handle);
        application.handles[1] = nullptr;
    }
}

TEST_F(WINDOW_TEST, PlaceIsTakenOrCentredAxisByAxis) {
    struct CASE {
        int index, x, y, at_x, at_y;
    };
    const int cx = (desktop_width - 200) / 2, cy = (desktop_height - 100) / 2;
    const CASE cases[] = {
        {1, 30, 40, 30, 40},
        {1, -1, 40, cx, 40},
        {1, 30, 0, 30, cy},
        {1, -5, -5, cx, cy},
        {1, desktop_width - 10, 5, desktop_width - 200, 5},         // kept on the desktop
        {3, desktop_width - 201, -100, desktop_width - 201, -100},  // slides in from above
        {3, 0, -1, 0, cy},
    };
    for (const CASE& c : cases) {
        OPEN_GRAPHICS_SETTINGS settings = settings_for(c.index, 200, 100);
        settings.x = static_cast<std::int16_t>(c.x);
        settings.y = static_cast<std::int16_t>(c.y);
        ASSERT_TRUE(open(settings));
        EXPECT_EQ(c.at_x, native_place(last_id()).x) << c.x << " " << c.y;
        EXPECT_EQ(c.at_y, native_place(last_id()).y) << c.x << " " << c.y;
    }
}

TEST_F(WINDOW_TEST, LooksFollowTheSettings) {
    OPEN_GRAPHICS_SETTINGS settings = settings_for(0, 200, 100);
    settings.title = "T\xEAte";
    settings.hidden = true;
    void* main = open(settings);
    const std::uint32_t id = last_id();
    EXPECT_STREQ("T\xC3\xAAte", SDL_GetWindowTitle(native(id)));
    const auto flags = [id] { return SDL_GetWindowFlags(native(id)); };
    EXPECT_TRUE(flags() & SDL_WINDOW_HIDDEN);
    EXPECT_TRUE(flags() & SDL_WINDOW_RESIZABLE);
    EXPECT_FALSE(flags() & SDL_WINDOW_BORDERLESS);
    show_window(main);
    EXPECT_TRUE(flags() & SDL_WINDOW_SHOWN);
    hide_window(main);
    EXPECT_TRUE(flags() & SDL_WINDOW_HIDDEN);

    // The same window with other settings; then full screen and back.
    settings.hidden = false;
    settings.size = settings.minimum_size = settings.maximum_size = make_graphics_sizes(320, 240);
    EXPECT_EQ(main, open(settings));
    EXPECT_EQ(id, last_id());
    EXPECT_EQ(320, application.buffers[0].width);
    EXPECT_TRUE(flags() & SDL_WINDOW_SHOWN);
    settings.full_screen = true;
    EXPECT_EQ(main, open(settings));
    EXPECT_TRUE(flags() & SDL_WINDOW_FULLSCREEN);
    settings.full_screen = false;
    EXPECT_EQ(main, open(settings));
    EXPECT_FALSE(flags() & SDL_WINDOW_FULLSCREEN);

    settings.window_index = 1;
    settings.main = false;
    EXPECT_NE(main, open(settings));
    EXPECT_FALSE(SDL_GetWindowFlags(native(last_id())) & SDL_WINDOW_RESIZABLE)
        << "minimum and maximum are the same";
    open(4, 100, 50);
    EXPECT_TRUE(SDL_GetWindowFlags(native(last_id())) & SDL_WINDOW_BORDERLESS);
    EXPECT_FALSE(SDL_GetWindowFlags(native(last_id())) & SDL_WINDOW_RESIZABLE);
}

TEST_F(WINDOW_TEST, BackBufferIsMadeBlackAndGoesWithTheWindow) {
    IMAGE& buffer = application.buffers[0];
    void* main = open(0, 31, 20);
    EXPECT_TRUE(buffer.locked);
    EXPECT_EQ(30, buffer.active_right);
    EXPECT_EQ(19, buffer.active_bottom);
    EXPECT_TRUE(buffer.is_dirty());
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 31; ++x) {
            ASSERT_EQ(0xFF000000u, buffer.row(y)[x].value) << x << " " << y;
        }
    }
    buffer.row(3)[3] = COLOUR(255, 0, 0);
    create_back_buffer(&buffer, 31, 20);
    EXPECT_EQ(0xFF000000u, buffer.row(3)[3].value) << "the same size is cleared as well";
    close_window(main);
    EXPECT_EQ(0, buffer.width);
    EXPECT_FALSE(buffer.locked);
    EXPECT_EQ(0u, last_id());
}

TEST_F(WINDOW_TEST, OnlyTheDirtyRectangleIsPresented) {
    void* main = open(0, 64, 48);
    const std::uint32_t id = last_id();
    IMAGE& buffer = application.buffers[0];
    swap_screens(main, 0);
    EXPECT_FALSE(buffer.is_dirty());
    EXPECT_EQ(0u, shown_pixel(id, 10, 10));

    for (int y = 0; y < 48; ++y) {
        std::fill_n(buffer.row(y), 64, COLOUR(0xFF102030u));
    }
    events_something_done = false;
    swap_screens(main, 0);
    EXPECT_FALSE(events_something_done) << "nothing is dirty";
    buffer.mark_dirty_area(8, 9, 20, 30);
    WINDOW_EVENTS::use_external_rendering = true;
    swap_screens(main, 0);
    WINDOW_EVENTS::use_external_rendering = false;
    EXPECT_TRUE(buffer.is_dirty());
    swap_screens(nullptr, 0);
    EXPECT_TRUE(events_something_done);
    EXPECT_FALSE(buffer.is_dirty());
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool inside = x >= 8 && x <= 20 && y >= 9 && y <= 30;
            ASSERT_EQ(inside ? 0x102030u : 0u, shown_pixel(id, x, y)) << x << " " << y;
        }
    }
    // A buffer that is larger than the window, as while the user makes it smaller.
    create_back_buffer(&buffer, 640, 480);
    swap_screens(main, 0);
    EXPECT_EQ(0u, shown_pixel(id, 10, 10));
}

TEST_F(WINDOW_TEST, ScaledDisplayEnlargesPicturesAndMapsInputBack) {
    for (const int scale : {2, 3}) {
        stop_window_platform();
        set_display_scale(scale);
        EXPECT_EQ(desktop_width / scale, graphics_width(platform_get_desktop_size()));
        OPEN_GRAPHICS_SETTINGS settings = settings_for(0, 100, 60);
        settings.x = 10;
        settings.y = 20;
        application.handles[0] = nullptr;
        void* main = open(settings);
        const std::uint32_t id = last_id();
        const SDL_Rect place = native_place(id);
        EXPECT_EQ(100 * scale, place.w);
        EXPECT_EQ(60 * scale, place.h);
        EXPECT_EQ(10 * scale, place.x);
        IMAGE& buffer = application.buffers[0];
        EXPECT_EQ(100, buffer.width);
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 100; ++x) {
                buffer.row(y)[x] = COLOUR(0xFF000000u + static_cast<unsigned>(y * 256 + x + 1));
            }
        }
        swap_screens(main, 0);
        for (int y = 0; y < 60 * scale; ++y) {
            for (int x = 0; x < 100 * scale; ++x) {
                ASSERT_EQ(static_cast<unsigned>(y / scale * 256 + x / scale + 1),
                          shown_pixel(id, x, y))
                    << x << " " << y;
            }
        }
        settle();
        take_after(motion(id, 50 * scale + scale - 1, 7 * scale));
        EXPECT_EQ(50, MOUSE::x);
        EXPECT_EQ(7, MOUSE::y);
        take_after(motion(id, -1, 0));
        EXPECT_EQ(-1, MOUSE::x) << "left of the window, not its first column";
        EXPECT_EQ(TOLD({"moved 0 5 6"}),
                  take_after(window_event(id, SDL_WINDOWEVENT_MOVED, 5 * scale, 6 * scale)));
        EXPECT_EQ(
            TOLD({"resized 0 200 90", "paint 0 0 1"}),
            take_after(window_event(id, SDL_WINDOWEVENT_SIZE_CHANGED, 200 * scale, 90 * scale)));
    }
}

TEST(X11_RESOLUTION, IsReadFromTheResources) {
    const struct {
        const char* resources;
        float dpi;
    } cases[] = {{"Xft.dpi:\t192\n", 192},
                 {"*color: red\nXft.antialias: 1\nXft.dpi: 96.5\nx: 1", 96.5f},
                 {"Xft.dpi:", 0},
                 {"Xft.dpi: -5", 0},
                 {"Xft.dpi: nan", 0},
                 {"Xft.dpi: 1e30", 0},
                 {"NotXft.dpi: 192\n\n", 0},
                 {"", 0},
                 {nullptr, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.dpi, read_resource_resolution(c.resources))
            << (c.resources ? c.resources : "null");
    }
}

TEST_F(WINDOW_TEST, WindowEventsReachTheApplication) {
    open(0, 200, 100);
    const std::uint32_t main_id = last_id();
    open(1, 200, 100);
    const std::uint32_t child_id = last_id();
    settle();
    const auto told = [&](std::uint32_t id, SDL_WindowEventID what, int a = 0, int b = 0) {
        return take_after(window_event(id, what, a, b));
    };
    EXPECT_EQ(TOLD({"moved 1 7 -3"}), told(child_id, SDL_WINDOWEVENT_MOVED, 7, -3));
    EXPECT_EQ(TOLD({"minimised 1"}), told(child_id, SDL_WINDOWEVENT_MINIMIZED));
    EXPECT_EQ(TOLD({"restored 1"}), told(child_id, SDL_WINDOWEVENT_RESTORED));
    EXPECT_EQ(TOLD({"focal 1"}), told(child_id, SDL_WINDOWEVENT_FOCUS_GAINED));
    EXPECT_EQ(TOLD({"closed 1"}), told(child_id, SDL_WINDOWEVENT_CLOSE));
    EXPECT_EQ(TOLD({"quit"}), told(main_id, SDL_WINDOWEVENT_CLOSE));
    EXPECT_EQ(TOLD({"paint 0 0 1"}), told(main_id, SDL_WINDOWEVENT_EXPOSED));
    EXPECT_EQ(TOLD(), told(main_id + 50, SDL_WINDOWEVENT_CLOSE)) << "not one of ours";
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    EXPECT_EQ(TOLD({"focal 0", "quit"}), take_after(quit));
    EXPECT_EQ(0, application.locks);
    set_window_events(nullptr);
    EXPECT_EQ(TOLD(), told(main_id, SDL_WINDOWEVENT_CLOSE));
}

TEST_F(WINDOW_TEST, ResizingTellsTheLastSizeOnce) {
    application.minimum = make_graphics_sizes(150, 0xFFFF);
    void* main = open(0, 200, 100);
    const std::uint32_t id = last_id();
    settle();
    const auto sized = [id](int w, int h) {
        return window_event(id, SDL_WINDOWEVENT_SIZE_CHANGED, w, h);
    };
    EXPECT_EQ(
        TOLD({"resized 0 300 120", "paint 0 0 1"}),
        take_after({sized(210, 105), window_event(id, SDL_WINDOWEVENT_EXPOSED), sized(300, 120)},
                   0));
    EXPECT_EQ(TOLD({"paint 0 0 1"}), take_after(sized(300, 120))) << "the size is known";
    EXPECT_EQ(TOLD({"resized 0 150 50", "paint 0 0 1"}), take_after(sized(90, 50)))
        << "not below the application's minimum";
    // The whole of the back buffer is presented, whatever the active area.
    settle();
    application.buffers[0].set_active_area(3, 3, 4, 4);
    application.buffers[0].row(20)[30] = COLOUR(0xFF00FF00u);
    application.buffers[0].set_not_dirty();
    take_after(window_event(id, SDL_WINDOWEVENT_EXPOSED));
    EXPECT_EQ(0x00FF00u, shown_pixel(id, 30, 20));
    EXPECT_FALSE(application.buffers[0].is_dirty());
    // The program's own resizing takes the same way.
    move_window(main, 5, 6, 160, 90);
    process_os_events();
    const TOLD told = application.take_told();
    EXPECT_NE(told.end(), std::find(told.begin(), told.end(), "resized 0 160 90"));
    EXPECT_EQ(160, native_place(id).w);
    EXPECT_EQ(6, native_place(id).y);
}

// The application may take windows away while it is told about them.
TEST_F(WINDOW_TEST, WindowsMayGoWhileEventsWait) {
    class CLOSING : public TEST_APPLICATION {
    public:
        void handle_window_closed(void* window) override { close_window(window); }
        void handle_window_resized(void*, OPEN_GRAPHICS_SIZES) override {
            close_window(handles[0]);
            close_window(handles[1]);
        }
        void handle_quit_request() override { stop_window_platform(); }
    } closing;
    set_window_events(&closing);
    std::uint32_t ids[2] = {};
    for (int i = 0; i < 2; ++i) {
        OPEN_GRAPHICS_SETTINGS settings = settings_for(i, 200, 100);
        closing.handles[static_cast<std::size_t>(i)] =
            open_graphics(nullptr, settings, opened_width, opened_height);
        ids[i] = last_id();
    }
    take_after({window_event(ids[1], SDL_WINDOWEVENT_CLOSE), motion(ids[1], 5, 5),
                window_event(ids[1], SDL_WINDOWEVENT_SIZE_CHANGED, 90, 90)},
               0);
    EXPECT_FALSE(native(ids[1]));
    EXPECT_TRUE(native(ids[0]));
    take_after({window_event(ids[0], SDL_WINDOWEVENT_SIZE_CHANGED, 90, 90)}, 0);
    EXPECT_FALSE(native(ids[0]));
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    take_after({quit, motion(ids[0], 1, 1)}, 0);
    set_window_events(&application);
}

TEST_F(WINDOW_TEST, PictureOfAWindowIsStored) {
    TEMP_FOLDER folder;
    const DISK_MANAGER disk = folder.cursor();
    void* main = open(0, 40, 30);
    application.buffers[0].row(5)[6] = COLOUR(255, 0, 255);
    EXPECT_EQ(1, save_window_picture(main, disk, "shot.png"));
    IMAGE picture;
    ASSERT_EQ(1, picture.load(disk, "shot.png"));
    EXPECT_EQ(40, picture.width);
    EXPECT_EQ(COLOUR(255, 0, 255).value, picture.row(5)[6].value);
    EXPECT_EQ(0, save_window_picture(nullptr, disk, "none.png"));
}

}  // namespace
