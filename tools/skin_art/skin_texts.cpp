#include "skin_texts.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <sstream>
#include <vector>

#include "failure.h"
#include "palette.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* NAME_KEY = "name";
constexpr const char* IMAGE_KEY = "image_filename";
constexpr const char* HERE = "$HERE";  // the one value with "$" that isn't a colour

bool fits(const std::string& name, const std::string& pattern) {
    if (pattern.ends_with('*')) {
        return name.starts_with(pattern.substr(0, pattern.size() - 1));
    }
    return name == pattern;
}

// Calls `add(name, full_name)` for each name that fits a prefix.
void for_all_prefixes(const fs::path& folder, const std::vector<std::string>& names,
                      const std::function<void(const std::string&, const std::string&)>& add) {
    const fs::path file = folder / "prefixes.cfg";
    if (!fs::exists(file)) {
        return;
    }
    for (const auto& [prefix, patterns] : read_records(file)) {
        std::istringstream words(patterns);
        for (std::string pattern; words >> pattern;) {
            for (const std::string& name : names) {
                if (fits(name, pattern)) {
                    add(name, prefix + "_" + name);
                }
            }
        }
    }
}

std::string to_case(std::string text, int (*change)(int)) {
    std::transform(text.begin(), text.end(), text.begin(), [change](unsigned char character) {
        return static_cast<char>(change(character));
    });
    return text;
}

template <class MAP>
std::vector<std::string> names_of(const MAP& map) {
    std::vector<std::string> names;
    for (const auto& entry : map) {
        names.push_back(entry.first);
    }
    return names;
}

}  // namespace

std::string STYLE_SOURCE::get_picture_base() const {
    const std::string* base = find_record(records, IMAGE_KEY);
    return base ? *base : "";
}

STYLE_SOURCES read_style_sources(const fs::path& folder, const STYLE_SOURCES& base) {
    STYLE_SOURCES sources = base;
    const fs::path style_sets = folder / "style_sets";
    if (!fs::exists(style_sets)) {
        return sources;
    }
    STYLE_SOURCES own;
    for (const auto& entry : fs::recursive_directory_iterator(style_sets)) {
        if (entry.path().extension() != ".ss") {
            continue;
        }
        STYLE_SOURCE source{fs::relative(entry.path(), style_sets), read_records(entry.path())};
        const std::string* name = find_record(source.records, NAME_KEY);
        if (!name || !find_record(source.records, IMAGE_KEY)) {
            fail("%s: \"%s\" and \"%s\" are needed", entry.path().c_str(), NAME_KEY, IMAGE_KEY);
        }
        if (!own.emplace(*name, source).second) {
            fail("%s: there is a style set \"%s\" already", entry.path().c_str(), name->c_str());
        }
    }
    const std::vector<std::string> names = names_of(own);
    for_all_prefixes(folder, names, [&](const std::string& name, const std::string& full_name) {
        STYLE_SOURCE copy = own.at(name);
        copy.file.replace_filename(to_case(full_name, std::tolower) + ".ss");
        std::find_if(copy.records.begin(), copy.records.end(), [](const auto& record) {
            return record.first == NAME_KEY;
        })->second = full_name;
        own.emplace(full_name, copy);
    });
    for (const auto& [name, source] : own) {
        sources[name] = source;
    }
    return sources;
}

TEXT_RECORDS set_colours(const TEXT_RECORDS& records, const PALETTE& palette) {
    TEXT_RECORDS result = records;
    for (auto& [key, value] : result) {
        if (value.starts_with('$') && value != HERE) {
            value = colour_text(palette[value.substr(1)]);
        }
    }
    return result;
}

TEXT_RECORDS add_changed_defaults(const TEXT_RECORDS& records, const TEXT_RECORDS& defaults,
                                  const PALETTE& base_palette, const PALETTE& palette) {
    TEXT_RECORDS result = records;
    const TEXT_RECORDS before = set_colours(defaults, base_palette);
    const TEXT_RECORDS after = set_colours(defaults, palette);
    for (std::size_t i = 0; i < defaults.size(); ++i) {
        if (before[i] != after[i] && !find_record(records, defaults[i].first)) {
            result.push_back(defaults[i]);
        }
    }
    return result;
}

void write_constants(const fs::path& folder, const fs::path& target) {
    const fs::path constants = folder / "constants";
    if (!fs::exists(constants)) {
        return;
    }
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::directory_iterator(constants)) {
        for (const auto& [name, value] : read_records(entry.path())) {
            all[name] = value;
        }
    }
    const std::vector<std::string> names = names_of(all);
    for_all_prefixes(folder, names, [&](const std::string& name, const std::string& full_name) {
        all.emplace(full_name, all.at(name));
    });
    write_records(target / "constants.cfg", TEXT_RECORDS(all.begin(), all.end()));
}

void write_colours(const PALETTE& palette, const fs::path& target) {
    TEXT_RECORDS records;
    for (const auto& [name, colour] : palette.get_all()) {
        records.emplace_back(to_case(name, std::toupper), colour_text(colour));
    }
    write_records(target / "colours.cfg", records);
}
