// One message on its way from a call site to the handlers.
#ifndef KVCORE_LOG_MESSAGE_H
#define KVCORE_LOG_MESSAGE_H

#include <atomic>
#include <cstdint>
#include <memory>

#include "kvcore/call_stack.h"
#include "kvcore/loggable.h"

namespace KVCORE {

class LOG_CHANNEL;

// Handlers get it read-only. The file, function and date texts are constants of the call site.
struct LOG_MESSAGE {
    const char* code_file = nullptr;
    const char* function = nullptr;
    const char* file_date = nullptr;
    std::int32_t code_line = 0;
    std::uint32_t flags = 0;  // LOG_CHANNEL's flags, the channel's own among them
    const LOG_CHANNEL* channel = nullptr;
    double time = 0.0;                    // seconds since logging started
    std::atomic<bool> waited_for{false};  // the sender waits and still uses the message
    std::atomic<bool> processed{false};
    CALL_STACK stack;
    std::uint32_t result = 0;             // what the handlers yielded; good once processed
    std::unique_ptr<LOGGABLE> loggables;  // the chain of values

    // Sets `time`.
    void setup_timestamp();
};

}  // namespace KVCORE

#endif  // KVCORE_LOG_MESSAGE_H
