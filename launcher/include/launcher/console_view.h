// CONSOLE_VIEW: what the launcher shows where there is no display, as lines on the console.
//
// It takes the place of the splash window and of the pages; the patch run behind them is the same.
// Main thread only.
#ifndef LAUNCHER_CONSOLE_VIEW_H
#define LAUNCHER_CONSOLE_VIEW_H

#include <cstdint>
#include <string>
#include <vector>

#include "autopatch/autopatch_types.h"
#include "launcher/splash_status.h"

struct AUTOPATCH_PROGRESS;

class CONSOLE_VIEW {
public:
    CONSOLE_VIEW();

    void show_title(const char* title);
    // Writes the rows that differ from what was written before.
    void show_splash(const std::vector<SPLASH_ROW>& rows);
    // One update of the download: writes what changed. True once the client is to be started:
    // everything is there, and `auto_launch` is set, nobody can be asked, or Return was pressed.
    bool show_download(const AUTOPATCH_PROGRESS& progress, bool auto_launch);
    void show_error(AUTOPATCH_ERROR_CODE code);

private:
    void show_current_add_on(const AUTOPATCH_PROGRESS& progress);
    void show_progress(const AUTOPATCH_PROGRESS& progress);
    bool finish_download(bool auto_launch);
    bool is_return_pressed();

    const bool on_terminal;
    std::vector<SPLASH_ROW> shown_rows;
    std::string shown_add_on;
    std::int32_t shown_percent = -1;
    std::uint32_t shown_ms = 0;
    bool all_downloaded = false;
    bool waiting_for_return = false;
};

// `text` in UTF-8, with control characters replaced, so that titles from outside can't steer a
// terminal.
std::string console_text(const char* text);

#endif  // LAUNCHER_CONSOLE_VIEW_H
