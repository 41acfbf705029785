// The stored form of an add-on is fixed byte by byte for every format, hostile records are refused,
// and the rules of the tree hold.
#include "autopatch/add_on.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "autopatch/autopatch_types.h"
#include "stored_bytes.h"
#include "temporary_installation.h"

namespace {

bool read_record(const STORED_BYTES& bytes, std::uint16_t format, ADD_ON& add_on) {
    MESSAGE message;
    bytes.put_into(message);
    return add_on.get_from_data_device(format, message) == 1;
}

STORED_BYTES write_record(const ADD_ON& add_on, std::uint16_t format, bool big_endian = false) {
    MESSAGE message;
    message.set_byte_order(big_endian ? 1 : 0);
    EXPECT_EQ(1, add_on.put_to_data_device(format, message));
    return STORED_BYTES::of(message);
}

std::unique_ptr<ADD_ON> make_add_on(const char* path, std::uint16_t version,
                                    ADD_ON::ADD_ON_TYPE type = ADD_ON::ADD_ON_MISC) {
    auto add_on = std::make_unique<ADD_ON>();
    add_on->type = type;
    add_on->version = version;
    add_on->minimum_version = 1;
    add_on->invalid = false;
    add_on->set_path(path);
    return add_on;
}

// Makes `child` a child of `parent` and yields it.
ADD_ON& attach(ADD_ON& parent, std::unique_ptr<ADD_ON> child) {
    ADD_ON* released = child.release();
    released->set_parent(parent);
    return *released;
}

// The record that the byte tests are about, with two lines, a 1 by 2 picture and a child.
std::unique_ptr<ADD_ON> make_full_record() {
    auto add_on = make_add_on("pk", 0x0102);
    add_on->minimum_version = 0x0304;
    add_on->enabled = true;
    add_on->invalid = false;
    add_on->set_title("title");
    add_on->add_description_line("a");
    add_on->add_description_line("bc");
    add_on->image->reset(1, 2);
    *add_on->image->row(0) = 0x11223344u;
    *add_on->image->row(1) = 0x55667788u;
    add_on->file_size = 0xA1B2C3D4u;
    ADD_ON& child = attach(*add_on, make_add_on("sub", 7));
    child.enabled = true;
    child.set_title("title");
    child.invalid = true;
    return add_on;
}

STORED_BYTES full_record_bytes(std::uint16_t format, bool big) {
    STORED_BYTES bytes(big);
    bytes.head(1, 0x0102, 0x0304, "pk");
    if (format < 1200) {
        bytes.text("a");
    } else {
        bytes.u16(2).text("a").text("bc");
    }
    bytes.u8(1).u16(1).u16(2).u32(0x11223344u).u32(0x55667788u);
    if (format >= 1300) {
        bytes.u32(0xA1B2C3D4u);
    }
    if (format >= 1600) {
        bytes.u32(1).head(1, 7, 1, "sub").u16(0).empty_image().u32(0).u32(0);
        if (format >= 1620) {
            bytes.u8(1).u8(0);
        }
    }
    return bytes;
}

TEST(AddOnRecord, NewestFormatIsFixedByteByByte) {
    const std::vector<std::uint8_t> expected = {
        1,    0,    2,    1,    4,    3,    1,                                          // numbers
        2,    0,    0,    0,    'p',  'k',  5,    0,    0, 0, 't', 'i', 't', 'l', 'e',  // texts
        2,    0,    1,    0,    0,    0,    'a',  2,    0, 0, 0,   'b', 'c',  // description
        1,    1,    0,    2,    0,                                            // picture
        0x44, 0x33, 0x22, 0x11, 0x88, 0x77, 0x66, 0x55,                       // its pixels
        0xD4, 0xC3, 0xB2, 0xA1,                                               // file size
        0,    0,    0,    0,                                                  // no children
        0};                                                                   // valid
    auto add_on = make_full_record();
    add_on->children.clear();
    EXPECT_EQ(expected, write_record(*add_on, 1620).bytes);
}

TEST(AddOnRecord, EveryFormatAndByteOrderIsWrittenAndReadBack) {
    for (const int number : {1000, 1199, 1200, 1299, 1300, 1599, 1600, 1619, 1620}) {
        const auto format = static_cast<std::uint16_t>(number);
        for (const bool big : {false, true}) {
            SCOPED_TRACE(testing::Message() << "format " << format << " big " << big);
            const STORED_BYTES expected = full_record_bytes(format, big);
            EXPECT_EQ(expected.bytes, write_record(*make_full_record(), format, big).bytes);

            ADD_ON add_on;
            ASSERT_TRUE(read_record(expected, format, add_on));
            EXPECT_EQ(expected.bytes, write_record(add_on, format, big).bytes);
            EXPECT_EQ(format < 1300 ? 0u : 0xA1B2C3D4u, add_on.file_size);
            EXPECT_EQ(format < 1200 ? 1 : 2, add_on.description_count);
            ASSERT_EQ(format < 1600 ? 0 : 1, add_on.get_child_count());
            if (format >= 1600) {
                EXPECT_EQ(&add_on, add_on.get_child(0)->parent);
            }
            // No part of a record makes a whole one.
            for (std::size_t size = 0; size < expected.bytes.size(); ++size) {
                STORED_BYTES cut = expected;
                cut.bytes.resize(size);
                ADD_ON part;
                EXPECT_FALSE(read_record(cut, format, part)) << "cut at " << size;
            }
        }
    }
}

TEST(AddOnRecord, ValidityIsDerivedWhereItIsNotStored) {
    const auto read_invalid = [](unsigned version, unsigned minimum, std::uint16_t format) {
        STORED_BYTES bytes;
        bytes.head(1, version, minimum, "x").u16(0).empty_image();
        if (format >= 1300) {
            bytes.u32(0);
        }
        if (format >= 1600) {
            bytes.u32(0);
        }
        if (format >= 1620) {
            bytes.u8(0);
        }
        ADD_ON add_on;
        EXPECT_TRUE(read_record(bytes, format, add_on));
        return add_on.invalid;
    };
    EXPECT_TRUE(read_invalid(5, 7, 1200));
    EXPECT_FALSE(read_invalid(7, 7, 1200));
    EXPECT_TRUE(read_invalid(0, 0, 1619));
    EXPECT_FALSE(read_invalid(0, 9, 1620));  // stored, even with version 0
    ADD_ON add_on;
    add_on.invalid = false;
    EXPECT_FALSE(add_on.is_valid(false));  // but version 0 is never valid
}

TEST(AddOnRecord, ReadingReplacesWhatTheRecordHeld) {
    auto add_on = make_full_record();
    STORED_BYTES bytes;
    bytes.head(2, 1, 1, "skin").text("only").empty_image();
    ASSERT_TRUE(read_record(bytes, 1000, *add_on));
    EXPECT_EQ(0, add_on->get_child_count());
    EXPECT_EQ(0u, add_on->file_size);
    EXPECT_STREQ("only", add_on->get_description_line(0));
    EXPECT_EQ(nullptr, add_on->get_description_line(1));
    EXPECT_EQ(0, add_on->image->width);
}

TEST(AddOnRecord, OverlongTextIsCutAndTheStreamStaysInStep) {
    const std::string line(2000, 'd');
    STORED_BYTES bytes;
    bytes.u16(1).u16(5).u16(1).u8(1).text(std::string(300, 'p')).text(std::string(300, 't'));
    bytes.u16(1).text(line).empty_image().u32(77).u32(0).u8(0);
    ADD_ON add_on;
    ASSERT_TRUE(read_record(bytes, 1620, add_on));
    EXPECT_EQ(std::string(127, 'p'), add_on.path);
    EXPECT_EQ(std::string(63, 't'), add_on.title);
    EXPECT_EQ(std::string(767, 'd'), add_on.get_description_line(0));
    EXPECT_EQ(77u, add_on.file_size);
}

TEST(AddOnRecord, RefusesUnknownTypesAndCountsBeyondTheLimits) {
    ADD_ON add_on;
    const auto with_type = [](unsigned type) {
        STORED_BYTES bytes;
        return bytes.head(type, 5, 1, "x").u16(0).empty_image().u32(0).u32(0).u8(0);
    };
    EXPECT_TRUE(read_record(with_type(0), 1620, add_on));
    EXPECT_TRUE(read_record(with_type(2), 1620, add_on));
    EXPECT_FALSE(read_record(with_type(3), 1620, add_on));
    EXPECT_FALSE(read_record(with_type(0xFFFF), 1620, add_on));

    const auto with_lines = [](unsigned count) {
        STORED_BYTES bytes;
        bytes.head(1, 5, 1, "x").u16(count);
        for (unsigned i = 0; i < count; ++i) {
            bytes.text("l");
        }
        return bytes.empty_image().u32(0).u32(0).u8(0);
    };
    EXPECT_TRUE(read_record(with_lines(256), 1620, add_on));
    EXPECT_STREQ("l", add_on.get_description_line(255));
    EXPECT_FALSE(read_record(with_lines(257), 1620, add_on));

    const auto with_children = [](unsigned stored, unsigned promised) {
        STORED_BYTES bytes;
        bytes.head(1, 5, 1, "x").u16(0).empty_image().u32(0).u32(promised);
        for (unsigned i = 0; i < stored; ++i) {
            bytes.plain_record("c");
        }
        return bytes.u8(0);
    };
    EXPECT_TRUE(read_record(with_children(1000, 1000), 1620, add_on));
    EXPECT_EQ(1000, add_on.get_child_count());
    EXPECT_FALSE(read_record(with_children(1001, 1001), 1620, add_on));
    EXPECT_FALSE(read_record(with_children(1, 2), 1620, add_on));
    EXPECT_FALSE(read_record(with_children(1, 0xFFFFFFFFu), 1620, add_on));
}

TEST(AddOnRecord, RefusesPathsThatAreNotOnePlainFolder) {
    using namespace std::string_literals;
    for (const std::string& path : {""s, "."s, ".."s, "../x"s, "/etc"s, "a/b"s, "a\\b"s, "C:"s,
                                    "a\nb"s, "a\x1b[2J"s, "\x7f"s, "\0x"s}) {
        STORED_BYTES bytes;
        bytes.plain_record(path);
        ADD_ON add_on;
        EXPECT_FALSE(read_record(bytes, 1620, add_on)) << path;
        // In a child as well.
        STORED_BYTES tree;
        tree.head(1, 5, 1, "x").u16(0).empty_image().u32(0).u32(1).append(bytes).u8(0);
        EXPECT_FALSE(read_record(tree, 1620, add_on)) << path;
    }
    for (const char* path : {"app", "...", ".hidden", "with blank", "\xc3\xa4"}) {
        STORED_BYTES bytes;
        ADD_ON add_on;
        EXPECT_TRUE(read_record(bytes.plain_record(path), 1620, add_on)) << path;
    }
}

TEST(AddOnRecord, RefusesTreesThatAreTooDeep) {
    const auto nested = [](int levels_below_top) {
        STORED_BYTES bytes;
        for (int i = 0; i < levels_below_top; ++i) {
            bytes.head(1, 5, 1, "x").u16(0).empty_image().u32(0).u32(1);
        }
        bytes.plain_record("leaf");
        for (int i = 0; i < levels_below_top; ++i) {
            bytes.u8(0);
        }
        return bytes;
    };
    ADD_ON add_on;
    EXPECT_TRUE(read_record(nested(ADD_ON::MAX_DEPTH), 1620, add_on));
    EXPECT_FALSE(read_record(nested(ADD_ON::MAX_DEPTH + 1), 1620, add_on));
    EXPECT_FALSE(read_record(nested(100000), 1620, add_on));
}

TEST(AddOn, DescriptionLinesAreCountedOnlyWhenAppended) {
    ADD_ON add_on;
    add_on.set_description_line(0, "not counted");
    EXPECT_EQ(0, add_on.description_count);
    EXPECT_EQ(nullptr, add_on.get_description_line(0));
    add_on.description_count = 1;
    EXPECT_STREQ("not counted", add_on.get_description_line(0));
    for (int i = 1; i < 256; ++i) {
        add_on.add_description_line("line");
    }
    add_on.add_description_line("the 257th");
    add_on.set_description_line(256, "beyond");
    EXPECT_EQ(256, add_on.description_count);
    EXPECT_STREQ("line", add_on.get_description_line(255));
    EXPECT_EQ(nullptr, add_on.get_description_line(256));
    add_on.set_description_line(3, std::string(1000, 'x').c_str());
    EXPECT_EQ(std::string(767, 'x'), add_on.get_description_line(3));
}

TEST(AddOn, CopyConstructorCopiesTheTreeWithItsOwnPictures) {
    auto top = make_full_record();
    ADD_ON& child = *top->get_child(0);
    attach(child, make_add_on("grandchild", 3));
    const auto copy_of_child = std::make_unique<ADD_ON>(&child);
    EXPECT_EQ(nullptr, copy_of_child->parent);

    const auto copy = std::make_unique<ADD_ON>(top.get());
    EXPECT_EQ(write_record(*top, 1620).bytes, write_record(*copy, 1620).bytes);
    EXPECT_EQ(copy.get(), copy->get_child(0)->parent);
    EXPECT_EQ(copy->get_child(0), copy->get_child(0)->get_child(0)->parent);
    const auto before = write_record(*copy, 1620).bytes;
    *top->image->row(0) = COLOUR_RED;
    top.reset();
    EXPECT_EQ(before, write_record(*copy, 1620).bytes);
}

TEST(AddOn, CopyRefreshesOnlyWhatIsThere) {
    auto old_record = make_add_on("pk", 1);
    old_record->image->reset(1, 1);
    attach(*old_record, make_add_on("sub", 1));
    attach(*old_record, make_add_on("gone", 1));
    old_record->invalid = true;

    auto new_record = make_full_record();
    new_record->image->reset(0, 0);
    attach(*new_record, make_add_on("added", 9));
    old_record->copy(new_record.get());

    EXPECT_EQ(0x0102, old_record->version);
    EXPECT_EQ(0xA1B2C3D4u, old_record->file_size);
    EXPECT_STREQ("bc", old_record->get_description_line(1));
    EXPECT_EQ(1, old_record->image->width);  // the source's was empty
    EXPECT_TRUE(old_record->invalid);
    ASSERT_EQ(2, old_record->get_child_count());
    EXPECT_EQ(7, old_record->get_child(0)->version);
    EXPECT_EQ(1, old_record->get_child(1)->version);
}

TEST(AddOn, EqualityLooksAtTypePathFlagAndThisSidesChildren) {
    auto left = make_add_on("x", 1);
    auto right = make_add_on("x", 99);
    EXPECT_TRUE(*left == *right);
    right->invalid = true;
    EXPECT_FALSE(*left == *right);
    EXPECT_TRUE(left->is_equal(*right));
    right->invalid = false;
    right->type = ADD_ON::ADD_ON_SKIN;
    EXPECT_FALSE(left->is_equal(*right));
    right->type = ADD_ON::ADD_ON_MISC;

    attach(*right, make_add_on("child", 1));
    EXPECT_TRUE(*left == *right);
    EXPECT_FALSE(*right == *left);
    attach(*left, make_add_on("child", 5));
    EXPECT_TRUE(*right == *left);
}

TEST(AddOn, NewerMeansAGreaterVersionOrSomeNewerChild) {
    EXPECT_TRUE(make_add_on("x", 2)->is_newer_version(*make_add_on("x", 1)));
    EXPECT_FALSE(make_add_on("x", 2)->is_newer_version(*make_add_on("x", 2)));

    auto left = make_add_on("x", 1);
    auto right = make_add_on("x", 100);
    attach(*left, make_add_on("old", 1));
    attach(*left, make_add_on("only_here", 500));
    attach(*right, make_add_on("old", 60000));
    attach(*right, make_add_on("c", 11));
    EXPECT_FALSE(left->is_newer_version(*right));  // a child without a partner doesn't count
    ADD_ON& decisive = attach(*left, make_add_on("c", 12));
    EXPECT_TRUE(left->is_newer_version(*right));
    decisive.invalid = true;  // no partner by operator== any more
    EXPECT_FALSE(left->is_newer_version(*right));
}

TEST(AddOn, FlagsReachDescendantsAndDownloadClimbs) {
    auto top = make_add_on("match3d", 1);
    top->file_size = 1;
    ADD_ON& first = attach(*top, make_add_on("a", 1));
    ADD_ON& second = attach(*top, make_add_on("b", 1));
    ADD_ON& deep = attach(second, make_add_on("c", 1));
    first.file_size = 10;
    deep.file_size = 100;
    EXPECT_EQ(111u, top->get_file_size());
    EXPECT_TRUE(deep.requires_3d());
    EXPECT_FALSE(make_add_on("c", 1)->requires_3d());
    EXPECT_EQ(top.get(), deep.get_top_level_parent());

    top->set_enabled(true);
    EXPECT_TRUE(deep.enabled && top->get_enabled());
    deep.enabled = false;
    EXPECT_FALSE(top->get_enabled());
    top->mark_for_redownload();
    EXPECT_TRUE(deep.invalid && first.invalid);
    EXPECT_FALSE(top->is_valid(false));

    top->set_enabled(false);
    first.set_downloaded();
    EXPECT_TRUE(first.enabled && first.is_valid(true));
    EXPECT_FALSE(top->invalid);
    EXPECT_FALSE(top->enabled);  // b isn't yet
    EXPECT_TRUE(top->is_valid(false));
    EXPECT_FALSE(top->is_valid(true));
    deep.set_downloaded();
    EXPECT_TRUE(top->get_enabled() && second.enabled && top->is_valid(true));

    top->add_child(&first);
    EXPECT_EQ(2, top->get_child_count());
}

class AddOnFolder : public testing::Test {
protected:
    // The folder that the add-on's move ends in, or "" if it fails.
    static std::string move(const ADD_ON& add_on, bool create) {
        DISK_MANAGER disk(FOLDER_ADD_ONS);
        return add_on.move_to_path(disk, create) ? disk.get_path_string() : "";
    }

    TEMPORARY_INSTALLATION installation;
};

TEST_F(AddOnFolder, EachTypeHasItsPlace) {
    auto top = make_add_on("one", 1);
    ADD_ON& leaf = attach(attach(*top, make_add_on("two", 1)), make_add_on("three", 1));
    const auto skin = make_add_on("saffrane", 1, ADD_ON::ADD_ON_SKIN);
    const auto client = make_add_on("app", 42, ADD_ON::ADD_ON_APPLICATION);

    EXPECT_EQ("", move(leaf, false));
    EXPECT_EQ(installation.add_ons("one/two/three"), move(leaf, true));
    EXPECT_EQ(installation.add_ons("one/two/three"), move(leaf, false));
    EXPECT_EQ("", move(*skin, false));
    EXPECT_EQ(installation.add_ons("skins/saffrane"), move(*skin, true));
    EXPECT_EQ("", move(*client, false));
    EXPECT_EQ(installation.add_ons("client/app_42"), move(*client, true));
    EXPECT_EQ("app_42", client->get_folder_name());

    std::filesystem::create_directory(installation.add_ons("client/app"));
    EXPECT_EQ("", move(*client, false));
    auto unknown = make_add_on("x", 1);
    unknown->type = static_cast<ADD_ON::ADD_ON_TYPE>(3);
    EXPECT_EQ("", move(*unknown, true));
}

TEST_F(AddOnFolder, CreatingEmptiesTheOwnFolderAndNoOther) {
    auto top = make_add_on("one", 1);
    ADD_ON& child = attach(*top, make_add_on("two", 1));
    const auto skin = make_add_on("saffrane", 1, ADD_ON::ADD_ON_SKIN);
    const auto client = make_add_on("app", 42, ADD_ON::ADD_ON_APPLICATION);
    for (const char* file : {"one/keep", "one/two/old", "one/other/keep", "skins/saffrane/old",
                             "skins/other/keep", "client/app_42/old", "client/app_41/keep"}) {
        installation.write(installation.add_ons(file), "x");
    }
    for (const ADD_ON* add_on : {&child, skin.get(), client.get()}) {
        EXPECT_NE("", move(*add_on, true));
    }
    for (const char* kept :
         {"one/keep", "one/other/keep", "skins/other/keep", "client/app_41/keep"}) {
        EXPECT_TRUE(std::filesystem::exists(installation.add_ons(kept))) << kept;
    }
    for (const char* folder : {"one/two", "skins/saffrane", "client/app_42"}) {
        EXPECT_TRUE(std::filesystem::is_empty(installation.add_ons(folder))) << folder;
    }
}

TEST_F(AddOnFolder, NeverLeavesTheAddOnsFolderNorTakesTheCataloguesOwn) {
    installation.write(installation.add_ons("client/app_1/file"), "x");
    installation.write(installation.add_ons("skins/s/file"), "x");
    installation.write(installation.root / "outside" / "file", "x");
    for (const char* path : {"..", ".", "", "../outside", "client", "skins", "incoming",
                             "add_ons.bin", "add_ons.bin.tmp"}) {
        EXPECT_EQ("", move(*make_add_on(path, 1), true)) << path;
        auto parent = make_add_on(path, 1);
        EXPECT_EQ("", move(attach(*parent, make_add_on("outside", 1)), true)) << path;
    }
    EXPECT_TRUE(std::filesystem::exists(installation.add_ons("client/app_1/file")));
    EXPECT_TRUE(std::filesystem::exists(installation.add_ons("skins/s/file")));
    EXPECT_TRUE(std::filesystem::exists(installation.root / "outside" / "file"));
}

}  // namespace
