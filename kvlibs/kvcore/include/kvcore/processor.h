// What the core library needs to know of the processor.
#ifndef KVCORE_PROCESSOR_H
#define KVCORE_PROCESSOR_H

#include <cstdint>
#include <string_view>

namespace KVCORE {

// From sysconf and /proc/cpuinfo. Any thread. A fact that the system doesn't tell is 0.
class PROCESSOR_LINUX {
public:
    enum KIND : std::uint8_t { UNKNOWN = 0, AMD = 1, INTEL = 2, POWERPC = 3 };

    // The present clock rate in units of 1000 MHz.
    static double get_speed_mhz();
    // Kept once known.
    static KIND get_kind();

    // Physical cores and hardware threads of the machine; kept once known.
    static std::int32_t get_max_cores();
    static std::int32_t get_max_threads();

    // The same at the moment: what is switched off doesn't count.
    static std::int32_t get_current_cores();
    static std::int32_t get_current_threads();

    // What the text of /proc/cpuinfo says.
    struct CPU_INFO {
        KIND kind = UNKNOWN;
        double mhz = 0.0;
        std::int32_t cores = 0;    // distinct pairs of package and core
        std::int32_t threads = 0;  // "processor" entries
    };
    static CPU_INFO parse_cpu_info(std::string_view text);
};

using PROCESSOR = PROCESSOR_LINUX;

}  // namespace KVCORE

#endif  // KVCORE_PROCESSOR_H
