#include "kvcore/file_stream_helper_posix.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace KVCORE {
namespace {

// What one call of the system is asked for at most; it takes no more than 2 GB anyway.
constexpr std::int64_t CALL_LIMIT = std::int64_t{1} << 30;

// Repeats `transfer(offset, size)` until `count` bytes are done or it yields 0 or a failure.
template <typename TRANSFER>
int transfer_all(std::int64_t count, std::int64_t& done, TRANSFER&& transfer) {
    done = 0;
    while (done < count) {
        const auto size = static_cast<std::size_t>(std::min(count - done, CALL_LIMIT));
        const ssize_t moved = transfer(done, size);
        if (moved < 0 && errno != EINTR) {
            return errno;
        }
        if (moved == 0) {
            return 0;
        }
        done += std::max<ssize_t>(moved, 0);
    }
    return 0;
}

}  // namespace

int FILE_STREAM_HELPER_POSIX::close() {
    const int closed = descriptor_;
    detach();
    return closed < 0 ? EBADF : ::close(closed) == 0 ? 0 : errno;
}

int FILE_STREAM_HELPER_POSIX::get_length(std::int64_t& length) const {
    struct stat status;
    if (::fstat(descriptor_, &status) != 0) {
        return errno;
    }
    length = status.st_size;
    return 0;
}

int FILE_STREAM_HELPER_POSIX::get_position(std::int64_t& position) const {
    position = ::lseek(descriptor_, 0, SEEK_CUR);
    return position < 0 ? errno : 0;
}

int FILE_STREAM_HELPER_POSIX::set_position(std::int64_t position) const {
    return ::lseek(descriptor_, position, SEEK_SET) < 0 ? errno : 0;
}

int FILE_STREAM_HELPER_POSIX::read(unsigned char* buffer, std::int64_t count,
                                   std::int64_t& done) const {
    return transfer_all(count, done, [&](std::int64_t offset, std::size_t size) {
        return ::read(descriptor_, buffer + offset, size);
    });
}

int FILE_STREAM_HELPER_POSIX::write(const unsigned char* buffer, std::int64_t count,
                                    std::int64_t& done) const {
    return transfer_all(count, done, [&](std::int64_t offset, std::size_t size) {
        return ::write(descriptor_, buffer + offset, size);
    });
}

}  // namespace KVCORE
