// One named queue of the THREAD_POOL and its thread.
#ifndef MODULES_THREADING_THREAD_QUEUE_H
#define MODULES_THREADING_THREAD_QUEUE_H

#include <pthread.h>

#include <cstdint>

#include "modules/threading/mutex.h"
#include "modules/threading/thread_request.h"

class THREAD_POOL;

// Used by THREAD_POOL and THREAD_REQUEST only. The pool owns a queue while it is in the pool's
// list; afterwards the queue's thread owns and deletes it. `pool` never changes, `type` and `id`
// are guarded by the pool's lock, everything else by `lock`. Times are get_ms_count() milliseconds.
class THREAD_QUEUE {
public:
    static constexpr std::uint32_t DEFAULT_WATCHDOG_MS = 900000;

    THREAD_QUEUE(THREAD_POOL* owner, std::int32_t queue_type, std::int32_t queue_id);
    // Destroys the waiting requests.
    ~THREAD_QUEUE();
    THREAD_QUEUE(const THREAD_QUEUE&) = delete;
    THREAD_QUEUE& operator=(const THREAD_QUEUE&) = delete;

    // With `lock` held: destroys the waiting requests that `newer` makes pointless and cancels the
    // one at work if it agrees, then appends `newer`.
    void append(THREAD_REQUEST* newer, std::uint32_t now);

    // Wakes the thread, or ends its next wait at once. With `lock` held.
    void signal();
    // Tells the thread to end and takes away the queue's name. With `lock` held.
    void request_exit();

    // These are for the queue's own thread, with `lock` held.

    // Waits for a signal, unless one came since the last wait.
    void wait_for_signal();
    // Waits until `wait_ms` have passed; true unless the thread must end.
    bool wait_for_delay(std::uint32_t wait_ms);
    // Notes that the thread is awake from now on.
    void set_awake();

    // The oldest waiting request becomes `current`; null if there is none. With `lock` held.
    THREAD_REQUEST* take_first();
    // Destroys all waiting requests. For the queue's thread, once it is exiting.
    void destroy_waiting();

    THREAD_POOL* const pool;
    std::int32_t type;
    std::int32_t id;
    THREAD_REQUEST* head = nullptr;
    THREAD_REQUEST* tail = nullptr;
    THREAD_REQUEST* current = nullptr;
    std::uint32_t last_submit_ms = 0;
    std::uint32_t awake_since_ms = 0;  // 0 while the thread is asleep
    std::uint32_t watchdog_ms = DEFAULT_WATCHDOG_MS;
    bool exiting = false;
    bool signalled = false;  // a signal came since the last wait
    pthread_cond_t wake;
    std::uint32_t thread_id = 0;
    std::int32_t thread_index = -1;  // counted when the thread was made; -1: there is none
    MUTEX lock;
};

#endif  // MODULES_THREADING_THREAD_QUEUE_H
