#include "modules/frameworks/application_loop.h"

#include <csignal>
#include <cstdio>

#include "kvcore/log_manager.h"
#include "modules/frameworks/kvcore_startup.h"
#include "modules/frameworks/orln_application.h"

std::atomic<bool> window_aborted{false};

namespace {

static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");

std::uint32_t timer_rate_ms = 0;

void interrupt(int) {
    window_aborted = true;
}

void install_signal_handlers() {
    struct sigaction action {};
    action.sa_handler = interrupt;  // no SA_RESTART: the loop's wait is to end at once
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGHUP, &action, nullptr);
    // A console that went away is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
}

// The user's input ends the wait, so that it is answered at once.
void wait_for_next_update() {
    if (timer_rate_ms == 0 || wait_for_events(timer_rate_ms)) {
        process_os_events();
    }
}

}  // namespace

void update_game_timer(std::uint32_t rate_ms) {
    if (rate_ms == timer_rate_ms && rate_ms != 0) {
        return;
    }
    timer_rate_ms = rate_ms;
}

void update_game() {
    ORLN_APPLICATION* application = ORLN_APPLICATION::get_instance();
    if (application == nullptr || !application->monitor()) {
        window_aborted = true;
        return;
    }
    KVCORE::LOG_MANAGER::process_queue();
    update_game_timer(events_something_done ? 0 : IDLE_UPDATE_RATE_MS);
    events_something_done = false;
}

int run_application(int argc, char** argv, void (*create)(short argc, char** argv)) {
    KVCORE::RESULT result;
    initialise_kvcore(result);
    if (result.get_code() != 0) {
        return result.get_code();
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    install_signal_handlers();
    create(static_cast<short>(argc), argv);
    startup_kvcore(result);
    update_game_timer(0);
    while (result.get_code() == 0 && !window_aborted) {
        update_game();
        if (!window_aborted) {
            wait_for_next_update();
        }
    }
    window_aborted = true;
    ORLN_APPLICATION::shutdown();
    stop_window_platform();
    shutdown_kvcore();
    return result.get_code();
}
