// Packs a folder into the published layout that the update server serves.
//
// Everything is made in a folder of its own beside the target and put in its place in one step, so
// that a server which looks at any moment sees the old version or the new one.
#ifndef TOOLS_PATCH_PUBLISH_ADD_ON_PACKER_H
#define TOOLS_PATCH_PUBLISH_ADD_ON_PACKER_H

#include <cstdint>
#include <string>
#include <vector>

struct PUBLISH_SETTINGS {
    std::string source;   // folder to pack; empty for a composite add-on, which has no archive
    std::string publish;  // the published folder
    std::string type = "app";
    std::string path;                 // the add-on's path; "app" for the application
    std::string parent;               // path of the composite add-on that this one belongs to
    std::string platform = "x11i86";  // of the application: x11i86, win32, mac
    std::uint16_t version = 0;
    std::uint16_t minimum_version = 0;
    std::string title;
    std::string description;
    std::string description_file;
    std::string picture;  // a PNG file
    bool mandatory = false;
};

// Packs and publishes. False, with the reason in words, if anything is amiss; nothing that was
// published before is touched then.
bool publish_add_on(const PUBLISH_SETTINGS& settings, std::string& reason);

#endif  // TOOLS_PATCH_PUBLISH_ADD_ON_PACKER_H
