// From received bytes to an installed add-on: the checkpoint of the part file, and the check, the
// unpacking and the installation of a finished archive.
#include <memory>
#include <new>
#include <string>

#include "autopatch/add_on.h"
#include "autopatch/add_ons_manager.h"
#include "autopatch/autopatch_system.h"
#include "autopatch/crc_info.h"
#include "autopatch/version_list.h"
#include "durable_file.h"
#include "modules/frameworks/trace_output.h"
#include "modules/misc/gzip_tools.h"
#include "modules/misc/tar_file.h"
#include "platform/data_file.h"

namespace {

constexpr char TAR_NAME[] = "update.tar";
constexpr std::int32_t COPY_PIECE = 0x100000;

// The file without which an archive holds no add-on of that type.
const char* check_file(ADD_ON::ADD_ON_TYPE type) {
    switch (type) {
        case ADD_ON::ADD_ON_APPLICATION:
            return CLIENT_CHECK_FILE;
        case ADD_ON::ADD_ON_SKIN:
            return "skin.cfg";
        default:
            return "defaults.cfg";
    }
}

// Moves `parent` to the folder that holds, or is to hold, the folder of `add_on`, and `staging`'s
// parent to where its archive is unpacked. False if there is no such place.
bool goto_install_folders(const ADD_ON& add_on, DISK_MANAGER& parent, DISK_MANAGER& staging) {
    if (!is_plain_folder_name(add_on.get_folder_name().c_str()) ||
        !parent.goto_path(FOLDER_ADD_ONS)) {
        return false;
    }
    staging = parent;
    if (!add_on.move_to_parent_path(parent, true)) {
        return false;
    }
    if (add_on.type == ADD_ON::ADD_ON_APPLICATION) {
        staging = parent;
        // A build tree in place of an installation.
        return !DISK_MANAGER(parent).move_down("app");
    }
    return true;
}

}  // namespace

// --- Checkpoint ---

bool AUTOPATCH_SYSTEM::write_part_file(std::uint32_t crc) {
    if (!download_file) {
        return false;
    }
    const bool written_here = part_file != nullptr;
    const bool stored = !written_here || part_file->close();
    DISK_MANAGER::close(part_file);
    DISK_MANAGER downloads;
    if (!goto_downloads(downloads, true)) {
        record_error(AUTOPATCH_ERROR_EXTRACT);
        return false;
    }
    const std::string part_name = archive_name(*current_add_on, PART_ENDING);
    bool appended = false;
    if (!stored) {
        TRACE_OUTPUT::output_warning("The download \"%s\" can't be written", part_name.c_str());
        record_error(AUTOPATCH_ERROR_EXTRACT);
    } else if ((written_here ? part_crc : get_crc_from_file(downloads, part_name.c_str())) == crc) {
        appended = append_part_file(downloads, part_name);
    } else {
        TRACE_OUTPUT::output_trace(
            "The download \"%s\" has a wrong checksum and is asked for again", part_name.c_str());
    }
    downloads.remove(part_name.c_str(), true);
    return appended;
}

// In pieces, so that the memory doesn't depend on how far checkpoints lie apart.
bool AUTOPATCH_SYSTEM::append_part_file(DISK_MANAGER& downloads, const std::string& part_name) {
    DATA_FILE* source = downloads.open_data_file(part_name.c_str(), FILE_READ, BYTEORDER_LITTLE);
    const std::unique_ptr<unsigned char[]> piece(new (std::nothrow) unsigned char[COPY_PIECE]);
    bool good = source && piece;
    while (good && source->get_bytes_left() > 0) {
        const std::int32_t size = source->read_data_block(piece.get(), COPY_PIECE);
        good = size > 0 && download_file->write_data_block(piece.get(), size) == size;
    }
    // What is counted as held from now on must have reached the file.
    good = good && download_file->flush_cache();
    DISK_MANAGER::close(source);
    if (!good) {
        TRACE_OUTPUT::output_warning("The download \"%s\" can't be appended to its archive",
                                     part_name.c_str());
        record_error(AUTOPATCH_ERROR_EXTRACT);
    }
    return good;
}

// --- Install ---

void AUTOPATCH_SYSTEM::fail_install(AUTOPATCH_ERROR_CODE code, const std::string& reason) {
    TRACE_OUTPUT::output_warning("The add-on \"%s\" can't be installed: %s", current_add_on->path,
                                 reason.c_str());
    record_error(code);
}

// A step that the exit flag has ended didn't fail.
void AUTOPATCH_SYSTEM::fail_unpacking(AUTOPATCH_ERROR_CODE code, const std::string& reason) {
    if (is_exit_requested()) {
        TRACE_OUTPUT::output_trace("The installation of \"%s\" was given up", current_add_on->path);
    } else {
        fail_install(code, reason);
    }
}

bool AUTOPATCH_SYSTEM::unpack_downloaded_file() {
    ADD_ONS_MANAGER* const catalogue = ADD_ONS_MANAGER::get_instance();
    if (!current_add_on || !catalogue) {
        return false;
    }
    const bool installed = install_archive();
    // The peer wasn't listened to for as long as that took.
    last_activity_ms = services.clock();
    if (!installed) {
        return false;
    }
    TRACE_OUTPUT::output_trace("Installed the add-on \"%s\", version %d", current_add_on->path,
                               current_add_on->version);
    current_add_on->set_downloaded();
    catalogue->set_add_on(current_add_on, 0);
    advance_to_next();
    return true;
}

// Unpacks beside the target, and touches the target only once the new version is complete.
bool AUTOPATCH_SYSTEM::install_archive() {
    DISK_MANAGER parent;
    DISK_MANAGER staging_parent;
    if (!goto_install_folders(*current_add_on, parent, staging_parent)) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "there is no folder to install it in");
        return false;
    }
    DISK_MANAGER downloads;
    if (!goto_downloads(downloads, true)) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "the folder of the downloads is gone");
        return false;
    }
    const std::string archive = archive_name(*current_add_on, ARCHIVE_ENDING);
    // What is left over of an earlier unpacking would become part of this one.
    bool good = DISK_MANAGER::delete_tree(staging_parent, STAGING_FOLDER) == 0;
    if (!good) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "the folder to unpack it in can't be emptied");
    }
    DISK_MANAGER staging = staging_parent;
    good = good && unpack_archive(downloads, archive, staging);
    if (good && !staging_parent.replace_folder(STAGING_FOLDER, parent,
                                               current_add_on->get_folder_name().c_str())) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "it can't be moved into place");
        good = false;
    }
    if (good) {
        flush_folder_to_disk(parent);
    }
    downloads.remove(TAR_NAME, true);
    downloads.remove(archive.c_str(), true);
    // Now the former version, or what was unpacked of a bad archive.
    DISK_MANAGER::delete_tree(staging_parent, STAGING_FOLDER);
    return good;
}

// Checks and unpacks the archive into a new staging folder, onto which `staging` is moved, and
// checks what came out.
bool AUTOPATCH_SYSTEM::unpack_archive(DISK_MANAGER& downloads, const std::string& archive,
                                      DISK_MANAGER& staging) {
    if (get_crc_from_file(downloads, archive.c_str()) != expected_crc) {
        fail_install(AUTOPATCH_ERROR_CORRUPT_DOWNLOAD, "its archive has a wrong checksum");
        return false;
    }
    const auto go_on = [this](std::uint64_t) { return !is_exit_requested(); };
    if (!ungzip_file(archive.c_str(), TAR_NAME, downloads, go_on)) {
        fail_unpacking(AUTOPATCH_ERROR_UNZIP, "its archive can't be unzipped");
        return false;
    }
    TAR_FILE tar;
    if (!tar.open_tar_file(TAR_NAME, downloads)) {
        fail_unpacking(AUTOPATCH_ERROR_OPEN_PACKAGE, "its package can't be opened");
        return false;
    }
    if (!staging.move_down(STAGING_FOLDER, true)) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "there is no folder to unpack it in");
        return false;
    }
    std::string reason;
    if (!tar.unpack_all_files_checked(staging, reason, go_on)) {
        fail_unpacking(AUTOPATCH_ERROR_EXTRACT, reason);
        return false;
    }
    tar.close_tar_file();
    const char* const wanted = check_file(current_add_on->type);
    if (!DISK_MANAGER::file_exists(staging, wanted)) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, std::string("its package has no file ") + wanted);
        return false;
    }
    // The catalogue is going to say that it is installed, whatever happens to the power.
    if (!staging.flush_file_system()) {
        fail_install(AUTOPATCH_ERROR_EXTRACT, "its files can't be stored");
        return false;
    }
    return true;
}
