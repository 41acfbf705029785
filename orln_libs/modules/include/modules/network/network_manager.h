// Turns TCP byte streams into message deliveries, for many connections at once, without threads of
// its own.
//
// Somebody calls the two pump operations, `monitor` and `monitor_send`, in a loop on one thread,
// the pump thread; every callback runs there, and `connect`, `listen` and the raw transfers are
// called there too. `send`, `disconnect` and the queries that say so may be called from any thread.
// A pump pass never waits; a program with nothing else to do sleeps in `wait`.
//
//     NETWORK_MANAGER manager(1, 0);
//     manager.listen(port, on_message, user, on_connect, on_disconnect, nullptr, user);
//     while (running) {
//         manager.wait(1000);
//         manager.monitor();
//         manager.monitor_send();
//     }
//
// Callbacks may send, connect and disconnect, and must not wait for another thread that is in
// `disconnect`, nor delete the manager. Every socket failure becomes a disconnect; nothing
// reconnects by itself.
#ifndef MODULES_NETWORK_NETWORK_MANAGER_H
#define MODULES_NETWORK_NETWORK_MANAGER_H

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "kvcore/dynamic_array.h"
#include "modules/network/network_manager_info.h"
#include "modules/network/send_request.h"
#include "modules/threading/mutex.h"
#include "platform/network_message.h"
#include "platform/socket_poller.h"
#include "platform/tcpip_socket.h"

class NETWORK_MESSAGE_REPORTER;

class NETWORK_MANAGER {
public:
    using USER_CALLBACK = void (*)(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                                   void* user, unsigned char flag);
    using MESSAGE_CALLBACK = NETWORK_MESSAGE_CALLBACK;
    using PING_CALLBACK = void (*)(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                                   unsigned char ping_sent, unsigned char timed_out,
                                   std::uint32_t latency_ms, double peer_receive_kbps,
                                   double peer_send_kbps, void* user);
    using SEND_QUEUE_CALLBACK = void (*)(NETWORK_MANAGER& manager, std::int32_t count, void* user);
    using CONNECT_FAILED_CALLBACK = void (*)(NETWORK_MANAGER& manager, const char* host,
                                             std::uint16_t port, std::int32_t error, void* user);

    // Ids of the transport's own messages.
    static constexpr std::int16_t PING_MESSAGE = 30000;
    static constexpr std::int16_t PONG_MESSAGE = 30010;
    static constexpr std::int16_t PROTOCOL_REQUEST_MESSAGE = 30100;
    static constexpr std::int16_t PROTOCOL_RESPONSE_MESSAGE = 30110;

    // A frame's message has a size from MIN_MESSAGE_SIZE up to, not including, MESSAGE_SIZE_LIMIT.
    static constexpr std::uint32_t MIN_MESSAGE_SIZE = 18;
    static constexpr std::uint32_t MESSAGE_SIZE_LIMIT = 0xA00000;

    // Distinct pairs of reply handler and user that one connection can have registered.
    static constexpr std::size_t MAX_REPLY_HANDLERS = 1024;

    // `stop_message_function_calls`: replies by token are a violation and close the connection.
    // `disable_key_exchange`: this side begins no key exchange and sends without waiting for one;
    // one that the peer begins is answered all the same.
    NETWORK_MANAGER(unsigned char stop_message_function_calls, unsigned char disable_key_exchange);
    ~NETWORK_MANAGER();
    NETWORK_MANAGER(const NETWORK_MANAGER&) = delete;
    NETWORK_MANAGER& operator=(const NETWORK_MANAGER&) = delete;

    // Called on a new connection: accepted ones with flag 0, made ones with flag 1 (and with a null
    // handle when that failed).
    USER_CALLBACK connect_callback = nullptr;
    // Called once when a connection is closed, with its `by_user` as the flag.
    USER_CALLBACK disconnect_callback = nullptr;
    // Called with flag 0 when a closed connection leaves after its grace period.
    USER_CALLBACK dead_callback = nullptr;
    void* user = nullptr;  // given to those three
    // For connections that have none of their own.
    MESSAGE_CALLBACK message_callback = nullptr;
    void* message_user = nullptr;
    // Told when more than 2000 requests are queued at the start of `monitor_send`.
    SEND_QUEUE_CALLBACK send_queue_callback = nullptr;
    void* send_queue_user = nullptr;
    // Told of each ping sent, each pong received, and each connection that has timed out.
    PING_CALLBACK ping_callback = nullptr;
    void* ping_user = nullptr;
    CONNECT_FAILED_CALLBACK connect_failed_callback = nullptr;
    void* connect_failed_user = nullptr;
    std::int32_t connect_timeout = 10;  // seconds
    // Asked while `connect` waits; false gives up. Null: waits to the end.
    std::function<bool()> connect_go_on;

    // Stores the callbacks and opens a listener at `port` (0: a free one) on `bind_address`, in
    // network order (0: any). Yields 1, or 0 and no listener.
    unsigned char listen(std::uint16_t port, MESSAGE_CALLBACK message_function,
                         void* message_function_user, USER_CALLBACK connect_function,
                         USER_CALLBACK disconnect_function, USER_CALLBACK dead_function,
                         void* callback_user, std::uint32_t bind_address = 0);
    // The port of a listener; 0 when there is no such listener.
    std::uint16_t get_listen_port(std::size_t index = 0) const;

    // Connects, blocking for at most connect_timeout. A null handle on failure.
    NETWORK_CONNECTION connect(const char* host, std::uint16_t port,
                               MESSAGE_CALLBACK message_function, void* message_function_user);

    // Queues a message; any thread. Yields 0 for a null handle, a closed connection, a
    // message of MESSAGE_SIZE_LIMIT bytes or more, too many reply handlers, or no memory.
    // The message is altered: it then holds the full frame, or has been emptied into the list of
    // those that wait for the key exchange. `reply_handler` is called with `reply_user` for each
    // reply of the peer to this message. `protocol` is set only for key exchange messages.
    unsigned char send(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message,
                       MESSAGE_CALLBACK reply_handler = nullptr, void* reply_user = nullptr,
                       unsigned char protocol = 0);

    // One pass of accepting, receiving and timers: at most one message for each connection, in the
    // order in which the connections were made. Yields 1 if anything was accepted or received.
    unsigned char monitor();
    // One pass of sending. Yields 1 if some request could not be sent to its end.
    unsigned char monitor_send();
    // Sleeps on the pump thread until the pump has something to do, or for `timeout_ms`: until a
    // connection is readable, a caller waits, a queued message or a raw transfer that found no room
    // can go on, or `send` was called on another thread. Yields false when the time is over. The
    // timers of `monitor` don't end it, so `timeout_ms` bounds their lateness.
    bool wait(std::uint32_t timeout_ms);

    // Stores `by_user` and closes at once on the caller's thread; any thread. The peer sees the end
    // at once; on another thread than the pump's, the descriptor is given back at the next pass.
    void disconnect(const NETWORK_CONNECTION& connection, unsigned char by_user);
    void disconnect_all(unsigned char by_user);

    // Raw transfer on a connection in stream_mode. Yield 1 with the count, possibly 0 when the
    // socket would block. Yield 0 and do nothing unless stream_mode is set and the socket
    // connected. A socket failure disconnects and yields 0.
    unsigned char send_stream_data(const NETWORK_CONNECTION& connection, const void* bytes,
                                   std::uint32_t size, std::uint32_t& sent);
    unsigned char receive_stream_data(const NETWORK_CONNECTION& connection, void* bytes,
                                      std::uint32_t size, std::uint32_t& received);
    // The same from an open file, without a copy through this process; `offset` moves on by what
    // was sent. Also yields 0 when the file has nothing at `offset` (cut short, or unreadable): the
    // connection is then still open, with a peer that waits for bytes that won't come.
    unsigned char send_stream_file(const NETWORK_CONNECTION& connection, int file, ::off_t& offset,
                                   std::size_t count, std::uint32_t& sent);

    // Any thread.
    bool is_send_waiting() const;
    std::int32_t get_number_of_connections() const;
    NETWORK_CONNECTION get_connection(std::int32_t index) const;  // null when out of range

    // Closed connections within their grace period. Any thread.
    std::int32_t get_number_of_dead_connections() const;

    // The ten results of NETWORK_MESSAGE_REPORTER::report; yields 0 without a reporter.
    unsigned char get_report(std::uint32_t& count, std::uint32_t& min1, std::uint32_t& max1,
                             std::uint32_t& avg1, std::uint32_t& min2, std::uint32_t& max2,
                             std::uint32_t& avg2, std::uint32_t& min3, std::uint32_t& max3,
                             std::uint32_t& avg3);
    void set_reporter(std::unique_ptr<NETWORK_MESSAGE_REPORTER> message_reporter);

    // Compare the message's id, and leave it at the payload's start.
    static bool is_ping_message(NETWORK_MESSAGE& message);
    static bool is_pong_message(NETWORK_MESSAGE& message);
    // True if two addresses, in host order, are equal without their lowest `ignore_bits` bits.
    static bool ip_matches(std::uint32_t a, std::uint32_t b, std::int32_t ignore_bits);

    // Adds an existing connection with its socket. Yields 0 when it can't be watched.
    unsigned char process_connect(const NETWORK_CONNECTION& connection);

    // The time-outs run on this clock; `get_ms_count` unless set, before the first connection.
    void set_clock(NETWORK_CLOCK millisecond_clock);

private:
    // Keys of listeners in the poller's events; connections count up from 1 and never get here.
    static constexpr std::uint64_t LISTENER_KEY = std::uint64_t{1} << 62;

    // What a message needs to become a frame, taken together under send_lock.
    struct SEND_TERMS {
        std::uint32_t handler_token = 0;
        std::uint32_t user_token = 0;
        std::int32_t trailer_version = 0;
        bool encipher = false;
        std::uint32_t key[4] = {};
    };
    struct LISTENER {
        std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> socket;
        bool ready = false;
        bool suspended = false;  // the process had no descriptors left
        std::uint32_t suspended_ms = 0;
    };

    // Accepting, connecting, closing (network_manager.cpp).
    unsigned char accept_callers();
    bool accept_from(std::size_t index);
    void start_accepted(const NETWORK_CONNECTION& connection);
    void suspend_listener(std::size_t index);
    void resume_listeners();
    NETWORK_CONNECTION make_connection(std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> socket);
    bool add_connection(const NETWORK_CONNECTION& connection);
    void mark_for_closing(const NETWORK_CONNECTION& connection);
    void disconnect_marked();
    void disconnect_socket(NETWORK_CONNECTION connection);
    void add_socket_to_dead_queue(const NETWORK_CONNECTION& connection);
    void process_dead_sockets(bool force);
    void close_foreign_sockets();
    bool is_pump_thread() const;
    void enter_pump() { pump_thread.store(std::this_thread::get_id()); }
    void call_message_callback(MESSAGE_CALLBACK callback, const NETWORK_CONNECTION& connection,
                               NETWORK_MESSAGE& message, void* callback_user);
    void call_user_callback(USER_CALLBACK callback, const NETWORK_CONNECTION& connection,
                            unsigned char flag);

    // Finding what is ready (network_manager_poll.cpp).
    void poll_events();
    bool note_event(const KV_SOCKET::SOCKET_POLLER::EVENT& event);
    void update_interest(const NETWORK_CONNECTION& connection);
    void note_stream(const NETWORK_CONNECTION& connection);
    bool end_finished_streams();
    bool has_backlog();
    void refresh_walk();
    NETWORK_CONNECTION find_connection(std::uint64_t poll_key);

    // Receiving (network_manager_receive.cpp).
    unsigned char monitor_receive();
    bool receive_message(const NETWORK_CONNECTION& connection, bool& received);
    bool read_prefix(NETWORK_MANAGER_INFO& info, bool& received, bool& more);
    bool read_message(const NETWORK_CONNECTION& connection, bool& received, bool& more);
    std::int32_t read_bytes(NETWORK_MANAGER_INFO& info, unsigned char* bytes, std::uint32_t size);
    bool handle_message(const NETWORK_CONNECTION& connection);
    bool handle_transport_message(const NETWORK_CONNECTION& connection, bool& keep);
    bool deliver_message(const NETWORK_CONNECTION& connection, std::uint32_t echo_handler,
                         std::uint32_t echo_user);
    void report_violation(NETWORK_MANAGER_INFO& info);

    // Key exchange, pings, timers (network_manager_protocol.cpp).
    void run_timers();
    bool run_connection_timers(const NETWORK_CONNECTION& connection, std::uint32_t now);
    void send_protocol_request(const NETWORK_CONNECTION& connection);
    bool handle_protocol_request(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message);
    bool handle_protocol_response(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message);
    void flush_pending_messages(const NETWORK_CONNECTION& connection);
    void send_ping(const NETWORK_CONNECTION& connection);
    void send_pong(const NETWORK_CONNECTION& connection);
    void handle_pong(const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message);

    // Sending (network_manager_send.cpp).
    bool add_pending(NETWORK_MANAGER_INFO& info, NETWORK_MESSAGE& message,
                     MESSAGE_CALLBACK reply_handler, void* reply_user);
    bool get_send_terms(NETWORK_MANAGER_INFO& info, const NETWORK_MESSAGE& message,
                        MESSAGE_CALLBACK reply_handler, void* reply_user, bool protocol,
                        SEND_TERMS& terms);
    std::unique_ptr<SEND_REQUEST> make_request(const NETWORK_CONNECTION& connection,
                                               NETWORK_MESSAGE& message, const SEND_TERMS& terms);
    bool append_request(std::unique_ptr<SEND_REQUEST> request);
    SEND_REQUEST* send_requests(SEND_QUEUE& queue, SEND_REQUEST* first, unsigned char& unfinished);
    SEND_REQUEST* count_as_sent(SEND_QUEUE& queue, SEND_REQUEST* first, std::uint32_t bytes);
    bool can_stream(const NETWORK_CONNECTION& connection) const;
    unsigned char finish_stream_send(const NETWORK_CONNECTION& connection, std::int64_t count,
                                     std::uint64_t wanted, std::uint32_t& sent);

    KVCORE::DYNAMIC_ARRAY<NETWORK_CONNECTION> connections;
    std::vector<LISTENER> listeners;
    KVCORE::DYNAMIC_ARRAY<NETWORK_CONNECTION> dead_sockets;  // in the order of their deaths
    SEND_QUEUE send_queue;
    // Lock order: connection_lock, then dead_lock; send_lock, then report_lock. No callback is
    // called under a lock.
    mutable MUTEX connection_lock;  // connections
    mutable MUTEX dead_lock;        // dead_sockets
    mutable MUTEX send_lock;        // send_queue, and the key exchange fields of the connections
    MUTEX report_lock;              // reporter
    const unsigned char stop_message_function_calls;
    const unsigned char disable_key_exchange;
    std::unique_ptr<NETWORK_MESSAGE_REPORTER> reporter;
    NETWORK_CLOCK clock;

    // The pump's own state.
    NETWORK_MESSAGE received_message;
    KV_SOCKET::SOCKET_POLLER poller;
    std::vector<KV_SOCKET::SOCKET_POLLER::EVENT> events;
    std::vector<std::uint64_t> ready;         // keys of the connections to read in the next pass
    std::vector<std::uint64_t> backlog;       // keys of those with bytes read ahead
    std::vector<NETWORK_CONNECTION> walk;     // connections as the pump sees them, by rising key
    std::vector<NETWORK_CONNECTION> streams;  // those whose end of a raw transfer must be noticed
    std::vector<NETWORK_CONNECTION> marked;   // to be closed at the end of the pass
    std::unique_ptr<unsigned char[]> scratch;
    std::uint64_t next_poll_key = 0;
    std::uint64_t send_pass = 0;
    std::uint32_t timers_ms = 0;  // the time of the last look at the timers
    std::uint32_t walk_version = 0;
    bool timers_due = true;    // look at them whatever the time
    bool any_blocked = false;  // the last send pass left a connection that takes no more
    bool polled = false;       // `wait` has just looked
    bool in_monitor = false;
    bool in_monitor_send = false;
    bool exhaustion_reported = false;

    std::atomic<std::uint32_t> connections_version{1};
    std::atomic<bool> foreign_closes{false};  // another thread closed a connection
    std::atomic<std::thread::id> pump_thread{};
    bool new_requests = false;  // under send_lock: queued since the last `monitor_send`
    bool pump_waiting = false;  // under send_lock: the pump sleeps in `wait`
};

#endif  // MODULES_NETWORK_NETWORK_MANAGER_H
