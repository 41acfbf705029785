// One IPv4 TCP socket: connect with a time-out, a listener, and a non-blocking byte pipe with a
// fixed set of result codes.
//
// The object has no state beyond the socket. Every descriptor that it makes is closed on exec. A
// socket belongs to one thread at a time; only `is_connected` and `shut_down` may be called from
// another thread.
#ifndef PLATFORM_TCPIP_SOCKET_H
#define PLATFORM_TCPIP_SOCKET_H

#include <sys/types.h>
#include <sys/uio.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace KV_SOCKET {

// Result codes of `connect`, `listen`, `create_socket` and the name lookups.
enum SOCKET_RESULT : std::int32_t {
    SOCKET_OK = 0,
    SOCKET_CONNECT_FAILED = 1,  // `connect` failed at once, no time-out given
    SOCKET_ERROR = 2,           // socket, option, wait or pending connection failed
    SOCKET_HOST_NOT_FOUND = 3,  // host name not resolved
    SOCKET_NO_HOST_NAME = 4,    // this machine's name can't be read
    SOCKET_TIMEOUT = 5,         // no address, or no connection, within the time-out
    SOCKET_LISTEN_FAILED = 6,
    SOCKET_BIND_FAILED = 9,
};

// Bits of a socket's options.
enum SOCKET_OPTION : std::int32_t {
    OPTION_NON_BLOCKING = 1,
    OPTION_KEEP_ALIVE = 2,
    OPTION_LINGER = 4,  // `close` waits up to 10 seconds for what isn't sent; clear: linger off
    OPTION_DEBUG = 8,   // wants a privilege; a refusal for lack of it is ignored
};

class CONNECT_LIMIT;

class TCPIP_SOCKET {
public:
    TCPIP_SOCKET() = default;
    ~TCPIP_SOCKET();
    TCPIP_SOCKET(const TCPIP_SOCKET&) = delete;
    TCPIP_SOCKET& operator=(const TCPIP_SOCKET&) = delete;

    // Connects to `host` (a name or dotted numbers) at `port`, in host order; a connection that the
    // object has is closed first. With a time-out above 0 the look-up of the name and the
    // connection together take at most that many seconds, and while they wait `go_on` is asked
    // several times a second; once it says no, the result is SOCKET_TIMEOUT. With 0 both block
    // and the result is never SOCKET_TIMEOUT.
    std::int32_t connect(const char* host, std::uint16_t port, std::int32_t timeout_seconds,
                         const std::function<bool()>& go_on = nullptr);

    // Opens a listener at `port` on the bind address; port 0 takes a free one (see
    // `get_local_port`).
    std::int32_t listen(std::uint16_t port);

    // The next waiting caller, owned by the taker, with this object's options applied; null when
    // nobody waits, when this object isn't listening, or on an error. `error`, if given, receives
    // the system's error number then, and 0 when there was nobody or no listener.
    TCPIP_SOCKET* accept(int* error = nullptr);

    // The count of bytes sent, 0 when the socket would block, -1 after a failure, which closes the
    // socket. Never raises a signal.
    std::int32_t send(const void* bytes, std::int32_t size);
    // The same for several pieces, in one system call; at most IOV_MAX pieces are looked at.
    std::int32_t send_pieces(const ::iovec* pieces, std::size_t count);

    // Sends up to `count` bytes of the open file `file` from `offset`, which moves on by what was
    // sent, without a copy through this process. Yields the count, 0 when the socket would block,
    // -1 after a failure of the socket, which closes it, and -2 when the file gave nothing (its
    // end, or a read error): the socket stays open then.
    std::int64_t send_file(int file, ::off_t& offset, std::size_t count);

    // The count received, 0 when no data is waiting (or `size` is below 1), -1 when the peer has
    // closed or after a failure; both close the socket.
    std::int32_t receive(void* bytes, std::int32_t size);

    // Shuts both directions down and closes. Does nothing when not connected.
    void close();

    // Ends the connection for the peer at once without giving up the descriptor, so that the thread
    // that owns the socket can still be inside it; that thread sees the end and closes. Callable
    // from any thread.
    void shut_down();

    // Applies the option bits and switches off the gathering of small segments (TCP_NODELAY): a
    // small message behind another one must not wait for the peer's delayed acknowledgement.
    // Yields SOCKET_OK or SOCKET_ERROR.
    std::int32_t apply_socket_options();

    // Makes the descriptor, in place of one that isn't connected. Yields SOCKET_OK or SOCKET_ERROR.
    std::int32_t create_socket();

    int get_socket_reference() const { return descriptor; }
    bool is_connected() const { return connected.load(std::memory_order_acquire); }

    void set_options(std::int32_t bits) { options = bits; }
    std::int32_t get_options() const { return options; }
    void set_backlog(std::int32_t callers) { backlog = callers; }
    // The local address, in network order, that `listen` binds; any address unless set.
    void set_bind_address(std::uint32_t address) { bind_address = address; }

    // The name given to `connect`; null for an accepted socket.
    const char* get_peer_name() const { return host_name.get(); }
    std::uint32_t get_peer_address() const { return peer_address; }  // network order
    std::uint16_t get_peer_port() const { return peer_port; }        // host order
    // The port that the socket is bound to, in host order; 0 without one.
    std::uint16_t get_local_port() const;

    // This machine's name into `name`, which holds 100 bytes.
    static std::int32_t get_host_name(char* name);
    // The first IPv4 address of a host, in network order.
    static std::int32_t get_host_addr(std::uint32_t& address, const char* name);
    // Four decimal numbers, the byte that comes first in network order first; 16 bytes hold any.
    static void ip_to_str(std::uint32_t address, char* text, std::int32_t size);

private:
    std::int32_t finish_connect(const CONNECT_LIMIT& limit);
    std::int32_t fail(std::int32_t result);
    void give_up_descriptor();
    std::int32_t sent_or_closed(::ssize_t result);

    int descriptor = -1;
    std::atomic<bool> connected{false};  // the descriptor is open and in use
    std::int32_t options = OPTION_NON_BLOCKING | OPTION_DEBUG;
    std::int32_t backlog = 2048;
    std::unique_ptr<char[]> host_name;
    std::uint32_t peer_address = 0;
    std::uint16_t peer_port = 0;
    std::uint32_t bind_address = 0;  // INADDR_ANY
    bool listening = false;
    std::mutex close_lock;  // keeps `shut_down` off a descriptor that `close` gives back
};

}  // namespace KV_SOCKET

#endif  // PLATFORM_TCPIP_SOCKET_H
