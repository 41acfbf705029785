#include "kvcore/byte_order.h"

#include <bit>
#include <cstring>

namespace KVCORE {
namespace {

template <typename T>
T load(const void* bytes, bool little) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return little == (std::endian::native == std::endian::little) ? value : swap_bytes(value);
}

template <typename T>
void store_little(void* bytes, T value) {
    if constexpr (std::endian::native != std::endian::little) {
        value = swap_bytes(value);
    }
    std::memcpy(bytes, &value, sizeof value);
}

}  // namespace

std::uint16_t load_le16(const void* bytes) {
    return load<std::uint16_t>(bytes, true);
}
std::uint32_t load_le32(const void* bytes) {
    return load<std::uint32_t>(bytes, true);
}
std::uint64_t load_le64(const void* bytes) {
    return load<std::uint64_t>(bytes, true);
}
std::uint16_t load_be16(const void* bytes) {
    return load<std::uint16_t>(bytes, false);
}
std::uint32_t load_be32(const void* bytes) {
    return load<std::uint32_t>(bytes, false);
}
void store_le16(void* bytes, std::uint16_t value) {
    store_little(bytes, value);
}
void store_le32(void* bytes, std::uint32_t value) {
    store_little(bytes, value);
}
void store_le64(void* bytes, std::uint64_t value) {
    store_little(bytes, value);
}

}  // namespace KVCORE
