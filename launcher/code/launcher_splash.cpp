// The splash: a small window with a picture, a running log of the patch engine's steps and an
// animation. It is drawn straight into the window's back buffer, before any skin is loaded.
#include <string>

#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "launcher/console_view.h"
#include "launcher/launcher.h"
#include "modules/3d/render_manager_base.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_window.h"
#include "platform/config_file.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"

namespace {

constexpr signed char SPLASH_WINDOW = WM_WINDOW_MANAGER::SPLASH_WINDOW;

constexpr std::int32_t BOX_LEFT = LAUNCHER::STATUS_BOX_X, BOX_TOP = LAUNCHER::STATUS_BOX_Y;
constexpr std::int32_t BOX_RIGHT = BOX_LEFT + LAUNCHER::STATUS_BOX_WIDTH;  // right texts end here
constexpr std::int32_t BOX_BOTTOM = BOX_TOP + LAUNCHER::STATUS_BOX_HEIGHT - 1;
constexpr std::int32_t ROW_HEIGHT = 10;
constexpr std::int32_t COLUMN_GAP = 4;
constexpr std::int8_t FONT = 0;
constexpr std::int32_t FONT_SIZE = 10;
constexpr COLOUR SUCCESS_COLOUR = 0xFF00C800u;

constexpr std::int16_t ANIMATION_FRAMES = 12, ANIMATION_FRAME_MS = 100;
constexpr std::int16_t ANIMATION_CENTRE = 111, ANIMATION_TOP = 150;

void draw_text(IMAGE& buffer, std::int32_t x, std::int32_t y, COLOUR colour,
               const std::string& text) {
    buffer.process_and_render_string(x, y, colour, COLOUR_INVISIBLE, COLOUR_INVISIBLE, FONT,
                                     FONT_SIZE, FONT_SIZE, text.c_str(), 0);
}

// The right text stands whole; the left one ends in front of it.
void draw_row(IMAGE& buffer, std::int32_t y, const SPLASH_ROW& row) {
    const std::int32_t right_x = BOX_RIGHT - FONT_MANAGER::get_instance().get_string_width(
                                                 FONT, FONT_SIZE, FONT_SIZE, row.right.c_str());
    const std::int32_t left_end = row.right.empty() ? BOX_RIGHT : right_x - COLUMN_GAP;
    buffer.set_active_area(BOX_LEFT, BOX_TOP, left_end - 1, BOX_BOTTOM);
    draw_text(buffer, BOX_LEFT, y, COLOUR_BLACK, row.left);
    buffer.set_active_area(BOX_LEFT, BOX_TOP, BOX_RIGHT - 1, BOX_BOTTOM);
    draw_text(buffer, right_x, y, row.right == SPLASH_SUCCESS ? SUCCESS_COLOUR : COLOUR_BLACK,
              row.right);
}

// Keeps the back buffer's active area and its lock for the length of a block.
class SPLASH_DRAWING {
public:
    explicit SPLASH_DRAWING(IMAGE& buffer_)
        : buffer(buffer_),
          left(buffer.active_left),
          top(buffer.active_top),
          right(buffer.active_right),
          bottom(buffer.active_bottom) {
        ORLN_3D::RENDER_MANAGER_BASE::get_instance()->lock_backbuffer(SPLASH_WINDOW,
                                                                      ORLN_3D::THREAD_ID_MAIN, 1);
    }
    ~SPLASH_DRAWING() {
        buffer.set_active_area(left, top, right, bottom);
        ORLN_3D::RENDER_MANAGER_BASE::get_instance()->unlock_backbuffer(SPLASH_WINDOW);
    }
    SPLASH_DRAWING(const SPLASH_DRAWING&) = delete;
    SPLASH_DRAWING& operator=(const SPLASH_DRAWING&) = delete;

private:
    IMAGE& buffer;
    const std::int16_t left, top, right, bottom;
};

}  // namespace

void LAUNCHER::display_splash_screen() {
    if (console) {
        console->show_title(get_instance_title());
        return;
    }
    initialise_graphics();
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(SPLASH_WIDTH, SPLASH_HEIGHT);
    manager.add_window(SPLASH_WINDOW, 1, size, size, size);
    manager.get_window(SPLASH_WINDOW)->set_title(get_instance_title());
    unsigned char failed = 0, changed = 0;
    manager.draw_window(WM_WINDOW_MANAGER::MAIN_WINDOW, 1, failed, changed);
    manager.draw_window(SPLASH_WINDOW, 0, failed, changed);
    if (failed) {
        output_warning("The splash window can't be opened");
        manager.close_window(SPLASH_WINDOW);
        return;
    }

    IMAGE picture;
    load_splash_pictures(picture);
    manager.get_page_manager(SPLASH_WINDOW)->set_background(picture, 0, 0);
    status_backdrop->copy(&picture, BOX_LEFT, BOX_TOP, 0, 0, STATUS_BOX_WIDTH, STATUS_BOX_HEIGHT,
                          IMAGE_COPY_SOLID);
    const std::int32_t frame_width = wait_animation_image->width / ANIMATION_FRAMES;
    const auto x = static_cast<std::int16_t>(ANIMATION_CENTRE - frame_width / 2);
    wait_animation = std::make_unique<WM_ANIMATION>(
        x, ANIMATION_TOP, wait_animation_image.get(), ANIMATION_FRAMES, ANIMATION_FRAME_MS, 1,
        WM_CALLBACK{}, nullptr, nullptr, ANIMATION_CALLBACK_ON_BOTH, SPLASH_WINDOW);

    const OPEN_GRAPHICS_SIZES desktop = platform_get_desktop_size();
    manager.get_window(SPLASH_WINDOW)
        ->move(static_cast<std::int16_t>((graphics_width(desktop) - SPLASH_WIDTH) / 2),
               static_cast<std::int16_t>((graphics_height(desktop) - SPLASH_HEIGHT) / 2));
    load_splash_font();
}

void LAUNCHER::load_splash_pictures(IMAGE& picture) {
    const DISK_MANAGER disk(FOLDER_APPDATA);
    if (!picture.load(disk, "splash_screen.jpg")) {
        exit_app((std::string("Couldn't load splash screen image from ") + disk.get_path_string())
                     .c_str());
    }
    wait_animation_image = std::make_unique<IMAGE>();
    if (!wait_animation_image->load(disk, "please_wait_animation.png")) {
        wait_animation_image.reset();
        exit_app(
            (std::string("Couldn't load animation image from ") + disk.get_path_string()).c_str());
    }
}

// The skin's own font, before the skin is loaded.
void LAUNCHER::load_splash_font() {
    DISK_MANAGER disk(FOLDER_APPDATA);
    CONFIG_FILE skin_config("skin.cfg", true, FOLDER_BASE, false);
    char name[CONFIG_FILE::value_size];
    if (!disk.move_down("skins") || !disk.move_down(skin_name) ||
        !skin_config.read(disk, "font_name", name)) {
        output_warning("%s: there is no skin with a font here", disk.get_path_string());
        return;
    }
    const std::string file = std::string(name) + ".otf";
    if (!disk.move_down("fonts") ||
        FONT_MANAGER::get_instance().load_font(file.c_str(), FONT, &disk) == -1) {
        output_warning("The font %s can't be loaded from %s", file.c_str(), disk.get_path_string());
    }
}

SPLASH_STATUS LAUNCHER::collect_splash_status(AUTOPATCH_SYSTEM_STATUS status,
                                              std::int32_t attempt) {
    SPLASH_STATUS snapshot;
    snapshot.status = status;
    snapshot.connect_attempt = attempt;
    const auto collect = [](const PTRARRAY& list, std::vector<SPLASH_ADD_ON>& out) {
        for (std::int32_t i = 0; i < list.get_count(); ++i) {
            const ADD_ON& add_on = *static_cast<const ADD_ON*>(list[i]);
            if (add_on.parent == nullptr) {
                out.push_back({add_on.get_shown_title(), add_on.version});
            }
        }
    };
    MUTEX_LOCKER lock(patch_mutex);
    if (const ADD_ONS_MANAGER* catalogue = ADD_ONS_MANAGER::get_instance()) {
        collect(catalogue->installed, snapshot.installed);
        collect(catalogue->available, snapshot.to_install);
    }
    return snapshot;
}

void LAUNCHER::draw_splash_screen_status_box() {
    const AUTOPATCH_SYSTEM_STATUS status = get_patch_status();
    std::int32_t attempt = drawn_connect_attempt;
    if (patch_mutex.try_lock()) {
        attempt = AUTOPATCH_SYSTEM::get_instance()->get_connect_attempts() + 1;
        patch_mutex.unlock();
    }
    // While the skin is being loaded there is no font to write with.
    if (!loading_skin && (status != drawn_patch_status || attempt != drawn_connect_attempt)) {
        draw_splash_rows(make_splash_rows(collect_splash_status(status, attempt)));
        drawn_patch_status = status;
        drawn_connect_attempt = attempt;
    }
    animate_splash_screen();
}

void LAUNCHER::draw_splash_rows(const std::vector<SPLASH_ROW>& rows) {
    if (console) {
        console->show_splash(rows);
        return;
    }
    IMAGE* buffer = WM_WINDOW_MANAGER::get_instance()->get_back_buffer(SPLASH_WINDOW);
    if (buffer == nullptr) {
        return;  // the user has closed it
    }
    const SPLASH_DRAWING drawing(*buffer);
    buffer->set_active_area(BOX_LEFT, BOX_TOP, BOX_RIGHT - 1, BOX_BOTTOM);
    status_backdrop->put(BOX_LEFT, BOX_TOP, buffer, IMAGE_COPY_SOLID);
    std::int32_t y = BOX_TOP;
    for (const SPLASH_ROW& row : rows) {
        draw_row(*buffer, y, row);
        y += ROW_HEIGHT;
    }
}

void LAUNCHER::animate_splash_screen() {
    IMAGE* buffer = WM_WINDOW_MANAGER::get_instance()->get_back_buffer(SPLASH_WINDOW);
    if (wait_animation && buffer != nullptr && wait_animation->update(0) == WM_MESG_HANDLED) {
        const SPLASH_DRAWING drawing(*buffer);
        wait_animation->force_draw_object();
    }
}

void LAUNCHER::remove_wait_animation() {
    wait_animation.reset();
}
