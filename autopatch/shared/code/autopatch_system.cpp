// The engine's life, its connection and its rounds.
#include "autopatch/autopatch_system.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "autopatch/add_on.h"
#include "autopatch/add_ons_manager.h"
#include "autopatch/version_list.h"
#include "kvcore/text_field.h"
#include "modules/frameworks/trace_output.h"
#include "platform/data_file.h"
#include "platform/network_message.h"
#include "platform/process_tools.h"

AUTOPATCH_SYSTEM* AUTOPATCH_SYSTEM::instance = nullptr;
AUTOPATCH_SYSTEM::LIST_CALLBACK AUTOPATCH_SYSTEM::list_callback = nullptr;
void* AUTOPATCH_SYSTEM::list_callback_ptr = nullptr;

namespace {

constexpr std::int8_t LAST_ATTEMPT = 9;
constexpr std::int32_t CONNECT_TIMEOUT_S = 60;
constexpr std::uint32_t SILENCE_LIMIT_MS = 600000;
constexpr std::uint32_t RATE_INTERVAL_MS = 500;
constexpr double MAX_RATE_KBPS = 1e9;
constexpr std::uint32_t PUMP_LIMIT_MS = 30;
// How long it waits within a round for a block that was asked for.
constexpr std::uint32_t BLOCK_WAIT_MS = 5;
// A peer that was heard of within this time is sending.
constexpr std::uint32_t FLOWING_MS = 100;

void _network_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION&, NETWORK_MESSAGE& message,
                       void* engine) {
    AUTOPATCH_SYSTEM::network_callback(message, engine);
}

// `by_user` is set when the engine itself has closed the connection: then nothing was lost.
void _user_callback(NETWORK_MANAGER&, const NETWORK_CONNECTION&, void* engine,
                    unsigned char by_user) {
    if (!by_user) {
        AUTOPATCH_SYSTEM::user_callback(engine);
    }
}

}  // namespace

void AUTOPATCH_SYSTEM::startup(unsigned char no_reconnect) {
    if (!instance) {
        instance = new AUTOPATCH_SYSTEM(no_reconnect);
    }
}

void AUTOPATCH_SYSTEM::shutdown() {
    delete instance;
    instance = nullptr;
}

AUTOPATCH_SYSTEM::AUTOPATCH_SYSTEM(unsigned char no_reconnect_flag)
    : services{get_ms_count, std::malloc},
      error_code(AUTOPATCH_OK),
      no_reconnect(no_reconnect_flag != 0),
      download_allowed(false) {
    host_name[0] = '\0';
    clear();
}

AUTOPATCH_SYSTEM::~AUTOPATCH_SYSTEM() {
    clear();
}

bool AUTOPATCH_SYSTEM::internal_startup(unsigned char enabled, const char* host,
                                        std::uint16_t port) {
    engine_enabled = enabled != 0;
    last_activity_ms = services.clock();
    KVCORE::copy_text_field(host_name, host);
    port_number = port;
    clear();
    ADD_ONS_MANAGER::startup(enabled);
    delete_staging_folders();
    clean_version_list();
    remove_earlier_downloads();
    downloaded_bytes = 0;
    validation_sent = false;
    stream_active = false;
    MUTEX_LOCKER lock(exit_mutex);
    exit_requested_flag = false;
    return ADD_ONS_MANAGER::get_instance() != nullptr;
}

void AUTOPATCH_SYSTEM::internal_shutdown() {
    MUTEX_LOCKER lock(exit_mutex);
    exit_requested_flag = true;
}

void AUTOPATCH_SYSTEM::clear() {
    close_files();
    if (manager) {
        // What the manager closes now is no lost connection.
        manager->disconnect_callback = nullptr;
    }
    connection.reset();
    manager.reset();
    free_transfer_buffer();
    connect_attempts = 0;
    error_code = AUTOPATCH_OK;
    stream_active = false;
    validation_sent = false;
    list_received = false;
    list_requested = false;
    up_to_date = false;
    download_allowed = false;
    open_failure_traced = false;
    last_rate_ms = 0;
    cursor.reset();
    progress_done_units = 0;
    progress_last_bytes = 0;
    progress_total_units = 0;
    status = AUTOPATCH_DISCONNECTED;
    {
        MUTEX_LOCKER lock(progress_mutex);
        validated = false;
        available_count = 0;
        current_index = 0;
        progress_percent = 0;
        download_rate_kbps = 0.0;
        current_add_on = nullptr;
    }
    {
        MUTEX_LOCKER lock(exit_mutex);
        exit_requested_flag = false;
    }
    ADD_ONS_MANAGER::shutdown();
    last_activity_ms = services.clock();
}

// --- Small parts ---

// The first error is what the user is told.
void AUTOPATCH_SYSTEM::record_error(AUTOPATCH_ERROR_CODE code) {
    if (error_code == AUTOPATCH_OK) {
        error_code = code;
    }
}

void AUTOPATCH_SYSTEM::count_attempt() {
    if (connect_attempts < std::numeric_limits<std::int8_t>::max()) {
        ++connect_attempts;
    }
}

bool AUTOPATCH_SYSTEM::is_exit_requested() const {
    MUTEX_LOCKER lock(exit_mutex);
    return exit_requested_flag;
}

bool AUTOPATCH_SYSTEM::has_more_to_fetch() const {
    MUTEX_LOCKER lock(progress_mutex);
    return available_count > current_index;
}

void AUTOPATCH_SYSTEM::update_status_if_all_downloaded() {
    if (status > AUTOPATCH_VALIDATION_SENT && !has_more_to_fetch()) {
        status = AUTOPATCH_ALL_DOWNLOADED;
    }
}

void AUTOPATCH_SYSTEM::close_files() {
    DISK_MANAGER::close(download_file);
    DISK_MANAGER::close(part_file);
}

// Nothing of an earlier run survives in "downloads".
void AUTOPATCH_SYSTEM::remove_earlier_downloads() {
    DISK_MANAGER disk;
    if (disk.goto_path(FOLDER_TEMP) && DISK_MANAGER::delete_tree(disk, DOWNLOADS_FOLDER) != 0) {
        TRACE_OUTPUT::output_warning("Earlier downloads can't be deleted");
    }
}

AUTOPATCH_PROGRESS AUTOPATCH_SYSTEM::get_progress() const {
    MUTEX_LOCKER lock(progress_mutex);
    AUTOPATCH_PROGRESS progress;
    progress.validated = validated;
    progress.available_count = available_count;
    progress.current_index = current_index;
    progress.progress_percent = progress_percent;
    progress.download_rate_kbps = download_rate_kbps;
    progress.current_add_on = current_add_on;
    return progress;
}

std::int16_t AUTOPATCH_SYSTEM::get_current_download_progress() const {
    MUTEX_LOCKER lock(progress_mutex);
    return progress_percent;
}

const char* AUTOPATCH_SYSTEM::get_current_version() {
    static thread_local char app_ver[32];
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    const ADD_ON* const app = catalogue ? catalogue->get_add_on("app", 0) : nullptr;
    app_ver[0] = '\0';
    if (app && app->version != 0) {
        std::snprintf(app_ver, sizeof app_ver, "app_%d", app->version);
    }
    return app_ver;
}

bool AUTOPATCH_SYSTEM::delete_version(const char* name) {
    return ::delete_version(name);
}

void AUTOPATCH_SYSTEM::clean_version_list() {
    ::clean_version_list(get_current_version());
}

// Progress is counted in units of ten bytes, so that a large sum stays in 32 bits.
void AUTOPATCH_SYSTEM::set_progress_bar(std::uint32_t bytes) {
    std::uint64_t percent = 100;
    if (progress_total_units != 0) {
        if (bytes > progress_last_bytes) {
            progress_done_units += (bytes - progress_last_bytes) / 10;
        }
        progress_last_bytes = bytes;
        percent = progress_total_units >= 100
                      ? progress_done_units / (progress_total_units / 100)
                      : std::uint64_t{progress_done_units} * 100 / progress_total_units;
    }
    MUTEX_LOCKER lock(progress_mutex);
    progress_percent = static_cast<std::int16_t>(std::min<std::uint64_t>(percent, 100));
}

void AUTOPATCH_SYSTEM::update_download_rate() {
    const std::uint32_t now = services.clock();
    MUTEX_LOCKER lock(progress_mutex);
    if (now - last_rate_ms <= RATE_INTERVAL_MS && download_rate_kbps != 0.0) {
        return;
    }
    const double rate = connection ? connection->get_receive_rate_kbps() : 0.0;
    download_rate_kbps = std::clamp(rate, 0.0, MAX_RATE_KBPS);
    last_rate_ms = now;
}

// --- Connection ---

bool AUTOPATCH_SYSTEM::connect() {
    if (!manager) {
        manager = std::make_unique<NETWORK_MANAGER>(1, 1);
        manager->set_clock(services.clock);
    }
    if (connection) {
        return true;
    }
    status = AUTOPATCH_DISCONNECTED;
    if (connect_attempts > LAST_ATTEMPT) {
        record_error(AUTOPATCH_ERROR_CONNECT);
        return false;
    }
    if (host_name[0] == '\0' || port_number == 0) {
        return false;
    }
    manager->connect_timeout = CONNECT_TIMEOUT_S;
    manager->connect_go_on = [this] { return !is_exit_requested(); };
    connection = manager->connect(host_name, port_number, _network_callback, this);
    if (!connection) {
        TRACE_OUTPUT::output_trace("No connection to %s:%d at attempt %d", host_name, port_number,
                                   connect_attempts + 1);
        if (no_reconnect) {
            record_error(AUTOPATCH_ERROR_CONNECT);
        } else {
            count_attempt();
        }
        return false;
    }
    status = AUTOPATCH_CONNECTED;
    manager->disconnect_callback = _user_callback;
    manager->user = this;
    return true;
}

void AUTOPATCH_SYSTEM::disconnect() {
    if (connection) {
        const NETWORK_CONNECTION handle = connection;
        connection.reset();
        manager->disconnect(handle, 1);
    }
    close_files();
    stream_active = false;
    status = AUTOPATCH_DISCONNECTED;
}

void AUTOPATCH_SYSTEM::user_callback(void* engine) {
    static_cast<AUTOPATCH_SYSTEM*>(engine)->connection_lost();
}

// With both files closed the next round opens the archive anew and asks for the rest of it.
void AUTOPATCH_SYSTEM::connection_lost() {
    TRACE_OUTPUT::output_trace("The connection to %s:%d is lost", host_name, port_number);
    count_attempt();
    connection.reset();
    close_files();
    stream_active = false;
    status = AUTOPATCH_DISCONNECTED;
}

void AUTOPATCH_SYSTEM::check_time_out() {
    if (last_activity_ms == 0 || services.clock() - last_activity_ms <= SILENCE_LIMIT_MS) {
        return;
    }
    TRACE_OUTPUT::output_warning("Nothing was heard from %s:%d for %u seconds", host_name,
                                 port_number, SILENCE_LIMIT_MS / 1000);
    no_reconnect = true;
    disconnect();
    record_error(AUTOPATCH_ERROR_CONNECT);
}

void AUTOPATCH_SYSTEM::send_validation_request() {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    if (!engine_enabled || !catalogue || !connect()) {
        return;
    }
    NETWORK_MESSAGE message;
    const PTRARRAY& installed = catalogue->installed;
    bool written = message << std::uint16_t{AUTOPATCH_MESSAGE_VALIDATION_REQUEST} &&
                   message << PROTOCOL_VERSION &&
                   message << static_cast<std::uint32_t>(installed.get_count());
    for (std::int32_t i = 0; written && i < installed.get_count(); ++i) {
        written = installed.get<ADD_ON>(i)->put_to_data_device(PROTOCOL_VERSION, message) != 0;
    }
    if (!written || !manager->send(connection, message)) {
        return;
    }
    status = AUTOPATCH_VALIDATION_SENT;
    validation_sent = true;
    last_activity_ms = services.clock();
}

bool AUTOPATCH_SYSTEM::send_available_list_request(LIST_CALLBACK callback, void* user) {
    list_callback = callback;
    list_callback_ptr = user;
    list_received = false;
    if (!connect()) {
        return false;
    }
    NETWORK_MESSAGE message;
    if (!(message << std::uint16_t{AUTOPATCH_MESSAGE_LIST_REQUEST}) ||
        !(message << PROTOCOL_VERSION) || !manager->send(connection, message)) {
        return false;
    }
    list_requested = true;
    last_activity_ms = services.clock();
    return true;
}

// --- One round ---

// Blocks that are there already are taken one after the other, for a moment: a pass handles one
// message, and how often rounds come must not limit the download.
void AUTOPATCH_SYSTEM::pump_connection() {
    const std::uint32_t begin_ms = services.clock();
    for (;;) {
        const bool received = manager->monitor() != 0;
        manager->monitor_send();
        if (!connection || !download_file || stream_active || error_code != AUTOPATCH_OK) {
            return;
        }
        // While blocks flow, wait for the next one here: the next round may be a whole update away.
        const std::uint32_t now_ms = services.clock();
        const bool flowing = now_ms - last_activity_ms < FLOWING_MS;
        if (now_ms - begin_ms >= PUMP_LIMIT_MS ||
            (!received && (!flowing || !manager->wait(BLOCK_WAIT_MS)))) {
            return;
        }
    }
}
void AUTOPATCH_SYSTEM::monitor() {
    if (!no_reconnect && !connect()) {
        return;
    }
    if (connection) {
        if (!validation_sent) {
            send_validation_request();
        }
        pump_connection();
        update_download_rate();
    }
    // A connection that was lost just now is made again in the next round, which then asks.
    if (connection && download_allowed && has_more_to_fetch() && !is_exit_requested()) {
        // After an error nothing new is begun: the launcher ends the run.
        if (!download_file && error_code == AUTOPATCH_OK) {
            start_next_fetch();
        }
        // The stream start must have left: nothing is sent while the stream runs.
        if (stream_active && !manager->is_send_waiting()) {
            receive_stream();
        }
    }
    check_time_out();
}
