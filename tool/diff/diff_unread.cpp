#include "diff/diff_unread.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "model/hash.h"

namespace kvt_tool {

namespace {

using What = Difference::What;

bool is_same(const UnreadLine &a, const UnreadLine &b) {
    return a.path == b.path && a.text == b.text;
}

} // namespace

KeyAndValue key_and_value(const UnreadLine &line) {
    const size_t colon = line.text.find(':');
    if (colon == std::string::npos) {
        return {line.text, ""};
    }
    const size_t value = line.text.find_first_not_of(" \t", colon + 1);
    return {line.text.substr(0, colon), value != std::string::npos ? line.text.substr(value) : ""};
}

bool same_unread(const std::vector<UnreadLine> &a, const std::vector<UnreadLine> &b) {
    return std::ranges::equal(a, b, is_same);
}

uint64_t unread_hash(const std::vector<UnreadLine> &lines) {
    uint64_t hash = 0;
    for (const UnreadLine &line : lines) {
        hash = mix_in(hash, std::hash<std::string>()(line.path));
        hash = mix_in(hash, std::hash<std::string>()(line.text));
    }
    return hash;
}

std::vector<UnreadDifference> diff_unread(const std::vector<UnreadLine> &a,
                                          const std::vector<UnreadLine> &b) {
    std::vector<UnreadDifference> differences;
    std::map<std::pair<std::string_view, std::string>, std::deque<const UnreadLine *>> unmatched;
    for (const UnreadLine &line : b) {
        unmatched[{line.path, key_and_value(line).key}].push_back(&line);
    }
    for (const UnreadLine &line : a) {
        const auto [key, value] = key_and_value(line);
        auto &partners = unmatched[{line.path, key}];
        if (partners.empty()) {
            differences.push_back({What::removed, &line, nullptr});
            continue;
        }
        const UnreadLine &partner = *partners.front();
        partners.pop_front();
        if (value != key_and_value(partner).value) {
            differences.push_back({What::changed, &line, &partner});
        }
    }
    for (const UnreadLine &line : b) {
        auto &left = unmatched[{line.path, key_and_value(line).key}];
        if (!left.empty() && left.front() == &line) {
            left.pop_front();
            differences.push_back({What::added, nullptr, &line});
        }
    }
    if (differences.empty() && !same_unread(a, b)) {
        differences.push_back({What::order, nullptr, nullptr});
    }
    return differences;
}

} // namespace kvt_tool
