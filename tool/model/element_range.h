// What stands in brackets after the key of a list: which of its elements are meant.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace kvt_tool {

/// A place in a list, counted from its begin or from its end.
struct ListPlace {
    uint64_t distance = 0;
    bool from_end = false;

    /// In a list of so many elements: from 0 up to that number.
    uint64_t in(uint64_t count) const {
        const uint64_t steps = std::min(distance, count);
        return from_end ? count - steps : steps;
    }
};

/// One element, or those from a place on and before another one.
struct ElementRange {
    std::optional<ListPlace> begin; ///< none for the first element
    std::optional<ListPlace> end;   ///< none for after the last one
    bool is_one = false;            ///< the element at `begin`

    struct Bounds {
        uint64_t begin, end;
    };

    /// The elements of a list of so many: nothing where `begin` is not less than `end`.
    Bounds in(uint64_t count) const {
        if (is_one) {
            const bool exists =
                begin->from_end ? begin->distance <= count : begin->distance < count;
            const uint64_t at = begin->in(count);
            return {at, exists ? at + 1 : at};
        }
        return {begin.has_value() ? begin->in(count) : 0, end.has_value() ? end->in(count) : count};
    }
};

} // namespace kvt_tool
