// SYSTEM_INFORMATION and LINUX_INFORMATION: the tables, and the reading of the kernel's texts.
#include "platform/system_information.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "platform/linux_information.h"

namespace {

// The base with a platform and a type of choice.
class FIXED_INFORMATION : public SYSTEM_INFORMATION {
public:
    FIXED_INFORMATION(unsigned char platform_byte, std::int32_t os_type)
        : SYSTEM_INFORMATION(platform_byte), type(os_type) {}
    std::int32_t get_os_type() const override {
        return type < 0 ? SYSTEM_INFORMATION::get_os_type() : type;
    }
    void refresh_system_memory() override {}

private:
    std::int32_t type;
};

std::string platform_name(unsigned char platform) {
    char text[SYSTEM_INFORMATION::text_size];
    FIXED_INFORMATION(platform, 0).get_platform_name(text);
    return text;
}

template <class T>
std::string text_of(const T& record) {
    char text[SYSTEM_INFORMATION::text_size];
    record.get_string(text);
    return text;
}

TEST(SYSTEM_INFORMATION_TEST, platforms_and_their_supported_systems) {
    EXPECT_EQ(platform_name(1), "Windows");
    EXPECT_EQ(platform_name(2), "PlayStation3");
    EXPECT_EQ(platform_name(3), "Mac");
    EXPECT_EQ(platform_name(4), "Unknown");
    EXPECT_EQ(platform_name(5), "Xbox360");
    EXPECT_EQ(platform_name(0), "Unknown");

    const std::pair<int, std::pair<int, int>> supported[] = {
        {1, {7, 12}}, {2, {13, 14}}, {3, {1, 5}}, {4, {20, 23}}, {5, {15, 16}}, {6, {1, 0}}};
    for (const auto& [platform, types] : supported) {
        for (int type = 0; type < 30; type++) {
            EXPECT_EQ(
                FIXED_INFORMATION(static_cast<unsigned char>(platform), type).is_supported_os(),
                type >= types.first && type <= types.second)
                << platform << " " << type;
        }
    }
}

TEST(SYSTEM_INFORMATION_TEST, the_base_knows_nothing) {
    FIXED_INFORMATION base(4, -1);
    EXPECT_EQ(base.get_os_type(), 18);
    EXPECT_EQ(base.get_os_version(), 0);
    EXPECT_FALSE(base.is_supported_os());
    EXPECT_TRUE(base.check_os_feature(1));
    EXPECT_FALSE(base.check_os_feature(0));
    EXPECT_FALSE(base.check_os_feature(2));
    EXPECT_EQ(base.get_resource_limit(0), 0);
    EXPECT_EQ(base.set_resource_limit(0, 1), 0);
    char text[SYSTEM_INFORMATION::text_size] = "kept";
    base.get_system_name(text);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(base.processor.count, 1);
    EXPECT_EQ(base.processor.speed_mhz, 500);
}

TEST(SYSTEM_INFORMATION_TEST, texts) {
    VERSION version;
    version.major = 10;
    version.minor = 4;
    version.patch = 11;
    EXPECT_EQ(text_of(version), "Version 10.4.11");
    std::strcpy(version.build, "8S165");
    EXPECT_EQ(text_of(version), "Version 10.4.11.8S165");
    MEMORY memory;
    memory.total_physical = 2 * 1024 * 1024;
    memory.free_physical = 1023 * 1024 + 1023;
    memory.total_virtual = 2147483647;
    EXPECT_EQ(text_of(memory),
              "Physical Memory: 2048 MB total (1023 MB free).\n"
              "Virtual Memory: 2097151 MB Total (0 MB free).");
    PROCESSOR processor;
    processor.kind = 2;
    processor.count = 8;
    processor.speed_mhz = 2400;
    EXPECT_EQ(text_of(processor), "Processor(s): 8 Intel running at 2400 MHz.");
    const char* const names[] = {"Very Slow", "Slow", "Average", "Fast", "Very Fast", "Unknown"};
    for (unsigned char i = 0; i < 6; i++) {
        EXPECT_EQ(text_of(SPEED{i}), std::string("System Speed: ") + names[i]);
    }
    char details[SYSTEM_INFORMATION::details_size];
    FIXED_INFORMATION base(3, 0);
    base.get_system_details(details);
    EXPECT_STREQ(
        details,
        "\nProcessor(s): 1 Unknown running at 500 MHz.\n"
        "Physical Memory: 0 MB total (0 MB free).\nVirtual Memory: 0 MB Total (0 MB free).\n"
        "System Speed: Very Slow\n");
}

TEST(LINUX_INFORMATION_TEST, kernel_releases) {
    struct RELEASE {
        const char* text;
        int major, minor, patch;
        const char* build;
    };
    for (const RELEASE& release : std::initializer_list<RELEASE>{
             {"6.1.0-13-amd64", 6, 1, 0, "13-amd64"},
             {"5.15.90.1-microsoft-standard", 5, 15, 90, "1-microsoft-standard"},
             {"4.19", 4, 19, 0, ""},
             {"6.12-rc3", 6, 12, 0, "rc3"},
             {"3.10.0+", 3, 10, 0, "+"},
             {"99999999999.1", 2147483647, 1, 0, ""},
             {"odd", 0, 0, 0, "odd"},
             {"-1.2", 0, 0, 0, "-1.2"},
             {"", 0, 0, 0, ""}}) {
        SCOPED_TRACE(release.text);
        VERSION version;
        LINUX_INFORMATION::parse_kernel_release(release.text, version);
        EXPECT_EQ(version.major, release.major);
        EXPECT_EQ(version.minor, release.minor);
        EXPECT_EQ(version.patch, release.patch);
        EXPECT_STREQ(version.build, release.build);
    }
    VERSION version;
    LINUX_INFORMATION::parse_kernel_release("6.1.0-" + std::string(200, 'x'), version);
    EXPECT_EQ(std::strlen(version.build), sizeof version.build - 1);
}

TEST(LINUX_INFORMATION_TEST, types_and_names_follow_the_kernel) {
    LINUX_INFORMATION information;
    char name[SYSTEM_INFORMATION::text_size];
    const std::pair<int, int> types[] = {{0, 0},  {3, 0},  {4, 20},  {5, 21},
                                         {6, 22}, {7, 23}, {100, 23}};
    for (const auto& [major, type] : types) {
        information.version.major = major;
        EXPECT_EQ(information.get_os_type(), type);
        EXPECT_EQ(information.is_supported_os(), major >= 4);
        information.get_system_name(name);
        EXPECT_EQ(std::string(name) == "Linux (Unsupported)", major < 4) << name;
    }
    information.version.major = 6;
    information.version.minor = 1;
    information.version.patch = 300;
    EXPECT_EQ(information.get_os_version(), 0x601FF);
    information.get_platform_name(name);
    EXPECT_STREQ(name, "Linux x11");
}

TEST(LINUX_INFORMATION_TEST, memory_facts) {
    MEMORY memory;
    EXPECT_TRUE(LINUX_INFORMATION::parse_memory(
        "MemTotal:        8000000 kB\nMemFree:          100000 kB\nMemAvailable:    5000000 kB\n"
        "Buffers:  1 kB\nCached:  2 kB\nSwapTotal:       1000000 kB\nSwapFree:  900000 kB\n",
        memory));
    EXPECT_EQ(memory.total_physical, 8000000);
    EXPECT_EQ(memory.free_physical, 5000000);
    EXPECT_EQ(memory.total_virtual, 9000000);
    EXPECT_EQ(memory.free_virtual, 5900000);
    // Kernels before 3.14 don't tell what is available.
    EXPECT_TRUE(LINUX_INFORMATION::parse_memory(
        "MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 20 kB\nCached: 3 kB\n", memory));
    EXPECT_EQ(memory.free_physical, 123);
    EXPECT_EQ(memory.total_virtual, 1000);
    // Four terabytes don't fit.
    EXPECT_TRUE(
        LINUX_INFORMATION::parse_memory("MemTotal: 4294967296 kB\nMemFree: 4294967296 kB", memory));
    EXPECT_EQ(memory.total_physical, 2147483647);
    EXPECT_EQ(memory.free_virtual, 2147483647);
    const MEMORY before = memory;
    for (const char* text : {"", "MemFree: 5 kB\n", "MemTotal: many\n", "MemTotal: -5 kB\n",
                             "MemTotal: 99999999999999999999999 kB\n"}) {
        EXPECT_FALSE(LINUX_INFORMATION::parse_memory(text, memory)) << text;
        EXPECT_EQ(memory.total_physical, before.total_physical);
    }
}

TEST(LINUX_INFORMATION_TEST, processor_facts) {
    PROCESSOR processor;
    LINUX_INFORMATION::parse_processor("", processor);
    EXPECT_EQ(processor.count, 1);
    EXPECT_EQ(processor.speed_mhz, 500);
    LINUX_INFORMATION::parse_processor(
        "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu MHz\t\t: 2600.5\n\nprocessor\t: 1\n",
        processor);
    EXPECT_EQ(processor.kind, 2);
    EXPECT_EQ(processor.count, 2);
    EXPECT_EQ(processor.speed_mhz, 2600);
    std::string many;
    for (int i = 0; i < 300; i++) {
        many += "processor: 1\nvendor_id: AuthenticAMD\n";
    }
    LINUX_INFORMATION::parse_processor(many, processor);
    EXPECT_EQ(processor.kind, 1);
    EXPECT_EQ(processor.count, 255);
}

TEST(LINUX_INFORMATION_TEST, system_names) {
    const auto name_of = LINUX_INFORMATION::parse_system_name;
    EXPECT_EQ(name_of("NAME=Plain\nPRETTY_NAME=\"Some \\\"OS\\\" 12\"\n"), "Some \"OS\" 12");
    EXPECT_EQ(name_of("NAME='Single \\n'\nVERSION=1"), "Single \\n");
    EXPECT_EQ(name_of("#NAME=x\nPRETTY_NAME=\"\"\n"), "");
    EXPECT_EQ(name_of("PRETTY_NAME=\""), "\"");
}

TEST(LINUX_INFORMATION_TEST, the_speed_class_depends_on_processor_and_memory) {
    const auto class_of = [](std::int32_t mhz, unsigned char count, std::int32_t megabytes) {
        PROCESSOR processor;
        processor.speed_mhz = mhz;
        processor.count = count;
        MEMORY memory;
        memory.total_physical = megabytes * 1024;
        return LINUX_INFORMATION::calc_speed_class(processor, memory);
    };
    EXPECT_EQ(class_of(500, 1, 256), 0);
    EXPECT_EQ(class_of(500, 1, 257), 1);
    EXPECT_EQ(class_of(1000, 1, 512), 1);
    EXPECT_EQ(class_of(1000, 1, 513), 2);
    EXPECT_EQ(class_of(1500, 1, 512), 2);
    EXPECT_EQ(class_of(1500, 1, 513), 3);
    EXPECT_EQ(class_of(1500, 2, 1024), 3);
    EXPECT_EQ(class_of(1500, 2, 1025), 4);
}

TEST(LINUX_INFORMATION_TEST, this_machine) {
    SYSTEM_INFORMATION& information = get_system_information();
    EXPECT_EQ(&information, &get_system_information());
    EXPECT_EQ(information.platform, 4);
    EXPECT_TRUE(information.is_supported_os());
    char name[SYSTEM_INFORMATION::text_size] = "";
    information.get_system_name(name);
    EXPECT_STRNE(name, "");
    information.refresh_system_memory();
    const MEMORY& memory = information.memory;
    const long pages = ::sysconf(_SC_PHYS_PAGES), page = ::sysconf(_SC_PAGESIZE);
    EXPECT_NEAR(memory.total_physical,
                static_cast<double>(pages) * static_cast<double>(page / 1024),
                0.05 * memory.total_physical);
    EXPECT_GT(memory.free_physical, 0);
    EXPECT_LE(memory.free_physical, memory.total_physical);
    EXPECT_GE(memory.total_virtual, memory.total_physical);

    rlimit limit;
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const std::int32_t files =
        information.get_resource_limit(SYSTEM_INFORMATION::RESOURCE_OPEN_FILES);
    EXPECT_EQ(files,
              limit.rlim_cur == RLIM_INFINITY ? -1 : static_cast<std::int32_t>(limit.rlim_cur));
    EXPECT_EQ(information.set_resource_limit(SYSTEM_INFORMATION::RESOURCE_OPEN_FILES, 64), 1);
    EXPECT_EQ(information.get_resource_limit(SYSTEM_INFORMATION::RESOURCE_OPEN_FILES), 64);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(information.set_resource_limit(3, 1), 0);
    EXPECT_EQ(information.get_resource_limit(3), 0);

    MACHINE machine;
    SYSTEM_INFORMATION::get_machine_host_information(machine);
    char host[100] = "";
    ASSERT_EQ(::gethostname(host, sizeof host), 0);
    EXPECT_STREQ(machine.host_name, host);
}

}  // namespace
