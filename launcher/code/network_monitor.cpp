// The pool thread's side of the launcher: it drives the patch engine to its end and says what is to
// happen then.
#include "autopatch/autopatch_system.h"
#include "kvcore/text_field.h"
#include "launcher/launcher.h"
#include "platform/disk_manager.h"

// What the last round of the engine left behind.
struct LAUNCHER::ENGINE_ROUND {
    AUTOPATCH_ERROR_CODE error = AUTOPATCH_OK;
    bool validated = false;
    bool more_to_fetch = false;
    AUTOPATCH_SYSTEM_STATUS status = AUTOPATCH_DISCONNECTED;
    LAUNCHER_PAGE page = PAGE_NONE;  // on show when the round began
    char installed_version[64] = {};
};

void LAUNCHER::network_monitor_callback(CALLBACK_REQUEST& request, void*) {
    LAUNCHER& launcher = *instance;
    ENGINE_ROUND round;
    bool started = false;
    while (!request.is_exiting_thread()) {
        {
            MUTEX_LOCKER lock(launcher.page_mutex);
            round.page = launcher.current_page;
        }
        if (launcher.may_drive_engine(started) && launcher.drive_engine(round)) {
            break;
        }
        if (request.is_exiting_thread()) {
            break;
        }
        if (round.status == AUTOPATCH_DISCONNECTED) {
            // The next round is a connect, which may hold the engine for a minute. What came of the
            // last one is shown before.
            launcher.wait_for_whole_update(request);
        } else {
            request.sleep();
        }
    }
    launcher.conclude_patch_run(round);
}

// Until an update of the main thread that begins after this call has ended: the second from now.
void LAUNCHER::wait_for_whole_update(CALLBACK_REQUEST& request) {
    const std::uint32_t before = updates;
    while (updates - before < 2 && !request.is_exiting_thread()) {
        request.sleep();
    }
}

bool LAUNCHER::may_drive_engine(bool& started) {
    if (started) {
        return true;
    }
    {
        MUTEX_LOCKER lock(go_mutex);
        if (!patch_go) {
            return false;
        }
    }
    if (!patch_mutex.try_lock()) {
        return false;
    }
    patch_mutex.unlock();
    started = true;
    return true;
}

// One round. True when the engine's work is over.
bool LAUNCHER::drive_engine(ENGINE_ROUND& round) {
    if (!patch_mutex.try_lock()) {
        return false;
    }
    AUTOPATCH_SYSTEM& engine = *AUTOPATCH_SYSTEM::get_instance();
    engine.monitor();
    round.error = engine.get_error_code();
    const AUTOPATCH_PROGRESS progress = engine.get_progress();
    round.validated = progress.validated;
    round.more_to_fetch = progress.available_count > progress.current_index;
    round.status = engine.get_status();
    KVCORE::copy_text_field(round.installed_version, AUTOPATCH_SYSTEM::get_current_version());
    patch_mutex.unlock();

    set_patch_status(round.status);
    if (round.validated) {
        if (!round.more_to_fetch) {
            client_ready = true;
            return true;
        }
        request_page(PAGE_DOWNLOAD);
    }
    return round.error != AUTOPATCH_OK;
}

void LAUNCHER::conclude_patch_run(const ENGINE_ROUND& round) {
    if (round.error != AUTOPATCH_OK) {
        if (round.installed_version[0] == '\0') {
            request_page(PAGE_ERROR);
        } else {
            client_ready = true;
        }
    }
    const bool launch_from_here = !round.more_to_fetch && round.page != PAGE_ERROR &&
                                  !launch_requested && round.installed_version[0] != '\0';
    if (launch_from_here) {
        DISK_MANAGER disk;
        disk.goto_path(FOLDER_ADD_ONS);
        if (disk.move_down("client", false) && disk.move_down(round.installed_version, false)) {
            // On the download page the page starts the client, as "AUTO_LAUNCH" says.
            if (round.page != PAGE_DOWNLOAD) {
                launch_requested = true;
            }
        } else {
            request_page(PAGE_ERROR);
            MUTEX_LOCKER lock(patch_mutex);
            AUTOPATCH_SYSTEM::delete_version(round.installed_version);
        }
    }
    MUTEX_LOCKER lock(finished_mutex);
    patch_finished = true;
}
