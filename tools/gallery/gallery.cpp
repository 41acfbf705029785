#include "gallery.h"

#include "gallery_camera.h"
#include "gallery_focus.h"
#include "gallery_page.h"
#include "gallery_page_text.h"
#include "gallery_pages.h"
#include "modules/3d/render_manager_3d.h"
#include "modules/frameworks/application_loop.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/process_tools.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

WM_PAGE_MANAGER& get_pages() {
    return *WM_WINDOW_MANAGER::get_instance()->get_page_manager(WINDOW);
}

}  // namespace

GALLERY::GALLERY(const GALLERY_OPTIONS& chosen)
    : WINDOWED_APPLICATION_FRAMEWORK(32, make_graphics_sizes(WIDTH, HEIGHT)), options(chosen) {
    GALLERY::initialise();
}

GALLERY::~GALLERY() {
    GALLERY::destroy();
}

void GALLERY::fail(const std::string& text) {
    skins.remove();  // no destructor runs
    exit_app(("gallery: " + text).c_str());
}

void GALLERY::initialise() {
    set_minimum_window_size(make_graphics_sizes(WIDTH, HEIGHT));
    TEXT_BOX::create_tag_object_callback = GALLERY_PAGE_TEXT::create_link;
    GALLERY::startup_manual_singletons();
    if (!skins.copy_from(options.data)) {
        fail("the skins in " + options.data + " can't be copied");
    }
    if (!skins.load(*global_gui_skin, options.skin)) {
        fail("the skin " + options.skin + " can't be loaded");
    }
    open_window();
    choose_page(options.page.empty() ? 0 : find_gallery_page(options.page));
}

void GALLERY::startup_manual_singletons() {
    new ORLN_3D::RENDER_MANAGER_3D;  // deleted by shutdown_manual_singletons
    is_running = true;
}

void GALLERY::shutdown_manual_singletons() {
    WM_WINDOW_MANAGER::get_instance()->shutdown();
    delete ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    is_running = false;
}

void GALLERY::destroy() {
    if (is_running) {
        GALLERY::shutdown_manual_singletons();
    }
}

void GALLERY::open_window() {
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(WIDTH, HEIGHT);
    manager.add_window(WINDOW, 1, size, size, NO_GRAPHICS_SIZES);
    manager.get_main_window()->set_title(get_instance_title());
    unsigned char failed = 0, changed = 0;
    manager.draw_window(WINDOW, 0, failed, changed);
    if (failed) {
        fail("the window can't be opened");
    }
    manager.set_window_as_focal_window(WINDOW);
    initialize_areas(1, WINDOW);
}

void GALLERY::initialize_areas(unsigned char /*load*/, signed char /*window*/) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const IMAGE* picture = GUI_SKIN::get_image("BACKGROUND");
    if (manager == nullptr || manager->get_main_window() == nullptr || picture == nullptr) {
        return;
    }
    const WM_WINDOW& window = *manager->get_main_window();
    get_pages().background.resize_from(*picture, window.width, window.height, 1);
    get_pages().get_area(0)->resize(window.width, window.height, 0);
}

void GALLERY::handle_quit_request() {
    window_aborted = true;
}

void GALLERY::choose_page(int index) {
    const std::vector<GALLERY_PAGE_ENTRY>& pages = get_gallery_pages();
    const int count = static_cast<int>(pages.size());
    page_index = (index % count + count) % count;
    const GALLERY_PAGE_ENTRY& entry = pages[static_cast<std::size_t>(page_index)];
    page = entry.make(*this);
    WM_WINDOW_MANAGER::get_instance()->get_main_window()->set_title(
        (std::string(get_instance_title()) + " - " + entry.title).c_str());
}

void GALLERY::show_next_page() {
    get_pages().get_current_area()->change_next_monitor = true;
}

void GALLERY::tell(const std::string& text) const {
    if (!is_hidden(options)) {
        write_to_console((text + "\n").c_str());
    }
}

void GALLERY::choose_next_skin() {
    next_skin = skins.get_next(skins.get_current());
}

// Controls hold on to their skin, so the page goes first.
void GALLERY::change_skin() {
    get_pages().shutdown();
    if (!skins.load(*global_gui_skin, next_skin)) {
        fail("the skin " + next_skin + " can't be loaded");
    }
    next_skin.clear();
    initialize_areas(1, WINDOW);
    choose_page(page_index);
    get_pages().get_area(0)->request_draw(0, 0);
}

bool GALLERY::monitor() {
    if (is_hidden(options)) {
        options.check_focus ? check_focus() : take_pictures();
        return false;
    }
    if (WM_WINDOW_MANAGER::get_instance()->monitor(1) == WM_MESG_QUIT) {
        return false;
    }
    if (!next_skin.empty()) {
        change_skin();
    }
    return true;
}

template <class WORK>
void GALLERY::for_each_page(GALLERY_CAMERA& camera, WORK work) {
    int index = 0;
    for (const GALLERY_PAGE_ENTRY& entry : get_gallery_pages()) {
        if (options.page.empty() || options.page == entry.name) {
            choose_page(index);
            show_next_page();
            camera.start_page(entry.name);
            work();
        }
        ++index;
    }
}

void GALLERY::take_pictures() {
    GALLERY_CAMERA camera;
    if (!camera.set_folder(options.pictures)) {
        fail("the folder " + options.pictures + " can't be used");
    }
    for_each_page(camera, [&] {
        camera.take("");
        page->take_pictures(camera);
    });
    if (!camera.is_ready()) {
        fail("a picture can't be written");
    }
}

void GALLERY::check_focus() {
    GALLERY_CAMERA camera;
    int invisible = 0;
    for_each_page(camera, [&] { invisible += check_gallery_focus(camera); });
    if (invisible > 0) {
        fail("the focus can't be seen everywhere");
    }
}
