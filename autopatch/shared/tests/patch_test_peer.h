// What the tests of the patch engine share: folders of their own, archives, and a scripted server.
#ifndef AUTOPATCH_TESTS_PATCH_TEST_PEER_H
#define AUTOPATCH_TESTS_PATCH_TEST_PEER_H

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "autopatch/add_on.h"
#include "autopatch/patch_protocol.h"
#include "modules/network/network_manager.h"
#include "platform/network_message.h"

// Makes "$ADD_ONS" and "$TEMP" folders of this test alone, and removes them at the end.
class TEST_FOLDERS {
public:
    TEST_FOLDERS();
    ~TEST_FOLDERS();
    TEST_FOLDERS(const TEST_FOLDERS&) = delete;
    TEST_FOLDERS& operator=(const TEST_FOLDERS&) = delete;

    std::filesystem::path add_ons() const;
    std::filesystem::path client() const { return add_ons() / "client"; }
    std::filesystem::path downloads() const { return temp() / "downloads"; }
    std::filesystem::path temp() const;

private:
    std::filesystem::path root;
};

void write_file(const std::filesystem::path& path, const std::string& content);
std::string read_file(const std::filesystem::path& path);

// A tar entry; a name that ends in "/" is a folder, and `type` is the header's type byte.
struct TEST_ENTRY {
    std::string name;
    std::string content;
    char type = '0';
    std::string link = {};
};
std::string make_tar(const std::vector<TEST_ENTRY>& entries);
std::string make_gzip(const std::string& content);
// A package with the client's check file and one more file of `size` bytes that don't compress.
std::string make_client_archive(const std::string& marker, std::size_t size);
std::uint32_t crc_of(const std::string& bytes);

std::unique_ptr<ADD_ON> make_add_on(ADD_ON::ADD_ON_TYPE type, const char* path,
                                    std::uint16_t version, std::uint32_t file_size = 0);

// A server that records what the client asks and answers as the test says. It works only while
// pump() is called.
class PATCH_TEST_PEER {
public:
    struct REQUEST {
        std::uint16_t id = 0;
        std::uint16_t version = 0;
        std::int32_t byte_order = 0;
        std::string path = {};
        std::uint32_t held = 0;
        unsigned char platform = 0;
        std::vector<std::pair<std::string, std::uint16_t>> installed = {};
    };
    struct BLOCK {
        std::uint32_t remaining = 0;
        std::string data = {};
        bool checked = false;
        std::uint32_t crc = 0;
        std::uint32_t archive_crc = 0;  // sent when nothing remains
    };

    explicit PATCH_TEST_PEER(bool key_exchange = false);

    std::uint16_t port() const { return manager.get_listen_port(); }
    void pump();

    std::function<void(const REQUEST&)> on_request;
    std::vector<REQUEST> requests;
    int connections = 0;

    // The requests of that id; their `held` fields.
    std::vector<std::uint32_t> held_sizes(std::uint16_t id) const;

    void send_list(std::uint16_t id, const std::vector<const ADD_ON*>& add_ons,
                   std::uint16_t format = 1620);
    void send_block(const BLOCK& block);
    void send_offer(std::uint32_t size, std::uint32_t crc);
    // Queues bytes without frames; messages sent later follow behind them.
    void send_raw(const std::string& bytes);
    // Sends `fill(message)` as it is.
    void send_message(const std::function<void(NETWORK_MESSAGE&)>& fill);
    void drop();
    // Closes the connection once all raw bytes are out.
    void drop_after_raw() { dropping = true; }

    std::int32_t byte_order = 0;  // of the messages that are sent from now on

private:
    static void message_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION&, NETWORK_MESSAGE&,
                                 void* user);
    static void connect_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* user,
                                 unsigned char);
    void receive(NETWORK_MESSAGE& message);
    void pump_raw();

    NETWORK_MANAGER manager;
    NETWORK_CONNECTION connection;
    std::string raw;
    bool dropping = false;
};

#endif  // AUTOPATCH_TESTS_PATCH_TEST_PEER_H
