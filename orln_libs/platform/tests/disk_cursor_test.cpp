// The cursor goes where its names lead and nowhere else; stored paths lead back.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "disk_fixture.h"
#include "platform/application_identity.h"
#include "platform/data_file.h"
#include "platform/dm_file_info.h"

namespace {

namespace fs = std::filesystem;

class DiskCursor : public DISK_FIXTURE {};

TEST_F(DiskCursor, MovesDownUpAndStaysOnFailure) {
    DISK_MANAGER disk;
    EXPECT_EQ(base.string(), disk.get_path());
    write(base / "file", "x");
    std::string long_name(256, 'n');
    for (const char* name : {"missing", "file", "", ".", "..", "../data", "/", long_name.c_str()}) {
        EXPECT_FALSE(disk.move_down(name, name[0] != 'm')) << name;
        EXPECT_EQ(base.string(), disk.get_path());
    }
    EXPECT_FALSE(disk.move_down(nullptr));
    EXPECT_FALSE(fs::exists(base / "missing"));
    EXPECT_TRUE(disk.move_down("made", true));
    EXPECT_TRUE(fs::is_directory(base / "made"));
    EXPECT_STREQ("made", disk.get_directory_name());
    EXPECT_TRUE(disk.move_up());
    EXPECT_EQ(DISK_MANAGER(), disk);
    disk.move_to_top();
    EXPECT_STREQ("/", disk.get_path_string());
    EXPECT_STREQ("/etc", disk.get_path_string("etc"));
    EXPECT_STREQ("", disk.get_directory_name());
    EXPECT_FALSE(disk.move_up());
    EXPECT_STREQ("/", disk.get_path());
}

TEST_F(DiskCursor, FollowsLinksToTheRealFolder) {
    fs::create_directories(root / "real/inner");
    fs::create_directory_symlink(root / "real/inner", base / "link");
    fs::create_symlink(root / "nowhere", base / "dangling");
    DISK_MANAGER disk;
    EXPECT_TRUE(disk.move_down("link"));
    EXPECT_EQ((root / "real/inner").string(), disk.get_path());
    EXPECT_TRUE(disk.move_up());
    EXPECT_EQ((root / "real").string(), disk.get_path());
    disk.get_base_dir();
    EXPECT_FALSE(disk.move_down("dangling", true));
    EXPECT_FALSE(fs::exists(root / "nowhere"));
    EXPECT_TRUE(disk.move_down((base / "link/../inner").c_str(), false, true));
    EXPECT_EQ(at(root / "real/inner"), disk);
    EXPECT_FALSE(disk.move_down("relative/path", false, true));
    EXPECT_FALSE(disk.move_down((root / "no/such").c_str(), false, true));
    EXPECT_EQ(at(root / "real/inner"), disk);
}

TEST_F(DiskCursor, RefusesWhatDoesntFitInsteadOfCutting) {
    DISK_MANAGER disk = at(root);
    const std::string name(200, 'd');
    while (disk.move_down(name.c_str(), true)) {
        ASSERT_LT(std::strlen(disk.get_path()), 2048u);
    }
    EXPECT_EQ(ENAMETOOLONG, errno);
    const std::string deepest = disk.get_path();
    EXPECT_GT(deepest.size() + 1 + name.size(), 2047u);
    EXPECT_FALSE(fs::exists(fs::path(deepest) / name));
    EXPECT_STREQ("", disk.get_path_string(name.c_str()));
    // A folder and its name still work as a file operation, which needs no cursor.
    std::string file = name;
    std::FILE* stream = disk.open_file(file.data(), "w");
    ASSERT_NE(nullptr, stream);
    std::fclose(stream);
    EXPECT_TRUE(DISK_MANAGER::file_exists(disk, name.c_str()));
    // "$BASE/../.." style texts of that length don't overflow the caller's block either.
    char stored[DISK_MANAGER::PATH_SIZE];
    EXPECT_EQ(deepest.size() + std::strlen("$ROOT0") < sizeof stored,
              disk.get_relative_path(stored));
}

TEST_F(DiskCursor, NavigatesRelativeTextsOfAllSeparators) {
    fs::create_directories(base / "a/b/c");
    DISK_MANAGER disk = at(base / "a/b");
    EXPECT_TRUE(disk.navigate_to_relative_path("../../a:b\\c"));
    EXPECT_EQ(at(base / "a/b/c"), disk);
    EXPECT_TRUE(disk.navigate_to_relative_path("../new/newer", true));
    EXPECT_EQ(at(base / "a/b/new/newer"), disk);
    EXPECT_FALSE(disk.navigate_to_relative_path("../missing/x"));
    EXPECT_EQ(at(base / "a/b/new"), disk);
    EXPECT_FALSE(disk.navigate_to_relative_path(".."));
    disk.move_to_top();
    EXPECT_FALSE(disk.navigate_to_relative_path("../etc"));
    EXPECT_FALSE(disk.navigate_to_relative_path(nullptr));
}

TEST_F(DiskCursor, RawCursorsAreCheckedBeforeUse) {
    DISK_MANAGER disk;
    DISK_MANAGER other;
    char raw[DISK_MANAGER::PATH_SIZE];
    std::memcpy(raw, at(root / "opt").get_path(), sizeof raw);
    EXPECT_TRUE(other.set_path(raw));
    EXPECT_EQ(at(root / "opt"), other);
    fs::create_directory_symlink(root / "opt", root / "link");
    EXPECT_TRUE(other.set_path((root.string() + "/./link" + std::string(2048, '\0')).c_str()));
    EXPECT_STREQ(at(root / "opt").get_path(), other.get_path());
    std::memset(raw, '/', sizeof raw);  // no terminator
    EXPECT_FALSE(DISK_MANAGER::validate_path(raw));
    EXPECT_FALSE(other.set_path(raw));
    EXPECT_STREQ("/", other.get_path());
    std::strcpy(raw, "relative");
    EXPECT_FALSE(DISK_MANAGER::validate_path(raw));
    EXPECT_FALSE(DISK_MANAGER::validate_path(nullptr));
}

TEST_F(DiskCursor, EqualityIsTheFolderNotTheText) {
    DISK_MANAGER before = at(root / "opt");
    fs::rename(root / "opt", root / "renamed");
    EXPECT_FALSE(before == at(root / "renamed"));
    EXPECT_TRUE(before == DISK_MANAGER(before));
    EXPECT_STREQ("", before.get_path_string());
    fs::create_directory_symlink(root / "renamed", root / "opt");
    EXPECT_TRUE(before == at(root / "renamed"));
}

using DiskRoots = DiskCursor;

TEST_F(DiskRoots, PerUserRootsAreMadeUnderTheUsersFolders) {
    EXPECT_EQ(at(root / "opt/game/data"), DISK_MANAGER(FOLDER_APPDATA));
    EXPECT_EQ(at(base), DISK_MANAGER(FOLDER_BASE));
    const DISK_MANAGER add_ons(FOLDER_ADD_ONS);
    EXPECT_EQ(at(home / ".local/share/Corvane/Tessarine/add_ons"), add_ons);
    EXPECT_EQ(at(home / ".local/share/Corvane/Tessarine/temp"), DISK_MANAGER(FOLDER_TEMP));
    EXPECT_EQ(at(home / "Documents/Corvane/Tessarine"), DISK_MANAGER(FOLDER_USERDATA));

    static const char* cluster = "42";
    set_application_identity({[] { return "Other Game"; }, [] { return cluster; }});
    EXPECT_EQ(at(home / "Documents/Corvane/Other Game"), DISK_MANAGER(FOLDER_USERDATA));
    setenv("XDG_DATA_HOME", (root / "xdg/data").c_str(), 1);
    EXPECT_EQ(at(root / "xdg/data/Corvane/Other Game/42/temp"), DISK_MANAGER(FOLDER_TEMP));
    cluster = "";
    EXPECT_EQ(at(root / "xdg/data/Corvane/Other Game/temp"), DISK_MANAGER(FOLDER_TEMP));
    cluster = "../../escape";  // refused: the fallback beside the application
    EXPECT_EQ(at(base / "temp"), DISK_MANAGER(FOLDER_TEMP));
    setenv("XDG_DATA_HOME", "relative", 1);
    cluster = nullptr;
    EXPECT_EQ(at(home / ".local/share/Corvane/Other Game/temp"), DISK_MANAGER(FOLDER_TEMP));
    set_application_identity({});
    unsetenv("XDG_DATA_HOME");
}

TEST_F(DiskRoots, DocumentsFollowTheDesktopsSetting) {
    fs::create_directories(home / "Meine \"Dokumente\"");
    write(home / ".config/user-dirs.dirs",
          "# comment\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
          "XDG_DOCUMENTS_DIR=\"relative\"\n"
          "  XDG_DOCUMENTS_DIR=\"$HOME/Meine \\\"Dokumente\\\"\"\n");
    EXPECT_EQ(at(home / "Meine \"Dokumente\"/Corvane/Tessarine"), DISK_MANAGER(FOLDER_USERDATA));

    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    ASSERT_TRUE(DISK_MANAGER::get_special_os_folder_list(list, count));
    ASSERT_EQ(1, count);
    EXPECT_STREQ("Documents", list->display_name);
    EXPECT_EQ((home / "Meine \"Dokumente\"").string(), list->name);
    EXPECT_TRUE(list->directory);
    EXPECT_EQ(at(home), list->folder);
    DISK_MANAGER::free_list(list);
    EXPECT_EQ(nullptr, list);

    // Documents that aren't there are not created: the folder beside the application serves.
    write(home / ".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/gone\"\n");
    EXPECT_EQ(at(base / "user_data"), DISK_MANAGER(FOLDER_USERDATA));
    EXPECT_FALSE(fs::exists(home / "gone"));
    EXPECT_FALSE(DISK_MANAGER::get_special_os_folder_list(list, count));
    EXPECT_EQ(0, count);
}

TEST_F(DiskRoots, MissingRootsFallBackOrFailOnTheBaseFolder) {
    fs::remove(root / "opt/game/data");
    DISK_MANAGER disk = at(root);
    EXPECT_FALSE(disk.goto_path(FOLDER_APPDATA));
    EXPECT_EQ(at(base), disk);
    fs::create_directory(root / "data");  // further up counts
    EXPECT_TRUE(disk.goto_path(FOLDER_APPDATA));
    EXPECT_EQ(at(root / "data"), disk);

    // The per-user folder can't be made: a file stands where it should be.
    fs::remove_all(home);
    write(home, "not a folder");
    EXPECT_FALSE(disk.goto_path(FOLDER_ADD_ONS));
    EXPECT_EQ(at(base), disk);
    EXPECT_EQ(at(base / "temp"), DISK_MANAGER(FOLDER_TEMP));
    fs::create_directory(root / "add_ons");
    EXPECT_TRUE(disk.goto_path(FOLDER_ADD_ONS));
    EXPECT_EQ(at(root / "add_ons"), disk);
    EXPECT_TRUE(disk.set_relative_path("$ADD_ONS"));
    EXPECT_EQ(at(root / "add_ons"), disk);
}

TEST_F(DiskRoots, LocalAddOnsLieBesideTheBaseFolder) {
    DISK_MANAGER::use_local_add_ons_path = true;
    fs::create_directory(root / "opt/game/add_ons");
    EXPECT_EQ(at(root / "opt/game/add_ons"), DISK_MANAGER(FOLDER_ADD_ONS));
    EXPECT_FALSE(fs::exists(home / ".local"));
    fs::remove(root / "opt/game/add_ons");
    fs::create_directory(base / "add_ons");
    EXPECT_EQ(at(base / "add_ons"), DISK_MANAGER(FOLDER_ADD_ONS));
    fs::remove(base / "add_ons");
    DISK_MANAGER disk;
    EXPECT_FALSE(disk.goto_path(FOLDER_ADD_ONS));
    EXPECT_EQ(at(base), disk);
}

TEST_F(DiskRoots, AnUnknownRootIsFatal) {
    EXPECT_EXIT(DISK_MANAGER().goto_path(static_cast<FOLDER_ID>(5)), testing::ExitedWithCode(1),
                "Error: DISK_MANAGER::goto_path\\(\\) - unknown path\n"
                "Application was unable to continue");
}

TEST_F(DiskRoots, BaseFolderOfTheExecutableIsThreeLevelsAboveItsFolder) {
    ASSERT_TRUE(DISK_MANAGER::set_base_folder(nullptr));
    fs::path expected = fs::canonical("/proc/self/exe").parent_path();
    for (int i = 0; i < 3; ++i) {
        expected = expected.parent_path();
    }
    EXPECT_EQ(expected.string(), DISK_MANAGER().get_path());
    EXPECT_FALSE(DISK_MANAGER::set_base_folder((root / "missing").c_str()));
    EXPECT_EQ(expected.string(), DISK_MANAGER().get_path());
}

TEST_F(DiskRoots, StoredPathsAreWalkedComponentByComponent) {
    fs::create_directories(base / "a/b");
    DISK_MANAGER disk;
    struct CASE {
        const char* stored;
        bool whole;
        fs::path place;
    };
    const CASE cases[] = {{"$BASE", true, base},
                          {"$BASE/", true, base},
                          {"$BASE//", false, base},
                          {"$BASE//a", false, base / "a"},
                          {"$BASE/a/b", true, base / "a/b"},
                          {"$BASE/a/b/", true, base / "a/b"},
                          {"$BASEa", true, base / "a"},
                          {"$BASE/x/a", false, base / "a"},
                          {"$BASE/a/../b", false, base / "a/b"},
                          {"$APPDATA", true, root / "opt/game/data"},
                          {"$ROOT0", true, "/"},
                          {"$ROOT0/etc", true, "/etc"},
                          {"$ROOT", false, base},
                          {"$ROOT1/etc", false, base},
                          {"$ROOT-1", false, base},
                          {"", false, base},
                          {"/etc", false, base},
                          {"a", false, base},
                          {"$base", false, base}};
    for (const CASE& c : cases) {
        disk.move_to_top();
        EXPECT_EQ(c.whole, disk.set_relative_path(c.stored)) << c.stored;
        EXPECT_EQ(c.place.string(), disk.get_path()) << c.stored;
    }
    EXPECT_FALSE(disk.set_relative_path(nullptr));
    EXPECT_FALSE(disk.set_relative_path(("$BASE/" + std::string(300, 'x') + "/a").c_str()));
    EXPECT_EQ(at(base / "a"), disk);
    EXPECT_TRUE(disk.set_relative_path("$TEMP/downloads/x", true));
    EXPECT_TRUE(fs::is_directory(home / ".local/share/Corvane/Tessarine/temp/downloads/x"));
    // A missing root creates nothing below the base folder.
    fs::remove(root / "opt/game/data");
    EXPECT_FALSE(disk.set_relative_path("$APPDATA/config", true));
    EXPECT_FALSE(fs::exists(base / "config"));
}

TEST_F(DiskRoots, StoredPathsComeBack) {
    fs::create_directories(base / "a/b");
    fs::create_directories(root / "else/x y");
    const DISK_MANAGER add_ons(FOLDER_ADD_ONS);
    fs::create_directories(fs::path(add_ons.get_path()) / "client/app_1");
    const std::pair<fs::path, std::string> cases[] = {
        {base, "$BASE"},
        {base / "a/b", "$BASE/a/b"},
        {root / "opt/game/data", "$APPDATA"},
        {root / "opt/game", std::string("$ROOT0") + (root / "opt/game").string()},
        {root / "else/x y", std::string("$ROOT0") + (root / "else/x y").string()},
        {"/", "$ROOT0"},
        {add_ons.get_path(), "$ADD_ONS"},
        {fs::path(add_ons.get_path()) / "client/app_1", "$ADD_ONS/client/app_1"},
        {DISK_MANAGER(FOLDER_TEMP).get_path(), "$TEMP"},
        {DISK_MANAGER(FOLDER_USERDATA).get_path(), "$USERDATA"}};
    for (const auto& [place, stored] : cases) {
        char out[DISK_MANAGER::PATH_SIZE];
        const DISK_MANAGER disk = at(place);
        EXPECT_TRUE(disk.get_relative_path(out));
        EXPECT_EQ(stored, out);
        DISK_MANAGER back;
        EXPECT_TRUE(back.set_relative_path(out));
        EXPECT_EQ(disk, back) << out;
    }
}

TEST_F(DiskRoots, SerialisesAsABlockAndLoadsGoneFoldersAsTheBase) {
    fs::create_directories(base / "stored");
    const DISK_MANAGER here;
    DATA_FILE* file = here.open_data_file("cursor", FILE_WRITE, 0);
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(1, at(base / "stored").put_to_data_device(*file));
    EXPECT_TRUE(DISK_MANAGER::close(file));
    EXPECT_EQ(nullptr, file);
    EXPECT_EQ(std::string("\xFF$BASE/stored") + std::string(2048 - 12, '\0'),
              read(base / "cursor"));

    const auto load = [&](DISK_MANAGER& disk) {
        DATA_FILE* stored = here.open_data_file("cursor", FILE_READ, 0);
        const unsigned char loaded = disk.get_from_data_device(*stored);
        EXPECT_EQ(loaded == 0, stored->get_error());
        DISK_MANAGER::close(stored);
        return loaded;
    };
    DISK_MANAGER disk = at(root);
    EXPECT_EQ(1, load(disk));
    EXPECT_EQ(at(base / "stored"), disk);
    fs::rename(base / "stored", base / "gone");
    disk = at(root);
    EXPECT_EQ(1, load(disk));
    EXPECT_EQ(at(base), disk);

    // The older forms: a raw cursor counts behind the marker 2 only.
    const std::string raw(at(base / "gone").get_path(), 2048);
    write(base / "cursor", "\2" + raw);
    EXPECT_EQ(1, load(disk));
    EXPECT_EQ(at(base / "gone"), disk);
    write(base / "cursor", "\1" + raw);
    EXPECT_EQ(1, load(disk));
    EXPECT_EQ(at(base), disk);
    write(base / "cursor", std::string("\2") + std::string(2048, '\xAA'));
    EXPECT_EQ(1, load(disk));
    EXPECT_EQ(at(base), disk);
    write(base / "cursor", std::string("\xFF") + std::string(2048, '$'));
    EXPECT_EQ(1, load(disk));
    write(base / "cursor", "\xFF$BASE");
    EXPECT_EQ(0, load(disk));
}

}  // namespace
