// Changes inputs that are JSON. A part of the changes is left to the engine, which knows what
// comparisons the tool makes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "tool/json_mutations.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed) {
    kvt_test::Random random(seed);
    if (kvt_test::below(random, 4) == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    const std::string json =
        kvt_test::mutate_json({reinterpret_cast<const char *>(data), size}, random);
    const size_t changed = std::min(json.size(), max_size);
    if (changed == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::memcpy(data, json.data(), changed);
    return changed;
}
