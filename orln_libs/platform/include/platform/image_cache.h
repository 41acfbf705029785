// IMAGE_CACHE: loaded pictures, shared between style sets, and their form in a compiled skin.
//
//     IMAGE* picture = cache.open_image("$APPDATA/skins/default/images", "arrow", -1, -1, 0, 1);
//     ...
//     cache.close(picture);
//
// The cache owns every entry, and an entry its picture, whose `cache_entry` leads back to it. Each
// picture handed out is counted and must be closed; the operations that take an `IMAGE*&` may put
// another picture in its place. A picture that isn't the cache's own (`cache_entry` null), or a
// null one, is left alone by all of them.
//
// For the main thread only.
#ifndef PLATFORM_IMAGE_CACHE_H
#define PLATFORM_IMAGE_CACHE_H

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/image.h"
#include "platform/ptrarray.h"

struct CACHE_ENTRY {
    static constexpr std::size_t PATH_SIZE = 2048;
    static constexpr std::size_t NAME_SIZE = 256;
    static constexpr std::uint16_t MAX_USES = 65535;

    CACHE_ENTRY() = default;
    CACHE_ENTRY(const CACHE_ENTRY&) = delete;
    CACHE_ENTRY& operator=(const CACHE_ENTRY&) = delete;

    char path[PATH_SIZE] = {};      // a stored path, as DISK_MANAGER::get_relative_path gives it
    char filename[NAME_SIZE] = {};  // with or without its extension, as it was asked for
    std::int16_t width = 0, height = 0;            // the size asked for
    std::int16_t orig_width = 0, orig_height = 0;  // the size as loaded; 0 after a failed load
    IMAGE image;
    CACHE_ENTRY* owner = this;
    std::uint16_t use_count = 0;  // stays for good once it has reached MAX_USES
    bool custom = false;          // a private copy, never shared
    bool stale = false;           // to go when the last user leaves
    // What the whole picture has been recoloured to in place, if it hasn't changed since.
    std::optional<COLOUR> tint;

    bool is_original_size() const { return width == orig_width && height == orig_height; }
    bool is_shareable() const { return !custom && !stale; }
    bool is_failure() const { return orig_width == 0 || orig_height == 0; }

    // One user more or less. Beyond MAX_USES they can't be told apart any more, and the entry is
    // never given up.
    void add_use() {
        if (use_count < MAX_USES) {
            ++use_count;
        }
    }
    void drop_use() {
        if (use_count > 0 && use_count < MAX_USES) {
            --use_count;
        }
    }
};

class IMAGE_CACHE : public DATA_DEVICE_CLIENT {
public:
    // Flags of open_image.
    enum OPEN_FLAG : unsigned char {
        FORGET_FAILURE = 1,   // a failed load keeps no entry
        RELOAD = 2,           // an entry that is found is read from disk again
        EXACT_SIZE = 4,       // a picture that is loaded keeps the file's size
        NEVER_FROM_DISK = 8,  // only what the cache has
    };

    // The most entries that are read from a device.
    static constexpr std::uint32_t MAX_STORED_ENTRIES = 16384;

    IMAGE_CACHE();
    ~IMAGE_CACHE() override;
    IMAGE_CACHE(const IMAGE_CACHE&) = delete;
    IMAGE_CACHE& operator=(const IMAGE_CACHE&) = delete;

    // The stored form: a byte 2, a 32-bit count of the entries that are neither custom nor stale,
    // and for each: path and file name as dynamic text, width, height, original width and height as
    // 16-bit numbers, the picture. Version 1, which is read too, has a DISK_MANAGER record for the
    // path. 1 for success.
    //
    // Before reading, unused entries go and used ones become stale. A failed read leaves the
    // entries before the failure. The sizes of an entry are those of its picture, whatever the
    // numbers say, and an original size that no file can have is taken to be that, too.
    // `loading_callback`, if set, runs before each entry.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

    void (*loading_callback)(void* data) = nullptr;
    void* loading_callback_data = nullptr;

    // The picture `name` of the folder with the stored path `path`, at a size; IMAGE::NO_SIZE or -1
    // on both sides means any, preferably the file's own. A picture that the cache has at another
    // size is scaled from that, with `resize_type` as the argument `smooth` of IMAGE::resize; only
    // a file that it doesn't have at all is read. Null if there is none. That a file couldn't be
    // read is remembered, until it is asked for with RELOAD, unless FORGET_FAILURE or
    // `discard_unused` is set. While the pictures take `max_picture_bytes` or more, no file is
    // read; its name is traced then.
    IMAGE* open_image(const char* path, const char* name, std::int32_t width, std::int32_t height,
                      unsigned char flags, unsigned char resize_type);

    // Gives up one use. The entry goes with its last use if `discard_unused` is set or it is stale
    // or custom.
    void close(IMAGE* image);
    // One more user of a picture; yields it.
    IMAGE* duplicate(IMAGE* image);

    // Removes the unused entries of a file name, in one folder or in all; used ones become stale.
    void unload(const char* name);
    void unload(const char* path, const char* name);
    // Does that to every entry.
    void soft_clear();

    // Reads every entry, or one, from disk again, at the size it has. An entry whose file can't be
    // read keeps its picture.
    void reload();
    void reload(IMAGE* image);

    // Gives one user another size of a picture, without touching what other users see: another
    // entry of that size, the user's own entry resized, or a new one. A negative size does nothing;
    // 0 makes an empty picture, except of a custom one.
    void resize_image(IMAGE*& image, std::int32_t width, std::int32_t height, unsigned char type);
    // Makes a picture one user's own, so that it can be changed. With `recolour_in_place` set
    // nothing happens, and the change is seen by all.
    void make_custom(IMAGE*& image);

    // make_custom, then the operation of IMAGE. In place a picture takes a tint once, however many
    // of its users ask for it: rounding would make it darker each time.
    void recolour(IMAGE*& image, COLOUR colour);
    void recolour_channel(IMAGE*& image, COLOUR colour, char channel);
    void replace_colour(IMAGE*& image, COLOUR from, COLOUR to, unsigned char keep_alpha = 0);
    void set_trialpha_colours(IMAGE*& image, COLOUR red, COLOUR green, COLOUR blue);
    void make_grey(IMAGE*& image);

    // The size of the file's picture; 0 for a picture that isn't the cache's.
    std::int16_t get_image_orig_width(const IMAGE* image) const;
    std::int16_t get_image_orig_height(const IMAGE* image) const;

    // By path, then by file name, as strcmp does; for PTRARRAY.
    static int compare_cache_entries_callback(const void* a, const void* b);

    PTRARRAY entries;  // of CACHE_ENTRY*, sorted by compare_cache_entries_callback
    bool discard_unused = false;
    bool recolour_in_place = false;
    // Small files can hold large pictures, and a folder can hold any number of them. What no skin
    // comes near to.
    std::int64_t max_picture_bytes = std::int64_t{1} << 30;

private:
    struct RANGE {
        std::int32_t first, last;
    };

    CACHE_ENTRY* entry_at(std::int32_t index) const {
        return static_cast<CACHE_ENTRY*>(entries[index]);
    }
    RANGE find_entries(const char* path, const char* name) const;
    CACHE_ENTRY* get_entry(const IMAGE* image) const;
    CACHE_ENTRY* find_match(RANGE range, std::int32_t width, std::int32_t height) const;
    CACHE_ENTRY* find_source(RANGE range) const;
    CACHE_ENTRY* find_failure(RANGE range) const;
    bool is_full() const;
    CACHE_ENTRY* load_new(const char* path, const char* name, std::int32_t width,
                          std::int32_t height, unsigned char flags);
    CACHE_ENTRY* add_entry(const char* path, const char* name);
    CACHE_ENTRY* add_copy(const CACHE_ENTRY& source);
    CACHE_ENTRY* add_scaled(const CACHE_ENTRY& source, std::int32_t width, std::int32_t height,
                            unsigned char smooth);
    bool insert_entry(std::unique_ptr<CACHE_ENTRY>& entry);
    void remove_entry(CACHE_ENTRY* entry);
    void release(CACHE_ENTRY& entry);
    void retire(std::int32_t index);
    template <class OPERATION>
    void change(IMAGE*& image, OPERATION operation);
    static bool load_entry(CACHE_ENTRY& entry, std::int32_t width, std::int32_t height);
    static void set_size_of_entry(CACHE_ENTRY& entry);
    unsigned char read_entry(const DATA_DEVICE& device, unsigned char version);
};

#endif  // PLATFORM_IMAGE_CACHE_H
