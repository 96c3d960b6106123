// The findings in a text, as the tests of the check compare them.
#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "kvt/kvt_check.h"
#include "support/exact_copy.h"

namespace kvt_test {

/// The text, and what has been found in it so far.
using FoundSoFar = std::pair<const std::string &, std::string>;

/// Most of the small texts of the tests leave out the lines that say how many elements there are.
inline bool is_no_count(const kvt_finding *finding) {
    return finding->kind == KVT_FINDING_NO_COUNT;
}

/// One line for each finding but those of missing counts: "LINE:COLUMN NAME 'what is marked'", made
/// by `add_finding` or another callback of that form. Every finding's own figures are compared with
/// each other and the text.
inline std::string found_by(const std::string &text, kvt_finding_callback *add) {
    FoundSoFar user(text, "");
    size_t counts = 0; // that are missing
    const auto count_those = [](const kvt_finding *finding, void *sum) {
        *static_cast<size_t *>(sum) += is_no_count(finding);
        return 0;
    };
    const auto copy = exact_copy_without_nul(text);
    kvt_check(copy.get(), text.size(), count_those, &counts);
    const size_t count = kvt_check(copy.get(), text.size(), add, &user);
    const auto lines = std::count(user.second.begin(), user.second.end(), '\n');
    return count == static_cast<size_t>(lines) + counts ? user.second : "(another count)";
}

inline int add_finding(const kvt_finding *finding, void *user) {
    auto &[text, all] = *static_cast<FoundSoFar *>(user);
    if (is_no_count(finding)) {
        return 0;
    }
    all += std::to_string(finding->line) + ":" + std::to_string(finding->column) + " " +
           finding->name + " '" + text.substr(finding->offset, finding->length) + "'\n";
    return 0;
}

inline int add_message(const kvt_finding *finding, void *user) {
    if (is_no_count(finding)) {
        return 0;
    }
    static_cast<FoundSoFar *>(user)->second += std::string(finding->message) + "\n";
    return 0;
}

inline std::string found(const std::string &text) {
    return found_by(text, add_finding);
}

/// What is said of each.
inline std::string said_of(const std::string &text) {
    return found_by(text, add_message);
}

/// A message of the lines of a record's block, of which the first is line 4.
inline std::string message_of(const std::string &kind, const std::string &block,
                              const std::string &lines) {
    return "msg {\n  type: " + kind + "\n  " + block + " {\n" + lines + "  }\n}\n";
}

inline std::string begin_job(const std::string &lines) {
    return message_of("BEGIN_JOB", "begin_job", lines);
}

inline std::string job_error(const std::string &lines) {
    return message_of("JOB_ERROR", "job_error", lines);
}

inline std::string job_data(const std::string &lines) {
    return message_of("JOB_DATA", "job_data", lines);
}

inline std::string topology(const std::string &lines) {
    return message_of("TOPOLOGY_INFO_REPLY", "topology_info_list", lines);
}

} // namespace kvt_test
