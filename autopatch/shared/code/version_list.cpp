#include "autopatch/version_list.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "autopatch/add_on.h"
#include "modules/frameworks/trace_output.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"

namespace {

// The decimal number at the start of `text`, 0 without one, at most 32 bits.
std::uint32_t read_number(const char* text) {
    const unsigned long long value = std::strtoull(text, nullptr, 10);
    return static_cast<std::uint32_t>(
        std::min<unsigned long long>(value, std::numeric_limits<std::uint32_t>::max()));
}

std::uint32_t version_number(const std::string& name) {
    return read_number(name.c_str() + name.find('_') + 1);
}

bool goto_client_folder(DISK_MANAGER& disk, bool create) {
    return disk.goto_path(FOLDER_ADD_ONS) && disk.move_down(CLIENT_FOLDER, create);
}

std::vector<std::string> list_folders(const DISK_MANAGER& disk) {
    std::vector<std::string> names;
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    disk.get_dir_list(true, true, false, list, count);
    for (std::int32_t i = 0; i < count; ++i) {
        names.emplace_back(list[i].name);
    }
    DISK_MANAGER::free_list(list);
    return names;
}

}  // namespace

bool split_filename(const char* name, char* prefix, std::uint32_t& number) {
    number = 0;
    if (prefix) {
        prefix[0] = '\0';
    }
    const char* const separator = name ? std::strchr(name, '_') : nullptr;
    if (!separator || !prefix) {
        return false;
    }
    const auto length = static_cast<std::size_t>(separator - name);
    std::memcpy(prefix, name, length);
    prefix[length] = '\0';
    number = read_number(separator + 1);
    return true;
}

int path_sort_func(const void* a, const void* b) {
    if (!a) {
        return 1;
    }
    if (!b) {
        return -1;
    }
    const char* const left = *static_cast<const char* const*>(a);
    const char* const right = *static_cast<const char* const*>(b);
    const char* const left_number = left ? std::strchr(left, '_') : nullptr;
    const char* const right_number = right ? std::strchr(right, '_') : nullptr;
    if (!left_number || !right_number) {
        return 0;
    }
    return static_cast<std::int16_t>(read_number(left_number + 1) - read_number(right_number + 1));
}

std::vector<std::string> select_versions_to_delete(
    std::vector<std::string> names, const char* current,
    const std::function<bool(const std::string& name)>& is_complete) {
    std::erase_if(names, [](const std::string& name) { return name.find('_') == name.npos; });
    constexpr std::size_t KEPT = 2;
    if (names.size() <= KEPT) {
        return {};
    }
    // By the whole number: the narrowed difference of path_sort_func() is no order for versions
    // that are far apart, and a wrong order here would delete the newest client.
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const std::uint32_t left = version_number(a);
        const std::uint32_t right = version_number(b);
        return left != right ? left < right : a < b;
    });
    const auto newest_complete = std::find_if(names.rbegin(), names.rend(), is_complete);
    const std::string kept = newest_complete != names.rend() ? *newest_complete : std::string();
    names.resize(names.size() - KEPT);
    std::erase_if(names, [&](const std::string& name) {
        return name == kept || (current && name == current);
    });
    return names;
}

bool delete_version(const char* name) {
    DISK_MANAGER client;
    return is_plain_folder_name(name) && goto_client_folder(client, false) &&
           DISK_MANAGER::delete_tree(client, name) == 0;
}

void delete_staging_folders() {
    DISK_MANAGER disk;
    if (!disk.goto_path(FOLDER_ADD_ONS)) {
        return;
    }
    DISK_MANAGER::delete_tree(disk, STAGING_FOLDER);
    if (disk.move_down(CLIENT_FOLDER)) {
        DISK_MANAGER::delete_tree(disk, STAGING_FOLDER);
    }
}

void clean_version_list(const char* current) {
    DISK_MANAGER client;
    if (!goto_client_folder(client, true)) {
        TRACE_OUTPUT::output_warning("The folder of the client versions can't be made");
        return;
    }
    const auto is_complete = [&client](const std::string& name) {
        DISK_MANAGER version = client;
        return version.move_down(name.c_str()) &&
               DISK_MANAGER::file_exists(version, CLIENT_CHECK_FILE);
    };
    for (const std::string& name :
         select_versions_to_delete(list_folders(client), current, is_complete)) {
        TRACE_OUTPUT::output_trace("Deleting the old version %s", name.c_str());
        if (!delete_version(name.c_str())) {
            TRACE_OUTPUT::output_warning("The old version %s can't be deleted", name.c_str());
        }
    }
}
