// UPDATE_LATENESS: how late the main thread's updates came, for tests and benchmarks.
//
// An update is due IDLE_UPDATE_RATE_MS after the one before it began; what it comes later than that
// is counted in a histogram, one for each page that was on show in between.
#ifndef LAUNCHER_UPDATE_LATENESS_H
#define LAUNCHER_UPDATE_LATENESS_H

#include <array>
#include <cstdint>
#include <string>

#include "launcher/launcher_page.h"

class UPDATE_LATENESS {
public:
    // The bounds of the histogram's classes in milliseconds, inclusive; one more class follows.
    static constexpr std::array<std::int32_t, 7> BOUNDS_MS = {1, 2, 5, 10, 20, 50, 100};

    // Nothing is counted while the file name is empty.
    void set_file(const std::string& name) { file = name; }
    // An update begins at that time, in microseconds of any steady clock, with that page on show.
    void begin_update(std::int64_t now_us, LAUNCHER_PAGE page);
    // The same, now.
    void begin_update(LAUNCHER_PAGE page);
    // Writes the file: a line "page updates max_ms le_1 ... le_100 more", then one for each page
    // that was on show, all numbers whole, the greatest lateness rounded up.
    void write() const;
    std::string make_text() const;

private:
    struct PAGE_COUNTS {
        std::int64_t updates = 0;
        std::int64_t max_us = 0;
        std::array<std::int64_t, BOUNDS_MS.size() + 1> classes = {};
    };

    std::string file;
    std::int64_t last_us = -1;  // -1: no update yet
    LAUNCHER_PAGE last_page = PAGE_NONE;
    std::array<PAGE_COUNTS, PAGE_ERROR + 1> counts;
};

#endif  // LAUNCHER_UPDATE_LATENESS_H
