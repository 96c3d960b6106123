#include <algorithm>

#include "model/describe.h"
#include "model/nearest_key.h"

namespace kvt_tool {

using namespace kvt_str;

namespace {

/// In lower case, whatever the locale.
std::string lower(std::string_view word) {
    std::string small(word);
    for (char &c : small) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return small;
}

/// How far a name is from a word; a name that has the word in it is near, whatever its length.
size_t distance(const std::string &name, const std::string &word) {
    const size_t edits = edit_distance(word, name);
    return word.size() >= 3 && name.find(word) != std::string::npos ? std::min<size_t>(edits, 2)
                                                                    : edits;
}

} // namespace

const MessageKind *kind_of_word(std::string_view word) {
    const std::string small = lower(word);
    for (const MessageKind &kind : message_kinds()) {
        if (small == lower(kind.name)) {
            return &kind;
        }
    }
    for (const MessageKind &kind : message_kinds()) {
        if (kind.block != nullptr && small == kind.block) {
            return &kind;
        }
    }
    return nullptr;
}

std::vector<std::string> nearest_kinds(std::string_view word) {
    constexpr size_t most_names = 4;
    // Words of a command line are short; what is longer than this means no kind, and comparing is
    // quadratic.
    constexpr size_t longest = 64;
    if (word.size() > longest) {
        return {};
    }
    const std::string small = lower(word);
    const size_t farthest = std::max<size_t>(2, small.size() / 3);
    std::vector<std::pair<size_t, std::string>> found;
    for (const MessageKind &kind : message_kinds()) {
        size_t nearest = distance(lower(kind.name), small);
        if (kind.block != nullptr) {
            nearest = std::min(nearest, distance(kind.block, small));
        }
        if (nearest <= farthest) {
            found.emplace_back(nearest, kind.name);
        }
    }
    std::ranges::stable_sort(found, {}, &std::pair<size_t, std::string>::first);
    std::vector<std::string> names;
    for (size_t i = 0; i < std::min(found.size(), most_names); ++i) {
        names.push_back(found[i].second);
    }
    return names;
}

std::string unknown_kind(std::string_view word) {
    std::string text = "there is no kind '" + std::string(word) + "'";
    const std::vector<std::string> names = nearest_kinds(word);
    for (size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "; did you mean " : i + 1 == names.size() ? " or " : ", ";
        text += names[i];
    }
    return text + (names.empty() ? "; kvt describe lists all" : "?");
}

} // namespace kvt_tool
