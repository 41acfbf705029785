// WM_PAGE_TOOL_MANAGER: the content of one skin in memory.
//
// Five tables (style sets, fonts, colours, images, constants) and two image caches, read from the
// loose files of a skin folder or from the compiled file "skin.bin", which is written here. Which
// of the two happens is GUI_SKIN's decision.
//
// "skin.bin", integers little-endian:
//
//     file_version               2 bytes   written as 22; 20 and 21 are read
//     internal_version           2 bytes   from version 22 on
//     (skipped)                  1 byte    version 20 only
//     styleset_image_cache                 IMAGE_CACHE's stored form
//     non_styleset_image_cache             from version 21 on
//     the tables                           WM_PTM_APP_INFO's stored form
//
// Pixels lie in the file ready for use, so no picture is decoded at a normal start. Two runs over
// the same loose files write the same bytes. No message is shown; what is refused is traced with
// the file's name. Main thread only.
#ifndef MODULES_WINMAN_PAGE_TOOL_MANAGER_H
#define MODULES_WINMAN_PAGE_TOOL_MANAGER_H

#include <cstdint>
#include <memory>

#include "modules/winman/app_info.h"
#include "platform/colour.h"

class DATA_FILE;
class DISK_MANAGER;
class IMAGE_CACHE;

class WM_PAGE_TOOL_MANAGER : public WM_PTM_APP_INFO {
public:
    static constexpr std::int16_t FILE_VERSION = 22;
    static constexpr std::int16_t OLDEST_FILE_VERSION = 20;

    static WM_PAGE_TOOL_MANAGER& get_instance();

    // Reads only the version fields. False for a file that can't be read or a version outside 20
    // to 22; both versions are 0 then.
    bool load_header(const DISK_MANAGER& disk, const char* filename);
    bool load_header(DATA_FILE* file);

    // Adds the content of a compiled skin to the tables and caches, and sets `loaded`. The file is
    // checked from end to end before anything is taken over, so that a damaged one changes nothing
    // but the version fields. Style sets find their images in the caches: cache_flags is 8
    // afterwards.
    bool load(const DISK_MANAGER& disk, const char* filename);
    // Writes the tables and caches, beside the file first, which is then replaced in one step. An
    // `internal_version` other than 0 replaces the stored one. False if that failed; the former
    // file stays then.
    bool save(const DISK_MANAGER& disk, const char* filename, std::uint16_t internal_version);

    // The loose files of a folder and, before them, of its subfolders, each in the order of their
    // names. An entry of a folder overrides one of its subfolders. False if the folder can't be
    // listed; a file that can't be read is left out.

    // Every ".otf" file becomes a font, under its name without ".otf". `clear`: the table is
    // emptied and all fonts of FONT_MANAGER are freed first.
    bool load_fonts(const DISK_MANAGER& disk, unsigned char clear);
    // Every ".ss" file becomes a style set; a refused one stays with what was read. `rewrite`:
    // writes each file anew in its normal form. `default_only`: reads only "default.ss" of this
    // folder; false if it isn't there or is refused. The first one becomes default_style_set.
    bool load_style_sets(const DISK_MANAGER& disk, unsigned char rewrite,
                         unsigned char default_only);
    // Every ".cfg" file, each record of which is an entry: a name and a number, a name and an image
    // file's name, a name and a "#" colour.
    bool load_constants(const DISK_MANAGER& disk);
    bool load_images(const DISK_MANAGER& disk);
    bool load_colours(const DISK_MANAGER& disk);

    // One record each, as a callback of CONFIG_FILE::read_all: into the tables of get_instance().
    // The last argument is not used.
    static void add_colour(const char* name, const char* value, void* data);
    static void add_image(const char* name, const char* value, void* data);
    static void add_constant(const char* name, const char* value, void* data);

    // Tints the images of every recolourable style set.
    void recolour(COLOUR colour);

    // Font callbacks for WM_STYLE_SET, over the table of get_instance(): -1 and null if unknown.
    static signed char style_set_read_find_font(const char* name, void* data);
    static const char* style_set_write_find_font(signed char font, void* data);

    // Called once per file or table entry by everything that loads.
    static void run_loading_callback();

    bool loaded = false;                 // the last load succeeded
    std::uint16_t internal_version = 0;  // of the last file read
    std::unique_ptr<WM_STYLE_SET> default_style_set;

    static std::int16_t file_version;  // of the last file read; 0: not readable
    // For the pieces of style sets, and for named images. They live until the process ends,
    // because style sets in static storage give their images back as late as that.
    static IMAGE_CACHE& styleset_image_cache;
    static IMAGE_CACHE& non_styleset_image_cache;
    static void (*loading_update_callback)(void* data);
    static void* loading_update_data;

private:
    WM_PAGE_TOOL_MANAGER() = default;

    bool load_style_set_file(const DISK_MANAGER& disk, const char* filename, bool rewrite,
                             bool as_default);
    void add_font(const DISK_MANAGER& disk, const char* filename);
    static void read_records(const DISK_MANAGER& disk, const char* filename,
                             void (*add)(const char* name, const char* value, void* data));

    // The folder and file that the callbacks are being called for.
    static char load_current_path[WM_STYLE_SET::PATH_SIZE];
    static char load_current_file[256];
};

#endif  // MODULES_WINMAN_PAGE_TOOL_MANAGER_H
