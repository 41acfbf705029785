// Interned names: equal texts are one entry of a table, so that comparing them is comparing
// pointers.
#ifndef KVCORE_SYMBOL_H
#define KVCORE_SYMBOL_H

#include <cstdint>

#include "kvcore/hash_table.h"
#include "kvcore/string.h"

namespace KVCORE {

// Whatever a program hangs on a name.
class SYMBOL_USER_DATA {
public:
    virtual ~SYMBOL_USER_DATA() = default;
};

// A table of symbols. Has no lock: symbols are made during start-up and on the threads that own the
// data that holds them.
class BASE_SYMBOL_MANAGER {
public:
    using TABLE = HASH_TABLE<STRING, SYMBOL_USER_DATA*, 15393>;
    using ENTRY = TABLE::ENTRY;

    BASE_SYMBOL_MANAGER();
    virtual ~BASE_SYMBOL_MANAGER() = default;
    BASE_SYMBOL_MANAGER(const BASE_SYMBOL_MANAGER&) = delete;
    BASE_SYMBOL_MANAGER& operator=(const BASE_SYMBOL_MANAGER&) = delete;

    // The entry of a text, made if there is none.
    ENTRY* get_entry(const STRING& text);
    ENTRY* get_empty_entry() const noexcept { return empty_entry; }
    // How many names there are, the empty one included.
    std::int32_t get_count() const { return table.get_count(); }

private:
    TABLE table;
    ENTRY* empty_entry;
};

// The global table: made when it is first asked for, and there until the process has ended, so that
// global symbols may be made and used in any order.
class SYMBOL_MANAGER : public BASE_SYMBOL_MANAGER {
public:
    static SYMBOL_MANAGER& get_instance();
};

// A name. Two symbols of one manager are equal exactly when their texts are, save that a borrowed
// text with bytes above 127 is another name than the same text in a buffer: their hashes differ. It
// lives as long as its manager; copying it copies a pointer.
class SYMBOL {
public:
    // The empty name of the global table.
    SYMBOL();
    // Finds or adds the text. A null `manager` means the global one. A string that borrows its text
    // stays borrowed in the table, so such a text is a literal or lives as long.
    explicit SYMBOL(const STRING& text, BASE_SYMBOL_MANAGER* manager = nullptr);

    // One slot for each name, shared by all symbols of it; null at first. The data stays the
    // caller's.
    SYMBOL_USER_DATA* get_user_data() const noexcept { return entry->value; }
    void set_user_data(SYMBOL_USER_DATA* data) noexcept { entry->value = data; }

    const STRING& get_string() const noexcept { return entry->key; }
    operator const STRING&() const noexcept { return entry->key; }
    bool is_empty() const noexcept { return entry->key.is_empty(); }

    friend bool operator==(const SYMBOL& a, const SYMBOL& b) noexcept { return a.entry == b.entry; }
    // By the texts, not by the addresses.
    friend bool operator<(const SYMBOL& a, const SYMBOL& b) noexcept {
        return a.entry != b.entry && a.entry->key < b.entry->key;
    }

private:
    BASE_SYMBOL_MANAGER::ENTRY* entry;
};

}  // namespace KVCORE

#endif  // KVCORE_SYMBOL_H
