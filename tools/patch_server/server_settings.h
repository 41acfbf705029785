// What the update server is told on its command line.
#ifndef TOOLS_PATCH_SERVER_SERVER_SETTINGS_H
#define TOOLS_PATCH_SERVER_SERVER_SETTINGS_H

#include <cstdint>
#include <string>

#include "server_faults.h"

struct SERVER_SETTINGS {
    std::string publish;             // the published folder
    std::uint16_t port = 0;          // 0: any free port
    std::string bind = "127.0.0.1";  // the address to listen at
    bool stream = true;              // archives go out as raw streams, else as blocks
    std::uint32_t block_size = 262144;
    std::uint32_t checkpoint_every = 16;  // blocks between two checkpoints
    bool key_exchange = false;
    std::uint32_t rate_kbps = 0;     // KiB a second for each client; 0: no limit
    std::uint32_t patience_s = 150;  // with a launcher that takes nothing of its stream
    SERVER_FAULTS faults;
};

#endif  // TOOLS_PATCH_SERVER_SERVER_SETTINGS_H
