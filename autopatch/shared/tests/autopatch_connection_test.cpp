// Connecting, the validation, and what ends a run without a download.
#include "engine_test.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

namespace {

class CONNECTION_TEST : public ENGINE_TEST {
protected:
    // An engine that knows the port of a server which is gone.
    void start_without_server(unsigned char no_reconnect) {
        start(no_reconnect);
        drop_peer();
    }
};

}  // namespace

TEST_F(CONNECTION_TEST, WithoutHostOrPortNothingHappens) {
    AUTOPATCH_SYSTEM::startup(0);
    engine = AUTOPATCH_SYSTEM::get_instance();
    for (const char* host : {"", "127.0.0.1"}) {
        engine->internal_startup(1, host, host[0] == '\0' ? peer->port() : std::uint16_t{0});
        engine->monitor();
        EXPECT_EQ(engine->get_status(), AUTOPATCH_DISCONNECTED);
        EXPECT_EQ(engine->get_connect_attempts(), 0);
        EXPECT_EQ(error(), AUTOPATCH_OK);
    }
}

TEST_F(CONNECTION_TEST, TheEleventhConnectIsAnError) {
    start_without_server(0);
    for (int i = 1; i <= 10; ++i) {
        engine->monitor();
        EXPECT_EQ(engine->get_connect_attempts(), i);
        EXPECT_EQ(error(), AUTOPATCH_OK);
    }
    engine->monitor();
    EXPECT_EQ(engine->get_connect_attempts(), 10);
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
}

TEST_F(CONNECTION_TEST, WithoutReconnectingTheFirstFailureIsAnError) {
    start_without_server(1);
    engine->monitor();
    EXPECT_EQ(error(), AUTOPATCH_OK) << "monitor() doesn't connect then";
    EXPECT_FALSE(engine->connect());
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
}

TEST_F(CONNECTION_TEST, TellsWhatIsInstalledAndTakesAnEmptyList) {
    install_client(12);
    start();
    EXPECT_STREQ(AUTOPATCH_SYSTEM::get_current_version(), "app_12");
    pump_until_requests(AUTOPATCH_MESSAGE_VALIDATION_REQUEST, 1);
    EXPECT_EQ(engine->get_status(), AUTOPATCH_VALIDATION_SENT);
    EXPECT_EQ(peer->requests[0].version, 1620);
    EXPECT_EQ(peer->requests[0].byte_order, 0);
    EXPECT_THAT(peer->requests[0].installed, ElementsAre(Pair("app", 12)));

    peer->send_list(AUTOPATCH_MESSAGE_VALIDATION_RESPONSE, {});
    pump_until([&] { return engine->get_progress().validated; });
    EXPECT_EQ(engine->get_status(), AUTOPATCH_ALL_DOWNLOADED);
    EXPECT_TRUE(engine->is_up_to_date());
    EXPECT_EQ(engine->get_progress().available_count, 0);
}

TEST_F(CONNECTION_TEST, WithAKeyExchangeOfTheServer) {
    make_peer(true);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    validate({app.get()});
    EXPECT_EQ(engine->get_progress().available_count, 1);
}

TEST_F(CONNECTION_TEST, MarksWhatTheInstallationLacks) {
    ADD_ONS_MANAGER::startup(0);
    const auto pack = make_add_on(ADD_ON::ADD_ON_MISC, "pack", 3);
    for (const auto& [path, version] : {std::pair{"old", 3}, std::pair{"good", 8}}) {
        ADD_ON* const child =
            make_add_on(ADD_ON::ADD_ON_MISC, path, static_cast<std::uint16_t>(version)).release();
        child->invalid = false;
        child->set_parent(*pack);
    }
    catalogue().set_add_on(pack.get(), 0);
    catalogue().set_add_on(make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 5).get(), 0);
    ADD_ONS_MANAGER::shutdown();

    const auto offered_pack = make_add_on(ADD_ON::ADD_ON_MISC, "pack", 9);
    offered_pack->invalid = false;
    for (const char* path : {"old", "good", "unknown"}) {
        ADD_ON* const child = make_add_on(ADD_ON::ADD_ON_MISC, path, 9).release();
        child->invalid = false;
        child->minimum_version = 5;
        child->set_parent(*offered_pack);
    }
    const auto offered_skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 6);
    offered_skin->invalid = false;
    offered_skin->minimum_version = 6;
    const auto offered_new = make_add_on(ADD_ON::ADD_ON_SKIN, "new", 1);
    offered_new->invalid = false;
    // Not enabled, the catalogue isn't checked against the disk.
    AUTOPATCH_SYSTEM::startup(0);
    engine = AUTOPATCH_SYSTEM::get_instance();
    engine->internal_startup(0, "", 0);
    NETWORK_MESSAGE message;
    ASSERT_TRUE(message << std::uint16_t{AUTOPATCH_MESSAGE_VALIDATION_RESPONSE} &&
                message << std::uint16_t{1620} && message << std::uint32_t{3});
    for (const ADD_ON* offered : {offered_pack.get(), offered_skin.get(), offered_new.get()}) {
        ASSERT_TRUE(offered->put_to_data_device(1620, message));
    }
    message.set_pos(0, false);
    AUTOPATCH_SYSTEM::network_callback(message, engine);
    ASSERT_EQ(engine->get_status(), AUTOPATCH_VALIDATED);

    ADD_ON& seen = *catalogue().available.get<ADD_ON>(0);
    EXPECT_FALSE(seen.invalid);
    EXPECT_TRUE(seen.get_child(0)->invalid) << "installed version 3 is below the minimum of 5";
    EXPECT_FALSE(seen.get_child(1)->invalid);
    EXPECT_FALSE(seen.get_child(2)->invalid) << "without a partner it stays as it was sent";
    EXPECT_TRUE(catalogue().available.get<ADD_ON>(1)->invalid);
    EXPECT_FALSE(catalogue().available.get<ADD_ON>(2)->invalid);
    EXPECT_FALSE(engine->is_up_to_date());
}

TEST_F(CONNECTION_TEST, APeerOfTheOldKindHasNoVersionWord) {
    start();
    pump_until_requests(AUTOPATCH_MESSAGE_VALIDATION_REQUEST, 1);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 2);
    peer->send_list(AUTOPATCH_MESSAGE_VALIDATION_RESPONSE, {app.get(), skin.get()}, 1000);
    pump_until([&] { return engine->get_progress().validated; });
    ASSERT_EQ(engine->get_progress().available_count, 2);
    EXPECT_STREQ(catalogue().available.get<ADD_ON>(1)->path, "plain");
}

TEST_F(CONNECTION_TEST, ABadValidationResponseUsesOneAttempt) {
    start();
    pump_until_requests(AUTOPATCH_MESSAGE_VALIDATION_REQUEST, 1);
    peer->send_message([](NETWORK_MESSAGE& message) {
        const bool good = message << std::uint16_t{AUTOPATCH_MESSAGE_VALIDATION_RESPONSE} &&
                          message << std::uint16_t{1620} && message << std::uint32_t{1001};
        ASSERT_TRUE(good);
    });
    pump_until([&] { return engine->get_connect_attempts() != 0; });
    pump_until([&] { return peer->connections == 2; });
    pump_rounds(20);
    EXPECT_EQ(engine->get_connect_attempts(), 1);
    EXPECT_EQ(error(), AUTOPATCH_OK);
    EXPECT_FALSE(engine->get_progress().validated);
    EXPECT_EQ(peer->requests.size(), 1u) << "there is no second validation request";

    now_ms += 600000;
    pump();
    EXPECT_EQ(error(), AUTOPATCH_OK);
    now_ms += 1;
    pump();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_CONNECT);
    EXPECT_EQ(engine->get_status(), AUTOPATCH_DISCONNECTED);
    pump_rounds(20);
    EXPECT_EQ(engine->get_status(), AUTOPATCH_DISCONNECTED) << "it doesn't connect again";
}

TEST_F(CONNECTION_TEST, WhatTheServerShouldNotSendIsAnError) {
    using FILL = std::function<void(NETWORK_MESSAGE&)>;
    const auto heading = [](NETWORK_MESSAGE& message, std::uint16_t id) {
        return message << id && message << std::uint16_t{1620};
    };
    const FILL unknown = [&](NETWORK_MESSAGE& m) { ASSERT_TRUE(heading(m, 4242)); };
    const FILL block = [&](NETWORK_MESSAGE& m) {
        ASSERT_TRUE(heading(m, 1500) && m << 0u && m << 0u && m << std::uint8_t{1});
    };
    const FILL offer = [&](NETWORK_MESSAGE& m) {
        ASSERT_TRUE(heading(m, 1800) && m << 5u && m << 5u);
    };
    for (const FILL& fill : {unknown, block, offer}) {
        validate({});
        peer->send_message(fill);
        pump_until_error();
        EXPECT_EQ(error(), AUTOPATCH_ERROR_SERVER);
        EXPECT_EQ(engine->get_connect_attempts(), 1);
        AUTOPATCH_SYSTEM::shutdown();
        peer->requests.clear();
    }
}

// The records of a list that is being worked on must not go away under the download page.
TEST_F(CONNECTION_TEST, AListThatNobodyAskedForDoesNotReplaceTheValidatedOne) {
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", 7);
    begin_download({app.get()});
    pump_until_requests(AUTOPATCH_MESSAGE_FILE_REQUEST, 1);
    const ADD_ON* const current = engine->get_progress().current_add_on;
    ASSERT_NE(current, nullptr);
    peer->send_list(AUTOPATCH_MESSAGE_LIST, {});
    pump_until_error();
    EXPECT_EQ(error(), AUTOPATCH_ERROR_SERVER);
    peer->send_list(AUTOPATCH_MESSAGE_VALIDATION_RESPONSE, {});
    pump_until([&] { return engine->get_connect_attempts() == 2; });
    EXPECT_EQ(engine->get_progress().current_add_on, current);
    EXPECT_EQ(catalogue().available.get<ADD_ON>(0), current);
    EXPECT_STREQ(current->path, "app");
}

TEST_F(CONNECTION_TEST, AListThatWasAskedFor) {
    start();
    int calls = 0;
    pump_until([&] { return engine->get_status() == AUTOPATCH_VALIDATION_SENT; });
    ASSERT_TRUE(engine->send_available_list_request([](void* user) { ++*static_cast<int*>(user); },
                                                    &calls));
    EXPECT_FALSE(engine->is_list_received());
    pump_until_requests(AUTOPATCH_MESSAGE_LIST_REQUEST, 1);
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, "plain", 2);
    peer->send_list(AUTOPATCH_MESSAGE_LIST, {skin.get()});
    pump_until([&] { return calls != 0; });
    EXPECT_TRUE(engine->is_list_received());
    EXPECT_EQ(engine->get_status(), AUTOPATCH_DISCONNECTED);
    EXPECT_EQ(catalogue().available.get_count(), 1);
    EXPECT_EQ(engine->get_connect_attempts(), 0);
}

TEST_F(CONNECTION_TEST, AStartDeletesWhatEarlierRunsLeft) {
    install_client(5);
    for (const char* name : {"app_6", "app_7", "app_8"}) {
        fs::create_directories(folders.client() / name);
    }
    write_file(folders.downloads() / "app.tar.gz", "partial");
    write_file(folders.client() / "incoming" / "half", "x");
    start();
    EXPECT_FALSE(fs::exists(folders.downloads()));
    EXPECT_FALSE(fs::exists(folders.client() / "incoming"));
    EXPECT_FALSE(fs::exists(folders.client() / "app_6"));
    EXPECT_TRUE(fs::exists(folders.client() / "app_5" / "autopatch.cfg"))
        << "the catalogue's version, and the only one that can be started";
}

TEST(AUTOPATCH_ERRORS, EveryCodeHasATextAndAnArticle) {
    EXPECT_STREQ(get_error_str(AUTOPATCH_ERROR_SERVER),
                 "The server has reported an unknown error. Please restart and try again.");
    const char* const unknown =
        "An unknown internal error has occurred. Please restart and try again.";
    for (const int code : {-1, 9, 1000}) {
        EXPECT_STREQ(get_error_str(static_cast<AUTOPATCH_ERROR_CODE>(code)), unknown);
        EXPECT_STREQ(get_error_url(static_cast<AUTOPATCH_ERROR_CODE>(code)),
                     get_error_url(AUTOPATCH_OK));
    }
    const char* const articles[] = {"81", "73", "74", "80", "75", "76", "77", "78", "79"};
    for (int code = 0; code <= 8; ++code) {
        EXPECT_THAT(get_error_url(static_cast<AUTOPATCH_ERROR_CODE>(code)),
                    ::testing::EndsWith(std::string("/index.php?_m=knowledgebase&_a=viewarticle&"
                                                    "kbarticleid=") +
                                        articles[code] + "&nav=0,4"));
    }
}
