// What the network tests share: a clock that stands still, a record of callbacks, and raw peers.
#ifndef MODULES_TESTS_NETWORK_TEST_TOOLS_H
#define MODULES_TESTS_NETWORK_TEST_TOOLS_H

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "kvcore/byte_order.h"
#include "modules/network/network_manager.h"
#include "platform/network_message.h"

namespace network_test {

using BYTES = std::vector<unsigned char>;

inline constexpr char LOOPBACK[] = "127.0.0.1";

// Milliseconds for the managers under test. It starts small, so that the first ping, due when 30
// seconds have passed since time 0, waits until a test asks for it.
struct TEST_CLOCK {
    static inline std::atomic<std::uint32_t> now{1000};
    static std::uint32_t read() { return now.load(); }
    static void reset() { now = 1000; }
    static void advance(std::uint32_t ms) { now += ms; }
};

// A payload: the id and a number.
inline void fill(NETWORK_MESSAGE& message, std::int16_t id, std::int32_t value) {
    message.clear();
    EXPECT_TRUE((message << id) && (message << value));
}

struct TOKENS {
    std::uint32_t reply_handler = 0;
    std::uint32_t reply_user = 0;
    std::uint32_t echo_handler = 0;
    std::uint32_t echo_user = 0;
};

inline BYTES add_prefix(const unsigned char* bytes, std::uint32_t size) {
    BYTES frame(5);
    KVCORE::store_le32(frame.data() + 1, size);
    frame.insert(frame.end(), bytes, bytes + size);
    return frame;
}

// The whole frame of a message whose payload has been written; version 0 gives trailer form 1.
inline BYTES make_frame(NETWORK_MESSAGE& message, std::int32_t version = 0, TOKENS tokens = {}) {
    message.pack_header(tokens.reply_handler, tokens.reply_user, tokens.echo_handler,
                        tokens.echo_user);
    message.append_trailer(version);
    return add_prefix(message.get_buffer(), static_cast<std::uint32_t>(message.get_length()));
}

inline BYTES make_frame(std::int16_t id, std::int32_t value, TOKENS tokens = {}) {
    NETWORK_MESSAGE message;
    fill(message, id, value);
    return make_frame(message, 0, tokens);
}

inline std::int16_t get_frame_id(const BYTES& frame) {
    return frame.size() < 24 ? std::int16_t{-1}
                             : static_cast<std::int16_t>(KVCORE::load_le16(frame.data() + 22));
}

// Everything that a manager reports, in order.
struct RECORD {
    struct MESSAGE_ENTRY {
        NETWORK_CONNECTION connection;
        std::int16_t id;
        std::int32_t value;
        bool encrypted;
    };
    std::vector<MESSAGE_ENTRY> messages;
    std::vector<std::pair<NETWORK_CONNECTION, int>> connects;
    std::vector<std::pair<NETWORK_CONNECTION, int>> disconnects;
    std::vector<NETWORK_CONNECTION> deaths;
    // Runs inside the callbacks.
    std::function<void(const NETWORK_CONNECTION&, NETWORK_MESSAGE&)> on_message;
    std::function<void(const NETWORK_CONNECTION&)> on_connect;
    std::function<void(const NETWORK_CONNECTION&)> on_disconnect;

    static void message(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection,
                        NETWORK_MESSAGE& received, void* user) {
        auto& self = *static_cast<RECORD*>(user);
        MESSAGE_ENTRY entry{connection, 0, 0, received.encrypted != 0};
        if (received >> entry.id) {
            [[maybe_unused]] const bool has_value = received >> entry.value;
        }
        received.set_pos(0, false);
        self.messages.push_back(entry);
        if (self.on_message) {
            self.on_message(connection, received);
        }
    }
    static void connect(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* user,
                        unsigned char flag) {
        auto& self = *static_cast<RECORD*>(user);
        self.connects.emplace_back(connection, flag);
        if (self.on_connect) {
            self.on_connect(connection);
        }
    }
    static void disconnect(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* user,
                           unsigned char flag) {
        auto& self = *static_cast<RECORD*>(user);
        self.disconnects.emplace_back(connection, flag);
        if (self.on_disconnect) {
            self.on_disconnect(connection);
        }
    }
    static void death(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* user,
                      unsigned char) {
        static_cast<RECORD*>(user)->deaths.push_back(connection);
    }

    std::vector<std::int32_t> values() const {
        std::vector<std::int32_t> result;
        for (const MESSAGE_ENTRY& entry : messages) {
            result.push_back(entry.value);
        }
        return result;
    }
};

inline void pass(NETWORK_MANAGER& manager) {
    manager.monitor();
    manager.monitor_send();
}

// Pumps the managers until the condition holds; false after five seconds.
template <typename CONDITION>
bool pump_until(std::vector<NETWORK_MANAGER*> managers, CONDITION condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        bool busy = false;
        for (NETWORK_MANAGER* manager : managers) {
            busy = manager->monitor() || busy;
            busy = manager->monitor_send() || busy;
        }
        if (!busy) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }
    return true;
}

// Lets everything that is under way on the loopback arrive.
inline void settle(NETWORK_MANAGER& manager) {
    for (int quiet = 0; quiet < 3;) {
        const bool busy = manager.monitor() || manager.monitor_send();
        quiet = busy ? 0 : quiet + 1;
        if (!busy) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
}

// A peer that is a bare socket.
class RAW_PEER {
public:
    explicit RAW_PEER(std::uint16_t port) : descriptor(::socket(AF_INET, SOCK_STREAM, 0)) {
        ::sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        EXPECT_EQ(::connect(descriptor, reinterpret_cast<::sockaddr*>(&address), sizeof address),
                  0);
    }
    ~RAW_PEER() { close(); }
    RAW_PEER(const RAW_PEER&) = delete;
    RAW_PEER& operator=(const RAW_PEER&) = delete;

    void close() {
        if (descriptor >= 0) {
            ::close(descriptor);
            descriptor = -1;
        }
    }
    void send(const BYTES& bytes) {
        EXPECT_EQ(::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<::ssize_t>(bytes.size()));
    }
    // Reads exactly `size` bytes; fewer if the peer closes or sends nothing for `timeout_ms`.
    BYTES read(std::size_t size, int timeout_ms = 2000) {
        BYTES bytes(size);
        std::size_t count = 0;
        while (count < size) {
            ::pollfd item{descriptor, POLLIN, 0};
            if (::poll(&item, 1, timeout_ms) != 1) {
                break;
            }
            const ::ssize_t got = ::recv(descriptor, bytes.data() + count, size - count, 0);
            if (got <= 0) {
                break;
            }
            count += static_cast<std::size_t>(got);
        }
        bytes.resize(count);
        return bytes;
    }
    // A frame with its prefix; empty when none comes.
    BYTES read_frame(int timeout_ms = 2000) {
        BYTES frame = read(5, timeout_ms);
        if (frame.size() == 5) {
            const BYTES rest = read(KVCORE::load_le32(frame.data() + 1));
            frame.insert(frame.end(), rest.begin(), rest.end());
        }
        return frame;
    }
    bool has_data(int timeout_ms) {
        ::pollfd item{descriptor, POLLIN, 0};
        return ::poll(&item, 1, timeout_ms) == 1;
    }
    // True if the other side ends the connection.
    bool is_closed(int timeout_ms = 2000) {
        char byte;
        ::ssize_t got = 1;
        while (has_data(timeout_ms)) {
            got = ::recv(descriptor, &byte, 1, 0);
            if (got <= 0) {
                return true;
            }
        }
        return false;
    }
    int get_descriptor() const { return descriptor; }

private:
    int descriptor;
};

// A manager that listens on the loopback with a record of what happens.
class NETWORK_TEST : public testing::Test {
protected:
    NETWORK_TEST() { TEST_CLOCK::reset(); }

    static void start(NETWORK_MANAGER& manager, RECORD& record) {
        manager.set_clock(&TEST_CLOCK::read);
        ASSERT_TRUE(manager.listen(0, &RECORD::message, &record, &RECORD::connect,
                                   &RECORD::disconnect, &RECORD::death, &record,
                                   htonl(INADDR_LOOPBACK)));
    }
    // A client manager connected to a server; yields the client's handle.
    static NETWORK_CONNECTION join(NETWORK_MANAGER& client, RECORD& record,
                                   NETWORK_MANAGER& server) {
        client.set_clock(&TEST_CLOCK::read);
        client.disconnect_callback = &RECORD::disconnect;
        client.user = &record;
        const NETWORK_CONNECTION connection =
            client.connect(LOOPBACK, server.get_listen_port(), &RECORD::message, &record);
        EXPECT_TRUE(connection);
        EXPECT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() > 0; }));
        return connection;
    }
};

}  // namespace network_test

#endif  // MODULES_TESTS_NETWORK_TEST_TOOLS_H
