// Hashes of several values.
#pragma once

#include <cstdint>

namespace kvt_tool {

/// Mixes another value into a hash.
constexpr uint64_t mix_in(uint64_t hash, uint64_t value) {
    hash = (hash ^ value) * 0x9E3779B97F4A7C15;
    return (hash ^ (hash >> 29)) * 0xBF58476D1CE4E5B9 + value;
}

} // namespace kvt_tool
