// LINUX_INFORMATION: SYSTEM_INFORMATION from the kernel's facts about itself.
//
// Sources: uname for the kernel, "/etc/os-release" (os-release(5)) for the system's name,
// "/proc/meminfo" and "/proc/cpuinfo" (proc(5)), sysconf and getrlimit. What can't be read keeps
// its default.
#ifndef PLATFORM_LINUX_INFORMATION_H
#define PLATFORM_LINUX_INFORMATION_H

#include <string>
#include <string_view>

#include "platform/system_information.h"

class LINUX_INFORMATION : public SYSTEM_INFORMATION {
public:
    LINUX_INFORMATION();

    // "Linux x11".
    void get_platform_name(char* out) const override;
    // From the major number of the kernel: OS_UNSUPPORTED below 4.
    std::int32_t get_os_type() const override;
    // The kernel version as major * 65536 + minor * 256 + patch, the last two limited to 255.
    std::int32_t get_os_version() const override;
    void refresh_system_memory() override;
    // The soft limit: bytes for core and stack size, a count for open files; limited to 2147483647.
    std::int32_t get_resource_limit(char resource) const override;
    // Sets the soft limit; fails above the hard limit.
    std::int32_t set_resource_limit(char resource, std::int32_t limit) override;
    // The distribution's name as it gives it, "Linux (Unsupported)" for a kernel that is too old,
    // or "Linux (Unknown)".
    void get_system_name(char* out) const override;

    // Fill the fields of the base: the kernel version, the machine's name, the processor and the
    // memory.
    void get_version();
    void get_machine();
    void get_processor();
    void get_speed();
    void get_memory();

    // The readers of the kernel's texts. Each takes what it finds and leaves the rest as it was.

    // "6.1.0-13-amd64": the numbers, and what follows them, less a "-" or ".", as the build text.
    static void parse_kernel_release(std::string_view release, VERSION& version);
    // The text of "/proc/meminfo"; false if it lacks the total. Virtual memory is physical memory
    // and swap space together. A kernel that doesn't tell what is available gives free memory and
    // caches.
    static bool parse_memory(std::string_view text, MEMORY& memory);
    // The text of "/proc/cpuinfo": kind, count of hardware threads (at most 255) and speed.
    static void parse_processor(std::string_view text, PROCESSOR& processor);
    // The value of "PRETTY_NAME", or else of "NAME", in the text of "/etc/os-release"; empty if
    // there is neither.
    static std::string parse_system_name(std::string_view text);
    // The class from the processor and the physical memory in megabytes: a machine with enough
    // memory for its row of processors is in the higher of the row's two classes.
    static unsigned char calc_speed_class(const PROCESSOR& processor, const MEMORY& memory);

private:
    std::string system_name;
};

#endif  // PLATFORM_LINUX_INFORMATION_H
