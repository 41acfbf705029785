// The price of NETWORK_MANAGER: small messages against a bare loop over the same frames, the
// cipher, a pass over idle connections, and a round trip behind an earlier small message.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "modules/network/network_manager.h"
#include "platform/network_message.h"
#include "platform/tcpip_socket.h"

namespace {

constexpr char LOOPBACK[] = "127.0.0.1";
constexpr int MESSAGES = 100000;
constexpr int BATCH = 100;  // messages under way, so that neither loop waits for the other end
constexpr int PAYLOAD = 60;

constexpr std::int16_t STATEMENT = 1200;
constexpr std::int16_t QUESTION = 1201;

bool fill(NETWORK_MESSAGE& message, std::int16_t id = STATEMENT) {
    static const char content[PAYLOAD] = {};
    message.clear();
    return (message << id) && message.write_data_block(content, PAYLOAD) == PAYLOAD;
}

void count_message(NETWORK_MANAGER&, const NETWORK_CONNECTION&, NETWORK_MESSAGE&, void* user) {
    ++*static_cast<int*>(user);
}

void answer(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message,
            void*) {
    std::int16_t id = 0;
    if (!(message >> id) || id != QUESTION) {
        return;
    }
    message.reset_payload();
    if (message << std::int16_t{1300}) {
        connection->send_message(message);
    }
}

void pump(NETWORK_MANAGER& manager) {
    manager.monitor();
    manager.monitor_send();
}

// Two managers on one thread and a connection between them.
struct LINE {
    int delivered = 0;
    NETWORK_MANAGER server;
    NETWORK_MANAGER client{1, 1};
    NETWORK_CONNECTION connection;

    explicit LINE(bool exchange, NETWORK_MANAGER::MESSAGE_CALLBACK callback = &count_message)
        : server(1, !exchange) {
        server.listen(0, callback, &delivered, nullptr, nullptr, nullptr, nullptr,
                      htonl(INADDR_LOOPBACK));
        connection = client.connect(LOOPBACK, server.get_listen_port(), &count_message, &delivered);
        while (server.get_number_of_connections() == 0 ||
               (exchange && !server.get_connection(0)->is_key_exchange_done())) {
            pump(server);
            pump(client);
        }
    }
};

// One send for each frame, and a read for the prefix and one for the message.
void BM_bare_frames(benchmark::State& state) {
    KV_SOCKET::TCPIP_SOCKET listener;
    listener.set_bind_address(htonl(INADDR_LOOPBACK));
    listener.listen(0);
    KV_SOCKET::TCPIP_SOCKET client;
    client.connect(LOOPBACK, listener.get_local_port(), 5);
    const std::unique_ptr<KV_SOCKET::TCPIP_SOCKET> server(listener.accept());
    const int from = client.get_socket_reference();
    const int to = server->get_socket_reference();
    std::vector<char> frame(5 + 17 + 2 + PAYLOAD + 5);
    std::vector<char> received(frame.size());
    for (auto _ : state) {
        for (int done = 0; done < MESSAGES; done += BATCH) {
            for (int i = 0; i < BATCH; ++i) {
                benchmark::DoNotOptimize(::send(from, frame.data(), frame.size(), MSG_NOSIGNAL));
            }
            for (int i = 0; i < BATCH; ++i) {
                benchmark::DoNotOptimize(::recv(to, received.data(), 5, 0));
                benchmark::DoNotOptimize(::recv(to, received.data(), received.size() - 5, 0));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * MESSAGES);
}
BENCHMARK(BM_bare_frames)->Unit(benchmark::kMillisecond);

void run_messages(benchmark::State& state, bool enciphered) {
    LINE line(enciphered);
    for (auto _ : state) {
        for (int done = 0; done < MESSAGES; done += BATCH) {
            NETWORK_MESSAGE message;
            message.encrypted = enciphered;
            for (int i = 0; i < BATCH; ++i) {
                if (!fill(message) || !line.client.send(line.connection, message)) {
                    state.SkipWithError("the message isn't taken");
                    return;
                }
            }
            line.client.monitor_send();
            for (line.delivered = 0; line.delivered < BATCH;) {
                line.server.monitor();
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * MESSAGES);
}
void BM_messages(benchmark::State& state) {
    run_messages(state, false);
}
BENCHMARK(BM_messages)->Unit(benchmark::kMillisecond);

void BM_enciphered_messages(benchmark::State& state) {
    run_messages(state, true);
}
BENCHMARK(BM_enciphered_messages)->Unit(benchmark::kMillisecond);

// Two small messages one after the other, and the answer to the second.
void BM_round_trip(benchmark::State& state) {
    LINE line(false, &answer);
    for (auto _ : state) {
        line.delivered = 0;
        for (const std::int16_t id : {STATEMENT, QUESTION}) {
            NETWORK_MESSAGE message;
            if (!fill(message, id) || !line.client.send(line.connection, message)) {
                state.SkipWithError("the message isn't taken");
                return;
            }
            line.client.monitor_send();
        }
        while (line.delivered == 0) {
            pump(line.server);
            pump(line.client);
        }
    }
}
BENCHMARK(BM_round_trip)->Unit(benchmark::kMicrosecond);

// One pass with that many connections on which nothing happens.
void BM_idle_pass(benchmark::State& state) {
    ::rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    LINE line(false);
    std::vector<NETWORK_CONNECTION> idle;
    for (std::int64_t i = 1; i < state.range(0); ++i) {
        idle.push_back(
            line.client.connect(LOOPBACK, line.server.get_listen_port(), nullptr, nullptr));
        pump(line.server);
    }
    while (line.server.get_number_of_connections() < state.range(0)) {
        pump(line.server);
    }
    for (int i = 0; i < 10; ++i) {
        pump(line.server);
        pump(line.client);
    }
    for (auto _ : state) {
        pump(line.server);
    }
}
BENCHMARK(BM_idle_pass)->Arg(1)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace
