// The rows of a table, as the check goes through them.
#pragma once

#include <cstddef>

#include "engine/row.h"

namespace kvt_checking {

/// Not a std::span: where the standard library checks the use of one, it needs its runtime.
struct Rows {
    const kvt_str::Row *first;
    size_t count;

    size_t size() const { return count; }

    const kvt_str::Row &operator[](size_t index) const { return first[index]; }

    const kvt_str::Row *begin() const { return first; }

    const kvt_str::Row *end() const { return first + count; }
};

} // namespace kvt_checking
