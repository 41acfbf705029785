// The launcher's windows and what lies behind their pages.
#include <cinttypes>
#include <ctime>

#include "launcher/console_view.h"
#include "launcher/launcher.h"
#include "modules/frameworks/application_loop.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"

namespace {

// The font that the splash is written with; later the skin's first.
constexpr std::int8_t SPLASH_FONT = 0;

const IMAGE* find_background() {
    static std::int32_t BACKGROUND_INDEX = -1;
    const IMAGE* picture = GUI_SKIN::get_image("BACKGROUND", nullptr, &BACKGROUND_INDEX);
    return picture != nullptr && picture->width > 0 ? picture : nullptr;
}

void get_size(const WM_WINDOW& window, std::int16_t& width, std::int16_t& height) {
    const OPEN_GRAPHICS_SIZES minimum = window.get_min_dimensions();
    width = window.width != -1 ? window.width : static_cast<std::int16_t>(graphics_width(minimum));
    height =
        window.height != -1 ? window.height : static_cast<std::int16_t>(graphics_height(minimum));
}

}  // namespace

// Windows where somebody can see them, or where pictures of them are asked for; otherwise the
// console.
void LAUNCHER::open_view() {
    if (!pictures.is_started() && !has_display()) {
        stop_window_platform();
        console = std::make_unique<CONSOLE_VIEW>();
    }
}

void LAUNCHER::initialise_graphics() {
    if (graphics_ready) {
        return;
    }
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    manager.config_file = &config;
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(MAIN_WIDTH, MAIN_HEIGHT);
    manager.add_window(WM_WINDOW_MANAGER::MAIN_WINDOW, 1, size, size, size);
    // Whatever mode was stored: the splash is a window of its own.
    manager.display_mode = WM_WINDOW_MANAGER::SEVERAL_WINDOWS;
    manager.get_main_window()->set_title(get_instance_title());
    graphics_ready = true;
}

// In place of the splash.
void LAUNCHER::show_main_window() {
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    unsigned char failed = 0, changed = 0;
    manager.draw_window(WM_WINDOW_MANAGER::MAIN_WINDOW, 0, failed, changed);
    // The page comes with the next update; until then its background is there instead of black.
    if (IMAGE* buffer = manager.get_back_buffer(WM_WINDOW_MANAGER::MAIN_WINDOW)) {
        const WM_PAGE_MANAGER& pages = *manager.get_page_manager(WM_WINDOW_MANAGER::MAIN_WINDOW);
        pages.background.put(0, 0, buffer, IMAGE_COPY_SOLID);
        manager.blit_window(WM_WINDOW_MANAGER::MAIN_WINDOW, 0);
    }
    manager.close_window(WM_WINDOW_MANAGER::SPLASH_WINDOW);
    manager.set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
}

void LAUNCHER::load_skin() {
    if (skin_loaded) {
        return;
    }
    output_trace("loading skin (%s)", skin_name);
    const std::time_t start = std::time(nullptr);
    // What the engine has come to stands in the splash all the while: its font goes now.
    loading_skin_callback(this);
    FONT_MANAGER::get_instance().free_font(SPLASH_FONT);
    loading_skin = true;
    const bool loaded = global_gui_skin->load(skin_name, config, 0, loading_skin_callback, this, 1);
    loading_skin = false;
    if (!loaded) {
        display_corrupt_install_error();
    }
    output_trace("loading took %" PRId32 "s",
                 static_cast<std::int32_t>(std::time(nullptr) - start));
    skin_loaded = true;
}

// Between two files of the skin: keeps the splash alive.
void LAUNCHER::loading_skin_callback(void* launcher) {
    WM_SCREEN_OBJECT::update_now_ms();
    static_cast<LAUNCHER*>(launcher)->draw_splash_screen_status_box();
    if (WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance()) {
        manager->blit_window(WM_WINDOW_MANAGER::SPLASH_WINDOW, 0);
    }
}

void LAUNCHER::display_corrupt_install_error() {
    exit_app(
        "This program installation appears to be corrupt or missing some files. Please re-install "
        "and try again.");
}

void LAUNCHER::setup_background() {
    const IMAGE* picture = find_background();
    WM_PAGE_MANAGER* pages =
        WM_WINDOW_MANAGER::get_instance()->get_page_manager(WM_WINDOW_MANAGER::MAIN_WINDOW);
    if (picture == nullptr || pages == nullptr) {
        return;
    }
    std::int16_t width = 0, height = 0;
    get_size(*WM_WINDOW_MANAGER::get_instance()->get_main_window(), width, height);
    pages->background.copy_pixels_from(*picture);
    pages->background.resize(width, height, 1);
}

void LAUNCHER::initialize_areas(unsigned char load, signed char window) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const IMAGE* picture = find_background();
    if (manager == nullptr || picture == nullptr) {
        return;
    }
    for (signed char i = 0; i < WM_WINDOW_MANAGER::WINDOW_COUNT; ++i) {
        WM_PAGE_MANAGER* pages = manager->get_page_manager(i);
        if (pages == nullptr || (window != -1 && window != i)) {
            continue;
        }
        std::int16_t width = 0, height = 0;
        get_size(*manager->get_window(i), width, height);
        if (load) {
            pages->background.copy_pixels_from(*picture);
        }
        pages->background.resize(width, height, 1);
        pages->get_area(0)->resize(width, height, 0);
    }
}

void LAUNCHER::handle_quit_request() {
    window_aborted = should_close();
}
