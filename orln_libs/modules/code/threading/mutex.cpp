#include "modules/threading/mutex.h"

MUTEX::MUTEX() : mutex_(std::make_unique<pthread_mutex_t>()) {
    pthread_mutex_init(mutex_.get(), nullptr);
}

MUTEX::~MUTEX() {
    pthread_mutex_destroy(mutex_.get());
}

unsigned char MUTEX::lock() {
    return pthread_mutex_lock(mutex_.get()) == 0;
}

unsigned char MUTEX::try_lock() {
    return pthread_mutex_trylock(mutex_.get()) == 0;
}

unsigned char MUTEX::unlock() {
    return pthread_mutex_unlock(mutex_.get()) == 0;
}
