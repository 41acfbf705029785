#include "autopatch/autopatch_errors.h"

#include <cstddef>
#include <iterator>

// The support site. Every address below starts with it.
#define SUPPORT_ARTICLE(id)                                                               \
    "support.tessarine.example/index.php?_m=knowledgebase&_a=viewarticle&kbarticleid=" id \
    "&nav="                                                                               \
    "0,4"

namespace {

struct ERROR_ENTRY {
    const char* text;
    const char* url;
};

// Indexed by AUTOPATCH_ERROR_CODE.
constexpr ERROR_ENTRY ERRORS[] = {
    {"Everything is working as expected.", SUPPORT_ARTICLE("81")},
    {"Unable to connect to the Tessarine auto download server.", SUPPORT_ARTICLE("73")},
    {"Unable to allocate enough memory. Try shutting down other running applications and try "
     "again.",
     SUPPORT_ARTICLE("74")},
    {"The downloaded file appears to be corrupt. Please restart and try again.",
     SUPPORT_ARTICLE("80")},
    {"Unzipping the new version failed. This could be because the file was corrupted during "
     "download.",
     SUPPORT_ARTICLE("75")},
    {"Opening the new version package failed. This could be because the file was corrupted during "
     "download.",
     SUPPORT_ARTICLE("76")},
    {"Extracting the new files failed. This could be because the file was corrupted during "
     "download.",
     SUPPORT_ARTICLE("77")},
    {"The autopatch configuration file is missing from the new version. This could be because the "
     "file was corrupted during download.",
     SUPPORT_ARTICLE("78")},
    {"The server has reported an unknown error. Please restart and try again.",
     SUPPORT_ARTICLE("79")},
};

constexpr ERROR_ENTRY UNKNOWN_ERROR = {
    "An unknown internal error has occurred. Please restart and try again.", SUPPORT_ARTICLE("81")};

const ERROR_ENTRY& find_entry(AUTOPATCH_ERROR_CODE code) {
    const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(code));
    return index < std::size(ERRORS) ? ERRORS[index] : UNKNOWN_ERROR;
}

}  // namespace

const char* get_error_str(AUTOPATCH_ERROR_CODE code) {
    return find_entry(code).text;
}

const char* get_error_url(AUTOPATCH_ERROR_CODE code) {
    return find_entry(code).url;
}
