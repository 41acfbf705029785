#include "autopatch/add_ons_manager.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "autopatch/autopatch_types.h"
#include "catalogue_names.h"
#include "durable_file.h"
#include "modules/frameworks/trace_output.h"
#include "modules/gui/skin_info.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "platform/network_message.h"

namespace {

// Formats above this one have a viewed list.
constexpr std::uint16_t LAST_FORMAT_WITHOUT_VIEWED = 1099;

void delete_crc_info(void* info) {
    delete static_cast<CRC_INFO*>(info);
}

bool contains_path(const PTRARRAY& list, const char* path) {
    for (std::int32_t i = 0; i < list.get_count(); ++i) {
        if (std::strcmp(list.get<ADD_ON>(i)->path, path) == 0) {
            return true;
        }
    }
    return false;
}

// Adds a record to a list that owns its entries.
void add_owned(PTRARRAY& list, std::unique_ptr<ADD_ON> add_on) {
    if (list.add(add_on.get())) {
        add_on.release();
    }
}

void remove_pointer(PTRARRAY& list, const void* entry) {
    for (std::int32_t i = list.get_count(); i-- > 0;) {
        if (list[i] == entry) {
            list.remove(i);
        }
    }
}

unsigned char put_list(const PTRARRAY& list, DATA_DEVICE& device) {
    if (!(device << static_cast<std::uint32_t>(list.get_count()))) {
        return 0;
    }
    for (std::int32_t i = 0; i < list.get_count(); ++i) {
        if (!list.get<ADD_ON>(i)->put_to_data_device(PROTOCOL_VERSION, device)) {
            return 0;
        }
    }
    return 1;
}

// A loss of power can leave such a file, in which not even the byte order stands.
bool is_empty_file(const DISK_MANAGER& disk, const char* name) {
    DATA_FILE* file = disk.open_data_file(name, FILE_READ, BYTEORDER_LITTLE);
    const bool empty = file && file->get_size() == 0;
    DISK_MANAGER::close(file);
    return empty;
}

bool is_skin_version_installed(DISK_MANAGER& disk, std::uint16_t version) {
    CONFIG_FILE config("skin.cfg", true, FOLDER_BASE, false);
    std::int16_t height = 0;
    std::int16_t width = 0;
    std::uint16_t internal_version = 0;
    return get_skin_info(config, disk, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, height,
                         width, internal_version) &&
           internal_version == version;
}

bool is_misc_version_installed(DISK_MANAGER& disk, std::uint16_t version) {
    CONFIG_FILE config("defaults.cfg", true, FOLDER_BASE, false);
    std::uint32_t stored = std::uint32_t{version} + 1;
    return config.read(disk, "version", stored) && stored == version;
}

bool is_version_installed(const ADD_ON& add_on) {
    DISK_MANAGER disk;
    if (!disk.goto_path(FOLDER_ADD_ONS) || !add_on.move_to_path(disk, false)) {
        return false;
    }
    switch (add_on.type) {
        case ADD_ON::ADD_ON_APPLICATION:
            return true;  // the folder is enough: its name holds the version
        case ADD_ON::ADD_ON_SKIN:
            return is_skin_version_installed(disk, add_on.version);
        case ADD_ON::ADD_ON_MISC:
            return is_misc_version_installed(disk, add_on.version);
    }
    return false;
}

}  // namespace

ADD_ONS_MANAGER* ADD_ONS_MANAGER::instance = nullptr;

ADD_ONS_MANAGER::ADD_ONS_MANAGER()
    : available(10, 0, ADD_ON::delete_add_on_callback),
      viewed(10, 0, ADD_ON::delete_add_on_callback),
      crc_infos(10, 0, delete_crc_info) {
}

ADD_ONS_MANAGER::~ADD_ONS_MANAGER() {
    clear();
}

void ADD_ONS_MANAGER::startup(unsigned char verify) {
    if (!instance) {
        instance = new ADD_ONS_MANAGER;
        instance->verify_on_save = verify != 0;
        instance->initialise();
    }
}

void ADD_ONS_MANAGER::shutdown() {
    delete instance;
    instance = nullptr;
}

ADD_ONS_MANAGER* ADD_ONS_MANAGER::get_instance() {
    return instance;
}

// --- The stored catalogue ---

void ADD_ONS_MANAGER::initialise() {
    if (initialised) {
        return;
    }
    initialised = true;
    clear();
    DISK_MANAGER disk;
    if (disk.goto_path(FOLDER_ADD_ONS) && DISK_MANAGER::file_exists(disk, CATALOGUE_FILE)) {
        DATA_FILE* file = disk.open_data_file(CATALOGUE_FILE, FILE_READ, BYTEORDER_STORED);
        if (!file && !is_empty_file(disk, CATALOGUE_FILE)) {
            // Not ours to replace by an empty one just because it can't be read now.
            TRACE_OUTPUT::output_warning("The catalogue can't be opened.");
            return;
        }
        if (file) {
            get_from_data_device(*file);
        }
        DISK_MANAGER::close(file);
    }
    save();
}

void ADD_ONS_MANAGER::get_from_data_device(const DATA_DEVICE& device) {
    std::uint16_t format = 0;
    std::uint32_t count = 0;
    if (!(device >> format) || !(device >> count)) {
        return;
    }
    for (; count != 0; --count) {
        ADD_ON record;
        if (!record.get_from_data_device(format, device)) {
            break;
        }
        set_add_on(&record, 1);
    }
    if (format <= LAST_FORMAT_WITHOUT_VIEWED || !(device >> count)) {
        return;
    }
    // A bad record is left out and the next one tried, as long as there is anything to read.
    for (; count != 0 && device.get_bytes_left() > 0; --count) {
        auto record = std::make_unique<ADD_ON>();
        if (record->get_from_data_device(format, device)) {
            add_owned(viewed, std::move(record));
        }
    }
}

unsigned char ADD_ONS_MANAGER::put_to_data_device(DATA_DEVICE& device) const {
    return (device << PROTOCOL_VERSION) && put_list(installed, device) && put_list(viewed, device);
}

bool ADD_ONS_MANAGER::save() {
    if (verify_on_save) {
        for (std::int32_t i = 0; i < installed.get_count(); ++i) {
            verify_installed_add_on_version(*installed.get<ADD_ON>(i));
        }
    }
    DISK_MANAGER disk;
    if (!disk.goto_path(FOLDER_ADD_ONS)) {
        TRACE_OUTPUT::output_warning("The add-ons folder can't be reached, catalogue not saved.");
        return false;
    }
    DATA_FILE* file = disk.open_data_file(CATALOGUE_FILE_BESIDE, FILE_WRITE, BYTEORDER_STORED);
    bool done = false;
    if (file) {
        done = put_to_data_device(*file) != 0;
        done = file->close() && done;
        DISK_MANAGER::close(file);
        done = done && flush_file_to_disk(disk, CATALOGUE_FILE_BESIDE) &&
               disk.move(CATALOGUE_FILE_BESIDE, disk, CATALOGUE_FILE);
        if (done) {
            flush_folder_to_disk(disk);
        } else {
            disk.remove(CATALOGUE_FILE_BESIDE, true);
        }
    }
    if (!done) {
        TRACE_OUTPUT::output_warning("Saving the catalogue failed, the former one stays.");
    }
    return done;
}

void ADD_ONS_MANAGER::verify_installed_add_on_version(ADD_ON& add_on) {
    if (add_on.get_child_count() == 0) {
        if (!is_version_installed(add_on)) {
            add_on.mark_for_redownload();
        }
        return;
    }
    for (std::int32_t i = 0; i < add_on.get_child_count(); ++i) {
        verify_installed_add_on_version(*add_on.get_child(i));
    }
}

// --- The lists ---

bool ADD_ONS_MANAGER::set_available(std::uint16_t format, NETWORK_MESSAGE& message) {
    clear_available();
    std::uint32_t count = 0;
    if (!(message >> count) || count > MAX_AVAILABLE) {
        return false;
    }
    for (; count != 0; --count) {
        auto record = std::make_unique<ADD_ON>();
        if (!record->get_from_data_device(format, message)) {
            clear_available();
            return false;
        }
        const MUTEX_LOCKER lock(available_mutex);
        add_owned(available, std::move(record));
    }
    return true;
}

void ADD_ONS_MANAGER::set_add_on(ADD_ON* add_on, unsigned char bulk) {
    if (!add_on) {
        return;
    }
    const ADD_ON* top = add_on->get_top_level_parent();
    ADD_ON* existing = get_add_on(top->path, 0);
    if (!existing || !(*existing == *top) || !existing->is_newer_version(*top)) {
        // Copied before anything is removed: the caller's record may be what has to go.
        auto stored = std::make_unique<ADD_ON>(top);
        if (existing) {
            remove_add_on(existing, 0, 1);
        }
        add_owned(installed, std::move(stored));
    }
    if (!bulk) {
        save();
    }
}

bool ADD_ONS_MANAGER::is_installed_record(const ADD_ON& add_on) const {
    return installed.find(add_on.get_top_level_parent()) >= 0;
}

void ADD_ONS_MANAGER::forget(const ADD_ON& add_on) {
    remove_pointer(installed, &add_on);
    remove_pointer(mandatory, &add_on);
    for (std::int32_t i = crc_infos.get_count(); i-- > 0;) {
        if (crc_infos.get<CRC_INFO>(i)->add_on == &add_on) {
            crc_infos.remove(i);
        }
    }
    for (std::int32_t i = 0; i < add_on.get_child_count(); ++i) {
        forget(*add_on.get_child(i));
    }
}

void ADD_ONS_MANAGER::delete_add_on_files(const ADD_ON& add_on) {
    DISK_MANAGER disk;
    if (!disk.goto_path(FOLDER_ADD_ONS) || !is_plain_folder_name(add_on.path)) {
        return;
    }
    if (add_on.type == ADD_ON::ADD_ON_APPLICATION) {
        // The version folders of the client are the patch engine's to prune.
        if (std::strcmp(add_on.path, "app") != 0) {
            return;
        }
    } else if (!add_on.move_to_parent_path(disk, false)) {
        return;
    }
    DISK_MANAGER::delete_tree(disk, add_on.path);
}

void ADD_ONS_MANAGER::remove_add_on(ADD_ON* add_on, unsigned char delete_files,
                                    unsigned char no_save) {
    if (!add_on) {
        return;
    }
    if (delete_files) {
        delete_add_on_files(*add_on);
    }
    const std::string path = add_on->path;  // outlives the record
    if (add_on->parent && is_installed_record(*add_on)) {
        PTRARRAY& siblings = add_on->parent->children;
        forget(*add_on);
        siblings.remove(siblings.find(add_on));
    }
    for (std::int32_t i = installed.get_count(); i-- > 0;) {
        ADD_ON* record = installed.get<ADD_ON>(i);
        if (path != record->path) {
            continue;
        }
        if (record->parent) {
            installed.remove(i);
        } else {
            forget(*record);
            delete record;
            i = installed.get_count();  // its descendants may have left the list as well
        }
    }
    if (!no_save) {
        save();
    }
}

ADD_ON* ADD_ONS_MANAGER::get_add_on(const char* name, unsigned char by_title) {
    if (!name) {
        return nullptr;
    }
    const auto matches = [name, by_title](const ADD_ON& add_on) {
        return std::strcmp(name, by_title ? add_on.title : add_on.path) == 0;
    };
    for (std::int32_t i = 0; i < installed.get_count(); ++i) {
        ADD_ON* record = installed.get<ADD_ON>(i);
        if (matches(*record)) {
            return record;
        }
        for (std::int32_t j = 0; j < record->get_child_count(); ++j) {
            if (matches(*record->get_child(j))) {
                return record->get_child(j);
            }
        }
    }
    return nullptr;
}

bool ADD_ONS_MANAGER::new_add_on(ADD_ON* add_on) {
    return add_on && !contains_path(viewed, add_on->path) &&
           !contains_path(installed, add_on->path);
}

bool ADD_ONS_MANAGER::unviewed_available_add_ons() {
    for (std::int32_t i = 0; i < available.get_count(); ++i) {
        if (!contains_path(viewed, available.get<ADD_ON>(i)->path)) {
            return true;
        }
    }
    return false;
}

void ADD_ONS_MANAGER::set_all_viewed() {
    clear_viewed();
    for (std::int32_t i = 0; i < available.get_count(); ++i) {
        add_owned(viewed, std::make_unique<ADD_ON>(available.get<ADD_ON>(i)));
    }
    save();
}

std::uint32_t ADD_ONS_MANAGER::get_crc(ADD_ON* add_on, signed char platform) {
    for (std::int32_t i = 0; i < crc_infos.get_count(); ++i) {
        const CRC_INFO& info = *crc_infos.get<CRC_INFO>(i);
        if (info.add_on == add_on &&
            (info.platform == CRC_INFO::PLATFORM_ANY || info.platform == platform)) {
            return info.crc;
        }
    }
    return 0;
}

std::uint32_t ADD_ONS_MANAGER::get_archive_size(DISK_MANAGER& disk) {
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    disk.get_dir_list(false, true, false, list, count, "tar.gz");
    std::int32_t greatest = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        greatest = list[i].size > greatest ? list[i].size : greatest;
    }
    DISK_MANAGER::free_list(list);
    return static_cast<std::uint32_t>(greatest);
}

void ADD_ONS_MANAGER::clear_available() {
    const MUTEX_LOCKER lock(available_mutex);
    available.clear();
    mandatory.clear();
}

void ADD_ONS_MANAGER::clear_installed() {
    mandatory.clear();
    crc_infos.clear();
    std::vector<ADD_ON*> owned;
    for (std::int32_t i = 0; i < installed.get_count(); ++i) {
        ADD_ON* record = installed.get<ADD_ON>(i);
        if (!record->parent) {
            owned.push_back(record);
        }
    }
    installed.clear();
    for (ADD_ON* record : owned) {
        delete record;
    }
}

void ADD_ONS_MANAGER::clear_viewed() {
    viewed.clear();
}

void ADD_ONS_MANAGER::clear_mandatory() {
    mandatory.clear();
}

void ADD_ONS_MANAGER::clear() {
    clear_available();
    clear_mandatory();
    clear_installed();
    clear_viewed();
}
