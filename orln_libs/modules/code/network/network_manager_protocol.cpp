// The transport's own messages: key exchange and pings, with the timers that drive them.
#include <algorithm>
#include <memory>
#include <utility>

#include "modules/network/network_manager.h"
#include "modules/network/pending_message.h"
#include "platform/diffie_hellman.h"
#include "platform/random_session.h"

namespace {

constexpr std::int32_t PROTOCOL_VERSION_OF_TRANSPORT = 1;
constexpr std::int32_t KEY_WORDS = 4;
constexpr std::int32_t SECRET_LIMIT = 1000;

constexpr std::uint32_t PENDING_TIMEOUT_MS = 5000;
constexpr std::uint32_t SILENCE_TIMEOUT_MS = 150000;
constexpr std::uint32_t PING_INTERVAL_MS = 30000;

bool has_id(NETWORK_MESSAGE& message, std::int16_t wanted) {
    message.set_pos(0, false);
    std::int16_t id = 0;
    const bool same = (message >> id) && id == wanted;
    message.set_pos(0, false);
    return same;
}

// Skips the id and reads what follows it.
bool read_public_values(NETWORK_MESSAGE& message, std::int32_t* values) {
    return std::all_of(values, values + KEY_WORDS,
                       [&message](std::int32_t& value) -> bool { return message >> value; });
}

bool write_public_values(NETWORK_MESSAGE& message, const std::int32_t* values) {
    return std::all_of(values, values + KEY_WORDS,
                       [&message](std::int32_t value) -> bool { return message << value; });
}

void draw_secrets(std::int32_t* secrets) {
    std::generate_n(secrets, KEY_WORDS, [] { return get_random_number(SECRET_LIMIT); });
}

}  // namespace

bool NETWORK_MANAGER::is_ping_message(NETWORK_MESSAGE& message) {
    return has_id(message, PING_MESSAGE);
}

bool NETWORK_MANAGER::is_pong_message(NETWORK_MESSAGE& message) {
    return has_id(message, PONG_MESSAGE);
}

void NETWORK_MANAGER::run_timers() {
    const std::uint32_t now = clock();
    // Within one millisecond nothing new can be due.
    if (!std::exchange(timers_due, false) && now == timers_ms) {
        return;
    }
    timers_ms = now;
    refresh_walk();
    // By index: a callback may refresh the list.
    for (std::size_t index = 0; index < walk.size(); ++index) {
        const NETWORK_CONNECTION connection = walk[index];
        if (connection->is_dead()) {
            continue;
        }
        if (connection->stream_mode) {
            // Whoever only receives is silent for the whole transfer: it has all its time again
            // when that ends.
            connection->last_receive_ms = now;
        } else if (!run_connection_timers(connection, now)) {
            mark_for_closing(connection);
        }
    }
    disconnect_marked();
}

// Yields false if the connection is to be closed.
bool NETWORK_MANAGER::run_connection_timers(const NETWORK_CONNECTION& connection,
                                            std::uint32_t now) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (!info.socket || !info.socket->is_connected()) {
        return false;
    }
    // Another thread may have queued the first message after `now` was taken.
    const std::uint32_t pending_since = info.pending_since_ms.load();
    if (!disable_key_exchange && pending_since != 0 &&
        static_cast<std::int32_t>(now - pending_since) >
            static_cast<std::int32_t>(PENDING_TIMEOUT_MS)) {
        const MUTEX_LOCKER guard(send_lock);
        flush_pending_messages(connection);
    }
    if (now - info.last_receive_ms > SILENCE_TIMEOUT_MS) {
        if (ping_callback) {
            ping_callback(*this, connection, 0, 1, info.latency_ms, 0.0, 0.0, ping_user);
        }
        return false;
    }
    if (now - info.last_ping_ms > PING_INTERVAL_MS) {
        send_ping(connection);
    }
    return true;
}

void NETWORK_MANAGER::send_ping(const NETWORK_CONNECTION& connection) {
    NETWORK_MESSAGE message;
    if (!(message << PING_MESSAGE)) {
        return;
    }
    connection->last_ping_ms = connection->last_send_ms = clock();
    if (ping_callback) {
        ping_callback(*this, connection, 1, 0, 0, 0.0, 0.0, ping_user);
    }
    send(connection, message);
}

void NETWORK_MANAGER::send_pong(const NETWORK_CONNECTION& connection) {
    NETWORK_MESSAGE message;
    if ((message << PONG_MESSAGE) && (message << connection->get_receive_rate_kbps()) &&
        (message << connection->get_send_rate_kbps())) {
        connection->last_send_ms = clock();
        send(connection, message);
    }
}

void NETWORK_MANAGER::handle_pong(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message) {
    NETWORK_MANAGER_INFO& info = *connection;
    std::int16_t id = 0;
    double peer_receive_kbps = 0.0;
    double peer_send_kbps = 0.0;
    if (!(message >> id) || !(message >> peer_receive_kbps) || !(message >> peer_send_kbps)) {
        peer_receive_kbps = peer_send_kbps = 0.0;
    }
    info.latency_ms = info.last_ping_ms == 0 ? 100 : clock() - info.last_ping_ms;
    if (ping_callback) {
        ping_callback(*this, connection, 0, 0, info.latency_ms, peer_receive_kbps, peer_send_kbps,
                      ping_user);
    }
}

// The accepting side begins: it chooses the prime and the base and shows its public values.
void NETWORK_MANAGER::send_protocol_request(const NETWORK_CONNECTION& connection) {
    NETWORK_MANAGER_INFO& info = *connection;
    std::int32_t base = 0;
    std::int32_t public_values[KEY_WORDS] = {};
    {
        const MUTEX_LOCKER guard(send_lock);
        draw_secrets(info.private_key);
        DIFFIE_HELLMAN_KEY_EXCHANGER::get_prime_base(info.prime, base);
    }
    DIFFIE_HELLMAN_KEY_EXCHANGER::get_public_key(public_values, info.private_key, info.prime, base,
                                                 KEY_WORDS);
    NETWORK_MESSAGE message;
    if ((message << PROTOCOL_REQUEST_MESSAGE) && (message << PROTOCOL_VERSION_OF_TRANSPORT) &&
        (message << info.prime) && (message << base) &&
        write_public_values(message, public_values)) {
        info.last_send_ms = clock();
        send(connection, message, nullptr, nullptr, 1);
    }
}

// Both handlers yield false if the connection is to be closed: the message is cut short, its
// numbers make no key, or it answers what was never asked.
bool NETWORK_MANAGER::handle_protocol_request(const NETWORK_CONNECTION& connection,
                                              NETWORK_MESSAGE& message) {
    NETWORK_MANAGER_INFO& info = *connection;
    std::int16_t id = 0;
    std::int32_t version = 0;
    std::int32_t prime = 0;
    std::int32_t base = 0;
    std::int32_t peer_values[KEY_WORDS] = {};
    if (!(message >> id) || !(message >> version) || !(message >> prime) || !(message >> base) ||
        !read_public_values(message, peer_values)) {
        return false;
    }
    std::int32_t secrets[KEY_WORDS];
    std::int32_t shared[KEY_WORDS] = {};
    std::int32_t public_values[KEY_WORDS] = {};
    draw_secrets(secrets);
    if (!DIFFIE_HELLMAN_KEY_EXCHANGER::get_shared_key(shared, secrets, peer_values, prime,
                                                      KEY_WORDS) ||
        !DIFFIE_HELLMAN_KEY_EXCHANGER::get_public_key(public_values, secrets, prime, base,
                                                      KEY_WORDS)) {
        return false;
    }
    message.clear();
    message.set_byte_order(BYTEORDER_LITTLE);
    if (!(message << PROTOCOL_RESPONSE_MESSAGE) || !(message << PROTOCOL_VERSION_OF_TRANSPORT) ||
        !write_public_values(message, public_values)) {
        return false;
    }
    send(connection, message, nullptr, nullptr, 1);
    const MUTEX_LOCKER guard(send_lock);
    info.protocol_version = version;
    info.prime = prime;
    std::copy_n(secrets, KEY_WORDS, info.private_key);
    std::copy_n(shared, KEY_WORDS, info.shared_key);
    info.key_exchange_done = 1;
    flush_pending_messages(connection);
    return true;
}

bool NETWORK_MANAGER::handle_protocol_response(const NETWORK_CONNECTION& connection,
                                               NETWORK_MESSAGE& message) {
    NETWORK_MANAGER_INFO& info = *connection;
    std::int16_t id = 0;
    std::int32_t version = 0;
    std::int32_t peer_values[KEY_WORDS] = {};
    std::int32_t shared[KEY_WORDS] = {};
    if (!(message >> id) || !(message >> version) || !read_public_values(message, peer_values) ||
        !DIFFIE_HELLMAN_KEY_EXCHANGER::get_shared_key(shared, info.private_key, peer_values,
                                                      info.prime, KEY_WORDS)) {
        return false;
    }
    const MUTEX_LOCKER guard(send_lock);
    info.protocol_version = version;
    std::copy_n(shared, KEY_WORDS, info.shared_key);
    info.key_exchange_done = 1;
    flush_pending_messages(connection);
    return true;
}

// Under send_lock, in one hold with the end of the exchange: no message of another thread may get
// in front of those that wait.
void NETWORK_MANAGER::flush_pending_messages(const NETWORK_CONNECTION& connection) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (!info.key_exchange_done) {
        // Waiting has given up: the connection goes on in the clear.
        info.key_exchange_done = 1;
        info.protocol_version = 0;
    }
    while (info.pending_head) {
        const std::unique_ptr<PENDING_MESSAGE> message(
            std::exchange(info.pending_head, info.pending_head->next));
        SEND_TERMS terms;
        if (!get_send_terms(info, *message, message->reply_handler, message->reply_user, false,
                            terms)) {
            continue;
        }
        if (auto request = make_request(connection, *message, terms)) {
            request->hold = info.get_hold();
            send_queue.append(std::move(request));
            new_requests = true;
        }
    }
    info.pending_tail = nullptr;
    info.pending_since_ms = 0;
}
