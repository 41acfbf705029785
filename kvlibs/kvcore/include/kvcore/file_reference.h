// A stable reference to an object of the file system.
#ifndef KVCORE_FILE_REFERENCE_H
#define KVCORE_FILE_REFERENCE_H

#include <sys/stat.h>

#include <string>

namespace KVCORE {

// Refers to the object itself and not to its path: it follows an object that is moved or renamed,
// and fails for one that is gone, even if another has taken its place.
//
// To do so it holds a descriptor of the object, without access to its content. All references
// together hold at most a quarter of the descriptors that the process may have; one beyond that
// knows its object by device and number, and follows only moves that were made through it.
class FILE_REFERENCE {
public:
    // Refers to nothing.
    FILE_REFERENCE() = default;
    // Refers to what stands at `path`, in UTF-8; a relative path starts in the working folder. With
    // `follow` a link counts as what it leads to. Yields 0 or an errno value.
    static int create(const std::string& path, bool follow, FILE_REFERENCE& reference);

    FILE_REFERENCE(const FILE_REFERENCE& other);
    FILE_REFERENCE(FILE_REFERENCE&& other) noexcept;
    FILE_REFERENCE& operator=(FILE_REFERENCE other) noexcept;
    ~FILE_REFERENCE();

    // Where the object is now, and what it is (a link as itself). Yields 0 or an errno value.
    int resolve(std::string& path, struct stat& status) const;
    // Tells that the object was moved to `path`.
    void set_path(std::string path) { path_ = std::move(path); }

private:
    // Takes a descriptor if there is room for one.
    void hold_descriptor(int descriptor);
    bool refers_to(const struct stat& status) const {
        return status.st_dev == device_ && status.st_ino == number_;
    }

    std::string path_;
    dev_t device_ = 0;
    ino_t number_ = 0;
    int descriptor_ = -1;
};

}  // namespace KVCORE

#endif  // KVCORE_FILE_REFERENCE_H
