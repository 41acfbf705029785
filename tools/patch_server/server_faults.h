// Faults that a test asks the server to make, so that the launcher's answers to them can be seen.
#ifndef TOOLS_PATCH_SERVER_SERVER_FAULTS_H
#define TOOLS_PATCH_SERVER_SERVER_FAULTS_H

#include <cstdint>
#include <string>

// -1 means: not wanted. Those marked "once" are made a single time in the server's life.
struct SERVER_FAULTS {
    std::int64_t drop_after = -1;       // once: end the connection after so many bytes of archives
    std::int64_t stall_after = -1;      // send nothing more after so many bytes of an archive
    std::int64_t close_in_stream = -1;  // once: end the connection after so many bytes of a stream
    std::int64_t flip_block = -1;       // once: flip a byte in block K (from 0)
    std::int64_t bad_block_crc = -1;    // once: a wrong checksum at the checkpoint K (from 0)
    bool bad_archive_crc = false;       // a wrong checksum of the whole archive
    bool unknown_id = false;            // answer the validation with an unknown message
    bool big_endian = false;            // all numbers big-endian, prefix included
    bool byte_prefix = false;           // frame prefixes go out byte by byte

    // Reads "NAME" or "NAME:NUMBER", the names being those above with "-" for "_". False if it is
    // none.
    bool parse(const std::string& text);
    static const char* describe();
};

#endif  // TOOLS_PATCH_SERVER_SERVER_FAULTS_H
