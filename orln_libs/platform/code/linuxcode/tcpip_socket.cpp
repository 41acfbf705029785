#include "platform/tcpip_socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

#include "connect_wait.h"

namespace KV_SOCKET {

namespace {

constexpr std::size_t HOST_NAME_SIZE = 100;
constexpr int LINGER_SECONDS = 10;

bool set_flag(int descriptor, int option, int value) {
    return ::setsockopt(descriptor, SOL_SOCKET, option, &value, sizeof value) == 0;
}

// sendfile has no flag against SIGPIPE, so the signal is held back on this thread meanwhile.
class SIGPIPE_BLOCK {
public:
    SIGPIPE_BLOCK() {
        ::sigemptyset(&pipe_signal);
        ::sigaddset(&pipe_signal, SIGPIPE);
        ::sigset_t pending;
        ::sigpending(&pending);
        was_pending = ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &pipe_signal, &previous);
    }
    ~SIGPIPE_BLOCK() {
        const int error = errno;
        if (raised && !was_pending) {
            const ::timespec no_time{0, 0};
            while (::sigtimedwait(&pipe_signal, nullptr, &no_time) < 0 && errno == EINTR) {
            }
        }
        ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
        errno = error;
    }
    SIGPIPE_BLOCK(const SIGPIPE_BLOCK&) = delete;
    SIGPIPE_BLOCK& operator=(const SIGPIPE_BLOCK&) = delete;

    void note_broken_pipe() { raised = true; }

private:
    ::sigset_t pipe_signal;
    ::sigset_t previous;
    bool was_pending;
    bool raised = false;
};

}  // namespace

TCPIP_SOCKET::~TCPIP_SOCKET() {
    close();
    give_up_descriptor();
}

std::int32_t TCPIP_SOCKET::create_socket() {
    give_up_descriptor();
    descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return SOCKET_ERROR;
    }
    // There is no SO_NOSIGPIPE here: each send asks for no signal instead.
    return set_flag(descriptor, SO_REUSEADDR, 1) ? SOCKET_OK : fail(SOCKET_ERROR);
}

std::int32_t TCPIP_SOCKET::apply_socket_options() {
    const int flags = ::fcntl(descriptor, F_GETFL);
    if (flags < 0) {
        return SOCKET_ERROR;
    }
    const int wanted =
        (options & OPTION_NON_BLOCKING) ? (flags | O_NONBLOCK) : (flags & ~O_NONBLOCK);
    if (wanted != flags && ::fcntl(descriptor, F_SETFL, wanted) != 0) {
        return SOCKET_ERROR;
    }
    const ::linger linger = {(options & OPTION_LINGER) ? 1 : 0,
                             (options & OPTION_LINGER) ? LINGER_SECONDS : 0};
    const int no_delay = 1;
    if (!set_flag(descriptor, SO_KEEPALIVE, (options & OPTION_KEEP_ALIVE) ? 1 : 0) ||
        ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &linger, sizeof linger) != 0 ||
        ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &no_delay, sizeof no_delay) != 0) {
        return SOCKET_ERROR;
    }
    // Debugging wants a privilege that ordinary users lack; they do without.
    if (!set_flag(descriptor, SO_DEBUG, (options & OPTION_DEBUG) ? 1 : 0) && errno != EACCES &&
        errno != EPERM) {
        return SOCKET_ERROR;
    }
    return SOCKET_OK;
}

std::int32_t TCPIP_SOCKET::listen(std::uint16_t port) {
    close();
    if (create_socket() != SOCKET_OK) {
        return SOCKET_ERROR;
    }
    if (apply_socket_options() != SOCKET_OK) {
        return fail(SOCKET_ERROR);
    }
    ::sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = bind_address;
    address.sin_port = htons(port);
    if (::bind(descriptor, reinterpret_cast<const ::sockaddr*>(&address), sizeof address) != 0) {
        return fail(SOCKET_BIND_FAILED);
    }
    if (::listen(descriptor, backlog) != 0) {
        return fail(SOCKET_LISTEN_FAILED);
    }
    listening = true;
    connected.store(true, std::memory_order_release);
    return SOCKET_OK;
}

TCPIP_SOCKET* TCPIP_SOCKET::accept(int* error) {
    int ignored = 0;
    int& failure = error ? *error : ignored;
    failure = 0;
    if (!listening || !is_connected()) {
        return nullptr;
    }
    ::sockaddr_in address{};
    int accepted;
    // A caller that gave up while it waited comes out as an error of its own: take the next one.
    do {
        ::socklen_t size = sizeof address;
        accepted =
            ::accept4(descriptor, reinterpret_cast<::sockaddr*>(&address), &size, SOCK_CLOEXEC);
    } while (accepted < 0 && (errno == EINTR || errno == ECONNABORTED));
    if (accepted < 0) {
        failure = errno == EAGAIN ? 0 : errno;
        return nullptr;
    }
    auto caller = std::make_unique<TCPIP_SOCKET>();
    caller->descriptor = accepted;
    caller->options = options;
    caller->peer_address = address.sin_addr.s_addr;
    caller->peer_port = ntohs(address.sin_port);
    caller->connected.store(true, std::memory_order_release);
    if (caller->apply_socket_options() != SOCKET_OK) {
        failure = errno;
        return nullptr;
    }
    return caller.release();
}

std::int32_t TCPIP_SOCKET::connect(const char* host, std::uint16_t port,
                                   std::int32_t timeout_seconds,
                                   const std::function<bool()>& go_on) {
    close();
    const CONNECT_LIMIT limit(timeout_seconds, go_on);
    std::uint32_t address = 0;
    const std::int32_t found =
        timeout_seconds > 0 ? look_up_host(address, host, limit) : get_host_addr(address, host);
    if (found != SOCKET_OK) {
        return found;
    }
    if (create_socket() != SOCKET_OK) {
        return SOCKET_ERROR;
    }
    if (timeout_seconds > 0) {
        const int flags = ::fcntl(descriptor, F_GETFL);
        if (flags < 0 || ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) != 0) {
            return fail(SOCKET_ERROR);
        }
    }
    ::sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_addr.s_addr = address;
    peer.sin_port = htons(port);
    if (::connect(descriptor, reinterpret_cast<const ::sockaddr*>(&peer), sizeof peer) != 0) {
        if (timeout_seconds <= 0) {
            return fail(SOCKET_CONNECT_FAILED);
        }
        // A refusal that comes at once is no longer in SO_ERROR, so it must be told apart here.
        if (errno != EINPROGRESS && errno != EINTR) {
            return fail(SOCKET_ERROR);
        }
        const std::int32_t result = finish_connect(limit);
        if (result != SOCKET_OK) {
            return fail(result);
        }
    }
    if (apply_socket_options() != SOCKET_OK) {
        return fail(SOCKET_ERROR);
    }
    const std::size_t length = std::strlen(host) + 1;
    host_name = std::unique_ptr<char[]>(new char[length]);
    std::memcpy(host_name.get(), host, length);
    peer_address = address;
    peer_port = port;
    connected.store(true, std::memory_order_release);
    return SOCKET_OK;
}

std::int32_t TCPIP_SOCKET::finish_connect(const CONNECT_LIMIT& limit) {
    const int ready = wait_writable(descriptor, limit);
    if (ready < 0) {
        return SOCKET_ERROR;
    }
    if (ready == 0) {
        return SOCKET_TIMEOUT;
    }
    int error = 0;
    ::socklen_t size = sizeof error;
    const bool read = ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == 0;
    return read && error == 0 ? SOCKET_OK : SOCKET_ERROR;
}

void TCPIP_SOCKET::give_up_descriptor() {
    if (descriptor >= 0 && !is_connected()) {
        ::close(descriptor);
        descriptor = -1;
    }
}

// The failure of a socket that isn't in use yet.
std::int32_t TCPIP_SOCKET::fail(std::int32_t result) {
    const int error = errno;
    give_up_descriptor();
    errno = error;
    return result;
}

std::int32_t TCPIP_SOCKET::sent_or_closed(::ssize_t result) {
    if (result >= 0) {
        return static_cast<std::int32_t>(result);
    }
    if (errno == EAGAIN) {
        return 0;
    }
    close();
    return -1;
}

std::int32_t TCPIP_SOCKET::send(const void* bytes, std::int32_t size) {
    if (!is_connected()) {
        return -1;
    }
    if (size < 1) {
        return 0;
    }
    ::ssize_t result;
    do {
        result = ::send(descriptor, bytes, static_cast<std::size_t>(size), MSG_NOSIGNAL);
    } while (result < 0 && errno == EINTR);
    return sent_or_closed(result);
}

std::int32_t TCPIP_SOCKET::send_pieces(const ::iovec* pieces, std::size_t count) {
    if (!is_connected()) {
        return -1;
    }
    ::msghdr header{};
    header.msg_iov = const_cast<::iovec*>(pieces);
    header.msg_iovlen = std::min<std::size_t>(count, IOV_MAX);
    ::ssize_t result;
    do {
        result = ::sendmsg(descriptor, &header, MSG_NOSIGNAL);
    } while (result < 0 && errno == EINTR);
    return sent_or_closed(result);
}

std::int64_t TCPIP_SOCKET::send_file(int file, ::off_t& offset, std::size_t count) {
    if (!is_connected()) {
        return -1;
    }
    if (count == 0) {
        return 0;
    }
    ::ssize_t result;
    int error = 0;
    {
        SIGPIPE_BLOCK block;
        do {
            result = ::sendfile(descriptor, file, &offset, count);
            error = result < 0 ? errno : 0;
        } while (error == EINTR);
        if (error == EPIPE) {
            block.note_broken_pipe();
        }
    }
    if (result > 0) {
        return result;
    }
    if (error == EAGAIN) {
        return 0;
    }
    // These speak of the file: its end, its descriptor, or its disk.
    if (result == 0 || error == EIO || error == EBADF || error == EINVAL || error == EOVERFLOW ||
        error == ESPIPE) {
        return -2;
    }
    close();
    return -1;
}

std::int32_t TCPIP_SOCKET::receive(void* bytes, std::int32_t size) {
    if (!is_connected()) {
        return -1;
    }
    if (size < 1) {
        return 0;
    }
    ::ssize_t result;
    do {
        result = ::recv(descriptor, bytes, static_cast<std::size_t>(size), 0);
    } while (result < 0 && errno == EINTR);
    if (result > 0) {
        return static_cast<std::int32_t>(result);
    }
    if (result < 0 && errno == EAGAIN) {
        return 0;
    }
    close();
    return -1;
}

void TCPIP_SOCKET::close() {
    const std::lock_guard<std::mutex> guard(close_lock);
    if (!is_connected()) {
        return;
    }
    ::shutdown(descriptor, SHUT_RDWR);
    ::close(descriptor);
    descriptor = -1;
    host_name.reset();
    listening = false;
    connected.store(false, std::memory_order_release);
}

void TCPIP_SOCKET::shut_down() {
    const std::lock_guard<std::mutex> guard(close_lock);
    if (is_connected()) {
        ::shutdown(descriptor, SHUT_RDWR);
    }
}

std::uint16_t TCPIP_SOCKET::get_local_port() const {
    ::sockaddr_in address{};
    ::socklen_t size = sizeof address;
    if (!is_connected() ||
        ::getsockname(descriptor, reinterpret_cast<::sockaddr*>(&address), &size) != 0) {
        return 0;
    }
    return ntohs(address.sin_port);
}

std::int32_t TCPIP_SOCKET::get_host_name(char* name) {
    if (::gethostname(name, HOST_NAME_SIZE) != 0) {
        name[0] = '\0';
        return SOCKET_NO_HOST_NAME;
    }
    name[HOST_NAME_SIZE - 1] = '\0';
    return SOCKET_OK;
}

std::int32_t TCPIP_SOCKET::get_host_addr(std::uint32_t& address, const char* name) {
    ::addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    ::addrinfo* found = nullptr;
    if (!name || ::getaddrinfo(name, nullptr, &hints, &found) != 0 || !found) {
        return SOCKET_HOST_NOT_FOUND;
    }
    ::sockaddr_in first;
    std::memcpy(&first, found->ai_addr, sizeof first);
    address = first.sin_addr.s_addr;
    ::freeaddrinfo(found);
    return SOCKET_OK;
}

void TCPIP_SOCKET::ip_to_str(std::uint32_t address, char* text, std::int32_t size) {
    unsigned char bytes[4];
    std::memcpy(bytes, &address, sizeof bytes);
    if (size > 0) {
        std::snprintf(text, static_cast<std::size_t>(size), "%d.%d.%d.%d", bytes[0], bytes[1],
                      bytes[2], bytes[3]);
    }
}

}  // namespace KV_SOCKET
