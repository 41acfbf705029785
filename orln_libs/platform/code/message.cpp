#include "platform/message.h"

#include <zlib.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <limits>

#include "kvcore/memory.h"

namespace {

using MEMORY = KVCORE::MEMORY_LIBC;

constexpr std::int64_t MAX_LENGTH = std::numeric_limits<std::int32_t>::max();
// Bit 31 of a stored length: a second number follows.
constexpr std::uint32_t HAS_UNCOMPRESSED_SIZE = 0x80000000u;
// No deflate stream yields more than this for each of its bytes: a match of 258 bytes takes at
// least two bits.
constexpr std::int64_t MAX_DEFLATE_RATIO = 1032;

constexpr std::size_t TEXT_HEADER_SIZE = 17;
constexpr std::size_t OLD_TEXT_HEADER_SIZE = 9;

unsigned char* allocate_bytes(std::int32_t size) {
    return static_cast<unsigned char*>(MEMORY::allocate(static_cast<std::size_t>(size)));
}

int hex_value(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

bool read_hex_number(const char* digits, std::uint32_t& number) {
    number = 0;
    for (int i = 0; i < 8; ++i) {
        const int value = hex_value(digits[i]);
        if (value < 0) {
            return false;
        }
        number = (number << 4) | static_cast<std::uint32_t>(value);
    }
    return true;
}

// Decodes two digits for each byte.
bool read_hex_bytes(const char* digits, unsigned char* bytes, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i, digits += 2) {
        const int high = hex_value(digits[0]);
        const int low = hex_value(digits[1]);
        if (high < 0 || low < 0) {
            return false;
        }
        bytes[i] = static_cast<unsigned char>(high << 4 | low);
    }
    return true;
}

}  // namespace

MESSAGE::MESSAGE(std::int16_t message_header_size, std::int32_t message_block_size)
    : header_size(std::max<std::int16_t>(message_header_size, 0)),
      block_size(message_block_size > 0 ? message_block_size : default_block_size) {
}

MESSAGE::MESSAGE(const MESSAGE& other)
    : DATA_DEVICE(other),
      DATA_DEVICE_CLIENT(other),
      header_size(other.header_size),
      block_size(other.block_size) {
    MESSAGE::operator=(other);
}

MESSAGE::~MESSAGE() {
    MEMORY::free(buffer);
}

MESSAGE& MESSAGE::operator=(const MESSAGE& other) {
    if (this == &other) {
        return *this;
    }
    if (other.length == 0) {
        clear();
    } else {
        // The old block is kept where it is large enough.
        if (!allocate_buffer(other.length)) {
            return *this;
        }
        MEMORY::copy(buffer, other.buffer, static_cast<std::size_t>(other.length));
        length = other.length;
        pos = other.pos;
        uncompressed_size = other.uncompressed_size;
    }
    byte_order = other.byte_order;
    header_size = other.header_size;
    return *this;
}

bool MESSAGE::operator==(const MESSAGE& other) const {
    return length == other.length &&
           (length == 0 ||
            MEMORY::compare(buffer, other.buffer, static_cast<std::size_t>(length)) == 0);
}

std::int32_t MESSAGE::get_pos() const {
    return length == 0 ? 0 : pos - header_size;
}

void MESSAGE::set_pos(std::int32_t offset, bool from_end) const {
    if (length == 0) {
        return;
    }
    const std::int64_t target =
        from_end ? std::int64_t{length} - offset : std::int64_t{header_size} + offset;
    // A message can be shorter than its header when it came from outside.
    pos = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::max<std::int64_t>(target, header_size), length));
}

void MESSAGE::move_to_payload() const {
    set_pos(0, false);
}

std::int64_t MESSAGE::get_bytes_left() const {
    return length > pos ? length - pos : 0;
}

std::int32_t MESSAGE::read_data_block(void* data, std::int32_t size) const {
    const std::int32_t count = std::min(size, static_cast<std::int32_t>(get_bytes_left()));
    if (count <= 0) {
        return finish_transfer(size, 0);
    }
    std::memcpy(data, buffer + pos, static_cast<std::size_t>(count));
    pos += count;
    return finish_transfer(size, count);
}

std::int32_t MESSAGE::write_data_block(const void* data, std::int32_t size) {
    if (size < 0 || !grow_for_write(size)) {
        finish_transfer(1, 0);
        return 0;
    }
    if (size != 0) {
        std::memcpy(buffer + pos, data, static_cast<std::size_t>(size));
        pos += size;
    }
    return finish_transfer(size, size);
}

bool MESSAGE::grow_for_write(std::int32_t size) {
    const bool was_empty = length == 0;
    const std::int64_t end = std::int64_t{was_empty ? header_size : pos} + size;
    if (!was_empty && end <= length) {
        return true;
    }
    if (end > MAX_LENGTH || !allocate_buffer(static_cast<std::int32_t>(end))) {
        return false;
    }
    length = static_cast<std::int32_t>(end);
    uncompressed_size = 0;
    if (was_empty) {
        pos = header_size;
        if (header_size != 0) {
            std::memset(buffer, 0, static_cast<std::size_t>(header_size));
        }
    }
    return true;
}

std::int32_t MESSAGE::calculate_buffer_allocation_size(std::int32_t size) const {
    if (size < 0) {
        return -1;
    }
    const std::int64_t blocks = (std::int64_t{size} + block_size - 1) / block_size;
    const std::int64_t rounded = blocks * block_size;
    return rounded > MAX_LENGTH ? -1 : static_cast<std::int32_t>(rounded);
}

unsigned char MESSAGE::allocate_buffer(std::int32_t size) {
    const std::int32_t rounded = calculate_buffer_allocation_size(size);
    if (rounded < 0) {
        return 0;
    }
    if (rounded > capacity) {
        void* block = MEMORY::reallocate(buffer, static_cast<std::size_t>(rounded));
        if (!block) {
            return 0;
        }
        buffer = static_cast<unsigned char*>(block);
        capacity = rounded;
    }
    return 1;
}

void MESSAGE::set_buffer(unsigned char* new_buffer, std::int32_t size) {
    free_buffer();
    buffer = new_buffer;
    length = capacity = new_buffer && size > 0 ? size : 0;
}

void MESSAGE::free_buffer() {
    MEMORY::free(buffer);
    buffer = nullptr;
    length = pos = capacity = uncompressed_size = 0;
}

void MESSAGE::clear() {
    free_buffer();
}

void MESSAGE::reset_payload() {
    if (header_size == 0 || length < header_size) {
        clear();
        return;
    }
    length = pos = header_size;
    uncompressed_size = 0;
}

void MESSAGE::shrink_buffer(std::int32_t size) {
    if (size > length) {
        clear();
    } else if (size > 0) {
        length -= size;
    }
}

void MESSAGE::move_from(MESSAGE& other) {
    if (this == &other) {
        return;
    }
    clear();
    byte_order = other.byte_order;
    buffer = other.buffer;
    length = other.length;
    uncompressed_size = other.uncompressed_size;
    pos = other.pos;
    capacity = other.capacity;
    block_size = other.block_size;
    other.buffer = nullptr;
    other.clear();
}

unsigned char MESSAGE::compress(std::int32_t level) {
    if (length == 0) {
        return 1;
    }
    if (uncompressed_size != 0) {
        return 0;
    }
    const std::int64_t room = std::int64_t{length} * 1001 / 1000 + 12;
    if (room > MAX_LENGTH) {
        return 0;
    }
    unsigned char* block = allocate_bytes(static_cast<std::int32_t>(room));
    uLongf size = static_cast<uLongf>(room);
    if (::compress2(block, &size, buffer, static_cast<uLong>(length), level) != Z_OK) {
        MEMORY::free(block);
        return 0;
    }
    const std::int32_t old_length = length;
    block = static_cast<unsigned char*>(MEMORY::reallocate(block, size));
    set_buffer(block, static_cast<std::int32_t>(size));
    uncompressed_size = old_length;
    return 1;
}

unsigned char MESSAGE::uncompress() {
    if (length == 0) {
        return 1;
    }
    // The size may come from a peer: nothing is allocated that the data can't fill.
    if (uncompressed_size <= 0 || uncompressed_size > length * MAX_DEFLATE_RATIO) {
        return 0;
    }
    unsigned char* block = allocate_bytes(uncompressed_size);
    uLongf size = static_cast<uLongf>(uncompressed_size);
    if (::uncompress(block, &size, buffer, static_cast<uLong>(length)) != Z_OK || size == 0) {
        MEMORY::free(block);
        return 0;
    }
    set_buffer(block, static_cast<std::int32_t>(size));
    return 1;
}

unsigned char MESSAGE::put_to_data_device(DATA_DEVICE& device) const {
    return (device << static_cast<unsigned char>(byte_order)) &&
           (device << (static_cast<std::uint32_t>(length) | HAS_UNCOMPRESSED_SIZE)) &&
           (device << uncompressed_size) && device.write_data_block(buffer, length) == length;
}

unsigned char MESSAGE::get_from_data_device(const DATA_DEVICE& device) {
    clear();
    unsigned char order = 0;
    std::uint32_t number = 0;
    std::int32_t stored_uncompressed_size = 0;
    if (!(device >> order) || !(device >> number)) {
        return 0;
    }
    if ((number & HAS_UNCOMPRESSED_SIZE) != 0 && !(device >> stored_uncompressed_size)) {
        return 0;
    }
    const std::int32_t new_length = static_cast<std::int32_t>(number & ~HAS_UNCOMPRESSED_SIZE);
    if (new_length > device.get_bytes_left() || !allocate_buffer(new_length) ||
        device.read_data_block(buffer, new_length) != new_length) {
        clear();
        return 0;
    }
    byte_order = order;
    length = new_length;
    uncompressed_size = new_length != 0 ? stored_uncompressed_size : 0;
    move_to_payload();
    return 1;
}

unsigned char MESSAGE::put_to_string(char* out, std::int32_t size, bool whole) const {
    const std::int32_t first = whole ? 0 : std::min(pos, length);
    const std::int32_t count = length - first;
    const std::int64_t needed = std::int64_t{count} * 2 + std::int64_t{TEXT_HEADER_SIZE} + 1;
    if (!out || size < needed) {
        return 0;
    }
    const auto covered_size =
        static_cast<std::uint32_t>(uncompressed_size) - static_cast<std::uint32_t>(first);
    // Any order but 0 is big-endian; one that is no digit would not be a character of text.
    const std::int32_t order = byte_order >= 0 && byte_order <= 9 ? byte_order : BYTEORDER_BIG;
    std::snprintf(out, TEXT_HEADER_SIZE + 1, "%c%08" PRIX32 "%08" PRIX32, '0' + order,
                  static_cast<std::uint32_t>(count) | HAS_UNCOMPRESSED_SIZE, covered_size);
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    char* digit = out + TEXT_HEADER_SIZE;
    for (std::int32_t i = first; i < length; ++i) {
        *digit++ = DIGITS[buffer[i] >> 4];
        *digit++ = DIGITS[buffer[i] & 15];
    }
    *digit = '\0';
    return 1;
}

unsigned char MESSAGE::get_from_string(const char* text, bool replace) {
    const std::size_t text_length = text ? std::strlen(text) : 0;
    std::uint32_t number = 0;
    std::uint32_t second = 0;
    if (text_length < TEXT_HEADER_SIZE || !read_hex_number(text + 1, number)) {
        return 0;
    }
    const bool has_second = (number & HAS_UNCOMPRESSED_SIZE) != 0;
    if (has_second && !read_hex_number(text + 9, second)) {
        return 0;
    }
    const std::size_t data_offset = has_second ? TEXT_HEADER_SIZE : OLD_TEXT_HEADER_SIZE;
    const std::int32_t count = static_cast<std::int32_t>(number & ~HAS_UNCOMPRESSED_SIZE);
    if ((text_length - data_offset) / 2 < static_cast<std::size_t>(count)) {
        return 0;
    }
    MESSAGE decoded(0, block_size);
    if (!decoded.allocate_buffer(count) ||
        !read_hex_bytes(text + data_offset, decoded.buffer, count)) {
        return 0;
    }
    if (!replace) {
        return write_data_block(decoded.buffer, count) == count;
    }
    clear();
    decoded.length = count;
    decoded.byte_order = static_cast<unsigned char>(text[0] - '0');
    move_from(decoded);
    // Part of a message that isn't compressed carries a negative number here: 0 less the position.
    const std::int32_t stored_size = static_cast<std::int32_t>(second);
    uncompressed_size = length != 0 ? std::max(stored_size, 0) : 0;
    move_to_payload();
    return 1;
}
