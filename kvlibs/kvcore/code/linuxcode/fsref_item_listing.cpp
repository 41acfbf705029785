#include <sys/stat.h>

#include <vector>

#include "file_names.h"
#include "file_operations.h"
#include "fsref_support.h"
#include "kvcore/fsref_item.h"

namespace KVCORE {
namespace {

// What a listing takes.
class LISTING_FILTER {
public:
    LISTING_FILTER(const FILE_NAME& name, const FILE_TYPE& type)
        : name_(name),
          type_(type),
          wants_containers_(type == FILE_TYPE_CONTAINER || type == FILE_TYPE_ANY),
          wants_every_file_(type == FILE_TYPE_ANY || type == FILE_TYPE_ANY_FILE),
          filters_names_(!(name == FILE_NAME_ANY)) {}

    bool takes(const std::string& file_name, bool is_container) const {
        if (is_container && !wants_containers_) {
            return false;
        }
        if (wants_every_file_ && !filters_names_) {
            return true;
        }
        const FILE_PATH path(from_file_text(file_name),
                             is_container ? FILE_PATH::NAMES_CONTAINER : FILE_PATH::NAMES_FILE);
        const bool right_type =
            is_container || wants_every_file_ || path.get_type_text() == type_.get_string();
        return right_type && (!filters_names_ || path.get_name() == name_);
    }

private:
    const FILE_NAME& name_;
    const FILE_TYPE& type_;
    const bool wants_containers_;
    const bool wants_every_file_;
    const bool filters_names_;
};

// What an entry is, an alias counting as what it leads to. `follow` takes whether it leads
// somewhere. False if there is nothing any more.
bool look_at(const std::string& path, bool& follow, bool& is_container) {
    struct stat status;
    if (follow && ::stat(path.c_str(), &status) != 0) {
        follow = false;
    }
    if (!follow && ::lstat(path.c_str(), &status) != 0) {
        return false;
    }
    is_container = S_ISDIR(status.st_mode);
    return true;
}

}  // namespace

RESULT FSREF_ITEM::list(const FILE_NAME& name, const FILE_TYPE& type,
                        REFERENCE_COUNTER<FILE_ITEMS>& items, FILE_ITEMS_FLAGS flags) const {
    std::string folder;
    struct stat status;
    int code = reference_.resolve(folder, status);
    std::vector<std::string> names;
    if (code == 0) {
        code = list_folder(folder, names);
    }
    if (!names.empty() && !items) {
        items.reset(new FILE_ITEMS);
    }
    const LISTING_FILTER filter(name, type);
    for (const std::string& entry : names) {
        const std::string path = join_path(folder, entry);
        bool follow = (flags & FILE_ITEMS_ALIASES) == 0;
        bool container = false;
        FILE_REFERENCE reference;
        if (look_at(path, follow, container) && filter.takes(entry, container) &&
            FILE_REFERENCE::create(path, follow, reference) == 0) {
            items->add_item(HANDLE(new FSREF_ITEM(std::move(reference))), container);
        }
    }
    return check_file_code(code);
}

}  // namespace KVCORE
