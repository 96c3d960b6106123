// Texts that nobody would write on purpose, as small and as large as wanted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kvt_bench {

/// A text whose middle part is repeated. A reader that goes back, or far ahead, at every repetition
/// takes a time that is not linear in their number.
struct HostileText {
    const char *name;
    int32_t kind;
    const char *head;
    const char *repeated;
    const char *tail; ///< leaves no count that is greater than its array

    std::string text(size_t repetitions) const;
};

std::span<const HostileText> hostile_texts();

} // namespace kvt_bench
