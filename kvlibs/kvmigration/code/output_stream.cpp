#include "kvmigration/output_stream.h"

#include <algorithm>
#include <bit>

#include "kvmigration/input_stream.h"
#include "whole_file.h"

namespace KVMIGRATION {

static_assert(std::endian::native == std::endian::little, "stored files are little-endian");

OUTPUT_STREAM::OUTPUT_STREAM(const STRING& path) : file_(open_new_file(path.c_str())) {
}

bool OUTPUT_STREAM::close() {
    if (!file_) {
        return false;
    }
    const bool written = std::ferror(file_.get()) == 0;
    return std::fclose(file_.release()) == 0 && written;
}

bool OUTPUT_STREAM::write(const void* buffer, std::int32_t size) {
    if (!file_ || size < 0) {
        return false;
    }
    const auto count = static_cast<std::size_t>(size);
    return count == 0 || ::fwrite_unlocked(buffer, 1, count, file_.get()) == count;
}

bool OUTPUT_STREAM::write_string(const STRING& text) {
    constexpr std::size_t limit = BASIC_INPUT_STREAM::STRING_LIMIT - 1;
    const auto length = static_cast<std::int32_t>(std::min(text.size(), limit));
    return write(length) && write(static_cast<const void*>(text.data()), length);
}

}  // namespace KVMIGRATION
