#include "server_faults.h"

#include <cstdlib>
#include <map>

bool SERVER_FAULTS::parse(const std::string& text) {
    const std::size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    const std::map<std::string, std::int64_t*> numbers = {
        {"drop-after", &drop_after},           {"stall-after", &stall_after},
        {"close-in-stream", &close_in_stream}, {"flip-block", &flip_block},
        {"bad-block-crc", &bad_block_crc},
    };
    const std::map<std::string, bool*> flags = {
        {"bad-archive-crc", &bad_archive_crc},
        {"unknown-id", &unknown_id},
        {"big-endian", &big_endian},
        {"byte-prefix", &byte_prefix},
    };
    if (const auto number = numbers.find(name); number != numbers.end()) {
        const char* digits = colon == std::string::npos ? "" : text.c_str() + colon + 1;
        char* end = nullptr;
        *number->second = std::strtoll(digits, &end, 10);
        return *digits != '\0' && *end == '\0' && *number->second >= 0;
    }
    const auto flag = flags.find(name);
    if (flag == flags.end() || colon != std::string::npos) {
        return false;
    }
    *flag->second = true;
    return true;
}

const char* SERVER_FAULTS::describe() {
    return "drop-after:BYTES, stall-after:BYTES, close-in-stream:BYTES, flip-block:K, "
           "bad-block-crc:K, bad-archive-crc, unknown-id, big-endian, byte-prefix";
}
