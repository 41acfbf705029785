#include "launcher/console_view.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "autopatch/add_on.h"
#include "autopatch/autopatch_system.h"
#include "launcher/page_texts.h"
#include "platform/process_tools.h"
#include "platform/text_encoding.h"

namespace {

// Between two figures of the progress; a console that isn't a terminal gets a line for each.
constexpr std::uint32_t TERMINAL_INTERVAL_MS = 100;
constexpr std::uint32_t LINE_INTERVAL_MS = 1000;
// Where the right-hand texts of the status rows end.
constexpr std::size_t RIGHT_EDGE = 48;

}  // namespace

CONSOLE_VIEW::CONSOLE_VIEW() : on_terminal(::isatty(STDOUT_FILENO) != 0) {
}

void CONSOLE_VIEW::show_title(const char* title) {
    write_to_console((std::string(title) + "\n").c_str());
}

void CONSOLE_VIEW::show_splash(const std::vector<SPLASH_ROW>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const SPLASH_ROW& row = rows[i];
        if (i < shown_rows.size() && shown_rows[i] == row) {
            continue;
        }
        std::string line = console_text(row.left.c_str());
        if (!row.right.empty()) {
            const std::string right = console_text(row.right.c_str());
            const std::size_t used = line.size() + right.size();
            line.append(used < RIGHT_EDGE ? RIGHT_EDGE - used : 1, ' ');
            line += right;
        }
        line += '\n';
        write_to_console(line.c_str());
    }
    shown_rows = rows;
}

bool CONSOLE_VIEW::show_download(const AUTOPATCH_PROGRESS& progress, bool auto_launch) {
    if (all_downloaded) {
        return waiting_for_return && is_return_pressed();
    }
    if (progress.validated && progress.available_count <= progress.current_index) {
        all_downloaded = true;
        return finish_download(auto_launch);
    }
    show_current_add_on(progress);
    show_progress(progress);
    return false;
}

void CONSOLE_VIEW::show_current_add_on(const AUTOPATCH_PROGRESS& progress) {
    if (progress.current_add_on == nullptr) {
        return;
    }
    const ADD_ON& add_on = *progress.current_add_on->get_top_level_parent();
    const std::string name =
        std::string(add_on.get_shown_title()) + " version " + std::to_string(add_on.version);
    if (name != shown_add_on) {
        write_to_console(("Currently Downloading: " + console_text(name.c_str()) + "\n").c_str());
        shown_add_on = name;
        shown_percent = -1;
    }
}

void CONSOLE_VIEW::show_progress(const AUTOPATCH_PROGRESS& progress) {
    const std::uint32_t now = get_ms_count();
    const bool due = now - shown_ms >= (on_terminal ? TERMINAL_INTERVAL_MS : LINE_INTERVAL_MS);
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

bool CONSOLE_VIEW::finish_download(bool auto_launch) {
    write_to_console(on_terminal ? "\nDownload complete.\n" : "Download complete.\n");
    if (auto_launch || !::isatty(STDIN_FILENO)) {
        return true;
    }
    waiting_for_return = true;
    write_to_console("Press Return to launch the game.\n");
    return false;
}

// A line, or the end of the input.
bool CONSOLE_VIEW::is_return_pressed() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, 0) <= 0) {
        return false;
    }
    char line[64];
    const ssize_t got = ::read(STDIN_FILENO, line, sizeof line);
    if (got == 0 || (got > 0 && std::memchr(line, '\n', static_cast<std::size_t>(got)))) {
        waiting_for_return = false;
        return true;
    }
    return false;
}

void CONSOLE_VIEW::show_error(AUTOPATCH_ERROR_CODE code) {
    write_to_console(("\n" + make_plain_error_text(code) + "\n").c_str());
}

std::string console_text(const char* text) {
    std::string clean(text);
    std::replace_if(
        clean.begin(), clean.end(),
        [](char c) {
            const auto code = static_cast<unsigned char>(c);
            return code < 0x20 || (code >= 0x7F && code < 0xA0);
        },
        ' ');
    return system_to_utf8(clean);
}
