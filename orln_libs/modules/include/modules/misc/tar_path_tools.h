// Paths inside tar archives: split at "/" or "\", walked component by component.
#ifndef MODULES_MISC_TAR_PATH_TOOLS_H
#define MODULES_MISC_TAR_PATH_TOOLS_H

class DISK_MANAGER;

// The part before the last "/" or "\", empty if there is none, at most 1023 bytes. It lies in a
// buffer of the calling thread, which the next call overwrites.
const char* tar_tools_get_dir_part_from_path(const char* path);

// The part behind the last "/" or "\", a pointer into `path`; the whole of `path` if there is none.
const char* tar_tools_get_filename_from_path(const char* path);

// Walks down `path` from where the cursor stands; ".." goes up, "." stays, and one leading "/" is
// skipped. `create` makes missing folders. A component that fails is passed over, and the result is
// false at the end.
bool tar_tools_set_relative_path(DISK_MANAGER& disk, const char* path, bool create);

#endif  // MODULES_MISC_TAR_PATH_TOOLS_H
