// A named source of log messages.
//
// Channels are global objects and all disabled by default: a disabled channel costs one test, and
// nothing is built or formatted. A call site is written with KVCORE_LOG:
//
//   KVCORE_LOG(DEVICE_CHANNEL, 0, << "format " << width << " by " << height);
#ifndef KVCORE_LOG_CHANNEL_H
#define KVCORE_LOG_CHANNEL_H

#include <atomic>
#include <cstdint>
#include <vector>

#include "kvcore/debugger.h"
#include "kvcore/loggable.h"

namespace KVCORE {

class LOG_CHANNEL {
public:
    // Flags of a channel and of a message alike; the channel's are merged into each message.
    enum FLAG : std::uint32_t {
        DISABLED = 0x0001,
        // Severe: a sender off the application thread waits until the message is handled.
        SEVERE_PAUSING = 0x0002,
        SEVERE = 0x0004,
        STREAM_OUTPUT = 0x0008,
        SECOND_OUTPUT = 0x0010,  // severe and pausing, too
        SHOW_CHANNEL = 0x0040,
        SHOW_TIME = 0x0080,
        VERBOSE = 0x0100,  // name, time and code location
        RECORD_STACK = 0x2000,
        INSTALLED = 0x4000,  // never set by hand

        SEVERE_MASK = SEVERE_PAUSING | SEVERE | SECOND_OUTPUT,
        // Without a handler these also pause in the debugger.
        PAUSE_MASK = SEVERE_PAUSING | SECOND_OUTPUT
    };
    static constexpr std::uint32_t DEFAULT_CHANNEL_FLAGS = 0xE9;

    // A flag of log()'s result: the call site is to pause in the debugger.
    static constexpr std::uint32_t RESULT_PAUSE = 4;

    // Registers with LOG_MANAGER, for good: a channel lives as long as the program. The name is not
    // copied, the parent not owned.
    explicit LOG_CHANNEL(const char* name, std::uint32_t flags = DEFAULT_CHANNEL_FLAGS,
                         LOG_CHANNEL* parent = nullptr);
    LOG_CHANNEL(const LOG_CHANNEL&) = delete;
    LOG_CHANNEL& operator=(const LOG_CHANNEL&) = delete;

    const char* get_name() const { return name_; }
    LOG_CHANNEL* get_parent() const { return parent_; }

    // False if this channel or any ancestor is disabled. Any thread.
    bool is_enabled() const {
        const LOG_CHANNEL* channel = this;
        do {
            if (channel->get_flags() & DISABLED) {
                return false;
            }
            channel = channel->parent_;
        } while (channel);
        return true;
    }

    std::uint32_t get_flags() const { return flags_.load(std::memory_order_relaxed); }
    // Replaces the flags, all but INSTALLED, and tells the handlers. Any thread.
    void set_flags(std::uint32_t flags);

    // Sends the values behind `root`, which is empty afterwards, as one message with these flags
    // and the channel's. Yields what the handlers yielded; 0 for a message that waits in the queue.
    // Any thread. A severe message returns only once it was handled; that needs the application
    // thread to go on.
    std::uint32_t log(LOGGABLE& root, std::uint32_t flags, const char* file, std::int32_t line,
                      const char* function, const char* date);

    // A slot for each handler, by its index; a missing one reads as null. Under the manager's lock,
    // as in all operations of a handler. Not owned.
    void* get_handler_data(std::int32_t index) const;
    void set_handler_data(std::int32_t index, void* data);

private:
    friend class LOG_MANAGER;

    std::atomic<std::uint32_t> flags_;
    LOG_CHANNEL* next_ = nullptr;
    LOG_CHANNEL* const parent_;
    const char* const name_;
    std::vector<void*> handler_data_;
};

}  // namespace KVCORE

// Logs a chain of values, with this place in the code. Nothing of `chain` is evaluated while the
// channel is disabled.
#define KVCORE_LOG(channel, flags, chain)                                                         \
    do {                                                                                          \
        if ((channel).is_enabled()) {                                                             \
            ::KVCORE::LOGGABLE kvcore_log_root;                                                   \
            kvcore_log_root chain;                                                                \
            if ((channel).log(kvcore_log_root, (flags), __FILE__, __LINE__, __func__, __DATE__) & \
                ::KVCORE::LOG_CHANNEL::RESULT_PAUSE) {                                            \
                ::KVCORE::DEBUGGER::pause();                                                      \
            }                                                                                     \
        }                                                                                         \
    } while (false)

#endif  // KVCORE_LOG_CHANNEL_H
