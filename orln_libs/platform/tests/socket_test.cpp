// What TCPIP_SOCKET and SOCKET_POLLER promise to their owners, over the loopback.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/socket_poller.h"
#include "platform/tcpip_socket.h"

namespace {

using namespace KV_SOCKET;

constexpr char LOOPBACK[] = "127.0.0.1";

// Names that the look-up below answers itself: with the loopback, or not before it is let go.
constexpr char GOOD_NAME[] = "answers.test";
constexpr char HANGING_NAME[] = "hangs.test";
std::atomic<bool> hang{false};
std::atomic<int> hanging{0};

}  // namespace

// Stands before the system's look-up, so that no name server is asked.
extern "C" int getaddrinfo(const char* name, const char* service, const ::addrinfo* hints,
                           ::addrinfo** found) {
    if (std::strcmp(name, HANGING_NAME) == 0) {
        ++hanging;
        while (hang) {
            ::usleep(1000);
        }
        --hanging;
        return EAI_AGAIN;
    }
    static const auto system_look_up =
        reinterpret_cast<decltype(&::getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    const bool good = std::strcmp(name, GOOD_NAME) == 0;
    return system_look_up(good ? LOOPBACK : name, service, hints, found);
}

namespace {

// A listener and one connection through it.
struct PAIR {
    TCPIP_SOCKET listener;
    TCPIP_SOCKET client;
    std::unique_ptr<TCPIP_SOCKET> server;

    PAIR() {
        listener.set_bind_address(htonl(INADDR_LOOPBACK));
        EXPECT_EQ(listener.listen(0), SOCKET_OK);
        EXPECT_EQ(client.connect(LOOPBACK, listener.get_local_port(), 2), SOCKET_OK);
        server.reset(listener.accept());
        EXPECT_TRUE(server);
    }
};

void wait_readable(const TCPIP_SOCKET& socket) {
    ::pollfd item{socket.get_socket_reference(), POLLIN, 0};
    EXPECT_EQ(::poll(&item, 1, 2000), 1);
}

std::uint16_t get_closed_port() {
    TCPIP_SOCKET listener;
    listener.set_bind_address(htonl(INADDR_LOOPBACK));
    EXPECT_EQ(listener.listen(0), SOCKET_OK);
    return listener.get_local_port();
}

int get_option(const TCPIP_SOCKET& socket, int level, int option) {
    int value = -1;
    ::socklen_t size = sizeof value;
    ::getsockopt(socket.get_socket_reference(), level, option, &value, &size);
    return value;
}

bool is_non_blocking(const TCPIP_SOCKET& socket) {
    return (::fcntl(socket.get_socket_reference(), F_GETFL) & O_NONBLOCK) != 0;
}

TEST(TcpipSocket, CarriesBytesAndKnowsItsPeer) {
    PAIR pair;
    char buffer[16] = {};
    EXPECT_EQ(pair.server->receive(buffer, sizeof buffer), 0);  // nothing yet, and not the end
    EXPECT_EQ(pair.client.send("hello", 5), 5);
    wait_readable(*pair.server);
    EXPECT_EQ(pair.server->receive(buffer, sizeof buffer), 5);
    EXPECT_STREQ(buffer, "hello");
    EXPECT_EQ(pair.server->receive(buffer, 0), 0);

    EXPECT_EQ(pair.server->get_peer_address(), htonl(INADDR_LOOPBACK));
    EXPECT_EQ(pair.server->get_peer_port(), pair.client.get_local_port());
    EXPECT_EQ(pair.client.get_peer_port(), pair.listener.get_local_port());
    EXPECT_STREQ(pair.client.get_peer_name(), LOOPBACK);
    EXPECT_EQ(pair.listener.accept(), nullptr);
}

TEST(TcpipSocket, ConnectTellsItsFailuresApart) {
    const std::uint16_t port = get_closed_port();
    TCPIP_SOCKET socket;
    EXPECT_EQ(socket.connect(LOOPBACK, port, 2), SOCKET_ERROR);
    EXPECT_EQ(socket.connect(LOOPBACK, port, 0), SOCKET_CONNECT_FAILED);
    const std::string no_name(300, 'x');
    EXPECT_EQ(socket.connect(no_name.c_str(), port, 2), SOCKET_HOST_NOT_FOUND);
    EXPECT_EQ(socket.connect(nullptr, port, 2), SOCKET_HOST_NOT_FOUND);
    EXPECT_FALSE(socket.is_connected());
    EXPECT_EQ(socket.get_socket_reference(), -1);
}

TEST(TcpipSocket, ConnectGivesUpWhenNobodyAnswers) {
    TCPIP_SOCKET listener;
    listener.set_bind_address(htonl(INADDR_LOOPBACK));
    listener.set_backlog(0);
    ASSERT_EQ(listener.listen(0), SOCKET_OK);
    // With the backlog full the system drops further attempts without an answer.
    std::int32_t result = SOCKET_OK;
    std::vector<std::unique_ptr<TCPIP_SOCKET>> callers;
    for (int i = 0; i < 4 && result == SOCKET_OK; ++i) {
        callers.push_back(std::make_unique<TCPIP_SOCKET>());
        result = callers.back()->connect(LOOPBACK, listener.get_local_port(), 1);
    }
    EXPECT_EQ(result, SOCKET_TIMEOUT);

    // Nor does it wait on when it is told not to.
    int asked = 0;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(callers.back()->connect(LOOPBACK, listener.get_local_port(), 60,
                                      [&asked] { return ++asked < 3; }),
              SOCKET_TIMEOUT);
    EXPECT_EQ(asked, 3);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(TcpipSocket, ALookUpThatHangsIsLeftBehind) {
    using CLOCK = std::chrono::steady_clock;
    TCPIP_SOCKET listener;
    listener.set_bind_address(htonl(INADDR_LOOPBACK));
    ASSERT_EQ(listener.listen(0), SOCKET_OK);
    const std::uint16_t port = listener.get_local_port();
    hang = true;
    auto begin = CLOCK::now();
    {
        TCPIP_SOCKET socket;
        int asked = 0;
        EXPECT_EQ(socket.connect(HANGING_NAME, port, 60, [&asked] { return ++asked < 3; }),
                  SOCKET_TIMEOUT);
        EXPECT_EQ(asked, 3);
        EXPECT_FALSE(socket.is_connected());
        EXPECT_LT(CLOCK::now() - begin, std::chrono::seconds(10));

        // The time-out holds for the look-up as well.
        begin = CLOCK::now();
        EXPECT_EQ(socket.connect(HANGING_NAME, port, 1), SOCKET_TIMEOUT);
        EXPECT_GE(CLOCK::now() - begin, std::chrono::seconds(1));
        EXPECT_LT(CLOCK::now() - begin, std::chrono::seconds(10));

        // Nor does it stand in the way of another one.
        EXPECT_EQ(hanging, 2);
        EXPECT_EQ(socket.connect(GOOD_NAME, port, 10), SOCKET_OK);
        EXPECT_STREQ(socket.get_peer_name(), GOOD_NAME);
        EXPECT_EQ(socket.get_peer_address(), htonl(INADDR_LOOPBACK));
    }
    // With the socket gone they still come to their end.
    hang = false;
    for (int i = 0; i < 2000 && hanging != 0; ++i) {
        ::usleep(1000);
    }
    EXPECT_EQ(hanging, 0);
}

TEST(TcpipSocket, ADescriptorThatWasOnlyMadeIsClosed) {
    int descriptor;
    {
        TCPIP_SOCKET socket;
        ASSERT_EQ(socket.create_socket(), SOCKET_OK);
        descriptor = socket.get_socket_reference();
        ASSERT_EQ(socket.create_socket(), SOCKET_OK);
        EXPECT_EQ(socket.get_socket_reference(), descriptor);
    }
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
}

TEST(TcpipSocket, ListenTakesOneAddressAndRefusesATakenPort) {
    TCPIP_SOCKET first;
    first.set_bind_address(htonl(INADDR_LOOPBACK));
    ASSERT_EQ(first.listen(0), SOCKET_OK);
    ::sockaddr_in address{};
    ::socklen_t size = sizeof address;
    ::getsockname(first.get_socket_reference(), reinterpret_cast<::sockaddr*>(&address), &size);
    EXPECT_EQ(address.sin_addr.s_addr, htonl(INADDR_LOOPBACK));

    TCPIP_SOCKET second;
    second.set_bind_address(htonl(INADDR_LOOPBACK));
    EXPECT_EQ(second.listen(first.get_local_port()), SOCKET_BIND_FAILED);
    EXPECT_FALSE(second.is_connected());
}

TEST(TcpipSocket, AcceptNeedsAListener) {
    TCPIP_SOCKET idle;
    EXPECT_EQ(idle.accept(), nullptr);
    PAIR pair;
    EXPECT_EQ(pair.client.accept(), nullptr);
    pair.listener.close();
    EXPECT_EQ(pair.listener.accept(), nullptr);
}

TEST(TcpipSocket, TheEndIsMinusOneForGood) {
    PAIR pair;
    char buffer[4];
    pair.client.close();
    wait_readable(*pair.server);
    EXPECT_EQ(pair.server->receive(buffer, sizeof buffer), -1);
    EXPECT_FALSE(pair.server->is_connected());
    EXPECT_EQ(pair.server->receive(buffer, sizeof buffer), -1);
    EXPECT_EQ(pair.server->send("x", 1), -1);
    EXPECT_EQ(pair.client.send("x", 1), -1);
    EXPECT_EQ(pair.client.get_peer_name(), nullptr);
}

// A write to a peer that has reset comes back as an error. A signal would end this program.
TEST(TcpipSocket, WritingToAGonePeerRaisesNoSignal) {
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::fputs("some bytes", file);
    std::fflush(file);
    for (const bool from_file : {false, true}) {
        PAIR pair;
        pair.client.close();
        std::int64_t result = 0;
        for (int attempt = 0; attempt < 100 && result >= 0; ++attempt) {
            ::off_t offset = 0;
            result = from_file ? pair.server->send_file(::fileno(file), offset, 10)
                               : pair.server->send("some bytes", 10);
            ::usleep(1000);
        }
        EXPECT_EQ(result, -1);
        EXPECT_FALSE(pair.server->is_connected());
    }
    std::fclose(file);
}

TEST(TcpipSocket, SendStopsWhereThePeerDoesNotRead) {
    PAIR pair;
    const std::vector<char> block(1 << 20, 'x');
    std::int64_t sent = 0;
    std::int32_t count = 0;
    do {
        count = pair.client.send(block.data(), static_cast<std::int32_t>(block.size()));
        ASSERT_GE(count, 0);
        sent += count;
    } while (count != 0);
    EXPECT_GT(sent, 0);
    EXPECT_TRUE(pair.client.is_connected());
    std::vector<char> buffer(1 << 20);
    std::int64_t received = 0;
    while (received < sent) {
        wait_readable(*pair.server);
        const std::int32_t got =
            pair.server->receive(buffer.data(), static_cast<std::int32_t>(buffer.size()));
        ASSERT_GT(got, 0);
        received += got;
    }
    EXPECT_EQ(received, sent);
}

TEST(TcpipSocket, SendsAFileFromAnOffset) {
    PAIR pair;
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::fputs("0123456789", file);
    std::fflush(file);
    ::off_t offset = 3;
    EXPECT_EQ(pair.server->send_file(::fileno(file), offset, 4), 4);
    EXPECT_EQ(offset, 7);
    EXPECT_EQ(pair.server->send_file(::fileno(file), offset, 100), 3);
    // The end of the file, and no file at all, leave the connection open.
    EXPECT_EQ(pair.server->send_file(::fileno(file), offset, 100), -2);
    EXPECT_EQ(pair.server->send_file(-1, offset, 100), -2);
    EXPECT_TRUE(pair.server->is_connected());
    wait_readable(pair.client);
    char buffer[16] = {};
    EXPECT_EQ(pair.client.receive(buffer, sizeof buffer), 7);
    EXPECT_STREQ(buffer, "3456789");
    std::fclose(file);
}

TEST(TcpipSocket, OptionsFollowTheBitsOnEverySocket) {
    TCPIP_SOCKET listener;
    listener.set_bind_address(htonl(INADDR_LOOPBACK));
    listener.set_options(OPTION_NON_BLOCKING | OPTION_KEEP_ALIVE | OPTION_LINGER);
    ASSERT_EQ(listener.listen(0), SOCKET_OK);
    TCPIP_SOCKET client;
    client.set_options(0);
    ASSERT_EQ(client.connect(LOOPBACK, listener.get_local_port(), 2), SOCKET_OK);
    const std::unique_ptr<TCPIP_SOCKET> server(listener.accept());
    ASSERT_TRUE(server);

    EXPECT_EQ(server->get_options(), listener.get_options());
    EXPECT_TRUE(is_non_blocking(*server));
    EXPECT_FALSE(is_non_blocking(client));
    EXPECT_EQ(get_option(*server, SOL_SOCKET, SO_KEEPALIVE), 1);
    EXPECT_EQ(get_option(client, SOL_SOCKET, SO_KEEPALIVE), 0);
    EXPECT_EQ(get_option(*server, IPPROTO_TCP, TCP_NODELAY), 1);
    EXPECT_EQ(get_option(client, IPPROTO_TCP, TCP_NODELAY), 1);
    ::linger linger{};
    ::socklen_t size = sizeof linger;
    ::getsockopt(server->get_socket_reference(), SOL_SOCKET, SO_LINGER, &linger, &size);
    EXPECT_EQ(linger.l_onoff, 1);
    EXPECT_EQ(linger.l_linger, 10);
    for (const TCPIP_SOCKET* socket :
         {static_cast<const TCPIP_SOCKET*>(&listener), static_cast<const TCPIP_SOCKET*>(&client),
          static_cast<const TCPIP_SOCKET*>(server.get())}) {
        EXPECT_NE(::fcntl(socket->get_socket_reference(), F_GETFD) & FD_CLOEXEC, 0);
    }
}

TEST(TcpipSocket, AddressesAndNames) {
    char text[16];
    const unsigned char bytes[4] = {10, 20, 30, 240};
    std::uint32_t address;
    std::memcpy(&address, bytes, sizeof address);
    TCPIP_SOCKET::ip_to_str(address, text, sizeof text);
    EXPECT_STREQ(text, "10.20.30.240");
    TCPIP_SOCKET::ip_to_str(0xFFFFFFFF, text, sizeof text);
    EXPECT_STREQ(text, "255.255.255.255");
    EXPECT_EQ(TCPIP_SOCKET::get_host_addr(address, LOOPBACK), SOCKET_OK);
    EXPECT_EQ(address, htonl(INADDR_LOOPBACK));
    char name[100];
    EXPECT_EQ(TCPIP_SOCKET::get_host_name(name), SOCKET_OK);
    EXPECT_NE(name[0], '\0');
}

TEST(TcpipSocket, AnotherThreadCanEndTheConnection) {
    PAIR pair;
    std::thread other([&pair] { pair.server->shut_down(); });
    wait_readable(pair.client);
    char buffer[4];
    EXPECT_EQ(pair.client.receive(buffer, sizeof buffer), -1);
    other.join();
    EXPECT_TRUE(pair.server->is_connected());  // until its own thread sees it
    EXPECT_EQ(pair.server->receive(buffer, sizeof buffer), -1);
    EXPECT_FALSE(pair.server->is_connected());
}

TEST(SocketPoller, ReportsWhatIsAskedForUntilItIsDealtWith) {
    PAIR pair;
    SOCKET_POLLER poller;
    ASSERT_TRUE(poller.open());
    std::vector<SOCKET_POLLER::EVENT> events;
    const int descriptor = pair.server->get_socket_reference();
    ASSERT_TRUE(poller.change(descriptor, 7, SOCKET_POLLER::NOTHING, SOCKET_POLLER::READABLE));
    EXPECT_FALSE(poller.wait(events, 0));

    pair.client.send("x", 1);
    for (int repeat = 0; repeat < 2; ++repeat) {
        ASSERT_TRUE(poller.wait(events, 2000));
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].key, 7u);
        EXPECT_EQ(events[0].ready, SOCKET_POLLER::READABLE);
    }
    ASSERT_TRUE(poller.change(descriptor, 7, SOCKET_POLLER::READABLE, SOCKET_POLLER::WRITABLE));
    ASSERT_TRUE(poller.wait(events, 2000));
    EXPECT_EQ(events[0].ready, SOCKET_POLLER::WRITABLE);
    ASSERT_TRUE(poller.change(descriptor, 7, SOCKET_POLLER::WRITABLE, SOCKET_POLLER::NOTHING));
    EXPECT_FALSE(poller.wait(events, 0));

    std::thread other([&poller] { poller.wake(); });
    EXPECT_TRUE(poller.wait(events, 5000));
    EXPECT_TRUE(events.empty());
    other.join();
    EXPECT_FALSE(poller.wait(events, 0));
}

}  // namespace
