#include "kvmigration/files.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "kvcore/text_field.h"
#include "whole_file.h"

namespace KVMIGRATION {
namespace {

struct PATH_PIECES {
    std::string_view drive;
    std::string_view dir;
    std::string_view name;
    std::string_view ext;
};

PATH_PIECES split(std::string_view path) {
    PATH_PIECES pieces;
    if (path.size() >= 2 && path[1] == ':') {
        pieces.drive = path.substr(0, 2);
        path.remove_prefix(2);
    }
    // A further ":" ends the name, though not the extension.
    const std::size_t end = std::min(path.find(':'), path.size());
    const std::size_t slash = path.substr(0, end).find_last_of("/\\");
    const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
    const std::size_t dot = path.substr(start, end - start).rfind('.');
    pieces.dir = path.substr(0, start);
    if (dot == std::string_view::npos) {
        pieces.name = path.substr(start, end - start);
    } else {
        pieces.name = path.substr(start, dot);
        pieces.ext = path.substr(start + dot);
    }
    return pieces;
}

void copy_piece(char* field, std::size_t size, std::string_view piece) {
    if (field) {
        KVCORE::copy_text_field(field, size, std::string(piece).c_str());
    }
}

bool opens(const char* path, const char* mode) {
    std::FILE* const file = open_existing_file(path, mode);
    if (file) {
        std::fclose(file);
    }
    return file != nullptr;
}

}  // namespace

bool file_exists(const char* path) {
    return opens(path, "rb");
}

bool file_writeable(const char* path) {
    return opens(path, "rb+");
}

std::unique_ptr<unsigned char[]> load_binary(const char* path, std::uint32_t* size) {
    std::string bytes;
    const bool loaded = read_whole_file(path, bytes);
    if (size) {
        *size = static_cast<std::uint32_t>(bytes.size());
    }
    if (!loaded) {
        return nullptr;
    }
    std::unique_ptr<unsigned char[]> block(new unsigned char[bytes.size()]);
    std::memcpy(block.get(), bytes.data(), bytes.size());
    return block;
}

bool save_binary(const char* path, const void* data, std::uint32_t size) {
    return write_whole_file(path, data, size);
}

void _splitpath_s(const char* path, char* drive, std::size_t drive_size, char* dir,
                  std::size_t dir_size, char* name, std::size_t name_size, char* ext,
                  std::size_t ext_size) {
    const PATH_PIECES pieces = split(path ? path : "");
    copy_piece(drive, drive_size, pieces.drive);
    copy_piece(dir, dir_size, pieces.dir);
    copy_piece(name, name_size, pieces.name);
    copy_piece(ext, ext_size, pieces.ext);
}

STRING extract(const STRING& path, std::uint32_t parts) {
    const PATH_PIECES pieces = split(path);
    STRING joined;
    if (parts & PATH_FOLDER) {
        joined.append(pieces.drive).append(pieces.dir);
    }
    if (parts & PATH_NAME) {
        joined.append(pieces.name);
    }
    if (parts & PATH_EXTENSION) {
        joined.append(pieces.ext);
    }
    return joined;
}

STRING remove_path(const STRING& path) {
    return extract(path, PATH_NAME | PATH_EXTENSION);
}

}  // namespace KVMIGRATION
