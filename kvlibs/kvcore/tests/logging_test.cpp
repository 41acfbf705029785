#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "kvcore/log_channel.h"
#include "kvcore/log_handler.h"
#include "kvcore/log_manager.h"
#include "kvcore/log_message.h"
#include "kvcore/result.h"
#include "kvcore/string.h"
#include "kvcore/string_loggable.h"
#include "kvcore/symbol.h"
#include "kvcore/vector_loggable.h"
#include "kvmath/fixed_point.h"
#include "kvmath/vector2.h"
#include "kvmath/vector3.h"
#include "kvmath/vector4.h"

namespace KVCORE {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::uint32_t PLAIN = LOG_CHANNEL::STREAM_OUTPUT;

LOG_CHANNEL test_channel("TEST_CHANNEL", PLAIN);
LOG_CHANNEL parent_channel("PARENT", PLAIN, &test_channel);
LOG_CHANNEL child_channel("CHILD", PLAIN, &parent_channel);

std::string text_of(const LOGGABLE* value) {
    std::string text;
    for (; value; value = value->get_next()) {
        text += value->get_as_c8();
    }
    return text;
}

// Writes down what it is told. Outlived by `events`.
class RECORDING_HANDLER : public LOG_HANDLER {
public:
    explicit RECORDING_HANDLER(std::vector<std::string>& events, std::string name = "")
        : events_(events), name_(std::move(name)) {}
    ~RECORDING_HANDLER() override { events_.push_back(name_ + "deleted"); }

    void installed() override { events_.push_back(name_ + "installed"); }
    void removed() override { events_.push_back(name_ + "removed"); }
    void initialise_channel(LOG_CHANNEL& channel) override {
        if (&channel == &test_channel) {
            events_.push_back(name_ + "initialise");
            channel.set_handler_data(get_index(), this);
        }
    }
    void update_channel(LOG_CHANNEL& channel) override {
        events_.push_back(name_ + "update " + channel.get_name());
    }
    void cleanup_channel(LOG_CHANNEL& channel) override {
        if (&channel == &test_channel) {
            events_.push_back(name_ + "cleanup");
        }
    }
    std::uint32_t output(const LOG_MESSAGE& message) override {
        EXPECT_TRUE(LOG_MANAGER::in_lock());
        events_.push_back(name_ + text_of(message.loggables.get()));
        if (inspect) {
            inspect(message);
        }
        return result;
    }

    std::uint32_t result = 0;
    std::function<void(const LOG_MESSAGE&)> inspect;

private:
    std::vector<std::string>& events_;
    std::string name_;
};

class LoggingTest : public testing::Test {
protected:
    void SetUp() override { test_channel.set_flags(PLAIN); }
    void TearDown() override {
        while (LOG_MANAGER::get_initialised_count() > 0) {
            LOG_MANAGER::shutdown();
        }
    }

    RECORDING_HANDLER& start_with_handler() {
        auto handler = std::make_unique<RECORDING_HANDLER>(events);
        RECORDING_HANDLER& added = *handler;
        LOG_MANAGER::install_handler(std::move(handler));
        EXPECT_EQ(LOG_MANAGER::initialise(), 0);
        events.clear();
        return added;
    }

    std::vector<std::string> events;
};

TEST(LoggableTest, EveryTypeYieldsItsText) {
    const STRING borrowed = STRING::from_literal("lent");
    const STRING shared(u"wide");
    LOGGABLE root;
    root << true << " " << 'A' << " " << static_cast<unsigned char>(200) << " "
         << static_cast<short>(-3) << " " << -2147483647 << " " << 4294967295u << " " << -5L << " "
         << 18446744073709551615ull << " " << 1.5f << " " << 2.25 << " " << u"x\u0141" << " "
         << borrowed << " " << shared << " " << std::string("std") << " " << SYMBOL("sym");
    EXPECT_EQ(text_of(&root),
              "true 65 200 -3 -2147483647 4294967295 -5 18446744073709551615 1.500000 2.250000 xA "
              "lent wide std sym");
    EXPECT_STREQ(root.get_as_xml(0, 0), "");

    LOGGABLE pointers;
    pointers << reinterpret_cast<void*>(0x1234) << static_cast<const char*>(nullptr);
    EXPECT_EQ(text_of(&pointers), "<pointer: 0x00001234>");
}

TEST(LoggableTest, VectorsShowTheirNumbers) {
    LOGGABLE root;
    root << KVMATH::BASEVECTOR2<float>(1.0f, -2.5f) << " "
         << KVMATH::VECTOR3_BASE<KVMATH::FIXED_POINT>(KVMATH::VECTOR3_BASE<float>(0.5f, 2, -1))
         << " " << KVMATH::BASEVECTOR4<float>(1.0f, 2.0f, 3.0f, 4.0f);
    EXPECT_EQ(text_of(&root),
              "(1.000000, -2.500000) (0.500000, 2.000000, -1.000000) "
              "(1.000000, 2.000000, 3.000000, 4.000000)");
}

TEST(LoggableTest, WideTextsAndXml) {
    EXPECT_EQ(std::u16string(INTEGER_LOGGABLE(42, true).get_as_c16()), u"42");
    EXPECT_EQ(std::u16string(CONSTANT_LOGGABLE_C8("a\xE9").get_as_c16()), u"a\u00E9");
    EXPECT_EQ(std::u16string(STL_STRING_LOGGABLE("s").get_as_c16()), u"s");
    EXPECT_EQ(std::u16string(BOOLEAN_LOGGABLE(false).get_as_c16()), u"false");
    EXPECT_EQ(std::u16string(STRING_LOGGABLE(STRING("b")).get_as_c16()), u"b");

    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_STREQ(INTEGER_LOGGABLE(most, true).get_as_xml(3, 0),
                 "<integer id=\"3|\" value=\"-1\" />");
    EXPECT_STREQ(INTEGER_LOGGABLE(most, false).get_as_xml(INT32_MIN, 0),
                 "<integer id=\"-2147483648|\" value=\"18446744073709551615\" />");
    EXPECT_STREQ(REAL_LOGGABLE(0.5).get_as_xml(1, 0), "<real id=\"1|\" value=\"0.500000\" />");
    EXPECT_STREQ(BOOLEAN_LOGGABLE(true).get_as_xml(1, 0), "<true/>");

    // A number of 309 digits isn't cut to a wrong one.
    const double huge = std::numeric_limits<double>::max();
    EXPECT_DOUBLE_EQ(std::stod(REAL_LOGGABLE(huge).get_as_c8()), huge);
    EXPECT_THAT(REAL_LOGGABLE(huge).get_as_xml(1, 0), HasSubstr("e+308\" />"));
}

TEST(LoggableTest, LongChainsAreBuiltInOrderAndDestroyed) {
    LOGGABLE root;
    LOGGABLE* last = &root;
    for (int i = 0; i < 300000; ++i) {
        last = &(*last << i % 10);
    }
    root << "first ";
    EXPECT_THAT(text_of(&root), StartsWith("first 0123456789012"));
}

TEST(ResultTest, KeepsTheFirstFailure) {
    RESULT result = 5;
    result += 7;
    EXPECT_EQ(result, 5);
    result = 0;
    result += 0;
    result += 7;
    EXPECT_EQ(result, 7);
    result.check_result_excluding(9, 9);
    EXPECT_EQ(result.get_code(), 0);
    result.check_result_dont_log(4);
    EXPECT_EQ(result.get_code(), 4);
}

TEST_F(LoggingTest, ResultsAreLoggedOnTheirChannelIfItIsEnabled) {
    start_with_handler();
    RESULT result;
    result.check_result(3);
    EXPECT_TRUE(events.empty());
    RESULT_CHANNEL.set_flags(PLAIN);
    events.clear();
    result.check_result(-61);
    result.check_result(0);
    result.check_result_excluding(17, 17);
    EXPECT_EQ(result, 0);
    EXPECT_THAT(events, ElementsAre("Error code: -61"));
    RESULT_CHANNEL.set_flags(LOG_CHANNEL::DEFAULT_CHANNEL_FLAGS);
}

TEST(LogChannelTest, AncestorsDisableTheirDescendants) {
    EXPECT_FALSE(RESULT_CHANNEL.is_enabled());
    EXPECT_TRUE(child_channel.is_enabled());
    test_channel.set_flags(PLAIN | LOG_CHANNEL::DISABLED);
    EXPECT_FALSE(child_channel.is_enabled());
    int evaluated = 0;
    KVCORE_LOG(child_channel, 0, << ++evaluated);
    EXPECT_EQ(evaluated, 0);
    test_channel.set_flags(PLAIN);
    EXPECT_TRUE(child_channel.is_enabled());
    // The mark of installation can't be set or cleared by hand.
    EXPECT_EQ(child_channel.get_flags(), PLAIN | LOG_CHANNEL::INSTALLED);
}

TEST(LogChannelTest, HandlerDataGrowsOnDemand) {
    int value = 0;
    EXPECT_EQ(child_channel.get_handler_data(0), nullptr);
    child_channel.set_handler_data(2, &value);
    EXPECT_EQ(child_channel.get_handler_data(0), nullptr);
    EXPECT_EQ(child_channel.get_handler_data(2), &value);
    EXPECT_EQ(child_channel.get_handler_data(3), nullptr);
    EXPECT_EQ(child_channel.get_handler_data(-1), nullptr);
    child_channel.set_handler_data(-1, &value);
}

TEST(LogChannelTest, InstallingTwiceIsReported) {
    testing::internal::CaptureStdout();
    LOG_MANAGER::install_channel(test_channel);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "internal log manager error\n");
}

TEST_F(LoggingTest, WithoutManagerOrHandlerMessagesGoToTheConsole) {
    testing::internal::CaptureStdout();
    KVCORE_LOG(test_channel, 0, << "not "
                                << "running");
    ASSERT_EQ(LOG_MANAGER::initialise(), 0);
    KVCORE_LOG(test_channel, LOG_CHANNEL::SHOW_CHANNEL, << "no handler");
    KVCORE_LOG(test_channel, LOG_CHANNEL::SEVERE_PAUSING, << "severe");
    std::thread([] { KVCORE_LOG(test_channel, LOG_CHANNEL::SEVERE, << "other thread"); }).join();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "not running\nTEST_CHANNEL: no handler\nsevere\nother thread\n");
    // Nothing of it waits in the queue.
    LOG_MANAGER::install_handler(std::make_unique<RECORDING_HANDLER>(events));
    events.clear();
    LOG_MANAGER::process_queue();
    EXPECT_TRUE(events.empty());
}

[[gnu::noinline]] void log_with_stack() {
    KVCORE_LOG(test_channel, LOG_CHANNEL::RECORD_STACK, << "traced");
}

TEST_F(LoggingTest, TheConsoleShowsTheStack) {
    testing::internal::CaptureStdout();
    log_with_stack();
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_THAT(text, StartsWith("traced\nstack:\n\t"));
    EXPECT_GT(std::count(text.begin(), text.end(), '\t'), 2);
}

TEST_F(LoggingTest, HandlersSeeTheirLife) {
    LOG_MANAGER::install_handler(std::make_unique<RECORDING_HANDLER>(events, "a "));
    EXPECT_TRUE(events.empty());
    ASSERT_EQ(LOG_MANAGER::initialise(), 0);
    ASSERT_EQ(LOG_MANAGER::initialise(), 0);
    EXPECT_THAT(events, ElementsAre("a installed", "a initialise"));
    events.clear();

    auto second = std::make_unique<RECORDING_HANDLER>(events, "b ");
    RECORDING_HANDLER* const b = second.get();
    LOG_MANAGER::install_handler(std::move(second));
    EXPECT_EQ(b->get_index(), 1);
    EXPECT_EQ(test_channel.get_handler_data(1), b);
    test_channel.set_flags(PLAIN | LOG_CHANNEL::SHOW_TIME);
    KVCORE_LOG(test_channel, 0, << "x");
    EXPECT_THAT(events, ElementsAre("b installed", "b initialise", "b update TEST_CHANNEL",
                                    "a update TEST_CHANNEL", "b x", "a x"));
    events.clear();

    LOG_MANAGER::shutdown();
    EXPECT_TRUE(events.empty());
    LOG_MANAGER::shutdown();
    EXPECT_THAT(events, ElementsAre("b cleanup", "b removed", "b deleted", "a cleanup", "a removed",
                                    "a deleted"));
    EXPECT_EQ(test_channel.get_handler_data(1), nullptr);
}

TEST_F(LoggingTest, MessagesCarryTheirOriginAndTheHandlersResult) {
    RECORDING_HANDLER& handler = start_with_handler();
    handler.result = 0x30;
    int line = 0;
    handler.inspect = [&](const LOG_MESSAGE& message) {
        EXPECT_THAT(message.code_file, HasSubstr("logging_test.cpp"));
        EXPECT_STREQ(message.function, "TestBody");
        EXPECT_EQ(message.code_line, 17);
        EXPECT_EQ(message.channel, &test_channel);
        EXPECT_EQ(message.flags & 0xFFF, PLAIN | LOG_CHANNEL::SHOW_TIME);
        EXPECT_GE(message.time, 0.0);
        EXPECT_LT(message.time, 60.0);
        EXPECT_GT(message.stack.get_count(), 0u);
        EXPECT_LE(message.stack.get_count(), 54u);
        ++line;
    };
    LOGGABLE root;
    root << "x = " << 5;
    EXPECT_EQ(test_channel.log(root, LOG_CHANNEL::SHOW_TIME | LOG_CHANNEL::RECORD_STACK, __FILE__,
                               17, __func__, __DATE__),
              0x30u);
    EXPECT_EQ(root.get_next(), nullptr);
    EXPECT_THAT(events, ElementsAre("x = 5"));
    EXPECT_EQ(line, 1);
}

TEST_F(LoggingTest, AHandlerThatLogsWritesToTheConsole) {
    RECORDING_HANDLER& handler = start_with_handler();
    handler.inspect = [](const LOG_MESSAGE&) {
        KVCORE_LOG(test_channel, LOG_CHANNEL::SEVERE, << "from the handler");
        LOG_MANAGER::process_queue();
    };
    testing::internal::CaptureStdout();
    KVCORE_LOG(test_channel, 0, << "message");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "from the handler\n");
    EXPECT_THAT(events, ElementsAre("message"));
}

TEST_F(LoggingTest, OtherThreadsOnlyQueueUnlessSevere) {
    RECORDING_HANDLER& handler = start_with_handler();
    handler.result = LOG_CHANNEL::SHOW_CHANNEL;
    std::atomic<bool> plain_sent{false};
    std::atomic<bool> severe_handled{false};
    std::atomic<std::uint32_t> result{0};
    std::thread other([&] {
        KVCORE_LOG(test_channel, 0, << "plain");
        plain_sent = true;
        LOGGABLE root;
        root << "severe";
        result = test_channel.log(root, LOG_CHANNEL::SEVERE_PAUSING, "", 0, "", "");
        severe_handled = true;
    });
    while (!plain_sent) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(severe_handled);
    {
        LOG_MANAGER::lock();
        EXPECT_TRUE(events.empty());
        LOG_MANAGER::unlock();
    }
    while (!severe_handled) {
        LOG_MANAGER::process_queue();
    }
    other.join();
    EXPECT_EQ(result, std::uint32_t{LOG_CHANNEL::SHOW_CHANNEL});
    EXPECT_THAT(events, ElementsAre("plain", "severe"));
}

TEST_F(LoggingTest, ShutdownReleasesThreadsThatWait) {
    // Threads log without a pause while the manager starts and stops; each message goes somewhere,
    // and nobody is left waiting.
    testing::internal::CaptureStdout();
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&, i] {
            while (!stop) {
                KVCORE_LOG(test_channel, i == 0 ? 0u : std::uint32_t{LOG_CHANNEL::SEVERE},
                           << "thread " << i);
            }
        });
    }
    for (int round = 0; round < 20; ++round) {
        start_with_handler();
        for (int i = 0; i < 5; ++i) {
            LOG_MANAGER::process_queue();
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        LOG_MANAGER::shutdown();
    }
    stop = true;
    for (auto& thread : threads) {
        thread.join();
    }
    testing::internal::GetCapturedStdout();
    EXPECT_THAT(events.back(), "deleted");
}

}  // namespace
}  // namespace KVCORE
