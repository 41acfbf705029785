// Paths inside the disk manager: joining a folder and a bare name without ever cutting.
#ifndef PLATFORM_LINUXCODE_DISK_PATH_H
#define PLATFORM_LINUXCODE_DISK_PATH_H

#include <sys/stat.h>
#include <unistd.h>

#include "platform/disk_manager.h"

// A name of one component that can't lead out of its folder.
bool is_bare_name(const char* name);

// The absolute path of a name in a folder.
class FULL_PATH {
public:
    // False, with errno set, for a name that isn't bare or is too long.
    bool join(const DISK_MANAGER& folder, const char* name);
    const char* get() const { return text; }

private:
    char text[DISK_MANAGER::PATH_SIZE + DISK_MANAGER::NAME_SIZE];
};

// The identity of a folder or file: two paths with the same one lead to the same thing.
struct FILE_IDENTITY {
    dev_t device;
    ino_t inode;
    bool operator==(const FILE_IDENTITY&) const = default;
};
inline FILE_IDENTITY identity_of(const struct stat& info) {
    return {info.st_dev, info.st_ino};
}

// Owns a descriptor.
class DESCRIPTOR {
public:
    explicit DESCRIPTOR(int fd = -1) : number(fd) {}
    ~DESCRIPTOR() { reset(); }
    DESCRIPTOR(const DESCRIPTOR&) = delete;
    DESCRIPTOR& operator=(const DESCRIPTOR&) = delete;

    int get() const { return number; }
    bool is_open() const { return number >= 0; }
    void reset(int fd = -1) {
        if (number >= 0) {
            ::close(number);
        }
        number = fd;
    }
    int release() {
        const int fd = number;
        number = -1;
        return fd;
    }

private:
    int number;
};

#endif  // PLATFORM_LINUXCODE_DISK_PATH_H
