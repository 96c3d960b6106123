#include "nearest.h"

#include <algorithm>
#include <cstdint>

#include "text/boundary.h"

namespace kvt_checking {

namespace {

/// No key and no name of a kind is longer (tests/check/table_limits_test.cpp).
constexpr size_t longest_word = 99;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool same(char unknown, char known) {
    return lower(unknown) == lower(known) || (unknown == '-' && known == '_');
}

/// How many changes lead from the unknown word to the known one, neither longer than longest_word.
size_t count_changes(std::string_view unknown, std::string_view known) {
    const char *a = unknown.data();
    const char *b = known.data();
    uint8_t rows[3][longest_word + 1];
    uint8_t *before_last = rows[0];
    uint8_t *last = rows[1];
    uint8_t *current = rows[2];
    for (size_t j = 0; j <= known.size(); ++j) {
        last[j] = static_cast<uint8_t>(j);
    }
    for (size_t i = 1; i <= unknown.size(); ++i) {
        current[0] = static_cast<uint8_t>(i);
        for (size_t j = 1; j <= known.size(); ++j) {
            const int change = same(a[i - 1], b[j - 1]) ? 0 : 1;
            int fewest = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1])) {
                fewest = std::min(fewest, before_last[j - 2] + 1);
            }
            current[j] = static_cast<uint8_t>(fewest);
        }
        uint8_t *oldest = before_last;
        before_last = last;
        last = current;
        current = oldest;
    }
    return last[known.size()];
}

} // namespace

// A typo is a change or two, and some more in a long word.
Nearest::Nearest(std::string_view unknown)
    : unknown_(unknown), fewest_(2 + std::min(unknown.size() / 5, size_t{3})) {}

void Nearest::consider(std::string_view known) {
    const size_t longer = std::max(known.size(), unknown_.size());
    const size_t shorter = std::min(known.size(), unknown_.size());
    KVT_BOUNDARY(longer == longest_word);
    KVT_BOUNDARY(longer == longest_word + 1);
    // One letter may be the begin of anything.
    if (longer > longest_word || longer - shorter >= fewest_ || shorter <= 1) {
        return;
    }
    const size_t changes = count_changes(unknown_, known);
    if (changes < fewest_) {
        fewest_ = changes;
        word_ = known;
    }
}

} // namespace kvt_checking
