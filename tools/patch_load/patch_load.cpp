// patch_load: plays many launchers at once against one update server on this machine, and tells how
// that went. Every archive is checked against the server's checksum.
#include <sys/resource.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "load_client.h"
#include "platform/process_tools.h"

namespace {

constexpr const char* HELP =
    "usage: patch_load --port N [--clients N] [--server-pid PID]\n"
    "\n"
    "Connects many launchers to the update server at 127.0.0.1, all of which fetch the client at\n"
    "the same time, and reports how many finished.\n"
    "\n"
    "  --clients N       how many (1000, at most 10000)\n"
    "  --server-pid PID  also report the server's memory\n"
    "  --help            show this text\n";

constexpr std::uint32_t TIME_LIMIT_MS = 300000;

struct LOAD {
    std::vector<std::unique_ptr<LOAD_CLIENT>> clients;
};

void on_disconnect(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* user,
                   unsigned char) {
    for (const auto& client : static_cast<LOAD*>(user)->clients) {
        if (client->get_connection() == connection) {
            client->connection_lost();
        }
    }
}

// "VmRSS" or "VmHWM" of a process in kB; 0 if it can't be read.
long read_memory(const std::string& pid, const char* key) {
    std::ifstream status("/proc/" + pid + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(key, 0) == 0) {
            return std::strtol(line.c_str() + std::strlen(key) + 1, nullptr, 10);
        }
    }
    return 0;
}

std::size_t count(const LOAD& load, LOAD_CLIENT::STATE state) {
    return static_cast<std::size_t>(
        std::count_if(load.clients.begin(), load.clients.end(),
                      [state](const auto& client) { return client->get_state() == state; }));
}

// A number of digits alone; 0 if it is none.
unsigned long parse_number(const char* text) {
    char* end = nullptr;
    const unsigned long number = std::strtoul(text, &end, 10);
    return *text != '-' && *end == '\0' ? number : 0;
}

int run(std::uint16_t port, std::size_t clients, const std::string& server_pid) {
    const long server_before = server_pid.empty() ? 0 : read_memory(server_pid, "VmRSS");
    LOAD load;
    std::vector<unsigned char> scratch(256 * 1024);
    NETWORK_MANAGER manager(1, 1);
    manager.disconnect_callback = on_disconnect;
    manager.user = &load;
    const std::uint32_t begin = get_ms_count();
    for (std::size_t i = 0; i < clients; ++i) {
        load.clients.push_back(std::make_unique<LOAD_CLIENT>(manager, "127.0.0.1", port));
    }
    long server_peak = 0;
    std::size_t open = clients;
    while (open != 0 && get_ms_count() - begin < TIME_LIMIT_MS) {
        bool moved = manager.monitor() != 0;
        manager.monitor_send();
        for (const auto& client : load.clients) {
            moved = client->receive_stream(scratch) || moved;
        }
        open =
            count(load, LOAD_CLIENT::STATE::WAITING) + count(load, LOAD_CLIENT::STATE::RECEIVING);
        if (!moved && open != 0) {
            manager.wait(100);
        }
    }
    const double seconds = static_cast<double>(get_ms_count() - begin) / 1000.0;
    if (!server_pid.empty()) {
        server_peak = read_memory(server_pid, "VmHWM");
    }
    std::uint64_t bytes = 0;
    for (const auto& client : load.clients) {
        bytes += client->get_received();
    }
    const std::size_t finished = count(load, LOAD_CLIENT::STATE::FINISHED);
    std::printf("%zu of %zu clients finished in %.1f s, %" PRIu64 " bytes\n", finished, clients,
                seconds, bytes);
    if (server_peak != 0) {
        std::printf(
            "server memory: %ld kB before, %ld kB at most, %.1f kB for each client\n",
            server_before, server_peak,
            static_cast<double>(server_peak - server_before) / static_cast<double>(clients));
    }
    load.clients.clear();
    manager.user = nullptr;
    manager.disconnect_callback = nullptr;
    return finished == clients ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    unsigned long port = 0;
    unsigned long clients = 1000;
    std::string server_pid;
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--help") {
            std::fputs(HELP, stdout);
            return 0;
        }
        const char* value = i + 1 < argc ? argv[i + 1] : "";
        if (option == "--port") {
            port = parse_number(value);
        } else if (option == "--clients") {
            clients = parse_number(value);
        } else if (option == "--server-pid") {
            server_pid = value;
        } else {
            port = 0;
            break;
        }
    }
    if (port == 0 || port > 65535 || clients == 0 || clients > 10000) {
        std::fprintf(stderr, "patch_load: bad arguments (see --help)\n");
        return 2;
    }
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    return run(static_cast<std::uint16_t>(port), clients, server_pid);
}
