#include "durable_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "platform/disk_manager.h"

namespace {

bool flush_path(const std::string& path, int flags) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
    if (descriptor < 0) {
        return false;
    }
    const bool done = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return done;
}

}  // namespace

bool flush_file_to_disk(const DISK_MANAGER& disk, const char* name) {
    return flush_path(disk.get_path_string(name), O_NOFOLLOW);
}

void flush_folder_to_disk(const DISK_MANAGER& disk) {
    flush_path(disk.get_path_string(), O_DIRECTORY);
}
