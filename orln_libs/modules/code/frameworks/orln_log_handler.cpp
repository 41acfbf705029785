#include "modules/frameworks/orln_log_handler.h"

#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "kvcore/log_channel.h"
#include "kvcore/log_message.h"

using KVCORE::LOG_CHANNEL;

namespace {

// Console output, and the configuration file decides.
constexpr unsigned short STREAM_FLAGS = DEBUG_STREAM::WRITE_TO_CONSOLE | DEBUG_STREAM::LOAD_CONFIG;

// "minutes:seconds ", the seconds with two decimals. Rounded first, so that no minute has 60.
void append_time(std::string& line, double time) {
    const std::int64_t hundredths = std::llround(time * 100.0);
    char text[64];
    std::snprintf(text, sizeof text, "%" PRId64 ":%05.2f ", hundredths / 6000,
                  static_cast<double>(hundredths % 6000) / 100.0);
    line += text;
}

const char* text_or_empty(const char* text) {
    return text ? text : "";
}

}  // namespace

ORLN_LOG_HANDLER::ORLN_LOG_HANDLER() : stream_("kvcore", STREAM_FLAGS) {
}

std::uint32_t ORLN_LOG_HANDLER::output(const KVCORE::LOG_MESSAGE& message) {
    // The second output kind is shown nowhere, so its line isn't built.
    if ((message.flags & LOG_CHANNEL::STREAM_OUTPUT) && stream_.flags != 0) {
        stream_.write_to_stream(nullptr, 0, build_line(message).c_str(), true);
    }
    return 0;
}

std::string ORLN_LOG_HANDLER::build_line(const KVCORE::LOG_MESSAGE& message) {
    std::string line;
    const bool verbose = message.flags & LOG_CHANNEL::VERBOSE;
    if (verbose || (message.flags & LOG_CHANNEL::SHOW_TIME)) {
        append_time(line, message.time);
    }
    if (verbose || (message.flags & LOG_CHANNEL::SHOW_CHANNEL)) {
        line += message.channel->get_name();
        line += ": ";
    }
    for (const KVCORE::LOGGABLE* value = message.loggables.get(); value;
         value = value->get_next()) {
        line += value->get_as_c8();
    }
    if (verbose) {
        line += " (in ";
        line += text_or_empty(message.function);
        line += "(), ";
        line += text_or_empty(message.code_file);
        line += ", ";
        line += std::to_string(message.code_line);
        line += ' ';
        line += text_or_empty(message.file_date);
        line += ')';
    }
    return line;
}
