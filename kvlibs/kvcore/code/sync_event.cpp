#include "kvcore/sync_event.h"

#include <mutex>

namespace KVCORE {

void SYNC_EVENT::set() {
    std::lock_guard guard(condition_);
    signalled_ = true;
    condition_.notify_one();
}

bool SYNC_EVENT::await() {
    std::lock_guard guard(condition_);
    while (!signalled_) {
        condition_.wait();
    }
    signalled_ = false;
    return true;
}

bool SYNC_EVENT::await(MILLISECONDS limit) {
    const timespec deadline = monotonic_deadline(limit);
    std::lock_guard guard(condition_);
    while (!signalled_) {
        if (!condition_.wait_until(deadline) && !signalled_) {
            return false;
        }
    }
    signalled_ = false;
    return true;
}

}  // namespace KVCORE
