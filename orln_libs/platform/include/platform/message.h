// MESSAGE: a DATA_DEVICE in memory, on a buffer that grows as it is written.
#ifndef PLATFORM_MESSAGE_H
#define PLATFORM_MESSAGE_H

#include <cstdint>

#include "platform/data_device.h"
#include "platform/data_device_client.h"

// The buffer starts with header_size reserved bytes, which reads and writes never touch: the first
// byte written to an empty message lands behind them, and they are zero until somebody packs a
// header. A message of length 0 is empty and has no header yet.
//
// Callers count positions from the payload; `pos` and `length` count from the buffer's start.
class MESSAGE : public DATA_DEVICE, public DATA_DEVICE_CLIENT {
public:
    static constexpr std::int32_t default_block_size = 256;

    // `block_size` is the allocation grain in bytes; 0 (or less) means default_block_size.
    explicit MESSAGE(std::int16_t header_size = 0, std::int32_t block_size = 0);
    MESSAGE(const MESSAGE& other);
    ~MESSAGE() override;

    // A deep copy of bytes, position, header size, byte order and uncompressed size. An empty
    // source clears this message.
    MESSAGE& operator=(const MESSAGE& other);
    // The same length and the same bytes.
    bool operator==(const MESSAGE& other) const;

    std::int32_t get_pos() const override;
    // No effect when empty. From the start the position becomes header_size + offset; from the end
    // length - offset, so that a positive offset goes back. Clamped into header_size to length.
    void set_pos(std::int32_t offset, bool from_end) const override;
    std::int32_t read_data_block(void* data, std::int32_t size) const override;
    // `data` may not lie in this message's own buffer.
    std::int32_t write_data_block(const void* data, std::int32_t size) override;
    std::int64_t get_bytes_left() const override;

    // Frees the buffer. header_size, block_size and byte_order stay.
    virtual void clear();

    // The stored form: byte_order (1 byte), length with bit 31 set, uncompressed_size, the buffer
    // with its header. Reading also takes the older form with bit 31 clear and no second number.
    // A length that the device can't hold is refused. After a read the position is the payload's
    // start; after a failed one the message is empty.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

    // The text form: a digit for the byte order, both numbers and the bytes in hexadecimal. Hex
    // digits may be in either case. Yields 0, with the message unchanged, for a text under 17
    // characters, with too few digits for its length or with a character that is no digit.
    // `replace`: the message becomes the text's, position at the payload's start; otherwise the
    // bytes are written at the position.
    virtual unsigned char get_from_string(const char* text, bool replace);
    // `whole`: the whole buffer; otherwise what lies from the position on, with both numbers
    // reduced by the position. `buffer` must hold 2 * (bytes covered) + 18 characters, else 0.
    virtual unsigned char put_to_string(char* buffer, std::int32_t size, bool whole) const;

    // Makes the capacity at least `size` rounded up to the block size. 0 if `size` is below 0 or
    // can't be rounded in 32 bits.
    unsigned char allocate_buffer(std::int32_t size);
    // The rounded size; -1 when `size` is below 0 or too large.
    std::int32_t calculate_buffer_allocation_size(std::int32_t size) const;
    // Takes ownership of `new_buffer`, made by KVCORE::MEMORY_LIBC, which becomes the whole message
    // of `size` bytes. The position is 0, before the payload's start: call set_pos(0, false).
    void set_buffer(unsigned char* new_buffer, std::int32_t size);
    void free_buffer();
    // Drops the payload but keeps header bytes and allocation. Without a header it is clear.
    void reset_payload();
    // Cuts `size` bytes off the end; more than there are clears the message. The position stays.
    void shrink_buffer(std::int32_t size);
    // Takes the other's bytes and fields except header_size; the other ends up empty.
    void move_from(MESSAGE& other);

    // Replaces the buffer, header included, by its zlib form. `level` is zlib's, -1 to 9. Yields 1
    // for an empty message and 0 for one that is compressed already. The position becomes 0.
    unsigned char compress(std::int32_t level);
    // The reverse. Yields 1 for an empty message and 0 for one that isn't compressed, whose data is
    // bad, or whose uncompressed_size is more than its data can yield; a failure changes nothing.
    // The position becomes 0.
    unsigned char uncompress();

    // All bytes, header included; null when nothing is allocated. get_length() of them are in use.
    unsigned char* get_buffer() { return buffer; }
    const unsigned char* get_buffer() const { return buffer; }
    std::int32_t get_length() const { return length; }
    // Bytes behind the header.
    std::int32_t get_payload_length() const {
        return length > header_size ? length - header_size : 0;
    }
    std::int16_t get_header_size() const { return header_size; }
    std::int32_t get_uncompressed_size() const { return uncompressed_size; }
    std::int32_t get_capacity() const { return capacity; }
    std::int32_t get_block_size() const { return block_size; }
    bool is_empty() const { return length == 0; }

protected:
    std::int32_t length = 0;
    std::int16_t header_size;
    unsigned char* buffer = nullptr;  // owned
    std::int32_t uncompressed_size = 0;
    mutable std::int32_t pos = 0;
    std::int32_t capacity = 0;
    std::int32_t block_size;

private:
    // Makes [pos, pos + size) part of the message.
    bool grow_for_write(std::int32_t size);
    void move_to_payload() const;
};

#endif  // PLATFORM_MESSAGE_H
