#include "modules/network/network_manager_info.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "kvcore/memory.h"
#include "modules/network/network_manager.h"
#include "modules/network/pending_message.h"

NETWORK_MANAGER_INFO::NETWORK_MANAGER_INFO(NETWORK_MANAGER* owner, NETWORK_CLOCK millisecond_clock)
    : clock(millisecond_clock), manager(owner) {
    last_receive_ms = last_send_ms = clock();
}

NETWORK_MANAGER_INFO::~NETWORK_MANAGER_INFO() {
    release_buffers();
    delete_pending_messages();
}

unsigned char NETWORK_MANAGER_INFO::send_message(NETWORK_MESSAGE& message) {
    NETWORK_MANAGER* const owner = manager.load();
    return owner ? owner->send(NETWORK_CONNECTION(this), message) : 0;
}

void NETWORK_MANAGER_INFO::disconnect() {
    if (NETWORK_MANAGER* const owner = manager.load()) {
        owner->disconnect(NETWORK_CONNECTION(this), 1);
    }
}

void NETWORK_MANAGER_INFO::hold_sends() {
    if (!holds_sends()) {
        ++hold_number;
    }
}

void NETWORK_MANAGER_INFO::release_sends() {
    if (holds_sends()) {
        ++hold_number;
    }
}

double NETWORK_MANAGER_INFO::get_send_rate_kbps() const {
    return sent.get_rate(clock());
}

double NETWORK_MANAGER_INFO::get_receive_rate_kbps() const {
    return received.get_rate(clock());
}

void NETWORK_MANAGER_INFO::record_sent_data(std::uint32_t bytes) {
    sent.record(clock(), bytes);
}

void NETWORK_MANAGER_INFO::record_received_data(std::uint32_t bytes) {
    received.record(clock(), bytes);
}

void NETWORK_MANAGER_INFO::clear() {
    socket.reset();
    release_buffers();
    delete_pending_messages();
    reply_handlers.clear();
    stream_mode = 0;
    hold_number = 0;
    message_callback = nullptr;
    message_user = nullptr;
    manager = nullptr;
    dead = false;
    closing = false;
    last_receive_ms = last_send_ms = last_ping_ms = dead_since_ms = 0;
    latency_ms = 100;
    by_user = 0;
    protocol_version = 0;
    key_exchange_done = 0;
    std::fill(std::begin(private_key), std::end(private_key), 0);
    std::fill(std::begin(shared_key), std::end(shared_key), 0u);
    prime = 0;
    blocked_pass = 0;
    send_blocked = partly_sent = stream_wants_data = false;
    // By the other fields a manager keeps its lists.
}

// Once the manager has taken it from its list, on the pump thread.
void NETWORK_MANAGER_INFO::close() {
    if (socket) {
        socket->close();
    }
    release_buffers();
}

// Hands out bytes that came with an earlier read.
std::uint32_t NETWORK_MANAGER_INFO::take_read_ahead(void* bytes, std::uint32_t size) {
    const std::uint32_t taken = std::min(size, read_ahead_end - read_ahead_begin);
    if (taken == 0) {
        return 0;
    }
    std::memcpy(bytes, read_ahead.get() + read_ahead_begin, taken);
    read_ahead_begin += taken;
    if (read_ahead_begin == read_ahead_end) {
        read_ahead.reset();
        read_ahead_begin = read_ahead_end = 0;
    }
    return taken;
}

// Everything that grows with the traffic: a closed connection keeps none of it.
void NETWORK_MANAGER_INFO::release_buffers() {
    KVCORE::MEMORY_LIBC::free(std::exchange(receive_buffer, nullptr));
    receive_capacity = receive_allocated = receive_expected = receive_count = 0;
    read_ahead.reset();
    read_ahead_begin = read_ahead_end = 0;
    received.clear();
    sent.clear();
}

void NETWORK_MANAGER_INFO::delete_pending_messages() {
    while (pending_head) {
        delete std::exchange(pending_head, pending_head->next);
    }
    pending_tail = nullptr;
    pending_since_ms = 0;
}
