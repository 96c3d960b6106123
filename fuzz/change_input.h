// What mutators of texts have in common.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "support/random_records.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed);

namespace kvt_fuzz {

/// Changes an input by `change(text, random)`, which gives the text that takes its place. A quarter
/// of the changes is left to the engine, which knows what comparisons the code makes.
template <typename Change>
size_t change_input(uint8_t *data, size_t size, size_t max_size, unsigned seed, Change change) {
    kvt_test::Random random(seed);
    if (kvt_test::below(random, 4) == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    const std::string text =
        change(std::string(reinterpret_cast<const char *>(data), size), random);
    const size_t changed = std::min(text.size(), max_size);
    if (changed == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::memcpy(data, text.data(), changed);
    return changed;
}

} // namespace kvt_fuzz
