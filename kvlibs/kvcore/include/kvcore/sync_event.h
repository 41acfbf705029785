// An auto-reset event: one wait consumes one set.
#ifndef KVCORE_SYNC_EVENT_H
#define KVCORE_SYNC_EVENT_H

#include "kvcore/monotonic_condition.h"
#include "kvcore/time_units.h"

namespace KVCORE {

// Starts unset. Setting it twice with nobody waiting counts once. Any thread may set, any may wait.
class SYNC_EVENT {
public:
    SYNC_EVENT() = default;
    SYNC_EVENT(const SYNC_EVENT&) = delete;
    SYNC_EVENT& operator=(const SYNC_EVENT&) = delete;

    // Releases one waiter, now or at the next wait.
    void set();

    // Waits for a set and consumes it. The form with a limit yields false only when it timed out; a
    // limit of 0 or less asks without waiting.
    bool await();
    bool await(MILLISECONDS limit);

    // The same, in the shape of a lock.
    void lock() { await(); }
    void unlock() { set(); }

private:
    MONOTONIC_CONDITION condition_;
    bool signalled_ = false;
};

}  // namespace KVCORE

#endif  // KVCORE_SYNC_EVENT_H
