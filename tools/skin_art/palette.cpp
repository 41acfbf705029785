#include "palette.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "failure.h"
#include "text_records.h"

void PALETTE::add_file(const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / "palette.cfg";
    for (const auto& [name, value] : read_records(file)) {
        COLOUR colour;
        if (!parse_colour(value, colour)) {
            fail("%s: \"%s\" of \"%s\" isn't \"#\" and eight hexadecimal digits", file.c_str(),
                 value.c_str(), name.c_str());
        }
        colours[name] = colour;
    }
}

COLOUR PALETTE::operator[](const std::string& name) const {
    const auto found = colours.find(name);
    if (found == colours.end()) {
        fail("The palette has no colour \"%s\"", name.c_str());
    }
    return found->second;
}

COLOUR PALETTE::faded(const std::string& name, double opacity) const {
    const COLOUR colour = (*this)[name];
    return colour.with_alpha(static_cast<unsigned char>(std::lround(colour.alpha() * opacity)));
}

PALETTE PALETTE::tinted(COLOUR tint) const {
    PALETTE result = *this;
    for (auto& [name, colour] : result.colours) {
        if (colour.red() == colour.green() && colour.green() == colour.blue()) {
            colour.recolour(tint);
        }
    }
    return result;
}

COLOUR blend(COLOUR from, COLOUR to, double share) {
    const auto channel = [share](int a, int b) {
        const long mixed = std::lround(a + (b - a) * share);
        return static_cast<unsigned char>(std::clamp(mixed, 0L, 255L));
    };
    return COLOUR(channel(from.red(), to.red()), channel(from.green(), to.green()),
                  channel(from.blue(), to.blue()), channel(from.alpha(), to.alpha()));
}

std::string colour_text(COLOUR colour) {
    char text[16];
    std::snprintf(text, sizeof text, "#%08" PRIX32, colour.value);
    return text;
}

bool parse_colour(const std::string& text, COLOUR& colour) {
    if (text.size() != 9 || text[0] != '#' ||
        text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos) {
        return false;
    }
    colour = COLOUR(static_cast<std::uint32_t>(std::strtoul(text.c_str() + 1, nullptr, 16)));
    return true;
}
