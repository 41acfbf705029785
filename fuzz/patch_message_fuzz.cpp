// The patch engine, given arbitrary messages in several states.
//
// An input is a byte for the state, then messages: 16 bits of length, a byte of flags (1: the
// message is big-endian, 2: the engine does a round behind it), the payload.
#include <arpa/inet.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "autopatch/add_on.h"
#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "kvcore/byte_order.h"
#include "modules/network/network_manager.h"
#include "platform/disk_manager.h"
#include "platform/network_message.h"

namespace {

// Time stands still, until a round looks at the clock more often than it does without a stream:
// then the peer of that stream has been silent for too long.
constexpr int LOOKS_PER_ROUND = 12;
constexpr std::uint32_t LONG_SILENCE_MS = 700000;
std::uint32_t now_ms = 1;
int looks_left = 0;

std::uint32_t fuzz_clock() {
    return now_ms += looks_left-- > 0 ? 0 : LONG_SILENCE_MS;
}

void do_round(AUTOPATCH_SYSTEM& engine) {
    looks_left = LOOKS_PER_ROUND;
    engine.monitor();
}

// Folders and a listener that last as long as the process.
struct SURROUNDINGS {
    SURROUNDINGS() {
        // In memory if possible: the catalogue is flushed to its disk at each save.
        const std::filesystem::path memory = "/dev/shm";
        root = (std::filesystem::is_directory(memory) ? memory
                                                      : std::filesystem::temp_directory_path()) /
               "patch_message_fuzz_XXXXXX";
        if (!::mkdtemp(root.data())) {
            std::abort();
        }
        std::filesystem::create_directories(root + "/base/data");
        ::setenv("XDG_DATA_HOME", root.c_str(), 1);
        DISK_MANAGER::set_base_folder((root + "/base").c_str());
        if (!server.listen(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           htonl(INADDR_LOOPBACK))) {
            std::abort();
        }
    }
    ~SURROUNDINGS() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    std::string root;
    NETWORK_MANAGER server{1, 1};
};

void deliver(NETWORK_MESSAGE& message, AUTOPATCH_SYSTEM& engine) {
    message.set_pos(0, false);
    AUTOPATCH_SYSTEM::network_callback(message, &engine);
}

// Has the engine accept a list, and ask for its first archive.
void begin_fetch(AUTOPATCH_SYSTEM& engine, bool composite) {
    ADD_ON app;
    app.set_path("app");
    app.version = 2;
    ADD_ON pack;
    pack.type = ADD_ON::ADD_ON_MISC;
    pack.set_path("pack");
    for (const char* name : {"one", "two"}) {
        ADD_ON* const child = new ADD_ON;
        child->type = ADD_ON::ADD_ON_MISC;
        child->set_path(name);
        child->set_parent(pack);
    }
    NETWORK_MESSAGE message;
    const bool good = message << std::uint16_t{AUTOPATCH_MESSAGE_VALIDATION_RESPONSE} &&
                      message << PROTOCOL_VERSION && message << std::uint32_t{2} &&
                      (composite ? pack : app).put_to_data_device(PROTOCOL_VERSION, message) &&
                      (composite ? app : pack).put_to_data_device(PROTOCOL_VERSION, message);
    if (!good) {
        std::abort();
    }
    deliver(message, engine);
    engine.set_download_allowed(true);
    for (int round = 0; round < 3; ++round) {
        do_round(engine);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SURROUNDINGS surroundings;
    if (size == 0) {
        return 0;
    }
    // Every input begins with an empty installation.
    std::error_code ignored;
    std::filesystem::remove_all(surroundings.root + "/Corvane", ignored);
    looks_left = LOOKS_PER_ROUND;
    AUTOPATCH_SYSTEM::startup(0);
    AUTOPATCH_SYSTEM& engine = *AUTOPATCH_SYSTEM::get_instance();
    engine.set_services({fuzz_clock, std::malloc});
    engine.internal_startup(1, "127.0.0.1", surroundings.server.get_listen_port());
    const unsigned state = data[0] % 4;
    if (state != 0) {
        do_round(engine);
    }
    if (state >= 2) {
        begin_fetch(engine, state == 3);
    }
    constexpr std::size_t HEADING = 3;
    for (std::size_t at = 1; at + HEADING <= size;) {
        const std::size_t length =
            std::min<std::size_t>(KVCORE::load_le16(data + at), size - at - HEADING);
        const unsigned flags = data[at + 2];
        NETWORK_MESSAGE message;
        message.write_data_block(data + at + HEADING, static_cast<std::int32_t>(length));
        message.set_byte_order(flags & 1 ? BYTEORDER_BIG : BYTEORDER_LITTLE);
        deliver(message, engine);
        if (flags & 2) {
            do_round(engine);
        }
        at += HEADING + length;
    }
    do_round(engine);
    AUTOPATCH_SYSTEM::shutdown();
    surroundings.server.disconnect_all(1);
    surroundings.server.monitor();
    surroundings.server.disconnect_all(1);
    return 0;
}
