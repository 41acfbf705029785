#include "kvcore/process.h"

#include <unistd.h>
#include <cstdlib>

namespace KVCORE {

void PROCESS_LIBC::abort(std::int32_t code) noexcept {
    char line[] = "process aborted: 'xxxx'\n";
    for (int i = 0; i < 4; ++i) {
        const char c = static_cast<char>(static_cast<std::uint32_t>(code) >> (24 - 8 * i));
        line[18 + i] = c >= ' ' && c <= '~' ? c : '?';
    }
    // Nothing can be done about a failure to write.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line, sizeof line - 1);
    std::abort();
}

}  // namespace KVCORE
