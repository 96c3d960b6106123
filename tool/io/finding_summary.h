// How many findings there are of each kind and key.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "io/findings.h"

namespace kvt_tool {

class FindingSummary {
public:
    /// Adds a finding of an input, given its name as it is shown.
    void add(const std::string &input, const Finding &finding);

    /// A line or, as JSON, an object for each kind and key, the most frequent first.
    std::string lines(FindingForm form) const;

private:
    struct Group {
        size_t count = 0;
        std::string input; ///< where the first one stands
        uint64_t line = 0;
    };

    /// Keys that are told apart. A damaged archive may have any number of others, which are counted
    /// together for each kind.
    static constexpr size_t most_groups = 1000;

    std::map<std::pair<kvt_finding_kind, std::string>, Group> groups_;
};

} // namespace kvt_tool
