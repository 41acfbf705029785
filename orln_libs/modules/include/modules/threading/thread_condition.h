// An event on which a pool thread may wait without hanging the shutdown.
#ifndef MODULES_THREADING_THREAD_CONDITION_H
#define MODULES_THREADING_THREAD_CONDITION_H

#include "kvcore/sync_event.h"

// A SYNC_EVENT that the pool sets in THREAD_POOL::exit_threads. Known to the pool that exists when
// it is made; made without a pool it is a plain event.
class THREAD_CONDITION : public KVCORE::SYNC_EVENT {
public:
    THREAD_CONDITION();
    ~THREAD_CONDITION();
};

#endif  // MODULES_THREADING_THREAD_CONDITION_H
