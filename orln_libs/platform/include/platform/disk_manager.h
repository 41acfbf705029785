// DISK_MANAGER: a cursor on a folder, through which everything touches the disk.
//
// A cursor is placed on a folder by a named root ("$ADD_ONS"), moved down and up by single names,
// and then opens, lists, copies or removes files by bare name inside that folder. Stored paths
// always start with a root word and are therefore portable between machines.
//
// Names: one component of at most 255 bytes, case sensitive. An empty name, ".", ".." and a name
// with a "/" are refused everywhere, except where open_file() and its kin replace the characters
// that not every system allows. What doesn't fit a cursor's 2048 bytes is refused, never cut.
//
// Results: true (1) for success; errno tells why an operation failed.
//
// Threads: a cursor is a value, each thread keeps its own. The texts that queries hand back lie
// in a buffer of the calling thread which the next such call overwrites: copy them at once.
//
// Every descriptor opened here is closed when another program is started.
#ifndef PLATFORM_DISK_MANAGER_H
#define PLATFORM_DISK_MANAGER_H

#include <cstdint>
#include <cstdio>

#include "platform/data_device_client.h"
#include "platform/file_mode.h"

class DATA_FILE;
class TEXT_FILE;
struct DM_FILE_INFO;

// The named roots, with their words in paths.
enum FOLDER_ID {
    FOLDER_BASE = 0,      // "$BASE": the folder that holds the application bundle
    FOLDER_APPDATA = 1,   // "$APPDATA": "data" beside or above the base folder
    FOLDER_USERDATA = 2,  // "$USERDATA": in the user's documents
    FOLDER_TEMP = 3,      // "$TEMP": in the user's preferences
    FOLDER_ADD_ONS = 4,   // "$ADD_ONS": in the user's preferences
};

class DISK_MANAGER : public DATA_DEVICE_CLIENT {
public:
    // Bytes of a cursor, and of every buffer that takes a path or a relative path.
    static constexpr int PATH_SIZE = 2048;
    // Bytes of a buffer that takes any name.
    static constexpr int NAME_SIZE = 256;

    // "$ADD_ONS" is the folder "add_ons" beside the base folder instead of the user's own. Set
    // before any use of that root.
    static bool use_local_add_ons_path;

    // Stands on the base folder.
    DISK_MANAGER() { get_base_dir(); }
    // Goes to a root, see goto_path().
    explicit DISK_MANAGER(FOLDER_ID folder) { goto_path(folder); }

    // A block of 2049 bytes: the marker 0xFF, then the relative path, zero-padded. Loading walks
    // that path without creating; any other marker is an older form whose block is a raw cursor.
    // A folder that no longer exists loads as the base folder, with success; only a failed read
    // of the device yields false.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    ~DISK_MANAGER() override = default;
    DISK_MANAGER(const DISK_MANAGER&) = default;
    DISK_MANAGER& operator=(const DISK_MANAGER&) = default;

    // The same folder, by device and inode; two cursors on folders that are gone are equal if
    // their paths are.
    bool operator==(const DISK_MANAGER& other) const;

    // --- Navigation ---

    // Goes to a root. "$USERDATA", "$TEMP" and "$ADD_ONS" are created where they are missing.
    // After a failure the cursor stands on the base folder. A value above 4 is fatal.
    bool goto_path(FOLDER_ID folder);

    // Places the cursor on the base folder: three levels above the folder of the executable.
    bool get_base_dir();

    // Names the base folder from outside, for tests and tools; the executable's place no longer
    // counts. Null goes back to that. False, with nothing changed, if it isn't a folder. Call
    // before other threads use cursors.
    static bool set_base_folder(const char* path);

    // Goes into a child. Links are followed: the cursor ends on the real folder. `create` makes a
    // folder that doesn't exist. With `whole_path` the name is an absolute path, of which nothing
    // is created. A failure leaves the cursor where it was.
    bool move_down(const char* name, bool create = false, bool whole_path = false);

    // Goes to the parent; false at the top, where the cursor stays.
    bool move_up();
    void move_to_top();

    // Goes to a stored path such as "$APPDATA/skins/default". Root words are recognised by prefix.
    // A component that fails doesn't stop the walk, but makes the result false. A text without a
    // root word, or with a root that can't be reached, goes to the base folder and fails.
    bool set_relative_path(const char* path, bool create = false);

    // From the current folder: one move_up() for each "../", then down through the remaining
    // components, which may be split by ":", "/" and "\\". Ends at the first move that fails.
    bool navigate_to_relative_path(const char* path, bool create = false);

    // The stored path of a folder, the reverse of set_relative_path(), into PATH_SIZE bytes. A
    // folder below no root comes out as "$ROOT%d" and its whole path. False, with an empty text,
    // if that doesn't fit.
    bool get_relative_path(char* out) const { return calc_relative_path(out, *this); }
    static bool calc_relative_path(char* out, DISK_MANAGER cursor);

    // Takes a raw cursor of PATH_SIZE bytes, as get_path() gives it; goes to the top and yields
    // false if validate_path() refuses it.
    bool set_path(const void* raw);
    // The raw block names a folder that exists.
    static bool validate_path(const void* raw);
    // The raw cursor: the folder's absolute path, zero-padded to PATH_SIZE bytes.
    const char* get_path() const { return path; }

    // --- Information ---

    // The full path of the folder, and with a name, "/" and that name. Empty if the folder is gone
    // or the text has no room in PATH_SIZE bytes.
    char* get_path_string(const char* filename = nullptr) const;

    // The last component of the path, split at ":", "/" and "\\"; empty at the top.
    char* get_directory_name() const;

    // The name exists in that folder, as a file or a folder.
    static bool file_exists(const DISK_MANAGER& disk, const char* name);

    // Lists the folders or the files here, in the system's order. Without `append` the list starts
    // anew (an earlier block is not freed); with it the entries are added behind `count`. The
    // block belongs to the caller: free_list(). `show_hidden`: also names that begin with ".".
    // `suffix`: only names that end in exactly this text. `progress(user)` is called whenever the
    // block grows. Links count as what they lead to; pipes, sockets, devices and links that lead
    // nowhere are no files. False if the folder can't be read.
    bool get_dir_list(bool directories, bool show_hidden, bool append, DM_FILE_INFO*& list,
                      std::int32_t& count, const char* suffix = nullptr,
                      void (*progress)(void* user) = nullptr, void* user = nullptr) const;
    static void free_list(DM_FILE_INFO*& list);

    // Sorts a list by name, byte by byte, or by date, oldest first.
    static void sort_file_list_by_name(DM_FILE_INFO* list, std::int32_t count);
    static void sort_list_by_date(DM_FILE_INFO* list, std::int32_t count);
    // Their qsort functions, which put a null entry last.
    static int compare_filenames(const void* left, const void* right);
    static int sort_file_info_by_date(const void* left, const void* right);

    // Seconds since 1970 of a file's last change; 0 if there is no such file.
    static std::int64_t get_file_date(const DISK_MANAGER& disk, const char* name);

    // Volumes. There is one, with index 0: the root "/" of the file system.
    static std::int16_t get_drive_count();
    static const char* get_drive_name(std::int16_t index);  // null for an index that doesn't exist
    std::int16_t get_current_drive() const;
    bool change_to_drive(std::int16_t index);

    // A list of one entry: display name "Documents", name the path of the user's documents folder,
    // folder the one that holds it. Empty, and false, if there is none or its path is longer than
    // a name can be.
    static bool get_special_os_folder_list(DM_FILE_INFO*& list, std::int32_t& count);

    // --- Files ---

    // Null on failure. Characters as in convert_illegal_chars() are replaced in a copy of the
    // name. Writing and appending never follow a link.
    //
    // Text: `utf16` holds for FILE_WRITE, and starts the file with the mark FF FE; the other modes
    // recognise either mark. FILE_APPEND creates a missing file, and refuses one with the mark
    // FE FF.
    TEXT_FILE* open_text_file(const char* name, FILE_MODE mode, bool utf16 = false) const;
    // Data: `byte_order` is a BYTEORDER_TYPE; -1 keeps the order in the file's first byte.
    // FILE_APPEND creates a missing file and stands at the end of what is there. `cache_size` in
    // bytes, -1 for the usual one.
    DATA_FILE* open_data_file(const char* name, FILE_MODE mode, std::int32_t byte_order,
                              std::int32_t cache_size = -1) const;
    // A stream with an fopen mode, owned by the caller. convert_illegal_chars() is applied to the
    // caller's own buffer. Only modes that begin with "w" or "r+" create a missing file.
    std::FILE* open_file(char* name, const char* mode) const;

    // Close, destroy and set to null; a null pointer is ignored. False if a write to the data file
    // has failed, now or before.
    static void close(TEXT_FILE*& file);
    static bool close(DATA_FILE*& file);

    // Deletes a file, or a link itself. A read-only file only with `force`.
    bool remove(const char* name, bool force = false) const;

    // Removes an empty folder: 0 for success, else -1, as the system's rmdir.
    int rmdir(const char* name) const;

    // Moves and renames a file or a folder in one step, replacing a file that has the target name.
    // A null or empty `target_name` keeps the name. Between devices it copies, waits until the copy
    // is on the disk, and then deletes the source.
    bool move(const char* name, const DISK_MANAGER& target,
              const char* target_name = nullptr) const;

    // Puts the folder `name` in the place of the folder `target_name` in one step: at no moment is
    // the target missing. The old content, if there was any, stands under the source name
    // afterwards. Where the file system can't exchange two folders the old one is put aside
    // first, and back if the rest fails. Both cursors must be on one device.
    bool replace_folder(const char* name, const DISK_MANAGER& target,
                        const char* target_name) const;

    // Waits until all that was written to the file system of this folder, contents and names, is on
    // the disk, so that a loss of power can't undo it; for many files that is far quicker than one
    // by one. May take seconds. False if the folder is gone or something could not be stored.
    bool flush_file_system() const;

    // Copies a file with its mode and date, replacing a target file only once the copy is whole and
    // on the disk. A null or empty `target_name` keeps the name. A file is not copied onto itself.
    bool copy(const char* name, const DISK_MANAGER& target,
              const char* target_name = nullptr) const;

    // The lock mark of a file: its owner may not write.
    static bool is_read_only(const DISK_MANAGER& disk, const char* name);
    static bool set_is_read_only(const DISK_MANAGER& disk, const char* name, bool on);

    // Deletes the folder `name` with all that is in it, read-only or not. Links are removed, never
    // followed. 0 if the folder is not there or is gone afterwards, else -1.
    static int delete_tree(const DISK_MANAGER& cursor, const char* name);

    // Copies all files and folders below `source` into `target`; ends at the first failure. Refuses
    // a target inside the source, and a link that leads back to a folder it lies in.
    static bool copy_tree(const DISK_MANAGER& source, const DISK_MANAGER& target);

    // Replaces each of : / \ " * ? < > | by "_", in place. Null is ignored.
    static void convert_illegal_chars(char* name);

private:
    bool goto_os_path(FOLDER_ID folder);
    bool goto_app_data();
    bool goto_add_ons();
    bool set_real_path(const char* real_path);
    bool move_to_whole_path(const char* whole_path);

    char path[PATH_SIZE];  // absolute, free of links; all bytes behind the text are 0
};

#endif  // PLATFORM_DISK_MANAGER_H
