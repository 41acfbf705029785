#include "kvcore/fsref_item.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>

#include "file_names.h"
#include "fsref_support.h"
#include "kvcore/file_stream.h"

namespace KVCORE {
namespace {

// 2, and the two that STREAM knows: close in the end, exclusive.
constexpr std::uint32_t STREAM_FLAGS = 2 | STREAM::CLOSE_ON_DESTRUCTION | STREAM::EXCLUSIVE;
constexpr mode_t WRITE_RIGHTS = S_IWUSR | S_IWGRP | S_IWOTH;

// The top folder of a volume. Path and status are the object's own, those of an alias not followed:
// it stands on its own volume wherever it leads.
bool is_top_of_volume(const std::string& path, const struct stat& status) {
    struct stat above;
    return S_ISDIR(status.st_mode) &&
           (path == "/" ||
            (::lstat(get_folder(path).c_str(), &above) == 0 && above.st_dev != status.st_dev));
}

STRING get_machine_name() {
    char name[HOST_NAME_MAX + 1] = "";
    ::gethostname(name, sizeof name - 1);
    return from_file_text(name);
}

// The creation date that was set on a file, if one was.
bool read_creation_attribute(const std::string& path, DATE& date) {
    char text[64];
    const ssize_t length = ::getxattr(path.c_str(), CREATION_ATTRIBUTE, text, sizeof text);
    double seconds = 0.0;
    if (length <= 0 || std::from_chars(text, text + length, seconds).ec != std::errc()) {
        return false;
    }
    date = DATE(seconds);
    return true;
}

int write_creation_attribute(const std::string& path, const DATE& date) {
    char text[64];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, date.get_seconds());
    const auto length = static_cast<std::size_t>(end.ptr - text);
    return ::setxattr(path.c_str(), CREATION_ATTRIBUTE, text, length, 0) == 0 ? 0 : errno;
}

DATE get_creation_date(const std::string& path, const struct stat& status) {
    DATE date;
    if (read_creation_attribute(path, date)) {
        return date;
    }
    struct statx more;
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &more) == 0 &&
        (more.stx_mask & STATX_BTIME) != 0) {
        timespec birth;
        birth.tv_sec = more.stx_btime.tv_sec;
        birth.tv_nsec = more.stx_btime.tv_nsec;
        return DATE(birth);
    }
    return DATE(status.st_mtim);
}

// A descriptor of a regular file, -1 for anything else; `code` takes the failure.
int open_regular(const std::string& path, int flags, int& code) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat status;
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        code = errno;
    } else if (S_ISREG(status.st_mode)) {
        code = 0;
        return descriptor;
    } else {
        code = S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return -1;
}

}  // namespace

RESULT check_file_code(int code) {
    RESULT result;
    result.check_result(code);
    return result;
}

FILE_ITEM::HANDLE FSREF_ITEM::create(const FILE_PATH& path) {
    const std::string platform_path = make_file_path(path);
    HANDLE item = create(platform_path);
    if (!item && path.is_file() && path.get_type_text() == FILE_TYPE_NONE.get_string()) {
        // The dot that was left out may be a part of the name.
        item = create(std::string(platform_path).append("."));
    }
    return item;
}

FILE_ITEM::HANDLE FSREF_ITEM::create(const FILE_REFERENCE& reference) {
    std::string path;
    struct stat status;
    return reference.resolve(path, status) == 0 ? HANDLE(new FSREF_ITEM(reference)) : nullptr;
}

FILE_ITEM::HANDLE FSREF_ITEM::create(const std::string& platform_path) {
    FILE_REFERENCE reference;
    if (platform_path.empty() || FILE_REFERENCE::create(platform_path, true, reference) != 0) {
        return nullptr;
    }
    return HANDLE(new FSREF_ITEM(std::move(reference)));
}

bool FSREF_ITEM::query(std::string& path, struct stat& status) const {
    if (reference_.resolve(path, status) != 0) {
        return false;
    }
    struct stat target;
    if (S_ISLNK(status.st_mode) && ::stat(path.c_str(), &target) == 0) {
        status = target;
    }
    return true;
}

FILE_NAME FSREF_ITEM::get_name() const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return FILE_NAME();
    }
    if (S_ISDIR(status.st_mode) && is_volume()) {
        return FILE_NAME(get_machine_name());
    }
    const STRING text = from_file_text(get_last_component(path));
    return S_ISDIR(status.st_mode) ? FILE_NAME(text)
                                   : FILE_PATH(text, FILE_PATH::NAMES_FILE).get_name();
}

FILE_TYPE FSREF_ITEM::get_type() const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return FILE_TYPE_NONE;
    }
    if (S_ISDIR(status.st_mode) && is_volume()) {
        return FILE_TYPE_CONTAINER;
    }
    const STRING text = from_file_text(get_last_component(path));
    return FILE_PATH(text, S_ISDIR(status.st_mode) ? FILE_PATH::FROM_TEXT : FILE_PATH::NAMES_FILE)
        .get_type();
}

FILE_PATH FSREF_ITEM::get_path() const {
    std::string path;
    struct stat status;
    return query(path, status) ? FILE_PATH(from_file_text(path)) : FILE_PATH();
}

bool FSREF_ITEM::is_container() const {
    std::string path;
    struct stat status;
    return query(path, status) && S_ISDIR(status.st_mode);
}

bool FSREF_ITEM::is_file() const {
    std::string path;
    struct stat status;
    return query(path, status) && !S_ISDIR(status.st_mode);
}

bool FSREF_ITEM::is_root() const {
    std::string path;
    struct stat status;
    return reference_.resolve(path, status) == 0 && is_top_of_volume(path, status);
}

bool FSREF_ITEM::is_volume() const {
    return is_root();
}

RESULT FSREF_ITEM::get_permissions(FILE_PERMISSIONS& permissions) const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return check_file_code(ENOENT);
    }
    permissions.bits = is_locked(status) ? FILE_PERMISSIONS::LOCKED : 0;
    return RESULT();
}

RESULT FSREF_ITEM::set_permissions(const FILE_PERMISSIONS& permissions) {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return check_file_code(ENOENT);
    }
    if (permissions.is_locked() == is_locked(status)) {
        return RESULT();
    }
    const mode_t mode =
        permissions.is_locked() ? status.st_mode & ~WRITE_RIGHTS : status.st_mode | S_IWUSR;
    return check_file_code(::chmod(path.c_str(), mode & 07777) == 0 ? 0 : errno);
}

std::int64_t FSREF_ITEM::get_size() const {
    std::string path;
    struct stat status;
    return query(path, status) && S_ISREG(status.st_mode) ? status.st_size : 0;
}

DATE FSREF_ITEM::get_date(DATE_TYPE type) const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return DATE();
    }
    return type == DATE_OF_CREATION ? get_creation_date(path, status) : DATE(status.st_mtim);
}

RESULT FSREF_ITEM::set_date(DATE_TYPE type, const DATE& date) {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return check_file_code(ENOENT);
    }
    if (type == DATE_OF_CREATION) {
        return check_file_code(write_creation_attribute(path, date));
    }
    timespec times[2];
    times[0].tv_sec = 0;
    times[0].tv_nsec = UTIME_OMIT;
    times[1] = date.convert_to<timespec>();
    return check_file_code(::utimensat(AT_FDCWD, path.c_str(), times, 0) == 0 ? 0 : errno);
}

FILE_ITEM::HANDLE FSREF_ITEM::get_parent() const {
    std::string path;
    struct stat status;
    if (reference_.resolve(path, status) != 0 || is_top_of_volume(path, status)) {
        return nullptr;
    }
    return create(get_folder(path));
}

REFERENCE_COUNTER<INPUT_STREAM> FSREF_ITEM::open_to_read() const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return nullptr;
    }
    int code = 0;
    const int descriptor = open_regular(path, O_RDONLY, code);
    if (check_file_code(code) != 0) {
        return nullptr;
    }
    return REFERENCE_COUNTER<INPUT_STREAM>(
        new FILE_INPUT_STREAM(FILE_STREAM_HELPER_POSIX(descriptor), STREAM_FLAGS));
}

REFERENCE_COUNTER<OUTPUT_STREAM> FSREF_ITEM::open_to_write(FILE_WRITE_MODE mode) const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return nullptr;
    }
    int code = 0;
    const int descriptor = open_regular(path, O_RDWR, code);
    if (check_file_code(code) != 0) {
        return nullptr;
    }
    REFERENCE_COUNTER<OUTPUT_STREAM> stream(
        new FILE_OUTPUT_STREAM(FILE_STREAM_HELPER_POSIX(descriptor), STREAM_FLAGS));
    const bool ready = mode == WRITE_FROM_START ? ::ftruncate(descriptor, 0) == 0
                                                : ::lseek(descriptor, 0, SEEK_END) >= 0;
    if (check_file_code(ready ? 0 : errno) != 0) {
        return nullptr;
    }
    return stream;
}

bool FSREF_ITEM::exists(const FILE_NAME& name, const FILE_TYPE& type) const {
    return static_cast<bool>(get_item(name, type));
}

FILE_ITEM::HANDLE FSREF_ITEM::get_item(const FILE_NAME& name, const FILE_TYPE& type) const {
    std::string path;
    struct stat status;
    if (!query(path, status)) {
        return nullptr;
    }
    for (const std::string& file_name : make_possible_file_names(name, type)) {
        FILE_REFERENCE reference;
        const int code = file_name.empty()
                             ? ENOENT
                             : FILE_REFERENCE::create(join_path(path, file_name), false, reference);
        if (code == 0) {
            return HANDLE(new FSREF_ITEM(std::move(reference)));
        }
        RESULT().check_result_excluding(code, ENOENT);
    }
    return nullptr;
}

RESULT FSREF_ITEM::get_items(const FILE_NAME& name, const FILE_TYPE& type,
                             REFERENCE_COUNTER<FILE_ITEMS>& items, FILE_ITEMS_FLAGS flags) const {
    const std::int32_t first = items ? items->get_container_count() : 0;
    RESULT result = list(name, type, items, flags);
    result += get_items_recursive(first, name, type, items, flags);
    return result;
}

}  // namespace KVCORE
