// ORLN_STRING: the platform layer's 8-bit string, which stores itself.
#ifndef PLATFORM_ORLN_STRING_H
#define PLATFORM_ORLN_STRING_H

#include <cstdint>

#include "platform/data_device_client.h"

// A null text is the empty string. Indexes count bytes from 0; a range is `first` to `last`
// inclusive, -1 for `last` means the end, and what lies outside the text is cut off. An object
// belongs to one thread at a time.
class ORLN_STRING : public DATA_DEVICE_CLIENT {
public:
    // The least number of bytes that a new string allocates, terminator included.
    static std::int32_t default_min_str_sz;  // 50

    ORLN_STRING();
    ORLN_STRING(const char* text);
    ORLN_STRING(const ORLN_STRING& other);
    ORLN_STRING(ORLN_STRING&& other) noexcept;
    ~ORLN_STRING() override;

    // Numbers become decimal text; a double has the six places of "%f". The text may be part of
    // this string. Null is the empty string.
    ORLN_STRING& operator=(const ORLN_STRING& other);
    ORLN_STRING& operator=(ORLN_STRING&& other) noexcept;
    ORLN_STRING& operator=(const char* text);
    ORLN_STRING& operator=(char character);
    ORLN_STRING& operator=(std::int32_t number);
    ORLN_STRING& operator=(std::uint32_t number);
    ORLN_STRING& operator=(std::int64_t number);
    ORLN_STRING& operator=(std::uint64_t number);
    ORLN_STRING& operator=(double number);
    ORLN_STRING& operator+=(const ORLN_STRING& other);
    ORLN_STRING& operator+=(const char* text);
    ORLN_STRING& operator+=(char character);
    ORLN_STRING& operator+=(std::int32_t number);
    ORLN_STRING& operator+=(std::uint32_t number);
    ORLN_STRING& operator+=(std::int64_t number);
    ORLN_STRING& operator+=(std::uint64_t number);
    ORLN_STRING& operator+=(double number);

    bool operator==(const ORLN_STRING& other) const;
    bool operator==(const char* other) const;

    // Never null.
    const char* get_text() const { return text ? text : ""; }
    std::int32_t get_length() const;
    bool is_empty() const { return !text || !*text; }
    std::int32_t get_capacity() const { return capacity; }

    // Puts `inserted` in front of the byte at `index`, which is clamped into the text.
    void insert(const char* inserted, std::int32_t index);
    void remove(std::int32_t first, std::int32_t last);
    // Replaces the first occurrence of `from` at or after `start`; 1 if there was one.
    unsigned char replace(const char* from, const char* to, std::int32_t start);
    // The place of `pattern` at or after `start`, or -1. With `case_sensitive` it counts from the
    // start of the string, otherwise from `start`. An empty pattern is never found.
    std::int32_t find(const char* pattern, std::int32_t start, bool case_sensitive) const;
    ORLN_STRING get(std::int32_t first, std::int32_t last) const;
    // Frees the text.
    void clear();
    void trim_start_whitespace();
    void trim_end_whitespace();
    // Negative, 0 or positive, with accented letters as their plain ones.
    std::int32_t compare_7bit(const ORLN_STRING& other, bool case_sensitive) const;

    // The desktop's clipboard (window_platform.h); for the main thread. Copying from one without
    // text leaves the string empty.
    void copy_into_clipboard() const;
    void copy_from_clipboard();

    // As the dynamic text of a DATA_DEVICE: a 4-byte count and the bytes. A failed read leaves the
    // string empty.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

private:
    void set(const char* source, std::int32_t source_length);
    // Room for `length` bytes and the terminator; an allocation never shrinks.
    void reserve(std::int32_t length);
    // Replaces the bytes [first, first + removed) by those of `source`.
    void splice(std::int32_t first, std::int32_t removed, const char* source,
                std::int32_t source_length);

    char* text = nullptr;  // from malloc
    std::int32_t capacity = 0;
    std::int32_t min_allocation = default_min_str_sz;
};

// Copies `text`, which is in the Latin-1 encoding, with accented letters as their plain ones: "AE"
// for the ligature (in the case of the letter, so also "ae"), "ss" for the sharp s, other bytes
// above 127 as "?". The result is cut at `size` - 1 characters and zero-terminated.
void convert_string_to_7bit(const char* text, char* out, std::int32_t size);

// Compares two texts through the same mapping: negative, 0 or positive. Null is the empty text.
std::int32_t compare_7bit(const char* a, const char* b, bool case_sensitive);

#endif  // PLATFORM_ORLN_STRING_H
