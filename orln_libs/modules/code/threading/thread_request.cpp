#include "modules/threading/thread_request.h"

#include "modules/threading/thread_queue.h"

bool THREAD_REQUEST::can_discard(THREAD_REQUEST&) {
    return false;
}

void THREAD_REQUEST::cancel() {
}

bool THREAD_REQUEST::is_exiting_thread() const {
    if (!queue) {
        return false;
    }
    MUTEX_LOCKER guard(queue->lock);
    return queue->exiting;
}

void THREAD_REQUEST::sleep() {
    if (!queue) {
        return;
    }
    MUTEX_LOCKER guard(queue->lock);
    if (!queue->exiting) {
        queue->wait_for_signal();
    }
}

void THREAD_REQUEST::set_delayed_time(std::uint32_t ms) {
    if (!queue) {
        return;
    }
    MUTEX_LOCKER guard(queue->lock);
    queue->watchdog_ms = ms;
}
