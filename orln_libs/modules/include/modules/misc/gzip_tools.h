// Compresses and expands single files in the gzip format (RFC 1952), through zlib. Memory use
// doesn't depend on the file. In names the characters that not every system allows are replaced, as
// DISK_MANAGER does where it opens files. Blocking; for any thread.
#ifndef MODULES_MISC_GZIP_TOOLS_H
#define MODULES_MISC_GZIP_TOOLS_H

#include "modules/misc/archive_progress.h"

class DISK_MANAGER;

// Compresses `name` in that folder to the same name with ".gz" added, leaving the source in place.
// False if the source can't be opened, or the target can't be written whole.
bool gzip_file(const char* name, const DISK_MANAGER& folder);

// Expands `source` to `target`, both in `folder`. False for null or equal names, when a file can't
// be opened, when the source isn't a whole and sound gzip file, when the target can't be written
// whole (a full disk), and when `progress` stops it. A partly written target stays; the caller
// removes it.
bool ungzip_file(const char* source, const char* target, const DISK_MANAGER& folder,
                 const ARCHIVE_PROGRESS& progress = {});

#endif  // MODULES_MISC_GZIP_TOOLS_H
