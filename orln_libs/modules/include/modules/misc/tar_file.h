// TAR_FILE: reads and writes tar archives in the POSIX "ustar" form (IEEE Std 1003.1, pax).
//
// There are two ways to unpack. unpack_all_files is the plain walk for our own tools: it reads the
// name and the size of an entry and nothing else, and names may lead anywhere. An archive that came
// from outside is installed by unpack_all_files_checked, which reads what GNU tar and bsdtar write
// in ustar form, looks at the whole archive first and writes nothing outside the target folder.
//
// Memory use doesn't depend on the archive. Blocking; an object belongs to one thread at a time.
#ifndef MODULES_MISC_TAR_FILE_H
#define MODULES_MISC_TAR_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "modules/misc/archive_progress.h"
#include "platform/disk_manager.h"
#include "platform/orln_string.h"

class DATA_FILE;

class TAR_FILE {
public:
    static constexpr std::size_t block_size = 512;
    // The longest name that the plain walk reads and add_file writes.
    static constexpr std::size_t max_name_length = 100;

    // Closed, with the base folder and an empty name.
    TAR_FILE();
    ~TAR_FILE();
    TAR_FILE(const TAR_FILE&) = delete;
    TAR_FILE& operator=(const TAR_FILE&) = delete;

    // Opens an archive for reading. False if it can't be opened.
    bool open_tar_file(const char* file_name, const DISK_MANAGER& in_folder);
    // Makes a new, empty archive and opens it for add_file.
    bool create_tar_file(const char* file_name, const DISK_MANAGER& in_folder);
    // Closes it. True also when nothing is open; false if what was added could not be stored.
    bool close_tar_file();

    // The plain walk: unpacks every entry up to the end of the archive. An empty file ends it
    // there, with success; folders come into being with the first file under them. False if no file
    // is open or an entry failed. Sets the count of files.
    bool unpack_all_files(const DISK_MANAGER& target);
    // Unpacks the entry whose header was just read. An archive that ends inside the entry gives a
    // short file and success.
    bool unpack_file(const DISK_MANAGER& target);
    // Reads the next header. False at the end of the file, on an end mark, on an empty file, and on
    // a size of 2 GiB or more, which makes unpack_all_files fail.
    bool read_header();

    // The checked walk, for installing. Nothing is written unless find_unsafe_entry
    // (modules/misc/archive_check.h) finds the whole archive safe. Files, empty ones included, and
    // folders come out as with the usual tools, below `target` only: a symbolic link in the way is
    // refused, never followed. A file that the archive marks as executable for its owner, or that
    // lies under ".app/Contents/MacOS", gets mode 0755, any other the mode of a new file. An
    // archive that is cut off gives a short file and success, as in the plain walk. On failure
    // `reason` says why, in words for a log, and what was unpacked so far stays. Sets the count of
    // files.
    bool unpack_all_files_checked(const DISK_MANAGER& target, std::string& reason,
                                  const ARCHIVE_PROGRESS& progress = {});

    // Appends the file `file_name` of `source_folder` as an entry named `prefix`, "/", `file_name`,
    // or by the file name alone if `prefix` is null or empty. False if the archive isn't open for
    // writing, the name is longer than max_name_length, the source can't be read or is 2 GiB or
    // larger, or on a failed write.
    bool add_file(const char* file_name, const char* prefix, const DISK_MANAGER& source_folder);
    // Writes the end mark. True also when nothing is open.
    bool write_end_section();

    bool is_open() const { return file != nullptr; }
    // The name and size of the entry whose header was read last.
    const char* get_entry_name() const { return entry_name; }
    std::int32_t get_entry_size() const { return entry_size; }
    // Files that the last unpack_all_files or unpack_all_files_checked unpacked.
    std::int32_t get_files_unpacked() const { return files_unpacked; }
    // The full path of the archive, for operations that read it on their own; empty when closed.
    std::string get_full_path() const;

private:
    bool open_file(const char* file_name, const DISK_MANAGER& in_folder, FILE_MODE mode);
    bool write_header(const std::string& name_in_archive, std::int64_t size, std::int64_t date);
    bool copy_entry_to(DATA_FILE& output);

    DISK_MANAGER folder;
    ORLN_STRING name;
    DATA_FILE* file = nullptr;  // owned, opened and closed through `folder`
    unsigned char block[block_size] = {};
    char entry_name[1024] = {};
    std::int32_t entry_size = 0;
    std::int32_t files_unpacked = 0;
    bool writing = false;
    bool header_failed = false;  // the last header had a size that can't be unpacked
};

#endif  // MODULES_MISC_TAR_FILE_H
