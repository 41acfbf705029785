// The XXTEA block cipher, from Wheeler and Needham, "Correction to xtea", Cambridge, October 1998.
#ifndef PLATFORM_XXTEA_H
#define PLATFORM_XXTEA_H

#include <cstdint>

// The word forms work on numbers of the host. The byte forms take `n` little-endian words at any
// address, so that their results are the same bytes on every host; that is what messages use.
//
// All work in place with a key of four words and yield 1; they yield 0, with nothing done, when n
// is below 2. Pure; safe on any thread.
class XXTEA {
public:
    static unsigned char xxtea_encode(std::uint32_t* data, std::int32_t n,
                                      const std::uint32_t* key);
    static unsigned char xxtea_decode(std::uint32_t* data, std::int32_t n,
                                      const std::uint32_t* key);

    static unsigned char encode_bytes(unsigned char* bytes, std::int32_t n,
                                      const std::uint32_t* key);
    static unsigned char decode_bytes(unsigned char* bytes, std::int32_t n,
                                      const std::uint32_t* key);
};

#endif  // PLATFORM_XXTEA_H
