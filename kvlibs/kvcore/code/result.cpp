#include "kvcore/result.h"

#include "kvcore/log_channel.h"

namespace KVCORE {

LOG_CHANNEL RESULT_CHANNEL("RESULT_CHANNEL");

void RESULT_POSIX::check_result(std::int32_t code) {
    RESULT::log_code(code);
    code_ = code;
}

void RESULT_POSIX::check_result_excluding(std::int32_t code, std::int32_t harmless) {
    check_result(code == harmless ? 0 : code);
}

void RESULT::log_code(std::int32_t code) {
    if (code != 0) {
        KVCORE_LOG(RESULT_CHANNEL, 0, << "Error code: " << code);
    }
}

}  // namespace KVCORE
