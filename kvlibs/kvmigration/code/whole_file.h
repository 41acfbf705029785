// Opening, reading and writing files of the migration layer.
#ifndef KVMIGRATION_WHOLE_FILE_H
#define KVMIGRATION_WHOLE_FILE_H

#include <cstddef>
#include <cstdio>
#include <string>

namespace KVMIGRATION {

// A regular file, opened so that no program started later inherits it. `mode` is "rb" or "rb+".
// Null for anything else, a folder and a pipe included. The caller closes it.
std::FILE* open_existing_file(const char* path, const char* mode);
// A file for writing, made or emptied; else as open_existing_file.
std::FILE* open_new_file(const char* path);

// Reads all bytes of a file. Memory grows with the bytes that arrive, whatever size the file
// claims; one that claims too much isn't read at all. False, with `bytes` as they were, if the file
// can't be opened or read, or if it holds more than 2^31 - 2 bytes.
bool read_whole_file(const char* path, std::string& bytes);
// Writes a file beside the path and moves it into place. False, with the old file untouched, if
// anything fails.
bool write_whole_file(const char* path, const void* data, std::size_t size);

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_WHOLE_FILE_H
