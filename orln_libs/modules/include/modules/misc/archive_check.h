// The check of an archive from outside before it is installed, and the reader that the check and
// the checked unpacking share.
//
// The reader takes regular files and folders with the name, prefix, size, mode and type fields of
// the ustar header, as GNU tar and bsdtar write them in ustar form. Any other type of entry (links,
// devices, extended headers, long-name entries) is unsafe, and so is a name that has a ".."
// component, is absolute, is empty or has control characters, and a size that isn't octal digits or
// reaches 2 GiB. A "\" in a name counts as "/". Two blocks of zeros, or the end of the file, end
// the archive; a single block of zeros is passed over.
#ifndef MODULES_MISC_ARCHIVE_CHECK_H
#define MODULES_MISC_ARCHIVE_CHECK_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class TAR_FILE;

// One entry of an archive, found safe.
struct ARCHIVE_ENTRY {
    std::string name;        // with "/" only; the prefix included
    std::uint32_t size = 0;  // bytes of data; 0 for a folder
    bool folder = false;
    bool executable = false;  // the owner's execute bit
};

// Reads the entries of an archive in order, through a descriptor of its own.
class ARCHIVE_READER {
public:
    enum class RESULT { ENTRY, END, UNSAFE };

    // `buffer_size`: bytes that are read at a time.
    ARCHIVE_READER(const std::string& path, std::size_t buffer_size);
    ~ARCHIVE_READER();
    ARCHIVE_READER(const ARCHIVE_READER&) = delete;
    ARCHIVE_READER& operator=(const ARCHIVE_READER&) = delete;

    bool is_open() const { return descriptor >= 0 && buffer; }

    // Goes to the next entry, past the data of the current one. UNSAFE sets `reason`; `entry.name`
    // is then as far as it is known, with control characters shown as "?".
    RESULT next(ARCHIVE_ENTRY& entry, std::string& reason);

    // The next piece of the current entry's data, in place: valid until the next call. A size of 0
    // is the end of the data, or the end of a cut-off archive; false is a failed read.
    bool read_data(const unsigned char*& data, std::size_t& size);

private:
    bool fill();
    bool read_block(unsigned char* block);
    void skip(std::uint64_t bytes);
    RESULT read_header(const unsigned char* block, ARCHIVE_ENTRY& entry, std::string& reason);

    int descriptor;
    std::size_t capacity;
    std::unique_ptr<unsigned char[]> buffer;
    std::size_t first = 0;  // the unread bytes of the buffer: [first, last)
    std::size_t last = 0;
    std::uint64_t file_pos = 0;   // where the file is read next
    std::uint64_t data_left = 0;  // of the current entry
    std::uint64_t padding = 0;    // behind its data
    bool read_failed = false;
};

// Walks the headers of an open archive. True if there is an entry that must not be unpacked, or if
// the archive can't be read; `entry_name` and `reason` tell which and why, in words for a log.
bool find_unsafe_entry(const TAR_FILE& file, std::string& entry_name, std::string& reason);

#endif  // MODULES_MISC_ARCHIVE_CHECK_H
