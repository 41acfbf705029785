// CRC_INFO: the checksum of an add-on's archive for one platform.
#ifndef AUTOPATCH_CRC_INFO_H
#define AUTOPATCH_CRC_INFO_H

#include <cstdint>

class ADD_ON;
class DISK_MANAGER;

struct CRC_INFO {
    static constexpr signed char PLATFORM_ANY = 0;
    static constexpr signed char PLATFORM_WINDOWS = 1;
    static constexpr signed char PLATFORM_MAC = 3;
    static constexpr signed char PLATFORM_X11_I86 = 4;

    ADD_ON* add_on = nullptr;  // not owned
    signed char platform = PLATFORM_ANY;
    std::uint32_t crc = 0;

    // Stores the checksum of the file `name` in the folder of `disk` in `info`.
    static void set_crc(DISK_MANAGER& disk, const char* name, CRC_INFO& info);
};

// The CRC-32 (as zlib's crc32, started at 0) of the whole file `name` in the folder of `disk`.
// Yields 0 if the file can't be opened or not be read to its end. Reads in pieces, so that the
// memory it takes doesn't depend on the file's size.
std::uint32_t get_crc_from_file(DISK_MANAGER& disk, const char* name);

#endif  // AUTOPATCH_CRC_INFO_H
