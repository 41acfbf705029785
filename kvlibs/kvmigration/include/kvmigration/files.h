// Whole files and the parts of their paths, by the C library's calls on plain path text.
#ifndef KVMIGRATION_FILES_H
#define KVMIGRATION_FILES_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "kvmigration/string.h"

namespace KVMIGRATION {

// Whether the path leads to a file that can be read, or read and written. A folder is no file, nor
// is a pipe or a device.
bool file_exists(const char* path);
bool file_writeable(const char* path);

// The whole file. Null if it can't be opened, or holds 2 GB or more. `size` takes the number of
// bytes, 0 on failure; it may be null.
std::unique_ptr<unsigned char[]> load_binary(const char* path, std::uint32_t* size);
// Writes a whole file; true if all is there. It is written beside and moved into place, so that the
// old content stays until the new one is complete.
bool save_binary(const char* path, const void* data, std::uint32_t size);

// Splits a path into drive ("c:"), folder with its last separator, name, and extension with its
// dot. Separators are "/" and "\". An output may be null if it isn't wanted; text is cut at the
// size of its output.
void _splitpath_s(const char* path, char* drive, std::size_t drive_size, char* dir,
                  std::size_t dir_size, char* name, std::size_t name_size, char* ext,
                  std::size_t ext_size);

// What `extract` joins.
enum PATH_PARTS : std::uint32_t { PATH_FOLDER = 1, PATH_NAME = 2, PATH_EXTENSION = 4 };

// The named parts of a path, joined: PATH_FOLDER is drive and folder. Of any length.
STRING extract(const STRING& path, std::uint32_t parts);
// Name and extension.
STRING remove_path(const STRING& path);

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_FILES_H
