// Differences as text.
#pragma once

#include <string>

#include "diff/diff_messages.h"
#include "diff/diff_records.h"
#include "model/value_text.h"

namespace kvt_tool {

struct DiffForm {
    bool colours = false; ///< removed things are red, added ones green and changed ones yellow
    bool brief = false;   ///< only which messages differ
    GuidForm names = GuidForm::both; ///< in what identifies messages and elements
    GuidForm values = GuidForm::hexadecimal;
};

/// One line without its newline: `conns[3].sl: 2 -> 4 (tree_id 1, vemrad_id 99)`,
/// `- conns[7] (tree_id 1, vemrad_id 12)`, `+ port_guids[2]: 0x0002c90300001234`,
/// `conns: order differs`. What identifies the elements that it lies in comes last.
std::string difference_text(const Difference &difference, const DiffForm &form = {});

/// One line without its newline, with the line's number in A; of what is added, in B:
/// `line 6, not read: future_key: 7 -> 8`, `- line 7, not read: words`.
std::string difference_text(const UnreadDifference &difference, const DiffForm &form = {});

/// The lines of a pair or of a message that only one side has, each with its newline:
///
///     JOB_DATA job_id 5: a.kvt:12, b.kvt:40
///       qpc_opts.sl: 2 -> 14
///     only in a.kvt:77: END_JOB job_id 6
///
/// Where they are brief, a pair has one line:
///
///     JOB_DATA job_id 5: a.kvt:12, b.kvt:40: 1 difference
std::string difference_text(const MessageDifference &difference, const DiffForm &form = {});

/// A line that sums up: `messages: 2 differ in 5 places, 1 only in a.kvt, 37 equal`.
std::string summary_text(const DiffSummary &summary, const std::string &a, const std::string &b);

} // namespace kvt_tool
