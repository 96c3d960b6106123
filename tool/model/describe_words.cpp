#include <algorithm>

#include "kvt_check/nearest.h"
#include "model/describe.h"

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

std::vector<std::string> kinds_meant_by(std::string_view word) {
    constexpr size_t most_names = 4;
    constexpr size_t shortest_part = 3;
    const std::string small = lower(word);
    std::vector<std::string> names;
    kvt_checking::Nearest nearest(word);
    const MessageKind *nearest_kind = nullptr;
    for (const MessageKind &kind : message_kinds()) {
        const std::string_view block = kind.block != nullptr ? kind.block : "";
        if (small.size() >= shortest_part && names.size() < most_names &&
            (lower(kind.name).find(small) != std::string::npos ||
             block.find(small) != std::string_view::npos)) {
            names.emplace_back(kind.name);
        }
        for (const std::string_view known : {std::string_view(kind.name), block}) {
            const std::string_view before = nearest.word();
            nearest.consider(known);
            nearest_kind = nearest.word() != before ? &kind : nearest_kind;
        }
    }
    if (names.empty() && nearest_kind != nullptr) {
        names.emplace_back(nearest_kind->name);
    }
    return names;
}

std::string suggestion_of(const std::vector<std::string> &names) {
    std::string text;
    for (size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "; did you mean " : i + 1 == names.size() ? " or " : ", ";
        text += names[i];
    }
    return text + (names.empty() ? "; kvt describe lists all" : "?");
}

std::string unknown_kind(std::string_view word) {
    return "there is no kind '" + std::string(word) + "'" + suggestion_of(kinds_meant_by(word));
}

} // namespace kvt_tool
