// Byte order and width helpers for everything that is stored or sent.
//
// The system's `long` is 32 bits wide, so fields, wire and file data and arithmetic that wraps use
// std::int32_t and std::uint32_t. Numbers are written little-endian; a reader that meets the other
// order swaps. All operations here are pure and safe on unaligned memory.
#ifndef KVCORE_BYTE_ORDER_H
#define KVCORE_BYTE_ORDER_H

#include <cstdint>

namespace KVCORE {

// The value with its bytes reversed.
constexpr std::uint16_t swap_bytes(std::uint16_t v) {
    return static_cast<std::uint16_t>((v >> 8) | (v << 8));
}
constexpr std::uint32_t swap_bytes(std::uint32_t v) {
    return (v >> 24) | ((v >> 8) & 0x0000FF00u) | ((v << 8) & 0x00FF0000u) | (v << 24);
}
constexpr std::uint64_t swap_bytes(std::uint64_t v) {
    return (static_cast<std::uint64_t>(swap_bytes(static_cast<std::uint32_t>(v))) << 32) |
           swap_bytes(static_cast<std::uint32_t>(v >> 32));
}

// Reads a little-endian number from `bytes`, which must hold its width.
std::uint16_t load_le16(const void* bytes);
std::uint32_t load_le32(const void* bytes);

// Writes a number to `bytes` in little-endian order.
void store_le32(void* bytes, std::uint32_t value);

}  // namespace KVCORE

#endif  // KVCORE_BYTE_ORDER_H
