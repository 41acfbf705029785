// Life of the manager and its connections: listening, connecting, closing, queries.
#include "modules/network/network_manager.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "modules/network/network_message_reporter.h"
#include "platform/process_tools.h"

namespace {

constexpr std::uint32_t GRACE_PERIOD_MS = 120000;
// A pass takes this many callers from one listener; the next pass goes on.
constexpr int CALLERS_PER_PASS = 64;
// How long a listener rests when the process has no descriptors left.
constexpr std::uint32_t ACCEPT_REST_MS = 1000;

bool is_exhaustion(int error) {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

}  // namespace

NETWORK_MANAGER::NETWORK_MANAGER(unsigned char stop_calls, unsigned char disable_exchange)
    : stop_message_function_calls(stop_calls),
      disable_key_exchange(disable_exchange),
      clock(&get_ms_count) {
}

NETWORK_MANAGER::~NETWORK_MANAGER() {
    enter_pump();
    disconnect_all(0);
    process_dead_sockets(true);
}

void NETWORK_MANAGER::set_clock(NETWORK_CLOCK millisecond_clock) {
    clock = millisecond_clock ? millisecond_clock : &get_ms_count;
}

void NETWORK_MANAGER::set_reporter(std::unique_ptr<NETWORK_MESSAGE_REPORTER> message_reporter) {
    const MUTEX_LOCKER guard(report_lock);
    reporter = std::move(message_reporter);
}

bool NETWORK_MANAGER::is_pump_thread() const {
    const std::thread::id pump = pump_thread.load();
    return pump == std::thread::id() || pump == std::this_thread::get_id();
}

unsigned char NETWORK_MANAGER::listen(std::uint16_t port, MESSAGE_CALLBACK message_function,
                                      void* message_function_user, USER_CALLBACK connect_function,
                                      USER_CALLBACK disconnect_function,
                                      USER_CALLBACK dead_function, void* callback_user,
                                      std::uint32_t bind_address) {
    message_callback = message_function;
    message_user = message_function_user;
    connect_callback = connect_function;
    disconnect_callback = disconnect_function;
    dead_callback = dead_function;
    user = callback_user;

    LISTENER listener;
    listener.socket = std::make_unique<KV_SOCKET::TCPIP_SOCKET>();
    listener.socket->set_bind_address(bind_address);
    if (!poller.open() || listener.socket->listen(port) != KV_SOCKET::SOCKET_OK ||
        !poller.change(listener.socket->get_socket_reference(), LISTENER_KEY + listeners.size(),
                       KV_SOCKET::SOCKET_POLLER::NOTHING, KV_SOCKET::SOCKET_POLLER::READABLE)) {
        return 0;
    }
    listeners.push_back(std::move(listener));
    return 1;
}

std::uint16_t NETWORK_MANAGER::get_listen_port(std::size_t index) const {
    return index < listeners.size() ? listeners[index].socket->get_local_port() : 0;
}

NETWORK_CONNECTION NETWORK_MANAGER::make_connection(
    std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> socket) {
    NETWORK_CONNECTION connection(new NETWORK_MANAGER_INFO(this, clock));
    connection->socket = std::move(socket);
    return connection;
}

NETWORK_CONNECTION NETWORK_MANAGER::connect(const char* host, std::uint16_t port,
                                            MESSAGE_CALLBACK message_function,
                                            void* message_function_user) {
    enter_pump();
    auto socket = std::make_unique<KV_SOCKET::TCPIP_SOCKET>();
    std::int32_t result = socket->connect(host, port, connect_timeout, connect_go_on);
    NETWORK_CONNECTION connection;
    if (result == KV_SOCKET::SOCKET_OK) {
        connection = make_connection(std::move(socket));
        connection->message_callback = message_function;
        connection->message_user = message_function_user;
        if (!add_connection(connection)) {
            connection.reset();
            result = KV_SOCKET::SOCKET_ERROR;
        }
    }
    if (result != KV_SOCKET::SOCKET_OK && connect_failed_callback) {
        connect_failed_callback(*this, host, port, result, connect_failed_user);
    }
    call_user_callback(connect_callback, connection, 1);
    return connection;
}

unsigned char NETWORK_MANAGER::process_connect(const NETWORK_CONNECTION& connection) {
    enter_pump();
    if (!connection || !connection->is_connected()) {
        return 0;
    }
    {
        const MUTEX_LOCKER guard(connection_lock);
        if (connections.contains(connection)) {
            return 1;
        }
    }
    connection->manager = this;
    connection->clock = clock;
    connection->poll_interest = KV_SOCKET::SOCKET_POLLER::NOTHING;
    return add_connection(connection);
}

bool NETWORK_MANAGER::add_connection(const NETWORK_CONNECTION& connection) {
    NETWORK_MANAGER_INFO& info = *connection;
    info.poll_key = ++next_poll_key;
    if (!poller.open() ||
        !poller.change(info.socket->get_socket_reference(), info.poll_key,
                       KV_SOCKET::SOCKET_POLLER::NOTHING, KV_SOCKET::SOCKET_POLLER::READABLE)) {
        return false;
    }
    info.poll_interest = KV_SOCKET::SOCKET_POLLER::READABLE;
    // What the peer has sent already is read in this pass.
    ready.push_back(info.poll_key);
    timers_due = true;
    const MUTEX_LOCKER guard(connection_lock);
    connections.add(connection);
    connections_version.fetch_add(1, std::memory_order_release);
    return true;
}

unsigned char NETWORK_MANAGER::accept_callers() {
    resume_listeners();
    bool accepted = false;
    for (std::size_t index = 0; index < listeners.size(); ++index) {
        if (std::exchange(listeners[index].ready, false) && accept_from(index)) {
            accepted = true;
        }
    }
    return accepted;
}

bool NETWORK_MANAGER::accept_from(std::size_t index) {
    bool accepted = false;
    for (int callers = 0; callers < CALLERS_PER_PASS; ++callers) {
        int error = 0;
        std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> socket(listeners[index].socket->accept(&error));
        if (!socket) {
            if (is_exhaustion(error)) {
                suspend_listener(index);
            }
            break;
        }
        exhaustion_reported = false;
        const NETWORK_CONNECTION connection = make_connection(std::move(socket));
        connection->message_callback = message_callback;
        connection->message_user = message_user;
        if (add_connection(connection)) {
            start_accepted(connection);
            accepted = true;
        }
    }
    return accepted;
}

void NETWORK_MANAGER::start_accepted(const NETWORK_CONNECTION& connection) {
    if (disable_key_exchange) {
        const MUTEX_LOCKER guard(send_lock);
        connection->key_exchange_done = 1;
        connection->protocol_version = 0;
    } else {
        send_protocol_request(connection);
    }
    call_user_callback(connect_callback, connection, 0);
}

// The waiting callers stay in the listener's backlog, so it would be reported as ready all the
// time.
void NETWORK_MANAGER::suspend_listener(std::size_t index) {
    LISTENER& listener = listeners[index];
    if (!std::exchange(exhaustion_reported, true)) {
        write_to_console("WARNING: No resources left to accept connections, callers must wait\n");
    }
    if (poller.change(listener.socket->get_socket_reference(), LISTENER_KEY + index,
                      KV_SOCKET::SOCKET_POLLER::READABLE, KV_SOCKET::SOCKET_POLLER::NOTHING)) {
        listener.suspended = true;
        listener.suspended_ms = clock();
    }
}

void NETWORK_MANAGER::resume_listeners() {
    for (std::size_t index = 0; index < listeners.size(); ++index) {
        LISTENER& listener = listeners[index];
        if (!listener.suspended || clock() - listener.suspended_ms < ACCEPT_REST_MS) {
            continue;
        }
        listener.suspended =
            !poller.change(listener.socket->get_socket_reference(), LISTENER_KEY + index,
                           KV_SOCKET::SOCKET_POLLER::NOTHING, KV_SOCKET::SOCKET_POLLER::READABLE);
        listener.suspended_ms = clock();
        listener.ready = true;
    }
}

unsigned char NETWORK_MANAGER::monitor() {
    if (in_monitor) {
        return 0;
    }
    in_monitor = true;
    enter_pump();
    poll_events();
    const unsigned char accepted = accept_callers();
    process_dead_sockets(false);
    const unsigned char received = monitor_receive();
    run_timers();
    in_monitor = false;
    return accepted || received;
}

void NETWORK_MANAGER::disconnect(const NETWORK_CONNECTION& connection, unsigned char by_user) {
    if (connection) {
        connection->by_user = by_user;
        disconnect_socket(connection);
    }
}

void NETWORK_MANAGER::disconnect_all(unsigned char by_user) {
    std::vector<NETWORK_CONNECTION> all;
    {
        const MUTEX_LOCKER guard(connection_lock);
        all.assign(connections.begin(), connections.end());
    }
    for (const NETWORK_CONNECTION& connection : all) {
        disconnect(connection, by_user);
    }
}

void NETWORK_MANAGER::mark_for_closing(const NETWORK_CONNECTION& connection) {
    if (!std::exchange(connection->marked, true)) {
        marked.push_back(connection);
    }
}

void NETWORK_MANAGER::disconnect_marked() {
    const std::vector<NETWORK_CONNECTION> closing = std::exchange(marked, {});
    for (const NETWORK_CONNECTION& connection : closing) {
        disconnect_socket(connection);
    }
}

// By value: the callback may drop the caller's own handle, on which all of this still depends.
void NETWORK_MANAGER::disconnect_socket(NETWORK_CONNECTION connection) {
    // `closing` keeps the callback to one call, also when it disconnects the connection itself.
    if (!connection || connection->is_dead() || connection->closing.exchange(true)) {
        return;
    }
    call_user_callback(disconnect_callback, connection, connection->is_by_user());
    const MUTEX_LOCKER guard(connection_lock);
    if (connections.remove_item(connection)) {
        connections_version.fetch_add(1, std::memory_order_release);
        add_socket_to_dead_queue(connection);
    } else {
        connection->closing = false;
    }
}

void NETWORK_MANAGER::add_socket_to_dead_queue(const NETWORK_CONNECTION& connection) {
    const MUTEX_LOCKER guard(dead_lock);
    connection->dead_since_ms = clock();
    connection->dead.store(true, std::memory_order_release);
    dead_sockets.add(connection);
    if (is_pump_thread()) {
        connection->close();
    } else if (connection->socket) {
        // The pump may be inside this socket: it gives up the descriptor itself.
        foreign_closes.store(true);
        connection->socket->shut_down();
    }
}

void NETWORK_MANAGER::close_foreign_sockets() {
    const MUTEX_LOCKER guard(dead_lock);
    for (const NETWORK_CONNECTION& connection : dead_sockets) {
        if (connection->socket && connection->socket->is_connected()) {
            connection->close();
        }
    }
}

void NETWORK_MANAGER::process_dead_sockets(bool force) {
    if (foreign_closes.exchange(false)) {
        close_foreign_sockets();
    }
    std::vector<NETWORK_CONNECTION> gone;
    {
        const MUTEX_LOCKER guard(dead_lock);
        const std::uint32_t now = clock();
        std::int32_t expired = 0;
        while (expired < dead_sockets.get_count() &&
               (force || now - dead_sockets[expired]->dead_since_ms >= GRACE_PERIOD_MS)) {
            gone.push_back(dead_sockets[expired++]);
        }
        if (expired != 0) {
            KVCORE::DYNAMIC_ARRAY<NETWORK_CONNECTION> left;
            for (std::int32_t index = expired; index < dead_sockets.get_count(); ++index) {
                left.add(dead_sockets[index]);
            }
            dead_sockets = std::move(left);
        }
    }
    // Out of the lock, so that the callback may disconnect others.
    for (const NETWORK_CONNECTION& connection : gone) {
        call_user_callback(dead_callback, connection, 0);
        connection->manager = nullptr;
        const MUTEX_LOCKER guard(send_lock);
        connection->delete_pending_messages();
    }
}

bool NETWORK_MANAGER::is_send_waiting() const {
    const MUTEX_LOCKER guard(send_lock);
    return send_queue.get_count() != 0;
}

std::int32_t NETWORK_MANAGER::get_number_of_connections() const {
    const MUTEX_LOCKER guard(connection_lock);
    return connections.get_count();
}

NETWORK_CONNECTION NETWORK_MANAGER::get_connection(std::int32_t index) const {
    const MUTEX_LOCKER guard(connection_lock);
    if (index < 0 || index >= connections.get_count()) {
        return nullptr;
    }
    return connections[index];
}

std::int32_t NETWORK_MANAGER::get_number_of_dead_connections() const {
    const MUTEX_LOCKER guard(dead_lock);
    return dead_sockets.get_count();
}

unsigned char NETWORK_MANAGER::get_report(std::uint32_t& count, std::uint32_t& min1,
                                          std::uint32_t& max1, std::uint32_t& avg1,
                                          std::uint32_t& min2, std::uint32_t& max2,
                                          std::uint32_t& avg2, std::uint32_t& min3,
                                          std::uint32_t& max3, std::uint32_t& avg3) {
    const MUTEX_LOCKER guard(report_lock);
    return reporter ? reporter->report(count, min1, max1, avg1, min2, max2, avg2, min3, max3, avg3)
                    : static_cast<unsigned char>(0);
}

bool NETWORK_MANAGER::ip_matches(std::uint32_t a, std::uint32_t b, std::int32_t ignore_bits) {
    if (ignore_bits >= 32) {
        return true;
    }
    return ignore_bits <= 0 ? a == b : (a >> ignore_bits) == (b >> ignore_bits);
}

void NETWORK_MANAGER::call_message_callback(MESSAGE_CALLBACK callback,
                                            const NETWORK_CONNECTION& connection,
                                            NETWORK_MESSAGE& message, void* callback_user) {
    if (callback) {
        const NETWORK_CONNECTION own = connection;
        callback(*this, own, message, callback_user);
    }
}

void NETWORK_MANAGER::call_user_callback(USER_CALLBACK callback,
                                         const NETWORK_CONNECTION& connection, unsigned char flag) {
    if (callback) {
        const NETWORK_CONNECTION own = connection;
        callback(*this, own, user, flag);
    }
}
