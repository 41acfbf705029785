// A path as text.
#ifndef KVCORE_FILE_PATH_H
#define KVCORE_FILE_PATH_H

#include <cstdint>

#include "kvcore/file_name.h"
#include "kvcore/file_type.h"
#include "kvcore/loggable.h"
#include "kvcore/string.h"

namespace KVCORE {

inline const STRING ROOT_STRING("/"_str);

// Separated by "/"; a "\" becomes one when the path is made. A path that ends in "/" names a
// container, any other a file. A path says nothing about what is on a disk: FILE_MANAGER leads from
// a path to an item. For one thread, as everything that makes symbols.
class FILE_PATH {
public:
    // What a constructor is told about the text.
    enum CONTAINER_TYPE : std::uint8_t {
        // Decide: a last component with an extension is a file, anything else a container.
        FROM_TEXT = 0,
        NAMES_FILE = 1,
        NAMES_CONTAINER = 2
    };

    // The path of the root.
    static const FILE_PATH ROOT_PATH;

    // A path that isn't valid.
    FILE_PATH() = default;
    // Each cleans the text, see set_value.
    explicit FILE_PATH(const STRING& text, CONTAINER_TYPE type = FROM_TEXT) {
        set_value(text, type);
    }
    explicit FILE_PATH(const FILE_NAME& name, CONTAINER_TYPE type = FROM_TEXT) {
        set_value(name.get_string(), type);
    }
    FILE_PATH(const FILE_PATH& path, CONTAINER_TYPE type) { set_value(path.text_, type); }

    // Takes the text over, cleaned: every "\" becomes "/"; a file loses one trailing "/" and gets a
    // "." if it has no type, so that "." means none; a container gets a trailing "/". An empty text
    // stays empty, so that nothing names the root by accident.
    void set_value(const STRING& text, CONTAINER_TYPE type);

    const STRING& get_string() const { return text_; }
    bool is_valid() const { return !text_.is_empty(); }
    bool is_root() const { return text_ == ROOT_STRING; }
    bool is_container() const { return text_.get_last_char() == u'/'; }
    bool is_file() const { return is_valid() && !is_container(); }
    // Neither "/..." nor "c:/...".
    bool is_relative() const;

    // The last component, without a trailing "/".
    STRING get_name_and_type() const;
    // The last component ahead of its last "."; all of it for a container, and where there is no
    // "." or only one that comes first.
    FILE_NAME get_name() const;
    // The last component from its last "." on; FILE_TYPE_NONE without one, and FILE_TYPE_CONTAINER
    // for a container.
    FILE_TYPE get_type() const;
    // The text of get_type, without entering the symbol table.
    STRING get_type_text() const;
    // Where the last component is; the root if the text doesn't tell.
    FILE_PATH get_parent() const;

    // A path that starts at this one. A relative `other` is put behind it, and each "../" in front
    // of that leads up, at most to the root; any other path stands for itself.
    FILE_PATH append_path(const FILE_PATH& other) const;
    FILE_PATH append_name_and_type(const FILE_NAME& name, const FILE_TYPE& type) const;
    // The name with its extension: nothing for a container, ".*" for any type.
    static void combine_name_and_type(const FILE_NAME& name, const FILE_TYPE& type, STRING& out);

    // By the text.
    friend bool operator==(const FILE_PATH& a, const FILE_PATH& b) { return a.text_ == b.text_; }

private:
    void clean_path(CONTAINER_TYPE type);

    STRING text_;
};

// One step up.
inline const STRING PARENT_PATH("../"_str);

inline const FILE_PATH FILE_PATH::ROOT_PATH{ROOT_STRING};

// Logs the path's text.
inline LOGGABLE& operator<<(LOGGABLE& node, const FILE_PATH& path) {
    return node << path.get_string();
}

}  // namespace KVCORE

#endif  // KVCORE_FILE_PATH_H
