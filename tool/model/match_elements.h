// Finds out which elements of a list became which of another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace kvt_tool {

/// Stands for "no element".
inline constexpr size_t unmatched = static_cast<size_t>(-1);

/// What is known of the elements of two lists; an element is named by its index.
struct ListPair {
    size_t count_a;
    size_t count_b;
    std::function<bool(size_t a, size_t b)> same;             ///< equal in all that is written
    std::function<uint64_t(bool of_b, size_t index)> content; ///< a hash of what is written
    /// A hash of what identifies an element; empty when nothing does.
    std::function<uint64_t(bool of_b, size_t index)> identity;
    /// True when two elements that stand at the same place among their neighbours, and are neither
    /// equal nor of one identity, are yet one element that has changed.
    std::function<bool(size_t a, size_t b)> replaces;
};

struct ElementMatches {
    std::vector<size_t> partner_of_a; ///< for each element of A its partner in B, or `unmatched`
    std::vector<size_t> partner_of_b;
    size_t same_at_begin = 0; ///< elements from the first on that are equal in both
    size_t same_at_end = 0;   ///< elements up to the last that are equal in both
    bool in_order = true;     ///< partners stand in the same order in both
};

/// Matches the elements of two lists: first what is equal at both ends, then equal elements in
/// order of occurrence, then those of one identity, at last those that stand after the same
/// neighbour. Every element has one partner at most. The time is that of sorting the hashes of what
/// lies between the equal ends, whatever the elements are.
ElementMatches match_elements(const ListPair &lists);

} // namespace kvt_tool
