// CONFIG_FILE: a store of settings, a text file of keys and values that a person can read and edit.
//
// The file holds a record per two lines: the key line, then the value line, which the system writes
// with a tab in front. Lines that begin with "#" in column 0 and empty lines are passed over where
// a key is expected. Blanks round keys and values are dropped. Keys are case sensitive, of at most
// 79 characters; values have at most 255. A line of more than 255 characters continues as a further
// line. Line ends of every platform and UTF-16 with a byte order mark are read alike.
//
// Every operation is given the cursor of the folder that holds the file; an object never names a
// full path. Files are written beside, under the name plus ".tmp", and then renamed: whenever the
// process ends, the folder holds the old file or the new one, whole. A ".tmp" that a killed run
// left is overwritten by the next write. A failed write leaves the old file as it was.
//
// Nothing raises an error: a failure yields false, with a message to platform_debug_stream. No
// lock: an object is used by one thread at a time.
#ifndef PLATFORM_CONFIG_FILE_H
#define PLATFORM_CONFIG_FILE_H

#include <cstdint>

#include "platform/disk_manager.h"
#include "platform/ptrarray.h"

class TEXT_FILE;

class CONFIG_FILE {
public:
    static constexpr int key_size = 80;
    static constexpr int value_size = 256;

    // One record in memory.
    struct CONFIG_KEY {
        char key[key_size];
        char value[value_size];
    };

    // Receives the records of read_all; it must not change the object.
    using READ_CALLBACK = void (*)(const char* key, const char* value, void* user);

    // The file "settings" in `folder`, or with `use_config_folder` in its folder "config", which is
    // created. `cached`: keys are read once and served from memory.
    CONFIG_FILE(bool cached, FOLDER_ID folder, bool use_config_folder);
    // The same with a file name; null means "settings".
    CONFIG_FILE(const char* name, bool cached, FOLDER_ID folder, bool use_config_folder);
    ~CONFIG_FILE();
    CONFIG_FILE(const CONFIG_FILE&) = delete;
    CONFIG_FILE& operator=(const CONFIG_FILE&) = delete;

    // Another file name (null means "settings") and `cached` flag; empties the list.
    void set_filename(const char* name, bool cached);

    // The file can be opened for reading.
    bool exists(const DISK_MANAGER& disk);

    // Copies the value of `key` into `value`, which must hold value_size bytes and is emptied
    // first. False when the key or the file is absent.
    bool read(const DISK_MANAGER& disk, const char* key, char* value);

    // The same as a number in decimal ("%ld") or hexadecimal ("%lX"). True when the key is there;
    // `value` stays as it was when the key is absent or its value isn't a number. Numbers beyond 32
    // bits are limited.
    bool read(const DISK_MANAGER& disk, const char* key, std::uint32_t& value, bool hex = false);

    // Calls `callback` for every record: in file order when not cached, in the order of the keys
    // when cached.
    bool read_all(const DISK_MANAGER& disk, READ_CALLBACK callback, void* user);

    // Stores a value; null stores an empty one. Cached: the list is loaded if it is empty, the
    // value is replaced or a new key appended, and the whole file is written from the list, without
    // the comments it had. Not cached: every record of that key is replaced in the file, or one
    // added at its end, and all else is kept, comments and blank lines included. With bulk_write
    // the record is only appended to the list. Keys and values are stored as they will be
    // read back: stripped, cut, and with blanks for line ends. A key of blanks is invalid.
    bool write(const DISK_MANAGER& disk, const char* key, const char* value);
    // The same for a number, in decimal ("%ld", signed) or hexadecimal ("%lX").
    bool write(const DISK_MANAGER& disk, const char* key, std::uint32_t value, bool hex = false);

    // Writes the whole file from the list, in list order.
    bool write_all_keys(const DISK_MANAGER& disk);

    // Loads the list from the file and sorts it. A missing file yields an empty list, and false
    // with a message if `warn` is set. A file that can't be read to its end yields an empty list
    // and false.
    bool read_all_keys(const DISK_MANAGER& disk, bool warn);

    // The folder that the constructor went to.
    DISK_MANAGER& get_base_path() { return base_path; }
    const char* get_filename() const { return filename; }

    // The list's functions: frees a CONFIG_KEY; orders pointers to CONFIG_KEY pointers by the key.
    static void delete_key(void* key);
    static int compare_keys(const void* left, const void* right);

    // The records, owned. A caller empties it before a block of bulk writes.
    PTRARRAY keys;
    // `write` changes only the list, appending each record as it comes, until write_all_keys. Has
    // no effect on an object that isn't cached.
    bool bulk_write = false;

private:
    bool read_key(TEXT_FILE& file, CONFIG_KEY& key, TEXT_FILE* copy_to);
    CONFIG_KEY* key_at(std::int32_t index) const;
    CONFIG_KEY* find_key(const char* key) const;
    bool append_key(const CONFIG_KEY& key);
    bool write_cached(const DISK_MANAGER& disk, const CONFIG_KEY& key);
    bool write_uncached(const DISK_MANAGER& disk, const CONFIG_KEY& key);
    TEXT_FILE* open_beside(const DISK_MANAGER& disk, bool as_utf16);
    bool finish_beside(const DISK_MANAGER& disk, TEXT_FILE*& file, bool written);

    char filename[256];
    bool cached;
    bool use_config_folder;
    DISK_MANAGER base_path;
    // How many entries at the head of the list are sorted; keys added since the load lie behind.
    std::int32_t sorted_count = 0;
    // The file that was loaded is in UTF-16, and stays so when it is written.
    bool loaded_utf16 = false;
};

#endif  // PLATFORM_CONFIG_FILE_H
