// Moving, copying and removing what stands at a path. All yield 0 or an errno value; paths are
// absolute.
#ifndef KVCORE_LINUXCODE_FILE_OPERATIONS_H
#define KVCORE_LINUXCODE_FILE_OPERATIONS_H

#include <string>
#include <vector>

namespace KVCORE {

// The names in a folder without "." and "..", sorted by their bytes.
int list_folder(const std::string& path, std::vector<std::string>& names);

// Renames within a volume. What stands at `to` is never replaced: that is EEXIST.
int rename_without_replacing(const std::string& from, const std::string& to);

// Copies a file, a link or a whole folder, with rights and dates, a creation date that was set
// among them. The copy is made under another name in the same folder and appears at `to` when it is
// complete; what stands there is never replaced. Devices, pipes and sockets are refused, and so is
// copying a folder into itself.
int copy_object(const std::string& from, const std::string& to);

// As rename_without_replacing; to another volume by copying and removing.
int move_object(const std::string& from, const std::string& to);

}  // namespace KVCORE

#endif  // KVCORE_LINUXCODE_FILE_OPERATIONS_H
