// Whatever a peer sends: arbitrary bytes from a loopback socket into the pump of a manager, with
// and without a key exchange, with and without reply handlers. Input: one byte of modes, one byte
// for the size of the pieces that the bytes arrive in, the bytes.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "modules/network/network_manager.h"
#include "platform/network_message.h"

namespace {

constexpr std::uint8_t MODE_EXCHANGE = 1;  // the manager begins a key exchange
constexpr std::uint8_t MODE_REPLIES = 2;   // reply tokens are in use
constexpr std::uint8_t MODE_STREAM = 4;    // the first message starts a raw transfer

std::uint32_t now_ms = 1000;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

struct STATE {
    std::uint8_t mode = 0;
    std::size_t messages = 0;
    std::size_t closed = 0;
};

void take_message(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message,
                  void* user) {
    auto& state = *static_cast<STATE*>(user);
    ++state.messages;
    char text[16];
    std::int16_t id = 0;
    while (message >> id) {
        message.read_dynamic_text(text, sizeof text);
    }
    message.reset_payload();
    if (message << std::int16_t{1300}) {
        connection->send_message(message);
    }
    if (state.mode & MODE_STREAM) {
        connection->stream_mode = 1;
    }
}

void count_close(NETWORK_MANAGER&, const NETWORK_CONNECTION&, void* user, unsigned char) {
    ++static_cast<STATE*>(user)->closed;
}

std::unique_ptr<NETWORK_MANAGER> make_manager(std::uint8_t mode, STATE& state) {
    auto manager =
        std::make_unique<NETWORK_MANAGER>((mode & MODE_REPLIES) == 0, (mode & MODE_EXCHANGE) == 0);
    manager->set_clock([] { return now_ms; });
    require(manager->listen(0, &take_message, &state, nullptr, &count_close, nullptr, &state,
                            htonl(INADDR_LOOPBACK)));
    return manager;
}

int connect_to(std::uint16_t port) {
    const int peer = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // Reset on close: thousands of runs must not leave thousands of ports waiting.
    const ::linger reset{1, 0};
    ::setsockopt(peer, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    ::sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    require(::connect(peer, reinterpret_cast<const ::sockaddr*>(&address), sizeof address) == 0);
    return peer;
}

void pump(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection) {
    for (int passes = 0; passes < 64; ++passes) {
        const bool busy = manager.monitor() || manager.monitor_send();
        unsigned char bytes[512];
        std::uint32_t received = 0;
        if (connection->stream_mode &&
            manager.receive_stream_data(connection, bytes, sizeof bytes, received) &&
            received == 0) {
            connection->stream_mode = 0;
        }
        if (!busy && received == 0) {
            return;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static STATE state;
    static std::unique_ptr<NETWORK_MANAGER> managers[4];
    if (size < 2) {
        return 0;
    }
    static std::FILE* const silent = std::freopen("/dev/null", "w", stdout);
    require(silent != nullptr);
    state = {data[0], 0, 0};
    auto& manager = managers[data[0] & (MODE_EXCHANGE | MODE_REPLIES)];
    if (!manager) {
        manager = make_manager(data[0], state);
    }
    const std::size_t piece = std::size_t{1} + data[1] * std::size_t{16};
    data += 2;
    size = std::min<std::size_t>(size - 2, 60000);

    const int peer = connect_to(manager->get_listen_port());
    while (manager->get_number_of_connections() == 0) {
        manager->wait(1000);
        manager->monitor();
    }
    const NETWORK_CONNECTION connection = manager->get_connection(0);
    for (std::size_t done = 0; done < size && !connection->is_dead();) {
        const std::size_t count = std::min(piece, size - done);
        // Too many small pieces take too long: the later ones are larger.
        const std::size_t sent = done > 32 * piece ? size - done : count;
        if (::send(peer, data + done, sent, MSG_NOSIGNAL | MSG_DONTWAIT) <= 0) {
            break;
        }
        done += sent;
        pump(*manager, connection);
        // Memory follows what has arrived, not what was promised.
        require(connection->get_receive_capacity() <= done + 2 * 10240);
    }
    require(state.messages <= size / NETWORK_MANAGER::MIN_MESSAGE_SIZE);
    ::close(peer);
    connection->disconnect();
    require(connection->is_dead() && state.closed == 1);
    now_ms += 120000;
    manager->monitor();
    manager->monitor_send();
    require(manager->get_number_of_dead_connections() == 0 && !manager->is_send_waiting());
    require(connection->get_reference_count() == 1);
    return 0;
}
