// What a manager makes of the bytes of its peers: frames, limits, validation, tokens.
#include <unistd.h>

#include <memory>

#include "network_test_tools.h"

namespace {

using namespace network_test;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

constexpr char BAD_CHECKSUM[] = "WARNING: Message failed validation INVALID CHECKSUM \n";
constexpr char BAD_VERSION[] = "WARNING: Message failed validation INVALID VERSION \n";
constexpr char BAD_LENGTH[] = "WARNING: Message failed validation INVALID LENGTH \n";

// One raw peer at a manager that begins no key exchange.
class FrameTest : public NETWORK_TEST {
protected:
    explicit FrameTest(unsigned char stop_calls = 1) : manager(stop_calls, 1) {
        start(manager, record);
        peer = std::make_unique<RAW_PEER>(manager.get_listen_port());
        EXPECT_TRUE(pump_until({&manager}, [&] { return record.connects.size() == 1; }));
        connection = manager.get_connection(0);
        EXPECT_EQ(record.connects[0].second, 0);
    }
    bool await_messages(std::size_t count) {
        return pump_until({&manager}, [&] { return record.messages.size() >= count; });
    }
    bool await_close() {
        return pump_until({&manager}, [&] { return !record.disconnects.empty(); });
    }

    RECORD record;
    NETWORK_MANAGER manager;
    std::unique_ptr<RAW_PEER> peer;
    NETWORK_CONNECTION connection;
};

class ReplyTest : public FrameTest {
protected:
    ReplyTest() : FrameTest(0) {}
};

TEST_F(FrameTest, AFrameMayArriveByteByByte) {
    const BYTES frame = make_frame(1200, 42);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        EXPECT_TRUE(record.messages.empty());
        peer->send({frame[i]});
        settle(manager);
    }
    ASSERT_TRUE(await_messages(1));
    EXPECT_EQ(record.messages[0].id, 1200);
    EXPECT_EQ(record.messages[0].value, 42);
    EXPECT_EQ(record.messages[0].connection, connection);
}

TEST_F(FrameTest, SizesOutOfRangeCloseTheConnection) {
    const struct {
        unsigned char order;
        std::uint32_t size;
        bool kept;
    } cases[] = {{0, 17, false},      {0, 10485760, false}, {0, 0xFFFFFFFF, false}, {0, 0, false},
                 {0, 10485759, true}, {1, 17, false},       {1, 10485759, true}};
    for (const auto& item : cases) {
        RAW_PEER raw(manager.get_listen_port());
        const std::size_t before = record.connects.size();
        ASSERT_TRUE(pump_until({&manager}, [&] { return record.connects.size() > before; }));
        const NETWORK_CONNECTION tried = record.connects.back().first;
        BYTES prefix(5, item.order);
        KVCORE::store_le32(&prefix[1], item.order ? KVCORE::swap_bytes(item.size) : item.size);
        raw.send(prefix);
        settle(manager);
        EXPECT_EQ(!tried->is_dead(), item.kept) << item.size;
        // A promise of 10 MB costs no more than the first step.
        EXPECT_LE(tried->get_receive_capacity(), 10240u);
        EXPECT_EQ(raw.is_closed(item.kept ? 0 : 2000), !item.kept);
    }
    EXPECT_FALSE(connection->is_dead());
}

TEST_F(FrameTest, TheSmallestMessageIsTaken) {
    BYTES message(18, 0);
    CaptureStdout();
    peer->send(add_prefix(message.data(), 18));
    EXPECT_TRUE(await_messages(1));
    EXPECT_EQ(GetCapturedStdout(), BAD_LENGTH);
    EXPECT_FALSE(connection->is_dead());
}

TEST_F(FrameTest, TheBufferGrowsOnlyAsTheMessageArrives) {
    NETWORK_MESSAGE message;
    EXPECT_TRUE(message << std::int16_t{1500});
    const BYTES content(50000, 0x5A);
    EXPECT_EQ(message.write_data_block(content.data(), 50000), 50000);
    const BYTES frame = make_frame(message);
    auto send_up_to = [&, sent = std::size_t{0}](std::size_t end) mutable {
        peer->send(BYTES(frame.begin() + static_cast<std::ptrdiff_t>(sent),
                         frame.begin() + static_cast<std::ptrdiff_t>(end)));
        sent = end;
        settle(manager);
    };
    send_up_to(5 + 9000);  // 1240 bytes are free
    EXPECT_EQ(connection->get_receive_capacity(), 10240u);
    send_up_to(5 + 9500);  // 740
    EXPECT_EQ(connection->get_receive_capacity(), 10240u);
    send_up_to(5 + 9501);
    EXPECT_EQ(connection->get_receive_capacity(), 20480u);

    BYTES received;
    record.on_message = [&](const NETWORK_CONNECTION&, NETWORK_MESSAGE& whole) {
        std::int16_t id;
        EXPECT_TRUE(whole >> id);
        received.resize(50001);
        received.resize(static_cast<std::size_t>(whole.read_data_block(received.data(), 50001)));
    };
    send_up_to(frame.size());
    ASSERT_TRUE(await_messages(1));
    EXPECT_EQ(received, content);
    EXPECT_EQ(connection->get_receive_capacity(), 0u);
}

TEST_F(FrameTest, ABigEndianPeerIsUnderstood) {
    NETWORK_MESSAGE message;
    message.set_byte_order(BYTEORDER_BIG);
    EXPECT_TRUE((message << std::int16_t{1200}) && (message << std::int32_t{0x01020304}));
    BYTES frame = make_frame(message);
    frame[0] = 1;
    std::swap(frame[1], frame[4]);
    std::swap(frame[2], frame[3]);
    EXPECT_EQ(frame[23], 1200 & 0xFF);  // the low byte comes second
    peer->send(frame);
    peer->send(make_frame(1300, 7));  // the order is each message's own
    ASSERT_TRUE(await_messages(2));
    EXPECT_EQ(record.messages[0].id, 1200);
    EXPECT_EQ(record.messages[0].value, 0x01020304);
    EXPECT_EQ(record.messages[1].id, 1300);
}

TEST_F(FrameTest, AFailedValidationIsOnlyAWarning) {
    BYTES checksum = make_frame(1200, 1);
    checksum.back() ^= 1;
    BYTES version = make_frame(1200, 2);
    version[version.size() - 5] = 0;
    NETWORK_MESSAGE second_form;
    fill(second_form, 1200, 3);
    second_form.encrypted = 0;
    BYTES encrypted = make_frame(second_form, 1);
    encrypted[encrypted.size() - 6] = 2;

    CaptureStdout();
    peer->send(checksum);
    peer->send(version);
    peer->send(encrypted);
    peer->send(make_frame(1200, 4));
    EXPECT_TRUE(await_messages(4));
    EXPECT_EQ(GetCapturedStdout(), std::string(BAD_CHECKSUM) + BAD_VERSION + BAD_CHECKSUM);
    EXPECT_EQ(record.values(), (std::vector<std::int32_t>{1, 2, 3, 4}));
    EXPECT_FALSE(connection->is_dead());
}

TEST_F(FrameTest, OnePassTakesOneMessageOfEachConnectionInTheirOrder) {
    RAW_PEER second(manager.get_listen_port());
    ASSERT_TRUE(pump_until({&manager}, [&] { return record.connects.size() == 2; }));
    BYTES first_burst;
    BYTES second_burst;
    for (int i = 0; i < 3; ++i) {
        const BYTES one = make_frame(1200, 10 + i);
        const BYTES two = make_frame(1200, 20 + i);
        first_burst.insert(first_burst.end(), one.begin(), one.end());
        second_burst.insert(second_burst.end(), two.begin(), two.end());
    }
    second.send(second_burst);  // what arrives first doesn't matter
    peer->send(first_burst);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    for (std::size_t done = 1; done <= 3; ++done) {
        EXPECT_TRUE(manager.monitor());
        EXPECT_EQ(record.messages.size(), 2 * done);
    }
    EXPECT_FALSE(manager.monitor());
    EXPECT_EQ(record.values(), (std::vector<std::int32_t>{10, 20, 11, 21, 12, 22}));
}

TEST_F(FrameTest, WhatWasSentBeforeTheCloseIsDeliveredBeforeTheDisconnect) {
    record.on_disconnect = [&](const NETWORK_CONNECTION&) {
        EXPECT_EQ(record.messages.size(), 3u);
    };
    for (int i = 0; i < 3; ++i) {
        peer->send(make_frame(1200, i));
    }
    peer->close();
    ASSERT_TRUE(await_close());
    EXPECT_EQ(record.disconnects[0].second, 0);
    EXPECT_EQ(manager.get_number_of_connections(), 0);
}

TEST_F(FrameTest, TransportMessagesStayInside) {
    double peer_rates[2] = {};
    std::uint32_t latency = 0;
    struct PING_RECORD {
        double* rates;
        std::uint32_t* latency;
    } pings{peer_rates, &latency};
    manager.ping_user = &pings;
    manager.ping_callback = [](NETWORK_MANAGER&, const NETWORK_CONNECTION&, unsigned char sent,
                               unsigned char timed_out, std::uint32_t ms, double receive_kbps,
                               double send_kbps, void* user) {
        EXPECT_EQ(sent + timed_out, 0);
        const auto& target = *static_cast<PING_RECORD*>(user);
        target.rates[0] = receive_kbps;
        target.rates[1] = send_kbps;
        *target.latency = ms;
    };
    CaptureStdout();
    NETWORK_MESSAGE ping;
    EXPECT_TRUE(ping << std::int16_t{30000});
    BYTES frame = make_frame(ping);
    frame.back() ^= 1;  // they aren't validated
    peer->send(frame);
    ASSERT_TRUE(pump_until({&manager}, [&] { return peer->has_data(0); }));
    const BYTES answer = peer->read_frame();
    EXPECT_EQ(get_frame_id(answer), 30010);
    EXPECT_EQ(answer.size(), 5u + 17 + 2 + 16 + 5);

    NETWORK_MESSAGE pong;
    EXPECT_TRUE((pong << std::int16_t{30010}) && (pong << 12.5) && (pong << 0.25));
    peer->send(make_frame(pong));
    ASSERT_TRUE(pump_until({&manager}, [&] { return latency != 0; }));
    EXPECT_EQ(latency, 100u);  // no ping had been sent
    EXPECT_EQ(peer_rates[0], 12.5);
    EXPECT_EQ(peer_rates[1], 0.25);
    EXPECT_TRUE(record.messages.empty());
    EXPECT_EQ(GetCapturedStdout(), "");
}

// Enciphered bytes can look like anything, the transport's ids included.
TEST_F(FrameTest, AnEncipheredPayloadIsNeverTakenForTheTransports) {
    NETWORK_MESSAGE message;
    EXPECT_TRUE(message << std::int16_t{30000});
    const BYTES filler(140, 0);
    message.write_data_block(filler.data(), 140);
    message.encrypted = 1;
    CaptureStdout();
    peer->send(make_frame(message, 1));
    EXPECT_TRUE(await_messages(1));
    GetCapturedStdout();
    EXPECT_FALSE(peer->has_data(20));
}

// Numbers that make no key, and an answer to nothing, end the connection and nothing else.
TEST_F(FrameTest, AHostileKeyExchangeClosesTheConnection) {
    const auto exchange = [](std::int16_t id, std::vector<std::int32_t> numbers) {
        NETWORK_MESSAGE message;
        EXPECT_TRUE(message << id);
        for (const std::int32_t number : numbers) {
            EXPECT_TRUE(message << number);
        }
        return make_frame(message);
    };
    const BYTES attacks[] = {exchange(30100, {1, 0, 3, 1, 2, 3, 4}),
                             exchange(30100, {1, -7, 3, 1, 2, 3, 4}),
                             exchange(30100, {1, 23, 5, 1, 2}), exchange(30110, {1, 1, 2, 3, 4})};
    for (const BYTES& attack : attacks) {
        RAW_PEER raw(manager.get_listen_port());
        raw.send(attack);
        EXPECT_TRUE(pump_until({&manager}, [&] { return raw.has_data(0); }));
        EXPECT_TRUE(raw.is_closed());
    }
    EXPECT_TRUE(record.messages.empty());
    EXPECT_FALSE(connection->is_dead());
}

TEST_F(FrameTest, AnEchoedHandlerIsAViolationWhereRepliesAreOff) {
    peer->send(make_frame(1200, 1));
    ASSERT_TRUE(await_messages(1));
    CaptureStdout();
    peer->send(make_frame(1201, 2, {0, 0, 1, 0}));
    EXPECT_TRUE(await_close());
    EXPECT_EQ(GetCapturedStdout(),
              "ERROR: VIOLATION OF stop_message_function_calls : Message ID = 1201 IP = 127.0.0.1 "
              "PORT = " +
                  std::to_string(connection->get_peer_port()) + "\n");
    EXPECT_EQ(record.messages.size(), 1u);
}

TEST_F(ReplyTest, ATokenFindsItsHandlerAndAnyOtherClosesTheConnection) {
    RECORD replies;
    NETWORK_MESSAGE question;
    fill(question, 1200, 1);
    ASSERT_TRUE(manager.send(connection, question, &RECORD::message, &replies));
    manager.monitor_send();
    const BYTES frame = peer->read_frame();
    ASSERT_EQ(frame.size(), 5u + 17 + 6 + 5);
    const TOKENS answer{0, 0, KVCORE::load_le32(&frame[6]), KVCORE::load_le32(&frame[10])};
    EXPECT_NE(answer.echo_handler, 0u);
    for (int i = 0; i < 2; ++i) {
        peer->send(make_frame(1201, i, answer));
    }
    ASSERT_TRUE(pump_until({&manager}, [&] { return replies.messages.size() == 2; }));
    EXPECT_TRUE(record.messages.empty());

    // The same pair has the same token; the number of pairs is limited.
    fill(question, 1200, 2);
    ASSERT_TRUE(manager.send(connection, question, &RECORD::message, &replies));
    manager.monitor_send();
    EXPECT_EQ(KVCORE::load_le32(&peer->read_frame()[6]), answer.echo_handler);
    std::vector<char> users(NETWORK_MANAGER::MAX_REPLY_HANDLERS);
    std::size_t queued = 0;
    for (char& user : users) {
        fill(question, 1200, 3);
        queued += manager.send(connection, question, &RECORD::message, &user);
    }
    EXPECT_EQ(queued, NETWORK_MANAGER::MAX_REPLY_HANDLERS - 1);

    CaptureStdout();
    peer->send(make_frame(1201, 9, {0, 0, answer.echo_handler, answer.echo_user + 1}));
    EXPECT_TRUE(await_close());
    EXPECT_NE(GetCapturedStdout().find("unknown token"), std::string::npos);
    EXPECT_EQ(replies.messages.size(), 2u);
}

TEST_F(ReplyTest, AReplyInTheReceivedMessageReturnsThePeersTokens) {
    record.on_message = [&](const NETWORK_CONNECTION& from, NETWORK_MESSAGE& message) {
        EXPECT_FALSE(manager.monitor());  // a pass doesn't run inside itself
        message.reset_payload();
        EXPECT_TRUE(message << std::int16_t{1201});
        EXPECT_TRUE(from->send_message(message));
    };
    peer->send(make_frame(1200, 1, {0x11223344, 0x55667788, 0, 0}));
    ASSERT_TRUE(await_messages(1));
    manager.monitor_send();
    const BYTES frame = peer->read_frame();
    ASSERT_EQ(frame.size(), 5u + 17 + 2 + 5);
    EXPECT_EQ(KVCORE::load_le32(&frame[6]), 0u);
    EXPECT_EQ(KVCORE::load_le32(&frame[14]), 0x11223344u);
    EXPECT_EQ(KVCORE::load_le32(&frame[18]), 0x55667788u);
}

TEST_F(ReplyTest, AnAnswerToAReplyReturnsNoTokensUnlessThePeerGaveSome) {
    RECORD replies;
    NETWORK_MESSAGE question;
    fill(question, 1200, 1);
    ASSERT_TRUE(manager.send(connection, question, &RECORD::message, &replies));
    manager.monitor_send();
    const BYTES asked = peer->read_frame();
    replies.on_message = [](const NETWORK_CONNECTION& from, NETWORK_MESSAGE& message) {
        message.reset_payload();
        EXPECT_TRUE(message << std::int16_t{1202});
        EXPECT_TRUE(from->send_message(message));
    };
    peer->send(
        make_frame(1201, 2, {0, 0, KVCORE::load_le32(&asked[6]), KVCORE::load_le32(&asked[10])}));
    ASSERT_TRUE(pump_until({&manager}, [&] { return replies.messages.size() == 1; }));
    manager.monitor_send();
    const BYTES frame = peer->read_frame();
    ASSERT_EQ(get_frame_id(frame), 1202);
    EXPECT_EQ(KVCORE::load_le32(&frame[14]), 0u);
    EXPECT_EQ(KVCORE::load_le32(&frame[18]), 0u);
}

}  // namespace
