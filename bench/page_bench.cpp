// The download page in its real skin: how long it takes to come on show, to be redrawn whole, and
// to draw what changes in one tick. The peer of the drawing is a plain copy of the page's
// background by pixman: the least that any redraw of it costs.
//
// Nothing is on a screen: the window is that of SDL's dummy driver, into which the back buffer is
// blitted where the name says so.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "autopatch/add_on.h"
#include "autopatch/add_on_panel.h"
#include "launcher/download_page.h"
#include "launcher/launcher.h"
#include "launcher/page_texts.h"
#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/kvcore_startup.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/message_box.h"
#include "modules/gui/panel_frame.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_progress_bar.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/image.h"

namespace {

namespace fs = std::filesystem;

constexpr signed char MAIN = WM_WINDOW_MANAGER::MAIN_WINDOW;

WM_WINDOW_MANAGER& get_windows() {
    return *WM_WINDOW_MANAGER::get_instance();
}
WM_PAGE_MANAGER& get_pages() {
    return *get_windows().get_page_manager(MAIN);
}
WM_AREA& get_area() {
    return *get_pages().get_area(0);
}

template <class OBJECT>
OBJECT* find(const WM_SCREEN_OBJECT& parent) {
    OBJECT_WALK walk(parent.objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        if (auto* found = dynamic_cast<OBJECT*>(child)) {
            return found;
        }
    }
    return nullptr;
}

// A launcher that has been started in an installation of its own and does nothing.
class INSTALLATION {
public:
    INSTALLATION() {
        std::string name = (fs::temp_directory_path() / "page_bench_XXXXXX").string();
        root = ::mkdtemp(name.data());
        fs::copy(LAUNCHER_SKIN_DATA, root / "data", fs::copy_options::recursive);
        fs::create_directories(root / "user");
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        ::setenv("XDG_DATA_HOME", (root / "user").c_str(), 1);
        ::setenv("HOME", root.c_str(), 1);
        DISK_MANAGER::set_base_folder(root.c_str());
        KVCORE::RESULT result;
        initialise_kvcore(result);
        LAUNCHER_TEST_OPTIONS options;
        options.picture_folder = root.string();  // so that it has windows
        new LAUNCHER(false, false, options);     // deleted by ORLN_APPLICATION
    }
    ~INSTALLATION() {
        ORLN_APPLICATION::shutdown();
        stop_window_platform();
        shutdown_kvcore();
        fs::remove_all(root);
    }
    INSTALLATION(const INSTALLATION&) = delete;
    INSTALLATION& operator=(const INSTALLATION&) = delete;

private:
    fs::path root;
};

bool load_skin(bool from_loose_files) {
    static CONFIG_FILE versions("versions.cfg", true, FOLDER_APPDATA, false);
    return LAUNCHER::instance->get_skin()->load("saffrane", versions, from_loose_files, nullptr,
                                                nullptr, 1);
}

// The main window with the page as it looks in the midst of a download.
class PAGE {
public:
    PAGE() {
        const OPEN_GRAPHICS_SIZES size =
            make_graphics_sizes(LAUNCHER::MAIN_WIDTH, LAUNCHER::MAIN_HEIGHT);
        WM_WINDOW_MANAGER& windows = get_windows();
        windows.add_window(MAIN, 1, size, size, size);
        unsigned char failed = 0, changed = 0;
        windows.draw_window(MAIN, 0, failed, changed);
        windows.set_window_as_focal_window(MAIN);
        LAUNCHER::setup_background();
        LAUNCHER::instance->initialize_areas(1, MAIN);
        new DOWNLOAD_PAGE(get_pages());  // the page manager's
        get_area().change_next_monitor = true;
        get_pages().monitor(0);
        show_add_on();
        show_progress();
        get_pages().check_for_draw();
    }
    ~PAGE() { get_windows().close_window(MAIN); }
    PAGE(const PAGE&) = delete;
    PAGE& operator=(const PAGE&) = delete;

    static void draw() {
        get_pages().check_for_draw();
        benchmark::ClobberMemory();
    }
    // The next percent.
    void show_progress() {
        auto* grid = find<WM_GRID>(get_area());
        auto* bar = static_cast<WM_PROGRESS_BAR*>(grid->get_object(1, 0));
        percent = percent % 100 + 1;
        bar->set_pos(percent, 0);
        bar->set_custom_bar_string(make_progress_text(1, 2, percent, 812.4).c_str(), 0);
    }

private:
    void show_add_on() {
        add_on.set_title("Tessarine");
        add_on.version = 41;
        add_on.file_size = 321000000;
        add_on.add_description_line("The game with everything that a season needs.");
        auto* frame = find<PANEL_FRAME>(get_area());
        frame->add_object(
            new ADD_ON_PANEL(0, 0, frame->get_internal_width(), frame->get_internal_height(),
                             &add_on, "DIALOG", MAIN, nullptr, nullptr, nullptr, 0),
            1);
    }

    ADD_ON add_on;
    std::int32_t percent = 0;
};

// --- The skin: from its start to the page, drawn ---

void page_from_skin(benchmark::State& state, bool from_loose_files) {
    bool loaded = load_skin(true);  // writes skin.bin
    for (auto _ : state) {
        loaded = loaded && load_skin(from_loose_files);
        const PAGE page;
        state.PauseTiming();  // closing the window isn't timed
        get_windows().close_window(MAIN);
        state.ResumeTiming();
    }
    if (!loaded) {
        state.SkipWithError("no skin");
    }
}

// --- The whole page ---

void redraw_page(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    for (auto _ : state) {
        get_area().mark_entire_redraw_area();
        PAGE::draw();
    }
}

void redraw_page_and_blit(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    for (auto _ : state) {
        get_area().mark_entire_redraw_area();
        PAGE::draw();
        get_windows().blit_window(MAIN, 0);
    }
}

pixman_image_t* make_picture(const IMAGE& image) {
    return pixman_image_create_bits(PIXMAN_a8r8g8b8, image.width, image.height,
                                    reinterpret_cast<std::uint32_t*>(image.pixels.get()),
                                    image.stride * 4);
}

void copy_background_pixman(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    const IMAGE& background = get_pages().background;
    pixman_image_t* source = make_picture(background);
    pixman_image_t* target = make_picture(*get_windows().get_back_buffer(MAIN));
    for (auto _ : state) {
        pixman_image_composite32(PIXMAN_OP_SRC, source, nullptr, target, 0, 0, 0, 0, 0, 0,
                                 background.width, background.height);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(source);
    pixman_image_unref(target);
}

// --- Ticks: only what changed is drawn ---

// Nothing changed. The whole tick: keys, updates, input, and a blit of nothing.
void tick_idle(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    for (auto _ : state) {
        get_windows().monitor(1);
    }
}

// The next frame of an animation that stands on the page.
void tick_animation(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    IMAGE strip;
    strip.load(DISK_MANAGER(FOLDER_APPDATA), "please_wait_animation.png");
    auto* animation = new WM_ANIMATION(380, 300, &strip, 12, 0, 1, nullptr, nullptr, nullptr,
                                       ANIMATION_CALLBACK_ON_BOTH, MAIN);
    get_area().add_object(animation, 0);
    PAGE::draw();
    for (auto _ : state) {
        get_area().update(0);
        PAGE::draw();
    }
}

void tick_progress(benchmark::State& state) {
    load_skin(false);
    PAGE page;
    for (auto _ : state) {
        page.show_progress();
        PAGE::draw();
    }
}

// A message box of 300 by 160 while it fades.
void tick_fade(benchmark::State& state) {
    load_skin(false);
    const PAGE page;
    auto* box =
        new MESSAGE_BOX("Cancel Download?", "Are you sure that you wish to cancel the download?", 0,
                        DIALOG_KIND_CONFIRM, "Yes", nullptr, nullptr, DIALOG_BUTTON_NEGATIVE_ACTION,
                        "No", nullptr, nullptr, DIALOG_BUTTON_CANCEL, nullptr, nullptr, MAIN);
    box->no_effects = true;
    box->resize(300, 160, 1);
    get_area().add_modal_object(box, 0);
    PAGE::draw();
    unsigned char alpha = 0;
    for (auto _ : state) {
        alpha = static_cast<unsigned char>(alpha % 254 + 1);
        box->alpha = box->target_alpha = alpha;
        box->request_draw(0, 0);
        PAGE::draw();
    }
}

BENCHMARK_CAPTURE(page_from_skin, loose_files, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(page_from_skin, skin_bin, false)->Unit(benchmark::kMillisecond);
BENCHMARK(redraw_page)->Unit(benchmark::kMicrosecond);
BENCHMARK(redraw_page_and_blit)->Unit(benchmark::kMicrosecond);
BENCHMARK(copy_background_pixman)->Unit(benchmark::kMicrosecond);
BENCHMARK(tick_idle)->Unit(benchmark::kMicrosecond);
BENCHMARK(tick_animation)->Unit(benchmark::kMicrosecond);
BENCHMARK(tick_progress)->Unit(benchmark::kMicrosecond);
BENCHMARK(tick_fade)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    const INSTALLATION installation;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
