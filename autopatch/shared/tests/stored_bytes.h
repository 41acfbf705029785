// Stored forms written down byte by byte, without the devices that are under test.
#ifndef AUTOPATCH_TESTS_STORED_BYTES_H
#define AUTOPATCH_TESTS_STORED_BYTES_H

#include <cstdint>
#include <string>
#include <vector>

#include "platform/message.h"

class STORED_BYTES {
public:
    explicit STORED_BYTES(bool big_endian = false) : big_endian_(big_endian) {}

    STORED_BYTES& u8(unsigned value) {
        bytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    STORED_BYTES& u16(unsigned value) { return number(value, 2); }
    STORED_BYTES& u32(std::uint32_t value) { return number(value, 4); }
    STORED_BYTES& text(const std::string& value) {
        u32(static_cast<std::uint32_t>(value.size()));
        bytes.insert(bytes.end(), value.begin(), value.end());
        return *this;
    }
    STORED_BYTES& append(const STORED_BYTES& other) {
        bytes.insert(bytes.end(), other.bytes.begin(), other.bytes.end());
        return *this;
    }
    // The fields of an add-on record up to the description.
    STORED_BYTES& head(unsigned type, unsigned version, unsigned minimum, const std::string& path) {
        return u16(type).u16(version).u16(minimum).u8(1).text(path).text("title");
    }
    STORED_BYTES& empty_image() { return u8(1).u16(0).u16(0); }
    // What follows the children's count in the newest format: no lines, no picture, no children.
    STORED_BYTES& plain_record(const std::string& path, unsigned version = 5) {
        return head(1, version, 1, path).u16(0).empty_image().u32(0).u32(0).u8(0);
    }

    // Fills `message` so that it can be read from its start.
    void put_into(MESSAGE& message) const {
        message.clear();
        message.set_byte_order(big_endian_ ? 1 : 0);
        message.write_data_block(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        message.set_pos(0, false);
    }
    static STORED_BYTES of(const MESSAGE& message) {
        STORED_BYTES result;
        const unsigned char* start = message.get_buffer() + message.get_header_size();
        result.bytes.assign(start, start + message.get_payload_length());
        return result;
    }

    std::vector<std::uint8_t> bytes;

private:
    STORED_BYTES& number(std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (big_endian_ ? width - 1 - i : i);
            u8((value >> shift) & 0xFF);
        }
        return *this;
    }

    bool big_endian_;
};

#endif  // AUTOPATCH_TESTS_STORED_BYTES_H
