// Descriptors and whole transfers for the archive tools.
#ifndef MODULES_CODE_MISC_FILE_DESCRIPTOR_H
#define MODULES_CODE_MISC_FILE_DESCRIPTOR_H

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

// Owns a descriptor; -1 is none.
class FILE_DESCRIPTOR {
public:
    explicit FILE_DESCRIPTOR(int descriptor = -1) : number(descriptor) {}
    ~FILE_DESCRIPTOR() { close(); }
    FILE_DESCRIPTOR(FILE_DESCRIPTOR&& other) noexcept : number(other.release()) {}
    FILE_DESCRIPTOR& operator=(FILE_DESCRIPTOR&& other) noexcept {
        if (this != &other) {
            close();
            number = other.release();
        }
        return *this;
    }

    bool is_open() const { return number >= 0; }
    int get() const { return number; }
    int release() {
        const int released = number;
        number = -1;
        return released;
    }
    // False if the system could not store what was written.
    bool close() { return number < 0 || ::close(release()) == 0; }

private:
    int number;
};

// Reads at most `size` bytes; 0 at the end of the file, -1 on failure.
inline ssize_t read_some(int descriptor, void* data, std::size_t size) {
    ssize_t done;
    do {
        done = ::read(descriptor, data, size);
    } while (done < 0 && errno == EINTR);
    return done;
}

// Writes all of `size` bytes; false on failure.
inline bool write_whole(int descriptor, const unsigned char* data, std::size_t size) {
    while (size != 0) {
        const ssize_t done = ::write(descriptor, data, size);
        if (done < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += done;
        size -= static_cast<std::size_t>(done);
    }
    return true;
}

#endif  // MODULES_CODE_MISC_FILE_DESCRIPTOR_H
