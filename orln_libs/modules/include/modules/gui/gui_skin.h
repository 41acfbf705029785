// GUI_SKIN: the front of the skin system.
//
// It finds the skin folders, decides whether a skin's compiled "skin.bin" is current, rebuilds it
// from the loose files if not, follows the chain of base skins, and afterwards serves the look-ups
// by name through which all of the GUI gets its style sets, images, colours, fonts and constants.
//
// A skin is a folder under "skins". All parts but "skin.cfg" are optional when a base skin supplies
// them:
//
//     skin.cfg     the skin's description (skin_info.h)
//     skin.bin     the compiled skin, written by this program
//     fonts        ".otf" files
//     style_sets   ".ss" files, with "default.ss"; subfolders allowed
//     constants    ".cfg" files of name and number
//     images       ".cfg" files of name and file name, with the image files beside them
//     colours      ".cfg" files of name and "#" colour
//
// Look-ups at run time never fail: an item that the skin lacks is an empty one. Main thread only.
#ifndef MODULES_GUI_GUI_SKIN_H
#define MODULES_GUI_GUI_SKIN_H

#include <cstdint>
#include <memory>
#include <string>

#include "platform/colour.h"
#include "platform/disk_manager.h"

class CONFIG_FILE;
class IMAGE;
class WM_STYLE_SET;

class GUI_SKIN {
public:
    static constexpr int MAX_LEVELS = 32;  // a skin and its chain of base skins
    static constexpr int TEXT_SIZE = 256;

    // Loads the skin of that folder name into WM_PAGE_TOOL_MANAGER. While it and its base skins are
    // current, only "skin.bin" is read; one that is missing, out of date or damaged is rebuilt from
    // the loose files. `generate` rebuilds it in any case, and creates a missing folder.
    // `versions` gets the internal version of each skin that is rebuilt, under the folder's name.
    // `callback(data)` is called between files and entries. `generating_path`: see get_skin_path.
    // Yields the loaded flag, which also needs style sets, colours, images and constants.
    //
    // Controls hold references to what is loaded: load a second time only while no page is shown.
    bool load(const char* name, CONFIG_FILE& versions, unsigned char generate,
              void (*callback)(void* data), void* data, unsigned char generating_path);

    // The folder "skins". It is found once per run: `generating`, the one under "$APPDATA";
    // otherwise the one under "$ADD_ONS", into which the one under "$APPDATA" is copied unless it
    // holds a compiled skin already; a copy that was cut short is made again. It is made if it
    // isn't there; where that can't be done, the folder above it is what comes back.
    static DISK_MANAGER get_skin_path(unsigned char generating);
    // Names that folder from outside.
    static void set_skin_path(const DISK_MANAGER& disk);
    // The folder is looked for anew at the next use.
    static void forget_skin_path();

    // Reads "skin.cfg" in the folder of `disk`, see modules/gui/skin_info.h.
    static bool get_skin_info(CONFIG_FILE& config, DISK_MANAGER& disk, char* folder, char* name,
                              char* author, char* description, char* url, char* display_version,
                              std::int16_t& default_height, std::int16_t& default_width,
                              std::uint16_t& internal_version);
    // Fills the fields below from it.
    bool set_skin_info(DISK_MANAGER& disk);
    // Gives FONT_MANAGER the skin's default font and its sizes.
    void setup_font_manager(DISK_MANAGER& disk);

    // Look-ups. The item's full name is `name` or, with a `prefix` that is neither null nor empty,
    // "PREFIX_NAME". `cached_index`, if not null, is tried first and receives the item's place in
    // its table (-1: none), so that a caller who keeps it in a static pays for one comparison. The
    // results belong to the skin. What isn't found is a style set with nothing in it, an empty
    // image, a colour of value 0, the font -1, the number 0.
    static WM_STYLE_SET& get_style_set(const char* name, const char* prefix = nullptr,
                                       std::int32_t* cached_index = nullptr);
    static IMAGE* get_image(const char* name, const char* prefix = nullptr,
                            std::int32_t* cached_index = nullptr);
    static COLOUR& get_colour(const char* name, const char* prefix = nullptr,
                              std::int32_t* cached_index = nullptr);
    static signed char get_font(const char* name, const char* prefix = nullptr,
                                std::int32_t* cached_index = nullptr);
    static std::int16_t get_constant(const char* name, const char* prefix = nullptr,
                                     std::int16_t* cached_index = nullptr);

    bool is_loaded() const { return loaded; }
    // The skin that is being loaded; null otherwise.
    const char* get_skin_loading() const { return is_loading ? skin_loading.c_str() : nullptr; }
    // A folder that takes the place of "skins" for this object.
    void set_custom_skin_path(const DISK_MANAGER& disk);

    // What the loaded skin says about itself.
    char name[TEXT_SIZE] = "";
    char author[TEXT_SIZE] = "";
    char description[TEXT_SIZE] = "";
    char url[TEXT_SIZE] = "";
    char display_version[TEXT_SIZE] = "";
    std::int16_t default_width = 0, default_height = 0;

private:
    DISK_MANAGER find_skins(unsigned char generating_path) const;
    bool is_current(DISK_MANAGER skins, const char* skin) const;
    bool load_skin(const char* skin, CONFIG_FILE& versions, unsigned char generating_path,
                   int level);
    enum REGENERATED { NOT_REGENERATED, REGENERATED_ONLY, REGENERATED_AND_STORED };
    REGENERATED regenerate_level(DISK_MANAGER& disk, bool has_base, CONFIG_FILE& config,
                                 std::uint16_t internal_version, CONFIG_FILE& versions);
    void apply_loaded_skin(DISK_MANAGER& disk);

    std::unique_ptr<DISK_MANAGER> custom_skin_path;  // null: the ordinary one
    bool is_loading = false;
    std::string skin_loading;
    bool loaded = false;
    bool regenerate[MAX_LEVELS] = {};  // by level of the base skin chain
    bool generating = false;           // the caller asked for a rebuild
    char level_name[TEXT_SIZE] = "";   // the skin at the level being worked on

    static std::unique_ptr<DISK_MANAGER> skin_path;  // null: not found yet
};

#endif  // MODULES_GUI_GUI_SKIN_H
