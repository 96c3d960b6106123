// What the check finds in units, as people and programs read it.
#pragma once

#include <bitset>
#include <string>
#include <vector>

#include "io/unit_stream.h"
#include "kvt/kvt_check.h"

namespace kvt_tool {

/// Kinds of findings, by their numbers.
using FindingKinds = std::bitset<KVT_FINDING_KINDS>;

/// The findings that leave out a message, or something where a message should be.
FindingKinds unread_findings();

enum class FindingForm {
    none,   ///< they are only counted
    line,   ///< FILE:LINE:COLUMN: NAME: WORDS
    marked, ///< that, and the line itself with its place marked
    coloured,
    json, ///< one object on a line
};

/// A finding, ready to be printed.
struct Finding {
    kvt_finding_kind kind;
    std::string text; ///< whole lines
    uint64_t line;
    std::string key; ///< the word that its line begins with
    kvt_severity severity;
    size_t count = 1; ///< of the findings that it stands for
};

/// The kinds of a severity and of those above.
FindingKinds findings_from(kvt_severity least);

/// How a unit is checked.
struct FindingScope {
    bool from_beginning = false; ///< what stands before the first message is looked at as the codec
                                 ///< does: it reads no text that begins with a blank
    bool consequences = false;   ///< what follows from a brace that is missing or too many, too
};

/// Checks a unit. Adds the findings of the wanted kinds, and returns how many there were. A message
/// that is not closed is told of where the next unit begins, if that is a message.
size_t check_unit(const Unit &unit, const FindingKinds &wanted, FindingForm form,
                  std::vector<Finding> &findings, const FindingScope &scope = {});

/// Whether a finding leaves out some messages of a text, and perhaps not all.
bool leaves_out_some(kvt_finding_kind kind);

/// The findings of one input put together. Of carriage returns only the first is kept: a text with
/// one has one in every line.
class FindingsOfInput {
public:
    void begin() { has_carriage_return_ = leaves_out_ = false; }

    /// The texts of the findings that are kept; counts them.
    std::string keep(const std::vector<Finding> &findings) {
        std::string kept;
        for_each_kept(findings, [&](const Finding &finding) { kept += finding.text; });
        return kept;
    }

    /// Calls `take(const Finding &)` for each finding that is kept; counts them.
    template <typename Take>
    void for_each_kept(const std::vector<Finding> &findings, const Take &take) {
        for (const Finding &finding : findings) {
            if (finding.kind == KVT_FINDING_CARRIAGE_RETURN) {
                if (has_carriage_return_) {
                    continue;
                }
                has_carriage_return_ = true;
            }
            leaves_out_ = leaves_out_ || leaves_out_some(finding.kind);
            count_ += finding.count;
            take(finding);
        }
    }

    size_t count() const { return count_; }

    /// Some messages of this input are left out by a reader, or may be. Where the whole text is
    /// refused the finding says so.
    bool leaves_out() const { return leaves_out_; }

private:
    bool has_carriage_return_ = false;
    bool leaves_out_ = false;
    size_t count_ = 0; ///< in all inputs
};

} // namespace kvt_tool
