// DEBUG_STREAM: what switches a stream, what it writes where, and that threads can share one.
#include "platform/debug_stream.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/config_file.h"
#include "platform/inet_date.h"
#include "temp_folder.h"

namespace {

constexpr unsigned short TO_FILE = DEBUG_STREAM::WRITE_TO_FILE;

class DEBUG_STREAM_TEST : public testing::Test {
protected:
    TEMP_FOLDER folder;

    void SetUp() override {
        std::filesystem::create_directory(folder.path() / "data");
        ASSERT_TRUE(DISK_MANAGER::set_base_folder(folder.path().c_str()));
    }
    void TearDown() override { DISK_MANAGER::set_base_folder(nullptr); }

    void make_debug_folder() { std::filesystem::create_directory(folder.path() / "data/debug"); }
    std::string output(const std::string& name) { return folder.get("data/debug/" + name); }
};

TEST_F(DEBUG_STREAM_TEST, a_configured_stream_is_silent_without_the_folder) {
    {
        DEBUG_STREAM stream("quiet", DEBUG_STREAM::LOAD_CONFIG | TO_FILE);
        EXPECT_EQ(stream.flags, 0);
        stream.printf("lost");
        stream.write_to_stream(nullptr, 0, "lost", true);
    }
    EXPECT_FALSE(folder.has("data/debug"));
}

TEST_F(DEBUG_STREAM_TEST, the_configuration_switches_each_flag) {
    make_debug_folder();
    const char* const keys[] = {"write_to_console",  "write_to_popup_dialog",
                                "write_to_file",     "truncate_file_on_first_write",
                                "keep_file_open",    "write_file_header",
                                "write_stream_name", "write_code_location",
                                "trigger_breakpoint"};
    for (unsigned bit = 0; bit < std::size(keys); bit++) {
        SCOPED_TRACE(keys[bit]);
        folder.put("data/debug/one_release.cfg",
                   std::string("# by hand\n") + keys[bit] + "\n\t1\n");
        DEBUG_STREAM stream("one", DEBUG_STREAM::LOAD_CONFIG);
        EXPECT_EQ(stream.flags, 1u << bit);
        EXPECT_STREQ(stream.get_filename(), "one.txt");
    }
    folder.put("data/debug/one_release.cfg",
               "write_to_file\n\t1\nwrite_stream_name\n\t1\ndisabled\n\t1\nfilename\n\tmine.log\n");
    DEBUG_STREAM stream("one", DEBUG_STREAM::LOAD_CONFIG);
    EXPECT_EQ(stream.flags, 0);
    EXPECT_STREQ(stream.get_filename(), "mine.log");
}

TEST_F(DEBUG_STREAM_TEST, an_ending_stream_leaves_a_complete_configuration) {
    make_debug_folder();
    { DEBUG_STREAM stream("left", DEBUG_STREAM::LOAD_CONFIG); }
    const auto value_of = [this](const char* key) {
        CONFIG_FILE config("left_release.cfg", false, FOLDER_BASE, false);
        std::uint32_t value = 99;
        config.read(folder.cursor("data/debug"), key, value);
        return value;
    };
    EXPECT_EQ(value_of("disabled"), 1u);
    EXPECT_EQ(value_of("write_to_file"), 0u);
    EXPECT_EQ(value_of("trigger_breakpoint"), 0u);
    { DEBUG_STREAM stream("left", TO_FILE | DEBUG_STREAM::WRITE_STREAM_NAME); }
    EXPECT_EQ(value_of("disabled"), 0u);
    EXPECT_EQ(value_of("write_to_file"), 1u);
    EXPECT_EQ(value_of("write_stream_name"), 1u);
    EXPECT_EQ(value_of("keep_file_open"), 0u);
    DEBUG_STREAM stream("left", DEBUG_STREAM::LOAD_CONFIG);
    EXPECT_EQ(stream.flags, TO_FILE | DEBUG_STREAM::WRITE_STREAM_NAME);
}

TEST_F(DEBUG_STREAM_TEST, writes_prefixes_and_headers_to_the_file) {
    for (const int keep : {0, int{DEBUG_STREAM::KEEP_FILE_OPEN}}) {
        SCOPED_TRACE(keep);
        std::filesystem::remove_all(folder.path() / "data/debug");
        {
            DEBUG_STREAM stream(
                "out", static_cast<unsigned short>(
                           TO_FILE | keep | DEBUG_STREAM::WRITE_FILE_HEADER |
                           DEBUG_STREAM::WRITE_STREAM_NAME | DEBUG_STREAM::WRITE_CODE_LOCATION));
            stream.write_to_stream("code.cpp", 12, "first", true);
            stream.write_to_stream(nullptr, 12, "second", false);
            stream.printf(" %s", "third");
            // What was written can be read while the stream lives.
            EXPECT_TRUE(output("out.txt").ends_with("<out>: second<out>:  third"));
        }
        const std::string text = output("out.txt");
        const std::string head =
            "======================================\n> Debug stream: out\n> Written: ";
        EXPECT_TRUE(text.starts_with(head));
        EXPECT_TRUE(
            text.ends_with(" GMT\n\n<out>: (code.cpp,12) first\n<out>: second<out>:  third"));
        // A stream of a second run adds to the file, unless it truncates.
        { DEBUG_STREAM("out", TO_FILE).write_to_stream(nullptr, 0, "more", true); }
        EXPECT_EQ(output("out.txt"), text + "more\n");
        DEBUG_STREAM stream(
            "out", static_cast<unsigned short>(TO_FILE | keep |
                                               DEBUG_STREAM::TRUNCATE_FILE_ON_FIRST_WRITE));
        stream.write_to_stream(nullptr, 0, "new", true);
        stream.write_to_stream(nullptr, 0, "newer", true);
        EXPECT_EQ(output("out.txt"), "new\nnewer\n");
    }
}

TEST_F(DEBUG_STREAM_TEST, a_long_text_is_cut_with_its_prefixes) {
    DEBUG_STREAM stream("cut",
                        TO_FILE | DEBUG_STREAM::WRITE_TO_CONSOLE | DEBUG_STREAM::WRITE_STREAM_NAME);
    testing::internal::CaptureStdout();
    stream.write_to_stream(nullptr, 0, std::string(9000, 'x').c_str(), true);
    const std::string expected = "<cut>: " + std::string(8191 - 7, 'x') + "\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
    EXPECT_EQ(output("cut.txt"), expected);
}

TEST_F(DEBUG_STREAM_TEST, the_dialog_shows_the_line_without_the_stream_name) {
    DEBUG_STREAM stream("box", DEBUG_STREAM::WRITE_TO_POPUP_DIALOG |
                                   DEBUG_STREAM::WRITE_STREAM_NAME |
                                   DEBUG_STREAM::WRITE_CODE_LOCATION);
    testing::internal::CaptureStderr();
    stream.write_to_stream("code.cpp", 3, "text", false);
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_NE(shown.find("box: (code.cpp,3) text"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("<box>"), std::string::npos) << shown;
}

TEST_F(DEBUG_STREAM_TEST, finds_the_first_stream_of_a_name) {
    DEBUG_STREAM unnamed(nullptr, 0);
    EXPECT_EQ(DEBUG_STREAM::find_stream(unnamed.get_name()), &unnamed);
    EXPECT_TRUE(std::string(unnamed.get_name()).starts_with("Debug Stream 0x"));
    EXPECT_EQ(DEBUG_STREAM::find_stream("platform_debug_stream"), &platform_debug_stream);
    auto first = std::make_unique<DEBUG_STREAM>("twin", 0);
    DEBUG_STREAM second("twin", 0);
    EXPECT_EQ(DEBUG_STREAM::find_stream("twin"), first.get());
    first.reset();
    EXPECT_EQ(DEBUG_STREAM::find_stream("twin"), &second);
    EXPECT_EQ(DEBUG_STREAM::find_stream("Twin"), nullptr);
    EXPECT_EQ(DEBUG_STREAM::find_stream(nullptr), nullptr);
}

TEST_F(DEBUG_STREAM_TEST, threads_write_whole_lines_to_one_stream) {
    constexpr int THREADS = 4, LINES = 50;
    DEBUG_STREAM stream("shared", TO_FILE | DEBUG_STREAM::WRITE_FILE_HEADER);
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; t++) {
        threads.emplace_back([&stream, t] {
            const std::string line(100, static_cast<char>('a' + t));
            for (int i = 0; i < LINES; i++) {
                stream.write_to_stream(nullptr, 0, line.c_str(), true);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::string text = output("shared.txt");
    text.erase(0, text.find("\n\n") + 2);
    ASSERT_EQ(text.size(), 101u * THREADS * LINES);
    for (std::size_t at = 0; at < text.size(); at += 101) {
        ASSERT_EQ(text.substr(at, 101), std::string(100, text[at]) + "\n");
    }
}

TEST_F(DEBUG_STREAM_TEST, internet_dates) {
    EXPECT_STREQ(get_inet_date_string(784111777), "Sun, 06 Nov 1994 08:49:37 GMT");
    EXPECT_STREQ(get_inet_date_string(0), "Thu, 01 Jan 1970 00:00:00 GMT");
    EXPECT_STREQ(get_inet_date_string(4102444800), "Fri, 01 Jan 2100 00:00:00 GMT");
    EXPECT_STREQ(get_inet_date_string(INT64_MAX), "");
}

}  // namespace
