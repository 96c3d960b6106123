// Rules for the values of samples: the notation that the tables of rules share.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "samples/values.h"

namespace kvt_tool {

/// What the values of a key are.
template <typename Value> struct Rule {
    std::string_view record; ///< that the key stands in; empty for any
    std::string_view key;
    Value *value;
};

/// The rule of a key in a record, or in any record where that is empty; null where there is none.
template <typename Value>
Value *find_rule(std::span<const Rule<Value>> rules, std::string_view record,
                 std::string_view key) {
    const auto found = std::ranges::find_if(
        rules, [&](const Rule<Value> &rule) { return rule.record == record && rule.key == key; });
    return found != rules.end() ? found->value : nullptr;
}

template <uint64_t low, uint64_t high> uint64_t between(const Site &at) {
    return at.random(low, high);
}

template <uint64_t value> uint64_t constant(const Site & /*at*/) {
    return value;
}

/// One for low latency, and one more for streaming.
uint64_t trees(const Site &at);

uint64_t tree_id(const Site &at);

uint64_t index_from_1(const Site &at);

/// Of a group of the job, and as the interface of a multicast group.
uint64_t group_id(const Site &at);

/// The rules for records whose elements fit together. All are for one record.
std::span<const Rule<NumberRule>> structure_numbers();
std::span<const Rule<NumberRule>> structure_counts();

} // namespace kvt_tool
