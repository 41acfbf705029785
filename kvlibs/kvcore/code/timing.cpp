#include "kvcore/timing.h"

#include <time.h>

namespace KVCORE {

namespace {

std::int64_t read_clock(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

}  // namespace

SYSTEM_TICKS TIMING::get_system_ticks() {
    return SYSTEM_TICKS(read_clock(CLOCK_MONOTONIC));
}

PROCESS_TICKS TIMING::get_process_ticks() {
    return PROCESS_TICKS(read_clock(CLOCK_MONOTONIC));
}

THREAD_TICKS TIMING::get_thread_ticks() {
    return THREAD_TICKS(read_clock(CLOCK_THREAD_CPUTIME_ID));
}

void SYSTEM_TICKS::get_current_value(SYSTEM_TICKS& ticks) {
    ticks = TIMING::get_system_ticks();
}

void PROCESS_TICKS::get_current_value(PROCESS_TICKS& ticks) {
    ticks = TIMING::get_process_ticks();
}

void THREAD_TICKS::get_current_value(THREAD_TICKS& ticks) {
    ticks = TIMING::get_thread_ticks();
}

}  // namespace KVCORE
