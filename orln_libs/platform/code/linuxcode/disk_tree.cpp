// Whole folder trees: deleting and copying them. Both keep their own stack, so that neither the
// thread's stack nor the table of descriptors limits the depth.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "disk_path.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"

namespace {

constexpr int FOLDER_FLAGS = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Deletes a tree with a descriptor on the current folder only. Everything is done relative to that
// descriptor, so a folder that is replaced by a link meanwhile leads nowhere else.
class TREE_DELETER {
public:
    // False, with errno set, if the folder `name` in `parent` or anything in it is left.
    bool run(const DISK_MANAGER& parent, const char* name) {
        here.reset(open(parent.get_path(), O_PATH | FOLDER_FLAGS));
        struct stat info;
        if (!here.is_open() || fstat(here.get(), &info) != 0) {
            return false;
        }
        top = identity_of(info);
        if (!enter(name)) {
            return false;
        }
        while (!levels.empty()) {
            std::vector<std::string>& folders = levels.back().folders;
            if (!folders.empty()) {
                const std::string next = std::move(folders.back());
                folders.pop_back();
                enter(next.c_str());  // one that can't be entered is left, as its parents will be
            } else if (!leave()) {
                return false;
            }
        }
        return removed;
    }

private:
    struct LEVEL {
        std::string name;
        FILE_IDENTITY identity;
        std::vector<std::string> folders;  // those that are still to be deleted
    };

    // Goes into a folder, removes all files of it and notes its folders.
    bool enter(const char* name) {
        DESCRIPTOR child(openat(here.get(), name, O_RDONLY | FOLDER_FLAGS));
        if (!child.is_open() && errno == EACCES) {
            fchmodat(here.get(), name, S_IRWXU, AT_SYMLINK_NOFOLLOW);
            child.reset(openat(here.get(), name, O_RDONLY | FOLDER_FLAGS));
        }
        struct stat info;
        if (!child.is_open() || fstat(child.get(), &info) != 0) {
            return false;
        }
        if ((info.st_mode & S_IRWXU) != S_IRWXU) {
            fchmod(child.get(), (info.st_mode & 07777) | S_IRWXU);
        }
        LEVEL level{name, identity_of(info), {}};
        std::vector<std::string> files;
        if (!list(child.get(), level.folders, files)) {
            return false;
        }
        for (const std::string& file : files) {
            unlinkat(child.get(), file.c_str(), 0);  // what stays makes the folder stay
        }
        levels.push_back(std::move(level));
        here.reset(child.release());
        return true;
    }

    static bool list(int folder, std::vector<std::string>& folders,
                     std::vector<std::string>& files) {
        DESCRIPTOR again(openat(folder, ".", O_RDONLY | FOLDER_FLAGS));
        const std::unique_ptr<DIR, int (*)(DIR*)> entries(
            again.is_open() ? fdopendir(again.get()) : nullptr, closedir);
        if (!entries) {
            return false;
        }
        again.release();
        while (const dirent* entry = readdir(entries.get())) {
            const char* name = entry->d_name;
            if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) {
                continue;
            }
            struct stat info;
            const bool is_folder =
                entry->d_type == DT_DIR ||
                (entry->d_type == DT_UNKNOWN &&
                 fstatat(folder, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode));
            (is_folder ? folders : files).push_back(name);
        }
        return true;
    }

    // Goes to the parent and removes the folder just left. False if somebody has moved the tree:
    // then the parent is no longer the folder we came from, and nothing there is ours.
    bool leave() {
        DESCRIPTOR parent(openat(here.get(), "..", O_PATH | FOLDER_FLAGS));
        struct stat info;
        if (!parent.is_open() || fstat(parent.get(), &info) != 0) {
            return false;
        }
        const std::string name = std::move(levels.back().name);
        levels.pop_back();
        if (identity_of(info) != (levels.empty() ? top : levels.back().identity)) {
            errno = ESTALE;
            return false;
        }
        here.reset(parent.release());
        removed = unlinkat(here.get(), name.c_str(), AT_REMOVEDIR) == 0;
        return true;
    }

    DESCRIPTOR here;
    FILE_IDENTITY top{};
    std::vector<LEVEL> levels;
    bool removed = false;  // the folder left last; the outermost at the end
};

using LIST = std::unique_ptr<DM_FILE_INFO, void (*)(DM_FILE_INFO*)>;

// The entries of a folder, hidden ones too.
bool list_all(const DISK_MANAGER& folder, bool directories, LIST& list, std::int32_t& count) {
    DM_FILE_INFO* entries = nullptr;
    const bool listed = folder.get_dir_list(directories, true, false, entries, count);
    list.reset(entries);
    return listed;
}

class TREE_COPIER {
public:
    bool run(const DISK_MANAGER& source, const DISK_MANAGER& target) {
        for (DISK_MANAGER cursor = target;;) {
            FILE_IDENTITY identity;
            if (!identify(cursor, identity)) {
                return false;
            }
            around_target.push_back(identity);
            if (!cursor.move_up()) {
                break;
            }
        }
        if (!enter(source, target)) {
            return false;
        }
        while (!levels.empty()) {
            LEVEL& level = levels.back();
            if (level.next == level.folders.size()) {
                levels.pop_back();
                continue;
            }
            const std::string name = level.folders[level.next++];
            DISK_MANAGER from = level.source;
            DISK_MANAGER to = level.target;
            if (!from.move_down(name.c_str()) || !to.move_down(name.c_str(), true) ||
                !enter(from, to)) {
                return false;
            }
        }
        return true;
    }

private:
    struct LEVEL {
        DISK_MANAGER source;
        DISK_MANAGER target;
        FILE_IDENTITY identity;  // of the source
        std::vector<std::string> folders;
        std::size_t next;
    };

    static bool identify(const DISK_MANAGER& folder, FILE_IDENTITY& identity) {
        struct stat info;
        if (stat(folder.get_path(), &info) != 0) {
            return false;
        }
        identity = identity_of(info);
        return true;
    }

    // Copies the files of a folder and notes its folders.
    bool enter(const DISK_MANAGER& source, const DISK_MANAGER& target) {
        FILE_IDENTITY identity;
        if (!identify(source, identity)) {
            return false;
        }
        const auto is_outer = [&identity](const LEVEL& level) {
            return level.identity == identity;
        };
        if (std::any_of(levels.begin(), levels.end(), is_outer) ||
            std::find(around_target.begin(), around_target.end(), identity) !=
                around_target.end()) {
            errno = ELOOP;  // it would never end
            return false;
        }
        LIST list(nullptr, [](DM_FILE_INFO* entries) { DISK_MANAGER::free_list(entries); });
        std::int32_t count = 0;
        if (!list_all(source, false, list, count)) {
            return false;
        }
        for (std::int32_t i = 0; i < count; ++i) {
            if (!source.copy(list.get()[i].name, target)) {
                return false;
            }
        }
        if (!list_all(source, true, list, count)) {
            return false;
        }
        LEVEL level{source, target, identity, {}, 0};
        for (std::int32_t i = 0; i < count; ++i) {
            level.folders.emplace_back(list.get()[i].name);
        }
        levels.push_back(std::move(level));
        return true;
    }

    std::vector<LEVEL> levels;
    std::vector<FILE_IDENTITY> around_target;  // the target and all folders that it lies in
};

}  // namespace

int DISK_MANAGER::delete_tree(const DISK_MANAGER& cursor, const char* name) {
    FULL_PATH path;
    struct stat info;
    if (!path.join(cursor, name) || lstat(path.get(), &info) != 0) {
        return 0;
    }
    if (S_ISLNK(info.st_mode)) {
        return unlink(path.get());
    }
    if (!S_ISDIR(info.st_mode)) {
        return 0;
    }
    return TREE_DELETER().run(cursor, name) ? 0 : -1;
}

bool DISK_MANAGER::copy_tree(const DISK_MANAGER& source, const DISK_MANAGER& target) {
    return TREE_COPIER().run(source, target);
}
