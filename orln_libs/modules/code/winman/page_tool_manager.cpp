#include "modules/winman/page_tool_manager.h"

#include <string>

#include "compiled_skin.h"
#include "modules/frameworks/trace_output.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/image_cache.h"

std::int16_t WM_PAGE_TOOL_MANAGER::file_version = 0;
IMAGE_CACHE& WM_PAGE_TOOL_MANAGER::styleset_image_cache = *new IMAGE_CACHE;
IMAGE_CACHE& WM_PAGE_TOOL_MANAGER::non_styleset_image_cache = *new IMAGE_CACHE;
void (*WM_PAGE_TOOL_MANAGER::loading_update_callback)(void* data) = nullptr;
void* WM_PAGE_TOOL_MANAGER::loading_update_data = nullptr;

namespace {

// As WM_STYLE_SET::cache_flags: images come from the cache that has been read, never from disk.
constexpr unsigned char FLAGS_WHILE_LOADING = IMAGE_CACHE::NEVER_FROM_DISK;

constexpr const char* DEFAULT_SET_NAME = "DEFAULT";

// Closes the file at the end of the block.
class OPEN_FILE {
public:
    OPEN_FILE(const DISK_MANAGER& disk, const char* name, FILE_MODE mode)
        : file(disk.open_data_file(name, mode, BYTEORDER_LITTLE)) {}
    ~OPEN_FILE() { DISK_MANAGER::close(file); }
    OPEN_FILE(const OPEN_FILE&) = delete;
    OPEN_FILE& operator=(const OPEN_FILE&) = delete;

    // False if not all that was written has reached the system.
    bool close() { return DISK_MANAGER::close(file); }
    DATA_FILE* get() const { return file; }
    DATA_FILE& operator*() const { return *file; }

private:
    DATA_FILE* file;
};

void run_cache_callback(void*) {
    WM_PAGE_TOOL_MANAGER::run_loading_callback();
}

// Reads a cache; the callback runs for each of its entries.
bool read_cache(const DATA_FILE& file, IMAGE_CACHE& cache) {
    cache.loading_callback = run_cache_callback;
    const bool done = cache.get_from_data_device(file);
    cache.loading_callback = nullptr;
    return done;
}

bool skip_version_20_byte(const DATA_FILE& file, std::int16_t version) {
    unsigned char skipped = 0;
    return version != VERSION_WITH_SKIPPED_BYTE || file >> skipped;
}

}  // namespace

WM_PAGE_TOOL_MANAGER& WM_PAGE_TOOL_MANAGER::get_instance() {
    static WM_PAGE_TOOL_MANAGER instance;
    return instance;
}

void WM_PAGE_TOOL_MANAGER::run_loading_callback() {
    if (loading_update_callback) {
        loading_update_callback(loading_update_data);
    }
}

bool WM_PAGE_TOOL_MANAGER::load_header(const DISK_MANAGER& disk, const char* filename) {
    return load_header(OPEN_FILE(disk, filename, FILE_READ).get());
}

bool WM_PAGE_TOOL_MANAGER::load_header(DATA_FILE* file) {
    std::int16_t version = 0;
    std::uint16_t internal = 0;
    file_version = 0;
    internal_version = 0;
    if (!file || !(*file >> version) || version < OLDEST_FILE_VERSION || version > FILE_VERSION ||
        (version >= INTERNAL_VERSION_SINCE && !(*file >> internal))) {
        return false;
    }
    file_version = version;
    internal_version = internal;
    return true;
}

bool WM_PAGE_TOOL_MANAGER::load(const DISK_MANAGER& disk, const char* filename) {
    loaded = false;
    const OPEN_FILE file(disk, filename, FILE_READ);
    if (!file.get()) {
        load_header(nullptr);
        return false;
    }
    const bool is_known = load_header(file.get());
    const std::int32_t body = file.get()->get_pos();
    if (!is_known || !check_compiled_skin(*file, file_version)) {
        TRACE_OUTPUT::output_warning("%s: no compiled skin, or a damaged one",
                                     disk.get_path_string(filename));
        return false;
    }
    file.get()->set_pos(body, false);

    WM_STYLE_SET::cache_flags = FLAGS_WHILE_LOADING;
    loaded = skip_version_20_byte(*file, file_version) && read_cache(*file, styleset_image_cache) &&
             (file_version < SECOND_CACHE_SINCE || read_cache(*file, non_styleset_image_cache)) &&
             get_from_data_device(*file);
    if (!loaded) {
        TRACE_OUTPUT::output_warning("%s: the compiled skin can't be read",
                                     disk.get_path_string(filename));
    } else if (!default_style_set) {
        // A skin that is built on this one inherits from its default.
        if (const WM_STYLE_SET* found = find_style_set(DEFAULT_SET_NAME)) {
            default_style_set = std::make_unique<WM_STYLE_SET>(*found);
        }
    }
    return loaded;
}

bool WM_PAGE_TOOL_MANAGER::save(const DISK_MANAGER& disk, const char* filename,
                                std::uint16_t new_internal_version) {
    if (new_internal_version != 0) {
        internal_version = new_internal_version;
    }
    const std::string beside = std::string(filename).append(".tmp");
    // What a killed run left may be anything, a read-only file or a link included.
    disk.remove(beside.c_str(), true);
    OPEN_FILE file(disk, beside.c_str(), FILE_WRITE);
    bool written = file.get() && *file << FILE_VERSION && *file << internal_version &&
                   styleset_image_cache.put_to_data_device(*file) &&
                   non_styleset_image_cache.put_to_data_device(*file) && put_to_data_device(*file);
    written = file.close() && written;
    if (!written || !disk.move(beside.c_str(), disk, filename)) {
        TRACE_OUTPUT::output_warning("%s: the compiled skin can't be written",
                                     disk.get_path_string(filename));
        disk.remove(beside.c_str(), true);
        return false;
    }
    file_version = FILE_VERSION;
    return true;
}

void WM_PAGE_TOOL_MANAGER::recolour(COLOUR colour) {
    for (std::int32_t i = 0; i < style_sets.get_count(); ++i) {
        style_sets.get<WM_STYLE_SET>(i)->recolour(colour);
    }
}

signed char WM_PAGE_TOOL_MANAGER::style_set_read_find_font(const char* name, void*) {
    const WM_PTM_FONT_INFO* font = get_instance().find_font(name);
    return font ? font->font_index : static_cast<signed char>(-1);
}

const char* WM_PAGE_TOOL_MANAGER::style_set_write_find_font(signed char font, void*) {
    const PTRARRAY& fonts = get_instance().fonts;
    for (std::int32_t i = 0; i < fonts.get_count(); ++i) {
        const auto* entry = fonts.get<WM_PTM_FONT_INFO>(i);
        if (font != -1 && entry->font_index == font) {
            return entry->name;
        }
    }
    return nullptr;
}
