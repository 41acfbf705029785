#include "kvcore/file_reference.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace KVCORE {
namespace {

// Descriptors that all references hold together.
std::atomic<rlim_t> held_count{0};

// Counts one more, if it is within the share that references may have.
bool reserve_descriptor() {
    rlimit limit;
    const rlim_t share = ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur / 4 : 0;
    if (held_count.fetch_add(1, std::memory_order_relaxed) < share) {
        return true;
    }
    held_count.fetch_sub(1, std::memory_order_relaxed);
    return false;
}

// The path that the system has for a descriptor; empty if it doesn't tell.
std::string get_descriptor_path(int descriptor) {
    char link[32];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    char path[PATH_MAX];
    const ssize_t length = ::readlink(link, path, sizeof path);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

// The absolute path, with all links in it followed but the last component, which is kept where
// `follow` isn't set. Empty if there is no such object.
std::string get_real_path(const std::string& path, bool follow) {
    const std::size_t end = path.find_last_not_of('/');
    if (follow || end == std::string::npos) {
        const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr),
                                                          std::free);
        return real ? real.get() : "";
    }
    const std::size_t slash = path.rfind('/', end);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    std::string folder =
        get_real_path(slash == std::string::npos ? "." : path.substr(0, slash + 1), true);
    if (folder.empty()) {
        return folder;
    }
    if (folder.back() != '/') {
        folder.push_back('/');
    }
    return folder.append(name);
}

}  // namespace

int FILE_REFERENCE::create(const std::string& path, bool follow, FILE_REFERENCE& reference) {
    FILE_REFERENCE created;
    struct stat status;
    const int flags = O_PATH | O_CLOEXEC | (follow ? 0 : O_NOFOLLOW);
    const int descriptor = ::open(path.c_str(), flags);
    if (descriptor < 0 && errno != EMFILE && errno != ENFILE) {
        return errno;
    }
    if (descriptor >= 0) {
        created.path_ = get_descriptor_path(descriptor);
        const int code = ::fstat(descriptor, &status) == 0 ? 0 : errno;
        created.hold_descriptor(descriptor);
        if (code != 0) {
            return code;
        }
    } else if ((follow ? ::stat(path.c_str(), &status) : ::lstat(path.c_str(), &status)) != 0) {
        return errno;
    }
    if (created.path_.empty()) {
        created.path_ = get_real_path(path, follow);
    }
    created.device_ = status.st_dev;
    created.number_ = status.st_ino;
    reference = std::move(created);
    return 0;
}

void FILE_REFERENCE::hold_descriptor(int descriptor) {
    if (descriptor >= 0 && reserve_descriptor()) {
        descriptor_ = descriptor;
    } else if (descriptor >= 0) {
        ::close(descriptor);
    }
}

FILE_REFERENCE::FILE_REFERENCE(const FILE_REFERENCE& other)
    : path_(other.path_), device_(other.device_), number_(other.number_) {
    if (other.descriptor_ >= 0) {
        hold_descriptor(::fcntl(other.descriptor_, F_DUPFD_CLOEXEC, 0));
    }
}

FILE_REFERENCE::FILE_REFERENCE(FILE_REFERENCE&& other) noexcept
    : path_(std::move(other.path_)),
      device_(other.device_),
      number_(other.number_),
      descriptor_(std::exchange(other.descriptor_, -1)) {
}

FILE_REFERENCE& FILE_REFERENCE::operator=(FILE_REFERENCE other) noexcept {
    path_.swap(other.path_);
    std::swap(device_, other.device_);
    std::swap(number_, other.number_);
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FILE_REFERENCE::~FILE_REFERENCE() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
        held_count.fetch_sub(1, std::memory_order_relaxed);
    }
}

int FILE_REFERENCE::resolve(std::string& path, struct stat& status) const {
    if (descriptor_ >= 0) {
        path = get_descriptor_path(descriptor_);
        if (!path.empty() && ::lstat(path.c_str(), &status) == 0 && refers_to(status)) {
            return 0;
        }
    }
    path = path_;
    if (path.empty()) {
        return ENOENT;
    }
    if (::lstat(path.c_str(), &status) != 0) {
        return errno;
    }
    return refers_to(status) ? 0 : ENOENT;
}

}  // namespace KVCORE
