#include "kvcore/log_manager.h"

#include <atomic>
#include <mutex>
#include <string>

#include "kvcore/atomic_queue.h"
#include "kvcore/log_channel.h"
#include "kvcore/log_message.h"
#include "kvcore/sync_mutex.h"
#include "kvcore/thread.h"
#include "kvcore/timing.h"

namespace KVCORE {

namespace {

// Lives as long as the process, never destroyed: channels are constructed before main, and a thread
// may log while the program ends.
struct MANAGER_STATE {
    SYNC_MUTEX mutex;
    // Guarded by the mutex, but for the atomic ones.
    LOG_CHANNEL* channels = nullptr;
    std::unique_ptr<LOG_HANDLER> handlers;
    std::int32_t handler_count = 0;
    bool processing = false;
    ATOMIC_QUEUE<std::unique_ptr<LOG_MESSAGE>> queue;
    // Running, with at least one handler. The test before the lock.
    std::atomic<bool> handling{false};
    std::atomic<bool> running{false};
    std::atomic<std::int64_t> start_ticks{0};
};

MANAGER_STATE& state() {
    static MANAGER_STATE* const the_state = new MANAGER_STATE;
    return *the_state;
}

// How often the calling thread holds the manager's lock.
thread_local std::int32_t lock_depth = 0;

class MANAGER_LOCKER {
public:
    MANAGER_LOCKER() { LOG_MANAGER::lock(); }
    ~MANAGER_LOCKER() { LOG_MANAGER::unlock(); }
    MANAGER_LOCKER(const MANAGER_LOCKER&) = delete;
    MANAGER_LOCKER& operator=(const MANAGER_LOCKER&) = delete;
};

}  // namespace

void LOG_MANAGER::lock() {
    state().mutex.lock();
    ++lock_depth;
}

void LOG_MANAGER::unlock() {
    --lock_depth;
    state().mutex.unlock();
}

bool LOG_MANAGER::in_lock() {
    return lock_depth > 0;
}

std::uint32_t LOG_MANAGER::log(std::unique_ptr<LOG_MESSAGE> message) {
    MANAGER_STATE& manager = state();
    if (in_lock() || !manager.handling.load(std::memory_order_acquire)) {
        process_message_no_handlers(*message);
        return 0;
    }
    LOG_MESSAGE* const sent = message.get();
    bool must_wait = false;
    {
        MANAGER_LOCKER guard;
        // The last handler may have gone while this thread waited for the lock.
        if (!manager.handling.load(std::memory_order_relaxed)) {
            process_message_no_handlers(*message);
            return 0;
        }
        const bool is_application = THREAD::is_application();
        must_wait = (message->flags & LOG_CHANNEL::SEVERE_MASK) && !is_application;
        message->waited_for.store(must_wait, std::memory_order_relaxed);
        manager.queue.push(std::move(message));
        if (is_application) {
            return drain_queue(sent);
        }
    }
    return must_wait ? wait_until_message_is_processed(*sent) : 0;
}

void LOG_MANAGER::process_queue() {
    MANAGER_STATE& manager = state();
    if (!manager.running.load(std::memory_order_acquire)) {
        return;
    }
    MANAGER_LOCKER guard;
    drain_queue(nullptr);
}

std::uint32_t LOG_MANAGER::drain_queue(const LOG_MESSAGE* own) {
    MANAGER_STATE& manager = state();
    // A handler that comes here is inside the loop below.
    if (manager.processing) {
        return 0;
    }
    std::uint32_t own_result = 0;
    manager.processing = true;
    std::unique_ptr<LOG_MESSAGE> message;
    while (manager.queue.pop(message, ATOMIC_QUEUE_BASE::DONT_WAIT)) {
        const bool is_own = message.get() == own;
        const std::uint32_t result = process_message(std::move(message));
        if (is_own) {
            own_result = result;
        }
    }
    manager.processing = false;
    return own_result;
}

std::uint32_t LOG_MANAGER::process_message(std::unique_ptr<LOG_MESSAGE> message) {
    for (LOG_HANDLER* handler = state().handlers.get(); handler; handler = handler->next_.get()) {
        message->result |= handler->output(*message);
    }
    message->processed.store(true, std::memory_order_release);
    message->processed.notify_all();
    // The sender reads the result and lets go without taking any lock.
    while (message->waited_for.load(std::memory_order_acquire)) {
        THREAD::yield();
    }
    return message->result;
}

std::uint32_t LOG_MANAGER::wait_until_message_is_processed(LOG_MESSAGE& message) {
    message.processed.wait(false, std::memory_order_acquire);
    const std::uint32_t result = message.result;
    message.waited_for.store(false, std::memory_order_release);
    return result;
}

void LOG_MANAGER::process_message_no_handlers(const LOG_MESSAGE& message) {
    std::string line;
    if (message.flags & (LOG_CHANNEL::SHOW_CHANNEL | LOG_CHANNEL::VERBOSE)) {
        line += message.channel->get_name();
        line += ": ";
    }
    for (const LOGGABLE* value = message.loggables.get(); value; value = value->get_next()) {
        line += value->get_as_c8();
    }
    if ((message.flags & LOG_CHANNEL::RECORD_STACK) && !message.stack.is_empty()) {
        line += "\nstack:";
        for (std::size_t i = 0; i < message.stack.get_count(); ++i) {
            line += "\n\t";
            line += message.stack.get_routine_name(i);
        }
    }
    line += '\n';
    DEBUGGER::print(line.c_str());
    if (message.flags & LOG_CHANNEL::PAUSE_MASK) {
        DEBUGGER::pause();
    }
}

void LOG_MANAGER::install_channel(LOG_CHANNEL& channel) {
    MANAGER_STATE& manager = state();
    MANAGER_LOCKER guard;
    if (channel.get_flags() & LOG_CHANNEL::INSTALLED) {
        internal_assert(false);
        return;
    }
    channel.flags_.fetch_or(LOG_CHANNEL::INSTALLED, std::memory_order_relaxed);
    channel.next_ = manager.channels;
    manager.channels = &channel;
    if (manager.running.load(std::memory_order_relaxed)) {
        for (LOG_HANDLER* handler = manager.handlers.get(); handler;
             handler = handler->next_.get()) {
            handler->initialise_channel(channel);
        }
    }
}

void LOG_MANAGER::install_handler(std::unique_ptr<LOG_HANDLER> handler) {
    if (!handler) {
        return;
    }
    MANAGER_STATE& manager = state();
    MANAGER_LOCKER guard;
    LOG_HANDLER& added = *handler;
    added.index_ = manager.handler_count++;
    added.next_ = std::move(manager.handlers);
    manager.handlers = std::move(handler);
    if (manager.running.load(std::memory_order_relaxed)) {
        initialise_handler(added);
        manager.handling.store(true, std::memory_order_release);
    }
}

void LOG_MANAGER::initialise_handler(LOG_HANDLER& handler) {
    handler.installed();
    for (LOG_CHANNEL* channel = state().channels; channel; channel = channel->next_) {
        handler.initialise_channel(*channel);
    }
}

void LOG_MANAGER::remove_handlers() {
    MANAGER_STATE& manager = state();
    MANAGER_LOCKER guard;
    // What waits still goes to the handlers, and no sender is left waiting.
    process_queue();
    manager.handling.store(false, std::memory_order_release);
    const bool running = manager.running.load(std::memory_order_relaxed);
    while (manager.handlers) {
        const std::unique_ptr<LOG_HANDLER> handler = std::move(manager.handlers);
        manager.handlers = std::move(handler->next_);
        if (running) {
            for (LOG_CHANNEL* channel = manager.channels; channel; channel = channel->next_) {
                handler->cleanup_channel(*channel);
            }
            handler->removed();
        }
    }
    manager.handler_count = 0;
    // The next handler with a number of these finds its slots empty.
    for (LOG_CHANNEL* channel = manager.channels; channel; channel = channel->next_) {
        channel->handler_data_.clear();
    }
}

void LOG_MANAGER::update_handlers(LOG_CHANNEL& channel) {
    MANAGER_STATE& manager = state();
    MANAGER_LOCKER guard;
    if (manager.running.load(std::memory_order_relaxed)) {
        for (LOG_HANDLER* handler = manager.handlers.get(); handler;
             handler = handler->next_.get()) {
            handler->update_channel(channel);
        }
    }
}

SYSTEM_TICKS LOG_MANAGER::get_start_ticks() {
    return SYSTEM_TICKS(state().start_ticks.load(std::memory_order_relaxed));
}

RESULT LOG_MANAGER::do_initialisation() {
    // Which thread is the application's must be known.
    const RESULT result = THREAD::initialise();
    if (result != 0) {
        return result;
    }
    MANAGER_STATE& manager = state();
    MANAGER_LOCKER guard;
    manager.start_ticks.store(TIMING::get_system_ticks().get_value(), std::memory_order_relaxed);
    for (LOG_HANDLER* handler = manager.handlers.get(); handler; handler = handler->next_.get()) {
        initialise_handler(*handler);
    }
    manager.running.store(true, std::memory_order_release);
    manager.handling.store(manager.handlers != nullptr, std::memory_order_release);
    return RESULT();
}

RESULT LOG_MANAGER::do_shutdown() {
    MANAGER_STATE& manager = state();
    {
        MANAGER_LOCKER guard;
        remove_handlers();
        manager.running.store(false, std::memory_order_release);
    }
    return THREAD::shutdown();
}

void LOG_MANAGER::internal_assert(bool condition) {
    if (!condition) {
        DEBUGGER::print("internal log manager error\n");
        DEBUGGER::pause();
    }
}

}  // namespace KVCORE
