#include "connect_wait.h"

#include <arpa/inet.h>
#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <string>

#include "kvcore/sync_event.h"
#include "platform/tcpip_socket.h"

namespace KV_SOCKET {

namespace {

// Between two questions whether to go on waiting.
constexpr int ASK_MS = 100;

// One look-up, owned by its thread and by the caller while that waits.
struct LOOKUP {
    explicit LOOKUP(const char* host) : name(host) {}

    const std::string name;
    KVCORE::SYNC_EVENT finished;
    // Good once `finished` has been set.
    std::int32_t result = SOCKET_HOST_NOT_FOUND;
    std::uint32_t address = 0;
};

void* run_lookup(void* argument) {
    const std::unique_ptr<std::shared_ptr<LOOKUP>> own(
        static_cast<std::shared_ptr<LOOKUP>*>(argument));
    LOOKUP& lookup = **own;
    lookup.result = TCPIP_SOCKET::get_host_addr(lookup.address, lookup.name.c_str());
    lookup.finished.set();
    return nullptr;
}

bool start_lookup(const std::shared_ptr<LOOKUP>& lookup) {
    auto argument = std::make_unique<std::shared_ptr<LOOKUP>>(lookup);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread;
    const bool started = pthread_create(&thread, &attributes, &run_lookup, argument.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (started) {
        argument.release();  // the thread has it
    }
    return started;
}

}  // namespace

CONNECT_LIMIT::CONNECT_LIMIT(std::int32_t timeout_seconds, const std::function<bool()>& go_on)
    : end_(CLOCK::now() + std::chrono::seconds(timeout_seconds)), go_on_(go_on) {
}

int CONNECT_LIMIT::get_wait_ms() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - CLOCK::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, go_on_ ? ASK_MS : INT_MAX));
}

bool CONNECT_LIMIT::is_over() const {
    return CLOCK::now() >= end_ || (go_on_ && !go_on_());
}

std::int32_t look_up_host(std::uint32_t& address, const char* name, const CONNECT_LIMIT& limit) {
    if (!name) {
        return SOCKET_HOST_NOT_FOUND;
    }
    // An address that is written out needs nobody to be asked.
    if (::inet_pton(AF_INET, name, &address) == 1) {
        return SOCKET_OK;
    }
    const auto lookup = std::make_shared<LOOKUP>(name);
    if (!start_lookup(lookup)) {
        return TCPIP_SOCKET::get_host_addr(address, name);
    }
    do {
        if (lookup->finished.await(KVCORE::MILLISECONDS(limit.get_wait_ms()))) {
            address = lookup->address;
            return lookup->result;
        }
    } while (!limit.is_over());
    return SOCKET_TIMEOUT;
}

int wait_writable(int descriptor, const CONNECT_LIMIT& limit) {
    for (;;) {
        ::pollfd item{descriptor, POLLOUT, 0};
        const int result = ::poll(&item, 1, limit.get_wait_ms());
        if (result > 0 || (result < 0 && errno != EINTR)) {
            return result;
        }
        if (limit.is_over()) {
            return 0;
        }
    }
}

}  // namespace KV_SOCKET
