// Fetching archives as blocks and as streams, resuming, and what goes wrong on the way.
#include <signal.h>
#include <sys/resource.h>

#include <thread>

#include "engine_test.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;

namespace {

constexpr std::uint16_t FILE_REQUEST = AUTOPATCH_MESSAGE_FILE_REQUEST;
constexpr std::uint16_t STREAM_START = AUTOPATCH_MESSAGE_STREAM_START;

class DOWNLOAD_TEST : public ENGINE_TEST {
protected:
    // An archive of three parts of 1000, 2000 and the remaining bytes.
    DOWNLOAD_TEST() : archive(make_client_archive("new", 20000)), crc(crc_of(archive)) {
        app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7,
                          static_cast<std::uint32_t>(archive.size()));
    }

    std::uint32_t left_after(std::size_t held) const {
        return static_cast<std::uint32_t>(archive.size() - held);
    }
    // The block that closes a run of blocks, and ends at `end`.
    PATCH_TEST_PEER::BLOCK checkpoint(std::size_t begin, std::size_t end) const {
        const std::string data = archive.substr(begin, end - begin);
        return {left_after(end), data, true, crc_of(data), crc};
    }
    void begin() {
        begin_download({app.get()});
        pump_until_requests(FILE_REQUEST, 1);
    }
    std::string download() const { return read_file(folders.downloads() / "app.tar.gz"); }
    bool has_part() const { return fs::exists(folders.downloads() / "app.tar.gz.part"); }
    void expect_installed() const {
        EXPECT_EQ(read_file(folders.client() / "app_7" / "autopatch.cfg"), "new");
        EXPECT_EQ(fs::file_size(folders.client() / "app_7" / "data" / "bulk.bin"), 20000u);
        EXPECT_TRUE(fs::is_empty(folders.downloads()));
        EXPECT_FALSE(fs::exists(folders.client() / "incoming"));
        EXPECT_STREQ(AUTOPATCH_SYSTEM::get_current_version(), "app_7");
    }

    const std::string archive;
    const std::uint32_t crc;
    std::unique_ptr<ADD_ON> app;
};

}  // namespace

TEST_F(DOWNLOAD_TEST, NothingIsFetchedBeforeThePageAllowsIt) {
    validate({app.get()});
    pump_rounds(20);
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre());
    engine->set_download_allowed(true);
    pump_until_requests(FILE_REQUEST, 1);
    EXPECT_EQ(peer->requests.back().path, "app");
}

TEST_F(DOWNLOAD_TEST, BlocksWithCheckpoints) {
    begin();
    EXPECT_NE(peer->requests.back().platform, 0);
    peer->send_block({left_after(400), archive.substr(0, 400)});
    peer->send_block({left_after(400), ""});
    peer->send_block(
        {left_after(1000), archive.substr(400, 600), true, crc_of(archive.substr(0, 1000))});
    pump_until_requests(FILE_REQUEST, 2);
    EXPECT_EQ(engine->get_status(), AUTOPATCH_DOWNLOADING);
    EXPECT_EQ(download(), archive.substr(0, 1000));
    EXPECT_FALSE(has_part());
    EXPECT_EQ(engine->get_current_download_progress(),
              static_cast<int>(100 / (archive.size() / 10 / 100)));
    peer->send_block(checkpoint(1000, 3000));
    pump_until_requests(FILE_REQUEST, 3);
    peer->send_block(checkpoint(3000, archive.size()));
    pump_until([&] { return all_done(); });
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0, 1000, 3000));
    EXPECT_EQ(engine->get_status(), AUTOPATCH_ALL_DOWNLOADED);
    EXPECT_EQ(engine->get_current_download_progress(), 100);
    EXPECT_EQ(error(), AUTOPATCH_OK);
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, AWrongPartIsAskedForAgain) {
    begin();
    peer->send_block(checkpoint(0, 1000));
    pump_until_requests(FILE_REQUEST, 2);
    PATCH_TEST_PEER::BLOCK wrong = checkpoint(1000, 3000);
    wrong.data[17] ^= 1;
    peer->send_block(wrong);
    pump_until_requests(FILE_REQUEST, 3);
    EXPECT_EQ(download(), archive.substr(0, 1000));
    EXPECT_FALSE(has_part());
    wrong = checkpoint(1000, archive.size());
    wrong.crc ^= 1;
    peer->send_block(wrong);
    pump_until_requests(FILE_REQUEST, 4);
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0, 1000, 1000, 1000));
    EXPECT_EQ(error(), AUTOPATCH_OK);
    peer->send_block(checkpoint(1000, archive.size()));
    pump_until([&] { return all_done(); });
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, ALostConnectionIsResumedAtTheLastCheckpoint) {
    begin();
    peer->send_block(checkpoint(0, 1000));
    pump_until_requests(FILE_REQUEST, 2);
    peer->send_block({left_after(2500), archive.substr(1000, 1500)});
    pump_until([&] { return has_part(); });
    peer->drop();
    pump_until_requests(FILE_REQUEST, 3);
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0, 1000, 1000));
    EXPECT_EQ(engine->get_connect_attempts(), 1);
    EXPECT_EQ(peer->connections, 2);
    peer->send_block(checkpoint(1000, 3000));
    pump_until_requests(FILE_REQUEST, 4);
    peer->send_block(checkpoint(3000, archive.size()));
    pump_until([&] { return all_done(); });
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0, 1000, 1000, 3000));
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, ABigEndianPeer) {
    peer->byte_order = 1;
    begin();
    peer->send_block(checkpoint(0, 1000));
    pump_until_requests(FILE_REQUEST, 2);
    for (const auto& request : peer->requests) {
        EXPECT_EQ(request.byte_order, 0) << "what the engine sends is little-endian";
    }
    peer->send_block(checkpoint(1000, archive.size()));
    pump_until([&] { return all_done(); });
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0, 1000));
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, ABlockLargerThanItsMessageIsNotBelieved) {
    for (const std::uint32_t claimed : {1001u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        begin();
        largest_allocation = 0;
        peer->send_message([&](NETWORK_MESSAGE& message) {
            const bool good = message << std::uint16_t{AUTOPATCH_MESSAGE_FILE_BLOCK} &&
                              message << std::uint16_t{1620} && message << 5000u &&
                              message << claimed;
            ASSERT_TRUE(good);
            message.write_data_block(archive.data(), 1000);
        });
        pump_until_error();
        EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT);
        EXPECT_EQ(largest_allocation, 0u);
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
}

TEST_F(DOWNLOAD_TEST, NoMemoryForABlockOrForTheStream) {
    no_memory = true;
    begin();
    peer->send_block(checkpoint(0, 1000));
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT);
    AUTOPATCH_SYSTEM::shutdown();
    peer->requests.clear();
    serve_stream(archive);
    begin();
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_MEMORY);
}

TEST_F(DOWNLOAD_TEST, AFullDiskIsReported) {
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small = {2000, before.rlim_max};
    for (const bool stream : {false, true}) {
        begin();
        ::setrlimit(RLIMIT_FSIZE, &small);
        peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
            if (request.id == STREAM_START) {
                peer->send_raw(archive);
            }
        };
        if (stream) {
            peer->send_offer(left_after(0), crc);
        } else {
            peer->send_block(checkpoint(0, archive.size()));
        }
        pump_until_error();
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT);
        EXPECT_GE(log.count("can't be"), 1);
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
}

TEST_F(DOWNLOAD_TEST, AnUnwritableFolderIsTracedOnceAndTimesOut) {
    validate({app.get()});
    write_file(folders.temp() / "downloads", "no folder");
    engine->set_download_allowed(true);
    pump_rounds(50);
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_EQ(log.count("can't be opened for writing"), 1);
    fs::remove(folders.temp() / "downloads");
    pump_until_requests(FILE_REQUEST, 1);
    now_ms += 600001;
    pump();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
}

TEST_F(DOWNLOAD_TEST, APathThatIsNoFolderNameIsRefused) {
    validate({app.get()});
    catalogue().available.get<ADD_ON>(0)->set_path("../../evil");
    engine->set_download_allowed(true);
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_EXTRACT);
    EXPECT_FALSE(fs::exists(folders.downloads()));
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre());
}

// --- Streams ---

TEST_F(DOWNLOAD_TEST, AStream) {
    serve_stream(archive);
    begin_download({app.get()});
    pump_until([&] { return all_done(); });
    EXPECT_THAT(peer->held_sizes(STREAM_START), ElementsAre(0));
    EXPECT_EQ(engine->get_status(), AUTOPATCH_ALL_DOWNLOADED);
    EXPECT_EQ(engine->get_current_download_progress(), 100);
    EXPECT_LE(largest_allocation, 0x100000u);
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, AStreamGoesOnBehindTheCheckedBlocks) {
    begin();
    peer->send_block(checkpoint(0, 1000));
    pump_until_requests(FILE_REQUEST, 2);
    peer->send_block({left_after(1300), archive.substr(1000, 300)});
    pump_until([&] { return has_part(); });
    serve_stream(archive);
    peer->drop();
    pump_until([&] { return all_done(); });
    EXPECT_THAT(peer->held_sizes(STREAM_START), ElementsAre(1000));
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, AStreamBehindASmallOneHasABufferOfItsSize) {
    const std::string small = make_gzip(make_tar({{"skin.cfg", "x"}}));
    ASSERT_LT(small.size(), archive.size() / 10);
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 1);
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        const std::string& wanted = request.path == "app" ? archive : small;
        if (request.id == FILE_REQUEST) {
            peer->send_offer(static_cast<std::uint32_t>(wanted.size()), crc_of(wanted));
        } else if (request.id == STREAM_START) {
            peer->send_raw(wanted);
        }
    };
    begin_download({skin.get(), app.get()});
    pump_until([&] { return all_done() || error() != AUTOPATCH_OK; });
    EXPECT_EQ(largest_allocation, archive.size());
    expect_installed();
}

TEST_F(DOWNLOAD_TEST, BytesBehindAStreamAreTakenAsFrames) {
    const std::string skin_archive = make_gzip(make_tar({{"skin.cfg", "x"}}));
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 1);
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.path == "app" && request.id == FILE_REQUEST) {
            peer->send_offer(left_after(0), crc);
        } else if (request.path == "app") {
            peer->send_raw(archive + std::string("\0\1\0\0\0 a bad prefix", 17));
        } else if (peer->connections == 2) {
            peer->send_block({0, skin_archive, true, crc_of(skin_archive), crc_of(skin_archive)});
        }
    };
    begin_download({app.get(), skin.get()});
    pump_until([&] { return all_done(); });
    EXPECT_EQ(engine->get_connect_attempts(), 1) << "the bad prefix has closed the connection";
    expect_installed();
    EXPECT_TRUE(fs::exists(folders.add_ons() / "skins" / "plain" / "skin.cfg"));
}

TEST_F(DOWNLOAD_TEST, AStreamThatEndsEarlyIsAnError) {
    begin();
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.id == STREAM_START) {
            peer->send_raw(archive.substr(0, 5000));
            peer->drop_after_raw();
        }
    };
    peer->send_offer(left_after(0), crc);
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
    EXPECT_EQ(engine->get_connect_attempts(), 1);
    EXPECT_FALSE(fs::exists(folders.client() / "app_7"));
}

TEST_F(DOWNLOAD_TEST, AStreamThatStallsTimesOut) {
    begin();
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.id == STREAM_START) {
            peer->send_raw(archive.substr(0, 5000));
            step_ms = 50000;
        }
    };
    // The largest size there is, and no more memory than for any other.
    peer->send_offer(0xFFFFFFFF, crc);
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
    EXPECT_EQ(engine->get_status(), AUTOPATCH_DISCONNECTED);
    EXPECT_LE(largest_allocation, 0x100000u);
}

TEST_F(DOWNLOAD_TEST, TheExitFlagEndsAStreamAtOnce) {
    begin();
    peer->on_request = [&](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.id == STREAM_START) {
            peer->send_raw(archive.substr(0, 5000));
            engine->internal_shutdown();
        }
    };
    peer->send_offer(left_after(0), crc);
    pump_until_requests(STREAM_START, 1);
    pump_rounds(5);
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_THAT(peer->held_sizes(FILE_REQUEST), ElementsAre(0)) << "nothing new is begun";
    EXPECT_FALSE(all_done());
}

TEST_F(DOWNLOAD_TEST, AStreamOfNoBytes) {
    for (const auto& [stated_crc, code] :
         {std::pair{0u, AUTOPATCH_ERROR_UNZIP}, std::pair{1u, AUTOPATCH_ERROR_CORRUPT_DOWNLOAD}}) {
        begin();
        peer->send_offer(0, stated_crc);
        pump_until_error();
        EXPECT_EQ(error(), code);
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
}

// What the pages do on the main thread while the pool thread is in monitor(); what they show of a
// record doesn't change meanwhile.
TEST_F(DOWNLOAD_TEST, APageReadsWhileTheEngineWorks) {
    validate({app.get()});
    serve_blocks(archive);
    std::thread page([this] {
        engine->set_download_allowed(true);
        AUTOPATCH_PROGRESS progress;
        while (progress.current_index == 0 && engine->get_error_code() == AUTOPATCH_OK) {
            progress = engine->get_progress();
            if (const ADD_ON* const shown = progress.current_add_on) {
                EXPECT_STREQ(shown->get_top_level_parent()->title, "app");
                EXPECT_EQ(shown->version, 7);
                EXPECT_EQ(shown->get_file_size(), archive.size());
            }
            std::this_thread::yield();
        }
        engine->internal_shutdown();
    });
    pump_until([&] { return all_done() || error() != AUTOPATCH_OK; });
    page.join();
    expect_installed();
}

// --- Progress ---

TEST_F(DOWNLOAD_TEST, ProgressOfASmallPackage) {
    // 50 units of ten bytes: fewer than there are percent.
    const auto pack = make_add_on(ADD_ON::ADD_ON_MISC, "pack", 1, 500);
    begin_download({pack.get()});
    pump_until_requests(FILE_REQUEST, 1);
    peer->send_block({380, std::string(120, 'x')});
    pump_until([&] { return engine->get_current_download_progress() != 0; });
    EXPECT_EQ(engine->get_current_download_progress(), 24);
    peer->send_block({1, std::string(5000, 'x')});
    pump_until([&] { return engine->get_current_download_progress() != 24; });
    EXPECT_EQ(engine->get_current_download_progress(), 100) << "more than was announced";
}

TEST_F(DOWNLOAD_TEST, ProgressWithoutAKnownSize) {
    const auto pack = make_add_on(ADD_ON::ADD_ON_MISC, "pack", 1, 0);
    begin_download({pack.get()});
    pump_until_requests(FILE_REQUEST, 1);
    peer->send_block({380, "x"});
    pump_until([&] { return engine->get_current_download_progress() != 0; });
    EXPECT_EQ(engine->get_current_download_progress(), 100);
}
