#include "modules/threading/thread_condition.h"

#include "modules/threading/thread_pool.h"

THREAD_CONDITION::THREAD_CONDITION() {
    THREAD_POOL::add_condition(this);
}

THREAD_CONDITION::~THREAD_CONDITION() {
    THREAD_POOL::remove_condition(this);
}
