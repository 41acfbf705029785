// NETWORK_MESSAGE: the unit that two peers exchange, and every byte of its frame.
//
// On the wire each message follows a 5-byte stream prefix (see NETWORK_MANAGER):
//
//     0       1   byte_order, valid for all that follows
//     1       4   reply_handler   the sender's token for a reply, 0 for none
//     5       4   reply_user      the value that goes with it
//     9       4   echo_handler    the peer's reply_handler, returned
//     13      4   echo_user       the peer's reply_user, returned
//     17      P   payload, plain or enciphered; starts with a 2-byte message id unless empty
//     17 + P  5   trailer form 1: 1, checksum (4)
//         or  6   trailer form 2: encrypted (1), 2, checksum (4)
//
// Tokens are opaque words. They are copied in host order of the sender, never swapped and never
// interpreted by the peer that returns them.
//
// An enciphered payload of P plain bytes is 2Q + 6 bytes long, Q being P rounded up to 64: Q bytes
// of XXTEA over the payload and zeros, one byte that tells Q - P, and Q + 5 zeros as filler.
#ifndef PLATFORM_NETWORK_MESSAGE_H
#define PLATFORM_NETWORK_MESSAGE_H

#include <cstdint>

#include "platform/message.h"

class NETWORK_MESSAGE : public MESSAGE {
public:
    static constexpr std::int16_t network_header_size = 17;
    static constexpr std::int32_t trailer_1_size = 5;
    static constexpr std::int32_t trailer_2_size = 6;

    // Results of remove_trailer.
    enum TRAILER_RESULT : std::int32_t {
        TRAILER_GOOD = 0,
        TRAILER_BAD_ENCRYPTED = 1,  // form 2 with an encrypted byte above 1; the trailer stays
        TRAILER_TOO_SHORT = 2,      // under 22 bytes; the message is unchanged
        TRAILER_BAD_VERSION = 3,    // version 0; 5 bytes are cut
        TRAILER_BAD_CHECKSUM = 4    // the trailer is cut all the same
    };

    NETWORK_MESSAGE();
    NETWORK_MESSAGE(const NETWORK_MESSAGE& other);

    // As MESSAGE's, with the three stamps. `encrypted` isn't carried.
    virtual NETWORK_MESSAGE& operator=(const NETWORK_MESSAGE& other);

    // Writes byte_order and the reply tokens into the header, and each echo token unless it is 0,
    // so that slots which hold returned tokens survive. On an empty message nothing of it lasts:
    // the first write zeroes the header.
    virtual void pack_header(std::uint32_t reply_handler, std::uint32_t reply_user,
                             std::uint32_t echo_handler, std::uint32_t echo_user);
    // Zeroes both echo tokens of a message that has a header.
    void clear_echo();
    // Takes the device's byte_order from the header and gives the four tokens. A message shorter
    // than a header changes nothing and gives zeros. The position stays.
    virtual void unpack_header(std::uint32_t& reply_handler, std::uint32_t& reply_user,
                               std::uint32_t& echo_handler, std::uint32_t& echo_user);

    // The checksum of the message's first `size` bytes: CRC-32 of a sample of ten bytes, one in
    // five from the payload's start; 0 for a size below 18. It finds a stream that has lost step
    // and doesn't guard the content. On an enciphered message the sample is ciphertext.
    std::uint32_t get_crc(std::int32_t size) const;

    // Writes the trailer at the end: form 1 for a version below 1, otherwise form 2. Yields 1.
    unsigned char append_trailer(std::int32_t protocol_version);
    // Checks and cuts the trailer, and goes to the payload's start. `encrypted` is taken from a
    // form 2 trailer, and cleared by a form 1 trailer, which only plain messages carry.
    TRAILER_RESULT remove_trailer();

    // Encipher or decipher the payload with a key of four words. Yield 0, with the bytes as they
    // were, if `encrypted` is off or the payload is empty; decryption also, with four warnings on
    // the console, if the pad byte doesn't fit. Afterwards the position is the payload's start.
    unsigned char encrypt_message(const std::uint32_t* key);
    unsigned char decrypt_message(const std::uint32_t* key);

    // As MESSAGE's, with the three stamps. `encrypted` isn't carried and stays on both.
    void move_from(NETWORK_MESSAGE& other);

    // Millisecond stamps for NETWORK_MESSAGE_REPORTER; 0 means not stamped.
    std::uint32_t time_1 = 0;
    std::uint32_t time_2 = 0;
    std::uint32_t time_3 = 0;
    // The payload is, or is to be, enciphered. clear leaves it, so that a received message which is
    // refilled as the reply stays encrypted.
    unsigned char encrypted = 0;
};

#endif  // PLATFORM_NETWORK_MESSAGE_H
