// The cursor: placing it, moving it, and what it says about itself.
#include "platform/disk_manager.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "disk_path.h"
#include "platform/data_device.h"

namespace {

constexpr unsigned char RELATIVE_PATH_MARKER = 0xFF;
constexpr unsigned char RAW_CURSOR_MARKER = 2;

bool is_separator(char c) {
    return c == ':' || c == '/' || c == '\\';
}

}  // namespace

unsigned char DISK_MANAGER::get_from_data_device(const DATA_DEVICE& device) {
    unsigned char marker = 0;
    char block[PATH_SIZE];
    if (!(device >> marker) || device.read_data_block(block, PATH_SIZE) != PATH_SIZE) {
        return 0;
    }
    bool placed = false;
    if (marker == RELATIVE_PATH_MARKER) {
        block[PATH_SIZE - 1] = '\0';
        placed = set_relative_path(block);
    } else if (marker == RAW_CURSOR_MARKER) {
        placed = set_path(block);
    }
    if (!placed) {
        get_base_dir();
    }
    return 1;
}

unsigned char DISK_MANAGER::put_to_data_device(DATA_DEVICE& device) const {
    char block[PATH_SIZE] = {};
    return get_relative_path(block) && (device << RELATIVE_PATH_MARKER) &&
           device.write_data_block(block, PATH_SIZE) == PATH_SIZE;
}

bool DISK_MANAGER::operator==(const DISK_MANAGER& other) const {
    struct stat mine;
    struct stat theirs;
    const bool exists = stat(path, &mine) == 0;
    if (exists != (stat(other.path, &theirs) == 0)) {
        return false;
    }
    return exists ? identity_of(mine) == identity_of(theirs) : std::strcmp(path, other.path) == 0;
}

bool DISK_MANAGER::set_real_path(const char* real_path) {
    const std::size_t length = ::strnlen(real_path, PATH_SIZE);
    if (length >= PATH_SIZE) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memmove(path, real_path, length);
    std::memset(path + length, 0, PATH_SIZE - length);
    return true;
}

bool DISK_MANAGER::move_to_whole_path(const char* whole_path) {
    if (whole_path[0] != '/') {
        errno = EINVAL;
        return false;
    }
    char real_path[PATH_MAX];
    struct stat info;
    if (!realpath(whole_path, real_path) || stat(real_path, &info) != 0) {
        return false;
    }
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    return set_real_path(real_path);
}

bool DISK_MANAGER::move_down(const char* name, bool create, bool whole_path) {
    if (!name) {
        errno = EINVAL;
        return false;
    }
    if (whole_path) {
        return move_to_whole_path(name);
    }
    FULL_PATH child;
    if (!child.join(*this, name)) {
        return false;
    }
    if (std::strlen(child.get()) >= PATH_SIZE) {  // before anything is created
        errno = ENAMETOOLONG;
        return false;
    }
    struct stat info;
    if (lstat(child.get(), &info) != 0) {
        // Another process may create the folder at the same moment.
        if (errno != ENOENT || !create || (mkdir(child.get(), 0777) != 0 && errno != EEXIST) ||
            lstat(child.get(), &info) != 0) {
            return false;
        }
    }
    if (S_ISLNK(info.st_mode)) {
        return move_to_whole_path(child.get());
    }
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    return set_real_path(child.get());
}

bool DISK_MANAGER::move_up() {
    char* last = std::strrchr(path, '/');
    if (!last || path[1] == '\0') {
        return false;
    }
    if (last == path) {
        ++last;
    }
    std::memset(last, 0, std::strlen(last));
    return true;
}

void DISK_MANAGER::move_to_top() {
    set_real_path("/");
}

bool DISK_MANAGER::navigate_to_relative_path(const char* relative, bool create) {
    if (!relative) {
        errno = EINVAL;
        return false;
    }
    // All moves up come first, as if they stood in front.
    for (const char* p = relative; (p = std::strstr(p, "../")) != nullptr; p += 3) {
        if ((p == relative || is_separator(p[-1])) && !move_up()) {
            return false;
        }
    }
    for (const char* p = relative; *p;) {
        const char* end = p;
        while (*end && !is_separator(*end)) {
            ++end;
        }
        const auto length = static_cast<std::size_t>(end - p);
        const bool upward = length == 2 && std::memcmp(p, "../", 3) == 0;
        if (length != 0 && !upward) {
            char name[NAME_SIZE];
            if (length >= sizeof name) {
                errno = ENAMETOOLONG;
                return false;
            }
            std::memcpy(name, p, length);
            name[length] = '\0';
            if (!move_down(name, create)) {
                return false;
            }
        }
        p = *end ? end + 1 : end;
    }
    return true;
}

bool DISK_MANAGER::validate_path(const void* raw) {
    const char* text = static_cast<const char*>(raw);
    struct stat info;
    return text && text[0] == '/' && ::strnlen(text, PATH_SIZE) < PATH_SIZE &&
           stat(text, &info) == 0 && S_ISDIR(info.st_mode);
}

bool DISK_MANAGER::set_path(const void* raw) {
    if (validate_path(raw) && move_to_whole_path(static_cast<const char*>(raw))) {
        return true;
    }
    move_to_top();
    return false;
}

char* DISK_MANAGER::get_path_string(const char* filename) const {
    static thread_local char text[PATH_SIZE];
    text[0] = '\0';
    struct stat info;
    if (stat(path, &info) != 0) {
        return text;
    }
    const char* slash = filename && path[1] != '\0' ? "/" : "";
    const int length =
        std::snprintf(text, sizeof text, "%s%s%s", path, slash, filename ? filename : "");
    if (length >= PATH_SIZE) {
        text[0] = '\0';
    }
    return text;
}

char* DISK_MANAGER::get_directory_name() const {
    static thread_local char text[NAME_SIZE];
    const char* start = path + std::strlen(path);
    while (start > path && !is_separator(start[-1])) {
        --start;
    }
    std::snprintf(text, sizeof text, "%s", start);
    return text;
}

bool DISK_MANAGER::file_exists(const DISK_MANAGER& disk, const char* name) {
    FULL_PATH file;
    struct stat info;
    return file.join(disk, name) && stat(file.get(), &info) == 0;
}

std::int64_t DISK_MANAGER::get_file_date(const DISK_MANAGER& disk, const char* name) {
    FULL_PATH file;
    struct stat info;
    return file.join(disk, name) && stat(file.get(), &info) == 0 && !S_ISDIR(info.st_mode)
               ? info.st_mtime
               : 0;
}

std::int16_t DISK_MANAGER::get_drive_count() {
    return 1;
}

const char* DISK_MANAGER::get_drive_name(std::int16_t index) {
    return index == 0 ? "/" : nullptr;
}

std::int16_t DISK_MANAGER::get_current_drive() const {
    return 0;
}

bool DISK_MANAGER::change_to_drive(std::int16_t index) {
    const char* name = get_drive_name(index);
    return name && set_real_path(name);
}
