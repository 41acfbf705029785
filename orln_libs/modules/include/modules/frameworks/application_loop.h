// The process entry and the periodic update of every program of the family.
//
// One main thread calls ORLN_APPLICATION::monitor in a steady rhythm until the application or the
// user asks to stop, and takes the window system's events between two calls; an event calls monitor
// early. `window_aborted` is the process's one stop signal.
#ifndef MODULES_FRAMEWORKS_APPLICATION_LOOP_H
#define MODULES_FRAMEWORKS_APPLICATION_LOOP_H

#include <atomic>
#include <cstdint>

#include "platform/window_platform.h"  // events_something_done

// The loop leaves at its next test once this is set. Set by the update itself, and from a signal
// handler when the user interrupts the program.
extern std::atomic<bool> window_aborted;

// Runs the whole life of the program: starts the core library, calls `create` (the program's
// ORLN_APPLICATION::create), runs the loop, destroys the application, closes the display if the
// application opened it. Yields the exit code: the core library's failure, else 0.
int run_application(int argc, char** argv, void (*create)(short argc, char** argv));

// The periodic update: one call of the application's monitor. Sets window_aborted from its result
// and chooses the pace of the next update.
void update_game();
// Sets the pace to one update every `rate_ms`, 0 for back to back. No effect if the rate is
// unchanged and not 0.
void update_game_timer(std::uint32_t rate_ms);

// The pace of an idle program.
inline constexpr std::uint32_t IDLE_UPDATE_RATE_MS = 15;

#endif  // MODULES_FRAMEWORKS_APPLICATION_LOOP_H
