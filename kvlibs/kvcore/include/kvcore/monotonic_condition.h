// A mutex with a condition whose time limits run on the monotonic clock, so that a change of the
// wall clock neither cuts a wait short nor prolongs it. The ground of the synchronisation objects.
#ifndef KVCORE_MONOTONIC_CONDITION_H
#define KVCORE_MONOTONIC_CONDITION_H

#include <pthread.h>
#include <time.h>

#include "kvcore/time_units.h"

namespace KVCORE {

// The moment `wait` from now on the monotonic clock.
timespec monotonic_deadline(NANOSECONDS wait);

// Initialises a condition for time limits on the monotonic clock.
void init_monotonic_condition(pthread_cond_t& condition);

// The waits and notifications need the mutex held, and waits may end without a notification:
// callers loop on what they wait for.
class MONOTONIC_CONDITION {
public:
    MONOTONIC_CONDITION();
    ~MONOTONIC_CONDITION();
    MONOTONIC_CONDITION(const MONOTONIC_CONDITION&) = delete;
    MONOTONIC_CONDITION& operator=(const MONOTONIC_CONDITION&) = delete;

    void lock();
    void unlock();
    void wait();
    // False when `deadline` has passed.
    bool wait_until(const timespec& deadline);
    void notify_one();
    void notify_all();

private:
    pthread_mutex_t mutex_;
    pthread_cond_t condition_;
};

}  // namespace KVCORE

#endif  // KVCORE_MONOTONIC_CONDITION_H
