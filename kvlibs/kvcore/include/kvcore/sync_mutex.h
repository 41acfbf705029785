// The core library's critical region.
#ifndef KVCORE_SYNC_MUTEX_H
#define KVCORE_SYNC_MUTEX_H

#include <pthread.h>

namespace KVCORE {

// Mutual exclusion between threads. The thread that holds it may lock it again; each lock needs its
// unlock. Meets BasicLockable, so std::lock_guard<SYNC_MUTEX> guards a block.
class SYNC_MUTEX {
public:
    SYNC_MUTEX();
    ~SYNC_MUTEX();
    SYNC_MUTEX(const SYNC_MUTEX&) = delete;
    SYNC_MUTEX& operator=(const SYNC_MUTEX&) = delete;

    // Waits without a time limit.
    void lock();
    void unlock();

private:
    pthread_mutex_t mutex_;
};

}  // namespace KVCORE

#endif  // KVCORE_SYNC_MUTEX_H
