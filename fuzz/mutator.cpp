// Changes inputs that are texts of messages. A part of the changes is left to the engine, which
// knows what comparisons the codec makes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "text_changes.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed) {
    kvt_test::Random random(seed);
    if (kvt_test::below(random, 4) == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    const std::string text =
        kvt_fuzz::change_text({reinterpret_cast<const char *>(data), size}, random);
    const size_t changed = std::min(text.size(), max_size);
    if (changed == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    std::memcpy(data, text.data(), changed);
    return changed;
}
