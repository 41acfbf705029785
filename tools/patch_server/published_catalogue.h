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

    std::string path;      // the add-on's
    signed char platform;  // 0: any
    std::uint32_t crc;     // CRC-32 of the whole archive
    std::uint32_t size = 0;

private:
    int descriptor;
};

class PUBLISHED_CATALOGUE {
public:
    // Walks the published folder. Null, with the reason in words, if it holds no client or changed
    // during the walk. Uses ADD_ONS_MANAGER, which has to be started.
    static std::shared_ptr<const PUBLISHED_CATALOGUE> scan(const std::string& folder,
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
    void add_archives(const std::string& folder);

    std::vector<std::unique_ptr<ADD_ON>> add_ons;
    std::set<std::string> mandatory;
    std::vector<PUBLISHED_ARCHIVE> archives;
};

// A text that changes whenever something below the published folder does.
std::string make_fingerprint(const std::string& folder);

#endif  // TOOLS_PATCH_SERVER_PUBLISHED_CATALOGUE_H
