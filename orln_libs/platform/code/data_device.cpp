#include "platform/data_device.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

#include "kvcore/string.h"

unsigned char DATA_DEVICE::write_dynamic_text(const char* text) {
    const std::size_t length = text ? std::strlen(text) : 0;
    if (length > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        finish_transfer(1, 0);
        return 0;
    }
    const std::int32_t count = static_cast<std::int32_t>(length);
    if (!(*this << count)) {
        return 0;
    }
    return count == 0 || write_data_block(text, count) == count;
}

unsigned char DATA_DEVICE::read_dynamic_text(char*& text, bool /*flag*/) const {
    text = nullptr;
    std::int32_t count = 0;
    if (!(*this >> count)) {
        return 0;
    }
    if (count < 1) {
        return 1;
    }
    if (count > get_bytes_left()) {
        finish_transfer(1, 0);
        return 0;
    }
    auto block = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(count) + 1);
    if (read_data_block(block.get(), count) != count) {
        return 0;
    }
    block[static_cast<std::size_t>(count)] = '\0';
    text = block.release();
    return 1;
}

unsigned char DATA_DEVICE::read_dynamic_text(char* buffer, std::int32_t size, bool /*flag*/) const {
    if (size > 0) {
        buffer[0] = '\0';
    }
    std::int32_t count = 0;
    if (!(*this >> count)) {
        return 0;
    }
    if (count < 1) {
        return 1;
    }
    const std::int32_t taken = std::min(count, std::max(size - 1, 0));
    if (taken > 0) {
        if (read_data_block(buffer, taken) != taken) {
            buffer[0] = '\0';
            return 0;
        }
        buffer[taken] = '\0';
    }
    for (std::int32_t dropped = taken; dropped < count; ++dropped) {
        char ignored;
        if (!(*this >> ignored)) {
            return 0;
        }
    }
    return 1;
}

TRANSFER_RESULT DATA_DEVICE::operator<<(const KVCORE::STRING& text) {
    const std::int32_t count = text.get_length();
    if (!(*this << count)) {
        return TRANSFER_RESULT(false);
    }
    if (count == 0) {
        return TRANSFER_RESULT(true);
    }
    const auto units = std::make_unique_for_overwrite<char16_t[]>(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const std::uint16_t unit = text.is_16bit() ? static_cast<std::uint16_t>(text.get_16bit()[i])
                                                   : static_cast<unsigned char>(text.get_8bit()[i]);
        units[static_cast<std::size_t>(i)] = static_cast<char16_t>(in_device_order(unit));
    }
    const std::int32_t size = count * 2;
    return TRANSFER_RESULT(write_data_block(units.get(), size) == size);
}

TRANSFER_RESULT DATA_DEVICE::operator>>(KVCORE::STRING& text) const {
    // The length field of a string buffer has 24 bits.
    constexpr std::int32_t MAX_UNITS = (1 << 24) - 1;

    text.clear();
    std::int32_t count = 0;
    if (!(*this >> count)) {
        return TRANSFER_RESULT(false);
    }
    if (count < 1) {
        return TRANSFER_RESULT(true);
    }
    if (count > MAX_UNITS || count * 2 > get_bytes_left()) {
        finish_transfer(1, 0);
        return TRANSFER_RESULT(false);
    }
    const auto units = std::make_unique_for_overwrite<char16_t[]>(static_cast<std::size_t>(count));
    if (read_data_block(units.get(), count * 2) != count * 2) {
        return TRANSFER_RESULT(false);
    }
    for (std::int32_t i = 0; i < count; ++i) {
        char16_t& unit = units[static_cast<std::size_t>(i)];
        unit = from_device_order<char16_t>(static_cast<std::uint16_t>(unit));
    }
    text.set(units.get(), count);
    return TRANSFER_RESULT(true);
}
