// The colours of a skin by name.
//
// Every skin has one file "palette.cfg", a name and a "#AARRGGBB" colour each. Its pictures are
// drawn with these colours and its style sets name them as "$name", so that a skin is recoloured in
// one place.
#ifndef SKIN_ART_PALETTE_H
#define SKIN_ART_PALETTE_H

#include <filesystem>
#include <map>
#include <string>

#include "platform/colour.h"

class PALETTE {
public:
    // Adds the colours of the file `folder`/palette.cfg, which replace those of the same name. Ends
    // the program with a message if a colour can't be read.
    void add_file(const std::filesystem::path& folder);

    // Ends the program with a message if there is no such colour.
    COLOUR operator[](const std::string& name) const;
    // The same with its alpha scaled.
    COLOUR faded(const std::string& name, double opacity) const;

    // The palette in which every grey has the hue of `tint`, as the pictures of a skin have it that
    // is compiled with "recolour_skin_to".
    PALETTE tinted(COLOUR tint) const;

    const std::map<std::string, COLOUR>& get_all() const { return colours; }

private:
    std::map<std::string, COLOUR> colours;
};

// The colour between two, `share` (0 to 1) of the way to `to`, alpha included.
COLOUR blend(COLOUR from, COLOUR to, double share);

// "#AARRGGBB", as the files of a skin have it.
std::string colour_text(COLOUR colour);
// False if the text isn't that.
bool parse_colour(const std::string& text, COLOUR& colour);

#endif  // SKIN_ART_PALETTE_H
