// Listings of a folder, and what an entry of one says about itself.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>
#include <new>

#include "kvcore/text_field.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "user_folders.h"

namespace {

constexpr std::int32_t GROW_STEP = 50;
constexpr std::int32_t MAX_32 = std::numeric_limits<std::int32_t>::max();

// A growing block of entries. The block gets ahead of the capacity that is counted, so that the
// progress is told every GROW_STEP entries while most growths don't move it.
class LISTING {
public:
    LISTING(DM_FILE_INFO*& entries, std::int32_t& entry_count)
        : list(entries), count(entry_count), capacity(entry_count) {}

    // False if there is no memory for another entry.
    bool make_room(void (*progress)(void*), void* user) {
        if (count < capacity) {
            return true;
        }
        if (capacity > MAX_32 - GROW_STEP) {
            return false;
        }
        const std::size_t entries = 2 * static_cast<std::size_t>(capacity) + GROW_STEP;
        // An entry holds no pointer to itself, so the block may move.
        void* block = std::realloc(static_cast<void*>(list), entries * sizeof(DM_FILE_INFO));
        if (!block) {
            return false;
        }
        list = static_cast<DM_FILE_INFO*>(block);
        capacity += GROW_STEP;
        if (progress) {
            progress(user);
        }
        return true;
    }

    void add(const DISK_MANAGER& folder, const char* name, const struct stat& info) {
        auto* entry = new (static_cast<void*>(list + count))
            DM_FILE_INFO{folder, {}, {}, false, false, 0, 0, 0};
        KVCORE::copy_text_field(entry->name, name);
        entry->directory = S_ISDIR(info.st_mode);
        entry->hidden = name[0] == '.';
        if (!entry->directory) {
            entry->size = static_cast<std::int32_t>(std::min<off_t>(info.st_size, MAX_32));
        }
        entry->date = info.st_mtime;
        ++count;
    }

private:
    DM_FILE_INFO*& list;
    std::int32_t& count;
    std::int32_t capacity;
};

bool ends_in(const char* name, const char* suffix) {
    const std::size_t name_length = std::strlen(name);
    const std::size_t suffix_length = std::strlen(suffix);
    return suffix_length <= name_length &&
           std::strcmp(name + name_length - suffix_length, suffix) == 0;
}

bool is_self_or_parent(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// The entry's type as the folder itself tells it rules the entry out, without a look at the entry.
bool is_other_type(const dirent& entry, bool directories) {
    return entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK &&
           entry.d_type != (directories ? DT_DIR : DT_REG);
}

}  // namespace

bool DISK_MANAGER::get_dir_list(bool directories, bool show_hidden, bool append,
                                DM_FILE_INFO*& list, std::int32_t& count, const char* suffix,
                                void (*progress)(void*), void* user) const {
    if (!append) {
        list = nullptr;
        count = 0;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path), closedir);
    if (!folder) {
        return false;
    }
    LISTING listing(list, count);
    while (const dirent* entry = readdir(folder.get())) {
        const char* name = entry->d_name;
        if ((!show_hidden && name[0] == '.') || is_self_or_parent(name) ||
            is_other_type(*entry, directories) || (suffix && !ends_in(name, suffix))) {
            continue;
        }
        struct stat info;
        if (fstatat(dirfd(folder.get()), name, &info, 0) != 0 ||
            !(directories ? S_ISDIR(info.st_mode) : S_ISREG(info.st_mode))) {
            continue;
        }
        if (!listing.make_room(progress, user)) {
            break;
        }
        listing.add(*this, name, info);
    }
    return true;
}

void DISK_MANAGER::free_list(DM_FILE_INFO*& list) {
    std::free(static_cast<void*>(list));  // the entries own nothing
    list = nullptr;
}

int DISK_MANAGER::compare_filenames(const void* left, const void* right) {
    if (!left || !right) {
        return left ? -1 : (right ? 1 : 0);
    }
    return std::strncmp(static_cast<const DM_FILE_INFO*>(left)->name,
                        static_cast<const DM_FILE_INFO*>(right)->name, NAME_SIZE);
}

int DISK_MANAGER::sort_file_info_by_date(const void* left, const void* right) {
    if (!left || !right) {
        return left ? -1 : (right ? 1 : 0);
    }
    const std::int64_t a = static_cast<const DM_FILE_INFO*>(left)->date;
    const std::int64_t b = static_cast<const DM_FILE_INFO*>(right)->date;
    return (a > b) - (a < b);
}

void DISK_MANAGER::sort_file_list_by_name(DM_FILE_INFO* list, std::int32_t count) {
    if (list && count > 1) {
        std::qsort(static_cast<void*>(list), static_cast<std::size_t>(count), sizeof *list,
                   compare_filenames);
    }
}

void DISK_MANAGER::sort_list_by_date(DM_FILE_INFO* list, std::int32_t count) {
    if (list && count > 1) {
        std::qsort(static_cast<void*>(list), static_cast<std::size_t>(count), sizeof *list,
                   sort_file_info_by_date);
    }
}

bool DISK_MANAGER::get_special_os_folder_list(DM_FILE_INFO*& list, std::int32_t& count) {
    list = nullptr;
    count = 0;
    DISK_MANAGER documents;
    struct stat info;
    if (!documents.move_down(user_documents_folder().c_str(), false, true) ||
        std::strlen(documents.path) >= NAME_SIZE || stat(documents.path, &info) != 0) {
        return false;
    }
    DISK_MANAGER parent = documents;
    parent.move_up();
    LISTING listing(list, count);
    if (!listing.make_room(nullptr, nullptr)) {
        return false;
    }
    listing.add(parent, documents.path, info);
    KVCORE::copy_text_field(list->display_name, "Documents");
    list->hidden = false;  // the name is a path here
    return true;
}

const char* DM_FILE_INFO::get_size_string(std::int64_t size) {
    static thread_local char text[64];
    constexpr std::int64_t KILO = 1024;
    constexpr std::int64_t MEGA = KILO * KILO;
    constexpr std::int64_t GIGA = KILO * MEGA;
    const auto write = [size](std::int64_t unit, const char* unit_text) {
        std::snprintf(text, sizeof text, "%.1lf %s",
                      static_cast<double>(size) / static_cast<double>(unit), unit_text);
    };
    if (size > GIGA) {
        write(GIGA, "Gb");
    } else if (size > MEGA) {
        write(MEGA, "Mb");
    } else if (size > KILO) {
        write(KILO, "kb");
    } else {
        write(1, "");
    }
    return text;
}

const char* DM_FILE_INFO::get_date_string() const {
    static thread_local char text[64];
    // ctime_r writes at most 26 characters for a year of four digits and refuses or overruns
    // others, so only those are asked.
    constexpr std::int64_t LAST_SECOND = 253402300799 - 24 * 3600;
    const time_t when = date;
    if (date < -62135596800 || date > LAST_SECOND || !ctime_r(&when, text)) {
        text[0] = '\0';
    }
    text[std::strcspn(text, "\n")] = '\0';
    return text;
}
