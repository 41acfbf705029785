#include "platform/config_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "kvcore/text_field.h"
#include "platform/debug_stream.h"
#include "platform/text_file.h"

namespace {

constexpr const char* DEFAULT_NAME = "settings";
constexpr const char* CONFIG_FOLDER = "config";

#define CONFIG_WARNING(text)                                                       \
    do {                                                                           \
        if (platform_debug_stream.flags != 0) {                                    \
            platform_debug_stream.write_to_stream(__FILE__, __LINE__, text, true); \
        }                                                                          \
    } while (false)

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

// Copies `text` without the blanks at both ends, cut at the field's size.
template <std::size_t N>
void copy_stripped(char (&field)[N], const char* text) {
    while (is_blank(*text)) {
        text++;
    }
    KVCORE::copy_text_field(field, text);
    std::size_t length = std::strlen(field);
    while (length != 0 && is_blank(field[length - 1])) {
        field[--length] = '\0';
    }
}

// Fills a field of a record that is to be written. A record lies on two lines, whatever a caller
// hands in.
template <std::size_t N>
void store_as_read(char (&field)[N], const char* text) {
    char line[N];
    KVCORE::copy_text_field(line, text);
    for (char* at = line; *at; at++) {
        if (*at == '\r' || *at == '\n' || *at == '\3') {
            *at = ' ';
        }
    }
    copy_stripped(field, line);
}

bool write_record(TEXT_FILE& file, const char* key, const char* value) {
    // A blank in front keeps such a key from reading as an empty line, a comment or, at the top of
    // the file, as a byte order mark.
    const bool ambiguous = !*key || std::strchr("#\xFE\xFF", *key);
    if (ambiguous && !(file << " ")) {
        return false;
    }
    return file << key && file << "\n\t" && file << value && file << "\n";
}

std::string beside_name(const char* filename) {
    return std::string(filename) + ".tmp";
}

bool parse_number(const char* text, bool hex, std::uint32_t& value) {
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, hex ? 16 : 10);
    if (end == text) {
        return false;
    }
    constexpr long long lowest = std::numeric_limits<std::int32_t>::min();
    const long long highest =
        hex ? static_cast<long long>(UINT32_MAX) : std::numeric_limits<std::int32_t>::max();
    value = static_cast<std::uint32_t>(std::clamp(number, lowest, highest));
    return true;
}

}  // namespace

CONFIG_FILE::CONFIG_FILE(bool is_cached, FOLDER_ID folder, bool in_config_folder)
    : CONFIG_FILE(nullptr, is_cached, folder, in_config_folder) {
}

CONFIG_FILE::CONFIG_FILE(const char* name, bool is_cached, FOLDER_ID folder, bool in_config_folder)
    : keys(0, 0, delete_key, compare_keys), cached(is_cached), use_config_folder(in_config_folder) {
    set_filename(name, is_cached);
    if (base_path.goto_path(folder) && use_config_folder) {
        base_path.move_down(CONFIG_FOLDER, true);
    }
}

CONFIG_FILE::~CONFIG_FILE() = default;

void CONFIG_FILE::set_filename(const char* name, bool is_cached) {
    KVCORE::copy_text_field(filename, name ? name : DEFAULT_NAME);
    // The disk manager opens files under such a name only.
    DISK_MANAGER::convert_illegal_chars(filename);
    cached = is_cached;
    keys.clear();
    sorted_count = 0;
    loaded_utf16 = false;
}

void CONFIG_FILE::delete_key(void* key) {
    delete static_cast<CONFIG_KEY*>(key);
}

int CONFIG_FILE::compare_keys(const void* left, const void* right) {
    const CONFIG_KEY* a = *static_cast<CONFIG_KEY* const*>(left);
    const CONFIG_KEY* b = *static_cast<CONFIG_KEY* const*>(right);
    return static_cast<std::int16_t>(std::strcmp(a->key, b->key));
}

CONFIG_FILE::CONFIG_KEY* CONFIG_FILE::key_at(std::int32_t index) const {
    return static_cast<CONFIG_KEY*>(keys[index]);
}

// Binary search of the sorted head of the list, then a scan of what was added since.
CONFIG_FILE::CONFIG_KEY* CONFIG_FILE::find_key(const char* key) const {
    const std::int32_t count = keys.get_count();
    const std::int32_t sorted = std::min(sorted_count, count);
    std::int32_t low = 0;
    std::int32_t high = sorted;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        if (std::strcmp(key_at(middle)->key, key) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    if (low < sorted && std::strcmp(key_at(low)->key, key) == 0) {
        return key_at(low);
    }
    for (std::int32_t i = sorted; i < count; i++) {
        if (std::strcmp(key_at(i)->key, key) == 0) {
            return key_at(i);
        }
    }
    return nullptr;
}

bool CONFIG_FILE::append_key(const CONFIG_KEY& key) {
    if (keys.is_empty()) {
        // The owner may have emptied the list.
        sorted_count = 0;
    }
    CONFIG_KEY* entry = new (std::nothrow) CONFIG_KEY(key);
    if (!entry || !keys.add(entry)) {
        delete entry;
        return false;
    }
    return true;
}

// Reads the next record. False at the end of the file; comments and empty lines go to `copy_to`.
bool CONFIG_FILE::read_key(TEXT_FILE& file, CONFIG_KEY& key, TEXT_FILE* copy_to) {
    char line[TEXT_FILE::default_line_limit];
    for (;;) {
        if (!(file >> line)) {
            return false;
        }
        if (*line && *line != '#') {
            break;
        }
        if (copy_to && !file.is_line_feed_tail()) {
            // A failure is remembered by the file and met at its end.
            *copy_to << line;
            *copy_to << "\n";
        }
    }
    copy_stripped(key.key, line);

    char c = 0;
    do {
        if (!(file >> c)) {
            CONFIG_WARNING("CONFIG_FILE::read_key() - unexpected end of file");
            return false;
        }
    } while (is_blank(c));
    key.value[0] = '\0';
    if (c != '\n') {
        char text[TEXT_FILE::default_line_limit + 1];
        text[0] = c;
        file >> &text[1];
        copy_stripped(key.value, text);
    }
    return true;
}

bool CONFIG_FILE::read_all_keys(const DISK_MANAGER& disk, bool warn) {
    keys.clear();
    sorted_count = 0;
    loaded_utf16 = false;
    TEXT_FILE* file = disk.open_text_file(filename, FILE_READ);
    if (!file) {
        if (warn) {
            CONFIG_WARNING("CONFIG_FILE::read_all_keys() - file open failed");
        }
        return !warn;
    }
    loaded_utf16 = file->is_utf16();
    bool complete = true;
    CONFIG_KEY key;
    while (read_key(*file, key, nullptr)) {
        if (!append_key(key)) {
            CONFIG_WARNING("CONFIG_FILE::read_all_keys() - file allocation failed");
            complete = false;
        }
    }
    complete = complete && !file->has_failed();
    DISK_MANAGER::close(file);
    if (!complete) {
        // A list without some of its keys must not be served, nor written over the file.
        keys.clear();
        return false;
    }
    keys.sort(compare_keys);
    sorted_count = keys.get_count();
    return true;
}

bool CONFIG_FILE::exists(const DISK_MANAGER& disk) {
    TEXT_FILE* file = disk.open_text_file(filename, FILE_READ);
    if (!file) {
        CONFIG_WARNING("CONFIG_FILE::exists() - open failed");
        return false;
    }
    DISK_MANAGER::close(file);
    return true;
}

bool CONFIG_FILE::read(const DISK_MANAGER& disk, const char* key, char* value) {
    if (value) {
        *value = '\0';
    }
    if (!key || !*key || !value) {
        CONFIG_WARNING("CONFIG_FILE::read() - invalid ID argument");
        return false;
    }
    if (cached) {
        if (keys.is_empty() && !read_all_keys(disk, true)) {
            return false;
        }
        if (const CONFIG_KEY* found = find_key(key)) {
            KVCORE::copy_text_field(value, value_size, found->value);
            return true;
        }
    } else {
        TEXT_FILE* file = disk.open_text_file(filename, FILE_READ);
        if (!file) {
            CONFIG_WARNING("CONFIG_FILE::read() - file open failed");
            return false;
        }
        CONFIG_KEY record;
        bool found = false;
        while (!found && read_key(*file, record, nullptr)) {
            found = std::strcmp(record.key, key) == 0;
        }
        DISK_MANAGER::close(file);
        if (found) {
            KVCORE::copy_text_field(value, value_size, record.value);
            return true;
        }
    }
    CONFIG_WARNING("CONFIG_FILE::read() - config file entry not found");
    return false;
}

bool CONFIG_FILE::read(const DISK_MANAGER& disk, const char* key, std::uint32_t& value, bool hex) {
    char text[value_size];
    if (!read(disk, key, text)) {
        return false;
    }
    parse_number(text, hex, value);
    return true;
}

bool CONFIG_FILE::read_all(const DISK_MANAGER& disk, READ_CALLBACK callback, void* user) {
    if (!callback) {
        CONFIG_WARNING("CONFIG_FILE::read_all() - invalid function pointer");
        return false;
    }
    if (cached) {
        if (keys.is_empty() && !read_all_keys(disk, true)) {
            return false;
        }
        std::vector<const CONFIG_KEY*> order;
        order.reserve(static_cast<std::size_t>(keys.get_count()));
        for (std::int32_t i = 0; i < keys.get_count(); i++) {
            order.push_back(key_at(i));
        }
        std::stable_sort(order.begin(), order.end(),
                         [](const CONFIG_KEY* left, const CONFIG_KEY* right) {
                             return std::strcmp(left->key, right->key) < 0;
                         });
        for (const CONFIG_KEY* entry : order) {
            callback(entry->key, entry->value, user);
        }
        return true;
    }
    TEXT_FILE* file = disk.open_text_file(filename, FILE_READ);
    if (!file) {
        CONFIG_WARNING("CONFIG_FILE::read_all() - file open failed");
        return false;
    }
    CONFIG_KEY record;
    while (read_key(*file, record, nullptr)) {
        callback(record.key, record.value, user);
    }
    DISK_MANAGER::close(file);
    return true;
}

bool CONFIG_FILE::write(const DISK_MANAGER& disk, const char* key, std::uint32_t value, bool hex) {
    char text[16];
    if (hex) {
        std::snprintf(text, sizeof text, "%" PRIX32, value);
    } else {
        std::snprintf(text, sizeof text, "%" PRId32, static_cast<std::int32_t>(value));
    }
    return write(disk, key, text);
}

bool CONFIG_FILE::write(const DISK_MANAGER& disk, const char* key, const char* value) {
    // What can't be read back as it is, is stored as it will be read back.
    CONFIG_KEY record;
    store_as_read(record.key, key);
    store_as_read(record.value, value);
    if (!*record.key) {
        CONFIG_WARNING("CONFIG_FILE::write() - invalid ID arguments");
        return false;
    }
    return cached ? write_cached(disk, record) : write_uncached(disk, record);
}

bool CONFIG_FILE::write_cached(const DISK_MANAGER& disk, const CONFIG_KEY& key) {
    if (!bulk_write) {
        // A file that is there and can't be read must not be replaced by a list without its keys.
        if (keys.is_empty() && !read_all_keys(disk, DISK_MANAGER::file_exists(disk, filename))) {
            return false;
        }
        if (CONFIG_KEY* found = find_key(key.key)) {
            *found = key;
            return write_all_keys(disk);
        }
    }
    if (!append_key(key)) {
        CONFIG_WARNING("CONFIG_FILE::write() - file allocation failed");
        return false;
    }
    return bulk_write || write_all_keys(disk);
}

bool CONFIG_FILE::write_uncached(const DISK_MANAGER& disk, const CONFIG_KEY& key) {
    TEXT_FILE* source = disk.open_text_file(filename, FILE_READ);
    TEXT_FILE* target = nullptr;
    if (source || !DISK_MANAGER::file_exists(disk, filename)) {
        target = open_beside(disk, source && source->is_utf16());
    }
    if (!target) {
        CONFIG_WARNING("CONFIG_FILE::write() - file open failed");
        DISK_MANAGER::close(source);
        return false;
    }
    bool replaced = false;
    bool written = true;
    if (source) {
        CONFIG_KEY record;
        while (written && read_key(*source, record, target)) {
            const bool match = std::strcmp(record.key, key.key) == 0;
            replaced = replaced || match;
            written = write_record(*target, record.key, match ? key.value : record.value);
        }
        written = written && !source->has_failed();
        DISK_MANAGER::close(source);
    }
    if (written && !replaced) {
        written = write_record(*target, key.key, key.value);
    }
    if (!finish_beside(disk, target, written)) {
        CONFIG_WARNING("CONFIG_FILE::write() - file write failed");
        return false;
    }
    return true;
}

bool CONFIG_FILE::write_all_keys(const DISK_MANAGER& disk) {
    TEXT_FILE* file = open_beside(disk, loaded_utf16);
    if (!file) {
        CONFIG_WARNING("CONFIG_FILE::write_all_keys() - file open failed");
        return false;
    }
    bool written = true;
    for (std::int32_t i = 0; written && i < keys.get_count(); i++) {
        written = write_record(*file, key_at(i)->key, key_at(i)->value);
    }
    if (!finish_beside(disk, file, written)) {
        CONFIG_WARNING("CONFIG_FILE::write_all_keys() - file write failed");
        return false;
    }
    return true;
}

// Opens the file beside for writing, with the access rights of the file that it will replace. Null
// also for a file that may not be written.
TEXT_FILE* CONFIG_FILE::open_beside(const DISK_MANAGER& disk, bool as_utf16) {
    const bool replaces = DISK_MANAGER::file_exists(disk, filename);
    if (replaces && DISK_MANAGER::is_read_only(disk, filename)) {
        return nullptr;
    }
    const std::string name = beside_name(filename);
    // What a killed run left may be anything, a read-only file or a link included.
    disk.remove(name.c_str(), true);
    TEXT_FILE* file = disk.open_text_file(name.c_str(), FILE_WRITE, as_utf16);
    struct stat status;
    if (file && replaces && ::stat(disk.get_path_string(filename), &status) == 0) {
        // Without them the file is still good, so a failure is no reason to lose the setting.
        (void)!::chmod(disk.get_path_string(name.c_str()), status.st_mode & 07777);
    }
    return file;
}

// Closes the file beside, and puts it in place if it was written whole; otherwise removes it.
bool CONFIG_FILE::finish_beside(const DISK_MANAGER& disk, TEXT_FILE*& file, bool written) {
    written = file->sync() && written;
    DISK_MANAGER::close(file);
    const std::string name = beside_name(filename);
    if (written && disk.move(name.c_str(), disk, filename)) {
        return true;
    }
    disk.remove(name.c_str(), true);
    return false;
}
