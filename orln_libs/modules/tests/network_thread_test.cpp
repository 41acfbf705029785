// The manager under several threads, and the rings that they read.
#include <cmath>
#include <deque>
#include <random>

#include "modules/network/transfer_ring.h"
#include "network_test_tools.h"

namespace {

using namespace network_test;

class ThreadTest : public NETWORK_TEST {};

TEST_F(ThreadTest, ManyThreadsSendWhileThePumpRuns) {
    constexpr std::int32_t THREADS = 4;
    constexpr std::int32_t MESSAGES = 500;
    RECORD server_record;
    RECORD client_record;
    NETWORK_MANAGER server(1, 0);  // the exchange runs meanwhile, so part of them are pending
    NETWORK_MANAGER client(1, 0);
    start(server, server_record);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    std::vector<std::thread> threads;
    std::atomic<bool> done{false};
    for (std::int32_t thread = 0; thread < THREADS; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::int32_t i = 0; i < MESSAGES; ++i) {
                NETWORK_MESSAGE message;
                fill(message, static_cast<std::int16_t>(1000 + thread), i);
                message.encrypted = static_cast<unsigned char>(i & 1);
                EXPECT_TRUE(client.send(connection, message));
            }
        });
    }
    threads.emplace_back([&] {
        while (!done) {
            EXPECT_GE(connection->get_send_rate_kbps(), 0.0);
            EXPECT_LE(client.get_number_of_connections(), 1);
            client.is_send_waiting();
            std::this_thread::yield();
        }
    });
    EXPECT_TRUE(pump_until({&client, &server}, [&] {
        server.monitor();
        return server_record.messages.size() == THREADS * MESSAGES;
    }));
    done = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::int32_t next[THREADS] = {};
    for (const RECORD::MESSAGE_ENTRY& entry : server_record.messages) {
        ASSERT_EQ(entry.value, next[entry.id - 1000]++);
    }
}

TEST_F(ThreadTest, AnotherThreadDisconnectsInTheMiddleOfTheTraffic) {
    RECORD record;
    NETWORK_MANAGER server(1, 1);
    start(server, record);
    for (int round = 0; round < 10; ++round) {
        RAW_PEER peer(server.get_listen_port());
        ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
        const NETWORK_CONNECTION connection = server.get_connection(0);
        const std::size_t before = record.messages.size();
        std::atomic<bool> stop{false};
        std::thread traffic([&] {
            const BYTES frame = make_frame(1200, 1);
            while (!stop &&
                   ::send(peer.get_descriptor(), frame.data(), frame.size(), MSG_NOSIGNAL) > 0) {
            }
        });
        std::atomic<bool> disconnected{false};
        EXPECT_TRUE(pump_until({&server}, [&] { return record.messages.size() > before + 20; }));
        std::thread closer([&] {
            server.disconnect(connection, 1);
            EXPECT_TRUE(connection->is_dead());
            disconnected = true;
        });
        EXPECT_TRUE(pump_until({&server}, [&] { return disconnected.load(); }));
        closer.join();
        pass(server);  // gives the descriptor back
        EXPECT_FALSE(connection->get_socket()->is_connected());
        stop = true;
        traffic.join();
        EXPECT_TRUE(peer.is_closed());
    }
    EXPECT_EQ(record.disconnects.size(), 10u);
    EXPECT_EQ(record.disconnects[0].second, 1);
}

TEST(TransferRing, RatesAreKibPerSecondOverFiveSeconds) {
    TRANSFER_RING ring;
    EXPECT_EQ(ring.get_rate(10000), 0.0);
    ring.record(10000, 0);
    EXPECT_EQ(ring.get_capacity(), 0u);
    ring.record(10000, 102400);
    EXPECT_EQ(ring.get_rate(10000), 0.0);  // no time has passed
    EXPECT_EQ(ring.get_rate(12000), 50.0);
    ring.record(12000, 1024);
    EXPECT_EQ(ring.get_rate(13000), 33.7);  // 101 KiB in 3 s
    EXPECT_EQ(ring.get_rate(14999), 20.2);
    EXPECT_EQ(ring.get_rate(15000), 0.3);  // the first one is too old
    EXPECT_EQ(ring.get_rate(17000), 0.0);
}

// Against the plain definition: the last 10000 transfers, newest first, while they are young.
TEST(TransferRing, GrowingChangesNoRate) {
    TRANSFER_RING ring;
    std::deque<std::pair<std::uint32_t, std::uint32_t>> all;
    std::mt19937 random(5);
    const auto below = [&random](std::uint32_t n) {
        return static_cast<std::uint32_t>(random() % n);
    };
    std::uint32_t now = 0xFFFFF000;  // the clock wraps on the way
    for (int i = 0; i < 40000; ++i) {
        const std::uint32_t pause = i >= 20000 ? 0 : (i % 5000 < 300 ? 400 : 2);
        now += pause == 0 ? (below(4) == 0 ? 1 : 0) : below(pause);
        const std::uint32_t bytes = 1 + below(5000);
        ring.record(now, bytes);
        all.emplace_front(now, bytes);
        if (all.size() > TRANSFER_RING::MAX_TRANSFERS) {
            all.pop_back();
        }
        if (i % 97 != 0) {
            continue;
        }
        const std::uint32_t later = now + below(3000);
        double sum = 0;
        std::uint32_t oldest = later;
        for (const auto& [time, size] : all) {
            if (time == 0 || later - time >= 5000) {
                break;
            }
            sum += size;
            oldest = time;
        }
        const double rate =
            oldest == later ? 0.0 : std::round(sum * 1000 / ((later - oldest) * 1024.0) * 10) / 10;
        ASSERT_EQ(ring.get_rate(later), rate) << i;
    }
    EXPECT_EQ(ring.get_capacity(), TRANSFER_RING::MAX_TRANSFERS);
    TRANSFER_RING quiet;
    for (std::uint32_t i = 1; i < 1000; ++i) {
        quiet.record(i * 1000, 10);
    }
    EXPECT_EQ(quiet.get_capacity(), 16u);
}

}  // namespace
