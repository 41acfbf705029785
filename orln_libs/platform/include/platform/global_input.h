// GLOBAL_INPUT: when the user last did something. For the main thread only.
#ifndef PLATFORM_GLOBAL_INPUT_H
#define PLATFORM_GLOBAL_INPUT_H

#include <cstdint>

class GLOBAL_INPUT {
public:
    // `time_ms` of get_ms_count().
    static void record_input(std::uint32_t time_ms) { last_input_time = time_ms; }
    // 0 before the first input.
    static std::uint32_t get_last_input_time() { return last_input_time; }

private:
    static inline std::uint32_t last_input_time = 0;
};

#endif  // PLATFORM_GLOBAL_INPUT_H
