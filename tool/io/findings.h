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
    size_t count = 1; ///< of the findings that it stands for
};

/// Checks a unit. Adds the findings of the wanted kinds, and returns how many there were. A message
/// that is not closed is told of where the next unit begins, if that is a message.
size_t check_unit(const Unit &unit, const FindingKinds &wanted, FindingForm form,
                  std::vector<Finding> &findings);

/// The findings of one input put together. Of carriage returns only the first is kept: a text with
/// one has one in every line.
class FindingsOfInput {
public:
    void begin() { has_carriage_return_ = leaves_out_ = false; }

    /// The texts of the findings that are kept; counts them.
    std::string keep(const std::vector<Finding> &findings);

    size_t count() const { return count_; }

    /// A message of this input is left out by a reader, or may be.
    bool leaves_out() const { return leaves_out_; }

private:
    bool has_carriage_return_ = false;
    bool leaves_out_ = false;
    size_t count_ = 0; ///< in all inputs
};

} // namespace kvt_tool
