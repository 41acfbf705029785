// Streams over files, and the flags of streams.
#include "kvcore/file_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "kvcore/fsref_item.h"
#include "temporary_folder.h"

namespace {

using KVCORE::FILE_INPUT_STREAM;
using KVCORE::FILE_STREAM_HELPER_POSIX;
using KVCORE::FSREF_ITEM;
using KVCORE::INPUT_STREAM;
using KVCORE::OUTPUT_STREAM;
using KVCORE::REFERENCE_COUNTER;

const unsigned char* bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

TEST(FileStream, ReadsToTheEnd) {
    const TEMPORARY_FOLDER folder;
    folder.write("a.bin", "0123456789");
    const auto stream = FSREF_ITEM::create((folder.path / "a.bin").string())->open_to_read();
    ASSERT_TRUE(stream);
    EXPECT_EQ(10, stream->get_length());
    EXPECT_EQ(274u, stream->get_flags());
    unsigned char buffer[16] = {};
    EXPECT_EQ(6, stream->read_bytes(buffer, 6));
    EXPECT_EQ(0, stream->get_last_result());
    EXPECT_EQ(4, stream->read_bytes(buffer, 10));
    EXPECT_EQ(INPUT_STREAM::END_OF_STREAM, stream->get_last_result());
    EXPECT_EQ('9', buffer[3]);
    EXPECT_EQ(0, buffer[10]) << "nothing behind what arrived";
    EXPECT_EQ(0, stream->set_position(8));
    EXPECT_EQ(8, stream->get_position());
    EXPECT_EQ(2, stream->read_bytes(buffer, 2));
    EXPECT_EQ(0, stream->get_last_result());
    EXPECT_EQ(0, stream->read_bytes(buffer, 0));
    EXPECT_EQ(EINVAL, stream->set_position(-1));
    EXPECT_EQ(EINVAL, stream->get_last_result());
}

TEST(FileStream, WritesFromTheStartOrAtTheEnd) {
    const TEMPORARY_FOLDER folder;
    folder.write("a.bin", "old content");
    const auto item = FSREF_ITEM::create((folder.path / "a.bin").string());
    {
        const auto stream = item->open_to_write(KVCORE::WRITE_FROM_START);
        ASSERT_TRUE(stream);
        EXPECT_EQ(3, stream->write_bytes(bytes("new"), 3));
    }
    EXPECT_EQ("new", folder.read("a.bin"));
    {
        const auto stream = item->open_to_write(KVCORE::WRITE_AT_END);
        EXPECT_EQ(3, stream->get_position());
        EXPECT_EQ(1, stream->write_bytes(bytes("!"), 1));
    }
    EXPECT_EQ("new!", folder.read("a.bin"));
}

TEST(FileStream, ReportsThePlatformsFailures) {
    // A closed helper fails each call, and the streams yield their values for that.
    const FILE_INPUT_STREAM closed(FILE_STREAM_HELPER_POSIX(), 0);
    unsigned char byte = 0;
    EXPECT_EQ(-1, closed.get_length());
    EXPECT_EQ(-2, closed.get_position());
    EXPECT_EQ(EBADF, closed.set_position(0));
    EXPECT_EQ(0, closed.read_bytes(&byte, 1));
    EXPECT_EQ(EBADF, closed.get_last_result());

    // A file that may not grow takes what fits.
    const TEMPORARY_FOLDER folder;
    folder.write("a.bin", "");
    const auto stream = FSREF_ITEM::create((folder.path / "a.bin").string())
                            ->open_to_write(KVCORE::WRITE_FROM_START);
    rlimit old;
    ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &old));
    const rlimit small{4, old.rlim_max};
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
    EXPECT_EQ(4, stream->write_bytes(bytes("123456"), 6));
    EXPECT_EQ(EFBIG, stream->get_last_result());
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);
}

class BARE_STREAM : public KVCORE::STREAM {
public:
    using STREAM::STREAM;
};

TEST(FileStream, FlagsAndDescriptors) {
    const BARE_STREAM bare(257);
    EXPECT_EQ(256u, bare.get_flags()) << "256 takes 1 away";
    EXPECT_EQ(1u, BARE_STREAM(1).get_flags());
    EXPECT_EQ(-1, bare.get_length());
    EXPECT_EQ(-2, bare.get_position());
    EXPECT_EQ(1, bare.set_position(0));

    const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    { const FILE_INPUT_STREAM kept(FILE_STREAM_HELPER_POSIX(descriptor), 0); }
    EXPECT_EQ(0, ::fcntl(descriptor, F_GETFD) & ~FD_CLOEXEC) << "still open";
    {
        FILE_INPUT_STREAM detached(FILE_STREAM_HELPER_POSIX(descriptor), 16);
        detached.get_helper().detach();
    }
    EXPECT_GE(::fcntl(descriptor, F_GETFD), 0);
    { const FILE_INPUT_STREAM closing(FILE_STREAM_HELPER_POSIX(descriptor), 16); }
    EXPECT_EQ(-1, ::fcntl(descriptor, F_GETFD));
}

TEST(FileStream, DescriptorsAreNotInherited) {
    const TEMPORARY_FOLDER folder;
    folder.write("a.bin", "x");
    const auto item = FSREF_ITEM::create((folder.path / "a.bin").string());
    const auto in = item->open_to_read();
    const auto out = item->open_to_write(KVCORE::WRITE_AT_END);
    int open = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string target = std::filesystem::read_symlink(entry.path(), error).string();
        if (target.find(folder.path.string()) == 0) {
            ++open;
            const int descriptor = std::stoi(entry.path().filename());
            EXPECT_EQ(FD_CLOEXEC, ::fcntl(descriptor, F_GETFD)) << target;
        }
    }
    EXPECT_EQ(3, open) << "the item's, and one for each stream";
}

}  // namespace
