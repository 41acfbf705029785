#include "modules/threading/thread_queue.h"

#include <algorithm>
#include <cerrno>

#include "kvcore/monotonic_condition.h"
#include "platform/process_tools.h"

THREAD_QUEUE::THREAD_QUEUE(THREAD_POOL* owner, std::int32_t queue_type, std::int32_t queue_id)
    : pool(owner), type(queue_type), id(queue_id) {
    KVCORE::init_monotonic_condition(wake);
}

THREAD_QUEUE::~THREAD_QUEUE() {
    destroy_waiting();
    pthread_cond_destroy(&wake);
}

void THREAD_QUEUE::append(THREAD_REQUEST* newer, std::uint32_t now) {
    THREAD_REQUEST** link = &head;
    tail = nullptr;
    while (THREAD_REQUEST* const waiting = *link) {
        if (waiting->can_discard(*newer)) {
            *link = waiting->next;
            delete waiting;
        } else {
            tail = waiting;
            link = &waiting->next;
        }
    }
    if (current && current->can_discard(*newer)) {
        current->cancel();
    }
    *link = newer;
    tail = newer;
    newer->next = nullptr;
    newer->queue = this;
    last_submit_ms = now;
}

void THREAD_QUEUE::signal() {
    signalled = true;
    pthread_cond_signal(&wake);
}

void THREAD_QUEUE::request_exit() {
    type = -1;
    id = -1;
    exiting = true;
    signal();
}

void THREAD_QUEUE::wait_for_signal() {
    awake_since_ms = 0;
    if (!signalled) {
        pthread_cond_wait(&wake, lock.get_native());
    }
    signalled = false;
    set_awake();
}

void THREAD_QUEUE::set_awake() {
    // Never 0, which means asleep.
    awake_since_ms = std::max(get_ms_count(), 1u);
}

bool THREAD_QUEUE::wait_for_delay(std::uint32_t wait_ms) {
    const timespec deadline =
        KVCORE::monotonic_deadline(KVCORE::NANOSECONDS(std::int64_t{wait_ms} * 1000000));
    // Only the exit cuts the delay short. A wake is for the work and stays noted until its sleep.
    while (!exiting && pthread_cond_timedwait(&wake, lock.get_native(), &deadline) != ETIMEDOUT) {
    }
    return !exiting;
}

THREAD_REQUEST* THREAD_QUEUE::take_first() {
    current = head;
    if (current) {
        head = current->next;
        current->next = nullptr;
        if (!head) {
            tail = nullptr;
        }
    }
    return current;
}

void THREAD_QUEUE::destroy_waiting() {
    tail = nullptr;
    while (THREAD_REQUEST* const first = head) {
        head = first->next;
        delete first;
    }
}
