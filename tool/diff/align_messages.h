// Matches two sequences so that what matches weighs as much as possible.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kvt_tool {

/// What an element of a sequence is matched by.
struct AlignKey {
    uint64_t content;   ///< a hash: equal elements have the same
    uint64_t identity;  ///< a hash: elements that may be matched have the same
    bool is_identified; ///< false when `identity` says little: any element of the kind has it
};

/// Indexes of two elements that match.
struct AlignedPair {
    size_t a;
    size_t b;

    bool operator==(const AlignedPair &) const = default;
};

/// The pairs, in ascending order on both sides, that weigh most: equal elements more than those
/// that only share an identity, and identified ones more than others. Of several such, the
/// earliest. Takes time and memory in proportion to the product of both lengths.
std::vector<AlignedPair> align(std::span<const AlignKey> a, std::span<const AlignKey> b);

} // namespace kvt_tool
