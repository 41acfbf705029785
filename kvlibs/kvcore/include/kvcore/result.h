// The core library's error code: 0 for success, anything else names the failure.
#ifndef KVCORE_RESULT_H
#define KVCORE_RESULT_H

#include <cstdint>

namespace KVCORE {

class LOG_CHANNEL;

// Failures of RESULT::log_code are logged here. Disabled by default.
extern LOG_CHANNEL RESULT_CHANNEL;

// A code of the platform: an errno value, or one of the library's own codes.
class RESULT_POSIX {
public:
    constexpr RESULT_POSIX() = default;
    constexpr explicit RESULT_POSIX(std::int32_t code) : code_(code) {}

    // Stores `code`; a failure is logged on RESULT_CHANNEL.
    void check_result(std::int32_t code);
    // Stores `code` and logs nothing.
    constexpr void check_result_dont_log(std::int32_t code) { code_ = code; }
    // Stores `code`, but 0 in place of the code that is harmless here. Any other failure is logged.
    void check_result_excluding(std::int32_t code, std::int32_t harmless);

    constexpr std::int32_t get_code() const { return code_; }

protected:
    std::int32_t code_ = 0;
};

// Converts from and to the plain number, so that an operation may return 0 or a code as it stands
// and a caller may test `if (result != 0)`.
class RESULT : public RESULT_POSIX {
public:
    constexpr RESULT() = default;
    constexpr RESULT(std::int32_t code) : RESULT_POSIX(code) {}

    constexpr operator std::int32_t() const { return code_; }

    // Keeps the first failure: a failure on the left stays, otherwise the right side is taken.
    // Lets a sequence of steps be summed up in one result.
    constexpr RESULT& operator+=(const RESULT& later) {
        if (code_ == 0) {
            code_ = later.code_;
        }
        return *this;
    }

    // Logs "Error code: " and the number on RESULT_CHANNEL, unless the code is 0 or the channel is
    // disabled. Any thread.
    static void log_code(std::int32_t code);
};

}  // namespace KVCORE

#endif  // KVCORE_RESULT_H
