// CONFIG_FILE and the TEXT_FILE under it: the forms that are read, what a write keeps, and that a
// write never loses the file.
#include "platform/config_file.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "platform/text_file.h"
#include "temp_folder.h"

namespace {

constexpr const char* NAME = "test.cfg";

using RECORDS = std::vector<std::pair<std::string, std::string>>;

void collect(const char* key, const char* value, void* user) {
    static_cast<RECORDS*>(user)->emplace_back(key, value);
}

std::string to_utf16(const std::string& text, bool big_endian) {
    std::string wide = big_endian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        wide += big_endian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return wide;
}

class CONFIG_FILE_TEST : public testing::Test {
protected:
    TEMP_FOLDER folder;
    DISK_MANAGER disk = folder.cursor();

    RECORDS records(bool cached = false) {
        CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);
        RECORDS found;
        EXPECT_TRUE(config.read_all(disk, collect, &found));
        return found;
    }
    std::string value_of(const std::string& key, bool cached = false) {
        CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);
        char value[CONFIG_FILE::value_size];
        return config.read(disk, key.c_str(), value) ? value : "(none)";
    }
    void expect_nothing_beside() { EXPECT_FALSE(folder.has("test.cfg.tmp")); }
};

TEST_F(CONFIG_FILE_TEST, reads_the_forms_of_keys_and_values) {
    folder.put(NAME,
               "# a comment\n"
               "\n"
               "plain\n\tvalue\n"
               "  two words \t\n \t inner  blanks kept \t \n"
               "commented value\n# not a comment\n"
               " # a key\nx\n"
               "empty\n\t\n"
               "bare\n\n"
               "   \nvalue of the empty key\n"
               "no blank\nvalue\n"
               "dangling");
    const RECORDS expected = {{"plain", "value"},
                              {"two words", "inner  blanks kept"},
                              {"commented value", "# not a comment"},
                              {"# a key", "x"},
                              {"empty", ""},
                              {"bare", ""},
                              {"", "value of the empty key"},
                              {"no blank", "value"}};
    EXPECT_EQ(records(), expected);
    EXPECT_EQ(value_of("dangling"), "(none)");
    EXPECT_EQ(value_of("dangling", true), "(none)");
    EXPECT_EQ(value_of("PLAIN"), "(none)");

    RECORDS sorted = expected;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(records(true), sorted);
}

TEST_F(CONFIG_FILE_TEST, reads_every_line_end_and_utf16_alike) {
    const std::string text = "# first\n\na\n\t1\nb\n\t\nc\n\tsome text\n";
    const RECORDS expected = {{"a", "1"}, {"b", ""}, {"c", "some text"}};
    std::map<std::string, std::string> forms = {{"LF", text}, {"no last end", text}};
    forms["no last end"].pop_back();
    for (const auto& [label, end] :
         std::map<std::string, std::string>{{"CR", "\r"}, {"CR LF", "\r\n"}, {"byte 3", "\3"}}) {
        for (const char c : text) {
            forms[label] += c == '\n' ? end : std::string(1, c);
        }
    }
    for (const char* label : {"CR", "CR LF", "LF"}) {
        forms[label + std::string(" little-endian")] = to_utf16(forms[label], false);
        forms[label + std::string(" big-endian")] = to_utf16(forms[label], true);
    }
    for (const auto& [label, form] : forms) {
        SCOPED_TRACE(label);
        folder.put(NAME, form);
        EXPECT_EQ(records(false), expected);
        EXPECT_EQ(records(true), expected);
    }
}

TEST_F(CONFIG_FILE_TEST, cuts_what_is_too_long) {
    const std::string key(100, 'k');
    folder.put(NAME, key + "\n\t" + std::string(255, 'v') + "\nnext\n\t1\n");
    EXPECT_EQ(value_of(key), "(none)");
    EXPECT_EQ(value_of(key.substr(0, 79)), std::string(255, 'v'));
    EXPECT_EQ(value_of("next"), "1");
    // The rest of a line that is too long is a line of its own, here a key.
    folder.put(NAME, "a\n\t" + std::string(300, 'v') + "\nnext\n");
    EXPECT_EQ(value_of("a"), std::string(255, 'v'));
    EXPECT_EQ(value_of(std::string(44, 'v')), "next");

    for (const bool cached : {false, true}) {
        SCOPED_TRACE(cached);
        folder.put(NAME, "");
        CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);
        // Twice, because the cut key must be found again.
        for (int i = 0; i < 2; i++) {
            EXPECT_TRUE(config.write(disk, key.c_str(), std::string(300, 'v').c_str()));
        }
        EXPECT_TRUE(config.write(disk, "next", "1"));
        EXPECT_EQ(records().size(), 2u);
        EXPECT_EQ(value_of(key.substr(0, 79)), std::string(255, 'v'));
        EXPECT_EQ(value_of("next"), "1");
    }
}

TEST_F(CONFIG_FILE_TEST, reads_and_writes_numbers) {
    for (const bool cached : {false, true}) {
        CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);
        EXPECT_TRUE(config.write(disk, "decimal", 1234567u, false));
        EXPECT_TRUE(config.write(disk, "negative", 0xFFFFFFFFu, false));
        EXPECT_TRUE(config.write(disk, "hex", 0xFF00ABCDu, true));
        EXPECT_TRUE(config.write(disk, "empty", static_cast<const char*>(nullptr)));
        EXPECT_EQ(value_of("negative"), "-1");
        EXPECT_EQ(value_of("hex"), "FF00ABCD");
        std::uint32_t value = 7;
        EXPECT_TRUE(config.read(disk, "decimal", value, false));
        EXPECT_EQ(value, 1234567u);
        EXPECT_TRUE(config.read(disk, "negative", value));
        EXPECT_EQ(value, 0xFFFFFFFFu);
        EXPECT_TRUE(config.read(disk, "hex", value, true));
        EXPECT_EQ(value, 0xFF00ABCDu);
        value = 7;
        EXPECT_TRUE(config.read(disk, "empty", value));
        EXPECT_EQ(value, 7u);
        EXPECT_FALSE(config.read(disk, "absent", value));
        EXPECT_EQ(value, 7u);
        char text[CONFIG_FILE::value_size] = "old";
        EXPECT_FALSE(config.read(disk, "absent", text));
        EXPECT_STREQ(text, "");
        EXPECT_FALSE(config.read(disk, "", text));
        EXPECT_FALSE(config.write(disk, nullptr, "x"));
        EXPECT_FALSE(config.write(disk, "", "x"));
        EXPECT_FALSE(config.read_all(disk, nullptr, nullptr));
    }
    folder.put(NAME, "big\n\t99999999999\nhuge\n\tFFFFFFFFFFFFFFFFFFFF\n");
    CONFIG_FILE config(NAME, false, FOLDER_BASE, false);
    std::uint32_t value = 0;
    EXPECT_TRUE(config.read(disk, "big", value));
    EXPECT_EQ(value, 0x7FFFFFFFu);
    EXPECT_TRUE(config.read(disk, "huge", value, true));
    EXPECT_EQ(value, 0xFFFFFFFFu);
}

TEST_F(CONFIG_FILE_TEST, an_uncached_write_keeps_the_rest_of_the_file) {
    const std::string head = "# top\nfirst\n\t", rest = "\n\n# between\nsecond\n\t2\n";
    folder.put(NAME, head + "1" + rest);
    CONFIG_FILE config(NAME, false, FOLDER_BASE, false);
    EXPECT_TRUE(config.write(disk, "first", "new"));
    EXPECT_EQ(folder.get(NAME), head + "new" + rest);
    EXPECT_TRUE(config.write(disk, "third", "3"));
    EXPECT_EQ(folder.get(NAME), head + "new" + rest + "third\n\t3\n");
    expect_nothing_beside();

    folder.put(NAME, "a\n\t1\nb\n\t2\na\n\t3\n");
    EXPECT_TRUE(config.write(disk, "a", "x"));
    EXPECT_EQ(folder.get(NAME), "a\n\tx\nb\n\t2\na\n\tx\n");

    // Keys that would read as something else keep their meaning.
    folder.put(NAME, "  \nof empty\n #hash\n1\n");
    EXPECT_TRUE(config.write(disk, "b", "2"));
    EXPECT_EQ(records(), (RECORDS{{"", "of empty"}, {"#hash", "1"}, {"b", "2"}}));

    folder.put(NAME, "# c\r\na\r\n\t1\r\n\r\n# d\r\nb\r\n\t2\r\n");
    EXPECT_TRUE(config.write(disk, "b", "3"));
    EXPECT_EQ(folder.get(NAME), "# c\na\n\t1\n\n# d\nb\n\t3\n");

    CONFIG_FILE missing("new.cfg", false, FOLDER_BASE, false);
    EXPECT_FALSE(missing.exists(disk));
    EXPECT_TRUE(missing.write(disk, "a", "one\nline"));
    EXPECT_TRUE(missing.exists(disk));
    EXPECT_EQ(folder.get("new.cfg"), "a\n\tone line\n");
}

TEST_F(CONFIG_FILE_TEST, a_cached_write_appends_new_keys_and_finds_them) {
    folder.put(NAME, "# lost\nm\n\t1\nc\n\t2\n");
    CONFIG_FILE config(NAME, true, FOLDER_BASE, false);
    char value[CONFIG_FILE::value_size];
    for (const char* key : {"z", "a", "k", "b"}) {
        EXPECT_TRUE(config.write(disk, key, "old"));
        EXPECT_TRUE(config.write(disk, key, key));
        EXPECT_TRUE(config.read(disk, key, value));
        EXPECT_STREQ(value, key);
    }
    EXPECT_EQ(folder.get(NAME), "c\n\t2\nm\n\t1\nz\n\tz\na\n\ta\nk\n\tk\nb\n\tb\n");
    EXPECT_EQ(records(true),
              (RECORDS{{"a", "a"}, {"b", "b"}, {"c", "2"}, {"k", "k"}, {"m", "1"}, {"z", "z"}}));
    expect_nothing_beside();
    // The next object finds them in their sorted place.
    EXPECT_EQ(value_of("k", true), "k");
}

TEST_F(CONFIG_FILE_TEST, a_block_of_bulk_writes_keeps_its_order_and_its_doubles) {
    folder.put(NAME, "old\n\t1\nolder\n\t2\n");
    CONFIG_FILE config(NAME, true, FOLDER_BASE, false);
    char value[CONFIG_FILE::value_size];
    EXPECT_TRUE(config.read(disk, "old", value));
    config.keys.clear();
    config.bulk_write = true;
    for (const char* key : {"z", "a", "z", "m"}) {
        EXPECT_TRUE(config.write(disk, key, "1"));
    }
    EXPECT_EQ(folder.get(NAME), "old\n\t1\nolder\n\t2\n");
    EXPECT_TRUE(config.write_all_keys(disk));
    config.bulk_write = false;
    EXPECT_EQ(folder.get(NAME), "z\n\t1\na\n\t1\nz\n\t1\nm\n\t1\n");
    EXPECT_TRUE(config.read(disk, "a", value));
    EXPECT_FALSE(config.read(disk, "old", value));

    config.keys.clear();
    EXPECT_TRUE(config.write_all_keys(disk));
    EXPECT_TRUE(folder.has(NAME));
    EXPECT_EQ(folder.get(NAME), "");
    config.set_filename(nullptr, true);
    EXPECT_STREQ(config.get_filename(), "settings");
}

TEST_F(CONFIG_FILE_TEST, uses_the_config_folder_of_its_root) {
    std::filesystem::create_directory(folder.path() / "data");
    ASSERT_TRUE(DISK_MANAGER::set_base_folder(folder.path().c_str()));
    {
        CONFIG_FILE config("app.cfg", true, FOLDER_APPDATA, true);
        EXPECT_TRUE(config.write(config.get_base_path(), "key", "value"));
    }
    DISK_MANAGER::set_base_folder(nullptr);
    EXPECT_EQ(folder.get("data/config/app.cfg"), "key\n\tvalue\n");
}

// UTF-16 files keep their wide characters and their form through reading and both kinds of write.
TEST_F(CONFIG_FILE_TEST, wide_characters_survive) {
    const std::u16string text = u"# \u4E2D\ra\r\t\u0101\u4E2Db\rb\rx\u0142\r";
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    }
    folder.put(NAME, bytes);
    EXPECT_EQ(records(), (RECORDS{{"a", "\1, 101,4E2D\1b"}, {"b", "x\1, 142\1"}}));
    CONFIG_FILE config(NAME, false, FOLDER_BASE, false);
    EXPECT_TRUE(config.write(disk, "a", "\1, 101,4e2d\1b"));
    std::string expected = bytes;
    expected.insert(expected.find(std::string("x\0", 2)), std::string("\t\0", 2));
    EXPECT_EQ(folder.get(NAME), expected);

    CONFIG_FILE cached(NAME, true, FOLDER_BASE, false);
    EXPECT_TRUE(cached.write(disk, "c", "1"));
    EXPECT_EQ(records(), (RECORDS{{"a", "\1, 101,4E2D\1b"}, {"b", "x\1, 142\1"}, {"c", "1"}}));
}

// Whatever is in the way of a write, the old file stays.
TEST_F(CONFIG_FILE_TEST, a_failed_write_keeps_the_old_file) {
    const std::string old = "key\n\told\n";
    for (const bool cached : {false, true}) {
        SCOPED_TRACE(cached);
        folder.put(NAME, old);
        CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);

        // The name beside can't be had.
        folder.put("test.cfg.tmp/file", "");
        EXPECT_FALSE(config.write(disk, "key", "new"));
        EXPECT_EQ(folder.get(NAME), old);
        std::filesystem::remove_all(folder.path() / "test.cfg.tmp");

        // The file has the read-only mark.
        ::chmod((folder.path() / NAME).c_str(), 0444);
        EXPECT_FALSE(config.write(disk, "key", "new"));
        EXPECT_EQ(folder.get(NAME), old);
        expect_nothing_beside();
        ::chmod((folder.path() / NAME).c_str(), 0600);

        // The disk is full: the process may not write more than a few bytes.
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit = {100, 100};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const bool written = config.write(disk, "key", std::string(200, 'n').c_str());
            ::_exit(written ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(folder.get(NAME), old);
        expect_nothing_beside();

        // A leftover of a killed run is no obstacle, and rights are kept.
        folder.put("test.cfg.tmp", "junk");
        EXPECT_TRUE(config.write(disk, "key", "new"));
        EXPECT_EQ(folder.get(NAME), "key\n\tnew\n");
        expect_nothing_beside();
        struct stat info;
        ASSERT_EQ(::stat((folder.path() / NAME).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 0777u, 0600u);
        std::filesystem::remove(folder.path() / NAME);
    }
}

// Kills a process that writes all the time; the file must be whole, of one generation, after each.
TEST_F(CONFIG_FILE_TEST, a_kill_at_any_moment_leaves_a_whole_file) {
    constexpr int KEYS = 40;
    for (int round = 0; round < 20; round++) {
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            CONFIG_FILE config(NAME, true, FOLDER_BASE, false);
            config.bulk_write = true;
            for (std::uint32_t generation = 0;; generation++) {
                config.keys.clear();
                for (int i = 0; i < KEYS; i++) {
                    config.write(disk, ("key" + std::to_string(i)).c_str(), generation);
                }
                config.write_all_keys(disk);
                if (generation == 0 && ::write(ready[1], "x", 1) != 1) {
                    ::_exit(1);
                }
            }
        }
        char byte;
        ASSERT_EQ(::read(ready[0], &byte, 1), 1);
        ::usleep(static_cast<useconds_t>(500 + 377 * round));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(ready[0]);
        ::close(ready[1]);
        const RECORDS found = records();
        ASSERT_EQ(found.size(), static_cast<std::size_t>(KEYS));
        for (const auto& [key, value] : found) {
            ASSERT_EQ(value, found[0].second);
        }
    }
}

TEST_F(CONFIG_FILE_TEST, text_file_reads_and_writes_characters) {
    TEXT_FILE* file = disk.open_text_file("text", FILE_WRITE);
    ASSERT_NE(file, nullptr);
    char line[TEXT_FILE::default_line_limit];
    EXPECT_FALSE(*file >> line);
    EXPECT_TRUE(file->printf("%s %d\n", "number", 5));
    EXPECT_TRUE(file->printf("%040000d", 1));
    EXPECT_TRUE(*file << '!');
    EXPECT_TRUE(file->sync());
    DISK_MANAGER::close(file);
    EXPECT_EQ(folder.get("text"), "number 5\n" + std::string(32766, '0') + "!");

    // A line of exactly the limit leaves its end for the next call; a longer one its rest.
    folder.put("text", std::string(255, 'a') + "\n" + std::string(256, 'b') + "\n\3c");
    file = disk.open_text_file("text", FILE_READ);
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(*file << "x");
    std::vector<std::size_t> lengths;
    while (*file >> line) {
        lengths.push_back(std::strlen(line));
    }
    EXPECT_EQ(lengths, (std::vector<std::size_t>{255, 0, 255, 1, 1}));
    EXPECT_STREQ(line, "");
    DISK_MANAGER::close(file);

    // A wide character that finds no room stays for the next line, and its run is whole there. With
    // four narrow characters in front the run fills the line to its end, without a closing mark.
    for (const std::size_t narrow : {0, 1, 4}) {
        for (const char* unit : {"\x2D\x4E", "\x01\x01"}) {
            std::string wide = "\xFF\xFE";
            for (std::size_t i = 0; i < 100 + narrow; i++) {
                wide += i < narrow ? std::string("a\0", 2) : std::string(unit, 2);
            }
            folder.put("text", wide);
            file = disk.open_text_file("text", FILE_READ);
            ASSERT_NE(file, nullptr);
            TEXT_FILE* copy = disk.open_text_file("copy", FILE_WRITE, true);
            ASSERT_NE(copy, nullptr);
            while (*file >> line) {
                EXPECT_TRUE(*copy << static_cast<const char*>(line));
            }
            DISK_MANAGER::close(file);
            DISK_MANAGER::close(copy);
            EXPECT_EQ(folder.get("copy"), wide) << narrow;
        }
    }
    // A unit that was cut with its text is dropped.
    file = disk.open_text_file("text", FILE_WRITE, true);
    ASSERT_NE(file, nullptr);
    for (const char* cut : {"\1,4E2D, 1", "\1,4E2D,", "\1,4E2D,4E2"}) {
        EXPECT_TRUE(*file << cut);
    }
    DISK_MANAGER::close(file);
    EXPECT_EQ(folder.get("text"), "\xFF\xFE\x2D\x4E\x2D\x4E\x2D\x4E");
}

}  // namespace
