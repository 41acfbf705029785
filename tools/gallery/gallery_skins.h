// GALLERY_SKINS: the skins that the gallery can be shown in.
//
// Loading a skin compiles it and writes the result beside its files, so the gallery works on a copy
// in the folder for temporary files, which goes with the object.
#ifndef GALLERY_SKINS_H
#define GALLERY_SKINS_H

#include <filesystem>
#include <string>
#include <vector>

class GUI_SKIN;

class GALLERY_SKINS {
public:
    GALLERY_SKINS() = default;
    GALLERY_SKINS(const GALLERY_SKINS&) = delete;
    GALLERY_SKINS& operator=(const GALLERY_SKINS&) = delete;
    ~GALLERY_SKINS() { remove(); }

    // Copies the skins of that application data. False if that can't be done.
    bool copy_from(const std::string& data);
    // Deletes the copy.
    void remove();
    // No page may be on show. False if the skin is broken.
    bool load(GUI_SKIN& skin, const std::string& name);
    // The one after `name` in the order of their names.
    std::string get_next(const std::string& name) const;
    std::string get_current() const { return current; }

private:
    std::filesystem::path folder;
    std::vector<std::string> names;
    std::string current;
};

#endif  // GALLERY_SKINS_H
