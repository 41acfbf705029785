// How the pump learns which sockets are ready, and sleeps until one is.
//
// A connection is watched for what the pump would do with it: for data, unless it is in a raw
// transfer whose owner doesn't wait for any, and for room to send while something waits for it.
#include <algorithm>
#include <chrono>
#include <utility>

#include "modules/network/network_manager.h"
#include "platform/process_tools.h"

namespace {

using POLLER = KV_SOCKET::SOCKET_POLLER;

}  // namespace

void NETWORK_MANAGER::refresh_walk() {
    if (walk_version == connections_version.load(std::memory_order_acquire)) {
        return;
    }
    const MUTEX_LOCKER guard(connection_lock);
    walk.assign(connections.begin(), connections.end());
    walk_version = connections_version.load(std::memory_order_relaxed);
}

NETWORK_CONNECTION NETWORK_MANAGER::find_connection(std::uint64_t poll_key) {
    refresh_walk();
    const auto place = std::lower_bound(
        walk.begin(), walk.end(), poll_key,
        [](const NETWORK_CONNECTION& item, std::uint64_t key) { return item->poll_key < key; });
    return place != walk.end() && (*place)->poll_key == poll_key ? *place : NETWORK_CONNECTION();
}

void NETWORK_MANAGER::update_interest(const NETWORK_CONNECTION& connection) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (!info.is_connected()) {
        return;
    }
    const bool reads = !info.stream_mode || info.stream_wants_data;
    const std::uint32_t wanted = (reads ? POLLER::READABLE : POLLER::NOTHING) |
                                 (info.send_blocked ? POLLER::WRITABLE : POLLER::NOTHING);
    if (poller.change(info.socket->get_socket_reference(), info.poll_key, info.poll_interest,
                      wanted)) {
        info.poll_interest = wanted;
    } else {
        // Nobody would see it again.
        mark_for_closing(connection);
    }
}

void NETWORK_MANAGER::note_stream(const NETWORK_CONNECTION& connection) {
    if (!std::exchange(connection->stream_noted, true)) {
        streams.push_back(connection);
    }
}

// The owner ends a raw transfer by clearing a field, so the pump looks. Yields true if one ended.
bool NETWORK_MANAGER::end_finished_streams() {
    bool ended = false;
    for (std::size_t index = 0; index < streams.size();) {
        const NETWORK_CONNECTION connection = streams[index];
        if (!connection->is_dead() && (connection->stream_mode || connection->holds_sends())) {
            ++index;
            continue;
        }
        streams.erase(streams.begin() + static_cast<std::ptrdiff_t>(index));
        connection->stream_noted = false;
        connection->stream_wants_data = false;
        update_interest(connection);
        ended = ended || !connection->is_dead();
    }
    return ended;
}

bool NETWORK_MANAGER::has_backlog() {
    return std::any_of(backlog.begin(), backlog.end(), [this](std::uint64_t key) {
        const NETWORK_CONNECTION connection = find_connection(key);
        return connection && !connection->stream_mode;
    });
}

// Yields true if the event gives the pump something to do.
bool NETWORK_MANAGER::note_event(const POLLER::EVENT& event) {
    if (event.key >= LISTENER_KEY) {
        listeners[event.key - LISTENER_KEY].ready = true;
        return true;
    }
    const NETWORK_CONNECTION connection = find_connection(event.key);
    if (!connection || connection->is_dead()) {
        return false;
    }
    bool useful = false;
    if ((event.ready & POLLER::WRITABLE) && std::exchange(connection->send_blocked, false)) {
        update_interest(connection);
        useful = true;
    }
    if (event.ready & POLLER::READABLE) {
        if (!connection->stream_mode) {
            ready.push_back(event.key);
            useful = true;
        } else {
            note_stream(connection);
            update_interest(connection);
            useful = useful || connection->stream_wants_data;
        }
    }
    return useful;
}

void NETWORK_MANAGER::poll_events() {
    end_finished_streams();
    if (std::exchange(polled, false) || !poller.is_open()) {
        return;
    }
    poller.wait(events, 0);
    for (const POLLER::EVENT& event : events) {
        note_event(event);
    }
}

bool NETWORK_MANAGER::wait(std::uint32_t timeout_ms) {
    using CLOCK = std::chrono::steady_clock;
    enter_pump();
    if (!poller.open()) {
        orln_sleep(std::min(timeout_ms, 100u));
        return true;
    }
    if (end_finished_streams() || has_backlog() || !ready.empty() || foreign_closes.load()) {
        return true;
    }
    {
        const MUTEX_LOCKER guard(send_lock);
        if (new_requests) {
            return true;
        }
        pump_waiting = true;
    }
    const bool resting = std::any_of(listeners.begin(), listeners.end(),
                                     [](const LISTENER& item) { return item.suspended; });
    const std::uint32_t limit_ms = resting ? std::min(timeout_ms, 1000u) : timeout_ms;
    const auto end = CLOCK::now() + std::chrono::milliseconds(limit_ms);
    bool useful = false;
    bool woken = false;
    do {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - CLOCK::now()).count();
        const bool any = poller.wait(events, static_cast<std::uint32_t>(std::max<long>(left, 0)));
        for (const POLLER::EVENT& event : events) {
            useful = note_event(event) || useful;
        }
        woken = any && events.empty();
    } while (!useful && !woken && !foreign_closes.load() && CLOCK::now() < end);
    polled = useful;
    const MUTEX_LOCKER guard(send_lock);
    pump_waiting = false;
    return useful || new_requests || foreign_closes.load() || resting;
}
