// The bed of the engine's tests: folders, a server, and a clock that the tests move.
#ifndef AUTOPATCH_TESTS_ENGINE_TEST_H
#define AUTOPATCH_TESTS_ENGINE_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "modules/frameworks/trace_output.h"
#include "patch_test_peer.h"

// Keeps the warnings, so that tests can ask for the reason of a failure.
class WARNING_LOG : public TRACE_SINK {
public:
    WARNING_LOG() : former(TRACE_OUTPUT::set_sink(this)) {}
    ~WARNING_LOG() override { TRACE_OUTPUT::set_sink(former); }
    void output(TRACE_LEVEL level, const char* format, std::va_list arguments) override;
    // Warnings that contain `text`.
    int count(const std::string& text) const;

private:
    std::vector<std::string> warnings;
    TRACE_SINK* former;
};

class ENGINE_TEST : public ::testing::Test {
protected:
    ENGINE_TEST();
    ~ENGINE_TEST() override;

    // The server is there from the start; these end it and make a new one.
    void drop_peer();
    void make_peer(bool key_exchange = false);
    // The engine with its catalogue, not connected yet.
    void start(unsigned char no_reconnect = 0);
    // One round of engine and server; the server also works while the engine waits in a stream.
    void pump();
    // Rounds until `done` or, as a failure, until too many have passed.
    void pump_until(const std::function<bool()>& done);
    void pump_rounds(int rounds);

    // Connects, and lets the server answer the validation with `offered`.
    void validate(const std::vector<const ADD_ON*>& offered);
    // The same, and allows the download.
    void begin_download(const std::vector<const ADD_ON*>& offered);
    void pump_until_error();
    void pump_until_requests(std::uint16_t id, std::size_t count);
    bool all_done() const;
    AUTOPATCH_ERROR_CODE error() const { return engine->get_error_code(); }
    ADD_ONS_MANAGER& catalogue() { return *ADD_ONS_MANAGER::get_instance(); }
    // Makes the application of that version installed, on disk and in the catalogue.
    void install_client(std::uint16_t version);
    // Answers every file request with the whole rest of `archive`.
    void serve_blocks(const std::string& archive);
    void serve_stream(const std::string& archive);

    TEST_FOLDERS folders;
    WARNING_LOG log;
    std::unique_ptr<PATCH_TEST_PEER> peer;
    AUTOPATCH_SYSTEM* engine = nullptr;

    // The engine's services. Each look at the clock lets the server work and `step_ms` pass.
    static std::uint32_t clock();
    static void* allocate(std::size_t size);
    static PATCH_TEST_PEER* clock_peer;
    static std::uint32_t now_ms;
    static std::uint32_t step_ms;
    static std::size_t largest_allocation;
    static bool no_memory;
};

#endif  // AUTOPATCH_TESTS_ENGINE_TEST_H
