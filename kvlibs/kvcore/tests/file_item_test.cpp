// Items over the file system: what they tell, and what they do to it.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "kvcore/file_manager.h"
#include "kvcore/fsref_item.h"
#include "kvcore/text_utilities.h"
#include "temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using KVCORE::DATE;
using KVCORE::FILE_ITEM;
using KVCORE::FILE_NAME;
using KVCORE::FILE_PATH;
using KVCORE::FILE_TYPE;
using KVCORE::FSREF_ITEM;
using KVCORE::STRING;

std::string text(const STRING& string) {
    return KVCORE::TEXT_UTILITIES::to_utf8(STRING(string).get_buffer().as_c16());
}

FILE_NAME name(const char* text) {
    return FILE_NAME(STRING(text));
}

// Where the tests run as root: the right of root to every file is gone as long as this lives, and a
// folder made over to it belongs to an ordinary user.
class ORDINARY_USER {
public:
    explicit ORDINARY_USER(const fs::path& folder) {
        if (::geteuid() == 0) {
            give(folder);
            for (const auto& entry : fs::recursive_directory_iterator(folder)) {
                give(entry.path());
            }
            ::setfsuid(USER);
        }
    }
    ~ORDINARY_USER() { ::setfsuid(::geteuid()); }
    ORDINARY_USER(const ORDINARY_USER&) = delete;
    ORDINARY_USER& operator=(const ORDINARY_USER&) = delete;

private:
    static constexpr uid_t USER = 65534;

    static void give(const fs::path& path) {
        EXPECT_EQ(0, ::lchown(path.c_str(), USER, static_cast<gid_t>(-1)));
    }
};

class FileItem : public testing::Test {
protected:
    FILE_ITEM::HANDLE at(const std::string& path) const {
        return FSREF_ITEM::create((folder.path / path).string());
    }

    TEMPORARY_FOLDER folder;
    FILE_ITEM::HANDLE item = FSREF_ITEM::create(folder.path.string());
};

TEST_F(FileItem, TellsWhatStandsThere) {
    folder.write("b.tar.gz", "12345");
    folder.write("plain", "x");
    folder.write(".profile", "x");
    fs::create_directory(folder.path / "pack.app");
    const auto file = at("b.tar.gz");
    EXPECT_EQ("b.tar", text(file->get_name().get_string()));
    EXPECT_EQ(".gz", text(file->get_type().get_string()));
    EXPECT_EQ((folder.path / "b.tar.gz").string(), text(file->get_path().get_string()));
    EXPECT_EQ(5, file->get_size());
    EXPECT_TRUE(file->is_file() && !file->is_container() && !file->is_hidden());
    EXPECT_FALSE(file->is_root());
    EXPECT_EQ(1, file->touch());
    EXPECT_TRUE(at("plain")->get_type() == KVCORE::FILE_TYPE_NONE);
    EXPECT_EQ("pack.app", text(at("pack.app")->get_name().get_string()));
    EXPECT_TRUE(at("pack.app")->get_type() == KVCORE::FILE_TYPE_APPLICATION_MAC);
    EXPECT_TRUE(item->get_type() == KVCORE::FILE_TYPE_CONTAINER);
    EXPECT_EQ(text(item->get_path().get_string()),
              text(file->get_parent()->get_path().get_string()));
    EXPECT_EQ(text(item->get_parent()->get_path().get_string()),
              text(file->get_ancestor(2)->get_path().get_string()));
    EXPECT_TRUE(file->get_ancestor(1000).is_null());

    // What an item tells leads back to it.
    folder.write(".a.a", "x");
    for (const char* path : {"b.tar.gz", "plain", ".profile", ".a.a"}) {
        const auto found = at(path);
        const auto again = item->get_item(found->get_name(), found->get_type());
        ASSERT_TRUE(again) << path;
        EXPECT_EQ((folder.path / path).filename().string(),
                  text(again->get_path().get_name_and_type()));
    }
    EXPECT_TRUE(item->container_exists(name("pack.app")));
    EXPECT_FALSE(item->exists(name("b.tar"), KVCORE::FILE_TYPE_TEXT));
    EXPECT_TRUE(FSREF_ITEM::create(
        FILE_PATH(STRING((folder.path / "plain").c_str()), FILE_PATH::NAMES_FILE)));
    EXPECT_TRUE(FSREF_ITEM::create(FILE_PATH(STRING("/no/such/file.txt"))).is_null());
    EXPECT_TRUE(FSREF_ITEM::create(FILE_PATH()).is_null());

    const auto root = FSREF_ITEM::create(FILE_PATH::ROOT_PATH);
    EXPECT_TRUE(root->is_root() && root->is_volume() && root->get_parent().is_null());
    EXPECT_EQ(EBUSY, root->remove(KVCORE::FILE_ITEMS_DESCEND));
}

TEST_F(FileItem, NamesInOtherScripts) {
    const FILE_NAME own(STRING(u"\u65E5\u672C \u00E9\U0001F600"));
    const auto file = item->create_item(own, KVCORE::FILE_TYPE_TEXT);
    ASSERT_TRUE(file);
    EXPECT_TRUE(folder.has("\xE6\x97\xA5\xE6\x9C\xAC \xC3\xA9\xF0\x9F\x98\x80.txt"));
    EXPECT_TRUE(file->get_name() == own);
    // Bytes that are no text: the item works, and keeps them through a move.
    folder.write("bad\xFF.txt", "x");
    const auto bad = at("bad\xFF.txt");
    EXPECT_TRUE(bad->get_name() == FILE_NAME(STRING(u"bad\uFFFD")));
    const auto sub = item->create_container(name("sub"));
    EXPECT_EQ(0, bad->move_to(KVCORE::FILE_NAME_UNCHANGED, KVCORE::FILE_TYPE_UNCHANGED, sub));
    EXPECT_TRUE(folder.has("sub/bad\xFF.txt"));
    // A borrowed 8-bit text is Latin 1 by the library's rule.
    const FILE_NAME borrowed(STRING("caf\xE9", KVCORE::COPY_MODE::KEEP));
    EXPECT_TRUE(item->create_item(borrowed, KVCORE::FILE_TYPE_TEXT)->get_name() ==
                FILE_NAME(STRING(u"caf\u00E9")));
    EXPECT_TRUE(folder.has("caf\xC3\xA9.txt"));
}

TEST_F(FileItem, NamesDontLeadOutOfTheFolder) {
    const auto sub = item->create_container(name("sub"));
    folder.write("secret.txt", "x");
    for (const char* evil : {"../secret", "", "..", ".", "a/b", "/etc/passwd"}) {
        EXPECT_FALSE(sub->exists(name(evil), KVCORE::FILE_TYPE_TEXT)) << evil;
        EXPECT_TRUE(sub->create_item(name(evil), KVCORE::FILE_TYPE_CONTAINER).is_null()) << evil;
        EXPECT_NE(0, sub->remove_item(name(evil), KVCORE::FILE_TYPE_NONE, 1)) << evil;
    }
    const char16_t zero[] = {u'a', 0, u'b'};
    EXPECT_TRUE(sub->create_item(FILE_NAME(STRING(zero, 3)), KVCORE::FILE_TYPE_NONE).is_null());
    EXPECT_TRUE(
        item->create_item(FILE_NAME(STRING(std::string(300, 'n').c_str())), KVCORE::FILE_TYPE_NONE)
            .is_null());
    EXPECT_TRUE(folder.has("secret.txt"));
    EXPECT_TRUE(fs::is_empty(folder.path / "sub"));
}

TEST_F(FileItem, FollowsTheObjectAndNotThePath) {
    folder.write("a.txt", "first");
    const auto file = at("a.txt");
    fs::create_directories(folder.path / "x/y");
    fs::rename(folder.path / "a.txt", folder.path / "x/y/moved.txt");
    folder.write("a.txt", "a second file");
    EXPECT_EQ(5, file->get_size());
    EXPECT_EQ("moved", text(file->get_name().get_string()));
    fs::rename(folder.path / "x", folder.path / "z");
    EXPECT_EQ((folder.path / "z/y/moved.txt").string(), text(file->get_path().get_string()));

    fs::remove(folder.path / "z/y/moved.txt");
    EXPECT_FALSE(file->is_file());
    EXPECT_EQ(0, file->get_size());
    EXPECT_TRUE(file->get_name().is_empty());
    EXPECT_FALSE(file->get_path().is_valid());
    EXPECT_EQ(0.0, file->get_date(KVCORE::DATE_OF_CHANGE).get_seconds());
    EXPECT_NE(0, file->remove(0));
    EXPECT_TRUE(file->open_to_read().is_null());
    KVCORE::FILE_PERMISSIONS permissions;
    EXPECT_NE(0, file->get_permissions(permissions));
}

TEST_F(FileItem, CreatesAndReusesItems) {
    const auto file = item->create_item(name("a"), KVCORE::FILE_TYPE_TEXT);
    ASSERT_TRUE(file);
    folder.write("a.txt", "kept");
    EXPECT_EQ(4, item->create_item(name("a"), KVCORE::FILE_TYPE_TEXT)->get_size());
    EXPECT_TRUE(item->create_container(name("d"))->is_container());
    EXPECT_TRUE(item->create_container(name("d"))->is_container());
    EXPECT_TRUE(file->create_container(name("d")).is_null());
    const auto stream = item->get_container(name("d"))->open_file_to_write(
        name("n"), KVCORE::FILE_TYPE_NONE, KVCORE::WRITE_FROM_START);
    ASSERT_TRUE(stream);
    EXPECT_TRUE(folder.has("d/n"));
    EXPECT_TRUE(item->open_file_to_read(name("missing"), KVCORE::FILE_TYPE_NONE).is_null());
    ASSERT_EQ(0, ::mkfifo((folder.path / "pipe").c_str(), 0600));
    EXPECT_TRUE(at("pipe")->open_to_read().is_null()) << "doesn't wait for a writer either";
    EXPECT_TRUE(at("d")->open_to_read().is_null());
}

TEST_F(FileItem, RenamesAndMovesWithoutReplacing) {
    folder.write("a.txt", "a");
    folder.write("b.txt", "b");
    fs::create_directory(folder.path / "sub");
    const auto file = at("a.txt");
    EXPECT_EQ(EEXIST, file->rename_as(name("b"), KVCORE::FILE_TYPE_UNCHANGED));
    EXPECT_EQ("b", folder.read("b.txt"));
    EXPECT_EQ(0, file->rename_as(KVCORE::FILE_NAME_UNCHANGED, KVCORE::FILE_TYPE_UNCHANGED));
    EXPECT_EQ(0, file->rename_as(name("c"), KVCORE::FILE_TYPE_UNCHANGED));
    EXPECT_EQ(0, file->rename_as(KVCORE::FILE_NAME_UNCHANGED, KVCORE::FILE_TYPE_LOG));
    EXPECT_TRUE(folder.has("c.log"));
    EXPECT_EQ(EINVAL, file->rename_as(name("../c"), KVCORE::FILE_TYPE_UNCHANGED));

    const auto sub = at("sub");
    EXPECT_EQ(0, file->move_to(name("d"), KVCORE::FILE_TYPE_UNCHANGED, sub));
    EXPECT_EQ("a", folder.read("sub/d.log"));
    EXPECT_EQ("d", text(file->get_name().get_string()));
    EXPECT_EQ(FSREF_ITEM::WRONG_TARGET,
              file->move_to(name("e"), KVCORE::FILE_TYPE_UNCHANGED, nullptr));
    EXPECT_EQ(FSREF_ITEM::WRONG_TARGET, file->move_to(name("e"), KVCORE::FILE_TYPE_UNCHANGED,
                                                      FILE_ITEM::HANDLE(new FILE_ITEM)));
    EXPECT_EQ(ENOTDIR, file->move_to(name("e"), KVCORE::FILE_TYPE_UNCHANGED, at("b.txt")));
    EXPECT_NE(0, item->move_to(name("in"), KVCORE::FILE_TYPE_UNCHANGED, sub)) << "into itself";
    EXPECT_EQ(0, sub->rename_as(name("pack.app"), KVCORE::FILE_TYPE_UNCHANGED));
    EXPECT_TRUE(folder.has("pack.app/d.log"));
}

TEST_F(FileItem, CopiesWholeOrNotAtAll) {
    folder.write("tree/deep/a.txt", "a");
    folder.write("outside.txt", "o");
    fs::create_symlink("../outside.txt", folder.path / "tree/link");
    fs::permissions(folder.path / "tree/deep/a.txt", fs::perms(0440));
    fs::permissions(folder.path / "tree/deep", fs::perms(0550));
    const auto tree = at("tree");
    const auto target = item->create_container(name("target"));
    const auto copy = tree->copy_to(name("copy"), KVCORE::FILE_TYPE_UNCHANGED, target);
    ASSERT_TRUE(copy);
    EXPECT_EQ("a", folder.read("target/copy/deep/a.txt"));
    EXPECT_TRUE(fs::is_symlink(folder.path / "target/copy/link"));
    EXPECT_EQ(fs::perms(0440), fs::status(folder.path / "target/copy/deep/a.txt").permissions());
    EXPECT_EQ(fs::perms(0550), fs::status(folder.path / "target/copy/deep").permissions());
    EXPECT_EQ(fs::last_write_time(folder.path / "tree/deep"),
              fs::last_write_time(folder.path / "target/copy/deep"));
    fs::permissions(folder.path / "target/copy/deep", fs::perms(0750));
    fs::permissions(folder.path / "tree/deep", fs::perms(0750));

    EXPECT_TRUE(tree->copy_to(name("copy"), KVCORE::FILE_TYPE_UNCHANGED, target).is_null());
    EXPECT_TRUE(tree->copy_to(name("x"), KVCORE::FILE_TYPE_UNCHANGED, tree).is_null())
        << "into itself";
    EXPECT_TRUE(tree->copy_to(name("x"), KVCORE::FILE_TYPE_UNCHANGED, nullptr).is_null());
    // A failure in the middle leaves nothing behind.
    ASSERT_EQ(0, ::mkfifo((folder.path / "tree/deep/pipe").c_str(), 0600));
    EXPECT_TRUE(tree->copy_to(name("half"), KVCORE::FILE_TYPE_UNCHANGED, target).is_null());
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.path / "target"), {}));
    fs::remove(folder.path / "tree/deep/pipe");

    const auto manual = tree->copy_container_manually(KVCORE::FILE_NAME_UNCHANGED, target);
    ASSERT_TRUE(manual);
    EXPECT_EQ("a", folder.read("target/tree/deep/a.txt"));
    EXPECT_TRUE(tree->copy_container_manually(KVCORE::FILE_NAME_UNCHANGED, target).is_null());
}

TEST_F(FileItem, CopiesLockedFoldersWithTheirRights) {
    folder.write("locked/deep/a.txt", "a");
    fs::create_directory(folder.path / "target");
    fs::permissions(folder.path / "locked/deep", fs::perms(0555));
    fs::permissions(folder.path / "locked", fs::perms(0555));
    {
        const ORDINARY_USER user(folder.path);
        const auto copy = at("locked")->copy_to(KVCORE::FILE_NAME_UNCHANGED,
                                                KVCORE::FILE_TYPE_UNCHANGED, at("target"));
        EXPECT_TRUE(copy);
    }
    EXPECT_EQ("a", folder.read("target/locked/deep/a.txt"));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.path / "target"), {}));
    for (const char* path : {"target/locked", "target/locked/deep", "locked", "locked/deep"}) {
        EXPECT_EQ(fs::perms(0555), fs::status(folder.path / path).permissions()) << path;
        fs::permissions(folder.path / path, fs::perms(0755));
    }
}

TEST_F(FileItem, RemovesByItsFlags) {
    folder.write("tree/deep/a.txt", "a");
    folder.write("kept.txt", "k");
    fs::create_directory_symlink(folder.path, folder.path / "tree/deep/up");
    const auto tree = at("tree");
    EXPECT_EQ(ENOTEMPTY, tree->remove(0));
    EXPECT_EQ(0, tree->remove(KVCORE::FILE_ITEMS_KEEP | KVCORE::FILE_ITEMS_DESCEND));
    EXPECT_TRUE(folder.has("tree/deep/a.txt"));
    EXPECT_EQ(0, tree->remove(KVCORE::FILE_ITEMS_DESCEND));
    EXPECT_FALSE(folder.has("tree"));
    EXPECT_TRUE(folder.has("kept.txt")) << "what an alias leads to isn't touched";

    folder.write("locked.txt", "l");
    const auto locked = at("locked.txt");
    EXPECT_EQ(0, locked->set_permissions({KVCORE::FILE_PERMISSIONS::LOCKED}));
    KVCORE::FILE_PERMISSIONS permissions;
    EXPECT_EQ(0, locked->get_permissions(permissions));
    EXPECT_TRUE(permissions.is_locked());
    EXPECT_EQ(EPERM, locked->remove(0));
    EXPECT_EQ(0,
              item->remove_item(name("locked"), KVCORE::FILE_TYPE_TEXT, KVCORE::FILE_ITEMS_UNLOCK));
    EXPECT_EQ(1, item->remove_container(name("missing"), 0));
}

TEST_F(FileItem, KeepsDates) {
    folder.write("a.txt", "a");
    const auto file = at("a.txt");
    const DATE then(KVCORE::GREGORIAN_DATE{2019, 2, 28, 6, 7, 8});
    EXPECT_EQ(0, file->set_date(KVCORE::DATE_OF_CHANGE, then));
    EXPECT_EQ(then.get_seconds(), file->get_date(KVCORE::DATE_OF_CHANGE).get_seconds());
    const double created = file->get_date(KVCORE::DATE_OF_CREATION).get_seconds();
    EXPECT_NEAR(static_cast<double>(::time(nullptr)) - 978307200.0, created, 600.0);
    const KVCORE::RESULT result = file->set_date(KVCORE::DATE_OF_CREATION, DATE(12345.5));
    if (result == ENOTSUP) {
        GTEST_SKIP() << "no attributes on this volume";
    }
    EXPECT_EQ(0, result);
    EXPECT_EQ(12345.5, file->get_date(KVCORE::DATE_OF_CREATION).get_seconds());
    fs::permissions(folder.path / "a.txt", fs::perms(0440));
    const auto copy = file->copy_to(name("copy"), KVCORE::FILE_TYPE_UNCHANGED, item);
    ASSERT_TRUE(copy);
    EXPECT_EQ(12345.5, copy->get_date(KVCORE::DATE_OF_CREATION).get_seconds());
    EXPECT_EQ(then.get_seconds(), copy->get_date(KVCORE::DATE_OF_CHANGE).get_seconds());
}

// Tests that lead the user's folders elsewhere.
class FileManager : public FileItem {
protected:
    FileManager() {
        ::setenv("HOME", folder.path.c_str(), 1);
        for (const char* variable :
             {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "TMPDIR"}) {
            ::unsetenv(variable);
        }
    }
};

TEST_F(FileManager, TrashTakesAFolderWhole) {
    folder.write("tree/a b.txt", "a");
    folder.write("other/tree/c.txt", "c");
    const auto tree = at("tree");
    EXPECT_EQ(0, tree->remove(KVCORE::FILE_ITEMS_TRASH | KVCORE::FILE_ITEMS_DESCEND));
    EXPECT_EQ("a", folder.read(".local/share/Trash/files/tree/a b.txt"));
    EXPECT_EQ(0, at("other/tree")->remove(KVCORE::FILE_ITEMS_TRASH));
    EXPECT_EQ("c", folder.read(".local/share/Trash/files/tree.2/c.txt"));
    const std::string note = folder.read(".local/share/Trash/info/tree.2.trashinfo");
    EXPECT_NE(std::string::npos,
              note.find("[Trash Info]\nPath=" + (folder.path / "other/tree\n").string()));
    EXPECT_TRUE(tree->is_container()) << "the item follows";
}

TEST_F(FileManager, TrashThatIsFullLeavesNoNote) {
    folder.write("a.txt", "a");
    const auto file = at("a.txt");
    fs::create_directories(folder.path / ".local/share/Trash/info");
    rlimit old;
    ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &old));
    const rlimit nothing{0, old.rlim_max};
    auto* const old_action = ::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &nothing));
    const KVCORE::RESULT result = file->remove(KVCORE::FILE_ITEMS_TRASH);
    ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &old));
    ::signal(SIGXFSZ, old_action);
    EXPECT_EQ(EFBIG, result);
    EXPECT_EQ("a", folder.read("a.txt"));
    EXPECT_TRUE(fs::is_empty(folder.path / ".local/share/Trash/info"));
}

TEST_F(FileManager, KnowsTheWellKnownFolders) {
    folder.write(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/My Papers\"\n");
    KVCORE::FILE_MANAGER manager;
    EXPECT_EQ(&manager, KVCORE::FILE_MANAGER::get_instance());
    EXPECT_TRUE(manager.get_special_item(KVCORE::SPECIAL_ITEM_CACHE_ROOT).is_null());
    ASSERT_EQ(0, manager.initialise());
    const auto path = [&](const KVCORE::SYMBOL& symbol) {
        const auto found = manager.get_special_item(symbol);
        return found ? text(found->get_path().get_string()) : std::string();
    };
    const auto below_home = [&](const char* below) {
        return text(FILE_PATH(STRING((folder.path / below).c_str())).get_string());
    };
    EXPECT_EQ(below_home("My Papers"), path(KVCORE::SPECIAL_ITEM_DOCUMENTS_ROOT));
    EXPECT_EQ(below_home("Pictures"), path(KVCORE::SPECIAL_ITEM_PICTURES_ROOT));
    EXPECT_EQ(below_home(".local/state"), path(KVCORE::SPECIAL_ITEM_LOGS_ROOT));
    EXPECT_EQ("/tmp/", path(KVCORE::SPECIAL_ITEM_TEMPORARY_FILES_ROOT));
    EXPECT_TRUE(folder.has("Public")) << "made as it was missing";
    const auto application = manager.get_special_item(KVCORE::SPECIAL_ITEM_APPLICATION_ROOT);
    EXPECT_TRUE(application->exists(name("kvcore_file_test"), KVCORE::FILE_TYPE_NONE));
    EXPECT_EQ(application, manager.get_special_item(KVCORE::SPECIAL_ITEM_WORKING_ROOT));

    const KVCORE::SYMBOL own(STRING("own root"));
    EXPECT_TRUE(manager.get_special_item(own).is_null());
    manager.register_special_item(own, item);
    EXPECT_EQ(item, manager.get_special_item(own));
    EXPECT_EQ(manager.get_root_item(), manager.get_item_at(FILE_PATH::ROOT_PATH));
    folder.write("a.txt", "");
    const FILE_PATH file(STRING((folder.path / "a.txt").c_str()));
    EXPECT_TRUE(manager.exists(file) && manager.get_item_at(file));
    EXPECT_FALSE(manager.exists(FILE_PATH(STRING("/no/such/thing"))));
    manager.shutdown();
    EXPECT_TRUE(manager.get_special_item(own).is_null());
}

TEST_F(FileManager, GoesOnWithoutAHome) {
    folder.write("file", "");
    ::setenv("HOME", (folder.path / "file").c_str(), 1);  // no folder can be made there
    KVCORE::FILE_MANAGER manager;
    EXPECT_EQ(0, manager.initialise());
    EXPECT_TRUE(manager.get_special_item(KVCORE::SPECIAL_ITEM_CACHE_ROOT).is_null());
    EXPECT_FALSE(manager.get_special_item(KVCORE::SPECIAL_ITEM_TEMPORARY_FILES_ROOT).is_null());
    manager.shutdown();
}

TEST(FileItemBase, CanDoNothing) {
    const FILE_ITEM::HANDLE base(new FILE_ITEM);
    KVCORE::REFERENCE_COUNTER<KVCORE::FILE_ITEMS> items;
    EXPECT_EQ(1, base->remove(0));
    EXPECT_EQ(1, base->get_items(KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, items, 0));
    EXPECT_EQ(1, base->remove_content(0));
    EXPECT_TRUE(base->get_type() == KVCORE::FILE_TYPE_NONE);
    EXPECT_TRUE(base->create_container(name("x")).is_null());
    EXPECT_EQ(base, base->get_ancestor(0));
    EXPECT_TRUE(base->get_ancestor(1).is_null());
}

}  // namespace
