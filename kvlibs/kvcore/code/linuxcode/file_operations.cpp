#include "file_operations.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "file_names.h"
#include "fsref_support.h"
#include "kvcore/file_stream_helper_posix.h"

namespace KVCORE {
namespace {

constexpr std::int64_t COPY_BLOCK = 256 * 1024;

struct FOLDER_CLOSER {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

int set_times(const std::string& path, const struct stat& status) {
    const timespec times[2] = {status.st_atim, status.st_mtim};
    return ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

// The creation date that was set goes along where the volume can hold it.
void copy_creation_date(const std::string& from, const std::string& to) {
    char date[64];
    const ssize_t length = ::lgetxattr(from.c_str(), CREATION_ATTRIBUTE, date, sizeof date);
    if (length > 0) {
        ::lsetxattr(to.c_str(), CREATION_ATTRIBUTE, date, static_cast<std::size_t>(length), 0);
    }
}

int copy_content(const FILE_STREAM_HELPER_POSIX& from, const FILE_STREAM_HELPER_POSIX& to) {
    const std::unique_ptr<unsigned char[]> block(new unsigned char[COPY_BLOCK]);
    std::int64_t done = 0;
    int code = 0;
    do {
        code = from.read(block.get(), COPY_BLOCK, done);
        std::int64_t written = 0;
        if (code == 0) {
            code = to.write(block.get(), done, written);
            code = code == 0 && written < done ? EIO : code;
        }
    } while (code == 0 && done == COPY_BLOCK);
    return code;
}

int copy_file(const std::string& from, const std::string& to, const struct stat& status) {
    FILE_STREAM_HELPER_POSIX source(
        ::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!source.is_open()) {
        return errno;
    }
    FILE_STREAM_HELPER_POSIX copy(
        ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    int code = copy.is_open() ? copy_content(source, copy) : errno;
    source.close();
    if (code == 0) {
        copy_creation_date(from, to);
    }
    if (code == 0 && ::fchmod(copy.get_descriptor(), status.st_mode & 0777) != 0) {
        code = errno;
    }
    if (copy.is_open()) {
        const int closed = copy.close();
        code = code == 0 ? closed : code;
    }
    return code == 0 ? set_times(to, status) : code;
}

int copy_link(const std::string& from, const std::string& to, const struct stat& status) {
    std::string text(PATH_MAX, '\0');
    const ssize_t length = ::readlink(from.c_str(), text.data(), text.size());
    if (length < 0) {
        return errno;
    }
    text.resize(static_cast<std::size_t>(length));
    return ::symlink(text.c_str(), to.c_str()) == 0 ? set_times(to, status) : errno;
}

int remove_tree(const std::string& path) {
    std::error_code error;
    std::filesystem::remove_all(path, error);
    return error.value();
}

// Copies a tree without calls within calls, so that no depth of folders runs the stack out.
class TREE_COPY {
public:
    // The copy is complete but for one thing: its top folder can be written to, since a folder
    // that can't is moved by nobody.
    int copy(const std::string& from, const std::string& to) {
        waiting_.emplace_back(from, to);
        int code = 0;
        while (code == 0 && !waiting_.empty()) {
            const PATHS paths = std::move(waiting_.back());
            waiting_.pop_back();
            code = copy_one(paths);
        }
        // Rights and dates of folders come last: filling a folder changes its date, and may need
        // rights that it isn't to have.
        for (auto folder = folders_.rbegin(); code == 0 && folder != folders_.rend(); ++folder) {
            const bool is_top = folder + 1 == folders_.rend();
            const mode_t rights = get_rights(*folder) | (is_top ? mode_t{S_IWUSR} : mode_t{0});
            code = ::chmod(folder->path.c_str(), rights) == 0
                       ? set_times(folder->path, folder->status)
                       : errno;
        }
        return code;
    }

    // Gives the top folder, now at `path`, the rights that it is to have.
    int finish(const std::string& path) const {
        const bool is_ready = folders_.empty() || (get_rights(folders_.front()) & S_IWUSR) != 0;
        return is_ready || ::chmod(path.c_str(), get_rights(folders_.front())) == 0 ? 0 : errno;
    }

    // Takes the copy away again, whatever rights its folders have by now.
    void remove(const std::string& to) const {
        for (const FOLDER& folder : folders_) {
            ::chmod(folder.path.c_str(), 0700);
        }
        remove_tree(to);
    }

private:
    using PATHS = std::pair<std::string, std::string>;
    struct FOLDER {
        std::string path;
        struct stat status;
    };

    static mode_t get_rights(const FOLDER& folder) { return folder.status.st_mode & 07777; }

    int copy_one(const PATHS& paths) {
        const auto& [from, to] = paths;
        struct stat status;
        if (::lstat(from.c_str(), &status) != 0) {
            return errno;
        }
        if (S_ISREG(status.st_mode)) {
            return copy_file(from, to, status);
        }
        if (S_ISLNK(status.st_mode)) {
            return copy_link(from, to, status);
        }
        return S_ISDIR(status.st_mode) ? copy_folder(from, to, status) : ENOTSUP;
    }

    int copy_folder(const std::string& from, const std::string& to, const struct stat& status) {
        std::vector<std::string> names;
        const int code = list_folder(from, names);
        if (code != 0) {
            return code;
        }
        if (::mkdir(to.c_str(), 0700) != 0) {
            return errno;
        }
        copy_creation_date(from, to);
        folders_.push_back({to, status});
        for (const std::string& name : names) {
            waiting_.emplace_back(join_path(from, name), join_path(to, name));
        }
        return 0;
    }

    std::vector<PATHS> waiting_;
    std::vector<FOLDER> folders_;
};

bool is_inside(const std::string& path, const std::string& folder) {
    const std::string start = join_path(folder, "");
    return path.compare(0, start.size(), start) == 0;
}

}  // namespace

int list_folder(const std::string& path, std::vector<std::string>& names) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    const std::unique_ptr<DIR, FOLDER_CLOSER> folder(::fdopendir(descriptor));
    if (!folder) {
        const int code = errno;
        ::close(descriptor);
        return code;
    }
    errno = 0;
    while (const dirent* const entry = ::readdir(folder.get())) {
        if (!is_special_name(entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
        errno = 0;
    }
    if (errno != 0) {
        return errno;
    }
    std::sort(names.begin(), names.end());
    return 0;
}

int rename_without_replacing(const std::string& from, const std::string& to) {
    if (from == to) {
        return 0;
    }
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // The volume doesn't know the flag, or the move is impossible; rename tells which.
    struct stat status;
    if (::lstat(to.c_str(), &status) == 0) {
        return EEXIST;
    }
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int copy_object(const std::string& from, const std::string& to) {
    struct stat status;
    if (::lstat(to.c_str(), &status) == 0) {
        return EEXIST;
    }
    if (is_inside(to, from)) {
        return EINVAL;
    }
    // A folder of its own holds the copy in the making, so that the name is free.
    std::string making = join_path(get_folder(to), ".copying-XXXXXX");
    if (::mkdtemp(making.data()) == nullptr) {
        return errno;
    }
    const std::string copy = join_path(making, "copy");
    TREE_COPY tree;
    int code = tree.copy(from, copy);
    if (code == 0) {
        code = rename_without_replacing(copy, to);
    }
    if (code == 0) {
        ::rmdir(making.c_str());
        return tree.finish(to);
    }
    tree.remove(making);
    return code;
}

int move_object(const std::string& from, const std::string& to) {
    int code = rename_without_replacing(from, to);
    if (code == EXDEV) {
        code = copy_object(from, to);
        code = code == 0 ? remove_tree(from) : code;
    }
    return code;
}

}  // namespace KVCORE
