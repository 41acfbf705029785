#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "file_names.h"
#include "file_operations.h"
#include "fsref_support.h"
#include "kvcore/fsref_item.h"
#include "trash.h"

namespace KVCORE {

namespace {

int make_file(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return descriptor >= 0 && ::close(descriptor) == 0 ? 0 : errno;
}

// The name on disk after a change of name or type. Empty if there can be no such name.
std::string make_changed_name(const FSREF_ITEM& item, const std::string& own_path,
                              const FILE_NAME& name, const FILE_TYPE& type) {
    const bool same_name = name.is_empty();
    const bool same_type = type == FILE_TYPE_UNCHANGED;
    if (same_name && same_type) {
        // Not by way of text, so that any bytes come through.
        return std::string(get_last_component(own_path));
    }
    // The whole text of a container is its name.
    const FILE_TYPE own_type = item.is_container() ? FILE_TYPE_CONTAINER : item.get_type();
    return make_file_name(same_name ? item.get_name() : name, same_type ? own_type : type);
}

}  // namespace

FILE_ITEM::HANDLE FSREF_ITEM::create_item(const FILE_NAME& name, const FILE_TYPE& type) const {
    std::string folder;
    struct stat status;
    const std::string wanted = make_file_name(name, type);
    if (wanted.empty() || !query(folder, status)) {
        return nullptr;
    }
    const std::string path = join_path(folder, wanted);
    const int code = type == FILE_TYPE_CONTAINER ? (::mkdir(path.c_str(), 0777) == 0 ? 0 : errno)
                                                 : make_file(path);
    if (code != EEXIST && check_file_code(code) != 0) {
        return nullptr;
    }
    FILE_REFERENCE reference;
    if (FILE_REFERENCE::create(path, false, reference) != 0) {
        return nullptr;
    }
    return HANDLE(new FSREF_ITEM(std::move(reference)));
}

RESULT FSREF_ITEM::rename_as(const FILE_NAME& name, const FILE_TYPE& type) {
    std::string path;
    struct stat status;
    int code = reference_.resolve(path, status);
    if (code == 0) {
        const std::string changed = make_changed_name(*this, path, name, type);
        const std::string new_path = join_path(get_folder(path), changed);
        code = changed.empty() ? EINVAL : rename_without_replacing(path, new_path);
        if (code == 0) {
            reference_.set_path(new_path);
        }
    }
    return check_file_code(code);
}

int FSREF_ITEM::make_target_path(const FILE_NAME& name, const FILE_TYPE& type, const HANDLE& target,
                                 const std::string& own_path, std::string& path) const {
    const auto* const folder = dynamic_cast<const FSREF_ITEM*>(target.get());
    if (!folder) {
        return WRONG_TARGET;
    }
    std::string folder_path;
    struct stat status;
    const std::string changed = make_changed_name(*this, own_path, name, type);
    if (!folder->query(folder_path, status)) {
        return ENOENT;
    }
    if (!S_ISDIR(status.st_mode) || changed.empty()) {
        return S_ISDIR(status.st_mode) ? EINVAL : ENOTDIR;
    }
    path = join_path(folder_path, changed);
    return 0;
}

RESULT FSREF_ITEM::move_to(const FILE_NAME& name, const FILE_TYPE& type, const HANDLE& target) {
    std::string path;
    std::string new_path;
    struct stat status;
    int code = reference_.resolve(path, status);
    if (code == 0) {
        code = make_target_path(name, type, target, path, new_path);
    }
    if (code == 0) {
        code = move_object(path, new_path);
    }
    if (code == 0 && FILE_REFERENCE::create(new_path, false, reference_) != 0) {
        reference_.set_path(new_path);
    }
    return check_file_code(code);
}

FILE_ITEM::HANDLE FSREF_ITEM::copy_to(const FILE_NAME& name, const FILE_TYPE& type,
                                      const HANDLE& target) {
    std::string path;
    std::string new_path;
    struct stat status;
    int code = reference_.resolve(path, status);
    if (code == 0) {
        code = make_target_path(name, type, target, path, new_path);
    }
    if (code == 0) {
        code = copy_object(path, new_path);
    }
    FILE_REFERENCE reference;
    if (check_file_code(code) != 0 || FILE_REFERENCE::create(new_path, false, reference) != 0) {
        return nullptr;
    }
    return HANDLE(new FSREF_ITEM(std::move(reference)));
}

RESULT FSREF_ITEM::remove(FILE_ITEMS_FLAGS flags) {
    std::string path;
    struct stat status;
    RESULT result = check_file_code(reference_.resolve(path, status));
    if (result == 0 && (flags & FILE_ITEMS_KEEP) == 0 && is_root()) {
        // Nothing is emptied that can't be removed after that.
        result = check_file_code(EBUSY);
    }
    if (result != 0) {
        return result;
    }
    const bool is_link = S_ISLNK(status.st_mode);
    if ((flags & FILE_ITEMS_UNLOCK) != 0 && !is_link) {
        result = set_permissions(FILE_PERMISSIONS());
    }
    const bool is_folder = S_ISDIR(status.st_mode);
    if (is_folder && (flags & FILE_ITEMS_DESCEND) != 0 &&
        (flags & (FILE_ITEMS_KEEP | FILE_ITEMS_TRASH)) == 0) {
        result = remove_content(flags);
    }
    if (result != 0 || (flags & FILE_ITEMS_KEEP) != 0) {
        return result;
    }
    if ((flags & FILE_ITEMS_UNLOCK) == 0 && is_locked(status)) {
        return check_file_code(EPERM);
    }
    if ((flags & FILE_ITEMS_TRASH) != 0) {
        std::string trashed;
        const int code = move_to_trash(path, status, trashed);
        if (code == 0) {
            reference_.set_path(trashed);
        }
        return check_file_code(code);
    }
    const int removed = is_folder ? ::rmdir(path.c_str()) : ::unlink(path.c_str());
    return check_file_code(removed == 0 ? 0 : errno);
}

}  // namespace KVCORE
