// A list of texts, as the parsers make them.
#ifndef KVMIGRATION_STRING_ARRAY_H
#define KVMIGRATION_STRING_ARRAY_H

#include <cstdint>
#include <memory>

#include "kvmigration/array.h"
#include "kvmigration/string.h"

namespace KVMIGRATION {

// Each entry is a STRING of its own on the heap, which the array owns: a pointer to it stays good
// while the entry is in the array. Indices given to operator[] are not checked.
class STRING_ARRAY {
public:
    std::int32_t get_count() const { return entries.get_count(); }
    bool is_empty() const { return entries.empty(); }
    STRING* operator[](std::int32_t index) { return entries[index].get(); }
    const STRING* operator[](std::int32_t index) const { return entries[index].get(); }

    // Appends a copy and yields its index.
    std::int32_t add(STRING text) { return entries.add(std::make_unique<STRING>(std::move(text))); }
    // Puts a text at `index`, as ARRAY::set; entries that come into being on the way are empty.
    void set(STRING text, std::int32_t index);
    void clear() { entries.clear(); }

    // The lowest index at or behind `first`, and below `last`, where the entries of `pattern` stand
    // one after the other, compared exactly; -1 if there is none, or if the pattern is empty. A
    // negative `last` means the count. Only the first entry has to lie below `last`.
    std::int32_t find(const STRING_ARRAY& pattern, std::int32_t first, std::int32_t last) const;

    // Replaces each occurrence of the pattern by one entry. The search goes on as many entries
    // behind a match as the pattern has, counted in the changed array, so entries directly behind a
    // match can be passed over. Yields whether anything was replaced.
    bool find_and_replace(const STRING_ARRAY& pattern, const STRING& replacement);

private:
    ARRAY<std::unique_ptr<STRING>, std::int32_t> entries;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_STRING_ARRAY_H
