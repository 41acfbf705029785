// DATA_FILE: a DATA_DEVICE on a disk file, with a block cache.
#ifndef PLATFORM_DATA_FILE_H
#define PLATFORM_DATA_FILE_H

#include <cstdint>
#include <cstdio>
#include <memory>

#include "platform/data_device.h"
#include "platform/file_mode.h"

// Reads and writes go through a cache, so that records of a few bytes cost a copy and one system
// call is made for each cache full; a block at least as large as the cache goes straight to the
// file. A file is open for reading or for writing (FILE_WRITE, FILE_APPEND), never both: reading a
// file that is open for writing, or the reverse, is a programming error and ends the process.
//
// Files may be larger than 2 GiB: get_pos saturates at 2147483647, the operations named *_64 don't.
class DATA_FILE : public DATA_DEVICE {
public:
    static constexpr std::int32_t default_cache_sz = 524288;
    static constexpr std::int32_t min_cache_sz = 1024;
    static constexpr std::int32_t max_cache_sz = 0xA00000;

    // Takes ownership of `stream`, which stands at position 0 of the data (behind the byte-order
    // header if there is one) or, for FILE_APPEND, anywhere the first write may go. A null stream
    // is a closed file. Best without a buffer of its own (setvbuf). A cache size of -1 means
    // default_cache_sz; others are clamped. Used by DISK_MANAGER::open_data_file, which is the only
    // maker of data files; DISK_MANAGER::close ends them.
    DATA_FILE(std::FILE* stream, FILE_MODE mode, std::int32_t byte_order,
              bool has_byte_order_header, std::int32_t cache_size = -1);
    // Flushes and closes; a caller who must know whether all was stored calls close before.
    ~DATA_FILE() override;

    DATA_FILE(const DATA_FILE&) = delete;
    DATA_FILE& operator=(const DATA_FILE&) = delete;

    std::int32_t get_pos() const override;
    std::int64_t get_pos_64() const;
    // From the start, position 0 is the first byte behind the byte-order header. From the end,
    // `offset` counts as in fseek: negative is before the end. The result is never before
    // position 0.
    void set_pos(std::int32_t offset, bool from_end) const override;
    void set_pos_64(std::int64_t offset, bool from_end) const;

    std::int32_t read_data_block(void* data, std::int32_t size) const override;
    // Once a write has failed all later writes are refused, because what stands behind the gap
    // would be worthless.
    std::int32_t write_data_block(const void* data, std::int32_t size) override;

    // 0 unless the file is open for reading; counts to where the file ended when it was opened.
    std::int64_t get_bytes_left() const override;

    // Bytes of the file without its byte-order header, written ones included; 0 when closed.
    std::int64_t get_size() const;

    // Hands what is cached for writing to the operating system, or gives back what was read ahead.
    // False if a write has failed, now or before.
    bool flush_cache() const;

    // Flushes and closes the stream. False if any write of this file's life has failed, the ones
    // in flush and close included. A second call does nothing and yields the same.
    bool close();

    // True if any write has failed so far; what is still cached hasn't been tried.
    bool has_failed() const { return failed; }
    bool is_open() const { return stream != nullptr; }
    std::int32_t get_cache_size() const { return cache_size; }

private:
    std::int64_t header_size() const { return has_byte_order_header ? 1 : 0; }
    std::int32_t read_stream(void* target, std::int32_t size) const;
    bool seek_stream(std::int64_t target) const;
    std::int32_t take_from_cache(unsigned char* target, std::int32_t size) const;
    void fail_write() const;

    std::unique_ptr<unsigned char[]> cache;
    mutable std::int32_t cache_pos = 0;   // next byte to be read
    mutable std::int32_t cache_fill = 0;  // bytes held
    std::int32_t cache_size;
    FILE_MODE mode;
    std::FILE* stream;
    bool has_byte_order_header;
    mutable bool failed = false;
    // Of a file open for reading: where the stream stands and where the file ended at the opening,
    // both from its first byte. Kept, so that no record that is read costs a system call.
    mutable std::int64_t stream_pos = 0;
    std::int64_t stream_end = 0;
};

#endif  // PLATFORM_DATA_FILE_H
