// ADD_ON: the unit of everything that can be installed or updated.
//
// One record describes the game client ("app"), a skin, or a miscellaneous package, which may be
// composed of sub-packages. The same record says what is installed, what the server offers and what
// the catalogue generator found, and travels between them in one binary form. Records form a tree:
// a parent owns its children, a child knows its parent. A parent with children has no archive of
// its own.
//
// No locks: a record belongs to whoever holds the lock of the list that it is in.
#ifndef AUTOPATCH_ADD_ON_H
#define AUTOPATCH_ADD_ON_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/image.h"
#include "platform/ptrarray.h"

class DATA_DEVICE;
class DISK_MANAGER;

class ADD_ON {
public:
    // Where each type is installed, below "$ADD_ONS":
    enum ADD_ON_TYPE : std::uint32_t {
        ADD_ON_APPLICATION = 0,  // "client", then "app_%ld" with the version
        ADD_ON_MISC = 1,         // the paths of the ancestors from the top, then the own path
        ADD_ON_SKIN = 2,         // "skins", then the path
    };

    static constexpr std::size_t PATH_SIZE = 128;  // of the fields, with terminator
    static constexpr std::size_t TITLE_SIZE = 64;
    static constexpr std::size_t DESCRIPTION_LINE_SIZE = 768;
    static constexpr std::uint16_t MAX_DESCRIPTION_LINES = 256;
    static constexpr std::uint32_t MAX_CHILDREN = 1000;  // of one record that is read
    static constexpr int MAX_DEPTH = 16;                 // levels below a top record

    // An empty record: not installed, to be downloaded, with an empty image.
    ADD_ON();
    // A deep copy of `source` with copies of its image and all its descendants. The copy has no
    // parent. A null source gives an empty record.
    explicit ADD_ON(const ADD_ON* source);
    ADD_ON(const ADD_ON&) = delete;
    ADD_ON& operator=(const ADD_ON&) = delete;
    ~ADD_ON();

    // The stored form. `format` is the number that stands in front of the records in a file or
    // message; PROTOCOL_VERSION is the newest. Both yield 1 for success.
    unsigned char put_to_data_device(std::uint16_t format, DATA_DEVICE& device) const;
    // Refuses unknown types, counts beyond the limits above, counts and picture sizes that the
    // bytes left in the device can't hold, and a path that isn't the name of one plain folder (see
    // is_plain_folder_name). After a failure the record is half filled and only good for deletion.
    unsigned char get_from_data_device(std::uint16_t format, const DATA_DEVICE& device);

    // Text is cut at the size of its field. `path` and `title` may not lie in this record.
    void set_path(const char* path);
    void set_title(const char* title);
    // What the user sees: the title, "Application" for the client.
    const char* get_shown_title() const;
    // Sets a line without touching description_count. An index beyond the last possible line is
    // ignored.
    void set_description_line(std::uint16_t index, const char* text);
    // Appends a line and counts it. A 257th line is ignored.
    void add_description_line(const char* text);
    // Null at or behind description_count. Valid until a line is set or added.
    const char* get_description_line(std::uint16_t index) const;

    // Refreshes this record from a newer one: version, minimum_version, file_size, title, path,
    // description, and the image if the source's isn't empty; then every child that has a
    // counterpart (by is_equal) in `source`. Children are neither added nor removed, and the flags
    // stay. A null source does nothing.
    void copy(const ADD_ON* source);

    // Takes `child` over, unless it is among the children already. Doesn't set the child's parent.
    void add_child(ADD_ON* child);
    // Makes this record, which must be on the heap, a child of `new_parent`, which owns it from now
    // on.
    void set_parent(ADD_ON& new_parent);
    std::int32_t get_child_count() const;
    // Null for an index out of range.
    ADD_ON* get_child(std::int32_t index) const;

    // The topmost ancestor, the record itself at the top.
    ADD_ON* get_top_level_parent();
    const ADD_ON* get_top_level_parent() const;
    // Bytes of the archives of this record and all its descendants (modulo 2^32).
    std::uint32_t get_file_size() const;
    // The add-on is the 3D match view or a part of it.
    bool requires_3d() const;

    // Each of these reaches the record and all its descendants.
    void set_enabled(bool on);
    bool get_enabled() const;
    void set_invalid();          // as the patch engine asks
    void mark_for_redownload();  // as the catalogue's check of the disk asks

    // Installed and not to be downloaded; with `recursive` all descendants as well.
    bool is_valid(bool recursive) const;
    // The record has been installed: clears invalid and sets enabled, and climbs the tree: each
    // ancestor becomes valid, and enabled if all its children are.
    void set_downloaded();

    // Same type and path.
    bool is_equal(const ADD_ON& other) const;
    // Same type, path and invalid flag, and each child of this record equals some child of `other`.
    // Only this side is walked.
    bool operator==(const ADD_ON& other) const;
    // Without children: a greater version. With children: some child is newer than the child of
    // `other` that equals it; the record's own version plays no part.
    bool is_newer_version(const ADD_ON& other) const;

    // Moves `disk`, which stands on "$ADD_ONS", to the folder of this add-on; see ADD_ON_TYPE. With
    // `create` the folder is emptied or made. False if a folder isn't there or can't be made, for
    // an unknown type, for a path that isn't a plain folder name, and for a miscellaneous add-on
    // that would take one of the catalogue's own folders or files.
    bool move_to_path(DISK_MANAGER& disk, bool create) const;
    // The same without the last step: moves to the folder that holds the folder of this add-on,
    // which `create` makes if it is missing.
    bool move_to_parent_path(DISK_MANAGER& disk, bool create) const;
    // The name of the folder of this add-on: "app_%ld" of the version, or the path.
    std::string get_folder_name() const;

    std::uint16_t version = 0;          // build number; 0 means not installed
    std::uint16_t minimum_version = 0;  // the oldest build that the server accepts as valid
    ADD_ON_TYPE type = ADD_ON_APPLICATION;
    bool invalid = true;  // to be downloaded
    bool enabled = false;
    char path[PATH_SIZE] = {};  // identity: folder and archive name, unique in a catalogue
    char title[TITLE_SIZE] = {};
    std::uint16_t description_count = 0;  // lines in use
    std::unique_ptr<IMAGE> image;         // never null
    std::uint32_t file_size = 0;          // bytes of the archive; 0 when not known
    ADD_ON* parent = nullptr;             // not owned; null at the top
    PTRARRAY children;                    // of ADD_ON*, owned

    // The delete function of lists that own their add-ons.
    static void delete_add_on_callback(void* add_on);

private:
    bool write(std::uint16_t format, DATA_DEVICE& device) const;
    bool write_description(std::uint16_t format, DATA_DEVICE& device) const;
    bool write_children(std::uint16_t format, DATA_DEVICE& device) const;
    bool read(std::uint16_t format, const DATA_DEVICE& device, int depth);
    bool read_identity(const DATA_DEVICE& device);
    bool read_description(std::uint16_t format, const DATA_DEVICE& device);
    bool read_children(std::uint16_t format, const DATA_DEVICE& device, int depth);
    const char* stored_line(std::uint16_t index) const;

    // Only the lines that were ever set; 256 full lines would be 192 KiB a record.
    std::vector<std::string> description;
};

// True if `name` can only mean one folder below the current one: not empty, not "." or "..", no
// "/", "\", ":" and no control character.
bool is_plain_folder_name(const char* name);

#endif  // AUTOPATCH_ADD_ON_H
