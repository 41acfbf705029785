#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "kvcore/log_channel.h"
#include "kvcore/log_manager.h"
#include "kvcore/log_message.h"
#include "modules/frameworks/orln_log_handler.h"

namespace {

using KVCORE::LOG_CHANNEL;
using KVCORE::LOG_MESSAGE;

LOG_CHANNEL handler_test_channel("HANDLER_TEST", LOG_CHANNEL::STREAM_OUTPUT);

std::string line_for(double time, std::uint32_t flags) {
    LOG_MESSAGE message;
    message.code_file = "pitch.cpp";
    message.function = "draw";
    message.file_date = "Jan  1 2001";
    message.code_line = 12;
    message.flags = flags;
    message.channel = &handler_test_channel;
    message.time = time;
    message.loggables = std::make_unique<KVCORE::LOGGABLE>();
    *message.loggables << "x = " << 5;
    return ORLN_LOG_HANDLER::build_line(message);
}

TEST(OrlnLogHandlerTest, FlagsChooseThePartsOfTheLine) {
    EXPECT_EQ(line_for(1.0, LOG_CHANNEL::STREAM_OUTPUT), "x = 5");
    EXPECT_EQ(line_for(125.5, LOG_CHANNEL::SHOW_TIME), "2:05.50 x = 5");
    EXPECT_EQ(line_for(59.999, LOG_CHANNEL::SHOW_TIME), "1:00.00 x = 5");
    EXPECT_EQ(line_for(0.0, LOG_CHANNEL::SHOW_CHANNEL), "HANDLER_TEST: x = 5");
    EXPECT_EQ(line_for(3661.25, LOG_CHANNEL::VERBOSE),
              "61:01.25 HANDLER_TEST: x = 5 (in draw(), pitch.cpp, 12 Jan  1 2001)");
}

TEST(OrlnLogHandlerTest, WritesToItsStreamOnlyWhereThatIsAskedAndEnabled) {
    auto owned = std::make_unique<ORLN_LOG_HANDLER>();
    ORLN_LOG_HANDLER& handler = *owned;
    EXPECT_EQ(DEBUG_STREAM::find_stream("kvcore"), &handler.get_stream());
    KVCORE::LOG_MANAGER::install_handler(std::move(owned));
    ASSERT_EQ(KVCORE::LOG_MANAGER::initialise(), 0);

    testing::internal::CaptureStdout();
    handler_test_channel.set_flags(LOG_CHANNEL::STREAM_OUTPUT);
    handler.get_stream().flags = 0;
    KVCORE_LOG(handler_test_channel, 0, << "stream off");
    handler.get_stream().flags = DEBUG_STREAM::WRITE_TO_CONSOLE;
    KVCORE_LOG(handler_test_channel, 0, << "shown " << 1);
    handler_test_channel.set_flags(LOG_CHANNEL::SECOND_OUTPUT);
    KVCORE_LOG(handler_test_channel, 0, << "second kind");
    handler_test_channel.set_flags(LOG_CHANNEL::STREAM_OUTPUT | LOG_CHANNEL::DISABLED);
    KVCORE_LOG(handler_test_channel, 0, << "channel off");
    KVCORE::LOG_MANAGER::shutdown();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "shown 1\n");
    EXPECT_EQ(DEBUG_STREAM::find_stream("kvcore"), nullptr);
}

}  // namespace
