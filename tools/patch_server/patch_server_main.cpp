// patch_server: serves a folder of published add-ons to launchers.
#include <sys/resource.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "autopatch/add_ons_manager.h"
#include "patch_server.h"
#include "platform/application_identity.h"
#include "platform/disk_manager.h"
#include "server_log.h"

namespace {

constexpr const char* HELP =
    "usage: patch_server --publish DIR --port N [OPTIONS]\n"
    "\n"
    "Serves the add-ons in DIR to launchers. Versions that are published while it runs are picked\n"
    "up by themselves. Ends cleanly on SIGINT and SIGTERM.\n"
    "\n"
    "  --publish DIR               the published folder, as patch_publish makes it\n"
    "  --port N                    the TCP port; 0 takes a free one and tells which\n"
    "  --bind ADDRESS              the IPv4 address to listen at (127.0.0.1; 0.0.0.0 for all)\n"
    "  --transfer blocks|stream    how archives are sent (stream)\n"
    "  --block-size BYTES          size of a block, 1 to 8388608 (262144)\n"
    "  --checkpoint-every BLOCKS   blocks between two checkpoints (16)\n"
    "  --key-exchange              agree on a key with each launcher and encipher the lists\n"
    "  --rate KB                   limit for each launcher in KiB a second (none)\n"
    "  --patience SECONDS          a launcher that takes nothing of its stream for so long is "
    "given\n"
    "                              up (150)\n"
    "  --fault NAME[:N]            make a fault, for tests; may be given several times:\n"
    "                              %s\n"
    "  --help                      show this text\n";

std::atomic<bool> stop{false};

void handle_signal(int) {
    stop = true;
}

bool parse_number(const char* text, unsigned long least, unsigned long most, unsigned long& value) {
    char* end = nullptr;
    value = std::strtoul(text, &end, 10);
    return *text != '\0' && *text != '-' && *end == '\0' && value >= least && value <= most;
}

bool parse_option(SERVER_SETTINGS& settings, const std::string& option, const char* value) {
    unsigned long number = 0;
    if (option == "--publish") {
        settings.publish = value;
    } else if (option == "--bind") {
        settings.bind = value;
    } else if (option == "--port" && parse_number(value, 0, 65535, number)) {
        settings.port = static_cast<std::uint16_t>(number);
    } else if (option == "--transfer" &&
               (std::strcmp(value, "blocks") == 0 || std::strcmp(value, "stream") == 0)) {
        settings.stream = std::strcmp(value, "stream") == 0;
    } else if (option == "--block-size" && parse_number(value, 1, 8388608, number)) {
        settings.block_size = static_cast<std::uint32_t>(number);
    } else if (option == "--checkpoint-every" && parse_number(value, 1, 1000000, number)) {
        settings.checkpoint_every = static_cast<std::uint32_t>(number);
    } else if (option == "--rate" && parse_number(value, 1, 4000000, number)) {
        settings.rate_kbps = static_cast<std::uint32_t>(number);
    } else if (option == "--patience" && parse_number(value, 1, 86400, number)) {
        settings.patience_s = static_cast<std::uint32_t>(number);
    } else {
        return option == "--fault" && settings.faults.parse(value);
    }
    return true;
}

// 0 to go on, otherwise the exit code plus 1.
int parse_arguments(int argc, char** argv, SERVER_SETTINGS& settings) {
    bool port_given = false;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--help") {
            std::printf(HELP, SERVER_FAULTS::describe());
            return 1;
        }
        if (option == "--key-exchange") {
            settings.key_exchange = true;
            continue;
        }
        if (i + 1 == argc || !parse_option(settings, option, argv[i + 1])) {
            std::fprintf(stderr, "patch_server: bad argument %s%s%s (see --help)\n", argv[i],
                         i + 1 < argc ? " " : "", i + 1 < argc ? argv[i + 1] : "");
            return 3;
        }
        port_given = port_given || option == "--port";
        ++i;
    }
    if (settings.publish.empty() || !port_given) {
        std::fprintf(stderr, "patch_server: --publish DIR and --port N are needed (see --help)\n");
        return 3;
    }
    return 0;
}

void allow_many_descriptors() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

}  // namespace

int main(int argc, char** argv) {
    SERVER_SETTINGS settings;
    if (const int code = parse_arguments(argc, argv, settings)) {
        return code - 1;
    }
    std::signal(SIGINT, handle_signal);
    std::signal(SIGTERM, handle_signal);
    std::signal(SIGPIPE, SIG_IGN);
    allow_many_descriptors();
    // The catalogue's own files go where no launcher keeps its.
    set_application_identity({[]() -> const char* { return "Tessarine Patch Server"; }, nullptr});
    DISK_MANAGER::set_base_folder(settings.publish.c_str());
    ADD_ONS_MANAGER::startup(0);
    int code = 0;
    {
        PATCH_SERVER server(settings);
        std::string reason;
        if (server.start(reason)) {
            server_log("serving %s at %s port %u", settings.publish.c_str(), settings.bind.c_str(),
                       static_cast<unsigned>(server.get_port()));
            server.run(stop);
        } else {
            std::fprintf(stderr, "patch_server: %s\n", reason.c_str());
            code = 1;
        }
    }
    ADD_ONS_MANAGER::shutdown();
    return code;
}
