// One launcher's connection to the update server: answers its messages and sends it archives.
//
// All of it runs on the server's pump thread. Archives go out piece by piece in pump(), so that the
// memory of a session is one block, however large the archive.
#ifndef TOOLS_PATCH_SERVER_PATCH_SESSION_H
#define TOOLS_PATCH_SERVER_PATCH_SESSION_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "modules/network/network_manager.h"
#include "published_catalogue.h"
#include "server_settings.h"

class CATALOGUE_WATCH;

// What the sessions of a server share.
struct SESSION_HOST {
    NETWORK_MANAGER& manager;
    SERVER_SETTINGS& settings;  // faults that are made once are taken out of it
    const CATALOGUE_WATCH& watch;
    std::vector<unsigned char> scratch;  // a block on its way into a message
};

class PATCH_SESSION {
public:
    PATCH_SESSION(SESSION_HOST& session_host, const NETWORK_CONNECTION& session_connection,
                  std::uint32_t session_number);

    // Answers one message. A message that can't be right ends the session.
    void handle_message(NETWORK_MESSAGE& message);

    enum class PUMP_RESULT { IDLE, MOVED, WAITING_FOR_RATE };
    // Sends the next piece, if there is one and the connection takes it. MOVED: there may be more.
    PUMP_RESULT pump(std::uint32_t now_ms);

    // Writes the session's line to the log.
    void log_end(bool by_server) const;

private:
    enum class TRANSFER { NONE, BLOCKS, STREAM };

    void handle_available_request(NETWORK_MESSAGE& message);
    void handle_validation_request(std::uint16_t version, NETWORK_MESSAGE& message);
    void handle_file_request(NETWORK_MESSAGE& message, bool start_stream);
    bool write_list(NETWORK_MESSAGE& message, std::uint16_t id,
                    const std::vector<std::unique_ptr<ADD_ON>>& list);
    void begin_message(NETWORK_MESSAGE& message, std::uint16_t id) const;
    void send_message(NETWORK_MESSAGE& message);
    void send_raw_frame(NETWORK_MESSAGE& message);
    void send_block();
    void offer_stream(NETWORK_MESSAGE& message);
    bool send_stream_piece();
    bool pump_raw_frames();
    void note(const std::string& text);
    void note_transfer();
    void end(const char* reason);
    void make_byte_faults(std::int64_t before);
    std::uint32_t allowance(std::uint32_t now_ms);

    SESSION_HOST& host;
    NETWORK_CONNECTION connection;
    const std::uint32_t number;
    std::shared_ptr<const PUBLISHED_CATALOGUE> catalogue;  // what this launcher was told of

    TRANSFER transfer = TRANSFER::NONE;
    const PUBLISHED_ARCHIVE* archive = nullptr;  // in `catalogue`
    std::uint32_t offset = 0;                    // of the archive: what was sent
    std::uint32_t run_crc = 0;                   // of the blocks since the last checkpoint
    std::uint32_t blocks_in_run = 0;
    std::string raw_frames;  // frames that go out by hand, for faults
    bool stalled = false;

    std::uint32_t rate_ms = 0;     // time of the last look at the allowance
    std::uint64_t rate_bytes = 0;  // what may be sent now

    const std::uint32_t started_ms;
    std::uint32_t transfer_ms = 0;  // when the archive was first asked for
    std::uint32_t moved_ms = 0;     // when the launcher last took a piece of its stream
    std::uint32_t unheard = 0;      // messages in a row that came while answers wait to be taken
    std::uint64_t bytes_sent = 0;   // of archives
    std::string peer;
    std::string history;  // what was asked for
    std::string end_reason;
};

#endif  // TOOLS_PATCH_SERVER_PATCH_SESSION_H
