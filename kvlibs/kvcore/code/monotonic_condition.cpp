#include "kvcore/monotonic_condition.h"

#include <errno.h>

#include <algorithm>

#include "kvcore/timing.h"

namespace KVCORE {

timespec monotonic_deadline(NANOSECONDS wait) {
    constexpr std::int64_t second = 1000000000;
    const std::int64_t now = TIMING::get_system_ticks().get_value();
    const std::int64_t left = std::max<std::int64_t>(wait.get_value(), 0);
    // Far beyond any uptime, and safe to add up.
    const std::int64_t end = now + std::min(left, INT64_MAX / 2);
    timespec deadline{};
    deadline.tv_sec = static_cast<time_t>(end / second);
    deadline.tv_nsec = static_cast<long>(end % second);
    return deadline;
}

void init_monotonic_condition(pthread_cond_t& condition) {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

MONOTONIC_CONDITION::MONOTONIC_CONDITION() {
    pthread_mutex_init(&mutex_, nullptr);
    init_monotonic_condition(condition_);
}

MONOTONIC_CONDITION::~MONOTONIC_CONDITION() {
    pthread_cond_destroy(&condition_);
    pthread_mutex_destroy(&mutex_);
}

void MONOTONIC_CONDITION::lock() {
    pthread_mutex_lock(&mutex_);
}

void MONOTONIC_CONDITION::unlock() {
    pthread_mutex_unlock(&mutex_);
}

void MONOTONIC_CONDITION::wait() {
    pthread_cond_wait(&condition_, &mutex_);
}

bool MONOTONIC_CONDITION::wait_until(const timespec& deadline) {
    return pthread_cond_timedwait(&condition_, &mutex_, &deadline) != ETIMEDOUT;
}

void MONOTONIC_CONDITION::notify_one() {
    pthread_cond_signal(&condition_);
}

void MONOTONIC_CONDITION::notify_all() {
    pthread_cond_broadcast(&condition_);
}

}  // namespace KVCORE
