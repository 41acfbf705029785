// What a skin says about itself, and what is assumed when it doesn't.
#include "modules/gui/skin_info.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "modules/frameworks/trace_output.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace {

class SkinInfo : public testing::Test, private TRACE_SINK {
protected:
    SkinInfo() : config("other.cfg", true, FOLDER_BASE, false) {
        std::string pattern = testing::TempDir() + "skin_XXXXXX";
        EXPECT_NE(nullptr, mkdtemp(pattern.data()));
        folder = std::filesystem::canonical(pattern);
        EXPECT_TRUE(disk.move_down(folder.c_str(), false, true));
        TRACE_OUTPUT::set_sink(this);
    }
    ~SkinInfo() override {
        TRACE_OUTPUT::set_sink(nullptr);
        std::filesystem::remove_all(folder);
    }
    void output(TRACE_LEVEL, const char* format, std::va_list arguments) override {
        char line[4096];
        std::vsnprintf(line, sizeof line, format, arguments);
        trace.append(line).append("\n");
    }

    void write(const std::string& content) { std::ofstream(folder / "skin.cfg") << content; }
    bool read() {
        return get_skin_info(config, disk, folder_name, name, author, description, url,
                             display_version, height, width, version);
    }

    std::string trace;
    std::filesystem::path folder;
    DISK_MANAGER disk;
    CONFIG_FILE config;
    char folder_name[SKIN_INFO_TEXT_SIZE] = "x", name[SKIN_INFO_TEXT_SIZE] = "x";
    char author[SKIN_INFO_TEXT_SIZE] = "x", description[SKIN_INFO_TEXT_SIZE] = "x";
    char url[SKIN_INFO_TEXT_SIZE] = "x", display_version[SKIN_INFO_TEXT_SIZE] = "x";
    std::int16_t height = 1, width = 0;
    std::uint16_t version = 9;
};

TEST_F(SkinInfo, ReadsWhatIsThereAndLeavesTheFileToTheCaller) {
    write(
        "name\n\tSaffrane\nauthor\n\tA\nurl\n\texample.org\ndisplay_version\n\t2.1\n"
        "default_height\n\t500\ndefault_width\n\t800\ninternal_version\n\t12\n"
        "base_skin_folder\n\tbase\n");
    ASSERT_TRUE(read());
    EXPECT_EQ(folder.filename(), folder_name);
    EXPECT_STREQ("Saffrane", name);
    EXPECT_STREQ("A", author);
    EXPECT_STREQ("", description);
    EXPECT_STREQ("example.org", url);
    EXPECT_STREQ("2.1", display_version);
    EXPECT_EQ(500, height);
    EXPECT_EQ(0, width);  // not asked for
    EXPECT_EQ(12, version);
    char base[CONFIG_FILE::value_size];
    EXPECT_TRUE(config.read(disk, "base_skin_folder", base));
    EXPECT_STREQ("base", base);
    EXPECT_TRUE(get_skin_info(config, disk, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              height, width, version));
}

TEST_F(SkinInfo, AMissingVersionIsWrittenBackAndCommentsStay) {
    write("# mine\nname\n\tS\n");
    ASSERT_TRUE(read());
    EXPECT_EQ(0, version);
    EXPECT_STREQ("1.0", display_version);
    EXPECT_EQ(1, height);
    std::ifstream in(folder / "skin.cfg");
    EXPECT_EQ("# mine\nname\n\tS\ninternal_version\n\t0\n",
              std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()));
}

TEST_F(SkinInfo, RefusedNumbersAreTracedWithTheFile) {
    const auto path = (folder / "skin.cfg").string();
    for (const char* bad : {"65536", "-1", "new", "99999999999999999999"}) {
        const std::string text = std::string("internal_version\n\t").append(bad).append("\n");
        write(text);
        trace.clear();
        ASSERT_TRUE(read());
        EXPECT_EQ(0, version) << bad;
        EXPECT_EQ(path + ": the value \"" + bad + "\" of \"internal_version\" is refused\n", trace);
        std::ifstream in(folder / "skin.cfg");
        EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(in), {}));  // it is the author's
    }
    write("internal_version\n\t65535\ndefault_height\n\t32768\ndefault_width\n\t-3\n");
    trace.clear();
    height = width = 11;
    ASSERT_TRUE(read());
    EXPECT_EQ(65535, version);
    EXPECT_EQ(11, height);
    EXPECT_EQ(11, width);
    EXPECT_NE(std::string::npos, trace.find("default_height"));
    EXPECT_NE(std::string::npos, trace.find("default_width"));
    write("internal_version\n\t1\ndefault_height\n\t32767\ndefault_width\n\t0\n");
    trace.clear();
    ASSERT_TRUE(read());
    EXPECT_EQ(32767, height);
    EXPECT_EQ(11, width);
    EXPECT_EQ("", trace);
}

TEST_F(SkinInfo, AFileThatCantBeReadIsNamed) {
    std::filesystem::create_directories(folder / "skin.cfg");
    EXPECT_FALSE(read());
    EXPECT_STREQ("", name);
    EXPECT_EQ((folder / "skin.cfg").string() + ": the skin's description can't be read\n", trace);
}

TEST_F(SkinInfo, WithoutFileAllIsCleared) {
    EXPECT_FALSE(read());
    for (const char* text : {folder_name, name, author, description, url, display_version}) {
        EXPECT_STREQ("", text);
    }
    EXPECT_EQ(0, height + width + version);
    EXPECT_EQ("", trace);
    EXPECT_FALSE(std::filesystem::exists(folder / "skin.cfg"));
}

}  // namespace
