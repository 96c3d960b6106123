// Changes inputs that are a text of messages, its NUL and a set of failing allocations
// (failing_set.h): the text, the set or both. A part of the changes is left to the engine.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "support/failing_set.h"
#include "text_changes.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed);

namespace {

using namespace kvt_test;

/// Few allocations or many: how many the text takes is not known.
std::string random_set(Random &random) {
    return random_failures(size_t{4} << below(random, 8), random);
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size,
                                          unsigned seed) {
    Random random(seed);
    if (below(random, 8) == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    const std::string input(reinterpret_cast<const char *>(data), size);
    const size_t nul = std::min(input.find('\0'), size);
    std::string text = input.substr(0, nul);
    std::string set = input.substr(std::min(nul + 1, size));
    const size_t part = below(random, 3);
    if (part != 1) {
        set = random_set(random);
    }
    const size_t room = max_size - std::min(max_size, set.size() + 1);
    if (part != 0) {
        // A text that has become too long would lose the ends of its blocks, where counts lie.
        const std::string other = kvt_fuzz::change_text(text, random);
        text = other.size() <= room ? other : text;
    }
    const std::string changed = text.substr(0, room) + '\0' + set;
    const size_t length = std::min(changed.size(), max_size);
    std::memcpy(data, changed.data(), length);
    return length;
}
