#include "io/finding_summary.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "model/json_line.h"

namespace kvt_tool {

namespace {

std::string padded(std::string word, size_t width) {
    word.resize(std::max(word.size(), width), ' ');
    return word;
}

} // namespace

void FindingSummary::add(const std::string &input, const Finding &finding) {
    auto key = std::make_pair(finding.kind, finding.key);
    if (groups_.size() >= most_groups && !groups_.contains(key)) {
        key.second = "(others)";
    }
    Group &group = groups_[key];
    if (group.count == 0) {
        group.input = input;
        group.line = finding.line;
    }
    group.count += finding.count;
}

std::string FindingSummary::lines(FindingForm form) const {
    using Entry = decltype(groups_)::value_type;
    std::vector<const Entry *> entries;
    size_t widest_key = 0;
    for (const Entry &entry : groups_) {
        entries.push_back(&entry);
        widest_key = std::max(widest_key, entry.first.second.size());
    }
    std::ranges::stable_sort(entries, std::greater<>(),
                             [](const Entry *entry) { return entry->second.count; });
    std::string lines;
    for (const Entry *entry : entries) {
        const auto &[kind, key] = entry->first;
        const Group &group = entry->second;
        const char *name = kind < KVT_FINDING_KINDS ? kvt_finding_name(kind) : "more-findings";
        const char *severity = kvt_severity_name(kvt_finding_severity(kind));
        const std::string shown_severity = severity != nullptr ? severity : "";
        if (form == FindingForm::json) {
            const nlohmann::ordered_json object = {
                {"count", group.count}, {"name", name},        {"severity", shown_severity},
                {"key", key},           {"file", group.input}, {"line", group.line}};
            lines += json_line(object);
            continue;
        }
        const std::string count = std::to_string(group.count);
        lines += std::string(8 - std::min<size_t>(count.size(), 8), ' ') + count + " " +
                 padded(shown_severity, 8) + padded(name, 20) + padded(key, widest_key) +
                 "  first at " + group.input + ":" + std::to_string(group.line) + "\n";
    }
    return lines;
}

} // namespace kvt_tool
