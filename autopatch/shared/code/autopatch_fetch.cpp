// Choosing the next archive and asking the server for it.
#include <algorithm>
#include <limits>

#include "autopatch/add_on.h"
#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "modules/frameworks/trace_output.h"
#include "platform/data_file.h"
#include "platform/network_message.h"
#include "platform/system_information.h"

std::uint32_t AUTOPATCH_SYSTEM::held_bytes(const DATA_FILE* file) {
    const std::int64_t size = file ? file->get_size() : 0;
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(size, 0, std::numeric_limits<std::uint32_t>::max()));
}

// The name of an add-on's archive, as DISK_MANAGER stores it.
std::string AUTOPATCH_SYSTEM::archive_name(const ADD_ON& add_on, const char* ending) {
    std::string name = std::string(add_on.path) + ending;
    DISK_MANAGER::convert_illegal_chars(name.data());
    return name;
}

bool AUTOPATCH_SYSTEM::goto_downloads(DISK_MANAGER& disk, bool create) {
    return disk.goto_path(FOLDER_TEMP) && disk.move_down(DOWNLOADS_FOLDER, create);
}

void AUTOPATCH_SYSTEM::set_current_add_on(ADD_ON* add_on) {
    MUTEX_LOCKER lock(progress_mutex);
    current_add_on = add_on;
}

void AUTOPATCH_SYSTEM::start_next_fetch() {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    ADD_ON* const top = catalogue ? catalogue->available.get<ADD_ON>(current_index) : nullptr;
    if (!top) {
        return;
    }
    if (progress_total_units == 0) {
        progress_total_units = top->file_size / 10;
    }
    ADD_ON* const add_on = cursor.current(top);
    if (!add_on) {
        advance_to_next();
    } else if (add_on->get_child_count() > 0) {
        descend_into_children(top);
    } else {
        request_leaf(add_on);
    }
}

// The next round takes the first of the children.
void AUTOPATCH_SYSTEM::descend_into_children(ADD_ON* top) {
    std::uint32_t added_units = 0;
    switch (cursor.descend(top, added_units)) {
        case FETCH_CURSOR::DESCENT_DONE:
            progress_total_units += added_units;
            break;
        case FETCH_CURSOR::DESCENT_NOTHING:
            advance_to_next();
            update_status_if_all_downloaded();
            break;
        case FETCH_CURSOR::DESCENT_TOO_DEEP:
            TRACE_OUTPUT::output_warning("The add-on \"%s\" has more than %d levels of children",
                                         top->path, FETCH_CURSOR::MAX_DEPTH);
            record_error(AUTOPATCH_ERROR_SERVER);
            break;
    }
}

void AUTOPATCH_SYSTEM::request_leaf(ADD_ON* leaf) {
    for (const ADD_ON* node = leaf; node; node = node->parent) {
        // Reading has refused such names already; this is the last gate before the disk.
        if (!is_plain_folder_name(node->path)) {
            TRACE_OUTPUT::output_warning("An add-on was refused: its path is no folder name");
            record_error(AUTOPATCH_ERROR_EXTRACT);
            return;
        }
    }
    DISK_MANAGER::close(part_file);
    if (!open_download_file(*leaf)) {
        return;
    }
    set_current_add_on(leaf);
    NETWORK_MESSAGE message;
    if (!send_file_request(message, AUTOPATCH_MESSAGE_FILE_REQUEST, held_bytes(download_file))) {
        // Closed, so that the next round asks again.
        DISK_MANAGER::close(download_file);
    }
}

// A failure is tried again each round, until nothing was heard for too long; it is traced once.
bool AUTOPATCH_SYSTEM::open_download_file(const ADD_ON& leaf) {
    const std::string name = archive_name(leaf, ARCHIVE_ENDING);
    DISK_MANAGER downloads;
    if (goto_downloads(downloads, true)) {
        download_file = downloads.open_data_file(name.c_str(), FILE_APPEND, BYTEORDER_LITTLE);
        if (!download_file) {
            download_file = downloads.open_data_file(name.c_str(), FILE_WRITE, BYTEORDER_LITTLE);
        }
    }
    if (!download_file && !open_failure_traced) {
        TRACE_OUTPUT::output_warning("The download \"%s\" can't be opened for writing",
                                     name.c_str());
    }
    open_failure_traced = !download_file;
    return download_file != nullptr;
}

// Fills `message` anew, with the fields that a file request and a stream start share, and sends it.
bool AUTOPATCH_SYSTEM::send_file_request(NETWORK_MESSAGE& message, std::uint16_t id,
                                         std::uint32_t held) {
    message.reset_payload();
    // A received message has its sender's byte order; ours is always the little one.
    message.set_byte_order(BYTEORDER_LITTLE);
    const unsigned char platform_id = get_system_information().platform;
    return message << id && message << PROTOCOL_VERSION &&
           message.write_dynamic_text(current_add_on->path) && message << held &&
           message << platform_id && manager && manager->send(connection, message);
}

void AUTOPATCH_SYSTEM::advance_to_next() {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    ADD_ON* const top = catalogue ? catalogue->available.get<ADD_ON>(current_index) : nullptr;
    if (cursor.advance(top)) {
        return;
    }
    progress_done_units = 0;
    progress_total_units = 0;
    MUTEX_LOCKER lock(progress_mutex);
    ++current_index;
}
