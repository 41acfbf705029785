// The text files of a skin: records of a key line and a value line, as CONFIG_FILE has them.
#ifndef SKIN_ART_TEXT_RECORDS_H
#define SKIN_ART_TEXT_RECORDS_H

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

using TEXT_RECORDS = std::vector<std::pair<std::string, std::string>>;

// In file order. Ends the program with a message if the file can't be read.
TEXT_RECORDS read_records(const std::filesystem::path& file);

// Writes them to a file, whose folder is created. Ends the program with a message on failure.
void write_records(const std::filesystem::path& file, const TEXT_RECORDS& records);

// The value of the key, or null.
const std::string* find_record(const TEXT_RECORDS& records, const std::string& key);

#endif  // SKIN_ART_TEXT_RECORDS_H
