// The desktop's trash, by the rules of freedesktop.org, version 1.0.
#ifndef KVCORE_LINUXCODE_TRASH_H
#define KVCORE_LINUXCODE_TRASH_H

#include <sys/stat.h>

#include <string>

namespace KVCORE {

// Moves what stands at an absolute path to the trash, whole: the user's if the object is on the
// same volume, otherwise that of its volume. `trashed` takes the new path. Yields 0 or an errno
// value.
int move_to_trash(const std::string& path, const struct stat& status, std::string& trashed);

}  // namespace KVCORE

#endif  // KVCORE_LINUXCODE_TRASH_H
