// DATA_DEVICE: a typed, byte-order-aware stream of values on a file (DATA_FILE) or in memory
// (MESSAGE).
//
//     std::uint16_t count;
//     if (!(device >> count)) {
//         return 0;
//     }
//
// Stored forms: one byte for char, unsigned char and bool; 2, 4 and 8 bytes for the other numbers;
// dynamic text as a 4-byte count and that many bytes without a terminator; KVCORE::STRING as a
// 4-byte count of UTF-16 units and the units, 2 bytes each. Numbers and units are little-endian
// when the device's byte_order is 0 and big-endian otherwise.
//
// A device has no lock and belongs to one thread at a time.
#ifndef PLATFORM_DATA_DEVICE_H
#define PLATFORM_DATA_DEVICE_H

#include <bit>
#include <concepts>
#include <cstdint>

#include "kvcore/byte_order.h"

namespace KVCORE {
class STRING;
}

// An argument of DISK_MANAGER::open_data_file; a device itself is only ever little or big.
enum BYTEORDER_TYPE : std::int32_t {
    BYTEORDER_STORED = -1,  // the order lies in the file's first byte
    BYTEORDER_LITTLE = 0,
    BYTEORDER_BIG = 1
};

// What a primitive yields: true for success. It converts to bool like a flag, but can't be
// shifted, so that `device << a << b`, which would lose a failure, doesn't compile.
class [[nodiscard]] TRANSFER_RESULT {
public:
    constexpr explicit TRANSFER_RESULT(bool done) : done_(done) {}
    constexpr operator bool() const { return done_; }

    template <class T>
    void operator<<(const T&) const = delete;
    template <class T>
    void operator>>(T&&) const = delete;

private:
    bool done_;
};

// The number types that a device stores as they are.
template <class T>
concept DEVICE_NUMBER =
    std::same_as<T, signed char> || std::same_as<T, char> || std::same_as<T, unsigned char> ||
    std::same_as<T, std::int16_t> || std::same_as<T, std::uint16_t> ||
    std::same_as<T, std::int32_t> || std::same_as<T, std::uint32_t> || std::same_as<T, float> ||
    std::same_as<T, std::int64_t> || std::same_as<T, std::uint64_t> || std::same_as<T, double>;

class DATA_DEVICE {
public:
    virtual ~DATA_DEVICE() = default;

    // The position in bytes. Moving it doesn't count as changing the device: clients read from a
    // const device.
    virtual std::int32_t get_pos() const = 0;
    // Each device documents how it counts `offset` from its end.
    virtual void set_pos(std::int32_t offset, bool from_end) const = 0;

    // Reads dynamic text. A count below 1 sets `text` to null and yields 1. Otherwise `text` is a
    // zero-terminated block from array new that the caller owns, or null after a failed read. A
    // count that the device can't hold fails before anything is allocated. The flag has no effect.
    virtual unsigned char read_dynamic_text(char*& text, bool flag = false) const;
    // The same into a field of `size` bytes: takes at most size - 1 and drops the rest, so that
    // the stream stays in step. `buffer` is zero-terminated in every case (size 0: untouched).
    virtual unsigned char read_dynamic_text(char* buffer, std::int32_t size,
                                            bool flag = false) const;

    // Raw transfers of `size` bytes; each yields the bytes done. Fewer than asked for is a failure.
    // An implementation ends with finish_transfer.
    virtual std::int32_t read_data_block(void* data, std::int32_t size) const = 0;
    virtual std::int32_t write_data_block(const void* data, std::int32_t size) = 0;

    // Bytes that can still be read. No count from a device is believed beyond it.
    virtual std::int64_t get_bytes_left() const = 0;

    // Writes dynamic text; null is written as count 0.
    unsigned char write_dynamic_text(const char* text);

    // Numbers. A failed read leaves `value` as it was. Only the exact types are taken: size_t,
    // char16_t, an enumeration or a pointer must be cast to the stored width by the caller.
    template <DEVICE_NUMBER T>
    TRANSFER_RESULT operator<<(T value) {
        const auto bits = in_device_order(value);
        return TRANSFER_RESULT(write_data_block(&bits, sizeof bits) == sizeof bits);
    }
    template <DEVICE_NUMBER T>
    TRANSFER_RESULT operator>>(T& value) const {
        decltype(in_device_order(value)) bits;
        if (read_data_block(&bits, sizeof bits) != sizeof bits) {
            return TRANSFER_RESULT(false);
        }
        value = from_device_order<T>(bits);
        return TRANSFER_RESULT(true);
    }

    // A flag is one byte, 0 or 1; any other byte reads as true.
    TRANSFER_RESULT operator<<(std::same_as<bool> auto value) {
        return *this << static_cast<unsigned char>(value);
    }
    TRANSFER_RESULT operator>>(bool& value) const {
        unsigned char byte = 0;
        const TRANSFER_RESULT done = *this >> byte;
        if (done) {
            value = byte != 0;
        }
        return done;
    }

    // A count below 1 clears the string, and so does a failed read. A string is refused before
    // anything is allocated if the device can't hold that many units.
    TRANSFER_RESULT operator<<(const KVCORE::STRING& text);
    // Which form of text is meant? See write_dynamic_text.
    TRANSFER_RESULT operator<<(const char* text) = delete;
    TRANSFER_RESULT operator>>(KVCORE::STRING& text) const;

    // 0: little-endian, otherwise big-endian.
    std::int32_t get_byte_order() const { return byte_order; }
    void set_byte_order(std::int32_t order) { byte_order = order; }

    // True if the last transfer failed; the next successful one clears it.
    bool get_error() const { return error != 0; }

protected:
    explicit DATA_DEVICE(std::int32_t order = BYTEORDER_LITTLE) : byte_order(order) {}
    DATA_DEVICE(const DATA_DEVICE&) = default;
    DATA_DEVICE& operator=(const DATA_DEVICE&) = default;

    // Records in the error flag whether a transfer was whole, and yields `done`.
    std::int32_t finish_transfer(std::int32_t asked, std::int32_t done) const {
        error = done != asked;
        return done;
    }

    std::int32_t byte_order;
    mutable std::int16_t error = 0;

private:
    bool is_swapped() const {
        return (byte_order != 0) == (std::endian::native == std::endian::little);
    }

    // The unsigned word that holds `value` as the device stores it.
    template <class T>
    auto in_device_order(T value) const {
        if constexpr (sizeof(T) == 1) {
            return std::bit_cast<std::uint8_t>(value);
        } else {
            const auto bits = [value] {
                if constexpr (sizeof(T) == 2) {
                    return std::bit_cast<std::uint16_t>(value);
                } else if constexpr (sizeof(T) == 4) {
                    return std::bit_cast<std::uint32_t>(value);
                } else {
                    return std::bit_cast<std::uint64_t>(value);
                }
            }();
            return is_swapped() ? KVCORE::swap_bytes(bits) : bits;
        }
    }
    template <class T, class BITS>
    T from_device_order(BITS bits) const {
        if constexpr (sizeof(T) == 1) {
            return std::bit_cast<T>(bits);
        } else {
            return std::bit_cast<T>(is_swapped() ? KVCORE::swap_bytes(bits) : bits);
        }
    }
};

#endif  // PLATFORM_DATA_DEVICE_H
