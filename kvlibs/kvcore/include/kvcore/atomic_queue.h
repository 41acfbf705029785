// A queue between threads.
#ifndef KVCORE_ATOMIC_QUEUE_H
#define KVCORE_ATOMIC_QUEUE_H

#include <deque>
#include <mutex>
#include <utility>

#include "kvcore/semaphore.h"
#include "kvcore/sync_mutex.h"
#include "kvcore/time_units.h"
#include "kvcore/timing.h"

namespace KVCORE {

class ATOMIC_QUEUE_BASE {
public:
    static constexpr MILLISECONDS DONT_WAIT{0};
    // About 24 days.
    static constexpr MILLISECONDS WAIT_LONGEST{0x7FFFFFFF};
};

// First in, first out, from any thread to any thread. T needs only be movable.
template <typename T>
class ATOMIC_QUEUE : public ATOMIC_QUEUE_BASE {
public:
    void push(T item) {
        std::lock_guard guard(mutex);
        items.push_back(std::move(item));
        available.increment();
    }

    // Takes the oldest entry, waiting up to `wait` for one. False if there is none by then; `item`
    // is unchanged in that case.
    bool pop(T& item, MILLISECONDS wait) {
        if (take(item, false)) {
            return true;
        }
        const SYSTEM_TICKS deadline = TIMING::get_system_ticks() + SYSTEM_TICKS(wait);
        while (wait > DONT_WAIT && available.decrement(wait)) {
            if (take(item, true)) {
                return true;
            }
            // Another thread was quicker.
            wait = MILLISECONDS(deadline - TIMING::get_system_ticks());
        }
        return false;
    }

protected:
    // For a derived class that walks the entries itself, with the mutex held. Such a class doesn't
    // use the semaphore: entries it removes stay counted, which pop() copes with.
    SYNC_MUTEX mutex;
    std::deque<T> items;

private:
    // The semaphore's count is taken along with the entry, under the mutex. The count may be off:
    // too low behind its ceiling, too high in the way described above. Entries decide.
    bool take(T& item, bool counted) {
        std::lock_guard guard(mutex);
        if (items.empty()) {
            return false;
        }
        if (!counted) {
            available.decrement(DONT_WAIT);
        }
        item = std::move(items.front());
        items.pop_front();
        return true;
    }

    SEMAPHORE_POSIX available{0};
};

}  // namespace KVCORE

#endif  // KVCORE_ATOMIC_QUEUE_H
