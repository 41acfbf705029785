// What a peer sends as one message: header, trailer, enciphered payload, as NETWORK_MANAGER takes
// them apart. Input: 16 key bytes, one flag byte, the message.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "kvcore/byte_order.h"
#include "kvcore/memory.h"
#include "platform/network_message.h"

namespace {

constexpr std::size_t KEY_SIZE = 16;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void receive(NETWORK_MESSAGE& message, const std::uint8_t* data, std::size_t size) {
    void* block = KVCORE::MEMORY_LIBC::allocate(size);
    std::memcpy(block, data, size);
    message.set_buffer(static_cast<unsigned char*>(block), static_cast<std::int32_t>(size));
}

void read_to_the_end(const NETWORK_MESSAGE& message) {
    char text[16];
    std::int16_t id = 0;
    message.set_pos(0, false);
    while (message >> id) {
        message.read_dynamic_text(text, sizeof text);
    }
    require(message.get_bytes_left() <= message.get_payload_length());
}

// What arrives must be what an honest peer has sent.
void check_round_trip(const std::uint8_t* data, std::size_t size, const std::uint32_t* key) {
    NETWORK_MESSAGE message;
    message.write_data_block(data, static_cast<std::int32_t>(size));
    message.encrypted = 1;
    const NETWORK_MESSAGE original(message);
    require(message.encrypt_message(key) == 1);
    require(message.append_trailer(1) == 1);
    require(message.remove_trailer() == NETWORK_MESSAGE::TRAILER_GOOD);
    require(message.decrypt_message(key) == 1);
    require(message == original);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < KEY_SIZE + 2 || size > 100000) {
        return 0;
    }
    std::uint32_t key[4];
    for (std::size_t i = 0; i < 4; ++i) {
        key[i] = KVCORE::load_le32(data + 4 * i);
    }
    const bool forced = (data[KEY_SIZE] & 1) != 0;
    data += KEY_SIZE + 1;
    size -= KEY_SIZE + 1;

    NETWORK_MESSAGE message;
    receive(message, data, size);
    std::uint32_t reply_handler, reply_user, echo_handler, echo_user;
    message.unpack_header(reply_handler, reply_user, echo_handler, echo_user);
    message.clear_echo();
    message.pack_header(0, 0, reply_handler, reply_user);
    const std::int32_t before = message.get_length();
    message.remove_trailer();
    require(message.get_length() <= before);
    if (forced) {
        message.encrypted = 1;
    }
    message.decrypt_message(key);
    require(message.get_length() <= before);
    read_to_the_end(message);

    // The reply, built in the same message.
    message.reset_payload();
    require(message << std::int16_t{1200});
    message.encrypt_message(key);
    require(message.append_trailer(1) == 1);

    check_round_trip(data, size, key);
    return 0;
}
