// Cutting the streams into frames and handing the messages on.
//
// A read of a few bytes takes whatever the socket has, up to SCRATCH_SIZE, and what is left over
// waits in the connection: a burst of small messages costs one system call. It is handed out before
// the socket is read again, to the owner of a raw transfer as well.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <utility>

#include "kvcore/byte_order.h"
#include "kvcore/memory.h"
#include "modules/network/network_manager.h"
#include "platform/process_tools.h"

namespace {

constexpr std::uint32_t SCRATCH_SIZE = 65536;
// Reads of at least this size go straight to their place.
constexpr std::uint32_t DIRECT_READ_SIZE = 4096;
// The receive buffer grows in this step, when less than this is free.
constexpr std::uint32_t BUFFER_STEP = 10240;
constexpr std::uint32_t BUFFER_LOW = 1024;
// Reads of one large message in one pass, after which the other connections have their turn.
constexpr int READS_PER_PASS = 32;

}  // namespace

unsigned char NETWORK_MANAGER::monitor_receive() {
    std::vector<std::uint64_t> keys = std::exchange(ready, {});
    keys.insert(keys.end(), backlog.begin(), backlog.end());
    backlog.clear();
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());

    bool received = false;
    for (const std::uint64_t key : keys) {
        const NETWORK_CONNECTION connection = find_connection(key);
        if (!connection || connection->is_dead()) {
            continue;
        }
        if (!connection->stream_mode && !receive_message(connection, received)) {
            mark_for_closing(connection);
        }
        if (connection->read_ahead) {
            backlog.push_back(key);
        }
    }
    disconnect_marked();
    // The allocation is kept for the next pass unless a callback has begun a new list.
    if (ready.empty()) {
        keys.clear();
        ready = std::move(keys);
    }
    return received;
}

// Reads up to the end of one message. Yields false if the connection is to be closed.
bool NETWORK_MANAGER::receive_message(const NETWORK_CONNECTION& connection, bool& received) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (!info.socket || !info.socket->is_connected()) {
        return false;
    }
    bool more = true;
    for (int reads = 0; more && reads < READS_PER_PASS; ++reads) {
        more = false;
        const bool keep = info.receive_expected == 0 ? read_prefix(info, received, more)
                                                     : read_message(connection, received, more);
        if (!keep) {
            return false;
        }
    }
    return true;
}

bool NETWORK_MANAGER::read_prefix(NETWORK_MANAGER_INFO& info, bool& received, bool& more) {
    constexpr std::uint32_t SIZE = sizeof info.prefix;
    const std::int32_t count =
        read_bytes(info, info.prefix + info.receive_count, SIZE - info.receive_count);
    if (count <= 0) {
        return count == 0;
    }
    received = true;
    info.receive_count += static_cast<std::uint32_t>(count);
    if (info.receive_count < SIZE) {
        return true;
    }
    std::uint32_t size = KVCORE::load_le32(info.prefix + 1);
    if (info.prefix[0] != 0) {
        size = KVCORE::swap_bytes(size);
    }
    if (size < MIN_MESSAGE_SIZE || size >= MESSAGE_SIZE_LIMIT) {
        return false;
    }
    info.receive_capacity = info.receive_allocated = std::min(size, BUFFER_STEP);
    info.receive_buffer =
        static_cast<unsigned char*>(KVCORE::MEMORY_LIBC::allocate(info.receive_allocated));
    info.receive_expected = size;
    info.receive_count = 0;
    more = true;
    return info.receive_buffer != nullptr;
}

bool NETWORK_MANAGER::read_message(const NETWORK_CONNECTION& connection, bool& received,
                                   bool& more) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (info.receive_expected > info.receive_capacity &&
        info.receive_capacity - info.receive_count < BUFFER_LOW) {
        // A peer that promises much gets memory only as it delivers.
        info.receive_capacity =
            std::min(info.receive_expected, info.receive_capacity + BUFFER_STEP);
    }
    if (info.receive_capacity > info.receive_allocated) {
        // With a reserve that grows with the block, a large message is moved a few times and not a
        // thousand.
        info.receive_allocated = std::min(
            info.receive_expected,
            std::max(info.receive_capacity, info.receive_allocated + info.receive_allocated / 4));
        info.receive_buffer = static_cast<unsigned char*>(
            KVCORE::MEMORY_LIBC::reallocate(info.receive_buffer, info.receive_allocated));
        if (!info.receive_buffer) {
            return false;
        }
    }
    const std::uint32_t wanted = info.receive_capacity - info.receive_count;
    const std::int32_t count = read_bytes(info, info.receive_buffer + info.receive_count, wanted);
    if (count <= 0) {
        return count == 0;
    }
    received = true;
    info.receive_count += static_cast<std::uint32_t>(count);
    if (info.receive_count == info.receive_expected) {
        return handle_message(connection);
    }
    more = static_cast<std::uint32_t>(count) == wanted;
    return true;
}

// As TCPIP_SOCKET::receive, from what was read ahead first.
std::int32_t NETWORK_MANAGER::read_bytes(NETWORK_MANAGER_INFO& info, unsigned char* bytes,
                                         std::uint32_t size) {
    const std::uint32_t held = info.take_read_ahead(bytes, size);
    if (held != 0) {
        return static_cast<std::int32_t>(held);
    }
    const bool direct = size >= DIRECT_READ_SIZE;
    if (!direct && !scratch) {
        scratch = std::make_unique_for_overwrite<unsigned char[]>(SCRATCH_SIZE);
    }
    const std::int32_t count = info.socket->receive(
        direct ? bytes : scratch.get(), static_cast<std::int32_t>(direct ? size : SCRATCH_SIZE));
    if (count <= 0) {
        return count;
    }
    const auto got = static_cast<std::uint32_t>(count);
    info.last_receive_ms = clock();
    info.received.record(info.last_receive_ms, got);
    if (direct) {
        return count;
    }
    const std::uint32_t taken = std::min(got, size);
    std::memcpy(bytes, scratch.get(), taken);
    if (got > taken) {
        info.read_ahead = std::make_unique_for_overwrite<unsigned char[]>(got - taken);
        std::memcpy(info.read_ahead.get(), scratch.get() + taken, got - taken);
        info.read_ahead_end = got - taken;
    }
    return static_cast<std::int32_t>(taken);
}

// Yields false if the connection is to be closed.
bool NETWORK_MANAGER::handle_message(const NETWORK_CONNECTION& connection) {
    NETWORK_MANAGER_INFO& info = *connection;
    NETWORK_MESSAGE& message = received_message;
    message.set_buffer(std::exchange(info.receive_buffer, nullptr),
                       static_cast<std::int32_t>(info.receive_expected));
    info.receive_capacity = info.receive_allocated = 0;
    info.receive_expected = info.receive_count = 0;
    message.time_1 = message.time_2 = message.time_3 = 0;
    message.encrypted = 0;

    std::uint32_t reply_handler = 0;
    std::uint32_t reply_user = 0;
    std::uint32_t echo_handler = 0;
    std::uint32_t echo_user = 0;
    message.unpack_header(reply_handler, reply_user, echo_handler, echo_user);
    // A reply that is built in this message returns the peer's tokens, or none: tokens of this side
    // that came back with the message aren't the peer's.
    message.clear_echo();
    message.pack_header(0, 0, reply_handler, reply_user);
    message.set_pos(0, false);

    bool keep = true;
    if (!handle_transport_message(connection, keep)) {
        keep = deliver_message(connection, echo_handler, echo_user);
    }
    message.clear();
    return keep;
}

bool NETWORK_MANAGER::handle_transport_message(const NETWORK_CONNECTION& connection, bool& keep) {
    NETWORK_MESSAGE& message = received_message;
    // Enciphered payloads are never the transport's, whatever their first bytes look like.
    const std::int32_t length = message.get_length();
    if (length >= NETWORK_MESSAGE::network_header_size + NETWORK_MESSAGE::trailer_2_size) {
        const unsigned char* const end = message.get_buffer() + length;
        if (end[-5] >= 2 && end[-6] == 1) {
            return false;
        }
    }
    std::int16_t id = 0;
    const bool has_id = message >> id;
    message.set_pos(0, false);
    if (!has_id) {
        return false;
    }
    switch (id) {
        case PROTOCOL_REQUEST_MESSAGE:
            keep = handle_protocol_request(connection, message);
            return true;
        case PROTOCOL_RESPONSE_MESSAGE:
            keep = handle_protocol_response(connection, message);
            return true;
        case PING_MESSAGE:
            send_pong(connection);
            return true;
        case PONG_MESSAGE:
            handle_pong(connection, message);
            return true;
        default:
            return false;
    }
}

bool NETWORK_MANAGER::deliver_message(const NETWORK_CONNECTION& connection,
                                      std::uint32_t echo_handler, std::uint32_t echo_user) {
    NETWORK_MANAGER_INFO& info = *connection;
    NETWORK_MESSAGE& message = received_message;
    switch (message.remove_trailer()) {
        case NETWORK_MESSAGE::TRAILER_GOOD:
            break;
        case NETWORK_MESSAGE::TRAILER_TOO_SHORT:
            std::puts("WARNING: Message failed validation INVALID LENGTH ");
            break;
        case NETWORK_MESSAGE::TRAILER_BAD_VERSION:
            std::puts("WARNING: Message failed validation INVALID VERSION ");
            break;
        default:
            std::puts("WARNING: Message failed validation INVALID CHECKSUM ");
            break;
    }
    if (message.encrypted) {
        message.decrypt_message(info.shared_key);
    }
    message.set_pos(0, false);

    if (echo_handler == 0) {
        if (info.message_callback) {
            call_message_callback(info.message_callback, connection, message, info.message_user);
        } else {
            call_message_callback(message_callback, connection, message, message_user);
        }
        return true;
    }
    if (stop_message_function_calls) {
        report_violation(info);
        return false;
    }
    NETWORK_MANAGER_INFO::REPLY_HANDLER reply{};
    {
        const MUTEX_LOCKER guard(send_lock);
        if (echo_handler <= info.reply_handlers.size()) {
            reply = info.reply_handlers[echo_handler - 1];
        }
    }
    // Tokens are indices that were given out on this connection. A peer that makes up others, or
    // mixes them, can't be trusted.
    if (!reply.handler || echo_user != (reply.user ? echo_handler : 0)) {
        write_to_console("WARNING: Reply with an unknown token, connection closed\n");
        return false;
    }
    call_message_callback(reply.handler, connection, message, reply.user);
    return true;
}

void NETWORK_MANAGER::report_violation(NETWORK_MANAGER_INFO& info) {
    std::int16_t id = 0;
    if (!(received_message >> id)) {
        id = 0;
    }
    received_message.set_pos(0, false);
    char address[16];
    KV_SOCKET::TCPIP_SOCKET::ip_to_str(info.get_peer_address(), address, sizeof address);
    char line[160];
    std::snprintf(line, sizeof line,
                  "ERROR: VIOLATION OF stop_message_function_calls : Message ID = %d IP = %s PORT "
                  "= %d\n",
                  id, address, info.get_peer_port());
    write_to_console(line);
}

bool NETWORK_MANAGER::can_stream(const NETWORK_CONNECTION& connection) const {
    return connection && connection->stream_mode && connection->is_connected();
}

unsigned char NETWORK_MANAGER::receive_stream_data(const NETWORK_CONNECTION& connection,
                                                   void* bytes, std::uint32_t size,
                                                   std::uint32_t& received) {
    enter_pump();
    received = 0;
    if (!can_stream(connection)) {
        return 0;
    }
    NETWORK_MANAGER_INFO& info = *connection;
    received = info.take_read_ahead(bytes, size);
    if (received != 0 || size == 0) {
        return 1;
    }
    const std::int32_t count = info.socket->receive(
        bytes, static_cast<std::int32_t>(std::min<std::uint32_t>(size, INT32_MAX)));
    if (count < 0) {
        disconnect_socket(connection);
        return 0;
    }
    if (count == 0) {
        info.stream_wants_data = true;
        note_stream(connection);
        update_interest(connection);
        return 1;
    }
    received = static_cast<std::uint32_t>(count);
    info.last_receive_ms = clock();
    info.received.record(info.last_receive_ms, received);
    return 1;
}
