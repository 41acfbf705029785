#include "disk_path.h"

#include <cerrno>
#include <cstring>

bool is_bare_name(const char* name) {
    return name && name[0] != '\0' && std::strchr(name, '/') == nullptr &&
           std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

bool FULL_PATH::join(const DISK_MANAGER& folder, const char* name) {
    if (!is_bare_name(name)) {
        errno = EINVAL;
        return false;
    }
    const std::size_t name_length = ::strnlen(name, DISK_MANAGER::NAME_SIZE);
    if (name_length >= DISK_MANAGER::NAME_SIZE) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::size_t length = std::strlen(folder.get_path());
    std::memcpy(text, folder.get_path(), length);
    if (length != 1) {  // anything but "/"
        text[length++] = '/';
    }
    std::memcpy(text + length, name, name_length + 1);
    return true;
}
