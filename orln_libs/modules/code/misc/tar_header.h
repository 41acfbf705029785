// The fields of a ustar header block, as far as the archive tools use them.
#ifndef MODULES_CODE_MISC_TAR_HEADER_H
#define MODULES_CODE_MISC_TAR_HEADER_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

// A view of one block of 512 bytes.
class TAR_HEADER {
public:
    static constexpr std::size_t BLOCK = 512;
    static constexpr std::size_t NAME_OFFSET = 0, NAME_SIZE = 100;
    static constexpr std::size_t MODE_OFFSET = 100, MODE_SIZE = 8;
    static constexpr std::size_t USER_OFFSET = 108, GROUP_OFFSET = 116;
    static constexpr std::size_t SIZE_OFFSET = 124, SIZE_DIGITS = 11;
    static constexpr std::size_t DATE_OFFSET = 136;
    static constexpr std::size_t CHECKSUM_OFFSET = 148, CHECKSUM_SIZE = 8;
    static constexpr std::size_t TYPE_OFFSET = 156;
    static constexpr std::size_t MAGIC_OFFSET = 257, VERSION_OFFSET = 263;
    static constexpr std::size_t PREFIX_OFFSET = 345, PREFIX_SIZE = 155;

    static constexpr char TYPE_OLD_FILE = '\0', TYPE_FILE = '0', TYPE_FOLDER = '5',
                          TYPE_CONTIGUOUS = '7';

    // The largest entry: sizes are 32 bits with a sign.
    static constexpr std::uint64_t MAX_SIZE = 0x7FFFFFFF;

    // The folder of an application bundle whose files are programs.
    static constexpr const char* PROGRAM_FOLDER = ".app/Contents/MacOS";

    explicit TAR_HEADER(const unsigned char* block) : bytes(reinterpret_cast<const char*>(block)) {}

    static bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

    // Bytes between the end of that much data and the next block.
    static std::uint64_t padding_of(std::uint64_t size) { return (BLOCK - size % BLOCK) % BLOCK; }

    std::string get_name() const { return get_text(NAME_OFFSET, NAME_SIZE); }

    // With the prefix, which only the POSIX form has.
    std::string get_full_name() const {
        std::string name = get_name();
        if (std::memcmp(bytes + MAGIC_OFFSET, "ustar", 6) == 0 && bytes[PREFIX_OFFSET]) {
            name = get_text(PREFIX_OFFSET, PREFIX_SIZE) + "/" + name;
        }
        return name;
    }

    char get_type() const { return bytes[TYPE_OFFSET]; }

    // The value of the octal digits at the start of the size field, after blanks.
    std::uint64_t get_size() const {
        std::uint64_t size = 0;
        for (std::size_t i = skip_blanks(); i < SIZE_DIGITS && is_octal(size_char(i)); i++) {
            size = size * 8 + static_cast<std::uint64_t>(size_char(i) - '0');
        }
        return size;
    }

    // The same, for a field that holds octal digits and a terminator and nothing else.
    bool get_strict_size(std::uint64_t& size) const {
        std::size_t i = skip_blanks();
        const std::size_t first = i;
        while (i < SIZE_DIGITS && is_octal(size_char(i))) {
            i++;
        }
        if (i == first || (size_char(i) != ' ' && size_char(i) != '\0')) {
            return false;
        }
        size = get_size();
        return true;
    }

    // The owner's execute bit of the mode.
    bool is_executable() const {
        unsigned mode = 0;
        for (std::size_t i = 0; i < MODE_SIZE; i++) {
            const char c = bytes[MODE_OFFSET + i];
            if (is_octal(c)) {
                mode = mode * 8 + static_cast<unsigned>(c - '0');
            } else if (c != ' ' || mode != 0) {
                break;
            }
        }
        return (mode & 0100) != 0;
    }

private:
    static bool is_octal(char c) { return c >= '0' && c <= '7'; }
    char size_char(std::size_t index) const { return bytes[SIZE_OFFSET + index]; }
    std::size_t skip_blanks() const {
        std::size_t i = 0;
        while (i < SIZE_DIGITS && size_char(i) == ' ') {
            i++;
        }
        return i;
    }
    std::string get_text(std::size_t offset, std::size_t size) const {
        return std::string(bytes + offset, ::strnlen(bytes + offset, size));
    }

    const char* bytes;
};

#endif  // MODULES_CODE_MISC_TAR_HEADER_H
