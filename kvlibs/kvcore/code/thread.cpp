#include "kvcore/thread.h"

#include <errno.h>
#include <sched.h>
#include <time.h>

#include <algorithm>
#include <mutex>
#include <thread>

#include "kvcore/monotonic_condition.h"
#include "kvcore/processor.h"

namespace KVCORE {

namespace {

std::atomic<std::thread::id> application_thread{};

}  // namespace

void THREAD_BASE::thread_run_internal() {
    thread_starting();
    state_.store(RUNNING, std::memory_order_release);
    run();
    state_.store(FINISHED, std::memory_order_release);
    thread_finished();
}

THREAD_POSIX::~THREAD_POSIX() {
    join();
}

bool THREAD_POSIX::start() {
    std::lock_guard guard(task_mutex_);
    if (get_state() != CREATED) {
        return false;
    }
    state_.store(STARTING, std::memory_order_release);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (stack_size_ > 0) {
        // A size that the system refuses leaves its default in force.
        pthread_attr_setstacksize(&attributes, static_cast<std::size_t>(stack_size_));
    }
    joinable_ = pthread_create(&task_, &attributes, &THREAD_POSIX::thread_entry, this) == 0;
    pthread_attr_destroy(&attributes);
    if (!joinable_) {
        state_.store(FAILED, std::memory_order_release);
    }
    return joinable_;
}

void THREAD_POSIX::join() {
    if (is_current()) {
        return;
    }
    // A second caller waits here for the first. The task's own lock stays free meanwhile: the
    // thread may ask is_current() up to its end.
    std::lock_guard join_guard(join_mutex_);
    pthread_t task{};
    {
        std::lock_guard guard(task_mutex_);
        if (!joinable_) {
            return;
        }
        task = task_;
    }
    pthread_join(task, nullptr);
    std::lock_guard guard(task_mutex_);
    joinable_ = false;
}

bool THREAD_POSIX::is_current() const {
    std::lock_guard guard(task_mutex_);
    // Once joined, the system may give the same name to another thread.
    return joinable_ && pthread_equal(task_, pthread_self()) != 0;
}

bool THREAD_POSIX::is_valid() const {
    const STATE state = get_state();
    return state != CREATED && state != FAILED;
}

void THREAD_POSIX::sleep(MICROSECONDS time) {
    const timespec deadline = monotonic_deadline(time);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
    }
}

void THREAD_POSIX::yield() {
    sched_yield();
}

bool THREAD_POSIX::is_application() {
    return application_thread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void THREAD_POSIX::set_application_thread() {
    application_thread.store(std::this_thread::get_id(), std::memory_order_relaxed);
}

void THREAD_POSIX::clear_application_thread() {
    application_thread.store(std::thread::id(), std::memory_order_relaxed);
}

void* THREAD_POSIX::thread_entry(void* thread) {
    static_cast<THREAD_POSIX*>(thread)->thread_run_internal();
    return nullptr;
}

std::atomic<std::int32_t> THREAD::cpu_count{1};

RESULT THREAD::do_initialisation() {
    set_application_thread();
    cpu_count.store(std::max(PROCESSOR::get_max_threads(), 1), std::memory_order_relaxed);
    return RESULT();
}

RESULT THREAD::do_shutdown() {
    clear_application_thread();
    return RESULT();
}

}  // namespace KVCORE
