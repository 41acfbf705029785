#include "text_records.h"

#include <fstream>

#include "failure.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

TEXT_RECORDS read_records(const std::filesystem::path& file) {
    DISK_MANAGER disk;
    CONFIG_FILE config(file.filename().c_str(), false, FOLDER_BASE, false);
    TEXT_RECORDS records;
    const auto add = [](const char* key, const char* value, void* target) {
        static_cast<TEXT_RECORDS*>(target)->emplace_back(key, value);
    };
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    if (!disk.move_down(folder.c_str(), false, true) || !config.read_all(disk, add, &records)) {
        fail("%s: the file can't be read", file.c_str());
    }
    return records;
}

void write_records(const std::filesystem::path& file, const TEXT_RECORDS& records) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    for (const auto& [key, value] : records) {
        out << key << "\n\t" << value << '\n';
    }
    if (!out.flush()) {
        fail("%s: the file can't be written", file.c_str());
    }
}

const std::string* find_record(const TEXT_RECORDS& records, const std::string& key) {
    for (const auto& record : records) {
        if (record.first == key) {
            return &record.second;
        }
    }
    return nullptr;
}
