// The raw stream of an archive: bytes without frames, as many as the server has offered.
#include <algorithm>

#include "autopatch/add_on.h"
#include "autopatch/autopatch_system.h"
#include "modules/frameworks/trace_output.h"
#include "platform/data_file.h"

namespace {

constexpr std::uint32_t TRANSFER_BUFFER_SIZE = 0x100000;
// The longest sleep without data, so that the exit flag is seen in time.
constexpr std::uint32_t WAIT_MS = 20;

}  // namespace

void AUTOPATCH_SYSTEM::free_transfer_buffer() {
    transfer_buffer.reset();
    transfer_buffer_size = 0;
}

// Makes the buffer exactly `size` bytes large; what was in it is lost.
bool AUTOPATCH_SYSTEM::allocate_transfer_buffer(std::uint32_t size) {
    free_transfer_buffer();
    transfer_buffer.reset(static_cast<unsigned char*>(services.allocate(size)));
    transfer_buffer_size = transfer_buffer ? size : 0;
    return transfer_buffer != nullptr;
}

// Makes the buffer hold a block of `size` bytes.
bool AUTOPATCH_SYSTEM::have_block_buffer(std::uint32_t size) {
    return (transfer_buffer && transfer_buffer_size >= size) ||
           allocate_transfer_buffer(std::max(size, TRANSFER_BUFFER_SIZE));
}

// Runs until the stream is complete or fails, stalls for too long, or the launcher wants to end.
void AUTOPATCH_SYSTEM::receive_stream() {
    // A buffer that a small archive has left behind is too small for a large one.
    const std::uint32_t wanted = std::min(stream_remaining, TRANSFER_BUFFER_SIZE);
    if (transfer_buffer_size < wanted && !allocate_transfer_buffer(wanted)) {
        TRACE_OUTPUT::output_warning("There is no memory for the transfer buffer");
        record_error(AUTOPATCH_ERROR_MEMORY);
    }
    connection->stream_mode = 1;
    if (current_add_on->type == ADD_ON::ADD_ON_APPLICATION) {
        progress_total_units = stream_remaining / 10;
    }
    bool exit_requested = is_exit_requested();
    while (error_code == AUTOPATCH_OK && stream_remaining != 0 && !exit_requested) {
        receive_stream_piece();
        exit_requested = is_exit_requested();
    }
    stream_active = false;
    if (connection && !exit_requested && error_code != AUTOPATCH_ERROR_CONNECT) {
        connection->stream_mode = 0;
    }
    // Also a stream of no bytes ends here, and the check of the archive decides.
    if (error_code == AUTOPATCH_OK && stream_remaining == 0) {
        finish_stream();
    }
}

void AUTOPATCH_SYSTEM::receive_stream_piece() {
    const std::uint32_t wanted = std::min(stream_remaining, transfer_buffer_size);
    std::uint32_t got = 0;
    // A handle of its own: a failure ends in connection_lost(), which drops the engine's.
    const NETWORK_CONNECTION handle = connection;
    if (!manager->receive_stream_data(handle, transfer_buffer.get(), wanted, got)) {
        TRACE_OUTPUT::output_warning("The stream of \"%s\" broke off with %u bytes to come",
                                     current_add_on->path, stream_remaining);
        free_transfer_buffer();
        record_error(AUTOPATCH_ERROR_CONNECT);
        return;
    }
    if (got == 0) {
        manager->wait(WAIT_MS);
        check_time_out();
        return;
    }
    last_activity_ms = services.clock();
    for (std::uint32_t written = 0; written < got;) {
        const std::int32_t count = download_file->write_data_block(
            transfer_buffer.get() + written, static_cast<std::int32_t>(got - written));
        if (count <= 0) {
            TRACE_OUTPUT::output_warning("The download \"%s\" can't be written",
                                         current_add_on->path);
            record_error(AUTOPATCH_ERROR_EXTRACT);
            return;
        }
        written += static_cast<std::uint32_t>(count);
    }
    stream_remaining -= got;
    set_progress_bar(stream_size - stream_remaining);
    update_download_rate();
}

void AUTOPATCH_SYSTEM::finish_stream() {
    const bool stored = download_file->close();
    DISK_MANAGER::close(download_file);
    if (!stored) {
        TRACE_OUTPUT::output_warning("The download \"%s\" can't be written", current_add_on->path);
        record_error(AUTOPATCH_ERROR_EXTRACT);
        return;
    }
    unpack_downloaded_file();
    update_status_if_all_downloaded();
}
