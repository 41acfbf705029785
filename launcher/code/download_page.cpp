#include "launcher/download_page.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "autopatch/add_on.h"
#include "autopatch/autopatch_system.h"
#include "launcher/launcher.h"
#include "launcher/splash_status.h"
#include "platform/process_tools.h"

namespace {

// A console that isn't a terminal gets a line of progress this often at most.
constexpr std::uint32_t LINE_INTERVAL_MS = 1000;

}  // namespace

std::string make_progress_text(int number, int count, int percent, double rate_kbps) {
    char text[128];
    std::snprintf(text, sizeof text, "Downloading %d of %d   %d%% - %.1f Kb/s", number, count,
                  percent, rate_kbps);
    return text;
}

DOWNLOAD_PAGE::DOWNLOAD_PAGE(LAUNCHER& launcher_)
    : launcher(launcher_),
      on_terminal(::isatty(STDOUT_FILENO) != 0),
      all_downloaded(false),
      waiting_for_return(false),
      shown_percent(-1),
      shown_ms(0) {
}

void DOWNLOAD_PAGE::monitor() {
    const AUTOPATCH_PROGRESS progress = AUTOPATCH_SYSTEM::get_instance()->get_progress();
    if (all_downloaded) {
        if (waiting_for_return) {
            check_for_return();
        }
        return;
    }
    if (progress.validated && progress.available_count <= progress.current_index) {
        set_all_downloaded();
        all_downloaded = true;
        return;
    }
    show_current_add_on(progress);
    show_progress(progress);
}

void DOWNLOAD_PAGE::show_progress(const AUTOPATCH_PROGRESS& progress) {
    const std::uint32_t now = get_ms_count();
    const bool due = now - shown_ms >= (on_terminal ? 100 : LINE_INTERVAL_MS);
    if (progress.progress_percent == shown_percent || (!due && shown_percent >= 0)) {
        return;
    }
    const std::string text =
        make_progress_text(progress.current_index + 1, progress.available_count,
                           progress.progress_percent, progress.download_rate_kbps);
    write_to_console((on_terminal ? "\r" + text + "   " : text + "\n").c_str());
    std::fflush(stdout);
    shown_percent = progress.progress_percent;
    shown_ms = now;
}

void DOWNLOAD_PAGE::show_current_add_on(const AUTOPATCH_PROGRESS& progress) {
    if (progress.current_add_on == nullptr) {
        return;
    }
    const ADD_ON& add_on = *progress.current_add_on->get_top_level_parent();
    const bool client = add_on.type == ADD_ON::ADD_ON_APPLICATION;
    const std::string name = std::string(client ? "Application" : add_on.title) + " version " +
                             std::to_string(add_on.version);
    if (name != shown_add_on) {
        write_to_console(("Currently Downloading: " + console_text(name.c_str()) + "\n").c_str());
        shown_add_on = name;
        shown_percent = -1;
    }
}

void DOWNLOAD_PAGE::set_all_downloaded() {
    write_to_console(on_terminal ? "\nDownload complete.\n" : "Download complete.\n");
    if (launcher.get_auto_launch() || !::isatty(STDIN_FILENO)) {
        launcher.request_launch();
        return;
    }
    waiting_for_return = true;
    write_to_console("Press Return to launch the game.\n");
}

// The console's "Launch Game" button: a line, or the end of the input.
void DOWNLOAD_PAGE::check_for_return() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, 0) <= 0) {
        return;
    }
    char line[64];
    const ssize_t got = ::read(STDIN_FILENO, line, sizeof line);
    if (got == 0 || (got > 0 && std::memchr(line, '\n', static_cast<std::size_t>(got)))) {
        waiting_for_return = false;
        launcher.request_launch();
    }
}
