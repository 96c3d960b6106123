// Samples and their records.
#pragma once

#include <cstdint>
#include <vector>

#include "message_kinds.h"
#include "samples/sample.h"

namespace kvt_tool {

inline OwnedMessage sample_of(int32_t kind, uint64_t seed, uint32_t size) {
    return make_sample(*kvt_str::find_kind(kind), {seed, size, seed});
}

template <typename Record> const Record &record_of(const OwnedMessage &message) {
    return *static_cast<const Record *>(message.record());
}

/// Sizes at which samples with a structure are looked at: all up to 120, and a few larger ones.
inline std::vector<uint32_t> many_sizes() {
    std::vector<uint32_t> sizes;
    for (uint32_t size = 1; size <= 120; ++size) {
        sizes.push_back(size);
    }
    sizes.insert(sizes.end(), {255, 256, 257, 1000});
    return sizes;
}

} // namespace kvt_tool
