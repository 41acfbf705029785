// What the launcher's windows look like behind their pages, and how the user closes them.
#include "launcher/launcher.h"
#include "modules/frameworks/application_loop.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"

void LAUNCHER::initialize_areas(unsigned char load, signed char window) {
    static std::int32_t BACKGROUND_INDEX = -1;
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const IMAGE* picture = GUI_SKIN::get_image("BACKGROUND", nullptr, &BACKGROUND_INDEX);
    if (manager == nullptr || picture == nullptr || picture->width < 1) {
        return;
    }
    for (signed char i = 0; i < WM_WINDOW_MANAGER::WINDOW_COUNT; ++i) {
        WM_PAGE_MANAGER* pages = manager->get_page_manager(i);
        if (pages == nullptr || (window != -1 && window != i)) {
            continue;
        }
        const WM_WINDOW& of_pages = *manager->get_window(i);
        if (load) {
            pages->background.copy_pixels_from(*picture);
        }
        pages->background.resize(of_pages.width, of_pages.height, 1);
        pages->get_area(0)->resize(of_pages.width, of_pages.height, 0);
    }
}

void LAUNCHER::handle_quit_request() {
    window_aborted = should_close();
}
