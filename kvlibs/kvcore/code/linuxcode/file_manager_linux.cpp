#include <limits.h>
#include <unistd.h>

#include "file_names.h"
#include "kvcore/file_manager.h"
#include "kvcore/fsref_item.h"
#include "kvcore/user_folders.h"

namespace KVCORE {
namespace {

// The folder that holds the program; empty if the system doesn't tell.
std::string find_application_folder() {
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0 || length == static_cast<ssize_t>(sizeof path)) {
        return std::string();
    }
    return get_folder(std::string(path, static_cast<std::size_t>(length)));
}

}  // namespace

bool FILE_MANAGER_LINUX::exists(const FILE_PATH& path) const {
    return path.is_root() || FSREF_ITEM::create(path);
}

FILE_ITEM::HANDLE FILE_MANAGER_LINUX::get_item_at(const FILE_PATH& path) const {
    return path.is_root() ? get_root_item() : FSREF_ITEM::create(path);
}

RESULT FILE_MANAGER_LINUX::do_initialisation() {
    RESULT result = FILE_MANAGER_BASE::do_initialisation();
    set_root_item(FSREF_ITEM::create(FILE_PATH::ROOT_PATH));
    result += RESULT(get_root_item() ? 0 : 1);
    result += register_special_items();
    return result;
}

RESULT FILE_MANAGER_LINUX::register_special_items() {
    const FILE_ITEM::HANDLE application = FSREF_ITEM::create(find_application_folder());
    if (application) {
        register_special_item(SPECIAL_ITEM_APPLICATION_ROOT, application);
        register_special_item(SPECIAL_ITEM_WORKING_ROOT, application);
    }
    const struct {
        const SYMBOL& symbol;
        USER_FOLDER folder;
    } folders[] = {
        {SPECIAL_ITEM_CACHE_ROOT, USER_FOLDER::CACHE},
        {SPECIAL_ITEM_DOCUMENTS_ROOT, USER_FOLDER::DOCUMENTS},
        {SPECIAL_ITEM_LOGS_ROOT, USER_FOLDER::LOGS},
        {SPECIAL_ITEM_PICTURES_ROOT, USER_FOLDER::PICTURES},
        {SPECIAL_ITEM_PREFERENCES_ROOT, USER_FOLDER::PREFERENCES},
        {SPECIAL_ITEM_SHARED_DOCUMENTS_ROOT, USER_FOLDER::SHARED_DOCUMENTS},
        {SPECIAL_ITEM_TEMPORARY_FILES_ROOT, USER_FOLDER::TEMPORARY},
    };
    for (const auto& entry : folders) {
        const std::string path = find_user_folder(entry.folder);
        const FILE_ITEM::HANDLE item = create_folders(path) ? FSREF_ITEM::create(path) : nullptr;
        if (item) {
            register_special_item(entry.symbol, item);
        }
    }
    return RESULT(application ? 0 : 1);
}

}  // namespace KVCORE
