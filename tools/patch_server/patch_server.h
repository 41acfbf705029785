// PATCH_SERVER: the auto-download server. One thread serves all launchers; another one watches the
// published folder.
#ifndef TOOLS_PATCH_SERVER_PATCH_SERVER_H
#define TOOLS_PATCH_SERVER_PATCH_SERVER_H

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "catalogue_watch.h"
#include "patch_session.h"
#include "server_settings.h"

class PATCH_SERVER {
public:
    explicit PATCH_SERVER(const SERVER_SETTINGS& server_settings);

    // Reads the published folder and opens the listener. False with the reason in words.
    bool start(std::string& reason);
    std::uint16_t get_port() const { return manager.get_listen_port(); }
    // Serves until `stop` is set.
    void run(const std::atomic<bool>& stop);

private:
    static void on_connect(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                           void* server, unsigned char outgoing);
    static void on_disconnect(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                              void* server, unsigned char by_user);
    static void on_message(NETWORK_MANAGER& manager, const NETWORK_CONNECTION& connection,
                           NETWORK_MESSAGE& message, void* session);

    SERVER_SETTINGS settings;
    CATALOGUE_WATCH watch;
    NETWORK_MANAGER manager;
    SESSION_HOST host;
    std::map<NETWORK_MANAGER_INFO*, std::unique_ptr<PATCH_SESSION>> sessions;
    // Sessions that ended during the pass; one of them may still be at work on the stack.
    std::vector<std::unique_ptr<PATCH_SESSION>> ended;
    std::uint32_t session_count = 0;
    std::size_t most_sessions = 0;
};

#endif  // TOOLS_PATCH_SERVER_PATCH_SERVER_H
