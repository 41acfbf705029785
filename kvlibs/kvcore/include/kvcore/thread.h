// A thread of the core library.
#ifndef KVCORE_THREAD_H
#define KVCORE_THREAD_H

#include <pthread.h>

#include <atomic>
#include <cstdint>

#include "kvcore/initialisable.h"
#include "kvcore/sync_mutex.h"
#include "kvcore/time_units.h"

namespace KVCORE {

// The body of a thread and its states.
class THREAD_BASE {
public:
    enum STATE : std::int32_t { CREATED = 0, STARTING = 1, RUNNING = 2, FINISHED = 3, FAILED = 4 };

    THREAD_BASE(const THREAD_BASE&) = delete;
    THREAD_BASE& operator=(const THREAD_BASE&) = delete;

    STATE get_state() const { return state_.load(std::memory_order_acquire); }

protected:
    // `stack_size` in bytes; 0, or less than the system's minimum, takes the system's default.
    explicit THREAD_BASE(std::int32_t stack_size) : stack_size_(stack_size) {}
    virtual ~THREAD_BASE() = default;

    // The thread's body, and what frames it, all on the new thread. thread_starting comes before
    // the state is RUNNING, thread_finished after it is FINISHED.
    virtual void run() = 0;
    virtual void thread_starting() {}
    virtual void thread_finished() {}

    void thread_run_internal();

    std::atomic<STATE> state_{CREATED};
    const std::int32_t stack_size_;
};

class THREAD_POSIX : public THREAD_BASE {
public:
    // Starts the thread. False if it was started before, or if the system refuses; the state then
    // is FAILED.
    bool start();

    // Waits, without a limit, until the thread is through. Returns at once for a thread that was
    // never started, and on the thread itself. A derived class joins before its parts are gone, at
    // the latest in its destructor.
    void join();

    // Whether the calling thread is this one.
    bool is_current() const;
    // Whether it was started and didn't fail.
    bool is_valid() const;

    static void sleep(MICROSECONDS time);
    // Lets other threads run.
    static void yield();
    // Whether the caller is the thread that initialised THREAD. False before that.
    static bool is_application();

protected:
    explicit THREAD_POSIX(std::int32_t stack_size) : THREAD_BASE(stack_size) {}
    ~THREAD_POSIX() override;

    static void set_application_thread();
    static void clear_application_thread();

private:
    static void* thread_entry(void* thread);

    mutable SYNC_MUTEX task_mutex_;  // guards the two below
    pthread_t task_{};
    bool joinable_ = false;  // started, and not joined yet
    SYNC_MUTEX join_mutex_;  // one joins at a time; taken before task_mutex_
};

// What programs derive from. Initialised first of all, on the application thread.
class THREAD : public THREAD_POSIX, public INITIALISABLE_CLASS<THREAD> {
public:
    // Number of processors; 1 before THREAD is initialised.
    static std::int32_t get_cpu_count() { return cpu_count.load(std::memory_order_relaxed); }

protected:
    explicit THREAD(std::int32_t stack_size = 0) : THREAD_POSIX(stack_size) {}

private:
    friend class INITIALISABLE_CLASS<THREAD>;
    static RESULT do_initialisation();
    static RESULT do_shutdown();

    static std::atomic<std::int32_t> cpu_count;
};

}  // namespace KVCORE

#endif  // KVCORE_THREAD_H
