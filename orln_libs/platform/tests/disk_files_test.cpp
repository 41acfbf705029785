// Files and trees: what is listed, opened, moved, copied and deleted, and what must survive.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <vector>

#include "../code/linuxcode/disk_exchange.h"
#include "disk_fixture.h"
#include "platform/data_file.h"
#include "platform/dm_file_info.h"
#include "platform/text_file.h"

namespace {

namespace fs = std::filesystem;

std::string numbered(int i) {
    std::string name = "f";
    name += std::to_string(i);
    return name;
}

class DiskFiles : public DISK_FIXTURE {
protected:
    std::multiset<std::string> names(const DISK_MANAGER& disk, bool directories, bool hidden,
                                     const char* suffix = nullptr) {
        DM_FILE_INFO* list = nullptr;
        std::int32_t count = 0;
        EXPECT_TRUE(disk.get_dir_list(directories, hidden, false, list, count, suffix));
        std::multiset<std::string> found;
        for (std::int32_t i = 0; i < count; ++i) {
            EXPECT_EQ(disk, list[i].folder);
            EXPECT_EQ(directories, list[i].directory);
            EXPECT_EQ(list[i].name[0] == '.', list[i].hidden);
            found.insert(list[i].name);
        }
        DISK_MANAGER::free_list(list);
        return found;
    }
    using NAMES = std::multiset<std::string>;
    DISK_MANAGER here;

    void SetUp() override {
        DISK_FIXTURE::SetUp();
        here.get_base_dir();
    }
};

TEST_F(DiskFiles, ListsFilesOrFoldersByNameAndSuffix) {
    write(base / "a.tar.gz", "12345");
    write(base / "B.TAR.GZ", "");
    write(base / ".hidden.gz", "");
    fs::create_directories(base / "folder.gz");
    fs::create_directories(base / ".cache");
    fs::create_symlink(base / "a.tar.gz", base / "link.gz");
    fs::create_directory_symlink(base / "folder.gz", base / "folder_link");
    fs::create_symlink(base / "nowhere", base / "dangling.gz");
    ASSERT_EQ(0, mkfifo((base / "pipe.gz").c_str(), 0600));
    EXPECT_EQ((NAMES{"a.tar.gz", "B.TAR.GZ", "link.gz"}), names(here, false, false));
    EXPECT_EQ((NAMES{"a.tar.gz", "link.gz", ".hidden.gz"}), names(here, false, true, "gz"));
    EXPECT_EQ((NAMES{"folder.gz", "folder_link"}), names(here, true, false));
    EXPECT_EQ((NAMES{"folder.gz", "folder_link", ".cache"}), names(here, true, true));
    EXPECT_EQ(NAMES{}, names(here, false, true, "a very long suffix, longer than any name here"));

    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 7;
    fs::remove_all(base);
    EXPECT_FALSE(here.get_dir_list(false, true, false, list, count));
    EXPECT_EQ(0, count);
}

TEST_F(DiskFiles, ListsAppendAndReportEachGrowth) {
    for (int i = 0; i < 120; ++i) {
        write(base / numbered(i), std::string(static_cast<std::size_t>(i), 'x'));
    }
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    int growths = 0;
    const auto progress = [](void* user) { ++*static_cast<int*>(user); };
    ASSERT_TRUE(here.get_dir_list(false, false, false, list, count, nullptr, progress, &growths));
    EXPECT_EQ(120, count);
    EXPECT_EQ(3, growths);
    fs::create_directories(base / "more");
    write(base / "more/last", "1");
    const DISK_MANAGER more = at(base / "more");
    ASSERT_TRUE(more.get_dir_list(false, false, true, list, count, nullptr, progress, &growths));
    ASSERT_EQ(121, count);
    EXPECT_EQ(4, growths);
    EXPECT_STREQ("last", list[120].name);
    EXPECT_EQ(more, list[120].folder);
    DISK_MANAGER::sort_file_list_by_name(list, count);
    for (std::int32_t i = 1; i < count; ++i) {
        EXPECT_LT(std::strcmp(list[i - 1].name, list[i].name), 0);
        EXPECT_EQ(list[i].name[0] == 'l' ? 1 : std::stoi(list[i].name + 1), list[i].size);
    }
    DISK_MANAGER::free_list(list);
}

TEST_F(DiskFiles, DatesSortAndPrint) {
    setenv("TZ", "UTC", 1);
    tzset();
    const time_t dates[] = {86400, 0, 1000000000};
    for (int i = 0; i < 3; ++i) {
        const std::string name = numbered(i);
        write(base / name, "x");
        const timespec times[2] = {{dates[i], 0}, {dates[i], 0}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, (base / name).c_str(), times, 0));
        EXPECT_EQ(dates[i], DISK_MANAGER::get_file_date(here, name.c_str()));
    }
    EXPECT_EQ(0, DISK_MANAGER::get_file_date(here, "missing"));
    fs::create_directory(base / "folder");
    EXPECT_EQ(0, DISK_MANAGER::get_file_date(here, "folder"));
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    here.get_dir_list(false, false, false, list, count);
    DISK_MANAGER::sort_list_by_date(list, count);
    ASSERT_EQ(3, count);
    EXPECT_STREQ("f1", list[0].name);
    EXPECT_STREQ("f0", list[1].name);
    EXPECT_STREQ("f2", list[2].name);
    EXPECT_STREQ("Sun Sep  9 01:46:40 2001", list[2].get_date_string());
    list[2].date = INT64_MAX;
    EXPECT_STREQ("", list[2].get_date_string());
    EXPECT_LT(DISK_MANAGER::sort_file_info_by_date(list, nullptr), 0);
    EXPECT_GT(DISK_MANAGER::compare_filenames(nullptr, list), 0);
    DISK_MANAGER::free_list(list);

    EXPECT_STREQ("0.0 ", DM_FILE_INFO::get_size_string(0));
    EXPECT_STREQ("1024.0 ", DM_FILE_INFO::get_size_string(1024));
    EXPECT_STREQ("1.5 kb", DM_FILE_INFO::get_size_string(1536));
    EXPECT_STREQ("1024.0 kb", DM_FILE_INFO::get_size_string(1048576));
    EXPECT_STREQ("2.0 Mb", DM_FILE_INFO::get_size_string(2097152));
    EXPECT_STREQ("2.0 Gb", DM_FILE_INFO::get_size_string(INT32_MAX));
}

TEST_F(DiskFiles, OpenFileCreatesOnlyForWriteModesAndReplacesCharacters) {
    char name[] = "a:b/..\\c\"*?<>|";
    EXPECT_EQ(nullptr, here.open_file(name, "r"));
    EXPECT_STREQ("a_b_.._c______", name);
    EXPECT_EQ(nullptr, here.open_file(name, "a"));
    EXPECT_EQ(nullptr, here.open_file(name, "rb+"));
    EXPECT_EQ(nullptr, here.open_file(name, "x"));
    for (const char* mode : {"r+b", "w", "wb+"}) {
        std::FILE* file = here.open_file(name, mode);
        ASSERT_NE(nullptr, file) << mode;
        EXPECT_NE(0, fcntl(fileno(file), F_GETFD) & FD_CLOEXEC);
        EXPECT_EQ(0, std::ftell(file));
        EXPECT_GT(std::fputs("text", file), 0);
        EXPECT_EQ(0, std::fclose(file));
        EXPECT_EQ("text", read(base / name));
        if (mode[0] == 'r') {
            file = here.open_file(name, "a");
            ASSERT_NE(nullptr, file);
            std::fputs("+", file);
            std::fclose(file);
            EXPECT_EQ("text+", read(base / name));
        }
    }
    char dots[] = "..";
    EXPECT_EQ(nullptr, here.open_file(dots, "w"));
    std::string long_name(4000, 'n');
    EXPECT_EQ(nullptr, here.open_file(long_name.data(), "w"));
    EXPECT_EQ(ENAMETOOLONG, errno);
    EXPECT_EQ(nullptr, here.open_file(nullptr, "w"));
}

TEST_F(DiskFiles, NothingButARegularFileIsOpenedAndWritingFollowsNoLink) {
    write(root / "outside", "precious");
    fs::create_symlink(root / "outside", base / "link");
    fs::create_symlink(root / "new", base / "dangling");
    fs::create_directory(base / "folder");
    ASSERT_EQ(0, mkfifo((base / "pipe").c_str(), 0600));
    for (const char* name : {"link", "dangling", "folder", "pipe"}) {
        EXPECT_EQ(nullptr, here.open_data_file(name, FILE_WRITE, 0)) << name;
        EXPECT_EQ(nullptr, here.open_data_file(name, FILE_APPEND, 0)) << name;
        EXPECT_EQ(nullptr, here.open_text_file(name, FILE_WRITE)) << name;
    }
    EXPECT_EQ("precious", read(root / "outside"));
    EXPECT_FALSE(fs::exists(root / "new"));
    EXPECT_EQ(nullptr, here.open_data_file("folder", FILE_READ, 0));
    EXPECT_EQ(nullptr, here.open_data_file("pipe", FILE_READ, 0));
    DATA_FILE* file = here.open_data_file("link", FILE_READ, 0);
    ASSERT_NE(nullptr, file);
    DISK_MANAGER::close(file);
    EXPECT_TRUE(DISK_MANAGER::close(file));  // null
}

TEST_F(DiskFiles, TextFilesRecogniseTheirForm) {
    char line[256];
    TEXT_FILE* file = here.open_text_file("log:1", FILE_APPEND);  // made where missing
    ASSERT_NE(nullptr, file);
    EXPECT_TRUE(*file << "one\n");
    DISK_MANAGER::close(file);
    file = here.open_text_file("log:1", FILE_APPEND);
    EXPECT_TRUE(*file << "two\n");
    DISK_MANAGER::close(file);
    EXPECT_EQ(nullptr, file);
    EXPECT_EQ("one\ntwo\n", read(base / "log_1"));
    file = here.open_text_file("log:1", FILE_READ);
    ASSERT_NE(nullptr, file);
    EXPECT_TRUE(*file >> line);
    EXPECT_STREQ("one", line);
    DISK_MANAGER::close(file);

    file = here.open_text_file("wide", FILE_WRITE, true);
    EXPECT_TRUE(*file << "ab");
    DISK_MANAGER::close(file);
    EXPECT_EQ(std::string("\xFF\xFE"
                          "a\0b\0",
                          6),
              read(base / "wide"));
    file = here.open_text_file("wide", FILE_APPEND);
    EXPECT_TRUE(*file << "c");
    DISK_MANAGER::close(file);
    EXPECT_EQ(std::string("\xFF\xFE"
                          "a\0b\0c\0",
                          8),
              read(base / "wide"));
    write(base / "swapped", std::string("\xFE\xFF\0x\0y", 6));
    for (const char* name : {"wide", "swapped"}) {
        file = here.open_text_file(name, FILE_READ);
        ASSERT_NE(nullptr, file);
        EXPECT_TRUE(file->is_utf16());
        EXPECT_TRUE(*file >> line);
        EXPECT_STREQ(name[0] == 'w' ? "abc" : "xy", line);
        DISK_MANAGER::close(file);
    }
    EXPECT_EQ(nullptr, here.open_text_file("swapped", FILE_APPEND));
    EXPECT_EQ(nullptr, here.open_text_file("missing", FILE_READ));
    EXPECT_EQ(nullptr, here.open_text_file(nullptr, FILE_WRITE));
    EXPECT_EQ(std::string("\xFE\xFF\0x\0y", 6), read(base / "swapped"));
}

TEST_F(DiskFiles, DataFilesKeepTheirByteOrderAndAppendAtTheEnd) {
    DATA_FILE* file = here.open_data_file("d", FILE_WRITE, -1);
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(0, file->get_pos());
    EXPECT_TRUE(*file << std::uint16_t{0x0102});
    DISK_MANAGER::close(file);
    EXPECT_EQ(std::string("\0\2\1", 3), read(base / "d"));
    file = here.open_data_file("d", FILE_APPEND, -1);
    EXPECT_EQ(2, file->get_pos());
    EXPECT_TRUE(*file << std::uint16_t{0x0304});
    DISK_MANAGER::close(file);
    EXPECT_EQ(std::string("\0\2\1\4\3", 5), read(base / "d"));

    write(base / "d", std::string("\1\1\2", 3));  // from a host of the other order
    file = here.open_data_file("d", FILE_READ, -1);
    ASSERT_NE(nullptr, file);
    std::uint16_t value = 0;
    EXPECT_TRUE(*file >> value);
    EXPECT_EQ(0x0102, value);
    DISK_MANAGER::close(file);
    write(base / "empty", "");
    EXPECT_EQ(nullptr, here.open_data_file("empty", FILE_READ, -1));
    file = here.open_data_file("empty", FILE_APPEND, -1);
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(0, file->get_pos());
    DISK_MANAGER::close(file);
    EXPECT_EQ(std::string(1, '\0'), read(base / "empty"));
    EXPECT_EQ(nullptr, here.open_data_file("d", static_cast<FILE_MODE>(3), 0));

    // Without room for the header there is no file to write into.
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {0, 0};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(here.open_data_file("full", FILE_WRITE, -1) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
}

TEST_F(DiskFiles, ReadOnlyFilesNeedForce) {
    write(base / "locked", "x");
    EXPECT_FALSE(DISK_MANAGER::is_read_only(here, "locked"));
    EXPECT_TRUE(DISK_MANAGER::set_is_read_only(here, "locked", true));
    EXPECT_TRUE(DISK_MANAGER::is_read_only(here, "locked"));
    EXPECT_FALSE(here.remove("locked"));
    EXPECT_TRUE(DISK_MANAGER::file_exists(here, "locked"));
    EXPECT_TRUE(DISK_MANAGER::set_is_read_only(here, "locked", false));
    EXPECT_FALSE(DISK_MANAGER::is_read_only(here, "locked"));
    DISK_MANAGER::set_is_read_only(here, "locked", true);
    EXPECT_TRUE(here.remove("locked", true));
    EXPECT_FALSE(here.remove("locked", true));
    EXPECT_FALSE(DISK_MANAGER::set_is_read_only(here, "locked", true));

    fs::create_directory(base / "folder");
    EXPECT_FALSE(here.remove("folder", true));
    EXPECT_FALSE(here.remove("../data", true));
    write(base / "folder/x", "");
    EXPECT_NE(0, here.rmdir("folder"));
    at(base / "folder").remove("x");
    EXPECT_EQ(0, here.rmdir("folder"));
    fs::create_symlink(root / "opt", base / "link");
    EXPECT_TRUE(here.remove("link"));
    EXPECT_TRUE(fs::exists(root / "opt"));
}

TEST_F(DiskFiles, MovesReplaceInOneStep) {
    write(base / "a", "new");
    write(root / "opt/game/data/b", "old");
    const DISK_MANAGER data(FOLDER_APPDATA);
    EXPECT_TRUE(here.move("a", data, "b"));
    EXPECT_EQ("new", read(root / "opt/game/data/b"));
    EXPECT_FALSE(fs::exists(base / "a"));
    EXPECT_TRUE(data.move("b", here));
    EXPECT_EQ("new", read(base / "b"));
    EXPECT_FALSE(here.move("missing", data));
    EXPECT_FALSE(here.move("b", data, "../b"));
    EXPECT_EQ("new", read(base / "b"));
}

TEST_F(DiskFiles, FlushesTheFileSystemOfAFolderThatIsThere) {
    write(base / "folder/file", "x");
    const DISK_MANAGER folder = at(base / "folder");
    EXPECT_TRUE(folder.flush_file_system());
    fs::remove_all(base / "folder");
    EXPECT_FALSE(folder.flush_file_system());
}

TEST_F(DiskFiles, MovesBetweenDevicesCopyAndRemove) {
    struct stat shared;
    struct stat own;
    if (stat("/dev/shm", &shared) != 0 || stat(root.c_str(), &own) != 0 ||
        shared.st_dev == own.st_dev) {
        GTEST_SKIP() << "no second device";
    }
    std::string pattern = "/dev/shm/disk_test_XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(pattern.data()));
    const DISK_MANAGER there = at(pattern);
    write(base / "tree/sub/file", "content");
    write(base / "single", "one");
    EXPECT_TRUE(here.move("tree", there, "moved"));
    EXPECT_TRUE(here.move("single", there));
    EXPECT_EQ("content", read(fs::path(pattern) / "moved/sub/file"));
    EXPECT_EQ("one", read(fs::path(pattern) / "single"));
    EXPECT_FALSE(fs::exists(base / "tree"));
    EXPECT_FALSE(fs::exists(base / "single"));
    EXPECT_EQ((NAMES{"moved"}), names(there, true, true));  // nothing temporary is left
    // A target that can't be replaced leaves the source whole.
    write(base / "tree/sub/file", "second");
    EXPECT_FALSE(here.move("tree", there, "moved"));
    EXPECT_EQ("second", read(base / "tree/sub/file"));
    EXPECT_EQ("content", read(fs::path(pattern) / "moved/sub/file"));
    EXPECT_EQ((NAMES{"moved"}), names(there, true, true));
    fs::remove_all(pattern);
}

TEST_F(DiskFiles, ReplaceFolderExchangesOrInstalls) {
    write(base / "fresh/file", "new");
    const DISK_MANAGER data(FOLDER_APPDATA);
    EXPECT_TRUE(here.replace_folder("fresh", data, "installed"));
    EXPECT_EQ("new", read(root / "opt/game/data/installed/file"));
    EXPECT_FALSE(fs::exists(base / "fresh"));
    write(base / "fresh/file", "newer");
    EXPECT_TRUE(here.replace_folder("fresh", data, "installed"));
    EXPECT_EQ("newer", read(root / "opt/game/data/installed/file"));
    EXPECT_EQ("new", read(base / "fresh/file"));
    write(root / "opt/game/data/plain", "file");
    EXPECT_FALSE(here.replace_folder("fresh", data, "plain"));
    EXPECT_FALSE(here.replace_folder("missing", data, "installed"));
    EXPECT_EQ("file", read(root / "opt/game/data/plain"));
    EXPECT_EQ("newer", read(root / "opt/game/data/installed/file"));
}

TEST_F(DiskFiles, WithoutAnExchangeTheOldFolderIsPutAsideAndBackOnFailure) {
    write(base / "fresh/file", "new");
    write(base / "installed/file", "old");
    const std::string fresh = base / "fresh";
    const std::string installed = base / "installed";
    EXPECT_TRUE(exchange_by_renames(fresh.c_str(), installed.c_str(), here));
    EXPECT_EQ("new", read(base / "installed/file"));
    EXPECT_EQ("old", read(base / "fresh/file"));
    EXPECT_FALSE(exchange_by_renames((base / "missing").c_str(), installed.c_str(), here));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_FALSE(exchange_by_renames(fresh.c_str(), (base / "missing").c_str(), here));
    EXPECT_EQ("new", read(base / "installed/file"));
    EXPECT_EQ("old", read(base / "fresh/file"));
    EXPECT_EQ((NAMES{"fresh", "installed"}), names(here, true, true));
}

TEST_F(DiskFiles, CopiesKeepModeAndDateAndNeverHurtTheSource) {
    const std::string content(3000000, 'c');
    write(base / "a", content);
    chmod((base / "a").c_str(), 0540);
    const timespec times[2] = {{5, 0}, {1000000, 0}};
    utimensat(AT_FDCWD, (base / "a").c_str(), times, 0);
    const DISK_MANAGER data(FOLDER_APPDATA);
    write(root / "opt/game/data/b", "old");
    EXPECT_TRUE(here.copy("a", data, "b"));
    EXPECT_TRUE(here.copy("a", data, ""));
    EXPECT_EQ(content, read(root / "opt/game/data/b"));
    EXPECT_EQ(content, read(root / "opt/game/data/a"));
    struct stat info;
    ASSERT_EQ(0, stat((root / "opt/game/data/b").c_str(), &info));
    EXPECT_EQ(0540u, info.st_mode & 0777);
    EXPECT_EQ(1000000, info.st_mtime);
    EXPECT_FALSE(here.copy("a", here));
    fs::create_symlink(base / "a", root / "opt/game/data/link");
    EXPECT_FALSE(here.copy("a", data, "link"));
    EXPECT_EQ(content, read(base / "a"));
    EXPECT_FALSE(here.copy("missing", data, "b"));
    fs::create_directory(root / "opt/game/data/folder");
    EXPECT_FALSE(here.copy("a", data, "folder"));
    EXPECT_EQ(content, read(root / "opt/game/data/b"));
    EXPECT_EQ((NAMES{"a", "b", "link"}), names(data, false, true));
    // A file that tells no size.
    EXPECT_TRUE(at("/proc/self").copy("status", here));
    EXPECT_NE(std::string::npos, read(base / "status").find("Pid:"));
}

TEST_F(DiskFiles, CopyTreeTakesAllAndRefusesEndlessTrees) {
    write(base / "t/one", "1");
    write(base / "t/.hidden/two", "2");
    write(base / "t/x/y/three", "3");
    fs::create_directories(base / "t/empty");
    fs::create_directories(base / "other");
    write(base / "other/linked", "4");
    fs::create_directory_symlink(base / "other", base / "t/link");
    fs::create_directories(root / "target/x");
    EXPECT_TRUE(DISK_MANAGER::copy_tree(at(base / "t"), at(root / "target")));
    EXPECT_EQ("1", read(root / "target/one"));
    EXPECT_EQ("2", read(root / "target/.hidden/two"));
    EXPECT_EQ("3", read(root / "target/x/y/three"));
    EXPECT_EQ("4", read(root / "target/link/linked"));
    EXPECT_TRUE(fs::is_directory(root / "target/empty"));

    EXPECT_FALSE(DISK_MANAGER::copy_tree(at(base), at(base / "t/x")));
    EXPECT_FALSE(fs::exists(base / "t/x/t"));
    EXPECT_FALSE(DISK_MANAGER::copy_tree(at(base / "t"), at(base / "t")));
    fs::create_directory_symlink(base / "t", base / "t/x/loop");
    fs::create_directories(root / "second");
    EXPECT_FALSE(DISK_MANAGER::copy_tree(at(base / "t"), at(root / "second")));
    EXPECT_FALSE(fs::exists(root / "second/x/loop/one"));
}

TEST_F(DiskFiles, DeleteTreeRemovesLinksButNotWhatTheyLeadTo) {
    write(root / "outside/kept", "x");
    write(base / "t/a/locked", "x");
    write(base / "t/b/.hidden", "x");
    chmod((base / "t/a/locked").c_str(), 0400);
    chmod((base / "t/a").c_str(), 0500);
    fs::create_directories(base / "t/b/c");
    chmod((base / "t/b/c").c_str(), 0);
    fs::create_directory_symlink(root / "outside", base / "t/b/link");
    fs::create_symlink(root / "outside/kept", base / "t/file_link");
    ASSERT_EQ(0, mkfifo((base / "t/pipe").c_str(), 0600));
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, "missing"));
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, "../data"));
    EXPECT_TRUE(fs::exists(root / "opt/game/data"));
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, "t"));
    EXPECT_FALSE(fs::exists(base / "t"));
    EXPECT_TRUE(fs::exists(root / "outside/kept"));
    fs::create_directory_symlink(root / "outside", base / "t");
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, "t"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(base / "t")));
    EXPECT_TRUE(fs::exists(root / "outside/kept"));
    write(base / "file", "x");
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, "file"));
    EXPECT_TRUE(fs::exists(base / "file"));
}

// Run as an ordinary user, whom permissions hold back: the modes above mean something.
TEST_F(DiskFiles, DeleteTreeOpensFoldersThatTheirOwnerClosed) {
    if (geteuid() == 0) {
        for (const fs::path& folder : {root, root / "opt", root / "opt/game", base}) {
            ASSERT_EQ(0, chown(folder.c_str(), 65534, 65534));
        }
    }
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
            _exit(2);
        }
        write(base / "t/a/b/file", "x");
        chmod((base / "t/a/b").c_str(), 0500);
        chmod((base / "t/a").c_str(), 0);
        _exit(DISK_MANAGER::delete_tree(here, "t") == 0 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(0, WEXITSTATUS(status));
    EXPECT_FALSE(fs::exists(base / "t"));
}

TEST_F(DiskFiles, DeleteTreeTakesTreesDeeperThanAnyPath) {
    int folder = open(base.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::string name(100, 'd');
    for (int i = 0; i < 2500; ++i) {
        ASSERT_EQ(0, mkdirat(folder, name.c_str(), 0700));
        const int next = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(next, 0);
        close(folder);
        folder = next;
    }
    close(folder);
    EXPECT_EQ(0, DISK_MANAGER::delete_tree(here, name.c_str()));
    EXPECT_FALSE(fs::exists(base / name));
}

}  // namespace
