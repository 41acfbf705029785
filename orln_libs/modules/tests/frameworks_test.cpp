// The application frameworks: settings with their limits, headings of the output family, the loop.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "../../platform/tests/disk_fixture.h"
#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/client_framework.h"
#include "modules/frameworks/trace_output.h"
#include "platform/open_graphics.h"

namespace {

// A program that stops after so many updates.
class TEST_APPLICATION : public CLIENT_FRAMEWORK {
public:
    TEST_APPLICATION() : CLIENT_FRAMEWORK("test.cfg", FOLDER_APPDATA) {}
    ~TEST_APPLICATION() override { ++destroyed; }

    bool monitor() override { return ++updates < 3; }
    std::int32_t get_build_number() const override { return 1; }
    void initialise() override {}
    void initialize_areas(unsigned char, signed char) override {}
    void destroy() override {}
    void startup_manual_singletons() override {}
    void shutdown_manual_singletons() override {}

    DEBUG_STREAM& stream() { return debug_stream; }

    static void create(short, char**) { new TEST_APPLICATION; }
    static inline int updates = 0;
    static inline int destroyed = 0;
};

class FrameworksTest : public DISK_FIXTURE {
protected:
    std::filesystem::path config_file() { return root / "opt/game/data/config/test.cfg"; }
    void configure(const std::string& text) { write(config_file(), text); }
};

TEST_F(FrameworksTest, ThreadStackSizeKeepsToItsRange) {
    const std::pair<const char*, int> cases[] = {
        {"THREAD_STACK_SIZE\n\t1023\n", 4096},   {"THREAD_STACK_SIZE\n\t1024\n", 1024},
        {"THREAD_STACK_SIZE\n\t16384\n", 16384}, {"THREAD_STACK_SIZE\n\t16385\n", 4096},
        {"THREAD_STACK_SIZE\n\t-5\n", 4096},     {"OTHER\n\t1\n", 4096}};
    for (const auto& [text, expected] : cases) {
        configure(text);
        TEST_APPLICATION application;
        application.read_from_config_file(nullptr);
        EXPECT_EQ(expected, application.get_thread_stack_size()) << text;
    }
    // A key that is missing leaves a good value alone.
    configure("THREAD_STACK_SIZE\n\t2048\n");
    TEST_APPLICATION application;
    application.read_from_config_file(nullptr);
    DISK_MANAGER elsewhere(FOLDER_TEMP);
    application.read_from_config_file(&elsewhere);
    EXPECT_EQ(2048, application.get_thread_stack_size());
}

TEST_F(FrameworksTest, ServerAddressIsReadAndWrittenBack) {
    configure("HOST_NAME\n\tpatches.example\nPORT_NUMBER\n\t4730\n");
    {
        TEST_APPLICATION application;
        EXPECT_STREQ("", application.get_host_name());
        application.read_from_config_file(nullptr);
        EXPECT_STREQ("patches.example", application.get_host_name());
        EXPECT_EQ(4730, application.get_port_number());
        application.set_host_name(std::string(300, 'x').c_str());
        EXPECT_EQ(255u, std::string(application.get_host_name()).size());
        application.set_host_name("other.example");
        application.write_to_config_file(nullptr);
    }
    TEST_APPLICATION application;
    application.read_from_config_file(nullptr);
    EXPECT_STREQ("other.example", application.get_host_name());
    EXPECT_EQ(4730, application.get_port_number());
    EXPECT_EQ(4096, application.get_thread_stack_size());
}

TEST_F(FrameworksTest, PortBeyondSixteenBitsIsNoPort) {
    configure("HOST_NAME\n\tx\nPORT_NUMBER\n\t65537\n");
    TEST_APPLICATION application;
    application.read_from_config_file(nullptr);
    EXPECT_EQ(0, application.get_port_number());
}

TEST_F(FrameworksTest, OutputReachesTheDebugFileWithItsHeading) {
    const auto debug = root / "opt/game/data/debug";
    write(debug / "main_release.cfg", "write_to_file\n\t1\nfilename\n\ttrace.txt\n");
    {
        TEST_APPLICATION application;
        TRACE_OUTPUT::output_debug("from a library: %d", 42);
        BASE_APPLICATION_FRAMEWORK::output_trace("own line");
        testing::internal::CaptureStderr();
        TRACE_OUTPUT::output_warning("disk %s", "full");
        EXPECT_EQ("disk full\n", testing::internal::GetCapturedStderr());
    }
    const std::string text = read(debug / "trace.txt");
    const std::string heading = "GW-1 [0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2} 0 ";
    EXPECT_THAT(text, testing::ContainsRegex("DEBUG: " + heading + "from a library: 42"));
    EXPECT_THAT(text, testing::ContainsRegex("TRACE: " + heading + "own line"));
    EXPECT_THAT(text, testing::ContainsRegex("WARNING: " + heading + "disk full"));
    EXPECT_THAT(text, testing::ContainsRegex("total physical memory = [0-9]+ kb"));
    EXPECT_THAT(text, testing::ContainsRegex("TRACE: " + heading + "...application shut down\n$"));
    EXPECT_EQ(std::string::npos, text.find("\n\n")) << text;
    // Without an application there is nobody to write.
    TRACE_OUTPUT::output_trace("lost");
    EXPECT_EQ(text, read(debug / "trace.txt"));
}

TEST_F(FrameworksTest, TheLoopEndsWhenMonitorSaysSoAndDestroysTheApplication) {
    TEST_APPLICATION::updates = 0;
    TEST_APPLICATION::destroyed = 0;
    window_aborted = false;
    EXPECT_EQ(0, run_application(0, nullptr, TEST_APPLICATION::create));
    EXPECT_EQ(3, TEST_APPLICATION::updates);
    EXPECT_EQ(1, TEST_APPLICATION::destroyed);
    EXPECT_EQ(nullptr, ORLN_APPLICATION::get_instance());
    EXPECT_TRUE(window_aborted);
    window_aborted = false;
}

TEST(GraphicsSizes, PackWidthLowAndHeightHigh) {
    EXPECT_EQ(0x01F40320u, make_graphics_sizes(800, 500));
    EXPECT_EQ(800, graphics_width(0x01F40320u));
    EXPECT_EQ(500, graphics_height(0x01F40320u));
}

}  // namespace
