#include "modules/misc/tar_path_tools.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "platform/disk_manager.h"

namespace {

// The last "/" or "\", or null.
const char* find_last_separator(const char* path) {
    const char* last = nullptr;
    for (const char* at = path; *at; at++) {
        if (*at == '/' || *at == '\\') {
            last = at;
        }
    }
    return last;
}

}  // namespace

const char* tar_tools_get_dir_part_from_path(const char* path) {
    static thread_local char folder[1024];
    folder[0] = '\0';
    const char* separator = path ? find_last_separator(path) : nullptr;
    if (separator) {
        const auto length = std::min(static_cast<std::size_t>(separator - path), sizeof folder - 1);
        std::memcpy(folder, path, length);
        folder[length] = '\0';
    }
    return folder;
}

const char* tar_tools_get_filename_from_path(const char* path) {
    const char* separator = path ? find_last_separator(path) : nullptr;
    return separator ? separator + 1 : path;
}

bool tar_tools_set_relative_path(DISK_MANAGER& disk, const char* path, bool create) {
    if (!path) {
        return false;
    }
    bool whole = true;
    const char* at = *path == '/' ? path + 1 : path;
    while (*at) {
        const char* end = std::strchr(at, '/');
        const std::string component =
            end ? std::string(at, static_cast<std::size_t>(end - at)) : std::string(at);
        if (component == "..") {
            whole = disk.move_up() && whole;
        } else if (component != ".") {
            whole = disk.move_down(component.c_str(), create) && whole;
        }
        at = end ? end + 1 : at + component.size();
    }
    return whole;
}
