// An archive from the server: the checked unpacking must stay inside its folder, whatever the
// archive holds, and write nothing at all of an archive that the check refuses.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "modules/misc/archive_check.h"
#include "modules/misc/tar_file.h"
#include "platform/disk_manager.h"

namespace {

namespace fs = std::filesystem;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// root/a.tar, root/deep/out: whatever else appears below root has escaped.
struct FUZZ_FOLDER {
    fs::path root = fs::temp_directory_path() / ("kv_tar_fuzz_" + std::to_string(::getpid()));
    fs::path out = root / "deep" / "out";
    DISK_MANAGER disk;

    FUZZ_FOLDER() {
        fs::create_directories(out);
        require(disk.move_down(root.c_str(), false, true));
    }
    ~FUZZ_FOLDER() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    static std::size_t count_in(const fs::path& folder) {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder)) {
            count++;
        }
        return count;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FUZZ_FOLDER folder;
    fs::remove_all(folder.out);
    fs::create_directory(folder.out);
    std::ofstream(folder.root / "a.tar", std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    TAR_FILE tar;
    require(tar.open_tar_file("a.tar", folder.disk));
    std::string name;
    std::string reason;
    const bool unsafe = find_unsafe_entry(tar, name, reason);
    require(unsafe == !reason.empty());

    DISK_MANAGER target;
    require(target.move_down(folder.out.c_str(), false, true));
    std::uint64_t written = 0;
    const bool unpacked = tar.unpack_all_files_checked(target, reason, [&written](std::uint64_t n) {
        written = n;
        return true;
    });
    require(written <= size);
    require(unpacked == reason.empty());
    require(!(unsafe && unpacked));
    require(!unsafe || FUZZ_FOLDER::count_in(folder.out) == 0);
    require(FUZZ_FOLDER::count_in(folder.root) == 2);
    require(FUZZ_FOLDER::count_in(folder.root / "deep") == 1);
    for (const auto& entry : fs::recursive_directory_iterator(folder.out)) {
        require(!entry.is_symlink() && (entry.is_directory() || entry.is_regular_file()));
    }

    // The plain walk trusts names, so only its reading is tried here.
    require(tar.close_tar_file());
    require(tar.open_tar_file("a.tar", folder.disk));
    std::size_t headers = 0;
    while (tar.read_header()) {
        require(tar.get_entry_size() >= 0 && ++headers <= size / TAR_FILE::block_size + 1);
    }
    return 0;
}
