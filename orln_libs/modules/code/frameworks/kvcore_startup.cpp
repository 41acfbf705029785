#include "modules/frameworks/kvcore_startup.h"

#include <memory>

#include "kvcore/log_manager.h"
#include "kvcore/pool_manager.h"
#include "kvcore/thread.h"
#include "modules/frameworks/orln_log_handler.h"

void initialise_kvcore(KVCORE::RESULT& result) {
    result += KVCORE::THREAD::initialise();
    const bool first_handler = !KVCORE::LOG_MANAGER::is_initialised();
    result += KVCORE::LOG_MANAGER::initialise();
    if (first_handler) {
        KVCORE::LOG_MANAGER::install_handler(std::make_unique<ORLN_LOG_HANDLER>());
    }
    if (KVCORE::POOL_MANAGER::get_instance() == nullptr) {
        new KVCORE::POOL_MANAGER;
    }
    result += KVCORE::POOL_MANAGER::get_instance()->initialise();
}

void startup_kvcore(KVCORE::RESULT& result) {
    result = KVCORE::RESULT();
}

void shutdown_kvcore() {
    if (KVCORE::POOL_MANAGER* pools = KVCORE::POOL_MANAGER::get_instance()) {
        pools->shutdown();
        if (!pools->is_initialised()) {
            delete pools;
        }
    }
    KVCORE::LOG_MANAGER::shutdown();
    KVCORE::THREAD::shutdown();
}
