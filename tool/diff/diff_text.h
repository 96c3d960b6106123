// Differences as text.
#pragma once

#include <string>

#include "diff/diff_messages.h"
#include "diff/diff_records.h"

namespace kvt_tool {

/// One line without its newline: `conns[3].tree_id: 2 -> 4`, `- conns[7] (tree_id 1)`,
/// `+ port_guids[2]: 0x0002c90300001234`, `conns: order differs`.
/// With `colours` removed things are red, added ones green and changed ones yellow on a terminal.
std::string difference_text(const Difference &difference, bool colours = false);

/// The lines of a pair or of a message that only one side has, each with its newline:
///
///     JOB_DATA job_id 5: a.kvt:12, b.kvt:40
///       conns[3].tree_id: 2 -> 4
///     only in a.kvt:77: END_JOB job_id 6
std::string difference_text(const MessageDifference &difference, bool colours = false);

} // namespace kvt_tool
