#include "kvcore/semaphore.h"

#include <algorithm>
#include <mutex>

namespace KVCORE {

SEMAPHORE_POSIX::SEMAPHORE_POSIX(int initial) : count_(std::clamp(initial, 0, MAXIMUM)) {
}

bool SEMAPHORE_POSIX::increment() {
    std::lock_guard guard(condition_);
    if (count_ == MAXIMUM) {
        return false;
    }
    ++count_;
    condition_.notify_one();
    return true;
}

bool SEMAPHORE_POSIX::decrement() {
    std::lock_guard guard(condition_);
    while (count_ == 0) {
        condition_.wait();
    }
    --count_;
    return true;
}

bool SEMAPHORE_POSIX::decrement(MILLISECONDS limit) {
    std::lock_guard guard(condition_);
    if (count_ == 0 && limit > MILLISECONDS(0)) {
        const timespec deadline = monotonic_deadline(limit);
        while (count_ == 0 && condition_.wait_until(deadline)) {
        }
    }
    if (count_ == 0) {
        return false;
    }
    --count_;
    return true;
}

}  // namespace KVCORE
