// LAUNCHER: the application object. It says what this program does: bring the client up to date,
// show how that goes, start the client and end.
//
// Two threads share a launcher: the main thread, whose periodic update calls monitor(), and one
// pool thread that spends its life in network_monitor_callback and drives the patch engine.
// patch_mutex covers the engine and the catalogue; it is held for as long as a whole streamed file,
// so the main thread takes it with try_lock in its ordinary update.
#ifndef LAUNCHER_LAUNCHER_H
#define LAUNCHER_LAUNCHER_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "autopatch/autopatch_types.h"
#include "launcher/splash_status.h"
#include "modules/frameworks/client_framework.h"
#include "modules/threading/callback_request.h"
#include "modules/threading/mutex.h"
#include "platform/instance_lock.h"

class DOWNLOAD_PAGE;
class ERROR_PAGE;

enum LAUNCHER_PAGE : unsigned char {
    PAGE_NONE = 0,
    PAGE_SPLASH = 1,
    PAGE_DOWNLOAD = 2,
    PAGE_ERROR = 4,
};

class LAUNCHER : public CLIENT_FRAMEWORK {
public:
    // Does everything up to the first update: reads the settings, starts the engine, the thread
    // pool and the request that runs the engine.
    LAUNCHER(bool generate_mode, bool generate_3d);
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

    // "APPLICATION_NAME" and "CLUSTER_ID" as they were at the start: any thread may ask.
    const char* get_folder_name() const { return folder_name; }
    const char* get_cluster_id() const { return cluster_id; }

    bool get_auto_launch() const { return auto_launch; }
    void request_launch() { launch_requested = true; }

    static LAUNCHER* instance;

private:
    struct ENGINE_ROUND;

    void display_splash_screen();
    void draw_splash_screen_status_box();
    void display_download_page();
    void display_error_page();
    void act_on_page(LAUNCHER_PAGE page);
    void finish_patch_run();
    void request_page(LAUNCHER_PAGE page);
    LAUNCHER_PAGE take_requested_page();

    bool may_drive_engine(bool& started);
    bool drive_engine(ENGINE_ROUND& round);
    void conclude_patch_run(const ENGINE_ROUND& round);

    SPLASH_STATUS collect_splash_status(AUTOPATCH_SYSTEM_STATUS status, std::int32_t attempt);
    bool find_client_version(DISK_MANAGER& client_folder, char (&version)[64]);
    void read_folder_names();
    void end_if_already_running();

    MUTEX patch_mutex;
    std::atomic<bool> client_ready;
    std::atomic<bool> launch_requested;
    bool auto_launch;
    bool exit_requested;
    AUTOPATCH_SYSTEM_STATUS patch_status;
    std::int32_t drawn_patch_status;
    std::int32_t drawn_connect_attempt;
    MUTEX status_mutex;
    bool patch_go;
    MUTEX go_mutex;
    bool patch_finished;
    MUTEX finished_mutex;
    LAUNCHER_PAGE current_page;
    LAUNCHER_PAGE requested_page;
    MUTEX page_mutex;
    char application_abbreviated_name[64];
    char folder_name[256];
    char cluster_id[256];
    std::unique_ptr<DOWNLOAD_PAGE> download_page;
    std::unique_ptr<ERROR_PAGE> error_page;
    bool check_patch_thread;
    bool singletons_running;
    SPLASH_CONSOLE splash_console;
    INSTANCE_LOCK instance_lock;
    bool generate_mode;
    bool generate_3d;
};

#endif  // LAUNCHER_LAUNCHER_H
