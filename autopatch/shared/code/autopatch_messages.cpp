// The messages of the patch protocol, as the server sends them.
#include <zlib.h>

#include <algorithm>

#include "autopatch/add_on.h"
#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "modules/frameworks/trace_output.h"
#include "platform/data_file.h"
#include "platform/network_message.h"

namespace {

// A sender of the old kind writes no version word behind the id.
constexpr std::uint16_t FIRST_FORMAT_WITH_VERSION_WORD = 1200;
constexpr std::uint16_t FORMAT_WITHOUT_VERSION_WORD = 1000;

// Leaves the message behind its id and, if it has one, its version word.
bool read_heading(NETWORK_MESSAGE& message, std::uint16_t& id, std::uint16_t& version) {
    if (!(message >> id)) {
        return false;
    }
    if (!(message >> version)) {
        version = FORMAT_WITHOUT_VERSION_WORD;
    }
    if (version < FIRST_FORMAT_WITH_VERSION_WORD) {
        message.set_pos(0, false);
        return message >> id;
    }
    return true;
}

}  // namespace

void AUTOPATCH_SYSTEM::network_callback(NETWORK_MESSAGE& message, void* engine) {
    static_cast<AUTOPATCH_SYSTEM*>(engine)->handle_message(message);
}

void AUTOPATCH_SYSTEM::handle_message(NETWORK_MESSAGE& message) {
    std::uint16_t id = 0;
    std::uint16_t version = 0;
    if (!read_heading(message, id, version)) {
        return;
    }
    last_activity_ms = services.clock();
    switch (id) {
        case AUTOPATCH_MESSAGE_LIST:
            handle_available_list(version, message);
            break;
        case AUTOPATCH_MESSAGE_VALIDATION_RESPONSE:
            if (!handle_validate_response(version, message)) {
                TRACE_OUTPUT::output_warning("The server's validation response is bad");
                count_attempt();
                disconnect();
                return;
            }
            break;
        case AUTOPATCH_MESSAGE_FILE_BLOCK:
            handle_file_block(message);
            break;
        case AUTOPATCH_MESSAGE_STREAM_OFFER:
            handle_stream_offer(message);
            break;
        default:
            refuse_message(id, "its id is unknown");
            break;
    }
    update_status_if_all_downloaded();
}

// What the server should not have sent is taken as an error that it reports.
void AUTOPATCH_SYSTEM::refuse_message(std::uint16_t id, const char* reason) {
    TRACE_OUTPUT::output_warning("Message %d of the server was refused: %s", id, reason);
    count_attempt();
    record_error(AUTOPATCH_ERROR_SERVER);
}

// A new list deletes the records of the old one. Once a list is being worked on, and shown, only a
// list that was asked for may replace it.
void AUTOPATCH_SYSTEM::handle_available_list(std::uint16_t version, NETWORK_MESSAGE& message) {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    if (!catalogue || (validated && !list_requested)) {
        refuse_message(AUTOPATCH_MESSAGE_LIST, "nobody has asked for it");
        return;
    }
    cursor.reset();
    {
        MUTEX_LOCKER lock(progress_mutex);
        current_add_on = nullptr;
        available_count = 0;
        current_index = 0;
    }
    if (!catalogue->set_available(version, message)) {
        TRACE_OUTPUT::output_warning("The server's list of add-ons is bad");
    }
    list_received = true;
    list_requested = false;
    disconnect();
    if (list_callback) {
        list_callback(list_callback_ptr);
    }
}

bool AUTOPATCH_SYSTEM::handle_validate_response(std::uint16_t version, NETWORK_MESSAGE& message) {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    if (!catalogue || validated || !catalogue->set_available(version, message)) {
        return false;
    }
    status = AUTOPATCH_VALIDATED;
    up_to_date = true;
    const PTRARRAY& available = catalogue->available;
    for (std::int32_t i = 0; i < available.get_count(); ++i) {
        compare_with_installed(*available.get<ADD_ON>(i));
    }
    MUTEX_LOCKER lock(progress_mutex);
    available_count = static_cast<std::uint16_t>(available.get_count());
    validated = true;
    return true;
}

// Marks what the server offers, and this installation lacks, for download.
void AUTOPATCH_SYSTEM::compare_with_installed(ADD_ON& offered) {
    const ADD_ON* const installed = ADD_ONS_MANAGER::get_instance()->get_add_on(offered.path, 0);
    if (!installed) {
        up_to_date = false;
        return;
    }
    if (!offered.is_valid(false) || installed->version < offered.minimum_version) {
        up_to_date = false;
        offered.set_invalid();
    }
    for (std::int32_t i = 0; i < offered.get_child_count(); ++i) {
        ADD_ON& child = *offered.get_child(i);
        const ADD_ON* partner = nullptr;
        for (std::int32_t k = 0; k < installed->get_child_count() && !partner; ++k) {
            if (*installed->get_child(k) == child) {
                partner = installed->get_child(k);
            }
        }
        if (partner && !(child.is_valid(false) && partner->version >= child.minimum_version)) {
            up_to_date = false;
            child.set_invalid();
        }
    }
}

// --- Blocks ---

void AUTOPATCH_SYSTEM::handle_file_block(NETWORK_MESSAGE& message) {
    if (!download_file || stream_active) {
        refuse_message(AUTOPATCH_MESSAGE_FILE_BLOCK, "no block was asked for");
        return;
    }
    status = AUTOPATCH_DOWNLOADING;
    std::uint32_t remaining = 0;
    std::uint32_t block_size = 0;
    unsigned char unchecked = 0;
    std::uint32_t crc = 0;
    if (!(message >> remaining) || !open_part_file() || !(message >> block_size) ||
        !store_block(message, block_size) || !(message >> unchecked) ||
        (unchecked == 0 && !(message >> crc))) {
        TRACE_OUTPUT::output_warning("A block of \"%s\" can't be read or stored",
                                     current_add_on->path);
        record_error(AUTOPATCH_ERROR_EXTRACT);
        return;
    }
    downloaded_bytes = held_bytes(download_file) + held_bytes(part_file);
    if (current_add_on->type == ADD_ON::ADD_ON_APPLICATION) {
        progress_total_units =
            static_cast<std::uint32_t>((std::uint64_t{downloaded_bytes} + remaining) / 10);
    }
    if (remaining == 0) {
        finish_blocks(message, crc);
        return;
    }
    std::uint32_t total = downloaded_bytes;
    if (unchecked == 0) {
        if (!write_part_file(crc)) {
            total = held_bytes(download_file);
        }
        send_file_request(message, AUTOPATCH_MESSAGE_FILE_REQUEST, total);
    }
    set_progress_bar(total);
}

// The last block is there.
void AUTOPATCH_SYSTEM::finish_blocks(NETWORK_MESSAGE& message, std::uint32_t crc) {
    if (!write_part_file(crc)) {
        const std::uint32_t total = held_bytes(download_file);
        send_file_request(message, AUTOPATCH_MESSAGE_FILE_REQUEST, total);
        set_progress_bar(total);
        return;
    }
    set_progress_bar(downloaded_bytes);
    error_code = AUTOPATCH_OK;
    if (!(message >> expected_crc)) {
        TRACE_OUTPUT::output_warning("The last block of \"%s\" has no checksum of the archive",
                                     current_add_on->path);
        record_error(AUTOPATCH_ERROR_EXTRACT);
        return;
    }
    DISK_MANAGER::close(download_file);
    unpack_downloaded_file();
}

// A part file begins empty: what an earlier connection left in it is asked for again.
bool AUTOPATCH_SYSTEM::open_part_file() {
    if (part_file) {
        return true;
    }
    const std::string name = archive_name(*current_add_on, PART_ENDING);
    DISK_MANAGER downloads;
    if (goto_downloads(downloads, true)) {
        downloads.remove(name.c_str(), true);
        part_file = downloads.open_data_file(name.c_str(), FILE_WRITE, BYTEORDER_LITTLE);
        part_crc = 0;
    }
    return part_file != nullptr;
}

// No size is believed beyond what the message really holds.
bool AUTOPATCH_SYSTEM::store_block(NETWORK_MESSAGE& message, std::uint32_t block_size) {
    if (block_size == 0) {
        return true;
    }
    if (block_size > message.get_bytes_left() || !have_block_buffer(block_size)) {
        return false;
    }
    const auto size = static_cast<std::int32_t>(block_size);
    if (message.read_data_block(transfer_buffer.get(), size) != size ||
        part_file->write_data_block(transfer_buffer.get(), size) != size) {
        return false;
    }
    part_crc = static_cast<std::uint32_t>(::crc32(part_crc, transfer_buffer.get(), block_size));
    return true;
}

// --- Stream offer ---

void AUTOPATCH_SYSTEM::handle_stream_offer(NETWORK_MESSAGE& message) {
    if (!download_file || stream_active) {
        refuse_message(AUTOPATCH_MESSAGE_STREAM_OFFER, "no file was asked for");
        return;
    }
    std::uint32_t size = 0;
    std::uint32_t crc = 0;
    if (!(message >> size) || !(message >> crc)) {
        refuse_message(AUTOPATCH_MESSAGE_STREAM_OFFER, "it is cut off");
        return;
    }
    // Blocks without a checkpoint are given up: the stream goes on behind what is checked.
    DISK_MANAGER::close(part_file);
    DISK_MANAGER downloads;
    if (goto_downloads(downloads, false)) {
        downloads.remove(archive_name(*current_add_on, PART_ENDING).c_str(), true);
    }
    stream_size = size;
    stream_remaining = size;
    expected_crc = crc;
    stream_active =
        send_file_request(message, AUTOPATCH_MESSAGE_STREAM_START, held_bytes(download_file));
}
