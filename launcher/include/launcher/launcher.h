// LAUNCHER: the application object. It says what this program does: bring the client up to date,
// show how that goes, start the client and end.
//
// Two threads share a launcher: the main thread, whose periodic update calls monitor(), and one
// pool thread that spends its life in network_monitor_callback and drives the patch engine.
// patch_mutex covers the engine and the catalogue; it is held for as long as a whole streamed file,
// so the main thread takes it with try_lock in its ordinary update.
//
// With a display the launcher shows a splash window (window 4) and then a page in the main window
// (window 0); without one it writes lines to the console instead (console_view.h). In generate mode
// it does neither: the constructor writes the compiled skin and the catalogue of a build tree, and
// the first monitor() ends the program.
//
// The sources: launcher.cpp the main thread's run, launcher_splash.cpp, launcher_pages.cpp,
// launcher_windows.cpp what is shown, launcher_generate.cpp the generate mode, network_monitor.cpp
// the pool thread, launch_client.cpp the start of the client, text_box_links.cpp links in texts.
#ifndef LAUNCHER_LAUNCHER_H
#define LAUNCHER_LAUNCHER_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "autopatch/autopatch_types.h"
#include "launcher/launcher_options.h"
#include "launcher/launcher_page.h"
#include "launcher/splash_status.h"
#include "launcher/update_lateness.h"
#include "launcher/window_pictures.h"
#include "modules/frameworks/client_framework.h"
#include "modules/threading/callback_request.h"
#include "modules/threading/mutex.h"
#include "modules/winman/wm_mesg.h"
#include "platform/instance_lock.h"

class COLOUR;
class CONSOLE_VIEW;
class DOWNLOAD_PAGE;
class ERROR_PAGE;
class IMAGE;
class TEXT_BOX;
class TEXT_BOX_TAG;
class WM_ANIMATION;

class LAUNCHER : public CLIENT_FRAMEWORK {
public:
    // The sizes of the windows: main window, main window with the error page, splash window.
    static constexpr std::uint16_t MAIN_WIDTH = 800, MAIN_HEIGHT = 500;
    static constexpr std::uint16_t ERROR_WIDTH = 500, ERROR_HEIGHT = 250;
    static constexpr std::uint16_t SPLASH_WIDTH = 446, SPLASH_HEIGHT = 208;
    // The status box in the splash window.
    static constexpr std::int32_t STATUS_BOX_X = 230, STATUS_BOX_Y = 25;
    static constexpr std::int32_t STATUS_BOX_WIDTH = 195, STATUS_BOX_HEIGHT = 158;

    // Does everything up to the first update: reads the settings, starts the engine, the thread
    // pool and the request that runs the engine; or, in generate mode, all of the work.
    LAUNCHER(bool generate_mode, bool generate_3d, const LAUNCHER_TEST_OPTIONS& test_options = {});
    ~LAUNCHER() override;

    // Gives the page background of the windows the skin's image "BACKGROUND", at the window's size,
    // and their first area that size. Nothing without such an image.
    void initialize_areas(unsigned char load, signed char window) override;
    void handle_quit_request() override;
    // One update on the main thread. False ends the program.
    bool monitor() override;
    std::int32_t get_build_number() const override { return -1; }
    void initialise() override;
    void destroy() override;
    void startup_manual_singletons() override;
    void shutdown_manual_singletons() override;

    AUTOPATCH_SYSTEM_STATUS get_patch_status();
    void set_patch_status(AUTOPATCH_SYSTEM_STATUS status);

    // Starts the program that "EXE_NAME" of "autopatch.cfg" names in the newest version folder.
    // Doesn't come back when it started; yields false when no program could be started.
    bool launch_client();

    // The whole life of the pool thread of queue (2, -1).
    static void network_monitor_callback(CALLBACK_REQUEST& request, void* thread_data);

    // Gives window 0 the skin's image "BACKGROUND" as its page background, at the window's size or,
    // while that isn't known, its minimum.
    static void setup_background();
    // Ends the process: the installation lacks files that every skin needs.
    [[noreturn]] static void display_corrupt_install_error();

    // Makes the button for a link in a text box; for TEXT_BOX::create_tag_object_callback.
    static WM_SCREEN_OBJECT* create_text_box_tag_object_callback(
        TEXT_BOX& box, const char* style_prefix, TEXT_BOX_TAG& tag, const char* word,
        COLOUR& colours, signed char style, std::int16_t font_x_delta, std::int16_t font_y_delta,
        unsigned char enabled, signed char window);
    // A link was pressed: with a `value` of 1 opens the address of the TEXT_BOX_TAG `tag` in the
    // user's browser.
    static WM_MESG handle_tag_callback(WM_SCREEN_OBJECT* object, void* value, void* tag);

    // "APPLICATION_NAME" and "CLUSTER_ID" as they were at the start: any thread may ask.
    const char* get_folder_name() const { return folder_name; }
    const char* get_cluster_id() const { return cluster_id; }

    bool get_auto_launch() const { return auto_launch; }
    void set_auto_launch(bool on) { auto_launch = on; }
    void request_launch() { launch_requested = true; }

    static LAUNCHER* instance;

private:
    struct ENGINE_ROUND;

    // launcher_generate.cpp
    void generate_skin();
    void generate_catalogue();

    // launcher.cpp
    void read_folder_names();
    void make_client_folder();
    void end_if_already_running();
    void act_on_page(LAUNCHER_PAGE page);
    bool has_patch_finished();
    void finish_patch_run();
    void request_page(LAUNCHER_PAGE page);
    LAUNCHER_PAGE take_requested_page();

    // launcher_windows.cpp
    void open_view();
    void initialise_graphics();
    void show_main_window();
    void load_skin();
    static void loading_skin_callback(void* launcher);

    // launcher_splash.cpp
    void display_splash_screen();
    void load_splash_pictures(IMAGE& picture);
    void load_splash_font();
    void draw_splash_screen_status_box();
    SPLASH_STATUS collect_splash_status(AUTOPATCH_SYSTEM_STATUS status, std::int32_t attempt);
    void draw_splash_rows(const std::vector<SPLASH_ROW>& rows);
    void animate_splash_screen();
    void remove_wait_animation();

    // launcher_pages.cpp
    void display_download_page();
    void display_error_page();
    void monitor_console_download();

    // network_monitor.cpp, the pool thread
    void wait_for_whole_update(CALLBACK_REQUEST& request);
    bool may_drive_engine(bool& started);
    bool drive_engine(ENGINE_ROUND& round);
    void conclude_patch_run(const ENGINE_ROUND& round);

    // launch_client.cpp
    bool find_client_version(DISK_MANAGER& client_folder, char (&version)[64]);

    MUTEX patch_mutex;
    std::atomic<bool> client_ready;
    std::atomic<bool> launch_requested;
    bool auto_launch;  // "AUTO_LAUNCH"; the check box of the download page
    bool exit_requested;
    bool skin_loaded;
    bool graphics_ready;  // the main window exists
    AUTOPATCH_SYSTEM_STATUS patch_status;
    std::int32_t drawn_patch_status;     // as the status box shows it; 0: not drawn yet
    std::int32_t drawn_connect_attempt;  // the same
    MUTEX status_mutex;                  // guards patch_status
    bool patch_go;                       // the pool thread may drive the engine
    MUTEX go_mutex;
    bool patch_finished;  // the pool thread's work is over
    MUTEX finished_mutex;
    LAUNCHER_PAGE current_page;
    LAUNCHER_PAGE requested_page;
    MUTEX page_mutex;  // guards both pages
    char application_abbreviated_name[64];
    char skin_name[256];
    // Owned by the page manager of window 0, which may delete a page that is not on show any more:
    // here they only tell that the page has been made.
    DOWNLOAD_PAGE* download_page;
    ERROR_PAGE* error_page;
    std::unique_ptr<IMAGE> status_backdrop;       // the splash picture below the status box
    std::unique_ptr<IMAGE> wait_animation_image;  // twelve frames side by side
    std::unique_ptr<WM_ANIMATION> wait_animation;
    bool loading_skin;  // load_skin is at work
    char folder_name[256];
    char cluster_id[256];
    bool check_patch_thread;
    std::atomic<std::uint32_t> updates;  // that have woken the pool thread
    bool singletons_running;
    std::unique_ptr<CONSOLE_VIEW> console;  // in place of the windows, or null
    INSTANCE_LOCK instance_lock;
    bool generate_mode;
    bool generate_3d;
    UPDATE_LATENESS lateness;
    WINDOW_PICTURES pictures;
};

#endif  // LAUNCHER_LAUNCHER_H
