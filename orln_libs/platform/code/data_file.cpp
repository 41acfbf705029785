#include "platform/data_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "platform/process_tools.h"

namespace {

[[noreturn]] void end_on(const char* text) {
    display_message("Error", text, 0);
    exit_app("Application was unable to continue");
}

// Bytes of the file on disk, or 0 for a stream that isn't a file.
std::int64_t size_on_disk(std::FILE* stream) {
    struct stat facts;
    return ::fstat(::fileno(stream), &facts) == 0 && S_ISREG(facts.st_mode)
               ? static_cast<std::int64_t>(facts.st_size)
               : 0;
}

}  // namespace

DATA_FILE::DATA_FILE(std::FILE* file_stream, FILE_MODE file_mode, std::int32_t order,
                     bool byte_order_header, std::int32_t size)
    : DATA_DEVICE(order),
      cache_size(size == -1 ? default_cache_sz : std::clamp(size, min_cache_sz, max_cache_sz)),
      mode(file_mode),
      stream(file_stream),
      has_byte_order_header(byte_order_header) {
    cache.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(cache_size)]);
    if (!cache) {
        end_on("DATA_FILE::DATA_FILE() - unable to allocate cache");
    }
    if (stream && mode == FILE_READ) {
        stream_pos = std::max<std::int64_t>(::ftello(stream), 0);
        stream_end = size_on_disk(stream);
    }
}

DATA_FILE::~DATA_FILE() {
    close();
}

bool DATA_FILE::close() {
    if (stream) {
        flush_cache();
        if (std::fclose(stream) != 0 && mode != FILE_READ) {
            failed = true;
        }
        stream = nullptr;
    }
    return !failed;
}

std::int32_t DATA_FILE::read_stream(void* target, std::int32_t size) const {
    const auto count =
        static_cast<std::int32_t>(std::fread(target, 1, static_cast<std::size_t>(size), stream));
    stream_pos += count;
    return count;
}

bool DATA_FILE::seek_stream(std::int64_t target) const {
    if (::fseeko(stream, static_cast<off_t>(target), SEEK_SET) != 0) {
        return false;
    }
    stream_pos = target;
    return true;
}

void DATA_FILE::fail_write() const {
    failed = true;
    cache_fill = 0;
}

bool DATA_FILE::flush_cache() const {
    if (!stream) {
        return !failed;
    }
    if (mode == FILE_READ) {
        if (cache_fill != cache_pos) {
            seek_stream(stream_pos - (cache_fill - cache_pos));
        }
    } else if (!failed) {
        const auto count = static_cast<std::size_t>(cache_fill);
        // The C library's own buffer has to go too: a full disk must show here.
        if (std::fwrite(cache.get(), 1, count, stream) != count || std::fflush(stream) != 0) {
            fail_write();
        }
    }
    cache_pos = cache_fill = 0;
    return !failed;
}

std::int64_t DATA_FILE::get_pos_64() const {
    if (!stream) {
        return 0;
    }
    // What was read ahead is subtracted rather than given back, so that a reader who asks for the
    // position after each record keeps its cache.
    if (mode == FILE_READ) {
        return std::max<std::int64_t>(stream_pos - (cache_fill - cache_pos) - header_size(), 0);
    }
    flush_cache();
    return std::max<std::int64_t>(::ftello(stream) - header_size(), 0);
}

std::int32_t DATA_FILE::get_pos() const {
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(get_pos_64(), std::numeric_limits<std::int32_t>::max()));
}

void DATA_FILE::set_pos_64(std::int64_t offset, bool from_end) const {
    if (!stream) {
        return;
    }
    flush_cache();
    const std::int64_t base = from_end ? size_on_disk(stream) : header_size();
    const std::int64_t target = offset > std::numeric_limits<std::int64_t>::max() - base
                                    ? std::numeric_limits<std::int64_t>::max()
                                    : std::max(base + offset, header_size());
    if (!seek_stream(target) && mode != FILE_READ) {
        fail_write();
    }
}

void DATA_FILE::set_pos(std::int32_t offset, bool from_end) const {
    set_pos_64(offset, from_end);
}

std::int64_t DATA_FILE::get_size() const {
    if (!stream) {
        return 0;
    }
    if (mode != FILE_READ) {
        flush_cache();
    }
    return std::max<std::int64_t>(size_on_disk(stream) - header_size(), 0);
}

std::int64_t DATA_FILE::get_bytes_left() const {
    if (!stream || mode != FILE_READ) {
        return 0;
    }
    return std::max<std::int64_t>(stream_end - stream_pos, 0) + (cache_fill - cache_pos);
}

std::int32_t DATA_FILE::take_from_cache(unsigned char* target, std::int32_t size) const {
    const std::int32_t count = std::min(size, cache_fill - cache_pos);
    std::memcpy(target, cache.get() + cache_pos, static_cast<std::size_t>(count));
    cache_pos += count;
    return count;
}

std::int32_t DATA_FILE::read_data_block(void* data, std::int32_t size) const {
    if (!stream) {
        return finish_transfer(size, 0);
    }
    if (mode != FILE_READ) {
        end_on(
            "DATA_FILE::read_data_block() - disk manager reading a file that is opened for write");
    }
    if (size <= 0) {
        return finish_transfer(size, 0);
    }
    auto* target = static_cast<unsigned char*>(data);
    std::int32_t done = take_from_cache(target, size);
    while (done < size) {
        // The cache is empty here.
        const std::int32_t rest = size - done;
        if (rest >= cache_size) {
            done += read_stream(target + done, rest);
            break;
        }
        cache_pos = 0;
        cache_fill = read_stream(cache.get(), cache_size);
        if (cache_fill == 0) {
            break;
        }
        done += take_from_cache(target + done, rest);
    }
    return finish_transfer(size, done);
}

std::int32_t DATA_FILE::write_data_block(const void* data, std::int32_t size) {
    if (!stream) {
        return finish_transfer(size, 0);
    }
    if (mode == FILE_READ) {
        end_on(
            "DATA_FILE::write_data_block() - disk manager writing a file that is opened for read");
    }
    if (failed || size < 0) {
        finish_transfer(1, 0);
        return 0;
    }
    if (size >= cache_size - cache_fill && !flush_cache()) {
        return finish_transfer(size, 0);
    }
    if (size == 0) {
        return finish_transfer(0, 0);  // `data` may be null
    }
    if (size < cache_size) {
        std::memcpy(cache.get() + cache_fill, data, static_cast<std::size_t>(size));
        cache_fill += size;
        return finish_transfer(size, size);
    }
    const std::size_t count = std::fwrite(data, 1, static_cast<std::size_t>(size), stream);
    if (count != static_cast<std::size_t>(size)) {
        fail_write();
    }
    return finish_transfer(size, static_cast<std::int32_t>(count));
}
