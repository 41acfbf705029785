// The client versions that lie beside each other in "$ADD_ONS/client", one folder "app_%d" each,
// and their pruning to the newest two.
//
// All operations work on the disk or on plain text; they belong to one thread at a time.
#ifndef AUTOPATCH_VERSION_LIST_H
#define AUTOPATCH_VERSION_LIST_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The folder of the client versions under "$ADD_ONS".
inline constexpr const char CLIENT_FOLDER[] = "client";
// What is new is unpacked into a folder of this name: a client version in "client", any other
// add-on in "$ADD_ONS". The name holds no "_", so that it never counts as a version.
inline constexpr const char STAGING_FOLDER[] = "incoming";
// The file that makes a version folder a complete client.
inline constexpr const char CLIENT_CHECK_FILE[] = "autopatch.cfg";

// Deletes the version folder `name` with all that is in it. True if there is none afterwards; false
// if there is no "client" folder, or a part of the version could not be deleted.
bool delete_version(const char* name);

// Prunes the versions: of the folders whose name holds a "_", in the order of their numbers, all
// but the last two are deleted. Whatever the order says, two folders are never deleted: `current`,
// the version that the catalogue names (empty or null for none), and the newest folder that holds
// its check file, as these are what the user can still start. Folders without a "_" are left
// alone.
void clean_version_list(const char* current);

// Deletes what a killed run left of an unpacking.
void delete_staging_folders();

// The names of `names` that pruning deletes, oldest first. `is_complete` tells whether a version
// folder has its check file. Pure; clean_version_list() supplies the names and the check.
std::vector<std::string> select_versions_to_delete(
    std::vector<std::string> names, const char* current,
    const std::function<bool(const std::string& name)>& is_complete);

// Comparison for qsort() over an array of `const char*`: the number behind the first "_" of the
// left text less that of the right, narrowed to 16 bits, so that the order is ascending only for
// numbers less than 32768 apart. A null `a` yields 1 and a null `b` -1; a null text or a text
// without "_" yields 0. Pruning compares whole numbers instead.
int path_sort_func(const void* a, const void* b);

// Splits `name` at its first "_": what stands before it goes to `prefix`, which must hold the
// length of `name` + 1, and the decimal number behind it to `number`. False, with an empty prefix
// and number 0, for a null argument or a name without "_".
bool split_filename(const char* name, char* prefix, std::uint32_t& number);

#endif  // AUTOPATCH_VERSION_LIST_H
