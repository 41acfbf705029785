// The name of a file or folder, without its type.
#ifndef KVCORE_FILE_NAME_H
#define KVCORE_FILE_NAME_H

#include "kvcore/loggable.h"
#include "kvcore/string.h"

namespace KVCORE {

// Names are equal whatever their case.
class FILE_NAME {
public:
    FILE_NAME() = default;
    explicit FILE_NAME(STRING text) : text_(std::move(text)) {}

    const STRING& get_string() const { return text_; }
    operator const STRING&() const { return text_; }
    bool is_empty() const { return text_.is_empty(); }

    friend bool operator==(const FILE_NAME& a, const FILE_NAME& b) {
        return a.text_.compare(b.text_, CASE_MODE::INSENSITIVE) == 0;
    }

private:
    STRING text_;
};

// Stands for every name in a listing.
inline const FILE_NAME FILE_NAME_ANY("*"_str);
// Stands for the name that an item has.
inline const FILE_NAME FILE_NAME_UNCHANGED;

// Logs the name's text.
inline LOGGABLE& operator<<(LOGGABLE& node, const FILE_NAME& name) {
    return node << name.get_string();
}

}  // namespace KVCORE

#endif  // KVCORE_FILE_NAME_H
