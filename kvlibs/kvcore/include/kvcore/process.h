// The end of the process when nothing else is left.
#ifndef KVCORE_PROCESS_H
#define KVCORE_PROCESS_H

#include <cstdint>

namespace KVCORE {

class PROCESS_LIBC {
public:
    // Four characters as the code of a reason, the first in the top byte.
    static constexpr std::int32_t make_code(char a, char b, char c, char d) noexcept {
        return static_cast<std::int32_t>(
            (static_cast<std::uint32_t>(a) << 24) | (static_cast<std::uint32_t>(b) << 16) |
            (static_cast<std::uint32_t>(c) << 8) | static_cast<std::uint32_t>(d));
    }

    // Writes the code to the standard error stream and ends the process as the C library's abort
    // does. Allocates nothing. Any thread.
    [[noreturn]] static void abort(std::int32_t code) noexcept;
};

}  // namespace KVCORE

#endif  // KVCORE_PROCESS_H
