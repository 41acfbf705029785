#include "platform/image_cache.h"

#include <cstring>
#include <memory>
#include <new>

#include "kvcore/text_field.h"
#include "picture_decode.h"
#include "platform/data_device.h"
#include "platform/disk_manager.h"

namespace {

constexpr unsigned char STORED_FORM_VERSION = 2;
// Two empty texts, four sizes, an empty picture.
constexpr std::int64_t LEAST_ENTRY_BYTES = 4 + 4 + 4 * 2 + 5;
// The channel of IMAGE::recolour_channel that stands for all.
constexpr char EVERY_PIXEL = 3;

bool is_given(std::int32_t side) {
    return side >= 0 && side != IMAGE::NO_SIZE;
}

int compare_with(const CACHE_ENTRY& entry, const char* path, const char* name) {
    const int by_path = std::strcmp(entry.path, path);
    return by_path != 0 ? by_path : std::strcmp(entry.filename, name);
}

const char* text_or_empty(const char* text) {
    return text ? text : "";
}

}  // namespace

int IMAGE_CACHE::compare_cache_entries_callback(const void* a, const void* b) {
    const CACHE_ENTRY* left = *static_cast<CACHE_ENTRY* const*>(a);
    const CACHE_ENTRY* right = *static_cast<CACHE_ENTRY* const*>(b);
    return compare_with(*left, right->path, right->filename);
}

IMAGE_CACHE::IMAGE_CACHE()
    : entries(64, 0, delete_entry<CACHE_ENTRY>, compare_cache_entries_callback) {
}

IMAGE_CACHE::~IMAGE_CACHE() = default;

// --- Entries ---

CACHE_ENTRY* IMAGE_CACHE::get_entry(const IMAGE* image) const {
    return image ? static_cast<CACHE_ENTRY*>(image->cache_entry) : nullptr;
}

// The entries of one file, first to last - 1.
IMAGE_CACHE::RANGE IMAGE_CACHE::find_entries(const char* path, const char* name) const {
    // PTRARRAY compares entries with entries, so the key has to look like one.
    CACHE_ENTRY key;
    KVCORE::copy_text_field(key.path, path);
    KVCORE::copy_text_field(key.filename, name);
    const std::int32_t found = entries.find(&key);
    if (found < 0) {
        return {0, 0};
    }
    const auto is_same = [&](std::int32_t i) {
        return compare_with(*entry_at(i), key.path, key.filename) == 0;
    };
    RANGE range = {found, found + 1};
    while (range.first > 0 && is_same(range.first - 1)) {
        --range.first;
    }
    while (range.last < entries.get_count() && is_same(range.last)) {
        ++range.last;
    }
    return range;
}

// An entry that can be shared and has the size; without one, preferably that of the file.
CACHE_ENTRY* IMAGE_CACHE::find_match(RANGE range, std::int32_t width, std::int32_t height) const {
    CACHE_ENTRY* match = nullptr;
    for (std::int32_t i = range.first; i < range.last; ++i) {
        CACHE_ENTRY* entry = entry_at(i);
        if (entry->is_shareable() && !entry->is_failure() &&
            (!is_given(width) || entry->width == width) &&
            (!is_given(height) || entry->height == height) &&
            (!match || entry->is_original_size())) {
            match = entry;
        }
    }
    return match;
}

// What another size can be made from: an entry with a picture, preferably of the file's size.
CACHE_ENTRY* IMAGE_CACHE::find_source(RANGE range) const {
    CACHE_ENTRY* source = nullptr;
    for (std::int32_t i = range.first; i < range.last; ++i) {
        CACHE_ENTRY* entry = entry_at(i);
        if (entry->is_shareable() && entry->image.pixels &&
            (!source || entry->is_original_size())) {
            source = entry;
        }
    }
    return source;
}

CACHE_ENTRY* IMAGE_CACHE::find_failure(RANGE range) const {
    for (std::int32_t i = range.first; i < range.last; ++i) {
        CACHE_ENTRY* entry = entry_at(i);
        if (entry->is_shareable() && entry->is_failure()) {
            return entry;
        }
    }
    return nullptr;
}

bool IMAGE_CACHE::is_full() const {
    std::int64_t bytes = 0;
    for (std::int32_t i = 0; i < entries.get_count(); ++i) {
        const IMAGE& image = entry_at(i)->image;
        bytes += std::int64_t{image.stride} * image.height * std::int64_t{sizeof(COLOUR)};
    }
    return bytes >= max_picture_bytes;
}

// Takes ownership, and keeps the array sorted.
bool IMAGE_CACHE::insert_entry(std::unique_ptr<CACHE_ENTRY>& entry) {
    if (!entry || !entries.add(entry.get())) {
        return false;
    }
    CACHE_ENTRY* added = entry.release();
    added->image.cache_entry = added;
    void** data = entries.get_data();
    std::int32_t place = 0;
    for (std::int32_t end = entries.get_count() - 1; place < end;) {
        const std::int32_t middle = place + (end - place) / 2;
        if (compare_with(*entry_at(middle), added->path, added->filename) <= 0) {
            place = middle + 1;
        } else {
            end = middle;
        }
    }
    std::memmove(data + place + 1, data + place,
                 static_cast<std::size_t>(entries.get_count() - 1 - place) * sizeof(void*));
    data[place] = added;
    return true;
}

CACHE_ENTRY* IMAGE_CACHE::add_entry(const char* path, const char* name) {
    std::unique_ptr<CACHE_ENTRY> entry(new (std::nothrow) CACHE_ENTRY);
    if (!entry) {
        return nullptr;
    }
    KVCORE::copy_text_field(entry->path, path);
    KVCORE::copy_text_field(entry->filename, name);
    CACHE_ENTRY* added = entry.get();
    return insert_entry(entry) ? added : nullptr;
}

CACHE_ENTRY* IMAGE_CACHE::add_scaled(const CACHE_ENTRY& source, std::int32_t width,
                                     std::int32_t height, unsigned char smooth) {
    CACHE_ENTRY* entry = add_entry(source.path, source.filename);
    if (entry) {
        entry->image.resize_from(source.image, width, height, smooth);
        set_size_of_entry(*entry);
        entry->orig_width = source.orig_width;
        entry->orig_height = source.orig_height;
    }
    return entry;
}

CACHE_ENTRY* IMAGE_CACHE::add_copy(const CACHE_ENTRY& source) {
    CACHE_ENTRY* entry = add_entry(source.path, source.filename);
    if (entry) {
        entry->image.copy_pixels_from(source.image);
        entry->width = source.width;
        entry->height = source.height;
        entry->orig_width = source.orig_width;
        entry->orig_height = source.orig_height;
    }
    return entry;
}

void IMAGE_CACHE::remove_entry(CACHE_ENTRY* entry) {
    const RANGE range = find_entries(entry->path, entry->filename);
    for (std::int32_t i = range.first; i < range.last; ++i) {
        if (entries[i] == entry) {
            entries.remove(i);
            return;
        }
    }
}

void IMAGE_CACHE::set_size_of_entry(CACHE_ENTRY& entry) {
    entry.width = entry.image.width;
    entry.height = entry.image.height;
}

bool IMAGE_CACHE::load_entry(CACHE_ENTRY& entry, std::int32_t width, std::int32_t height) {
    DISK_MANAGER disk;
    if (!disk.set_relative_path(entry.path)) {
        return false;
    }
    // Beside the entry's picture, so that a failure leaves that as it is.
    IMAGE loaded;
    if (!loaded.load(disk, entry.filename)) {
        return false;
    }
    const std::int16_t natural_width = loaded.width;
    const std::int16_t natural_height = loaded.height;
    const bool is_other_size = (is_given(width) && width != natural_width) ||
                               (is_given(height) && height != natural_height);
    if (is_other_size && !loaded.load(disk, entry.filename, width, height)) {
        return false;
    }
    if (!loaded.pixels) {
        return false;
    }
    entry.image.copy_pixels_from(loaded);
    entry.tint.reset();
    entry.orig_width = natural_width;
    entry.orig_height = natural_height;
    set_size_of_entry(entry);
    return true;
}

// --- Opening and closing ---

IMAGE* IMAGE_CACHE::open_image(const char* path, const char* name, std::int32_t width,
                               std::int32_t height, unsigned char flags,
                               unsigned char resize_type) {
    path = text_or_empty(path);
    name = text_or_empty(name);
    if (*name == '\0') {
        return nullptr;
    }
    const RANGE range = find_entries(path, name);
    const bool may_read = (flags & NEVER_FROM_DISK) == 0;
    CACHE_ENTRY* entry = find_match(range, width, height);
    if (entry) {
        if (may_read && (flags & RELOAD)) {
            reload(&entry->image);
        }
    } else if (const CACHE_ENTRY* source = find_source(range)) {
        entry = add_scaled(*source, width, height, resize_type);
    } else if (may_read) {
        const bool keeps_size = (flags & EXACT_SIZE) != 0;
        entry = load_new(path, name, keeps_size ? IMAGE::NO_SIZE : width,
                         keeps_size ? IMAGE::NO_SIZE : height, flags);
    }
    if (!entry) {
        return nullptr;
    }
    entry->add_use();
    return &entry->image;
}

CACHE_ENTRY* IMAGE_CACHE::load_new(const char* path, const char* name, std::int32_t width,
                                   std::int32_t height, unsigned char flags) {
    CACHE_ENTRY* entry = find_failure(find_entries(path, name));
    if (entry && !(flags & RELOAD)) {
        return nullptr;  // it couldn't be read before
    }
    if (is_full()) {
        trace_refused_file("picture", name, "the pictures take too much memory already");
        return nullptr;
    }
    if (!entry) {
        entry = add_entry(path, name);
    }
    if (!entry || load_entry(*entry, width, height)) {
        return entry;
    }
    if (discard_unused || (flags & FORGET_FAILURE)) {
        remove_entry(entry);
    }
    return nullptr;
}

void IMAGE_CACHE::release(CACHE_ENTRY& entry) {
    entry.drop_use();
    if (entry.use_count == 0 && (discard_unused || entry.stale || entry.custom)) {
        remove_entry(&entry);
    }
}

void IMAGE_CACHE::close(IMAGE* image) {
    if (CACHE_ENTRY* entry = get_entry(image)) {
        release(*entry);
    }
}

IMAGE* IMAGE_CACHE::duplicate(IMAGE* image) {
    if (CACHE_ENTRY* entry = get_entry(image)) {
        entry->add_use();
    }
    return image;
}

void IMAGE_CACHE::retire(std::int32_t index) {
    CACHE_ENTRY* entry = entry_at(index);
    if (entry->use_count == 0) {
        entries.remove(index);
    } else {
        entry->stale = true;
    }
}

void IMAGE_CACHE::soft_clear() {
    for (std::int32_t i = entries.get_count(); i-- > 0;) {
        retire(i);
    }
}

void IMAGE_CACHE::unload(const char* name) {
    name = text_or_empty(name);
    for (std::int32_t i = entries.get_count(); i-- > 0;) {
        if (std::strcmp(entry_at(i)->filename, name) == 0) {
            retire(i);
        }
    }
}

void IMAGE_CACHE::unload(const char* path, const char* name) {
    const RANGE range = find_entries(text_or_empty(path), text_or_empty(name));
    for (std::int32_t i = range.last; i-- > range.first;) {
        retire(i);
    }
}

void IMAGE_CACHE::reload() {
    for (std::int32_t i = 0; i < entries.get_count(); ++i) {
        reload(&entry_at(i)->image);
    }
}

void IMAGE_CACHE::reload(IMAGE* image) {
    CACHE_ENTRY* entry = get_entry(image);
    if (!entry) {
        return;
    }
    // A picture of the file's own size keeps to the file, whatever size that has now.
    if (entry->is_original_size()) {
        load_entry(*entry, IMAGE::NO_SIZE, IMAGE::NO_SIZE);
    } else {
        load_entry(*entry, entry->width, entry->height);
    }
}

// --- Private sizes and colours ---

void IMAGE_CACHE::resize_image(IMAGE*& image, std::int32_t width, std::int32_t height,
                               unsigned char type) {
    CACHE_ENTRY* entry = get_entry(image);
    if (!entry || width < 0 || height < 0 || (width == entry->width && height == entry->height)) {
        return;
    }
    if (entry->custom) {
        // Of nothing, its pixels could never be made again.
        if (width > 0 && height > 0) {
            entry->image.resize(width, height, type);
            set_size_of_entry(*entry);
        }
        return;
    }
    const RANGE range = find_entries(entry->path, entry->filename);
    CACHE_ENTRY* other = find_match(range, width, height);
    if (!other) {
        // Scaled from the file's own size where that is there, so that nothing is scaled twice.
        const CACHE_ENTRY* source = find_source(range);
        if (entry->stale || !source) {
            source = entry;
        }
        if (entry->use_count <= 1 && !entry->is_original_size()) {
            if (source == entry) {
                entry->image.resize(width, height, type);
            } else {
                entry->image.resize_from(source->image, width, height, type);
            }
            set_size_of_entry(*entry);
            return;
        }
        other = add_scaled(*source, width, height, type);
        if (!other) {
            return;
        }
        other->stale = entry->stale;
    }
    other->add_use();
    image = &other->image;
    release(*entry);
}

void IMAGE_CACHE::make_custom(IMAGE*& image) {
    CACHE_ENTRY* entry = get_entry(image);
    if (!entry || entry->custom || recolour_in_place) {
        return;
    }
    if (entry->use_count <= 1 && !entry->is_original_size()) {
        entry->custom = true;
        return;
    }
    CACHE_ENTRY* own = add_copy(*entry);
    if (!own) {
        return;
    }
    own->custom = true;
    own->use_count = 1;
    image = &own->image;
    release(*entry);
}

template <class OPERATION>
void IMAGE_CACHE::change(IMAGE*& image, OPERATION operation) {
    make_custom(image);
    if (CACHE_ENTRY* entry = get_entry(image)) {
        entry->tint.reset();
        operation(entry->image);
    }
}

void IMAGE_CACHE::recolour(IMAGE*& image, COLOUR colour) {
    recolour_channel(image, colour, EVERY_PIXEL);
}

void IMAGE_CACHE::recolour_channel(IMAGE*& image, COLOUR colour, char channel) {
    CACHE_ENTRY* entry = recolour_in_place && channel == EVERY_PIXEL ? get_entry(image) : nullptr;
    if (entry && entry->tint == colour) {
        return;
    }
    change(image, [&](IMAGE& own) { own.recolour_channel(colour, channel); });
    if (entry) {
        entry->tint = colour;
    }
}

void IMAGE_CACHE::replace_colour(IMAGE*& image, COLOUR from, COLOUR to, unsigned char keep_alpha) {
    change(image, [&](IMAGE& own) { own.replace_colour(from, to, keep_alpha); });
}

void IMAGE_CACHE::set_trialpha_colours(IMAGE*& image, COLOUR red, COLOUR green, COLOUR blue) {
    change(image, [&](IMAGE& own) { own.set_trialpha_colours(red, green, blue); });
}

void IMAGE_CACHE::make_grey(IMAGE*& image) {
    change(image, [](IMAGE& own) { own.make_grey(); });
}

std::int16_t IMAGE_CACHE::get_image_orig_width(const IMAGE* image) const {
    const CACHE_ENTRY* entry = get_entry(image);
    return entry ? entry->orig_width : std::int16_t{0};
}

std::int16_t IMAGE_CACHE::get_image_orig_height(const IMAGE* image) const {
    const CACHE_ENTRY* entry = get_entry(image);
    return entry ? entry->orig_height : std::int16_t{0};
}

// --- The stored form ---

unsigned char IMAGE_CACHE::put_to_data_device(DATA_DEVICE& device) const {
    std::uint32_t count = 0;
    for (std::int32_t i = 0; i < entries.get_count(); ++i) {
        const CACHE_ENTRY* entry = entry_at(i);
        count += !entry->custom && !entry->stale;
    }
    if (!(device << STORED_FORM_VERSION) || !(device << count)) {
        return 0;
    }
    for (std::int32_t i = 0; i < entries.get_count(); ++i) {
        const CACHE_ENTRY* entry = entry_at(i);
        if (entry->custom || entry->stale) {
            continue;
        }
        if (!device.write_dynamic_text(entry->path) ||
            !device.write_dynamic_text(entry->filename) ||
            !(device << static_cast<std::uint16_t>(entry->width)) ||
            !(device << static_cast<std::uint16_t>(entry->height)) ||
            !(device << static_cast<std::uint16_t>(entry->orig_width)) ||
            !(device << static_cast<std::uint16_t>(entry->orig_height)) ||
            !entry->image.put_to_data_device(device)) {
            return 0;
        }
    }
    return 1;
}

unsigned char IMAGE_CACHE::get_from_data_device(const DATA_DEVICE& device) {
    unsigned char version = 0;
    std::uint32_t count = 0;
    if (!(device >> version) || !(device >> count) || version < 1 ||
        version > STORED_FORM_VERSION || count > MAX_STORED_ENTRIES ||
        count * LEAST_ENTRY_BYTES > device.get_bytes_left()) {
        return 0;
    }
    soft_clear();
    unsigned char done = 1;
    for (std::uint32_t i = 0; done && i < count; ++i) {
        if (loading_callback) {
            loading_callback(loading_callback_data);
        }
        done = read_entry(device, version);
    }
    entries.sort();
    return done;
}

unsigned char IMAGE_CACHE::read_entry(const DATA_DEVICE& device, unsigned char version) {
    std::unique_ptr<CACHE_ENTRY> entry(new (std::nothrow) CACHE_ENTRY);
    if (!entry) {
        return 0;
    }
    if (version == 1) {
        DISK_MANAGER folder;
        if (!folder.get_from_data_device(device) || !folder.get_relative_path(entry->path)) {
            return 0;
        }
    } else if (!device.read_dynamic_text(entry->path, CACHE_ENTRY::PATH_SIZE)) {
        return 0;
    }
    std::uint16_t sizes[4] = {};
    if (!device.read_dynamic_text(entry->filename, CACHE_ENTRY::NAME_SIZE) ||
        !(device >> sizes[0]) || !(device >> sizes[1]) || !(device >> sizes[2]) ||
        !(device >> sizes[3]) || !entry->image.get_from_data_device(device)) {
        return 0;
    }
    // Not the numbers that were read: a picture that is never found under its size would be copied
    // at every opening.
    set_size_of_entry(*entry);
    const auto is_side = [](std::uint16_t side) { return side >= 1 && side <= INT16_MAX; };
    if (is_side(sizes[2]) && is_side(sizes[3])) {
        entry->orig_width = static_cast<std::int16_t>(sizes[2]);
        entry->orig_height = static_cast<std::int16_t>(sizes[3]);
    } else {
        entry->orig_width = entry->width;
        entry->orig_height = entry->height;
    }
    return insert_entry(entry);
}
