#include "kvcore/processor.h"

#include <unistd.h>

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace KVCORE {

namespace {

std::string read_cpu_info_file() {
    std::string text;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen("/proc/cpuinfo", "re"),
                                                     [](FILE* f) { return std::fclose(f); });
    if (!file) {
        return text;
    }
    char piece[4096];
    while (const std::size_t got = std::fread(piece, 1, sizeof piece, file.get())) {
        text.append(piece, got);
    }
    return text;
}

PROCESSOR_LINUX::CPU_INFO read_cpu_info() {
    return PROCESSOR_LINUX::parse_cpu_info(read_cpu_info_file());
}

std::string_view trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::int32_t to_number(std::string_view text, std::int32_t otherwise) {
    std::int32_t number = otherwise;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::int32_t processors(int which) {
    const long count = sysconf(which);
    return count > 0 ? static_cast<std::int32_t>(count) : 0;
}

// Takes the value of `read` once it isn't 0, and keeps it.
template <typename READ>
std::int32_t keep(std::atomic<std::int32_t>& kept, READ read) {
    std::int32_t value = kept.load(std::memory_order_relaxed);
    if (value == 0) {
        value = read();
        kept.store(value, std::memory_order_relaxed);
    }
    return value;
}

}  // namespace

PROCESSOR_LINUX::CPU_INFO PROCESSOR_LINUX::parse_cpu_info(std::string_view text) {
    CPU_INFO info;
    std::set<std::pair<std::int32_t, std::int32_t>> cores;
    std::int32_t package = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trim(line.substr(0, colon));
        const std::string_view value = trim(line.substr(colon + 1));
        if (key == "processor") {
            ++info.threads;
            package = 0;
        } else if (key == "vendor_id") {
            info.kind = value == "AuthenticAMD" ? AMD : value == "GenuineIntel" ? INTEL : info.kind;
        } else if (key == "cpu" && value.starts_with("POWER")) {
            info.kind = POWERPC;
        } else if ((key == "cpu MHz" || key == "clock") && info.mhz == 0.0) {
            info.mhz = std::strtod(std::string(value).c_str(), nullptr);
        } else if (key == "physical id") {
            package = to_number(value, 0);
        } else if (key == "core id") {
            cores.emplace(package, to_number(value, 0));
        }
    }
    // Systems that don't tell cores from threads have as many of both.
    info.cores = cores.empty() ? info.threads : static_cast<std::int32_t>(cores.size());
    return info;
}

double PROCESSOR_LINUX::get_speed_mhz() {
    return read_cpu_info().mhz / 1000.0;
}

PROCESSOR_LINUX::KIND PROCESSOR_LINUX::get_kind() {
    static std::atomic<std::int32_t> kept{0};
    return static_cast<KIND>(keep(kept, [] { return std::int32_t{read_cpu_info().kind}; }));
}

std::int32_t PROCESSOR_LINUX::get_max_cores() {
    static std::atomic<std::int32_t> kept{0};
    return keep(kept, [] { return read_cpu_info().cores; });
}

std::int32_t PROCESSOR_LINUX::get_max_threads() {
    static std::atomic<std::int32_t> kept{0};
    return keep(kept, [] { return processors(_SC_NPROCESSORS_CONF); });
}

std::int32_t PROCESSOR_LINUX::get_current_cores() {
    return read_cpu_info().cores;
}

std::int32_t PROCESSOR_LINUX::get_current_threads() {
    return processors(_SC_NPROCESSORS_ONLN);
}

}  // namespace KVCORE
