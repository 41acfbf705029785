// Finds a row of the action table by name: a perfect hash of all names, built by the compiler.
//
// The method is hash and displace: a name's hash picks a bucket and a walk through the slots, and
// the bucket's displacement says how far to go. The displacements are chosen so that each name has
// a slot of its own; a look-up hashes once and compares with one name. (D. Belazzougui, F. C.
// Botelho, M. Dietzfelbinger, "Hash, Displace, and Compress", ESA 2009.)
#ifndef KVANIM_ACTION_INDEX_H
#define KVANIM_ACTION_INDEX_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "kvanim/action.h"

namespace KVANIM::ACTION {

inline constexpr std::array<std::string_view, COUNT> ACTION_NAMES = {
#define KVANIM_ACTION_ROW(number, name) #name,
#include "kvanim/action_table.def"
};

// Names are handled in words of eight bytes, and words in blocks of four. Words that would reach
// behind the end lie at the end instead, and overlap those before: most names are one block, so
// that no branch depends on the length. Only a name shorter than a word is filled up, with zeros.
inline constexpr std::size_t WORD_SIZE = sizeof(std::uint64_t);
inline constexpr std::size_t BLOCK_SIZE = 4 * WORD_SIZE;

// Odd, with its bits well spread. Another such number helps if names can't be placed one day.
inline constexpr std::uint64_t HASH_MULTIPLIER = 0x9E3779B97F4A7C15;

constexpr std::uint64_t load_word(const char* text, std::size_t size) {
    if (std::is_constant_evaluated()) {
        std::array<char, WORD_SIZE> bytes{};
        for (std::size_t i = 0; i < size; i++) {
            bytes[i] = text[i];
        }
        return std::bit_cast<std::uint64_t>(bytes);
    }
    std::uint64_t word = 0;
    std::memcpy(&word, text, size);
    return word;
}

// The word with its bytes 'a' to 'z' in upper case. Sums stay below the next byte, as they are made
// of seven bits each; the top bit of a byte then tells whether it passed the bound.
constexpr std::uint64_t to_upper(std::uint64_t word) {
    constexpr std::uint64_t EACH = 0x0101010101010101;
    const std::uint64_t seven_bits = word & (EACH * 0x7F);
    const std::uint64_t from_a = seven_bits + EACH * (0x80 - 'a');
    const std::uint64_t behind_z = seven_bits + EACH * (0x80 - 'z' - 1);
    const std::uint64_t small = from_a & ~behind_z & ~word & (EACH * 0x80);
    return word ^ (small >> 2);
}

// Calls use(offset, size) for the place of each word in a text of that length.
template <typename USE>
constexpr void for_each_word(std::size_t length, USE use) {
    if (length < WORD_SIZE) {
        use(std::size_t{0}, length);
        return;
    }
    const std::size_t last = length - WORD_SIZE;
    for (std::size_t block = 0; block < length; block += BLOCK_SIZE) {
        for (std::size_t word = 0; word < BLOCK_SIZE; word += WORD_SIZE) {
            use(block + word < last ? block + word : last, WORD_SIZE);
        }
    }
}

__extension__ using WIDE_PRODUCT = unsigned __int128;

// A hash of the text that is the same in any case. It looks past the bit in which capitals and
// small letters differ, in other characters too, as the names differ elsewhere. Each word is
// multiplied in, and the product's upper half folded onto the lower one, so that every letter
// reaches every bit.
constexpr std::uint64_t hash_name(std::string_view text) {
    constexpr std::uint64_t CASE_BITS = 0x2020202020202020;
    std::uint64_t hash = text.size();
    for_each_word(text.size(), [&hash, text](std::size_t offset, std::size_t size) {
        const std::uint64_t word = load_word(text.data() + offset, size) & ~CASE_BITS;
        const WIDE_PRODUCT product = WIDE_PRODUCT{hash ^ word} * HASH_MULTIPLIER;
        hash = static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    });
    return hash;
}

// Whether the text in upper case is the name.
constexpr bool matches_in_upper_case(std::string_view text, std::string_view name) {
    if (text.size() != name.size()) {
        return false;
    }
    std::uint64_t difference = 0;
    for_each_word(text.size(), [&difference, text, name](std::size_t offset, std::size_t size) {
        difference |=
            to_upper(load_word(text.data() + offset, size)) ^ load_word(name.data() + offset, size);
    });
    return difference == 0;
}

class ACTION_INDEX {
public:
    constexpr ACTION_INDEX() {
        std::array<std::uint64_t, COUNT> hashes{};
        std::array<BUCKET, BUCKETS> buckets{};
        for (std::size_t row = 0; row < COUNT; row++) {
            if (!matches_in_upper_case(ACTION_NAMES[row], ACTION_NAMES[row])) {
                continue;  // never found: a name with a small letter
            }
            hashes[row] = hash_name(ACTION_NAMES[row]);
            BUCKET& bucket = buckets[get_bucket(hashes[row])];
            bucket.rows[bucket.size++] = static_cast<std::uint16_t>(row);
        }
        // Full buckets first, while there is room for them.
        std::array<bool, SLOTS> taken{};
        for (std::size_t size = BUCKET_LIMIT; size > 0; size--) {
            for (std::size_t i = 0; i < BUCKETS; i++) {
                if (buckets[i].size == size && !place(buckets[i], i, hashes, taken)) {
                    complete = false;
                }
            }
        }
    }

    // Whether every name has a slot of its own.
    constexpr bool is_complete() const { return complete; }

    // The row of that name, whatever case it comes in; UNKNOWN if there is none.
    constexpr TYPE find(std::string_view name) const {
        if (name.empty()) {
            return UNKNOWN;
        }
        const std::uint64_t hash = hash_name(name);
        const std::uint16_t row = rows[get_slot(hash, displacements[get_bucket(hash)])];
        // Mostly the names come as they are.
        const bool found =
            name == ACTION_NAMES[row] || matches_in_upper_case(name, ACTION_NAMES[row]);
        return found ? static_cast<TYPE>(row) : UNKNOWN;
    }

private:
    static constexpr std::size_t BUCKETS = 256;
    static constexpr std::size_t SLOTS = 1024;
    static constexpr std::size_t BUCKET_LIMIT = 16;

    struct BUCKET {
        std::array<std::uint16_t, BUCKET_LIMIT> rows{};
        std::size_t size = 0;
    };

    static constexpr std::size_t get_bucket(std::uint64_t hash) { return hash % BUCKETS; }

    // The stride is odd, so that the walk comes to every slot.
    static constexpr std::size_t get_slot(std::uint64_t hash, std::uint64_t displacement) {
        return ((hash >> 16) + ((hash >> 40) | 1) * displacement) % SLOTS;
    }

    // Finds the displacement at which all rows of the bucket have free slots, and takes those.
    // False if there is none.
    constexpr bool place(const BUCKET& bucket, std::size_t index,
                         const std::array<std::uint64_t, COUNT>& hashes,
                         std::array<bool, SLOTS>& taken) {
        for (std::size_t displacement = 0; displacement < SLOTS; displacement++) {
            std::size_t placed = 0;
            for (; placed < bucket.size; placed++) {
                const std::size_t slot = get_slot(hashes[bucket.rows[placed]], displacement);
                if (taken[slot]) {
                    break;
                }
                taken[slot] = true;
                rows[slot] = bucket.rows[placed];
            }
            if (placed == bucket.size) {
                displacements[index] = static_cast<std::uint16_t>(displacement);
                return true;
            }
            while (placed > 0) {
                placed--;
                taken[get_slot(hashes[bucket.rows[placed]], displacement)] = false;
            }
        }
        return false;
    }

    // Slots that no name has hold row 0: its name won't match, and the answer is that row anyway.
    std::array<std::uint16_t, SLOTS> rows{};
    std::array<std::uint16_t, BUCKETS> displacements{};
    bool complete = true;
};

}  // namespace KVANIM::ACTION

#endif  // KVANIM_ACTION_INDEX_H
