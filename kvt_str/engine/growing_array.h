// The growth of what is read into the heap.
#pragma once

#include <cstddef>
#include <cstdlib>

namespace kvt_str {

/// Elements that an array has room for at first.
inline constexpr size_t first_capacity = 5;

/// The first room of a joined string, in lengths of its first value.
inline constexpr size_t first_lengths = 5;

/// A heap array that grows by an element at a time: room for 5, then doubled whenever it is full.
/// Only the first five elements are zero before they are filled.
struct GrowingArray {
    size_t element_size;
    char *block = nullptr;
    size_t capacity = 0;
    size_t count = 0;

    /// Room for one more element; null when there is no memory for it.
    char *next() {
        if (count == capacity && !grow()) {
            return nullptr;
        }
        return block + count * element_size;
    }

    bool grow() {
        const size_t grown = block == nullptr ? first_capacity : 2 * capacity;
        void *moved = block == nullptr ? std::calloc(first_capacity, element_size)
                                       : std::realloc(block, grown * element_size);
        if (moved == nullptr) {
            return false;
        }
        block = static_cast<char *>(moved);
        capacity = grown;
        return true;
    }
};

} // namespace kvt_str
