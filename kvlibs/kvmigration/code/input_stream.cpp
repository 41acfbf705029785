#include "kvmigration/input_stream.h"

#include <sys/types.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "whole_file.h"

namespace KVMIGRATION {

// Values go from the file to memory as they stand.
static_assert(std::endian::native == std::endian::little, "stored files are little-endian");

bool BASIC_INPUT_STREAM::read_string(STRING& text) {
    text.clear();
    std::int32_t length = 0;
    if (!read(length) || length < 0 || length >= STRING_LIMIT || length > get_remaining()) {
        go_to_end();
        return false;
    }
    char buffer[STRING_LIMIT];
    if (!read(static_cast<void*>(buffer), length)) {
        return false;
    }
    text.assign(buffer, ::strnlen(buffer, static_cast<std::size_t>(length)));
    return true;
}

INPUT_STREAM::INPUT_STREAM(const STRING& path)
    : BASIC_INPUT_STREAM(path), file_(open_existing_file(path.c_str(), "rb")) {
    if (file_ && ::fseeko(file_.get(), 0, SEEK_END) == 0) {
        length_ = std::max<std::int64_t>(::ftello(file_.get()), 0);
        ::fseeko(file_.get(), 0, SEEK_SET);
    }
}

std::int64_t INPUT_STREAM::get_position() const {
    return file_ ? ::ftello(file_.get()) : -1;
}

std::int64_t INPUT_STREAM::get_remaining() const {
    return file_ ? std::max<std::int64_t>(length_ - get_position(), 0) : 0;
}

bool INPUT_STREAM::read(bool& value) {
    unsigned char byte = 0;
    if (!read(byte)) {
        return false;
    }
    value = byte != 0;
    return true;
}

bool INPUT_STREAM::read(void* buffer, std::int32_t size) {
    if (!file_ || size < 0) {
        return false;
    }
    const auto wanted = static_cast<std::size_t>(size);
    return wanted == 0 || ::fread_unlocked(buffer, 1, wanted, file_.get()) == wanted;
}

bool INPUT_STREAM::peek(std::uint32_t& value) {
    const std::int64_t position = get_position();
    const bool complete = read(value);
    if (file_) {
        ::fseeko(file_.get(), position, SEEK_SET);
    }
    return complete;
}

void INPUT_STREAM::go_to_end() {
    if (file_) {
        ::fseeko(file_.get(), 0, SEEK_END);
    }
}

}  // namespace KVMIGRATION
