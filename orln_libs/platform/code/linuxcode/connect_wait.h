// The two waits on the way to a connection: for the host's address, and for the peer's answer.
#ifndef PLATFORM_LINUXCODE_CONNECT_WAIT_H
#define PLATFORM_LINUXCODE_CONNECT_WAIT_H

#include <chrono>
#include <cstdint>
#include <functional>

namespace KV_SOCKET {

// How long both waits together may take. `go_on` may be null and must outlive the object.
class CONNECT_LIMIT {
public:
    CONNECT_LIMIT(std::int32_t timeout_seconds, const std::function<bool()>& go_on);

    // How long to wait at once, in milliseconds: to the end, or to the next question to `go_on`.
    int get_wait_ms() const;
    // True when the time is over, or `go_on`, which is asked each time, says no.
    bool is_over() const;

private:
    using CLOCK = std::chrono::steady_clock;

    CLOCK::time_point end_;
    const std::function<bool()>& go_on_;
};

// As TCPIP_SOCKET::get_host_addr, and SOCKET_TIMEOUT when the limit is over. The system's look-up
// of a name can't be stopped, so it runs on a thread of its own, which is left behind then: it ends
// with the look-up, or with the process, and touches nothing of the caller's.
std::int32_t look_up_host(std::uint32_t& address, const char* name, const CONNECT_LIMIT& limit);

// Waits until the descriptor can be written. Yields poll's result: above 0 when it can, 0 when the
// limit is over, below 0 on an error.
int wait_writable(int descriptor, const CONNECT_LIMIT& limit);

}  // namespace KV_SOCKET

#endif  // PLATFORM_LINUXCODE_CONNECT_WAIT_H
