// What the sources of FSREF_ITEM share.
#ifndef KVCORE_LINUXCODE_FSREF_SUPPORT_H
#define KVCORE_LINUXCODE_FSREF_SUPPORT_H

#include <sys/stat.h>

#include "kvcore/result.h"

namespace KVCORE {

// Holds the creation date that was set on a file, as a decimal number of DATE's seconds.
inline constexpr const char* CREATION_ATTRIBUTE = "user.kvcore.created";

// The result of an errno value; a failure is logged.
RESULT check_file_code(int code);

// Nobody has the right to write. A link has no rights of its own.
inline bool is_locked(const struct stat& status) {
    return !S_ISLNK(status.st_mode) && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

}  // namespace KVCORE

#endif  // KVCORE_LINUXCODE_FSREF_SUPPORT_H
