// PTRARRAY: a growable array of pointers with optional ownership and search.
#ifndef PLATFORM_PTRARRAY_H
#define PLATFORM_PTRARRAY_H

#include <cstdint>

// The entries are pointers of the caller. With a delete function the array owns them and calls it
// whenever an entry is removed, also for an entry that is null; without one they are only
// referred to. No locks: an array belongs to its owner's thread or to the lock held around it.
class PTRARRAY {
public:
    using DELETE_FUNCTION = void (*)(void* entry);
    // Is given pointers to entries, as qsort gives them: `*static_cast<T* const*>(a)`.
    using COMPARE_FUNCTION = int (*)(const void* a, const void* b);

    // `grow_step`: entries added to the capacity when the array is full; 0 means 10.
    // `initial_size`: the first allocation, if above the grow step. Nothing is allocated yet.
    explicit PTRARRAY(std::int32_t grow_step = 0, std::int32_t initial_size = 0,
                      DELETE_FUNCTION delete_function = nullptr,
                      COMPARE_FUNCTION compare_function = nullptr);
    ~PTRARRAY() { clear(); }
    PTRARRAY(const PTRARRAY&) = delete;  // see set()
    PTRARRAY& operator=(const PTRARRAY&) = delete;

    // Appends. False if memory can't be had.
    bool add(void* entry);

    // Makes room for `n` entries in all. Nothing shrinks. False if memory can't be had.
    bool allocate(std::int32_t n);

    // Calls the delete function on the entry and closes the gap; the order is kept. False, and
    // nothing changes, for an index out of range.
    bool remove(std::int32_t index);

    // As remove(), but the last entry moves into the gap.
    bool remove_quick(std::int32_t index);

    // Calls the delete function on each entry in order, then frees the memory.
    void clear();

    // Clears, then takes entries, capacity, grow step and initial size from `other`. The entries
    // are shared, not copied, so at most one of the two arrays may own them. The functions stay
    // this array's own. A null `other` only clears; the array itself changes nothing.
    void set(const PTRARRAY* other);

    // qsort with the given function, or else the stored one; without either nothing happens.
    void sort(COMPARE_FUNCTION compare = nullptr);

    // With a compare function, given or stored, a binary search of the sorted array, in which
    // `key` takes the place of an entry. Without one, a scan for the same pointer. The index of
    // an equal entry or -1.
    std::int32_t find(const void* key, COMPARE_FUNCTION compare = nullptr) const;

    std::int32_t get_count() const { return count; }
    std::int32_t get_capacity() const { return capacity; }
    std::int32_t get_grow_step() const { return grow_step; }
    std::int32_t get_initial_size() const { return initial_size; }
    bool is_empty() const { return count == 0; }

    // The entry at `index`, which must be in range.
    void*& operator[](std::int32_t index) { return data[index]; }
    void* operator[](std::int32_t index) const { return data[index]; }

    // The entry at `index` as a T*; null for an index out of range.
    template <typename T>
    T* get(std::int32_t index) const {
        return index >= 0 && index < count ? static_cast<T*>(data[index]) : nullptr;
    }

    // The entries themselves, for loops: get_count() of them, null when nothing is allocated.
    void** get_data() { return data; }
    void* const* get_data() const { return data; }

    void set_delete_function(DELETE_FUNCTION function) { delete_function = function; }
    void set_compare_function(COMPARE_FUNCTION function) { compare_function = function; }
    void set_grow_step(std::int32_t step) { grow_step = step; }
    void set_initial_size(std::int32_t size) { initial_size = size; }

private:
    bool grow();
    bool reallocate(std::int32_t new_capacity);

    void** data = nullptr;
    std::int32_t capacity = 0;
    std::int32_t count = 0;
    std::int32_t grow_step;
    std::int32_t initial_size;
    DELETE_FUNCTION delete_function;
    COMPARE_FUNCTION compare_function;
};

// Deletes a T*; fits as a delete function: PTRARRAY(10, 0, delete_entry<ADD_ON>).
template <typename T>
void delete_entry(void* entry) {
    delete static_cast<T*>(entry);
}

#endif  // PLATFORM_PTRARRAY_H
