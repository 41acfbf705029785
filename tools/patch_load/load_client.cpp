#include "load_client.h"

#include <zlib.h>

#include <algorithm>

#include "autopatch/autopatch_types.h"
#include "autopatch/patch_protocol.h"

namespace {

constexpr unsigned char PLATFORM = 4;

std::uint32_t add_to_crc(std::uint32_t crc, const unsigned char* bytes, std::uint32_t size) {
    return static_cast<std::uint32_t>(::crc32(crc, bytes, size));
}

}  // namespace

LOAD_CLIENT::LOAD_CLIENT(NETWORK_MANAGER& network, const char* host, std::uint16_t port)
    : manager(network), connection(network.connect(host, port, on_message, this)) {
    if (!connection) {
        return;
    }
    NETWORK_MESSAGE message;
    if (message << std::uint16_t{AUTOPATCH_MESSAGE_VALIDATION_REQUEST} &&
        message << PROTOCOL_VERSION && message << std::uint32_t{0} &&
        manager.send(connection, message)) {
        state = STATE::WAITING;
    }
}

void LOAD_CLIENT::connection_lost() {
    if (state != STATE::FINISHED) {
        state = STATE::FAILED;
    }
    connection = nullptr;
}

void LOAD_CLIENT::on_message(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                             NETWORK_MESSAGE& message, void* client) {
    LOAD_CLIENT& self = *static_cast<LOAD_CLIENT*>(client);
    if (!self.handle_message(message)) {
        self.state = STATE::FAILED;
        manager.disconnect(connection, 1);
    }
}

bool LOAD_CLIENT::handle_message(NETWORK_MESSAGE& message) {
    std::uint16_t id = 0;
    std::uint16_t version = 0;
    if (!(message >> id) || !(message >> version)) {
        return false;
    }
    switch (id) {
        case AUTOPATCH_MESSAGE_VALIDATION_RESPONSE:
            return handle_list(message);
        case AUTOPATCH_MESSAGE_FILE_BLOCK:
            return handle_block(message);
        case AUTOPATCH_MESSAGE_STREAM_OFFER:
            if (!(message >> stream_left) || !(message >> expected)) {
                return false;
            }
            message.reset_payload();
            return request(message, AUTOPATCH_MESSAGE_STREAM_START);
        default:
            return false;
    }
}

bool LOAD_CLIENT::handle_list(NETWORK_MESSAGE& message) {
    std::uint32_t count = 0;
    if (!(message >> count) || count == 0) {
        return false;
    }
    state = STATE::RECEIVING;
    message.reset_payload();
    return request(message, AUTOPATCH_MESSAGE_FILE_REQUEST);
}

bool LOAD_CLIENT::request(NETWORK_MESSAGE& message, std::uint16_t id) {
    return message << id && message << PROTOCOL_VERSION && message.write_dynamic_text("app") &&
           message << static_cast<std::uint32_t>(received) && message << PLATFORM &&
           manager.send(connection, message);
}

bool LOAD_CLIENT::handle_block(NETWORK_MESSAGE& message) {
    std::uint32_t remaining = 0;
    std::uint32_t size = 0;
    unsigned char unchecked = 0;
    std::uint32_t part_crc = 0;
    if (!(message >> remaining) || !(message >> size) || message.get_bytes_left() < size) {
        return false;
    }
    const unsigned char* block =
        message.get_buffer() + message.get_header_size() + message.get_pos();
    crc = add_to_crc(crc, block, size);
    received += size;
    message.set_pos(message.get_pos() + static_cast<std::int32_t>(size), false);
    if (!(message >> unchecked) || (unchecked == 0 && !(message >> part_crc))) {
        return false;
    }
    if (remaining == 0) {
        if (!(message >> expected)) {
            return false;
        }
        finish(expected);
    } else if (unchecked == 0) {
        message.reset_payload();
        return request(message, AUTOPATCH_MESSAGE_FILE_REQUEST);
    }
    return true;
}

void LOAD_CLIENT::finish(std::uint32_t expected_crc) {
    state = crc == expected_crc ? STATE::FINISHED : STATE::FAILED;
}

bool LOAD_CLIENT::receive_stream(std::vector<unsigned char>& scratch) {
    if (state != STATE::RECEIVING || stream_left == 0 || !connection) {
        return false;
    }
    // In stream mode the request that starts the stream would wait.
    if (connection->is_send_blocked()) {
        return false;
    }
    connection->stream_mode = 1;
    std::uint32_t got = 0;
    const auto wanted = std::min(stream_left, static_cast<std::uint32_t>(scratch.size()));
    if (!manager.receive_stream_data(connection, scratch.data(), wanted, got)) {
        state = STATE::FAILED;
        return false;
    }
    crc = add_to_crc(crc, scratch.data(), got);
    received += got;
    stream_left -= got;
    if (stream_left == 0) {
        if (connection) {
            connection->stream_mode = 0;
        }
        finish(expected);
    }
    return got != 0;
}
