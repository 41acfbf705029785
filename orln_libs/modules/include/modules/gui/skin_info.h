// What a skin says about itself in its "skin.cfg".
#ifndef MODULES_GUI_SKIN_INFO_H
#define MODULES_GUI_SKIN_INFO_H

#include <cstddef>
#include <cstdint>

class CONFIG_FILE;
class DISK_MANAGER;

// The file's name.
inline constexpr const char* SKIN_INFO_FILE = "skin.cfg";

// The size of every text that get_skin_info yields, with terminator.
inline constexpr std::size_t SKIN_INFO_TEXT_SIZE = 256;

// Reads "skin.cfg" in the folder of `disk`. `config` is set to that file, so that the caller can
// read further keys through it afterwards. Any text pointer may be null; the others point to
// buffers of SKIN_INFO_TEXT_SIZE bytes. `folder` gets the folder's own name. The default sizes are
// read only if they come in non-zero. A missing "internal_version" counts as 0 and is written to
// the file as 0. False if the file doesn't exist or can't be read; all outputs are cleared then.
// What is refused is traced with the file's name: such a size is left as it came in, such a version
// counts as 0.
bool get_skin_info(CONFIG_FILE& config, DISK_MANAGER& disk, char* folder, char* name, char* author,
                   char* description, char* url, char* display_version,
                   std::int16_t& default_height, std::int16_t& default_width,
                   std::uint16_t& internal_version);

// Reads "internal_version" alone, through a `config` that stands for "skin.cfg". False, and 0, if
// the key is missing; true, and 0, for a value that is refused: no number from 0 to 65535.
bool read_skin_version(CONFIG_FILE& config, const DISK_MANAGER& disk, std::uint16_t& version);

#endif  // MODULES_GUI_SKIN_INFO_H
