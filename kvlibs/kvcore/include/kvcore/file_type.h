// The type of a file: its extension with the dot, or a marker word.
#ifndef KVCORE_FILE_TYPE_H
#define KVCORE_FILE_TYPE_H

#include "kvcore/symbol.h"

namespace KVCORE {

// Comparing types is comparing symbols, so that case matters. Making one from a text needs the
// symbol table, with the rules of its thread.
class FILE_TYPE {
public:
    // The empty type, which no file has.
    FILE_TYPE() = default;
    // As for SYMBOL, a borrowed text must be a literal.
    explicit FILE_TYPE(const STRING& text) : symbol_(text) {}
    explicit FILE_TYPE(const SYMBOL& symbol) : symbol_(symbol) {}

    const SYMBOL& get_symbol() const { return symbol_; }
    const STRING& get_string() const { return symbol_.get_string(); }
    bool is_empty() const { return symbol_.is_empty(); }

    friend bool operator==(const FILE_TYPE& a, const FILE_TYPE& b) {
        return a.symbol_ == b.symbol_;
    }
    friend bool operator<(const FILE_TYPE& a, const FILE_TYPE& b) { return a.symbol_ < b.symbol_; }

private:
    SYMBOL symbol_;
};

// Markers, which can't occur as an extension.
inline const FILE_TYPE FILE_TYPE_ANY("*"_str);
inline const FILE_TYPE FILE_TYPE_ANY_FILE("file"_str);
inline const FILE_TYPE FILE_TYPE_CONTAINER("container"_str);
inline const FILE_TYPE FILE_TYPE_LOCAL_VOLUME("localvolume"_str);
inline const FILE_TYPE FILE_TYPE_NONE("."_str);
inline const FILE_TYPE FILE_TYPE_VOLUME("volume"_str);
inline const FILE_TYPE FILE_TYPE_UNCHANGED("unchanged"_str);

// Types of files.
inline const FILE_TYPE FILE_TYPE_APPLICATION_MAC(".app"_str);
inline const FILE_TYPE FILE_TYPE_APPLICATION_WINDOWS(".exe"_str);
inline const FILE_TYPE FILE_TYPE_CONFIG(".cfg"_str);
inline const FILE_TYPE FILE_TYPE_HTML(".htm"_str);
inline const FILE_TYPE FILE_TYPE_LOG(".log"_str);
inline const FILE_TYPE FILE_TYPE_RICH_TEXT(".rtf"_str);
inline const FILE_TYPE FILE_TYPE_TEMPORARY(".tmp"_str);
inline const FILE_TYPE FILE_TYPE_TEXT(".txt"_str);
inline const FILE_TYPE FILE_TYPE_XML(".xml"_str);

// What stands for the type in the name of "any file".
inline constexpr char16_t WILDCARD_TYPE[] = u".*";

}  // namespace KVCORE

#endif  // KVCORE_FILE_TYPE_H
