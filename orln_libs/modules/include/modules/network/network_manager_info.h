// One connection of a NETWORK_MANAGER, held through counted handles.
//
// Handles are copied freely between threads and may outlive the manager. All fields are those of
// the manager's pump thread; what other threads may use says so.
#ifndef MODULES_NETWORK_NETWORK_MANAGER_INFO_H
#define MODULES_NETWORK_NETWORK_MANAGER_INFO_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kvcore/reference_counter.h"
#include "modules/network/transfer_ring.h"
#include "platform/tcpip_socket.h"

class NETWORK_MANAGER;
class NETWORK_MANAGER_INFO;
class NETWORK_MESSAGE;
class PENDING_MESSAGE;

// The handle of a connection; a null handle is legal everywhere.
using NETWORK_CONNECTION = KVCORE::REFERENCE_COUNTER<NETWORK_MANAGER_INFO>;

// Receives a message. The message is valid only during the call and may be cleared and re-used as
// the reply.
using NETWORK_MESSAGE_CALLBACK = void (*)(NETWORK_MANAGER& manager,
                                          const NETWORK_CONNECTION& connection,
                                          NETWORK_MESSAGE& message, void* user);

// A millisecond clock of 32 bits that wraps.
using NETWORK_CLOCK = std::uint32_t (*)();

class NETWORK_MANAGER_INFO
    : public KVCORE::REFERENCE_COUNTED<NETWORK_MANAGER_INFO,
                                       KVCORE::BASE_REFERENCE_COUNTED_TRAITS> {
public:
    NETWORK_MANAGER_INFO(NETWORK_MANAGER* owner, NETWORK_CLOCK millisecond_clock);
    ~NETWORK_MANAGER_INFO();
    NETWORK_MANAGER_INFO(const NETWORK_MANAGER_INFO&) = delete;
    NETWORK_MANAGER_INFO& operator=(const NETWORK_MANAGER_INFO&) = delete;

    // Set and cleared by the connection's owner on the pump thread: a raw transfer is in progress.
    // While it is on the manager neither reads, pings, times out nor sends queued messages here.
    unsigned char stream_mode = 0;

    // Messages that are sent between `hold_sends` and `release_sends` wait for the latter, while
    // what is queued already still goes out. The side that offers a raw transfer holds right after
    // its offer, so that no ping or pong of its own gets between the offer and the raw bytes, where
    // the peer would take it for a part of them. Pump thread only.
    void hold_sends();
    void release_sends();

    // Where this connection's messages go; null for the manager's own.
    NETWORK_MESSAGE_CALLBACK message_callback = nullptr;
    void* message_user = nullptr;

    // `NETWORK_MANAGER::send` with no reply handler. Any thread. Yields 1 when queued.
    unsigned char send_message(NETWORK_MESSAGE& message);
    // `NETWORK_MANAGER::disconnect` with `by_user` on.
    void disconnect();

    // KiB per second over the last 5 seconds, to one decimal place. Any thread.
    double get_send_rate_kbps() const;
    double get_receive_rate_kbps() const;
    // Adds a transfer of `bytes`, now, to the rates. 0 records nothing.
    void record_sent_data(std::uint32_t bytes);
    void record_received_data(std::uint32_t bytes);

    // Frees the socket, the buffers and the waiting messages and resets every field, on the pump
    // thread. A manager that has the connection closes it in its next pass.
    void clear();

    // True once the connection has been closed. Any thread.
    bool is_dead() const { return dead.load(std::memory_order_acquire); }
    // True while messages can be sent. Any thread.
    bool is_connected() const { return !is_dead() && socket && socket->is_connected(); }
    KV_SOCKET::TCPIP_SOCKET* get_socket() const { return socket.get(); }
    // The peer's IPv4 address in network order and its port; 0 without a socket.
    std::uint32_t get_peer_address() const { return socket ? socket->get_peer_address() : 0; }
    std::uint16_t get_peer_port() const { return socket ? socket->get_peer_port() : 0; }
    unsigned char is_by_user() const { return by_user.load(std::memory_order_relaxed); }
    std::uint32_t get_latency_ms() const { return latency_ms; }
    std::int32_t get_protocol_version() const { return protocol_version; }
    // The last pass of sending could not send all that is queued here. Pump thread.
    bool is_send_blocked() const { return send_blocked; }
    bool is_key_exchange_done() const { return key_exchange_done != 0; }
    std::uint32_t get_last_receive_ms() const { return last_receive_ms; }
    std::uint32_t get_last_send_ms() const { return last_send_ms; }
    // Bytes of memory for the message being received, not counting a reserve of a quarter.
    std::uint32_t get_receive_capacity() const { return receive_capacity; }

private:
    friend class NETWORK_MANAGER;

    bool holds_sends() const { return (hold_number.load() & 1) != 0; }
    // The hold that a request queued now falls under; 0 for none.
    std::uint32_t get_hold() const {
        const std::uint32_t number = hold_number.load();
        return (number & 1) != 0 ? number : 0;
    }

    struct REPLY_HANDLER {
        NETWORK_MESSAGE_CALLBACK handler;
        void* user;
    };

    std::uint32_t take_read_ahead(void* bytes, std::uint32_t size);
    void close();
    void release_buffers();
    void delete_pending_messages();

    NETWORK_CLOCK clock;
    std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> socket;
    std::atomic<NETWORK_MANAGER*> manager;  // null once the manager has let go of the connection
    std::atomic<bool> dead{false};
    std::atomic<bool> closing{false};  // somebody is at closing it

    // The message being received.
    unsigned char* receive_buffer = nullptr;  // owned, from the core allocator
    std::uint32_t receive_capacity = 0;       // of the block, what may be filled at present
    std::uint32_t receive_allocated = 0;
    std::uint32_t receive_expected = 0;  // 0 while the prefix is being read
    std::uint32_t receive_count = 0;     // bytes there of the prefix or the message
    unsigned char prefix[5] = {};

    // Odd while sends are held; each hold has its own number, which its requests carry.
    std::atomic<std::uint32_t> hold_number{0};

    // Bytes that came with an earlier read and aren't consumed yet.
    std::unique_ptr<unsigned char[]> read_ahead;
    std::uint32_t read_ahead_begin = 0;
    std::uint32_t read_ahead_end = 0;

    std::uint32_t last_receive_ms = 0;
    std::uint32_t dead_since_ms = 0;  // under the manager's dead lock
    std::uint32_t last_send_ms = 0;
    std::uint32_t last_ping_ms = 0;  // 0 before the first ping
    std::uint32_t latency_ms = 100;  // last ping to pong
    TRANSFER_RING received;
    TRANSFER_RING sent;
    std::atomic<unsigned char> by_user{0};  // a local `disconnect` asked for the close

    // The key exchange, the waiting messages and the reply handlers: under the manager's send lock.
    std::int32_t protocol_version = 0;
    unsigned char key_exchange_done = 0;
    std::int32_t private_key[4] = {};
    std::uint32_t shared_key[4] = {};
    std::int32_t prime = 0;
    std::atomic<std::uint32_t> pending_since_ms{0};  // when the first one came; 0 when none waits
    PENDING_MESSAGE* pending_head = nullptr;         // owned list, oldest first
    PENDING_MESSAGE* pending_tail = nullptr;
    std::vector<REPLY_HANDLER> reply_handlers;  // a token is the index here plus 1

    // The pump's book-keeping.
    std::uint64_t poll_key = 0;       // this connection in the poller's events; grows with each one
    std::uint32_t poll_interest = 0;  // what the poller reports at present
    std::uint64_t blocked_pass = 0;   // the send pass that may send no more here
    bool send_blocked = false;        // the socket took less than it was given
    bool partly_sent = false;         // the first request in the queue is under way
    bool stream_wants_data = false;   // the owner of a raw transfer found nothing to receive
    bool stream_noted = false;        // in the manager's list of raw transfers
    bool marked = false;              // to be closed at the end of the pass
};

#endif  // MODULES_NETWORK_NETWORK_MANAGER_INFO_H
