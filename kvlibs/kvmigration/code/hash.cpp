#include "kvmigration/hash.h"

namespace KVMIGRATION {

std::uint32_t get_hash(const char* data, std::int32_t size) {
    if (size < 1) {
        return 0;
    }
    const auto byte = [data](std::uint32_t i) -> std::uint32_t {
        return static_cast<unsigned char>(data[i]);
    };
    std::uint32_t hash = byte(0);
    for (std::uint32_t i = 1; i < static_cast<std::uint32_t>(size); ++i) {
        // Not a rotation: bit 31 is lost and bit 26 comes round. Stored files depend on it.
        hash = (hash << 5) | ((hash >> 26) & 31u);
        hash ^= byte(i) | (i << 8);
    }
    return hash;
}

}  // namespace KVMIGRATION
