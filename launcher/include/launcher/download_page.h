// DOWNLOAD_PAGE: how the download goes, and the way to the client when it is complete.
//
// This is the console's page: progress, rate and the current add-on as lines of text. All of it
// runs on the main thread; the engine's fields are read under the engine's mutex.
#ifndef LAUNCHER_DOWNLOAD_PAGE_H
#define LAUNCHER_DOWNLOAD_PAGE_H

#include <cstdint>
#include <string>

class LAUNCHER;
struct AUTOPATCH_PROGRESS;

class DOWNLOAD_PAGE {
public:
    explicit DOWNLOAD_PAGE(LAUNCHER& launcher);

    // One update: shows what changed, and finishes the page once nothing is left to fetch.
    void monitor();

private:
    void show_progress(const AUTOPATCH_PROGRESS& progress);
    void show_current_add_on(const AUTOPATCH_PROGRESS& progress);
    void set_all_downloaded();
    void check_for_return();

    LAUNCHER& launcher;
    bool on_terminal;
    bool all_downloaded;
    bool waiting_for_return;
    std::int32_t shown_percent;
    std::uint32_t shown_ms;
    std::string shown_add_on;
};

// "Downloading %d of %d   %d%% - %.1f Kb/s": the words of the progress bar.
std::string make_progress_text(int number, int count, int percent, double rate_kbps);

#endif  // LAUNCHER_DOWNLOAD_PAGE_H
