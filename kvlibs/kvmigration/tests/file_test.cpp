// Whole files, paths and binary streams.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "kvmigration/files.h"
#include "kvmigration/input_stream.h"
#include "kvmigration/output_stream.h"

namespace {

namespace fs = std::filesystem;
using KVMIGRATION::INPUT_STREAM;
using KVMIGRATION::OUTPUT_STREAM;
using KVMIGRATION::STRING;

class Files : public testing::Test {
protected:
    Files() {
        std::string name = (fs::temp_directory_path() / "kv_migration_XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~Files() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    STRING path(const char* name) const { return STRING((folder / name).string()); }
    std::string read(const char* name) const {
        std::ifstream in(folder / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    void write(const char* name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }

    fs::path folder;
};

TEST_F(Files, LoadAndSaveWhole) {
    const STRING bytes("a\0b\r\n", 5);
    EXPECT_TRUE(bytes.write(path("a.txt")));
    EXPECT_EQ(bytes, read("a.txt"));
    STRING loaded;
    EXPECT_TRUE(loaded.load(path("a.txt").c_str()));
    EXPECT_EQ(bytes + STRING("\0", 1), loaded) << "a zero behind the bytes";
    EXPECT_LT(loaded.capacity(), 100u) << "a small file takes little memory";
    EXPECT_TRUE(STRING().write(path("empty")));
    EXPECT_TRUE(loaded.load(path("empty").c_str()));
    EXPECT_EQ(1u, loaded.size());
    EXPECT_FALSE(loaded.load(path("missing").c_str()));
    EXPECT_FALSE(loaded.load(folder.c_str())) << "a folder";
    EXPECT_EQ(1u, loaded.size()) << "as it was";
    // Longer than a step of reading.
    const STRING large(std::string(3000001, 'x'));
    EXPECT_TRUE(large.write(path("large")));
    EXPECT_TRUE(loaded.load(path("large").c_str()));
    EXPECT_EQ(large.size() + 1, loaded.size());

    // Too large for 32-bit indexes with the zero behind.
    write("huge", "");
    fs::resize_file(folder / "huge", std::numeric_limits<std::int32_t>::max());
    EXPECT_FALSE(loaded.load(path("huge").c_str()));
    EXPECT_EQ(large.size() + 1, loaded.size());

    std::uint32_t size = 7;
    const auto block = KVMIGRATION::load_binary(path("a.txt").c_str(), &size);
    ASSERT_TRUE(block);
    EXPECT_EQ(5u, size);
    EXPECT_EQ(0, std::memcmp(block.get(), bytes.data(), 5));
    EXPECT_TRUE(KVMIGRATION::load_binary(path("a.txt").c_str(), nullptr));
    EXPECT_TRUE(KVMIGRATION::load_binary(path("empty").c_str(), &size));
    EXPECT_FALSE(KVMIGRATION::load_binary(path("missing").c_str(), &size));
    EXPECT_EQ(0u, size);
}

TEST_F(Files, SavingReplacesOnlyAFileAndOnlyWhole) {
    write("a.bin", "old");
    fs::permissions(folder / "a.bin", fs::perms(0640));
    EXPECT_TRUE(KVMIGRATION::save_binary(path("a.bin").c_str(), "newer", 5));
    EXPECT_EQ("newer", read("a.bin"));
    EXPECT_EQ(fs::perms(0640), fs::status(folder / "a.bin").permissions());
    fs::create_symlink("a.bin", folder / "link");
    EXPECT_TRUE(KVMIGRATION::save_binary(path("link").c_str(), "x", 1));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ("x", read("a.bin"));
    EXPECT_FALSE(KVMIGRATION::save_binary(folder.c_str(), "x", 1));
    EXPECT_FALSE(KVMIGRATION::save_binary(path("no/such/a").c_str(), "x", 1));
    EXPECT_FALSE(KVMIGRATION::save_binary("", "x", 1));
    EXPECT_EQ(2, std::distance(fs::directory_iterator(folder), {})) << "nothing left beside";

    EXPECT_TRUE(KVMIGRATION::file_exists(path("a.bin").c_str()));
    EXPECT_TRUE(KVMIGRATION::file_writeable(path("a.bin").c_str()));
    EXPECT_EQ("x", read("a.bin"));
    ASSERT_EQ(0, ::mkfifo(path("pipe").c_str(), 0600));
    for (const STRING& other : {path("missing"), path("pipe"), STRING(folder.string())}) {
        EXPECT_FALSE(KVMIGRATION::file_exists(other.c_str())) << other;
        EXPECT_FALSE(KVMIGRATION::file_writeable(other.c_str())) << other;
    }
}

TEST_F(Files, PathsSplit) {
    struct {
        const char* path;
        const char* drive;
        const char* dir;
        const char* name;
        const char* ext;
    } const cases[] = {
        {"c:\\a\\b.c.txt", "c:", "\\a\\", "b.c", ".txt"},
        {"/a.b/c", "", "/a.b/", "c", ""},
        {"/a/", "", "/a/", "", ""},
        {"name", "", "", "name", ""},
        {".hidden", "", "", "", ".hidden"},
        {"a/b.x:y.z", "", "a/", "b", ".x:y.z"},
        {"a/b:y.z", "", "a/", "b", ""},
        {"c:", "c:", "", "", ""},
        {"", "", "", "", ""},
    };
    for (const auto& c : cases) {
        char drive[8], dir[64], name[64], ext[64];
        KVMIGRATION::_splitpath_s(c.path, drive, sizeof drive, dir, sizeof dir, name, sizeof name,
                                  ext, sizeof ext);
        EXPECT_STREQ(c.drive, drive) << c.path;
        EXPECT_STREQ(c.dir, dir) << c.path;
        EXPECT_STREQ(c.name, name) << c.path;
        EXPECT_STREQ(c.ext, ext) << c.path;
        EXPECT_EQ(STRING(c.drive) + c.dir, KVMIGRATION::extract(c.path, 1)) << c.path;
        EXPECT_EQ(STRING(c.name) + c.ext, KVMIGRATION::remove_path(c.path)) << c.path;
        EXPECT_EQ(c.ext, KVMIGRATION::extract(c.path, 4)) << c.path;
    }
    // Cut at the outputs' sizes, and nothing written where nothing is wanted.
    char name[3] = "..";
    KVMIGRATION::_splitpath_s("/folder/longname.ext", nullptr, 0, nullptr, 0, name, sizeof name,
                              nullptr, 0);
    EXPECT_STREQ("lo", name);
    const STRING long_name(std::string(1000, 'n'));
    EXPECT_EQ(long_name, KVMIGRATION::extract("/a/" + long_name + ".x", 2));
}

TEST_F(Files, StreamsKeepEveryWidth) {
    {
        OUTPUT_STREAM out(path("a.bin"));
        ASSERT_TRUE(out.is_open());
        out.write(true);
        out.write('c');
        out.write(u'\u20AC');
        out.write(static_cast<unsigned char>(200));
        out.write(std::int16_t{-2});
        out.write(std::uint16_t{65535});
        out.write(std::int32_t{-3});
        out.write(0x89ABCDEFu);
        out.write(1.5f);
        out.write(-2.25);
        out.write(std::int64_t{-4});
        out.write(std::uint64_t{1} << 63);
        out.write_string("name");
        EXPECT_TRUE(out.close());
        EXPECT_FALSE(out.write('x'));
    }
    EXPECT_EQ(1u + 1 + 2 + 1 + 2 + 2 + 4 + 4 + 4 + 8 + 8 + 8 + 8, read("a.bin").size());
    EXPECT_EQ(
        "\x01"
        "c\xAC\x20\xC8\xFE\xFF\xFF\xFF\xFD\xFF\xFF\xFF\xEF\xCD\xAB\x89",
        read("a.bin").substr(0, 17));
    INPUT_STREAM in(path("a.bin"));
    EXPECT_EQ(53, in.get_length());
    bool flag = false;
    char c = 0;
    char16_t wide = 0;
    unsigned char byte = 0;
    std::int16_t s16 = 0;
    std::uint16_t u16 = 0;
    std::int32_t s32 = 0;
    std::uint32_t u32 = 0;
    float real = 0;
    double large_real = 0;
    std::int64_t s64 = 0;
    std::uint64_t u64 = 0;
    STRING text;
    EXPECT_TRUE(in.read(flag) && in.read(c) && in.read(wide) && in.read(byte) && in.read(s16) &&
                in.read(u16) && in.read(s32));
    EXPECT_TRUE(in.peek(u32));
    EXPECT_EQ(0x89ABCDEFu, u32);
    u32 = 0;
    EXPECT_TRUE(in.read(u32) && in.read(real) && in.read(large_real) && in.read(s64) &&
                in.read(u64) && in.read_string(text));
    EXPECT_TRUE(flag);
    EXPECT_EQ('c', c);
    EXPECT_EQ(u'\u20AC', wide);
    EXPECT_EQ(200, byte);
    EXPECT_EQ(-2, s16);
    EXPECT_EQ(65535, u16);
    EXPECT_EQ(-3, s32);
    EXPECT_EQ(0x89ABCDEFu, u32);
    EXPECT_EQ(1.5f, real);
    EXPECT_EQ(-2.25, large_real);
    EXPECT_EQ(-4, s64);
    EXPECT_EQ(std::uint64_t{1} << 63, u64);
    EXPECT_EQ("name", text);
    EXPECT_EQ(0, in.get_remaining());
    EXPECT_FALSE(in.read(c));
    EXPECT_EQ('c', c);
}

TEST_F(Files, StreamsOnAMissingFileDoNothing) {
    INPUT_STREAM in(path("missing"));
    std::uint32_t value = 5;
    STRING text("kept");
    bool flag = true;
    EXPECT_FALSE(in.is_open() || in.read(value) || in.peek(value) || in.read(flag));
    EXPECT_EQ(5u, value);
    EXPECT_TRUE(flag);
    EXPECT_FALSE(in.read_string(text));
    EXPECT_EQ(0, in.get_remaining());
    OUTPUT_STREAM out(path("no/such/file"));
    EXPECT_FALSE(out.is_open() || out.write(value) || out.write_string("x") || out.close());
    EXPECT_FALSE(INPUT_STREAM(STRING(folder.string())).is_open()) << "a folder";
    EXPECT_FALSE(OUTPUT_STREAM("/dev/null").is_open()) << "a device";
}

TEST_F(Files, ShortReadsAndDamagedStrings) {
    write("short", "ab");
    INPUT_STREAM in(path("short"));
    char buffer[5] = "....";
    std::uint32_t value = 0;
    EXPECT_FALSE(in.peek(value));
    EXPECT_EQ(0, in.get_position());
    EXPECT_FALSE(in.read(buffer, -1));
    EXPECT_FALSE(in.read(buffer, 4));
    EXPECT_STREQ("ab..", buffer);

    const auto read_string = [this](std::int32_t length, const std::string& rest, STRING& text) {
        std::string bytes(4, '\0');
        std::memcpy(bytes.data(), &length, 4);
        write("string", bytes + rest);
        INPUT_STREAM stream(path("string"));
        const bool complete = stream.read_string(text);
        char c = 0;
        EXPECT_TRUE(complete || !stream.read(c)) << "nothing is read behind damage";
        return complete;
    };
    STRING text("old");
    EXPECT_TRUE(read_string(0, "x", text));
    EXPECT_EQ("", text);
    EXPECT_TRUE(read_string(5, std::string("ab\0cd", 5), text));
    EXPECT_EQ("ab", text);
    EXPECT_TRUE(read_string(1023, std::string(1023, 'n'), text));
    EXPECT_EQ(1023u, text.size());
    for (const std::int32_t length : {-1, 4, 1024, std::numeric_limits<std::int32_t>::max(),
                                      std::numeric_limits<std::int32_t>::min()}) {
        text = "old";
        EXPECT_FALSE(read_string(length, "abc", text)) << length;
        EXPECT_EQ("", text);
    }
    EXPECT_FALSE(read_string(1024, std::string(2000, 'n'), text));

    OUTPUT_STREAM out(path("long"));
    EXPECT_TRUE(out.write_string(STRING(std::string(5000, 'n'))));
    EXPECT_TRUE(out.close());
    INPUT_STREAM back(path("long"));
    EXPECT_TRUE(back.read_string(text)) << "cut so that it can be read";
    EXPECT_EQ(1023u, text.size());
}

}  // namespace
