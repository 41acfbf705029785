// The hash by which the 3D libraries tell materials, vertex formats and texture files apart.
#ifndef KVMIGRATION_HASH_H
#define KVMIGRATION_HASH_H

#include <cstdint>

namespace KVMIGRATION {

// A 32-bit hash of `size` bytes; 0 for a size below 1. Stored nowhere but in this system's own
// files, and no protection against anybody.
std::uint32_t get_hash(const char* data, std::int32_t size);

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_HASH_H
