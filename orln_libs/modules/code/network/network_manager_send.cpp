// From a message to the bytes in a socket.
#include <sys/uio.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "kvcore/byte_order.h"
#include "modules/network/network_manager.h"
#include "modules/network/network_message_reporter.h"
#include "modules/network/pending_message.h"

namespace {

// More queued requests than this are reported.
constexpr std::int32_t LONG_QUEUE = 2000;
// Requests of one connection that go into one system call; two pieces each.
constexpr std::size_t REQUESTS_AT_ONCE = 64;

}  // namespace

unsigned char NETWORK_MANAGER::send(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message,
                                    MESSAGE_CALLBACK reply_handler, void* reply_user,
                                    unsigned char protocol) {
    if (!connection || !connection->is_connected() || connection->manager.load() != this) {
        return 0;
    }
    NETWORK_MANAGER_INFO& info = *connection;
    SEND_TERMS terms;
    {
        const MUTEX_LOCKER guard(send_lock);
        if (!protocol && !disable_key_exchange && !info.key_exchange_done) {
            return add_pending(info, message, reply_handler, reply_user);
        }
        if (!get_send_terms(info, message, reply_handler, reply_user, protocol != 0, terms)) {
            return 0;
        }
    }
    return append_request(make_request(connection, message, terms));
}

// Under send_lock.
bool NETWORK_MANAGER::add_pending(NETWORK_MANAGER_INFO& info, NETWORK_MESSAGE& message,
                                  MESSAGE_CALLBACK reply_handler, void* reply_user) {
    auto* const pending = new (std::nothrow) PENDING_MESSAGE;
    if (!pending) {
        return false;
    }
    pending->move_from(message);
    pending->encrypted = message.encrypted;
    pending->reply_handler = reply_handler;
    pending->reply_user = reply_user;
    pending->previous = info.pending_tail;
    (info.pending_tail ? info.pending_tail->next : info.pending_head) = pending;
    info.pending_tail = pending;
    if (info.pending_since_ms == 0) {
        info.pending_since_ms = std::max(clock(), 1u);
    }
    return true;
}

// Under send_lock. Yields false when the connection can hold no more reply handlers.
bool NETWORK_MANAGER::get_send_terms(NETWORK_MANAGER_INFO& info, const NETWORK_MESSAGE& message,
                                     MESSAGE_CALLBACK reply_handler, void* reply_user,
                                     bool protocol, SEND_TERMS& terms) {
    terms.trailer_version = protocol ? 0 : info.protocol_version;
    terms.encipher =
        !protocol && info.key_exchange_done && info.protocol_version > 0 && message.encrypted;
    std::copy(std::begin(info.shared_key), std::end(info.shared_key), terms.key);
    if (!reply_handler) {
        return true;
    }
    auto& handlers = info.reply_handlers;
    auto place = std::find_if(handlers.begin(), handlers.end(), [&](const auto& item) {
        return item.handler == reply_handler && item.user == reply_user;
    });
    if (place == handlers.end()) {
        if (handlers.size() == MAX_REPLY_HANDLERS) {
            return false;
        }
        place = handlers.insert(place, {reply_handler, reply_user});
    }
    terms.handler_token = static_cast<std::uint32_t>(place - handlers.begin()) + 1;
    terms.user_token = reply_user ? terms.handler_token : 0;
    return true;
}

// Makes the message a whole frame and copies it. Null when that isn't possible.
std::unique_ptr<SEND_REQUEST> NETWORK_MANAGER::make_request(const NETWORK_CONNECTION& connection,
                                                            NETWORK_MESSAGE& message,
                                                            const SEND_TERMS& terms) {
    message.pack_header(terms.handler_token, terms.user_token, 0, 0);
    // What should be enciphered doesn't go out in the clear.
    if (terms.encipher && message.get_payload_length() != 0 &&
        !message.encrypt_message(terms.key)) {
        return nullptr;
    }
    if (!message.append_trailer(terms.trailer_version)) {
        return nullptr;
    }
    {
        const MUTEX_LOCKER guard(report_lock);
        if (reporter) {
            reporter->add_message(message);
        }
    }
    const auto size = static_cast<std::uint32_t>(message.get_length());
    if (size >= MESSAGE_SIZE_LIMIT) {
        return nullptr;
    }
    std::unique_ptr<SEND_REQUEST> request(new (std::nothrow) SEND_REQUEST);
    if (!request) {
        return nullptr;
    }
    request->data.reset(new (std::nothrow) unsigned char[size]);
    if (!request->data) {
        return nullptr;
    }
    std::memcpy(request->data.get(), message.get_buffer(), size);
    request->connection = connection;
    request->size = size;
    KVCORE::store_le32(request->prefix + 1, size);
    return request;
}

bool NETWORK_MANAGER::append_request(std::unique_ptr<SEND_REQUEST> request) {
    if (!request) {
        return false;
    }
    request->hold = request->connection->get_hold();
    bool wake = false;
    {
        const MUTEX_LOCKER guard(send_lock);
        send_queue.append(std::move(request));
        new_requests = true;
        wake = std::exchange(pump_waiting, false);
    }
    if (wake) {
        poller.wake();
    }
    return true;
}

unsigned char NETWORK_MANAGER::monitor_send() {
    if (in_monitor_send) {
        return 0;
    }
    in_monitor_send = true;
    enter_pump();
    if (any_blocked) {
        poll_events();
    }
    SEND_QUEUE queue;
    {
        const MUTEX_LOCKER guard(send_lock);
        queue.prepend_all(send_queue);
        new_requests = false;
    }
    if (queue.get_count() > LONG_QUEUE && send_queue_callback) {
        send_queue_callback(*this, queue.get_count(), send_queue_user);
    }
    ++send_pass;
    any_blocked = false;
    unsigned char unfinished = 0;
    for (SEND_REQUEST* request = queue.get_head(); request;) {
        request = send_requests(queue, request, unfinished);
    }
    if (queue.get_head()) {
        const MUTEX_LOCKER guard(send_lock);
        send_queue.prepend_all(queue);
    }
    in_monitor_send = false;
    return unfinished;
}

// Sends a request with those behind it that are for the same connection, and yields the one to go
// on with.
SEND_REQUEST* NETWORK_MANAGER::send_requests(SEND_QUEUE& queue, SEND_REQUEST* first,
                                             unsigned char& unfinished) {
    const NETWORK_CONNECTION connection = first->connection;
    NETWORK_MANAGER_INFO& info = *connection;
    if (info.is_dead() || !info.socket) {
        return queue.remove(first);
    }
    if (info.blocked_pass == send_pass) {
        return first->next;
    }
    // A raw transfer waits until a frame that is under way is out, and all other frames wait for
    // the end of the transfer.
    const bool streaming = info.stream_mode != 0;
    const std::uint32_t hold = info.get_hold();
    const auto is_held = [hold](const SEND_REQUEST& item) {
        return hold != 0 && item.hold == hold;
    };
    if (first->sent == 0 && (streaming || is_held(*first))) {
        note_stream(connection);
        info.blocked_pass = send_pass;
        return first->next;
    }
    if (info.send_blocked) {
        info.blocked_pass = send_pass;
        any_blocked = true;
        unfinished = 1;
        return first->next;
    }
    ::iovec pieces[2 * REQUESTS_AT_ONCE];
    std::size_t count = 0;
    std::uint64_t wanted = 0;
    for (SEND_REQUEST* request = first;
         request && request->connection == connection && count < 2 * REQUESTS_AT_ONCE &&
         (request == first || !(streaming || is_held(*request)));
         request = request->next) {
        constexpr std::uint32_t PREFIX = sizeof request->prefix;
        const std::uint32_t of_prefix = std::min(request->sent, PREFIX);
        const std::uint32_t of_data = request->sent - of_prefix;
        pieces[count++] = {request->prefix + of_prefix, PREFIX - of_prefix};
        pieces[count++] = {request->data.get() + of_data, request->size - of_data};
        wanted += request->total() - request->sent;
    }
    const std::int32_t sent = info.socket->send_pieces(pieces, count);
    if (sent < 0) {
        disconnect_socket(connection);
        return queue.remove(first);
    }
    info.last_send_ms = clock();
    info.sent.record(info.last_send_ms, static_cast<std::uint32_t>(sent));
    SEND_REQUEST* const next = count_as_sent(queue, first, static_cast<std::uint32_t>(sent));
    if (static_cast<std::uint64_t>(sent) == wanted) {
        return next;
    }
    info.send_blocked = true;
    info.blocked_pass = send_pass;
    any_blocked = true;
    unfinished = 1;
    update_interest(connection);
    return next->next;
}

// Removes the requests from `first` on that are covered by `bytes`; yields the first that isn't.
SEND_REQUEST* NETWORK_MANAGER::count_as_sent(SEND_QUEUE& queue, SEND_REQUEST* first,
                                             std::uint32_t bytes) {
    NETWORK_MANAGER_INFO& info = *first->connection;
    info.partly_sent = false;
    SEND_REQUEST* request = first;
    while (request && bytes >= request->total() - request->sent && bytes != 0) {
        bytes -= request->total() - request->sent;
        request = queue.remove(request);
    }
    if (bytes != 0) {
        request->sent += bytes;
    }
    // Frames of one connection go out in order, so only the first one left can be under way.
    info.partly_sent = request && request->connection.get() == &info && request->sent != 0;
    return request;
}

unsigned char NETWORK_MANAGER::finish_stream_send(const NETWORK_CONNECTION& connection,
                                                  std::int64_t count, std::uint64_t wanted,
                                                  std::uint32_t& sent) {
    NETWORK_MANAGER_INFO& info = *connection;
    if (count < 0) {
        if (count == -1) {
            disconnect_socket(connection);
        }
        return 0;
    }
    sent = static_cast<std::uint32_t>(count);
    if (sent != 0) {
        info.last_send_ms = clock();
        info.sent.record(info.last_send_ms, sent);
    }
    if (sent < wanted) {
        info.send_blocked = true;
        note_stream(connection);
        update_interest(connection);
    }
    return 1;
}

unsigned char NETWORK_MANAGER::send_stream_data(const NETWORK_CONNECTION& connection,
                                                const void* bytes, std::uint32_t size,
                                                std::uint32_t& sent) {
    enter_pump();
    sent = 0;
    if (!can_stream(connection)) {
        return 0;
    }
    // Raw bytes must not get into the middle of a frame: `monitor_send` finishes it first.
    if (connection->partly_sent) {
        return 1;
    }
    const std::uint32_t wanted = std::min<std::uint32_t>(size, INT32_MAX);
    const std::int32_t count = connection->socket->send(bytes, static_cast<std::int32_t>(wanted));
    return finish_stream_send(connection, count, wanted, sent);
}

unsigned char NETWORK_MANAGER::send_stream_file(const NETWORK_CONNECTION& connection, int file,
                                                ::off_t& offset, std::size_t count,
                                                std::uint32_t& sent) {
    enter_pump();
    sent = 0;
    if (!can_stream(connection)) {
        return 0;
    }
    if (connection->partly_sent) {
        return 1;
    }
    const std::size_t wanted = std::min<std::size_t>(count, INT32_MAX);
    const std::int64_t done = connection->socket->send_file(file, offset, wanted);
    return finish_stream_send(connection, done, wanted, sent);
}
