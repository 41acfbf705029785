#include "platform/system_information.h"

#include <cinttypes>
#include <cstdio>

#include "kvcore/text_field.h"
#include "platform/tcpip_socket.h"

const char* SPEED::get_name() const {
    static constexpr const char* NAMES[] = {"Very Slow", "Slow", "Average", "Fast", "Very Fast"};
    return speed_class < 5 ? NAMES[speed_class] : "Unknown";
}

void SPEED::get_string(char* out) const {
    std::snprintf(out, SYSTEM_INFORMATION::text_size, "System Speed: %s", get_name());
}

void VERSION::get_string(char* out) const {
    std::snprintf(out, SYSTEM_INFORMATION::text_size,
                  "Version %" PRId32 ".%" PRId32 ".%" PRId32 "%s%s", major, minor, patch,
                  *build ? "." : "", build);
}

void MEMORY::get_string(char* out) const {
    std::snprintf(out, SYSTEM_INFORMATION::text_size,
                  "Physical Memory: %" PRId32 " MB total (%" PRId32
                  " MB free).\nVirtual Memory: %" PRId32 " MB Total (%" PRId32 " MB free).",
                  to_megabytes(total_physical), to_megabytes(free_physical),
                  to_megabytes(total_virtual), to_megabytes(free_virtual));
}

const char* PROCESSOR::get_name() const {
    switch (kind) {
        case 1:
            return "AMD";
        case 2:
            return "Intel";
        case 3:
            return "PowerPC";
        default:
            return "Unknown";
    }
}

void PROCESSOR::get_string(char* out) const {
    std::snprintf(out, SYSTEM_INFORMATION::text_size,
                  "Processor(s): %d %s running at %" PRId32 " MHz.", count, get_name(), speed_mhz);
}

SYSTEM_INFORMATION::SYSTEM_INFORMATION(unsigned char platform_byte) : platform(platform_byte) {
}

void SYSTEM_INFORMATION::get_platform_name(char* out) const {
    const char* text = "Unknown";
    switch (platform) {
        case PLATFORM_WINDOWS:
            text = "Windows";
            break;
        case PLATFORM_PLAYSTATION3:
            text = "PlayStation3";
            break;
        case PLATFORM_MAC:
            text = "Mac";
            break;
        case PLATFORM_XBOX360:
            text = "Xbox360";
            break;
        default:
            break;
    }
    KVCORE::copy_text_field(out, text_size, text);
}

std::int32_t SYSTEM_INFORMATION::get_os_type() const {
    return OS_UNKNOWN;
}

std::int32_t SYSTEM_INFORMATION::get_os_version() const {
    return 0;
}

bool SYSTEM_INFORMATION::check_os_feature(unsigned char feature) const {
    return feature == 1;
}

std::int32_t SYSTEM_INFORMATION::get_resource_limit(char) const {
    return 0;
}

std::int32_t SYSTEM_INFORMATION::set_resource_limit(char, std::int32_t) {
    return 0;
}

void SYSTEM_INFORMATION::get_system_name(char*) const {
}

bool SYSTEM_INFORMATION::is_supported_os() const {
    struct SUPPORTED {
        unsigned char platform;
        std::int32_t first;
        std::int32_t last;
    };
    static constexpr SUPPORTED TABLE[] = {
        {PLATFORM_WINDOWS, 7, 12},  {PLATFORM_PLAYSTATION3, 13, 14},
        {PLATFORM_MAC, 1, 5},       {PLATFORM_LINUX, OS_LINUX_4, OS_LINUX_LATER},
        {PLATFORM_XBOX360, 15, 16},
    };
    const std::int32_t type = get_os_type();
    for (const SUPPORTED& entry : TABLE) {
        if (entry.platform == platform) {
            return type >= entry.first && type <= entry.last;
        }
    }
    return false;
}

void SYSTEM_INFORMATION::get_system_details(char* out) const {
    char system_text[text_size] = "";
    char processor_text[text_size];
    char memory_text[text_size];
    char speed_text[text_size];
    get_system_name(system_text);
    processor.get_string(processor_text);
    memory.get_string(memory_text);
    speed.get_string(speed_text);
    std::snprintf(out, details_size, "%s\n%s\n%s\n%s\n", system_text, processor_text, memory_text,
                  speed_text);
}

void SYSTEM_INFORMATION::get_machine_host_information(MACHINE& machine) {
    machine.host_name[0] = '\0';
    machine.address[0] = '\0';
    std::uint32_t address = 0;
    if (KV_SOCKET::TCPIP_SOCKET::get_host_name(machine.host_name) != KV_SOCKET::SOCKET_OK) {
        machine.host_name[0] = '\0';
    } else if (KV_SOCKET::TCPIP_SOCKET::get_host_addr(address, machine.host_name) ==
               KV_SOCKET::SOCKET_OK) {
        KV_SOCKET::TCPIP_SOCKET::ip_to_str(address, machine.address, sizeof machine.address);
    }
}
