// Writes the core library's log to a debug stream.
#ifndef MODULES_FRAMEWORKS_ORLN_LOG_HANDLER_H
#define MODULES_FRAMEWORKS_ORLN_LOG_HANDLER_H

#include <string>

#include "kvcore/log_handler.h"
#include "platform/debug_stream.h"

// The stream is named "kvcore" and switched by its configuration file, like every debug stream.
class ORLN_LOG_HANDLER : public KVCORE::LOG_HANDLER {
public:
    ORLN_LOG_HANDLER();

    // Writes messages with LOG_CHANNEL::STREAM_OUTPUT as one line. Yields 0.
    std::uint32_t output(const KVCORE::LOG_MESSAGE& message) override;

    // The line for a message: "minutes:seconds " with SHOW_TIME, "channel: " with SHOW_CHANNEL, the
    // values, and with VERBOSE both of these and the place in the code.
    static std::string build_line(const KVCORE::LOG_MESSAGE& message);

    DEBUG_STREAM& get_stream() { return stream_; }

private:
    DEBUG_STREAM stream_;
};

#endif  // MODULES_FRAMEWORKS_ORLN_LOG_HANDLER_H
