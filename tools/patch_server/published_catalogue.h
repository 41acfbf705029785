// What an update server offers at one moment: add-on records and their open archives.
//
// A catalogue never changes. The archives are open files, so that a session which was told of a
// version gets that version to its end, whatever is published meanwhile.
#ifndef TOOLS_PATCH_SERVER_PUBLISHED_CATALOGUE_H
#define TOOLS_PATCH_SERVER_PUBLISHED_CATALOGUE_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "autopatch/add_on.h"

class PUBLISHED_ARCHIVE {
public:
    // Opens `file`. is_open() tells whether that worked.
    PUBLISHED_ARCHIVE(std::string add_on_path, signed char archive_platform,
                      std::uint32_t archive_crc, const char* file);
    PUBLISHED_ARCHIVE(PUBLISHED_ARCHIVE&& other) noexcept;
    PUBLISHED_ARCHIVE& operator=(PUBLISHED_ARCHIVE&&) = delete;
    ~PUBLISHED_ARCHIVE();

    bool is_open() const { return descriptor >= 0; }
    int get_descriptor() const { return descriptor; }
    // Reads exactly `count` bytes at `offset`. Safe on any thread.
    bool read(std::uint64_t offset, unsigned char* bytes, std::size_t count) const;

    // Takes the checksum of each block of `block_size` bytes, so that sessions needn't. False if
    // the archive can't be read.
    bool make_block_crcs(std::uint32_t block_size);
    // `crc` continued over `count` bytes at `offset`, whose content is `bytes`: from the stored
    // checksums where these are whole blocks.
    std::uint32_t continue_crc(std::uint32_t crc_before, std::uint64_t offset,
                               const unsigned char* bytes, std::uint32_t count) const;

    std::string path;      // the add-on's
    signed char platform;  // 0: any
    std::uint32_t crc;     // CRC-32 of the whole archive
    std::uint32_t size = 0;

private:
    int descriptor;
    std::uint32_t crc_block_size = 0;
    std::vector<std::uint32_t> block_crcs;
};

class PUBLISHED_CATALOGUE {
public:
    // Walks the published folder. Null, with the reason in words, if it holds no client, can't be
    // read to its end or changed during the walk. With a `block_size` other than 0 the archives are
    // prepared for being sent in such blocks. Uses ADD_ONS_MANAGER, which has to be started.
    static std::shared_ptr<const PUBLISHED_CATALOGUE> scan(const std::string& folder,
                                                           std::uint32_t block_size,
                                                           std::string& reason);

    // The archive of an add-on for a platform, or null.
    const PUBLISHED_ARCHIVE* find_archive(const char* path, signed char platform) const;

    // Copies of the records that a launcher with these installed add-ons has to install, marked as
    // to be downloaded; of a composite add-on the children that need it.
    std::vector<std::unique_ptr<ADD_ON>> select_needed(
        const std::vector<std::unique_ptr<ADD_ON>>& installed) const;

    // All top-level records.
    const std::vector<std::unique_ptr<ADD_ON>>& get_add_ons() const { return add_ons; }
    const std::vector<PUBLISHED_ARCHIVE>& get_archives() const { return archives; }

private:
    bool add_archives(const std::string& folder, std::uint32_t block_size, std::string& reason);

    std::vector<std::unique_ptr<ADD_ON>> add_ons;
    std::set<std::string> mandatory;
    std::vector<PUBLISHED_ARCHIVE> archives;
};

// A text that changes whenever something below the published folder does; empty if the folder can't
// be read to its end.
std::string make_fingerprint(const std::string& folder);

#endif  // TOOLS_PATCH_SERVER_PUBLISHED_CATALOGUE_H
