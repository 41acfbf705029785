// The text files of a skin: from the sources, in which colours have names and each look stands
// once, to the files that the program reads.
#ifndef SKIN_ART_SKIN_TEXTS_H
#define SKIN_ART_SKIN_TEXTS_H

#include <filesystem>
#include <map>
#include <string>

#include "text_records.h"

class PALETTE;

// A style set: its file in the folder "style_sets", and what is in it.
struct STYLE_SOURCE {
    std::filesystem::path file;  // from that folder on
    TEXT_RECORDS records;

    // The name that its pictures begin with; empty for one without pictures.
    std::string get_picture_base() const;
};

// By the style set's name.
using STYLE_SOURCES = std::map<std::string, STYLE_SOURCE>;

// The style sets of `folder`/style_sets and their copies under the prefixes of
// `folder`/prefixes.cfg, those of `base` included, which `folder` may override. Colours are names
// still.
STYLE_SOURCES read_style_sources(const std::filesystem::path& folder, const STYLE_SOURCES& base);

// The records with the palette's colours in the place of their names.
TEXT_RECORDS set_colours(const TEXT_RECORDS& records, const PALETTE& palette);

// What a style set of a derived skin must say itself, because it would inherit it from the default
// of the base skin otherwise: adds the colours of `defaults` that the two palettes differ in, where
// `records` has none.
TEXT_RECORDS add_changed_defaults(const TEXT_RECORDS& records, const TEXT_RECORDS& defaults,
                                  const PALETTE& base_palette, const PALETTE& palette);

// Writes the constants of `folder`, with their copies under the prefixes.
void write_constants(const std::filesystem::path& folder, const std::filesystem::path& target);

// Writes the palette as the skin's colours, with names in capitals.
void write_colours(const PALETTE& palette, const std::filesystem::path& target);

#endif  // SKIN_ART_SKIN_TEXTS_H
