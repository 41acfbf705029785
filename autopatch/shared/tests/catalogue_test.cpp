// The catalogue survives damage, full disks and kills, and its lists follow their rules.
#include "autopatch/add_ons_manager.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <thread>

#include "autopatch/autopatch_types.h"
#include "platform/network_message.h"
#include "stored_bytes.h"
#include "temporary_installation.h"

namespace {

const std::vector<std::uint8_t> EMPTY_CATALOGUE = {0, 0x54, 0x06, 0, 0, 0, 0, 0, 0, 0, 0};

std::unique_ptr<ADD_ON> make_add_on(const char* path, std::uint16_t version,
                                    ADD_ON::ADD_ON_TYPE type = ADD_ON::ADD_ON_MISC) {
    auto add_on = std::make_unique<ADD_ON>();
    add_on->type = type;
    add_on->version = version;
    add_on->invalid = false;
    add_on->set_path(path);
    return add_on;
}

ADD_ON& attach(ADD_ON& parent, std::unique_ptr<ADD_ON> child) {
    ADD_ON* released = child.release();
    released->set_parent(parent);
    return *released;
}

class Catalogue : public testing::Test {
protected:
    ~Catalogue() override { ADD_ONS_MANAGER::shutdown(); }

    static ADD_ONS_MANAGER& start(bool verify = false) {
        ADD_ONS_MANAGER::shutdown();
        ADD_ONS_MANAGER::startup(verify);
        return *ADD_ONS_MANAGER::get_instance();
    }
    // The paths of a list, with versions: "a1 b2".
    static std::string describe(const PTRARRAY& list) {
        std::string text;
        for (std::int32_t i = 0; i < list.get_count(); ++i) {
            const ADD_ON& add_on = *list.get<ADD_ON>(i);
            text += (i ? " " : "") + std::string(add_on.path) + std::to_string(add_on.version);
        }
        return text;
    }
    std::filesystem::path file() const { return installation.add_ons("add_ons.bin"); }
    void write_file(const STORED_BYTES& content) const {
        STORED_BYTES whole;
        installation.write(file(), whole.u8(0).append(content).bytes);
    }

    TEMPORARY_INSTALLATION installation;
};

TEST_F(Catalogue, AStartWithoutFileWritesAnEmptyOne) {
    start();
    EXPECT_EQ(EMPTY_CATALOGUE, installation.read(file()));
    EXPECT_FALSE(std::filesystem::exists(installation.add_ons("add_ons.bin.tmp")));
}

TEST_F(Catalogue, IsStoredAndLoaded) {
    ADD_ONS_MANAGER& first = start();
    auto top = make_add_on("match3d", 3);
    attach(*top, make_add_on("textures", 9));
    first.set_add_on(top.get(), 1);
    first.set_add_on(make_add_on("saffrane", 4, ADD_ON::ADD_ON_SKIN).get(), 0);
    first.available.add(make_add_on("shown", 7).release());
    EXPECT_TRUE(first.unviewed_available_add_ons());
    first.set_all_viewed();
    EXPECT_FALSE(first.unviewed_available_add_ons());
    const auto bytes = installation.read(file());

    ADD_ONS_MANAGER& second = start();
    EXPECT_EQ("match3d3 saffrane4", describe(second.installed));
    EXPECT_EQ("shown7", describe(second.viewed));
    EXPECT_EQ(bytes, installation.read(file()));
    EXPECT_FALSE(second.new_add_on(make_add_on("shown", 1).get()));
    EXPECT_FALSE(second.new_add_on(make_add_on("saffrane", 1).get()));
    EXPECT_TRUE(second.new_add_on(make_add_on("other", 1).get()));

    ADD_ON* child = second.get_add_on("textures", 0);
    ASSERT_NE(nullptr, child);
    EXPECT_EQ("match3d", std::string(child->parent->path));
    attach(*child, make_add_on("grandchild", 1));
    EXPECT_EQ(nullptr, second.get_add_on("grandchild", 0));
    child->set_title("Textures");
    EXPECT_EQ(child, second.get_add_on("Textures", 1));
    EXPECT_EQ(nullptr, second.get_add_on("Textures", 0));
}

TEST_F(Catalogue, OlderFormatsAndTheOtherByteOrderAreLoadedAndRewritten) {
    for (const bool big : {false, true}) {
        STORED_BYTES old_form(big);
        old_form.u8(big ? 1 : 0).u16(1000).u32(1).head(1, 5, 1, "old").text("line").empty_image();
        installation.write(file(), old_form.bytes);
        EXPECT_EQ("old5", describe(start().installed));
        EXPECT_EQ("", describe(ADD_ONS_MANAGER::get_instance()->viewed));
        EXPECT_EQ(0, installation.read(file())[0]);
        EXPECT_EQ(0x54, installation.read(file())[1]);
    }
}

TEST_F(Catalogue, WhatCanBeReadOfADamagedFileStands) {
    STORED_BYTES good;
    good.u16(1620).u32(2).plain_record("a").plain_record("b").u32(1).plain_record("v");
    STORED_BYTES one;
    const std::size_t record = one.plain_record("a").bytes.size();
    for (std::size_t size = 0; size <= good.bytes.size(); ++size) {
        STORED_BYTES cut = good;
        cut.bytes.resize(size);
        write_file(cut);
        const std::string expected = size < 6 + record       ? ""
                                     : size < 6 + 2 * record ? "a5"
                                                             : "a5 b5";
        EXPECT_EQ(expected, describe(start().installed)) << size;
        EXPECT_EQ(size == good.bytes.size() ? "v5" : "",
                  describe(ADD_ONS_MANAGER::get_instance()->viewed));
        // What is left is a good file again.
        EXPECT_EQ(expected, describe(start().installed)) << size;
    }
}

TEST_F(Catalogue, AFileWithoutASingleByteIsRewritten) {
    installation.write(file(), std::string());
    start();
    EXPECT_EQ(EMPTY_CATALOGUE, installation.read(file()));
}

TEST_F(Catalogue, PromisedCountsAndTamperedPathsDoNoHarm) {
    STORED_BYTES promises;
    promises.u16(1620).u32(1).plain_record("a").u32(0xFFFFFFFFu);
    promises.plain_record("v").head(9, 0, 0, "bad").plain_record("w");
    write_file(promises);
    EXPECT_EQ("a5", describe(start().installed));
    EXPECT_EQ('v', describe(ADD_ONS_MANAGER::get_instance()->viewed)[0]);

    STORED_BYTES tampered;
    tampered.u16(1620).u32(3).plain_record("a").plain_record("../..").plain_record("b").u32(0);
    write_file(tampered);
    EXPECT_EQ("a5", describe(start(true).installed));
}

TEST_F(Catalogue, AFailedSaveKeepsTheFormerFile) {
    ADD_ONS_MANAGER& manager = start();
    manager.set_add_on(make_add_on("precious", 1).get(), 0);
    const auto former = installation.read(file());
    auto large = make_add_on("large", 1);
    large->image->reset(400, 400);

    // As on a full disk.
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
    const auto former_handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit small{65536, limit.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    manager.set_add_on(large.get(), 1);
    const bool saved = manager.save();
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &limit));
    signal(SIGXFSZ, former_handler);
    EXPECT_FALSE(saved);
    EXPECT_EQ(former, installation.read(file()));
    EXPECT_FALSE(std::filesystem::exists(installation.add_ons("add_ons.bin.tmp")));

    std::filesystem::create_directory(installation.add_ons("add_ons.bin.tmp"));
    EXPECT_FALSE(manager.save());
    EXPECT_EQ(former, installation.read(file()));
    std::filesystem::remove(installation.add_ons("add_ons.bin.tmp"));
    EXPECT_TRUE(manager.save());
    EXPECT_EQ("precious1 large1", describe(start().installed));
}

TEST_F(Catalogue, AKillLeavesTheOldOrTheNewFile) {
    start().set_add_on(make_add_on("always", 1).get(), 0);
    for (int round = 0; round < 15; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            ADD_ONS_MANAGER& manager = *ADD_ONS_MANAGER::get_instance();
            auto large = make_add_on("always", 1);
            large->image->reset(200, 200);
            for (int i = 0; i < 100000; ++i) {
                manager.set_add_on(large.get(), 0);
                manager.set_add_on(make_add_on("always", 1).get(), 0);
            }
            _exit(0);
        }
        ASSERT_GT(child, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(3 + round * 2));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        ASSERT_TRUE(WIFSIGNALED(status));
        const std::size_t size = installation.read(file()).size();
        ASSERT_EQ("always1", describe(start().installed)) << round;
        EXPECT_EQ(size, installation.read(file()).size()) << "the file was whole";
    }
}

TEST_F(Catalogue, TheCheckAgainstTheDiskMarksWhatDoesNotFit) {
    const auto write = [this](const char* name, const char* content) {
        installation.write(installation.add_ons(name), std::string(content));
    };
    write("client/app_7/readme", "");
    write("skins/good/skin.cfg", "internal_version\n\t3\n");
    write("skins/old/skin.cfg", "internal_version\n\t2\n");
    std::filesystem::create_directories(installation.add_ons("skins/empty"));
    write("fine/defaults.cfg", "version\n\t3\n");
    write("high/defaults.cfg", "version\n\t65539\n");
    write("keyless/defaults.cfg", "title\n\tx\n");
    write("fileless/readme", "");
    write("tree/one/defaults.cfg", "version\n\t3\n");

    ADD_ONS_MANAGER& manager = start(true);
    const auto is_marked = [&manager](std::unique_ptr<ADD_ON> add_on) {
        manager.verify_installed_add_on_version(*add_on);
        return add_on->invalid;
    };
    EXPECT_FALSE(is_marked(make_add_on("app", 7, ADD_ON::ADD_ON_APPLICATION)));
    EXPECT_TRUE(is_marked(make_add_on("app", 8, ADD_ON::ADD_ON_APPLICATION)));
    EXPECT_FALSE(is_marked(make_add_on("good", 3, ADD_ON::ADD_ON_SKIN)));
    EXPECT_TRUE(is_marked(make_add_on("old", 3, ADD_ON::ADD_ON_SKIN)));
    EXPECT_TRUE(is_marked(make_add_on("empty", 0, ADD_ON::ADD_ON_SKIN)));
    EXPECT_TRUE(is_marked(make_add_on("missing", 3, ADD_ON::ADD_ON_SKIN)));
    EXPECT_FALSE(is_marked(make_add_on("fine", 3)));
    EXPECT_TRUE(is_marked(make_add_on("fine", 4)));
    EXPECT_TRUE(is_marked(make_add_on("high", 3)));
    EXPECT_TRUE(is_marked(make_add_on("keyless", 0)));
    EXPECT_TRUE(is_marked(make_add_on("fileless", 0)));

    auto tree = make_add_on("tree", 999);
    attach(*tree, make_add_on("one", 3));
    attach(*tree, make_add_on("two", 3));
    manager.set_add_on(tree.get(), 0);
    // The mark is stored; the parent itself isn't checked, and the rest survives.
    ADD_ON& stored = *start(false).get_add_on("tree", 0);
    EXPECT_FALSE(stored.invalid);
    EXPECT_FALSE(stored.get_child(0)->invalid);
    EXPECT_TRUE(stored.get_child(1)->invalid);
}

TEST_F(Catalogue, AServerListIsTakenWholeOrNotAtAll) {
    ADD_ONS_MANAGER& manager = start();
    const auto set = [&manager](const STORED_BYTES& bytes) {
        NETWORK_MESSAGE message;
        bytes.put_into(message);
        return manager.set_available(1620, message);
    };
    const auto list = [](unsigned count, unsigned stored) {
        STORED_BYTES bytes;
        bytes.u32(count);
        for (unsigned i = 0; i < stored; ++i) {
            bytes.plain_record("p" + std::to_string(i));
        }
        return bytes;
    };
    EXPECT_TRUE(set(list(1000, 1000)));
    EXPECT_EQ(1000, manager.available.get_count());
    EXPECT_FALSE(set(list(1001, 1001)));
    EXPECT_EQ(0, manager.available.get_count());
    EXPECT_FALSE(set(list(0xFFFFFFFFu, 1)));
    EXPECT_TRUE(set(list(0, 1)));
    EXPECT_EQ(0, manager.available.get_count());
    EXPECT_FALSE(set(list(3, 2)));
    EXPECT_EQ(0, manager.available.get_count());
    EXPECT_FALSE(set(STORED_BYTES()));
    EXPECT_FALSE(set(list(2, 1).plain_record("..")));
    EXPECT_EQ(EMPTY_CATALOGUE, installation.read(file()));
}

TEST_F(Catalogue, ANewerStoredRecordOfTheSameShapeStays) {
    ADD_ONS_MANAGER& manager = start();
    manager.set_add_on(make_add_on("x", 5).get(), 1);
    manager.set_add_on(make_add_on("y", 1).get(), 1);
    manager.set_add_on(make_add_on("x", 4).get(), 1);
    EXPECT_EQ("x5 y1", describe(manager.installed));
    manager.set_add_on(make_add_on("x", 5).get(), 1);  // equal isn't newer: replaced
    EXPECT_EQ("y1 x5", describe(manager.installed));
    auto other_flag = make_add_on("x", 2);
    other_flag->invalid = true;
    manager.set_add_on(other_flag.get(), 1);
    EXPECT_EQ("y1 x2", describe(manager.installed));

    auto tree = make_add_on("t", 9);
    attach(*tree, make_add_on("a", 9));
    manager.set_add_on(tree.get(), 1);
    auto other_children = make_add_on("t", 1);
    ADD_ON& arrived = attach(*other_children, make_add_on("b", 1));
    manager.set_add_on(&arrived, 1);  // a child brings its whole tree
    EXPECT_EQ("y1 x2 t1", describe(manager.installed));
    EXPECT_NE(nullptr, manager.get_add_on("b", 0));
    EXPECT_EQ(nullptr, manager.get_add_on("a", 0));
    EXPECT_EQ(EMPTY_CATALOGUE, installation.read(file()));  // all in bulk
}

TEST_F(Catalogue, RecordsOfTheListItselfMayBeSetAndRemoved) {
    ADD_ONS_MANAGER& manager = start();
    auto tree = make_add_on("t", 1);
    attach(*tree, make_add_on("a", 1));
    attach(*tree, make_add_on("b", 1));
    manager.set_add_on(tree.get(), 1);
    manager.set_add_on(manager.get_add_on("t", 0), 1);
    manager.set_add_on(manager.get_add_on("b", 0), 1);
    EXPECT_EQ("t1", describe(manager.installed));
    EXPECT_EQ(2, manager.get_add_on("t", 0)->get_child_count());

    manager.remove_add_on(manager.get_add_on("a", 0), 0, 1);
    EXPECT_EQ(nullptr, manager.get_add_on("a", 0));
    EXPECT_EQ(1, manager.get_add_on("t", 0)->get_child_count());

    // A top record that is called like a child of another one takes its place.
    manager.set_add_on(make_add_on("b", 2).get(), 1);
    EXPECT_EQ("t1 b2", describe(manager.installed));
    EXPECT_EQ(0, manager.get_add_on("t", 0)->get_child_count());

    // A record that only has the same path is not the catalogue's to delete.
    const auto foreign = make_add_on("t", 77);
    manager.remove_add_on(foreign.get(), 0, 0);
    EXPECT_EQ("b2", describe(manager.installed));
    EXPECT_EQ("b2", describe(start().installed));
}

TEST_F(Catalogue, RemovingFilesReachesTheAddOnsFolderOnly) {
    ADD_ONS_MANAGER& manager = start();
    for (const char* name : {"tree/a/f", "tree/b/f", "a/f", "skins/a/f", "skins/b/f",
                             "client/app_1/f", "../outside/f"}) {
        installation.write(installation.add_ons(name), std::string("x"));
    }
    const auto exists = [this](const char* name) {
        return std::filesystem::exists(installation.add_ons(name));
    };
    auto tree = make_add_on("tree", 1);
    attach(*tree, make_add_on("a", 1));
    manager.set_add_on(tree.get(), 1);
    manager.remove_add_on(manager.get_add_on("a", 0), 1, 1);
    EXPECT_FALSE(exists("tree/a"));
    EXPECT_TRUE(exists("tree/b/f") && exists("a/f") && exists("skins/a/f"));

    manager.set_add_on(make_add_on("a", 1, ADD_ON::ADD_ON_SKIN).get(), 1);
    manager.remove_add_on(manager.get_add_on("a", 0), 1, 1);
    EXPECT_FALSE(exists("skins/a"));
    for (const char* path : {"..", "../outside", ".", "", "client", "skins"}) {
        for (const auto type :
             {ADD_ON::ADD_ON_APPLICATION, ADD_ON::ADD_ON_MISC, ADD_ON::ADD_ON_SKIN}) {
            manager.remove_add_on(make_add_on(path, 1, type).get(), 1, 1);
        }
    }
    EXPECT_TRUE(exists("client/app_1/f") && exists("skins/b/f") && exists("../outside/f"));
}

}  // namespace
