// Start and stop of the core library for a whole program.
#ifndef MODULES_FRAMEWORKS_KVCORE_STARTUP_H
#define MODULES_FRAMEWORKS_KVCORE_STARTUP_H

#include "kvcore/result.h"

// Starts threads, the log manager with a handler that writes to the debug stream "kvcore", the
// pools and the file manager. Each is counted, so that nested calls are harmless. `result` is 0 for
// success.
void initialise_kvcore(KVCORE::RESULT& result);
// What has to wait until the application stands; always 0 here.
void startup_kvcore(KVCORE::RESULT& result);
// The reverse of initialise_kvcore.
void shutdown_kvcore();

#endif  // MODULES_FRAMEWORKS_KVCORE_STARTUP_H
