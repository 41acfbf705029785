// A table from text to values with a fixed number of buckets.
#ifndef KVCORE_HASH_TABLE_H
#define KVCORE_HASH_TABLE_H

#include <cstddef>
#include <cstdint>
#include <new>

#include "kvcore/memory.h"

namespace KVCORE {

// KEY offers get_hash(), equals(KEY) and set(KEY), as STRING does. Entries are chained in
// BUCKET_COUNT buckets, newest first, and keep their place in memory as long as the table lives, so
// a pointer to an entry names its key. The hash is kept on the entry: a walk along a chain compares
// numbers first. No lock.
template <typename KEY, typename VALUE, std::uint32_t BUCKET_COUNT>
class HASH_TABLE {
public:
    struct ENTRY {
        KEY key;
        std::uint32_t hash = 0;
        VALUE value{};
        ENTRY* next = nullptr;
    };

    HASH_TABLE()
        : buckets(static_cast<ENTRY**>(
              MEMORY_LIBC::allocate(BUCKET_COUNT * sizeof(ENTRY*), MEMORY_LIBC::CLEAR))) {}
    ~HASH_TABLE() {
        clear();
        MEMORY_LIBC::free(buckets);
    }
    HASH_TABLE(const HASH_TABLE&) = delete;
    HASH_TABLE& operator=(const HASH_TABLE&) = delete;

    // The entry of `key`, made if there is none. A new entry takes `value` and a `set` of the key,
    // so a borrowed text stays borrowed and must live as long as the table. An entry that was there
    // keeps its value with `keep_existing`, and takes `value` otherwise.
    ENTRY* add(const KEY& key, const VALUE& value, bool keep_existing) {
        const std::uint32_t hash = key.get_hash();
        if (ENTRY* const existing = find_hashed(key, hash)) {
            if (!keep_existing) {
                existing->value = value;
            }
            return existing;
        }
        ENTRY* const entry = new (MEMORY_LIBC::allocate(sizeof(ENTRY))) ENTRY;
        ENTRY*& bucket = buckets[hash % BUCKET_COUNT];
        entry->key.set(key);
        entry->hash = hash;
        entry->value = value;
        entry->next = bucket;
        bucket = entry;
        ++count;
        return entry;
    }

    // The entry of `key`, null if there is none.
    ENTRY* find(const KEY& key) const { return find_hashed(key, key.get_hash()); }

    std::int32_t get_count() const { return count; }

    void clear() {
        for (std::uint32_t i = 0; i < BUCKET_COUNT; ++i) {
            while (ENTRY* const entry = buckets[i]) {
                buckets[i] = entry->next;
                entry->~ENTRY();
                MEMORY_LIBC::free(entry);
            }
        }
        count = 0;
    }

private:
    static_assert(alignof(ENTRY) <= alignof(std::max_align_t));

    ENTRY* find_hashed(const KEY& key, std::uint32_t hash) const {
        for (ENTRY* entry = buckets[hash % BUCKET_COUNT]; entry; entry = entry->next) {
            if (entry->hash == hash && entry->key.equals(key)) {
                return entry;
            }
        }
        return nullptr;
    }

    ENTRY** buckets;
    std::int32_t count = 0;
};

}  // namespace KVCORE

#endif  // KVCORE_HASH_TABLE_H
