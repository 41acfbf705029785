#include "whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

namespace KVMIGRATION {
namespace {

constexpr int BESIDE_ATTEMPTS = 100;
constexpr std::size_t READ_STEP = std::size_t{1} << 20;
// With a zero behind them all bytes keep indexes of 32 bits.
constexpr std::size_t SIZE_LIMIT = std::numeric_limits<std::int32_t>::max() - 1;

struct FILE_CLOSER {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FILE_HANDLE = std::unique_ptr<std::FILE, FILE_CLOSER>;

// Opens without waiting, so that a pipe put in a file's place stops nobody.
int open_regular(const char* path, int flags, struct stat& status) {
    const int descriptor =
        path ? ::open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666) : -1;
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

std::FILE* to_stream(int descriptor, const char* mode) {
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* const file = ::fdopen(descriptor, mode);
    if (!file) {
        ::close(descriptor);
    }
    return file;
}

bool write_all(int descriptor, const char* data, std::size_t size) {
    while (size != 0) {
        const ssize_t done = ::write(descriptor, data, size);
        if (done < 0 && errno != EINTR) {
            return false;
        }
        if (done > 0) {
            data += done;
            size -= static_cast<std::size_t>(done);
        }
    }
    return true;
}

// What a link leads to, so that writing through one keeps it.
std::string follow_links(const char* path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path, nullptr), std::free);
    return real ? real.get() : path;
}

// A new file beside `target`, whose name goes to `path`; -1 on failure.
int open_beside(const std::string& target, std::string& path) {
    int descriptor = -1;
    for (int attempt = 0; descriptor < 0 && attempt < BESIDE_ATTEMPTS; ++attempt) {
        path = target;
        path.append(".tmp").append(std::to_string(attempt));
        descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST) {
            break;
        }
    }
    return descriptor;
}

}  // namespace

std::FILE* open_existing_file(const char* path, const char* mode) {
    struct stat status;
    return to_stream(open_regular(path, mode[2] == '+' ? O_RDWR : O_RDONLY, status), mode);
}

std::FILE* open_new_file(const char* path) {
    struct stat status;
    const int descriptor = open_regular(path, O_WRONLY | O_CREAT, status);
    if (descriptor >= 0 && status.st_size != 0 && ::ftruncate(descriptor, 0) != 0) {
        ::close(descriptor);
        return nullptr;
    }
    return to_stream(descriptor, "wb");
}

bool read_whole_file(const char* path, std::string& bytes) {
    struct stat status;
    const int descriptor = open_regular(path, O_RDONLY, status);
    if (descriptor < 0) {
        return false;
    }
    const auto claimed = static_cast<std::size_t>(status.st_size);
    if (claimed > SIZE_LIMIT) {
        ::close(descriptor);
        return false;
    }
    std::string read_bytes;
    std::size_t size = 0;
    ssize_t done = 1;
    while (done != 0 && size <= SIZE_LIMIT) {
        // One byte beyond the end that is expected shows whether it is the end. Beyond that, the
        // file has grown or its system tells no size.
        const std::size_t step =
            size <= claimed ? std::min(claimed - size + 1, READ_STEP) : READ_STEP;
        read_bytes.resize(size + step);
        done = ::read(descriptor, read_bytes.data() + size, read_bytes.size() - size);
        if (done < 0) {
            if (errno == EINTR) {
                continue;
            }
            break;
        }
        size += static_cast<std::size_t>(done);
    }
    ::close(descriptor);
    if (done != 0) {
        return false;
    }
    read_bytes.resize(size);
    bytes.swap(read_bytes);
    return true;
}

bool write_whole_file(const char* path, const void* data, std::size_t size) {
    if (!path || *path == '\0') {
        return false;
    }
    const std::string target = follow_links(path);
    struct stat old;
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) {
        return false;
    }
    std::string beside;
    const int descriptor = open_beside(target, beside);
    if (descriptor < 0) {
        return false;
    }
    bool complete = write_all(descriptor, static_cast<const char*>(data), size) &&
                    (!replaces || ::fchmod(descriptor, old.st_mode & 07777) == 0) &&
                    ::fdatasync(descriptor) == 0;
    complete = ::close(descriptor) == 0 && complete;
    if (!complete || ::rename(beside.c_str(), target.c_str()) != 0) {
        ::unlink(beside.c_str());
        return false;
    }
    return true;
}

}  // namespace KVMIGRATION
