#include "file_names.h"

#include "kvcore/text_utilities.h"

namespace KVCORE {
namespace {

// A name in the file system's form; empty if it can't be one.
std::string to_name(const STRING& text) {
    std::string name = to_file_text(text);
    if (is_special_name(name) || name.find('/') != std::string::npos ||
        name.find('\0') != std::string::npos) {
        name.clear();
    }
    return name;
}

STRING combine(const FILE_NAME& name, const FILE_TYPE& type) {
    STRING combined;
    FILE_PATH::combine_name_and_type(name, type, combined);
    return combined;
}

}  // namespace

bool is_special_name(std::string_view name) {
    return name == "." || name == "..";
}

STRING from_file_text(std::string_view bytes) {
    // No text has more units than bytes.
    const std::int32_t length =
        STRING_BUFFER::clamp_length(static_cast<std::int64_t>(bytes.size()));
    if (length == 0) {
        return STRING();
    }
    const REFERENCE_COUNTER<STRING_BUFFER> buffer = STRING_BUFFER::create(length);
    const std::int32_t count =
        TEXT_UTILITIES::from_utf8(bytes.data(), length, buffer->get_text(), length);
    buffer->set_length(count);
    buffer->get_text()[count] = 0;
    return STRING(buffer);
}

std::string to_file_text(TEXT_VIEW text) {
    std::u16string units(static_cast<std::size_t>(text.get_length()), u'\0');
    TEXT_UTILITIES::widen_block(units.data(), text);
    return TEXT_UTILITIES::to_utf8(units.data(), text.get_length());
}

std::string make_file_name(const FILE_NAME& name, const FILE_TYPE& type) {
    // A name that is all type (".profile") shows as both.
    const bool is_whole = type == FILE_TYPE_NONE || name.get_string() == type.get_string();
    return is_whole ? to_name(name.get_string()) : to_name(combine(name, type));
}

std::vector<std::string> make_possible_file_names(const FILE_NAME& name, const FILE_TYPE& type) {
    std::vector<std::string> names{to_name(combine(name, type))};
    if (type == FILE_TYPE_NONE) {
        names.insert(names.begin(), to_name(name.get_string()));
    } else if (name.get_string() == type.get_string()) {
        names.push_back(to_name(name.get_string()));
    }
    return names;
}

std::string make_file_path(const FILE_PATH& path) {
    std::string text = to_file_text(path.get_string());
    if (text.find('\0') != std::string::npos) {
        return std::string();
    }
    const std::string_view last = get_last_component(text);
    if (last.size() > 1 && last.back() == '.' && !is_special_name(last)) {
        text.pop_back();
    }
    return text;
}

std::string join_path(const std::string& folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + name.size() + 1);
    path.append(folder);
    if (path.empty() || path.back() != '/') {
        path.push_back('/');
    }
    path.append(name);
    return path;
}

std::string_view get_last_component(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string get_folder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos || slash == 0 ? std::string("/") : path.substr(0, slash);
}

}  // namespace KVCORE
