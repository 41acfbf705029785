#include "add_on_packer.h"

#include <algorithm>
#include <cinttypes>
#include <filesystem>
#include <fstream>

#include "autopatch/add_on.h"
#include "modules/misc/gzip_tools.h"
#include "modules/misc/tar_file.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* MANDATORY_FILE = "mandatory_add_ons.txt";
constexpr const char* PUBLISHING_FOLDER = "data/publishing";

bool goto_folder(DISK_MANAGER& disk, const fs::path& folder) {
    return disk.move_down(fs::absolute(folder).lexically_normal().c_str(), false, true);
}

// The regular files below `folder` as paths relative to it, sorted.
bool list_files(const fs::path& folder, std::vector<fs::path>& files, std::string& reason) {
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        std::error_code gone;
        const fs::file_status status = it->symlink_status(gone);
        const fs::path name = it->path().lexically_relative(folder);
        if (fs::is_regular_file(status)) {
            files.push_back(name);
        } else if (!fs::is_directory(status)) {
            reason = name.string() + " is neither a file nor a folder";
            return false;
        }
        if (name.string().size() > TAR_FILE::max_name_length) {
            reason = name.string() + " is longer than the " +
                     std::to_string(TAR_FILE::max_name_length) +
                     " characters that an archive entry's name can have";
            return false;
        }
    }
    if (error) {
        reason = folder.string() + ": " + error.message();
        return false;
    }
    std::sort(files.begin(), files.end());
    return true;
}

const char* check_file_name(const PUBLISH_SETTINGS& settings) {
    if (settings.type == "app") {
        return "autopatch.cfg";
    }
    return settings.type == "skin" ? "skin.cfg" : "defaults.cfg";
}

bool write_archive(const PUBLISH_SETTINGS& settings, const std::vector<fs::path>& files,
                   DISK_MANAGER& target, const std::string& name, std::string& reason) {
    const std::string tar_name = name + ".tar";
    TAR_FILE tar;
    if (!tar.create_tar_file(tar_name.c_str(), target)) {
        reason = "the archive can't be made in " + std::string(target.get_path_string());
        return false;
    }
    for (const fs::path& file : files) {
        DISK_MANAGER folder;
        const fs::path directory = file.parent_path();
        if (!goto_folder(folder, fs::path(settings.source) / directory) ||
            !tar.add_file(file.filename().c_str(), directory.c_str(), folder)) {
            reason = file.string() + " can't be packed: it can't be read or is 2 GB or larger";
            return false;
        }
    }
    if (!tar.write_end_section() || !tar.close_tar_file() || !gzip_file(tar_name.c_str(), target) ||
        !target.remove(tar_name.c_str(), true)) {
        reason = "the archive can't be written in " + std::string(target.get_path_string());
        return false;
    }
    return true;
}

bool write_settings_file(const PUBLISH_SETTINGS& settings, DISK_MANAGER& target,
                         std::string& reason) {
    const bool skin = settings.type == "skin";
    CONFIG_FILE config(skin ? "skin.cfg" : "defaults.cfg", true, FOLDER_BASE, false);
    bool good = config.write(target, skin ? "internal_version" : "version",
                             std::uint32_t{settings.version});
    good = good && config.write(target, "minimum_version", std::uint32_t{settings.minimum_version});
    if (!settings.title.empty()) {
        good = good && config.write(target, skin ? "name" : "title", settings.title.c_str());
    }
    if (!settings.description_file.empty()) {
        good = good && config.write(target, "description_file", "description.txt");
    } else if (!settings.description.empty()) {
        good = good && config.write(target, "description", settings.description.c_str());
    }
    if (!good) {
        reason = "the settings can't be written in " + std::string(target.get_path_string());
    }
    return good;
}

bool copy_extra_file(const std::string& from, const fs::path& to, std::string& reason) {
    std::error_code error;
    if (from.empty() || fs::copy_file(from, to, error)) {
        return true;
    }
    reason = from + ": " + error.message();
    return false;
}

bool add_to_mandatory(const PUBLISH_SETTINGS& settings, std::string& reason) {
    const fs::path folder = fs::path(settings.publish) / "data";
    const fs::path file = folder / MANDATORY_FILE;
    std::vector<std::string> lines;
    std::error_code error;
    const bool exists = fs::exists(file, error);
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    if (error || (exists && (!in.is_open() || in.bad()))) {
        reason = file.string() + " can't be read";
        return false;
    }
    if (std::find(lines.begin(), lines.end(), settings.path) != lines.end()) {
        return true;
    }
    lines.push_back(settings.path);
    fs::create_directories(folder, error);
    const fs::path beside = file.string() + ".tmp";
    {
        std::ofstream out(beside);
        for (const std::string& line : lines) {
            out << line << '\n';
        }
        out.close();
        if (!out) {
            reason = beside.string() + " can't be written";
            return false;
        }
    }
    fs::rename(beside, file, error);
    reason = error ? error.message() : std::string();
    return !error;
}

// What stands in the published folder of a composite add-on besides its own files: its children.
// And of the application, the archives for other platforms.
bool keep_other_content(const fs::path& published, const fs::path& fresh, std::string& reason) {
    std::error_code error;
    for (fs::directory_iterator it(published, error), end; !error && it != end;
         it.increment(error)) {
        const fs::path name = it->path().filename();
        const bool archive = name.string().ends_with(".tar.gz");
        const bool wanted = archive || it->is_directory(error);
        if (!error && wanted && !fs::exists(fresh / name, error) && !error) {
            fs::copy(it->path(), fresh / name,
                     fs::copy_options::recursive | fs::copy_options::create_hard_links, error);
        }
        if (error) {
            reason = it->path().string() + ": " + error.message();
            return false;
        }
    }
    reason = error ? published.string() + ": " + error.message() : std::string();
    return !error;
}

}  // namespace

bool publish_add_on(const PUBLISH_SETTINGS& settings, std::string& reason) {
    std::vector<fs::path> files;
    const bool composite = settings.source.empty();
    if (!composite) {
        if (!list_files(settings.source, files, reason)) {
            return false;
        }
        if (!std::binary_search(files.begin(), files.end(), fs::path(check_file_name(settings)))) {
            reason = settings.source + " holds no " + check_file_name(settings) +
                     ", without which launchers refuse the archive";
            return false;
        }
    }
    fs::path holder = fs::path(settings.publish);
    if (settings.type == "skin") {
        holder /= "skins";
    } else if (!settings.parent.empty()) {
        holder /= settings.parent;
    }
    // Beside the published add-ons, where no server looks.
    const fs::path fresh = fs::path(settings.publish) / PUBLISHING_FOLDER / settings.path;
    std::error_code error;
    fs::create_directories(holder, error);
    fs::remove_all(fresh, error);
    fs::create_directories(fresh, error);

    DISK_MANAGER target;
    if (error || !goto_folder(target, fresh)) {
        reason = fresh.string() + " can't be made: " + error.message();
        return false;
    }
    const std::string archive = settings.type == "app" ? "app_" + settings.platform : settings.path;
    const fs::path published = holder / settings.path;
    DISK_MANAGER fresh_holder;
    DISK_MANAGER published_holder;
    const bool done =
        (composite || write_archive(settings, files, target, archive, reason)) &&
        write_settings_file(settings, target, reason) &&
        copy_extra_file(settings.picture, fresh / "add_on.png", reason) &&
        copy_extra_file(settings.description_file, fresh / "description.txt", reason) &&
        (!fs::exists(published, error) || keep_other_content(published, fresh, reason)) &&
        goto_folder(fresh_holder, fresh.parent_path()) && goto_folder(published_holder, holder) &&
        fresh_holder.replace_folder(settings.path.c_str(), published_holder, settings.path.c_str());
    fs::remove_all(fresh, error);
    if (!done) {
        reason = reason.empty() ? published.string() + " can't be replaced" : reason;
        return false;
    }
    return !settings.mandatory || add_to_mandatory(settings, reason);
}
