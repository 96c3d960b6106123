// Texts in heap blocks of exactly their size, where a sanitizer sees one byte too far.
#pragma once

#include <memory>
#include <string_view>

namespace kvt_test {

/// A text and its NUL.
inline std::unique_ptr<char[]> exact_copy(std::string_view text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    text.copy(copy.get(), text.size());
    return copy;
}

/// A text alone, for what takes its length and reads no NUL.
inline std::unique_ptr<char[]> exact_copy_without_nul(std::string_view text) {
    auto copy = std::make_unique<char[]>(text.size());
    text.copy(copy.get(), text.size());
    return copy;
}

} // namespace kvt_test
