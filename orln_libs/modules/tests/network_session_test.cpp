// Connections over time: key exchange, timers, closing, queues, raw transfers.
#include <sys/resource.h>

#include <cstdio>
#include <memory>

#include "modules/network/network_message_reporter.h"
#include "network_test_tools.h"

namespace {

using namespace network_test;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

class SessionTest : public NETWORK_TEST {
protected:
    RECORD server_record;
    RECORD client_record;
};

struct PING_ENTRY {
    unsigned char sent;
    unsigned char timed_out;
    std::uint32_t latency;
};

void note_ping(NETWORK_MANAGER&, const NETWORK_CONNECTION&, unsigned char sent,
               unsigned char timed_out, std::uint32_t latency, double, double, void* user) {
    static_cast<std::vector<PING_ENTRY>*>(user)->push_back({sent, timed_out, latency});
}

// The launcher's kind of client at a server that begins the exchange.
TEST_F(SessionTest, AfterTheKeyExchangeAnEncryptedRequestGetsAnEncryptedReply) {
    NETWORK_MANAGER server(1, 0);
    NETWORK_MANAGER client(1, 1);
    start(server, server_record);
    // What is sent before the exchange ends waits for it, in order.
    server_record.on_connect = [&](const NETWORK_CONNECTION& connection) {
        for (int i = 0; i < 3; ++i) {
            NETWORK_MESSAGE message;
            fill(message, 1300, i);
            message.encrypted = 1;
            EXPECT_TRUE(connection->send_message(message));
            EXPECT_TRUE(message.is_empty());
        }
    };
    client_record.on_message = [](const NETWORK_CONNECTION& connection, NETWORK_MESSAGE& message) {
        // A payload of every length from none up, so that each kind of padding occurs.
        message.reset_payload();
        EXPECT_TRUE((message << std::int16_t{1201}) && (message << std::int32_t{77}));
        EXPECT_TRUE(connection->send_message(message));
    };
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    ASSERT_TRUE(pump_until({&server, &client}, [&] { return server_record.messages.size() == 3; }));
    EXPECT_EQ(client_record.values(), (std::vector<std::int32_t>{0, 1, 2}));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(client_record.messages[static_cast<std::size_t>(i)].encrypted);
        EXPECT_TRUE(server_record.messages[static_cast<std::size_t>(i)].encrypted);
        EXPECT_EQ(server_record.messages[static_cast<std::size_t>(i)].value, 77);
    }
    EXPECT_EQ(connection->get_protocol_version(), 1);
    EXPECT_TRUE(server.get_connection(0)->is_key_exchange_done());

    // What the client originates isn't enciphered, and the flag doesn't stick to the manager.
    NETWORK_MESSAGE plain;
    fill(plain, 1200, 5);
    client_record.on_message = nullptr;
    ASSERT_TRUE(client.send(connection, plain));
    ASSERT_TRUE(pump_until({&server, &client}, [&] { return server_record.messages.size() == 4; }));
    EXPECT_FALSE(server_record.messages[3].encrypted);
}

TEST_F(SessionTest, WithoutAnAnswerPendingMessagesLeaveInTheClearAfterFiveSeconds) {
    NETWORK_MANAGER server(1, 0);
    start(server, server_record);
    RAW_PEER peer(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
    const NETWORK_CONNECTION connection = server.get_connection(0);
    settle(server);
    EXPECT_EQ(get_frame_id(peer.read_frame()), 30100);
    for (int i = 0; i < 2; ++i) {
        NETWORK_MESSAGE message;
        fill(message, 1300, i);
        ASSERT_TRUE(server.send(connection, message));
        TEST_CLOCK::advance(4000);  // the first one counts
    }
    TEST_CLOCK::now = 1000 + 5000;
    settle(server);
    EXPECT_FALSE(peer.has_data(0));
    EXPECT_FALSE(connection->is_key_exchange_done());
    TEST_CLOCK::advance(1);
    settle(server);
    for (int i = 0; i < 2; ++i) {
        const BYTES frame = peer.read_frame();
        ASSERT_EQ(frame.size(), 5u + 17 + 6 + 5);
        EXPECT_EQ(frame[5 + 17 + 6], 1);  // trailer form 1
        EXPECT_EQ(frame[5 + 17 + 2], i);
    }
    EXPECT_EQ(connection->get_protocol_version(), 0);
}

TEST_F(SessionTest, PingsKeepAConnectionAndSilenceEndsIt) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    std::vector<PING_ENTRY> pings;
    server.ping_callback = &note_ping;
    server.ping_user = &pings;
    NETWORK_MANAGER client(1, 1);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    RAW_PEER silent(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 2; }));
    const NETWORK_CONNECTION silent_connection = server.get_connection(1);

    TEST_CLOCK::now = 30000;
    settle(server);
    EXPECT_TRUE(pings.empty());
    TEST_CLOCK::now = 30001;
    server.monitor();
    server.monitor_send();
    ASSERT_EQ(pings.size(), 2u);
    EXPECT_TRUE(pings[0].sent && pings[1].sent);
    TEST_CLOCK::advance(40);
    ASSERT_TRUE(pump_until({&server, &client}, [&] { return pings.size() >= 3; }));
    EXPECT_FALSE(pings[2].sent);
    EXPECT_EQ(pings[2].latency, 40u);
    EXPECT_EQ(get_frame_id(silent.read_frame()), 30000);

    // The silent one is closed though it was pinged; the other one answers and stays.
    for (std::uint32_t now = 60100; now < 151000; now += 30100) {
        TEST_CLOCK::now = now;
        for (int i = 0; i < 3; ++i) {
            settle(server);
            settle(client);
        }
    }
    EXPECT_FALSE(silent_connection->is_dead());
    pings.clear();
    TEST_CLOCK::now = 151001;
    settle(server);
    ASSERT_EQ(server_record.disconnects.size(), 1u);
    EXPECT_EQ(server_record.disconnects[0].first, silent_connection);
    EXPECT_TRUE(silent.is_closed());
    EXPECT_EQ(pings[0].timed_out + 2 * pings[0].sent, 1);
    EXPECT_FALSE(connection->is_dead());
}

TEST_F(SessionTest, TheClockMayWrap) {
    TEST_CLOCK::now = 0xFFFFF000;
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    std::vector<PING_ENTRY> pings;
    server.ping_callback = &note_ping;
    server.ping_user = &pings;
    RAW_PEER peer(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
    settle(server);
    EXPECT_EQ(pings.size(), 1u);  // time 0, of no ping yet, is long ago
    TEST_CLOCK::advance(0x2000);
    settle(server);
    EXPECT_EQ(pings.size(), 1u);
    TEST_CLOCK::advance(150000 - 0x2000);
    settle(server);
    EXPECT_TRUE(server_record.disconnects.empty());
    TEST_CLOCK::advance(1);
    settle(server);
    EXPECT_EQ(server_record.disconnects.size(), 1u);
}

TEST_F(SessionTest, AClosedConnectionStaysForTheGracePeriod) {
    NETWORK_CONNECTION kept;
    {
        NETWORK_MANAGER server(1, 1);
        start(server, server_record);
        RAW_PEER first(server.get_listen_port());
        RAW_PEER second(server.get_listen_port());
        ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 2; }));
        kept = server.get_connection(0);
        const NETWORK_CONNECTION other = server.get_connection(1);
        // Closing again, also from the callback, changes nothing.
        server_record.on_disconnect = [&](const NETWORK_CONNECTION& connection) {
            server.disconnect(connection, 0);
        };
        kept->disconnect();
        server.disconnect(kept, 1);
        EXPECT_EQ(server_record.disconnects.size(), 1u);
        EXPECT_TRUE(first.is_closed());
        EXPECT_EQ(server.get_number_of_connections(), 1);
        EXPECT_EQ(server.get_connection(1), nullptr);
        EXPECT_EQ(server.get_connection(-1), nullptr);
        NETWORK_MESSAGE message;
        fill(message, 1200, 1);
        EXPECT_FALSE(server.send(kept, message));
        EXPECT_FALSE(server.send(nullptr, message));
        server.disconnect(nullptr, 1);

        TEST_CLOCK::advance(119999);
        settle(server);
        EXPECT_EQ(server.get_number_of_dead_connections(), 1);
        EXPECT_TRUE(server_record.deaths.empty());
        // A callback may close others.
        server_record.on_disconnect = nullptr;
        TEST_CLOCK::advance(1);
        settle(server);
        EXPECT_EQ(server.get_number_of_dead_connections(), 0);
        EXPECT_EQ(server_record.deaths, std::vector<NETWORK_CONNECTION>{kept});
        EXPECT_FALSE(kept->send_message(message));
    }
    // The end of the manager doesn't wait, and handles outlive it.
    EXPECT_EQ(server_record.deaths.size(), 2u);
    EXPECT_EQ(server_record.disconnects.size(), 2u);
    EXPECT_TRUE(server_record.deaths[1]->is_dead());
    NETWORK_MESSAGE message;
    fill(message, 1200, 1);
    EXPECT_FALSE(kept->send_message(message));
    kept->disconnect();
    EXPECT_EQ(kept->get_send_rate_kbps(), 0.0);
}

TEST_F(SessionTest, AClearedConnectionIsClosedAndTheOthersGoOn) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    RAW_PEER first(server.get_listen_port());
    RAW_PEER second(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 2; }));
    const NETWORK_CONNECTION cleared = server.get_connection(1);
    NETWORK_MESSAGE message;
    fill(message, 1300, 1);
    ASSERT_TRUE(server.send(cleared, message));
    cleared->clear();
    EXPECT_TRUE(second.is_closed());
    // Two messages in one piece: the second one waits in the connection.
    BYTES burst = make_frame(1200, 1);
    const BYTES more = make_frame(1200, 2);
    burst.insert(burst.end(), more.begin(), more.end());
    first.send(burst);
    ASSERT_TRUE(pump_until({&server}, [&] { return server_record.messages.size() == 2; }));
    TEST_CLOCK::advance(1);
    settle(server);
    EXPECT_FALSE(server.is_send_waiting());
    ASSERT_EQ(server_record.disconnects.size(), 1u);
    EXPECT_EQ(server_record.disconnects[0].first, cleared);
    EXPECT_EQ(server.get_number_of_connections(), 1);
}

TEST_F(SessionTest, AFailedConnectIsReported) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    const std::uint16_t port = server.get_listen_port();
    EXPECT_EQ(server.get_listen_port(1), 0);
    NETWORK_MANAGER client(1, 1);
    // The port is taken.
    EXPECT_FALSE(client.listen(port, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               htonl(INADDR_LOOPBACK)));
    client.connect_callback = &RECORD::connect;
    client.user = &client_record;
    std::int32_t error = 0;
    client.connect_failed_user = &error;
    client.connect_failed_callback = [](NETWORK_MANAGER&, const char* host, std::uint16_t,
                                        std::int32_t code, void* user) {
        EXPECT_STREQ(host, LOOPBACK);
        *static_cast<std::int32_t*>(user) = code;
    };
    std::uint16_t closed_port;
    {
        NETWORK_MANAGER gone(1, 1);
        start(gone, server_record);
        closed_port = gone.get_listen_port();
    }
    EXPECT_FALSE(client.connect(LOOPBACK, closed_port, nullptr, nullptr));
    EXPECT_EQ(error, 2);
    ASSERT_EQ(client_record.connects.size(), 1u);
    EXPECT_FALSE(client_record.connects[0].first);
    EXPECT_EQ(client_record.connects[0].second, 1);
    EXPECT_TRUE(client.connect(LOOPBACK, port, nullptr, nullptr));
    EXPECT_TRUE(client_record.connects[1].first);
}

TEST_F(SessionTest, ALongQueueIsReported) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    NETWORK_MANAGER client(1, 1);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    std::int32_t reported = 0;
    client.send_queue_user = &reported;
    client.send_queue_callback = [](NETWORK_MANAGER&, std::int32_t count, void* user) {
        *static_cast<std::int32_t*>(user) = count;
    };
    std::int32_t number = 0;
    for (const std::int32_t count : {2000, 2001}) {
        for (std::int32_t i = 0; i < count; ++i) {
            NETWORK_MESSAGE message;
            fill(message, 1200, number++);
            ASSERT_TRUE(client.send(connection, message));
        }
        EXPECT_TRUE(client.is_send_waiting());
        client.monitor_send();
        EXPECT_EQ(reported, count == 2001 ? 2001 : 0);
    }
    ASSERT_TRUE(pump_until({&client, &server}, [&] {
        server.monitor();
        return server_record.messages.size() == 4001;
    }));
    for (std::int32_t i = 0; i < number; ++i) {
        ASSERT_EQ(server_record.messages[static_cast<std::size_t>(i)].value, i);
    }
    EXPECT_FALSE(client.is_send_waiting());
}

// Queues messages of 64 KiB until the socket takes no more of them.
void block(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection, std::int32_t& next) {
    const BYTES content(65536, 0);
    for (int i = 0; i < 400; ++i) {
        NETWORK_MESSAGE message;
        fill(message, 1200, next++);
        message.write_data_block(content.data(), 65536);
        ASSERT_TRUE(manager.send(connection, message));
        if (manager.monitor_send()) {
            return;
        }
    }
    FAIL() << "the socket takes everything";
}

TEST_F(SessionTest, ABlockedConnectionKeepsItsOrderAndHoldsNobodyUp) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    RAW_PEER stuck(server.get_listen_port());
    RAW_PEER free(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 2; }));
    std::int32_t next = 0;
    block(server, server.get_connection(0), next);
    for (int i = 0; i < 3; ++i) {
        NETWORK_MESSAGE message;
        fill(message, 1200, next++);
        ASSERT_TRUE(server.send(server.get_connection(0), message));
        fill(message, 1200, 100 + i);
        ASSERT_TRUE(server.send(server.get_connection(1), message));
    }
    EXPECT_TRUE(server.monitor_send());
    EXPECT_TRUE(server.is_send_waiting());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(KVCORE::load_le32(&free.read_frame()[24]), 100u + static_cast<unsigned>(i));
    }
    EXPECT_FALSE(server.wait(0));  // nothing to do until the peer reads
    std::atomic<bool> reading{true};
    std::thread pump([&] {
        while (reading) {
            server.wait(5);
            pass(server);
        }
    });
    for (std::int32_t i = 0; i < next; ++i) {
        const BYTES frame = stuck.read_frame();
        ASSERT_GE(frame.size(), 28u);
        EXPECT_EQ(KVCORE::load_le32(&frame[24]), static_cast<std::uint32_t>(i));
    }
    reading = false;
    pump.join();
    EXPECT_FALSE(server.is_send_waiting());
}

TEST_F(SessionTest, InStreamModeTheOwnerMovesTheBytes) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    RAW_PEER peer(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
    const NETWORK_CONNECTION connection = server.get_connection(0);
    BYTES buffer(100000);
    std::uint32_t count = 1;
    EXPECT_FALSE(server.receive_stream_data(connection, buffer.data(), 10, count));
    EXPECT_FALSE(server.send_stream_data(connection, buffer.data(), 10, count));
    EXPECT_FALSE(server.receive_stream_data(nullptr, buffer.data(), 10, count));

    // The raw bytes come in one piece with the frame before and the frame behind them.
    server_record.on_message = [](const NETWORK_CONNECTION& from, NETWORK_MESSAGE&) {
        from->stream_mode = 1;
    };
    BYTES burst = make_frame(1900, 1);
    for (int i = 0; i < 30000; ++i) {
        burst.push_back(static_cast<unsigned char>(i * 7));
    }
    const BYTES last = make_frame(1400, 2);
    burst.insert(burst.end(), last.begin(), last.end());
    peer.send(burst);
    ASSERT_TRUE(pump_until({&server}, [&] { return server_record.messages.size() == 1; }));
    settle(server);
    EXPECT_EQ(server_record.messages.size(), 1u);
    std::uint32_t total = 0;
    while (total < 30000) {
        ASSERT_TRUE(server.receive_stream_data(connection, &buffer[total], 30000 - total, count));
        total += count;
    }
    for (int i = 0; i < 30000; ++i) {
        ASSERT_EQ(buffer[static_cast<std::size_t>(i)], static_cast<unsigned char>(i * 7));
    }

    server_record.on_message = nullptr;

    // Neither silence nor pings nor queued messages touch the connection meanwhile.
    NETWORK_MESSAGE queued;
    fill(queued, 1300, 3);
    ASSERT_TRUE(server.send(connection, queued));
    TEST_CLOCK::advance(200000);
    settle(server);
    EXPECT_FALSE(connection->is_dead());
    EXPECT_FALSE(peer.has_data(0));
    EXPECT_FALSE(server.wait(0));
    ASSERT_TRUE(server.send_stream_data(connection, "raw", 3, count));
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(peer.read(3), (BYTES{'r', 'a', 'w'}));

    connection->stream_mode = 0;
    EXPECT_TRUE(server.wait(0));
    ASSERT_TRUE(pump_until({&server}, [&] { return server_record.messages.size() == 2; }));
    EXPECT_EQ(server_record.messages[1].id, 1400);
    EXPECT_EQ(get_frame_id(peer.read_frame()), 1300);
    // The silence of a long transfer doesn't count afterwards.
    settle(server);
    EXPECT_FALSE(connection->is_dead());

    // A peer that goes away in the middle.
    connection->stream_mode = 1;
    peer.close();
    while (server.receive_stream_data(connection, buffer.data(), 10, count)) {
    }
    EXPECT_TRUE(connection->is_dead());
    EXPECT_EQ(server_record.disconnects.size(), 1u);
}

TEST_F(SessionTest, RawBytesNeverCutIntoAFrame) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    RAW_PEER peer(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
    const NETWORK_CONNECTION connection = server.get_connection(0);
    std::int32_t next = 0;
    block(server, connection, next);
    NETWORK_MESSAGE behind;
    fill(behind, 1200, next);
    ASSERT_TRUE(server.send(connection, behind));
    connection->stream_mode = 1;
    std::uint32_t sent = 1;
    ASSERT_TRUE(server.send_stream_data(connection, "raw", 3, sent));
    EXPECT_EQ(sent, 0u);
    std::thread reader([&] {
        for (std::int32_t i = 0; i < next; ++i) {
            const BYTES frame = peer.read_frame();
            ASSERT_GE(frame.size(), 28u);
            ASSERT_EQ(KVCORE::load_le32(&frame[24]), static_cast<std::uint32_t>(i));
        }
        EXPECT_EQ(peer.read(3), (BYTES{'r', 'a', 'w'}));
        const BYTES frame = peer.read_frame();
        EXPECT_EQ(KVCORE::load_le32(&frame[24]), static_cast<std::uint32_t>(next));
    });
    EXPECT_TRUE(pump_until({&server}, [&] {
        return !server.send_stream_data(connection, "raw", 3, sent) || sent != 0;
    }));
    EXPECT_EQ(sent, 3u);
    connection->stream_mode = 0;
    EXPECT_TRUE(pump_until({&server}, [&] { return !server.is_send_waiting(); }));
    reader.join();
}

TEST_F(SessionTest, AFileIsStreamedAndHeldMessagesFollowIt) {
    constexpr std::size_t SIZE = 3000000;
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    RAW_PEER peer(server.get_listen_port());
    ASSERT_TRUE(pump_until({&server}, [&] { return server.get_number_of_connections() == 1; }));
    const NETWORK_CONNECTION connection = server.get_connection(0);
    BYTES content(SIZE);
    for (std::size_t i = 0; i < SIZE; ++i) {
        content[i] = static_cast<unsigned char>(i * 31 >> 3);
    }
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(std::fwrite(content.data(), 1, SIZE, file), SIZE);
    std::fflush(file);
    BYTES received;
    for (int round = 0; round < 2; ++round) {
        // A ping that falls due between the offer and the raw bytes must not get between them.
        NETWORK_MESSAGE offer;
        fill(offer, 1800, round);
        ASSERT_TRUE(server.send(connection, offer));
        connection->hold_sends();
        TEST_CLOCK::advance(31000);
        settle(server);
        EXPECT_TRUE(server.is_send_waiting());
        connection->stream_mode = 1;
        std::thread reader([&] {
            // The ping of the first round comes in front of the second offer.
            EXPECT_EQ(round == 0 ? 30000 : get_frame_id(peer.read_frame()), 30000);
            EXPECT_EQ(get_frame_id(peer.read_frame()), 1800);
            received = peer.read(SIZE);
        });
        ::off_t offset = 0;
        while (static_cast<std::size_t>(offset) < SIZE) {
            std::uint32_t sent = 0;
            const std::size_t left = SIZE - static_cast<std::size_t>(offset);
            ASSERT_TRUE(server.send_stream_file(connection, ::fileno(file), offset, left, sent));
            if (sent < left) {
                server.wait(1000);
                pass(server);
            }
        }
        reader.join();
        EXPECT_EQ(received, content);
        EXPECT_FALSE(peer.has_data(0));
        std::uint32_t sent = 1;
        EXPECT_FALSE(server.send_stream_file(connection, ::fileno(file), offset, 1, sent));
        EXPECT_EQ(sent, 0u);
        EXPECT_FALSE(connection->is_dead());
        connection->stream_mode = 0;
        connection->release_sends();
        if (round == 0) {
            // The next offer comes before a send pass: what was held must not hold it up.
            continue;
        }
        settle(server);
        EXPECT_EQ(get_frame_id(peer.read_frame()), 30000);
    }
    TEST_CLOCK::advance(100);
    EXPECT_GT(connection->get_send_rate_kbps(), 0.0);
    std::fclose(file);
}

TEST_F(SessionTest, WithoutDescriptorsCallersWait) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    std::vector<std::unique_ptr<RAW_PEER>> callers;
    for (int i = 0; i < 80; ++i) {
        callers.push_back(std::make_unique<RAW_PEER>(server.get_listen_port()));
    }
    ::rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const int lowest_free = ::dup(0);
    ::close(lowest_free);
    const ::rlimit tight{static_cast<::rlim_t>(lowest_free), limit.rlim_max};
    CaptureStdout();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
    settle(server);
    EXPECT_EQ(server.get_number_of_connections(), 0);
    settle(server);
    TEST_CLOCK::advance(1000);
    settle(server);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    const std::string output = GetCapturedStdout();
    EXPECT_EQ(output.find("WARNING: No resources left"), 0u);
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
    settle(server);
    EXPECT_EQ(server.get_number_of_connections(), 0);  // it rests
    TEST_CLOCK::advance(1000);
    server.monitor();
    EXPECT_EQ(server.get_number_of_connections(), 64);  // bounded in one pass
    settle(server);
    EXPECT_EQ(server.get_number_of_connections(), 80);
}

TEST_F(SessionTest, WaitSleepsUntilThereIsSomethingToDo) {
    using CLOCK = std::chrono::steady_clock;
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    auto begin = CLOCK::now();
    EXPECT_FALSE(server.wait(30));
    EXPECT_GE(CLOCK::now() - begin, std::chrono::milliseconds(30));

    begin = CLOCK::now();
    RAW_PEER peer(server.get_listen_port());
    EXPECT_TRUE(server.wait(5000));  // a caller
    ASSERT_TRUE(server.monitor());
    const NETWORK_CONNECTION connection = server.get_connection(0);
    settle(server);
    EXPECT_FALSE(server.wait(0));
    peer.send(make_frame(1200, 1));
    EXPECT_TRUE(server.wait(5000));  // data
    settle(server);

    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        NETWORK_MESSAGE message;
        fill(message, 1300, 1);
        EXPECT_TRUE(connection->send_message(message));
    });
    EXPECT_TRUE(server.wait(5000));  // a message from another thread
    other.join();
    settle(server);
    EXPECT_FALSE(server.wait(0));
    // An owner of a raw transfer who finds nothing is woken when something comes; one who only
    // sends isn't.
    connection->stream_mode = 1;
    peer.send({'x', 'y'});
    EXPECT_FALSE(server.wait(20));
    unsigned char bytes[8];
    std::uint32_t count = 0;
    EXPECT_TRUE(server.receive_stream_data(connection, bytes, 8, count));
    EXPECT_EQ(count, 2u);
    EXPECT_TRUE(server.receive_stream_data(connection, bytes, 8, count));
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(server.wait(0));
    peer.send({'z'});
    EXPECT_TRUE(server.wait(5000));
    EXPECT_LT(CLOCK::now() - begin, std::chrono::seconds(4));
}

TEST_F(SessionTest, AMessageMayHaveTenMegabytesAndNoMore) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    NETWORK_MANAGER client(1, 1);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    constexpr std::int32_t LIMIT = 10485760 - 17 - 5;  // with header and trailer
    BYTES content(LIMIT);
    for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<unsigned char>(i * 13 >> 5);
    }
    NETWORK_MESSAGE message;
    message.write_data_block(content.data(), LIMIT);
    EXPECT_FALSE(client.send(connection, message));
    message.clear();
    message.write_data_block(content.data(), LIMIT - 1);
    ASSERT_TRUE(client.send(connection, message));
    bool same = false;
    server_record.on_message = [&](const NETWORK_CONNECTION&, NETWORK_MESSAGE& received) {
        same = received.get_payload_length() == LIMIT - 1 &&
               std::memcmp(received.get_buffer() + 17, content.data(), LIMIT - 1) == 0;
    };
    ASSERT_TRUE(pump_until({&client, &server}, [&] { return server_record.messages.size() == 1; }));
    EXPECT_TRUE(same);
}

TEST_F(SessionTest, AConnectionMovesBetweenManagers) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    NETWORK_MANAGER client(1, 1);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    EXPECT_EQ(client.process_connect(connection), 1);
    EXPECT_EQ(client.get_number_of_connections(), 1);
    EXPECT_EQ(client.process_connect(nullptr), 0);
    connection->disconnect();
    EXPECT_EQ(client.process_connect(connection), 0);
    EXPECT_TRUE(NETWORK_MANAGER::ip_matches(0x0A000001, 0x0A0000FF, 8));
    EXPECT_FALSE(NETWORK_MANAGER::ip_matches(0x0A000001, 0x0A0001FF, 8));
    EXPECT_FALSE(NETWORK_MANAGER::ip_matches(1, 2, 0));
    EXPECT_TRUE(NETWORK_MANAGER::ip_matches(1, 2, 32));
}

TEST_F(SessionTest, TheReporterSeesStampedMessagesOnly) {
    NETWORK_MANAGER server(1, 1);
    start(server, server_record);
    NETWORK_MANAGER client(1, 1);
    const NETWORK_CONNECTION connection = join(client, client_record, server);
    std::uint32_t r[10];
    const auto get = [&] {
        return client.get_report(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], r[8], r[9]);
    };
    EXPECT_FALSE(get());
    client.set_reporter(std::make_unique<NETWORK_MESSAGE_REPORTER>(&TEST_CLOCK::read));
    TEST_CLOCK::now = 2000;
    const std::uint32_t stamps[3][3] = {{1000, 1010, 1990}, {1000, 1030, 1900}, {1000, 0, 1900}};
    for (const auto& item : stamps) {
        NETWORK_MESSAGE message;
        fill(message, 1200, 1);
        message.time_1 = item[0];
        message.time_2 = item[1];
        message.time_3 = item[2];
        ASSERT_TRUE(client.send(connection, message));
    }
    TEST_CLOCK::now = 1000 + 119999;
    EXPECT_FALSE(get());
    TEST_CLOCK::advance(1);
    ASSERT_TRUE(get());
    const std::uint32_t expected[10] = {2, 10, 30, 20, 870, 980, 925, 10, 100, 55};
    EXPECT_TRUE(std::equal(std::begin(r), std::end(r), std::begin(expected)));
    EXPECT_FALSE(get());
    TEST_CLOCK::advance(120000);
    ASSERT_TRUE(get());
    EXPECT_TRUE(std::all_of(std::begin(r), std::end(r), [](std::uint32_t v) { return v == 0; }));
}

}  // namespace
