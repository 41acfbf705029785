// The sorted tables of WM_PTM_APP_INFO: PTRARRAYs of entries that are known by a field `name`.
#ifndef MODULES_WINMAN_SORTED_TABLE_H
#define MODULES_WINMAN_SORTED_TABLE_H

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "modules/winman/owned_text.h"
#include "platform/ptrarray.h"

// No table grows beyond this, whatever its files say. Every index fits 16 bits.
inline constexpr std::int32_t MAX_TABLE_ENTRIES = 32767;

template <class ENTRY>
int compare_entries(const void* a, const void* b) {
    return OWNED_TEXT::compare((*static_cast<ENTRY* const*>(a))->name,
                               (*static_cast<ENTRY* const*>(b))->name);
}

// The same with a name in the place of the first entry.
template <class ENTRY>
int compare_name_with_entry(const void* name, const void* entry) {
    return OWNED_TEXT::compare(*static_cast<const char* const*>(name),
                               (*static_cast<ENTRY* const*>(entry))->name);
}

// The place of a name in a sorted table, or -1.
template <class ENTRY>
std::int32_t find_entry_index(const PTRARRAY& table, const char* name) {
    return table.find(name, compare_name_with_entry<ENTRY>);
}

// Puts an entry into a sorted table, in the place of the one with its name. False if there is no
// room; the entry is deleted then.
template <class ENTRY>
bool add_table_entry(PTRARRAY& table, std::unique_ptr<ENTRY> entry) {
    const std::int32_t found = find_entry_index<ENTRY>(table, entry->name);
    if (found >= 0) {
        delete table.get<ENTRY>(found);
        table[found] = entry.release();
        return true;
    }
    if (table.get_count() >= MAX_TABLE_ENTRIES || !table.add(entry.get())) {
        return false;
    }
    const char* name = entry.release()->name;
    void** const begin = table.get_data();
    void** const last = begin + table.get_count() - 1;
    void** const place = std::upper_bound(begin, last, name, [](const char* left, void* right) {
        return OWNED_TEXT::compare(left, static_cast<ENTRY*>(right)->name) < 0;
    });
    std::rotate(place, last, last + 1);
    return true;
}

// Puts many entries into a sorted table at once; of entries with one name, in the table or not, the
// last one stays.
template <class ENTRY>
bool merge_table_entries(PTRARRAY& table, std::vector<std::unique_ptr<ENTRY>> entries) {
    const auto by_name = [](const std::unique_ptr<ENTRY>& a, const std::unique_ptr<ENTRY>& b) {
        return OWNED_TEXT::compare(a->name, b->name) < 0;
    };
    if (table.is_empty() && !table.allocate(static_cast<std::int32_t>(entries.size()))) {
        return false;
    }
    std::stable_sort(entries.begin(), entries.end(), by_name);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool is_last = i + 1 == entries.size() || by_name(entries[i], entries[i + 1]);
        if (is_last && !add_table_entry(table, std::move(entries[i]))) {
            return false;
        }
    }
    return true;
}

#endif  // MODULES_WINMAN_SORTED_TABLE_H
