// AUTOPATCH_SYSTEM: the patch engine. It connects to the auto-download server, tells it what is
// installed, learns what has to be fetched, and fetches and installs it one archive at a time.
//
// The engine has no thread of its own: monitor() does one round, and the message callbacks run
// inside it. Everything here belongs to the thread that calls monitor(), unless told otherwise.
// Results are true for success. What goes wrong ends up in get_error_code(), and the reason in the
// trace.
//
// A download uses two files in "$TEMP/downloads": "%s.tar.gz" holds what has passed a checkpoint
// (or the raw stream), "%s.tar.gz.part" the blocks since then. A finished archive is unpacked into
// a staging folder beside its target, checked there, and put in the target's place in one step.
#ifndef AUTOPATCH_AUTOPATCH_SYSTEM_H
#define AUTOPATCH_AUTOPATCH_SYSTEM_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "autopatch/autopatch_errors.h"
#include "autopatch/autopatch_types.h"
#include "autopatch/fetch_cursor.h"
#include "autopatch/patch_protocol.h"
#include "modules/network/network_manager.h"
#include "modules/threading/mutex.h"
#include "platform/disk_manager.h"

class ADD_ON;
class DATA_FILE;
class NETWORK_MESSAGE;

// What the pages show, read in one go.
struct AUTOPATCH_PROGRESS {
    bool validated = false;             // a validation response was accepted
    std::uint16_t available_count = 0;  // entries of the validated list
    std::uint16_t current_index = 0;    // next entry to fetch; equal to the count when all is done
    std::int16_t progress_percent = 0;  // 0 to 100
    double download_rate_kbps = 0.0;
    // Not owned; valid until the engine is cleared or asks for a list. What the pages show of it
    // doesn't change meanwhile.
    ADD_ON* current_add_on = nullptr;
};

// What the engine takes from its surroundings. Tests put their own in its place.
struct AUTOPATCH_SERVICES {
    // Milliseconds since some moment, wrapping.
    NETWORK_CLOCK clock;
    // Memory for the transfer buffer, freed with free(); null when there is none.
    void* (*allocate)(std::size_t size);
};

class AUTOPATCH_SYSTEM {
public:
    using LIST_CALLBACK = void (*)(void* user);

    // Creates the singleton, unless it exists. With `no_reconnect` the engine never connects by
    // itself in monitor().
    static void startup(unsigned char no_reconnect);
    // Ends and deletes the singleton.
    static void shutdown();
    // The singleton, or null.
    static AUTOPATCH_SYSTEM* get_instance() { return instance; }

    // Starts a run: the catalogue, the pruning of old versions, and the deletion of what an earlier
    // run left in "downloads". `enabled` allows the engine to send the validation request.
    bool internal_startup(unsigned char enabled, const char* host, std::uint16_t port);
    // Asks the engine to stop what it is doing; ends a running stream, an unpacking and a connect
    // that waits. Any thread.
    void internal_shutdown();
    // Back to the state before a connection; closes files and connection and stops the catalogue.
    void clear();

    // One round: connect, pump the connection, fetch, time out. Returns when there is nothing to
    // do at the moment; a streamed file is received to its end within one call.
    void monitor();

    // True when connected. Counts an attempt for each failure, ten at most.
    bool connect();
    // Ends the connection from this side; no attempt is counted.
    void disconnect();
    // Sends the list of installed add-ons, connecting first if needed.
    void send_validation_request();
    // Asks for the list of what the server offers; `callback(user)` is called when it is there.
    bool send_available_list_request(LIST_CALLBACK callback, void* user);

    // Allows fetching; set once the download page is up. Any thread.
    void set_download_allowed(bool allowed) { download_allowed = allowed; }
    // Any thread.
    bool get_download_allowed() const { return download_allowed; }
    // The first error, AUTOPATCH_OK for none. Any thread.
    AUTOPATCH_ERROR_CODE get_error_code() const { return error_code; }
    // What the pages show, under progress_mutex. Any thread.
    AUTOPATCH_PROGRESS get_progress() const;
    // The percentage alone. Any thread.
    std::int16_t get_current_download_progress() const;
    // True if the validated list held nothing that this installation needs. Engine's thread.
    bool is_up_to_date() const { return up_to_date; }
    // True once an available list was received. Engine's thread.
    bool is_list_received() const { return list_received; }
    AUTOPATCH_SYSTEM_STATUS get_status() const { return status; }
    // Failed connects, lost connections and bad answers so far. Read it on the engine's thread or
    // with the launcher's patch_mutex held.
    std::int32_t get_connect_attempts() const { return connect_attempts; }

    // "app_%d" of the installed client, or an empty text if none is installed. The text is in a
    // buffer of the calling thread, overwritten by its next call.
    static const char* get_current_version();
    // Deletes a client version (version_list.h).
    static bool delete_version(const char* name);
    // Prunes the client versions to the newest two (version_list.h).
    static void clean_version_list();
    static const char* get_error_str(AUTOPATCH_ERROR_CODE code) { return ::get_error_str(code); }
    static const char* get_error_url(AUTOPATCH_ERROR_CODE code) { return ::get_error_url(code); }

    // Handles one message of the server; `engine` is the AUTOPATCH_SYSTEM. The message is used for
    // the reply.
    static void network_callback(NETWORK_MESSAGE& message, void* engine);
    // The connection of `engine` is gone: counts an attempt and closes the files, so that the next
    // round asks again.
    static void user_callback(void* engine);

    // The checkpoint: checks the part file against `crc` and appends it to the archive. True if the
    // part was good and is now part of the archive. The part file is gone afterwards.
    bool write_part_file(std::uint32_t crc);
    // Checks, unpacks and installs the finished archive of the current add-on and goes on to the
    // next. Called with the archive closed. True if the add-on is installed.
    bool unpack_downloaded_file();

    // Puts other services in place; for tests. Call before internal_startup().
    void set_services(const AUTOPATCH_SERVICES& other) { services = other; }

private:
    static constexpr char DOWNLOADS_FOLDER[] = "downloads";
    static constexpr char ARCHIVE_ENDING[] = ".tar.gz";
    static constexpr char PART_ENDING[] = ".tar.gz.part";

    explicit AUTOPATCH_SYSTEM(unsigned char no_reconnect);
    ~AUTOPATCH_SYSTEM();
    AUTOPATCH_SYSTEM(const AUTOPATCH_SYSTEM&) = delete;
    AUTOPATCH_SYSTEM& operator=(const AUTOPATCH_SYSTEM&) = delete;

    // Connection and rounds (autopatch_system.cpp).
    void record_error(AUTOPATCH_ERROR_CODE code);
    void count_attempt();
    void connection_lost();
    bool is_exit_requested() const;
    bool has_more_to_fetch() const;
    void update_status_if_all_downloaded();
    void check_time_out();
    void pump_connection();
    void close_files();
    void remove_earlier_downloads();
    void set_progress_bar(std::uint32_t bytes);
    void update_download_rate();

    // Choosing and asking for an archive (autopatch_fetch.cpp).
    static std::uint32_t held_bytes(const DATA_FILE* file);
    static std::string archive_name(const ADD_ON& add_on, const char* ending);
    static bool goto_downloads(DISK_MANAGER& disk, bool create);
    void set_current_add_on(ADD_ON* add_on);
    void start_next_fetch();
    void descend_into_children(ADD_ON* top);
    void request_leaf(ADD_ON* leaf);
    bool open_download_file(const ADD_ON& leaf);
    bool send_file_request(NETWORK_MESSAGE& message, std::uint16_t id, std::uint32_t held);
    void advance_to_next();

    // Messages (autopatch_messages.cpp).
    void handle_message(NETWORK_MESSAGE& message);
    void refuse_message(std::uint16_t id, const char* reason);
    void handle_available_list(std::uint16_t version, NETWORK_MESSAGE& message);
    bool handle_validate_response(std::uint16_t version, NETWORK_MESSAGE& message);
    void compare_with_installed(ADD_ON& offered);
    void handle_file_block(NETWORK_MESSAGE& message);
    void finish_blocks(NETWORK_MESSAGE& message, std::uint32_t crc);
    bool open_part_file();
    bool store_block(NETWORK_MESSAGE& message, std::uint32_t block_size);
    void handle_stream_offer(NETWORK_MESSAGE& message);

    // Raw stream (autopatch_stream.cpp).
    void free_transfer_buffer();
    bool allocate_transfer_buffer(std::uint32_t size);
    bool have_block_buffer(std::uint32_t size);
    void receive_stream();
    void receive_stream_piece();
    void finish_stream();

    // Checkpoint and install (autopatch_install.cpp).
    bool append_part_file(DISK_MANAGER& downloads, const std::string& part_name);
    void fail_install(AUTOPATCH_ERROR_CODE code, const std::string& reason);
    void fail_unpacking(AUTOPATCH_ERROR_CODE code, const std::string& reason);
    bool install_archive();
    bool unpack_archive(DISK_MANAGER& downloads, const std::string& archive, DISK_MANAGER& staging);

    struct FREE_DELETER {
        void operator()(unsigned char* block) const { std::free(block); }
    };

    static AUTOPATCH_SYSTEM* instance;
    static LIST_CALLBACK list_callback;
    static void* list_callback_ptr;

    AUTOPATCH_SERVICES services;
    std::int8_t connect_attempts = 0;
    std::atomic<AUTOPATCH_ERROR_CODE> error_code;
    std::unique_ptr<NETWORK_MANAGER> manager;
    NETWORK_CONNECTION connection;       // null: not connected
    DATA_FILE* download_file = nullptr;  // owned, closed through DISK_MANAGER::close
    DATA_FILE* part_file = nullptr;      // owned, closed through DISK_MANAGER::close
    // Checksum of what was written to part_file; the archive as a whole is read back and checked.
    std::uint32_t part_crc = 0;
    std::uint32_t expected_crc = 0;
    ADD_ON* current_add_on = nullptr;  // not owned: a record of the catalogue's available list
    std::unique_ptr<unsigned char[], FREE_DELETER> transfer_buffer;
    std::uint32_t transfer_buffer_size = 0;
    std::uint32_t downloaded_bytes = 0;
    std::uint32_t stream_size = 0;
    std::uint32_t stream_remaining = 0;
    bool stream_active = false;
    bool engine_enabled = false;
    bool no_reconnect;
    bool validation_sent = false;
    bool validated = false;
    bool list_received = false;
    bool list_requested = false;  // a list request is open
    std::uint32_t last_activity_ms = 0;
    bool up_to_date = false;
    std::atomic<bool> download_allowed;
    std::int16_t progress_percent = 0;
    double download_rate_kbps = 0.0;
    std::uint32_t last_rate_ms = 0;
    // Guards what the pages read: validated, available_count, current_index, progress_percent,
    // download_rate_kbps and current_add_on.
    mutable MUTEX progress_mutex;
    bool exit_requested_flag = false;
    mutable MUTEX exit_mutex;
    std::uint16_t current_index = 0;
    FETCH_CURSOR cursor;
    std::uint32_t progress_done_units = 0;
    std::uint32_t progress_last_bytes = 0;
    std::uint32_t progress_total_units = 0;
    std::uint16_t available_count = 0;
    AUTOPATCH_SYSTEM_STATUS status = AUTOPATCH_DISCONNECTED;
    char host_name[256];
    std::uint16_t port_number = 0;
    bool open_failure_traced = false;  // the current leaf's archive could not be opened
};

#endif  // AUTOPATCH_AUTOPATCH_SYSTEM_H
