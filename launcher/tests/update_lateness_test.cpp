#include "launcher/update_lateness.h"

#include <gtest/gtest.h>

namespace {

TEST(UpdateLateness, CountsWhatComesLaterThanAnUpdateIsDue) {
    UPDATE_LATENESS lateness;
    std::int64_t now = 1000;
    const auto update_after = [&](std::int64_t interval_us, LAUNCHER_PAGE page) {
        now += interval_us;
        lateness.begin_update(now, page);
    };
    update_after(0, PAGE_SPLASH);  // the first has nothing before it
    update_after(0, PAGE_SPLASH);
    update_after(15000, PAGE_SPLASH);
    update_after(16000, PAGE_SPLASH);
    // The page of the time in between counts: what makes the next page is the splash's.
    update_after(16001, PAGE_DOWNLOAD);
    update_after(15000 + 50000, PAGE_DOWNLOAD);
    update_after(15000 + 100001, PAGE_ERROR);
    EXPECT_EQ(
        "page updates max_ms le_1 le_2 le_5 le_10 le_20 le_50 le_100 more\n"
        "splash 4 2 3 1 0 0 0 0 0 0\n"
        "download 2 101 0 0 0 0 0 1 0 1\n",
        lateness.make_text());
}

}  // namespace
