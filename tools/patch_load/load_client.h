// One of many launchers that patch_load plays at once: asks for the client, receives it, checks it
// and throws it away.
#ifndef TOOLS_PATCH_LOAD_LOAD_CLIENT_H
#define TOOLS_PATCH_LOAD_LOAD_CLIENT_H

#include <cstdint>
#include <vector>

#include "modules/network/network_manager.h"

class LOAD_CLIENT {
public:
    enum class STATE { WAITING, RECEIVING, FINISHED, FAILED };

    // Connects and asks what is to be installed. The state is FAILED if that can't be done.
    LOAD_CLIENT(NETWORK_MANAGER& network, const char* host, std::uint16_t port);

    // Receives what a raw stream has brought. True if that was anything. Called after each pass of
    // sending, before the next one of receiving.
    bool receive_stream(std::vector<unsigned char>& scratch);
    STATE get_state() const { return state; }
    std::uint64_t get_received() const { return received; }
    const NETWORK_CONNECTION& get_connection() const { return connection; }
    // The connection went away.
    void connection_lost();

private:
    static void on_message(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                           NETWORK_MESSAGE& message, void* client);
    bool handle_message(NETWORK_MESSAGE& message);
    bool handle_list(NETWORK_MESSAGE& message);
    bool handle_block(NETWORK_MESSAGE& message);
    bool request(NETWORK_MESSAGE& message, std::uint16_t id);
    void finish(std::uint32_t expected_crc);

    NETWORK_MANAGER& manager;
    NETWORK_CONNECTION connection;
    STATE state = STATE::FAILED;
    std::uint32_t crc = 0;
    std::uint32_t expected = 0;  // checksum of the whole archive
    std::uint32_t stream_left = 0;
    std::uint64_t received = 0;
};

#endif  // TOOLS_PATCH_LOAD_LOAD_CLIENT_H
