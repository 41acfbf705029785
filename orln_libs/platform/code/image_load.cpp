#include "platform/image_load.h"

#include <memory>
#include <string>

#include "picture_decode.h"
#include "platform/data_file.h"
#include "platform/debug_stream.h"
#include "platform/disk_manager.h"
#include "platform/image.h"

namespace {

struct FILE_CLOSER {
    void operator()(DATA_FILE* file) const { DISK_MANAGER::close(file); }
};

using OPEN_FILE = std::unique_ptr<DATA_FILE, FILE_CLOSER>;

bool has_side(std::int32_t side) {
    return side >= 1 && side != IMAGE::NO_SIZE;
}

bool is_allowed_side(std::int32_t side) {
    return !has_side(side) || side <= IMAGE::MAX_WIDTH;
}

// The attempts to read one picture under several names.
class PICTURE_SEARCH {
public:
    explicit PICTURE_SEARCH(const DISK_MANAGER& cursor) : disk(cursor) {}

    // Tries one name with one format. What is wrong with a file is kept unless it is only that it
    // has the other format.
    template <class DECODE>
    bool attempt(const std::string& name, DECODE decode) {
        const OPEN_FILE file(disk.open_data_file(name.c_str(), FILE_READ, BYTEORDER_LITTLE));
        if (!file) {
            return false;
        }
        PICTURE_FAULT fault;
        if (decode(*file, fault)) {
            return true;
        }
        if (found.empty() || !fault.is_other_format) {
            found = name;
            reason = fault.is_other_format ? "not a PNG or JPEG picture" : fault.reason;
        }
        return false;
    }

    void trace() const {
        if (!found.empty()) {
            trace_refused_file("picture", found.c_str(), reason.c_str());
        }
    }

private:
    const DISK_MANAGER& disk;
    std::string found;
    std::string reason;
};

}  // namespace

void trace_refused_file(const char* kind, const char* name, const char* reason) {
    if (platform_debug_stream.flags != 0) {
        platform_debug_stream.printf("*** ERROR *** - %s \"%s\" refused: %s\n", kind, name, reason);
    }
}

bool load_png(const DATA_FILE& file, IMAGE& image, const char* name) {
    PICTURE_FAULT fault;
    if (image.locked) {
        return false;
    }
    if (decode_png(file, image, fault)) {
        return true;
    }
    if (name) {
        trace_refused_file("picture", name, fault.reason);
    }
    return false;
}

bool load_jpg(const DATA_FILE& file, IMAGE& image, std::int32_t width, std::int32_t height,
              const char* name) {
    PICTURE_FAULT fault;
    if (image.locked) {
        return false;
    }
    if (decode_jpg(file, image, width, height, fault)) {
        return true;
    }
    if (name) {
        trace_refused_file("picture", name, fault.reason);
    }
    return false;
}

unsigned char IMAGE::load_png(const DATA_FILE* file, const char* name) {
    return file && ::load_png(*file, *this, name);
}

unsigned char IMAGE::load_jpg(const DATA_FILE* file, std::int32_t new_width,
                              std::int32_t new_height, const char* name) {
    return file && ::load_jpg(*file, *this, new_width, new_height, name);
}

unsigned char IMAGE::load(const DISK_MANAGER& disk, const char* name, std::int32_t new_width,
                          std::int32_t new_height) {
    if (locked || !name || *name == '\0') {
        return 0;
    }
    const std::string plain = name;
    if (!is_allowed_side(new_width) || !is_allowed_side(new_height)) {
        trace_refused_file("picture", name, "asked for at an impossible size");
        reset(0, 0);
        return 0;
    }
    PICTURE_SEARCH search(disk);
    const auto png = [this](const DATA_FILE& file, PICTURE_FAULT& fault) {
        return decode_png(file, *this, fault);
    };
    const auto jpg = [&](const DATA_FILE& file, PICTURE_FAULT& fault) {
        return decode_jpg(file, *this, new_width, new_height, fault);
    };
    if (!search.attempt(plain, png) && !search.attempt(plain + ".png", png) &&
        !search.attempt(plain, jpg) && !search.attempt(plain + ".jpg", jpg)) {
        search.trace();
        reset(0, 0);
        return 0;
    }
    resize(has_side(new_width) ? new_width : NO_SIZE, has_side(new_height) ? new_height : NO_SIZE,
           1);
    return 1;
}
