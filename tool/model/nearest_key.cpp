#include "model/nearest_key.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace kvt_tool {

size_t edit_distance(std::string_view a, std::string_view b) {
    // The distances of the part of `a` that has been gone through to every beginning of `b`.
    std::vector<size_t> distances(b.size() + 1);
    std::iota(distances.begin(), distances.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = distances[0];
        distances[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = distances[j + 1];
            distances[j + 1] = std::min({replaced, diagonal + 1, distances[j] + 1});
        }
    }
    return distances[b.size()];
}

std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> words) {
    std::optional<std::string_view> found;
    size_t least = (word.size() + 1) / 2 + 1;
    for (const std::string_view candidate : words) {
        const size_t distance = edit_distance(word, candidate);
        if (distance < least) {
            least = distance;
            found = candidate;
        }
    }
    return found;
}

} // namespace kvt_tool
