#include "modules/misc/archive_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "modules/misc/tar_file.h"
#include "tar_header.h"

namespace {

// Enough for a run of small entries, little enough where headers lie far apart.
constexpr std::size_t CHECK_BUFFER = 16 * 1024;

std::string to_printable(std::string name) {
    for (char& c : name) {
        if (TAR_HEADER::is_control(c)) {
            c = '?';
        }
    }
    return name;
}

// What forbids the type of an entry; null for a file or folder.
const char* type_reason(char type) {
    switch (type) {
        case TAR_HEADER::TYPE_OLD_FILE:
        case TAR_HEADER::TYPE_FILE:
        case TAR_HEADER::TYPE_CONTIGUOUS:
        case TAR_HEADER::TYPE_FOLDER:
            return nullptr;
        case '1':
            return "is a hard link";
        case '2':
            return "is a symbolic link";
        case '3':
        case '4':
            return "is a device";
        case '6':
            return "is a pipe";
        case 'x':
        case 'g':
            return "is an extended header, the archive isn't in ustar form";
        case 'L':
        case 'K':
            return "is a long-name entry, the archive isn't in ustar form";
        default:
            return "has an unknown type";
    }
}

// What makes a name unsafe; null if nothing does.
const char* name_reason(const std::string& name) {
    if (name.empty()) {
        return "has no name";
    }
    if (std::any_of(name.begin(), name.end(), TAR_HEADER::is_control)) {
        return "has a control character in its name";
    }
    if (name.front() == '/') {
        return "has an absolute path";
    }
    for (std::size_t at = 0; at <= name.size();) {
        const std::size_t end = std::min(name.find('/', at), name.size());
        if (name.compare(at, end - at, "..") == 0) {
            return "leads upwards";
        }
        at = end + 1;
    }
    return nullptr;
}

}  // namespace

ARCHIVE_READER::ARCHIVE_READER(const std::string& path, std::size_t buffer_size)
    : descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      capacity(std::max(buffer_size, TAR_FILE::block_size)),
      buffer(new (std::nothrow) unsigned char[capacity]) {
}

ARCHIVE_READER::~ARCHIVE_READER() {
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

// Moves what is unread to the front and reads as much as fits behind it. False at the end of the
// file, or on a failed read, which is remembered.
bool ARCHIVE_READER::fill() {
    if (!is_open()) {
        read_failed = true;
        return false;
    }
    std::memmove(buffer.get(), buffer.get() + first, last - first);
    last -= first;
    first = 0;
    ssize_t size;
    do {
        size =
            ::pread(descriptor, buffer.get() + last, capacity - last, static_cast<off_t>(file_pos));
    } while (size < 0 && errno == EINTR);
    if (size <= 0) {
        read_failed = read_failed || size < 0;
        return false;
    }
    last += static_cast<std::size_t>(size);
    file_pos += static_cast<std::uint64_t>(size);
    return true;
}

// False at the end of the file; what is less than a block there is no block.
bool ARCHIVE_READER::read_block(unsigned char* block) {
    while (last - first < TAR_FILE::block_size) {
        if (!fill()) {
            return false;
        }
    }
    std::memcpy(block, buffer.get() + first, TAR_FILE::block_size);
    first += TAR_FILE::block_size;
    return true;
}

void ARCHIVE_READER::skip(std::uint64_t bytes) {
    const std::uint64_t held = std::min<std::uint64_t>(bytes, last - first);
    first += static_cast<std::size_t>(held);
    file_pos += bytes - held;
}

ARCHIVE_READER::RESULT ARCHIVE_READER::next(ARCHIVE_ENTRY& entry, std::string& reason) {
    entry = ARCHIVE_ENTRY();
    skip(data_left + padding);
    data_left = 0;
    padding = 0;
    unsigned char block[TAR_FILE::block_size];
    for (bool zeros_before = false;; zeros_before = true) {
        if (!read_block(block)) {
            if (!read_failed) {
                return RESULT::END;
            }
            reason = "the archive can't be read";
            return RESULT::UNSAFE;
        }
        if (!std::all_of(block, block + sizeof block, [](unsigned char c) { return c == 0; })) {
            break;
        }
        if (zeros_before) {
            return RESULT::END;
        }
    }
    const RESULT result = read_header(block, entry, reason);
    if (result == RESULT::UNSAFE) {
        entry.name = to_printable(entry.name);
        return result;
    }
    data_left = entry.size;
    padding = TAR_HEADER::padding_of(entry.size);
    return result;
}

ARCHIVE_READER::RESULT ARCHIVE_READER::read_header(const unsigned char* block, ARCHIVE_ENTRY& entry,
                                                   std::string& reason) {
    const TAR_HEADER header(block);
    entry.name = header.get_full_name();
    std::replace(entry.name.begin(), entry.name.end(), '\\', '/');
    const char type = header.get_type();
    const char* unsafe = type_reason(type);
    if (!unsafe) {
        unsafe = name_reason(entry.name);
    }
    std::uint64_t size = 0;
    if (!unsafe) {
        if (!header.get_strict_size(size)) {
            unsafe = "has a size that isn't an octal number";
        } else if (size > TAR_HEADER::MAX_SIZE) {
            unsafe = "has 2 GiB or more";
        }
    }
    if (!unsafe) {
        // Before there was a type for folders, the name told.
        entry.folder = type == TAR_HEADER::TYPE_FOLDER || entry.name.back() == '/';
        if (entry.folder && size != 0) {
            unsafe = "is a folder with data";
        } else if (!entry.folder && (entry.name == "." || entry.name.ends_with("/."))) {
            unsafe = "has no file name";
        }
    }
    if (unsafe) {
        reason = unsafe;
        return RESULT::UNSAFE;
    }
    entry.size = static_cast<std::uint32_t>(size);
    entry.executable = header.is_executable();
    return RESULT::ENTRY;
}

bool ARCHIVE_READER::read_data(const unsigned char*& data, std::size_t& size) {
    size = 0;
    if (data_left == 0) {
        return true;
    }
    if (first == last && !fill()) {
        return !read_failed;
    }
    size = static_cast<std::size_t>(std::min<std::uint64_t>(last - first, data_left));
    data = buffer.get() + first;
    first += size;
    data_left -= size;
    return true;
}

bool find_unsafe_entry(const TAR_FILE& file, std::string& entry_name, std::string& reason) {
    entry_name.clear();
    reason.clear();
    ARCHIVE_READER reader(file.get_full_path(), CHECK_BUFFER);
    if (!reader.is_open()) {
        reason = "the archive can't be opened";
        return true;
    }
    ARCHIVE_ENTRY entry;
    ARCHIVE_READER::RESULT result;
    do {
        result = reader.next(entry, reason);
    } while (result == ARCHIVE_READER::RESULT::ENTRY);
    if (result == ARCHIVE_READER::RESULT::END) {
        return false;
    }
    entry_name = entry.name;
    return true;
}
