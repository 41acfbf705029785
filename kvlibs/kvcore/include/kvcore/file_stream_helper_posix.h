// What a file stream asks of the platform.
#ifndef KVCORE_FILE_STREAM_HELPER_POSIX_H
#define KVCORE_FILE_STREAM_HELPER_POSIX_H

#include <cstdint>

namespace KVCORE {

// An open file: one descriptor, -1 when closed. It closes nothing by itself. Operations yield 0 or
// an errno value.
class FILE_STREAM_HELPER_POSIX {
public:
    explicit FILE_STREAM_HELPER_POSIX(int descriptor = -1) : descriptor_(descriptor) {}

    bool is_open() const { return descriptor_ >= 0; }
    int get_descriptor() const { return descriptor_; }
    int close();
    // Forgets the descriptor without closing it.
    void detach() { descriptor_ = -1; }

    int get_length(std::int64_t& length) const;
    int get_position(std::int64_t& position) const;
    int set_position(std::int64_t position) const;
    // Reads until `count` bytes are there, the file ends or the platform fails; `done` takes how
    // many arrived. The end of the file is no failure.
    int read(unsigned char* buffer, std::int64_t count, std::int64_t& done) const;
    int write(const unsigned char* buffer, std::int64_t count, std::int64_t& done) const;

private:
    int descriptor_;
};

}  // namespace KVCORE

#endif  // KVCORE_FILE_STREAM_HELPER_POSIX_H
