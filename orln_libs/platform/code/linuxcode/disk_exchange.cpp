#include "disk_exchange.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "disk_path.h"

std::string temporary_path(const DISK_MANAGER& folder) {
    FULL_PATH path;
    path.join(folder, ".moving-XXXXXX");
    return path.get();
}

bool exchange_by_renames(const char* source, const char* target, const DISK_MANAGER& beside) {
    std::string aside = temporary_path(beside);
    // Renaming a folder onto the empty one that mkdtemp makes takes its name without a race.
    if (!mkdtemp(aside.data())) {
        return false;
    }
    if (rename(target, aside.c_str()) != 0) {
        const int error = errno;
        rmdir(aside.c_str());
        errno = error;
        return false;
    }
    const bool installed = rename(source, target) == 0;
    if (installed && rename(aside.c_str(), source) == 0) {
        return true;
    }
    const int error = errno;
    if (installed) {
        rename(target, source);
    }
    rename(aside.c_str(), target);
    errno = error;
    return false;
}
