// DEBUG_STREAM: a named output for diagnostics, switched by the small file "%s_release.cfg" that a
// person puts into the folder "$APPDATA/debug". Without that folder a configured stream stays
// silent. Test `flags` before building a message: a stream with flags 0 is disabled.
//
// write_to_stream and printf may be called from several threads; each text comes out whole. The
// other operations belong to the owner's thread.
#ifndef PLATFORM_DEBUG_STREAM_H
#define PLATFORM_DEBUG_STREAM_H

#include <cstddef>
#include <mutex>
#include <string>

class DISK_MANAGER;
class TEXT_FILE;

class DEBUG_STREAM {
public:
    enum FLAG : unsigned short {
        WRITE_TO_CONSOLE = 1,
        WRITE_TO_POPUP_DIALOG = 2,
        WRITE_TO_FILE = 4,
        TRUNCATE_FILE_ON_FIRST_WRITE = 8,
        KEEP_FILE_OPEN = 16,
        WRITE_FILE_HEADER = 32,
        WRITE_STREAM_NAME = 64,
        WRITE_CODE_LOCATION = 128,
        TRIGGER_BREAKPOINT = 256,  // stored and saved, without effect on the output
        LOAD_CONFIG = 512          // for the constructor only: load the configuration
    };

    // A line with its prefixes takes at most one character less than this.
    static constexpr std::size_t line_buffer_size = 8192;

    // A null or empty name becomes "Debug Stream %p" with the object's address. The stream joins
    // the list of all streams.
    DEBUG_STREAM(const char* name, unsigned short flags);
    // Saves the configuration, closes the file and leaves the list.
    ~DEBUG_STREAM();
    DEBUG_STREAM(const DEBUG_STREAM&) = delete;
    DEBUG_STREAM& operator=(const DEBUG_STREAM&) = delete;

    // The first stream, in order of construction, of exactly that name, or null.
    static DEBUG_STREAM* find_stream(const char* name);

    // Sends `text` to every output that the flags name, with a newline behind it if `newline` is
    // set. `code_file` may be null: no location is written then.
    void write_to_stream(const char* code_file, int code_line, const char* text, bool newline);

    // Formats as ::printf does, into line_buffer_size bytes, and writes it without a newline.
    void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Reads and writes "%s_release.cfg" in "$APPDATA/debug"; does nothing more than reset the
    // stream (load) or nothing at all (save) when that folder isn't there.
    void load_config();
    void save_config();

    const char* get_name() const { return name; }
    const char* get_filename() const { return filename; }

    // Any of FLAG; 0 means disabled.
    unsigned short flags;

private:
    void set_default_filename();
    std::string get_config_name() const;
    static bool goto_debug_folder(DISK_MANAGER& disk, bool create);
    void write_line_to_file(const char* line, bool newline);
    void close_file();

    char name[256];
    char filename[256];
    bool first_write = true;
    TEXT_FILE* file = nullptr;  // owned; open between writes with KEEP_FILE_OPEN
    std::mutex write_mutex;     // guards file, first_write and the order of the output
};

// Warnings of the platform layer.
extern DEBUG_STREAM platform_debug_stream;

#endif  // PLATFORM_DEBUG_STREAM_H
