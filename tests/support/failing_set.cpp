#include "support/failing_set.h"

#include <algorithm>
#include <cstdint>

namespace kvt_test {

namespace {

constexpr size_t most = 255; ///< that one byte says

/// Appends how many succeed and how many of the next fail.
void append(std::string &bytes, size_t succeed, size_t fail) {
    for (; succeed > most; succeed -= most) {
        bytes += {static_cast<char>(most), '\0'};
    }
    bytes += {static_cast<char>(succeed), static_cast<char>(fail)};
}

} // namespace

FailingSet::FailingSet(std::string_view bytes) {
    if (bytes.empty()) {
        return;
    }
    growth_alone_ = (bytes[0] & 1) != 0;
    bytes.remove_prefix(1);
    size_t number = 0;
    bool fail = false;
    for (size_t i = 0; i < bytes.size(); ++i, fail = !fail) {
        const size_t count = static_cast<unsigned char>(bytes[i]);
        const bool rest = fail && count == most && i + 1 == bytes.size();
        const size_t end = rest ? SIZE_MAX : number + count;
        if (fail && count != 0) {
            ranges_.push_back({number, end});
        }
        number = end;
    }
}

bool FailingSet::has(const Request &request) const {
    const size_t number = growth_alone_ ? request.growths : request.number;
    return (request.growth || !growth_alone_) &&
           std::any_of(ranges_.begin(), ranges_.end(), [number](const Range &range) {
               return number >= range.first && number < range.end;
           });
}

std::string FailingSet::in_words() const {
    std::string words = growth_alone_ ? "of growth" : "of all";
    for (const Range &range : ranges_) {
        words += " " + std::to_string(range.first);
        if (range.end == SIZE_MAX) {
            words += " and all after";
        } else if (range.end != range.first + 1) {
            words += "-" + std::to_string(range.end - 1);
        }
    }
    return ranges_.empty() ? "none" : words;
}

namespace {

/// A number below a limit, small ones more often: most texts take few allocations.
size_t skewed_below(size_t limit, Random &random) {
    return below(random, 1 + below(random, limit));
}

} // namespace

std::string random_failures(size_t allocations, Random &random) {
    const bool growth_alone = below(random, 2) == 0;
    std::string bytes(1, growth_alone ? '\1' : '\0');
    if (growth_alone) {
        allocations = allocations / 8 + 1; // there is less growth
    }
    switch (below(random, 3)) {
    case 0:
        append(bytes, skewed_below(allocations, random), 1);
        break;
    case 1:
        append(bytes, skewed_below(allocations, random), most);
        break;
    default:
        for (size_t ranges = 1 + below(random, 6); ranges != 0; --ranges) {
            append(bytes, below(random, allocations / 2 + 1), 1 + below(random, 4));
        }
        break;
    }
    return bytes;
}

} // namespace kvt_test
