#include "autopatch/crc_info.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

#include "platform/data_file.h"
#include "platform/disk_manager.h"

void CRC_INFO::set_crc(DISK_MANAGER& disk, const char* name, CRC_INFO& info) {
    info.crc = get_crc_from_file(disk, name);
}

std::uint32_t get_crc_from_file(DISK_MANAGER& disk, const char* name) {
    // The file's own cache is made as small as it goes: blocks this large bypass it.
    constexpr std::int64_t PIECE_BYTES = 1 << 18;
    DATA_FILE* file =
        disk.open_data_file(name, FILE_READ, BYTEORDER_LITTLE, DATA_FILE::min_cache_sz);
    if (!file) {
        return 0;
    }
    std::vector<unsigned char> piece(PIECE_BYTES);
    uLong crc = 0;
    std::int64_t left = file->get_bytes_left();
    while (left > 0) {
        const auto wanted = static_cast<std::int32_t>(std::min(left, PIECE_BYTES));
        if (file->read_data_block(piece.data(), wanted) != wanted) {
            crc = 0;
            break;
        }
        crc = crc32(crc, piece.data(), static_cast<uInt>(wanted));
        left -= wanted;
    }
    DISK_MANAGER::close(file);
    return static_cast<std::uint32_t>(crc);
}
