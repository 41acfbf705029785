// SYSTEM_INFORMATION: what the program runs on. One object of the platform's own class is built at
// its first use and reached through get_system_information().
//
// All text operations write into a buffer of the caller; the sizes needed are given as constants.
// The object is filled once. Afterwards its operations that are const may be called from any
// thread; refresh_system_memory belongs to the main thread.
#ifndef PLATFORM_SYSTEM_INFORMATION_H
#define PLATFORM_SYSTEM_INFORMATION_H

#include <cstddef>
#include <cstdint>

// The machine on the network. All texts are empty until filled.
struct MACHINE {
    char name[256] = {};
    char host_name[100] = {};
    char address[20] = {};
};

// A rough class of speed: 0 "Very Slow" up to 4 "Very Fast".
struct SPEED {
    unsigned char speed_class = 0;

    const char* get_name() const;
    // "System Speed: %s".
    void get_string(char* out) const;
};

// The version of the operating system.
struct VERSION {
    std::int32_t major = 0;
    std::int32_t minor = 0;
    std::int32_t patch = 0;
    char build[64] = {};

    // "Version %ld.%ld.%ld", and "." with the build text if there is one.
    void get_string(char* out) const;
};

// Sizes in kilobytes; what would not fit stands as 2147483647.
struct MEMORY {
    std::int32_t total_physical = 0;
    std::int32_t total_virtual = 0;
    std::int32_t free_physical = 0;
    std::int32_t free_virtual = 0;

    // A size of this record in whole megabytes.
    static constexpr std::int32_t to_megabytes(std::int32_t kilobytes) { return kilobytes / 1024; }
    // "Physical Memory: %ld MB total (%ld MB free).\nVirtual Memory: ...", in megabytes.
    void get_string(char* out) const;
};

struct PROCESSOR {
    unsigned char kind = 0;  // 1 "AMD", 2 "Intel", 3 "PowerPC"
    unsigned char count = 1;
    std::int32_t speed_mhz = 500;

    const char* get_name() const;
    // "Processor(s): %ld %s running at %ld MHz."
    void get_string(char* out) const;
};

class SYSTEM_INFORMATION {
public:
    // The size of a buffer that holds any one text, and of one that holds get_system_details.
    static constexpr std::size_t text_size = 256;
    static constexpr std::size_t details_size = 4 * text_size + 8;

    enum PLATFORM : unsigned char {
        PLATFORM_WINDOWS = 1,
        PLATFORM_PLAYSTATION3 = 2,
        PLATFORM_MAC = 3,
        PLATFORM_LINUX = 4,
        PLATFORM_XBOX360 = 5
    };

    // Types of operating system. 1 to 5, 7 to 16 belong to the other platforms.
    enum OS_TYPE : std::int32_t {
        OS_UNSUPPORTED = 0,
        OS_UNKNOWN = 18,  // a platform without a class of its own
        OS_LINUX_4 = 20,  // by the major number of the kernel
        OS_LINUX_5 = 21,
        OS_LINUX_6 = 22,
        OS_LINUX_LATER = 23
    };

    // What get_resource_limit can be asked for.
    enum RESOURCE : char {
        RESOURCE_CORE_SIZE = 0,
        RESOURCE_OPEN_FILES = 1,
        RESOURCE_STACK_SIZE = 2
    };

    explicit SYSTEM_INFORMATION(unsigned char platform_byte);
    virtual ~SYSTEM_INFORMATION() = default;
    SYSTEM_INFORMATION(const SYSTEM_INFORMATION&) = delete;
    SYSTEM_INFORMATION& operator=(const SYSTEM_INFORMATION&) = delete;

    virtual void get_platform_name(char* out) const;
    virtual std::int32_t get_os_type() const;
    virtual std::int32_t get_os_version() const;
    virtual bool check_os_feature(unsigned char feature) const;
    // Reads the memory sizes anew.
    virtual void refresh_system_memory() = 0;
    // -1 means unlimited, 0 unknown.
    virtual std::int32_t get_resource_limit(char resource) const;
    // 1 if the limit was set; -1 asks for unlimited.
    virtual std::int32_t set_resource_limit(char resource, std::int32_t limit);
    virtual void get_system_name(char* out) const;

    // Whether the program supports this platform with this type of operating system.
    bool is_supported_os() const;

    // The system name and the processor, memory and speed texts, a line each.
    void get_system_details(char* out) const;

    // Looks up the host's name and address; a failed look-up leaves the text empty. May block on
    // the resolver.
    static void get_machine_host_information(MACHINE& machine);

    MACHINE machine;
    unsigned char platform;
    SPEED speed;
    VERSION version;
    MEMORY memory;
    PROCESSOR processor;
};

// The one object.
SYSTEM_INFORMATION& get_system_information();

#endif  // PLATFORM_SYSTEM_INFORMATION_H
