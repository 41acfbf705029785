// The files of a folder: opening, removing, moving and copying them by bare name.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "disk_exchange.h"
#include "disk_path.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/text_file.h"

namespace {

using STREAM = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// The name that stands for "keep the name".
const char* name_or(const char* target_name, const char* name) {
    return target_name && target_name[0] != '\0' ? target_name : name;
}

// What the system needs to know of an fopen mode.
struct OPEN_MODE {
    int flags = 0;
    bool empties = false;
    bool valid = true;
};

OPEN_MODE parse_mode(const char* mode) {
    OPEN_MODE parsed;
    const bool both = std::strchr(mode, '+') != nullptr;
    switch (mode[0]) {
        case 'r':
            parsed.flags = both ? O_RDWR : O_RDONLY;
            break;
        case 'w':
            parsed.flags = both ? O_RDWR : O_WRONLY;
            parsed.empties = true;
            break;
        case 'a':
            parsed.flags = (both ? O_RDWR : O_WRONLY) | O_APPEND;
            break;
        default:
            parsed.valid = false;
    }
    if (mode[0] == 'w' || std::strncmp(mode, "r+", 2) == 0) {
        parsed.flags |= O_CREAT;
    }
    return parsed;
}

// Opens a regular file and nothing else: a pipe that stands in its place doesn't block, and a link
// is followed for reading only.
STREAM open_stream(const DISK_MANAGER& disk, const char* name, const char* mode) {
    STREAM stream(nullptr, std::fclose);
    const OPEN_MODE parsed = parse_mode(mode);
    FULL_PATH file;
    if (!parsed.valid) {
        errno = EINVAL;
        return stream;
    }
    if (!file.join(disk, name)) {
        return stream;
    }
    const bool writes = (parsed.flags & O_ACCMODE) != O_RDONLY;
    DESCRIPTOR descriptor(
        open(file.get(),
             parsed.flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (writes ? O_NOFOLLOW : 0), 0666));
    struct stat info;
    if (!descriptor.is_open() || fstat(descriptor.get(), &info) != 0) {
        return stream;
    }
    if (!S_ISREG(info.st_mode)) {
        errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
        return stream;
    }
    if (fcntl(descriptor.get(), F_SETFL, parsed.flags & O_APPEND) != 0 ||
        (parsed.empties && ftruncate(descriptor.get(), 0) != 0)) {
        return stream;
    }
    stream.reset(fdopen(descriptor.get(), mode));
    if (stream) {
        descriptor.release();
    }
    return stream;
}

// A name in which the characters that not every system allows are replaced.
std::string legal_name(const char* name) {
    std::string legal = name ? name : "";
    DISK_MANAGER::convert_illegal_chars(legal.data());
    return legal;
}

bool copy_bytes(int source, int target) {
    constexpr std::size_t PIECE = 1 << 20;
    // The file system copies by itself where it can.
    bool copied_any = false;
    for (;;) {
        const ssize_t done = copy_file_range(source, nullptr, target, nullptr, 64 * PIECE, 0);
        if (done < 0) {
            if (errno == EINTR) {
                continue;
            }
            if (!copied_any && errno != ENOSPC && errno != EIO && errno != EDQUOT) {
                break;
            }
            return false;
        }
        if (done == 0) {
            if (copied_any) {
                return true;
            }
            break;  // empty, or a file that tells its size only by being read
        }
        copied_any = true;
    }
    std::vector<char> buffer(PIECE);
    for (;;) {
        const ssize_t got = read(source, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return got == 0;
        }
        for (ssize_t written = 0; written < got;) {
            const ssize_t done =
                write(target, buffer.data() + written, static_cast<std::size_t>(got - written));
            if (done < 0 && errno != EINTR) {
                return false;
            }
            written += done > 0 ? done : 0;
        }
    }
}

// Copies a folder to another device and removes it here.
bool move_folder_across(const DISK_MANAGER& source, const char* name, const DISK_MANAGER& target,
                        const char* target_path) {
    std::string beside = temporary_path(target);
    if (!mkdtemp(beside.data())) {
        return false;
    }
    DISK_MANAGER from = source;
    DISK_MANAGER to = target;
    const char* beside_name = std::strrchr(beside.c_str(), '/') + 1;
    struct stat info;
    const bool moved = from.move_down(name) && to.move_down(beside_name) &&
                       DISK_MANAGER::copy_tree(from, to) && stat(from.get_path(), &info) == 0 &&
                       chmod(beside.c_str(), info.st_mode & 0777) == 0 &&
                       rename(beside.c_str(), target_path) == 0 && target.flush_file_system();
    const int error = errno;
    if (!moved) {
        DISK_MANAGER::delete_tree(target, beside_name);
        errno = error;
        return false;
    }
    return DISK_MANAGER::delete_tree(source, name) == 0;
}

}  // namespace

void DISK_MANAGER::convert_illegal_chars(char* name) {
    for (char* p = name; p && *p; ++p) {
        if (std::strchr(":/\\\"*?<>|", *p)) {
            *p = '_';
        }
    }
}

std::FILE* DISK_MANAGER::open_file(char* name, const char* mode) const {
    if (!name || !mode) {
        errno = EINVAL;
        return nullptr;
    }
    convert_illegal_chars(name);
    return open_stream(*this, name, mode).release();
}

TEXT_FILE* DISK_MANAGER::open_text_file(const char* name, FILE_MODE mode, bool utf16) const {
    const std::string legal = legal_name(name);
    if (mode == FILE_WRITE) {
        STREAM stream = open_stream(*this, legal.c_str(), utf16 ? "wb" : "w");
        if (!stream || (utf16 && std::fputs("\xFF\xFE", stream.get()) == EOF)) {
            return nullptr;
        }
        return new TEXT_FILE(stream.release(), mode, utf16, false);
    }
    const bool append = mode == FILE_APPEND;
    STREAM stream = open_stream(*this, legal.c_str(), append ? "r+b" : "rb");
    if (!stream) {
        return nullptr;
    }
    unsigned char mark[2] = {};
    const bool marked = std::fread(mark, 1, sizeof mark, stream.get()) == sizeof mark;
    if (marked && mark[0] == 0xFF && mark[1] == 0xFE) {
        if (append && std::fseek(stream.get(), 0, SEEK_END) != 0) {
            return nullptr;
        }
        return new TEXT_FILE(stream.release(), mode, true, false);
    }
    if (marked && mark[0] == 0xFE && mark[1] == 0xFF) {
        if (append) {
            errno = EINVAL;
            return nullptr;
        }
        return new TEXT_FILE(stream.release(), mode, true, true);
    }
    stream = open_stream(*this, legal.c_str(), append ? "a+" : "r");
    return stream ? new TEXT_FILE(stream.release(), mode, false, false) : nullptr;
}

DATA_FILE* DISK_MANAGER::open_data_file(const char* name, FILE_MODE mode, std::int32_t byte_order,
                                        std::int32_t cache_size) const {
    const char* const MODES[] = {"rb", "wb", "r+b"};
    if (mode < FILE_READ || mode > FILE_APPEND) {
        errno = EINVAL;
        return nullptr;
    }
    STREAM stream = open_stream(*this, legal_name(name).c_str(), MODES[mode]);
    if (!stream) {
        return nullptr;
    }
    // The data file's own cache is the only one.
    std::setvbuf(stream.get(), nullptr, _IONBF, 0);
    const bool has_header = byte_order == -1;
    if (has_header) {
        byte_order = mode == FILE_WRITE ? EOF : std::fgetc(stream.get());
        if (byte_order == EOF) {
            if (mode == FILE_READ) {
                errno = EINVAL;  // not even the header is there
                return nullptr;
            }
            std::rewind(stream.get());
            byte_order = 0;
            if (std::fputc(byte_order, stream.get()) == EOF) {
                return nullptr;  // a full disk
            }
        }
    }
    if (mode == FILE_APPEND && fseeko(stream.get(), 0, SEEK_END) != 0) {
        return nullptr;
    }
    return new DATA_FILE(stream.release(), mode, byte_order, has_header, cache_size);
}

void DISK_MANAGER::close(TEXT_FILE*& file) {
    delete file;
    file = nullptr;
}

bool DISK_MANAGER::close(DATA_FILE*& file) {
    const bool stored = !file || file->close();
    delete file;
    file = nullptr;
    return stored;
}

bool DISK_MANAGER::remove(const char* name, bool force) const {
    FULL_PATH file;
    struct stat info;
    if (!file.join(*this, name) || lstat(file.get(), &info) != 0) {
        return false;
    }
    if (S_ISDIR(info.st_mode)) {
        errno = EISDIR;
        return false;
    }
    // The system itself removes a file whatever its mark.
    if (!force && S_ISREG(info.st_mode) && !(info.st_mode & S_IWUSR)) {
        errno = EACCES;
        return false;
    }
    return unlink(file.get()) == 0;
}

int DISK_MANAGER::rmdir(const char* name) const {
    FULL_PATH folder;
    return folder.join(*this, name) ? ::rmdir(folder.get()) : -1;
}

bool DISK_MANAGER::move(const char* name, const DISK_MANAGER& target,
                        const char* target_name) const {
    FULL_PATH from;
    FULL_PATH to;
    if (!from.join(*this, name) || !to.join(target, name_or(target_name, name))) {
        return false;
    }
    if (rename(from.get(), to.get()) == 0) {
        return true;
    }
    struct stat info;
    if (errno != EXDEV || lstat(from.get(), &info) != 0) {
        return false;
    }
    if (S_ISDIR(info.st_mode)) {
        return move_folder_across(*this, name, target, to.get());
    }
    return copy(name, target, target_name) && target.flush_file_system() && unlink(from.get()) == 0;
}

bool DISK_MANAGER::flush_file_system() const {
    const DESCRIPTOR folder(open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.is_open() && syncfs(folder.get()) == 0;
}

bool DISK_MANAGER::replace_folder(const char* name, const DISK_MANAGER& target,
                                  const char* target_name) const {
    FULL_PATH from;
    FULL_PATH to;
    struct stat info;
    if (!from.join(*this, name) || !to.join(target, name_or(target_name, name)) ||
        lstat(from.get(), &info) != 0) {
        return false;
    }
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    if (lstat(to.get(), &info) != 0) {
        return errno == ENOENT && rename(from.get(), to.get()) == 0;
    }
    if (!S_ISDIR(info.st_mode)) {
        errno = ENOTDIR;
        return false;
    }
    if (renameat2(AT_FDCWD, from.get(), AT_FDCWD, to.get(), RENAME_EXCHANGE) == 0) {
        return true;
    }
    return (errno == EINVAL || errno == ENOSYS) &&
           exchange_by_renames(from.get(), to.get(), target);
}

bool DISK_MANAGER::copy(const char* name, const DISK_MANAGER& target,
                        const char* target_name) const {
    FULL_PATH to;
    const STREAM source = open_stream(*this, name, "rb");
    struct stat info;
    struct stat there;
    if (!source || fstat(fileno(source.get()), &info) != 0 ||
        !to.join(target, name_or(target_name, name))) {
        return false;
    }
    const bool replaces = stat(to.get(), &there) == 0;
    if (replaces && identity_of(there) == identity_of(info)) {
        errno = EEXIST;
        return false;
    }
    std::string beside = temporary_path(target);
    DESCRIPTOR copy_file(mkostemp(beside.data(), O_CLOEXEC));
    if (!copy_file.is_open()) {
        return false;
    }
    const timespec times[2] = {info.st_atim, info.st_mtim};
    bool copied = copy_bytes(fileno(source.get()), copy_file.get()) &&
                  fchmod(copy_file.get(), info.st_mode & 0777) == 0 &&
                  futimens(copy_file.get(), times) == 0 &&
                  (!replaces || fdatasync(copy_file.get()) == 0);
    copied = ::close(copy_file.release()) == 0 && copied;
    if (copied && rename(beside.c_str(), to.get()) == 0) {
        return true;
    }
    const int error = errno;
    unlink(beside.c_str());
    errno = error;
    return false;
}

bool DISK_MANAGER::is_read_only(const DISK_MANAGER& disk, const char* name) {
    FULL_PATH file;
    struct stat info;
    return file.join(disk, name) && stat(file.get(), &info) == 0 && !(info.st_mode & S_IWUSR);
}

bool DISK_MANAGER::set_is_read_only(const DISK_MANAGER& disk, const char* name, bool on) {
    constexpr mode_t ALL_WRITE = S_IWUSR | S_IWGRP | S_IWOTH;
    FULL_PATH file;
    struct stat info;
    if (!file.join(disk, name) || lstat(file.get(), &info) != 0) {
        return false;
    }
    const mode_t mode = info.st_mode & 07777;
    return fchmodat(AT_FDCWD, file.get(), on ? (mode & ~ALL_WRITE) : (mode | S_IWUSR),
                    AT_SYMLINK_NOFOLLOW) == 0;
}
