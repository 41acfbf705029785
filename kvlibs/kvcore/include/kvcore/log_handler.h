// A place where log messages go.
#ifndef KVCORE_LOG_HANDLER_H
#define KVCORE_LOG_HANDLER_H

#include <cstdint>
#include <memory>

namespace KVCORE {

class LOG_CHANNEL;
struct LOG_MESSAGE;

// Owned by LOG_MANAGER once installed. All operations run under the manager's lock, mostly on the
// application thread, so a handler needs no lock of its own. What it logs itself goes straight to
// the console.
class LOG_HANDLER {
public:
    LOG_HANDLER() = default;
    virtual ~LOG_HANDLER() = default;
    LOG_HANDLER(const LOG_HANDLER&) = delete;
    LOG_HANDLER& operator=(const LOG_HANDLER&) = delete;

    // The handler begins, or ends, to receive messages. The manager is running in both.
    virtual void installed() {}
    virtual void removed() {}

    // A channel came into use, changed its flags, or will no longer be used by this handler. The
    // slot LOG_CHANNEL::get_handler_data(get_index()) is the handler's own.
    virtual void initialise_channel(LOG_CHANNEL&) {}
    virtual void update_channel(LOG_CHANNEL&) {}
    virtual void cleanup_channel(LOG_CHANNEL&) {}

    // Puts the message out. Yields flags for the call site: LOG_CHANNEL::RESULT_PAUSE asks it to
    // pause in the debugger.
    virtual std::uint32_t output(const LOG_MESSAGE& message) = 0;

    // -1 until installed.
    std::int32_t get_index() const { return index_; }

private:
    friend class LOG_MANAGER;

    std::unique_ptr<LOG_HANDLER> next_;
    std::int32_t index_ = -1;
};

}  // namespace KVCORE

#endif  // KVCORE_LOG_HANDLER_H
