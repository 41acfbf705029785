// Finds out which of many sockets are ready, at a cost that grows with the ready ones only.
//
// Readiness is level-triggered: what isn't dealt with is reported again. `wake` may be called from
// any thread, all else from one.
#ifndef PLATFORM_SOCKET_POLLER_H
#define PLATFORM_SOCKET_POLLER_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KV_SOCKET {

class SOCKET_POLLER {
public:
    enum INTEREST : std::uint32_t {
        NOTHING = 0,
        READABLE = 1,  // data, a caller, the peer's close, or a failure
        WRITABLE = 2,  // room to send, or a failure
    };
    struct EVENT {
        std::uint64_t key;
        std::uint32_t ready;  // INTEREST bits
    };

    SOCKET_POLLER() = default;
    ~SOCKET_POLLER();
    SOCKET_POLLER(const SOCKET_POLLER&) = delete;
    SOCKET_POLLER& operator=(const SOCKET_POLLER&) = delete;

    // Makes the system's objects unless they are there. Yields false when the system has none left.
    bool open();
    bool is_open() const { return poll_descriptor >= 0; }

    // Changes what is reported of `descriptor` from the bits `before` to the bits `after`; `key`
    // comes back in its events and is below 2^64 - 1. A closed descriptor leaves by itself.
    bool change(int descriptor, std::uint64_t key, std::uint32_t before, std::uint32_t after);

    // Waits up to `timeout_ms` (0: not at all) and puts the ready sockets into `events`, some of
    // them if they are very many; the next call gives others. Yields false when nothing was ready
    // and `wake` wasn't called.
    bool wait(std::vector<EVENT>& events, std::uint32_t timeout_ms);

    // Ends a `wait` in progress, or the next one.
    void wake();

private:
    int poll_descriptor = -1;
    int wake_descriptor = -1;
};

}  // namespace KV_SOCKET

#endif  // PLATFORM_SOCKET_POLLER_H
