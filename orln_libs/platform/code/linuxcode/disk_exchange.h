// Exchanging two folders on file systems that can't do it in one step.
#ifndef PLATFORM_LINUXCODE_DISK_EXCHANGE_H
#define PLATFORM_LINUXCODE_DISK_EXCHANGE_H

#include <string>

#include "platform/disk_manager.h"

// A pattern for mkstemp or mkdtemp: a hidden name in `folder`.
std::string temporary_path(const DISK_MANAGER& folder);

// Lets the folders at two absolute paths change places by three renames. `beside` is a folder on
// the same device where the target stands meanwhile. On failure, with errno set, each is back in
// its own place.
bool exchange_by_renames(const char* source, const char* target, const DISK_MANAGER& beside);

#endif  // PLATFORM_LINUXCODE_DISK_EXCHANGE_H
