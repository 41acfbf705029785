// TEXT_FILE: reads and writes text line by line or character by character, in 8-bit or UTF-16
// files.
//
// The system's strings stay narrow. A UTF-16 unit above 255 is carried inside a narrow string as a
// wide run: a byte 1 opens the run, each unit follows as a comma and its value by "%4X", and
// another byte 1 closes it. Writing the string to a UTF-16 file restores the units.
//
// Line ends are CR, LF and the byte 3. The first of them that is met becomes the file's terminator,
// so that files from every platform read alike.
//
// An object belongs to one thread at a time. Objects are made by DISK_MANAGER::open_text_file and
// ended by DISK_MANAGER::close; the stream is owned.
#ifndef PLATFORM_TEXT_FILE_H
#define PLATFORM_TEXT_FILE_H

#include <cstddef>
#include <cstdio>

#include "platform/file_mode.h"

class TEXT_FILE {
public:
    // The size of a line buffer, terminator included; also the initial line limit.
    static constexpr int default_line_limit = 256;
    // The buffer that printf formats into.
    static constexpr std::size_t printf_buffer_size = 32767;

    // Closes the stream.
    ~TEXT_FILE();
    TEXT_FILE(const TEXT_FILE&) = delete;
    TEXT_FILE& operator=(const TEXT_FILE&) = delete;

    // Reads a line without its end into `line`, which must hold default_line_limit bytes. At the
    // line limit less one characters the line stops, and its rest is the next line. False when
    // nothing could be read; `line` is empty then.
    bool operator>>(char* line);

    // Reads one character; a line end comes out as "\n" once, whatever its form in the file. False
    // at the end of the file.
    bool operator>>(char& c);

    // Writes; a newline becomes one CR unit in a UTF-16 file. False on a failed write, on a closed
    // file and on a file that was opened for reading. A null text writes nothing and yields false.
    bool operator<<(char c);
    bool operator<<(const char* text);

    // Formats as ::printf does, cut at printf_buffer_size less one characters, and writes it.
    bool printf(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Hands what was written to the system. False if that or any earlier write of this file failed,
    // for instance on a full disk.
    bool flush();
    // The same, and waits until it is on the disk.
    bool sync();

    // The file is in UTF-16.
    bool is_utf16() const { return utf16; }
    // The empty line that was read last is only the LF of a CR LF pair.
    bool is_line_feed_tail() const { return line_feed_tail; }
    // A read or write has failed, other than by the end of the file.
    bool has_failed() const { return !stream || std::ferror(stream) != 0; }

private:
    friend class DISK_MANAGER;

    // Takes ownership of `stream`, which stands behind a byte order mark. `swap`: the units of the
    // UTF-16 file have the other byte order.
    TEXT_FILE(FILE* stream, FILE_MODE mode, bool utf16, bool swap);

    bool read_unit(unsigned& unit);
    bool read_raw_unit(unsigned& unit);
    void unread_unit(unsigned unit);
    bool write_unit(unsigned unit);
    bool is_line_end(unsigned unit);

    int line_limit = default_line_limit;
    FILE_MODE mode;
    FILE* stream;
    unsigned file_terminator = 0;
    bool utf16;
    bool swap;

    // A unit that was read and has to wait for the next call.
    bool has_waiting_unit = false;
    unsigned waiting_unit = 0;
    // The unit that the last reading ended with.
    unsigned last_unit = 0;
    bool line_feed_tail = false;
    // Reading character by character: the rest of an expanded wide unit, and whether a run is open.
    char pending[8] = {};
    std::size_t pending_count = 0;
    bool run_open = false;
};

#endif  // PLATFORM_TEXT_FILE_H
