// From an archive to an installed add-on, and what of the old state survives a failure.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "autopatch/fetch_cursor.h"
#include "engine_test.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::uint16_t FILE_REQUEST = AUTOPATCH_MESSAGE_FILE_REQUEST;

class INSTALL_TEST : public ENGINE_TEST {
protected:
    // Has the server send `archive` for `add_on`, until the engine is done or fails.
    void download(const ADD_ON& add_on, const std::string& archive) {
        begin_download({&add_on});
        serve_blocks(archive);
        pump_until([&] { return all_done() || error() != AUTOPATCH_OK; });
    }
    std::vector<std::string> requested_paths() const {
        std::vector<std::string> paths;
        for (const auto& request : peer->requests) {
            if (request.id == FILE_REQUEST) {
                paths.push_back(request.path);
            }
        }
        return paths;
    }
    // A composite of that many children, all to be fetched.
    static std::unique_ptr<ADD_ON> make_composite(const char* path, int children) {
        auto top = make_add_on(ADD_ON::ADD_ON_MISC, path, 3);
        for (int i = 0; i < children; ++i) {
            make_add_on(ADD_ON::ADD_ON_MISC, ("part" + std::to_string(i)).c_str(), 3, 1000)
                .release()
                ->set_parent(*top);
        }
        return top;
    }
};

}  // namespace

TEST_F(INSTALL_TEST, ABadArchiveLeavesTheOldVersionAndTheCatalogueAlone) {
    struct CASE {
        const char* what;
        std::string archive;
        AUTOPATCH_ERROR_CODE code;
        const char* reason;
    };
    const std::string good = make_client_archive("new", 3000);
    const std::vector<CASE> cases = {
        {"no gzip file", "this is no gzip file", AUTOPATCH_ERROR_UNZIP, "unzipped"},
        {"cut off", good.substr(0, good.size() - 500), AUTOPATCH_ERROR_UNZIP, "unzipped"},
        {"no check file", make_gzip(make_tar({{"other.cfg", "x"}})), AUTOPATCH_ERROR_EXTRACT,
         "has no file autopatch.cfg"},
        {"empty package", make_gzip(make_tar({})), AUTOPATCH_ERROR_EXTRACT, "has no file"},
        {"up", make_gzip(make_tar({{"autopatch.cfg", "x"}, {"../../evil", "x"}})),
         AUTOPATCH_ERROR_EXTRACT, "evil"},
        {"absolute", make_gzip(make_tar({{"autopatch.cfg", "x"}, {"/evil", "x"}})),
         AUTOPATCH_ERROR_EXTRACT, "evil"},
        {"link", make_gzip(make_tar({{"autopatch.cfg", "x"}, {"evil", "", '2', ".."}})),
         AUTOPATCH_ERROR_EXTRACT, "evil"},
    };
    install_client(6);
    write_file(folders.client() / "app_7" / "autopatch.cfg", "a former 7");
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    for (const CASE& test : cases) {
        SCOPED_TRACE(test.what);
        download(*app, test.archive);
        EXPECT_EQ(error(), test.code);
        EXPECT_GE(log.count(test.reason), 1);
        EXPECT_STREQ(AUTOPATCH_SYSTEM::get_current_version(), "app_6");
        EXPECT_EQ(read_file(folders.client() / "app_6" / "autopatch.cfg"), "old");
        EXPECT_EQ(read_file(folders.client() / "app_7" / "autopatch.cfg"), "a former 7");
        EXPECT_FALSE(fs::exists(folders.client() / "incoming"));
        EXPECT_FALSE(fs::exists(folders.add_ons() / "evil"));
        EXPECT_TRUE(fs::is_empty(folders.downloads()));
        EXPECT_EQ(engine->get_progress().current_index, 0);
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
}

TEST_F(INSTALL_TEST, AWrongChecksumOfTheArchive) {
    install_client(6);
    const std::string archive = make_client_archive("new", 3000);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    begin_download({app.get()});
    pump_until_requests(FILE_REQUEST, 1);
    peer->send_block({0, archive, true, crc_of(archive), crc_of(archive) ^ 1});
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CORRUPT_DOWNLOAD);
    EXPECT_TRUE(fs::is_empty(folders.downloads()));
    EXPECT_FALSE(fs::exists(folders.client() / "app_7"));
    EXPECT_TRUE(fs::exists(folders.client() / "app_6" / "autopatch.cfg"));
}

TEST_F(INSTALL_TEST, ANewVersionOfTheClientStandsBesideTheOldOne) {
    install_client(6);
    write_file(folders.client() / "app_7" / "left_over", "of a former 7");
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    download(*app, make_client_archive("new", 3000));
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_EQ(read_file(folders.client() / "app_7" / "autopatch.cfg"), "new");
    EXPECT_FALSE(fs::exists(folders.client() / "app_7" / "left_over"));
    EXPECT_TRUE(fs::exists(folders.client() / "app_6" / "autopatch.cfg"));
    EXPECT_FALSE(fs::exists(folders.client() / "incoming"));
    // The catalogue is stored: the next run says so.
    AUTOPATCH_SYSTEM::shutdown();
    peer->requests.clear();
    validate({});
    ASSERT_EQ(peer->requests[0].installed.size(), 1u);
    EXPECT_EQ(peer->requests[0].installed[0].second, 7);
}

TEST_F(INSTALL_TEST, ANewSkinTakesThePlaceOfTheOldOne) {
    write_file(folders.add_ons() / "skins" / "plain" / "skin.cfg", "old");
    write_file(folders.add_ons() / "skins" / "plain" / "old.png", "old");
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 2);
    const std::string new_file = "internal_version\n\t2\n";
    download(*skin, make_gzip(make_tar({{"skin.cfg", new_file}, {"images/", ""}})));
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_EQ(read_file(folders.add_ons() / "skins" / "plain" / "skin.cfg"), new_file);
    EXPECT_FALSE(fs::exists(folders.add_ons() / "skins" / "plain" / "old.png"));
    EXPECT_FALSE(fs::exists(folders.add_ons() / "incoming"));
}

TEST_F(INSTALL_TEST, NamesOfTheCatalogueItselfAreNoAddOns) {
    install_client(6);
    const std::string archive = make_gzip(make_tar({{"defaults.cfg", "version\n\t1\n"}}));
    for (const char* path : {"client", "skins", "incoming", "add_ons.bin", "add_ons.bin.tmp"}) {
        const auto pack = make_add_on(ADD_ON::ADD_ON_MISC, path, 1);
        download(*pack, archive);
        EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT) << path;
        EXPECT_TRUE(fs::exists(folders.client() / "app_6" / "autopatch.cfg"));
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
    fs::create_directories(folders.client() / "app");
    download(*make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7), make_client_archive("new", 10));
    EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT) << "a build tree";
}

TEST_F(INSTALL_TEST, TheChildrenOfACompositeAreFetchedOneByOne) {
    const auto top = make_composite("pack", 6);
    top->get_child(1)->invalid = false;
    top->get_child(4)->invalid = false;
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 2);
    begin_download({top.get(), skin.get()});
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        const std::string archive =
            make_gzip(make_tar({{request.path == "plain" ? "skin.cfg" : "defaults.cfg",
                                 "version\n\t3\nof\n\t" + request.path + "\n"}}));
        if (request.id == FILE_REQUEST) {
            EXPECT_EQ(engine->get_progress().current_index, request.path == "plain" ? 1 : 0);
            peer->send_block({0, archive, true, crc_of(archive), crc_of(archive)});
        }
    };
    pump_until([&] { return all_done() || error() != AUTOPATCH_OK; });
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_THAT(requested_paths(), ElementsAre("part0", "part2", "part3", "part5", "plain"));
    EXPECT_EQ(read_file(folders.add_ons() / "pack" / "part5" / "defaults.cfg"),
              "version\n\t3\nof\n\tpart5\n");
    ADD_ON* const installed = catalogue().get_add_on("pack", 0);
    ASSERT_NE(installed, nullptr);
    EXPECT_FALSE(installed->invalid);
    EXPECT_TRUE(installed->get_child(5)->is_valid(false));
}

TEST_F(INSTALL_TEST, ACompositeThatNeedsNothingIsPassedOver) {
    const auto top = make_composite("pack", 2);
    top->get_child(0)->invalid = false;
    top->get_child(1)->invalid = false;
    begin_download({top.get()});
    pump_until([&] { return all_done(); });
    EXPECT_THAT(requested_paths(), IsEmpty());
    EXPECT_EQ(engine->get_status(), AUTOPATCH_ALL_DOWNLOADED);
    EXPECT_EQ(error(), AUTOPATCH_OK);
}

// Kills a process that installs version 7 beside 6, at many moments behind each of three: the
// archive is begun, its unpacking is begun, the version is in its place.
TEST_F(INSTALL_TEST, AKillAtAnyMomentLeavesAClientThatStarts) {
    constexpr std::size_t SIZE = 2000000;
    const std::string archive = make_client_archive("new", SIZE);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    const fs::path signs[] = {folders.downloads() / "app.tar.gz",
                              folders.downloads() / "update.tar", folders.client() / "app_7"};
    for (int run = 0; run < 42; ++run) {
        fs::remove_all(folders.add_ons());
        fs::remove_all(folders.downloads());
        install_client(6);
        drop_peer();
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            make_peer();
            download(*app, archive);
            ::_exit(0);
        }
        const fs::path& sign = signs[run % 3];
        for (int i = 0; i < 100000 && !fs::exists(sign) && !fs::exists(signs[2]); ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(700 * (run / 3)));
        ::kill(child, SIGKILL);
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);

        SCOPED_TRACE(run);
        make_peer();
        EXPECT_EQ(read_file(folders.client() / "app_6" / "autopatch.cfg"), "old");
        if (fs::exists(folders.client() / "app_7")) {
            EXPECT_EQ(read_file(folders.client() / "app_7" / "autopatch.cfg"), "new");
            EXPECT_EQ(fs::file_size(folders.client() / "app_7" / "data" / "bulk.bin"), SIZE);
        }
        start();
        const std::string version = AUTOPATCH_SYSTEM::get_current_version();
        EXPECT_TRUE(version == "app_6" || version == "app_7") << version;
        EXPECT_TRUE(fs::exists(folders.client() / version / "autopatch.cfg"));
        EXPECT_FALSE(fs::exists(folders.client() / "incoming"));
        AUTOPATCH_SYSTEM::shutdown();
    }
    download(*app, archive);
    EXPECT_STREQ(AUTOPATCH_SYSTEM::get_current_version(), "app_7");
}

// --- Checkpoint ---

TEST_F(INSTALL_TEST, WithoutAnOpenArchiveACheckpointChangesNothing) {
    validate({});
    write_file(folders.downloads() / "app.tar.gz.part", "part");
    EXPECT_FALSE(engine->write_part_file(crc_of("part")));
    EXPECT_EQ(read_file(folders.downloads() / "app.tar.gz.part"), "part");
}

TEST_F(INSTALL_TEST, AnEmptyLastPartIsGood) {
    const std::string archive = make_client_archive("new", 100);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    begin_download({app.get()});
    pump_until_requests(FILE_REQUEST, 1);
    peer->send_block({1, archive, true, crc_of(archive)});
    pump_until_requests(FILE_REQUEST, 2);
    peer->send_block({0, "", true, 0, crc_of(archive)});
    pump_until([&] { return all_done(); });
    EXPECT_EQ(read_file(folders.client() / "app_7" / "autopatch.cfg"), "new");
}

// --- The cursor ---

namespace {

std::vector<std::string> walk(ADD_ON& top) {
    FETCH_CURSOR cursor;
    std::vector<std::string> leaves;
    for (int step = 0; step < 5000; ++step) {
        ADD_ON* const add_on = cursor.current(&top);
        std::uint32_t units = 0;
        if (add_on->get_child_count() != 0) {
            const FETCH_CURSOR::DESCENT descent = cursor.descend(&top, units);
            if (descent == FETCH_CURSOR::DESCENT_DONE) {
                continue;
            }
            if (descent == FETCH_CURSOR::DESCENT_TOO_DEEP) {
                leaves.emplace_back("too deep");
                return leaves;
            }
        } else {
            leaves.emplace_back(add_on->path);
            add_on->set_downloaded();
        }
        if (!cursor.advance(&top)) {
            return leaves;
        }
    }
    leaves.emplace_back("no end");
    return leaves;
}

}  // namespace

class CURSOR_TEST : public INSTALL_TEST {};

TEST_F(CURSOR_TEST, MoreChildrenThanALevelListsAreAllFetchedOnce) {
    for (const int count : {64, 65, 128, 200}) {
        const auto top = make_composite("pack", count);
        // A version of 0 is never valid, downloaded or not.
        top->get_child(10)->version = 0;
        const std::vector<std::string> leaves = walk(*top);
        ASSERT_EQ(leaves.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(leaves.back(), "part" + std::to_string(count - 1));
    }
}

TEST_F(CURSOR_TEST, TreesOfSeveralLevels) {
    const auto top = make_composite("pack", 3);
    for (const int parent : {0, 2}) {
        for (const char* name : {"a", "b"}) {
            make_add_on(ADD_ON::ADD_ON_MISC, (name + std::to_string(parent)).c_str(), 1)
                .release()
                ->set_parent(*top->get_child(parent));
        }
    }
    top->get_child(2)->get_child(0)->invalid = false;
    EXPECT_THAT(walk(*top), ElementsAre("a0", "b0", "part1", "b2"));
    FETCH_CURSOR cursor;
    std::uint32_t units = 0;
    const auto many = make_composite("pack", 100);
    EXPECT_EQ(cursor.descend(many.get(), units), FETCH_CURSOR::DESCENT_DONE);
    EXPECT_EQ(units, 100u * 100u) << "of all children, listed or not";
}

TEST_F(CURSOR_TEST, ATreeDeeperThanTheStack) {
    for (const int levels : {16, 17}) {
        const auto top = make_add_on(ADD_ON::ADD_ON_MISC, "top", 1);
        ADD_ON* node = top.get();
        for (int level = 0; level < levels; ++level) {
            ADD_ON* const child = make_add_on(ADD_ON::ADD_ON_MISC, "node", 1).release();
            child->set_parent(*node);
            node = child;
        }
        EXPECT_THAT(walk(*top), ElementsAre(levels == 16 ? "node" : "too deep"));
    }
}
