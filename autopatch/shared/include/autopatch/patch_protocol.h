// The patch protocol: the messages between the launcher and the auto-download server.
//
// Each payload starts with two 16-bit numbers, the message id and PROTOCOL_VERSION, which is also
// the format of the add-on records in the message. A sender of the old kind, whose word at that
// place is below 1200, has no version word. The fields behind them, all in the byte order of the
// frame ("text" is dynamic text, a 32-bit length and the bytes):
//
//   1000  to server  available list request  none
//   1100  to client  available list          32-bit count, that many add-on records
//   1200  to server  validation request      32-bit count, the installed add-ons
//   1300  to client  validation response     32-bit count, the add-ons to be installed
//   1400  to server  file request            text path, 32-bit bytes held of the archive,
//                                            byte platform
//   1500  to client  file block              32-bit bytes that follow this block, 32-bit size of
//                                            the block, the block, byte `unchecked`; if that is 0,
//                                            32-bit CRC-32 of all blocks since the last checkpoint;
//                                            behind the last block 32-bit CRC-32 of the archive
//   1800  to client  stream offer            32-bit size of the stream, 32-bit CRC-32 of the
//                                            archive
//   1900  to server  stream start            as 1400; the raw bytes of the stream follow
//
// A run: 1200, 1300, then for each archive 1400 and either blocks, with a new 1400 after each
// checkpoint but the last, or 1800, 1900 and the stream.
#ifndef AUTOPATCH_PATCH_PROTOCOL_H
#define AUTOPATCH_PATCH_PROTOCOL_H

#include <cstdint>

enum AUTOPATCH_MESSAGE : std::uint16_t {
    AUTOPATCH_MESSAGE_LIST_REQUEST = 1000,
    AUTOPATCH_MESSAGE_LIST = 1100,
    AUTOPATCH_MESSAGE_VALIDATION_REQUEST = 1200,
    AUTOPATCH_MESSAGE_VALIDATION_RESPONSE = 1300,
    AUTOPATCH_MESSAGE_FILE_REQUEST = 1400,
    AUTOPATCH_MESSAGE_FILE_BLOCK = 1500,
    AUTOPATCH_MESSAGE_STREAM_OFFER = 1800,
    AUTOPATCH_MESSAGE_STREAM_START = 1900,
};

#endif  // AUTOPATCH_PATCH_PROTOCOL_H
