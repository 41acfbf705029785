// The running log of the patch engine's steps that the splash shows.
//
// SPLASH_STATUS is a snapshot of what there is to tell; make_splash_rows turns it into the rows of
// the status box, which the splash window draws and the console view writes.
#ifndef LAUNCHER_SPLASH_STATUS_H
#define LAUNCHER_SPLASH_STATUS_H

#include <cstdint>
#include <string>
#include <vector>

#include "autopatch/autopatch_types.h"

// One row of the box: text at the left edge and text that ends at the right edge.
struct SPLASH_ROW {
    std::string left;
    std::string right;
    bool operator==(const SPLASH_ROW&) const = default;
};

// One add-on as the box names it.
struct SPLASH_ADD_ON {
    std::string title;
    std::uint16_t version;
};

struct SPLASH_STATUS {
    AUTOPATCH_SYSTEM_STATUS status = AUTOPATCH_DISCONNECTED;
    std::int32_t connect_attempt = 1;       // counted from 1
    std::vector<SPLASH_ADD_ON> installed;   // top-level add-ons of the catalogue
    std::vector<SPLASH_ADD_ON> to_install;  // what the server listed
};

// What a step that went well says at the right.
inline constexpr const char* SPLASH_SUCCESS = "Success";

// The rows of the status box from top to bottom; a blank row is an empty one.
std::vector<SPLASH_ROW> make_splash_rows(const SPLASH_STATUS& status);

#endif  // LAUNCHER_SPLASH_STATUS_H
