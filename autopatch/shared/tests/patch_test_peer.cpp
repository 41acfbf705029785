#include "patch_test_peer.h"

#include <arpa/inet.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

#include "platform/disk_manager.h"

namespace fs = std::filesystem;

TEST_FOLDERS::TEST_FOLDERS() {
    std::string name = fs::temp_directory_path() / "autopatch_test_XXXXXX";
    if (!::mkdtemp(name.data())) {
        std::abort();
    }
    root = fs::canonical(name);
    fs::create_directories(root / "base" / "data");
    ::setenv("XDG_DATA_HOME", root.c_str(), 1);
    DISK_MANAGER::set_base_folder((root / "base").c_str());
    DISK_MANAGER::use_local_add_ons_path = false;
}

TEST_FOLDERS::~TEST_FOLDERS() {
    DISK_MANAGER::set_base_folder(nullptr);
    std::error_code ignored;
    fs::remove_all(root, ignored);
}

fs::path TEST_FOLDERS::add_ons() const {
    return DISK_MANAGER(FOLDER_ADD_ONS).get_path_string();
}

fs::path TEST_FOLDERS::temp() const {
    return DISK_MANAGER(FOLDER_TEMP).get_path_string();
}

void write_file(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string read_file(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::string make_tar(const std::vector<TEST_ENTRY>& entries) {
    std::string tar;
    for (const TEST_ENTRY& entry : entries) {
        const bool folder = entry.name.ends_with('/');
        char header[512] = {};
        std::snprintf(header, 100, "%s", entry.name.c_str());
        std::snprintf(header + 100, 8, "%07o", folder ? 0755u : 0644u);
        std::snprintf(header + 108, 8, "%07o", 0u);
        std::snprintf(header + 116, 8, "%07o", 0u);
        std::snprintf(header + 124, 12, "%011zo", entry.content.size());
        std::snprintf(header + 136, 12, "%011o", 0u);
        header[156] = folder ? '5' : entry.type;
        std::snprintf(header + 157, 100, "%s", entry.link.c_str());
        std::memcpy(header + 257, "ustar\00000", 8);
        std::memset(header + 148, ' ', 8);
        unsigned sum = 0;
        for (const char c : header) {
            sum += static_cast<unsigned char>(c);
        }
        std::snprintf(header + 148, 8, "%06o", sum);
        tar.append(header, sizeof header);
        tar += entry.content;
        tar.resize((tar.size() + 511) / 512 * 512);
    }
    tar.resize(tar.size() + 1024);
    return tar;
}

std::string make_gzip(const std::string& content) {
    z_stream stream = {};
    deflateInit2(&stream, 1, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

std::string make_client_archive(const std::string& marker, std::size_t size) {
    std::mt19937 random(size);
    std::string bulk(size, '\0');
    for (char& c : bulk) {
        c = static_cast<char>(random());
    }
    return make_gzip(make_tar({{"autopatch.cfg", marker}, {"data/", ""}, {"data/bulk.bin", bulk}}));
}

std::uint32_t crc_of(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

std::unique_ptr<ADD_ON> make_add_on(ADD_ON::ADD_ON_TYPE type, const char* path,
                                    std::uint16_t version, std::uint32_t file_size) {
    auto add_on = std::make_unique<ADD_ON>();
    add_on->type = type;
    add_on->set_path(path);
    add_on->set_title(path);
    add_on->version = version;
    add_on->file_size = file_size;
    return add_on;
}

// --- The server ---

PATCH_TEST_PEER::PATCH_TEST_PEER(bool key_exchange) : manager(1, key_exchange ? 0 : 1) {
    if (!manager.listen(0, message_callback, this, connect_callback, nullptr, nullptr, this,
                        htonl(INADDR_LOOPBACK))) {
        std::abort();
    }
}

void PATCH_TEST_PEER::message_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION&,
                                       NETWORK_MESSAGE& message, void* user) {
    static_cast<PATCH_TEST_PEER*>(user)->receive(message);
}

void PATCH_TEST_PEER::connect_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION& accepted,
                                       void* user, unsigned char) {
    auto* const self = static_cast<PATCH_TEST_PEER*>(user);
    self->connection = accepted;
    self->raw.clear();
    ++self->connections;
}

void PATCH_TEST_PEER::receive(NETWORK_MESSAGE& message) {
    REQUEST request;
    request.byte_order = message.get_byte_order();
    bool good = message >> request.id && message >> request.version;
    if (request.id == AUTOPATCH_MESSAGE_VALIDATION_REQUEST) {
        std::uint32_t count = 0;
        good = good && message >> count;
        for (std::uint32_t i = 0; good && i < count; ++i) {
            ADD_ON add_on;
            good = add_on.get_from_data_device(request.version, message) != 0;
            request.installed.emplace_back(add_on.path, add_on.version);
        }
    } else if (request.id == AUTOPATCH_MESSAGE_FILE_REQUEST ||
               request.id == AUTOPATCH_MESSAGE_STREAM_START) {
        char path[256];
        good = good && message.read_dynamic_text(path, sizeof path) && message >> request.held &&
               message >> request.platform;
        request.path = path;
    }
    if (!good || message.get_bytes_left() != 0) {
        request.id = 0;  // no test expects that
    }
    requests.push_back(request);
    if (on_request) {
        on_request(request);
    }
}

void PATCH_TEST_PEER::pump() {
    manager.monitor();
    manager.monitor_send();
    pump_raw();
}

void PATCH_TEST_PEER::pump_raw() {
    if (!raw.empty() && connection && !manager.is_send_waiting()) {
        connection->stream_mode = 1;
        std::uint32_t sent = 0;
        manager.send_stream_data(connection, raw.data(), static_cast<std::uint32_t>(raw.size()),
                                 sent);
        raw.erase(0, sent);
    }
    if (raw.empty() && connection) {
        connection->stream_mode = 0;
        if (dropping) {
            dropping = false;
            drop();
        }
    }
}

std::vector<std::uint32_t> PATCH_TEST_PEER::held_sizes(std::uint16_t id) const {
    std::vector<std::uint32_t> sizes;
    for (const REQUEST& request : requests) {
        if (request.id == id) {
            sizes.push_back(request.held);
        }
    }
    return sizes;
}

void PATCH_TEST_PEER::send_message(const std::function<void(NETWORK_MESSAGE&)>& fill) {
    NETWORK_MESSAGE message;
    message.set_byte_order(byte_order);
    fill(message);
    if (!manager.send(connection, message)) {
        std::fputs("the test server could not send\n", stderr);
    }
}

void PATCH_TEST_PEER::send_list(std::uint16_t id, const std::vector<const ADD_ON*>& add_ons,
                                std::uint16_t format) {
    send_message([&](NETWORK_MESSAGE& message) {
        bool good = message << id;
        if (format >= 1200) {  // the old kind has no such word
            good = good && message << format;
        }
        good = good && message << static_cast<std::uint32_t>(add_ons.size());
        for (const ADD_ON* add_on : add_ons) {
            good = good && add_on->put_to_data_device(format, message);
        }
    });
}

void PATCH_TEST_PEER::send_block(const BLOCK& block) {
    send_message([&](NETWORK_MESSAGE& message) {
        const auto size = static_cast<std::uint32_t>(block.data.size());
        bool good = message << std::uint16_t{AUTOPATCH_MESSAGE_FILE_BLOCK} &&
                    message << std::uint16_t{1620} && message << block.remaining && message << size;
        message.write_data_block(block.data.data(), static_cast<std::int32_t>(size));
        good = good && message << static_cast<unsigned char>(block.checked ? 0 : 1);
        if (block.checked) {
            good = good && message << block.crc;
        }
        if (block.remaining == 0) {
            good = good && message << block.archive_crc;
        }
    });
}

void PATCH_TEST_PEER::send_offer(std::uint32_t size, std::uint32_t crc) {
    send_message([&](NETWORK_MESSAGE& message) {
        [[maybe_unused]] const bool good =
            message << std::uint16_t{AUTOPATCH_MESSAGE_STREAM_OFFER} &&
            message << std::uint16_t{1620} && message << size && message << crc;
    });
}

void PATCH_TEST_PEER::send_raw(const std::string& bytes) {
    raw += bytes;
}

void PATCH_TEST_PEER::drop() {
    manager.disconnect(connection, 1);
    connection.reset();
    raw.clear();
}
