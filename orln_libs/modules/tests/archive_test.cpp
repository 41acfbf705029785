// The archive tools against the usual programs, byte for byte, and against hostile archives.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "../../platform/tests/temp_folder.h"
#include "modules/misc/archive_check.h"
#include "modules/misc/gzip_tools.h"
#include "modules/misc/tar_file.h"
#include "modules/misc/tar_path_tools.h"
#include "platform/data_file.h"

namespace {

namespace fs = std::filesystem;

std::string random_bytes(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (char& c : bytes) {
        c = static_cast<char>(random());
    }
    return bytes;
}

// Every file and folder below, with content and execute bit.
std::map<std::string, std::string> tree_of(const fs::path& root) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::string content = "<folder>";
        if (!entry.is_directory()) {
            std::ifstream in(entry.path(), std::ios::binary);
            content = std::string(std::istreambuf_iterator<char>(in), {});
            const bool program =
                (entry.status().permissions() & fs::perms::owner_exec) != fs::perms::none;
            content += program ? "|x" : "|-";
        }
        tree[entry.path().lexically_relative(root).string()] = content;
    }
    return tree;
}

bool run(const std::string& command) {
    return std::system((command + " 2>&1").c_str()) == 0;
}

// A header block as an unkind peer might make it.
std::string header(const std::string& name, const std::string& size, char type = '0',
                   const std::string& prefix = "", const std::string& mode = "0000644") {
    std::string block(512, '\0');
    block.replace(0, name.size(), name);
    block.replace(100, mode.size(), mode);
    block.replace(124, size.size(), size);
    block[156] = type;
    block.replace(257, 8,
                  std::string("ustar\0"
                              "00",
                              8));
    block.replace(345, prefix.size(), prefix);
    block.replace(148, 8, 8, ' ');
    unsigned sum = 0;
    for (const char c : block) {
        sum += static_cast<unsigned char>(c);
    }
    char text[9];
    std::snprintf(text, sizeof text, "%06o", sum & 0777777u);
    block.replace(148, 8, std::string(text, 7) + ' ');
    return block;
}

std::string octal(std::size_t size) {
    char text[13];
    std::snprintf(text, sizeof text, "%011zo ", size);
    return text;
}

std::string entry(const std::string& name, const std::string& data) {
    std::string bytes = header(name, octal(data.size())) + data;
    bytes.resize((bytes.size() + 511) / 512 * 512);
    return bytes;
}

const std::string END(1024, '\0');

class ARCHIVE_TEST : public testing::Test {
protected:
    TEMP_FOLDER folder;
    DISK_MANAGER disk = folder.cursor();
    std::string reason;

    void SetUp() override { fs::create_directory(folder.path() / "out"); }

    std::string path(const std::string& name) { return (folder.path() / name).string(); }

    bool unpack_plain(const std::string& archive, int* files = nullptr) {
        folder.put("a.tar", archive);
        TAR_FILE tar;
        EXPECT_TRUE(tar.open_tar_file("a.tar", disk));
        const bool done = tar.unpack_all_files(folder.cursor("out"));
        if (files) {
            *files = tar.get_files_unpacked();
        }
        return done;
    }
    bool unpack_checked(const std::string& archive, const ARCHIVE_PROGRESS& progress = {}) {
        folder.put("a.tar", archive);
        return unpack_checked_file(progress);
    }
    bool unpack_checked_file(const ARCHIVE_PROGRESS& progress = {}) {
        TAR_FILE tar;
        EXPECT_TRUE(tar.open_tar_file("a.tar", disk));
        return tar.unpack_all_files_checked(folder.cursor("out"), reason, progress);
    }
    void empty_out() {
        fs::remove_all(folder.path() / "out");
        fs::create_directory(folder.path() / "out");
    }
    bool out_is_empty() { return fs::is_empty(folder.path() / "out"); }

    // Runs `work` in a process that may not write files of more than `limit` bytes.
    template <class WORK>
    bool run_on_full_disk(rlim_t limit, WORK work) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit limits = {limit, limit};
            ::setrlimit(RLIMIT_FSIZE, &limits);
            ::_exit(work() ? 1 : 0);
        }
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status) == 1;
    }

    void make_tree() {
        const std::string deep = std::string(80, 'd') + "/" + std::string(70, 'e');
        folder.put("in/autopatch.cfg", "EXE_NAME\n\tgame\n");
        folder.put("in/empty", "");
        for (const std::size_t size : {1, 511, 512, 513, 1024, 300000}) {
            folder.put("in/data/" + std::to_string(size), random_bytes(size));
        }
        folder.put("in/" + deep + "/" + std::string(90, 'f'), "behind a prefix");
        folder.put("in/" + deep + "/another", "");
        folder.put("in/bin/game", "#!/bin/sh\n");
        folder.put("in/names/with blank: and \xC3\xA9 * ?", "odd");
        folder.put("in/Game.app/Contents/MacOS/Game", "program");
        folder.put("in/Game.app/Contents/Info", "text");
        fs::create_directories(folder.path() / "in/empty folder/inner");
        ::chmod(path("in/bin/game").c_str(), 0755);
    }
};

// What the usual programs make of a build tree installs as they unpack it themselves.
TEST_F(ARCHIVE_TEST, archives_of_the_usual_programs_install_alike) {
    make_tree();
    // Name arguments with and without a leading "./", and the forms without extended headers.
    const std::string in = "-C '" + path("in") + "' ";
    const std::vector<std::string> packers = {
        "tar --format=ustar -cf '" + path("a.tar") + "' " + in + ".",
        "tar --format=ustar -cf '" + path("a.tar") + "' " + in + "$(ls '" + path("in") +
            "' | grep -v ' ')",
        "tar --format=v7 --exclude='*ddd*' -cf '" + path("a.tar") + "' " + in + ".",
        "tar --format=gnu --exclude='*ddd*' -cf '" + path("a.tar") + "' " + in + ".",
        "bsdtar --format=ustar -cf '" + path("a.tar") + "' " + in + ".",
        "bsdtar --format=ustar -cf '" + path("a.tar") + "' " + in +
            "autopatch.cfg data names bin empty"};
    for (const std::string& packer : packers) {
        SCOPED_TRACE(packer);
        if (!run("command -v " + packer.substr(0, packer.find(' ')) + " >/dev/null")) {
            GTEST_SKIP() << "this machine lacks the program";
        }
        empty_out();
        fs::remove_all(folder.path() / "expected");
        fs::create_directory(folder.path() / "expected");
        ASSERT_TRUE(run(packer));
        const std::string unpacker = packer.substr(0, packer.find(' '));
        ASSERT_TRUE(run(unpacker + " -xf '" + path("a.tar") + "' -C '" + path("expected") + "'"));
        // Through gzip and back, too.
        const std::string archive = folder.get("a.tar");
        ASSERT_TRUE(run("gzip -f '" + path("a.tar") + "'"));
        ASSERT_TRUE(ungzip_file("a.tar.gz", "a.tar", disk));
        ASSERT_EQ(folder.get("a.tar"), archive);
        ASSERT_TRUE(unpack_checked_file()) << reason;
        auto expected = tree_of(folder.path() / "expected");
        if (const auto program = expected.find("Game.app/Contents/MacOS/Game");
            program != expected.end()) {
            program->second = "program|x";
        }
        ASSERT_GT(expected.size(), 5u);
        EXPECT_EQ(tree_of(folder.path() / "out"), expected);
    }
}

TEST_F(ARCHIVE_TEST, our_archives_are_read_by_the_usual_programs) {
    const std::vector<std::size_t> sizes = {1, 511, 512, 513, 5000, 700000};
    TAR_FILE tar;
    ASSERT_TRUE(tar.create_tar_file("a.tar", disk));
    for (const std::size_t size : sizes) {
        const std::string name = std::to_string(size);
        folder.put("in/" + name, random_bytes(size));
        EXPECT_TRUE(tar.add_file(name.c_str(), size % 2 == 0 ? "some/prefix" : nullptr,
                                 folder.cursor("in")));
    }
    const std::string longest(93, 'n');
    folder.put("in/" + longest, "x");
    EXPECT_TRUE(tar.add_file(longest.c_str(), "folder", folder.cursor("in")));
    EXPECT_FALSE(tar.add_file(longest.c_str(), "folder2", folder.cursor("in")));
    EXPECT_FALSE(tar.add_file("absent", "", folder.cursor("in")));
    EXPECT_TRUE(tar.write_end_section());
    EXPECT_TRUE(tar.close_tar_file());
    EXPECT_FALSE(tar.add_file("1", "", folder.cursor("in")));
    EXPECT_TRUE(tar.write_end_section());
    EXPECT_TRUE(tar.close_tar_file());

    const std::string first = folder.get("a.tar").substr(0, 512);
    EXPECT_EQ(first.substr(100, 24), std::string("000666 \0"
                                                 "000000 \0"
                                                 "000000 \0",
                                                 24));
    EXPECT_EQ(first.substr(124, 12), "00000000001 ");
    EXPECT_EQ(first.substr(156, 1), "0");
    EXPECT_EQ(first.substr(257, 8), std::string("ustar\0"
                                                "00",
                                                8));

    std::map<std::string, std::string> expected = {{"some", "<folder>"},
                                                   {"some/prefix", "<folder>"},
                                                   {"folder", "<folder>"},
                                                   {"folder/" + longest, "x|-"}};
    for (const std::size_t size : sizes) {
        expected[(size % 2 == 0 ? "some/prefix/" : "") + std::to_string(size)] =
            random_bytes(size) + "|-";
    }
    const std::string archive = folder.get("a.tar");
    int files = 0;
    EXPECT_TRUE(unpack_plain(archive, &files));
    EXPECT_EQ(files, 7);
    EXPECT_EQ(tree_of(folder.path() / "out"), expected);
    empty_out();
    EXPECT_TRUE(unpack_checked(archive)) << reason;
    EXPECT_EQ(tree_of(folder.path() / "out"), expected);

    EXPECT_TRUE(gzip_file("a.tar", disk));
    EXPECT_TRUE(folder.has("a.tar"));
    EXPECT_FALSE(gzip_file("absent", disk));
    for (const std::string program : {"tar", "bsdtar"}) {
        if (run("command -v " + program + " >/dev/null")) {
            empty_out();
            EXPECT_TRUE(run(program + " -xzf '" + path("a.tar.gz") + "' -C '" + path("out") + "'"));
            EXPECT_EQ(tree_of(folder.path() / "out"), expected) << program;
        }
    }
}

// The plain walk of our own tools.
TEST_F(ARCHIVE_TEST, the_plain_walk) {
    int files = 0;
    EXPECT_TRUE(unpack_plain(header("dir/", octal(0), '5') + entry("dir\\sub\\a", "1") +
                                 entry("./b", std::string(513, 'b')) + entry("empty", "") +
                                 entry("behind", "never") + END,
                             &files));
    EXPECT_EQ(files, 2);
    EXPECT_EQ(tree_of(folder.path() / "out"),
              (std::map<std::string, std::string>{{"dir", "<folder>"},
                                                  {"dir/sub", "<folder>"},
                                                  {"dir/sub/a", "1|-"},
                                                  {"b", std::string(513, 'b') + "|-"}}));
    // A name may lead upwards.
    EXPECT_TRUE(unpack_plain(entry("../up", "1") + END));
    EXPECT_EQ(folder.get("up"), "1");
    EXPECT_FALSE(unpack_plain(
        entry(std::string(60, '.').replace(2, 58, "/../../../../../../../../../x"), "1")));
    // The end of the archive inside an entry makes a short file.
    EXPECT_TRUE(unpack_plain(entry("cut", std::string(2000, 'c')).substr(0, 512 + 700), &files));
    EXPECT_EQ(files, 1);
    EXPECT_EQ(folder.get("out/cut"), std::string(700, 'c'));
    EXPECT_TRUE(unpack_plain("", &files));
    EXPECT_EQ(files, 0);
    EXPECT_FALSE(unpack_plain(header("big", "20000000000 ")));
    // Programs of a bundle.
    EXPECT_TRUE(unpack_plain(entry("G.app/Contents/MacOS/G", "1") +
                             entry("G.app/Contents/Info", "2") + END));
    struct stat info;
    ASSERT_EQ(::stat(path("out/G.app/Contents/MacOS/G").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777u, 0755u);
    ASSERT_EQ(::stat(path("out/G.app/Contents/Info").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0111u, 0u);

    TAR_FILE closed;
    EXPECT_FALSE(closed.unpack_all_files(disk));
    EXPECT_FALSE(closed.unpack_all_files_checked(disk, reason));
    EXPECT_FALSE(closed.open_tar_file("absent", disk));
    EXPECT_TRUE(closed.close_tar_file());
}

TEST_F(ARCHIVE_TEST, the_checked_walk_reads_what_the_plain_one_ends_at) {
    // Our own writer puts a block of zeros behind an empty file.
    EXPECT_TRUE(unpack_checked(entry("empty", "") + std::string(512, '\0') + entry("x\\y", "1") +
                               entry("cut", std::string(2000, 'c')).substr(0, 512 + 700)))
        << reason;
    EXPECT_EQ(tree_of(folder.path() / "out"),
              (std::map<std::string, std::string>{{"empty", "|-"},
                                                  {"x", "<folder>"},
                                                  {"x/y", "1|-"},
                                                  {"cut", std::string(700, 'c') + "|-"}}));
    // The same file twice: the later one stands, as with the usual programs.
    EXPECT_TRUE(unpack_checked(entry("x/y", "longer") + entry("x/y", "2") + END));
    EXPECT_EQ(folder.get("out/x/y"), "2");
    EXPECT_TRUE(unpack_checked(entry("last", "1") + END + entry("behind", "1")));
    EXPECT_FALSE(folder.has("out/behind"));
    EXPECT_TRUE(unpack_checked(std::string(100, 'x')));
}

TEST_F(ARCHIVE_TEST, unsafe_entries_are_refused_before_anything_is_written) {
    const std::string size = octal(4), data = std::string("data") + std::string(508, '\0');
    const std::pair<std::string, const char*> unsafe[] = {
        {header("../out2/x", size), "leads upwards"},
        {header("a/../../x", size), "leads upwards"},
        {header("a/..", size), "leads upwards"},
        {header("..", octal(0), '5'), "leads upwards"},
        {header("..\\x", size), "leads upwards"},
        {header("x", size, '0', "a/.."), "leads upwards"},
        {header("/etc/x", size), "absolute"},
        {header("\\x", size), "absolute"},
        {header("x", size, '0', "/etc"), "absolute"},
        {header("a\nb", size), "control character"},
        {header("a\x7F", size), "control character"},
        {header("", size), "no name"},
        {header("a/.", size), "no file name"},
        {header(".", size), "no file name"},
        {header("link", octal(0), '1'), "hard link"},
        {header("link", octal(0), '2'), "symbolic link"},
        {header("null", octal(0), '3'), "device"},
        {header("null", octal(0), '4'), "device"},
        {header("pipe", octal(0), '6'), "pipe"},
        {header("x", size, 'x'), "extended header"},
        {header("g", size, 'g'), "extended header"},
        {header("././@LongLink", size, 'L'), "long-name"},
        {header("sparse", size, 'S'), "unknown type"},
        {header("dir/", size, '5'), "folder with data"},
        {header("dir/", size), "folder with data"},
        {header("x", "20000000000 "), "2 GiB"},
        {header("x", "77777777777 "), "2 GiB"},
        {header("x", "000000000040"), "octal"},
        {header("x", "0000000008 "), "octal"},
        {header("x", "0x4"), "octal"},
        {header("x", "-4"), "octal"},
        {header("x", ""), "octal"},
        {header("x", std::string("\x80\0\0\0\0\0\0\0\0\0\0\4", 12)), "octal"},
        {random_bytes(512), "unknown type"}};
    for (const auto& [block, words] : unsafe) {
        SCOPED_TRACE(words);
        EXPECT_FALSE(unpack_checked(entry("good", "1") + block + data + END));
        EXPECT_NE(reason.find(words), std::string::npos) << reason;
        EXPECT_TRUE(out_is_empty());
        TAR_FILE tar;
        std::string name;
        ASSERT_TRUE(tar.open_tar_file("a.tar", disk));
        EXPECT_TRUE(find_unsafe_entry(tar, name, reason));
        EXPECT_EQ(name.find_first_of("\n\x7F"), std::string::npos);
    }
    EXPECT_FALSE(folder.has("x"));
    // Harmless cousins of the above.
    EXPECT_TRUE(unpack_checked(entry("..x/...", "1") + entry(".hidden", "2") +
                               header("a//b/./c", "  4 ") + data + END))
        << reason;
    EXPECT_EQ(folder.get("out/a/b/c"), "data");
    EXPECT_EQ(folder.get("out/..x/..."), "1");
}

TEST_F(ARCHIVE_TEST, links_in_the_way_are_never_followed) {
    folder.put("outside/file", "mine");
    const auto refused = [this](const std::string& name) {
        const bool done = unpack_checked(entry(name, "theirs") + END);
        EXPECT_FALSE(done);
        EXPECT_NE(reason.find("file"), std::string::npos) << reason;
        EXPECT_EQ(folder.get("outside/file"), "mine");
        EXPECT_FALSE(folder.has("outside/new"));
    };
    fs::create_directory_symlink(folder.path() / "outside", folder.path() / "out/folder");
    fs::create_symlink(folder.path() / "outside/file", folder.path() / "out/file");
    fs::create_symlink(folder.path() / "outside/new", folder.path() / "out/new");
    refused("folder/file");
    refused("folder/new");
    refused("file");
    refused("new");
    folder.put("out/plain", "1");
    refused("plain/below");
    // A pipe in the way must not hold up the unpacking.
    ASSERT_EQ(::mkfifo(path("out/pipe").c_str(), 0600), 0);
    refused("pipe");
    // Another name of a file outside keeps its content.
    fs::create_hard_link(folder.path() / "outside/file", folder.path() / "out/hard");
    EXPECT_TRUE(unpack_checked(entry("hard", "theirs") + END));
    EXPECT_EQ(folder.get("outside/file"), "mine");
}

TEST_F(ARCHIVE_TEST, damaged_gzip_files_are_refused) {
    const std::string content = random_bytes(100000) + std::string(200000, 'z');
    folder.put("f", content);
    ASSERT_TRUE(gzip_file("f", disk));
    const std::string packed = folder.get("f.gz");
    EXPECT_TRUE(run("gzip -t '" + path("f.gz") + "'"));
    EXPECT_TRUE(ungzip_file("f.gz", "g", disk));
    EXPECT_EQ(folder.get("g"), content);
    // Several members are one file, as for the gzip program; what isn't a member is left out.
    folder.put("f.gz", packed + packed + "junk");
    EXPECT_TRUE(ungzip_file("f.gz", "g", disk));
    EXPECT_EQ(folder.get("g"), content + content);

    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{10}, packed.size() / 2,
          packed.size() - 9, packed.size() - 8, packed.size() - 1}) {
        folder.put("f.gz", packed.substr(0, length));
        EXPECT_FALSE(ungzip_file("f.gz", "g", disk)) << length;
    }
    for (const std::size_t place :
         {std::size_t{0}, std::size_t{1}, std::size_t{2}, packed.size() / 2, packed.size() - 6}) {
        std::string damaged = packed;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
        folder.put("f.gz", damaged);
        EXPECT_FALSE(ungzip_file("f.gz", "g", disk)) << place;
    }
    folder.put("f.gz", packed);
    EXPECT_FALSE(ungzip_file("f.gz", "f.gz", disk));
    EXPECT_EQ(folder.get("f.gz"), packed);
    EXPECT_FALSE(ungzip_file(nullptr, "g", disk));
    EXPECT_FALSE(ungzip_file("f.gz", nullptr, disk));
    EXPECT_FALSE(ungzip_file("absent", "g", disk));
    EXPECT_FALSE(ungzip_file("f.gz", "out", disk)) << "a folder";
}

// A download is made by the disk manager, under a name of its choice.
TEST_F(ARCHIVE_TEST, gzip_files_have_the_names_under_which_the_disk_manager_makes_them) {
    DATA_FILE* file = disk.open_data_file("What?", FILE_WRITE, BYTEORDER_LITTLE);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->write_data_block("data", 4), 4);
    EXPECT_TRUE(DISK_MANAGER::close(file));
    EXPECT_TRUE(gzip_file("What?", disk));
    EXPECT_TRUE(ungzip_file("What?.gz", "../What?.tar", disk));
    EXPECT_EQ(folder.get(".._What_.tar"), "data");
}

TEST_F(ARCHIVE_TEST, a_full_disk_fails_every_operation) {
    const std::string content = random_bytes(400000);
    folder.put("f", content);
    ASSERT_TRUE(gzip_file("f", disk));
    EXPECT_FALSE(run_on_full_disk(50000, [this] { return ungzip_file("f.gz", "g", disk); }));
    EXPECT_FALSE(run_on_full_disk(50000, [this] { return gzip_file("f", disk); }));
    EXPECT_FALSE(run_on_full_disk(50000, [this] {
        TAR_FILE tar;
        const bool added = tar.create_tar_file("b.tar", disk) && tar.add_file("f", "", disk);
        return tar.close_tar_file() && added;
    }));
    folder.put("a.tar", entry("f", content) + END);
    const auto unpack = [this](bool checked) {
        TAR_FILE tar;
        return tar.open_tar_file("a.tar", disk) &&
               (checked ? tar.unpack_all_files_checked(folder.cursor("out"), reason)
                        : tar.unpack_all_files(folder.cursor("out")));
    };
    EXPECT_FALSE(run_on_full_disk(50000, [&] { return unpack(false); }));
    EXPECT_FALSE(run_on_full_disk(50000, [&] { return unpack(true); }));
    EXPECT_TRUE(run_on_full_disk(500000, [&] { return unpack(true) && unpack(false); }));
}

TEST_F(ARCHIVE_TEST, progress_counts_bytes_and_can_stop) {
    const std::string content = random_bytes(900000);
    folder.put("f", content);
    ASSERT_TRUE(gzip_file("f", disk));
    std::uint64_t last = 0;
    const ARCHIVE_PROGRESS count = [&last](std::uint64_t done) {
        EXPECT_GT(done, last);
        last = done;
        return true;
    };
    const ARCHIVE_PROGRESS stop = [](std::uint64_t done) { return done < 300000; };
    EXPECT_TRUE(ungzip_file("f.gz", "g", disk, count));
    EXPECT_EQ(last, content.size());
    EXPECT_FALSE(ungzip_file("f.gz", "g", disk, stop));
    last = 0;
    const std::string archive = entry("a", content) + entry("b", content) + END;
    EXPECT_TRUE(unpack_checked(archive, count));
    EXPECT_EQ(last, 2 * content.size());
    empty_out();
    EXPECT_FALSE(unpack_checked(archive, stop));
    EXPECT_NE(reason.find("stopped"), std::string::npos);
    EXPECT_FALSE(folder.has("out/b"));
}

TEST_F(ARCHIVE_TEST, paths_inside_archives) {
    EXPECT_STREQ(tar_tools_get_dir_part_from_path("a/b\\c"), "a/b");
    EXPECT_STREQ(tar_tools_get_filename_from_path("a/b\\c"), "c");
    EXPECT_STREQ(tar_tools_get_dir_part_from_path("c"), "");
    EXPECT_STREQ(tar_tools_get_filename_from_path("c"), "c");
    EXPECT_STREQ(tar_tools_get_dir_part_from_path("/c"), "");
    EXPECT_STREQ(tar_tools_get_filename_from_path("c/"), "");
    const auto walk = [this](const char* where, bool create) {
        DISK_MANAGER cursor = folder.cursor("out");
        const bool whole = tar_tools_set_relative_path(cursor, where, create);
        return std::string(whole ? "+" : "-") + cursor.get_directory_name();
    };
    EXPECT_EQ(walk("a/b", false), "-out");
    EXPECT_EQ(walk("/a/b", true), "+b");
    EXPECT_EQ(walk("a/b/", false), "+b");
    EXPECT_EQ(walk("a/../a", false), "+a");
    EXPECT_EQ(walk("absent/a", false), "-a");
    EXPECT_EQ(walk("a//b", false), "-b");
    EXPECT_EQ(walk("", false), "+out");
}

}  // namespace
