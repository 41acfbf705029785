// Streams over open files.
#ifndef KVCORE_FILE_STREAM_H
#define KVCORE_FILE_STREAM_H

#include "kvcore/file_stream_helper_posix.h"
#include "kvcore/stream.h"

namespace KVCORE {

// A stream of the base BASE over an open file that HELPER knows. With CLOSE_ON_DESTRUCTION it
// closes the file in the end. Unbuffered: each call goes to the platform, so that callers read and
// write blocks.
template <typename BASE, typename HELPER>
class FILE_STREAM_TEMPLATE : public BASE {
public:
    FILE_STREAM_TEMPLATE(const HELPER& helper, std::uint32_t flags)
        : BASE(flags), helper_(helper) {}
    ~FILE_STREAM_TEMPLATE() override {
        if ((this->get_flags() & STREAM::CLOSE_ON_DESTRUCTION) != 0 && helper_.is_open()) {
            helper_.close();
        }
    }

    std::int64_t get_length() const override {
        std::int64_t length = 0;
        const RESULT result = this->set_last_result(helper_.get_length(length));
        return result == 0 ? length : -1;
    }
    std::int64_t get_position() const override {
        std::int64_t position = 0;
        const RESULT result = this->set_last_result(helper_.get_position(position));
        return result == 0 ? position : -2;
    }
    RESULT set_position(std::int64_t position) const override {
        return this->set_last_result(helper_.set_position(position));
    }

    HELPER& get_helper() { return helper_; }
    const HELPER& get_helper() const { return helper_; }

private:
    HELPER helper_;
};

template <typename HELPER>
class FILE_INPUT_STREAM_TEMPLATE : public FILE_STREAM_TEMPLATE<INPUT_STREAM, HELPER> {
public:
    using FILE_STREAM_TEMPLATE<INPUT_STREAM, HELPER>::FILE_STREAM_TEMPLATE;

    std::int64_t read_bytes(unsigned char* buffer, std::int64_t count) const override {
        std::int64_t done = 0;
        const int code = this->get_helper().read(buffer, count, done);
        this->set_last_result(code != 0      ? RESULT(code)
                              : done < count ? RESULT(INPUT_STREAM::END_OF_STREAM)
                                             : RESULT());
        return done;
    }
};

template <typename HELPER>
class FILE_OUTPUT_STREAM_TEMPLATE : public FILE_STREAM_TEMPLATE<OUTPUT_STREAM, HELPER> {
public:
    using FILE_STREAM_TEMPLATE<OUTPUT_STREAM, HELPER>::FILE_STREAM_TEMPLATE;

    std::int64_t write_bytes(const unsigned char* buffer, std::int64_t count) override {
        std::int64_t done = 0;
        const int code = this->get_helper().write(buffer, count, done);
        this->set_last_result(code != 0      ? RESULT(code)
                              : done < count ? RESULT(OUTPUT_STREAM::SHORT_WRITE)
                                             : RESULT());
        return done;
    }
};

using FILE_INPUT_STREAM = FILE_INPUT_STREAM_TEMPLATE<FILE_STREAM_HELPER_POSIX>;
using FILE_OUTPUT_STREAM = FILE_OUTPUT_STREAM_TEMPLATE<FILE_STREAM_HELPER_POSIX>;

}  // namespace KVCORE

#endif  // KVCORE_FILE_STREAM_H
