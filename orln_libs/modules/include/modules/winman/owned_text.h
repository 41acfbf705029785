// OWNED_TEXT: an 8-bit text that may be null, as the entries of a skin hold their names.
#ifndef MODULES_WINMAN_OWNED_TEXT_H
#define MODULES_WINMAN_OWNED_TEXT_H

#include <memory>

class DATA_DEVICE;

// Null and empty are different values: a style set without images has no image name at all. The
// object owns its copy of the text and reads like a `const char*`.
class OWNED_TEXT {
public:
    OWNED_TEXT() = default;
    explicit OWNED_TEXT(const char* source) { set(source); }
    OWNED_TEXT(const OWNED_TEXT& other) { set(other); }
    OWNED_TEXT(OWNED_TEXT&&) = default;
    OWNED_TEXT& operator=(const OWNED_TEXT& other) {
        set(other);
        return *this;
    }
    OWNED_TEXT& operator=(OWNED_TEXT&&) = default;

    // Takes a copy, which may be of a part of this very text; null clears.
    void set(const char* source);
    void clear() { text.reset(); }

    operator const char*() const { return text.get(); }

    // The stored form is dynamic text. A text without characters reads as null. 1 for success.
    unsigned char get_from_data_device(const DATA_DEVICE& device);
    unsigned char put_to_data_device(DATA_DEVICE& device) const;

    // By `strcmp`; null comes before every text.
    static int compare(const char* left, const char* right);

private:
    std::unique_ptr<char[]> text;
};

#endif  // MODULES_WINMAN_OWNED_TEXT_H
