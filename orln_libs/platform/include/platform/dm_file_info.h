// DM_FILE_INFO: one entry of a folder's listing.
#ifndef PLATFORM_DM_FILE_INFO_H
#define PLATFORM_DM_FILE_INFO_H

#include <cstdint>

#include "platform/disk_manager.h"

struct DM_FILE_INFO {
    DISK_MANAGER folder;     // the folder that holds the entry
    char name[256];          // cut at 255 characters
    char display_name[100];  // only from get_special_os_folder_list
    bool directory;
    bool hidden;  // the name begins with "."
    unsigned char spare;
    std::int32_t size;  // bytes, at most 2^31 - 1; 0 for a folder
    std::int64_t date;  // last change, in seconds since 1970

    // A size in words: "1.5 kb", "3.0 Mb", "2.1 Gb"; up to 1024 only the number and a blank. The
    // text lies in a buffer of the calling thread.
    const char* get_size_string() const { return get_size_string(size); }
    static const char* get_size_string(std::int64_t size);

    // The date in the system's short form, local time; empty if it has none. The text lies in a
    // buffer of the calling thread.
    const char* get_date_string() const;
};

#endif  // PLATFORM_DM_FILE_INFO_H
