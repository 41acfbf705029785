// What stands in "$ADD_ONS" beside the miscellaneous add-ons and the folders of version_list.h.
#ifndef AUTOPATCH_CATALOGUE_NAMES_H
#define AUTOPATCH_CATALOGUE_NAMES_H

inline constexpr const char SKINS_FOLDER[] = "skins";
inline constexpr const char CATALOGUE_FILE[] = "add_ons.bin";
// A new catalogue is written here and then moved into place.
inline constexpr const char CATALOGUE_FILE_BESIDE[] = "add_ons.bin.tmp";

#endif  // AUTOPATCH_CATALOGUE_NAMES_H
