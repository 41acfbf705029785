#include "platform/linux_information.h"

#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "kvcore/processor.h"
#include "kvcore/text_field.h"

namespace {

constexpr std::int64_t MAX_FIELD = std::numeric_limits<std::int32_t>::max();
// Files of the kernel have no size of their own; more than this is never needed of one.
constexpr std::size_t MAX_FACTS_SIZE = 1 << 20;

std::int32_t clamp_field(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 0, MAX_FIELD));
}

std::string read_facts(const char* path) {
    std::string text;
    if (std::FILE* file = std::fopen(path, "re")) {
        char piece[4096];
        std::size_t size;
        while (text.size() < MAX_FACTS_SIZE &&
               (size = std::fread(piece, 1, sizeof piece, file)) > 0) {
            text.append(piece, size);
        }
        std::fclose(file);
    }
    return text;
}

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Calls `visit(name, value)` for each line that has the separator.
template <class VISIT>
void for_each_fact(std::string_view text, char separator, VISIT visit) {
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto at = line.find(separator);
        if (at != std::string_view::npos) {
            visit(trim(line.substr(0, at)), trim(line.substr(at + 1)));
        }
    }
}

// The number at the start of `text`, which is moved behind it; false if there is none.
bool take_number(std::string_view& text, std::int64_t& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return true;
}

// A value of an assignment as the shell would see it, for the plain forms of os-release(5).
std::string unquote(std::string_view value) {
    if (value.size() < 2 || (value.front() != '"' && value.front() != '\'') ||
        value.back() != value.front()) {
        return std::string(value);
    }
    const bool escapes = value.front() == '"';
    value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t i = 0; i < value.size(); i++) {
        if (escapes && value[i] == '\\' && i + 1 < value.size()) {
            i++;
        }
        text += value[i];
    }
    return text;
}

bool resource_of(char resource, decltype(RLIMIT_CORE)& out) {
    switch (resource) {
        case SYSTEM_INFORMATION::RESOURCE_CORE_SIZE:
            out = RLIMIT_CORE;
            return true;
        case SYSTEM_INFORMATION::RESOURCE_OPEN_FILES:
            out = RLIMIT_NOFILE;
            return true;
        case SYSTEM_INFORMATION::RESOURCE_STACK_SIZE:
            out = RLIMIT_STACK;
            return true;
        default:
            return false;
    }
}

}  // namespace

SYSTEM_INFORMATION& get_system_information() {
    static LINUX_INFORMATION information;
    return information;
}

LINUX_INFORMATION::LINUX_INFORMATION() : SYSTEM_INFORMATION(PLATFORM_LINUX) {
    get_version();
    get_machine();
    get_memory();
    get_processor();
    get_speed();
}

void LINUX_INFORMATION::get_platform_name(char* out) const {
    KVCORE::copy_text_field(out, text_size, "Linux x11");
}

std::int32_t LINUX_INFORMATION::get_os_type() const {
    switch (version.major) {
        case 4:
            return OS_LINUX_4;
        case 5:
            return OS_LINUX_5;
        case 6:
            return OS_LINUX_6;
        default:
            return version.major > 6 ? OS_LINUX_LATER : OS_UNSUPPORTED;
    }
}

std::int32_t LINUX_INFORMATION::get_os_version() const {
    return std::min(version.major, 0x7FFF) * 65536 + std::min(version.minor, 255) * 256 +
           std::min(version.patch, 255);
}

void LINUX_INFORMATION::refresh_system_memory() {
    get_memory();
}

std::int32_t LINUX_INFORMATION::get_resource_limit(char resource) const {
    decltype(RLIMIT_CORE) number;
    rlimit limit;
    if (!resource_of(resource, number) || ::getrlimit(number, &limit) != 0) {
        return 0;
    }
    if (limit.rlim_cur == RLIM_INFINITY) {
        return -1;
    }
    return static_cast<std::int32_t>(std::min<rlim_t>(limit.rlim_cur, MAX_FIELD));
}

std::int32_t LINUX_INFORMATION::set_resource_limit(char resource, std::int32_t value) {
    decltype(RLIMIT_CORE) number;
    rlimit limit;
    if (value < -1 || !resource_of(resource, number) || ::getrlimit(number, &limit) != 0) {
        return 0;
    }
    limit.rlim_cur = value == -1 ? RLIM_INFINITY : static_cast<rlim_t>(value);
    return ::setrlimit(number, &limit) == 0 ? 1 : 0;
}

void LINUX_INFORMATION::get_system_name(char* out) const {
    const char* text = system_name.c_str();
    if (get_os_type() == OS_UNSUPPORTED) {
        text = "Linux (Unsupported)";
    } else if (system_name.empty()) {
        text = "Linux (Unknown)";
    }
    KVCORE::copy_text_field(out, text_size, text);
}

void LINUX_INFORMATION::get_version() {
    utsname names;
    if (::uname(&names) == 0) {
        parse_kernel_release(names.release, version);
    }
    std::string text = read_facts("/etc/os-release");
    if (text.empty()) {
        text = read_facts("/usr/lib/os-release");
    }
    system_name = parse_system_name(text);
}

void LINUX_INFORMATION::get_machine() {
    utsname names;
    if (::uname(&names) == 0) {
        KVCORE::copy_text_field(machine.name, names.nodename);
    }
}

void LINUX_INFORMATION::get_memory() {
    if (parse_memory(read_facts("/proc/meminfo"), memory)) {
        return;
    }
    const std::int64_t page = ::sysconf(_SC_PAGESIZE);
    const std::int64_t pages = ::sysconf(_SC_PHYS_PAGES);
    if (page <= 0 || pages <= 0) {
        return;
    }
    memory.total_physical = clamp_field(pages * (page / 1024));
    memory.total_virtual = memory.total_physical;
    memory.free_physical = memory.total_physical / 4 * 3;
    memory.free_virtual = memory.free_physical;
}

void LINUX_INFORMATION::get_processor() {
    const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
    if (online > 0) {
        processor.count = static_cast<unsigned char>(std::min(online, 255L));
    }
    parse_processor(read_facts("/proc/cpuinfo"), processor);
    // In kilohertz; the highest that the processor can run at, where the kernel knows it.
    const std::string highest = read_facts("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
    std::string_view rest = highest;
    std::int64_t kilohertz = 0;
    if (take_number(rest, kilohertz) && kilohertz >= 1000) {
        processor.speed_mhz = clamp_field(kilohertz / 1000);
    }
}

void LINUX_INFORMATION::get_speed() {
    speed.speed_class = calc_speed_class(processor, memory);
}

void LINUX_INFORMATION::parse_kernel_release(std::string_view release, VERSION& version) {
    std::int32_t* fields[] = {&version.major, &version.minor, &version.patch};
    std::string_view rest = release;
    for (std::int32_t* field : fields) {
        std::int64_t number = 0;
        std::string_view after = rest;
        if (field != fields[0]) {
            if (after.empty() || after.front() != '.') {
                break;
            }
            after.remove_prefix(1);
        }
        if (after.empty() || after.front() == '-' || !take_number(after, number)) {
            break;
        }
        *field = clamp_field(number);
        rest = after;
    }
    if (rest.size() != release.size() && !rest.empty() &&
        (rest.front() == '-' || rest.front() == '.')) {
        rest.remove_prefix(1);
    }
    KVCORE::copy_text_field(version.build, std::string(rest).c_str());
}

bool LINUX_INFORMATION::parse_memory(std::string_view text, MEMORY& memory) {
    struct FACT {
        std::string_view name;
        std::int64_t value = -1;
    };
    FACT facts[] = {{"MemTotal"}, {"MemFree"},   {"MemAvailable"}, {"Buffers"},
                    {"Cached"},   {"SwapTotal"}, {"SwapFree"}};
    for_each_fact(text, ':', [&facts](std::string_view name, std::string_view value) {
        for (FACT& fact : facts) {
            if (fact.name == name && (!take_number(value, fact.value) || fact.value < 0)) {
                fact.value = -1;
            }
        }
    });
    const auto value_of = [&facts](std::size_t index) {
        // Limited, so that sums can't overflow.
        return std::clamp<std::int64_t>(facts[index].value, 0, std::int64_t{1} << 60);
    };
    if (facts[0].value < 0) {
        return false;
    }
    const std::int64_t total = value_of(0);
    std::int64_t available =
        facts[2].value >= 0 ? value_of(2) : value_of(1) + value_of(3) + value_of(4);
    available = std::min(available, total);
    memory.total_physical = clamp_field(total);
    memory.free_physical = clamp_field(available);
    memory.total_virtual = clamp_field(total + value_of(5));
    memory.free_virtual = clamp_field(available + std::min(value_of(6), value_of(5)));
    return true;
}

void LINUX_INFORMATION::parse_processor(std::string_view text, PROCESSOR& processor) {
    const auto info = KVCORE::PROCESSOR_LINUX::parse_cpu_info(text);
    if (info.kind != KVCORE::PROCESSOR_LINUX::UNKNOWN) {
        processor.kind = info.kind;
    }
    if (info.threads > 0) {
        processor.count = static_cast<unsigned char>(std::min(info.threads, 255));
    }
    if (info.mhz >= 1.0 && info.mhz <= static_cast<double>(MAX_FIELD)) {
        processor.speed_mhz = static_cast<std::int32_t>(info.mhz);
    }
}

std::string LINUX_INFORMATION::parse_system_name(std::string_view text) {
    std::string name;
    std::string pretty_name;
    for_each_fact(text, '=', [&](std::string_view key, std::string_view value) {
        if (key == "PRETTY_NAME") {
            pretty_name = unquote(value);
        } else if (key == "NAME") {
            name = unquote(value);
        }
    });
    return pretty_name.empty() ? name : pretty_name;
}

unsigned char LINUX_INFORMATION::calc_speed_class(const PROCESSOR& processor,
                                                  const MEMORY& memory) {
    struct ROW {
        std::int64_t below;      // of the speed in MHz, of one processor and half of each other
        std::int32_t megabytes;  // less than this gives the lower class
        unsigned char lower_class;
    };
    static constexpr ROW ROWS[] = {{600, 257, 0},
                                   {1200, 513, 1},
                                   {2000, 513, 2},
                                   {std::numeric_limits<std::int64_t>::max(), 1025, 3}};
    const std::int64_t megahertz = processor.speed_mhz;
    const std::int64_t rating = megahertz + megahertz * (processor.count - 1) / 2;
    const ROW* row = ROWS;
    while (rating >= row->below) {
        row++;
    }
    const bool little = MEMORY::to_megabytes(memory.total_physical) < row->megabytes;
    return static_cast<unsigned char>(row->lower_class + (little ? 0 : 1));
}
