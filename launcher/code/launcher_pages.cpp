// The download page and the error page: when they come on show.
#include "autopatch/autopatch_system.h"
#include "launcher/console_view.h"
#include "launcher/download_page.h"
#include "launcher/error_page.h"
#include "launcher/launcher.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"

namespace {

WM_PAGE_MANAGER& get_pages() {
    return *WM_WINDOW_MANAGER::get_instance()->get_page_manager(WM_WINDOW_MANAGER::MAIN_WINDOW);
}

// The page that was made last is built at the page manager's next monitor.
void build_next_page(WM_PAGE_MANAGER& pages) {
    pages.get_current_area()->change_next_monitor = true;
}

}  // namespace

void LAUNCHER::display_download_page() {
    AUTOPATCH_SYSTEM& engine = *AUTOPATCH_SYSTEM::get_instance();
    if (console) {
        engine.set_download_allowed(true);
        return;
    }
    if (download_page) {
        return;
    }
    load_skin();
    initialise_graphics();
    setup_background();
    show_main_window();
    download_page = new DOWNLOAD_PAGE(get_pages());
    build_next_page(get_pages());
    remove_wait_animation();
    engine.set_download_allowed(true);
    initialize_areas(1, WM_WINDOW_MANAGER::MAIN_WINDOW);
}

void LAUNCHER::display_error_page() {
    const AUTOPATCH_ERROR_CODE code = AUTOPATCH_SYSTEM::get_instance()->get_error_code();
    if (console) {
        console->show_error(code);
        exit_requested = true;  // a console has no button to wait for
        return;
    }
    if (error_page) {
        return;
    }
    load_skin();
    initialise_graphics();
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(ERROR_WIDTH, ERROR_HEIGHT);
    manager.set_min_dimensions(WM_WINDOW_MANAGER::MAIN_WINDOW, size, size);
    manager.set_max_dimensions(WM_WINDOW_MANAGER::MAIN_WINDOW, size);
    manager.get_main_window()->set_title(get_instance_title());
    setup_background();
    show_main_window();
    // A question of the download page has become pointless.
    get_pages().close_modal_dialogs();
    error_page = new ERROR_PAGE(get_pages(), code);
    build_next_page(get_pages());
    remove_wait_animation();
    initialize_areas(1, WM_WINDOW_MANAGER::MAIN_WINDOW);
}

void LAUNCHER::monitor_console_download() {
    if (console && current_page == PAGE_DOWNLOAD &&
        console->show_download(AUTOPATCH_SYSTEM::get_instance()->get_progress(), auto_launch)) {
        launch_requested = true;
    }
}
