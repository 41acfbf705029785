#include "kvcore/sync_mutex.h"

namespace KVCORE {

SYNC_MUTEX::SYNC_MUTEX() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

SYNC_MUTEX::~SYNC_MUTEX() {
    pthread_mutex_destroy(&mutex_);
}

void SYNC_MUTEX::lock() {
    pthread_mutex_lock(&mutex_);
}

void SYNC_MUTEX::unlock() {
    pthread_mutex_unlock(&mutex_);
}

}  // namespace KVCORE
