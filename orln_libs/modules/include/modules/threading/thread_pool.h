// The table of named single-thread queues, from which all threads of the system come.
//
// A queue is named by a pair of numbers. The first request under a new pair makes the queue and its
// thread, and all requests under one pair run in order on that thread.
#ifndef MODULES_THREADING_THREAD_POOL_H
#define MODULES_THREADING_THREAD_POOL_H

#include <pthread.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "modules/threading/mutex.h"
#include "modules/threading/thread_condition.h"
#include "modules/threading/thread_queue.h"
#include "modules/threading/thread_request.h"

// All operations may be called from any thread between startup and shutdown, these two themselves
// from one controlling thread, exit_threads and shutdown not from a thread of the pool. Lock order:
// the pool's lock, then a queue's lock.
class THREAD_POOL {
public:
    // Called on each new thread with its number, from 0 on; the result is the thread's
    // `thread_data`.
    using START_CALLBACK = void* (*)(std::int32_t index, void* user);
    // Called at the end of each thread.
    using END_CALLBACK = void (*)(std::int32_t index, void* user, void* thread_data);

    // Makes the singleton, without a thread. A second call yields null and changes nothing.
    // `stack_size` is in bytes; below the system's minimum the system's default stays in force.
    static THREAD_POOL* startup(std::int32_t stack_size, START_CALLBACK start_callback,
                                END_CALLBACK end_callback, void* user);
    // exit_threads, then destroys the singleton. Does nothing without an instance.
    static void shutdown();
    static THREAD_POOL* get_instance();

    // Hands `request` to the queue (type, id). Waiting requests that can_discard(newer) are
    // destroyed first. True when the pool took ownership; without an instance or with a null
    // request nothing happens and the caller keeps the request.
    static bool submit_request(THREAD_REQUEST* request, std::int32_t type, std::int32_t id);

    // Ends the sleep of that queue's thread, or its next one. Nothing for an unknown pair.
    static void wake(std::int32_t type, std::int32_t id);

    // Whether the queue exists and has a request at work or waiting.
    static bool get_thread_busy(std::int32_t type, std::int32_t id);

    // Threads made and not yet ended; -1 without an instance.
    static std::int32_t get_number_of_threads();

    // The calling thread's id, never 0; 0 without an instance.
    static std::uint32_t get_thread_id();

    // A value for each thread, not owned. get_thread_data yields null without an instance.
    static void set_thread_data(void* data);
    static void* get_thread_data();

    // To be called now and then from a controlling thread: drains the log, then looks at one queue,
    // in turn. Retires a queue that has been without work for over 60000 ms. False, with
    // `thread_id` filled in, when the queue's thread has not slept for its watchdog time.
    static bool update(std::uint32_t& thread_id);

    // Sets every THREAD_CONDITION, tells all threads to end and waits until they have, draining the
    // log meanwhile so that no thread is left waiting for its message. Waits for ever for a request
    // that never polls is_exiting_thread. Does nothing without an instance.
    static void exit_threads();

    // The list of conditions; nothing without an instance. Used by THREAD_CONDITION.
    static void add_condition(THREAD_CONDITION* condition);
    static void remove_condition(THREAD_CONDITION* condition);

private:
    using QUEUES = std::vector<std::unique_ptr<THREAD_QUEUE>>;

    THREAD_POOL(std::int32_t stack_size, START_CALLBACK start_callback, END_CALLBACK end_callback,
                void* user);
    ~THREAD_POOL();
    THREAD_POOL(const THREAD_POOL&) = delete;
    THREAD_POOL& operator=(const THREAD_POOL&) = delete;

    // These need `lock_` held.
    QUEUES::iterator find_position(std::int32_t type, std::int32_t id);
    THREAD_QUEUE* find_queue(std::int32_t type, std::int32_t id);
    void start_thread(THREAD_QUEUE& queue);
    // Ends the queue at `position` and takes it from the list; its thread deletes it.
    void retire(QUEUES::iterator position);

    bool look_at_next_queue(std::uint32_t& thread_id);
    void end_all_threads();
    static void* thread_function(void* queue);
    void run_requests(THREAD_QUEUE& queue, void* thread_data);

    static std::atomic<THREAD_POOL*> instance_;

    const std::int32_t stack_size_;
    const START_CALLBACK start_callback_;
    const END_CALLBACK end_callback_;
    void* const user_;
    QUEUES queues_;  // sorted by type, then id
    std::int32_t thread_count_ = 0;
    std::size_t update_index_ = 0;
    pthread_key_t data_key_{};
    MUTEX lock_;
    std::vector<THREAD_CONDITION*> conditions_;
    MUTEX conditions_lock_;
};

// Called by the application framework at the start and the end of threading. This platform needs
// neither.
inline void THREADING_ATTACH() {
}
inline void THREADING_DETACH() {
}

#endif  // MODULES_THREADING_THREAD_POOL_H
