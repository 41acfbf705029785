// FONT_MANAGER and the text of IMAGE: the encoding, fonts and their refusal, glyphs, widths, lines,
// wrapping and effects. Pictures are checked by where ink is.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/text_walker.h"
#include "temp_folder.h"
#include "trace_capture.h"

namespace {

constexpr char FONT_FOLDER[] = "/usr/share/fonts/opentype/inter";
constexpr char FONT_NAME[] = "Inter-Regular.otf";
constexpr std::int32_t SIZE = 18;

std::vector<unsigned> walk(const char* text, bool in_code = false) {
    std::vector<unsigned> codes;
    for (TEXT_WALKER walker(text, in_code); walker.next();) {
        codes.push_back(walker.code);
    }
    return codes;
}

using CODES = std::vector<unsigned>;

TEST(TextWalker, ReadsBytesAndRunsOfCodes) {
    EXPECT_EQ((CODES{'a', 0xE9, 'b'}), walk("a\xE9"
                                            "b"));
    EXPECT_EQ((CODES{'a', 0x20AC, 0x1F1, 'b'}), walk("a\x01"
                                                     "20ac,01F1\x01"
                                                     "b"));
    EXPECT_EQ((CODES{0x41, 0x42}), walk("0041,0042", true));
    EXPECT_EQ((CODES{0x41, 'x'}), walk("0041\x01x", true));
    // Too few digits are skipped, and so is anything else within a run.
    EXPECT_EQ((CODES{0x41}), walk("\x01"
                                  "12Gxyz0041,,12"));
    EXPECT_EQ((CODES{'z'}), walk("\x01"
                                 "123\x01z"));
    EXPECT_EQ(CODES{}, walk("\x01\x01"));
    EXPECT_EQ(CODES{}, walk(nullptr));

    // Going back to where a character was found reads it again.
    TEXT_WALKER walker(
        "\x01"
        "0041,0042\x01"
        "c");
    walker.next();
    walker.next();
    TEXT_WALKER again(walker.at, walker.at_in_code);
    EXPECT_TRUE(again.next() && again.code == 0x42);
    EXPECT_TRUE(again.next() && again.code == 'c');
    EXPECT_FALSE(again.next());
}

class Text : public testing::Test {
protected:
    Text() {
        EXPECT_TRUE(disk.move_down(FONT_FOLDER, false, true));
        fonts.free_font(-1);
        EXPECT_EQ(0, fonts.load_font(FONT_NAME, 0, &disk)) << "the package fonts-inter is needed";
        image.clear(COLOUR_WHITE);
        image.set_not_dirty();
    }
    ~Text() override {
        fonts.free_font(-1);
        FONT_MANAGER::use_memory_font = false;
    }

    std::int32_t width(const std::string& text) {
        return fonts.get_string_width(0, SIZE, SIZE, text.c_str());
    }

    struct BOX {
        std::int32_t left = 1000, top = 1000, right = -1, bottom = -1;
        bool is_empty() const { return right < 0; }
    };
    // The box around everything that isn't the ground, within some rows.
    static BOX ink(const IMAGE& picture, std::int32_t first = 0, std::int32_t last = 1000,
                   COLOUR ground = COLOUR_WHITE) {
        BOX box;
        for (std::int32_t y = first; y <= std::min<std::int32_t>(last, picture.height - 1); ++y) {
            for (std::int32_t x = 0; x < picture.width; ++x) {
                if (!(picture.row(y)[x] == ground)) {
                    box.left = std::min(box.left, x);
                    box.right = std::max(box.right, x);
                    box.top = std::min(box.top, y);
                    box.bottom = std::max(box.bottom, y);
                }
            }
        }
        return box;
    }
    void single(const std::string& text, std::int32_t x1, std::int32_t x2, std::int32_t flags,
                unsigned char* was_cut = nullptr, COLOUR underline = COLOUR_INVISIBLE) {
        image.clear(COLOUR_WHITE);
        image.draw_single_line_string(x1, 20, x2, 59, COLOUR_BLACK, COLOUR_INVISIBLE, underline, 0,
                                      SIZE, SIZE, text.c_str(), flags, was_cut);
    }
    // Draws into a box of that many lines and tells what stands in each, by comparing it with the
    // candidates drawn alone.
    std::vector<std::string> wrap(const std::string& text, std::int32_t box_width, int lines,
                                  const std::vector<std::string>& candidates) {
        IMAGE page(400, SIZE * lines);
        page.clear(COLOUR_WHITE);
        page.draw_multi_line_string(0, 0, box_width - 1, page.height - 1, COLOUR_BLACK,
                                    COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE, SIZE, text.c_str(),
                                    IMAGE_TEXT_LEFT | IMAGE_TEXT_TOP);
        std::vector<std::string> found;
        for (int i = 0; i < lines; ++i) {
            std::string match = "?";
            for (const std::string& candidate : candidates) {
                IMAGE alone(400, page.height);
                alone.clear(COLOUR_WHITE);
                alone.draw_text(0, i * SIZE, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0,
                                SIZE, SIZE, "%s", candidate.c_str());
                // Letters reach into neighbouring lines, the middle of a line is its own.
                IMAGE a(400, SIZE - 6);
                IMAGE b(400, SIZE - 6);
                a.get(0, i * SIZE + 3, &page);
                b.get(0, i * SIZE + 3, &alone);
                if (a == b) {
                    match = candidate;
                }
            }
            found.push_back(match);
        }
        return found;
    }

    DISK_MANAGER disk;
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    IMAGE image{400, 80};
};

TEST_F(Text, FontsTakeSlotsAndAreFreed) {
    EXPECT_EQ(-1, fonts.load_font(FONT_NAME, 0, &disk));  // taken
    EXPECT_EQ(3, fonts.load_font("Inter-Bold.otf", 3, &disk));
    EXPECT_EQ(1, fonts.load_font(FONT_NAME, -1, &disk));  // the first free one
    EXPECT_EQ(2, fonts.load_font(FONT_NAME, -1, &disk));
    EXPECT_EQ(4, fonts.load_font(FONT_NAME, -1, &disk));
    EXPECT_EQ(-1, fonts.load_font("no-such-font.otf", 5, &disk));
    EXPECT_EQ(-1, fonts.load_font(FONT_NAME, -2, &disk));
    EXPECT_EQ(-1, fonts.load_font(FONT_NAME, 127, &disk));
    EXPECT_EQ(-1, fonts.load_font(nullptr, 5, &disk));
    EXPECT_TRUE(fonts.is_font_valid(3));
    EXPECT_FALSE(fonts.is_font_valid(5));
    EXPECT_FALSE(fonts.is_font_valid(-1));
    EXPECT_EQ(-1, fonts.get_font_ptr(3)->file_size);
    EXPECT_EQ(nullptr, fonts.get_font_ptr(100));
    fonts.free_font(3);
    fonts.free_font(100);
    EXPECT_FALSE(fonts.is_font_valid(3));
    EXPECT_TRUE(fonts.is_font_valid(4));
    EXPECT_EQ(3, fonts.load_font(FONT_NAME, -1, &disk));
    fonts.free_font(-1);
    EXPECT_FALSE(fonts.is_font_valid(0));
}

TEST_F(Text, AFontInMemoryDrawsTheSame) {
    image.draw_text(3, 3, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE, SIZE, "Same");
    FONT_MANAGER::use_memory_font = true;
    ASSERT_EQ(1, fonts.load_font(FONT_NAME, 1, &disk));
    EXPECT_NE(nullptr, fonts.get_font_ptr(1)->memory);
    IMAGE other(400, 80);
    other.clear(COLOUR_WHITE);
    other.draw_text(3, 3, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 1, SIZE, SIZE, "Same");
    EXPECT_TRUE(image == other);
    EXPECT_FALSE(ink(image).is_empty());
}

TEST_F(Text, DamagedFontsAreRefusedByName) {
    TEMP_FOLDER folder;
    std::ifstream in(std::string(FONT_FOLDER) + "/" + FONT_NAME, std::ios::binary);
    const std::string good(std::istreambuf_iterator<char>(in), {});
    ASSERT_GT(good.size(), 100000u);
    const auto load = [&](const std::string& bytes) {
        folder.put("bad.otf", bytes);
        const DISK_MANAGER cursor = folder.cursor();
        TRACE_CAPTURE trace;
        const std::int8_t index = fonts.load_font("bad.otf", 1, &cursor);
        const std::string text = trace.end();
        EXPECT_EQ(index == 1, text.empty());
        EXPECT_EQ(index == 1, text.find("font \"bad.otf\" refused") == std::string::npos);
        if (index == 1) {
            IMAGE page(100, 30);
            page.draw_text(0, 0, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 1, SIZE, SIZE,
                           "Hamburg \xE4\xF6\xFC");
        }
        fonts.free_font(1);
        return index == 1;
    };
    EXPECT_TRUE(load(good));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load("no font at all"));
    for (const std::size_t size : {4u, 100u, 1000u, 50000u}) {
        EXPECT_FALSE(load(good.substr(0, size))) << size;
    }
    std::mt19937 random(5);
    for (int i = 0; i < 40; ++i) {  // refused or usable, and never the end of the program
        std::string damaged = good;
        for (int j = 0; j < 200; ++j) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        load(damaged);
    }
    folder.put("folder.otf/x", "");
    const DISK_MANAGER cursor = folder.cursor();
    EXPECT_EQ(-1, fonts.load_font("folder.otf", 1, &cursor));
}

TEST_F(Text, GlyphsAreKeptAtTheirLastSize) {
    FONT_GLYPH glyph;
    fonts.render_glyph(&glyph, 'M', 0, 20, 20);
    EXPECT_EQ(20, glyph.x_size);
    EXPECT_GT(glyph.width, 8);
    EXPECT_GT(glyph.advance, glyph.width);
    EXPECT_NEAR(15, glyph.top, 1);
    EXPECT_LT(glyph.face_ascender, 0);
    EXPECT_GT(glyph.face_height, -glyph.face_ascender);
    const unsigned char* data = glyph.data.get();
    fonts.render_glyph(&glyph, 'i', 0, 20, 20);  // it has that size
    EXPECT_EQ(data, glyph.data.get());
    const FONT_GLYPH copy = glyph;
    EXPECT_EQ(0, std::memcmp(copy.data.get(), data, static_cast<std::size_t>(glyph.data_size)));
    fonts.render_glyph(&glyph, 'M', 0, 40, 40);
    EXPECT_NEAR(2 * copy.top, glyph.top, 2);
    glyph.clear();
    EXPECT_EQ(nullptr, glyph.data);
    EXPECT_EQ(0, glyph.width);
    fonts.render_glyph(&glyph, ' ', 0, 10, 10);
    EXPECT_NE(nullptr, glyph.data);  // at least a byte

    FONT_TYPE* type = fonts.get_font_ptr(0);
    EXPECT_EQ(nullptr, type->get_glyph('q', 0));
    EXPECT_NE(nullptr, type->get_glyph('q', 1));
    EXPECT_EQ(nullptr, type->get_glyph(256, 1));
    EXPECT_EQ(nullptr, type->get_glyph(-1, 1));
}

TEST_F(Text, WidthIsTheSumOfTheAdvances) {
    EXPECT_EQ(0, width(""));
    EXPECT_EQ(width("A") + width("V") + width("!"), width("AV!"));
    EXPECT_EQ(width("A"), width("\x01"
                                "0041\x01"));
    EXPECT_GT(width("\x01"
                    "0416\x01"),
              0);  // beyond 8 bits
    EXPECT_EQ(width("AB"), fonts.get_string_width(0, SIZE, SIZE, "ABCDE", 2));
    EXPECT_EQ(width("AB"), fonts.get_string_width(0, SIZE, SIZE, "0041,0042\x01zz", 2, 1));
    EXPECT_EQ(width("AB"), width("A\r\nB"));
    EXPECT_EQ(0, fonts.get_string_width(0, SIZE, SIZE, nullptr));
    // Without a font or a size: the bytes.
    EXPECT_EQ(8, fonts.get_string_width(9, SIZE, SIZE,
                                        "ab\x01"
                                        "0041\x01"));
    EXPECT_EQ(3, fonts.get_string_width(0, 0, SIZE, "abc"));
    EXPECT_EQ(3, fonts.get_string_width(0, SIZE, 30000, "abc"));
    // Two sizes one after the other.
    const std::int32_t small = width("MMM");
    EXPECT_GT(fonts.get_string_width(0, 40, 40, "MMM"), small);
    EXPECT_EQ(small, width("MMM"));
}

TEST_F(Text, StandsOnItsBaselineWithinItsLine) {
    image.draw_text(10, 20, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE, SIZE, "HHH");
    const BOX box = ink(image);
    // The baseline is 18 * 680 / 3408 above the line's end; letters stand a row above it.
    EXPECT_EQ(20 + 15 - 2, box.bottom);
    EXPECT_NEAR(20, box.top, 2);
    EXPECT_GE(box.left, 10);
    EXPECT_LE(box.right, 10 + width("HHH"));
    EXPECT_EQ(image.dirty_top, box.top);
    EXPECT_EQ(image.dirty_bottom, box.bottom);

    // Background and underline cover the advance, line by line and no more.
    image.clear(COLOUR_WHITE);
    image.draw_text(10, 20, COLOUR_INVISIBLE, COLOUR_BLUE, COLOUR_INVISIBLE, 0, SIZE, SIZE, "%d%%",
                    50);
    const BOX back = ink(image);
    EXPECT_EQ(10, back.left);
    EXPECT_EQ(10 + width("50%") - 1, back.right);
    EXPECT_EQ(20, back.top);
    EXPECT_EQ(20 + SIZE - 1, back.bottom);
    image.clear(COLOUR_WHITE);
    image.draw_text(10, 20, COLOUR_INVISIBLE, COLOUR_INVISIBLE, COLOUR_RED, 0, SIZE, SIZE, "ab");
    const BOX line = ink(image);
    EXPECT_EQ(line.top, line.bottom);
    EXPECT_EQ(20 + 15, line.top);
    EXPECT_EQ(10 + width("ab") - 1, line.right);
}

TEST_F(Text, IsClippedEverywhereAndDrawsNothingWithoutAFont) {
    IMAGE whole(60, 40);
    whole.clear(COLOUR_WHITE);
    const auto draw = [](IMAGE& target) {
        target.draw_text(-4, 9, 0xC0206040u, 0x40FF0000u, COLOUR_BLUE, 0, 30, 30,
                         "Wij\xE5 long one");
    };
    draw(whole);
    IMAGE part(60, 40);
    part.clear(COLOUR_WHITE);
    part.set_active_area(7, 15, 41, 30);
    draw(part);
    for (std::int32_t y = 0; y < 40; ++y) {
        for (std::int32_t x = 0; x < 60; ++x) {
            const bool inside = x >= 7 && x <= 41 && y >= 15 && y <= 30;
            ASSERT_EQ(inside ? whole.row(y)[x] : COLOUR_WHITE, part.row(y)[x]) << x << ' ' << y;
        }
    }
    image.draw_text(0, 0, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 9, SIZE, SIZE, "x");
    image.draw_text(0, 0, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 0, 0, SIZE, "x");
    image.draw_single_line_string(0, 0, 99, 30, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 9, SIZE, SIZE,
                                  "x", 0);
    image.draw_multi_line_string(0, 0, 99, 30, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 0, SIZE, -1,
                                 "x", 0);
    EXPECT_TRUE(ink(image).is_empty());
    const std::int32_t far = 0x7FFFFFFF;
    image.draw_text(far, far, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 0, SIZE, SIZE, "x");
    image.draw_multi_line_string(-far, -far, far, far, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 0,
                                 SIZE, SIZE, "x y", 0);
    IMAGE().draw_text(0, 0, COLOUR_BLACK, COLOUR_RED, COLOUR_RED, 0, SIZE, SIZE, "x");
}

TEST_F(Text, CurrentFontAndSingleCharacters) {
    fonts.font = 0;
    fonts.x_size = fonts.y_size = SIZE;
    image.draw_text(5, 5, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, "A%c", 'b');
    IMAGE other(400, 80);
    other.clear(COLOUR_WHITE);
    other.draw_char(5, 5, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE, SIZE, 'A');
    other.draw_char(5 + width("A"), 5, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE,
                    SIZE, 'b');
    EXPECT_TRUE(image == other);
    const std::string longer(5000, 'x');
    image.draw_text(0, 0, COLOUR_BLACK, COLOUR_INVISIBLE, COLOUR_INVISIBLE, "%s", longer.c_str());
}

TEST_F(Text, SingleLinesAreAlignedInBothDirections) {
    const std::string text = "HH";
    const std::int32_t w = width(text);
    const std::int32_t bearing = [&] {
        single(text, 100, 299, IMAGE_TEXT_LEFT | IMAGE_TEXT_TOP);
        return ink(image).left - 100;
    }();
    EXPECT_EQ(20 + 14 - 1, ink(image).bottom);
    single(text, 100, 299, IMAGE_TEXT_RIGHT | IMAGE_TEXT_BOTTOM);
    EXPECT_EQ(299 - w + bearing, ink(image).left);
    EXPECT_EQ(59 - SIZE + 14 - 1, ink(image).bottom);
    single(text, 100, 299, 0);
    EXPECT_EQ(100 + (200 - w) / 2 + (w % 2) + bearing, ink(image).left);
    EXPECT_EQ(20 + 11 + 14 - 1, ink(image).bottom);
    EXPECT_EQ(100, image.dirty_left == 0 ? 100 : image.dirty_left);  // the whole rectangle is dirty

    // Leading blanks take no room unless they are underlined; line feeds never do.
    single(" \t\n HH", 100, 299, IMAGE_TEXT_LEFT);
    EXPECT_EQ(100 + bearing, ink(image).left);
    single(" HH", 100, 299, IMAGE_TEXT_LEFT, nullptr, 0x01FF0000u);
    EXPECT_GT(ink(image).right, 100 + bearing + w - 3);
}

TEST_F(Text, IsCentredInLinesThatAreLowerThanItToo) {
    for (std::int32_t height = 1; height <= 30; ++height) {
        image.clear(COLOUR_WHITE);
        image.draw_single_line_string(100, 30, 299, 30 + height - 1, COLOUR_BLACK, COLOUR_INVISIBLE,
                                      COLOUR_INVISIBLE, 0, SIZE, SIZE, "HH", IMAGE_TEXT_LEFT);
        const auto top = static_cast<std::int32_t>(30 + (height - SIZE) * 0.5 + 0.5);
        EXPECT_EQ(top + 14 - 1, ink(image).bottom) << height;
        IMAGE wrapped(400, 80);
        wrapped.clear(COLOUR_WHITE);
        wrapped.draw_multi_line_string(100, 30, 299, 30 + height - 1, COLOUR_BLACK,
                                       COLOUR_INVISIBLE, COLOUR_INVISIBLE, 0, SIZE, SIZE, "HH",
                                       IMAGE_TEXT_LEFT);
        EXPECT_TRUE(image == wrapped) << height;
    }
}

TEST_F(Text, SingleLinesThatDoNotFitEndInAnEllipsis) {
    unsigned char was_cut = 0;
    const std::int32_t whole = width("Stadium");
    single("Stadium", 10, 10 + whole - 1, IMAGE_TEXT_LEFT, &was_cut);
    EXPECT_EQ(0, was_cut);
    const BOX uncut = ink(image);
    single("Stadium", 10, 10 + whole - 2, IMAGE_TEXT_LEFT, &was_cut);
    EXPECT_EQ(1, was_cut);
    EXPECT_LE(ink(image).right, 10 + whole - 2);
    EXPECT_NE(uncut.right, ink(image).right);
    // The ellipsis counts for right and centred text.
    single("Stadium tickets", 10, 79, IMAGE_TEXT_RIGHT, &was_cut);
    EXPECT_LE(ink(image).right, 79);
    EXPECT_GE(ink(image).left, 10);
    single("Stadium tickets", 10, 79, 0, &was_cut);
    EXPECT_NEAR(ink(image).left - 10, 79 - ink(image).right, 12);
    single("Stadium", 10, 9, IMAGE_TEXT_LEFT, &was_cut);  // no room at all
}

TEST_F(Text, LinesBreakAtBlanksHyphensAndWithinWords) {
    using LINES = std::vector<std::string>;
    const std::vector<std::string> known = {
        "",  "one",  "two", "three",    "one two", "one-", "two-",    "a-b-",
        "c", "wide", "...", "three...", "tw...",   "four", "one ...", "Exact"};
    EXPECT_EQ((LINES{"one two", "three", ""}), wrap("one two three", width("one two "), 3, known));
    EXPECT_EQ((LINES{"one", "two", "three"}), wrap("one\ntwo\n   three", 200, 3, known));
    EXPECT_EQ((LINES{"", "one", ""}), wrap("\none", 200, 3, known));
    EXPECT_EQ((LINES{"one-", "two", ""}), wrap("one-two", width("one-tw"), 3, known));
    EXPECT_EQ((LINES{"a-b-", "c", ""}), wrap("a-b-c", width("a-b-"), 3, known));
    // The last line: the rest if it fits exactly, else the ellipsis.
    EXPECT_EQ((LINES{"one", "Exact"}), wrap("one Exact", width("Exact"), 2, known));
    const LINES cut = wrap("one two three four", width("one two "), 2, known);
    EXPECT_EQ("one two", cut[0]);
    EXPECT_NE("three four", cut[1]);
    // A word longer than the box: at the last place where a hyphen fits, and no letter is lost.
    const std::string word = "Wintertransferfenster";
    const std::int32_t room = width("Wintertr") + 1;
    std::vector<std::string> pieces = {""};
    for (std::size_t i = 0; i < word.size(); ++i) {
        for (std::size_t n = 1; i + n <= word.size(); ++n) {
            pieces.push_back(word.substr(i, n) + "-");
            pieces.push_back(word.substr(i, n));
        }
    }
    const LINES broken = wrap(word, room, 5, pieces);
    std::string together;
    for (std::size_t i = 0; i < broken.size(); ++i) {
        std::string piece = broken[i];
        EXPECT_LE(width(piece), room) << piece;
        if (!piece.empty() && piece.back() == '-') {
            piece.pop_back();
            // One more letter wouldn't have left room for the hyphen.
            EXPECT_GT(width(piece + word[together.size() + piece.size()] + "-"), room);
        }
        together += piece;
    }
    EXPECT_EQ(word, together);
    EXPECT_EQ((LINES{"", ""}), wrap("", 100, 2, known));
    wrap("WWW", 3, 3, known);  // not even one letter fits: it ends all the same
}

TEST_F(Text, WrappedLinesAreAlignedTogether) {
    const auto draw = [&](std::int32_t flags) {
        image.clear(COLOUR_WHITE);
        image.draw_multi_line_string(100, 0, 299, 79, COLOUR_BLACK, COLOUR_INVISIBLE,
                                     COLOUR_INVISIBLE, 0, SIZE, SIZE, "HH\nHHHH", flags);
        return ink(image);
    };
    EXPECT_EQ(SIZE + 14 - 1, draw(IMAGE_TEXT_LEFT | IMAGE_TEXT_TOP).bottom);
    EXPECT_EQ(79 - SIZE + 14 - 1, draw(IMAGE_TEXT_RIGHT | IMAGE_TEXT_BOTTOM).bottom);
    EXPECT_EQ(22 + SIZE + 14 - 1, draw(0).bottom);
    const BOX centred = draw(0);
    EXPECT_NEAR(centred.left - 100, 299 - centred.right, 2);
    // The shorter line stands in the middle of the longer one.
    const BOX upper = ink(image, 0, 36);
    EXPECT_NEAR(upper.left - centred.left, centred.right - upper.right, 1);
}

TEST_F(Text, EffectsLieWhereTheyBelong) {
    const auto draw = [&](COLOUR text, COLOUR background, std::int32_t flags, COLOUR ground) {
        image.clear(ground);
        image.process_and_render_string(50, 20, text, background, COLOUR_INVISIBLE, 0, 40, 40, "HI",
                                        flags);
        return ink(image, 0, 1000, ground);
    };
    const BOX flat = draw(COLOUR_RED, COLOUR_INVISIBLE, 0, COLOUR_WHITE);
    IMAGE flat_image;
    flat_image.copy_pixels_from(image);
    const std::int32_t stem_x = flat.left + 2;  // where a stroke covers the pixel wholly
    const std::int32_t stem_y = flat.bottom - 3;
    ASSERT_EQ(COLOUR_RED, image.row(stem_y)[stem_x]);
    const BOX shadow = draw(COLOUR_RED, COLOUR_INVISIBLE, IMAGE_TEXT_SHADOW, COLOUR_WHITE);
    EXPECT_EQ(flat.left, shadow.left);
    EXPECT_EQ(flat.right + 2, shadow.right);
    EXPECT_EQ(flat.bottom + 2, shadow.bottom);
    COLOUR faint = COLOUR_WHITE;
    faint.mix(COLOUR_BLACK, 50);
    EXPECT_EQ(faint, image.row(flat.bottom + 1)[stem_x + 2]);
    EXPECT_EQ(COLOUR_RED, image.row(stem_y)[stem_x]);

    const BOX inset = draw(COLOUR_RED, COLOUR_INVISIBLE, IMAGE_TEXT_INSET, COLOUR_BLACK);
    EXPECT_EQ(flat.bottom + 1, inset.bottom);  // dark text: white below right
    EXPECT_EQ(flat.top, inset.top);
    const BOX light = draw(COLOUR_WHITE, COLOUR_INVISIBLE, IMAGE_TEXT_INSET, COLOUR_RED);
    EXPECT_EQ(flat.top - 1, light.top);  // light text: black above left
    EXPECT_EQ(flat.left - 1, light.left);
    EXPECT_EQ(flat.bottom, light.bottom);

    const BOX outline = draw(COLOUR_RED, COLOUR_BLUE, IMAGE_TEXT_OUTLINE, COLOUR_WHITE);
    EXPECT_EQ(flat.left - 2, outline.left);
    EXPECT_EQ(flat.bottom + 2, outline.bottom);
    EXPECT_EQ(COLOUR_RED, image.row(stem_y)[stem_x]);
    EXPECT_NEAR(255, image.row(flat.bottom + 1)[stem_x].blue(), 1);
    EXPECT_EQ(0, image.row(flat.bottom + 1)[stem_x].red());
    EXPECT_EQ(COLOUR_WHITE, image.row(20)[50]);  // no background
    draw(COLOUR_RED, COLOUR_INVISIBLE, IMAGE_TEXT_OUTLINE, COLOUR_WHITE);
    EXPECT_TRUE(image == flat_image);

    const COLOUR grey(128, 128, 128);
    draw(COLOUR_RED, COLOUR_INVISIBLE, IMAGE_TEXT_CHISELLED, grey);
    // A stem: darker, and lighter to its lower right; nothing red.
    EXPECT_GT(image.row(flat.bottom + 1)[stem_x].red(), 150);
    EXPECT_LT(image.row(stem_y)[flat.left].red(), 128);
    EXPECT_EQ(image.row(stem_y)[stem_x].red(), image.row(stem_y)[stem_x].blue());

    // A quarter of the alpha is a quarter of the ink.
    draw(COLOUR_BLACK.with_alpha(64), COLOUR_INVISIBLE, 0, COLOUR_WHITE);
    COLOUR quarter = COLOUR_WHITE;
    quarter.mix(COLOUR_BLACK, 64);
    EXPECT_EQ(quarter, image.row(stem_y)[stem_x]);
}

}  // namespace
