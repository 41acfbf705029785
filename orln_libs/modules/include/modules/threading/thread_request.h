// A piece of work for a thread of the THREAD_POOL.
#ifndef MODULES_THREADING_THREAD_REQUEST_H
#define MODULES_THREADING_THREAD_REQUEST_H

#include <cstdint>

class THREAD_QUEUE;

// Made by the caller, owned by the pool from THREAD_POOL::submit_request on, destroyed by the pool
// after its work, when it was discarded, or when its queue ends.
class THREAD_REQUEST {
public:
    THREAD_REQUEST() = default;
    virtual ~THREAD_REQUEST() = default;
    THREAD_REQUEST(const THREAD_REQUEST&) = delete;
    THREAD_REQUEST& operator=(const THREAD_REQUEST&) = delete;

    // The work, on the queue's thread, with no lock of the pool held. `thread_data` is what the
    // pool's start callback yielded for this thread. Work that runs on must poll
    // is_exiting_thread() and return when it is true.
    virtual void do_work(void* thread_data) = 0;

    // Asked on the submitter's thread, under the pool's locks, when `newer` is submitted to the
    // same queue. True: this request is pointless now. A waiting one is then destroyed, the one at
    // work gets cancel(). Must be quick and take no lock that do_work holds while it submits.
    virtual bool can_discard(THREAD_REQUEST& newer);

    // Tells the request at work to stop. Same thread and rules as can_discard; do_work runs
    // meanwhile, so what this sets must be atomic or guarded.
    virtual void cancel();

    // From inside do_work: whether the queue's thread must end. False without a queue.
    bool is_exiting_thread() const;

    // From inside do_work: sleeps until THREAD_POOL::wake, submit_request for this queue, or
    // exit_threads. A wake since the last sleep ends this one at once, so none is lost; a sleep may
    // end without a cause, so callers loop. Returns at once when the thread must end.
    void sleep();

    // Changes the queue's watchdog time, in milliseconds; 0 turns the watch off. Does nothing
    // before submission.
    void set_delayed_time(std::uint32_t ms);

    // Wait between submission and do_work, in milliseconds; set before submission.
    std::uint32_t delay_ms = 0;

protected:
    THREAD_QUEUE* queue = nullptr;  // set by submit_request

private:
    friend class THREAD_POOL;
    friend class THREAD_QUEUE;

    THREAD_REQUEST* next = nullptr;    // link in the queue
    std::uint32_t submit_time_ms = 0;  // set by submit_request
};

#endif  // MODULES_THREADING_THREAD_REQUEST_H
