// JPEG pictures, through the Independent JPEG Group's library.
#include <cstddef>
#include <cstdint>
#include <cstdio>
// The library's header needs the two above.
#include <jpeglib.h>
#include <setjmp.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "picture_decode.h"
#include "platform/data_file.h"
#include "platform/image.h"
#include "platform/image_load.h"

namespace {

// The shortest code for a block of 8 by 8 pixels is one bit; a picture whose two directions are
// subsampled by different components holds at most twice that many pixels in a block.
constexpr std::int64_t MAX_PIXELS_PER_BYTE = 8 * 64 * 2;

// The library's error manager with a place to jump back to.
struct JPEG_ERRORS {
    jpeg_error_mgr manager;
    jmp_buf jump;
    PICTURE_FAULT* fault;  // may be null
};

[[noreturn]] void jpg_error_callback(j_common_ptr info) {
    auto* errors = reinterpret_cast<JPEG_ERRORS*>(info->err);
    if (errors->fault) {
        char text[JMSG_LENGTH_MAX];
        errors->manager.format_message(info, text);
        errors->fault->set(text);
    }
    longjmp(errors->jump, 1);
}

// A warning means damaged data, which the library would fill up with something.
void refuse_damage(j_common_ptr info, int level) {
    if (level < 0) {
        jpg_error_callback(info);
    }
}

void print_nothing(j_common_ptr) {
}

void set_up_errors(JPEG_ERRORS& errors, PICTURE_FAULT* fault) {
    jpeg_std_error(&errors.manager);
    errors.manager.error_exit = jpg_error_callback;
    errors.manager.emit_message = refuse_damage;
    errors.manager.output_message = print_nothing;
    errors.fault = fault;
}

[[noreturn]] void refuse(j_common_ptr info, const char* reason) {
    auto* errors = reinterpret_cast<JPEG_ERRORS*>(info->err);
    if (errors->fault) {
        errors->fault->set(reason);
    }
    longjmp(errors->jump, 1);
}

// Hands the library the file in pieces.
struct FILE_SOURCE {
    jpeg_source_mgr manager;
    const DATA_FILE* file;
    unsigned char buffer[4096];
};

void start_source(j_decompress_ptr) {
}

boolean fill_source(j_decompress_ptr info) {
    auto* source = reinterpret_cast<FILE_SOURCE*>(info->src);
    const auto size = static_cast<std::int32_t>(std::min<std::int64_t>(
        static_cast<std::int64_t>(sizeof source->buffer), source->file->get_bytes_left()));
    if (size < 1 || source->file->read_data_block(source->buffer, size) != size) {
        refuse(reinterpret_cast<j_common_ptr>(info), "unexpected end of file");
    }
    source->manager.next_input_byte = source->buffer;
    source->manager.bytes_in_buffer = static_cast<std::size_t>(size);
    return TRUE;
}

void skip_source(j_decompress_ptr info, long count) {
    jpeg_source_mgr* source = info->src;
    while (count > 0) {
        if (source->bytes_in_buffer == 0) {
            fill_source(info);
        }
        const auto step = std::min(static_cast<std::size_t>(count), source->bytes_in_buffer);
        source->next_input_byte += step;
        source->bytes_in_buffer -= step;
        count -= static_cast<long>(step);
    }
}

void end_source(j_decompress_ptr) {
}

void set_up_source(FILE_SOURCE& source, const DATA_FILE& file) {
    source.manager = jpeg_source_mgr();
    source.manager.init_source = start_source;
    source.manager.fill_input_buffer = fill_source;
    source.manager.skip_input_data = skip_source;
    source.manager.resync_to_restart = jpeg_resync_to_restart;
    source.manager.term_source = end_source;
    source.file = &file;
}

// Ends a picture that consists of ever more scans.
void limit_scans(j_common_ptr info) {
    const auto* picture = reinterpret_cast<j_decompress_ptr>(info);
    if (info->is_decompressor && picture->input_scan_number > MAX_JPEG_SCANS) {
        refuse(info, "too many scans");
    }
}

// Grows or shrinks an axis by taking the nearest: sample i of the source goes to the places behind
// the last one filled up to i * (places - 1) / (samples - 1).
class STRETCH {
public:
    STRETCH(std::int32_t source_samples, std::int32_t target_places)
        : samples(source_samples), places(target_places) {}

    // The last place that sample `i` fills, if it fills any.
    std::int32_t last_place(std::int32_t i) const {
        return samples == 1
                   ? places - 1
                   : static_cast<std::int32_t>(std::int64_t{i} * (places - 1) / (samples - 1));
    }

private:
    std::int32_t samples, places;
};

// What decoding needs; outside of the function that the library's errors jump back to.
struct JPEG_READER {
    jpeg_decompress_struct info;
    JPEG_ERRORS errors;
    FILE_SOURCE source;
    jpeg_progress_mgr progress;
    std::vector<unsigned char> line;
    std::vector<std::int32_t> columns;  // the source column of each target column
};

// As with the limits of size: the library's working memory is about the picture's own.
void read_header(JPEG_READER& reader, const DATA_FILE& file) {
    jpeg_decompress_struct& info = reader.info;
    const std::int64_t file_bytes = file.get_bytes_left();
    info.mem->max_memory_to_use = static_cast<long>(MAX_JPEG_WORK_BYTES);
    info.src = &reader.source.manager;
    info.progress = &reader.progress;
    jpeg_read_header(&info, TRUE);
    if (info.image_width > MAX_PICTURE_SIDE || info.image_height > MAX_PICTURE_SIDE) {
        refuse(reinterpret_cast<j_common_ptr>(&info), "too large");
    }
    if (std::int64_t{info.image_width} * info.image_height > file_bytes * MAX_PIXELS_PER_BYTE) {
        refuse(reinterpret_cast<j_common_ptr>(&info),
               "the file is too short for a picture of its size");
    }
    // Arithmetic coding knows no shortest code, so the test above would prove nothing.
    if (info.arith_code) {
        refuse(reinterpret_cast<j_common_ptr>(&info), "arithmetic coding isn't supported");
    }
    info.out_color_space = info.jpeg_color_space == JCS_GRAYSCALE ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_calc_output_dimensions(&info);
    if (info.output_width == 0 || info.output_height == 0) {
        refuse(reinterpret_cast<j_common_ptr>(&info), "no pixels");
    }
}

void write_row(COLOUR* target, const JPEG_READER& reader) {
    const unsigned char* line = reader.line.data();
    if (reader.info.out_color_components == 1) {
        for (const std::int32_t column : reader.columns) {
            const unsigned char grey = line[column];
            *target++ = COLOUR(grey, grey, grey);
        }
        return;
    }
    for (const std::int32_t column : reader.columns) {
        const unsigned char* sample = line + std::ptrdiff_t{3} * column;
        *target++ = COLOUR(sample[0], sample[1], sample[2]);
    }
}

void read_rows(JPEG_READER& reader, IMAGE& image) {
    const auto source_width = static_cast<std::int32_t>(reader.info.output_width);
    const auto source_height = static_cast<std::int32_t>(reader.info.output_height);
    reader.line.resize(static_cast<std::size_t>(source_width) *
                       static_cast<std::size_t>(reader.info.out_color_components));
    const STRETCH across(source_width, image.width);
    reader.columns.reserve(static_cast<std::size_t>(image.width));
    for (std::int32_t x = 0; x < source_width; ++x) {
        const auto filled = static_cast<std::size_t>(across.last_place(x)) + 1;
        if (filled > reader.columns.size()) {
            reader.columns.resize(filled, x);
        }
    }
    const STRETCH down(source_height, image.height);
    std::int32_t next_row = 0;
    for (std::int32_t y = 0; y < source_height; ++y) {
        JSAMPROW rows[1] = {reader.line.data()};
        if (jpeg_read_scanlines(&reader.info, rows, 1) != 1) {
            refuse(reinterpret_cast<j_common_ptr>(&reader.info), "unexpected end of data");
        }
        const std::int32_t first_row = next_row;
        for (; next_row <= down.last_place(y); ++next_row) {
            if (next_row == first_row) {
                write_row(image.row(next_row), reader);
            } else {
                std::copy_n(image.row(first_row), image.width, image.row(next_row));
            }
        }
    }
}

// A failure inside the library jumps back to here, so nothing in this function may own anything.
bool decode(JPEG_READER& reader, const DATA_FILE& file, IMAGE& image, std::int32_t width,
            std::int32_t height) {
    if (setjmp(reader.errors.jump) != 0) {
        return false;
    }
    jpeg_create_decompress(&reader.info);
    read_header(reader, file);
    jpeg_start_decompress(&reader.info);
    const auto pick = [](std::int32_t asked, JDIMENSION natural) {
        return asked < 1 || asked == IMAGE::NO_SIZE ? static_cast<std::int32_t>(natural) : asked;
    };
    image.reset(pick(width, reader.info.output_width), pick(height, reader.info.output_height));
    if (!image.pixels) {
        refuse(reinterpret_cast<j_common_ptr>(&reader.info), "an impossible size");
    }
    read_rows(reader, image);
    jpeg_finish_decompress(&reader.info);
    return true;
}

// The reverse of FILE_SOURCE.
struct FILE_TARGET {
    jpeg_destination_mgr manager;
    DATA_FILE* file;
    unsigned char buffer[4096];
};

void start_target(j_compress_ptr info) {
    auto* target = reinterpret_cast<FILE_TARGET*>(info->dest);
    target->manager.next_output_byte = target->buffer;
    target->manager.free_in_buffer = sizeof target->buffer;
}

void write_target(j_compress_ptr info, std::size_t count) {
    auto* target = reinterpret_cast<FILE_TARGET*>(info->dest);
    const auto size = static_cast<std::int32_t>(count);
    if (size > 0 && target->file->write_data_block(target->buffer, size) != size) {
        refuse(reinterpret_cast<j_common_ptr>(info), "the file can't be written");
    }
}

boolean empty_target(j_compress_ptr info) {
    write_target(info, sizeof FILE_TARGET::buffer);
    start_target(info);
    return TRUE;
}

void end_target(j_compress_ptr info) {
    write_target(info, sizeof FILE_TARGET::buffer - info->dest->free_in_buffer);
}

struct JPEG_WRITER {
    jpeg_compress_struct info;
    JPEG_ERRORS errors;
    FILE_TARGET target;
    std::vector<unsigned char> line;
};

void fill_line(std::vector<unsigned char>& line, const COLOUR* row) {
    for (std::size_t i = 0; i + 2 < line.size(); i += 3, ++row) {
        line[i] = row->red();
        line[i + 1] = row->green();
        line[i + 2] = row->blue();
    }
}

// As with decode.
bool encode(JPEG_WRITER& writer, const IMAGE& image, int quality, bool progressive) {
    if (setjmp(writer.errors.jump) != 0) {
        return false;
    }
    jpeg_compress_struct& info = writer.info;
    jpeg_create_compress(&info);
    info.dest = &writer.target.manager;
    info.image_width = static_cast<JDIMENSION>(image.width);
    info.image_height = static_cast<JDIMENSION>(image.height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    if (progressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);
    writer.line.resize(static_cast<std::size_t>(image.width) * 3);
    for (std::int32_t y = 0; y < image.height; ++y) {
        fill_line(writer.line, image.row(y));
        JSAMPROW rows[1] = {writer.line.data()};
        jpeg_write_scanlines(&info, rows, 1);
    }
    jpeg_finish_compress(&info);
    return true;
}

}  // namespace

bool decode_jpg(const DATA_FILE& file, IMAGE& image, std::int32_t width, std::int32_t height,
                PICTURE_FAULT& fault) {
    image.reset(0, 0);
    unsigned char start[2];
    const std::int64_t position = file.get_pos_64();
    const bool has_start = file.read_data_block(start, sizeof start) == sizeof start &&
                           start[0] == 0xFF && start[1] == 0xD8;
    file.set_pos_64(position, false);
    if (!has_start) {
        fault.set("not a JPEG picture");
        fault.is_other_format = true;
        return false;
    }
    JPEG_READER reader = {};
    set_up_errors(reader.errors, &fault);
    set_up_source(reader.source, file);
    reader.progress.progress_monitor = limit_scans;
    reader.info.err = &reader.errors.manager;
    const bool done = decode(reader, file, image, width, height);
    jpeg_destroy_decompress(&reader.info);
    if (!done) {
        image.reset(0, 0);
    }
    return done;
}

unsigned char IMAGE::save_jpg(DATA_FILE* file, char quality, unsigned char progressive) const {
    if (!file || !pixels || width < 1 || height < 1 || quality < 0 || quality > 100) {
        return 0;
    }
    JPEG_WRITER writer = {};
    set_up_errors(writer.errors, nullptr);
    writer.target.manager.init_destination = start_target;
    writer.target.manager.empty_output_buffer = empty_target;
    writer.target.manager.term_destination = end_target;
    writer.target.file = file;
    writer.info.err = &writer.errors.manager;
    const bool done = encode(writer, *this, quality, progressive != 0);
    jpeg_destroy_compress(&writer.info);
    return done;
}
