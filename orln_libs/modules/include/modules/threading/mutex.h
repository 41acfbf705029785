// The platform layer's mutex and its guard.
#ifndef MODULES_THREADING_MUTEX_H
#define MODULES_THREADING_MUTEX_H

#include <pthread.h>

#include <memory>

// Not recursive: the thread that holds it must not lock it again. The operations yield 1 for
// success.
class MUTEX {
public:
    MUTEX();
    ~MUTEX();
    MUTEX(const MUTEX&) = delete;
    MUTEX& operator=(const MUTEX&) = delete;

    // Waits without a time limit.
    unsigned char lock();
    // Takes the lock only if that needs no waiting.
    unsigned char try_lock();
    unsigned char unlock();

    // For waiting on a condition with the lock held.
    pthread_mutex_t* get_native() { return mutex_.get(); }

private:
    std::unique_ptr<pthread_mutex_t> mutex_;
};

// Holds a MUTEX for the length of a block.
class MUTEX_LOCKER {
public:
    explicit MUTEX_LOCKER(MUTEX& mutex) : mutex_(mutex) { mutex_.lock(); }
    ~MUTEX_LOCKER() { mutex_.unlock(); }
    MUTEX_LOCKER(const MUTEX_LOCKER&) = delete;
    MUTEX_LOCKER& operator=(const MUTEX_LOCKER&) = delete;

private:
    MUTEX& mutex_;
};

#endif  // MODULES_THREADING_MUTEX_H
