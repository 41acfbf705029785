// Translates the bits of one set of flags into those of another.
#ifndef MODULES_CODE_WINMAN_FLAG_MAP_H
#define MODULES_CODE_WINMAN_FLAG_MAP_H

#include <cstddef>
#include <cstdint>

struct FLAG_PAIR {
    std::uint32_t from, to;
};

// Bits that no pair names are dropped.
template <std::size_t COUNT>
std::uint32_t map_flags(const FLAG_PAIR (&pairs)[COUNT], std::uint32_t flags) {
    std::uint32_t mapped = 0;
    for (const FLAG_PAIR& pair : pairs) {
        mapped |= (flags & pair.from) != 0 ? pair.to : 0;
    }
    return mapped;
}

#endif  // MODULES_CODE_WINMAN_FLAG_MAP_H
