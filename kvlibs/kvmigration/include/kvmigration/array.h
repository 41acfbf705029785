// The growing array of the 3D libraries.
#ifndef KVMIGRATION_ARRAY_H
#define KVMIGRATION_ARRAY_H

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace KVMIGRATION {

// A standard vector whose indexes are signed numbers of the type INDEX. Indices are not checked.
template <typename T, typename INDEX = std::int32_t>
class ARRAY : public std::vector<T> {
    using BASE = std::vector<T>;

public:
    using BASE::BASE;

    INDEX get_count() const { return static_cast<INDEX>(this->size()); }
    // Appends an item and yields its index.
    INDEX add(T item) {
        this->push_back(std::move(item));
        return get_count() - 1;
    }
    // Puts the item at `index`; the array grows with default items until that index exists. A
    // negative index does nothing. The caller vouches for the index: a count read from a file is
    // checked against the file first.
    void set(T item, INDEX index) {
        if (index < 0) {
            return;
        }
        if (static_cast<std::size_t>(index) >= this->size()) {
            this->resize(static_cast<std::size_t>(index) + 1);
        }
        (*this)[index] = std::move(item);
    }

    T& operator[](INDEX index) { return BASE::operator[](static_cast<std::size_t>(index)); }
    const T& operator[](INDEX index) const {
        return BASE::operator[](static_cast<std::size_t>(index));
    }
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_ARRAY_H
