#include "published_catalogue.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

#include "autopatch/add_ons_manager.h"
#include "autopatch/crc_info.h"
#include "platform/disk_manager.h"

namespace fs = std::filesystem;

namespace {

struct PLATFORM_NAME {
    signed char platform;
    const char* name;
};
constexpr PLATFORM_NAME PLATFORM_NAMES[] = {{1, "win32"}, {3, "mac"}, {4, "x11i86"}};

// Where an add-on's files lie in the published folder.
std::string published_folder(const std::string& root, const ADD_ON& add_on) {
    std::string below = add_on.path;
    for (const ADD_ON* parent = add_on.parent; parent != nullptr; parent = parent->parent) {
        below = std::string(parent->path) + "/" + below;
    }
    return root + (add_on.type == ADD_ON::ADD_ON_SKIN ? "/skins/" : "/") + below;
}

std::string archive_name(const ADD_ON& add_on, signed char platform) {
    for (const PLATFORM_NAME& known : PLATFORM_NAMES) {
        if (add_on.type == ADD_ON::ADD_ON_APPLICATION && known.platform == platform) {
            return std::string(add_on.path) + "_" + known.name + ".tar.gz";
        }
    }
    return std::string(add_on.path) + ".tar.gz";
}

const ADD_ON* find_by_path(const std::vector<std::unique_ptr<ADD_ON>>& list, const char* path) {
    const auto found = std::find_if(list.begin(), list.end(), [path](const auto& add_on) {
        return std::strcmp(add_on->path, path) == 0;
    });
    return found == list.end() ? nullptr : found->get();
}

bool is_outdated(const ADD_ON* installed, const ADD_ON& published) {
    return installed == nullptr || installed->invalid || installed->version < published.version;
}

const ADD_ON* find_child(const ADD_ON* parent, const char* path) {
    for (std::int32_t i = 0; parent != nullptr && i < parent->get_child_count(); ++i) {
        if (std::strcmp(parent->get_child(i)->path, path) == 0) {
            return parent->get_child(i);
        }
    }
    return nullptr;
}

// Marks what has to be downloaded of `published`. True if that is anything.
bool mark_needed(ADD_ON& published, const ADD_ON* installed) {
    if (published.get_child_count() == 0) {
        published.invalid = is_outdated(installed, published);
        return published.invalid;
    }
    // The composite itself stays valid: a launcher takes an invalid one as a reason to fetch all
    // of its children.
    published.invalid = false;
    bool needed = false;
    for (std::int32_t i = 0; i < published.get_child_count(); ++i) {
        ADD_ON& child = *published.get_child(i);
        needed = mark_needed(child, find_child(installed, child.path)) || needed;
    }
    return needed;
}

}  // namespace

PUBLISHED_ARCHIVE::PUBLISHED_ARCHIVE(std::string add_on_path, signed char archive_platform,
                                     std::uint32_t archive_crc, const char* file)
    : path(std::move(add_on_path)),
      platform(archive_platform),
      crc(archive_crc),
      descriptor(::open(file, O_RDONLY | O_CLOEXEC)) {
    struct stat status {};
    // The protocol's sizes have 32 bits.
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
                            status.st_size > 0xFFFFFFFFll)) {
        ::close(descriptor);
        descriptor = -1;
    }
    size = static_cast<std::uint32_t>(status.st_size);
}

PUBLISHED_ARCHIVE::PUBLISHED_ARCHIVE(PUBLISHED_ARCHIVE&& other) noexcept
    : path(std::move(other.path)),
      platform(other.platform),
      crc(other.crc),
      size(other.size),
      descriptor(std::exchange(other.descriptor, -1)),
      crc_block_size(other.crc_block_size),
      block_crcs(std::move(other.block_crcs)) {
}

PUBLISHED_ARCHIVE::~PUBLISHED_ARCHIVE() {
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

bool PUBLISHED_ARCHIVE::read(std::uint64_t offset, unsigned char* bytes, std::size_t count) const {
    while (count != 0) {
        const ssize_t got = ::pread(descriptor, bytes, count, static_cast<off_t>(offset));
        if (got <= 0) {
            return false;
        }
        bytes += got;
        offset += static_cast<std::uint64_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

bool PUBLISHED_ARCHIVE::make_block_crcs(std::uint32_t block_size) {
    std::vector<unsigned char> block(block_size);
    block_crcs.clear();
    for (std::uint64_t offset = 0; offset < size; offset += block_size) {
        const auto count =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(block_size, size - offset));
        if (!read(offset, block.data(), count)) {
            return false;
        }
        block_crcs.push_back(static_cast<std::uint32_t>(::crc32(0, block.data(), count)));
    }
    crc_block_size = block_size;
    return true;
}

std::uint32_t PUBLISHED_ARCHIVE::continue_crc(std::uint32_t crc_before, std::uint64_t offset,
                                              const unsigned char* bytes,
                                              std::uint32_t count) const {
    const bool stored = crc_block_size != 0 && offset % crc_block_size == 0 &&
                        (count == crc_block_size || offset + count == size) && count != 0;
    if (!stored) {
        return static_cast<std::uint32_t>(::crc32(crc_before, bytes, count));
    }
    return static_cast<std::uint32_t>(
        ::crc32_combine(crc_before, block_crcs[static_cast<std::size_t>(offset / crc_block_size)],
                        static_cast<::z_off_t>(count)));
}

std::shared_ptr<const PUBLISHED_CATALOGUE> PUBLISHED_CATALOGUE::scan(const std::string& folder,
                                                                     std::uint32_t block_size,
                                                                     std::string& reason) {
    const std::string before = make_fingerprint(folder);
    DISK_MANAGER disk;
    if (!disk.move_down(fs::absolute(folder).lexically_normal().c_str(), false, true)) {
        reason = folder + " isn't there";
        return nullptr;
    }
    // The walk ends the process when there is no client, so look first.
    DISK_MANAGER client = disk;
    if (!client.move_down("app") || !DISK_MANAGER::file_exists(client, "defaults.cfg")) {
        reason = folder + " holds no published client (app/defaults.cfg)";
        return nullptr;
    }
    if (before.empty()) {
        reason = folder + " can't be read to its end";
        return nullptr;
    }
    ADD_ONS_MANAGER& manager = *ADD_ONS_MANAGER::get_instance();
    manager.get_list(disk);
    auto catalogue = std::make_shared<PUBLISHED_CATALOGUE>();
    for (std::int32_t i = 0; i < manager.installed.get_count(); ++i) {
        const ADD_ON* add_on = static_cast<const ADD_ON*>(manager.installed[i]);
        if (add_on->parent == nullptr) {
            catalogue->add_ons.push_back(std::make_unique<ADD_ON>(add_on));
        }
    }
    for (std::int32_t i = 0; i < manager.mandatory.get_count(); ++i) {
        catalogue->mandatory.insert(static_cast<const ADD_ON*>(manager.mandatory[i])->path);
    }
    if (find_by_path(catalogue->add_ons, "app") == nullptr) {
        reason = folder + "/app can't be read";
        return nullptr;
    }
    if (!catalogue->add_archives(folder, block_size, reason)) {
        return nullptr;
    }
    if (make_fingerprint(folder) != before) {
        reason = folder + " changed while it was read";
        return nullptr;
    }
    return catalogue;
}

bool PUBLISHED_CATALOGUE::add_archives(const std::string& folder, std::uint32_t block_size,
                                       std::string& reason) {
    const ADD_ONS_MANAGER& manager = *ADD_ONS_MANAGER::get_instance();
    for (std::int32_t i = 0; i < manager.crc_infos.get_count(); ++i) {
        const CRC_INFO& info = *static_cast<const CRC_INFO*>(manager.crc_infos[i]);
        const std::string file = published_folder(folder, *info.add_on) + "/" +
                                 archive_name(*info.add_on, info.platform);
        std::error_code error;
        if (!fs::exists(file, error) && !error) {
            continue;  // not for this platform
        }
        PUBLISHED_ARCHIVE archive(info.add_on->path, info.platform, info.crc, file.c_str());
        if (!archive.is_open() || (block_size != 0 && !archive.make_block_crcs(block_size))) {
            reason = file + " can't be read, or is larger than 4 GB";
            return false;
        }
        archives.push_back(std::move(archive));
    }
    return true;
}

const PUBLISHED_ARCHIVE* PUBLISHED_CATALOGUE::find_archive(const char* path,
                                                           signed char platform) const {
    for (const PUBLISHED_ARCHIVE& archive : archives) {
        if (archive.path == path && (archive.platform == 0 || archive.platform == platform)) {
            return &archive;
        }
    }
    return nullptr;
}

std::vector<std::unique_ptr<ADD_ON>> PUBLISHED_CATALOGUE::select_needed(
    const std::vector<std::unique_ptr<ADD_ON>>& installed) const {
    std::vector<std::unique_ptr<ADD_ON>> needed;
    for (const auto& published : add_ons) {
        const ADD_ON* present = find_by_path(installed, published->path);
        if (present == nullptr && !mandatory.contains(published->path)) {
            continue;
        }
        auto copy = std::make_unique<ADD_ON>(published.get());
        if (mark_needed(*copy, present)) {
            needed.push_back(std::move(copy));
        }
    }
    return needed;
}

std::string make_fingerprint(const std::string& folder) {
    std::vector<std::string> lines;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        // What is being packed isn't published yet.
        if (it->path().filename() == "publishing") {
            it.disable_recursion_pending();
            continue;
        }
        struct stat status {};
        if (::stat(it->path().c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
            lines.push_back(it->path().string() + " " + std::to_string(status.st_ino) + " " +
                            std::to_string(status.st_size) + " " +
                            std::to_string(status.st_mtim.tv_sec) + "." +
                            std::to_string(status.st_mtim.tv_nsec));
        }
    }
    std::string text;
    if (error) {
        return text;
    }
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}
