#include "kvcore/debugger.h"

#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "kvcore/call_stack.h"

namespace KVCORE {

void DEBUGGER_POSIX::print(const char* text) {
    if (!text) {
        return;
    }
    // What the program wrote before comes out before; the stream's own buffer isn't needed here.
    fflush(stdout);
    std::size_t left = std::strlen(text);
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, text, left);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        text += written;
        left -= static_cast<std::size_t>(written);
    }
}

bool DEBUGGER_POSIX::is_attached() {
    const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    char text[4096];
    const ssize_t length = ::read(file, text, sizeof text - 1);
    ::close(file);
    if (length <= 0) {
        return false;
    }
    text[length] = '\0';
    const char* tracer = std::strstr(text, "TracerPid:");
    return tracer && std::strtol(tracer + std::strlen("TracerPid:"), nullptr, 10) != 0;
}

void DEBUGGER_POSIX::pause() {
    if (is_attached()) {
        raise(SIGTRAP);
    }
}

void DEBUGGER_POSIX::get_current_stack(CALL_STACK& stack, int skipped, int limit) {
    void* frames[MAX_STACK_FRAMES];
    const int count = backtrace(frames, std::clamp(limit, 0, MAX_STACK_FRAMES));
    const int first = std::clamp(skipped, 0, count);
    stack.set(frames + first, static_cast<std::size_t>(count - first));
}

}  // namespace KVCORE
