#include "launcher/page_texts.h"

#include <cstdio>

#include "autopatch/autopatch_errors.h"
#include "modules/gui/tagged_text.h"

namespace {

constexpr const char* LINK_TEXT = "support site";

std::string make_link(AUTOPATCH_ERROR_CODE code) {
    return make_colour_tag(COLOUR_RED) + "<" + LINK_TEXT + ":url#" + get_error_url(code) + ">" +
           make_colour_tag(COLOUR_BLACK);
}

}  // namespace

std::string make_progress_text(int number, int count, int percent, double rate_kbps) {
    char text[128];
    std::snprintf(text, sizeof text, "Downloading %d of %d   %d%% - %.1f Kb/s", number, count,
                  percent, rate_kbps);
    return text;
}

std::string make_error_text(AUTOPATCH_ERROR_CODE code) {
    switch (code) {
        case AUTOPATCH_OK:
            return "Unable to install due to an unknown error. Please check that your internet "
                   "connection is working.\n\nFor technical support please visit our " +
                   make_link(code) + ".";
        case AUTOPATCH_ERROR_CONNECT:
            return std::string(get_error_str(code)) +
                   "\nPlease check your internet connection. \n\nFor assistance in diagnosing "
                   "connection problems please visit our " +
                   make_link(code) + ".";
        default:
            return std::string(get_error_str(code)) +
                   " \n\nFor more information on this problem please visit our " + make_link(code) +
                   ".";
    }
}

std::string make_plain_error_text(AUTOPATCH_ERROR_CODE code) {
    const std::string tagged = make_error_text(code);
    std::string plain;
    for (std::size_t at = 0; at < tagged.size();) {
        const std::size_t open = tagged.find('<', at);
        plain += tagged.substr(at, open - at);
        if (open == std::string::npos) {
            break;
        }
        const std::size_t close = tagged.find('>', open);
        const std::string tag = tagged.substr(open + 1, close - open - 1);
        const std::size_t address = tag.find(":url#");
        if (address != std::string::npos) {
            plain += tag.substr(0, address) + " (http://" + tag.substr(address + 5) + ")";
        }
        at = close + 1;
    }
    return plain;
}
