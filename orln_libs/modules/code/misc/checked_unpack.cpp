// The unpacking of an archive from outside, which never leaves its target folder.
//
// Every folder below the target is opened without following links, and everything is made relative
// to a folder that is open, so that no name, and nobody who puts a link in the way meanwhile, leads
// elsewhere.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "archive_trace.h"
#include "file_descriptor.h"
#include "modules/misc/archive_check.h"
#include "modules/misc/tar_file.h"
#include "tar_header.h"

namespace {

constexpr std::size_t COPY_BUFFER = 256 * 1024;

constexpr int OPEN_FOLDER = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string system_error() {
    return std::strerror(errno);
}

class CHECKED_UNPACKER {
public:
    CHECKED_UNPACKER(const std::string& target_path, ARCHIVE_READER& archive_reader,
                     const ARCHIVE_PROGRESS& progress_callback)
        : target(::open(target_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          reader(archive_reader),
          progress(progress_callback) {}

    bool is_open() const { return target.is_open(); }

    bool unpack(const ARCHIVE_ENTRY& entry, std::string& reason) {
        if (entry.folder) {
            return go_to_folder(entry.name, reason);
        }
        const std::size_t slash = entry.name.rfind('/');
        const bool at_top = slash == std::string::npos;
        return go_to_folder(at_top ? std::string() : entry.name.substr(0, slash), reason) &&
               unpack_file(entry, at_top ? entry.name : entry.name.substr(slash + 1), reason);
    }

private:
    // Makes `path` below the target, and stands there. Archives come folder by folder, so the
    // folder of the last entry is kept open.
    bool go_to_folder(const std::string& path, std::string& reason) {
        if (current.is_open() && path == current_path) {
            return true;
        }
        current = FILE_DESCRIPTOR(::openat(target.get(), ".", OPEN_FOLDER));
        for (std::size_t at = 0; at < path.size() && current.is_open();) {
            const std::size_t end = std::min(path.find('/', at), path.size());
            const std::string component = path.substr(at, end - at);
            at = end + 1;
            if (component.empty() || component == ".") {
                continue;
            }
            if (::mkdirat(current.get(), component.c_str(), 0777) != 0 && errno != EEXIST) {
                break_off(reason, "cannot make the folder ", component);
                return false;
            }
            const int next = ::openat(current.get(), component.c_str(), OPEN_FOLDER);
            if (next < 0) {
                const bool link = errno == ELOOP || errno == ENOTDIR;
                break_off(reason,
                          link ? "a file or link is in the way: " : "cannot open the folder ",
                          component);
                return false;
            }
            current = FILE_DESCRIPTOR(next);
        }
        if (!current.is_open()) {
            break_off(reason, "cannot open the folder ", path);
            return false;
        }
        current_path = path;
        return true;
    }

    // A file that is made new; a regular file of that name is replaced, anything else is in the
    // way.
    FILE_DESCRIPTOR make_file(const std::string& name) {
        constexpr int MAKE = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        FILE_DESCRIPTOR made(::openat(current.get(), name.c_str(), MAKE, 0666));
        if (made.is_open() || errno != EEXIST) {
            return made;
        }
        struct stat status;
        if (::fstatat(current.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(status.st_mode) || ::unlinkat(current.get(), name.c_str(), 0) != 0) {
            errno = EEXIST;
            return made;
        }
        return FILE_DESCRIPTOR(::openat(current.get(), name.c_str(), MAKE, 0666));
    }

    bool unpack_file(const ARCHIVE_ENTRY& entry, const std::string& name, std::string& reason) {
        FILE_DESCRIPTOR output = make_file(name);
        if (!output.is_open()) {
            break_off(reason, "cannot make the file ", entry.name);
            return false;
        }
        const bool program =
            entry.executable || entry.name.find(TAR_HEADER::PROGRAM_FOLDER) != std::string::npos;
        if (program && ::fchmod(output.get(), 0755) != 0) {
            break_off(reason, "cannot set the mode of ", entry.name);
            return false;
        }
        for (;;) {
            const unsigned char* data = nullptr;
            std::size_t size = 0;
            if (!reader.read_data(data, size)) {
                break_off(reason, "cannot read the archive at ", entry.name);
                return false;
            }
            if (size == 0) {
                break;
            }
            if (!write_whole(output.get(), data, size)) {
                break_off(reason, "cannot write ", entry.name);
                return false;
            }
            bytes_done += size;
            if (progress && !progress(bytes_done)) {
                reason = "stopped at " + entry.name;
                return false;
            }
        }
        if (!output.close()) {
            break_off(reason, "cannot write ", entry.name);
            return false;
        }
        return true;
    }

    static void break_off(std::string& reason, const char* what, const std::string& name) {
        const std::string error = system_error();
        reason = what + name + ": " + error;
    }

    FILE_DESCRIPTOR target;
    FILE_DESCRIPTOR current;
    std::string current_path;
    ARCHIVE_READER& reader;
    const ARCHIVE_PROGRESS& progress;
    std::uint64_t bytes_done = 0;
};

}  // namespace

bool TAR_FILE::unpack_all_files_checked(const DISK_MANAGER& target, std::string& reason,
                                        const ARCHIVE_PROGRESS& progress) {
    files_unpacked = 0;
    reason.clear();
    if (!file || writing) {
        reason = "no archive is open";
        return false;
    }
    std::string unsafe_name;
    if (find_unsafe_entry(*this, unsafe_name, reason)) {
        if (!unsafe_name.empty()) {
            reason = "entry \"" + unsafe_name + "\" " + reason;
        }
        trace_archive_failure("TAR_FILE::unpack_all_files_checked - ", reason.c_str());
        return false;
    }
    ARCHIVE_READER reader(get_full_path(), COPY_BUFFER);
    CHECKED_UNPACKER unpacker(target.get_path_string(), reader, progress);
    if (!reader.is_open() || !unpacker.is_open()) {
        reason = "cannot open the archive or the target folder: " + system_error();
        return false;
    }
    ARCHIVE_ENTRY entry;
    for (;;) {
        const ARCHIVE_READER::RESULT result = reader.next(entry, reason);
        if (result == ARCHIVE_READER::RESULT::END) {
            return true;
        }
        if (result == ARCHIVE_READER::RESULT::UNSAFE || !unpacker.unpack(entry, reason)) {
            trace_archive_failure("TAR_FILE::unpack_all_files_checked - ", reason.c_str());
            return false;
        }
        if (!entry.folder) {
            files_unpacked++;
        }
    }
}
