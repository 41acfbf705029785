// Numbers shared by the catalogue, the patch engine and the pages that show its state.
#ifndef AUTOPATCH_AUTOPATCH_TYPES_H
#define AUTOPATCH_AUTOPATCH_TYPES_H

#include <cstdint>

// The format of add-on records that this program writes, on the wire and in "add_ons.bin". Older
// formats can still be read.
inline constexpr std::uint16_t PROTOCOL_VERSION = 1620;

// How far the patch engine has come with its server.
enum AUTOPATCH_SYSTEM_STATUS : std::int32_t {
    AUTOPATCH_DISCONNECTED = 1,     // at the start, at every connect attempt, after every loss
    AUTOPATCH_CONNECTED = 2,        // connected, nothing sent yet
    AUTOPATCH_VALIDATION_SENT = 3,  // the validation request went out
    AUTOPATCH_VALIDATED = 4,        // the validation response was accepted
    AUTOPATCH_DOWNLOADING = 5,      // a file block arrived
    AUTOPATCH_ALL_DOWNLOADED = 6,   // nothing is left to fetch
};

// Why a run of the patch engine ended. Anything but AUTOPATCH_OK stops it.
enum AUTOPATCH_ERROR_CODE : std::int32_t {
    AUTOPATCH_OK = 0,
    AUTOPATCH_ERROR_CONNECT = 1,
    AUTOPATCH_ERROR_MEMORY = 2,
    AUTOPATCH_ERROR_CORRUPT_DOWNLOAD = 3,
    AUTOPATCH_ERROR_UNZIP = 4,
    AUTOPATCH_ERROR_OPEN_PACKAGE = 5,
    AUTOPATCH_ERROR_EXTRACT = 6,
    AUTOPATCH_ERROR_CONFIG_MISSING = 7,
    AUTOPATCH_ERROR_SERVER = 8,
};

#endif  // AUTOPATCH_AUTOPATCH_TYPES_H
