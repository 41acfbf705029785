// Names and paths as the file system has them, and their text.
#ifndef KVCORE_LINUXCODE_FILE_NAMES_H
#define KVCORE_LINUXCODE_FILE_NAMES_H

#include <string>
#include <string_view>
#include <vector>

#include "kvcore/file_path.h"

namespace KVCORE {

// "." or "..", which name a folder from within.
bool is_special_name(std::string_view name);

// File names are UTF-8. Bytes that are none show as U+FFFD.
STRING from_file_text(std::string_view bytes);
std::string to_file_text(TEXT_VIEW text);

// The name that a file or folder of this name and type has on disk. Empty if there can be no such
// name: it would be empty, lead out of its folder, or hold a zero.
std::string make_file_name(const FILE_NAME& name, const FILE_TYPE& type);
// The names under which such a file can be found, the likeliest first: "x" and "x." both have no
// type, and ".a" as well as ".a.a" show as the name ".a" with the type ".a".
std::vector<std::string> make_possible_file_names(const FILE_NAME& name, const FILE_TYPE& type);
// The platform's path of a path; empty if it can't have one. A dot that only says that a file has
// no type is left out.
std::string make_file_path(const FILE_PATH& path);

std::string join_path(const std::string& folder, std::string_view name);
// The last component, and what is ahead of it, of an absolute path that ends in no "/".
std::string_view get_last_component(std::string_view path);
std::string get_folder(const std::string& path);

}  // namespace KVCORE

#endif  // KVCORE_LINUXCODE_FILE_NAMES_H
