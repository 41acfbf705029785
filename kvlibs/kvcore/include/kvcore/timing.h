// Readings of the platform's clocks.
#ifndef KVCORE_TIMING_H
#define KVCORE_TIMING_H

#include "kvcore/time_units.h"

namespace KVCORE {

// All operations may be called from any thread.
class TIMING {
public:
    static SYSTEM_TICKS get_system_ticks();
    static PROCESS_TICKS get_process_ticks();
    static THREAD_TICKS get_thread_ticks();
};

}  // namespace KVCORE

#endif  // KVCORE_TIMING_H
