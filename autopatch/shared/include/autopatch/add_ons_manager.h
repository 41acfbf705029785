// ADD_ONS_MANAGER: the catalogue of add-ons.
//
// The singleton keeps what is installed, what the server offers now, what is mandatory and what the
// user has been shown. The installed and viewed lists are stored in "add_ons.bin" under "$ADD_ONS"
// and are checked against the disk. It can also walk a tree of add-on folders and make a catalogue
// of it.
//
// Threads: the lists are shared by the pool thread and the main thread; the launcher's patch mutex
// covers that use. `available_mutex` in addition guards `available` while a server list arrives.
#ifndef AUTOPATCH_ADD_ONS_MANAGER_H
#define AUTOPATCH_ADD_ONS_MANAGER_H

#include <cstdint>

#include "autopatch/add_on.h"
#include "autopatch/crc_info.h"
#include "modules/threading/mutex.h"
#include "platform/ptrarray.h"

class DATA_DEVICE;
class DISK_MANAGER;
class NETWORK_MESSAGE;

class ADD_ONS_MANAGER {
public:
    static constexpr std::uint32_t MAX_AVAILABLE = 1000;  // add-ons in one server list

    // Creates the singleton and loads the catalogue; nothing if it exists. With `verify` each
    // `save` checks the installed add-ons against the disk.
    static void startup(unsigned char verify);
    static void shutdown();
    // Null before startup and after shutdown.
    static ADD_ONS_MANAGER* get_instance();

    // An empty catalogue, which hasn't touched the disk yet. Outside of tests there is only the
    // singleton.
    ADD_ONS_MANAGER();
    ~ADD_ONS_MANAGER();
    ADD_ONS_MANAGER(const ADD_ONS_MANAGER&) = delete;
    ADD_ONS_MANAGER& operator=(const ADD_ONS_MANAGER&) = delete;

    // The content of "add_ons.bin": format, count and records of `installed`, count and records of
    // `viewed`. Writing yields 1 for success. Reading adds to the lists what can be read: a bad
    // record ends the first list, is left out of the second, and no count is believed beyond the
    // bytes that are there.
    unsigned char put_to_data_device(DATA_DEVICE& device) const;
    void get_from_data_device(const DATA_DEVICE& device);

    // Reads "add_ons.bin", once, and writes it back in the newest format. What can be read of a
    // damaged file stands.
    void initialise();
    // Writes "add_ons.bin": beside it first, flushed to the disk, then moved into place, so that
    // at any moment there is a complete file. False if that failed; the former file stays then.
    bool save();
    // Marks the add-on, or those of its leaves, for download whose folder is missing or holds
    // another version.
    void verify_installed_add_on_version(ADD_ON& add_on);

    // Reads the server's list of add-ons into `available`. On failure (a bad record, or a count
    // above MAX_AVAILABLE) the list is empty and the result false.
    bool set_available(std::uint16_t format, NETWORK_MESSAGE& message);

    // The only way into `installed`. Stores a deep copy of the whole top record that `add_on`
    // belongs to, in place of the record of the same path, unless that one has the same shape and
    // is newer. Saves unless `bulk`. `add_on` stays the caller's; if it was part of `installed`
    // itself, it is gone afterwards.
    void set_add_on(ADD_ON* add_on, unsigned char bulk);
    // Removes an installed record, which is deleted; with `delete_files` its folder as well. Saves
    // unless `no_save`.
    void remove_add_on(ADD_ON* add_on, unsigned char delete_files, unsigned char no_save);

    // The first installed record, or direct child of one, of that path or, with `by_title`, title.
    // Null if there is none. Deeper levels aren't searched.
    ADD_ON* get_add_on(const char* name, unsigned char by_title);
    // The add-on is neither installed nor has the user been shown it.
    bool new_add_on(ADD_ON* add_on);
    // Something is available that the user hasn't been shown.
    bool unviewed_available_add_ons();
    // Notes everything available as shown, and saves.
    void set_all_viewed();

    // The checksum of the add-on's archive for `platform`; 0 when there is none.
    std::uint32_t get_crc(ADD_ON* add_on, signed char platform);
    // The greatest size of the files in the folder of `disk` that end in "tar.gz"; 0 without any.
    std::uint32_t get_archive_size(DISK_MANAGER& disk);

    void clear_available();  // empties `mandatory` as well
    void clear_installed();  // and what refers to the installed records
    void clear_viewed();
    void clear_mandatory();
    void clear();

    // Makes a catalogue of the folder tree of published add-ons under `disk`, or "$ADD_ONS". The
    // file "mandatory_add_ons.txt" in "$APPDATA" names the mandatory ones by path, one a line.
    void get_list(DISK_MANAGER& disk);
    void get_list();

    // Writes the catalogue that a fresh installation ships with, from the build tree.
    void generate_data(bool generate_3d);
    // Walks a folder of finished add-ons of one type; the records found go into `installed`.
    void populate_server_add_ons(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type, ADD_ON* parent);
    // Makes a record of the folder under `disk` and puts it into `installed`. Null if the folder
    // holds no add-on. The record is owned by `parent` or, without one, by `installed`.
    ADD_ON* populate_server_add_on(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type, ADD_ON* parent);

    // All lists hold ADD_ON* but the one of checksums.
    PTRARRAY installed;  // owns the records that have no parent; the folder walk lists children too
    PTRARRAY available;  // owned
    PTRARRAY mandatory;  // not owned; points into `installed`
    PTRARRAY viewed;     // owned
    PTRARRAY crc_infos;  // CRC_INFO*, owned
    std::int32_t top_level_count = 0;
    bool initialised = false;
    bool verify_on_save = false;
    MUTEX available_mutex;

private:
    bool is_installed_record(const ADD_ON& add_on) const;
    // Takes a record and its descendants out of all lists that don't own them.
    void forget(const ADD_ON& add_on);
    void delete_add_on_files(const ADD_ON& add_on);
    void populate_folders(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type, ADD_ON* parent);
    void add_crc_info(DISK_MANAGER& disk, ADD_ON& add_on, signed char platform, const char* name);
    void add_crc_infos(DISK_MANAGER& disk, ADD_ON& add_on);
    void add_mandatory(ADD_ON& add_on);

    static ADD_ONS_MANAGER* instance;
};

#endif  // AUTOPATCH_ADD_ONS_MANAGER_H
