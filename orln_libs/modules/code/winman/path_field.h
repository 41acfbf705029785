// The stored form of a path in the records of a skin: a field of a fixed size.
#ifndef MODULES_WINMAN_PATH_FIELD_H
#define MODULES_WINMAN_PATH_FIELD_H

#include <cstddef>

#include "kvcore/text_field.h"
#include "platform/data_device.h"

// The text, padded with 0: what lies behind a text in memory never reaches the file.
template <std::size_t N>
bool put_path_field(DATA_DEVICE& device, const char (&path)[N]) {
    char block[N] = {};
    KVCORE::copy_text_field(block, path);
    return device.write_data_block(block, N) == N;
}

template <std::size_t N>
bool get_path_field(const DATA_DEVICE& device, char (&path)[N]) {
    if (device.read_data_block(path, N) != N) {
        path[0] = '\0';
        return false;
    }
    path[N - 1] = '\0';
    return true;
}

#endif  // MODULES_WINMAN_PATH_FIELD_H
