#include "platform/socket_poller.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>

namespace KV_SOCKET {

namespace {

constexpr std::uint64_t WAKE_KEY = UINT64_MAX;
constexpr int EVENTS_AT_ONCE = 1024;

std::uint32_t to_epoll(std::uint32_t interest) {
    std::uint32_t bits = 0;
    if (interest & SOCKET_POLLER::READABLE) {
        bits |= EPOLLIN | EPOLLRDHUP;
    }
    if (interest & SOCKET_POLLER::WRITABLE) {
        bits |= EPOLLOUT;
    }
    return bits;
}

std::uint32_t from_epoll(std::uint32_t bits) {
    std::uint32_t ready = 0;
    if (bits & (EPOLLIN | EPOLLRDHUP | EPOLLHUP | EPOLLERR)) {
        ready |= SOCKET_POLLER::READABLE;
    }
    if (bits & (EPOLLOUT | EPOLLHUP | EPOLLERR)) {
        ready |= SOCKET_POLLER::WRITABLE;
    }
    return ready;
}

}  // namespace

SOCKET_POLLER::~SOCKET_POLLER() {
    if (wake_descriptor >= 0) {
        ::close(wake_descriptor);
    }
    if (poll_descriptor >= 0) {
        ::close(poll_descriptor);
    }
}

bool SOCKET_POLLER::open() {
    if (is_open()) {
        return true;
    }
    const int poll = ::epoll_create1(EPOLL_CLOEXEC);
    if (poll < 0) {
        return false;
    }
    const int wake_up = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    ::epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = WAKE_KEY;
    if (wake_up < 0 || ::epoll_ctl(poll, EPOLL_CTL_ADD, wake_up, &event) != 0) {
        if (wake_up >= 0) {
            ::close(wake_up);
        }
        ::close(poll);
        return false;
    }
    poll_descriptor = poll;
    wake_descriptor = wake_up;
    return true;
}

bool SOCKET_POLLER::change(int descriptor, std::uint64_t key, std::uint32_t before,
                           std::uint32_t after) {
    if (before == after) {
        return true;
    }
    ::epoll_event event{};
    event.events = to_epoll(after);
    event.data.u64 = key;
    const int operation = before == NOTHING  ? EPOLL_CTL_ADD
                          : after == NOTHING ? EPOLL_CTL_DEL
                                             : EPOLL_CTL_MOD;
    return ::epoll_ctl(poll_descriptor, operation, descriptor, &event) == 0;
}

bool SOCKET_POLLER::wait(std::vector<EVENT>& events, std::uint32_t timeout_ms) {
    events.clear();
    ::epoll_event found[EVENTS_AT_ONCE];
    const int count = ::epoll_wait(poll_descriptor, found, EVENTS_AT_ONCE,
                                   static_cast<int>(std::min<std::uint32_t>(timeout_ms, INT_MAX)));
    for (int i = 0; i < count; ++i) {
        if (found[i].data.u64 != WAKE_KEY) {
            events.push_back({found[i].data.u64, from_epoll(found[i].events)});
            continue;
        }
        std::uint64_t wakes;
        [[maybe_unused]] const ::ssize_t read = ::read(wake_descriptor, &wakes, sizeof wakes);
    }
    return count > 0;
}

void SOCKET_POLLER::wake() {
    const std::uint64_t one = 1;
    // A counter that is full wakes as well, so the result doesn't matter.
    [[maybe_unused]] const ::ssize_t written = ::write(wake_descriptor, &one, sizeof one);
}

}  // namespace KV_SOCKET
