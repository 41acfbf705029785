#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "disk_path.h"

namespace {

constexpr std::size_t PID_TEXT_SIZE = 16;

// The process id that a lock file carries; 0 for anything else.
std::int32_t read_holder(int file) {
    char text[PID_TEXT_SIZE] = {};
    if (pread(file, text, sizeof text - 1, 0) <= 0) {
        return 0;
    }
    const long number = std::strtol(text, nullptr, 10);
    return number > 0 && number <= INT32_MAX ? static_cast<std::int32_t>(number) : 0;
}

}  // namespace

bool INSTANCE_LOCK::acquire(const DISK_MANAGER& folder, const char* name) {
    release();
    FULL_PATH path;
    if (!path.join(folder, name)) {
        return false;
    }
    DESCRIPTOR file(open(path.get(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666));
    if (!file.is_open()) {
        return false;
    }
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if (error == EWOULDBLOCK) {
            holder = read_holder(file.get());
        }
        errno = error;
        return false;
    }
    holder = static_cast<std::int32_t>(getpid());
    char text[PID_TEXT_SIZE];
    const int length = std::snprintf(text, sizeof text, "%d\n", holder);
    // The lock holds without the text; it only tells others whom they wait for.
    if (ftruncate(file.get(), 0) != 0 ||
        pwrite(file.get(), text, static_cast<std::size_t>(length), 0) != length) {
        errno = 0;
    }
    descriptor = file.release();
    return true;
}

void INSTANCE_LOCK::release() {
    if (descriptor >= 0) {
        // Emptied, not removed: another process may have the file open already and take the lock.
        if (ftruncate(descriptor, 0) != 0) {
            errno = 0;
        }
        close(descriptor);
        descriptor = -1;
    }
    holder = 0;
}
