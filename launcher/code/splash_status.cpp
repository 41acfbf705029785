#include "launcher/splash_status.h"

#include <algorithm>

namespace {

constexpr std::int32_t MAX_CONNECT_ATTEMPTS = 10;

void add_version_rows(std::vector<SPLASH_ROW>& rows, const std::vector<SPLASH_ADD_ON>& add_ons,
                      const char* none, const char* version_zero) {
    for (const SPLASH_ADD_ON& add_on : add_ons) {
        const bool tell_missing = add_on.version == 0 && version_zero != nullptr;
        rows.push_back(
            {add_on.title, tell_missing ? version_zero : std::to_string(add_on.version)});
    }
    if (add_ons.empty()) {
        rows.push_back({"", none});
    }
}

}  // namespace

std::vector<SPLASH_ROW> make_splash_rows(const SPLASH_STATUS& status) {
    std::vector<SPLASH_ROW> rows;
    rows.push_back({"Installed add-on versions:", ""});
    add_version_rows(rows, status.installed, "None installed", "Not installed");
    rows.push_back({});

    const std::int32_t attempt = std::min(status.connect_attempt, MAX_CONNECT_ATTEMPTS);
    rows.push_back({"Connect attempt " + std::to_string(attempt) + " of " +
                        std::to_string(MAX_CONNECT_ATTEMPTS) + "...",
                    status.status > AUTOPATCH_DISCONNECTED ? SPLASH_SUCCESS : ""});
    if (status.status > AUTOPATCH_CONNECTED) {
        rows.push_back({"Sent validation request...", SPLASH_SUCCESS});
        rows.push_back({"Receiving validation response...",
                        status.status >= AUTOPATCH_VALIDATED ? SPLASH_SUCCESS : ""});
    }
    if (status.status >= AUTOPATCH_VALIDATED) {
        rows.push_back({});
        rows.push_back({"Add ons to be installed:", ""});
        add_version_rows(rows, status.to_install, "None required", nullptr);
        rows.push_back({});
        rows.push_back({"Starting download...", ""});
    }
    return rows;
}
