#include "engine_test.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

namespace fs = std::filesystem;

PATCH_TEST_PEER* ENGINE_TEST::clock_peer = nullptr;
std::uint32_t ENGINE_TEST::now_ms = 0;
std::uint32_t ENGINE_TEST::step_ms = 0;
std::size_t ENGINE_TEST::largest_allocation = 0;
bool ENGINE_TEST::no_memory = false;

void WARNING_LOG::output(TRACE_LEVEL level, const char* format, std::va_list arguments) {
    if (level == TRACE_LEVEL::WARNING) {
        char text[1024];
        std::vsnprintf(text, sizeof text, format, arguments);
        warnings.emplace_back(text);
    }
}

int WARNING_LOG::count(const std::string& text) const {
    return static_cast<int>(
        std::count_if(warnings.begin(), warnings.end(),
                      [&](const std::string& line) { return line.find(text) != line.npos; }));
}

std::uint32_t ENGINE_TEST::clock() {
    if (clock_peer) {
        clock_peer->pump();
    }
    return now_ms += step_ms;
}

void* ENGINE_TEST::allocate(std::size_t size) {
    largest_allocation = std::max(largest_allocation, size);
    return no_memory ? nullptr : std::malloc(size);
}

ENGINE_TEST::ENGINE_TEST() {
    now_ms = 1000;
    step_ms = 0;
    largest_allocation = 0;
    no_memory = false;
    make_peer();
}

ENGINE_TEST::~ENGINE_TEST() {
    AUTOPATCH_SYSTEM::shutdown();
    drop_peer();
}

void ENGINE_TEST::drop_peer() {
    clock_peer = nullptr;
    peer.reset();
}

void ENGINE_TEST::make_peer(bool key_exchange) {
    peer = std::make_unique<PATCH_TEST_PEER>(key_exchange);
    clock_peer = peer.get();
}

void ENGINE_TEST::start(unsigned char no_reconnect) {
    AUTOPATCH_SYSTEM::startup(no_reconnect);
    engine = AUTOPATCH_SYSTEM::get_instance();
    engine->set_services({clock, allocate});
    ASSERT_TRUE(engine->internal_startup(1, "127.0.0.1", peer->port()));
}

void ENGINE_TEST::pump() {
    engine->monitor();
    peer->pump();
}

void ENGINE_TEST::pump_rounds(int rounds) {
    for (int i = 0; i < rounds; ++i) {
        pump();
    }
}

void ENGINE_TEST::pump_until(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (int round = 0; !done(); ++round) {
        if (std::chrono::steady_clock::now() > limit) {
            ADD_FAILURE() << "what was waited for has not happened";
            return;
        }
        pump();
        if (round > 20) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    }
}

void ENGINE_TEST::validate(const std::vector<const ADD_ON*>& offered) {
    start();
    pump_until_requests(AUTOPATCH_MESSAGE_VALIDATION_REQUEST, 1);
    peer->send_list(AUTOPATCH_MESSAGE_VALIDATION_RESPONSE, offered);
    pump_until([&] { return engine->get_progress().validated; });
}

void ENGINE_TEST::begin_download(const std::vector<const ADD_ON*>& offered) {
    validate(offered);
    engine->set_download_allowed(true);
}

void ENGINE_TEST::pump_until_error() {
    pump_until([&] { return error() != AUTOPATCH_OK; });
}

void ENGINE_TEST::pump_until_requests(std::uint16_t id, std::size_t count) {
    pump_until([&] {
        return static_cast<std::size_t>(std::count_if(
                   peer->requests.begin(), peer->requests.end(),
                   [&](const PATCH_TEST_PEER::REQUEST& r) { return r.id == id; })) >= count;
    });
}

bool ENGINE_TEST::all_done() const {
    const AUTOPATCH_PROGRESS progress = engine->get_progress();
    return progress.validated && progress.current_index >= progress.available_count;
}

void ENGINE_TEST::install_client(std::uint16_t version) {
    ADD_ONS_MANAGER::startup(1);
    const auto app = make_add_on(ADD_ON::ADD_ON_APPLICATION, "app", version);
    app->set_downloaded();
    write_file(folders.client() / ("app_" + std::to_string(version)) / "autopatch.cfg", "old");
    catalogue().set_add_on(app.get(), 0);
    ADD_ONS_MANAGER::shutdown();
}

void ENGINE_TEST::serve_blocks(const std::string& archive) {
    peer->on_request = [this, archive](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.id == AUTOPATCH_MESSAGE_FILE_REQUEST && request.held <= archive.size()) {
            const std::string rest = archive.substr(request.held);
            peer->send_block({0, rest, true, crc_of(rest), crc_of(archive)});
        }
    };
}

void ENGINE_TEST::serve_stream(const std::string& archive) {
    peer->on_request = [this, archive](const PATCH_TEST_PEER::REQUEST& request) {
        if (request.id == AUTOPATCH_MESSAGE_FILE_REQUEST) {
            peer->send_offer(static_cast<std::uint32_t>(archive.size() - request.held),
                             crc_of(archive));
        } else if (request.id == AUTOPATCH_MESSAGE_STREAM_START) {
            peer->send_raw(archive.substr(request.held));
        }
    };
}
