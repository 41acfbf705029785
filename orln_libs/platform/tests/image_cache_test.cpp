// IMAGE_CACHE: sharing, sizes, private copies, clearing, and its stored form.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/image_cache.h"
#include "platform/message.h"
#include "temp_folder.h"
#include "trace_capture.h"

namespace {

using BYTES = std::vector<std::uint8_t>;

constexpr std::int32_t ANY = IMAGE::NO_SIZE;

class ImageCache : public testing::Test {
protected:
    ImageCache() {
        DISK_MANAGER::set_base_folder(folder.path().c_str());
        std::filesystem::create_directories(folder.path() / "pictures");
        make("red", COLOUR_RED);
    }
    ~ImageCache() override { DISK_MANAGER::set_base_folder(nullptr); }

    void make(const std::string& name, COLOUR colour, std::int32_t width = 8,
              std::int32_t height = 4) {
        IMAGE image(width, height);
        image.clear(colour);
        DATA_FILE* file =
            folder.cursor("pictures")
                .open_data_file((name + ".png").c_str(), FILE_WRITE, BYTEORDER_LITTLE);
        EXPECT_TRUE(image.save_png(file));
        EXPECT_TRUE(DISK_MANAGER::close(file));
    }
    void remove(const std::string& name) {
        std::filesystem::remove(folder.path() / "pictures" / (name + ".png"));
    }
    IMAGE* open(const char* name, std::int32_t width = ANY, std::int32_t height = ANY,
                unsigned char flags = 0) {
        return cache.open_image(PATH, name, width, height, flags, 1);
    }
    static CACHE_ENTRY* entry_of(const IMAGE* image) {
        return static_cast<CACHE_ENTRY*>(image->cache_entry);
    }
    static BYTES store(const IMAGE_CACHE& cache, bool big_endian = false) {
        MESSAGE message;
        message.set_byte_order(big_endian);
        EXPECT_EQ(1, cache.put_to_data_device(message));
        return BYTES(message.get_buffer(), message.get_buffer() + message.get_length());
    }
    static unsigned char read(IMAGE_CACHE& cache, const BYTES& bytes, bool big_endian = false) {
        MESSAGE message;
        message.set_byte_order(big_endian);
        message.write_data_block(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        message.set_pos(0, false);
        return cache.get_from_data_device(message);
    }

    static constexpr char PATH[] = "$BASE/pictures";
    TEMP_FOLDER folder;
    IMAGE_CACHE cache;
};

TEST_F(ImageCache, APictureIsReadOnceAndSharedByItsUsers) {
    IMAGE* first = open("red");
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(COLOUR_RED, first->row(3)[7]);
    remove("red");
    EXPECT_EQ(first, open("red"));
    EXPECT_EQ(first, open("red", 8, 4));
    EXPECT_EQ(first, cache.duplicate(first));
    EXPECT_EQ(4, entry_of(first)->use_count);
    EXPECT_EQ(entry_of(first), entry_of(first)->owner);
    EXPECT_EQ(8, cache.get_image_orig_width(first));
    EXPECT_EQ(4, cache.get_image_orig_height(first));
    for (int i = 0; i < 4; ++i) {
        cache.close(first);
    }
    EXPECT_EQ(1, cache.entries.get_count());  // kept for the next user
    EXPECT_EQ(first, open("red"));
    cache.discard_unused = true;
    cache.close(first);
    EXPECT_EQ(0, cache.entries.get_count());

    IMAGE own(1, 1);
    IMAGE* pointer = &own;
    cache.close(nullptr);
    cache.close(&own);
    cache.resize_image(pointer, 5, 5, 1);
    cache.recolour(pointer, COLOUR_BLUE);
    EXPECT_EQ(&own, pointer);
    EXPECT_EQ(1, own.width);
    EXPECT_EQ(0, cache.get_image_orig_width(nullptr));
}

TEST_F(ImageCache, MoreUsersThanCanBeCountedKeepAPictureForGood) {
    cache.discard_unused = true;
    IMAGE* image = open("red");
    constexpr int USERS = 66000;
    for (int i = 1; i < USERS; ++i) {
        cache.duplicate(image);
    }
    for (int i = 0; i < USERS; ++i) {
        cache.close(image);
        ASSERT_EQ(1, cache.entries.get_count()) << i;
    }
    EXPECT_EQ(image, open("red"));
    EXPECT_EQ(CACHE_ENTRY::MAX_USES, entry_of(image)->use_count);
}

TEST_F(ImageCache, TwoSizesOfAFileAreTwoEntriesOfWhichTheSecondIsNotRead) {
    IMAGE* natural = open("red");
    remove("red");
    IMAGE* large = open("red", 16, 16);
    ASSERT_NE(nullptr, large);
    EXPECT_NE(natural, large);
    EXPECT_EQ(16, large->height);
    EXPECT_EQ(8, cache.get_image_orig_width(large));
    EXPECT_EQ(large, open("red", 16, 16));
    EXPECT_EQ(natural, open("red"));  // without a size the file's own comes first
    cache.recolour(large, COLOUR_GREEN);
    EXPECT_EQ(COLOUR_GREEN.green() > 0, large->row(0)[0].green() > 0);
    EXPECT_EQ(COLOUR_RED, natural->row(0)[0]);
    EXPECT_EQ(COLOUR_RED, open("red", 16, 16)->row(0)[0]);  // the other user's stays too
}

TEST_F(ImageCache, FlagsOfOpening) {
    EXPECT_EQ(nullptr, open("none", ANY, ANY, IMAGE_CACHE::NEVER_FROM_DISK));
    EXPECT_EQ(nullptr, open("none", ANY, ANY, IMAGE_CACHE::FORGET_FAILURE));
    EXPECT_EQ(0, cache.entries.get_count());
    EXPECT_EQ(nullptr, open("none"));
    EXPECT_EQ(1, cache.entries.get_count());
    make("none", COLOUR_BLUE);
    EXPECT_EQ(nullptr, open("none"));  // known not to be there
    EXPECT_EQ(nullptr, open("none", 5, 5));
    IMAGE* found = open("none", ANY, ANY, IMAGE_CACHE::RELOAD);
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(found, open("none"));

    IMAGE* at_size = open("red", 16, 8);
    EXPECT_EQ(16, at_size->width);
    EXPECT_EQ(8, cache.get_image_orig_width(at_size));
    make("exact", COLOUR_RED);
    EXPECT_EQ(8, open("exact", 16, 8, IMAGE_CACHE::EXACT_SIZE)->width);
    make("red", COLOUR_GREEN);
    EXPECT_EQ(COLOUR_RED, open("red", 16, 8)->row(0)[0]);
    EXPECT_EQ(COLOUR_GREEN, open("red", 16, 8, IMAGE_CACHE::RELOAD)->row(0)[0]);
    EXPECT_EQ(16, at_size->width);
    EXPECT_EQ(nullptr, open(nullptr));
    EXPECT_EQ(nullptr, cache.open_image("$NOWHERE", "red", ANY, ANY, 0, 1));
}

TEST_F(ImageCache, ADamagedFileIsNullAndNamedInTheTrace) {
    folder.put("pictures/bad.png", "\x89PNG, or so it says");
    TRACE_CAPTURE trace;
    EXPECT_EQ(nullptr, open("bad"));
    EXPECT_NE(std::string::npos, trace.end().find("\"bad.png\" refused"));
}

TEST_F(ImageCache, NoMoreFilesAreReadThanThereIsRoomFor) {
    make("blue", COLOUR_BLUE);
    cache.max_picture_bytes = 8 * 4 * 4;
    IMAGE* red = open("red");
    ASSERT_NE(nullptr, red);
    TRACE_CAPTURE trace;
    EXPECT_EQ(nullptr, open("blue"));
    EXPECT_NE(std::string::npos, trace.end().find("\"blue\" refused"));
    EXPECT_EQ(red, open("red"));  // is there already
    EXPECT_NE(nullptr, open("red", 3, 3));
    cache.close(red);
    cache.close(red);
    cache.unload("red");
    EXPECT_NE(nullptr, open("blue"));  // that it found no room isn't remembered
}

TEST_F(ImageCache, ResizingGivesAUserItsOwnSize) {
    IMAGE* shared = open("red");
    IMAGE* mine = cache.duplicate(shared);
    cache.resize_image(mine, -1, 4, 1);
    cache.resize_image(mine, 8, 4, 1);
    EXPECT_EQ(shared, mine);
    cache.resize_image(mine, 20, 10, 1);
    EXPECT_NE(shared, mine);
    EXPECT_EQ(8, shared->width);
    EXPECT_EQ(20, mine->width);
    EXPECT_EQ(1, entry_of(shared)->use_count);
    // The only user of a size: resized in place. Another user of that size joins it.
    IMAGE* const entry = mine;
    cache.resize_image(mine, 30, 10, 1);
    EXPECT_EQ(entry, mine);
    IMAGE* other = open("red");
    cache.resize_image(other, 30, 10, 1);
    EXPECT_EQ(mine, other);
    EXPECT_EQ(2, entry_of(mine)->use_count);
    cache.resize_image(other, 0, 10, 1);
    EXPECT_EQ(0, other->width);
    cache.resize_image(other, 9, 9, 1);
    EXPECT_EQ(COLOUR_RED, other->row(8)[8]);  // from the file's own size, not from nothing
    EXPECT_EQ(3, cache.entries.get_count());
}

TEST_F(ImageCache, CustomPicturesAreNeverShared) {
    IMAGE* plain = open("red");
    IMAGE* custom = cache.duplicate(plain);
    cache.make_custom(custom);
    ASSERT_NE(plain, custom);
    EXPECT_TRUE(entry_of(custom)->custom);
    EXPECT_EQ(1, entry_of(plain)->use_count);
    IMAGE* const again = custom;
    cache.replace_colour(custom, COLOUR_RED, COLOUR_BLUE);
    EXPECT_EQ(again, custom);
    EXPECT_EQ(COLOUR_BLUE, custom->row(0)[0]);
    EXPECT_EQ(plain, open("red"));
    cache.resize_image(custom, 3, 3, 1);
    EXPECT_EQ(again, custom);
    EXPECT_EQ(COLOUR_BLUE, custom->row(2)[2]);
    EXPECT_NE(custom, open("red", 3, 3));
    const std::int32_t count = cache.entries.get_count();
    cache.close(custom);
    EXPECT_EQ(count - 1, cache.entries.get_count());
    // The only user of a resized entry keeps it.
    IMAGE* sized = open("red", 5, 5);
    IMAGE* const before = sized;
    cache.make_grey(sized);
    EXPECT_EQ(before, sized);
    EXPECT_EQ(COLOUR(85, 85, 85), sized->row(0)[0]);
    cache.recolour_in_place = true;
    cache.set_trialpha_colours(plain, COLOUR_GREEN, COLOUR_BLACK, COLOUR_BLACK);
    EXPECT_EQ(COLOUR_GREEN, open("red")->row(0)[0]);
}

TEST_F(ImageCache, InPlaceATintIsTakenOnceByAllUsers) {
    constexpr COLOUR TINT = 0xFF3F4C5Cu;
    const auto tinted = [](COLOUR pixel, COLOUR tint) {
        pixel.recolour(tint);
        return pixel;
    };
    make("grey", COLOUR_GREY);
    cache.recolour_in_place = true;
    IMAGE* one = open("grey");
    IMAGE* two = open("grey");
    const COLOUR grey = one->row(0)[0];  // as the file's gamma makes it
    ASSERT_NE(tinted(grey, TINT), tinted(tinted(grey, TINT), TINT));
    cache.recolour_channel(one, TINT, 3);
    cache.recolour_channel(two, TINT, 3);
    cache.recolour(two, TINT);
    EXPECT_EQ(one, two);
    EXPECT_EQ(tinted(grey, TINT), one->row(0)[0]);
    cache.recolour(one, COLOUR_RED);
    EXPECT_EQ(tinted(tinted(grey, TINT), COLOUR_RED), one->row(0)[0]);
    // What has changed since takes it again.
    cache.reload(one);
    cache.recolour(one, COLOUR_RED);
    EXPECT_EQ(tinted(grey, COLOUR_RED), one->row(0)[0]);
    cache.make_grey(one);
    const COLOUR greyed = one->row(0)[0];
    cache.recolour(one, COLOUR_RED);
    EXPECT_EQ(tinted(greyed, COLOUR_RED), one->row(0)[0]);
}

TEST_F(ImageCache, ClearingLeavesUsedPicturesToTheirUsers) {
    make("blue", COLOUR_BLUE);
    IMAGE* used = open("red");
    cache.close(open("blue"));
    cache.unload("red");
    cache.unload(PATH, "blue");
    cache.unload("$BASE", "red");
    ASSERT_EQ(1, cache.entries.get_count());
    EXPECT_TRUE(entry_of(used)->stale);
    IMAGE* fresh = open("red");
    EXPECT_NE(used, fresh);
    IMAGE* resized = cache.duplicate(used);
    cache.resize_image(resized, 3, 3, 1);  // of a stale picture: not to be shared either
    EXPECT_TRUE(entry_of(resized)->stale);
    cache.close(used);
    cache.close(resized);
    EXPECT_EQ(1, cache.entries.get_count());
    cache.close(fresh);
    cache.soft_clear();
    EXPECT_EQ(0, cache.entries.get_count());
}

TEST_F(ImageCache, ReloadingReadsTheFilesAgainAtTheirSizes) {
    IMAGE* natural = open("red");
    IMAGE* sized = open("red", 5, 5);
    make("red", COLOUR_GREEN, 10, 10);
    cache.reload(sized);
    EXPECT_EQ(COLOUR_GREEN, sized->row(4)[4]);
    EXPECT_EQ(5, sized->width);
    EXPECT_EQ(10, cache.get_image_orig_width(sized));
    EXPECT_EQ(COLOUR_RED, natural->row(0)[0]);
    cache.reload();
    EXPECT_EQ(10, natural->width);
    remove("red");
    cache.reload();
    EXPECT_EQ(COLOUR_GREEN, natural->row(0)[0]);
}

TEST_F(ImageCache, EntriesStaySortedByPathAndName) {
    for (const char* name : {"m", "a", "z", "k", "b", "zz", "aa"}) {
        make(name, COLOUR_RED, 2, 2);
        open(name);
        open(name, 4, 4);
    }
    for (std::int32_t i = 1; i < cache.entries.get_count(); ++i) {
        const auto* left = cache.entries.get<CACHE_ENTRY>(i - 1);
        const auto* right = cache.entries.get<CACHE_ENTRY>(i);
        EXPECT_LE(std::strcmp(left->filename, right->filename), 0);
    }
    EXPECT_EQ(14, cache.entries.get_count());
}

TEST_F(ImageCache, StoredFormIsFixedByteByByte) {
    make("x", 0xFFFF00FFu, 1, 1);
    open("x", ANY, ANY);
    IMAGE* custom = open("x", 2, 1);
    cache.make_custom(custom);
    IMAGE* stale = open("red");
    cache.unload("red");
    ASSERT_NE(nullptr, stale);
    const BYTES little = {
        2,   1,   0,   0,   0,                                                   // count
        14,  0,   0,   0,   '$', 'B',  'A', 'S',  'E', '/', 'p', 'i', 'c', 't',  //
        'u', 'r', 'e', 's', 1,   0,    0,   0,    'x', 1,   0,   1,   0,   1,    //
        0,   1,   0,                                                             //
        1,   1,   0,   1,   0,   0xFF, 0,   0xFF, 0xFF};                         // image
    EXPECT_EQ(little, store(cache));

    const BYTES big = store(cache, true);
    EXPECT_EQ(1, big[4]);
    IMAGE_CACHE other;
    int calls = 0;
    other.loading_callback = [](void* data) { ++*static_cast<int*>(data); };
    other.loading_callback_data = &calls;
    IMAGE* old = other.open_image(PATH, "red", ANY, ANY, 0, 1);
    ASSERT_EQ(1, read(other, big, true));
    EXPECT_EQ(1, calls);
    EXPECT_TRUE(entry_of(old)->stale);
    remove("x");
    IMAGE* image = other.open_image(PATH, "x", ANY, ANY, IMAGE_CACHE::NEVER_FROM_DISK, 1);
    ASSERT_NE(nullptr, image);
    EXPECT_EQ(COLOUR_MAGENTA, image->row(0)[0]);
    EXPECT_EQ(1, entry_of(image)->use_count);
    EXPECT_EQ(little, store(other));
}

TEST_F(ImageCache, OlderFormHasAFolderRecord) {
    MESSAGE message;
    const auto one = static_cast<std::uint16_t>(1);
    IMAGE pixel(1, 1);
    ASSERT_TRUE(message << static_cast<unsigned char>(1));
    ASSERT_TRUE(message << std::uint32_t{1});
    ASSERT_TRUE(folder.cursor("pictures").put_to_data_device(message));
    ASSERT_TRUE(message.write_dynamic_text("old"));
    ASSERT_TRUE((message << one) && (message << one) && (message << one) && (message << one));
    ASSERT_TRUE(pixel.put_to_data_device(message));
    message.set_pos(0, false);
    ASSERT_EQ(1, cache.get_from_data_device(message));
    EXPECT_NE(nullptr, open("old", ANY, ANY, IMAGE_CACHE::NEVER_FROM_DISK));
}

TEST_F(ImageCache, SizesThatBelieTheirPictureAreNotBelieved) {
    make("x", COLOUR_BLUE, 3, 2);
    cache.close(open("x"));
    const BYTES good = store(cache);
    constexpr std::size_t SIZES = 1 + 4 + (4 + 14) + (4 + 1);
    ASSERT_EQ((BYTES{3, 0, 2, 0, 3, 0, 2, 0}),
              BYTES(good.begin() + SIZES, good.begin() + SIZES + 8));
    for (const int value : {0x0000, 0x8000, 0xFFFF}) {
        BYTES odd = good;
        for (std::size_t i = 0; i < 8; i += 2) {
            odd[SIZES + i] = static_cast<std::uint8_t>(value);
            odd[SIZES + i + 1] = static_cast<std::uint8_t>(value >> 8);
        }
        IMAGE_CACHE other;
        ASSERT_EQ(1, read(other, odd));
        // Found, and not copied, however often and in whatever way it is asked for.
        for (const std::int32_t width : {ANY, 3}) {
            IMAGE* image = other.open_image(PATH, "x", width, ANY, IMAGE_CACHE::NEVER_FROM_DISK, 1);
            ASSERT_NE(nullptr, image);
            EXPECT_EQ(1, other.entries.get_count());
            EXPECT_EQ(3, other.get_image_orig_width(image));
            EXPECT_EQ(2, other.get_image_orig_height(image));
        }
        EXPECT_EQ(good, store(other));
    }
}

TEST_F(ImageCache, DamagedFormsAreRefusedAndLeaveWhatCameBefore) {
    make("blue", COLOUR_BLUE, 2, 2);
    open("blue");
    open("red");
    const BYTES good = store(cache);
    for (std::size_t size = 0; size < good.size(); ++size) {
        IMAGE_CACHE other;
        ASSERT_EQ(0, read(other, BYTES(good.begin(), good.begin() + std::ptrdiff_t(size))));
    }
    BYTES absurd = good;
    absurd[4] = 0x7F;  // of billions of entries
    IMAGE_CACHE other;
    EXPECT_EQ(0, read(other, absurd));
    absurd = good;
    absurd[0] = 3;
    EXPECT_EQ(0, read(other, absurd));
    EXPECT_EQ(0, other.entries.get_count());
    EXPECT_EQ(0, read(other, BYTES(good.begin(), good.end() - 1)));
    EXPECT_EQ(1, other.entries.get_count());
}

}  // namespace
