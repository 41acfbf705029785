#include "modules/misc/gzip_tools.h"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "archive_trace.h"
#include "file_descriptor.h"
#include "platform/disk_manager.h"

namespace {

// Pieces of this size keep the calls few and stay in the processor's cache.
constexpr unsigned PIECE = 128 * 1024;

constexpr const char* GZREAD_FAILED = "ungzip_file - gzread returned an error";

struct GZIP_CLOSER {
    void operator()(gzFile file) const { gzclose(file); }
};
using GZIP_HANDLE = std::unique_ptr<gzFile_s, GZIP_CLOSER>;

// Under the name that the disk manager opens the file by, which can't lead out of the folder.
std::string path_of(const DISK_MANAGER& folder, std::string name) {
    DISK_MANAGER::convert_illegal_chars(name.data());
    return folder.get_path_string(name.c_str());
}

// Expands all of `source`, which must turn out to be a gzip file that is whole.
bool expand(gzFile source, int target, const ARCHIVE_PROGRESS& progress) {
    const std::unique_ptr<unsigned char[]> piece(new (std::nothrow) unsigned char[PIECE]);
    if (!piece) {
        return false;
    }
    std::uint64_t done = 0;
    for (;;) {
        const int size = gzread(source, piece.get(), PIECE);
        // zlib hands a file without the gzip mark through unchanged.
        if (size < 0 || gzdirect(source)) {
            trace_archive_failure(GZREAD_FAILED);
            return false;
        }
        if (size == 0) {
            break;
        }
        if (!write_whole(target, piece.get(), static_cast<std::size_t>(size))) {
            return false;
        }
        done += static_cast<unsigned>(size);
        if (progress && !progress(done)) {
            return false;
        }
    }
    // The end in the middle of the stream is no error to gzread.
    int error = Z_OK;
    gzerror(source, &error);
    if (error != Z_OK) {
        trace_archive_failure(GZREAD_FAILED);
    }
    return error == Z_OK;
}

}  // namespace

bool gzip_file(const char* name, const DISK_MANAGER& folder) {
    if (!name) {
        return false;
    }
    const FILE_DESCRIPTOR source(::open(path_of(folder, name).c_str(), O_RDONLY | O_CLOEXEC));
    const std::unique_ptr<unsigned char[]> piece(new (std::nothrow) unsigned char[PIECE]);
    if (!source.is_open() || !piece) {
        trace_archive_failure("gzip_file - cannot open source file ", name);
        return false;
    }
    GZIP_HANDLE target(gzopen(path_of(folder, std::string(name) + ".gz").c_str(), "wbe"));
    if (!target) {
        return false;
    }
    gzbuffer(target.get(), PIECE);
    for (;;) {
        const ssize_t size = read_some(source.get(), piece.get(), PIECE);
        if (size < 0) {
            return false;
        }
        if (size == 0) {
            break;
        }
        if (gzwrite(target.get(), piece.get(), static_cast<unsigned>(size)) != size) {
            return false;
        }
    }
    return gzclose(target.release()) == Z_OK;
}

bool ungzip_file(const char* source_name, const char* target_name, const DISK_MANAGER& folder,
                 const ARCHIVE_PROGRESS& progress) {
    if (!source_name || !target_name || std::strcmp(source_name, target_name) == 0) {
        return false;
    }
    FILE_DESCRIPTOR target(::open(path_of(folder, target_name).c_str(),
                                  O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!target.is_open()) {
        trace_archive_failure("ungzip_file - cannot open target_file ", target_name);
        return false;
    }
    const GZIP_HANDLE source(gzopen(path_of(folder, source_name).c_str(), "rbe"));
    if (!source) {
        return false;
    }
    gzbuffer(source.get(), PIECE);
    return expand(source.get(), target.get(), progress) && target.close();
}
