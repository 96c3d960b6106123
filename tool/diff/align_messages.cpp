#include "diff/align_messages.h"

#include <algorithm>

namespace kvt_tool {

namespace {

/// What a pair weighs; 0 for two that do not match. An equal pair is worth more than two that have
/// changed: messages of one job that differ would else be paired with their neighbours.
uint32_t weight(const AlignKey &a, const AlignKey &b) {
    if (a.identity != b.identity) {
        return 0;
    }
    if (a.content == b.content) {
        return a.is_identified ? 7 : 4;
    }
    return a.is_identified ? 3 : 1;
}

} // namespace

std::vector<AlignedPair> align(std::span<const AlignKey> a, std::span<const AlignKey> b) {
    // The most that the elements from a[i] and b[j] on can weigh.
    const size_t width = b.size() + 1;
    std::vector<uint32_t> best((a.size() + 1) * width, 0);
    for (size_t i = a.size(); i-- > 0;) {
        for (size_t j = b.size(); j-- > 0;) {
            const size_t at = i * width + j;
            uint32_t most = std::max(best[at + width], best[at + 1]);
            if (const uint32_t pair = weight(a[i], b[j]); pair != 0) {
                most = std::max(most, pair + best[at + width + 1]);
            }
            best[at] = most;
        }
    }
    std::vector<AlignedPair> pairs;
    size_t i = 0;
    size_t j = 0;
    while (i < a.size() && j < b.size()) {
        const size_t at = i * width + j;
        const uint32_t pair = weight(a[i], b[j]);
        if (pair != 0 && best[at] == pair + best[at + width + 1]) {
            pairs.push_back({i++, j++});
        } else if (best[at] == best[at + width]) {
            ++i;
        } else {
            ++j;
        }
    }
    return pairs;
}

} // namespace kvt_tool
