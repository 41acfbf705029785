// The input of the target, read as a program of small numbers.
#ifndef FUZZ_TOOLKIT_DRIVE_PROGRAM_H
#define FUZZ_TOOLKIT_DRIVE_PROGRAM_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Ends the run where an invariant is broken, and tells which one.
inline void require(bool condition, const char* file = __builtin_FILE(),
                    int line = __builtin_LINE()) {
    if (!condition) {
        std::fprintf(stderr, "%s:%d: broken invariant\n", file, line);
        std::abort();
    }
}

inline std::int16_t to_coordinate(int value) {
    return static_cast<std::int16_t>(value);
}

// Beyond its end the program consists of zeros.
class PROGRAM {
public:
    PROGRAM(const std::uint8_t* bytes, std::size_t size) : at(bytes), end(bytes + size) {}
    bool is_done() const { return at == end; }
    int next() { return at == end ? 0 : *at++; }

private:
    const std::uint8_t* at;
    const std::uint8_t* end;
};

#endif  // FUZZ_TOOLKIT_DRIVE_PROGRAM_H
