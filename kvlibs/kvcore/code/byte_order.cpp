#include "kvcore/byte_order.h"

#include <bit>
#include <cstring>

namespace KVCORE {
namespace {

// Little-endian from the host's order, and back.
template <typename T>
T swap_on_big_endian(T value) {
    if constexpr (std::endian::native != std::endian::little) {
        value = swap_bytes(value);
    }
    return value;
}

template <typename T>
T load_little(const void* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return swap_on_big_endian(value);
}

}  // namespace

std::uint16_t load_le16(const void* bytes) {
    return load_little<std::uint16_t>(bytes);
}
std::uint32_t load_le32(const void* bytes) {
    return load_little<std::uint32_t>(bytes);
}
void store_le32(void* bytes, std::uint32_t value) {
    value = swap_on_big_endian(value);
    std::memcpy(bytes, &value, sizeof value);
}

}  // namespace KVCORE
