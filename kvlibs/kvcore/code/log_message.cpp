#include "kvcore/log_message.h"

#include "kvcore/log_manager.h"
#include "kvcore/timing.h"

namespace KVCORE {

void LOG_MESSAGE::setup_timestamp() {
    time = SECONDS(TIMING::get_system_ticks() - LOG_MANAGER::get_start_ticks()).get_value();
}

}  // namespace KVCORE
