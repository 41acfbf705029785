// The two picture formats, and what is wrong with a file that is refused.
#ifndef PLATFORM_CODE_PICTURE_DECODE_H
#define PLATFORM_CODE_PICTURE_DECODE_H

#include <cstdint>

#include "kvcore/text_field.h"

class DATA_FILE;
class IMAGE;

struct PICTURE_FAULT {
    char reason[200] = "";
    bool is_other_format = false;  // not damaged, just not a picture of this format

    void set(const char* text) { KVCORE::copy_text_field(reason, text); }
};

// Read the picture at the file's position into an image that isn't locked. False, with an empty
// image and the fault, if that can't be done.
bool decode_png(const DATA_FILE& file, IMAGE& image, PICTURE_FAULT& fault);
bool decode_jpg(const DATA_FILE& file, IMAGE& image, std::int32_t width, std::int32_t height,
                PICTURE_FAULT& fault);

// Tells platform_debug_stream that a file was refused.
void trace_refused_file(const char* kind, const char* name, const char* reason);

#endif  // PLATFORM_CODE_PICTURE_DECODE_H
