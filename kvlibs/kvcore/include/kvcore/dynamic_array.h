// A growing array with positions counted in the system's 32-bit numbers.
#ifndef KVCORE_DYNAMIC_ARRAY_H
#define KVCORE_DYNAMIC_ARRAY_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace KVCORE {

// Holds T by value, handles and other types with an own life included. Indices are not checked:
// the caller keeps them below the count. Adding and removing move the items behind, so pointers to
// items don't survive it. No lock.
template <typename T>
class DYNAMIC_ARRAY {
    static_assert(!std::is_same_v<T, bool>, "items are given out by reference");

public:
    // Appends an item, and yields its index.
    std::int32_t add(T item) {
        items.push_back(std::move(item));
        return get_count() - 1;
    }
    // Puts an item before the one at `index`, which may be the count.
    void insert(std::int32_t index, T item) {
        items.insert(items.begin() + index, std::move(item));
    }
    // Takes out the item at `index`; the order of the others stays.
    void remove(std::int32_t index) { items.erase(items.begin() + index); }
    // Takes out the first item that equals `item`, and yields whether there was one.
    bool remove_item(const T& item) {
        const std::int32_t index = find(item);
        if (index >= 0) {
            remove(index);
        }
        return index >= 0;
    }
    void clear() { items.clear(); }
    // Makes room for `count` items, so that adding them moves nothing.
    void reserve(std::int32_t count) {
        items.reserve(static_cast<std::size_t>(std::max(count, 0)));
    }

    std::int32_t get_count() const { return static_cast<std::int32_t>(items.size()); }
    bool is_empty() const { return items.empty(); }
    // The index of the first item that equals `item`, -1 if there is none.
    std::int32_t find(const T& item) const {
        const auto position = std::find(items.begin(), items.end(), item);
        return position == items.end() ? -1 : static_cast<std::int32_t>(position - items.begin());
    }
    bool contains(const T& item) const { return find(item) >= 0; }

    T& operator[](std::int32_t index) { return items[static_cast<std::size_t>(index)]; }
    const T& operator[](std::int32_t index) const { return items[static_cast<std::size_t>(index)]; }

    auto begin() { return items.begin(); }
    auto end() { return items.end(); }
    auto begin() const { return items.begin(); }
    auto end() const { return items.end(); }

private:
    std::vector<T> items;
};

}  // namespace KVCORE

#endif  // KVCORE_DYNAMIC_ARRAY_H
