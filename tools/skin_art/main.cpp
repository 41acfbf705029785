// skin_art: makes the application data of the launcher, "splash_screen.jpg",
// "please_wait_animation.png" and the folder "skins", from the sources of the skins and the program
// that draws their pictures. Two runs give the same bytes.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "failure.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"
#include "skin_texts.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* USAGE =
    "usage: skin_art SOURCES FONTS TARGET\n"
    "  SOURCES  the folder with the sources of the skins, \"saffrane\" and \"vesper\"\n"
    "  FONTS    a folder with the fonts Inter-Regular.otf and so on\n"
    "  TARGET   the folder to write; what it holds of skins already is replaced\n";

constexpr const char* MAIN_SKIN = "saffrane";
constexpr const char* DARK_SKIN = "vesper";
constexpr const char* DEFAULT_SET = "DEFAULT";

// The cuts that the style sets name. They come from an installed package.
constexpr const char* FONTS[] = {"Inter-Regular", "Inter-Medium", "Inter-SemiBold", "Inter-Italic",
                                 "Inter-SemiBoldItalic"};
constexpr const char* NAME_FONT = "Inter-SemiBold";  // of the splash picture

std::string read_file(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void copy_to(const fs::path& from, const fs::path& to) {
    fs::create_directories(to.parent_path());
    std::error_code error;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    if (error) {
        fail("%s: the file can't be copied to %s", from.c_str(), to.c_str());
    }
}

void draw_style_set_pictures(const PALETTE& palette, const PALETTE& tinted,
                             const fs::path& style_sets) {
    PICTURE_OUTPUT buttons(style_sets / "buttons");
    draw_buttons(tinted, buttons);
    draw_check_marks(tinted, buttons);
    PICTURE_OUTPUT dialogs(style_sets / "dialogs");
    draw_dialogs(palette, tinted, dialogs);
    draw_menus(palette, tinted, dialogs);
    draw_hint(tinted, dialogs);
    PICTURE_OUTPUT panels(style_sets / "panels");
    draw_panel_frame(palette, panels);
    draw_tabs(tinted, panels);
    PICTURE_OUTPUT profile(style_sets / "profile");
    draw_profile_rows(tinted, profile);
    PICTURE_OUTPUT text(style_sets / "text");
    draw_text_fields(palette, text);
    PICTURE_OUTPUT bars(style_sets / "bars");
    draw_progress_bar(tinted, bars);
    draw_scroll_bar(palette, bars);
}

void draw_named_pictures(const PALETTE& palette, const fs::path& images) {
    PICTURE_OUTPUT output(images);
    draw_arrows(palette, output);
    draw_background(palette, output);
    draw_logo(palette, output);
    draw_wait_animation(palette, output);
}

// The files of a style set's pictures, from the folder "style_sets" on.
std::vector<fs::path> find_pictures(const fs::path& style_sets, const STYLE_SOURCE& source) {
    std::vector<fs::path> found;
    const std::string base = source.get_picture_base();
    const fs::path folder = style_sets / source.file.parent_path();
    if (!base.empty() && fs::exists(folder)) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".png" &&
                entry.path().filename().string().starts_with(base)) {
                found.push_back(fs::relative(entry.path(), style_sets));
            }
        }
    }
    return found;
}

void check_pictures(const fs::path& style_sets, const STYLE_SOURCES& sources) {
    for (const auto& [name, source] : sources) {
        if (!source.get_picture_base().empty() && find_pictures(style_sets, source).empty()) {
            fail("The style set \"%s\" names pictures \"%s\", which nothing draws", name.c_str(),
                 source.get_picture_base().c_str());
        }
    }
}

void write_style_set(const STYLE_SOURCE& source, const PALETTE& palette,
                     const fs::path& style_sets) {
    write_records(style_sets / source.file, set_colours(source.records, palette));
}

void make_main_skin(const fs::path& sources, const fs::path& fonts, const fs::path& target,
                    const PALETTE& palette, const STYLE_SOURCES& styles) {
    copy_to(sources / "skin.cfg", target / "skin.cfg");
    for (const char* font : FONTS) {
        const std::string file = std::string(font) + ".otf";
        copy_to(fonts / file, target / "fonts" / file);
    }
    const fs::path style_sets = target / "style_sets";
    draw_style_set_pictures(palette, palette, style_sets);
    for (const auto& entry : styles) {
        write_style_set(entry.second, palette, style_sets);
    }
    check_pictures(style_sets, styles);
    copy_to(sources / "images" / "images.cfg", target / "images" / "images.cfg");
    draw_named_pictures(palette, target / "images");
    write_constants(sources, target / "constants");
    write_colours(palette, target / "colours");
}

COLOUR read_tint(const fs::path& file) {
    const TEXT_RECORDS records = read_records(file);
    const std::string* value = find_record(records, "recolour_skin_to");
    COLOUR tint;
    if (!value || !parse_colour(*value, tint)) {
        fail("%s: the skin needs a colour \"recolour_skin_to\"", file.c_str());
    }
    return tint;
}

// Only what differs from the main skin: a style set with another text or other pictures, a named
// picture that looks different.
void make_derived_skin(const fs::path& sources, const fs::path& target, const PALETTE& base_palette,
                       const PALETTE& palette, STYLE_SOURCES styles, const fs::path& main_skin) {
    copy_to(sources / "skin.cfg", target / "skin.cfg");
    const PALETTE tinted = palette.tinted(read_tint(sources / "skin.cfg"));
    const fs::path drawn = target / "drawn";  // all of it, for comparison
    draw_style_set_pictures(palette, tinted, drawn / "style_sets");
    draw_named_pictures(tinted, drawn / "images");
    const fs::path base_sets = main_skin / "style_sets";
    const fs::path style_sets = target / "style_sets";
    const TEXT_RECORDS defaults = styles.at(DEFAULT_SET).records;
    for (auto& [name, source] : styles) {
        source.records = add_changed_defaults(source.records, defaults, base_palette, tinted);
        const std::vector<fs::path> pictures = find_pictures(drawn / "style_sets", source);
        const auto differs = [&](const fs::path& picture) {
            return read_file(drawn / "style_sets" / picture) != read_file(base_sets / picture);
        };
        const bool same_text =
            fs::exists(base_sets / source.file) &&
            read_records(base_sets / source.file) == set_colours(source.records, tinted);
        if (same_text && std::none_of(pictures.begin(), pictures.end(), differs)) {
            continue;
        }
        write_style_set(source, tinted, style_sets);
        for (const fs::path& picture : pictures) {
            copy_to(drawn / "style_sets" / picture, style_sets / picture);
        }
    }
    TEXT_RECORDS images;
    for (const auto& [name, file] : read_records(main_skin / "images" / "images.cfg")) {
        const std::string picture = file + ".png";
        if (read_file(drawn / "images" / picture) != read_file(main_skin / "images" / picture)) {
            copy_to(drawn / "images" / picture, target / "images" / picture);
            images.emplace_back(name, file);
        }
    }
    write_records(target / "images" / "images.cfg", images);
    write_colours(tinted, target / "colours");
    write_constants(sources, target / "constants");
    fs::remove_all(drawn);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(USAGE, stdout);
        return 0;
    }
    if (argc != 4) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    const fs::path sources = argv[1];
    const fs::path fonts = argv[2];
    const fs::path target = argv[3];
    const fs::path skins = target / "skins";
    PALETTE palette;
    palette.add_file(sources / MAIN_SKIN);
    PALETTE dark_palette = palette;
    dark_palette.add_file(sources / DARK_SKIN);
    const STYLE_SOURCES styles = read_style_sources(sources / MAIN_SKIN, {});
    const STYLE_SOURCES dark_styles = read_style_sources(sources / DARK_SKIN, styles);

    // Only now: folders without good sources lose nothing.
    std::error_code ignored;
    fs::remove_all(skins / MAIN_SKIN, ignored);
    fs::remove_all(skins / DARK_SKIN, ignored);
    make_main_skin(sources / MAIN_SKIN, fonts, skins / MAIN_SKIN, palette, styles);
    PICTURE_OUTPUT top(target);
    draw_splash(palette, fonts / (std::string(NAME_FONT) + ".otf"), top);
    draw_wait_animation(palette, top);

    make_derived_skin(sources / DARK_SKIN, skins / DARK_SKIN, palette, dark_palette, dark_styles,
                      skins / MAIN_SKIN);
    return 0;
}
