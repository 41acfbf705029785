#include "patch_server.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cinttypes>

#include "platform/process_tools.h"
#include "server_log.h"

namespace {

constexpr std::uint32_t IDLE_WAIT_MS = 1000;
constexpr std::uint32_t RATE_WAIT_MS = 5;

}  // namespace

PATCH_SERVER::PATCH_SERVER(const SERVER_SETTINGS& server_settings)
    : settings(server_settings),
      watch(settings.publish, settings.stream ? 0 : settings.block_size),
      manager(1, settings.key_exchange ? 0 : 1),
      host{manager, settings, watch, {}} {
}

bool PATCH_SERVER::start(std::string& reason) {
    in_addr address{};
    if (::inet_pton(AF_INET, settings.bind.c_str(), &address) != 1) {
        reason = settings.bind + " is no IPv4 address";
        return false;
    }
    if (!watch.start(reason)) {
        return false;
    }
    if (!manager.listen(settings.port, nullptr, nullptr, on_connect, on_disconnect, nullptr, this,
                        address.s_addr)) {
        reason = "port " + std::to_string(settings.port) + " of " + settings.bind +
                 " can't be opened; is another server running?";
        return false;
    }
    return true;
}

void PATCH_SERVER::run(const std::atomic<bool>& stop) {
    while (!stop) {
        manager.monitor();
        bool moved = false;
        bool waiting_for_rate = false;
        const std::uint32_t now = get_ms_count();
        // A session that ends leaves the map inside pump(), so step on first.
        for (auto it = sessions.begin(); it != sessions.end();) {
            PATCH_SESSION& session = *(it++)->second;
            switch (session.pump(now)) {
                case PATCH_SESSION::PUMP_RESULT::MOVED:
                    moved = true;
                    break;
                case PATCH_SESSION::PUMP_RESULT::WAITING_FOR_RATE:
                    waiting_for_rate = true;
                    break;
                case PATCH_SESSION::PUMP_RESULT::IDLE:
                    break;
            }
        }
        manager.monitor_send();
        ended.clear();
        if (!moved) {
            manager.wait(waiting_for_rate ? RATE_WAIT_MS : IDLE_WAIT_MS);
        }
    }
    manager.disconnect_all(1);
    server_log("%" PRIu32 " sessions served, %zu at most at once", session_count, most_sessions);
}

void PATCH_SERVER::on_connect(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection, void* server,
                              unsigned char) {
    PATCH_SERVER& self = *static_cast<PATCH_SERVER*>(server);
    auto session = std::make_unique<PATCH_SESSION>(self.host, connection, ++self.session_count);
    connection->message_callback = on_message;
    connection->message_user = session.get();
    self.sessions[connection.get()] = std::move(session);
    self.most_sessions = std::max(self.most_sessions, self.sessions.size());
}

void PATCH_SERVER::on_disconnect(NETWORK_MANAGER&, const NETWORK_CONNECTION& connection,
                                 void* server, unsigned char by_user) {
    PATCH_SERVER& self = *static_cast<PATCH_SERVER*>(server);
    const auto session = self.sessions.find(connection.get());
    if (session != self.sessions.end()) {
        session->second->log_end(by_user != 0);
        connection->message_callback = nullptr;
        self.ended.push_back(std::move(session->second));
        self.sessions.erase(session);
    }
}

void PATCH_SERVER::on_message(NETWORK_MANAGER&, const NETWORK_CONNECTION&, NETWORK_MESSAGE& message,
                              void* session) {
    static_cast<PATCH_SESSION*>(session)->handle_message(message);
}
