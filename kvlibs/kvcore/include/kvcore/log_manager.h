// Collects log messages from all threads and passes them to the handlers.
//
// The application thread handles its messages at once and those of other threads in process_queue,
// which its loop must call regularly: a thread with a severe message waits for that. Without a
// handler, or while the manager isn't running, messages go straight to standard output.
#ifndef KVCORE_LOG_MANAGER_H
#define KVCORE_LOG_MANAGER_H

#include <cstdint>
#include <memory>

#include "kvcore/initialisable.h"
#include "kvcore/log_handler.h"
#include "kvcore/time_units.h"

namespace KVCORE {

class LOG_CHANNEL;
struct LOG_MESSAGE;

// initialise and shutdown belong to the application thread, everything else to any thread.
class LOG_MANAGER : public INITIALISABLE_CLASS<LOG_MANAGER> {
public:
    // Takes the message on its way; see LOG_CHANNEL::log for the result.
    static std::uint32_t log(std::unique_ptr<LOG_MESSAGE> message);

    // Handles all messages that wait. Called from the main loop, the render loop and THREAD_POOL.
    static void process_queue();

    // The lock under which handlers run. May be taken again by the thread that holds it. Whoever
    // logs while holding it writes straight to the console.
    static void lock();
    static void unlock();
    // Whether the calling thread holds it.
    static bool in_lock();

    // Done by the channel's constructor.
    static void install_channel(LOG_CHANNEL& channel);

    // Handlers may be installed before the manager runs. The newest handles each message first.
    static void install_handler(std::unique_ptr<LOG_HANDLER> handler);
    // Takes leave of all handlers and destroys them. Not from inside a handler.
    static void remove_handlers();
    // Tells all handlers that the channel's flags changed.
    static void update_handlers(LOG_CHANNEL& channel);

    // When the manager was initialised, the zero of all message times.
    static SYSTEM_TICKS get_start_ticks();

private:
    friend class INITIALISABLE_CLASS<LOG_MANAGER>;
    static RESULT do_initialisation();
    static RESULT do_shutdown();

    static void initialise_handler(LOG_HANDLER& handler);
    // With the lock held: handles what waits. Yields what the handlers yielded for `own`, a message
    // in the queue or null.
    static std::uint32_t drain_queue(const LOG_MESSAGE* own);
    static std::uint32_t process_message(std::unique_ptr<LOG_MESSAGE> message);
    static void process_message_no_handlers(const LOG_MESSAGE& message);
    static std::uint32_t wait_until_message_is_processed(LOG_MESSAGE& message);
    static void internal_assert(bool condition);
};

}  // namespace KVCORE

#endif  // KVCORE_LOG_MANAGER_H
