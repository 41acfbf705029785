#include "modules/frameworks/kvcore_startup.h"

#include <memory>

#include "kvcore/file_manager.h"
#include "kvcore/log_manager.h"
#include "kvcore/pool_manager.h"
#include "kvcore/thread.h"
#include "modules/frameworks/orln_log_handler.h"

namespace {

// Makes a singleton that isn't there yet, and counts a start.
template <typename T>
KVCORE::RESULT initialise_singleton() {
    if (T::get_instance() == nullptr) {
        new T;
    }
    return T::get_instance()->initialise();
}

// Counts a stop; the last deletes the singleton.
template <typename T>
void shutdown_singleton() {
    if (T* const singleton = T::get_instance()) {
        singleton->shutdown();
        if (!singleton->is_initialised()) {
            delete singleton;
        }
    }
}

}  // namespace

void initialise_kvcore(KVCORE::RESULT& result) {
    result += KVCORE::THREAD::initialise();
    const bool first_handler = !KVCORE::LOG_MANAGER::is_initialised();
    result += KVCORE::LOG_MANAGER::initialise();
    if (first_handler) {
        KVCORE::LOG_MANAGER::install_handler(std::make_unique<ORLN_LOG_HANDLER>());
    }
    result += initialise_singleton<KVCORE::POOL_MANAGER>();
    result += initialise_singleton<KVCORE::FILE_MANAGER>();
}

void startup_kvcore(KVCORE::RESULT& result) {
    result = KVCORE::RESULT();
}

void shutdown_kvcore() {
    shutdown_singleton<KVCORE::FILE_MANAGER>();
    shutdown_singleton<KVCORE::POOL_MANAGER>();
    KVCORE::LOG_MANAGER::shutdown();
    KVCORE::THREAD::shutdown();
}
