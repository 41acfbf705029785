#include "autopatch/add_on.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "autopatch/version_list.h"
#include "catalogue_names.h"
#include "kvcore/text_field.h"
#include "platform/disk_manager.h"

namespace {

// The names that the catalogue itself uses beside the miscellaneous add-ons, so none of those may
// be called so. A folder in the place of a catalogue file would keep it from ever being saved.
bool is_reserved_name(std::string_view name) {
    constexpr std::string_view RESERVED[] = {CLIENT_FOLDER, SKINS_FOLDER, STAGING_FOLDER,
                                             CATALOGUE_FILE, CATALOGUE_FILE_BESIDE};
    return std::find(std::begin(RESERVED), std::end(RESERVED), name) != std::end(RESERVED);
}

template <class FUNCTION>
void for_each_child(const ADD_ON& add_on, FUNCTION function) {
    for (std::int32_t i = 0; i < add_on.get_child_count(); ++i) {
        function(*add_on.get_child(i));
    }
}

// True if `test` holds for some child.
template <class TEST>
bool any_child(const ADD_ON& add_on, TEST test) {
    for (std::int32_t i = 0; i < add_on.get_child_count(); ++i) {
        if (test(*add_on.get_child(i))) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool is_plain_folder_name(const char* name) {
    if (!name || *name == '\0' || std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) {
        return false;
    }
    for (const char* c = name; *c != '\0'; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        if (byte < 0x20 || byte == 0x7F || byte == '/' || byte == '\\' || byte == ':') {
            return false;
        }
    }
    return true;
}

void ADD_ON::delete_add_on_callback(void* add_on) {
    delete static_cast<ADD_ON*>(add_on);
}

ADD_ON::ADD_ON() : image(std::make_unique<IMAGE>()), children(10, 0, delete_add_on_callback) {
}

ADD_ON::ADD_ON(const ADD_ON* source) : ADD_ON() {
    if (!source) {
        return;
    }
    version = source->version;
    minimum_version = source->minimum_version;
    type = source->type;
    invalid = source->invalid;
    enabled = source->enabled;
    std::memcpy(path, source->path, sizeof path);
    std::memcpy(title, source->title, sizeof title);
    description_count = source->description_count;
    description = source->description;
    image->copy_pixels_from(*source->image);
    file_size = source->file_size;
    for_each_child(*source, [this](const ADD_ON& child) {
        auto child_copy = std::make_unique<ADD_ON>(&child);
        child_copy->parent = this;
        add_child(child_copy.release());
    });
}

ADD_ON::~ADD_ON() = default;

void ADD_ON::set_path(const char* new_path) {
    KVCORE::copy_text_field(path, new_path);
}

void ADD_ON::set_title(const char* new_title) {
    KVCORE::copy_text_field(title, new_title);
}

const char* ADD_ON::get_shown_title() const {
    return type == ADD_ON_APPLICATION ? "Application" : title;
}

void ADD_ON::set_description_line(std::uint16_t index, const char* text) {
    if (index >= MAX_DESCRIPTION_LINES) {
        return;
    }
    // Made before the list may move, since `text` can be one of its lines.
    std::string line(text ? text : "", text ? ::strnlen(text, DESCRIPTION_LINE_SIZE - 1) : 0);
    if (index >= description.size()) {
        description.resize(std::size_t{index} + 1);
    }
    description[index] = std::move(line);
}

void ADD_ON::add_description_line(const char* text) {
    if (description_count < MAX_DESCRIPTION_LINES) {
        set_description_line(description_count, text);
        ++description_count;
    }
}

const char* ADD_ON::stored_line(std::uint16_t index) const {
    return index < description.size() ? description[index].c_str() : "";
}

const char* ADD_ON::get_description_line(std::uint16_t index) const {
    return index < description_count ? stored_line(index) : nullptr;
}

void ADD_ON::copy(const ADD_ON* source) {
    if (!source || source == this) {
        return;
    }
    version = source->version;
    minimum_version = source->minimum_version;
    file_size = source->file_size;
    std::memcpy(title, source->title, sizeof title);
    std::memcpy(path, source->path, sizeof path);
    description_count = source->description_count;
    description = source->description;
    if (source->image->width > 0) {
        image->copy_pixels_from(*source->image);
    }
    for_each_child(*this, [source](ADD_ON& child) {
        for_each_child(*source, [&child](const ADD_ON& other) {
            if (child.is_equal(other)) {
                child.copy(&other);
            }
        });
    });
}

void ADD_ON::add_child(ADD_ON* child) {
    if (child && children.find(child) < 0) {
        children.add(child);
    }
}

void ADD_ON::set_parent(ADD_ON& new_parent) {
    parent = &new_parent;
    new_parent.add_child(this);
}

std::int32_t ADD_ON::get_child_count() const {
    return children.get_count();
}

ADD_ON* ADD_ON::get_child(std::int32_t index) const {
    return children.get<ADD_ON>(index);
}

const ADD_ON* ADD_ON::get_top_level_parent() const {
    const ADD_ON* top = this;
    while (top->parent) {
        top = top->parent;
    }
    return top;
}

ADD_ON* ADD_ON::get_top_level_parent() {
    return const_cast<ADD_ON*>(static_cast<const ADD_ON*>(this)->get_top_level_parent());
}

std::uint32_t ADD_ON::get_file_size() const {
    std::uint32_t size = file_size;
    for_each_child(*this, [&size](const ADD_ON& child) { size += child.get_file_size(); });
    return size;
}

bool ADD_ON::requires_3d() const {
    return std::strcmp(get_top_level_parent()->path, "match3d") == 0;
}

void ADD_ON::set_enabled(bool on) {
    enabled = on;
    for_each_child(*this, [on](ADD_ON& child) { child.set_enabled(on); });
}

bool ADD_ON::get_enabled() const {
    return enabled && !any_child(*this, [](const ADD_ON& child) { return !child.get_enabled(); });
}

void ADD_ON::set_invalid() {
    invalid = true;
    for_each_child(*this, [](ADD_ON& child) { child.set_invalid(); });
}

void ADD_ON::mark_for_redownload() {
    set_invalid();
}

bool ADD_ON::is_valid(bool recursive) const {
    if (version == 0 || invalid) {
        return false;
    }
    return !recursive ||
           !any_child(*this, [](const ADD_ON& child) { return !child.is_valid(true); });
}

void ADD_ON::set_downloaded() {
    for (ADD_ON* add_on = this; add_on; add_on = add_on->parent) {
        add_on->invalid = false;
        add_on->enabled =
            !any_child(*add_on, [](const ADD_ON& child) { return !child.get_enabled(); });
    }
}

bool ADD_ON::is_equal(const ADD_ON& other) const {
    return type == other.type && std::strncmp(path, other.path, PATH_SIZE) == 0;
}

bool ADD_ON::operator==(const ADD_ON& other) const {
    if (!is_equal(other) || invalid != other.invalid) {
        return false;
    }
    return !any_child(*this, [&other](const ADD_ON& child) {
        return !any_child(other, [&child](const ADD_ON& candidate) { return child == candidate; });
    });
}

bool ADD_ON::is_newer_version(const ADD_ON& other) const {
    if (get_child_count() == 0) {
        return version > other.version;
    }
    return any_child(*this, [&other](const ADD_ON& child) {
        for (std::int32_t i = 0; i < other.get_child_count(); ++i) {
            const ADD_ON& candidate = *other.get_child(i);
            if (child == candidate) {
                return child.is_newer_version(candidate);
            }
        }
        return false;
    });
}

std::string ADD_ON::get_folder_name() const {
    if (type != ADD_ON_APPLICATION) {
        return path;
    }
    char name[32];
    std::snprintf(name, sizeof name, "app_%" PRId32, std::int32_t{version});
    return name;
}

bool ADD_ON::move_to_parent_path(DISK_MANAGER& disk, bool create) const {
    switch (type) {
        case ADD_ON_APPLICATION:
            return disk.move_down(CLIENT_FOLDER, create);
        case ADD_ON_SKIN:
            return disk.move_down(SKINS_FOLDER, true);
        case ADD_ON_MISC: {
            if (is_reserved_name(get_top_level_parent()->path)) {
                return false;
            }
            std::vector<const ADD_ON*> ancestors;
            for (const ADD_ON* ancestor = parent; ancestor; ancestor = ancestor->parent) {
                ancestors.push_back(ancestor);
            }
            for (auto ancestor = ancestors.rbegin(); ancestor != ancestors.rend(); ++ancestor) {
                if (!is_plain_folder_name((*ancestor)->path) ||
                    !disk.move_down((*ancestor)->path, create)) {
                    return false;
                }
            }
            return true;
        }
    }
    return false;
}

bool ADD_ON::move_to_path(DISK_MANAGER& disk, bool create) const {
    const std::string name = get_folder_name();
    if (!is_plain_folder_name(name.c_str()) || !move_to_parent_path(disk, create)) {
        return false;
    }
    // A build tree in place of an installation, in which nothing may be unpacked.
    if (type == ADD_ON_APPLICATION && DISK_MANAGER(disk).move_down("app")) {
        return false;
    }
    if (create) {
        DISK_MANAGER::delete_tree(disk, name.c_str());
    }
    return disk.move_down(name.c_str(), create);
}
