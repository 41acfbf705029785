// A counting semaphore with a ceiling.
#ifndef KVCORE_SEMAPHORE_H
#define KVCORE_SEMAPHORE_H

#include <cstdint>

#include "kvcore/monotonic_condition.h"
#include "kvcore/time_units.h"

namespace KVCORE {

// Any thread may use any operation.
class SEMAPHORE_POSIX {
public:
    static constexpr std::int32_t MAXIMUM = 10000;

    // `initial` is brought into 0 to MAXIMUM.
    explicit SEMAPHORE_POSIX(int initial);
    SEMAPHORE_POSIX(const SEMAPHORE_POSIX&) = delete;
    SEMAPHORE_POSIX& operator=(const SEMAPHORE_POSIX&) = delete;

    // Adds one and wakes a waiter. Yields false, and changes nothing, at the maximum.
    bool increment();

    // Takes one, waiting while there is none. The form with a limit yields true unless it timed
    // out; a limit of 0 or less asks without waiting.
    bool decrement();
    bool decrement(MILLISECONDS limit);

private:
    MONOTONIC_CONDITION condition_;
    std::int32_t count_;
};

using SEMAPHORE = SEMAPHORE_POSIX;

}  // namespace KVCORE

#endif  // KVCORE_SEMAPHORE_H
