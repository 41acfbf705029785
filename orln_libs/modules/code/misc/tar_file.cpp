#include "modules/misc/tar_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "archive_trace.h"
#include "kvcore/text_field.h"
#include "modules/misc/tar_path_tools.h"
#include "platform/data_file.h"
#include "tar_header.h"

namespace {

constexpr std::int64_t MAX_DATE = 077777777777;

bool write_bytes(DATA_FILE& file, const void* data, std::size_t size) {
    const auto bytes = static_cast<std::int32_t>(size);
    return file.write_data_block(data, bytes) == bytes;
}

}  // namespace

TAR_FILE::TAR_FILE() = default;

TAR_FILE::~TAR_FILE() {
    close_tar_file();
}

bool TAR_FILE::open_file(const char* file_name, const DISK_MANAGER& in_folder, FILE_MODE mode) {
    close_tar_file();
    folder = in_folder;
    name = file_name;
    entry_name[0] = '\0';
    entry_size = 0;
    files_unpacked = 0;
    writing = mode == FILE_WRITE;
    file = file_name ? folder.open_data_file(file_name, mode, BYTEORDER_LITTLE) : nullptr;
    return file != nullptr;
}

bool TAR_FILE::open_tar_file(const char* file_name, const DISK_MANAGER& in_folder) {
    if (!open_file(file_name, in_folder, FILE_READ)) {
        trace_archive_failure("TAR_FILE::open_tar_file - could not open source file ", file_name);
        return false;
    }
    return true;
}

bool TAR_FILE::create_tar_file(const char* file_name, const DISK_MANAGER& in_folder) {
    return open_file(file_name, in_folder, FILE_WRITE);
}

bool TAR_FILE::close_tar_file() {
    if (!file) {
        return true;
    }
    const bool stored = file->close();
    DISK_MANAGER::close(file);
    return stored || !writing;
}

std::string TAR_FILE::get_full_path() const {
    return file ? folder.get_path_string(name.get_text()) : std::string();
}

bool TAR_FILE::read_header() {
    entry_name[0] = '\0';
    entry_size = 0;
    header_failed = false;
    if (!file || writing) {
        return false;
    }
    // A block that the end of the file cuts short counts as filled up with zeros.
    std::memset(block, 0, sizeof block);
    if (file->read_data_block(block, block_size) <= 0) {
        return false;
    }
    const TAR_HEADER header(block);
    KVCORE::copy_text_field(entry_name, header.get_name().c_str());
    const std::uint64_t size = header.get_size();
    if (size > TAR_HEADER::MAX_SIZE) {
        header_failed = true;
        return false;
    }
    entry_size = static_cast<std::int32_t>(size);
    const std::size_t length = std::strlen(entry_name);
    return entry_size != 0 || (length != 0 && entry_name[length - 1] == '/');
}

bool TAR_FILE::unpack_all_files(const DISK_MANAGER& target) {
    files_unpacked = 0;
    if (!file || writing) {
        return false;
    }
    file->set_pos_64(0, false);
    while (read_header()) {
        if (entry_size == 0) {
            continue;
        }
        if (!unpack_file(target)) {
            return false;
        }
        files_unpacked++;
    }
    return !header_failed;
}

bool TAR_FILE::unpack_file(const DISK_MANAGER& target) {
    if (!file || writing) {
        return false;
    }
    std::replace(entry_name, entry_name + std::strlen(entry_name), '\\', '/');
    DISK_MANAGER disk = target;
    if (!tar_tools_set_relative_path(disk, tar_tools_get_dir_part_from_path(entry_name), true)) {
        return false;
    }
    // The disk manager opens files under such a name only.
    char file_name[sizeof entry_name];
    KVCORE::copy_text_field(file_name, tar_tools_get_filename_from_path(entry_name));
    DISK_MANAGER::convert_illegal_chars(file_name);
    DATA_FILE* output = disk.open_data_file(file_name, FILE_WRITE, BYTEORDER_LITTLE);
    if (!output) {
        trace_archive_failure("TAR_FILE::unpack_file - cannot open target file ", entry_name);
        return false;
    }
    bool done = copy_entry_to(*output);
    done = output->close() && done;
    DISK_MANAGER::close(output);
    if (done && std::strstr(entry_name, TAR_HEADER::PROGRAM_FOLDER)) {
        done = ::chmod(disk.get_path_string(file_name), 0755) == 0;
    }
    return done;
}

bool TAR_FILE::copy_entry_to(DATA_FILE& output) {
    for (std::int32_t left = entry_size; left > 0;) {
        const std::int32_t size = std::min(file->read_data_block(block, block_size), left);
        if (size <= 0) {
            break;
        }
        if (!write_bytes(output, block, static_cast<std::size_t>(size))) {
            return false;
        }
        left -= size;
    }
    return true;
}

bool TAR_FILE::write_header(const std::string& name_in_archive, std::int64_t size,
                            std::int64_t date) {
    std::memset(block, 0, sizeof block);
    const auto put = [this](std::size_t offset, const void* text, std::size_t length) {
        std::memcpy(block + offset, text, length);
    };
    const auto put_number = [&put](std::size_t offset, std::int64_t value) {
        char text[16];
        std::snprintf(text, sizeof text, "%011" PRIo64 " ",
                      static_cast<std::uint64_t>(std::clamp<std::int64_t>(value, 0, MAX_DATE)));
        put(offset, text, TAR_HEADER::SIZE_DIGITS + 1);
    };
    put(TAR_HEADER::NAME_OFFSET, name_in_archive.data(), name_in_archive.size());
    put(TAR_HEADER::MODE_OFFSET, "000666 ", 8);
    put(TAR_HEADER::USER_OFFSET, "000000 ", 8);
    put(TAR_HEADER::GROUP_OFFSET, "000000 ", 8);
    put_number(TAR_HEADER::SIZE_OFFSET, size);
    put_number(TAR_HEADER::DATE_OFFSET, date);
    std::memset(block + TAR_HEADER::CHECKSUM_OFFSET, ' ', TAR_HEADER::CHECKSUM_SIZE);
    block[TAR_HEADER::TYPE_OFFSET] = TAR_HEADER::TYPE_FILE;
    put(TAR_HEADER::MAGIC_OFFSET, "ustar", 6);
    put(TAR_HEADER::VERSION_OFFSET, "00", 2);
    unsigned sum = 0;
    for (const unsigned char byte : block) {
        sum += byte;
    }
    char text[16];
    std::snprintf(text, sizeof text, "%06o", sum);
    put(TAR_HEADER::CHECKSUM_OFFSET, text, 7);
    return write_bytes(*file, block, sizeof block);
}

bool TAR_FILE::add_file(const char* file_name, const char* prefix,
                        const DISK_MANAGER& source_folder) {
    if (!file || !writing || !file_name) {
        return false;
    }
    std::string name_in_archive = file_name;
    if (prefix && *prefix) {
        name_in_archive = std::string(prefix) + "/" + name_in_archive;
    }
    if (name_in_archive.empty() || name_in_archive.size() > max_name_length) {
        return false;
    }
    DATA_FILE* source = source_folder.open_data_file(file_name, FILE_READ, BYTEORDER_LITTLE);
    if (!source) {
        trace_archive_failure("TAR_FILE::add_file - cannot open source file ", file_name);
        return false;
    }
    const std::int64_t size = source->get_size();
    bool done = size >= 0 && static_cast<std::uint64_t>(size) <= TAR_HEADER::MAX_SIZE;
    if (done) {
        file->set_pos_64(0, true);
        done = write_header(name_in_archive, size,
                            DISK_MANAGER::get_file_date(source_folder, file_name));
    }
    // What the header promises is written, also of a file that changes meanwhile.
    std::int64_t left = size;
    while (done && left > 0) {
        const auto wanted = static_cast<std::int32_t>(std::min<std::int64_t>(left, sizeof block));
        std::memset(block, 0, sizeof block);
        done = source->read_data_block(block, wanted) == wanted &&
               write_bytes(*file, block, sizeof block);
        left -= wanted;
    }
    if (done && size == 0) {
        std::memset(block, 0, sizeof block);
        done = write_bytes(*file, block, sizeof block);
    }
    DISK_MANAGER::close(source);
    return done;
}

bool TAR_FILE::write_end_section() {
    if (!file) {
        return true;
    }
    if (!writing) {
        return false;
    }
    file->set_pos_64(0, true);
    std::memset(block, 0, sizeof block);
    return write_bytes(*file, block, sizeof block) && write_bytes(*file, block, sizeof block);
}
