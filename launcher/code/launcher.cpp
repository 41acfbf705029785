// The main thread's side of the launcher: construction, the periodic update, shutdown.
#include "launcher/launcher.h"

#include <cstdio>
#include <cstdlib>

#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "kvcore/text_field.h"
#include "launcher/console_view.h"
#include "modules/3d/render_manager_3d.h"
#include "modules/gui/text_box.h"
#include "modules/threading/thread_pool.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_animation.h"
#include "platform/application_identity.h"
#include "platform/image.h"
#include "platform/process_tools.h"

LAUNCHER* LAUNCHER::instance = nullptr;

namespace {

// The queue of the thread pool that drives the engine.
constexpr std::int32_t ENGINE_QUEUE_TYPE = 2;
constexpr std::int32_t ENGINE_QUEUE_ID = -1;
// Below the system's minimum: the pool's threads get the system's default.
constexpr std::uint32_t THREAD_POOL_STACK_SIZE = 1024;
constexpr const char* DEFAULT_SKIN = "saffrane";

}  // namespace

LAUNCHER::LAUNCHER(bool generate_mode_, bool generate_3d_,
                   const LAUNCHER_TEST_OPTIONS& test_options)
    : CLIENT_FRAMEWORK("launcher.cfg", FOLDER_APPDATA),
      client_ready(false),
      launch_requested(false),
      auto_launch(false),
      exit_requested(false),
      skin_loaded(false),
      graphics_ready(false),
      patch_status(AUTOPATCH_DISCONNECTED),
      drawn_patch_status(0),
      drawn_connect_attempt(-1),
      patch_go(false),
      patch_finished(false),
      current_page(PAGE_NONE),
      requested_page(PAGE_NONE),
      application_abbreviated_name{},
      skin_name{},
      download_page(nullptr),
      error_page(nullptr),
      loading_skin(false),
      folder_name{},
      cluster_id{},
      check_patch_thread(true),
      updates(0),
      singletons_running(false),
      generate_mode(generate_mode_),
      generate_3d(generate_3d_) {
    instance = this;
    lateness.set_file(test_options.lateness_file);
    if (!test_options.picture_folder.empty() && !pictures.start(test_options.picture_folder)) {
        exit_app(("There is no folder " + test_options.picture_folder).c_str());
    }
    read_folder_names();
    LAUNCHER::initialise();
}

void LAUNCHER::read_folder_names() {
    if (!config.read(config.get_base_path(), "APPLICATION_NAME", folder_name)) {
        KVCORE::copy_text_field(folder_name, "Tessarine");
    }
    config.read(config.get_base_path(), "CLUSTER_ID", cluster_id);
    set_application_identity({get_application_name, get_unique_data_folder});
}

LAUNCHER::~LAUNCHER() {
    LAUNCHER::destroy();
    instance = nullptr;
}

void LAUNCHER::initialise() {
    DISK_MANAGER::use_local_add_ons_path = generate_mode;
    if (!generate_mode) {
        end_if_already_running();
    }
    TEXT_BOX::create_tag_object_callback = create_text_box_tag_object_callback;
    make_client_folder();
    KVCORE::copy_text_field(skin_name, DEFAULT_SKIN);
    if (generate_mode) {
        generate_skin();
    } else {
        read_from_config_file(nullptr);
        std::uint32_t value = 0;
        auto_launch =
            config.read(config.get_base_path(), "AUTO_LAUNCH", value, false) && value != 0;
        exit_requested = skin_loaded = graphics_ready = false;
        status_backdrop = std::make_unique<IMAGE>(STATUS_BOX_WIDTH, STATUS_BOX_HEIGHT);
        requested_page = PAGE_SPLASH;
        patch_finished = false;
        open_view();
    }
    startup_manual_singletons();
}

// Where the client's versions are installed. A user may have them read-only; a catalogue that can't
// be written is no use.
void LAUNCHER::make_client_folder() {
    DISK_MANAGER add_ons;
    const bool reached = add_ons.goto_path(FOLDER_ADD_ONS);
    if (!reached && generate_mode) {
        exit_app(
            (std::string("Failed to get to a folder add_ons beside ") + add_ons.get_path_string())
                .c_str());
    }
    if (!reached || !add_ons.move_down("client", true)) {
        output_warning("The folder of client versions can't be made in %s",
                       add_ons.get_path_string());
    }
}

void LAUNCHER::end_if_already_running() {
    DISK_MANAGER user_folder;
    if (!only_allow_one_instance() || !user_folder.goto_path(FOLDER_ADD_ONS) ||
        !user_folder.move_up()) {
        return;
    }
    if (instance_lock.acquire(user_folder, "launcher.lock") || instance_lock.get_holder() == 0) {
        return;
    }
    write_to_console((std::string(get_instance_title()) + " is already running.\n").c_str());
    std::fflush(stdout);
    // Nothing has been started yet, so there is nothing to stop.
    std::_Exit(0);
}

void LAUNCHER::startup_manual_singletons() {
    if (generate_mode) {
        generate_catalogue();
        return;
    }
    AUTOPATCH_SYSTEM::startup(0);
    AUTOPATCH_SYSTEM::get_instance()->internal_startup(1, host_name, port_number);
    THREAD_POOL::startup(THREAD_POOL_STACK_SIZE, nullptr, nullptr, nullptr);
    new ORLN_3D::RENDER_MANAGER_3D;  // deleted by shutdown_manual_singletons
    THREAD_POOL::submit_request(new CALLBACK_REQUEST(network_monitor_callback, nullptr, nullptr),
                                ENGINE_QUEUE_TYPE, ENGINE_QUEUE_ID);
    singletons_running = true;
}

void LAUNCHER::shutdown_manual_singletons() {
    if (generate_mode) {
        ADD_ONS_MANAGER::shutdown();
        return;
    }
    output_trace("exiting threads");
    AUTOPATCH_SYSTEM::get_instance()->internal_shutdown();
    THREAD_POOL::exit_threads();
    THREAD_POOL::shutdown();
    WM_WINDOW_MANAGER::get_instance()->shutdown();
    output_trace("destroying render manager");
    delete ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    status_backdrop.reset();
    wait_animation_image.reset();
    wait_animation.reset();
    AUTOPATCH_SYSTEM::shutdown();
    ADD_ONS_MANAGER::shutdown();
    singletons_running = false;
}

void LAUNCHER::destroy() {
    exit_requested = true;
    lateness.write();
    if (generate_mode) {
        shutdown_manual_singletons();
        return;
    }
    if (!singletons_running) {
        return;
    }
    pictures.leave_page();
    config.write(config.get_base_path(), "APPLICATION_ABBREVIATED_NAME",
                 application_abbreviated_name);
    config.write(config.get_base_path(), "AUTO_LAUNCH",
                 static_cast<std::uint32_t>(auto_launch ? 1 : 0), false);
    write_to_config_file(nullptr);
    shutdown_manual_singletons();
}

AUTOPATCH_SYSTEM_STATUS LAUNCHER::get_patch_status() {
    MUTEX_LOCKER lock(status_mutex);
    return patch_status;
}

void LAUNCHER::set_patch_status(AUTOPATCH_SYSTEM_STATUS status) {
    MUTEX_LOCKER lock(status_mutex);
    patch_status = status;
}

bool LAUNCHER::monitor() {
    if (generate_mode) {
        return false;  // the constructor has done all
    }
    lateness.begin_update(current_page);
    if (graphics_ready && WM_WINDOW_MANAGER::get_instance()->monitor(1) == WM_MESG_QUIT) {
        exit_requested = true;
    }
    monitor_console_download();
    if (exit_requested) {
        return false;
    }
    if (current_page == PAGE_SPLASH) {
        draw_splash_screen_status_box();
    }
    act_on_page(take_requested_page());

    const bool finished = has_patch_finished();
    if (check_patch_thread) {
        if (finished) {
            check_patch_thread = false;
        } else {
            ++updates;
            THREAD_POOL::wake(ENGINE_QUEUE_TYPE, ENGINE_QUEUE_ID);
        }
    }
    if (finished) {
        finish_patch_run();
    }
    {
        MUTEX_LOCKER lock(go_mutex);
        // The engine starts only after the status box has been drawn once.
        patch_go = patch_go || drawn_patch_status > 0;
    }
    pictures.monitor(current_page);
    return true;
}

bool LAUNCHER::has_patch_finished() {
    MUTEX_LOCKER lock(finished_mutex);
    return patch_finished;
}

void LAUNCHER::request_page(LAUNCHER_PAGE page) {
    MUTEX_LOCKER lock(page_mutex);
    requested_page = page;
}

LAUNCHER_PAGE LAUNCHER::take_requested_page() {
    MUTEX_LOCKER lock(page_mutex);
    // A request for the page on show stays in place and does nothing.
    if (requested_page == PAGE_NONE || requested_page == current_page) {
        return PAGE_NONE;
    }
    pictures.leave_page();
    current_page = requested_page;
    requested_page = PAGE_NONE;
    return current_page;
}

void LAUNCHER::act_on_page(LAUNCHER_PAGE page) {
    switch (page) {
        case PAGE_ERROR:
            display_error_page();
            break;
        case PAGE_DOWNLOAD:
            display_download_page();
            break;
        case PAGE_SPLASH:
            display_splash_screen();
            break;
        case PAGE_NONE:
            break;
    }
}

void LAUNCHER::finish_patch_run() {
    orln_sleep(20);
    const AUTOPATCH_ERROR_CODE error = AUTOPATCH_SYSTEM::get_instance()->get_error_code();
    if (!client_ready || (!launch_requested && error == AUTOPATCH_OK)) {
        return;
    }
    // The client takes the place of this process.
    lateness.write();
    pictures.leave_page();
    if (launch_client()) {
        exit_requested = true;
        return;
    }
    // Nothing that would make another try succeed can happen any more.
    launch_requested = false;
    client_ready = false;
    if (current_page != PAGE_ERROR) {
        request_page(PAGE_ERROR);
    }
}
