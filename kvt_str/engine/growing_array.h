// An array on the heap that is read element by element.
#pragma once

#include <cstddef>
#include <cstdlib>

#include "text/boundary.h"

namespace kvt_str {

/// Has room for 5 elements at first, and for twice as many whenever it is full. Only the first five
/// elements are zero before they are filled.
struct GrowingArray {
    size_t element_size;
    char *block = nullptr;
    size_t capacity = 0;
    size_t count = 0;

    static constexpr size_t first_capacity = 5;

    /// Room for one more element; null when there is no memory for it.
    char *next() {
        KVT_BOUNDARY(count == 5);
        KVT_BOUNDARY(count == 10);
        KVT_BOUNDARY(count == 20);
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
