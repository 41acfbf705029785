#include "platform/network_message.h"

#include <zlib.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <limits>

#include "kvcore/memory.h"
#include "platform/process_tools.h"
#include "platform/xxtea.h"

namespace {

using MEMORY = KVCORE::MEMORY_LIBC;

constexpr std::int32_t HEADER = NETWORK_MESSAGE::network_header_size;
// The shortest message with a trailer: a header and form 1.
constexpr std::int32_t MIN_LENGTH = HEADER + NETWORK_MESSAGE::trailer_1_size;

// Offsets of the four tokens.
constexpr std::int32_t REPLY_HANDLER = 1;
constexpr std::int32_t REPLY_USER = 5;
constexpr std::int32_t ECHO_HANDLER = 9;
constexpr std::int32_t ECHO_USER = 13;

constexpr std::int32_t SAMPLE_SIZE = 10;
constexpr std::int32_t SAMPLE_STEP = 5;

// The cipher works on whole blocks of this many payload bytes.
constexpr std::int64_t CIPHER_BLOCK = 64;
constexpr std::int32_t TAIL_FILLER = 6;

// Tokens are opaque: they keep their bytes on every host.
void store_token(unsigned char* header, std::int32_t offset, std::uint32_t token) {
    std::memcpy(header + offset, &token, sizeof token);
}

std::uint32_t load_token(const unsigned char* header, std::int32_t offset) {
    std::uint32_t token = 0;
    std::memcpy(&token, header + offset, sizeof token);
    return token;
}

void warn_of_buffer_size(std::int32_t new_length, std::int32_t pad_offset, int pad) {
    char line[80];
    write_to_console("ENCRYPTION WARNING: Invalid buffer size.\n");
    std::snprintf(line, sizeof line, "ENCRYPTION WARNING: new_buffer_sz = %" PRId32 "\n",
                  new_length);
    write_to_console(line);
    std::snprintf(line, sizeof line, "ENCRYPTION WARNING: buffer_padding_pos = %" PRId32 "\n",
                  pad_offset);
    write_to_console(line);
    std::snprintf(line, sizeof line, "ENCRYPTION WARNING: buffer_padding = %d\n", pad);
    write_to_console(line);
}

}  // namespace

NETWORK_MESSAGE::NETWORK_MESSAGE() : MESSAGE(network_header_size, 0) {
}

NETWORK_MESSAGE::NETWORK_MESSAGE(const NETWORK_MESSAGE& other)
    : MESSAGE(other), time_1(other.time_1), time_2(other.time_2), time_3(other.time_3) {
}

NETWORK_MESSAGE& NETWORK_MESSAGE::operator=(const NETWORK_MESSAGE& other) {
    MESSAGE::operator=(other);
    time_1 = other.time_1;
    time_2 = other.time_2;
    time_3 = other.time_3;
    return *this;
}

void NETWORK_MESSAGE::move_from(NETWORK_MESSAGE& other) {
    MESSAGE::move_from(other);
    time_1 = other.time_1;
    time_2 = other.time_2;
    time_3 = other.time_3;
}

void NETWORK_MESSAGE::pack_header(std::uint32_t reply_handler, std::uint32_t reply_user,
                                  std::uint32_t echo_handler, std::uint32_t echo_user) {
    if (!allocate_buffer(HEADER)) {
        return;
    }
    if (length < HEADER) {
        std::memset(buffer + length, 0, static_cast<std::size_t>(HEADER - length));
    }
    buffer[0] = static_cast<unsigned char>(byte_order);
    store_token(buffer, REPLY_HANDLER, reply_handler);
    store_token(buffer, REPLY_USER, reply_user);
    if (echo_handler != 0) {
        store_token(buffer, ECHO_HANDLER, echo_handler);
    }
    if (echo_user != 0) {
        store_token(buffer, ECHO_USER, echo_user);
    }
}

void NETWORK_MESSAGE::clear_echo() {
    if (length >= HEADER) {
        std::memset(buffer + ECHO_HANDLER, 0, static_cast<std::size_t>(HEADER - ECHO_HANDLER));
    }
}

void NETWORK_MESSAGE::unpack_header(std::uint32_t& reply_handler, std::uint32_t& reply_user,
                                    std::uint32_t& echo_handler, std::uint32_t& echo_user) {
    if (length < HEADER) {
        reply_handler = reply_user = echo_handler = echo_user = 0;
        return;
    }
    byte_order = buffer[0];
    reply_handler = load_token(buffer, REPLY_HANDLER);
    reply_user = load_token(buffer, REPLY_USER);
    echo_handler = load_token(buffer, ECHO_HANDLER);
    echo_user = load_token(buffer, ECHO_USER);
}

std::uint32_t NETWORK_MESSAGE::get_crc(std::int32_t size) const {
    const std::int32_t end = size < length ? size : length;
    if (end <= HEADER) {
        return 0;
    }
    unsigned char sample[SAMPLE_SIZE] = {};
    for (std::int32_t i = 0; i < SAMPLE_SIZE && HEADER + SAMPLE_STEP * i < end; ++i) {
        sample[i] = buffer[HEADER + SAMPLE_STEP * i];
    }
    return static_cast<std::uint32_t>(::crc32(0, sample, SAMPLE_SIZE));
}

unsigned char NETWORK_MESSAGE::append_trailer(std::int32_t protocol_version) {
    const std::uint32_t checksum = get_crc(length);
    set_pos(0, true);
    bool done = true;
    if (protocol_version >= 1) {
        const unsigned char is_encrypted = encrypted != 0;
        done = (*this << is_encrypted) && (*this << static_cast<unsigned char>(2));
    } else {
        done = *this << static_cast<unsigned char>(1);
    }
    return done && (*this << checksum);
}

NETWORK_MESSAGE::TRAILER_RESULT NETWORK_MESSAGE::remove_trailer() {
    if (length < MIN_LENGTH) {
        return TRAILER_TOO_SHORT;
    }
    std::uint32_t checksum = 0;
    set_pos(static_cast<std::int32_t>(sizeof checksum), true);
    const bool has_checksum = *this >> checksum;

    const unsigned char version = buffer[length - trailer_1_size];
    if (version == 0) {
        shrink_buffer(trailer_1_size);
        set_pos(0, false);
        return TRAILER_BAD_VERSION;
    }
    const bool is_form_2 = version >= 2;
    if (is_form_2) {
        const unsigned char is_encrypted = buffer[length - trailer_2_size];
        if (is_encrypted > 1) {
            return TRAILER_BAD_ENCRYPTED;
        }
        encrypted = is_encrypted;
    } else {
        encrypted = 0;
    }
    shrink_buffer(is_form_2 ? trailer_2_size : trailer_1_size);
    set_pos(0, false);
    return has_checksum && checksum == get_crc(length) ? TRAILER_GOOD : TRAILER_BAD_CHECKSUM;
}

unsigned char NETWORK_MESSAGE::encrypt_message(const std::uint32_t* key) {
    const std::int32_t plain_size = get_payload_length();
    if (!encrypted || plain_size == 0) {
        return 0;
    }
    const std::int64_t padded_size = (plain_size + CIPHER_BLOCK - 1) / CIPHER_BLOCK * CIPHER_BLOCK;
    const std::int64_t new_length = HEADER + 2 * padded_size + TAIL_FILLER;
    if (new_length > std::numeric_limits<std::int32_t>::max()) {
        return 0;
    }
    // Zeroed throughout, so that pad and filler carry nothing of this process's memory.
    auto* block = static_cast<unsigned char*>(
        MEMORY::allocate(static_cast<std::size_t>(new_length), MEMORY::CLEAR));
    if (!block) {
        return 0;
    }
    MEMORY::copy(block, buffer, static_cast<std::size_t>(length));
    block[HEADER + padded_size] = static_cast<unsigned char>(padded_size - plain_size);
    XXTEA::encode_bytes(block + HEADER, static_cast<std::int32_t>(padded_size / 4), key);
    set_buffer(block, static_cast<std::int32_t>(new_length));
    set_pos(0, false);
    return 1;
}

unsigned char NETWORK_MESSAGE::decrypt_message(const std::uint32_t* key) {
    const std::int32_t size = get_payload_length();
    if (!encrypted || size == 0) {
        return 0;
    }
    // The filler is as long as the cipher text and its pad byte, plus five: an eighth of the size
    // is the words of the first half.
    const std::int32_t words = size / 8;
    const std::int32_t pad_offset = words * 4;
    const int pad = buffer[HEADER + pad_offset];
    const std::int32_t new_length = pad_offset - pad + HEADER;
    set_pos(0, false);
    if (words < 2 || new_length <= HEADER) {
        warn_of_buffer_size(new_length, pad_offset, pad);
        return 0;
    }
    auto* block = static_cast<unsigned char*>(
        MEMORY::allocate(static_cast<std::size_t>(HEADER + pad_offset)));
    if (!block) {
        return 0;
    }
    MEMORY::copy(block, buffer, static_cast<std::size_t>(HEADER + pad_offset));
    XXTEA::decode_bytes(block + HEADER, words, key);
    set_buffer(block, HEADER + pad_offset);
    shrink_buffer(pad);
    set_pos(0, false);
    return 1;
}
