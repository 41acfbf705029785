// The main thread's side of the launcher: construction, the periodic update, shutdown.
#include "launcher/launcher.h"

#include <cstdio>
#include <cstdlib>

#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "kvcore/text_field.h"
#include "launcher/download_page.h"
#include "launcher/error_page.h"
#include "modules/frameworks/application_loop.h"
#include "modules/threading/thread_pool.h"
#include "platform/application_identity.h"
#include "platform/process_tools.h"

LAUNCHER* LAUNCHER::instance = nullptr;

namespace {

// The queue of the thread pool that drives the engine.
constexpr std::int32_t ENGINE_QUEUE_TYPE = 2;
constexpr std::int32_t ENGINE_QUEUE_ID = -1;
// Below the system's minimum: the pool's threads get the system's default.
constexpr std::uint32_t THREAD_POOL_STACK_SIZE = 1024;

}  // namespace

LAUNCHER::LAUNCHER(bool generate_mode_, bool generate_3d_)
    : CLIENT_FRAMEWORK("launcher.cfg", FOLDER_APPDATA),
      client_ready(false),
      launch_requested(false),
      auto_launch(false),
      exit_requested(false),
      patch_status(AUTOPATCH_DISCONNECTED),
      drawn_patch_status(0),
      drawn_connect_attempt(-1),
      patch_go(false),
      patch_finished(false),
      current_page(PAGE_NONE),
      requested_page(PAGE_NONE),
      application_abbreviated_name{},
      folder_name{},
      cluster_id{},
      check_patch_thread(true),
      singletons_running(false),
      generate_mode(generate_mode_),
      generate_3d(generate_3d_) {
    instance = this;
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
    if (generate_mode) {
        display_message("Tessarine Launcher",
                        "Generating the catalogue needs the skin, which this build can't load.", 0);
        exit_app(nullptr);
    }
    end_if_already_running();

    DISK_MANAGER add_ons;
    if (!add_ons.goto_path(FOLDER_ADD_ONS) || !add_ons.move_down("client", true)) {
        output_warning("The folder of client versions can't be made in %s",
                       add_ons.get_path_string(nullptr));
    }
    read_from_config_file(nullptr);
    std::uint32_t value = 0;
    auto_launch = config.read(config.get_base_path(), "AUTO_LAUNCH", value, false) && value != 0;
    exit_requested = false;
    patch_finished = false;
    requested_page = PAGE_SPLASH;
    startup_manual_singletons();
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
    AUTOPATCH_SYSTEM::startup(0);
    AUTOPATCH_SYSTEM::get_instance()->internal_startup(1, host_name, port_number);
    THREAD_POOL::startup(THREAD_POOL_STACK_SIZE, nullptr, nullptr, nullptr);
    THREAD_POOL::submit_request(new CALLBACK_REQUEST(network_monitor_callback, nullptr, nullptr),
                                ENGINE_QUEUE_TYPE, ENGINE_QUEUE_ID);
    singletons_running = true;
}

void LAUNCHER::shutdown_manual_singletons() {
    output_trace("exiting threads");
    AUTOPATCH_SYSTEM::get_instance()->internal_shutdown();
    THREAD_POOL::exit_threads();
    THREAD_POOL::shutdown();
    AUTOPATCH_SYSTEM::shutdown();
    ADD_ONS_MANAGER::shutdown();
    singletons_running = false;
}

void LAUNCHER::destroy() {
    exit_requested = true;
    if (!singletons_running) {
        return;
    }
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
    if (download_page) {
        download_page->monitor();
    }
    if (exit_requested) {
        return false;
    }
    if (current_page == PAGE_SPLASH) {
        draw_splash_screen_status_box();
    }
    act_on_page(take_requested_page());

    bool finished;
    {
        MUTEX_LOCKER lock(finished_mutex);
        finished = patch_finished;
    }
    if (check_patch_thread) {
        if (finished) {
            check_patch_thread = false;
        } else {
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
    return true;
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

void LAUNCHER::display_splash_screen() {
    write_to_console((std::string(get_instance_title()) + "\n").c_str());
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
                const bool client = add_on.type == ADD_ON::ADD_ON_APPLICATION;
                out.push_back({client ? "Application" : add_on.title, add_on.version});
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
    if (status == drawn_patch_status && attempt == drawn_connect_attempt) {
        return;
    }
    splash_console.show(make_splash_rows(collect_splash_status(status, attempt)));
    drawn_patch_status = status;
    drawn_connect_attempt = attempt;
}

void LAUNCHER::display_download_page() {
    if (download_page) {
        return;
    }
    download_page = std::make_unique<DOWNLOAD_PAGE>(*this);
    AUTOPATCH_SYSTEM::get_instance()->set_download_allowed(true);
}

void LAUNCHER::display_error_page() {
    if (error_page) {
        return;
    }
    download_page.reset();
    error_page = std::make_unique<ERROR_PAGE>(AUTOPATCH_SYSTEM::get_instance()->get_error_code());
    error_page->show();
    // A console has no button to wait for.
    exit_requested = true;
}
