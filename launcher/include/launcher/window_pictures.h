// WINDOW_PICTURES: pictures of the launcher's windows for tests, as PNG files in a folder.
//
// Each page is taken once, as soon as it is complete or when it goes, whichever comes first:
// "splash.png", "download.png", "error.png".
// With each SIGUSR1 the window on show is taken once more: "picture_1.png", "picture_2.png" and so
// on. A picture is written under another name and renamed, so that a file that is there is whole.
// Main thread only.
#ifndef LAUNCHER_WINDOW_PICTURES_H
#define LAUNCHER_WINDOW_PICTURES_H

#include <cstdint>
#include <string>

#include "launcher/launcher_page.h"
#include "platform/disk_manager.h"

class WINDOW_PICTURES {
public:
    // From now on pictures are taken. False if there is no such folder.
    bool start(const std::string& folder);
    bool is_started() const { return started; }
    // Once per update, at its end.
    void monitor(LAUNCHER_PAGE page);
    // Another page is about to take the place of the last, or the launcher is about to end. A fast
    // update leaves the splash after few updates.
    void leave_page();

private:
    bool is_complete() const;
    void take(LAUNCHER_PAGE page, const std::string& name) const;

    bool started = false;
    DISK_MANAGER folder;
    LAUNCHER_PAGE last_page = PAGE_NONE;
    std::int32_t updates_of_page = 0;
    std::int32_t asked_for = 0;  // pictures taken on a signal
};

#endif  // LAUNCHER_WINDOW_PICTURES_H
