#include "patch_session.h"

#include <algorithm>
#include <cinttypes>

#include "autopatch/autopatch_types.h"
#include "autopatch/patch_protocol.h"
#include "catalogue_watch.h"
#include "kvcore/byte_order.h"
#include "platform/process_tools.h"
#include "server_log.h"

namespace {

// No message of the protocol; for the fault that sends one.
constexpr std::uint16_t UNKNOWN_MESSAGE = 4711;
// Records carry their own format number since this one.
constexpr std::uint16_t FIRST_FORMAT_WITH_VERSION = 1200;
constexpr std::uint32_t MAX_INSTALLED = 1000;
// A stream goes out in pieces of this size, so that no session holds up the others.
constexpr std::uint32_t STREAM_PIECE = 0x100000;
// Of a session's line in the log: what was asked for, and how transfers ended, which finds room
// behind any number of questions.
constexpr std::size_t MAX_HISTORY = 400;
constexpr std::size_t MAX_HISTORY_WITH_ENDS = 600;
// A launcher asks again when it has its answer. Who goes on asking and takes no answers would have
// them pile up here.
constexpr std::uint32_t MAX_UNHEARD = 16;

}  // namespace

PATCH_SESSION::PATCH_SESSION(SESSION_HOST& session_host,
                             const NETWORK_CONNECTION& session_connection,
                             std::uint32_t session_number)
    : host(session_host),
      connection(session_connection),
      number(session_number),
      started_ms(get_ms_count()) {
    char address[16];
    KV_SOCKET::TCPIP_SOCKET::ip_to_str(connection->get_peer_address(), address, sizeof address);
    peer = std::string(address) + ":" + std::to_string(connection->get_peer_port());
    rate_ms = started_ms;
}

void PATCH_SESSION::end(const char* reason) {
    if (end_reason.empty()) {
        end_reason = reason;
    }
    host.manager.disconnect(connection, 1);
}

void PATCH_SESSION::log_end(bool by_server) const {
    const char* reason = by_server ? "closed by the server" : "closed by the launcher";
    server_log("session %" PRIu32 " %s:%s sent %" PRIu64 " bytes in %.2f s, %s", number,
               peer.c_str(), history.c_str(), bytes_sent,
               static_cast<double>(get_ms_count() - started_ms) / 1000.0,
               end_reason.empty() ? reason : end_reason.c_str());
}

// A launcher may ask as often as it likes; the line in the log stays of a readable length.
void PATCH_SESSION::note(const std::string& text) {
    history.append(text, 0, MAX_HISTORY - std::min(MAX_HISTORY, history.size()));
}

void PATCH_SESSION::handle_message(NETWORK_MESSAGE& message) {
    unheard = connection->is_send_blocked() ? unheard + 1 : 0;
    if (unheard > MAX_UNHEARD) {
        end("asked without taking the answers");
        return;
    }
    std::uint16_t id = 0;
    std::uint16_t version = 0;
    if (!(message >> id)) {
        end("sent a message without an id");
        return;
    }
    if (!(message >> version)) {
        version = 1000;
    }
    if (version < FIRST_FORMAT_WITH_VERSION) {
        message.set_pos(static_cast<std::int32_t>(sizeof id), false);
    }
    switch (id) {
        case AUTOPATCH_MESSAGE_LIST_REQUEST:
            handle_available_request(message);
            break;
        case AUTOPATCH_MESSAGE_VALIDATION_REQUEST:
            handle_validation_request(version, message);
            break;
        case AUTOPATCH_MESSAGE_FILE_REQUEST:
        case AUTOPATCH_MESSAGE_STREAM_START:
            handle_file_request(message, id == AUTOPATCH_MESSAGE_STREAM_START);
            break;
        default:
            end("sent an unknown message");
            break;
    }
}

void PATCH_SESSION::begin_message(NETWORK_MESSAGE& message, std::uint16_t id) const {
    message.reset_payload();
    message.set_byte_order(host.settings.faults.big_endian ? BYTEORDER_BIG : BYTEORDER_LITTLE);
    (void)(message << id);
    (void)(message << PROTOCOL_VERSION);
}

void PATCH_SESSION::send_message(NETWORK_MESSAGE& message) {
    if (host.settings.faults.big_endian || host.settings.faults.byte_prefix) {
        send_raw_frame(message);
    } else {
        host.manager.send(connection, message);
    }
}

bool PATCH_SESSION::write_list(NETWORK_MESSAGE& message, std::uint16_t id,
                               const std::vector<std::unique_ptr<ADD_ON>>& list) {
    begin_message(message, id);
    bool good = message << static_cast<std::uint32_t>(list.size());
    for (const auto& add_on : list) {
        good = good && add_on->put_to_data_device(PROTOCOL_VERSION, message);
    }
    // Lists are worth hiding; archives are public and checked by their own checksums.
    message.encrypted = host.settings.key_exchange;
    return good;
}

void PATCH_SESSION::handle_available_request(NETWORK_MESSAGE& message) {
    catalogue = host.watch.get();
    note(" list");
    if (write_list(message, AUTOPATCH_MESSAGE_LIST, catalogue->get_add_ons())) {
        send_message(message);
    } else {
        end("the list can't be written");
    }
}

void PATCH_SESSION::handle_validation_request(std::uint16_t version, NETWORK_MESSAGE& message) {
    std::uint32_t count = 0;
    if (!(message >> count) || count > MAX_INSTALLED) {
        end("sent a bad list of installed add-ons");
        return;
    }
    std::vector<std::unique_ptr<ADD_ON>> installed;
    for (std::uint32_t i = 0; i < count; ++i) {
        auto add_on = std::make_unique<ADD_ON>();
        if (!add_on->get_from_data_device(version, message)) {
            end("sent a bad add-on record");
            return;
        }
        installed.push_back(std::move(add_on));
    }
    catalogue = host.watch.get();
    const auto needed = catalogue->select_needed(installed);
    const auto note_versions = [this](const char* title, const auto& add_ons) {
        note(title);
        for (const auto& add_on : add_ons) {
            note(" " + std::string(add_on->path) + "/" + std::to_string(add_on->version));
        }
    };
    note_versions(" has", installed);
    note_versions(", needs", needed);
    if (host.settings.faults.unknown_id) {
        begin_message(message, UNKNOWN_MESSAGE);
    } else if (!write_list(message, AUTOPATCH_MESSAGE_VALIDATION_RESPONSE, needed)) {
        end("the response can't be written");
        return;
    }
    send_message(message);
}

void PATCH_SESSION::handle_file_request(NETWORK_MESSAGE& message, bool start_stream) {
    char path[ADD_ON::PATH_SIZE];
    std::uint32_t held = 0;
    unsigned char platform = 0;
    if (!message.read_dynamic_text(path, sizeof path) || !(message >> held) ||
        !(message >> platform)) {
        end("sent a bad file request");
        return;
    }
    if (!catalogue) {
        catalogue = host.watch.get();
    }
    archive = catalogue->find_archive(path, static_cast<signed char>(platform));
    if (archive == nullptr || held > archive->size) {
        end("asked for what there isn't");
        return;
    }
    note(std::string(start_stream ? " stream " : " get ") + path + "@" + std::to_string(held));
    if (held == 0) {
        transfer_ms = get_ms_count();
    }
    offset = held;
    run_crc = 0;
    blocks_in_run = 0;
    moved_ms = get_ms_count();
    connection->release_sends();
    if (start_stream) {
        connection->hold_sends();
        transfer = TRANSFER::STREAM;
        connection->stream_mode = 1;
    } else if (host.settings.stream && held < archive->size) {
        offer_stream(message);
    } else {
        // A launcher that has the whole archive already needs no stream, just the checksum.
        transfer = TRANSFER::BLOCKS;
    }
}

void PATCH_SESSION::offer_stream(NETWORK_MESSAGE& message) {
    transfer = TRANSFER::NONE;
    begin_message(message, AUTOPATCH_MESSAGE_STREAM_OFFER);
    const std::uint32_t crc = host.settings.faults.bad_archive_crc ? ~archive->crc : archive->crc;
    if (!(message << (archive->size - offset)) || !(message << crc)) {
        end("out of memory");
        return;
    }
    send_message(message);
    // No ping may get between the offer and the raw bytes.
    connection->hold_sends();
}

std::uint32_t PATCH_SESSION::allowance(std::uint32_t now_ms) {
    if (host.settings.rate_kbps == 0) {
        return UINT32_MAX;
    }
    const std::uint64_t per_second = std::uint64_t{host.settings.rate_kbps} * 1024;
    rate_bytes = std::min(rate_bytes + per_second * (now_ms - rate_ms) / 1000, per_second);
    rate_ms = now_ms;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(rate_bytes, UINT32_MAX));
}

PATCH_SESSION::PUMP_RESULT PATCH_SESSION::pump(std::uint32_t now_ms) {
    if (connection->is_dead()) {
        return PUMP_RESULT::IDLE;
    }
    if (!raw_frames.empty()) {
        return pump_raw_frames() ? PUMP_RESULT::MOVED : PUMP_RESULT::IDLE;
    }
    if (transfer == TRANSFER::NONE || stalled) {
        return PUMP_RESULT::IDLE;
    }
    const std::uint32_t allowed = allowance(now_ms);
    const bool blocks = transfer == TRANSFER::BLOCKS;
    const std::uint32_t left = archive->size - offset;
    const std::uint32_t wanted = std::min(left, blocks ? host.settings.block_size : STREAM_PIECE);
    // A bucket never holds more than a second's worth; a block may be larger than that.
    const std::uint32_t enough =
        std::min<std::uint32_t>(wanted, blocks ? host.settings.rate_kbps * 512 : 1);
    if (allowed != UINT32_MAX && allowed < enough) {
        return PUMP_RESULT::WAITING_FOR_RATE;
    }
    const std::uint64_t before = bytes_sent;
    bool moved;
    if (blocks) {
        moved = !connection->is_send_blocked();
        if (moved) {
            send_block();
        }
    } else {
        moved = send_stream_piece();
        if (moved) {
            moved_ms = now_ms;
        } else if (now_ms - moved_ms > host.settings.patience_s * 1000) {
            // The connection's own timers rest during a stream.
            end("took nothing of its stream for too long");
        }
    }
    const std::uint64_t sent = bytes_sent - before;
    rate_bytes -= std::min(rate_bytes, sent);
    make_byte_faults(static_cast<std::int64_t>(before));
    return moved ? PUMP_RESULT::MOVED : PUMP_RESULT::IDLE;
}

// The faults that count bytes of archives.
void PATCH_SESSION::make_byte_faults(std::int64_t before) {
    SERVER_FAULTS& faults = host.settings.faults;
    const auto reached = [&](std::int64_t limit) {
        return limit >= 0 && before <= limit && static_cast<std::int64_t>(bytes_sent) >= limit;
    };
    if (reached(faults.stall_after)) {
        stalled = true;
    }
    if (reached(faults.drop_after)) {
        faults.drop_after = -1;
        end("dropped for a test");
    } else if (transfer == TRANSFER::STREAM && reached(faults.close_in_stream)) {
        faults.close_in_stream = -1;
        end("closed in a stream for a test");
    }
}

void PATCH_SESSION::send_block() {
    SERVER_FAULTS& faults = host.settings.faults;
    const std::uint32_t size = std::min(host.settings.block_size, archive->size - offset);
    const std::uint32_t remaining = archive->size - offset - size;
    ++blocks_in_run;
    const bool closes_run = remaining == 0 || blocks_in_run >= host.settings.checkpoint_every;

    std::vector<unsigned char>& block = host.scratch;
    block.resize(size);
    if (size != 0 && !archive->read(offset, block.data(), size)) {
        end("the archive can't be read");
        return;
    }
    run_crc = archive->continue_crc(run_crc, offset, block.data(), size);
    const std::uint32_t block_index = offset / host.settings.block_size;
    if (faults.flip_block == block_index && size != 0) {
        faults.flip_block = -1;
        block[size / 2] ^= 0x40;
    }
    std::uint32_t crc = run_crc;
    if (closes_run && faults.bad_block_crc >= 0 && faults.bad_block_crc-- == 0) {
        crc = ~crc;
    }
    NETWORK_MESSAGE message;
    message.allocate_buffer(static_cast<std::int32_t>(size + 64));
    begin_message(message, AUTOPATCH_MESSAGE_FILE_BLOCK);
    bool good = message << remaining;
    good = good && message << size;
    good = good && (size == 0 ||
                    message.write_data_block(block.data(), static_cast<std::int32_t>(size)) != 0);
    good = good && message << static_cast<unsigned char>(closes_run ? 0 : 1);
    if (closes_run) {
        good = good && message << crc;
    }
    if (remaining == 0) {
        good = good && message << (faults.bad_archive_crc ? ~archive->crc : archive->crc);
    }
    if (!good) {
        end("out of memory");
        return;
    }
    offset += size;
    bytes_sent += size;
    if (closes_run) {
        transfer = TRANSFER::NONE;  // the launcher asks for what follows
    }
    if (remaining == 0) {
        note_transfer();
    }
    send_message(message);
}

// An archive has gone out to its end.
void PATCH_SESSION::note_transfer() {
    history.append(" done in " + std::to_string(get_ms_count() - transfer_ms) + " ms", 0,
                   MAX_HISTORY_WITH_ENDS - history.size());
}

bool PATCH_SESSION::send_stream_piece() {
    std::uint32_t count = std::min(STREAM_PIECE, archive->size - offset);
    if (host.settings.rate_kbps != 0) {
        count = static_cast<std::uint32_t>(std::min<std::uint64_t>(count, rate_bytes));
    }
    for (const std::int64_t limit :
         {host.settings.faults.drop_after, host.settings.faults.close_in_stream,
          host.settings.faults.stall_after}) {
        const std::int64_t sent_so_far = static_cast<std::int64_t>(bytes_sent);
        if (limit >= sent_so_far) {
            count = static_cast<std::uint32_t>(
                std::min<std::int64_t>(count, std::max<std::int64_t>(limit - sent_so_far, 1)));
        }
    }
    ::off_t position = offset;
    std::uint32_t sent = 0;
    if (!host.manager.send_stream_file(connection, archive->get_descriptor(), position, count,
                                       sent)) {
        end("the stream broke off");
        return false;
    }
    offset += sent;
    bytes_sent += sent;
    if (offset == archive->size) {
        connection->stream_mode = 0;
        connection->release_sends();
        transfer = TRANSFER::NONE;
        note_transfer();
    }
    return sent != 0;
}

// Builds the frame that NETWORK_MANAGER::send would build and queues it as raw bytes.
void PATCH_SESSION::send_raw_frame(NETWORK_MESSAGE& message) {
    message.pack_header(0, 0, 0, 0);
    message.append_trailer(connection->get_protocol_version());
    const std::uint32_t size = static_cast<std::uint32_t>(message.get_length());
    unsigned char prefix[5] = {0};
    if (host.settings.faults.big_endian) {
        prefix[0] = 1;
        KVCORE::store_le32(prefix + 1, KVCORE::swap_bytes(size));
    } else {
        KVCORE::store_le32(prefix + 1, size);
    }
    raw_frames.append(reinterpret_cast<const char*>(prefix), sizeof prefix);
    raw_frames.append(reinterpret_cast<const char*>(message.get_buffer()), size);
    if (host.settings.faults.byte_prefix) {
        // Five bytes, each in a packet of its own; the pauses let the launcher read each alone.
        connection->stream_mode = 1;
        for (int i = 0; i < 5; ++i) {
            std::uint32_t sent = 0;
            host.manager.send_stream_data(connection, raw_frames.data(), 1, sent);
            raw_frames.erase(0, sent);
            orln_sleep(2);
        }
    }
}

bool PATCH_SESSION::pump_raw_frames() {
    connection->stream_mode = 1;
    std::uint32_t sent = 0;
    if (!host.manager.send_stream_data(connection, raw_frames.data(),
                                       static_cast<std::uint32_t>(raw_frames.size()), sent)) {
        end("the connection broke off");
        return false;
    }
    raw_frames.erase(0, sent);
    if (raw_frames.empty()) {
        connection->stream_mode = transfer == TRANSFER::STREAM;
    }
    return sent != 0;
}
